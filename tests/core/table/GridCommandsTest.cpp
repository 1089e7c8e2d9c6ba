#include "core/SessionTest.h"
#include "table/Numbers.h"
#include "table/commands/CopyPasteModify.h"
#include "table/commands/EndEdit.h"
#include "table/commands/GridCursor.h"

#include <cmath>
#include <random>
#include <tuple>
#include <utility>

namespace rv52::test {
namespace {

class GridCommandsTest : public SessionTest {
 protected:
    void ExpectRefused(GridCell at, const std::string& text, const std::string& words) {
        prompts.ExpectNotice(words, "Advance Edit", Icon::Critical);
        EXPECT_FALSE(EndEdit(session, at, text)) << text;
        EXPECT_TRUE(prompts.Done()) << text;
    }
    void Select(GridCell first, GridCell last) { SelectGridCells(session, {first, last}, last); }
    void Select(GridCell at) { Select(at, at); }

    void Modify(
        std::string answer, const std::function<void()>& expectMore = [] {}) {
        prompts.ExpectText({"Enter a new value. See examples below or Help for details.\r\n"
                            "   Enter 30 to set all cells in selection to 30\r\n"
                            "   Enter -5 to subtract 5 from each cell in selection\r\n"
                            "   Enter +10 to add 10 to each cell in selection\r\n"
                            "   Enter 80% to multiply each cell in selection by 80%\r\n"
                            "   Enter -7.5% to reduce each cell in selection by 7.5%\r\n"
                            "   Enter +15% to increase each cell in selection by 15%",
                            "Modify Selection", ""},
                           std::move(answer));
        expectMore();
        mnuPopUpModify3D_Click(session);
    }
    void Copy(GridCell first, GridCell last) {
        Select(first, last);
        mnuPopUpCopy3D_Click(session);
    }
    void Paste(GridCell first, GridCell last) {
        Select(first, last);
        mnuPopupPaste3D_Click(session);
    }

    void ExpectCell(GridCell at, const std::string& text, double degrees) {
        EXPECT_EQ(Text(at), text) << at.row << " " << at.column;
        EXPECT_NEAR(Degrees(at), degrees, 1e-12) << at.row << " " << at.column;
    }

    // The first cell whose text does not say its value, or whose value is out of bounds; or nothing.
    std::string Disagreement() const {
        std::string found;
        const auto type = session.sheet.Type();
        ForEachCell(type, [&](Cell cell) {
            const double degrees = session.table.Table().GetCell(cell);
            const auto& text = Text(GridCellOf(cell, type));
            const bool agree = EntireNumber(text) == degrees || text == FormatTenths(degrees);
            const bool low = type == TableType::RACE && degrees < 0;
            if (!agree || low || degrees > CellLimit(session.state, type, cell))
                found = text + " for " + ShortestDecimal(degrees);
        });
        return found;
    }
};

TEST_F(GridCommandsTest, EditTakesRaceTextsFromZeroTo45AndNothingElse) {
    ShowFlat(TableType::RACE, 30);
    MoveGridCursor(session, {GridRow(7), GridColumn(7)});
    int redraws = 0;
    const auto drawn = session.table.OnRedraw([&] { ++redraws; });
    const std::tuple<const char*, double, const char*> accepted[] = {
        {"0", 0, "0.0"},       {"45", 45, "45.0"}, {" 27.75 ", 27.75, "27.8"},
        {"+.25", 0.25, "0.3"}, {"5.", 5, "5.0"},   {"0.1234", 0.1234, "0.1"}};
    for (const auto& [text, degrees, label] : accepted) {
        EXPECT_TRUE(EndEdit(session, {GridRow(2), GridColumn(3)}, text)) << text;
        ExpectCell({GridRow(2), GridColumn(3)}, text, degrees);
        EXPECT_EQ(std::exchange(redraws, 0), 1) << text;
        // The label keeps its place on the cursor's cell.
        EXPECT_EQ(session.chart.Label(), (ValueLabel{true, {Column(7), Row(2)}, label}));
    }
    // As other programs' clipboards give a cell; and nothing but the text stays, which Copy will take.
    for (const std::string text : {"30\n", "30\r\n", "30\t", "\t30\r"}) {
        EXPECT_TRUE(EndEdit(session, {GridRow(2), GridColumn(3)}, text)) << text;
        ExpectCell({GridRow(2), GridColumn(3)}, "30", 30);
    }
    EXPECT_TRUE(EndEdit(session, {GridRow(2), GridColumn(3)}, "-0"));
    ExpectCell({GridRow(2), GridColumn(3)}, "-0", 0);
    EXPECT_FALSE(std::signbit(Degrees(GridCell{GridRow(2), GridColumn(3)})));
    EXPECT_EQ(session.chart.Label().text, "0.0");
    EXPECT_TRUE(EndEdit(session, {GridRow(2), GridColumn(3)}, "0.1234"));
    redraws = 0;
    for (const std::string text :
         {"", "\n", "30\t31", "abc", "45.01", "-0.1", "1,5", "1e1", "5-", "nan", "0x10"})
        ExpectRefused({GridRow(2), GridColumn(3)}, text,
                      "Advance must be numeric value between zero and 45 degrees.");
    ExpectCell({GridRow(2), GridColumn(3)}, "0.1234", 0.1234);
    EXPECT_EQ(session.chart.Label().text, "0.1");
}

// A transfer that failed may leave another type in force than the table on screen was loaded as: the limit
// goes by the type in force.
TEST_F(GridCommandsTest, EditHoldsExCellsUnderTheirOwnMaximum) {
    const std::string words = "EX version advance must be numeric value between zero and ";
    for (const auto shown : {TableType::EX, TableType::RACE}) {
        ShowFlat(shown, 30);
        session.state.TableType = TableType::EX;
        session.state.ExMaxTable.SetCell({Column(3), Row(10)}, 32.5);
        EXPECT_TRUE(EndEdit(session, {GridRow(2), GridColumn(3)}, "32.5"));
        ExpectRefused({GridRow(2), GridColumn(3)}, "32.51", words + "32.5 degrees.");
        EXPECT_EQ(Degrees(GridCell{GridRow(2), GridColumn(3)}), 32.5);
    }
    ShowFlat(TableType::EX, 30);
    session.state.TableType = TableType::RACE;
    EXPECT_TRUE(EndEdit(session, {GridRow(11), GridColumn(16)}, "45"));
    EXPECT_EQ(Degrees(Cell{Column(16), Row(1)}), 45);
}

TEST_F(GridCommandsTest, ModifyStartsFromTheTextThatTheGridShows) {
    const std::string nines = "-" + std::string(10000, '9') + "%";
    const std::tuple<const char*, double, double> cases[] = {
        {"  30  ", 30, 30},    {"-5", 30, 25},         {"+10", 30, 40},  {"80%", 30, 24},
        {"-7.5%", 30, 27.75},  {"+15%", 30, 34.5},     {"+20", 30, 45},  {"50", 30, 45},
        {"-100%", 30, 0},      {"-31", 30, 0},         {"-  5", 30, 25}, {" - 7.5 %", 30, 27.75},
        {"%80", 30, 24},       {"5-", 30, 35},         {"+-5", 30, 25},  {"-+5", 30, 25},
        {"1.2.3", 30, 1.2},    {"1e-3", 30, 31},       {"", 30, 30},     {"-", 30, 30},
        {"+%", 30, 30},        {"--5", 30, 30},        {"x5", 30, 30},   {"+10%", 33.04, 36.3},
        {nines.c_str(), 0, 0}, {nines.c_str(), 30, 0}, {"-5%", 9, 8.55}, {"-150%", 0, 0}};
    for (const auto& [answer, before, degrees] : cases) {
        ShowFlat(TableType::RACE, before);
        Select({GridRow(2), GridColumn(3)}, {GridRow(3), GridColumn(4)});
        Modify(answer);
        ExpectCell({GridRow(3), GridColumn(4)}, FormatTenths(degrees), degrees);
        EXPECT_FALSE(std::signbit(Degrees(GridCell{GridRow(3), GridColumn(4)}))) << answer;
        ExpectCell({GridRow(4), GridColumn(4)}, FormatTenths(before), before);
    }
    ASSERT_TRUE(EndEdit(session, {GridRow(3), GridColumn(4)}, "10.25"));
    Modify("+0");
    ExpectCell({GridRow(3), GridColumn(4)}, "10.3", 10.25);
}

TEST_F(GridCommandsTest, ExCellsStayUnderTheirMaximumAndMayFallBelowZero) {
    ShowFlat(TableType::EX, 4);
    session.state.ExMaxTable.SetCell({Column(3), Row(10)}, 32.5);
    session.state.ExMaxTable.SetCell({Column(4), Row(10)}, 20);
    Select({GridRow(2), GridColumn(3)}, {GridRow(2), GridColumn(4)});
    Modify("+40");
    ExpectCell({GridRow(2), GridColumn(3)}, "32.5", 32.5);
    ExpectCell({GridRow(2), GridColumn(4)}, "20.0", 20);
    Modify("-30.25");
    ExpectCell({GridRow(2), GridColumn(3)}, "2.3", 2.25);
    ExpectCell({GridRow(2), GridColumn(4)}, "-10.3", -10.25);
    // A RACE table takes what is copied, even from below zero.
    Copy({GridRow(2), GridColumn(3)}, {GridRow(2), GridColumn(4)});
    ShowFlat(TableType::RACE, 30);
    Paste({GridRow(1), GridColumn(1)}, {GridRow(1), GridColumn(1)});
    EXPECT_EQ(Text(GridCell{GridRow(1), GridColumn(2)}), "-10.3");

    // And an EX table its maximum in place of more.
    Modify("29.96");
    Copy({GridRow(1), GridColumn(1)}, {GridRow(1), GridColumn(2)});
    ShowFlat(TableType::EX, 10);
    session.state.ExMaxTable.SetCell({Column(3), Row(10)}, 28.5);
    Paste({GridRow(2), GridColumn(3)}, {GridRow(2), GridColumn(3)});
    ExpectCell({GridRow(2), GridColumn(3)}, "28.5", 28.5);
}

TEST_F(GridCommandsTest, CopyTakesTextsAndPasteGivesThemCellForCell) {
    ShowFlat(TableType::RACE, 30);
    ASSERT_TRUE(EndEdit(session, {GridRow(2), GridColumn(2)}, "1.25"));
    ASSERT_TRUE(EndEdit(session, {GridRow(2), GridColumn(3)}, "2"));
    ASSERT_TRUE(EndEdit(session, {GridRow(3), GridColumn(2)}, "3.0"));
    Copy({GridRow(2), GridColumn(2)}, {GridRow(3), GridColumn(3)});
    EXPECT_EQ(session.state.CopyBuffer, "1.25\t2\r3.0\t30.0");
    EXPECT_EQ(session.state.CopyRows, 1);
    EXPECT_EQ(session.state.CopyCols, 1);
    Paste({GridRow(5), GridColumn(5)}, {GridRow(8), GridColumn(9)});
    EXPECT_EQ(session.sheet.Selection(),
              (GridRange{{GridRow(5), GridColumn(5)}, {GridRow(6), GridColumn(6)}}));
    EXPECT_EQ(session.sheet.Cursor(), (GridCell{GridRow(5), GridColumn(5)}));
    EXPECT_FALSE(session.chart.Label().shown);
    ExpectCell({GridRow(5), GridColumn(5)}, "1.25", 1.25);
    ExpectCell({GridRow(5), GridColumn(6)}, "2", 2);
    ExpectCell({GridRow(6), GridColumn(5)}, "3.0", 3);
    ExpectCell({GridRow(7), GridColumn(5)}, "30.0", 30);

    // One cell goes into all of a range, and survives another table.
    Copy({GridRow(2), GridColumn(3)}, {GridRow(2), GridColumn(3)});
    ShowFlat(TableType::EX, 10);
    Paste({GridRow(3), GridColumn(4)}, {GridRow(5), GridColumn(7)});
    ExpectCell({GridRow(3), GridColumn(4)}, "2", 2);
    ExpectCell({GridRow(5), GridColumn(7)}, "2", 2);
    ExpectCell({GridRow(6), GridColumn(7)}, "10.0", 10);
    EXPECT_EQ(session.sheet.Selection(),
              (GridRange{{GridRow(3), GridColumn(4)}, {GridRow(5), GridColumn(7)}}));

    // A block that would pass the edge is cut off there.
    Copy({GridRow(1), GridColumn(1)}, {GridRow(11), GridColumn(16)});
    ShowFlat(TableType::RACE, 30);
    Paste({GridRow(7), GridColumn(15)}, {GridRow(7), GridColumn(15)});
    EXPECT_EQ(session.sheet.Selection(),
              (GridRange{{GridRow(7), GridColumn(15)}, {GridRow(8), GridColumn(16)}}));
    ExpectCell({GridRow(8), GridColumn(16)}, "10.0", 10);
    EXPECT_EQ(Text(GridCell{GridRow(7), GridColumn(14)}) + Text(GridCell{GridRow(6), GridColumn(15)}),
              "30.030.0");
}

TEST_F(GridCommandsTest, NothingChangesOnHeadersOrWithoutACopy) {
    ShowFlat(TableType::RACE, 30);
    Paste({GridRow(2), GridColumn(2)}, {GridRow(2), GridColumn(2)});
    Copy({GridRow(0), GridColumn(1)}, {GridRow(0), GridColumn(5)});
    EXPECT_EQ(session.state.LastOutcome, "No cells are selected.");
    for (const auto& [answer, told] : {std::pair("twelve", "No number in \"twelve\": nothing was modified."),
                                       {"12", "No cells are selected."},
                                       {"", ""}}) {
        session.state.LastOutcome.clear();
        Modify(answer);
        EXPECT_EQ(session.state.LastOutcome, told);
    }
    EXPECT_EQ(session.state.CopyBuffer, "");
    EXPECT_EQ(session.table.Table(), FlatTable(TableType::RACE, 30));
    EXPECT_EQ(Text(GridCell{GridRow(0), GridColumn(1)}), "0");
}

// A table of eleven rows on the screen, one of eight in the store: a failed download leaves it so. The
// failure comes with half of the cells changed, and Retry has to bring what the first try would have brought.
TEST_F(GridCommandsTest, ARetryStartsFromTheTextsBeforeTheCommand) {
    for (const bool modify : {true, false}) {
        ShowFlat(TableType::EX, 10);
        session.state.CopyBuffer = "7";
        Select({GridRow(2), GridColumn(3)}, {GridRow(11), GridColumn(3)});
        session.table.Replace(FlatTable(TableType::RACE, 10));
        prompts.whileOpen = [&] {
            if (Text(GridCell{GridRow(2), GridColumn(3)}) != "10.0")
                session.table.Replace(FlatTable(TableType::EX, 10));
        };
        if (!modify) prompts.ExpectError("no such cell in an advance table", Answer::Retry);
        if (modify) {
            Modify("+10%", [&] { prompts.ExpectError("no such cell in an advance table", Answer::Retry); });
        } else {
            mnuPopupPaste3D_Click(session);
        }
        for (const int row : {2, 8, 11})
            ExpectCell({GridRow(row), GridColumn(3)}, modify ? "11.0" : "7", modify ? 11 : 7);
        prompts.whileOpen = {};
    }
}

// The cursor stays where a refused text is, whoever wants to move it.
TEST_F(GridCommandsTest, TheCursorLeavesNoCellUnderEdit) {
    ShowFlat(TableType::RACE, 30);
    Select({GridRow(2), GridColumn(3)});
    test.view.editorAccepts = false;
    EXPECT_FALSE(MoveGridCursor(session, {GridRow(5), GridColumn(5)}));
    EXPECT_FALSE(SelectGridCells(session, {{GridRow(1), GridColumn(1)}, {GridRow(8), GridColumn(16)}},
                                 {GridRow(1), GridColumn(1)}));
    EXPECT_TRUE(SelectGridCells(session, {{GridRow(2), GridColumn(3)}, {GridRow(4), GridColumn(4)}},
                                {GridRow(2), GridColumn(3)}));
    EXPECT_EQ(session.sheet.Cursor(), (GridCell{GridRow(2), GridColumn(3)}));
    EXPECT_EQ(session.chart.Label().at, (Cell{Column(3), Row(7)}));
}

// Whatever is done to a table in whatever order, each cell's text and value say the same: the text is the
// value as typed or pasted, or its one-decimal form. And it is drawn once for each change.
TEST_F(GridCommandsTest, TextsAndTableAgreeAfterAnyMixOfChanges) {
    std::mt19937 random(52);
    const auto below = [&](int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); };
    const char* const answers[] = {"30", "-5", "+10.37", "80%", "-7.5%", "+15%", "0.33", "nonsense", "-200"};
    int redraws = 0;
    int repaints = 0;
    const auto drawn = session.table.OnRedraw([&] { ++redraws; });
    const auto repainted = session.sheet.OnChange(
        [&](GridSheet::Change change) { repaints += change == GridSheet::Change::Texts; });
    for (const auto type : {TableType::RACE, TableType::EX}) {
        ShowFlat(type, 5.13);
        const int rows = RowCount(type);
        for (int change = 0; change < 600; ++change) {
            const GridCell first{GridRow(1 + below(rows)), GridColumn(1 + below(kColumnCount))};
            const GridCell last{GridRow(first.row + below(rows - first.row + 1)),
                                GridColumn(first.column + below(kColumnCount - first.column + 1))};
            Select(first, last);
            redraws = repaints = 0;
            const int kind = below(4);
            if (kind == 0 && type == TableType::RACE)
                EndEdit(session, first, std::to_string(below(4500) / 100.0));
            else if (kind == 1)
                Modify(answers[below(9)]);
            else if (kind == 2)
                Copy(first, last);
            else
                Paste(first, last);
            ASSERT_EQ(Disagreement(), "") << "after change " << change;
            ASSERT_LE(redraws, 1);
            ASSERT_LE(repaints, 1);
        }
    }
}

}  // namespace
}  // namespace rv52::test
