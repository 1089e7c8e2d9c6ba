#include "chart/Viewpoint.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace rv52 {

namespace {

constexpr double kDegreesPerPixel = 0.4;
constexpr double kZoomPerNotch = 1.15;

Viewpoint PannedTo(Viewpoint from, Point pan, double limit) {
    from.pan = {std::clamp(pan.x, -limit, limit), std::clamp(pan.y, -limit, limit)};
    return from;
}

// A magnified plot may be shifted until its edge is in the middle.
double PanLimit(double zoom) {
    return 0.5 * std::max(1.0, zoom);
}

}  // namespace

Viewpoint ViewpointOf(const ChartTemplate& chartTemplate) {
    return {.azimuth = chartTemplate.azimuth, .elevation = chartTemplate.elevation, .zoom = 1, .pan = {}};
}

Viewpoint Turned(Viewpoint from, double azimuth, double elevation) {
    from.azimuth = std::remainder(from.azimuth + azimuth, 360.0);
    from.elevation = std::clamp(from.elevation + elevation, kLowestElevation, kHighestElevation);
    return from;
}

Viewpoint Panned(Viewpoint from, Point distance, const Area& area) {
    if (area.width <= 0 || area.height <= 0) return from;
    const Point pan = from.pan + Point{distance.x / area.width, distance.y / area.height};
    return PannedTo(from, pan, PanLimit(from.zoom));
}

Viewpoint ZoomedAt(Viewpoint from, double factor, Point place, const Area& area) {
    if (area.width <= 0 || area.height <= 0) return from;
    const double zoom = std::clamp(from.zoom * factor, kLeastZoom, kMostZoom);
    const double growth = zoom / from.zoom;
    const Point offset = place - CentreOf(area);
    const Point at{offset.x / area.width, offset.y / area.height};
    from.zoom = zoom;
    return PannedTo(from, at - (at - from.pan) * growth, PanLimit(zoom));
}

Viewpoint ViewpointAfterWheel(double notches, Point pointer, const Viewpoint& from, const Area& plot) {
    return ZoomedAt(from, std::pow(kZoomPerNotch, notches), pointer, plot);
}

Viewpoint PlotDrag::MovedTo(Point mouse, const Viewpoint& from, const Area& plot) {
    const Point way = mouse - std::exchange(mouse_, mouse);
    if (kind_ == Kind::Shift) return Panned(from, way, plot);
    return Turned(from, kDegreesPerPixel * way.x, kDegreesPerPixel * way.y);
}

}  // namespace rv52
