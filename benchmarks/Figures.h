#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace rv52::bench {

// A measured figure. A ratio has its reference measured in the same run, so its target is a gate; a target in
// microseconds is an order of magnitude, since machines differ.
struct Figure {
    std::string name;
    double value = 0;
    std::string unit;
    std::optional<double> atMost = std::nullopt;

    bool IsGate() const { return atMost && unit == kRatio; }
    bool Missed() const { return atMost && !(value <= *atMost); }

    static constexpr std::string_view kRatio = "ratio";
};

Figure Ratio(std::string name, double value, std::optional<double> atMost);
Figure Microseconds(std::string name, double value, std::optional<double> atMost = std::nullopt);

// Figures go out as they are measured, one a line: name, value, unit, and the target where there is one.
class Report {
 public:
    void Add(const Figure& figure);
    // A figure that could not be measured, and why. Where it is a gate, it counts as missed.
    void CouldNot(const std::string& name, const std::string& why);
    // Something whose reference is not installed here.
    void Skip(const std::string& name, const std::string& why);

    int GatesMissed() const { return gatesMissed_; }

 private:
    int gatesMissed_ = 0;
};

double Median(std::vector<double> values);

// The median of this many timed runs, in seconds.
double MedianSeconds(int runs, const std::function<void()>& run);
// The same of each of several things that take turns, so that a machine that is slow for a while is slow for
// all.
std::vector<double> MedianSecondsInTurns(int turns, const std::vector<std::function<void()>>& runs);

}  // namespace rv52::bench
