#pragma once

namespace rv52 {

// What a vertical slider sets. Its positions count from the top, where the highest value sits: position +
// value / unit is constant.
struct SliderScale {
    int first;     // position at the top
    int last;      // position at the bottom
    int pageStep;  // positions
    int sum;       // position + value / unit
    int unit;      // of the value, for one position

    constexpr int ValueAt(int position) const { return (sum - position) * unit; }
    // The nearest position, halves to the even one, within the slider.
    int PositionOf(double value) const;
};

}  // namespace rv52
