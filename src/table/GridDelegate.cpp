#include "table/GridDelegate.h"

#include "table/FittedText.h"

#include <QAbstractItemView>
#include <QPainter>

namespace rv52 {

namespace {

bool IsCurrent(const QStyleOptionViewItem& option, const QModelIndex& index) {
    const auto* view = qobject_cast<const QAbstractItemView*>(option.widget);
    return view != nullptr && view->currentIndex() == index;
}

// Which cell of a selected range the cursor is on.
void OutlineCursor(QPainter& painter, const QRect& cell, const QColor& colour) {
    painter.setPen(QPen(colour, 1, Qt::DotLine));
    painter.drawRect(cell.adjusted(0, 0, -1, -1));
}

}  // namespace

void GridDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
    const bool current = IsCurrent(option, index);
    const bool lit = current || option.state.testFlag(QStyle::State_Selected);
    const auto colour = [&](QPalette::ColorRole role) {
        return option.palette.color(QPalette::Active, role);
    };
    const QColor text = colour(lit ? QPalette::HighlightedText : QPalette::Text);

    painter->save();
    painter->fillRect(option.rect, colour(lit ? QPalette::Highlight : QPalette::Base));
    painter->setFont(option.font);
    painter->setPen(text);
    DrawFitted(*painter, option.rect, index.data(Qt::DisplayRole).toString());
    if (current) OutlineCursor(*painter, option.rect, text);
    painter->restore();
}

}  // namespace rv52
