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

// A line that goes away under one of the calls made to it, and could be opened again at once.
class FailingLine : public Line {
 public:
    FailingLine(Line& line, int callToFail) : line_(line), callToFail_(callToFail) {}

    bool IsOpen() const override { return line_.IsOpen(); }
    void Open(int commPort) override { Call(), line_.Open(commPort); }
    void Close() noexcept override { line_.Close(); }
    void Discard() override { Call(), line_.Discard(); }
    std::uint8_t ReadByte() override { return Call(), line_.ReadByte(); }
    void SendByte(std::uint8_t byte) override { Call(), line_.SendByte(byte); }
    Clock Now() const override { return line_.Now(); }
    void Pump() override { Call(), line_.Pump(); }
    int Await(int count, Clock deadline, Yielding yielding) override {
        return Call(), line_.Await(count, deadline, yielding);
    }
    void Pause(std::chrono::milliseconds duration) override { Call(), line_.Pause(duration); }
    void OnCondition(ConditionHandler handler) override { line_.OnCondition(std::move(handler)); }

    bool HasFailed() const { return calls_ >= callToFail_; }

 private:
    void Call() {
        if (++calls_ != callToFail_) return;
        line_.Close();
        throw PortFailure("The port went away.");
    }

    Line& line_;
    int callToFail_;
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
        for (const auto answer : {Answer::Abort, Answer::Ignore}) {
            bool failed = true;
            for (int call = 1; failed; ++call) {
                ConnectedModule at(Options(TableType::RACE, true));
                FailingLine line(at.line, call);
                OneAnswer user(answer);
                const auto lastSent = [&] { return at.line.TraceText().find_last_of('>'); };
                std::optional<std::size_t> sentBefore;
                user.whileOpen = [&] { sentBefore = sentBefore.value_or(lastSent()); };
                Session session(PortsOf(at.session, user, line));
                session.state.EchoMode = true;
                session.state.CommOK = true;
                exchange(session);
                failed = line.HasFailed();
                if (!failed) {
                    EXPECT_TRUE(session.state.CommOK);
                    continue;
                }
                EXPECT_FALSE(answer == Answer::Abort && session.state.CommOK) << call;
                EXPECT_EQ(sentBefore, lastSent()) << call;
                EXPECT_FALSE(at.line.IsOpen()) << call;
            }
        }
    }
}

}  // namespace
}  // namespace rv52::test
