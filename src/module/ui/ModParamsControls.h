#pragma once

#include <QLineEdit>

class QCheckBox;
class QDialog;
class QLabel;
class QPushButton;
class QRadioButton;
class QString;

namespace rv52 {

struct SliderScale;
class SettingSlider;
class TwipFrame;

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

// The parts of the module parameters dialog at their places, under their names and in tab order. The dialog
// owns them.
struct ModParamsControls {
    explicit ModParamsControls(QDialog& dialog);

    // A frame with a slider and the slider's value above it.
    struct Setting {
        Setting(const char* name, const QString& title, const SliderScale& scale, double width, double height,
                QDialog& dialog);

        TwipFrame* frame;
        QLabel* value;
        SettingSlider* slider;
    };

    QRadioButton* eepromTable;
    QRadioButton* flashTables;
    QCheckBox* fixedInitTiming;
    QCheckBox* fixedRPMLimit;
    QCheckBox* tachEnable;
    Setting crankRevs;
    Setting rearOffset;
    Setting initTiming;
    Setting rpmLimit;
    VssFrequencyEdit* vssFreq;
    QPushButton* ok;

 private:
    void Compose(QDialog& dialog);
    TwipFrame* ComposeOptions(QDialog& dialog);
    TwipFrame* ComposeModuleFrame(QDialog& dialog);
    void SetTabOrder() const;
};

}  // namespace rv52
