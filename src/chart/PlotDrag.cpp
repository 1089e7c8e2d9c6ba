#include "chart/PlotDrag.h"

#include <utility>

namespace rv52 {

namespace {

constexpr double kDegreesPerPixel = 0.4;

}  // namespace

Viewpoint PlotDrag::MovedTo(Point mouse, const Viewpoint& from, const Area& plot) {
    const Point way = mouse - std::exchange(mouse_, mouse);
    if (kind_ == Kind::Shift) return Panned(from, way, plot);
    return Turned(from, kDegreesPerPixel * way.x, kDegreesPerPixel * way.y);
}

}  // namespace rv52
