#include "app/FormResize.h"
#include "link/EepromTransfer.h"
#include "link/ModuleProtocol.h"
#include "support/PatternModule.h"

#include <gtest/gtest.h>

namespace rv52::test {
namespace {

using namespace std::chrono_literals;

void ExpectLineError(ScriptedPrompts& prompts, const std::string& text, Answer answer) {
    prompts.Expect({text, "Communications Error", Icon::Critical, Buttons::RetryCancel}, answer);
}

TEST(LineErrorsTest, NamesEachConditionAndRetryEmptiesTheBuffer) {
    const std::pair<LineCondition, const char*> texts[] = {
        {LineCondition::Framing, "Framing error."},
        {LineCondition::HardwareOverrun, "Port hardware overrun."},
        {LineCondition::ReceiveOverflow, "Receive buffer overflow."},
        {LineCondition::Parity, "Parity error."},
        {LineCondition::TransmitFull, "Transmit buffer full."},
        {LineCondition::ControlBlock, "Device control block error."}};
    for (const auto& [condition, text] : texts) {
        for (const auto answer : {Answer::Retry, Answer::Cancel}) {
            ConnectedModule at(Options(TableType::RACE, true));
            OpenLine(at.session);
            at.line.Inject(0x41);
            at.line.Advance(1ms);
            at.line.Raise(condition);
            ExpectLineError(at.prompts, text, answer);
            at.line.Pump();
            EXPECT_TRUE(at.prompts.Done());
            EXPECT_EQ(at.state.LineErrorCount, 1);
            EXPECT_EQ(at.line.Await(1, at.line.Now(), Yielding::No), answer == Answer::Retry ? 0 : 1);
            EXPECT_TRUE(at.line.IsOpen());
        }
    }
}

TEST(LineErrorsTest, TheThirdClosesThePortBeforeItsBox) {
    for (const auto answer : {Answer::Retry, Answer::Cancel}) {
        ConnectedModule at(Options(TableType::RACE, true));
        std::vector<bool> open;
        at.prompts.whileOpen = [&] { open.push_back(at.line.IsOpen()); };
        for (int error = 1; error <= 5; ++error) {
            OpenLine(at.session);
            if (error == 5) Form_Resize(at.session);  // which starts the count anew
            OpenLine(at.session);
            at.line.Raise(LineCondition::Parity);
            ExpectLineError(at.prompts, "Parity error.", answer);
            at.line.Pump();
            EXPECT_EQ(at.state.LineErrorCount, error == 5 ? 1 : error);
        }
        EXPECT_EQ(open, (std::vector{true, true, false, false, true}));
        EXPECT_EQ(at.line.Closes(), 3);
    }
}

TEST(LineErrorsTest, AThirdErrorWhileProgrammingEndsItWithNothingMoreSent) {
    for (const auto answer : {Answer::Abort, Answer::Ignore}) {
        ConnectedModule at(Options(TableType::RACE, true));
        at.state.EepromBuffer = PatternBuffer();
        at.state.LineErrorCount = 2;
        // Between a write command and its byte: the module waits for the byte, and must get no other.
        std::size_t sent = 0;
        at.line.OnYield([&] {
            if (sent > 0 || at.module.Stored() < 10 || at.line.Trace().back().byte != 0x16) return;
            sent = at.line.Trace().size();
            at.line.Raise(LineCondition::Framing);
        });
        ExpectLineError(at.prompts, "Framing error.", Answer::Cancel);
        at.prompts.ExpectError("The port is not open.", answer);
        if (answer == Answer::Ignore) {
            at.prompts.ExpectError("The port is not open.", Answer::Ignore);
            at.prompts.ExpectError(kTimeoutText, Answer::Ignore);
        }
        WriteEEPROMData(at.session);
        EXPECT_FALSE(at.state.CommOK);
        EXPECT_EQ(at.module.Stored(), 10);
        EXPECT_GT(sent, 0u);
        for (auto later = sent; later < at.line.Trace().size(); ++later)
            EXPECT_EQ(at.line.Trace()[later].direction, Direction::ToPc);
    }
}

}  // namespace
}  // namespace rv52::test
