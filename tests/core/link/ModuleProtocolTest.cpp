#include "link/ModuleProtocol.h"
#include "simulator/ScriptedPeer.h"
#include "support/ConnectedSession.h"

#include <gtest/gtest.h>
#include <tuple>

namespace rv52::test {
namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;
using Bytes = std::vector<std::uint8_t>;

// One exchange of each kind against a module that falls silent at some point of it.
// What is missing, whether the module echoes, its replies before, the exchange, and what it has been sent.
using Silence = std::tuple<const char*, bool, std::vector<Bytes>, std::function<void(Session&)>, Bytes>;

const auto kAddress = [](Session& session) { SetEEPROMAddress(session, {0x0190}); };
const auto kRead = [](Session& session) { EXPECT_EQ(ReadEEPROM(session), std::nullopt); };
const auto kWrite = [](Session& session) {
    OpenLine(session);
    session.state.CommOK = false;
    EXPECT_FALSE(WriteEEPROM(session, 0x2A, session.state.EchoMode ? kWriteEchoes : 0));
};

const Silence kSilences[] = {
    {"no echo of the address command", true, {}, kAddress, {0x14}},
    {"no echo of the low byte", true, {{0x14}}, kAddress, {0x14, 0x90}},
    {"an echo but no acknowledge", true, {{0x14}, {0x90}, {0x01}}, kAddress, {0x14, 0x90, 0x01}},
    {"no acknowledge", false, {}, kAddress, {0x14, 0x90, 0x01}},
    {"an echo but no byte", true, {{0x15}}, kRead, {0x15}},
    {"no byte", false, {}, kRead, {0x15}},
    {"two echoes but no acknowledge", true, {{0x16}, {0x2A}}, kWrite, {0x16, 0x2A}},
    {"no acknowledge of the byte", false, {}, kWrite, {0x16, 0x2A}}};

TEST(ExchangeTest, SilenceAsksAndRetrySendsNothing) {
    for (const auto& [missing, echo, replies, exchange, sent] : kSilences) {
        for (const auto answer : {Answer::Abort, Answer::Ignore}) {
            SCOPED_TRACE(missing);
            ScriptedPeer peer;
            for (const auto& reply : replies)
                peer.Then(reply);
            ConnectedSession at(peer);
            at.state.EchoMode = echo;
            at.state.CommOK = true;
            for (const auto given : {Answer::Retry, Answer::Retry, answer})
                at.prompts.ExpectError(kTimeoutText, given);
            at.prompts.whileOpen = [&] { EXPECT_FALSE(at.line.IsOpen()); };
            at.session.steps.Procedure([&, &run = exchange](Steps&) { run(at.session); });
            EXPECT_TRUE(at.prompts.Done());
            EXPECT_FALSE(at.state.CommOK);
            EXPECT_FALSE(at.line.IsOpen());
            EXPECT_EQ(peer.received, sent);
            EXPECT_EQ(at.line.Opens().size(), 1u);
        }
    }
}

TEST(ExchangeTest, AReplyHasOneSecondAndALateOneIsNotTakenForTheNext) {
    constexpr auto latest = 1s - std::chrono::nanoseconds{2 * 178571};  // a request and a reply
    using Case = std::pair<std::chrono::nanoseconds, bool>;
    for (const auto& [delay, inTime] :
         {Case{990ms, true}, Case{latest, true}, Case{latest + 1ns, false}, Case{1010ms, false}}) {
        ScriptedPeer peer;
        peer.Then({0x2A}, delay).Then({0x42});
        ConnectedSession at(peer);
        at.state.EchoMode = false;
        // Reading lets no event in before its byte is there.
        std::chrono::nanoseconds ran{0};
        at.line.At(100ms, [&] { ran = at.line.Now(); });
        if (!inTime) at.prompts.ExpectError(kTimeoutText, Answer::Ignore);
        EXPECT_EQ(ReadEEPROM(at.session), inTime ? std::optional<std::uint8_t>(0x2A) : std::nullopt);
        EXPECT_EQ(at.state.CommOK, inTime) << delay.count();
        EXPECT_TRUE(!inTime || ran == delay + (1s - latest));

        OpenLine(at.session);
        at.line.Advance(50ms);
        EXPECT_EQ(ReadEEPROM(at.session), 0x42);
        EXPECT_TRUE(at.state.CommOK);
    }
}

Bytes BytesOf(const std::string& text) {
    return {text.begin(), text.end()};
}

TEST(IdentificationTest, TellsNameTypeAndEchoFromTheReply) {
    using Case = std::tuple<std::string, bool, std::string, bool, TableType>;
    const Case cases[] = {
        {"\x10"s + "ABC\r", false, "ABC", true, TableType::RACE},
        {"EX 2.0\r", true, "EX 2.0", false, TableType::EX},
        {"\x10v8ex1\r", false, "v8ex1", true, TableType::EX},
        {"E X\r", true, "E X", false, TableType::RACE},
        // Only codes 32 to 127 are kept, and a first byte that is neither says nothing about the echo.
        {"\x10 A\x01"s + "B\x7F" + "C\x80\xFF\n~\r", false, " AB\x7F"s + "C~", true, TableType::RACE},
        {"\x06"s + "A\x10" + "B\r", true, "AB", true, TableType::RACE},
        {"\x80"s + "A\r", false, "A", false, TableType::RACE},
        // An empty name is no success, but no error either.
        {"\x10\r", false, "", true, TableType::RACE}};
    for (const auto& [reply, echoBefore, id, echo, type] : cases) {
        ScriptedPeer peer;
        peer.Then(BytesOf(reply));
        ConnectedSession at(peer);
        at.state.EchoMode = echoBefore;
        at.state.TableType = type == TableType::EX ? TableType::RACE : TableType::EX;
        at.state.CommPort = 7;
        at.state.FirmwareId = "OLD";
        at.state.CommOK = true;
        ReadFirmwareID(at.session);
        EXPECT_EQ(at.state.CommOK, !id.empty()) << id;
        EXPECT_EQ(at.state.FirmwareId, id);
        EXPECT_EQ(at.state.EchoMode, echo) << id;
        EXPECT_EQ(at.state.TableType, type) << id;
        EXPECT_FALSE(at.line.IsOpen());
        EXPECT_EQ(peer.received, Bytes{0x10});
        EXPECT_EQ(at.line.Opens(), std::vector{7});
        EXPECT_EQ(at.line.Pauses(), std::vector{5ms});
    }
}

TEST(IdentificationTest, AsksWhenTheEndComesFirstOrNever) {
    using Case = std::tuple<std::string, const char*, const char*>;
    const char* terminator = "Firmware ID - unexpected terminator.";
    for (const auto& [reply, error, id] :
         {Case{"\rEX\r", terminator, ""}, Case{"EX 9", kTimeoutText, "EX 9"}}) {
        for (const auto answer : {Answer::Abort, Answer::Ignore}) {
            ScriptedPeer peer;
            peer.Then(BytesOf(reply));
            ConnectedSession at(peer);
            at.state.FirmwareId = "OLD";
            at.state.CommOK = true;
            at.prompts.ExpectError(error, Answer::Retry);
            at.prompts.ExpectError(error, answer);
            at.prompts.whileOpen = [&] { EXPECT_FALSE(at.line.IsOpen()); };
            ReadFirmwareID(at.session);
            EXPECT_FALSE(at.state.CommOK);
            EXPECT_EQ(at.state.FirmwareId, id);
            EXPECT_EQ(at.state.TableType, TableType::RACE);
            EXPECT_EQ(peer.received.size(), 1u);
            EXPECT_EQ(at.line.Opens().size(), 1u);
        }
    }
}

// A box that stays open while the name arrives may take longer than the module's second.
TEST(IdentificationTest, ANameLookedAtTooLateIsATimeout) {
    ConnectedModule at(Options(TableType::RACE, true));
    at.line.At(2ms, [&] { at.line.Advance(2s); });
    at.prompts.ExpectError(kTimeoutText, Answer::Abort);
    ReadFirmwareID(at.session);
    EXPECT_FALSE(at.state.CommOK);
}

}  // namespace
}  // namespace rv52::test
