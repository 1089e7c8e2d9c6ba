#include "table/GridView.h"

#include "app/Session.h"
#include "platform/qt/Text.h"
#include "platform/qt/Twips.h"
#include "table/CellEditing.h"
#include "table/CellEditor.h"
#include "table/GridCursor.h"
#include "table/GridDelegate.h"
#include "table/GridHeader.h"
#include "table/GridMenu.h"
#include "table/GridModel.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QScopedValueRollback>

#include <algorithm>

namespace rv52 {

namespace {

bool StartsTyping(const QKeyEvent& event) {
    const auto commanding = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    if (event.modifiers() & commanding || event.text().isEmpty()) return false;
    const QChar letter = event.text().front();
    return letter.isPrint() && !letter.isSpace();
}

QFont GridFont() {
    QFont font;
    font.setFamilies({QStringLiteral("MS Sans Serif"), QStringLiteral("Microsoft Sans Serif"),
                      QStringLiteral("Liberation Sans"), QStringLiteral("Arial"),
                      QStringLiteral("Helvetica")});
    font.setStyleHint(QFont::SansSerif);
    font.setWeight(QFont::Normal);
    font.setPointSizeF(8.25);
    return font;
}

}  // namespace

GridView::GridView(Session& session, Dispatch dispatch, RunCommand runCommand, QWidget* parent)
    : QTableView(parent),
      session_(session),
      dispatch_(std::move(dispatch)),
      model_(new GridModel(session.sheet, this)),
      corner_(new GridCorner(this)),
      menu_(new GridMenu(session, std::move(runCommand), this)) {
    Dress();
    setModel(model_);
    session.sheet.OnChange([view = QPointer<GridView>(this)](GridSheet::Change change) {
        if (view) view->SheetChanged(change);
    });
    ReflectLayout();
}

void GridView::Dress() {
    setObjectName(QStringLiteral("VSFlexGrid1"));
    setAccessibleName(tr("Advance table"));
    setToolTip(tr("Click to select or double click to edit cell"));
    setFont(GridFont());
    setHorizontalHeader(new GridHeader(Qt::Horizontal, this));
    setVerticalHeader(new GridHeader(Qt::Vertical, this));
    setItemDelegate(new GridDelegate(this));
    setSelectionMode(ContiguousSelection);
    setSelectionBehavior(SelectItems);
    setEditTriggers(NoEditTriggers);
    setCornerButtonEnabled(false);
    setTabKeyNavigation(false);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWordWrap(false);
}

void GridView::ApplyPitch() {
    const int rows = session_.sheet.RowCount();
    if (rows == 0) return;
    const QSize inner = contentsRect().size();
    const auto pitch = [&](int width) {
        return PitchOf(inner.height() * kTwipsPerPixel, width * kTwipsPerPixel);
    };
    // Rows take whole pixels only, so that all nine of a RACE table fit.
    const int rowHeight = pitch(inner.width()).rowHeight / kTwipsPerPixel;
    const bool scrolls = rows * rowHeight > inner.height();
    const int bar = scrolls ? style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this) : 0;
    const int columnWidth = pitch(inner.width() - bar).columnWidth;
    const auto edge = [&](int column) { return ToPixels(column * columnWidth); };

    setVerticalScrollBarPolicy(scrolls ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
    verticalHeader()->setDefaultSectionSize(std::max(1, rowHeight));
    verticalHeader()->setFixedWidth(edge(1));
    horizontalHeader()->setFixedHeight(rowHeight);
    for (int column = 1; column < session_.sheet.ColumnCount(); ++column)
        horizontalHeader()->resizeSection(column - 1, edge(column + 1) - edge(column));
    updateGeometries();
    PlaceEditor();
}

bool GridView::CommitEditor() {
    if (!editor_) return true;
    if (ending_) return false;
    bool accepted = false;
    {
        // The box that refuses a text takes the focus, which is no second end of the edit.
        const QScopedValueRollback judging(ending_, true);
        dispatch_([&] { accepted = EndEdit(session_, edited_, FromQt(editor_->text())); });
    }
    if (accepted) {
        CloseEditor();
    } else if (editor_) {
        editor_->setFocus();
        editor_->selectAll();
    }
    return accepted;
}

void GridView::AbandonEditor() {
    CloseEditor();
}

void GridView::keyPressEvent(QKeyEvent* event) {
    const bool shiftF10 = event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier;
    if (event->key() == Qt::Key_Menu || shiftF10)
        return menu_->ShowAt(viewport()->mapToGlobal(visualRect(currentIndex()).bottomLeft()));
    if (event->key() == Qt::Key_F2) return OpenEditorOnText();
    if (StartsTyping(*event)) return OpenEditor(event->text(), false);
    // The desktop's clipboard has no part in this grid.
    if (event->matches(QKeySequence::Copy)) return event->ignore();
    QTableView::keyPressEvent(event);
}

void GridView::mousePressEvent(QMouseEvent* event) {
    // An editor that is still open has just refused to end: the press does not leave its cell.
    dragging_ = !editor_ && event->button() == Qt::LeftButton && indexAt(event->pos()).isValid();
    if (dragging_) QTableView::mousePressEvent(event);
}

void GridView::mouseMoveEvent(QMouseEvent* event) {
    if (dragging_) QTableView::mouseMoveEvent(event);
}

void GridView::mouseReleaseEvent(QMouseEvent* event) {
    if (dragging_) QTableView::mouseReleaseEvent(event);
    dragging_ = false;
}

void GridView::mouseDoubleClickEvent(QMouseEvent* event) {
    const bool here = event->button() == Qt::LeftButton && indexAt(event->pos()) == currentIndex();
    if (here && currentIndex().isValid() && !editor_) return OpenEditorOnText();
    mousePressEvent(event);
}

void GridView::contextMenuEvent(QContextMenuEvent* event) {
    if (editor_) return;
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    const QPoint place = viewport()->mapToGlobal(visualRect(currentIndex()).bottomLeft());
    menu_->ShowAt(byKey ? place : event->globalPos());
}

void GridView::focusInEvent(QFocusEvent* event) {
    // Not the item view's own, which would make the first cell current: after loading none is.
    QAbstractScrollArea::focusInEvent(event);
    viewport()->update();
}

void GridView::resizeEvent(QResizeEvent* event) {
    QTableView::resizeEvent(event);
    ApplyPitch();
}

void GridView::scrollContentsBy(int dx, int dy) {
    QTableView::scrollContentsBy(dx, dy);
    PlaceEditor();
}

void GridView::updateGeometries() {
    QTableView::updateGeometries();
    const QRect inner = contentsRect();
    corner_->setGeometry(inner.left(), inner.top(), verticalHeader()->width(), horizontalHeader()->height());
    corner_->raise();
}

void GridView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTableView::currentChanged(current, previous);
    TellSheet();
}

void GridView::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
    QTableView::selectionChanged(selected, deselected);
    TellSheet();
}

void GridView::SheetChanged(GridSheet::Change change) {
    switch (change) {
        case GridSheet::Change::Layout:
            return ReflectLayout();
        case GridSheet::Change::Texts:
            return model_->TextsChanged();
        case GridSheet::Change::Cursor:
            return ReflectCursor();
        case GridSheet::Change::Editability:
            if (!session_.sheet.Editable()) AbandonEditor();
    }
}

void GridView::ReflectLayout() {
    CloseEditor();
    {
        const QScopedValueRollback reflecting(syncing_, true);
        model_->LaidOut();
    }
    corner_->SetText(model_->CornerText());
    ApplyPitch();
    ReflectCursor();
}

void GridView::ReflectCursor() {
    if (syncing_) return;
    const QScopedValueRollback reflecting(syncing_, true);
    const auto& sheet = session_.sheet;
    if (!sheet.Cursor().IsData()) return selectionModel()->clear();
    const QItemSelection selection(model_->IndexOf(sheet.Selection().first),
                                   model_->IndexOf(sheet.Selection().last));
    setCurrentIndex(model_->IndexOf(sheet.Cursor()));
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
}

void GridView::TellSheet() {
    const auto selection = selectionModel()->selection();
    if (syncing_ || (!currentIndex().isValid() && selection.isEmpty())) return;
    const QScopedValueRollback telling(syncing_, true);
    const auto cursor = GridModel::CellOf(
        currentIndex().isValid() ? currentIndex() : QModelIndex(selection.first().topLeft()));
    GridRange range{cursor, cursor};
    if (!selection.isEmpty())
        range = {GridModel::CellOf(selection.first().topLeft()),
                 GridModel::CellOf(selection.first().bottomRight())};
    dispatch_([&] { SelectGridCells(session_, range, cursor); });
}

void GridView::OpenEditor(const QString& text, bool selected) {
    if (editor_ || !session_.sheet.Editable() || session_.gate.Busy() || !currentIndex().isValid()) return;
    edited_ = session_.sheet.Cursor();
    editor_ = new CellEditor(text, viewport());
    editor_->setAccessibleName(tr("Advance at MAP %1, RPM %2")
                                   .arg(ToQt(session_.sheet.Text({edited_.row, 0})),
                                        ToQt(session_.sheet.Text({0, edited_.column}))));
    connect(editor_, &CellEditor::Ended, this, &GridView::EndEditor);
    connect(editor_, &CellEditor::Abandoned, this, &GridView::AbandonEditor);
    scrollTo(currentIndex());
    PlaceEditor();
    editor_->show();
    editor_->setFocus();
    selected ? editor_->selectAll() : editor_->end(false);
}

void GridView::OpenEditorOnText() {
    if (currentIndex().isValid()) OpenEditor(currentIndex().data().toString(), true);
}

void GridView::EndEditor(int rows, int columns) {
    if (CommitEditor() && (rows != 0 || columns != 0)) MoveCursorBy(rows, columns);
}

void GridView::PlaceEditor() {
    if (editor_) editor_->PlaceOver(visualRect(model_->IndexOf(edited_)));
}

void GridView::CloseEditor() {
    if (!editor_) return;
    auto* editor = editor_.data();
    editor_.clear();
    editor->disconnect(this);
    if (editor->hasFocus()) setFocus();
    editor->hide();
    editor->deleteLater();
}

void GridView::MoveCursorBy(int rows, int columns) {
    const auto target = currentIndex().siblingAtColumn(
        std::clamp(currentIndex().column() + columns, 0, model_->columnCount() - 1));
    setCurrentIndex(target.siblingAtRow(std::clamp(target.row() + rows, 0, model_->rowCount() - 1)));
}

}  // namespace rv52
