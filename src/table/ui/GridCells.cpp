#include "table/ui/GridCells.h"

#include <QAbstractItemView>
#include <QFontMetricsF>
#include <QHash>
#include <QPainter>
#include <QRect>
#include <QStaticText>
#include <QString>
#include <QStyleOptionHeader>

#include <algorithm>
#include <cmath>

namespace rv52 {

namespace {

// Narrower than this letters run together; what is still too long loses its end.
constexpr double kNarrowest = 0.6;

// The glyphs' box around the start of the baseline. Every text is at least as tall as a digit, so that all
// numbers of a row stand on one baseline.
QRectF GlyphBox(const QFontMetricsF& metrics, const QString& text) {
    const QRectF digit = metrics.tightBoundingRect(QStringLiteral("0"));
    QRectF box = metrics.tightBoundingRect(text);
    box.setTop(std::min(box.top(), digit.top()));
    box.setBottom(std::max(box.bottom(), digit.bottom()));
    return box;
}

// A text that has been measured and shaped.
struct Glyphs {
    QRectF box;
    double ascent = 0;  // of the font, from the top of the drawn text to its baseline
    QStaticText text;
};

// They are kept: a table repeats its few hundred numbers, and to measure and shape one takes longer than to
// draw it.
const Glyphs& KeptGlyphs(const QFont& font, const QString& text) {
    constexpr qsizetype most = 1000;
    static QFont keptFont;
    static QHash<QString, Glyphs> kept;
    if (font != keptFont || kept.size() > most) {
        kept.clear();
        keptFont = font;
    }
    const auto found = kept.constFind(text);
    if (found != kept.constEnd()) return *found;
    const QFontMetricsF metrics(font);
    Glyphs glyphs{GlyphBox(metrics, text), metrics.ascent(), QStaticText(text)};
    glyphs.text.setTextFormat(Qt::PlainText);
    return *kept.insert(text, glyphs);
}

// Draws text in the painter's font and pen, centred in a cell by the box of its glyphs: an 11-pixel row has
// no room for a font's ascent and descent, but for its digits. Shrinks only what would not fit.
void DrawFitted(QPainter& painter, const QRect& cell, const QString& text) {
    if (text.isEmpty() || cell.width() < 2 || cell.height() < 2) return;
    const double widest = cell.width() / kNarrowest;
    QString shown = text;
    const auto& glyphs = KeptGlyphs(painter.font(), text);
    QRectF box = glyphs.box;
    if (box.width() > widest) {
        const QFontMetricsF metrics(painter.font());
        shown = metrics.elidedText(text, Qt::ElideRight, widest);
        box = GlyphBox(metrics, shown);
    }
    const double narrow = std::min(1.0, (cell.width() - 1) / std::max(1.0, box.width()));
    const double flat = std::min(1.0, cell.height() / std::max(1.0, box.height()));

    const QPointF centre = QRectF(cell).center();
    QPointF start(centre.x() - box.center().x() * narrow, centre.y() - box.center().y() * flat);
    // Unscaled glyphs are crispest on whole pixels.
    if (flat == 1.0) start.setY(std::round(start.y()));
    if (narrow == 1.0) start.setX(std::round(start.x()));
    if (flat == 1.0 && narrow == 1.0)
        return painter.drawStaticText(start - QPointF(0, glyphs.ascent), glyphs.text);

    painter.save();
    painter.translate(start);
    painter.scale(narrow, flat);
    painter.drawText(QPointF(0, 0), shown);
    painter.restore();
}

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
