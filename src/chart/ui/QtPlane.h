#pragma once

#include "chart/Plane.h"

#include <QPointF>
#include <QPolygonF>
#include <QRectF>

namespace rv52 {

inline QPointF ToQt(Point point) {
    return {point.x, point.y};
}

inline QRectF ToQt(const Area& area) {
    return {area.left, area.top, area.width, area.height};
}

template <class Points>
QPolygonF ToPolygon(const Points& points) {
    QPolygonF polygon;
    for (const auto& point : points)
        polygon.push_back(ToQt(point));
    return polygon;
}

}  // namespace rv52
