#include "link/EepromTransfer.h"
#include "link/ModuleProtocol.h"
#include "platform/Failure.h"
#include "support/DismissingUser.h"
#include "support/PatternModule.h"

#include <gtest/gtest.h>

namespace rv52::test {
namespace {

constexpr const char* kNotThere = "Com3 is not there.";

// A user who gives every failure box the same answer, and who can do something while a box is open.
class OneAnswer : public DismissingUser {
 public:
    explicit OneAnswer(Answer answer) : answer_(answer) {}

    Answer Ask(const MessageBox& box) override {
        EXPECT_EQ(box.buttons, Buttons::AbortRetryIgnore) << box.text;
        if (whileOpen) whileOpen();
        // Retrying for ever would be no test: now and then even the most stubborn gives up.
        return ++asked_ % 3 == 0 && answer_ == Answer::Retry ? Answer::Ignore : answer_;
    }

    std::function<void()> whileOpen;

 private:
    Answer answer_;
    int asked_ = 0;
};

// The same session as it would be with another user and line.
Ports AskingOf(Prompts& prompts, const Session& session, Line& line) {
    return {line, prompts, session.view, session.shell, session.files, session.settings, session.printer};
}

TEST(LineFailureTest, AnUnopenedPortFailsTheExchange) {
    for (const auto answer : {Answer::Abort, Answer::Ignore}) {
        ConnectedModule at(Options(TableType::RACE, true));
        at.line.FailOpens(kNotThere);
        at.prompts.ExpectError(kNotThere, Answer::Retry);
        at.prompts.ExpectError(kNotThere, answer);
        if (answer == Answer::Ignore) {
            for (int step = 0; step < 3; ++step)  // discard, send, wait
                at.prompts.ExpectError("The port is not open.", Answer::Ignore);
            at.prompts.ExpectError(kTimeoutText, Answer::Ignore);
        }
        at.state.CommOK = true;
        ReadFirmwareID(at.session);
        EXPECT_FALSE(at.state.CommOK);
        EXPECT_TRUE(at.line.Trace().empty());
        EXPECT_EQ(at.line.FailedOpens(), 2);
    }
}

TEST(LineFailureTest, RetryOpensAPortThatHasBecomeFree) {
    ConnectedModule at(Options(TableType::RACE, true));
    at.line.FailOpens("Com3 is in use.", 2);
    at.prompts.ExpectError("Com3 is in use.", Answer::Retry);
    at.prompts.ExpectError("Com3 is in use.", Answer::Retry);
    ReadFirmwareID(at.session);
    EXPECT_TRUE(at.state.CommOK);
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
// went well. With call to fail 0 nothing fails.
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
                std::optional<std::size_t> sentBefore;
                user.whileOpen = [&] {
                    sentBefore = sentBefore.value_or(at.line.TraceText().find_last_of('>'));
                };
                Session session(AskingOf(user, at.session, line));
                session.state.EchoMode = true;
                session.state.CommOK = true;
                exchange(session);
                failed = line.HasFailed();
                if (!failed) {
                    EXPECT_TRUE(session.state.CommOK);
                    continue;
                }
                EXPECT_FALSE(answer == Answer::Abort && session.state.CommOK) << call;
                EXPECT_EQ(sentBefore, at.line.TraceText().find_last_of('>')) << call;
                EXPECT_FALSE(at.line.IsOpen()) << call;
            }
        }
    }
}

struct Attempt {
    TableType type;
    bool echo;
    std::string fault;
    Answer answer;
    bool pluggedInAgain;  // while the first box is open
};

// Programs a module under the fault and checks what must hold whatever went wrong and was answered; tells
// whether the fault still found something to strike.
bool JudgeProgramming(const Attempt& attempt) {
    SCOPED_TRACE(attempt.fault);
    ConnectedModule at(Options(attempt.type, attempt.echo), Faults({attempt.fault}, 7));
    OneAnswer user(attempt.answer);
    Session session(AskingOf(user, at.session, at.line));
    session.state.TableType = attempt.type;
    session.state.EchoMode = attempt.echo;
    session.state.EepromBuffer = PatternBuffer();
    session.state.CommOK = true;
    if (attempt.pluggedInAgain) user.whileOpen = [&] { at.line.PlugIn(); };

    const auto before = at.module.Eeprom();
    const auto wanted = Programmed(before, attempt.type);
    WriteEEPROMData(session);

    const auto& after = at.module.Eeprom();
    // No byte has gone anywhere but to its own place.
    for (int address = 0; address < ModuleEeprom::kSize; ++address)
        EXPECT_TRUE(after[address] == before[address] || after[address] == wanted[address]) << address;
    const bool success = session.state.CommOK && session.state.VerifyErrors == 0;
    EXPECT_TRUE(!success || after == wanted);
    EXPECT_FALSE(at.line.IsOpen());
    EXPECT_FALSE(at.shell.progressShown);
    return !success;
}

TEST(LineFailureTest, NoFaultMakesProgrammingLookDone) {
    const char* kinds[] = {"hang-up",    "silent",          "lost-reply",
                           "late-reply", "refused-address", "refused-write"};
    for (const auto& [type, echo] : {std::pair(TableType::RACE, false), std::pair(TableType::EX, true)}) {
        for (const std::string kind : kinds) {
            for (const auto answer : {Answer::Abort, Answer::Retry, Answer::Ignore}) {
                const bool again = kind == "hang-up";
                if (answer == Answer::Retry && !again) continue;
                long k = 1;
                // From the first byte to the last, closely at the start of each hundred.
                while (JudgeProgramming({type, echo, kind + "=" + std::to_string(k), answer, again}))
                    k += k % 100 < 20 ? 1 : 23;
                EXPECT_GT(k, 1) << kind;
            }
        }
    }
}

TEST(LineFailureTest, StrayBytesMayDisturbButNotDeceive) {
    for (const bool echo : {true, false})
        for (int k = 1; k <= 272; k += 3)
            JudgeProgramming(
                {TableType::RACE, echo, "garbage-before-reply=" + std::to_string(k), Answer::Ignore, false});
}

TEST(LineFailureTest, ALostLineEndsAReadAsFailed) {
    for (const auto answer : {Answer::Abort, Answer::Ignore}) {
        for (int k = 1; k < 500; k += 7) {
            ConnectedModule at(PatternModule(TableType::EX, true),
                               Faults({"hang-up=" + std::to_string(k)}, 7));
            OneAnswer user(answer);
            Session session(AskingOf(user, at.session, at.line));
            user.whileOpen = [&] { at.line.PlugIn(); };
            session.state.TableType = TableType::EX;
            session.state.EchoMode = true;
            ReadEEPROMData(session);
            EXPECT_FALSE(session.state.CommOK) << k;
            EXPECT_FALSE(at.line.IsOpen());
            EXPECT_FALSE(at.shell.progressShown);
        }
    }
}

}  // namespace
}  // namespace rv52::test
