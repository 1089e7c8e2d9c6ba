#pragma once

#include "chart/Scene.h"

#include <optional>
#include <string>

namespace rv52 {

// What stands over the surface while somebody works on it.
struct ChartMarks {
    std::optional<Cell> cursor;         // the grid's current cell
    std::optional<Cell> hover;          // the point that a press would pick
    std::optional<Cell> labelled;       // the point that the value label is attached to
    std::string label;                  // its text
    std::optional<AdvanceTable> ghost;  // the surface as a shift would leave it
    std::optional<double> limit;        // the highest value that the labelled point may take

    bool operator==(const ChartMarks&) const = default;
};

struct Callout {
    std::string text;
    Area box;             // within the chart
    Point point;          // where the labelled point is
    bool hidden = false;  // the surface hides the point
};

struct LimitMark {
    Point from;  // the point
    Point at;    // where it would be at its limit
};

// The marks as places.
struct Overlay {
    std::vector<std::vector<Point>> cursor;
    std::vector<Segment> ghost;
    std::optional<Point> hover;
    std::optional<LimitMark> limit;
    std::optional<Callout> callout;
};

// The callout's text is measured in its own, bolder font.
Overlay OverlayOf(const Scene& scene, const ChartMarks& marks, const TextMeasure& measureBold);

}  // namespace rv52
