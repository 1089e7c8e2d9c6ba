#pragma once

namespace rv52 {

// An upright rectangle, y downwards. Its unit is part of its type, so that no place on the paper is taken for
// one in a window.
template <class Unit>
struct Rectangle {
    using Length = typename Unit::Length;

    Length left{};
    Length top{};
    Length width{};
    Length height{};

    constexpr Length Right() const { return left + width; }
    constexpr Length Bottom() const { return top + height; }

    constexpr bool Contains(const Rectangle& other) const {
        return other.left >= left && other.top >= top && other.Right() <= Right() &&
               other.Bottom() <= Bottom();
    }
    // Whether less than these gaps lies between the two.
    constexpr bool Meets(const Rectangle& other, Length across, Length down) const {
        return left < other.Right() + across && other.left < Right() + across &&
               top < other.Bottom() + down && other.top < Bottom() + down;
    }

    bool operator==(const Rectangle&) const = default;
};

// 1/1440 inch; 15 twips are one pixel at 96 dots per inch.
struct Twip {
    using Length = double;
};
using TwipRectangle = Rectangle<Twip>;
constexpr int kTwipsPerPixel = 15;

// The smallest dot that a printer makes.
struct DevicePixel {
    using Length = int;
};
using PixelRectangle = Rectangle<DevicePixel>;

}  // namespace rv52
