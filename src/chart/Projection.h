#pragma once

#include "chart/Plane.h"
#include "chart/Viewpoint.h"
#include "table/AdvanceTable.h"

namespace rv52 {

// A place in the box that the plot stands in: x along engine speed, y along falling manifold pressure, z
// upwards; the middle of the floor is 0, 0, 0.
struct Place {
    double x = 0;
    double y = 0;
    double z = 0;
};

constexpr double kBoxWidth = 1.7;
constexpr double kBoxDepth = 1.05;
constexpr double kBoxHeight = 0.72;

// The place on the floor below a data point of a table with this many rows.
constexpr Place FloorPlace(Cell cell, int rows) {
    return {kBoxWidth * ((cell.column - 1.0) / (kColumnCount - 1.0) - 0.5),
            kBoxDepth * ((cell.row - 1.0) / (rows - 1.0) - 0.5), 0};
}

// The box as the eye sees it. Orthographic: parallel lines stay parallel, and a degree of advance is
// equally high everywhere, so heights compare across the plot and a drag has one gain.
class Projection {
 public:
    // At zoom 1 without pan the box fills the area; the picture is stretched a little where the area is
    // wide, but never so far that the box no longer looks like itself.
    Projection(const Viewpoint& viewpoint, const Area& area);

    Point At(Place place) const;
    // Grows away from the eye.
    double Depth(Place place) const { return Away(place) * cosElevation_ - place.z * sinElevation_; }
    // The height on the drawing surface of one unit of z.
    double UpScale() const { return scale_.y * cosElevation_; }

    // How depth changes along x and along y: their signs tell which ends of the floor are far.
    double AwayAlongX() const { return sinAzimuth_; }
    double AwayAlongY() const { return cosAzimuth_; }

 private:
    double Across(Place place) const { return place.x * cosAzimuth_ - place.y * sinAzimuth_; }
    double Away(Place place) const { return place.x * sinAzimuth_ + place.y * cosAzimuth_; }

    double sinAzimuth_;
    double cosAzimuth_;
    double sinElevation_;
    double cosElevation_;
    Point scale_;
    Point origin_;  // where the middle of the floor appears
};

}  // namespace rv52
