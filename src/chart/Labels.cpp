#include "chart/Labels.h"

#include <algorithm>
#include <cmath>

namespace rv52 {

namespace {

constexpr double kNearlyLevel = 0.3;

const Tick& Lowest(const AxisOnEdge& axis) {
    return *std::ranges::max_element(axis.ticks, {}, [](const Tick& tick) { return tick.at.y; });
}

class AxisTexts {
 public:
    AxisTexts(const Walls& walls, const Area& bounds, const TextMeasure& measure)
        : walls_(walls), measure_(measure), gap_(measure("0").height / 3), bounds_(bounds) {
        bounds_ = {bounds.left + gap_, bounds.top, std::max(0.0, bounds.width - 2 * gap_), bounds.height};
    }

    // All equally far from the axis: as near as the box lets them.
    void AddMarks(const AxisOnEdge& axis) {
        const auto marks = [&](double distance) {
            std::vector<PlacedText> all;
            for (const auto& tick : axis.ticks)
                all.push_back(Beside(tick, axis.outward, distance));
            return all;
        };
        auto all = marks(2 * gap_);
        for (double distance = 2.5 * gap_; distance < 12 * gap_ && TouchesBox(all); distance += gap_ / 2)
            all = marks(distance);
        const auto kept = Thinned(all);
        texts_.insert(texts_.end(), kept.begin(), kept.end());
    }

    // Beside the middle of the axis, clear of its marks; failing that, below its lower end. An axis of which
    // a magnified plot shows no mark has no caption either.
    void AddCaption(const AxisOnEdge& axis) {
        if (!ShowsAMark(axis)) return;
        Extent mark{0, 0};
        for (const auto& tick : axis.ticks) {
            const Extent size = measure_(tick.text);
            mark = {std::max(mark.width, size.width), std::max(mark.height, size.height)};
        }
        const Point middle = (axis.ticks.front().at + axis.ticks.back().at) * 0.5;
        const Point out = axis.outward;
        const double clear = std::abs(out.x) * mark.width + std::abs(out.y) * mark.height;
        if (!Slide(axis.caption, middle, out, 3 * gap_ + clear))
            Slide(axis.caption, Lowest(axis).at, {0, 1}, 3 * gap_ + mark.height);
    }

    // A level text along an upright axis would need a wide margin: it stands above the axis, over its middle
    // or, where the wall behind rises steeply, ending there.
    void AddCaptionAbove(const AxisOnEdge& axis) {
        if (!ShowsAMark(axis)) return;
        const Extent size = measure_(axis.caption);
        const Point top = axis.ticks.back().at;
        double bottom = top.y - gap_;
        while (bottom > bounds_.top) {
            for (const double reach : {size.width / 2, size.width})
                if (AddWithin({top.x - reach, bottom - size.height, size.width, size.height}, axis.caption))
                    return;
            bottom -= gap_ / 2;
        }
    }

    std::vector<PlacedText> Take() { return std::move(texts_); }

 private:
    static Point Offset(Point outward, Extent size, double distance) {
        return {outward.x * (distance + size.width / 2), outward.y * (distance + size.height / 2)};
    }

    PlacedText Beside(const Tick& tick, Point outward, double distance) const {
        const Extent size = measure_(tick.text);
        return {tick.text, AreaAround(tick.at + Offset(outward, size, distance), size)};
    }

    // Every mark, or every second, fourth, …, until neighbours stand clear.
    std::vector<PlacedText> Thinned(const std::vector<PlacedText>& all) const {
        std::size_t stride = 1;
        while (stride < all.size() && !Clear(all, stride))
            stride *= 2;
        std::vector<PlacedText> kept;
        for (std::size_t mark = 0; mark < all.size(); mark += stride)
            if (Free(all[mark].area)) kept.push_back(all[mark]);
        return kept;
    }

    bool ShowsAMark(const AxisOnEdge& axis) const {
        return std::ranges::any_of(
            axis.ticks, [&](const Tick& tick) { return bounds_.Contains(AreaAround(tick.at, {})); });
    }

    bool TouchesBox(const Area& area) const {
        return std::ranges::any_of(walls_.faces, [&](const auto& face) { return Overlap(area, face); });
    }
    bool TouchesBox(const std::vector<PlacedText>& texts) const {
        return std::ranges::any_of(texts, [&](const auto& text) { return TouchesBox(text.area); });
    }

    bool Clear(const std::vector<PlacedText>& all, std::size_t stride) const {
        for (std::size_t mark = stride; mark < all.size(); ++mark)
            if (all[mark].area.Meets(all[mark - stride].area, 1.5 * gap_, 0)) return false;
        return true;
    }

    bool Slide(const std::string& text, Point from, Point direction, double distance) {
        const Extent size = measure_(text);
        const double reach = distance + bounds_.width + bounds_.height;
        while (distance < reach) {
            const Area area = AreaAround(from + Offset(direction, size, distance), size);
            // Pushed back from the side of the chart it would come to lie between marks one below another.
            if (std::abs(direction.y) > kNearlyLevel ? AddWithin(area, text) : Add(area, text)) return true;
            distance += gap_ / 2;
        }
        return false;
    }

    // Pushed back from the sides of the chart.
    bool AddWithin(Area area, const std::string& text) {
        area.left = std::max(bounds_.left, std::min(area.left, bounds_.Right() - area.width));
        return Add(area, text);
    }

    bool Add(const Area& area, const std::string& text) {
        if (!Free(area)) return false;
        texts_.push_back({text, area});
        return true;
    }

    bool Free(const Area& area) const {
        return bounds_.Contains(area) && !TouchesBox(area) &&
               std::ranges::none_of(texts_,
                                    [&](const auto& other) { return area.Meets(other.area, 1.5 * gap_, 0); });
    }

    const Walls& walls_;
    const TextMeasure& measure_;
    double gap_;
    Area bounds_;
    std::vector<PlacedText> texts_;
};

}  // namespace

std::vector<PlacedText> PlaceAxisTexts(const Walls& walls, const Area& bounds, const TextMeasure& measure) {
    AxisTexts texts(walls, bounds, measure);
    for (const auto* axis : {&walls.rpm, &walls.map, &walls.advance})
        texts.AddMarks(*axis);
    texts.AddCaption(walls.rpm);
    texts.AddCaption(walls.map);
    texts.AddCaptionAbove(walls.advance);
    return texts.Take();
}

Area PlaceNear(Point place, Extent size, double distance, Near side, const Area& bounds) {
    Area area = AreaAround(place, size);
    if (side == Near::Above) {
        area.top = place.y - distance - size.height;
        if (area.top < bounds.top) area.top = place.y + distance;
    } else {
        area.left = place.x + distance;
        if (area.Right() > bounds.Right()) area.left = place.x - distance - size.width;
    }
    area.left = std::max(bounds.left, std::min(area.left, bounds.Right() - area.width));
    area.top = std::max(bounds.top, std::min(area.top, bounds.Bottom() - area.height));
    return area;
}

}  // namespace rv52
