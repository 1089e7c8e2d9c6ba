#include "chart/ui/ChartPainter.h"

#include "chart/ui/QtPlane.h"
#include "chart/ui/SurfacePainter.h"
#include "platform/qt/QtText.h"

#include <QFontMetricsF>
#include <QPainter>

#include <array>

namespace rv52 {

namespace {

QPen RoundPen(const QColor& colour, double width) {
    return {colour, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

// For straight lines that meet. At more than a pixel's width the toolkit draws square ends twelve times as
// fast as round ones, and at these widths they look alike.
QPen LinePen(const QColor& colour, double width) {
    return {colour, width, Qt::SolidLine, Qt::SquareCap};
}

void DrawTexts(QPainter& painter, const std::vector<PlacedText>& texts, const QColor& colour) {
    painter.setPen(colour);
    for (const auto& text : texts)
        painter.drawText(ToQt(text.area), Qt::AlignCenter | Qt::TextDontClip, ToQt(text.text));
}

void DrawLines(QPainter& painter, const std::vector<Segment>& lines, const QPen& pen) {
    painter.setPen(pen);
    for (const auto& line : lines)
        painter.drawLine(ToQt(line.from), ToQt(line.to));
}

void PaintWalls(QPainter& painter, const Walls& walls, const ChartColours& colours) {
    // The faces' rims lie under the edges' lines: softened, they would cost more than all else of the walls.
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(Qt::NoPen);
    for (std::size_t face = 0; face < walls.faces.size(); ++face) {
        painter.setBrush(face == 0 ? colours.floor : colours.wall);
        const auto& corners = walls.faces[face];
        painter.drawConvexPolygon(ToPolygon(corners));
    }
    painter.setRenderHint(QPainter::Antialiasing, true);
    DrawLines(painter, walls.lines, QPen(colours.wallLine, colours.hairline));
    DrawLines(painter, walls.edges, LinePen(colours.wallEdge, colours.line));
}

void PaintTicks(QPainter& painter, const AxisOnEdge& axis, double length, const ChartColours& colours) {
    painter.setPen(LinePen(colours.wallEdge, colours.line));
    for (const auto& tick : axis.ticks)
        painter.drawLine(ToQt(tick.at), ToQt(tick.at + axis.outward * length));
}

// A triangle that points out of the axis, so that the mark does not rest on its colour alone.
void PaintOutside(QPainter& painter, const OutsideMark& mark, double size, const ChartColours& colours) {
    const double up = mark.above ? -size : size;
    const Point base = mark.at + Point{0, up / 2};
    painter.setPen(RoundPen(colours.casing, colours.line));
    painter.setBrush(colours.outside);
    painter.drawConvexPolygon(
        ToPolygon(std::array{base + Point{-size / 2, 0}, base + Point{size / 2, 0}, base + Point{0, up}}));
}

void PaintLegend(QPainter& painter, const Scene& scene, const ChartColours& colours) {
    const auto& bands = scene.chartTemplate.bands;
    painter.setPen(QPen(colours.wallEdge, colours.line));
    for (const auto& swatch : scene.legend.swatches) {
        const bool inside = swatch.band >= 0 && swatch.band < static_cast<int>(bands.size());
        painter.setBrush(inside ? ToQt(bands[static_cast<std::size_t>(swatch.band)]) : colours.outside);
        painter.drawRect(ToQt(swatch.area));
    }
    DrawTexts(painter, scene.legend.texts, colours.text);
}

// Dark upon a light rim: it stands out from every band, in colour and in grey.
void PaintCased(QPainter& painter, const ChartColours& colours, auto&& draw) {
    painter.setPen(LinePen(colours.casing, colours.casingLine));
    draw();
    painter.setPen(LinePen(colours.core, colours.boldLine));
    draw();
}

void PaintCallout(QPainter& painter, const Callout& callout, const ChartColours& colours) {
    const auto box = ToQt(callout.box);
    const double radius = 2.2 * colours.boldLine;
    painter.setBrush(colours.calloutFill);
    painter.setPen(RoundPen(colours.text, colours.line));
    painter.drawLine(ToQt(callout.point), box.center());
    painter.drawRoundedRect(box, radius, radius);
    painter.setFont(BoldOf(painter.font()));
    painter.drawText(box, Qt::AlignCenter | Qt::TextDontClip, ToQt(callout.text));
    painter.setBrush(callout.hidden ? QBrush(colours.casing) : QBrush(colours.core));
    painter.setPen(RoundPen(callout.hidden ? colours.core : colours.casing, colours.boldLine));
    painter.drawEllipse(ToQt(callout.point), 2.2 * colours.boldLine, 2.2 * colours.boldLine);
}

void PaintLimit(QPainter& painter, const LimitMark& limit, const ChartColours& colours) {
    const Point half{6 * colours.boldLine, 0};
    PaintCased(painter, colours, [&] {
        painter.drawLine(ToQt(limit.from), ToQt(limit.at));
        painter.drawLine(ToQt(limit.at - half), ToQt(limit.at + half));
    });
}

}  // namespace

TextMeasure MeasureOn(const QFont& font, const QPaintDevice* device) {
    return [metrics = QFontMetricsF(font, device)](const std::string& text) {
        return Extent{metrics.horizontalAdvance(ToQt(text)), metrics.height()};
    };
}

QFont BoldOf(QFont font) {
    font.setBold(true);
    return font;
}

void PaintScene(QPainter& painter, const Scene& scene, const ChartColours& colours) {
    painter.save();
    painter.fillRect(ToQt(scene.areas.whole), colours.background);
    painter.setRenderHint(QPainter::Antialiasing, true);
    const double mark = scene.areas.plot.left - scene.areas.plotting.left;

    painter.save();
    painter.setClipRect(ToQt(scene.areas.plotting), Qt::IntersectClip);
    PaintWalls(painter, scene.walls, colours);
    for (const auto* axis : {&scene.walls.rpm, &scene.walls.map, &scene.walls.advance})
        PaintTicks(painter, *axis, mark / 9, colours);
    PaintSurface(painter, scene, colours);
    for (const auto& outside : scene.outside)
        PaintOutside(painter, outside, mark / 5, colours);
    painter.restore();

    DrawTexts(painter, scene.texts, colours.text);
    PaintLegend(painter, scene, colours);
    painter.restore();
}

void PaintOverlay(QPainter& painter, const Scene& scene, const Overlay& overlay,
                  const ChartColours& colours) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.setBrush(Qt::NoBrush);
    painter.save();
    painter.setClipRect(ToQt(scene.areas.plotting), Qt::IntersectClip);
    QList<QLineF> cursor;
    for (const auto& curve : overlay.cursor)
        for (std::size_t next = 1; next < curve.size(); ++next)
            cursor.append(QLineF(ToQt(curve[next - 1]), ToQt(curve[next])));
    PaintCased(painter, colours, [&] { painter.drawLines(cursor); });
    DrawLines(painter, overlay.ghost, LinePen(colours.ghost, 1.2 * colours.meshLine));
    if (overlay.limit) PaintLimit(painter, *overlay.limit, colours);
    if (overlay.hover) {
        const double radius = 3.2 * colours.boldLine;
        PaintCased(painter, colours, [&] { painter.drawEllipse(ToQt(*overlay.hover), radius, radius); });
    }
    painter.restore();
    if (overlay.callout) PaintCallout(painter, *overlay.callout, colours);
    painter.restore();
}

void PaintChart(QPainter& painter, const Area& area, const AdvanceTable& table,
                const ChartTemplate& chartTemplate, const Viewpoint& viewpoint, const ChartColours& colours) {
    const auto measure = MeasureOn(painter.font(), painter.device());
    PaintScene(painter, SceneOf(table, chartTemplate, viewpoint, area, measure), colours);
}

}  // namespace rv52
