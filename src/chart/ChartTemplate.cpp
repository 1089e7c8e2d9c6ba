#include "chart/ChartTemplate.h"

#include "platform/Text.h"
#include "table/AdvanceTable.h"
#include "table/Numbers.h"

#include <charconv>
#include <cmath>
#include <map>
#include <stdexcept>

namespace rv52 {

namespace {

constexpr std::size_t kLongestText = 8192;
constexpr std::size_t kLongestLine = 240;
constexpr double kMostSteps = 100;

struct Malformed : std::runtime_error {
    using std::runtime_error::runtime_error;
};

void Demand(bool fulfilled, const char* what) {
    if (!fulfilled) throw Malformed(what);
}

std::string_view Trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

// The entries of the file. Each is taken once; what is left over at the end is unknown.
class Entries {
 public:
    explicit Entries(std::string_view text) {
        Demand(text.size() <= kLongestText, "overlong file");
        Demand(text.find('\0') == std::string_view::npos, "NUL byte");
        for (const auto line : Lines(text))
            if (!Trimmed(line).empty() && !line.starts_with('!')) Add(line);
    }

    std::string Text(const std::string& key) {
        const auto entry = entries_.find(key);
        Demand(entry != entries_.end(), "missing key");
        std::string value(entry->second);
        entries_.erase(entry);
        return value;
    }

    double Number(const std::string& key) {
        const auto number = EntireNumber(Text(key));
        Demand(number && std::isfinite(*number), "bad number");
        return *number;
    }

    ChartAxis Axis(const std::string& name) {
        ChartAxis axis{Text(name + ".caption"), Number(name + ".from"), Number(name + ".to"),
                       Number(name + ".step")};
        Demand(axis.from < axis.to && axis.step > 0, "empty axis");
        const double steps = (axis.to - axis.from) / axis.step;
        Demand(steps <= kMostSteps && std::abs(steps - RoundHalfEven(steps)) < 1e-9, "uneven steps");
        return axis;
    }

    void End() const { Demand(entries_.empty(), "unknown key"); }

 private:
    void Add(std::string_view line) {
        Demand(line.size() <= kLongestLine, "overlong line");
        const auto equals = line.find('=');
        Demand(equals != std::string_view::npos, "not an entry");
        const auto value = Trimmed(line.substr(equals + 1));
        Demand(!value.empty(), "no value");
        const auto [entry, added] = entries_.emplace(Trimmed(line.substr(0, equals)), value);
        Demand(added, "duplicate key");
    }

    std::map<std::string, std::string_view> entries_;
};

int HexByte(std::string_view digits) {
    int value = 0;
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
    Demand(result.ec == std::errc{} && result.ptr == digits.data() + digits.size() && value >= 0,
           "bad colour");
    return value;
}

std::vector<ChartColour> Colours(std::string_view text) {
    std::vector<ChartColour> colours;
    while (!text.empty()) {
        const auto word = text.substr(0, text.find_first_of(" \t"));
        Demand(word.size() == 7 && word.front() == '#', "bad colour");
        colours.push_back(
            {HexByte(word.substr(1, 2)), HexByte(word.substr(3, 2)), HexByte(word.substr(5, 2))});
        text = Trimmed(text.substr(word.size()));
    }
    return colours;
}

// The floor of the plot is marked with the breakpoints of the data, so its axes must be those.
void DemandShape(const ChartTemplate& chart, double columns, double rows, TableType type) {
    Demand(columns == kColumnCount && rows == RowCount(type), "another shape of data");
    Demand(chart.rpm.from == RpmOfColumn(1) && chart.rpm.to == RpmOfColumn(kColumnCount),
           "another RPM range");
    Demand(chart.map.from == MapOfRow(RowCount(type)) && chart.map.to == MapOfRow(1), "another MAP range");
}

ChartTemplate Read(std::string_view text, TableType type) {
    Entries entries(text);
    ChartTemplate chart;
    const double columns = entries.Number("columns");
    const double rows = entries.Number("rows");
    chart.azimuth = entries.Number("azimuth");
    chart.elevation = entries.Number("elevation");
    Demand(std::abs(chart.azimuth) <= 180, "azimuth out of range");
    Demand(chart.elevation >= kLowestElevation && chart.elevation <= kHighestElevation,
           "elevation out of range");
    chart.rpm = entries.Axis("rpm");
    chart.map = entries.Axis("map");
    chart.advance = entries.Axis("advance");
    chart.bands = Colours(entries.Text("advance.bands"));
    entries.End();
    const double steps = (chart.advance.to - chart.advance.from) / chart.advance.step;
    Demand(static_cast<double>(chart.bands.size()) == RoundHalfEven(steps), "one colour for each band");
    DemandShape(chart, columns, rows, type);
    chart.columns = kColumnCount;
    chart.rows = RowCount(type);
    return chart;
}

}  // namespace

std::optional<ChartTemplate> ParseChartTemplate(std::string_view text, TableType type) {
    try {
        return Read(text, type);
    } catch (const Malformed&) {
        return std::nullopt;
    }
}

std::string_view ChartTemplateFileName(TableType type) {
    return type == TableType::EX ? "RV52_EX_Chart.oc3" : "RV52_Chart.oc3";
}

}  // namespace rv52
