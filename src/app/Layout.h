#pragma once

namespace rv52 {

// Sizes in twips, 1/1440 inch; 15 twips are one pixel at 96 dots per inch.
constexpr int kTwipsPerPixel = 15;

// The design size of the main window's client area.
constexpr int kClientWidth = 9030;
constexpr int kClientHeight = 7515;

struct WindowSize {
    double width = kClientWidth;
    double height = kClientHeight;
    bool minimised = false;
};

struct Rectangle {
    double left = 0;
    double top = 0;
    double width = 0;
    double height = 0;

    bool operator==(const Rectangle&) const = default;
};

struct TableLayout {
    Rectangle chart;
    Rectangle grid;
    Rectangle status;  // the strip that the grid leaves
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

// The two panels lie over the chart at fixed places.
constexpr Rectangle kProgressPanel{1200, 4200, 4335, 735};
constexpr Rectangle kPortPanel{1200, 1440, 2655, 1932};

}  // namespace rv52
