#include "table/InPlaceEditing.h"

#include "app/Session.h"
#include "platform/qt/Text.h"
#include "table/CellEditing.h"
#include "table/CellEditor.h"
#include "table/GridModel.h"

#include <QScopedValueRollback>

namespace rv52 {

InPlaceEditing::InPlaceEditing(Session& session, Dispatch dispatch, QAbstractItemView& view)
    : QObject(&view), session_(session), dispatch_(std::move(dispatch)), view_(view) {}

void InPlaceEditing::OpenTyping(const QString& typed) {
    Open(typed);
}

void InPlaceEditing::OpenOnText() {
    if (Open(view_.currentIndex().data().toString())) editor_->selectAll();
}

bool InPlaceEditing::Commit() {
    if (!editor_) return true;
    if (judging_) return false;
    bool accepted = false;
    {
        // The box that refuses a text takes the focus, which is no second end of the edit.
        const QScopedValueRollback judging(judging_, true);
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

void InPlaceEditing::Abandon() {
    if (!editor_) return;
    auto* editor = editor_.data();
    editor_.clear();
    editor->disconnect(this);
    if (editor->hasFocus()) view_.setFocus();
    editor->hide();
    editor->deleteLater();
}

void InPlaceEditing::Place() {
    const auto* model = qobject_cast<const GridModel*>(view_.model());
    if (editor_ && model != nullptr) editor_->PlaceOver(view_.visualRect(model->IndexOf(edited_)));
}

bool InPlaceEditing::Open(const QString& text) {
    const auto current = view_.currentIndex();
    if (editor_ || !current.isValid() || !session_.sheet.Editable() || session_.gate.Busy()) return false;
    edited_ = GridModel::CellOf(current);
    editor_ = new CellEditor(text, view_.viewport());
    editor_->setAccessibleName(tr("Advance at MAP %1, RPM %2")
                                   .arg(ToQt(session_.sheet.Text({edited_.row, 0})),
                                        ToQt(session_.sheet.Text({0, edited_.column}))));
    connect(editor_, &CellEditor::Ended, this, &InPlaceEditing::End);
    connect(editor_, &CellEditor::Abandoned, this, &InPlaceEditing::Abandon);
    view_.scrollTo(current);
    Place();
    editor_->show();
    editor_->setFocus();
    return true;
}

void InPlaceEditing::End(int rows, int columns) {
    if (Commit()) Q_EMIT MoveOn(rows, columns);
}

}  // namespace rv52
