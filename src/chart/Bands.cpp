#include "chart/Bands.h"

#include "table/Numbers.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace rv52 {

namespace {

int BandCount(const ChartAxis& advance) {
    return static_cast<int>(RoundHalfEven((advance.to - advance.from) / advance.step));
}

struct Edges {
    double low;
    double high;
};

Edges EdgesOf(int band, const ChartAxis& advance) {
    constexpr double kEndless = std::numeric_limits<double>::infinity();
    const int count = BandCount(advance);
    const auto edge = [&](int number) { return advance.from + number * advance.step; };
    return {band < 0 ? -kEndless : edge(band), band >= count ? kEndless : edge(band + 1)};
}

// Where the side crosses a height, always reckoned from its lower end, and between ends of one height from
// neither: both facets of a side get the same doubles.
std::optional<Point> Crossing(const HeightAt& a, const HeightAt& b, double height) {
    const HeightAt& low = a.height < b.height ? a : b;
    const HeightAt& high = a.height < b.height ? b : a;
    if (!(low.height < height && height < high.height)) return std::nullopt;
    return low.at + (high.at - low.at) * ((height - low.height) / (high.height - low.height));
}

std::vector<Point> Slice(const std::array<HeightAt, 3>& facet, const Edges& edges) {
    std::vector<Point> outline;
    const auto cross = [&](const HeightAt& a, const HeightAt& b, double height) {
        if (const auto point = Crossing(a, b, height)) outline.push_back(*point);
    };
    for (std::size_t corner = 0; corner < facet.size(); ++corner) {
        const auto& from = facet[corner];
        const auto& to = facet[(corner + 1) % facet.size()];
        if (from.height >= edges.low && from.height <= edges.high) outline.push_back(from.at);
        const bool rises = from.height < to.height;
        cross(from, to, rises ? edges.low : edges.high);
        cross(from, to, rises ? edges.high : edges.low);
    }
    return outline;
}

}  // namespace

int BandOf(double height, const ChartAxis& advance) {
    const int count = BandCount(advance);
    if (height < advance.from) return -1;
    if (height > advance.to) return count;
    return std::min(static_cast<int>(std::floor((height - advance.from) / advance.step)), count - 1);
}

void FindBandEdges(const std::array<HeightAt, 3>& facet, const ChartAxis& advance,
                   std::vector<BandEdge>& edges) {
    const auto [low, high] = std::minmax({facet[0].height, facet[1].height, facet[2].height});
    for (int band = BandOf(low, advance); band < BandOf(high, advance); ++band) {
        std::vector<Point> ends;
        for (std::size_t corner = 0; corner < facet.size(); ++corner) {
            const auto& from = facet[corner];
            const double height = EdgesOf(band, advance).high;
            if (from.height == height) ends.push_back(from.at);
            if (const auto point = Crossing(from, facet[(corner + 1) % facet.size()], height))
                ends.push_back(*point);
        }
        if (ends.size() == 2) edges.push_back({band, {ends[0], ends[1]}});
    }
}

void CutIntoBands(const std::array<HeightAt, 3>& facet, const ChartAxis& advance,
                  std::vector<BandPiece>& pieces) {
    const auto [low, high] = std::minmax({facet[0].height, facet[1].height, facet[2].height});
    const int last = BandOf(high, advance);
    for (int band = BandOf(low, advance); band <= last; ++band) {
        auto outline = Slice(facet, EdgesOf(band, advance));
        if (outline.size() >= 3) pieces.push_back({band, std::move(outline)});
    }
}

}  // namespace rv52
