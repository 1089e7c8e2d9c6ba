#include "chart/ui/ChartColours.h"

#include "platform/qt/HighContrast.h"

#include <QPalette>

#include <cmath>

namespace rv52 {

ChartColours ScreenColours(const QPalette& palette) {
    const auto base = palette.color(QPalette::Active, QPalette::Base);
    const auto text = palette.color(QPalette::Active, QPalette::Text);
    const bool strong = IsHighContrast(palette);
    const bool dark = Luminance(base) < Luminance(text);

    ChartColours colours;
    colours.background = base;
    colours.floor = Mixed(base, text, strong ? 0 : dark ? 0.07 : 0.05);
    colours.wall = Mixed(base, text, strong ? 0 : dark ? 0.04 : 0.025);
    colours.wallLine = Mixed(base, text, strong ? 0.5 : dark ? 0.2 : 0.16);
    colours.wallEdge = Mixed(base, text, strong ? 1 : 0.4);
    colours.text = Mixed(base, text, strong ? 1 : 0.88);
    colours.core = Qt::black;
    colours.casing = Qt::white;
    colours.ghost = QColor(0xff, 0x4f, 0x9a);
    colours.outside = QColor(0xd8, 0x1b, 0x60);
    colours.calloutFill = base;
    colours.meshLine = 1;
    colours.boldLine = strong ? 3 : 2;
    colours.casingLine = strong ? 7 : 4.5;
    return colours;
}

ChartColours PaperColours(double unitsPerPoint) {
    ChartColours colours;
    colours.background = Qt::white;
    colours.floor = QColor(0xf4, 0xf4, 0xf4);
    colours.wall = QColor(0xfb, 0xfb, 0xfb);
    colours.wallLine = QColor(0xc8, 0xc8, 0xc8);
    colours.wallEdge = QColor(0x80, 0x80, 0x80);
    colours.text = Qt::black;
    colours.core = Qt::black;
    colours.casing = Qt::white;
    colours.ghost = Qt::black;
    colours.outside = QColor(0xd8, 0x1b, 0x60);
    colours.calloutFill = Qt::white;
    colours.hairline = 0.35 * unitsPerPoint;
    colours.line = 0.5 * unitsPerPoint;
    colours.meshLine = 0.35 * unitsPerPoint;
    colours.boldLine = 1.4 * unitsPerPoint;
    colours.casingLine = 3 * unitsPerPoint;
    colours.seam = 0.25 * unitsPerPoint;
    return colours;
}

QColor ToQt(const ChartColour& colour) {
    return {colour.red, colour.green, colour.blue};
}

QColor MeshLineOn(const QColor& band) {
    return Luminance(band) < 0.08 ? Mixed(band, Qt::white, 0.38) : Mixed(band, Qt::black, 0.38);
}

QColor Underside(const QColor& band, const QColor& background) {
    return Mixed(band, background, 0.45);
}

QColor Mixed(const QColor& a, const QColor& b, double share) {
    const auto mix = [share](int from, int to) {
        return static_cast<int>(std::lround(from + (to - from) * share));
    };
    return {mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue())};
}

}  // namespace rv52
