#include "support/IdleLine.h"
#include "support/ShownTable.h"
#include "support/TestSession.h"
#include "table/CellEditing.h"
#include "table/GridCursor.h"
#include "table/Numbers.h"
#include "table/SelectionCommands.h"

#include <gtest/gtest.h>
#include <random>
#include <tuple>

namespace rv52::test {
namespace {

class SelectionCommandsTest : public testing::Test {
 protected:
    void Show(TableType type, double degrees) { ShowAs(session, FlatTable(type, degrees)); }
    void Select(GridCell first, GridCell last) { SelectGridCells(session, {first, last}, last); }
    void Select(GridCell at) { Select(at, at); }

    void Modify(std::string answer) {
        test.prompts.ExpectText({"Enter a new value. See examples below or Help for details.\r\n"
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

    std::string Text(GridCell at) const { return session.sheet.Text(at); }
    double Degrees(GridCell at) const {
        return session.table.Table().GetCell(CellAt(at, session.table.Table().Type()));
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

    IdleLine line;
    TestSession test{line};
    Session& session = test.session;
};

TEST_F(SelectionCommandsTest, ModifiesFromTheTextThatTheGridShows) {
    const std::tuple<const char*, double, const char*> cases[] = {
        {"30", 30, "30.0"},       {"-5", 25, "25.0"},     {"+10", 40, "40.0"}, {"80%", 24, "24.0"},
        {"-7.5%", 27.75, "27.8"}, {"+15%", 34.5, "34.5"}, {"+20", 45, "45.0"}, {"50", 45, "45.0"},
        {"-100%", 0, "0.0"},      {"-31", 0, "0.0"},      {"abc", 30, "30.0"}, {"", 30, "30.0"}};
    for (const auto& [answer, degrees, text] : cases) {
        Show(TableType::RACE, 30);
        Select({2, 3}, {3, 4});
        Modify(answer);
        EXPECT_NEAR(Degrees({2, 3}), degrees, 1e-12) << answer;
        EXPECT_EQ(Text({3, 4}), text) << answer;
        EXPECT_EQ(Text({4, 4}), "30.0") << answer;
    }
    // 33.04 shows as 33.0, and that is what the next step starts from.
    Show(TableType::RACE, 33.04);
    Select({1, 1});
    Modify("+10%");
    EXPECT_NEAR(Degrees({1, 1}), 36.3, 1e-12);
    ASSERT_TRUE(EndEdit(session, {1, 1}, "10.25"));
    Modify("+0");
    EXPECT_EQ(Degrees({1, 1}), 10.25);
}

TEST_F(SelectionCommandsTest, HoldsExCellsUnderTheirMaximumAndLetsThemFallBelowZero) {
    Show(TableType::EX, 4);
    session.state.ExMaxTable.SetCell({3, 10}, 32.5);
    session.state.ExMaxTable.SetCell({4, 10}, 20);
    Select({2, 3}, {2, 4});
    Modify("+40");
    EXPECT_EQ(Text({2, 3}), "32.5");
    EXPECT_EQ(Degrees({2, 4}), 20);
    Modify("-30.25");
    EXPECT_EQ(Degrees({2, 3}), 2.25);
    EXPECT_EQ(Degrees({2, 4}), -10.25);
    EXPECT_EQ(Text({2, 4}), "-10.3");
    // A RACE table takes what is copied, even from below zero.
    Copy();
    Show(TableType::RACE, 30);
    Select({1, 1});
    Paste();
    EXPECT_EQ(Text({1, 2}), "-10.3");

    // And an EX table its maximum in place of more.
    Modify("44.96");
    Copy();
    Show(TableType::EX, 10);
    session.state.ExMaxTable.SetCell({3, 10}, 32.5);
    session.state.ExMaxTable.SetCell({4, 10}, 45);
    Select({2, 3});
    Paste();
    EXPECT_EQ(Text({2, 3}), "32.5");
    EXPECT_EQ(Degrees({2, 3}), 32.5);
    EXPECT_EQ(Degrees({2, 4}), 45);
}

TEST_F(SelectionCommandsTest, CopiesTextsAndPastesThemCellForCell) {
    Show(TableType::RACE, 30);
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
    EXPECT_EQ(Text({5, 5}), "1.25");
    EXPECT_EQ(Degrees({5, 5}), 1.25);
    EXPECT_EQ(Text({5, 6}), "2");
    EXPECT_EQ(Degrees({6, 5}), 3);
    EXPECT_EQ(Text({7, 5}), "30.0");

    // One cell goes into all of a range, and survives another table.
    Select({2, 3});
    Copy();
    Show(TableType::EX, 10);
    Select({3, 4}, {5, 7});
    Paste();
    EXPECT_EQ(Text({3, 4}), "2");
    EXPECT_EQ(Degrees({5, 7}), 2);
    EXPECT_EQ(session.sheet.Selection(), (GridRange{{3, 4}, {5, 7}}));
    EXPECT_EQ(Text({6, 7}), "10.0");

    // A block that would pass the edge is cut off there.
    Select({1, 1}, {11, 16});
    Copy();
    Show(TableType::RACE, 30);
    Select({7, 15});
    Paste();
    EXPECT_EQ(session.sheet.Selection(), (GridRange{{7, 15}, {8, 16}}));
    EXPECT_EQ(Text({8, 16}), "10.0");
    EXPECT_EQ(Text({7, 14}) + Text({6, 15}), "30.030.0");
}

TEST_F(SelectionCommandsTest, ChangeNothingOnHeadersOrWithoutACopy) {
    Show(TableType::RACE, 30);
    Select({2, 2});
    Paste();
    Select({0, 1}, {0, 5});
    Modify("12");
    Copy();
    EXPECT_EQ(session.state.CopyBuffer, "");
    EXPECT_EQ(session.table.Table(), FlatTable(TableType::RACE, 30));
    EXPECT_EQ(Text({0, 1}), "0");
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
        Show(type, 5.13);
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
