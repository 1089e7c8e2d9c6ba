#include "table/ui/GridView.h"

#include "app/state/Session.h"
#include "platform/qt/ControlFont.h"
#include "platform/qt/QtText.h"
#include "platform/qt/Twips.h"
#include "table/commands/GridCursor.h"
#include "table/ui/CellEditor.h"
#include "table/ui/GridCells.h"
#include "table/ui/GridMenu.h"
#include "table/ui/GridModel.h"

#include <QAccessible>
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

// The toolkit does it by itself while an assistive tool is connected. Cells that were asked for without one
// would stand for the cells of the layout before.
void ForgetAccessibleCells(GridView& grid) {
    QAccessibleTableModelChangeEvent laidOut(&grid, QAccessibleTableModelChangeEvent::ModelReset);
    auto* table = QAccessible::queryAccessibleInterface(&grid)->tableInterface();
    if (table != nullptr) table->modelChange(&laidOut);
}

}  // namespace

GridView::GridView(Session& session, Dispatch dispatch, RunCommand runCommand, QWidget* parent)
    : QTableView(parent),
      session_(session),
      dispatch_(std::move(dispatch)),
      model_(new GridModel(session.sheet, this)),
      corner_(new GridCorner(this)),
      menu_(new GridMenu(session, std::move(runCommand), this)),
      editing_(new CellEditor(session, dispatch_, *this)) {
    SetUpParts();
    setModel(model_);
    listening_ = session.sheet.OnChange([this](GridSheet::Change change) { SheetChanged(change); });
    connect(editing_, &CellEditor::MoveOn, this, &GridView::MoveCursorBy);
    ReflectLayout();
}

void GridView::SetUpParts() {
    setObjectName(QStringLiteral("VSFlexGrid1"));
    setAccessibleName(tr("Advance table"));
    setToolTip(tr("Click to select or double click to edit cell"));
    setFont(ControlFont());
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
    for (QWidget* fixed : std::initializer_list<QWidget*>{horizontalHeader(), verticalHeader(), corner_}) {
        fixed->setContextMenuPolicy(Qt::CustomContextMenu);
        connect(fixed, &QWidget::customContextMenuRequested, this,
                [this, fixed](const QPoint& place) { ShowMenu(fixed->mapToGlobal(place)); });
    }
}

void GridView::ApplyPitch() {
    const int rows = session_.sheet.RowCountWithHeader();
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
    for (int column = 1; column < session_.sheet.ColumnCountWithHeader(); ++column)
        horizontalHeader()->resizeSection(column - 1, edge(column + 1) - edge(column));
    updateGeometries();
    editing_->Place();
}

bool GridView::Edits() const {
    return editing_->IsOpen();
}

bool GridView::CommitEditor() {
    return editing_->Commit();
}

void GridView::AbandonEditor() {
    editing_->Abandon();
}

void GridView::SettleEditor() {
    editing_->Settle();
}

void GridView::keyPressEvent(QKeyEvent* event) {
    const bool shiftF10 = event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier;
    if (event->key() == Qt::Key_Menu || shiftF10) return ShowMenuAtCursor();
    if (event->key() == Qt::Key_F2) return editing_->OpenOnText();
    if (StartsTyping(*event)) return editing_->OpenTyping(event->text());
    // The desktop's clipboard has no part in this grid.
    if (event->matches(QKeySequence::Copy)) return event->ignore();
    QTableView::keyPressEvent(event);
}

void GridView::mousePressEvent(QMouseEvent* event) {
    // An editor that is still open has just refused to end: the press does not leave its cell.
    dragging_ = !editing_->IsOpen() && event->button() == Qt::LeftButton && indexAt(event->pos()).isValid();
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
    if (here && currentIndex().isValid() && !editing_->IsOpen()) return editing_->OpenOnText();
    mousePressEvent(event);
}

void GridView::contextMenuEvent(QContextMenuEvent* event) {
    event->reason() == QContextMenuEvent::Keyboard ? ShowMenuAtCursor() : ShowMenu(event->globalPos());
}

void GridView::focusInEvent(QFocusEvent* event) {
    // Not the item view's own, which would make the first cell current: after loading none is.
    QAbstractScrollArea::focusInEvent(event);  // NOLINT(bugprone-parent-virtual-call)
    viewport()->update();
    MarkFocus();
}

void GridView::focusOutEvent(QFocusEvent* event) {
    QTableView::focusOutEvent(event);
    MarkFocus();
}

// A data cell that is current shows by itself where the keys go.
void GridView::MarkFocus() {
    corner_->Mark(hasFocus() && !currentIndex().isValid());
}

void GridView::resizeEvent(QResizeEvent* event) {
    QTableView::resizeEvent(event);
    ApplyPitch();
}

void GridView::scrollContentsBy(int dx, int dy) {
    QTableView::scrollContentsBy(dx, dy);
    editing_->Place();
}

void GridView::updateGeometries() {
    QTableView::updateGeometries();
    const QRect inner = contentsRect();
    corner_->setGeometry(inner.left(), inner.top(), verticalHeader()->width(), horizontalHeader()->height());
    corner_->raise();
}

void GridView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTableView::currentChanged(current, previous);
    MarkFocus();
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
    AbandonEditor();
    {
        const QScopedValueRollback reflecting(syncing_, true);
        model_->LaidOut();
        ForgetAccessibleCells(*this);
    }
    corner_->SetText(model_->CornerText());
    // The item view leaves its corner out of the accessibility tree.
    setAccessibleDescription(model_->CornerText());
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
    bool taken = false;
    {
        const QScopedValueRollback telling(syncing_, true);
        // Selecting everything makes no cell current where none was.
        if (!currentIndex().isValid())
            selectionModel()->setCurrentIndex(selection.first().topLeft(), QItemSelectionModel::NoUpdate);
        const auto cursor = GridModel::CellOf(currentIndex());
        GridRange range{cursor, cursor};
        if (!selection.isEmpty())
            range = {GridModel::CellOf(selection.first().topLeft()),
                     GridModel::CellOf(selection.first().bottomRight())};
        dispatch_([&] { taken = SelectGridCells(session_, range, cursor); });
    }
    if (!taken) ReflectCursor();
}

void GridView::ShowMenu(const QPoint& screen) {
    if (!editing_->IsOpen()) menu_->ShowAt(screen);
}

void GridView::ShowMenuAtCursor() {
    ShowMenu(viewport()->mapToGlobal(visualRect(currentIndex()).bottomLeft()));
}

void GridView::MoveCursorBy(int rows, int columns) {
    if (rows == 0 && columns == 0) return;
    const auto target = currentIndex().siblingAtColumn(
        std::clamp(currentIndex().column() + columns, 0, model_->columnCount() - 1));
    setCurrentIndex(target.siblingAtRow(std::clamp(target.row() + rows, 0, model_->rowCount() - 1)));
}

}  // namespace rv52
