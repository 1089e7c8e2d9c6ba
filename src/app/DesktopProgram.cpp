#include "app/DesktopProgram.h"

#include "app/StartUp.h"
#include "table/FileCommands.h"

#include <QCoreApplication>
#include <QDir>
#include <QGuiApplication>
#include <QIcon>
#include <QProcess>
#include <QSettings>
#include <QTimer>

namespace rv52 {

DesktopProgram::DesktopProgram(CommandLine options) : options_(std::move(options)) {
    // The toolkit's own memory of file dialogs has no place to go: the settings hold the port alone.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QProcess::nullDevice());
    for (const auto& [commPort, device] : options_.devices)
        devices_.Override(commPort, device);
    // Under Wayland the desktop finds the program's name and icon by its entry.
    QGuiApplication::setDesktopFileName(QStringLiteral("corvane_rv52"));
    // A bitmap: the libraries that draw a vector picture would stay in memory for this one icon.
    QGuiApplication::setWindowIcon(
        QIcon(QCoreApplication::applicationDirPath() + QStringLiteral("/corvane_rv52.png")));
    prompts_.SetParent(&window_);
    printer_.SetParent(&window_);
    printer_.SetChartDrawing(
        [this](QPainter& painter, const QRectF& place) { window_.DrawChart(painter, place); });
}

// The session goes before the window, and a window that is still on screen would tell it so on its way out.
DesktopProgram::~DesktopProgram() {
    window_.hide();
}

bool DesktopProgram::Start(std::chrono::milliseconds splash) {
    SplashWindow(splash).Run(session_);
    QCoreApplication::setApplicationName(QStringLiteral("Corvane_RV52_Main"));
    QDir::setCurrent(QCoreApplication::applicationDirPath());
    if (!StartUp(session_)) return false;
    if (options_.simulate)
        devices_.Override(session_.state.CommPort, simulator_.Start(*options_.simulate), "simulated module");
    window_.Compose(session_, devices_);
    window_.show();
    if (!options_.tableFile.empty()) QTimer::singleShot(0, &window_, [this] { OpenTableOfCommandLine(); });
    return true;
}

void DesktopProgram::OpenTableOfCommandLine() {
    window_.Run([this](Session& running) { OpenTableFile(running, options_.tableFile); });
}

}  // namespace rv52
