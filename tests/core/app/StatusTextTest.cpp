#include "app/RunCommand.h"
#include "app/StatusText.h"
#include "module/commands/Upload.h"
#include "support/ConnectedSession.h"
#include "support/ShownTable.h"
#include "table/commands/GridCursor.h"

#include <gtest/gtest.h>

namespace rv52::test {
namespace {

std::string Told(const Session& session, const std::string& device = "/dev/ttyUSB0") {
    return StatusText(session.state, session.table, session.sheet, session.history, device);
}

void ShowWith(Session& session, TableType type, Cell cell, double degrees) {
    AdvanceTable table(type);
    table.SetCell(cell, degrees);
    ShowAs(session, table);
    MoveGridCursor(session, GridCellOf(cell, type));
}

TEST(StatusTextTest, NamesTheCurrentCellItsExactValueAndLimitAndThePort) {
    ConnectedModule at(Options(TableType::RACE, false));
    auto& session = at.session;
    session.state.CommPort = 33;
    const std::string advice = "Open a table, make a new one, or download one from a module.   ·   ";
    EXPECT_EQ(Told(session), advice + "Com33: /dev/ttyUSB0");

    ShowWith(session, TableType::RACE, {Column(6), Row(3)}, 27.75);
    EXPECT_EQ(Told(session), "RPM 2500, MAP 26: 27.75°, limit 45°   ·   Com33: /dev/ttyUSB0");
    session.table.SetCell({Column(6), Row(3)}, 72 * 0.176);
    EXPECT_EQ(Told(session, ""),
              "RPM 2500, MAP 26: 12.672°, limit 45°   ·   1 cell changed since opened   ·   Com33: no device "
              "of its own");
    ShowWith(session, TableType::EX, {Column(6), Row(3)}, 27.7734375);
    session.state.ExMaxTable.SetCell({Column(6), Row(3)}, 31.5);
    EXPECT_EQ(Told(session), "RPM 2500, MAP 26: 27.7734375°, limit 31.5°   ·   Com33: /dev/ttyUSB0");

    MoveGridCursor(session, {GridRow(0), GridColumn(6)});
    EXPECT_EQ(Told(session), "Com33: /dev/ttyUSB0");
    MoveGridCursor(session, {GridRow(1), GridColumn(6)});
    HideTable(session);
    EXPECT_EQ(Told(session), advice + "Com33: /dev/ttyUSB0");
}

// A letter that was flipped on the wire makes another module of the one at the other end: what the program
// takes it for is there to be read before the engine is started.
TEST(StatusTextTest, SaysWhomItTalksToWhatMayBeDoneMeanwhileAndHowItEnded) {
    auto options = Options(TableType::EX, true);
    options.identification = "RV52A EY SIM 8.1 of the longest name there is";
    ConnectedModule at(options);
    ShowWith(at.session, TableType::RACE, {Column(1), Row(1)}, 10);
    at.state.TableType = TableType::RACE;
    std::vector<std::string> told;
    at.shell.onStatus = [&] {
        if (at.state.LinkWork != LinkWork::None || !at.state.LastOutcome.empty())
            told.push_back(Told(at.session));
    };
    at.prompts.ExpectNotice("Upload completed.", "Upload To EEPROM");
    RunCommand(at.session, mnuUpload_Click);
    const std::string taken = "RV52A EY SIM 8.1 of the longest name th…, taken for RACE.";
    const std::string port = "   ·   Com1: /dev/ttyUSB0";
    EXPECT_EQ(told, (std::vector{"Programming " + taken + " It must not be interrupted." + port,
                                 "Verifying the module. Escape stops it." + port,
                                 "Upload completed: " + taken + port}));
    EXPECT_EQ(at.state.LinkWork, LinkWork::None);
    EXPECT_EQ(Told(at.session), "Upload completed: " + taken + port);
    EXPECT_EQ(at.line.HoldsEnded(), 1);

    // Until the next command, or the next key or click while none runs.
    at.prompts.ExpectNotice("Upload completed.", "Upload To EEPROM");
    RunCommand(at.session, [&](Session& running) {
        EXPECT_EQ(running.state.LastOutcome, "");
        mnuUpload_Click(running);
        UserActed(running);
    });
    EXPECT_EQ(Told(at.session), "Upload completed: " + taken + port);
    UserActed(at.session);
    EXPECT_EQ(Told(at.session), "RPM 0, MAP 30: 10°, limit 45°" + port);
}

}  // namespace
}  // namespace rv52::test
