#include "app/state/FormResize.h"
#include "support/ConnectedSession.h"

#include <gtest/gtest.h>

namespace rv52::test {
namespace {

using namespace std::chrono_literals;

void ExpectLineError(ScriptedPrompts& prompts, const std::string& text, Answer answer) {
    prompts.Expect({text, "Communications Error", Icon::Critical, Buttons::RetryCancel}, answer);
}

TEST(LineConditionsTest, NamesEachConditionAndRetryEmptiesTheBuffer) {
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
            at.line.Open(1);
            at.line.Inject(0x41);
            at.line.Advance(1ms);
            at.line.Raise(condition);
            ExpectLineError(at.prompts, text, answer);
            at.line.Yield();
            EXPECT_TRUE(at.prompts.Done());
            EXPECT_EQ(at.state.LineErrorCount, 1);
            EXPECT_EQ(at.line.WaitForBytes(1, at.line.Now(), Yielding::No), answer == Answer::Retry ? 0 : 1);
            EXPECT_TRUE(at.line.IsOpen());
        }
    }
}

TEST(LineConditionsTest, TheThirdClosesThePortBeforeItsBox) {
    for (const auto answer : {Answer::Retry, Answer::Cancel}) {
        ConnectedModule at(Options(TableType::RACE, true));
        std::vector<bool> open;
        at.prompts.whileOpen = [&] { open.push_back(at.line.IsOpen()); };
        for (int error = 1; error <= 5; ++error) {
            if (!at.line.IsOpen()) at.line.Open(1);
            if (error == 5) {  // the count starts anew
                Form_Resize(at.session);
                at.line.Open(1);
            }
            at.line.Raise(LineCondition::Parity);
            ExpectLineError(at.prompts, "Parity error.", answer);
            at.line.Yield();
            EXPECT_EQ(at.state.LineErrorCount, error == 5 ? 1 : error);
        }
        EXPECT_EQ(open, (std::vector{true, true, false, false, true}));
        EXPECT_EQ(at.line.Closes(), 3);
    }
}

}  // namespace
}  // namespace rv52::test
