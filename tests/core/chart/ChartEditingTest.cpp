#include "app/RunCommand.h"
#include "app/WindowKeys.h"
#include "chart/commands/ChartEditing.h"
#include "core/SessionTest.h"
#include "table/Numbers.h"
#include "table/commands/GridCursor.h"

#include <random>
#include <tuple>

namespace rv52::test {
namespace {

class ChartEditingTest : public SessionTest {
 protected:
    void ExpectFlat(double degrees) { EXPECT_EQ(session.table.Table(), FlatTable(Type(), degrees)); }
    // A whole gesture, its button lost or released.
    void Gesture(PressKey key, std::optional<Cell> hit, double mouse, void (*end)(Session&) = ChartRelease) {
        ChartPress(session, key, hit);
        ChartDrag(session, mouse);
        redraws = 0;
        end(session);
        EXPECT_FALSE(Label().shown);
    }
    const ValueLabel& Label() const { return session.chart.Label(); }

    int redraws = 0;
    const Listening listening = session.table.OnRedraw([this] { ++redraws; });
};

TEST_F(ChartEditingTest, PressTakesAPointAndMakesItsCellCurrent) {
    ShowFlat(TableType::EX, 12.25);
    redraws = 0;
    ChartPress(session, PressKey::Plain, Cell{Column(7), Row(3)});
    EXPECT_EQ(session.gesture.PickedCell(), (Cell{Column(7), Row(3)}));
    EXPECT_EQ(session.sheet.Cursor(), (GridCell{GridRow(9), GridColumn(7)}));
    EXPECT_EQ(Label(), (ValueLabel{true, {Column(7), Row(3)}, "12.3"}));
    EXPECT_EQ(redraws, 1);
    EscapePressed(session);
    EXPECT_FALSE(Label().shown);
    ChartRelease(session);
    EXPECT_EQ(Text(Cell{Column(7), Row(3)}), "12.3");

    Gesture(PressKey::Plain, std::nullopt, 40);
    EXPECT_FALSE(session.gesture.Picked());
    EXPECT_EQ(session.sheet.Cursor(), (GridCell{GridRow(9), GridColumn(7)}))
        << "a miss leaves the cursor where it is";
    ExpectFlat(12.25);  // neither a press alone nor a miss changes anything
}

TEST_F(ChartEditingTest, DraggedPointMovesInStepsWithinItsLimits) {
    const std::tuple<double, double, const char*> race[] = {{30.33, 30.4, "30.4"}, {30.29, 30.2, "30.2"},
                                                            {30.1, 30, "30.0"},    {44.95, 45, "45.0"},
                                                            {1e6, 45, "45.0"},     {-1e6, 0, "0.0"}};
    ShowFlat(TableType::RACE, 20);
    ChartPress(session, PressKey::Plain, Cell{Column(16), Row(8)});
    for (const auto& [mouse, value, text] : race) {
        redraws = 0;
        ChartDrag(session, mouse);
        EXPECT_NEAR(Degrees(Cell{Column(16), Row(8)}), value, 1e-12) << mouse;
        EXPECT_EQ(Label().text, text);
        EXPECT_EQ(Text(Cell{Column(16), Row(8)}), "20.0") << "the grid follows at the release";
        EXPECT_EQ(redraws, 1) << "point and label are one redraw";
    }
    ChartRelease(session);
    EXPECT_EQ(Text(Cell{Column(16), Row(8)}), "0.0");

    ShowFlat(TableType::EX, 5);
    const double limit = session.state.ExMaxTable.GetCell({Column(9), Row(11)});
    Gesture(PressKey::Plain, Cell{Column(9), Row(11)}, 44.9);
    EXPECT_EQ(Degrees(Cell{Column(9), Row(11)}), limit);
    EXPECT_EQ(Text(Cell{Column(9), Row(11)}), FormatTenths(limit));
}

TEST_F(ChartEditingTest, ShiftMovesTheWholeSurfaceAtTheRelease) {
    // Values beyond the limits come from files; only a real shift brings them back.
    AdvanceTable table = FlatTable(TableType::RACE, 42);
    table.SetCell({Column(1), Row(1)}, 3.04);
    table.SetCell({Column(2), Row(2)}, 60);
    Show(table);
    MoveGridCursor(session, {GridRow(2), GridColumn(2)});
    session.sheet.SetText({GridRow(1), GridColumn(1)}, "typed");
    Gesture(PressKey::Shift, Cell{Column(4), Row(4)}, 42);
    EXPECT_EQ(session.table.Table(), table);
    EXPECT_EQ(Text(GridCell{GridRow(1), GridColumn(1)}), "42.0") << "the grid is filled anew all the same";
    EXPECT_EQ(session.sheet.Cursor(), (GridCell{GridRow(0), GridColumn(0)}));

    const std::tuple<double, double, const char*> rows[] = {
        {0.25, 0, "0.0"}, {0.26, 0.2, "0.2"}, {0.75, 0.4, "0.4"}, {-3, -1.2, "-1.2"},
        {12.5, 5, "5.0"}, {99, 5, "5.0"},     {-99, -5, "-5.0"}};
    ChartPress(session, PressKey::Shift, Cell{Column(4), Row(4)});
    EXPECT_EQ(Label(), (ValueLabel{true, {Column(4), Row(4)}, "0.0"}));
    for (const auto& [way, offset, text] : rows) {
        ChartDrag(session, 42 + way);
        EXPECT_NEAR(session.gesture.PendingOffset, offset, 1e-12) << way;
        EXPECT_EQ(Label().text, text);
        EXPECT_EQ(session.table.Table(), table) << "nothing moves while dragging";
    }
    Gesture(PressKey::Shift, Cell{Column(4), Row(4)}, 62);
    EXPECT_EQ(redraws, 1);
    EXPECT_EQ(Text(Cell{Column(1), Row(1)}), "8.0");
    session.table.SetCell({Column(1), Row(1)}, 45);
    ExpectFlat(45);

    // An EX surface is only lowered, no cell below zero, and each press starts anew.
    table = FlatTable(TableType::EX, 6);
    table.SetCell({Column(3), Row(3)}, 4);
    Show(table);
    Gesture(PressKey::Shift, Cell{Column(4), Row(4)}, 30);
    EXPECT_EQ(session.table.Table(), table);
    Gesture(PressKey::Shift, Cell{Column(4), Row(4)}, -30);
    EXPECT_EQ(Degrees(Cell{Column(3), Row(3)}), 0);
    session.table.SetCell({Column(3), Row(3)}, 1);
    ChartPress(session, PressKey::Shift, Cell{Column(4), Row(4)});
    ChartRelease(session);
    ExpectFlat(1);
}

TEST_F(ChartEditingTest, TheReleaseOfADoubleClickIsNotTheEndOfADrag) {
    ShowFlat(TableType::RACE, 20);
    ChartDoubleClick(session);
    Gesture(PressKey::Plain, Cell{Column(6), Row(6)}, 40);
    ExpectFlat(20);
    Gesture(PressKey::Plain, Cell{Column(6), Row(6)}, 25);
    EXPECT_EQ(Degrees(Cell{Column(6), Row(6)}), 25);
}

TEST_F(ChartEditingTest, ADoubleClickInTheMiddleOfADragLeavesGridAndTableAgreeing) {
    ShowFlat(TableType::RACE, 20);
    Gesture(PressKey::Plain, Cell{Column(6), Row(6)}, 25, ChartDoubleClick);
    EXPECT_EQ(Text(Cell{Column(6), Row(6)}), "25.0");
    EXPECT_TRUE(session.gesture.ReleaseSuppressed);
}

TEST_F(ChartEditingTest, APressThatWasAbandonedDragsNothing) {
    ShowFlat(TableType::RACE, 20);
    for (const auto key : {PressKey::Plain, PressKey::Shift}) {
        int asked = 0;
        test.view.commit = [&] {
            if (++asked == 2) throw Failure("no grid");
            return true;
        };
        MoveGridCursor(session, {GridRow(1), GridColumn(1)});
        asked = 0;
        prompts.ExpectError("no grid", Answer::Abort);
        ChartPress(session, key, Cell{Column(6), Row(6)});
        EXPECT_EQ(session.gesture.kind, ChartGesture::Kind::None);
        ChartDrag(session, 30);
        ChartRelease(session);
        ExpectFlat(20);
    }
}

TEST_F(ChartEditingTest, NothingStartsWithoutATableOrWhileACommandRuns) {
    Gesture(PressKey::Plain, std::nullopt, 3);
    ShowFlat(TableType::RACE, 20);
    Gesture(PressKey::Other, std::nullopt, 30);
    RunCommand(session, [&](Session&) {
        Gesture(PressKey::Plain, Cell{Column(5), Row(5)}, 30);
        Gesture(PressKey::Shift, Cell{Column(5), Row(5)}, 30);
    });
    ExpectFlat(20);

    test.view.editorAccepts = false;
    ChartPress(session, PressKey::Plain, Cell{Column(5), Row(5)});
    EXPECT_FALSE(session.gesture.Picked()) << "the editor's refused text stands";
    EXPECT_EQ(session.sheet.Cursor(), (GridCell{GridRow(0), GridColumn(0)}));
}

TEST_F(ChartEditingTest, ALostReleaseLeavesGridAndTableAgreeing) {
    ShowFlat(TableType::RACE, 20);
    Gesture(PressKey::Plain, Cell{Column(5), Row(5)}, 30, ChartDragLost);
    EXPECT_EQ(Text(Cell{Column(5), Row(5)}), "30.0");
    Gesture(PressKey::Shift, Cell{Column(5), Row(5)}, 90, ChartDragLost);
    EXPECT_EQ(Degrees(Cell{Column(5), Row(5)}), 30);

    // Chosen from a menu by its keys, a command can start before the button is up: it finds the grid up to
    // date, and ends the drag.
    ChartPress(session, PressKey::Plain, Cell{Column(5), Row(5)});
    ChartDrag(session, 35);
    std::string found;
    RunCommand(session, [&](Session&) { found = Text(Cell{Column(5), Row(5)}); });
    EXPECT_EQ(found, "35.0");
    EXPECT_FALSE(Label().shown);
    ChartDrag(session, 40);
    EXPECT_EQ(Degrees(Cell{Column(5), Row(5)}), 35);

    // And it may bring a table of fewer rows.
    ShowFlat(TableType::EX, 5);
    ChartPress(session, PressKey::Plain, Cell{Column(5), Row(11)});
    ShowFlat(TableType::RACE, 20);
    ChartDrag(session, 3);
    ChartRelease(session);
    ExpectFlat(20);
}

TEST_F(ChartEditingTest, AnyGesturesLeaveTableAndGridAgreeingWithinTheLimits) {
    std::mt19937 random(1);
    const auto roll = [&](int most) { return std::uniform_int_distribution<int>(0, most)(random); };
    std::uniform_real_distribution<double> mouse(-60, 100);
    for (int round = 0; round < 300; ++round) {
        const auto type = round % 2 ? TableType::RACE : TableType::EX;
        ShowFlat(type, 4);
        for (int gesture = 0; gesture < 12; ++gesture) {
            std::optional<Cell> hit;
            if (roll(5) > 0) hit = Cell{Column(1 + roll(15)), Row(1 + roll(RowCount(type) - 1))};
            ChartPress(session, static_cast<PressKey>(roll(2)), hit);
            for (int step = roll(4); step > 0; --step)
                ChartDrag(session, mouse(random));
            if (roll(9) == 0) EscapePressed(session);
            if (roll(9) == 0) ChartDragLost(session);
            ChartRelease(session);
            if (roll(9) == 0) ChartDoubleClick(session);
        }
        ChartDragLost(session);
        session.gesture = {};
        ForEachCell(type, [&](Cell cell) {
            EXPECT_EQ(Text(cell), FormatTenths(Degrees(cell)));
            EXPECT_GE(Degrees(cell), 0);
            EXPECT_LE(Degrees(cell), CellLimit(session.state, type, cell));
        });
    }
}

}  // namespace
}  // namespace rv52::test
