#pragma once

#include "platform/Rectangle.h"

#include <array>

namespace rv52 {

// Places and sizes on the surface that is drawn on, in its own units (logical pixels on a screen, dots on a
// printer), y downwards.
struct Point {
    double x = 0;
    double y = 0;

    bool operator==(const Point&) const = default;
};

constexpr Point operator+(Point a, Point b) {
    return {a.x + b.x, a.y + b.y};
}
constexpr Point operator-(Point a, Point b) {
    return {a.x - b.x, a.y - b.y};
}
constexpr Point operator*(Point a, double factor) {
    return {a.x * factor, a.y * factor};
}

// Twice the area of the triangle a, b, c; its sign tells on which side of a → b the point c lies.
constexpr double Turn(Point a, Point b, Point c) {
    return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

struct Extent {
    double width = 0;
    double height = 0;
};

struct DrawnUnit {
    using Length = double;
};
using Area = Rectangle<DrawnUnit>;

constexpr Point CentreOf(const Area& area) {
    return {area.left + area.width / 2, area.top + area.height / 2};
}

// Whether an upright rectangle and a four-cornered, convex outline have anything in common.
bool Overlap(const Area& area, const std::array<Point, 4>& outline);

constexpr Area AreaAround(Point centre, Extent size) {
    return {centre.x - size.width / 2, centre.y - size.height / 2, size.width, size.height};
}

struct Segment {
    Point from;
    Point to;
};

}  // namespace rv52
