#pragma once

#include "platform/Rectangle.h"

#include <QRect>

#include <cmath>

namespace rv52 {

// Twips to Qt's logical pixels, which are 1/96 inch at every scale.
inline int ToPixels(double twips) {
    return static_cast<int>(std::lround(twips / kTwipsPerPixel));
}

inline QRect ToPixels(const TwipRectangle& twips) {
    const int left = ToPixels(twips.left);
    const int top = ToPixels(twips.top);
    return {left, top, ToPixels(twips.left + twips.width) - left, ToPixels(twips.top + twips.height) - top};
}

}  // namespace rv52
