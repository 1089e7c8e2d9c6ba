#include "platform/qt/HighContrast.h"

#include <QApplication>
#include <QPainter>
#include <QPalette>
#include <QProxyStyle>
#include <QStyleOption>

#include <algorithm>
#include <cmath>

namespace rv52 {

namespace {

class OutliningStyle : public QProxyStyle {
 public:
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        switch (element) {
            case PE_IndicatorCheckBox:
            case PE_FrameLineEdit:
            case PE_PanelButtonCommand:
            case PE_Frame:
            case PE_FrameMenu:
                return Outline(*option, option->rect, *painter);
            case PE_IndicatorRadioButton:
                return Outline(*option, option->rect, *painter, option->rect.width() / 2.0);
            default:
                return;
        }
    }

    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override {
        QProxyStyle::drawComplexControl(control, option, painter, widget);
        const auto part = [&](SubControl sub) { return subControlRect(control, option, sub, widget); };
        if (control == CC_GroupBox) {
            constexpr QMargins frame(2, 2, 2, 2);
            Outline(*option, part(SC_GroupBoxContents) + frame, *painter);
        }
        if (control == CC_Slider) Outline(*option, part(SC_SliderHandle), *painter);
        if (control == CC_ScrollBar) Outline(*option, part(SC_ScrollBarSlider), *painter);
        if (control == CC_ComboBox) Outline(*option, option->rect, *painter);
    }

 private:
    static void Outline(const QStyleOption& option, const QRect& place, QPainter& painter,
                        double roundness = 0) {
        const bool focused = option.state.testFlag(State_HasFocus);
        painter.save();
        painter.setPen(option.palette.color(focused ? QPalette::Highlight : QPalette::WindowText));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(place.adjusted(0, 0, -1, -1), roundness, roundness);
        painter.restore();
    }
};

QColor Between(const QColor& a, const QColor& b) {
    return {(a.red() + b.red()) / 2, (a.green() + b.green()) / 2, (a.blue() + b.blue()) / 2};
}

}  // namespace

double Luminance(const QColor& colour) {
    const auto linear = [](int byte) {
        const double value = byte / 255.0;
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.red()) + 0.7152 * linear(colour.green()) + 0.0722 * linear(colour.blue());
}

double Contrast(const QColor& a, const QColor& b) {
    const double first = Luminance(a) + 0.05;
    const double second = Luminance(b) + 0.05;
    return std::max(first, second) / std::min(first, second);
}

bool IsHighContrast(const QPalette& palette) {
    const auto base = palette.color(QPalette::Base);
    return base == palette.color(QPalette::Window) && Contrast(base, palette.color(QPalette::Text)) > 20;
}

void ServeHighContrast() {
    auto palette = QApplication::palette();
    if (!IsHighContrast(palette) || QApplication::style()->name() != QLatin1String("fusion")) return;
    const auto shade = Between(palette.color(QPalette::Window), palette.color(QPalette::WindowText));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, shade);
    palette.setColor(QPalette::Mid, shade);
    QApplication::setStyle(new OutliningStyle);  // NOLINT(cppcoreguidelines-owning-memory): the application's
    QApplication::setPalette(palette);
}

}  // namespace rv52
