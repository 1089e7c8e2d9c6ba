#include "chart/PlotKeys.h"

#include <Qt>

#include <cmath>

namespace rv52 {

namespace {

constexpr double kDegreesPerKey = 5;
constexpr double kZoomPerNotch = 1.15;

}  // namespace

std::optional<Viewpoint> ViewpointAfterKey(int key, const Viewpoint& from, const ChartTemplate& chartTemplate,
                                           const Area& plot) {
    switch (key) {
        case Qt::Key_Left:
            return Turned(from, -kDegreesPerKey, 0);
        case Qt::Key_Right:
            return Turned(from, kDegreesPerKey, 0);
        case Qt::Key_Up:
            return Turned(from, 0, kDegreesPerKey);
        case Qt::Key_Down:
            return Turned(from, 0, -kDegreesPerKey);
        case Qt::Key_Plus:
        case Qt::Key_Equal:  // the same key without Shift on many keyboards
            return ViewpointAfterWheel(1, plot.Centre(), from, plot);
        case Qt::Key_Minus:
            return ViewpointAfterWheel(-1, plot.Centre(), from, plot);
        case Qt::Key_Home:
            return ViewpointOf(chartTemplate);
        default:
            return std::nullopt;
    }
}

Viewpoint ViewpointAfterWheel(double notches, Point pointer, const Viewpoint& from, const Area& plot) {
    return ZoomedAt(from, std::pow(kZoomPerNotch, notches), pointer, plot);
}

}  // namespace rv52
