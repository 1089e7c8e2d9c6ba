#include "app/state/FormResize.h"
#include "link/commands/LinkProcedures.h"
#include "link/commands/PortSetup.h"
#include "simulator/ScriptedPeer.h"
#include "support/ConnectedSession.h"
#include "support/DismissingUser.h"

#include <gtest/gtest.h>
#include <tuple>

namespace rv52::test {
namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;

// With its end, all that reaches the PC within the one second that the whole text has.
const std::string kLongest(5598, 'x');

// A far end that says this once it is asked, and a session that knew another module before.
struct Replying {
    explicit Replying(const std::string& reply) {
        peer.Then({reply.begin(), reply.end()});
        at.state.FirmwareId = "OLD";
        at.state.CommOK = true;
    }

    ScriptedPeer peer;
    ConnectedSession at{peer};
};

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
        {kLongest + "\r", true, kLongest, false, TableType::RACE},
        // An empty name is no success, but no error either.
        {"\x10\r", false, "", true, TableType::RACE}};
    for (const auto& [reply, echoBefore, id, echo, type] : cases) {
        SCOPED_TRACE(id);
        Replying far(reply);
        auto& state = far.at.state;
        state.EchoMode = echoBefore;
        state.TableType = type == TableType::EX ? TableType::RACE : TableType::EX;
        state.CommPort = 7;
        ReadFirmwareID(far.at.session);
        EXPECT_EQ(state.CommOK, !id.empty());
        EXPECT_EQ(state.FirmwareId, id);
        EXPECT_EQ(state.EchoMode, echo);
        EXPECT_EQ(state.TableType, type);
        EXPECT_FALSE(far.at.line.IsOpen());
        EXPECT_EQ(far.peer.received, std::vector<std::uint8_t>{0x10});
        EXPECT_EQ(far.at.line.Opens(), std::vector{7});
        EXPECT_EQ(far.at.line.Pauses(), std::vector{5ms});
    }
}

TEST(IdentificationTest, AsksWhenTheEndComesFirstOrNever) {
    const char* terminator = "Firmware ID - unexpected terminator.";
    const std::tuple<std::string, const char*, std::string> cases[] = {
        {"\rEX\r", terminator, ""},
        {"EX 9", kTimeoutText, "EX 9"},
        {kLongest + "x\r", kTimeoutText, kLongest + "x"}};
    for (const auto& [reply, error, id] : cases) {
        for (const auto answer : {Answer::Abort, Answer::Ignore}) {
            SCOPED_TRACE(error);
            Replying far(reply);
            far.at.prompts.ExpectError(error, Answer::Retry);
            far.at.prompts.ExpectError(error, answer);
            far.at.prompts.whileOpen = [&] { EXPECT_FALSE(far.at.line.IsOpen()); };
            ReadFirmwareID(far.at.session);
            EXPECT_FALSE(far.at.state.CommOK);
            EXPECT_EQ(far.at.state.FirmwareId, id);
            EXPECT_EQ(far.at.state.TableType, TableType::RACE);
            EXPECT_EQ(far.peer.received.size(), 1u);
            EXPECT_EQ(far.at.line.Opens().size(), 1u);
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
        int moment = 1;
        for (bool struck = true; struck;) {
            SCOPED_TRACE(++moment);
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
            struck = yields >= moment;
            EXPECT_EQ(user.told, std::vector<std::string>(struck ? 1 : 0, "Parity error."));
            EXPECT_EQ(session.state.CommOK, !struck);
            EXPECT_EQ(session.state.TableType, struck ? TableType::RACE : TableType::EX);
            EXPECT_FALSE(at.line.IsOpen());
            EXPECT_EQ(at.line.Opens().size(), 1u);
        }
        EXPECT_GT(moment, 20);
    }
}

void Raise(ConnectedModule& at, LineCondition condition, const std::string& text, Answer answer) {
    at.prompts.Expect({text, "Communications Error", Icon::Critical, Buttons::RetryCancel}, answer);
    at.line.Raise(condition);
    at.line.Yield();
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
            SCOPED_TRACE(text);
            ConnectedModule at(Options(TableType::RACE, true));
            at.line.Open(1);
            at.line.Inject(0x41);
            at.line.Advance(1ms);
            Raise(at, condition, text, answer);
            EXPECT_EQ(at.state.LineErrorCount, 1);
            EXPECT_EQ(at.line.WaitForBytes(1, at.line.Now(), Yielding::No), answer == Answer::Retry ? 0 : 1);
        }
    }
}

TEST(LineConditionsTest, TheThirdClosesThePortBeforeItsBox) {
    for (const auto answer : {Answer::Retry, Answer::Cancel}) {
        ConnectedModule at(Options(TableType::RACE, true));
        std::vector<bool> open;
        at.prompts.whileOpen = [&] { open.push_back(at.line.IsOpen()); };
        for (int error = 1; error <= 5; ++error) {
            SCOPED_TRACE(error);
            if (!at.line.IsOpen()) at.line.Open(1);
            if (error == 5) {  // the count starts anew
                Form_Resize(at.session);
                at.line.Open(1);
            }
            Raise(at, LineCondition::Parity, "Parity error.", answer);
            EXPECT_EQ(at.state.LineErrorCount, error == 5 ? 1 : error);
        }
        EXPECT_EQ(open, (std::vector{true, true, false, false, true}));
        EXPECT_EQ(at.line.Closes(), 3);
    }
}

TEST(PortSetupTest, StoresAPickedPortAtOnceAndUsesItNext) {
    ConnectedModule at(Options(TableType::RACE, true));
    auto& settings = at.connected.test.settings;
    at.line.Open(1);
    cboPort_Click(at.session, 11);
    EXPECT_EQ(at.state.CommPort, 12);
    EXPECT_EQ(settings.values["Properties/CommPort"], "12");
    EXPECT_FALSE(at.line.IsOpen());
    // A port that cannot be stored is used all the same.
    at.line.Open(12);
    settings.failWrites = true;
    at.prompts.ExpectError("settings cannot be written", Answer::Retry);
    at.prompts.ExpectError("settings cannot be written", Answer::Ignore);
    cboPort_Click(at.session, 2);
    EXPECT_EQ(at.state.CommPort, 3);
    EXPECT_FALSE(at.line.IsOpen());
}

TEST(PortSetupTest, TakesNoPortFromAStoreThatHoldsNone) {
    MemorySettings settings;
    EXPECT_EQ(StoredCommPort(settings), 1);
    const std::pair<const char*, int> stored[] = {{"12", 12}, {"255", 255}, {"0", 1},
                                                  {"256", 1}, {"-3", 1},    {"12x", 1},
                                                  {"", 1},    {"3.5", 1},   {"99999999999", 1}};
    for (const auto& [text, port] : stored) {
        settings.values["Properties/CommPort"] = text;
        EXPECT_EQ(StoredCommPort(settings), port) << text;
    }
}

}  // namespace
}  // namespace rv52::test
