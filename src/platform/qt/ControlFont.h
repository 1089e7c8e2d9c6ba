#pragma once

#include "platform/qt/Twips.h"

#include <QFont>
#include <QFontInfo>

namespace rv52 {

// The controls' font: "MS Sans Serif" of 8.25 points, or its nearest of kin.
inline QFont ControlFont() {
    QFont font;
    font.setFamilies({QStringLiteral("MS Sans Serif"), QStringLiteral("Microsoft Sans Serif"),
                      QStringLiteral("Liberation Sans"), QStringLiteral("Arial"),
                      QStringLiteral("Helvetica")});
    font.setStyleHint(QFont::SansSerif);
    font.setWeight(QFont::Normal);
    font.setPointSizeF(8.25);
    return font;
}

// The same for forms whose controls stand at fixed places, sized as those are: on a desktop that magnifies
// its fonts alone, texts would outgrow their places.
inline QFont FormFont() {
    constexpr double height = 165;  // 8.25 points in twips
    auto font = ControlFont();
    font.setPixelSize(ToPixels(height));
    return font;
}

// For panels that stand at fixed places but speak to the desktop's user in its own font: that font, as tall
// as there is room for at most.
inline QFont PanelFont() {
    constexpr int tallest = 15;
    QFont font;
    if (QFontInfo(font).pixelSize() > tallest) font.setPixelSize(tallest);
    return font;
}

}  // namespace rv52
