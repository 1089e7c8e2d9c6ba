#include "app/Branding.h"
#include "app/CommandLine.h"
#include "app/MainWindow.h"
#include "app/Session.h"
#include "app/SimulatorProcess.h"
#include "app/StartUp.h"
#include "platform/ComDevices.h"
#include "platform/Failure.h"
#include "platform/qt/QtFiles.h"
#include "platform/qt/QtPrompts.h"
#include "platform/qt/QtSettings.h"
#include "platform/qt/SerialLine.h"
#include "platform/qt/Text.h"
#include "table/FileCommands.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QSettings>
#include <QTimer>

#include <cstdio>

namespace {

using namespace rv52;

std::string Absolute(const std::string& path) {
    return FromQt(QFileInfo(ToQt(path)).absoluteFilePath());
}

int Refuse(const std::string& error) {
    std::fprintf(stderr, "corvane_rv52: %s\n", error.c_str());
    return 2;
}

// Paths are meant from where the program was started, before it changes to its own folder.
void Resolve(CommandLine& options) {
    for (auto& [commPort, device] : options.devices)
        device = Absolute(device);
    if (!options.tableFile.empty()) options.tableFile = Absolute(options.tableFile);
}

int RunProgram(int argc, char** argv, CommandLine options) {
    const QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Corvane_RV52_Main"));
    QApplication::setApplicationDisplayName({});
    // The toolkit's own memory of file dialogs has no place to go: the settings hold the port alone.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QProcess::nullDevice());
    Resolve(options);
    QDir::setCurrent(QApplication::applicationDirPath());

    ComDevices devices;
    for (const auto& [commPort, device] : options.devices)
        devices.Override(commPort, device);
    SerialLine line(devices);
    QtPrompts prompts;
    QtFiles files;
    QtSettings settings;
    MainWindow window;
    Session session(Ports{line, prompts, window, window, files, settings});
    session.state.BrandingLines = DefaultBrandingLines();
    prompts.SetParent(&window);
    if (!StartUp(session)) return 1;

    SimulatorProcess simulator;
    try {
        if (options.simulate) devices.Override(session.state.CommPort, simulator.Start(*options.simulate));
    } catch (const Failure& failure) {
        return Refuse(failure.what());
    }
    window.Compose(session, devices);
    window.show();
    if (!options.tableFile.empty())
        QTimer::singleShot(0, &window, [&] {
            window.Run([&](Session& running) { OpenTableFile(running, options.tableFile); });
        });
    return QApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
    auto parsed = ParseCommandLine({argv + 1, static_cast<std::size_t>(argc - 1)});
    if (const auto* error = std::get_if<std::string>(&parsed))
        return Refuse(*error + " (corvane_rv52 --help lists the options)");
    const auto& options = std::get<CommandLine>(parsed);
    if (options.help || options.version) {
        std::fputs(options.help ? UsageText() : "Corvane RV52 8.1\n", stdout);
        return 0;
    }
    int applicationArguments = 1;
    return RunProgram(applicationArguments, argv, options);
}
