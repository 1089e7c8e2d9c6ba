#include "link/commands/LinkProcedures.h"
#include "simulator/ScriptedPeer.h"
#include "support/ConnectedSession.h"
#include "support/DismissingUser.h"

#include <gtest/gtest.h>
#include <tuple>

namespace rv52::test {
namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;
using Bytes = std::vector<std::uint8_t>;

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
        SCOPED_TRACE(id);
        ScriptedPeer peer;
        peer.Then(BytesOf(reply));
        ConnectedSession at(peer);
        at.state.EchoMode = echoBefore;
        at.state.TableType = type == TableType::EX ? TableType::RACE : TableType::EX;
        at.state.CommPort = 7;
        at.state.FirmwareId = "OLD";
        at.state.CommOK = true;
        ReadFirmwareID(at.session);
        EXPECT_EQ(at.state.CommOK, !id.empty());
        EXPECT_EQ(at.state.FirmwareId, id);
        EXPECT_EQ(at.state.EchoMode, echo);
        EXPECT_EQ(at.state.TableType, type);
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
            SCOPED_TRACE(error);
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

// From the request to the end of its last pause a line condition makes the identification none.
TEST(IdentificationTest, ADamagedOneIsNone) {
    for (const int errorsBefore : {0, 2}) {
        for (int moment = 2;; ++moment) {
            SCOPED_TRACE(moment);
            ConnectedModule at(Options(TableType::EX, true));
            AnsweringUser user;
            Session session(PortsOf(at.session, user, at.line));
            HandleLineConditions(session);
            session.state.LineErrorCount = static_cast<std::int16_t>(errorsBefore);
            session.state.CommOK = true;
            int yields = 0;
            at.line.OnYield([&] {
                if (++yields == moment) at.line.Raise(LineCondition::Parity);
            });
            ReadFirmwareID(session);
            EXPECT_FALSE(at.line.IsOpen());
            if (yields < moment) {
                EXPECT_GT(moment, 20);
                EXPECT_TRUE(session.state.CommOK);
                break;
            }
            EXPECT_EQ(user.told, std::vector<std::string>{"Parity error."});
            EXPECT_FALSE(session.state.CommOK);
            EXPECT_EQ(session.state.TableType, TableType::RACE);
            EXPECT_EQ(at.line.Opens().size(), 1u);
        }
    }
}

}  // namespace
}  // namespace rv52::test
