#include "app/ui/DesktopProgram.h"

#include "app/StartUp.h"
#include "app/ui/Application.h"
#include "platform/Failure.h"
#include "platform/linux/EndSignals.h"
#include "table/commands/OpenTable.h"

#include <QApplication>
#include <QDir>
#include <QGuiApplication>
#include <QIcon>
#include <QProcess>
#include <QSettings>
#include <QTimer>
#include <QWindow>

#include <functional>
#include <utility>

namespace rv52 {

namespace {

// Runs a task once, as soon as the desktop has put the window in its place on the screen.
class WhenPlaced : public QObject {
 public:
    WhenPlaced(QWindow& window, std::function<void()> task)
        : QObject(&window), window_(window), task_(std::move(task)) {
        window.installEventFilter(this);
    }

 private:
    bool eventFilter(QObject*, QEvent* event) override {
        // Later, so that the window is painted first.
        if (event->type() == QEvent::Expose && task_) QTimer::singleShot(0, this, &WhenPlaced::Try);
        return false;
    }

    void Try() {
        if (task_ && window_.isExposed()) std::exchange(task_, {})();
    }

    QWindow& window_;
    std::function<void()> task_;
};

}  // namespace

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
    Application::KeepFailuresIn(&session_.drawing);
    prompts_.SetParent(&window_);
    prompts_.SetDismissing([this] { return session_.gate.DismissesBoxes(); });
    printer_.SetParent(&window_);
    printer_.SetChartDrawing(
        [this](QPainter& painter, const QRectF& place) { window_.DrawChart(painter, place); });
}

// The session goes before the window, and a window that is still on screen would tell it so on its way out.
DesktopProgram::~DesktopProgram() {
    Application::KeepFailuresIn(nullptr);
    window_.hide();
}

bool DesktopProgram::Start(std::chrono::milliseconds splash) {
    SplashWindow(splash).Run(session_);
    QCoreApplication::setApplicationName(QStringLiteral("Corvane_RV52_Main"));
    QDir::setCurrent(QCoreApplication::applicationDirPath());
    if (!StartUp(session_)) return false;
    if (options_.simulate)
        devices_.Override(session_.state.CommPort, StartSimulator(*options_.simulate), "simulated module");
    window_.Compose(session_, devices_);
    window_.show();
    systemEnd_ = std::make_unique<SystemEnd>(session_, window_);
    // A message about the file would stand far from a window that has no place yet.
    if (!options_.tableFile.empty())
        new WhenPlaced(*window_.windowHandle(), [this] { OpenTableOfCommandLine(); });
    return true;
}

// Never on without it: practice would then reach a real module.
std::string DesktopProgram::StartSimulator(TableType type) {
    try {
        return simulator_.Start(ToText(type));
    } catch (const Failure& failure) {
        const EndSignals signals([](int) {
            if (auto* box = QApplication::activeModalWidget()) box->close();
        });
        prompts_.Ask({failure.what(), "Simulated Module", Icon::Critical, Buttons::Ok});
        throw;
    }
}

void DesktopProgram::OpenTableOfCommandLine() {
    window_.Run([this](Session& running) { OpenTableFile(running, options_.tableFile); });
}

}  // namespace rv52
