#include "link/LinkTexts.h"
#include "platform/Failure.h"
#include "simulator/ScriptedPeer.h"
#include "support/ConnectedSession.h"
#include "support/DismissingUser.h"

#include <gtest/gtest.h>
#include <tuple>

namespace rv52::test {
namespace {

using namespace std::chrono_literals;
using Bytes = std::vector<std::uint8_t>;
using Texts = std::vector<std::string>;

// One exchange of each kind, and how it ended. The bytes are those of a range.
using Exchange = LinkOutcome (*)(Session&, Bytes&);
const std::string kAway = "The port went away.";
constexpr auto kGoOn = [] { return true; };
constexpr Exchange kIdentify = [](Session& session, Bytes&) { return session.link.Identify(1).outcome; };
constexpr Exchange kAddress = [](Session& session, Bytes&) {
    return session.link.SetAddress({1, session.state.EchoMode}, {0x0190});
};
constexpr Exchange kRead = [](Session& session, Bytes& bytes) {
    return session.link.ReadRange({1, session.state.EchoMode}, bytes, kGoOn);
};
constexpr Exchange kWrite = [](Session& session, Bytes& bytes) {
    return session.link.WriteRange({1, session.state.EchoMode}, bytes, LinkTexts::kNoAnswer, kGoOn);
};

// A module, and the link of a user who remembers the boxes; their answers are those laid down.
struct Desk {
    explicit Desk(bool echo = true, Faults faults = {})
        : at(Options(TableType::RACE, echo), std::move(faults)) {
        HandleLineConditions(session);
        session.state.EchoMode = echo;
    }

    ConnectedModule at;
    AnsweringUser user;
    Session session{PortsOf(at.session, user, at.line)};
    Bytes byte{0x2A};
};

TEST(ModuleLinkTest, SilenceAsksAndRetrySendsNothing) {
    // What is missing, whether the module echoes, its replies before, the exchange, and what has been sent.
    const std::tuple<const char*, bool, Bytes, Exchange, Bytes> silences[] = {
        {"no echo of the address command", true, {}, kAddress, {0x14}},
        {"no echo of the low byte", true, {0x14}, kAddress, {0x14, 0x90}},
        {"an echo but no acknowledge", true, {0x14, 0x90, 0x01}, kAddress, {0x14, 0x90, 0x01}},
        {"no acknowledge", false, {}, kAddress, {0x14, 0x90, 0x01}},
        {"an echo but no byte", true, {0x15}, kRead, {0x15}},
        {"no byte", false, {}, kRead, {0x15}},
        {"two echoes but no acknowledge", true, {0x16, 0x2A}, kWrite, {0x16, 0x2A}},
        {"no acknowledge of the byte", false, {}, kWrite, {0x16, 0x2A}}};
    for (const auto& [missing, echo, replies, exchange, sent] : silences) {
        SCOPED_TRACE(missing);
        ScriptedPeer peer;
        for (const auto reply : replies)
            peer.Then({reply});
        ConnectedSession at(peer);
        at.state.EchoMode = echo;
        for (const auto answer : {Answer::Retry, Answer::Retry, Answer::Ignore})
            at.prompts.ExpectError(kTimeoutText, answer);
        at.prompts.whileOpen = [&] { EXPECT_FALSE(at.line.IsOpen()); };
        Bytes byte{0x2A};
        EXPECT_EQ(exchange(at.session, byte), LinkOutcome::TimedOut);
        EXPECT_EQ(peer.received, sent);
        EXPECT_EQ(at.line.Opens().size(), 1u);
    }
}

TEST(ModuleLinkTest, AReplyHasOneSecondAndALateOneIsNotTakenForTheNext) {
    constexpr auto latest = 1s - std::chrono::nanoseconds{2 * 178571};  // a request and a reply
    for (const std::chrono::nanoseconds delay : {0ns + 990ms, latest, latest + 1ns, 0ns + 1010ms}) {
        const bool inTime = delay <= latest;
        SCOPED_TRACE(delay.count());
        ScriptedPeer peer;
        peer.Then({0x2A}, delay).Then({}).Then({}).Then({0x06}).Then({0x42});
        ConnectedSession at(peer);
        at.state.EchoMode = false;
        // Reading lets no event in before its byte is there.
        std::chrono::nanoseconds ran{0};
        at.line.At(100ms, [&] { ran = at.line.Now(); });
        if (!inTime) at.prompts.ExpectError(kTimeoutText, Answer::Ignore);
        Bytes byte(1);
        EXPECT_EQ(kRead(at.session, byte), inTime ? LinkOutcome::Done : LinkOutcome::TimedOut);
        EXPECT_EQ(byte, Bytes{std::uint8_t(inTime ? 0x2A : 0)});
        EXPECT_EQ(ran, inTime ? delay + (1s - latest) : 1s + 1ns);
        at.line.Advance(50ms);
        at.line.Close();
        EXPECT_EQ(kAddress(at.session, byte), LinkOutcome::Done);
        EXPECT_EQ(kRead(at.session, byte), LinkOutcome::Done);
        EXPECT_EQ(byte, Bytes{0x42});
    }
}

// The identification and the address try a port again for Retry and then go on; an upload's address does not.
TEST(ModuleLinkTest, AnUnopenedPortFailsTheExchange) {
    constexpr const char* notThere = "Com3 is not there.";
    constexpr Exchange uploads = [](Session& session, Bytes&) {
        return session.link.SetAddress({1, session.state.EchoMode}, {16}, ModuleLink::FailedOpen::Ends);
    };
    for (const auto answer : {Answer::Abort, Answer::Ignore, Answer::Retry}) {
        // What fails behind a failed open: a discard for each byte, each byte, and the wait.
        for (const auto& [exchange, steps] : {std::pair(kIdentify, 3), {kAddress, 7}, {uploads, 0}}) {
            SCOPED_TRACE(testing::Message() << "answer " << static_cast<int>(answer) << ", steps " << steps);
            ConnectedModule at(Options(TableType::RACE, false));
            at.line.FailOpens(notThere, 2);  // and then it has become free
            at.prompts.ExpectError(notThere, Answer::Retry);
            at.prompts.ExpectError(notThere, answer);
            if (answer == Answer::Ignore && steps > 0) {
                for (int step = 0; step < steps; ++step)
                    at.prompts.ExpectError("The port is not open.", Answer::Ignore);
                at.prompts.ExpectError(kTimeoutText, Answer::Ignore);
            }
            Bytes none;
            const bool done = exchange(at.session, none) == LinkOutcome::Done;
            EXPECT_EQ(done, answer == Answer::Retry && steps > 0);
            EXPECT_EQ(at.line.Trace().empty(), !done);
            EXPECT_FALSE(at.line.IsOpen());
        }
    }
}

// A line that fails under one of the calls made to it, and could be used again at once.
class FailingLine : public VirtualLine {
 public:
    FailingLine(Peer& peer, int callToFail) : VirtualLine(peer), left_(callToFail) {}

    void Open(int commPort) override { Call(), VirtualLine::Open(commPort); }
    void Discard() override { Call(), VirtualLine::Discard(); }
    std::uint8_t ReadByte() override { return Call(), VirtualLine::ReadByte(); }
    void SendByte(std::uint8_t byte) override { Call(), VirtualLine::SendByte(byte); }
    void Yield() override { Call(), VirtualLine::Yield(); }
    int WaitForBytes(int count, Clock deadline, Yielding yielding) override {
        return Call(), VirtualLine::WaitForBytes(count, deadline, yielding);
    }
    void WaitFor(std::chrono::milliseconds duration) override { Call(), VirtualLine::WaitFor(duration); }
    bool HasFailed() const { return left_ <= 0; }

 private:
    void Call() {
        if (--left_ == 0) throw PortFailure("The line failed.");
    }

    int left_;
};

// Whichever move of an exchange fails: it ends with the port closed, sends no more and is none that went
// well.
TEST(ModuleLinkTest, AnyMoveOfAnExchangeMayFail) {
    for (const auto exchange : {kIdentify, kAddress, kRead, kWrite}) {
        for (int call = 1;; ++call) {
            SCOPED_TRACE(call);
            SimulatedModule module(Options(TableType::RACE, true));
            FailingLine line(module, call);
            OneAnswer user(Answer::Abort);
            TestSession test(line);
            std::size_t sentBefore = 0;
            user.whileOpen = [&] { sentBefore = line.Trace().size(); };
            Session session(PortsOf(test.session, user, line));
            session.state.EchoMode = true;
            Bytes byte{0x2A};
            const auto outcome = exchange(session, byte);
            EXPECT_EQ(outcome == LinkOutcome::Done, !line.HasFailed());
            if (!line.HasFailed()) break;
            EXPECT_EQ(sentBefore, line.Trace().size());
            EXPECT_FALSE(line.IsOpen());
        }
    }
}

// After this many bytes over the wire, at the next yield.
TEST(ModuleLinkTest, ABreakAnywhereEndsARangeWithNothingMoreSent) {
    using enum Answer;
    using Strike = void (*)(VirtualLine&);
    const Strike pull = [](VirtualLine& line) { line.HangUp(); };
    const Strike shake = [](VirtualLine& line) {
        line.HangUp();
        line.PlugIn();
    };
    const Strike disturb = [](VirtualLine& line) { line.Raise(LineCondition::Framing); };
    const Strike sleep = [](VirtualLine& line) { line.Advance(1100ms); };
    const std::string closed = "The port is not open.";
    const std::string framing = "Framing error.";
    // The break, line conditions before it, the answers to its boxes, the boxes, and how the range ended.
    const std::tuple<std::string, Strike, std::int16_t, std::vector<Answer>, Texts, LinkOutcome> breaks[] = {
        {"pulled", pull, 0, {Abort}, {kAway}, LinkOutcome::LineLost},
        {"pulled, tried", pull, 0, {Retry, Ignore}, {kAway, "There is no such port."}, LinkOutcome::LineLost},
        {"shaken, going on wanted", shake, 0, {Retry}, {closed}, LinkOutcome::LineLost},
        {"a line condition", disturb, 0, {Retry}, {framing}, LinkOutcome::Abandoned},
        {"a third one", disturb, 2, {Cancel, Abort}, {framing, closed}, LinkOutcome::LineLost},
        {"a sleep of the machine", sleep, 0, {}, {}, LinkOutcome::Abandoned}};
    constexpr std::size_t count = 4;
    for (const auto& [what, strike, conditions, answers, boxes, outcome] : breaks) {
        for (const bool writing : {false, true}) {
            for (std::size_t moment = 0; moment <= (writing ? 5 : 3) * (count - 1); ++moment) {
                SCOPED_TRACE(what + (writing ? ", writing, " : ", reading, ") + std::to_string(moment));
                Desk desk;
                desk.session.state.LineErrorCount = conditions;
                desk.user.answers = answers;
                Bytes bytes(count, 0x2A);
                kAddress(desk.session, bytes);
                const auto& trace = desk.at.line.Trace();
                const auto before = trace.size();
                std::size_t sent = 0;
                desk.at.line.OnYield([&, act = strike] {
                    if (sent > 0 || !desk.at.line.IsOpen() || trace.size() < before + moment) return;
                    sent = trace.size();
                    act(desk.at.line);
                });
                EXPECT_EQ((writing ? kWrite : kRead)(desk.session, bytes), outcome);
                EXPECT_EQ(desk.user.told, boxes);
                EXPECT_FALSE(desk.at.line.IsOpen());
                EXPECT_GT(sent, 0u);
                for (auto later = sent; later < trace.size(); ++later)
                    EXPECT_EQ(trace[later].direction, Direction::ToPc);
            }
        }
    }
}

// Behind the last byte: a line that is lost is of no more concern, but a condition is about that byte. A read
// lets nothing in while it waits, so a condition behind a lost reply is told before the time-out is.
TEST(ModuleLinkTest, WhatComesBehindTheLastByte) {
    const std::tuple<bool, bool, LinkOutcome, Texts> cases[] = {
        {false, false, LinkOutcome::Done, {}},
        {false, true, LinkOutcome::Abandoned, {"Framing error."}},
        {true, false, LinkOutcome::LineLost, {kAway}},
        {true, true, LinkOutcome::Abandoned, {"Framing error."}}};
    for (const auto& [lost, condition, outcome, boxes] : cases) {
        SCOPED_TRACE(testing::Message() << "reply lost " << lost << ", condition " << condition);
        Desk desk(true, lost ? Faults({"lost-reply=2"}, 1) : Faults());
        kAddress(desk.session, desk.byte);
        desk.at.line.OnYield([&, struck = false, raises = condition]() mutable {
            if (std::exchange(struck, true)) return;
            raises ? desk.at.line.Raise(LineCondition::Framing) : desk.at.line.HangUp();
        });
        EXPECT_EQ(kRead(desk.session, desk.byte), outcome);
        EXPECT_EQ(desk.user.told, boxes);
    }
}

// A range may begin a second after the address's acknowledge, and no later. An address that a line condition
// interrupts goes on, and so does the range behind it.
TEST(ModuleLinkTest, ARangeBeginsWithinASecondOfItsAddress) {
    for (const auto& [beyond, ended] :
         {std::pair(0ns, LinkOutcome::Done), std::pair(1ns, LinkOutcome::Abandoned)}) {
        SCOPED_TRACE(beyond.count());
        Desk desk;
        auto& line = desk.at.line;
        line.At(1ms, [&] { line.Raise(LineCondition::Parity); });
        EXPECT_EQ(kAddress(desk.session, desk.byte), LinkOutcome::Done);
        EXPECT_EQ(desk.user.told, Texts{"Parity error."});
        line.Advance(1s - (line.Now() - line.LastArrival()) + beyond);
        EXPECT_EQ(kRead(desk.session, desk.byte), ended);
    }
}

// A module that waits for the rest of an address, or for a byte, takes the next command for it and
// acknowledges what was not meant.
TEST(ModuleLinkTest, AnAcknowledgeThatComesTooEarlyIsNone) {
    for (const bool echo : {false, true}) {
        for (const Bytes& cut : {Bytes{0x14}, Bytes{0x14, 0x10}, Bytes{0x16}}) {
            SCOPED_TRACE(testing::Message() << "echo " << echo << ", cut short: " << cut.size());
            Desk desk(echo);
            for (const auto byte : cut)
                desk.at.module.Receive(byte);
            EXPECT_NE(kAddress(desk.session, desk.byte), LinkOutcome::Done);
        }
    }
    // The byte's acknowledge is there before the byte.
    ScriptedPeer peer;
    peer.Then({}).Then({}).Then({0x06}).Then({0x06}).Then({});
    ConnectedSession at(peer);
    at.state.EchoMode = false;
    Bytes byte{0x2A};
    EXPECT_EQ(kAddress(at.session, byte), LinkOutcome::Done);
    EXPECT_EQ(kWrite(at.session, byte), LinkOutcome::Refused);
}

// An address counts only if the port stayed open to the end of its last pause.
TEST(ModuleLinkTest, AnAddressLostInItsLastPauseIsNone) {
    for (const bool shaken : {false, true}) {
        SCOPED_TRACE(shaken);
        Desk desk;
        desk.at.line.OnYield([&] {
            const auto& trace = desk.at.line.Trace();
            if (trace.empty() || trace.back().byte != 0x06) return;
            desk.at.line.HangUp();
            if (shaken) desk.at.line.PlugIn();
        });
        EXPECT_EQ(kAddress(desk.session, desk.byte), LinkOutcome::Abandoned);
    }
}

}  // namespace
}  // namespace rv52::test
