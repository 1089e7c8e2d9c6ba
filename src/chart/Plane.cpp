#include "chart/Plane.h"

#include <algorithm>

namespace rv52 {

namespace {

// Whether a straight line along a → b keeps the two apart.
bool Separates(Point a, Point b, const std::array<Point, 4>& one, const std::array<Point, 4>& other) {
    const auto sides = [&](const std::array<Point, 4>& corners) {
        std::array<double, 4> turns{};
        std::ranges::transform(corners, turns.begin(), [&](const Point& point) { return Turn(a, b, point); });
        return turns;
    };
    const auto oneSides = sides(one);
    const auto otherSides = sides(other);
    return std::ranges::max(oneSides) <= std::ranges::min(otherSides) ||
           std::ranges::max(otherSides) <= std::ranges::min(oneSides);
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
