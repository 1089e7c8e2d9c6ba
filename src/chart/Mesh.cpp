#include "chart/Mesh.h"

#include <algorithm>
#include <cmath>

namespace rv52 {

double DrawnHeight(double degrees, const ChartAxis& advance) {
    const double overshoot = advance.step / 2;
    // In this form a value that is no number is drawn at the bottom.
    return degrees > advance.from - overshoot ? std::min(degrees, advance.to + overshoot)
                                              : advance.from - overshoot;
}

double HeightInBox(double degrees, const ChartAxis& advance) {
    return kBoxHeight * (degrees - advance.from) / (advance.to - advance.from);
}

Mesh::Mesh(const AdvanceTable& table, const ChartAxis& advance, const Projection& projection)
    : type_(table.Type()),
      farAtHighColumn_(projection.AwayAlongX() >= 0),
      farAtHighRow_(projection.AwayAlongY() >= 0) {
    ForEachCell(type_, [&](Cell cell) {
        const double height = DrawnHeight(table.GetCell(cell), advance);
        auto place = FloorPlace(cell, RowCount());
        place.z = HeightInBox(height, advance);
        vertices_.push_back({projection.At(place), projection.Depth(place), height});
    });
    Order(projection);
}

// A vertical plane between two cells leaves one of them wholly behind it, whatever their heights. Hence
// rows from the far end, and columns from the far end in each row, are an exact order.
void Mesh::Order(const Projection& projection) {
    const int lastColumn = kColumnCount - 1;
    const int lastRow = RowCount() - 1;
    for (int step = 0; step < lastRow; ++step) {
        const int row = farAtHighRow_ ? lastRow - step : 1 + step;
        for (int across = 0; across < lastColumn; ++across) {
            const Cell cell{Column(farAtHighColumn_ ? lastColumn - across : 1 + across), Row(row)};
            cells_.push_back(cell);
            AddFacets(cell, projection);
        }
    }
}

// The cell is cut along the diagonal with the smaller step in height: a single raised point then stands as
// an even pyramid. The cut's vertical plane tells which half is behind.
void Mesh::AddFacets(Cell cell, const Projection& projection) {
    const Cell right{Column(cell.column + 1), cell.row};
    const Cell back{cell.column, Row(cell.row + 1)};
    const Cell opposite{Column(cell.column + 1), Row(cell.row + 1)};
    const double rising = std::abs(At(opposite).height - At(cell).height);
    const double falling = std::abs(At(right).height - At(back).height);

    const double stepX = kBoxWidth / (kColumnCount - 1);
    const double stepY = kBoxDepth / (RowCount() - 1);
    const double x = projection.AwayAlongX() * stepY;
    const double y = projection.AwayAlongY() * stepX;

    std::array<Facet, 2> halves;
    bool firstIsFar = false;
    if (rising <= falling) {
        halves = {Facet{{cell, right, opposite}}, Facet{{cell, opposite, back}}};
        firstIsFar = x - y > 0;
    } else {
        halves = {Facet{{right, opposite, back}}, Facet{{cell, right, back}}};
        firstIsFar = x + y > 0;
    }
    AddFacet(halves[firstIsFar ? 0 : 1]);
    AddFacet(halves[firstIsFar ? 1 : 0]);
}

void Mesh::AddFacet(Facet facet) {
    facet.least = facet.most = At(facet.corners[0]).at;
    for (const auto& corner : facet.corners) {
        const auto& at = At(corner).at;
        facet.least = {std::min(facet.least.x, at.x), std::min(facet.least.y, at.y)};
        facet.most = {std::max(facet.most.x, at.x), std::max(facet.most.y, at.y)};
    }
    facets_.push_back(facet);
}

}  // namespace rv52
