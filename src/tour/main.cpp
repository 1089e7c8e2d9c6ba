#include "app/ui/DesktopProgram.h"
#include "platform/Failure.h"
#include "tour/Tour.h"

#include <QApplication>

#include <cstdio>

namespace {

// A platform without a screen complains at every box about what it cannot do; the tour's own lines would
// drown in that.
void PassMessageOn(QtMsgType, const QMessageLogContext&, const QString& message) {
    if (!message.startsWith(QLatin1String("This plugin does not support")))
        std::fprintf(stderr, "%s\n", qPrintable(message));
}

}  // namespace

// rv52_tour FOLDER: the guided tour, its pictures and files in FOLDER.
int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: rv52_tour FOLDER\n", stderr);
        return 2;
    }
    // The tour prints into its folder, never on somebody's paper.
    qputenv("CUPS_SERVER", "/nowhere/cups.sock");
    const auto folder = QDir(QString::fromLocal8Bit(argv[1])).absolutePath();
    // Nor does it depend on anybody's settings: the folder is where it would find its own.
    qputenv("XDG_CONFIG_HOME", folder.toLocal8Bit());
    qInstallMessageHandler(PassMessageOn);
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setCursorFlashTime(0);  // a picture does not depend on its moment
    rv52::CommandLine options;
    options.simulate = rv52::TableType::RACE;
    try {
        rv52::DesktopProgram program(options);
        const bool good = rv52::Tour(program, folder).Run();
        std::printf("Pictures and files are in %s\n", qPrintable(folder));
        return good ? 0 : 1;
    } catch (const rv52::Failure& failure) {
        std::fprintf(stderr, "rv52_tour: %s\n", failure.what());
        return 1;
    }
}
