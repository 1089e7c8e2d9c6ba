#pragma once

#include <QColor>

class QPalette;

namespace rv52 {

// How bright a colour is to the eye, 0 to 1, and how far two are apart: 1 for equals, 21 for black and white.
double Luminance(const QColor& colour);
double Contrast(const QColor& a, const QColor& b);

// Desktops made for high contrast leave no difference between a window and a field in it.
bool IsHighContrast(const QPalette& palette);

// The toolkit's own style shades a window's colour for outlines and for what is disabled, and black has no
// shades: on a high-contrast desktop, controls get outlines of the text's colour, and what is disabled can
// be read. Other styles are left alone. Once, before the first window.
void ServeHighContrast();

}  // namespace rv52
