#pragma once

#include "table/SliderScale.h"

#include <QSlider>

namespace rv52 {

// A vertical slider whose positions count from its top, where the highest setting sits: the Up and Page Up
// keys and the wheel turned away from the user raise the setting, which lowers the position. Assistive tools
// are told the setting, and can set it; of the positions they know nothing.
class SettingSlider : public QSlider {
    Q_OBJECT

 public:
    SettingSlider(const char* name, const QString& accessibleName, QWidget* parent);

    void SetScale(const SliderScale& scale);
    const SliderScale& Scale() const { return scale_; }

    // The value that is shown beside the slider. It stands between two positions when it did not come from
    // the slider.
    void Tell(int shown);
    int Shown() const { return shownAt_ == value() ? shown_ : scale_.ValueAt(value()); }

 protected:
    // The filled part of the groove is the setting's: from the bottom up to the handle.
    void paintEvent(QPaintEvent* event) override;

 private:
    SliderScale scale_{};
    int shown_ = 0;
    int shownAt_ = -1;  // the position that it is shown with
};

}  // namespace rv52
