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
        ForEachCell(mesh_.Type(),
                    [&](Cell cell) { bandOf_.push_back(BandOf(mesh_.At(cell).height, advance_)); });
    }

    // Facets come back to front, two for each cell. A side between two cells is drawn with the nearer one:
    // the farther one's would be half covered. Two facets seen from one side do not cover each other: what is
    // drawn softly is drawn together, since the toolkit takes its time to change from one to the other.
    void Paint() {
        auto facet = mesh_.Facets().begin();
        for (const auto& cell : mesh_.CellsBackToFront()) {
            const auto& far = *facet++;
            const auto& near = *facet++;
            const bool apart = IsSeenFromAbove(far) == IsSeenFromAbove(near);
            Soft(false);
            if (!apart || !FillAsOne(cell, IsSeenFromAbove(far))) {
                Fill(far);
                if (!apart) {
                    Soft(true);
                    SoftenEdges(far);
                    Soft(false);
                }
                Fill(near);
            }
            Soft(true);
            if (apart) SoftenEdges(far);
            SoftenEdges(near);
            Lines(cell);
        }
    }

 private:
    struct BandColours {
        QBrush above;
        QBrush below;
        QPen line;

        const QBrush& Of(bool fromAbove) const { return fromAbove ? above : below; }
    };

    void AddColours(const QColor& band) {
        bands_.push_back({band, Underside(band, colours_.background),
                          QPen(MeshLineOn(band), colours_.meshLine, Qt::SolidLine, Qt::SquareCap)});
    }

    void Soft(bool soft) { painter_.setRenderHint(QPainter::Antialiasing, soft); }

    int BandAt(Cell cell) const {
        return bandOf_[static_cast<std::size_t>((cell.row - 1) * kColumnCount + cell.column - 1)];
    }

    const BandColours& ColoursOf(int band) const {
        const int place = band + 1;  // below the axis first
        return bands_[static_cast<std::size_t>(place)];
    }

    // Corners run counter-clockwise as seen from above; y grows downwards.
    bool IsSeenFromAbove(const Facet& facet) const {
        const auto& [a, b, c] = facet.corners;
        return Turn(mesh_.At(a).at, mesh_.At(b).at, mesh_.At(c).at) < 0;
    }

    // On screens, both facets of a cell at once where they are of one colour: most are, and each fill costs
    // as much as the pixels of a small one.
    bool FillAsOne(Cell cell, bool fromAbove) {
        if (colours_.seam > 0) return false;
        const Column right(cell.column + 1);
        const Row back(cell.row + 1);
        const int band = BandAt(cell);
        polygon_.clear();
        for (const Cell corner : {cell, Cell{right, cell.row}, Cell{right, back}, Cell{cell.column, back}}) {
            if (BandAt(corner) != band) return false;
            polygon_.push_back(ToQt(mesh_.At(corner).at));
        }
        painter_.setPen(Qt::NoPen);
        painter_.setBrush(ColoursOf(band).Of(fromAbove));
        painter_.drawPolygon(polygon_);
        return true;
    }

    bool LiesInOneBand(const Facet& facet) const {
        const auto& [a, b, c] = facet.corners;
        return BandAt(a) == BandAt(b) && BandAt(a) == BandAt(c);
    }

    std::array<HeightAt, 3> HeightsOf(const Facet& facet) const {
        std::array<HeightAt, 3> corners;
        for (std::size_t corner = 0; corner < 3; ++corner) {
            const auto& vertex = mesh_.At(facet.corners[corner]);
            corners[corner] = {vertex.at, vertex.height};
        }
        return corners;
    }

    void Fill(const Facet& facet) {
        pieces_.clear();
        CutIntoBands(HeightsOf(facet), advance_, pieces_);
        for (const auto& piece : pieces_)
            FillPiece(piece, ColoursOf(piece.band).Of(IsSeenFromAbove(facet)));
    }

    // On screens a line of the colour between takes the steps off the edge of two bands.
    void SoftenEdges(const Facet& facet) {
        if (colours_.seam > 0 || LiesInOneBand(facet)) return;
        edges_.clear();
        FindBandEdges(HeightsOf(facet), advance_, edges_);
        const bool fromAbove = IsSeenFromAbove(facet);
        for (const auto& edge : edges_) {
            const auto& low = ColoursOf(edge.below).Of(fromAbove);
            const auto& high = ColoursOf(edge.below + 1).Of(fromAbove);
            painter_.setPen(QPen(Mixed(low.color(), high.color(), 0.5), colours_.hairline));
            painter_.drawLine(ToQt(edge.line.from), ToQt(edge.line.to));
        }
    }

    void FillPiece(const BandPiece& piece, const QBrush& brush) {
        if (colours_.seam > 0)
            painter_.setPen(QPen(brush, colours_.seam));
        else
            painter_.setPen(Qt::NoPen);
        painter_.setBrush(brush);
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
        painter_.setPen(ColoursOf(BandOf((a.height + b.height) / 2, advance_)).line);
        painter_.drawLine(ToQt(a.at), ToQt(b.at));
    }

    QPainter& painter_;
    const Mesh& mesh_;
    const ChartAxis& advance_;
    const ChartColours& colours_;
    std::vector<BandColours> bands_;
    std::vector<int> bandOf_;  // each data point's
    std::vector<BandPiece> pieces_;
    std::vector<BandEdge> edges_;
    QPolygonF polygon_;
};

}  // namespace

void PaintSurface(QPainter& painter, const Scene& scene, const ChartColours& colours) {
    Painter(painter, scene, colours).Paint();
}

}  // namespace rv52
