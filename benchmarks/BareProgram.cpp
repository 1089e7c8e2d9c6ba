#include "app/state/ChartAndGridLayout.h"
#include "platform/qt/Twips.h"

#include <QApplication>
#include <QMainWindow>

// The least program with a window of the main window's size: what the program is measured against. A window's
// pixels are no part of what a program costs.
int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QMainWindow window;
    window.setObjectName(QStringLiteral("bare"));
    window.resize(rv52::ToPixels(rv52::kClientWidth), rv52::ToPixels(rv52::kClientHeight));
    window.show();
    return QApplication::exec();
}
