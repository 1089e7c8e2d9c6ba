#include "table/GridDelegate.h"

#include "table/FittedText.h"

#include <QAbstractItemView>
#include <QPainter>

namespace rv52 {

namespace {

struct Cursor {
    bool here = false;
    bool inRange = false;  // one of several selected cells
};

Cursor CursorAt(const QStyleOptionViewItem& option, const QModelIndex& index) {
    const auto* view = qobject_cast<const QAbstractItemView*>(option.widget);
    if (view == nullptr || view->currentIndex() != index) return {};
    const auto& selection = view->selectionModel()->selection();
    return {true, !selection.isEmpty() && selection.first().topLeft() != selection.first().bottomRight()};
}

// Which cell of a selected range the cursor is on: bars at its sides, since digits need all its height.
void MarkCursor(QPainter& painter, const QRect& cell, const QColor& colour) {
    constexpr int bar = 2;
    painter.fillRect(cell.left(), cell.top(), bar, cell.height(), colour);
    painter.fillRect(cell.right() + 1 - bar, cell.top(), bar, cell.height(), colour);
}

}  // namespace

void GridDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
    const auto cursor = CursorAt(option, index);
    const bool lit = cursor.here || option.state.testFlag(QStyle::State_Selected);
    const auto colour = [&](QPalette::ColorRole role) {
        return option.palette.color(QPalette::Active, role);
    };
    const QColor text = colour(lit ? QPalette::HighlightedText : QPalette::Text);

    painter->save();
    painter->fillRect(option.rect, colour(lit ? QPalette::Highlight : QPalette::Base));
    painter->setFont(option.font);
    painter->setPen(text);
    DrawFitted(*painter, option.rect, index.data(Qt::DisplayRole).toString());
    if (cursor.inRange) MarkCursor(*painter, option.rect, text);
    painter->restore();
}

}  // namespace rv52
