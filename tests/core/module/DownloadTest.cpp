#include "app/Commands.h"
#include "module/Download.h"
#include "support/PatternModule.h"
#include "table/TableDisplay.h"

#include <gtest/gtest.h>
#include <tuple>

namespace rv52::test {
namespace {

using namespace std::chrono_literals;

constexpr const char* kTitle = "Download From EEPROM";
constexpr const char* kEmptyCaption = "Corvane RV52 Version 8.1 - Data Buffer Empty";
constexpr const char* kSaveQuestion = "Save advance table before downloading?";

void ExpectWarning(ConnectedModule& at, const std::string& text) {
    at.prompts.Expect({text, kTitle, Icon::Warning, Buttons::Ok}, Answer::Ok);
}
void ExpectSaveQuestion(ConnectedModule& at, Answer answer) {
    at.prompts.Expect({kSaveQuestion, kTitle, Icon::Warning, Buttons::YesNoCancel}, answer);
}

// An edited RACE table on screen, and parameters of its own.
AdvanceTable ShowOldTable(ConnectedModule& at) {
    AdvanceTable table(TableType::RACE);
    table.SetCell({3, 4}, 12.5);
    at.session.table.Replace(table);
    at.state.TableType = TableType::RACE;
    at.state.ModuleParameters.RPMLimit = 7700;
    at.state.EepromBuffer.fill(0x11);
    SetUpTableGrid(at.session, TableType::RACE);
    ShowTable(at.session);
    at.shell.caption = "Corvane RV52 Version 8.1 - mine.tbl";
    return table;
}

TEST(DownloadTest, BringsTableAndParametersOnScreen) {
    for (const auto type : {TableType::RACE, TableType::EX}) {
        for (const bool echo : {false, true}) {
            const auto options = PatternModule(type, echo);
            ConnectedModule at(options);
            at.state.TableType = type == TableType::EX ? TableType::RACE : TableType::EX;
            at.state.EepromBuffer.fill(0xEE);
            ExpectWarning(at, "Firmware ID: " + options.identification);
            RunCommand(at.session, mnuDownload_Click);

            WireStory story(echo);
            story.Identification(options.identification);
            TellRead(story, type);
            EXPECT_EQ(Told(at.line.Trace()), story.Text());
            EepromBuffer read{};
            for (int index = Readable(type).first; index <= Readable(type).last; ++index)
                read.at(static_cast<std::size_t>(index)) = Pattern(index);
            EXPECT_EQ(at.state.EepromBuffer, read);
            EXPECT_FALSE(at.line.IsOpen());
            EXPECT_FALSE(at.shell.progressShown);

            EXPECT_EQ(at.state.TableType, type);
            const auto& table = at.session.table.Table();
            EXPECT_EQ(table.Type(), type);
            const int base = type == TableType::EX ? 240 : 0;
            ForEachCell(type, [&](Cell cell) {
                const int index = base + 16 * (RowCount(type) - cell.row) + cell.column - 1;
                EXPECT_EQ(table.GetCell(cell), 0.176 * Pattern(index));
            });
            const ModuleParameters expected{0, 1, 2, 5700, 1424, false, false, false, true, 0xB6};
            EXPECT_EQ(at.state.ModuleParameters, expected);

            EXPECT_TRUE(at.state.TableShown);
            EXPECT_TRUE(at.connected.test.view.shown);
            EXPECT_EQ(at.shell.caption, "Corvane RV52 Version 8.1 - Downloaded Data");
            EXPECT_EQ(at.session.sheet.RowCount(), RowCount(type) + 1);
            EXPECT_EQ(at.session.sheet.Text({0, 0}), "MAP/RPM");
            EXPECT_EQ(at.session.sheet.Text({1, 0}), type == TableType::EX ? "10" : "16");
            EXPECT_EQ(at.session.sheet.Text({1, 1}), type == TableType::EX ? "28.5" : "0.5");
            EXPECT_EQ(at.session.sheet.Cursor(), (GridCell{0, 0}));
            EXPECT_EQ(at.session.sheet.Editable(), type == TableType::RACE);
            EXPECT_EQ(at.session.chart.Interactive(), type == TableType::RACE);
            EXPECT_FALSE(at.session.chart.Label().shown);
            EXPECT_EQ(at.session.chart.Template()->rows, RowCount(type));
            EXPECT_EQ(at.shell.placements, 1);
        }
    }
}

TEST(DownloadTest, CancellingTheSaveQuestionLeavesEverything) {
    ConnectedModule at(Options(TableType::EX, true));
    const auto table = ShowOldTable(at);
    ExpectSaveQuestion(at, Answer::Cancel);
    mnuDownload_Click(at.session);
    EXPECT_TRUE(at.line.Opens().empty());
    EXPECT_TRUE(at.connected.test.view.shown);
    EXPECT_EQ(at.session.table.Table(), table);
    EXPECT_EQ(at.state.EepromBuffer[0], 0x11);
    EXPECT_EQ(at.shell.caption, "Corvane RV52 Version 8.1 - mine.tbl");
}

// The last box says what went wrong; the screen is empty, the parameters are the old ones, the buffer is
// clear.
TEST(DownloadTest, TellsEveryFailure) {
    using Case = std::tuple<const char*, bool, bool, const char*>;
    const Case cases[] = {{"silent=1", true, false, "Firmware ID read failed - cannot download."},
                          {"no-terminator=1", true, false, "Firmware ID read failed - cannot download."},
                          {"refused-address=1", false, true, "Download failed."},
                          {"lost-reply=2", true, true, "Download failed."},
                          {"lost-reply=3", true, true, "Download failed."},
                          {"late-reply=290", true, true, "Download failed."}};
    for (const auto& [fault, timesOut, identified, last] : cases) {
        for (const auto answer : {Answer::Abort, Answer::Ignore}) {
            SCOPED_TRACE(fault);
            ConnectedModule at(Options(TableType::EX, true), Faults({fault}, 3));
            ShowOldTable(at);
            const auto parameters = at.state.ModuleParameters;
            ExpectSaveQuestion(at, Answer::No);
            if (identified) ExpectWarning(at, "Firmware ID: RV52A EX SIM 8.1");
            if (timesOut) at.prompts.ExpectError(kTimeoutText, answer);
            ExpectWarning(at, last);
            mnuDownload_Click(at.session);
            EXPECT_TRUE(at.prompts.Done());
            EXPECT_FALSE(at.state.TableShown);
            EXPECT_FALSE(at.connected.test.view.shown);
            EXPECT_EQ(at.shell.caption, kEmptyCaption);
            EXPECT_EQ(at.state.ModuleParameters, parameters);
            EXPECT_EQ(at.state.TableType, identified ? TableType::EX : TableType::RACE);
            EXPECT_EQ(at.state.EepromBuffer, EepromBuffer{});
            EXPECT_FALSE(at.line.IsOpen());
            EXPECT_FALSE(at.shell.progressShown);
        }
    }
}

TEST(DownloadTest, EscapeAndClosingEndTheReading) {
    for (const bool closing : {false, true}) {
        ConnectedModule at(Options(TableType::RACE, true));
        at.state.AbortRequested = true;  // pressed while idle: without effect
        ExpectWarning(at, "Firmware ID: RV52A SIM 8.1");
        ExpectWarning(at, "Download failed.");
        at.line.OnYield([&] {
            if (at.shell.progress.empty() || at.shell.progress.back().percents.size() != 20) return;
            closing ? RequestExit(at.session) : EscapePressed(at.session);
        });
        RunCommand(at.session, mnuDownload_Click);
        EXPECT_EQ(at.shell.progress.front().percents.size(), 20u);
        EXPECT_EQ(at.shell.closed, closing);
        EXPECT_EQ(at.shell.caption, kEmptyCaption);
        EXPECT_FALSE(at.state.AbortRequested);
    }
}

TEST(DownloadTest, WithoutItsTemplateTheTableIsClosedAndTheParametersStay) {
    const std::pair<TableType, std::string> templates[] = {{TableType::RACE, "RV52_Chart.oc3"},
                                                           {TableType::EX, "RV52_EX_Chart.oc3"}};
    for (const auto& [type, file] : templates) {
        const auto options = PatternModule(type, true);
        ConnectedModule at(options);
        at.connected.test.files.contents.erase("/program/" + file);
        ExpectWarning(at, "Firmware ID: " + options.identification);
        at.prompts.Expect(
            {"Chart template file " + file + " not found.", "File Open", Icon::Critical, Buttons::Ok},
            Answer::Ok);
        mnuDownload_Click(at.session);
        EXPECT_FALSE(at.state.TableShown);
        EXPECT_EQ(at.shell.caption, "Corvane RV52 Version 8.1");
        EXPECT_EQ(at.state.ModuleParameters.RPMLimit, 5700);
        EXPECT_EQ(at.state.EepromBuffer[134], Pattern(134));
    }
}

}  // namespace
}  // namespace rv52::test
