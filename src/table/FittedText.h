#pragma once

#include <QRect>
#include <QString>

class QPainter;

namespace rv52 {

// Draws text in the painter's font and pen, centred in a cell by the box of its glyphs: an 11-pixel row has
// no room for a font's ascent and descent, but for its digits. Shrinks only what would not fit.
void DrawFitted(QPainter& painter, const QRect& cell, const QString& text);

}  // namespace rv52
