#include "chart/Picking.h"

#include "chart/Visibility.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace rv52 {

std::optional<NearestPoint> NearestVisible(const Mesh& mesh, const Area& shown, Point place, double radius) {
    std::vector<NearestPoint> near;
    ForEachCell(mesh.Type(), [&](Cell cell) {
        const Point at = mesh.At(cell).at;
        const double distance = std::hypot(at.x - place.x, at.y - place.y);
        if (distance < radius && shown.Contains(AreaAround(at, {}))) near.push_back({cell, distance});
    });
    std::ranges::stable_sort(near, {}, &NearestPoint::distance);
    const auto found =
        std::ranges::find_if(near, [&](const NearestPoint& point) { return IsVisible(point.cell, mesh); });
    return found == near.end() ? std::nullopt : std::optional(*found);
}

double ValueAtMouse(const Grab& grab, Point mouse, const Projection& projection, const ChartAxis& advance) {
    const double unitsPerDegree =
        projection.UpScale() * (HeightInBox(advance.to, advance) / (advance.to - advance.from));
    return grab.value + (grab.pressed.y - mouse.y) / unitsPerDegree;
}

}  // namespace rv52
