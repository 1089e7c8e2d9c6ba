#include "app/RunCommand.h"
#include "module/commands/Download.h"
#include "support/PatternModule.h"
#include "support/ShownTable.h"

#include <gtest/gtest.h>
#include <tuple>

namespace rv52::test {
namespace {

constexpr const char* kTitle = "Download From EEPROM";
const std::string kBase = "Corvane RV52 Version 8.1";

void ExpectRest(const ConnectedModule& at, const std::string& caption, bool shown) {
    EXPECT_TRUE(at.connected.prompts.Done());
    EXPECT_EQ(at.shell.caption, caption);
    EXPECT_EQ(at.state.TableShown, shown);
    EXPECT_EQ(at.connected.test.view.shown, shown);
    EXPECT_FALSE(at.line.IsOpen());
    EXPECT_FALSE(at.shell.progressShown);
}

TEST(DownloadTest, BringsTableAndParametersOnScreen) {
    for (const auto type : {TableType::RACE, TableType::EX}) {
        for (const bool echo : {false, true}) {
            const bool ex = type == TableType::EX;
            const auto options = PatternModule(type, echo);
            ConnectedModule at(options);
            at.state.TableType = ex ? TableType::RACE : TableType::EX;
            at.state.EepromBuffer.fill(0xEE);
            at.prompts.ExpectNotice("Firmware ID: " + options.identification, kTitle);
            RunCommand(at.session, mnuDownload_Click);
            ExpectRest(at, kBase + " - Downloaded Data", true);

            WireStory story(echo);
            story.Identification(options.identification);
            TellRead(story, type);
            EXPECT_EQ(Told(at.line.Trace()), story.Text());
            EepromBuffer read{};
            for (int index = Readable(type).first; index <= Readable(type).last; ++index)
                read.at(static_cast<std::size_t>(index)) = Pattern(index);
            EXPECT_EQ(at.state.EepromBuffer, read);
            EXPECT_EQ(at.shell.progress.at(0).caption, "Reading EEPROM");
            EXPECT_EQ(at.shell.progress.at(0).percents, ex ? Percents(288, 287) : Percents(135, 134));

            const auto& table = at.session.table.Table();
            EXPECT_EQ(table.Type(), type);
            ForEachCell(type, [&](Cell cell) {
                const int index = (ex ? 240 : 0) + 16 * (RowCount(type) - cell.row) + cell.column - 1;
                EXPECT_EQ(table.GetCell(cell), 0.176 * Pattern(index));
            });
            const ModuleParameters expected{0, 1, 2, 5700, 1424, false, false, false, true, 0xB6};
            EXPECT_EQ(at.state.ModuleParameters, expected);

            EXPECT_EQ(at.session.sheet.Text({GridRow(1), GridColumn(0)}), ex ? "10" : "16");
            EXPECT_EQ(at.session.sheet.Text({GridRow(1), GridColumn(1)}), ex ? "28.5" : "0.5");
            EXPECT_EQ(OnScreen(at.connected.test),
                      (ex ? "EX shown, 11 rows, at 0 0, fixed, chart fixed, template of 11: "
                          : "RACE shown, 8 rows, at 0 0, editable, chart editable, template of 8: ") +
                          kBase + " - Downloaded Data");
            EXPECT_EQ(at.shell.placements, 1);
        }
    }
}

// The last box says what went wrong; the screen is empty, the parameters are the old ones, the buffer is
// clear.
TEST(DownloadTest, TellsEveryFailure) {
    using Case = std::tuple<const char*, bool, bool, const char*>;
    const Case cases[] = {{"silent=1", true, false, "Firmware ID read failed - cannot download."},
                          {"no-terminator=1", true, false, "Firmware ID read failed - cannot download."},
                          {"refused-address=1", false, true, "Download failed."},
                          {"lost-reply=2", true, true, "Download failed."},
                          {"late-reply=290", true, true, "Download failed."}};
    for (const auto& [fault, timesOut, identified, last] : cases) {
        for (const auto answer : {Answer::Abort, Answer::Ignore}) {
            SCOPED_TRACE(fault);
            ConnectedModule at(Options(TableType::EX, true), Faults({fault}, 3));
            ShowAs(at.session, FlatTable(TableType::RACE, 12.5));
            at.state.EepromBuffer.fill(0x11);
            const auto parameters = at.state.ModuleParameters;
            at.prompts.ExpectQuestion("Save advance table before downloading?", kTitle, Answer::No);
            if (identified) at.prompts.ExpectNotice("Firmware ID: RV52A EX SIM 8.1", kTitle);
            if (timesOut) at.prompts.ExpectError(kTimeoutText, answer);
            at.prompts.ExpectNotice(last, kTitle);
            mnuDownload_Click(at.session);
            ExpectRest(at, kBase + " - Data Buffer Empty", false);
            EXPECT_EQ(at.state.ModuleParameters, parameters);
            EXPECT_EQ(at.state.TableType, identified ? TableType::EX : TableType::RACE);
            EXPECT_EQ(at.state.EepromBuffer, EepromBuffer{});
        }
    }
}

}  // namespace
}  // namespace rv52::test
