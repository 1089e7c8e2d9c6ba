#include "ChartSupport.h"
#include "app/Commands.h"
#include "chart/ChartEditing.h"
#include "support/IdleLine.h"
#include "support/ShownTable.h"
#include "support/TestSession.h"
#include "table/Numbers.h"

#include <gtest/gtest.h>
#include <tuple>

namespace rv52::test {
namespace {

class ChartEditingTest : public testing::Test {
 protected:
    void Show(const AdvanceTable& table) {
        ShowAs(session, table);
        session.table.OnRedraw([this] { ++redraws; });
    }
    void ShowFlat(TableType type, double degrees) { Show(FlatTable(type, degrees)); }

    double Degrees(Cell cell) const { return session.table.Table().GetCell(cell); }
    std::string Text(Cell cell) const {
        return session.sheet.Text(GridCellOf(cell, session.table.Table().Type()));
    }
    const ValueLabel& Label() const { return session.chart.Label(); }
    const ChartGesture& Gesture() const { return session.gesture; }

    IdleLine line;
    TestSession test{line};
    Session& session = test.session;
    int redraws = 0;
};

TEST_F(ChartEditingTest, PressTakesAPointAndMakesItsCellCurrent) {
    ShowFlat(TableType::EX, 12.25);
    ChartPress(session, PressKey::Plain, Cell{7, 3});
    EXPECT_EQ(Gesture().PickedCell(), (Cell{7, 3}));
    EXPECT_EQ(session.sheet.Cursor(), (GridCell{9, 7}));
    EXPECT_EQ(Label(), (ValueLabel{true, {7, 3}, "12.3"}));
    EXPECT_EQ(Degrees({7, 3}), 12.25) << "a press alone changes nothing";
    EXPECT_EQ(redraws, 1);

    ChartRelease(session);
    EXPECT_FALSE(Label().shown);
    EXPECT_EQ(Degrees({7, 3}), 12.25);
    EXPECT_EQ(Text({7, 3}), "12.3");

    ChartPress(session, PressKey::Plain, std::nullopt);
    EXPECT_FALSE(Gesture().Picked());
    EXPECT_EQ(session.sheet.Cursor(), (GridCell{9, 7})) << "a miss leaves the cursor where it is";
    ChartDrag(session, 40);
    ChartRelease(session);
    EXPECT_EQ(session.table.Table(), FlatTable(TableType::EX, 12.25));
}

TEST_F(ChartEditingTest, DraggedPointMovesInStepsWithinItsLimits) {
    const std::tuple<double, double, const char*> race[] = {
        {30.33, 30.4, "30.4"}, {30.29, 30.2, "30.2"}, {30.1, 30, "30.0"}, {30.3, 30.4, "30.4"},
        {44.95, 45, "45.0"},   {1e6, 45, "45.0"},     {-0.05, 0, "0.0"},  {-1e6, 0, "0.0"}};
    ShowFlat(TableType::RACE, 20);
    ChartPress(session, PressKey::Plain, Cell{16, 8});
    for (const auto& [mouse, value, text] : race) {
        redraws = 0;
        ChartDrag(session, mouse);
        EXPECT_NEAR(Degrees({16, 8}), value, 1e-12) << mouse;
        EXPECT_EQ(Label().text, text);
        EXPECT_EQ(Text({16, 8}), "20.0") << "the grid follows at the release";
        EXPECT_LE(redraws, 1) << "point and label are one redraw";
    }
    ChartRelease(session);
    EXPECT_EQ(Text({16, 8}), "0.0");
    EXPECT_EQ(session.sheet.Cursor(), (GridCell{1, 16}));

    ShowFlat(TableType::EX, 5);
    for (const Cell cell : {Cell{1, 1}, Cell{16, 1}, Cell{9, 11}}) {
        const double limit = session.state.ExMaxTable.GetCell(cell);
        ChartPress(session, PressKey::Plain, cell);
        ChartDrag(session, 44.9);
        EXPECT_EQ(Degrees(cell), limit);
        EXPECT_EQ(Label().text, FormatTenths(limit));
        ChartDrag(session, -3);
        EXPECT_EQ(Degrees(cell), 0);
        ChartRelease(session);
    }
}

TEST_F(ChartEditingTest, ShiftMovesTheWholeSurfaceAtTheRelease) {
    AdvanceTable table = FlatTable(TableType::RACE, 42);
    table.SetCell({1, 1}, 3.04);
    Show(table);
    MoveGridCursor(session, {2, 2});
    ChartPress(session, PressKey::Shift, Cell{4, 4});
    EXPECT_EQ(session.sheet.Cursor(), (GridCell{0, 0}));
    EXPECT_EQ(Label(), (ValueLabel{true, {4, 4}, "0.0"}));

    const std::tuple<double, double, const char*> rows[] = {
        {0.25, 0, "0.0"}, {0.26, 0.2, "0.2"}, {0.75, 0.4, "0.4"}, {-3, -1.2, "-1.2"},
        {12.5, 5, "5.0"}, {99, 5, "5.0"},     {-99, -5, "-5.0"},  {20, 5, "5.0"}};
    for (const auto& [way, offset, text] : rows) {
        ChartDrag(session, 42 + way);
        EXPECT_NEAR(Gesture().PendingOffset, offset, 1e-12) << way;
        EXPECT_EQ(Label().text, text);
        EXPECT_EQ(session.table.Table(), table) << "nothing moves while dragging";
    }
    EXPECT_EQ(ShiftedTable(session).GetCell({9, 9 - 1}), 45);

    redraws = 0;
    ChartRelease(session);
    EXPECT_EQ(redraws, 1);
    EXPECT_FALSE(Label().shown);
    ForEachCell(TableType::RACE, [&](Cell cell) {
        const bool low = cell == Cell{1, 1};
        EXPECT_EQ(Degrees(cell), low ? 3.04 + 5 : 45.0);
        EXPECT_EQ(Text(cell), low ? "8.0" : "45.0");
    });
}

TEST_F(ChartEditingTest, AnExSurfaceIsOnlyLowered) {
    ShowFlat(TableType::EX, 2);
    ChartPress(session, PressKey::Shift, Cell{4, 4});
    ChartDrag(session, 30);
    EXPECT_EQ(Label().text, "0.0");
    ChartRelease(session);
    EXPECT_EQ(session.table.Table(), FlatTable(TableType::EX, 2));

    ChartPress(session, PressKey::Shift, Cell{4, 4});
    EXPECT_EQ(Gesture().PendingOffset, 0) << "each press starts anew";
    ChartDrag(session, -30);
    EXPECT_EQ(Label().text, "-5.0");
    ChartRelease(session);
    EXPECT_EQ(session.table.Table(), FlatTable(TableType::EX, 0));
}

// Values beyond the limits come from files; only a real shift brings them back.
TEST_F(ChartEditingTest, AShiftOfNothingLeavesEveryValue) {
    AdvanceTable table = FlatTable(TableType::RACE, 10.123);
    table.SetCell({2, 2}, 60);
    table.SetCell({3, 3}, -4);
    Show(table);
    session.sheet.SetText({1, 1}, "typed");
    for (int round = 0; round < 2; ++round) {
        ChartPress(session, PressKey::Shift, Cell{1, 1});
        ChartDrag(session, 10.123);
        ChartRelease(session);
        EXPECT_EQ(session.table.Table(), table);
        EXPECT_FALSE(Label().shown);
    }
    EXPECT_EQ(Text({1, 8}), "10.1") << "the grid is filled anew all the same";

    ChartPress(session, PressKey::Shift, Cell{1, 1});
    ChartDrag(session, 11);
    ChartRelease(session);
    EXPECT_EQ(Degrees({2, 2}), 45);
    EXPECT_EQ(Degrees({3, 3}), 0);

    ChartPress(session, PressKey::Shift, std::nullopt);
    EXPECT_FALSE(Gesture().Picked());
    EXPECT_EQ(session.sheet.Cursor(), (GridCell{0, 0}));
}

TEST_F(ChartEditingTest, TheReleaseOfADoubleClickIsNotTheEndOfADrag) {
    ShowFlat(TableType::RACE, 20);
    ChartPress(session, PressKey::Plain, Cell{5, 5});
    ChartRelease(session);
    ChartDoubleClick(session);
    ChartDrag(session, 40);
    ChartPress(session, PressKey::Plain, Cell{6, 6});
    EXPECT_EQ(Gesture().PickedCell(), (Cell{5, 5})) << "nothing happens until the release";
    ChartRelease(session);
    EXPECT_EQ(session.table.Table(), FlatTable(TableType::RACE, 20));
    EXPECT_FALSE(Gesture().ReleaseSuppressed);

    ChartPress(session, PressKey::Plain, Cell{6, 6});
    ChartDrag(session, 25);
    ChartRelease(session);
    EXPECT_EQ(Degrees({6, 6}), 25);
}

TEST_F(ChartEditingTest, NothingStartsWithoutATableOrWhileACommandRuns) {
    ChartPress(session, PressKey::Plain, std::nullopt);
    ChartDrag(session, 3);
    ChartRelease(session);

    ShowFlat(TableType::RACE, 20);
    ChartPress(session, PressKey::Other, std::nullopt);
    ChartDrag(session, 30);
    RunCommand(session, [&](Session& busy) {
        ChartPress(busy, PressKey::Plain, Cell{5, 5});
        ChartDrag(busy, 30);
        ChartRelease(busy);
        ChartPress(busy, PressKey::Shift, Cell{5, 5});
        ChartDrag(busy, 30);
        ChartRelease(busy);
    });
    EXPECT_EQ(session.table.Table(), FlatTable(TableType::RACE, 20));
    EXPECT_FALSE(Label().shown);

    test.view.editorAccepts = false;
    ChartPress(session, PressKey::Plain, Cell{5, 5});
    EXPECT_FALSE(Gesture().Picked()) << "the editor's refused text stands";
    EXPECT_EQ(session.sheet.Cursor(), (GridCell{0, 0}));
}

TEST_F(ChartEditingTest, ALostReleaseLeavesGridAndTableAgreeing) {
    ShowFlat(TableType::RACE, 20);
    ChartPress(session, PressKey::Plain, Cell{5, 5});
    ChartDrag(session, 30);
    ChartDragLost(session);
    EXPECT_EQ(Text({5, 5}), "30.0");
    EXPECT_FALSE(Label().shown);

    ChartPress(session, PressKey::Shift, Cell{5, 5});
    ChartDrag(session, 90);
    ChartDragLost(session);
    EXPECT_EQ(Degrees({5, 5}), 30);

    // A command may bring a table of fewer rows between press and release.
    ShowFlat(TableType::EX, 5);
    ChartPress(session, PressKey::Plain, Cell{5, 11});
    ShowFlat(TableType::RACE, 20);
    ChartDrag(session, 3);
    ChartRelease(session);
    EXPECT_EQ(session.table.Table(), FlatTable(TableType::RACE, 20));
}

// Chosen from a menu by its keys, a command can start before the button is up.
TEST_F(ChartEditingTest, ACommandEndsTheDragAndFindsTheGridUpToDate) {
    ShowFlat(TableType::RACE, 20);
    ChartPress(session, PressKey::Plain, Cell{5, 5});
    ChartDrag(session, 30);
    std::string found;
    RunCommand(session, [&](Session&) { found = Text({5, 5}); });
    EXPECT_EQ(found, "30.0");
    EXPECT_FALSE(Label().shown);
    ChartDrag(session, 40);
    ChartRelease(session);
    EXPECT_EQ(Degrees({5, 5}), 30);
}

void ExpectAgreement(const Session& session, bool withinLimits) {
    const auto& table = session.table.Table();
    ForEachCell(table.Type(), [&](Cell cell) {
        const double value = table.GetCell(cell);
        EXPECT_EQ(session.sheet.Text(GridCellOf(cell, table.Type())), FormatTenths(value));
        if (!withinLimits) return;
        EXPECT_GE(value, 0);
        EXPECT_LE(value, CellLimit(session.state, table.Type(), cell));
    });
    EXPECT_FALSE(session.chart.Label().shown);
}

TEST_F(ChartEditingTest, AnyGesturesLeaveTableAndGridAgreeingWithinTheLimits) {
    for (unsigned seed = 1; seed <= 300; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        const auto type = seed % 2 ? TableType::RACE : TableType::EX;
        ShowFlat(type, 4);
        const auto roll = [&](int most) { return std::uniform_int_distribution<int>(0, most)(random); };
        std::uniform_real_distribution<double> mouse(-60, 100);
        for (int gesture = 0; gesture < 12; ++gesture) {
            std::optional<Cell> hit;
            if (roll(5) > 0) hit = Cell{1 + roll(15), 1 + roll(RowCount(type) - 1)};
            ChartPress(session, static_cast<PressKey>(roll(2)), hit);
            for (int step = roll(4); step > 0; --step)
                ChartDrag(session, mouse(random));
            if (roll(9) == 0) EscapePressed(session);
            if (roll(9) == 0) ChartDragLost(session);
            ChartRelease(session);
            if (roll(9) == 0) ChartDoubleClick(session);
        }
        ChartDragLost(session);
        session.chart.HideLabel();
        session.gesture = {};
        ExpectAgreement(session, true);
    }
}

}  // namespace
}  // namespace rv52::test
