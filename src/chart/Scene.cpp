#include "chart/Scene.h"

#include "chart/Visibility.h"

#include <algorithm>

namespace rv52 {

namespace {

bool IsAbove(double degrees, const ChartAxis& advance) {
    return degrees > advance.to;
}

// A value that is no number counts as below, as it is drawn.
bool IsBelow(double degrees, const ChartAxis& advance) {
    return !(degrees >= advance.from);
}

OutsideValues OutsideOf(const AdvanceTable& table, const ChartAxis& advance) {
    const auto values = table.GetValues();
    return {std::ranges::any_of(values, [&](double value) { return IsBelow(value, advance); }),
            std::ranges::any_of(values, [&](double value) { return IsAbove(value, advance); })};
}

std::vector<OutsideMark> MarksOf(const AdvanceTable& table, const ChartAxis& advance, const Mesh& mesh) {
    std::vector<OutsideMark> marks;
    ForEachCell(table.Type(), [&](Cell cell) {
        const double value = table.GetCell(cell);
        const bool above = IsAbove(value, advance);
        if ((above || IsBelow(value, advance)) && IsVisible(cell, mesh))
            marks.push_back({mesh.At(cell).at, above});
    });
    return marks;
}

void Append(std::vector<std::vector<Point>>& curves, const Segment& part) {
    if (!curves.empty() && curves.back().back() == part.from)
        curves.back().push_back(part.to);
    else
        curves.push_back({part.from, part.to});
}

}  // namespace

ChartAreas DivideChart(const Area& whole, const Area& legendColumn, const TextMeasure& measure) {
    const Extent number = measure("7500");
    const double side = number.width + number.height;
    const double top = 1.7 * number.height;
    const double bottom = 3.6 * number.height;
    const Area plotting{whole.left, whole.top, std::max(0.0, legendColumn.left - whole.left), whole.height};
    return {whole,
            plotting,
            {plotting.left + side, plotting.top + top, std::max(0.0, plotting.width - 2 * side),
             std::max(0.0, plotting.height - top - bottom)}};
}

Scene SceneOf(const AdvanceTable& table, const ChartTemplate& chartTemplate, const Viewpoint& viewpoint,
              const Area& whole, const TextMeasure& measure) {
    const auto& advance = chartTemplate.advance;
    auto legend = LegendIn(whole, advance, OutsideOf(table, advance), measure);
    const auto areas = DivideChart(whole, legend.column, measure);
    const Projection projection(viewpoint, areas.plot);
    auto walls = WallsOf(chartTemplate, projection);
    Mesh mesh(table, advance, projection);
    auto texts = PlaceAxisTexts(walls, areas.plotting, measure);
    auto outside = MarksOf(table, advance, mesh);
    return {chartTemplate,    areas,           std::move(legend), projection,
            std::move(walls), std::move(mesh), std::move(texts),  std::move(outside)};
}

std::vector<std::vector<Point>> CursorCurves(const Mesh& mesh, Cell cursor) {
    std::vector<std::vector<Point>> curves;
    for (int column = 1; column < kColumnCount; ++column)
        for (const auto& part :
             VisibleParts({Column(column), cursor.row}, {Column(column + 1), cursor.row}, mesh))
            Append(curves, part);
    std::vector<std::vector<Point>> along;
    for (int row = 1; row < mesh.RowCount(); ++row)
        for (const auto& part : VisibleParts({cursor.column, Row(row)}, {cursor.column, Row(row + 1)}, mesh))
            Append(along, part);
    curves.insert(curves.end(), along.begin(), along.end());
    return curves;
}

}  // namespace rv52
