#include "chart/ui/SurfacePainter.h"

#include "chart/Bands.h"
#include "chart/ui/QtPlane.h"

#include <QPainter>

#include <array>

namespace rv52 {

namespace {

class Painter {
 public:
    Painter(QPainter& painter, const Scene& scene, const ChartColours& colours)
        : painter_(painter), mesh_(scene.mesh), advance_(scene.chartTemplate.advance), colours_(colours) {
        AddColours(colours.outside);
        for (const auto& band : scene.chartTemplate.bands)
            AddColours(ToQt(band));
        AddColours(colours.outside);
    }

    // Facets come back to front, two for each cell. A side between two cells is drawn with the nearer one:
    // the farther one's would be half covered.
    void Paint() {
        auto facet = mesh_.Facets().begin();
        for (const auto& cell : mesh_.CellsBackToFront()) {
            painter_.setRenderHint(QPainter::Antialiasing, false);
            Fill(*facet++);
            Fill(*facet++);
            painter_.setRenderHint(QPainter::Antialiasing, true);
            Lines(cell);
        }
    }

 private:
    struct BandColours {
        QColor above;
        QColor below;
        QColor line;
    };

    void AddColours(const QColor& band) {
        bands_.push_back({band, Underside(band, colours_.background), MeshLineOn(band)});
    }

    const BandColours& ColoursOf(int band) const {
        const int place = band + 1;  // below the axis first
        return bands_[static_cast<std::size_t>(place)];
    }

    void Fill(const Facet& facet) {
        std::array<HeightAt, 3> corners;
        for (std::size_t corner = 0; corner < 3; ++corner) {
            const auto& vertex = mesh_.At(facet.corners[corner]);
            corners[corner] = {vertex.at, vertex.height};
        }
        // Corners run counter-clockwise as seen from above; y grows downwards.
        const bool fromAbove = Turn(corners[0].at, corners[1].at, corners[2].at) < 0;
        pieces_.clear();
        CutIntoBands(corners, advance_, pieces_);
        for (const auto& piece : pieces_) {
            const auto& colours = ColoursOf(piece.band);
            FillPiece(piece, fromAbove ? colours.above : colours.below);
        }
        if (colours_.seam == 0) SoftenEdges(corners, fromAbove);
    }

    // On screens a line of the colour between takes the steps off the edge of two bands.
    void SoftenEdges(const std::array<HeightAt, 3>& corners, bool fromAbove) {
        edges_.clear();
        FindBandEdges(corners, advance_, edges_);
        if (edges_.empty()) return;
        painter_.setRenderHint(QPainter::Antialiasing, true);
        for (const auto& edge : edges_) {
            const auto& low = ColoursOf(edge.below);
            const auto& high = ColoursOf(edge.below + 1);
            painter_.setPen(
                QPen(fromAbove ? Mixed(low.above, high.above, 0.5) : Mixed(low.below, high.below, 0.5),
                     colours_.hairline));
            painter_.drawLine(ToQt(edge.line.from), ToQt(edge.line.to));
        }
        painter_.setRenderHint(QPainter::Antialiasing, false);
    }

    void FillPiece(const BandPiece& piece, const QColor& colour) {
        if (colours_.seam > 0)
            painter_.setPen(QPen(colour, colours_.seam));
        else
            painter_.setPen(Qt::NoPen);
        painter_.setBrush(colour);
        polygon_.clear();
        for (const auto& corner : piece.outline)
            polygon_.push_back(ToQt(corner));
        painter_.drawConvexPolygon(polygon_);
    }

    void Lines(Cell cell) {
        const int lastColumn = kColumnCount - 1;
        const int lastRow = mesh_.RowCount() - 1;
        const Cell farColumn{Column(cell.column + (mesh_.FarAtHighColumn() ? 1 : 0)), cell.row};
        const Cell farRow{cell.column, Row(cell.row + (mesh_.FarAtHighRow() ? 1 : 0))};
        Line(farColumn, {Column(farColumn.column), Row(farColumn.row + 1)});
        Line(farRow, {Column(farRow.column + 1), Row(farRow.row)});
        if (cell.column == (mesh_.FarAtHighColumn() ? 1 : lastColumn)) {
            const int column = mesh_.FarAtHighColumn() ? cell.column : cell.column + 1;
            Line({Column(column), cell.row}, {Column(column), Row(cell.row + 1)});
        }
        if (cell.row == (mesh_.FarAtHighRow() ? 1 : lastRow)) {
            const int row = mesh_.FarAtHighRow() ? cell.row : cell.row + 1;
            Line({cell.column, Row(row)}, {Column(cell.column + 1), Row(row)});
        }
    }

    void Line(Cell from, Cell to) {
        const auto& a = mesh_.At(from);
        const auto& b = mesh_.At(to);
        painter_.setPen(QPen(ColoursOf(BandOf((a.height + b.height) / 2, advance_)).line, colours_.meshLine,
                             Qt::SolidLine, Qt::SquareCap));
        painter_.drawLine(ToQt(a.at), ToQt(b.at));
    }

    QPainter& painter_;
    const Mesh& mesh_;
    const ChartAxis& advance_;
    const ChartColours& colours_;
    std::vector<BandColours> bands_;
    std::vector<BandPiece> pieces_;
    std::vector<BandEdge> edges_;
    QPolygonF polygon_;
};

}  // namespace

void PaintSurface(QPainter& painter, const Scene& scene, const ChartColours& colours) {
    Painter(painter, scene, colours).Paint();
}

}  // namespace rv52
