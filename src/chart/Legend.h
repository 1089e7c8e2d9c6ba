#pragma once

#include "chart/Labels.h"

#include <vector>

namespace rv52 {

struct Swatch {
    int band = 0;  // as BandOf gives it: −1 and the number of bands stand for values outside the axis
    Area area;
};

// The bar that tells which advance a colour stands for.
struct Legend {
    Area column;  // the strip at the right that it keeps for itself
    std::vector<Swatch> swatches;
    std::vector<PlacedText> texts;
};

// Swatches for values below and above the axis are added only when the table holds such values.
struct OutsideValues {
    bool below = false;
    bool above = false;
};

Legend LegendIn(const Area& chart, const ChartAxis& advance, OutsideValues outside,
                const TextMeasure& measure);

}  // namespace rv52
