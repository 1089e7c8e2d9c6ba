#include "table/CellEditor.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QPainter>

#include <algorithm>

namespace rv52 {

CellEditor::CellEditor(const QString& text, QWidget* parent) : QLineEdit(text, parent) {
    setFrame(false);
    setAlignment(Qt::AlignCenter);
    setAutoFillBackground(true);
}

void CellEditor::PlaceOver(const QRect& cell) {
    constexpr int border = 1;
    constexpr int sides = 12;
    const QRect bounds = parentWidget()->rect();
    const int height = std::max(cell.height(), fontMetrics().height() + 2 * border);
    const int width =
        std::max(cell.width(), fontMetrics().horizontalAdvance(QStringLiteral("00.00")) + sides);
    QRect place(0, 0, std::min(width, bounds.width()), height);
    place.moveCenter(cell.center());
    place.moveLeft(std::clamp(place.left(), 0, std::max(0, bounds.width() - place.width())));
    place.moveTop(std::clamp(place.top(), 0, std::max(0, bounds.height() - place.height())));
    setGeometry(place);
}

// Keys without a meaning here end here too: in the grid beneath they would take the cursor off this cell.
void CellEditor::keyPressEvent(QKeyEvent* event) {
    constexpr int toTheEdge = 100;  // rows: more than any table has
    event->accept();
    if (event->matches(QKeySequence::MoveToStartOfDocument)) return home(false);
    if (event->matches(QKeySequence::MoveToEndOfDocument)) return end(false);
    if (event->matches(QKeySequence::SelectStartOfDocument)) return home(true);
    if (event->matches(QKeySequence::SelectEndOfDocument)) return end(true);
    switch (event->key()) {
        case Qt::Key_Escape:
            return Abandoned();
        case Qt::Key_Return:
        case Qt::Key_Enter:
            return Ended(0, 0);
        case Qt::Key_Up:
            return Ended(-1, 0);
        case Qt::Key_Down:
            return Ended(1, 0);
        case Qt::Key_PageUp:
            return Ended(-toTheEdge, 0);
        case Qt::Key_PageDown:
            return Ended(toTheEdge, 0);
        default:
            QLineEdit::keyPressEvent(event);
            event->accept();
    }
}

void CellEditor::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    // A menu, or a box over the window, gives the focus back.
    const auto reason = event->reason();
    if (reason == Qt::PopupFocusReason || reason == Qt::MenuBarFocusReason ||
        reason == Qt::ActiveWindowFocusReason)
        return;
    Ended(0, 0);
}

bool CellEditor::focusNextPrevChild(bool next) {
    Ended(0, next ? 1 : -1);
    return true;
}

void CellEditor::paintEvent(QPaintEvent* event) {
    QLineEdit::paintEvent(event);
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::Highlight));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

}  // namespace rv52
