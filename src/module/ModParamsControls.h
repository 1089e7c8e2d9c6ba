#pragma once

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
class VssFrequencyEdit;

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
