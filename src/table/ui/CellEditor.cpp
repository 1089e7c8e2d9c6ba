#include "table/ui/CellEditor.h"

#include "app/state/Session.h"
#include "platform/qt/QtText.h"
#include "table/commands/EndEdit.h"
#include "table/ui/GridModel.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QScopedValueRollback>

#include <algorithm>

namespace rv52 {

CellLineEdit::CellLineEdit(const QString& text, QWidget* parent) : QLineEdit(text, parent) {
    setFrame(false);
    setAlignment(Qt::AlignCenter);
    setAutoFillBackground(true);
}

void CellLineEdit::PlaceOver(const QRect& cell) {
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
void CellLineEdit::keyPressEvent(QKeyEvent* event) {
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

void CellLineEdit::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    // A menu, or a box over the window, gives the focus back.
    const auto reason = event->reason();
    if (reason == Qt::PopupFocusReason || reason == Qt::MenuBarFocusReason ||
        reason == Qt::ActiveWindowFocusReason)
        return;
    Ended(0, 0);
}

bool CellLineEdit::focusNextPrevChild(bool next) {
    Ended(0, next ? 1 : -1);
    return true;
}

void CellLineEdit::paintEvent(QPaintEvent* event) {
    QLineEdit::paintEvent(event);
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::Highlight));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

CellEditor::CellEditor(Session& session, Dispatch dispatch, QAbstractItemView& view)
    : QObject(&view), session_(session), dispatch_(std::move(dispatch)), view_(view) {}

void CellEditor::OpenTyping(const QString& typed) {
    Open(typed);
}

void CellEditor::OpenOnText() {
    if (Open(view_.currentIndex().data().toString())) editor_->selectAll();
}

bool CellEditor::Commit() {
    if (!editor_) return true;
    if (asking_) return false;
    bool accepted = false;
    {
        // The box that refuses a text takes the focus, which is no second end of the edit.
        const QScopedValueRollback judging(asking_, true);
        dispatch_([&] { accepted = EndEdit(session_, edited_, FromQt(editor_->text())); });
    }
    if (accepted) {
        Abandon();
    } else if (editor_) {
        editor_->setFocus();
        editor_->selectAll();
    }
    return accepted;
}

void CellEditor::Abandon() {
    if (!editor_) return;
    auto* editor = editor_.data();
    editor_.clear();
    editor->disconnect(this);
    if (editor->hasFocus()) view_.setFocus();
    editor->hide();
    editor->deleteLater();
}

void CellEditor::Settle() {
    if (!editor_) return;
    dispatch_([this] { SettleEdit(session_, edited_, FromQt(editor_->text())); });
    Abandon();
}

void CellEditor::Place() {
    const auto* model = qobject_cast<const GridModel*>(view_.model());
    if (editor_ && model != nullptr) editor_->PlaceOver(view_.visualRect(model->IndexOf(edited_)));
}

bool CellEditor::Open(const QString& text) {
    const auto current = view_.currentIndex();
    if (editor_ || !current.isValid() || !session_.sheet.Editable() || session_.gate.Busy()) return false;
    edited_ = GridModel::CellOf(current);
    editor_ = new CellLineEdit(text, view_.viewport());
    editor_->setAccessibleName(tr("Advance at MAP %1, RPM %2")
                                   .arg(ToQt(session_.sheet.Text({edited_.row, GridColumn(0)})),
                                        ToQt(session_.sheet.Text({GridRow(0), edited_.column}))));
    connect(editor_, &CellLineEdit::Ended, this, &CellEditor::End);
    connect(editor_, &CellLineEdit::Abandoned, this, &CellEditor::Abandon);
    view_.scrollTo(current);
    Place();
    editor_->show();
    editor_->setFocus();
    return true;
}

void CellEditor::End(int rows, int columns) {
    if (Commit()) Q_EMIT MoveOn(rows, columns);
}

}  // namespace rv52
