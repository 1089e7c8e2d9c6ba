#include "GridFixture.h"

namespace rv52::test {
namespace {

class GridTest : public GridFixture {};

TEST_F(GridTest, HasNoCurrentCellAfterLoadingUntilAKeyOrAClick) {
    ShowRace();
    grid.setFocus();
    EXPECT_FALSE(grid.currentIndex().isValid());
    EXPECT_EQ(Cursor(), (GridCell{0, 0}));
    Key(Qt::Key_Down);
    EXPECT_EQ(Cursor(), (GridCell{1, 1}));
    EXPECT_TRUE(session.chart.Label().shown);
    EXPECT_EQ(session.chart.Label().at, (Cell{1, 8}));
}

TEST_F(GridTest, KeepsItsGeometryAtTheFirstSize) {
    ShowEx();
    EXPECT_EQ(grid.rowHeight(0), 11);
    EXPECT_GE(grid.columnViewportPosition(15), 0);
    EXPECT_LE(grid.columnViewportPosition(15) + grid.columnWidth(15), grid.viewport()->width());
}

}  // namespace
}  // namespace rv52::test
