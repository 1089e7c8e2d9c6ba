#pragma once

#include "chart/ChartTemplate.h"
#include "chart/Projection.h"

#include <array>
#include <string>
#include <vector>

namespace rv52 {

// A mark of an axis: its place on the box, and the text that belongs to it.
struct Tick {
    Point at;
    std::string text;
};

// An axis as it is labelled: on an edge that bounds the picture of the box, so that texts beside it stand
// clear of the surface.
struct AxisOnEdge {
    std::vector<Tick> ticks;  // rising values
    Point outward;            // the direction away from the box, of length 1
    std::string caption;
};

// What stands behind and below the surface.
struct Walls {
    std::array<std::array<Point, 4>, 3> faces;  // the floor and the two walls at the back
    std::vector<Segment> lines;                 // on them, at the marks of the axes
    std::vector<Segment> edges;                 // around them
    AxisOnEdge rpm;
    AxisOnEdge map;
    AxisOnEdge advance;
};

Walls WallsOf(const ChartTemplate& chartTemplate, const Projection& projection);

}  // namespace rv52
