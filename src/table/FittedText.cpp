#include "table/FittedText.h"

#include <QCache>
#include <QFontMetricsF>
#include <QPainter>

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

// Boxes are kept: a table repeats its few hundred numbers, and measuring one takes longer than drawing it.
QRectF KeptGlyphBox(const QFont& font, const QString& text) {
    static QFont keptFont;
    static QCache<QString, QRectF> kept(2000);
    if (font != keptFont) {
        kept.clear();
        keptFont = font;
    }
    if (const auto* box = kept.object(text)) return *box;
    const auto box = GlyphBox(QFontMetricsF(font), text);
    kept.insert(text, new QRectF(box));
    return box;
}

}  // namespace

void DrawFitted(QPainter& painter, const QRect& cell, const QString& text) {
    if (text.isEmpty() || cell.width() < 2 || cell.height() < 2) return;
    const double widest = cell.width() / kNarrowest;
    QString shown = text;
    QRectF box = KeptGlyphBox(painter.font(), shown);
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
    if (flat == 1.0 && narrow == 1.0) return painter.drawText(start, shown);

    painter.save();
    painter.translate(start);
    painter.scale(narrow, flat);
    painter.drawText(QPointF(0, 0), shown);
    painter.restore();
}

}  // namespace rv52
