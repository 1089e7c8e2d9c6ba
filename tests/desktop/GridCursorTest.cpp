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
    Key(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(Selection(), (GridRange{{GridRow(1), GridColumn(1)}, {GridRow(8), GridColumn(16)}}));
    EXPECT_EQ(Cursor(), (GridCell{GridRow(1), GridColumn(1)}));
    EXPECT_EQ(grid.currentIndex(), grid.model()->index(0, 0)) << "the cell that the sheet says";
    EXPECT_EQ(session.chart.Label(), (ValueLabel{true, {Column(1), Row(8)}, "30.0"}));
    Type("5");
    ASSERT_NE(Editor(), nullptr);
    Key(Qt::Key_Return);
    EXPECT_EQ(Text({GridRow(1), GridColumn(1)}), "5");
    Show(TableType::EX);
    EXPECT_FALSE(grid.currentIndex().isValid());
    ClickCell({GridRow(2), GridColumn(16)});
    EXPECT_EQ(session.chart.Label(), (ValueLabel{true, {Column(16), Row(10)}, "10.0"}));
}

TEST_F(GridTest, SelectsOneRectangleByMouseAndKeysAndLightsIt) {
    Show(TableType::RACE);
    auto* body = grid.viewport();
    const auto expect = [&](GridRange range, GridCell cursor) {
        EXPECT_EQ(Selection(), range);
        EXPECT_EQ(Cursor(), cursor);
        EXPECT_EQ(PlaceOf(cursor), grid.visualRect(grid.currentIndex()));
        for (const GridCell cell :
             {GridCell{GridRow(3), GridColumn(3)}, GridCell{GridRow(5), GridColumn(4)},
              GridCell{GridRow(4), GridColumn(6)}, GridCell{GridRow(8), GridColumn(16)}}) {
            const bool chosen = cell.row >= range.first.row && cell.row <= range.last.row &&
                                cell.column >= range.first.column && cell.column <= range.last.column;
            // Between the cursor's bars and above the digits.
            const auto place = PlaceOf(cell);
            EXPECT_EQ(body->grab(place).toImage().pixelColor(place.width() / 2, 0),
                      grid.palette().color(chosen ? QPalette::Highlight : QPalette::Base));
        }
    };
    QTest::mousePress(body, Qt::LeftButton, {}, PlaceOf({GridRow(2), GridColumn(3)}).center());
    MoveHeld(*body, PlaceOf({GridRow(3), GridColumn(5)}).center());
    MoveHeld(*body, PlaceOf({GridRow(4), GridColumn(6)}).center());
    QTest::mouseRelease(body, Qt::LeftButton, {}, PlaceOf({GridRow(4), GridColumn(6)}).center());
    expect({{GridRow(2), GridColumn(3)}, {GridRow(4), GridColumn(6)}}, {GridRow(4), GridColumn(6)});
    ClickCell({GridRow(5), GridColumn(5)});
    Key(Qt::Key_Left, Qt::ShiftModifier);
    expect({{GridRow(5), GridColumn(4)}, {GridRow(5), GridColumn(5)}}, {GridRow(5), GridColumn(4)});
    Key(Qt::Key_A, Qt::ControlModifier);
    expect({{GridRow(1), GridColumn(1)}, {GridRow(8), GridColumn(16)}}, {GridRow(5), GridColumn(4)});
    SelectGridCells(session, {{GridRow(1), GridColumn(2)}, {GridRow(3), GridColumn(4)}},
                    {GridRow(1), GridColumn(2)});
    expect({{GridRow(1), GridColumn(2)}, {GridRow(3), GridColumn(4)}}, {GridRow(1), GridColumn(2)});

    // Headers, their corner and the empty strip below the cells are no places to click.
    grid.resize(600, 190);
    for (auto* header : {grid.horizontalHeader()->viewport(), grid.verticalHeader()->viewport()}) {
        Click(*header, {20, 5});
        QTest::mouseDClick(header, Qt::LeftButton, {}, {20, 5});
    }
    Click(*grid.childAt(5, 5));
    Click(*body, {5, body->height() - 1});
    expect({{GridRow(1), GridColumn(2)}, {GridRow(3), GridColumn(4)}}, {GridRow(1), GridColumn(2)});
}

TEST_F(GridTest, KeepsRowsAndColumnsToTheirShares) {
    for (const auto type : {TableType::RACE, TableType::EX}) {
        Show(type);
        EXPECT_EQ(grid.rowHeight(7), 11);
        EXPECT_EQ(grid.horizontalHeader()->height(), 11);
        EXPECT_EQ(grid.verticalScrollBar()->isVisible(), type == TableType::EX);
    }
    for (const auto& size : {QSize(592, 102), QSize(333, 90), QSize(0, 0), QSize(1200, 400)}) {
        grid.resize(size);
        EXPECT_EQ(grid.horizontalScrollBar()->maximum(), 0) << size.width();
        EXPECT_GE(grid.viewport()->width(), grid.horizontalHeader()->length()) << size.width();
    }
    // 1 pixel of frame at each side: floor(398 · 15 / 9) − 1 twips.
    EXPECT_EQ(grid.rowHeight(0), 662 / 15);
    EXPECT_EQ(PaintsOf(*grid.viewport(), [&] { CopyChartToGrid(session); }), 1);
}

}  // namespace rv52::test
