#pragma once

#include "platform/Rectangle.h"

namespace rv52 {

// The design size of the main window's client area, in twips.
constexpr int kClientWidth = 9030;
constexpr int kClientHeight = 7515;

struct WindowSize {
    double width = kClientWidth;
    double height = kClientHeight;
    bool minimised = false;
};

struct TableLayout {
    TwipRectangle chart;
    TwipRectangle grid;
    TwipRectangle status;  // the strip that the grid leaves
};

// The chart takes the upper seven tenths, the grid what is left above a strip of 725 twips.
TableLayout LayOut(const WindowSize& window);

struct GridPitch {
    int rowHeight = 0;
    int columnWidth = 0;
};

// Row height and column width for a grid of this inner size. The same for both table types, so an EX
// table scrolls. Never negative.
GridPitch PitchOf(double innerHeight, double innerWidth);

}  // namespace rv52
