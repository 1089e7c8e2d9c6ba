#include "chart/Walls.h"

#include "chart/Mesh.h"
#include "table/Numbers.h"

#include <cmath>

namespace rv52 {

namespace {

constexpr Place kMiddle{0, 0, 0};

// The corners of the box, by the side of each axis that the eye sees from behind or from before.
struct Sides {
    double farX;
    double farY;
};

std::vector<double> Marks(const ChartAxis& axis) {
    std::vector<double> marks;
    const int count = static_cast<int>(RoundHalfEven((axis.to - axis.from) / axis.step));
    for (int mark = 0; mark <= count; ++mark)
        marks.push_back(axis.from + mark * axis.step);
    return marks;
}

double ShareOf(double value, const ChartAxis& axis) {
    return (value - axis.from) / (axis.to - axis.from) - 0.5;
}

double AlongX(double rpm, const ChartTemplate& chart) {
    return kBoxWidth * ShareOf(rpm, chart.rpm);
}

// Row 1, the highest pressure, is at the low end of y.
double AlongY(double map, const ChartTemplate& chart) {
    return -kBoxDepth * ShareOf(map, chart.map);
}

// Square to an axis on the picture, away from the box: a mark's text stands beside its own mark. Along the
// floor's lines it would stand beside the next one where the axis is seen at a slant.
Point Outward(Point from, Point to, Point middle) {
    const Point along = to - from;
    const double length = std::hypot(along.x, along.y);
    if (length == 0) return {0, 1};
    return Point{-along.y, along.x} * ((Turn(from, to, middle) < 0 ? 1 : -1) / length);
}

class Builder {
 public:
    Builder(const ChartTemplate& chart, const Projection& projection)
        : chart_(chart),
          projection_(projection),
          far_{projection.AwayAlongX() >= 0 ? kBoxWidth / 2 : -kBoxWidth / 2,
               projection.AwayAlongY() >= 0 ? kBoxDepth / 2 : -kBoxDepth / 2} {}

    Walls Build() {
        Faces();
        FloorLines();
        WallLines();
        AdvanceAxis();
        return std::move(walls_);
    }

 private:
    Point At(double x, double y, double z) const { return projection_.At({x, y, z}); }
    void Line(std::vector<Segment>& lines, Place from, Place to) const {
        lines.push_back({projection_.At(from), projection_.At(to)});
    }

    void Faces() {
        const auto [x, y] = far_;
        const double top = kBoxHeight;
        walls_.faces = {{{At(x, y, 0), At(-x, y, 0), At(-x, -y, 0), At(x, -y, 0)},
                         {At(x, y, 0), At(x, -y, 0), At(x, -y, top), At(x, y, top)},
                         {At(x, y, 0), At(-x, y, 0), At(-x, y, top), At(x, y, top)}}};
        for (const auto& face : walls_.faces)
            for (std::size_t corner = 0; corner < face.size(); ++corner)
                walls_.edges.push_back({face[corner], face[(corner + 1) % face.size()]});
    }

    void FloorLines() {
        const auto [farX, farY] = far_;
        const Point middle = projection_.At(kMiddle);
        for (const double rpm : Marks(chart_.rpm)) {
            const double x = AlongX(rpm, chart_);
            Line(walls_.lines, {x, -farY, 0}, {x, farY, 0});
            Line(walls_.lines, {x, farY, 0}, {x, farY, kBoxHeight});
            walls_.rpm.ticks.push_back({At(x, -farY, 0), FormatWhole(rpm)});
        }
        for (const double map : Marks(chart_.map)) {
            const double y = AlongY(map, chart_);
            Line(walls_.lines, {-farX, y, 0}, {farX, y, 0});
            Line(walls_.lines, {farX, y, 0}, {farX, y, kBoxHeight});
            walls_.map.ticks.push_back({At(-farX, y, 0), FormatWhole(map)});
        }
        walls_.rpm.outward = Outward(At(-farX, -farY, 0), At(farX, -farY, 0), middle);
        walls_.map.outward = Outward(At(-farX, -farY, 0), At(-farX, farY, 0), middle);
        walls_.rpm.caption = chart_.rpm.caption;
        walls_.map.caption = chart_.map.caption;
    }

    void WallLines() {
        const auto [farX, farY] = far_;
        for (const double advance : Marks(chart_.advance)) {
            const double z = HeightInBox(advance, chart_.advance);
            Line(walls_.lines, {-farX, farY, z}, {farX, farY, z});
            Line(walls_.lines, {farX, -farY, z}, {farX, farY, z});
        }
    }

    // On the left one of the two upright edges that bound the picture.
    void AdvanceAxis() {
        const auto [farX, farY] = far_;
        const bool rpmEnd = At(-farX, farY, 0).x < At(farX, -farY, 0).x;
        const double x = rpmEnd ? -farX : farX;
        const double y = rpmEnd ? farY : -farY;
        for (const double advance : Marks(chart_.advance))
            walls_.advance.ticks.push_back(
                {At(x, y, HeightInBox(advance, chart_.advance)), FormatWhole(advance)});
        walls_.advance.outward = {-1, 0};
        walls_.advance.caption = chart_.advance.caption;
    }

    // Breakpoints and band edges as a rule are whole; a template may say otherwise.
    static std::string FormatWhole(double value) {
        return value == std::floor(value) ? ShortestDecimal(value) : FormatTenths(value);
    }

    const ChartTemplate& chart_;
    const Projection& projection_;
    Sides far_;
    Walls walls_;
};

}  // namespace

Walls WallsOf(const ChartTemplate& chartTemplate, const Projection& projection) {
    return Builder(chartTemplate, projection).Build();
}

}  // namespace rv52
