#include "app/StatusText.h"
#include "module/Upload.h"
#include "support/ConnectedSession.h"
#include "support/ShownTable.h"
#include "table/GridCursor.h"

#include <gtest/gtest.h>

namespace rv52::test {
namespace {

std::string Told(const Session& session, const std::string& device = "/dev/ttyUSB0") {
    return StatusText(session.state, session.table, session.sheet, device);
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
    EXPECT_EQ(Told(session), "Com33: /dev/ttyUSB0");

    ShowWith(session, TableType::RACE, {6, 3}, 27.75);
    EXPECT_EQ(Told(session), "RPM 2500, MAP 26: 27.75°, limit 45°   ·   Com33: /dev/ttyUSB0");
    session.table.SetCell({6, 3}, 72 * 0.176);
    EXPECT_EQ(Told(session, ""), "RPM 2500, MAP 26: 12.672°, limit 45°   ·   Com33: no device of its own");
    ShowWith(session, TableType::EX, {6, 3}, 27.7734375);
    session.state.ExMaxTable.SetCell({6, 3}, 31.5);
    EXPECT_EQ(Told(session), "RPM 2500, MAP 26: 27.7734375°, limit 31.5°   ·   Com33: /dev/ttyUSB0");

    MoveGridCursor(session, {0, 6});
    EXPECT_EQ(Told(session), "Com33: /dev/ttyUSB0");
    MoveGridCursor(session, {1, 6});
    HideTable(session);
    EXPECT_EQ(Told(session), "Com33: /dev/ttyUSB0");
}

TEST(StatusTextTest, SaysOnceForEachTransferWhatMayBeDoneMeanwhile) {
    ConnectedModule at(Options(TableType::RACE, true));
    ShowWith(at.session, TableType::RACE, {1, 1}, 10);
    std::vector<std::string> told;
    at.shell.onStatus = [&] {
        if (at.state.LinkWork != LinkWork::None) told.push_back(Told(at.session));
    };
    at.prompts.ExpectNotice("Upload completed.", "Upload To EEPROM");
    mnuUpload_Click(at.session);
    const std::string port = "   ·   Com1: /dev/ttyUSB0";
    EXPECT_EQ(told, (std::vector{"Programming the module. It must not be interrupted." + port,
                                 "Verifying the module. Escape stops it." + port}));
    EXPECT_EQ(at.state.LinkWork, LinkWork::None);
}

}  // namespace
}  // namespace rv52::test
