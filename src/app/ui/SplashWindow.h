#pragma once

#include "app/SplashBranding.h"

#include <QDialog>

#include <chrono>

class QLabel;
class QTimer;

namespace rv52 {

// frmCorvane_Splash: shown before anything of the main window happens, and gone by itself after its time.
class SplashWindow : public QDialog, public Splash {
    Q_OBJECT

 public:
    static constexpr std::chrono::milliseconds kTime{4000};

    explicit SplashWindow(std::chrono::milliseconds time = kTime);

    // Loads the branding, shows the window and returns when its time is over.
    void Run(Session& session);

    // Splash
    void SetBrandText(const std::string& text) override;
    void SetBrandFont(const std::string& name) override;
    void SetBrandSize(double points) override;
    void SetBrandStyle(bool bold, bool italic) override;
    void LoadLogo(const std::string& path) override;
    void SetApplicationTitle(const std::string& title) override;

    // No key closes it before its time.
    void reject() override {}

 private:
    template <class Change>
    void ChangeBrandFont(Change&& change);

    QLabel* logo_;
    QLabel* brand_;
    QTimer* timer_;
};

}  // namespace rv52
