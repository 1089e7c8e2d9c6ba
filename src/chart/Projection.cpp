#include "chart/Projection.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace rv52 {

namespace {

constexpr double kMostStretch = 1.6;

double Radians(double degrees) {
    return degrees * std::numbers::pi / 180;
}

}  // namespace

Projection::Projection(const Viewpoint& viewpoint, const Area& area)
    : sinAzimuth_(std::sin(Radians(viewpoint.azimuth))),
      cosAzimuth_(std::cos(Radians(viewpoint.azimuth))),
      sinElevation_(std::sin(Radians(viewpoint.elevation))),
      cosElevation_(std::cos(Radians(viewpoint.elevation))) {
    const double floorAcross = kBoxWidth * std::abs(cosAzimuth_) + kBoxDepth * std::abs(sinAzimuth_);
    const double floorAway = kBoxWidth * std::abs(sinAzimuth_) + kBoxDepth * std::abs(cosAzimuth_);
    const double height = kBoxHeight * cosElevation_;

    const Point fit{std::max(1.0, area.width) / floorAcross,
                    std::max(1.0, area.height) / (floorAway * sinElevation_ + height)};
    scale_ =
        Point{std::min(fit.x, kMostStretch * fit.y), std::min(fit.y, kMostStretch * fit.x)} * viewpoint.zoom;
    const Point centre = CentreOf(area) + Point{viewpoint.pan.x * area.width, viewpoint.pan.y * area.height};
    origin_ = centre + Point{0, scale_.y * height / 2};
}

Point Projection::At(Place place) const {
    return origin_ + Point{scale_.x * Across(place),
                           -scale_.y * (place.z * cosElevation_ + Away(place) * sinElevation_)};
}

}  // namespace rv52
