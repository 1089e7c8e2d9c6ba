#include "chart/Plane.h"

#include <algorithm>

namespace rv52 {

namespace {

// Whether a straight line along a → b keeps the two apart.
bool Separates(Point a, Point b, const std::array<Point, 4>& one, const std::array<Point, 4>& other) {
    const auto side = [&](const Point& point) { return Turn(a, b, point); };
    const auto oneSides = std::ranges::minmax(one, {}, side);
    const auto otherSides = std::ranges::minmax(other, {}, side);
    return side(oneSides.max) <= side(otherSides.min) || side(otherSides.max) <= side(oneSides.min);
}

bool HasSeparatingSide(const std::array<Point, 4>& one, const std::array<Point, 4>& other) {
    for (std::size_t corner = 0; corner < one.size(); ++corner)
        if (Separates(one[corner], one[(corner + 1) % one.size()], one, other)) return true;
    return false;
}

}  // namespace

bool Overlap(const Area& area, const std::array<Point, 4>& outline) {
    const std::array<Point, 4> corners{Point{area.left, area.top}, Point{area.Right(), area.top},
                                       Point{area.Right(), area.Bottom()}, Point{area.left, area.Bottom()}};
    return !HasSeparatingSide(corners, outline) && !HasSeparatingSide(outline, corners);
}

}  // namespace rv52
