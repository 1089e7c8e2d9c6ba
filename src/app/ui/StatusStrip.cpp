#include "app/ui/StatusStrip.h"

#include <QPainter>

namespace rv52 {

StatusStrip::StatusStrip(QWidget* parent) : QLabel(parent) {
    setObjectName(QStringLiteral("lblStatus"));
    setTextFormat(Qt::PlainText);
    // Opaque, so that the window below is not painted with every cell that becomes current.
    setAutoFillBackground(true);
    constexpr int sides = 8;
    setContentsMargins(sides, 0, sides, 0);
}

void StatusStrip::Tell(const QString& text) {
    if (text == this->text()) return;
    setText(text);
    setToolTip(text);  // whole, where the line is shortened
}

void StatusStrip::PlaceIn(const QRect& strip) {
    setGeometry(strip);
    setVisible(strip.height() >= fontMetrics().height());
}

void StatusStrip::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QRect line = contentsRect();
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(line, Qt::AlignVCenter | Qt::TextSingleLine,
                     fontMetrics().elidedText(text(), Qt::ElideRight, line.width()));
}

}  // namespace rv52
