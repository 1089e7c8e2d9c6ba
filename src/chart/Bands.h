#pragma once

#include "chart/ChartTemplate.h"
#include "chart/Plane.h"

#include <array>
#include <vector>

namespace rv52 {

// A corner of a facet: its place and its height in degrees.
struct HeightAt {
    Point at;
    double height = 0;
};

// A part of a facet within one colour band: a convex polygon.
struct BandPiece {
    int band = 0;
    std::vector<Point> outline;
};

// The band of a height: 0 for the lowest one of the axis, −1 below the axis, and the number of bands above
// it. A band holds its lower edge; the highest holds both.
int BandOf(double height, const ChartAxis& advance);

// A line across a facet where one band ends and the next begins.
struct BandEdge {
    int below = 0;  // the band under it
    Segment line;
};

// The lines at the inner edges of the bands.
void FindBandEdges(const std::array<HeightAt, 3>& facet, const ChartAxis& advance,
                   std::vector<BandEdge>& edges);

// Cuts a facet at the edges of the bands. Facets that share a side cut it at the same points, to the bit,
// so that pieces neither overlap nor leave gaps.
void CutIntoBands(const std::array<HeightAt, 3>& facet, const ChartAxis& advance,
                  std::vector<BandPiece>& pieces);

}  // namespace rv52
