#pragma once

#include "chart/Viewpoint.h"

#include <optional>

namespace rv52 {

// From where the plot is seen after a key: the arrows turn it, + and - zoom, Home goes back to where the
// template looks from. Nothing for a key without a meaning here.
std::optional<Viewpoint> ViewpointAfterKey(int key, const Viewpoint& from, const ChartTemplate& chartTemplate,
                                           const Area& plot);

// After so many notches of the wheel with the pointer at a place.
Viewpoint ViewpointAfterWheel(double notches, Point pointer, const Viewpoint& from, const Area& plot);

}  // namespace rv52
