#include "table/GridHeader.h"

#include "table/FittedText.h"

#include <QPainter>
#include <QStyleOptionHeader>

namespace rv52 {

namespace {

void PaintSection(QPainter& painter, QStyleOptionHeader& option, const QString& text, const QWidget& widget) {
    option.text.clear();
    option.sortIndicator = QStyleOptionHeader::None;
    painter.save();
    widget.style()->drawControl(QStyle::CE_HeaderSection, &option, &painter, &widget);
    painter.setFont(widget.font());
    painter.setPen(widget.palette().color(QPalette::Active, QPalette::ButtonText));
    // The section's own line lies at its right and bottom.
    DrawFitted(painter, option.rect.adjusted(0, 0, -1, -1), text);
    painter.restore();
}

}  // namespace

GridHeader::GridHeader(Qt::Orientation orientation, QWidget* parent) : QHeaderView(orientation, parent) {
    setSectionsClickable(false);
    setHighlightSections(false);
    setSectionResizeMode(QHeaderView::Fixed);
    setMinimumSectionSize(1);
    setFocusPolicy(Qt::NoFocus);
}

void GridHeader::paintSection(QPainter* painter, const QRect& rect, int section) const {
    if (!rect.isValid()) return;
    QStyleOptionHeader option;
    initStyleOption(&option);
    option.rect = rect;
    option.section = section;
    PaintSection(*painter, option, model()->headerData(section, orientation()).toString(), *this);
}

GridCorner::GridCorner(QWidget* parent) : QWidget(parent) {}

void GridCorner::SetText(const QString& text) {
    text_ = text;
    setAccessibleName(text);
    update();
}

void GridCorner::Mark(bool marked) {
    if (marked == marked_) return;
    marked_ = marked;
    update();
}

void GridCorner::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QStyleOptionHeader option;
    option.initFrom(this);
    option.orientation = Qt::Horizontal;
    option.position = QStyleOptionHeader::OnlyOneSection;
    PaintSection(painter, option, text_, *this);
    if (!marked_) return;
    painter.setPen(palette().color(QPalette::Active, QPalette::Highlight));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

}  // namespace rv52
