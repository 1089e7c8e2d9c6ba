#pragma once

#include "chart/ChartTemplate.h"
#include "chart/Projection.h"
#include "table/AdvanceTable.h"

#include <array>
#include <vector>

namespace rv52 {

// A data point as it is drawn.
struct Vertex {
    Point at;
    double depth = 0;
    double height = 0;  // degrees, as drawn: see DrawnHeight
};

// The height at which a value is drawn, in degrees. Values beyond the advance axis are drawn just outside
// it, so that one wild value in a file cannot flatten all the others.
double DrawnHeight(double degrees, const ChartAxis& advance);

// Where a height of the advance axis lies in the plot's box.
double HeightInBox(double degrees, const ChartAxis& advance);

// A triangle of the surface. Each cell of the mesh, between four data points, is two of them: four points
// do not lie in one plane, and a four-cornered patch would fold at silhouettes.
struct Facet {
    std::array<Cell, 3> corners;
    // The rectangle that it is drawn in.
    Point least{};
    Point most{};
};

// The table's surface as the eye sees it.
class Mesh {
 public:
    Mesh(const AdvanceTable& table, const ChartAxis& advance, const Projection& projection);

    TableType Type() const { return type_; }
    int RowCount() const { return rv52::RowCount(type_); }
    const Vertex& At(Cell cell) const { return vertices_[IndexOf(cell)]; }
    // Every facet exactly once, those hidden before those that hide them: painted in this order, the
    // picture is right from every angle.
    const std::vector<Facet>& Facets() const { return facets_; }
    // Cells of the mesh in the same order, each named by its corner of lowest column and row.
    const std::vector<Cell>& CellsBackToFront() const { return cells_; }

    // Whether depth grows with the column, and with the row.
    bool FarAtHighColumn() const { return farAtHighColumn_; }
    bool FarAtHighRow() const { return farAtHighRow_; }

 private:
    std::size_t IndexOf(Cell cell) const {
        return static_cast<std::size_t>((cell.row - 1) * kColumnCount + cell.column - 1);
    }
    void Order(const Projection& projection);
    void AddFacets(Cell cell, const Projection& projection);
    void AddFacet(Facet facet);

    TableType type_;
    std::vector<Vertex> vertices_;
    std::vector<Cell> cells_;
    std::vector<Facet> facets_;
    bool farAtHighColumn_;
    bool farAtHighRow_;
};

}  // namespace rv52
