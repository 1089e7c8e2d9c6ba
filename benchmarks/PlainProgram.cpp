#include "app/state/ChartAndGridLayout.h"
#include "platform/qt/Twips.h"

#include <QApplication>
#include <QDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QMainWindow>
#include <QMenuBar>
#include <QPainter>
#include <QTableWidget>
#include <QTimer>

// What the program shows at its start, by the toolkit alone and with nothing behind it: a splash with a
// picture and large letters, then menus, a chart's worth of lines and letters, a grid of numbers and a line
// of text. What it takes beyond the bare window is what the toolkit takes to show such things.

namespace {

class Lines : public QWidget {
 protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        for (int line = 0; line < 16; ++line) {
            painter.drawLine(QPointF(0, line * 13.5), QPointF(width(), line * 20.5));
            painter.drawText(QPointF(30.0 * line, 20), QString::number(500 * line));
        }
        painter.drawConvexPolygon(QPolygonF{{10, 10}, {200, 30}, {90, 220}});
    }
};

void Splash(const QString& picture) {
    QDialog splash(nullptr, Qt::Dialog | Qt::FramelessWindowHint);
    auto* row = new QHBoxLayout(&splash);
    auto* logo = new QLabel;
    logo->setPixmap(QPixmap(picture));
    row->addWidget(logo);
    auto* brand = new QLabel(QStringLiteral("Emberline"));
    QFont font(QStringLiteral("Arial"), 48);
    font.setBold(true);
    font.setItalic(true);
    brand->setFont(font);
    row->addWidget(brand);
    QTimer::singleShot(500, &splash, &QDialog::accept);
    splash.exec();
}

void Fill(QMainWindow& window, QWidget* lines) {
    for (const auto* menu : {"&File", "&Edit", "&Communications", "&Help"})
        window.menuBar()->addMenu(QString::fromLatin1(menu))->addAction(QString::fromLatin1(menu));
    auto* inside = new QWidget;
    auto* column = new QVBoxLayout(inside);
    column->addWidget(lines, 7);
    auto* grid = new QTableWidget(11, 16);
    for (int cell = 0; cell < 11 * 16; ++cell)
        grid->setItem(cell / 16, cell % 16, new QTableWidgetItem(QString::number(20 + cell / 10.0)));
    column->addWidget(grid, 3);
    column->addWidget(new QLabel(QStringLiteral("Open a table, make a new one, or download one.")));
    window.setCentralWidget(inside);
}

}  // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    Splash(QCoreApplication::applicationDirPath() + QStringLiteral("/Emberline_Logo.gif"));
    auto* lines = new Lines;
    lines->setObjectName(QStringLiteral("plain"));
    QMainWindow window;
    Fill(window, lines);
    window.resize(rv52::ToPixels(rv52::kClientWidth), rv52::ToPixels(rv52::kClientHeight));
    window.show();
    return QApplication::exec();
}
