#pragma once

#include "chart/ChartTemplate.h"

#include <QColor>

class QPalette;

namespace rv52 {

// The colours and the lines of a chart, for the device that it is drawn on. The bands' colours are the
// template's on every device: one colour means one advance.
struct ChartColours {
    QColor background;
    QColor floor;
    QColor wall;
    QColor wallLine;
    QColor wallEdge;
    QColor text;
    QColor core;    // of the cursor's curves and of marks, drawn upon
    QColor casing;  // a rim that keeps them apart from any band
    QColor ghost;
    QColor outside;  // surface beyond the advance axis
    QColor calloutFill;

    double hairline = 0;  // widths, in units of the drawing surface; 0 is one pixel of the device
    double line = 1;
    double meshLine = 1;
    double boldLine = 2;
    double casingLine = 5;
    // Vector devices fill each polygon with soft edges: a stroke of the polygon's own colour closes the
    // seams between them. 0 on screens, which fill without antialiasing.
    double seam = 0;
};

// For a screen of this palette: light, dark or high contrast. Widths are in logical pixels.
ChartColours ScreenColours(const QPalette& palette);

// For paper: dark on white, all opaque.
ChartColours PaperColours(double unitsPerPoint);

QColor ToQt(const ChartColour& colour);
// The line of the mesh upon a band: lighter than dark bands, darker than light ones.
QColor MeshLineOn(const QColor& band);
// The surface seen from below.
QColor Underside(const QColor& band, const QColor& background);
// An even mixture: 0 gives a, 1 gives b.
QColor Mixed(const QColor& a, const QColor& b, double share);

}  // namespace rv52
