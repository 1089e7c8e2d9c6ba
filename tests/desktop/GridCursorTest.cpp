#include "GridFixture.h"
#include "table/commands/GridCursor.h"

#include <QHeaderView>
#include <QScrollBar>

namespace rv52::test {

TEST_F(GridTest, HasNoCurrentCellAfterLoadingUntilAKeyOrAClick) {
    elsewhere.setFocus();
    Show(TableType::RACE);
    grid.setFocus(Qt::TabFocusReason);
    EXPECT_FALSE(grid.currentIndex().isValid() || grid.selectionModel()->hasSelection());
    Type("5");
    Key(Qt::Key_F2);
    EXPECT_EQ(Editor(), nullptr);
    Key(Qt::Key_Down);
    EXPECT_EQ(session.chart.Label(), (ValueLabel{true, {Column(1), Row(8)}, "30.0"}));
    Show(TableType::RACE);
    EXPECT_FALSE(grid.currentIndex().isValid());
    Key(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(Selection(), (GridRange{At(1, 1), At(8, 16)}));
    EXPECT_EQ(Cursor(), At(1, 1));
    EXPECT_EQ(session.chart.Label(), (ValueLabel{true, {Column(1), Row(8)}, "30.0"}));
    Type("5");
    Key(Qt::Key_Return);
    EXPECT_EQ(Text(At(1, 1)), "5") << "the cell that the sheet says";
}

TEST_F(GridTest, SelectsOneRectangleByMouseAndKeysAndLightsIt) {
    Show(TableType::RACE);
    auto* body = grid.viewport();
    const auto expect = [&](GridRange range, GridCell cursor) {
        EXPECT_EQ(Selection(), range);
        EXPECT_EQ(Cursor(), cursor);
        EXPECT_EQ(PlaceOf(cursor), grid.visualRect(grid.currentIndex()));
        for (const auto cell : {At(3, 3), At(5, 4), At(4, 6), At(8, 16)}) {
            const bool chosen = cell.row >= range.first.row && cell.row <= range.last.row &&
                                cell.column >= range.first.column && cell.column <= range.last.column;
            // Between the cursor's bars and above the digits.
            const auto place = PlaceOf(cell);
            EXPECT_EQ(body->grab(place).toImage().pixelColor(place.width() / 2, 0),
                      grid.palette().color(chosen ? QPalette::Highlight : QPalette::Base));
        }
    };
    QTest::mousePress(body, Qt::LeftButton, {}, PlaceOf(kCell).center());
    MoveHeld(*body, PlaceOf(At(3, 5)).center());
    MoveHeld(*body, PlaceOf(At(4, 6)).center());
    QTest::mouseRelease(body, Qt::LeftButton, {}, PlaceOf(At(4, 6)).center());
    expect({kCell, At(4, 6)}, At(4, 6));
    ClickCell(At(5, 5));
    Key(Qt::Key_Left, Qt::ShiftModifier);
    expect({At(5, 4), At(5, 5)}, At(5, 4));
    Key(Qt::Key_A, Qt::ControlModifier);
    expect({At(1, 1), At(8, 16)}, At(5, 4));
    SelectGridCells(session, {At(1, 2), At(3, 4)}, At(1, 2));

    // Headers, their corner and the empty strip below the cells are no places to click.
    grid.resize(600, 190);
    for (auto* header : {grid.horizontalHeader()->viewport(), grid.verticalHeader()->viewport()}) {
        Click(*header, {20, 5});
        QTest::mouseDClick(header, Qt::LeftButton, {}, {20, 5});
    }
    Click(*grid.childAt(5, 5));
    Click(*body, {5, body->height() - 1});
    expect({At(1, 2), At(3, 4)}, At(1, 2));
}

TEST_F(GridTest, KeepsRowsAndColumnsToTheirShares) {
    for (const auto type : {TableType::RACE, TableType::EX}) {
        Show(type);
        EXPECT_EQ(grid.rowHeight(7), 11) << ToText(type);
        EXPECT_EQ(grid.verticalScrollBar()->isVisible(), type == TableType::EX);
    }
    for (const auto& size : {QSize(592, 102), QSize(333, 90), QSize(0, 0), QSize(1200, 400)}) {
        grid.resize(size);
        EXPECT_EQ(grid.horizontalScrollBar()->maximum(), 0) << size.width();
        EXPECT_GE(grid.viewport()->width(), grid.horizontalHeader()->length()) << size.width();
    }
    EXPECT_EQ(grid.rowHeight(0), 44) << "a ninth of the height without its frame";
    EXPECT_EQ(PaintsOf(*grid.viewport(), [&] { CopyChartToGrid(session); }), 1);
}

}  // namespace rv52::test
