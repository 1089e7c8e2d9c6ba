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

// A line that fails under one of the calls made to it, and goes away with it, or could be used again at once.
class FailingLine : public VirtualLine {
 public:
    FailingLine(Peer& peer, int callToFail, bool goesAway)
        : VirtualLine(peer), callToFail_(callToFail), goesAway_(goesAway) {}

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
        if (++calls_ != callToFail_) return;
        if (goesAway_) Close();
        throw PortFailure("The port went away.");
    }

    int callToFail_;
    bool goesAway_;
    int calls_ = 0;
};

// Whichever move of an exchange fails, no byte follows the failure, and an abandoned exchange is none that
// went well.
TEST(LineFailureTest, AnyMoveOfAnExchangeMayFail) {
    const std::function<void(Session&)> exchanges[] = {
        [](Session& session) { ReadFirmwareID(session); },
        [](Session& session) { SetEEPROMAddress(session, {16}); },
        [](Session& session) {
            const auto byte = ReadEEPROM(session);
            EXPECT_EQ(byte.has_value(), session.state.CommOK);
            EXPECT_TRUE(!byte || *byte == 0xFF);
        }};
    for (const auto& exchange : exchanges) {
        using Case = std::pair<Answer, bool>;
        for (const auto& [answer, goesAway] :
             {Case{Answer::Abort, false}, Case{Answer::Abort, true}, Case{Answer::Ignore, true}}) {
            bool failed = true;
            for (int call = 1; failed; ++call) {
                SimulatedModule module(Options(TableType::RACE, true));
                FailingLine line(module, call, goesAway);
                OneAnswer user(answer);
                TestSession test(line);
                const auto lastSent = [&] { return line.TraceText().find_last_of('>'); };
                std::optional<std::size_t> sentBefore;
                user.whileOpen = [&] { sentBefore = sentBefore.value_or(lastSent()); };
                Session session(PortsOf(test.session, user, line));
                session.state.EchoMode = true;
                session.state.CommOK = true;
                exchange(session);
                failed = line.HasFailed();
                EXPECT_TRUE(failed || session.state.CommOK);
                if (!failed) continue;
                EXPECT_FALSE(answer == Answer::Abort && session.state.CommOK) << call;
                EXPECT_EQ(sentBefore, lastSent()) << call;
                EXPECT_FALSE(line.IsOpen()) << call;
            }
        }
    }
}

}  // namespace
}  // namespace rv52::test
