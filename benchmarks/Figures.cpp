#include "Figures.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace rv52::bench {

Figure Ratio(std::string name, double value, std::optional<double> atMost) {
    return {std::move(name), value, std::string(Figure::kRatio), atMost};
}

Figure Microseconds(std::string name, double value, std::optional<double> atMost) {
    return {std::move(name), value, "us", atMost};
}

void Report::Add(const Figure& figure) {
    std::printf("%-28s %12.4g %-6s", figure.name.c_str(), figure.value, figure.unit.c_str());
    if (figure.atMost) std::printf("  at most %.4g%s", *figure.atMost, figure.Missed() ? "  MISSED" : "");
    std::printf("\n");
    std::fflush(stdout);
    if (figure.IsGate() && figure.Missed()) ++gatesMissed_;
}

void Report::CouldNot(const std::string& name, const std::string& why) {
    std::printf("%-28s %12s %-6s  MISSED: %s\n", name.c_str(), "-", "-", why.c_str());
    std::fflush(stdout);
    ++gatesMissed_;
}

void Report::Skip(const std::string& name, const std::string& why) {
    std::printf("%-28s %12s %-6s  skipped: %s\n", name.c_str(), "-", "-", why.c_str());
    std::fflush(stdout);
}

double Median(std::vector<double> values) {
    if (values.empty()) return 0;
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

double MedianSeconds(int runs, const std::function<void()>& run) {
    return MedianSecondsInTurns(runs, {run}).front();
}

std::vector<double> MedianSecondsInTurns(int turns, const std::vector<std::function<void()>>& runs) {
    std::vector<std::vector<double>> seconds(runs.size());
    for (int turn = 0; turn < turns; ++turn)
        for (std::size_t run = 0; run < runs.size(); ++run) {
            const auto start = std::chrono::steady_clock::now();
            runs[run]();
            const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
            seconds[run].push_back(taken.count());
        }
    std::vector<double> medians;
    for (auto& of : seconds)
        medians.push_back(Median(std::move(of)));
    return medians;
}

}  // namespace rv52::bench
