#include "core/Desk.h"
#include "table/CellEditing.h"
#include "table/GridCursor.h"
#include "table/Numbers.h"
#include "table/SelectionCommands.h"

#include <random>
#include <tuple>

namespace rv52::test {
namespace {

class SelectionCommandsTest : public Desk {
 protected:
    void Select(GridCell first, GridCell last) { SelectGridCells(session, {first, last}, last); }
    void Select(GridCell at) { Select(at, at); }

    void Modify(std::string answer) {
        prompts.ExpectText({"Enter a new value. See examples below or Help for details.\r\n"
                            "   Enter 30 to set all cells in selection to 30\r\n"
                            "   Enter -5 to subtract 5 from each cell in selection\r\n"
                            "   Enter +10 to add 10 to each cell in selection\r\n"
                            "   Enter 80% to multiply each cell in selection by 80%\r\n"
                            "   Enter -7.5% to reduce each cell in selection by 7.5%\r\n"
                            "   Enter +15% to increase each cell in selection by 15%",
                            "Modify Selection", ""},
                           std::move(answer));
        mnuPopUpModify3D_Click(session);
    }
    void Copy() { mnuPopUpCopy3D_Click(session); }
    void Paste() { mnuPopupPaste3D_Click(session); }

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

TEST_F(SelectionCommandsTest, ModifiesFromTheTextThatTheGridShows) {
    const std::pair<const char*, double> cases[] = {
        {"  30  ", 30}, {"-5", 25}, {"+10", 40},  {"80%", 24}, {"-7.5%", 27.75}, {"+15%", 34.5},
        {"+20", 45},    {"50", 45}, {"-100%", 0}, {"-31", 0},  {"-  5", 25},     {" - 7.5 %", 27.75},
        {"%80", 24},    {"5-", 35}, {"+-5", 25},  {"-+5", 25}, {"1.2.3", 1.2},   {"1e-3", 31},
        {"", 30},       {"-", 30},  {"+%", 30},   {"--5", 30}, {"x5", 30}};
    for (const auto& [answer, degrees] : cases) {
        ShowFlat(TableType::RACE, 30);
        Select({2, 3}, {3, 4});
        Modify(answer);
        EXPECT_NEAR(Degrees(GridCell{2, 3}), degrees, 1e-12) << answer;
        EXPECT_EQ(Text(GridCell{3, 4}), FormatTenths(degrees)) << answer;
        EXPECT_EQ(Text(GridCell{4, 4}), "30.0") << answer;
    }
    // No answer is so long that the result is no number.
    for (const double degrees : {0, 30}) {
        ShowFlat(TableType::RACE, degrees);
        Select({1, 1});
        Modify("-" + std::string(10000, '9') + "%");
        EXPECT_EQ(Text(GridCell{1, 1}), "0.0");
    }
    // 33.04 shows as 33.0, and that is what the next step starts from.
    ShowFlat(TableType::RACE, 33.04);
    Select({1, 1});
    Modify("+10%");
    EXPECT_NEAR(Degrees(GridCell{1, 1}), 36.3, 1e-12);
    ASSERT_TRUE(EndEdit(session, {1, 1}, "10.25"));
    Modify("+0");
    EXPECT_EQ(Degrees(GridCell{1, 1}), 10.25);
}

TEST_F(SelectionCommandsTest, HoldsExCellsUnderTheirMaximumAndLetsThemFallBelowZero) {
    ShowFlat(TableType::EX, 4);
    session.state.ExMaxTable.SetCell({3, 10}, 32.5);
    session.state.ExMaxTable.SetCell({4, 10}, 20);
    Select({2, 3}, {2, 4});
    Modify("+40");
    EXPECT_EQ(Text(GridCell{2, 3}), "32.5");
    EXPECT_EQ(Degrees(GridCell{2, 4}), 20);
    Modify("-30.25");
    EXPECT_EQ(Degrees(GridCell{2, 3}), 2.25);
    EXPECT_EQ(Degrees(GridCell{2, 4}), -10.25);
    EXPECT_EQ(Text(GridCell{2, 4}), "-10.3");
    // A RACE table takes what is copied, even from below zero.
    Copy();
    ShowFlat(TableType::RACE, 30);
    Select({1, 1});
    Paste();
    EXPECT_EQ(Text(GridCell{1, 2}), "-10.3");

    // And an EX table its maximum in place of more.
    Modify("44.96");
    Copy();
    ShowFlat(TableType::EX, 10);
    session.state.ExMaxTable.SetCell({3, 10}, 32.5);
    session.state.ExMaxTable.SetCell({4, 10}, 45);
    Select({2, 3});
    Paste();
    EXPECT_EQ(Text(GridCell{2, 3}), "32.5");
    EXPECT_EQ(Degrees(GridCell{2, 3}), 32.5);
    EXPECT_EQ(Degrees(GridCell{2, 4}), 45);
}

TEST_F(SelectionCommandsTest, CopiesTextsAndPastesThemCellForCell) {
    ShowFlat(TableType::RACE, 30);
    ASSERT_TRUE(EndEdit(session, {2, 2}, "1.25"));
    ASSERT_TRUE(EndEdit(session, {2, 3}, "2"));
    ASSERT_TRUE(EndEdit(session, {3, 2}, "3.0"));
    Select({2, 2}, {3, 3});
    Copy();
    EXPECT_EQ(session.state.CopyBuffer, "1.25\t2\r3.0\t30.0");
    EXPECT_EQ(session.state.CopyRows, 1);
    EXPECT_EQ(session.state.CopyCols, 1);

    Select({5, 5}, {8, 9});
    Paste();
    EXPECT_EQ(session.sheet.Selection(), (GridRange{{5, 5}, {6, 6}}));
    EXPECT_EQ(session.sheet.Cursor(), (GridCell{5, 5}));
    EXPECT_FALSE(session.chart.Label().shown);
    EXPECT_EQ(Text(GridCell{5, 5}), "1.25");
    EXPECT_EQ(Degrees(GridCell{5, 5}), 1.25);
    EXPECT_EQ(Text(GridCell{5, 6}), "2");
    EXPECT_EQ(Degrees(GridCell{6, 5}), 3);
    EXPECT_EQ(Text(GridCell{7, 5}), "30.0");

    // One cell goes into all of a range, and survives another table.
    Select({2, 3});
    Copy();
    ShowFlat(TableType::EX, 10);
    Select({3, 4}, {5, 7});
    Paste();
    EXPECT_EQ(Text(GridCell{3, 4}), "2");
    EXPECT_EQ(Degrees(GridCell{5, 7}), 2);
    EXPECT_EQ(session.sheet.Selection(), (GridRange{{3, 4}, {5, 7}}));
    EXPECT_EQ(Text(GridCell{6, 7}), "10.0");

    // A block that would pass the edge is cut off there.
    Select({1, 1}, {11, 16});
    Copy();
    ShowFlat(TableType::RACE, 30);
    Select({7, 15});
    Paste();
    EXPECT_EQ(session.sheet.Selection(), (GridRange{{7, 15}, {8, 16}}));
    EXPECT_EQ(Text(GridCell{8, 16}), "10.0");
    EXPECT_EQ(Text(GridCell{7, 14}) + Text(GridCell{6, 15}), "30.030.0");
}

TEST_F(SelectionCommandsTest, ChangeNothingOnHeadersOrWithoutACopy) {
    ShowFlat(TableType::RACE, 30);
    Select({2, 2});
    Paste();
    Select({0, 1}, {0, 5});
    Modify("12");
    Copy();
    EXPECT_EQ(session.state.CopyBuffer, "");
    EXPECT_EQ(session.table.Table(), FlatTable(TableType::RACE, 30));
    EXPECT_EQ(Text(GridCell{0, 1}), "0");
}

// Whatever is done to a table in whatever order, each cell's text and value say the same: the text is the
// value as typed or pasted, or its one-decimal form. And it is drawn once for each change.
TEST_F(SelectionCommandsTest, TextsAndTableAgreeAfterAnyMixOfChanges) {
    std::mt19937 random(52);
    const auto below = [&](int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); };
    const char* const answers[] = {"30", "-5", "+10.37", "80%", "-7.5%", "+15%", "0.33", "nonsense", "-200"};
    int redraws = 0;
    int repaints = 0;
    session.table.OnRedraw([&] { ++redraws; });
    session.sheet.OnChange([&](GridSheet::Change change) { repaints += change == GridSheet::Change::Texts; });
    for (const auto type : {TableType::RACE, TableType::EX}) {
        ShowFlat(type, 5.13);
        const int rows = RowCount(type);
        for (int change = 0; change < 600; ++change) {
            const GridCell first{1 + below(rows), 1 + below(kColumnCount)};
            Select(first, {first.row + below(rows - first.row + 1),
                           first.column + below(kColumnCount - first.column + 1)});
            redraws = repaints = 0;
            const int kind = below(4);
            if (kind == 0 && type == TableType::RACE)
                EndEdit(session, first, std::to_string(below(4500) / 100.0));
            else if (kind == 1)
                Modify(answers[below(9)]);
            else if (kind == 2)
                Copy();
            else
                Paste();
            ASSERT_EQ(Disagreement(), "") << "after change " << change;
            ASSERT_LE(redraws, 1);
            ASSERT_LE(repaints, 1);
        }
    }
}

}  // namespace
}  // namespace rv52::test
