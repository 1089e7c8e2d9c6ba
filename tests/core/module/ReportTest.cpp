#include "module/Report.h"
#include "support/IdleLine.h"
#include "support/TestSession.h"
#include "table/TableDisplay.h"

#include <gtest/gtest.h>
#include <utility>

namespace rv52 {
namespace {

using Texts = std::vector<std::string>;

constexpr const char* kHeader = "         Emberline RV52 Ignition Module Data Printed: 2/3/2024 4:05:06 PM";
constexpr const char* kRpm =
    "          MAP/RPM       0     500    1000    1500    2000    2500    3000    3500    4000    4500"
    "    5000    5500    6000    6500    7000    7500";

class ReportTest : public testing::Test {
 protected:
    ReportTest() { session_.state.BrandingLines = {"Emberline", "Street"}; }

    // Every cell tells its row and column: MAP 28 at 1500 rpm is 2.3, MAP 10 at 7500 rpm is 11.16.
    void ShowTable(TableType type) {
        AdvanceTable table(type);
        ForEachCell(type, [&](Cell cell) { table.SetCell(cell, cell.row + cell.column / 100.0); });
        session_.state.TableType = type;
        session_.table.Replace(table);
        SetUpTableGrid(session_, type);
        CopyChartToGrid(session_);
        session_.chart.ShowLabel({1, 1}, "1.0");
    }

    void ExpectComment(const std::string& comment = {}) {
        test_.prompts.ExpectText({"Serial number or comment?", "Optional Information Entry", ""}, comment);
    }

    void Print(const std::string& comment) {
        ExpectComment(comment);
        mnuPrintTable_Click(session_);
    }

    test::IdleLine line_;
    test::TestSession test_{line_};
    Session& session_ = test_.session;
    test::RecordingPrinter& printer_ = test_.printer;
};

std::string GridLine(int map, const std::string& whole) {
    std::string line = "         " + std::string(6, ' ') + std::to_string(map);
    for (int column = 1; column <= kColumnCount; ++column) {
        const std::string text = whole + (column < 5 ? ".0" : column < 15 ? ".1" : ".2");
        line += std::string(8 - text.size(), ' ') + text;
    }
    return line;
}

TEST_F(ReportTest, PrintsARaceTableWithAComment) {
    ShowTable(TableType::RACE);
    session_.state.FirmwareId = "RV52A 8.1";
    session_.state.ModuleParameters = {-3, 5, 2, 5700, 910, true, false, true, false, 0};
    session_.sheet.SetText({1, 1}, "0.5");
    session_.sheet.SetText({1, 2}, "00123456789");
    Print("No. 7");

    ASSERT_EQ(printer_.jobs.size(), 2U);
    const auto& chart = printer_.jobs[0];
    EXPECT_EQ(chart.start.font, "Courier New");
    EXPECT_EQ(chart.start.points, 8);
    EXPECT_EQ(chart.start.top, 500);
    EXPECT_EQ(chart.start.path, "");
    EXPECT_EQ(chart.lines, (Texts{kHeader, "         Serial/Comment: No. 7"}));
    EXPECT_EQ(chart.charts, (std::vector{PixelRectangle{0, 417, 6250, 4167}}));
    EXPECT_FALSE(session_.chart.Label().shown);

    auto firstRow = GridLine(16, "8");
    firstRow.replace(9 + 8, 16, "     0.500123456");
    const auto& table = printer_.jobs[1];
    EXPECT_EQ(table.start.top, 2000);
    EXPECT_TRUE(table.charts.empty());
    EXPECT_EQ(table.lines, (Texts{kHeader,
                                  "",
                                  "         Serial/Comment: No. 7",
                                  "",
                                  "         Advance Table",
                                  "",
                                  kRpm,
                                  firstRow,
                                  GridLine(18, "7"),
                                  GridLine(20, "6"),
                                  GridLine(22, "5"),
                                  GridLine(24, "4"),
                                  GridLine(26, "3"),
                                  GridLine(28, "2"),
                                  GridLine(30, "1"),
                                  "",
                                  "",
                                  "         Firmware ID:        RV52A 8.1",
                                  "",
                                  "         Cranking Revs:                 2",
                                  "         Initial Timing (Deg):         -3.0",
                                  "         Rear Cylinder Offset (Deg):   5.0",
                                  "         Fixed RPM Limit:              5700",
                                  "",
                                  "         Select EEPROM Advance Table:  False",
                                  "         Fixed Initial Timing Enabled: True",
                                  "         Fixed RPM Limit Enabled:      True",
                                  "",
                                  "         Parameters Applicable To RV52A Only",
                                  "         VSS Frequency (Hz at 100 KPH: 910",
                                  "         Tach Output Enabled:          False"}));
    EXPECT_EQ(table.lines[7].size(), 9U + 136U);
}

TEST_F(ReportTest, PrintsAnExTableWithoutAComment) {
    ShowTable(TableType::EX);
    Print("");

    ASSERT_EQ(printer_.jobs.size(), 2U);
    EXPECT_EQ(printer_.jobs[0].lines, Texts{kHeader});
    auto lines = printer_.jobs[1].lines;
    ASSERT_EQ(lines.size(), 5U + 12U + 16U);
    // The empty lines around the comment's place stay.
    EXPECT_EQ(Texts(lines.begin(), lines.begin() + 7),
              (Texts{kHeader, "", "", "         Advance Table", "", kRpm, GridLine(10, "11")}));
    EXPECT_EQ(lines[15], GridLine(28, "2"));
    EXPECT_EQ(lines[16], GridLine(30, "1"));
    EXPECT_EQ(lines[19], "         Firmware ID:        ");
    EXPECT_EQ(lines[22], "         Initial Timing (Deg):         0.0");
    EXPECT_EQ(lines[31], "         VSS Frequency (Hz at 100 KPH: 1424");
}

TEST_F(ReportTest, PrintsWhatIsThereWithoutATable) {
    Print("");
    ASSERT_EQ(printer_.jobs.size(), 2U);
    EXPECT_EQ(printer_.jobs[1].lines.size(), 5U + 16U);
    EXPECT_EQ(printer_.jobs[1].lines[3], "         Advance Table");
    EXPECT_EQ(printer_.jobs[1].lines[7], "         Firmware ID:        ");
}

TEST_F(ReportTest, PrefersTheMonospacedFontOfThePrinter) {
    const std::vector<std::pair<Texts, std::string>> offers{
        {{"Arial", "monospac821 bt"}, "monospac821 bt"},
        {{"Monospac821 BT Bold", "Monospac821"}, "Courier New"},
        {{}, "Courier New"},
    };
    for (const auto& [fonts, chosen] : offers) {
        printer_.fonts = fonts;
        Print("");
        EXPECT_EQ(printer_.jobs.back().start.font, chosen);
    }
}

TEST_F(ReportTest, AsksWhenThePrinterFails) {
    const std::string words = "the printer is on fire";
    // Retry repeats the failing step alone.
    printer_.failing = "chart";
    ExpectComment();
    test_.prompts.ExpectError(words, Answer::Retry);
    bool commentAsked = false;
    test_.prompts.whileOpen = [&] {
        if (std::exchange(commentAsked, true)) printer_.failing.clear();
    };
    mnuPrintTable_Click(session_);
    ASSERT_EQ(printer_.jobs.size(), 2U);
    EXPECT_EQ(printer_.jobs[0].charts.size(), 1U);
    EXPECT_EQ(printer_.discarded, 0);
    test_.prompts.whileOpen = nullptr;

    // Ignore leaves the step out and goes on.
    printer_.failing = "chart";
    printer_.jobs.clear();
    ExpectComment();
    test_.prompts.ExpectError(words, Answer::Ignore);
    mnuPrintTable_Click(session_);
    ASSERT_EQ(printer_.jobs.size(), 2U);
    EXPECT_TRUE(printer_.jobs[0].charts.empty());

    // Abort ends the command and leaves no job behind.
    for (const auto* operation : {"begin", "line", "end"}) {
        printer_.failing = operation;
        printer_.jobs.clear();
        printer_.discarded = 0;
        ExpectComment();
        test_.prompts.ExpectError(words, Answer::Abort);
        mnuPrintTable_Click(session_);
        EXPECT_TRUE(printer_.jobs.empty());
        EXPECT_EQ(printer_.discarded, 1);
    }
}

TEST_F(ReportTest, BecomesTwoDocumentsWithoutAPrinter) {
    printer_.present = false;
    test_.files.contents["/docs/old.pdf"] = "old";
    const MessageBox exists{"/docs/old.pdf\r\nThis file already exists.\r\n\r\nReplace existing file?",
                            "Save Report", Icon::Warning, Buttons::YesNoCancel, Answer::No};
    ExpectComment();
    test_.prompts.ExpectSave("/docs/old.pdf");
    test_.prompts.Expect(exists, Answer::No);
    test_.prompts.ExpectSave("/docs/chart.pdf");
    test_.prompts.ExpectSave("/docs/old.pdf");
    test_.prompts.Expect(exists, Answer::Yes);
    mnuPrintTable_Click(session_);
    ASSERT_EQ(printer_.jobs.size(), 2U);
    EXPECT_EQ(printer_.jobs[0].start.path, "/docs/chart.pdf");
    EXPECT_EQ(printer_.jobs[1].start.path, "/docs/old.pdf");
    EXPECT_EQ(test_.prompts.dialogs.front().proposedName, "RV52 Advance Chart.pdf");
    EXPECT_EQ(test_.prompts.dialogs.back().proposedName, "RV52 Advance Table.pdf");

    // Calling off ends the command without a word.
    printer_.jobs.clear();
    ExpectComment();
    test_.prompts.ExpectSave("");
    mnuPrintTable_Click(session_);
    ExpectComment();
    test_.prompts.ExpectSave("/docs/old.pdf");
    test_.prompts.Expect(exists, Answer::Cancel);
    mnuPrintTable_Click(session_);
    EXPECT_TRUE(printer_.jobs.empty());
}

TEST_F(ReportTest, SetsUpThePrinter) {
    mnuPrintSetup_Click(session_);
    EXPECT_EQ(printer_.setUps, 1);
    printer_.failing = "setup";
    test_.prompts.ExpectError("the printer is on fire", Answer::Ignore);
    mnuPrintSetup_Click(session_);
    EXPECT_EQ(printer_.setUps, 1);
}

}  // namespace
}  // namespace rv52
