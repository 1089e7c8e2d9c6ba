#include <QApplication>
#include <QMainWindow>

// The least program with a window: what others are measured against.
int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QMainWindow window;
    window.setObjectName(QStringLiteral("bare"));
    window.show();
    return QApplication::exec();
}
