#include "ChartSupport.h"
#include "chart/Bands.h"
#include "chart/Overlay.h"
#include "chart/Picking.h"
#include "chart/Visibility.h"

#include <limits>
#include <set>

namespace rv52::test {
namespace {

constexpr Area kEverywhere{-1e6, -1e6, 2e6, 2e6};

TEST(ViewpointTest, TurnsAndZoomsAtThePointerWithinBounds) {
    const Area area{30, 20, 500, 300};
    rv52::Viewpoint view{.azimuth = 28, .elevation = 32, .zoom = 1, .pan = {}};
    EXPECT_DOUBLE_EQ(Turned(view, 162, 0).azimuth, -170);
    EXPECT_DOUBLE_EQ(Turned(view, 0, 100).elevation, 70);
    EXPECT_DOUBLE_EQ(Turned(view, 0, -100).elevation, 10);
    const Place place{0.3, -0.2, 0.4};
    const Point pointer = Projection(view, area).At(place);
    for (const double factor : {1.5, 1.5, 0.8}) {
        view = ZoomedAt(view, factor, pointer, area);
        const Point way = Projection(view, area).At(place) - pointer;
        EXPECT_NEAR(std::hypot(way.x, way.y), 0, 1e-9);
    }
    EXPECT_EQ(ZoomedAt(view, 1000, pointer, area).zoom, kMostZoom);
    EXPECT_EQ(ZoomedAt(view, 0.001, pointer, area).zoom, kLeastZoom);
    view.zoom = 1;
    EXPECT_EQ(Panned(view, {9e9, -9e9}, area).pan, (Point{0.5, -0.5}));
    EXPECT_EQ(Panned(view, {5, 5}, {0, 0, 0, 0}), view) << "a chart without area";
}

TEST(ProjectionTest, TheBoxFillsItsAreaFromEverySide) {
    const Area area{40, 25, 560, 300};
    for (const auto& view : ManyViews()) {
        const Projection projection({view.azimuth, view.elevation, 1, {}}, area);
        std::set<double> x;
        std::set<double> y;
        for (const double right : {-kBoxWidth / 2, kBoxWidth / 2})
            for (const double back : {-kBoxDepth / 2, kBoxDepth / 2})
                for (const double up : {0.0, kBoxHeight}) {
                    const Point at = projection.At({right, back, up});
                    x.insert(at.x);
                    y.insert(at.y);
                }
        const double left = *x.begin() - area.left;
        const double right = area.Right() - *x.rbegin();
        const double above = *y.begin() - area.top;
        const double below = area.Bottom() - *y.rbegin();
        EXPECT_GE(std::min({left, right, above, below}), -1e-9) << view;
        EXPECT_LT(std::min(left + right, above + below), 1e-6) << view;
    }
}

TEST(ValueAtMouseTest, FindsTheValueThatIsDrawnAtThePixel) {
    const Point beside{9, -11};  // where the mouse has grabbed the point
    for (const auto& view : ManyViews()) {
        for (const Cell cell :
             {Cell{Column(1), Row(1)}, Cell{Column(16), Row(11)}, Cell{Column(8), Row(5)}}) {
            for (const double value : {0.0, 12.5, 44.88}) {
                auto table = AdvanceTable(TableType::EX);
                table.SetCell(cell, 12.5);
                const Grab grab{cell, 12.5, SceneAt(table, view).mesh.At(cell).at + beside};
                table.SetCell(cell, value);
                const auto after = SceneAt(table, view);
                const Point moved = after.mesh.At(cell).at + beside;
                const auto& advance = after.chartTemplate.advance;
                EXPECT_NEAR(ValueAtMouse(grab, moved, after.projection, advance), value, 1e-9) << view;
                EXPECT_NEAR(moved.x, grab.pressed.x, 1e-9) << "heights are upright on the screen";
            }
        }
    }
}

TEST(MeshTest, DrawsWildValuesJustOutsideTheAxis) {
    const auto advance = ShippedTemplate(TableType::RACE).advance;
    const double rows[][2] = {{0, 0}, {45, 45}, {46, 46}, {1e300, 47.5}, {-1, -1}, {-90, -2.5}};
    for (const auto& [value, drawn] : rows)
        EXPECT_DOUBLE_EQ(DrawnHeight(value, advance), drawn);
    EXPECT_DOUBLE_EQ(DrawnHeight(std::numeric_limits<double>::quiet_NaN(), advance), -2.5);

    AdvanceTable table(TableType::RACE);
    EXPECT_TRUE(SceneAt(table, {28, 32}).outside.empty());
    table.SetCell({Column(3), Row(2)}, 45.01);
    table.SetCell({Column(4), Row(8)}, -1e9);
    const auto scene = SceneAt(table, {28, 32});
    EXPECT_EQ(scene.outside.size(), 2U);
    EXPECT_EQ(scene.legend.swatches.size(), 11U) << "nine bands, and both sides of them";
}

double AreaOf(const std::vector<Point>& outline) {
    double twice = 0;
    for (std::size_t corner = 2; corner < outline.size(); ++corner)
        twice += Turn(outline[0], outline[corner - 1], outline[corner]);
    return twice / 2;
}

TEST(BandsTest, PiecesMakeUpTheFacetAndKeepToTheirBands) {
    const auto advance = ShippedTemplate(TableType::EX).advance;
    std::mt19937 random(11);
    std::uniform_int_distribution<int> tenths(-25, 475);
    for (int round = 0; round < 500; ++round) {
        std::array<HeightAt, 3> facet;
        for (auto& corner : facet) {
            // A slope that rises to the right; every other time on whole bands, where corners lie upon edges.
            corner.height = round % 2 ? tenths(random) / 10.0 : 5 * std::floor(tenths(random) / 50.0);
            corner.at = {10 * corner.height, tenths(random) / 1.7};
        }
        std::vector<BandPiece> pieces;
        CutIntoBands(facet, advance, pieces);
        double sum = 0;
        std::set<int> bands;
        for (const auto& piece : pieces) {
            const double area = AreaOf(piece.outline);
            sum += area;
            EXPECT_TRUE(bands.insert(piece.band).second);
            double middle = 0;
            for (const auto& corner : piece.outline)
                middle += corner.x / 10 / static_cast<double>(piece.outline.size());
            EXPECT_TRUE(std::abs(area) < 1e-3 || BandOf(middle, advance) == piece.band) << middle;
        }
        EXPECT_NEAR(sum, AreaOf({facet[0].at, facet[1].at, facet[2].at}), 1e-6);
    }
}

TEST(BandsTest, OneAdvanceIsOneBand) {
    const auto advance = ShippedTemplate(TableType::EX).advance;
    const std::pair<double, int> rows[] = {{4.99, 0}, {5, 1},     {22.5, 4},  {40, 8},
                                           {45, 8},   {45.01, 9}, {-0.01, -1}};
    for (const auto& [degrees, band] : rows) {
        std::vector<BandPiece> pieces;
        CutIntoBands({{{{0, 0}, degrees}, {{9, 0}, degrees}, {{0, 9}, degrees}}}, advance, pieces);
        ASSERT_EQ(pieces.size(), 1U) << "a level facet at " << degrees;
        EXPECT_EQ(pieces[0].band, band);
    }
}

// Neighbouring facets cut their common side at equal doubles, so that no pixel falls between them.
TEST(BandsTest, NeighboursMeetToTheBit) {
    const auto advance = ShippedTemplate(TableType::EX).advance;
    const HeightAt a{{0.1, 0.7}, 3.3};
    const HeightAt b{{91.3, 40.9}, 41.7};
    std::vector<BandPiece> left;
    std::vector<BandPiece> right;
    CutIntoBands({a, b, {{10, 90}, 20}}, advance, left);
    CutIntoBands({b, a, {{80, -30}, 7}}, advance, right);
    const auto onSide = [&](const std::vector<BandPiece>& pieces) {
        std::set<std::pair<double, double>> points;
        for (const auto& piece : pieces)
            for (const auto& corner : piece.outline)
                if (std::abs(Turn(a.at, b.at, corner)) < 1e-6) points.insert({corner.x, corner.y});
        return points;
    };
    EXPECT_EQ(onSide(left), onSide(right));
    EXPECT_EQ(onSide(left).size(), 10U) << "both ends and eight edges of bands";
}

// Whether some facet lies before a place of this depth, found the slow way.
bool Covered(const Mesh& mesh, Point place, double depth) {
    for (const auto& facet : mesh.Facets())
        if (const auto other = DepthAt(facet, mesh, place); other && *other < depth - 1e-3) return true;
    return false;
}

// What is painted last at a place must be what is nearest to the eye there.
void ExpectHiddenPaintedBeforeHiding(const Mesh& mesh, Point place) {
    double nearest = std::numeric_limits<double>::infinity();
    double painted = nearest;
    for (const auto& facet : mesh.Facets()) {
        if (const auto depth = DepthAt(facet, mesh, place)) {
            nearest = std::min(nearest, *depth);
            painted = *depth;
        }
    }
    EXPECT_TRUE(painted == nearest || painted - nearest < 1e-9);
}

void ExpectVisiblePartsUncovered(const Mesh& mesh, Cell from, Cell to) {
    const auto& a = mesh.At(from);
    const auto& b = mesh.At(to);
    const Point way = b.at - a.at;
    for (const auto& part : VisibleParts(from, to, mesh)) {
        const Point middle = (part.from + part.to) * 0.5;
        const double share =
            std::abs(way.x) > std::abs(way.y) ? (middle.x - a.at.x) / way.x : (middle.y - a.at.y) / way.y;
        EXPECT_FALSE(Covered(mesh, middle, a.depth + share * (b.depth - a.depth)));
    }
}

TEST(SurfaceTest, IsPaintedHiddenAndPickedRightFromEveryAngle) {
    std::mt19937 random(7);
    unsigned seed = 0;
    int hidden = 0;
    for (const auto& view : ManyViews()) {
        SCOPED_TRACE(testing::PrintToString(view));
        for (const auto type : {TableType::RACE, TableType::EX}) {
            const auto scene = SceneAt(RandomTable(type, ++seed), view);
            const auto& mesh = scene.mesh;
            ASSERT_EQ(mesh.Facets().size(), static_cast<std::size_t>(2 * 15 * (RowCount(type) - 1)));
            std::uniform_real_distribution<double> x(0, view.size.width);
            std::uniform_real_distribution<double> y(0, view.size.height);
            for (int sample = 0; sample < 60; ++sample)
                ExpectHiddenPaintedBeforeHiding(mesh, {x(random), y(random)});
            for (int column = 1; column < kColumnCount; ++column)
                ExpectVisiblePartsUncovered(mesh, {Column(column), Row(4)}, {Column(column + 1), Row(4)});
            ForEachCell(type, [&](Cell cell) {
                const auto& vertex = mesh.At(cell);
                const bool visible = IsVisible(cell, mesh);
                hidden += visible ? 0 : 1;
                EXPECT_FALSE(visible && Covered(mesh, vertex.at, vertex.depth));
                const auto picked = NearestVisible(mesh, kEverywhere, vertex.at, kPickRadius);
                EXPECT_EQ(visible, picked && picked->distance < 1e-9);
            });
        }
    }
    EXPECT_GT(hidden, 500) << "tables too tame to test hiding";
}

TEST(SurfaceTest, HidesNothingWhereItIsLevelAndAValleyBehindAWall) {
    for (const auto& view : ManyViews()) {
        const auto scene = SceneAt(AdvanceTable(TableType::EX), view);
        ForEachCell(TableType::EX, [&](Cell cell) { EXPECT_TRUE(IsVisible(cell, scene.mesh)) << view; });
        EXPECT_EQ(CursorCurves(scene.mesh, {Column(5), Row(5)}).size(), 2U) << view;
    }
    AdvanceTable wall(TableType::RACE);
    for (int column = 1; column <= kColumnCount; ++column)
        wall.SetCell({Column(column), Row(2)}, 45);
    const auto scene = SceneAt(wall, {0, 10});
    EXPECT_FALSE(IsVisible({Column(8), Row(3)}, scene.mesh));
    EXPECT_TRUE(IsVisible({Column(8), Row(1)}, scene.mesh) && IsVisible({Column(8), Row(2)}, scene.mesh));
}

TEST(PickingTest, TakesWhatIsShownWithinFourteenPixels) {
    const auto flat = SceneAt(AdvanceTable(TableType::RACE), {0, 70, 3});
    const auto near = [&](Point way) {
        return NearestVisible(flat.mesh, kEverywhere, flat.mesh.At({Column(1), Row(1)}).at + way,
                              kPickRadius);
    };
    EXPECT_EQ(near({Column(-14), Row(0)}).value().cell, (Cell{Column(1), Row(1)}));
    EXPECT_FALSE(near({-15, 0}) || near({-11, 11}));

    const auto scene = SceneAt(ShippedMaximum(TableType::RACE), {28, 32, 3});
    const auto& shown = scene.areas.plotting;
    int outside = 0;
    ForEachCell(TableType::RACE, [&](Cell cell) {
        const Point at = scene.mesh.At(cell).at;
        outside += shown.Contains(AreaAround(at, {})) ? 0 : 1;
        const auto picked = NearestVisible(scene.mesh, shown, at, kPickRadius);
        EXPECT_TRUE(!picked || shown.Contains(AreaAround(scene.mesh.At(picked->cell).at, {})));
    });
    EXPECT_GT(outside, 20);
}

}  // namespace
}  // namespace rv52::test
