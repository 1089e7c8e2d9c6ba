#pragma once

#include "chart/Walls.h"

#include <functional>
#include <string>
#include <vector>

namespace rv52 {

// How large a text is in the font that it will be drawn with.
using TextMeasure = std::function<Extent(const std::string&)>;

struct PlacedText {
    std::string text;
    Area area;
};

// The texts of the three axes: level, outside the box, within the bounds, and none nearer to another than
// the gap. Where an axis has no room for every mark, it keeps every second, fourth or eighth.
std::vector<PlacedText> PlaceAxisTexts(const Walls& walls, const Area& bounds, double gap,
                                       const TextMeasure& measure);

// A box of this size beside a place: above it where there is room, and always within the bounds.
Area PlaceBeside(Point place, Extent size, double distance, const Area& bounds);

}  // namespace rv52
