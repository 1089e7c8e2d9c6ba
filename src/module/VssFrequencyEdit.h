#pragma once

#include <QLineEdit>

namespace rv52 {

// txtVSSFreq: says when the focus has left it for another part of its dialog.
class VssFrequencyEdit : public QLineEdit {
    Q_OBJECT

 public:
    explicit VssFrequencyEdit(QWidget* parent);

    bool eventFilter(QObject* watched, QEvent* event) override;

 Q_SIGNALS:
    void Left();

 protected:
    void focusOutEvent(QFocusEvent* event) override;
};

}  // namespace rv52
