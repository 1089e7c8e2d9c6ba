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

// The texts of the three axes: level, outside the box, within the bounds, and none over another. Where an
// axis has no room for every mark, it keeps every second, fourth or eighth.
std::vector<PlacedText> PlaceAxisTexts(const Walls& walls, const Area& bounds, const TextMeasure& measure);

// A box of this size near a place, always within the bounds: above it or else below, or beside it to the
// right or else to the left.
enum class Near { Above, Beside };
Area PlaceNear(Point place, Extent size, double distance, Near side, const Area& bounds);

}  // namespace rv52
