#include "app/FlatProgressBar.h"

#include <QPainter>

namespace rv52 {

FlatProgressBar::FlatProgressBar(QWidget* parent) : QProgressBar(parent) {
    // Opaque by its own background: styles take the attribute of opaque painting back.
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Base);
}

int FlatProgressBar::FilledWidth() const {
    return (width() - 2) * (value() - minimum()) / (maximum() - minimum());
}

void FlatProgressBar::paintEvent(QPaintEvent*) {
    const auto& colours = palette();
    const QRect inside = rect().adjusted(1, 1, -1, -1);
    const QRect filled(inside.topLeft(), QSize(FilledWidth(), inside.height()));
    QPainter painter(this);
    painter.setPen(colours.color(QPalette::Mid));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
    painter.fillRect(filled, colours.color(QPalette::Highlight));
    // The figure stands over both parts, each of its halves readable on its own ground.
    const auto write = [&](const QRect& part, QPalette::ColorRole ink) {
        painter.setClipRect(part);
        painter.setPen(colours.color(ink));
        painter.drawText(rect(), Qt::AlignCenter, text());
    };
    write(filled, QPalette::HighlightedText);
    write(inside.adjusted(filled.width(), 0, 0, 0), QPalette::Text);
}

}  // namespace rv52
