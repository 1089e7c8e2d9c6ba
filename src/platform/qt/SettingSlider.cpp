#include "platform/qt/SettingSlider.h"

#include <QStyleOptionSlider>
#include <QStylePainter>

namespace rv52 {

namespace {

// Styles take a darker shade of the window's colour for the marks, which is lost on a dark desktop. They are
// given one halfway to the texts' colour instead.
void DrawTicks(QStylePainter& painter, QStyleOptionSlider option) {
    const auto& window = option.palette.color(QPalette::Window);
    const auto& text = option.palette.color(QPalette::WindowText);
    option.palette.setColor(QPalette::Window,
                            QColor((window.red() + text.red()) / 2, (window.green() + text.green()) / 2,
                                   (window.blue() + text.blue()) / 2));
    option.subControls = QStyle::SC_SliderTickmarks;
    painter.drawComplexControl(QStyle::CC_Slider, option);
}

}  // namespace

SettingSlider::SettingSlider(const char* name, const QString& accessibleName, QWidget* parent)
    : QSlider(Qt::Vertical, parent) {
    setObjectName(QLatin1String(name));
    setAccessibleName(accessibleName);
    setInvertedAppearance(true);
    setInvertedControls(true);
    setSingleStep(1);
}

void SettingSlider::SetPositions(int first, int last, int pageStep) {
    setRange(first, last);
    setPageStep(pageStep);
    setTickPosition(TicksBothSides);
    constexpr int mostTicks = 20;
    setTickInterval(last - first > mostTicks ? pageStep : 1);
}

void SettingSlider::paintEvent(QPaintEvent*) {
    QStylePainter painter(this);
    QStyleOptionSlider option;
    initStyleOption(&option);
    // The same picture, told to the style as a slider whose positions count from the bottom.
    option.upsideDown = true;
    option.sliderPosition = minimum() + maximum() - sliderPosition();
    DrawTicks(painter, option);
    option.subControls = QStyle::SC_SliderGroove | QStyle::SC_SliderHandle;
    if (isSliderDown()) {
        option.activeSubControls = QStyle::SC_SliderHandle;
        option.state |= QStyle::State_Sunken;
    }
    painter.drawComplexControl(QStyle::CC_Slider, option);
}

}  // namespace rv52
