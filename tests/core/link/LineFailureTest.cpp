#include "link/ModuleProtocol.h"
#include "platform/Failure.h"
#include "support/ConnectedSession.h"
#include "support/DismissingUser.h"

#include <gtest/gtest.h>

namespace rv52::test {
namespace {

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

}  // namespace
}  // namespace rv52::test
