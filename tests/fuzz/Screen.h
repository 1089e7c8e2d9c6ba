#pragma once

#include <QApplication>

namespace rv52::fuzz {

// An application without a screen, from the first input to the end of the process. What the toolkit says of
// odd pictures and fonts is nothing to read a thousand times a second.
inline void NeedApplication() {
    static const QApplication* const application = [] {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
        static int count = 1;
        static char name[] = "fuzz";
        static char* arguments[] = {name, nullptr};
        return new QApplication(count, arguments);
    }();
    Q_UNUSED(application);
}

}  // namespace rv52::fuzz
