#pragma once

#include "module/ui/ModParamsControls.h"

#include <QDialog>

#include <functional>

namespace rv52 {

struct Session;

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
    void ShowParameters();
    void ShowValues();
    void ConnectOptions();
    void ConnectFixedValues();
    void ConnectSliders();
    void ConnectVssFrequency();
    void PressOK();
    void Fit();

    Session& session_;
    Dispatch dispatch_;
    ModParamsControls controls_{*this};
};

}  // namespace rv52
