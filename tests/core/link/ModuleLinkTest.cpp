#include "link/LinkTexts.h"
#include "link/commands/LinkProcedures.h"
#include "platform/Failure.h"
#include "simulator/ScriptedPeer.h"
#include "support/DismissingUser.h"
#include "support/PatternModule.h"

#include <gtest/gtest.h>
#include <tuple>

namespace rv52::test {
namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;
using Bytes = std::vector<std::uint8_t>;

ModuleAt Module(const Session& session) {
    return {session.state.CommPort, session.state.EchoMode};
}

// One exchange of each kind, and how it ended.
using Exchange = std::function<LinkOutcome(Session&)>;

const Exchange kIdentify = [](Session& session) { return session.link.Identify(1).outcome; };
const Exchange kAddress = [](Session& session) { return session.link.SetAddress(Module(session), {0x0190}); };
const Exchange kRead = [](Session& session) {
    Bytes byte(1);
    return session.link.ReadRange(Module(session), byte, [] { return true; });
};
const Exchange kWrite = [](Session& session) {
    return session.link.WriteRange(Module(session), Bytes{0x2A}, LinkTexts::kNoAnswer, [] { return true; });
};

// Against a module that falls silent: what is missing, whether it echoes, its replies before, the exchange,
// and what it has been sent.
using Silence = std::tuple<const char*, bool, std::vector<Bytes>, Exchange, Bytes>;

const Silence kSilences[] = {
    {"no echo of the address command", true, {}, kAddress, {0x14}},
    {"no echo of the low byte", true, {{0x14}}, kAddress, {0x14, 0x90}},
    {"an echo but no acknowledge", true, {{0x14}, {0x90}, {0x01}}, kAddress, {0x14, 0x90, 0x01}},
    {"no acknowledge", false, {}, kAddress, {0x14, 0x90, 0x01}},
    {"an echo but no byte", true, {{0x15}}, kRead, {0x15}},
    {"no byte", false, {}, kRead, {0x15}},
    {"two echoes but no acknowledge", true, {{0x16}, {0x2A}}, kWrite, {0x16, 0x2A}},
    {"no acknowledge of the byte", false, {}, kWrite, {0x16, 0x2A}}};

TEST(ModuleLinkTest, SilenceAsksAndRetrySendsNothing) {
    for (const auto& [missing, echo, replies, exchange, sent] : kSilences) {
        for (const auto answer : {Answer::Abort, Answer::Ignore}) {
            SCOPED_TRACE(missing);
            ScriptedPeer peer;
            for (const auto& reply : replies)
                peer.Then(reply);
            ConnectedSession at(peer);
            at.state.EchoMode = echo;
            for (const auto given : {Answer::Retry, Answer::Retry, answer})
                at.prompts.ExpectError(kTimeoutText, given);
            at.prompts.whileOpen = [&] { EXPECT_FALSE(at.line.IsOpen()); };
            EXPECT_EQ(exchange(at.session), LinkOutcome::TimedOut);
            EXPECT_TRUE(at.prompts.Done());
            EXPECT_FALSE(at.line.IsOpen());
            EXPECT_EQ(peer.received, sent);
            EXPECT_EQ(at.line.Opens().size(), 1u);
        }
    }
}

TEST(ModuleLinkTest, AReplyHasOneSecondAndALateOneIsNotTakenForTheNext) {
    constexpr auto latest = 1s - std::chrono::nanoseconds{2 * 178571};  // a request and a reply
    using Case = std::pair<std::chrono::nanoseconds, bool>;
    for (const auto& [delay, inTime] :
         {Case{990ms, true}, Case{latest, true}, Case{latest + 1ns, false}, Case{1010ms, false}}) {
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
        const auto read = [&] { return at.session.link.ReadRange({1, false}, byte, [] { return true; }); };
        EXPECT_EQ(read(), inTime ? LinkOutcome::Done : LinkOutcome::TimedOut);
        EXPECT_TRUE(!inTime || (byte == Bytes{0x2A} && ran == delay + (1s - latest)));
        at.line.Advance(50ms);
        at.line.Close();
        EXPECT_EQ(at.session.link.SetAddress({1, false}, {0}), LinkOutcome::Done);
        EXPECT_EQ(read(), LinkOutcome::Done);
        EXPECT_EQ(byte, Bytes{0x42});
    }
}

// The identification and the address try a port again for Retry and then go on; an upload's address does not.
TEST(ModuleLinkTest, AnUnopenedPortFailsTheExchange) {
    constexpr const char* notThere = "Com3 is not there.";
    const Exchange uploads = [](Session& session) {
        return session.link.SetAddress(Module(session), {16}, ModuleLink::FailedOpen::Ends);
    };
    for (const auto answer : {Answer::Abort, Answer::Ignore, Answer::Retry}) {
        for (const auto* exchange : {&kIdentify, &kAddress, &uploads}) {
            ConnectedModule at(Options(TableType::RACE, false));
            at.line.FailOpens(notThere, 2);
            at.prompts.ExpectError(notThere, Answer::Retry);
            at.prompts.ExpectError(notThere, answer);
            if (answer == Answer::Ignore && exchange != &uploads) {
                // discard, send, wait; or discard, send, discard, send, discard, send, wait
                const int steps = exchange == &kIdentify ? 3 : 7;
                for (int step = 0; step < steps; ++step)
                    at.prompts.ExpectError("The port is not open.", Answer::Ignore);
                at.prompts.ExpectError(kTimeoutText, Answer::Ignore);
            }
            const auto outcome = (*exchange)(at.session);
            // Meanwhile it has become free.
            const bool goesOn = answer == Answer::Retry && exchange != &uploads;
            EXPECT_EQ(outcome == LinkOutcome::Done, goesOn);
            EXPECT_EQ(at.line.Trace().empty(), !goesOn);
            EXPECT_EQ(at.line.FailedOpens(), 2);
            EXPECT_FALSE(at.line.IsOpen());
            EXPECT_TRUE(at.prompts.Done());
        }
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
    void Yield() override { Call(), VirtualLine::Yield(); }
    int WaitForBytes(int count, Clock deadline, Yielding yielding) override {
        return Call(), VirtualLine::WaitForBytes(count, deadline, yielding);
    }
    void WaitFor(std::chrono::milliseconds duration) override { Call(), VirtualLine::WaitFor(duration); }

    bool HasFailed() const { return calls_ >= callToFail_; }

 private:
    void Call() {
        if (++calls_ == callToFail_) throw PortFailure("The line failed.");
    }

    int callToFail_;
    int calls_ = 0;
};

// Whichever move of an exchange fails: once it is left, it has closed the port, sends no more and is none
// that went well.
TEST(ModuleLinkTest, AnyMoveOfAnExchangeMayFail) {
    for (const auto& exchange : {kIdentify, kAddress, kRead, kWrite}) {
        bool failed = true;
        for (int call = 1; failed; ++call) {
            SCOPED_TRACE(call);
            SimulatedModule module(Options(TableType::RACE, true));
            FailingLine line(module, call);
            OneAnswer user(Answer::Abort);
            TestSession test(line);
            std::size_t sentBefore = 0;
            user.whileOpen = [&] { sentBefore = line.Trace().size(); };
            Session session(PortsOf(test.session, user, line));
            session.state.EchoMode = true;
            const auto outcome = exchange(session);
            failed = line.HasFailed();
            EXPECT_EQ(outcome == LinkOutcome::Done, !failed);
            EXPECT_TRUE(!failed || sentBefore == line.Trace().size());
            EXPECT_FALSE(line.IsOpen() && failed);
        }
    }
}

// What breaks the connection of a range, the answers to its boxes, the boxes, and what has come of it.
struct Break {
    const char* what;
    std::function<void(VirtualLine&, AppState&)> strike;
    std::vector<Answer> answers;
    std::vector<std::string> boxes;
    LinkOutcome outcome;
};

const std::string kAway = "The port went away.";
const std::string kMissing = "There is no such port.";
const std::string kClosed = "The port is not open.";

const Break kBreaks[] = {
    {"the plug pulled",
     [](auto& line, auto&) { line.HangUp(); },
     {Answer::Abort},
     {kAway},
     LinkOutcome::LineLost},
    {"the plug pulled and tried",
     [](auto& line, auto&) { line.HangUp(); },
     {Answer::Retry, Answer::Retry, Answer::Ignore},
     {kAway, kMissing, kMissing},
     LinkOutcome::LineLost},
    {"the plug shaken",
     [](auto& line, auto&) { line.HangUp(), line.PlugIn(); },
     {Answer::Ignore},
     {kClosed},
     LinkOutcome::LineLost},
    {"the plug shaken, going on wanted",
     [](auto& line, auto&) { line.HangUp(), line.PlugIn(); },
     {Answer::Retry},
     {kClosed},
     LinkOutcome::LineLost},
    {"a line condition",
     [](auto& line, auto&) { line.Raise(LineCondition::Framing); },
     {Answer::Retry},
     {"Framing error."},
     LinkOutcome::Abandoned},
    {"a third line condition",
     [](auto& line, auto& state) { state.LineErrorCount = 2, line.Raise(LineCondition::Framing); },
     {Answer::Cancel, Answer::Abort},
     {"Framing error.", kClosed},
     LinkOutcome::LineLost},
    {"a sleep of the machine",
     [](auto& line, auto&) { line.Advance(1100ms); },
     {},
     {},
     LinkOutcome::Abandoned}};

// After this many bytes over the wire, at the next yield.
TEST(ModuleLinkTest, ABreakAnywhereEndsARangeWithNothingMoreSent) {
    constexpr std::size_t count = 4;
    for (const auto& [what, strike, answers, boxes, outcome] : kBreaks) {
        for (const bool writing : {false, true}) {
            for (std::size_t moment = 0; moment <= (writing ? 5 : 3) * (count - 1); ++moment) {
                SCOPED_TRACE(what + (writing ? ", writing, "s : ", reading, "s) + std::to_string(moment));
                ConnectedModule at(Options(TableType::RACE, true));
                AnsweringUser user;
                user.answers = answers;
                Session session(PortsOf(at.session, user, at.line));
                HandleLineConditions(session);
                session.link.SetAddress({1, true}, {16});
                const auto& trace = at.line.Trace();
                const auto before = trace.size();
                std::size_t sent = 0;
                at.line.OnYield([&, &act = strike] {
                    if (sent > 0 || !at.line.IsOpen() || trace.size() < before + moment) return;
                    sent = trace.size();
                    act(at.line, session.state);
                });
                Bytes bytes(count, 0x2A);
                const auto moved = [] { return true; };
                const auto ended =
                    writing ? session.link.WriteRange({1, true}, bytes, LinkTexts::kNoAnswer, moved)
                            : session.link.ReadRange({1, true}, bytes, moved);
                EXPECT_EQ(ended, outcome);
                EXPECT_EQ(user.told, boxes);
                EXPECT_FALSE(at.line.IsOpen());
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
    for (const bool lost : {false, true}) {
        for (const bool condition : {false, true}) {
            ConnectedModule at(Options(TableType::RACE, true), lost ? Faults({"lost-reply=2"}, 1) : Faults());
            AnsweringUser user;
            Session session(PortsOf(at.session, user, at.line));
            HandleLineConditions(session);
            session.link.SetAddress({1, true}, {16});
            bool struck = false;
            at.line.OnYield([&] {
                if (std::exchange(struck, true)) return;
                condition ? at.line.Raise(LineCondition::Framing) : at.line.HangUp();
            });
            Bytes byte(1);
            const auto ended = session.link.ReadRange({1, true}, byte, [] { return true; });
            SCOPED_TRACE(testing::Message() << "lost " << lost << ", condition " << condition);
            EXPECT_EQ(ended, condition ? LinkOutcome::Abandoned
                             : lost    ? LinkOutcome::LineLost
                                       : LinkOutcome::Done);
            EXPECT_EQ(user.told, condition ? std::vector<std::string>{"Framing error."}
                                 : lost    ? std::vector{kAway}
                                           : std::vector<std::string>{});
            EXPECT_EQ(session.state.LineErrorCount, condition ? 1 : 0);
        }
    }
}

// A range may begin a second after the address's acknowledge, and no later. An address that a line condition
// interrupts goes on, and so does the range behind it.
TEST(ModuleLinkTest, ARangeBeginsWithinASecondOfItsAddress) {
    for (const auto& [beyond, ended] :
         {std::pair(0ns, LinkOutcome::Done), std::pair(1ns, LinkOutcome::Abandoned)}) {
        ConnectedModule at(Options(TableType::RACE, true));
        at.line.At(1ms, [&] { at.line.Raise(LineCondition::Parity); });
        AnsweringUser user;
        Session session(PortsOf(at.session, user, at.line));
        HandleLineConditions(session);
        EXPECT_EQ(session.link.SetAddress({1, true}, {16}), LinkOutcome::Done);
        EXPECT_EQ(user.told, std::vector<std::string>{"Parity error."});
        at.line.Advance(1s - (at.line.Now() - at.line.LastArrival()) + beyond);
        Bytes byte(1);
        EXPECT_EQ(session.link.ReadRange({1, true}, byte, [] { return true; }), ended);
    }
}

// A module that waits for the rest of an address, or for a byte, takes the next command for it and
// acknowledges what was not meant. Each time it is asked it takes fewer of them, until it is at the beginning
// again.
TEST(ModuleLinkTest, AnAcknowledgeThatComesTooEarlyIsNone) {
    for (const bool echo : {false, true}) {
        for (const Bytes& cut : {Bytes{0x14}, Bytes{0x14, 0x10}, Bytes{0x16}}) {
            SCOPED_TRACE(testing::Message() << "echo " << echo << ", cut short: " << cut.size());
            ConnectedModule at(Options(TableType::RACE, echo));
            for (const auto byte : cut)
                at.module.Receive(byte);
            AnsweringUser user;
            Session session(PortsOf(at.session, user, at.line));
            const auto outcome = session.link.SetAddress({1, echo}, {0x1B0});
            EXPECT_TRUE(outcome == LinkOutcome::Refused || outcome == LinkOutcome::TimedOut);
        }
    }
    // The byte's acknowledge is there before the byte.
    ScriptedPeer peer;
    peer.Then({}).Then({}).Then({0x06}).Then({0x06}).Then({});
    ConnectedSession at(peer);
    EXPECT_EQ(at.session.link.SetAddress({1, false}, {16}), LinkOutcome::Done);
    at.state.EchoMode = false;
    EXPECT_EQ(kWrite(at.session), LinkOutcome::Refused);
}

// An address counts only if the port stayed open to the end of its last pause.
TEST(ModuleLinkTest, AnAddressLostInItsLastPauseIsNone) {
    for (const bool shaken : {false, true}) {
        ConnectedModule at(Options(TableType::RACE, true));
        at.line.OnYield([&] {
            if (at.line.Trace().empty() || at.line.Trace().back().byte != 0x06) return;
            at.line.HangUp();
            if (shaken) at.line.PlugIn();
        });
        SetEEPROMAddress(at.session, {16});
        EXPECT_FALSE(at.state.CommOK);
    }
}

}  // namespace
}  // namespace rv52::test
