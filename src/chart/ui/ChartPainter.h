#pragma once

#include "chart/Overlay.h"
#include "chart/Scene.h"
#include "chart/ui/ChartColours.h"

#include <QFont>

class QPainter;
class QPaintDevice;

namespace rv52 {

// How large texts are in this font on this device.
TextMeasure MeasureOn(const QFont& font, const QPaintDevice* device);

// The callout's font.
QFont BoldOf(QFont font);

// The surface with its axes and legend, with the painter's font, into the scene's area.
void PaintScene(QPainter& painter, const Scene& scene, const ChartColours& colours);
// What stands over it.
void PaintOverlay(QPainter& painter, const Scene& scene, const Overlay& overlay, const ChartColours& colours);

// The plot of a table into any rectangle of any device, without a window and without a value label; texts
// are in the painter's font.
void PaintChart(QPainter& painter, const Area& area, const AdvanceTable& table,
                const ChartTemplate& chartTemplate, const Viewpoint& viewpoint, const ChartColours& colours);

}  // namespace rv52
