#pragma once

#include "chart/Mesh.h"

#include <vector>

namespace rv52 {

// Whether a data point can be seen, that is, no facet lies before it. A point on a silhouette can.
bool IsVisible(Cell cell, const Mesh& mesh);

// The parts of the straight line between two neighbouring data points that can be seen, in order.
std::vector<Segment> VisibleParts(Cell from, Cell to, const Mesh& mesh);

}  // namespace rv52
