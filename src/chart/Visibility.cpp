#include "chart/Visibility.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace rv52 {

namespace {

// Depths nearer than this to each other are the same place on the surface (the box is about 1.7 deep).
constexpr double kSameDepth = 1e-4;
// A facet seen this much edge on hides nothing. Twice an area, in square pixels.
constexpr double kEdgeOn = 1e-3;
// A place on a side of a facet counts as within it: what stands exactly behind the side of two facets, as
// whole rows do when the plot is seen from straight ahead, would else slip through between them.
constexpr double kOnSide = 1e-9;

// Facets that lie wholly beside a line are most of them: told by their extent alone, a little widened.
constexpr double kBeside = 1e-3;

struct Span {
    double from;  // shares of the line, 0 to 1
    double to;
};

// A quantity that changes evenly along the line.
struct Along {
    double start;
    double end;
};

// Narrows the span to where the quantity is above 0.
void KeepPositive(const Along& value, Span& span) {
    if (value.start <= 0 && value.end <= 0) {
        span.to = span.from;
    } else if (value.start < 0) {
        span.from = std::max(span.from, value.start / (value.start - value.end));
    } else if (value.end < 0) {
        span.to = std::min(span.to, value.start / (value.start - value.end));
    }
}

bool LiesBeside(const Facet& facet, const Vertex& a, const Vertex& b) {
    return facet.most.x < std::min(a.at.x, b.at.x) - kBeside ||
           facet.least.x > std::max(a.at.x, b.at.x) + kBeside ||
           facet.most.y < std::min(a.at.y, b.at.y) - kBeside ||
           facet.least.y > std::max(a.at.y, b.at.y) + kBeside;
}

// Where along the line a → b the facet lies before it.
std::optional<Span> HiddenBy(const Facet& facet, const Vertex& a, const Vertex& b, const Mesh& mesh) {
    if (LiesBeside(facet, a, b)) return std::nullopt;
    const Vertex* corners[3];
    for (std::size_t corner = 0; corner < 3; ++corner)
        corners[corner] = &mesh.At(facet.corners[corner]);
    const double area = Turn(corners[0]->at, corners[1]->at, corners[2]->at);
    if (std::abs(area) < kEdgeOn) return std::nullopt;

    Span span{0, 1};
    Along behind{a.depth - kSameDepth, b.depth - kSameDepth};
    for (std::size_t corner = 0; corner < 3; ++corner) {
        const auto& next = *corners[(corner + 1) % 3];
        const auto& last = *corners[(corner + 2) % 3];
        const Along share{Turn(next.at, last.at, a.at) / area, Turn(next.at, last.at, b.at) / area};
        KeepPositive({share.start + kOnSide, share.end + kOnSide}, span);
        if (span.from >= span.to) return std::nullopt;
        behind.start -= share.start * corners[corner]->depth;
        behind.end -= share.end * corners[corner]->depth;
    }
    KeepPositive(behind, span);
    return span.from < span.to ? std::optional(span) : std::nullopt;
}

Segment PartOf(const Vertex& a, const Vertex& b, const Span& span) {
    return {a.at + (b.at - a.at) * span.from, a.at + (b.at - a.at) * span.to};
}

}  // namespace

bool IsVisible(Cell cell, const Mesh& mesh) {
    const auto& point = mesh.At(cell);
    return std::ranges::none_of(
        mesh.Facets(), [&](const Facet& facet) { return HiddenBy(facet, point, point, mesh).has_value(); });
}

std::vector<Segment> VisibleParts(Cell from, Cell to, const Mesh& mesh) {
    const auto& a = mesh.At(from);
    const auto& b = mesh.At(to);
    std::vector<Span> hidden;
    for (const auto& facet : mesh.Facets())
        if (const auto span = HiddenBy(facet, a, b, mesh)) hidden.push_back(*span);
    std::ranges::sort(hidden, {}, &Span::from);

    std::vector<Segment> parts;
    double reached = 0;
    for (const auto& span : hidden) {
        if (span.from > reached) parts.push_back(PartOf(a, b, {reached, span.from}));
        reached = std::max(reached, span.to);
    }
    if (reached < 1) parts.push_back(PartOf(a, b, {reached, 1}));
    return parts;
}

}  // namespace rv52
