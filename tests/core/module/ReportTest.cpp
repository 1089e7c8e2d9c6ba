#include "core/SessionTest.h"
#include "module/commands/Report.h"
#include "table/commands/OpenTable.h"

#include <utility>

namespace rv52::test {
namespace {

using Texts = std::vector<std::string>;

constexpr const char* kHeader = "         Emberline RV52 Ignition Module Data Printed: 2/3/2024 4:05:06 PM";
constexpr const char* kComment = "         Serial/Comment: No. 7";
constexpr const char* kRpm =
    "          MAP/RPM       0     500    1000    1500    2000    2500    3000    3500    4000    4500"
    "    5000    5500    6000    6500    7000    7500";
constexpr const char* kWords = "the printer is on fire";

class ReportTest : public SessionTest {
 protected:
    ReportTest() { session.state.BrandingLines = {"Emberline", "Street"}; }

    // Every cell tells its row and column: MAP 28 at 1500 rpm is 2.3, MAP 10 at 7500 rpm is 11.16.
    void ShowTable(TableType type) {
        AdvanceTable table(type);
        ForEachCell(type, [&](Cell cell) { table.SetCell(cell, cell.row + cell.column / 100.0); });
        Show(table);
        session.chart.ShowLabel({Column(1), Row(1)}, "1.0");
    }

    void ExpectComment(const std::string& comment = {}) {
        prompts.ExpectText({"Serial number or comment?", "Optional Information Entry", ""}, comment);
    }
    // The jobs of this print alone.
    void Print() {
        printer.jobs.clear();
        printer.discarded = 0;
        mnuPrintTable_Click(session);
    }
    // The printer works again as soon as the user has been asked.
    void PrintFailing(const char* operation, Answer answer, const std::string& comment = {}) {
        printer.failing = operation;
        ExpectComment(comment);
        prompts.ExpectError(kWords, answer);
        prompts.whileOpen = [this, commentAsked = false]() mutable {
            if (std::exchange(commentAsked, true)) printer.failing.clear();
        };
        Print();
        prompts.whileOpen = nullptr;
    }

    RecordingPrinter& printer = test.printer;
};

// A table's page down to its last row, with these lines for the comment.
Texts TableLines(TableType type, const Texts& comment = {}) {
    Texts lines{kHeader, ""};
    lines.insert(lines.end(), comment.begin(), comment.end());
    lines.insert(lines.end(), {"", "         Advance Table", "", kRpm});
    for (int row = RowCount(type); row >= 1; --row) {
        lines.push_back(std::string(15, ' ') + std::to_string(32 - 2 * row));
        for (int column = 1; column <= kColumnCount; ++column) {
            const auto text = std::to_string(row) + (column < 5 ? ".0" : column < 15 ? ".1" : ".2");
            lines.back() += std::string(8 - text.size(), ' ') + text;
        }
    }
    return lines;
}

TEST_F(ReportTest, PrintsARaceTableWithAComment) {
    ShowTable(TableType::RACE);
    session.state.FirmwareId = "RV52A 8.1";
    parameters = {-3, 5, 2, 5700, 910, true, false, false, true, 0};
    session.sheet.SetText({GridRow(1), GridColumn(1)}, "0.5");
    session.sheet.SetText({GridRow(1), GridColumn(2)}, "00123456789");
    ExpectComment("No. 7");
    Print();

    ASSERT_EQ(printer.jobs.size(), 2U);
    const auto& chart = printer.jobs[0];
    EXPECT_EQ(chart.start.points, 8);
    EXPECT_EQ(chart.start.top, 500);
    EXPECT_EQ(chart.start.path, "");
    EXPECT_EQ(chart.lines, (Texts{kHeader, kComment}));
    EXPECT_EQ(chart.charts, (std::vector{PixelRectangle{0, 417, 6250, 4167}}));
    EXPECT_FALSE(session.chart.Label().shown);

    const auto& table = printer.jobs[1];
    EXPECT_EQ(table.start.top, 2000);
    EXPECT_TRUE(table.charts.empty());
    auto lines = TableLines(TableType::RACE, {kComment});
    lines[7].replace(9 + 8, 16, "     0.500123456");
    for (const auto* text :
         {"", "", "         Firmware ID:        RV52A 8.1", "", "         Cranking Revs:                 2",
          "         Initial Timing (Deg):         -3.0", "         Rear Cylinder Offset (Deg):   5.0",
          "         Fixed RPM Limit:              5700", "", "         Select EEPROM Advance Table:  False",
          "         Fixed Initial Timing Enabled: False", "         Fixed RPM Limit Enabled:      True", "",
          "         Parameters Applicable To RV52A Only", "         VSS Frequency (Hz at 100 KPH: 910",
          "         Tach Output Enabled:          True"})
        lines.emplace_back(text);
    EXPECT_EQ(table.lines, lines);
}

// Together with the flags above, no two of the four are told alike.
TEST_F(ReportTest, TellsTheFlagsApart) {
    parameters.TachEnableFlag = true;
    ExpectComment();
    Print();
    const auto& lines = printer.jobs.at(1).lines;
    EXPECT_EQ(lines.at(10), "         Initial Timing (Deg):         0.0");
    for (const auto& [row, flag] : {std::pair(14U, "True"), {15U, "False"}, {16U, "False"}, {20U, "True"}})
        EXPECT_TRUE(lines.at(row).ends_with(flag)) << lines.at(row);
}

TEST_F(ReportTest, PrefersTheMonospacedFontOfThePrinter) {
    const std::pair<Texts, std::string> offers[] = {{{"Arial", "monospac821 bt"}, "monospac821 bt"},
                                                    {{"Monospac821 BT Bold", "Monospac821"}, "Courier New"},
                                                    {{}, "Courier New"}};
    for (const auto& [fonts, chosen] : offers) {
        SCOPED_TRACE(fonts.size());
        printer.fonts = fonts;
        ExpectComment();
        Print();
        // What is there is printed without a table too.
        EXPECT_EQ(printer.jobs.back().start.font, chosen);
        EXPECT_EQ(printer.jobs.back().lines.size(), 5U + 16U);
    }
}

// Ignore leaves the failing step out, and Retry repeats it alone; Abort ends the command and leaves no job
// behind.
TEST_F(ReportTest, AsksWhenThePrinterFails) {
    for (const auto answer : {Answer::Ignore, Answer::Retry}) {
        SCOPED_TRACE(answer == Answer::Retry ? "Retry" : "Ignore");
        PrintFailing("chart", answer);
        ASSERT_EQ(printer.jobs.size(), 2U);
        EXPECT_EQ(printer.jobs[0].charts.size(), answer == Answer::Retry ? 1U : 0U);
        EXPECT_EQ(printer.discarded, 0);
    }
    for (const auto* operation : {"begin", "line", "end"}) {
        SCOPED_TRACE(operation);
        PrintFailing(operation, Answer::Abort);
        EXPECT_TRUE(printer.jobs.empty());
        EXPECT_EQ(printer.discarded, 1);
    }
    mnuPrintSetup_Click(session);
    EXPECT_EQ(printer.setUps, 1);
    printer.failing = "setup";
    prompts.ExpectError(kWords, Answer::Ignore);
    mnuPrintSetup_Click(session);
}

TEST_F(ReportTest, APageThatIsNotTakenIsPrintedAgainFromItsStart) {
    ShowTable(TableType::RACE);
    for (const auto answer : {Answer::Retry, Answer::Ignore}) {
        SCOPED_TRACE(answer == Answer::Retry ? "Retry" : "Ignore");
        PrintFailing("end", answer, "No. 7");
        ASSERT_EQ(printer.jobs.size(), answer == Answer::Retry ? 2U : 1U);
        EXPECT_EQ(printer.jobs.back().lines.size(), 7U + 8U + 16U);
        if (answer == Answer::Ignore) continue;
        EXPECT_EQ(printer.jobs[0].lines, (Texts{kHeader, kComment}));
        EXPECT_EQ(printer.jobs[0].charts.size(), 1U);
    }
}

TEST_F(ReportTest, APageThatCannotBeBegunAsksOnce) {
    printer.failing = "begin";
    ExpectComment();
    for (int page = 1; page <= 2; ++page)
        prompts.ExpectError(kWords, Answer::Ignore);
    Print();
    EXPECT_TRUE(printer.jobs.empty());
}

TEST_F(ReportTest, LeavesOutAChartOnTheAxesOfTheOtherType) {
    // A table file of the other type whose numbers are no table: its template is there, its values are not.
    for (const auto& [shown, version] : {std::pair(TableType::RACE, "EX"), {TableType::EX, "RACE"}}) {
        SCOPED_TRACE(version);
        ShowTable(shown);
        session.state.TableShown = false;
        files["/tables/broken.tbl"] = "no numbers\r\n!Version: " + std::string(version) + "\r\n";
        prompts.ExpectNotice("Error loading /tables/broken.tbl", "File Open", Icon::Critical);
        OpenTableFile(session, "/tables/broken.tbl");
        ExpectComment();
        Print();
        ASSERT_EQ(printer.jobs.size(), 2U);
        EXPECT_EQ(printer.jobs[0].lines, Texts{kHeader});
        EXPECT_TRUE(printer.jobs[0].charts.empty());
        // The grid still holds the table from before, and its page is what the grid holds.
        auto lines = printer.jobs[1].lines;
        lines.resize(lines.size() - 16U);
        EXPECT_EQ(lines, TableLines(shown));
    }
    // A download whose template is missing has put its values on the axes from before.
    ShowTable(TableType::RACE);
    session.table.Replace(AdvanceTable(TableType::EX));
    ExpectComment();
    Print();
    EXPECT_TRUE(printer.jobs.at(0).charts.empty());
}

TEST_F(ReportTest, OneOfSeveralPrintersIsChosenFirst) {
    for (const bool chooses : {true, false}) {
        SCOPED_TRACE(chooses ? "chosen" : "cancelled");
        printer.target = PrintTarget::Unchosen;
        printer.chooses = chooses;
        ExpectComment();
        Print();
        EXPECT_EQ(printer.jobs.size(), chooses ? 2U : 0U);
    }
    EXPECT_EQ(printer.setUps, 2);
    // Nor is anything printed where the dialog fails.
    printer.chooses = true;
    PrintFailing("setup", Answer::Ignore);
    EXPECT_TRUE(printer.jobs.empty());
}

TEST_F(ReportTest, BecomesTwoDocumentsWithoutAPrinter) {
    printer.target = PrintTarget::Documents;
    files["/docs/old.pdf"] = "old";
    const MessageBox exists{"/docs/old.pdf\r\nThis file already exists.\r\n\r\nReplace existing file?",
                            "Save Report", Icon::Warning, Buttons::YesNoCancel, Answer::No};
    ExpectComment();
    prompts.ExpectSave("/docs/old.pdf");
    prompts.Expect(exists, Answer::No);
    prompts.ExpectSave("/docs/chart.pdf");
    prompts.ExpectSave("/docs/old.pdf");
    prompts.Expect(exists, Answer::Yes);
    Print();
    ASSERT_EQ(printer.jobs.size(), 2U);
    EXPECT_EQ(printer.jobs[0].start.path, "/docs/chart.pdf");
    EXPECT_EQ(printer.jobs[1].start.path, "/docs/old.pdf");
    EXPECT_EQ(prompts.dialogs.front().proposedName, "RV52 Advance Chart.pdf");
    EXPECT_EQ(prompts.dialogs.back().proposedName, "RV52 Advance Table.pdf");

    // Calling off ends the command without a word.
    ExpectComment();
    prompts.ExpectSave("/docs/old.pdf");
    prompts.Expect(exists, Answer::Cancel);
    Print();
    EXPECT_TRUE(printer.jobs.empty());
}

}  // namespace
}  // namespace rv52::test
