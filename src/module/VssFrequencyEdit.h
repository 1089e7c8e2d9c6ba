#pragma once

#include <QLineEdit>

namespace rv52 {

// txtVSSFreq: says when the focus has left it for another part of its dialog. After a click that is once the
// button is up: a box in the middle of a click would rob the clicked control of the button's release.
class VssFrequencyEdit : public QLineEdit {
    Q_OBJECT

 public:
    explicit VssFrequencyEdit(QWidget* parent);

    // Says now what waits for the button: before another control's own work, and before the dialog closes.
    void Settle();

    bool eventFilter(QObject* watched, QEvent* event) override;

 Q_SIGNALS:
    void Left();

 protected:
    void focusOutEvent(QFocusEvent* event) override;

 private:
    bool waiting_ = false;  // the focus has left by a click that is not complete
};

}  // namespace rv52
