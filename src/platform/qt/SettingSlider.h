#pragma once

#include <QSlider>

namespace rv52 {

// A vertical slider whose positions count from its top, where the highest setting sits: the Up and Page Up
// keys and the wheel turned away from the user raise the setting, which lowers the position.
class SettingSlider : public QSlider {
    Q_OBJECT

 public:
    SettingSlider(const char* name, const QString& accessibleName, QWidget* parent);

    void SetPositions(int first, int last, int pageStep);

 protected:
    // The filled part of the groove is the setting's: from the bottom up to the handle.
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace rv52
