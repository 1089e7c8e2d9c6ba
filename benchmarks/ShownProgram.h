#pragma once

#include "QuietPorts.h"
#include "app/state/Session.h"
#include "app/ui/MainWindow.h"
#include "platform/ComDevices.h"
#include "platform/qt/QtFiles.h"
#include "platform/qt/SerialLine.h"

namespace rv52::bench {

// The program's own window, serial line and files, with nobody in front of it.
class ShownProgram {
 public:
    ShownProgram();
    ~ShownProgram();
    ShownProgram(const ShownProgram&) = delete;
    ShownProgram& operator=(const ShownProgram&) = delete;

    // The ordinary EX table on screen.
    void ShowExTable();
    // Until nothing is left to paint.
    void Settle();

    ComDevices devices;
    SerialLine line{devices};
    Nobody nobody;
    QtFiles files;
    NoSettings settings;
    NoPrinter printer;
    MainWindow window;
    Session session{Ports{line, nobody, window, window, files, settings, printer}};
};

}  // namespace rv52::bench
