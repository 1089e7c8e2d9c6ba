#include "chart/Labels.h"

#include <algorithm>
#include <cmath>

namespace rv52 {

namespace {

class AxisTexts {
 public:
    AxisTexts(const Area& bounds, double gap, const TextMeasure& measure)
        : bounds_(bounds), gap_(gap), measure_(measure) {}

    void AddMarks(const AxisOnEdge& axis) {
        std::vector<PlacedText> all;
        for (const auto& tick : axis.ticks)
            all.push_back(Beside(tick, axis.outward));
        const std::size_t stride = StrideFor(all);
        for (std::size_t mark = 0; mark < all.size(); mark += stride)
            if (Free(all[mark].area)) texts_.push_back(all[mark]);
    }

    // Beside the middle of the axis, moved outwards until it is clear of all other texts.
    void AddCaption(const AxisOnEdge& axis, Point middle) {
        const Extent size = measure_(axis.caption);
        const double reach = 12 * (size.width + size.height);
        for (double distance = gap_; distance < reach; distance += 1) {
            const Area area = Inside(AreaAround(middle + Offset(axis.outward, size, distance), size));
            if (!Free(area)) continue;
            texts_.push_back({axis.caption, area});
            return;
        }
    }

    std::vector<PlacedText> Take() { return std::move(texts_); }

 private:
    static Point Offset(Point outward, Extent size, double distance) {
        return {outward.x * (distance + size.width / 2), outward.y * (distance + size.height / 2)};
    }

    PlacedText Beside(const Tick& tick, Point outward) const {
        const Extent size = measure_(tick.text);
        return {tick.text, AreaAround(tick.at + Offset(outward, size, 2 * gap_), size)};
    }

    // The least that leaves a gap between neighbours.
    std::size_t StrideFor(const std::vector<PlacedText>& all) const {
        for (std::size_t stride = 1; stride < all.size(); stride *= 2) {
            bool clear = true;
            for (std::size_t mark = stride; mark < all.size(); mark += stride)
                clear = clear && !all[mark].area.Meets(all[mark - stride].area, gap_);
            if (clear) return stride;
        }
        return std::max<std::size_t>(1, all.size());
    }

    bool Free(const Area& area) const {
        return bounds_.Contains(area) && std::ranges::none_of(texts_, [&](const PlacedText& other) {
                   return area.Meets(other.area, gap_);
               });
    }

    Area Inside(Area area) const {
        area.left = std::max(bounds_.left, std::min(area.left, bounds_.Right() - area.width));
        return area;
    }

    const Area& bounds_;
    double gap_;
    const TextMeasure& measure_;
    std::vector<PlacedText> texts_;
};

Point MiddleOf(const AxisOnEdge& axis) {
    return (axis.ticks.front().at + axis.ticks.back().at) * 0.5;
}

}  // namespace

std::vector<PlacedText> PlaceAxisTexts(const Walls& walls, const Area& bounds, double gap,
                                       const TextMeasure& measure) {
    AxisTexts texts(bounds, gap, measure);
    texts.AddMarks(walls.advance);
    texts.AddMarks(walls.rpm);
    texts.AddMarks(walls.map);
    texts.AddCaption(walls.rpm, MiddleOf(walls.rpm));
    texts.AddCaption(walls.map, MiddleOf(walls.map));
    // A level text along an upright axis would be as wide as the margin: it stands above the axis instead.
    AxisOnEdge upright = walls.advance;
    upright.outward = {0, -1};
    texts.AddCaption(upright, upright.ticks.back().at);
    return texts.Take();
}

Area PlaceBeside(Point place, Extent size, double distance, const Area& bounds) {
    Area area{place.x - size.width / 2, place.y - distance - size.height, size.width, size.height};
    if (area.top < bounds.top) area.top = place.y + distance;
    area.left = std::max(bounds.left, std::min(area.left, bounds.Right() - area.width));
    area.top = std::max(bounds.top, std::min(area.top, bounds.Bottom() - area.height));
    return area;
}

}  // namespace rv52
