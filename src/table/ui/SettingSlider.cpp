#include "table/ui/SettingSlider.h"

#include <QAccessibleWidget>
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

class SpokenSlider : public QAccessibleWidget, public QAccessibleValueInterface {
 public:
    explicit SpokenSlider(SettingSlider& slider)
        : QAccessibleWidget(&slider, QAccessible::Slider), slider_(slider) {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type != QAccessible::ValueInterface) return QAccessibleWidget::interface_cast(type);
        return static_cast<QAccessibleValueInterface*>(this);
    }
    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? QString::number(slider_.Shown()) : QAccessibleWidget::text(kind);
    }

    QVariant currentValue() const override { return slider_.Shown(); }
    void setCurrentValue(const QVariant& value) override {
        slider_.setValue(slider_.Scale().PositionOf(value.toDouble()));
    }
    QVariant maximumValue() const override { return slider_.Scale().ValueAt(slider_.minimum()); }
    QVariant minimumValue() const override { return slider_.Scale().ValueAt(slider_.maximum()); }
    QVariant minimumStepSize() const override { return slider_.Scale().unit; }

 private:
    SettingSlider& slider_;
};

QAccessibleInterface* SpeakFor(const QString&, QObject* object) {
    auto* slider = qobject_cast<SettingSlider*>(object);
    return slider == nullptr ? nullptr : new SpokenSlider(*slider);
}

}  // namespace

SettingSlider::SettingSlider(const char* name, const QString& accessibleName, QWidget* parent)
    : QSlider(Qt::Vertical, parent) {
    static const bool spoken = [] {
        QAccessible::installFactory(SpeakFor);
        return true;
    }();
    Q_UNUSED(spoken)
    setObjectName(QLatin1String(name));
    setAccessibleName(accessibleName);
    setInvertedAppearance(true);
    setInvertedControls(true);
    setSingleStep(1);
}

void SettingSlider::SetScale(const SliderScale& scale) {
    scale_ = scale;
    setRange(scale.first, scale.last);
    setPageStep(scale.pageStep);
    setTickPosition(TicksBothSides);
    constexpr int mostTicks = 20;
    setTickInterval(scale.last - scale.first > mostTicks ? scale.pageStep : 1);
}

void SettingSlider::Tell(int shown) {
    const int before = Shown();
    shown_ = shown;
    shownAt_ = value();
    if (shown == before) return;
    QAccessibleValueChangeEvent changed(this, shown);
    QAccessible::updateAccessibility(&changed);
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
