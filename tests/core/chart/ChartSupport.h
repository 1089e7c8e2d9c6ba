#pragma once

#include "chart/Scene.h"
#include "core/table/RandomTable.h"
#include "support/ShippedFile.h"
#include "table/LimitTables.h"
#include "table/TableBlock.h"

#include <cmath>
#include <gtest/gtest.h>

namespace rv52::test {

inline ChartTemplate ShippedTemplate(TableType type) {
    return ParseChartTemplate(ShippedFile(std::string(ChartTemplateFileName(type))), type).value();
}

inline AdvanceTable ShippedMaximum(TableType type) {
    return ParseTableBlock(ShippedFile(std::string(LimitFileName(type, Limit::Maximum))), type).value();
}

// Letters 7 wide and 14 high.
inline Extent PlainLetters(const std::string& text) {
    return {7.0 * static_cast<double>(text.size()), 14};
}

struct View {
    double azimuth;
    double elevation;
    double zoom = 1;
    Extent size = {640, 360};
};

// Around the plot, along the axes and between them, low and high.
inline std::vector<View> ManyViews() {
    std::vector<View> views;
    for (const double azimuth : {-180.0, -137.0, -90.0, -45.0, -1.0, 0.0, 28.0, 60.0, 90.0, 135.0, 179.0})
        for (const double elevation : {10.0, 32.0, 70.0})
            for (const double zoom : {1.0, 3.0})
                views.push_back({azimuth, elevation, zoom, {640, 360}});
    views.push_back({28, 32, 1, {400, 250}});
    views.push_back({28, 32, 1, {3840, 1600}});
    return views;
}

inline Scene SceneAt(const AdvanceTable& table, const View& view) {
    return SceneOf(table, ShippedTemplate(table.Type()),
                   {.azimuth = view.azimuth, .elevation = view.elevation, .zoom = view.zoom, .pan = {}},
                   {0, 0, view.size.width, view.size.height}, PlainLetters);
}

inline std::ostream& operator<<(std::ostream& out, const View& view) {
    return out << "azimuth " << view.azimuth << ", elevation " << view.elevation << ", zoom " << view.zoom
               << ", " << view.size.width << " x " << view.size.height;
}

// How deep a facet is at a place, when it covers it with some room to its sides.
inline std::optional<double> DepthAt(const Facet& facet, const Mesh& mesh, Point place) {
    const auto& a = mesh.At(facet.corners[0]);
    const auto& b = mesh.At(facet.corners[1]);
    const auto& c = mesh.At(facet.corners[2]);
    const double area = Turn(a.at, b.at, c.at);
    if (std::abs(area) < 0.01) return std::nullopt;
    const double shareA = Turn(b.at, c.at, place) / area;
    const double shareB = Turn(c.at, a.at, place) / area;
    const double shareC = Turn(a.at, b.at, place) / area;
    if (std::min({shareA, shareB, shareC}) < 1e-6) return std::nullopt;
    return shareA * a.depth + shareB * b.depth + shareC * c.depth;
}

}  // namespace rv52::test
