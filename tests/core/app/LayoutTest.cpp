#include "app/Layout.h"

#include <gtest/gtest.h>

namespace rv52 {
namespace {

TEST(LayoutTest, DividesTheWindowBetweenChartAndGrid) {
    const auto first = LayOut({kClientWidth, kClientHeight});
    EXPECT_EQ(first.chart, (Rectangle{0, 0, 9030, 0.7 * 7515}));
    // 0.3 × 7515 − 725 is 1529.5: halves go to the even neighbour.
    EXPECT_EQ(first.grid, (Rectangle{0, 0.7 * 7515, 8880, 1530}));
    const auto tiny = LayOut({100, 100});
    EXPECT_EQ(tiny.grid.width + tiny.grid.height, 0);

    // Rows get a ninth and columns a seventeenth.
    EXPECT_EQ(PitchOf(1530, 8880).rowHeight, 169);
    EXPECT_EQ(PitchOf(1530, 8880).columnWidth, 521);
    EXPECT_EQ(PitchOf(0, 0).rowHeight + PitchOf(0, 0).columnWidth, 0);
}

}  // namespace
}  // namespace rv52
