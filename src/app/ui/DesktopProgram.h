#pragma once

#include "app/CommandLine.h"
#include "app/state/Session.h"
#include "app/ui/MainWindow.h"
#include "app/ui/SplashWindow.h"
#include "app/ui/SystemEnd.h"
#include "platform/ComDevices.h"
#include "platform/linux/CupsPrintSystem.h"
#include "platform/qt/QtFiles.h"
#include "platform/qt/QtPrinter.h"
#include "platform/qt/QtPrompts.h"
#include "platform/qt/QtSettings.h"
#include "platform/qt/SerialLine.h"
#include "platform/qt/SimulatorProcess.h"

#include <memory>

namespace rv52 {

// The whole program on its real ports: what main starts, what tests and the tour drive. Needs an
// application object; the paths in its options are absolute.
class DesktopProgram {
 public:
    explicit DesktopProgram(CommandLine options);
    ~DesktopProgram();
    DesktopProgram(const DesktopProgram&) = delete;
    DesktopProgram& operator=(const DesktopProgram&) = delete;

    // From the splash, which stays for this long, to the shown window. False when the program ends at once,
    // having said why. Throws Failure when the simulated module does not start.
    bool Start(std::chrono::milliseconds splash = SplashWindow::kTime);

    MainWindow& Window() { return window_; }
    Session& Running() { return session_; }
    const ComDevices& Devices() const { return devices_; }
    SystemEnd& End() { return *systemEnd_; }  // once it has started

 private:
    std::string StartSimulator(TableType type);
    void OpenTableOfCommandLine();

    CommandLine options_;
    ComDevices devices_;
    SerialLine line_{devices_};
    QtPrompts prompts_;
    QtFiles files_;
    QtSettings settings_;
    CupsPrintSystem printSystem_;
    QtPrinter printer_{files_, printSystem_};
    SimulatorProcess simulator_;
    MainWindow window_;
    Session session_{Ports{line_, prompts_, window_, window_, files_, settings_, printer_}};
    std::unique_ptr<SystemEnd> systemEnd_;  // from when there is a window to close
};

}  // namespace rv52
