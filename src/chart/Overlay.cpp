#include "chart/Overlay.h"

#include "chart/Visibility.h"

#include <algorithm>

namespace rv52 {

namespace {

std::vector<Segment> GhostOf(const AdvanceTable& table, const Scene& scene) {
    const Mesh mesh(table, scene.chartTemplate.advance, scene.projection);
    std::vector<Segment> lines;
    ForEachCell(table.Type(), [&](Cell cell) {
        if (cell.column < kColumnCount)
            lines.push_back({mesh.At(cell).at, mesh.At({Column(cell.column + 1), cell.row}).at});
        if (cell.row < mesh.RowCount())
            lines.push_back({mesh.At(cell).at, mesh.At({cell.column, Row(cell.row + 1)}).at});
    });
    return lines;
}

Callout CalloutOf(Cell cell, const std::string& text, Near side, const Scene& scene,
                  const TextMeasure& measure) {
    const Extent size = measure(text);
    const double pad = size.height / 3;
    // Cut to the chart, should a chart ever be smaller than the text.
    const Extent box{std::min(size.width + 3 * pad, scene.areas.whole.width),
                     std::min(size.height + pad, scene.areas.whole.height)};
    const Point point = scene.mesh.At(cell).at;
    return {text, PlaceNear(point, box, 1.1 * size.height, side, scene.areas.whole), point,
            !IsVisible(cell, scene.mesh)};
}

LimitMark LimitOf(Cell cell, double limit, const Scene& scene) {
    auto place = FloorPlace(cell, scene.mesh.RowCount());
    place.z = HeightInBox(limit, scene.chartTemplate.advance);
    return {scene.mesh.At(cell).at, scene.projection.At(place)};
}

}  // namespace

Overlay OverlayOf(const Scene& scene, const ChartMarks& marks, const TextMeasure& measureBold) {
    Overlay overlay;
    if (marks.cursor) overlay.cursor = CursorCurves(scene.mesh, *marks.cursor);
    if (marks.ghost) overlay.ghost = GhostOf(*marks.ghost, scene);
    if (marks.hover) overlay.hover = scene.mesh.At(*marks.hover).at;
    if (marks.labelled) {
        // The limit's tick stands above its point.
        const auto side = marks.limit ? Near::Beside : Near::Above;
        overlay.callout = CalloutOf(*marks.labelled, marks.label, side, scene, measureBold);
        if (marks.limit) overlay.limit = LimitOf(*marks.labelled, *marks.limit, scene);
    }
    return overlay;
}

}  // namespace rv52
