#pragma once

#include "chart/Viewpoint.h"

namespace rv52 {

// Turning or shifting the plot with the mouse: a drag from one place to the next.
class PlotDrag {
 public:
    enum class Kind { Turn, Shift };

    PlotDrag(Kind kind, Point mouse) : kind_(kind), mouse_(mouse) {}

    // The plot's area is what the distance of a shift is measured in.
    Viewpoint MovedTo(Point mouse, const Viewpoint& from, const Area& plot);

 private:
    Kind kind_;
    Point mouse_;
};

}  // namespace rv52
