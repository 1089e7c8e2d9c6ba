#include "app/state/ChartAndGridLayout.h"

#include "table/Numbers.h"

#include <algorithm>
#include <cmath>

namespace rv52 {

TableLayout LayOut(const WindowSize& window) {
    const double chartHeight = 0.7 * window.height;
    const double gridHeight = std::max(0.0, RoundHalfEven(0.3 * window.height - 725));
    const double gridEnd = chartHeight + gridHeight;
    return {
        .chart = {0, 0, window.width, chartHeight},
        .grid = {0, chartHeight, std::max(0.0, RoundHalfEven(window.width - 150)), gridHeight},
        .status = {0, gridEnd, window.width, window.height - gridEnd},
    };
}

GridPitch PitchOf(double innerHeight, double innerWidth) {
    const auto share = [](double size, int parts) {
        return std::max(0, static_cast<int>(std::floor(size / parts)) - 1);
    };
    return {share(innerHeight, 9), share(innerWidth, 17)};
}

}  // namespace rv52
