#pragma once

#include "table/TableType.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace rv52 {

struct ChartAxis {
    std::string caption;
    double from = 0;
    double to = 0;
    double step = 0;
};

// Red, green and blue, 0 to 255.
struct ChartColour {
    int red = 0;
    int green = 0;
    int blue = 0;

    bool operator==(const ChartColour&) const = default;
};

// Degrees between which the eye may stand above the floor: lower, rows hide each other; higher, heights
// no longer show.
constexpr double kLowestElevation = 10;
constexpr double kHighestElevation = 70;

// Everything about the surface chart that the program does not set itself. The syntax of its file is in
// docs/file-formats.md.
struct ChartTemplate {
    int columns = 0;
    int rows = 0;
    double azimuth = 0;    // degrees the plot is turned about its vertical axis
    double elevation = 0;  // degrees the eye stands above the floor
    ChartAxis rpm;
    ChartAxis map;
    ChartAxis advance;
    std::vector<ChartColour> bands;  // one for each step of the advance axis, lowest first
};

// Nothing when the text is malformed or made for another shape of data than the type's.
std::optional<ChartTemplate> ParseChartTemplate(std::string_view text, TableType type);

// "RV52_Chart.oc3" or "RV52_EX_Chart.oc3".
std::string_view ChartTemplateFileName(TableType type);

}  // namespace rv52
