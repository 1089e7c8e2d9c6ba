#pragma once

#include "chart/Scene.h"
#include "chart/ui/ChartColours.h"

class QPainter;

namespace rv52 {

// The surface alone: the bands of each cell without antialiasing, which would let the wall shine through
// between them, and the lines of the mesh with it.
void PaintSurface(QPainter& painter, const Scene& scene, const ChartColours& colours);

}  // namespace rv52
