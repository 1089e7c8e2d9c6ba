#include "app/state/Version.h"
#include "app/ui/Application.h"
#include "app/ui/DesktopProgram.h"
#include "platform/Failure.h"
#include "platform/qt/HighContrast.h"
#include "platform/qt/QtText.h"

#include <QFileInfo>

#include <cstdio>

namespace {

using namespace rv52;

int Refuse(const std::string& error) {
    std::fprintf(stderr, "corvane_rv52: %s\n", error.c_str());
    return 2;
}

std::string Absolute(const std::string& path) {
    return FromQt(QFileInfo(ToQt(path)).absoluteFilePath());
}

// Paths are meant from where the program was started, before it changes to its own folder.
CommandLine Resolved(CommandLine options) {
    for (auto& [commPort, device] : options.devices)
        device = Absolute(device);
    if (!options.tableFile.empty()) options.tableFile = Absolute(options.tableFile);
    return options;
}

int RunProgram(char** argv, const CommandLine& options) {
    int argc = 1;  // every option is this program's own
    const Application application(argc, argv);
    ServeHighContrast();
    try {
        DesktopProgram program(Resolved(options));
        return program.Start() ? QApplication::exec() : 1;
    } catch (const Failure& failure) {
        return Refuse(failure.what());
    }
}

}  // namespace

int main(int argc, char** argv) {
    const auto parsed = ParseCommandLine({argv + 1, static_cast<std::size_t>(argc - 1)});
    if (const auto* error = std::get_if<std::string>(&parsed))
        return Refuse(*error + " (corvane_rv52 --help lists the options)");
    const auto& options = std::get<CommandLine>(parsed);
    if (!options.help && !options.version) return RunProgram(argv, options);
    if (options.help)
        std::fputs(UsageText(), stdout);
    else
        std::printf("Corvane RV52 %s\n", kVersion);
    return 0;
}
