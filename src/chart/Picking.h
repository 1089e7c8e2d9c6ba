#pragma once

#include "chart/Mesh.h"

#include <optional>

namespace rv52 {

// A press nearer to a data point than this picks it.
constexpr double kPickRadius = 15;

struct NearestPoint {
    Cell cell;
    double distance = 0;  // in units of the drawing surface
};

// The data point nearest to a place among those that can be seen: what the surface hides, or what lies
// outside the part that is shown, is not there to be picked. Nothing when no point can be seen within the
// radius.
std::optional<NearestPoint> NearestVisible(const Mesh& mesh, const Area& shown, Point place, double radius);

// A data point taken with the mouse.
struct Grab {
    Cell cell;
    double value = 0;  // of the point, in degrees, when it was taken
    Point pressed;     // where the mouse was then
};

// The value that the point would take if its height followed the mouse. Measured from where it was taken,
// so that a press some pixels beside a point moves nothing.
double ValueAtMouse(const Grab& grab, Point mouse, const Projection& projection, const ChartAxis& advance);

}  // namespace rv52
