#include "app/FormResize.h"
#include "link/EepromTransfer.h"
#include "link/ModuleProtocol.h"
#include "platform/Failure.h"
#include "support/DismissingUser.h"
#include "support/PatternModule.h"

#include <gtest/gtest.h>

namespace rv52::test {
namespace {

using namespace std::chrono_literals;

constexpr const char* kNotThere = "Com3 is not there.";

TEST(LineFailureTest, AnUnopenedPortFailsTheExchange) {
    for (const auto answer : {Answer::Abort, Answer::Ignore, Answer::Retry}) {
        ConnectedModule at(Options(TableType::RACE, true));
        at.line.FailOpens(kNotThere, 2);
        at.prompts.ExpectError(kNotThere, Answer::Retry);
        at.prompts.ExpectError(kNotThere, answer);
        if (answer == Answer::Ignore) {
            for (int step = 0; step < 3; ++step)  // discard, send, wait
                at.prompts.ExpectError("The port is not open.", Answer::Ignore);
            at.prompts.ExpectError(kTimeoutText, Answer::Ignore);
        }
        at.state.CommOK = true;
        ReadFirmwareID(at.session);
        // Meanwhile it has become free.
        EXPECT_EQ(at.state.CommOK, answer == Answer::Retry);
        EXPECT_EQ(at.line.Trace().empty(), answer != Answer::Retry);
        EXPECT_EQ(at.line.FailedOpens(), 2);
    }
}

// A line that fails under one of the calls made to it, and could be used again at once.
class FailingLine : public VirtualLine {
 public:
    FailingLine(Peer& peer, int callToFail) : VirtualLine(peer), callToFail_(callToFail) {}

    void Open(int commPort) override { Call(), VirtualLine::Open(commPort); }
    void Discard() override { Call(), VirtualLine::Discard(); }
    std::uint8_t ReadByte() override { return Call(), VirtualLine::ReadByte(); }
    void SendByte(std::uint8_t byte) override { Call(), VirtualLine::SendByte(byte); }
    void Pump() override { Call(), VirtualLine::Pump(); }
    int Await(int count, Clock deadline, Yielding yielding) override {
        return Call(), VirtualLine::Await(count, deadline, yielding);
    }
    void Pause(std::chrono::milliseconds duration) override { Call(), VirtualLine::Pause(duration); }

    bool HasFailed() const { return calls_ >= callToFail_; }

 private:
    void Call() {
        if (++calls_ == callToFail_) throw PortFailure("The line failed.");
    }

    int callToFail_;
    int calls_ = 0;
};

// Whichever move of an exchange fails: once abandoned, it closes the port, sends no more and is none that
// went well.
TEST(LineFailureTest, AnyMoveOfAnExchangeMayFail) {
    const std::function<void(Session&)> exchanges[] = {
        ReadFirmwareID, [](Session& session) { SetEEPROMAddress(session, {16}); },
        [](Session& session) { EXPECT_EQ(ReadEEPROM(session).has_value(), session.state.CommOK); }};
    for (const auto& exchange : exchanges) {
        bool failed = true;
        for (int call = 1; failed; ++call) {
            SimulatedModule module(Options(TableType::RACE, true));
            FailingLine line(module, call);
            OneAnswer user(Answer::Abort);
            TestSession test(line);
            std::size_t sentBefore = 0;
            user.whileOpen = [&] { sentBefore = line.Trace().size(); };
            Session session(PortsOf(test.session, user, line));
            session.state.EchoMode = session.state.CommOK = true;
            exchange(session);
            failed = line.HasFailed();
            EXPECT_EQ(session.state.CommOK, !failed) << call;
            EXPECT_TRUE(!failed || sentBefore == line.Trace().size()) << call;
            EXPECT_FALSE(line.IsOpen() && failed) << call;
        }
    }
}

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
