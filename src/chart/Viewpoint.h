#pragma once

#include "chart/ChartTemplate.h"
#include "chart/Plane.h"

namespace rv52 {

// From where, and how closely, the plot is looked at.
struct Viewpoint {
    double azimuth = 0;     // degrees, −180 to 180; positive turns the 0 RPM end towards the eye
    double elevation = 30;  // degrees above the floor, kLowestElevation to kHighestElevation
    double zoom = 1;        // 1 fills the plot's area
    Point pan;              // of the plot's centre, in widths and heights of the area

    bool operator==(const Viewpoint&) const = default;
};

constexpr double kLeastZoom = 0.5;
constexpr double kMostZoom = 8;

Viewpoint ViewpointOf(const ChartTemplate& chartTemplate);

Viewpoint Turned(Viewpoint from, double azimuth, double elevation);
// The plot's centre stays within the area.
Viewpoint Panned(Viewpoint from, Point distance, const Area& area);
// What lies at this place stays there, unless a bound of zoom or pan is reached.
Viewpoint ZoomedAt(Viewpoint from, double factor, Point place, const Area& area);
// After so many notches of the wheel with the pointer at a place.
Viewpoint ViewpointAfterWheel(double notches, Point pointer, const Viewpoint& from, const Area& plot);

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
