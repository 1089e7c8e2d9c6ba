#pragma once

#include "module/ModParams.h"

#include <QDialog>

#include <functional>

class QCheckBox;
class QLabel;
class QPushButton;
class QRadioButton;

namespace rv52 {

class SettingSlider;
class TwipFrame;
class VssFrequencyEdit;

// frmModParams: every control writes its parameter the moment it changes; OK only closes.
class ModParamsDialog : public QDialog {
    Q_OBJECT

 public:
    // How an event gets into the core.
    using Dispatch = std::function<void(std::function<void()>)>;

    ModParamsDialog(Session& session, Dispatch dispatch, QWidget* parent = nullptr);

    void done(int result) override;

 protected:
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;

 private:
    // A frame with a slider and the slider's value above it.
    struct Setting {
        TwipFrame* frame;
        QLabel* value;
        SettingSlider* slider;
    };

    Setting AddSetting(const char* name, const QString& title, const SliderScale& scale, double width,
                       double height);
    QCheckBox* AddCheckBox(const char* name, const QString& caption);
    void Compose();
    TwipFrame* ComposeOptions();
    TwipFrame* ComposeModuleFrame();
    void SetTabOrder();
    void ShowParameters();
    void ShowValues();
    void Connect();
    void ConnectSliders();
    void Accept();
    void Fit();

    Session& session_;
    Dispatch dispatch_;
    QRadioButton* eepromTable_;
    QRadioButton* flashTables_;
    QCheckBox* fixedInitTiming_;
    QCheckBox* fixedRPMLimit_;
    QCheckBox* tachEnable_;
    Setting crankRevs_;
    Setting rearOffset_;
    Setting initTiming_;
    Setting rpmLimit_;
    VssFrequencyEdit* vssFreq_;
    QPushButton* ok_;
};

}  // namespace rv52
