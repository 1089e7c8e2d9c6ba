#pragma once

#include "chart/Labels.h"
#include "chart/Legend.h"
#include "chart/Mesh.h"
#include "chart/Viewpoint.h"
#include "chart/Walls.h"
#include "table/AdvanceTable.h"

#include <vector>

namespace rv52 {

// A data point whose value lies outside the advance axis.
struct OutsideMark {
    Point at;
    bool above = false;
};

// How the chart divides the area that it is drawn into.
struct ChartAreas {
    Area whole;
    Area plotting;  // all but the legend's column: the surface, and the texts of its axes
    Area plot;      // what the box fills at zoom 1
};

// The plot of a table in an area, ready to be painted: places only, no colours and no pens.
struct Scene {
    ChartTemplate chartTemplate;
    ChartAreas areas;
    Legend legend;
    Projection projection;
    Walls walls;
    Mesh mesh;
    std::vector<PlacedText> texts;
    std::vector<OutsideMark> outside;
};

ChartAreas DivideChart(const Area& whole, const Area& legendColumn, const TextMeasure& measure);

Scene SceneOf(const AdvanceTable& table, const ChartTemplate& chartTemplate, const Viewpoint& viewpoint,
              const Area& whole, const TextMeasure& measure);

// The curves over the surface along a data point's column and row, where they can be seen.
std::vector<std::vector<Point>> CursorCurves(const Mesh& mesh, Cell cursor);

}  // namespace rv52
