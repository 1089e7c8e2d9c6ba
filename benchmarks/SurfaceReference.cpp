#include "Figures.h"
#include "Samples.h"
#include "chart/Projection.h"

#include <QApplication>
#include <QImage>
#include <QLinearGradient>
#include <QtDataVisualization/Q3DCamera>
#include <QtDataVisualization/Q3DScene>
#include <QtDataVisualization/Q3DSurface>
#include <QtDataVisualization/QHeightMapSurfaceDataProxy>
#include <QtDataVisualization/QSurface3DSeries>
#include <QtDataVisualization/QValue3DAxis>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

// rv52_bench_surface WIDTH HEIGHT: what the toolkit's own surface chart takes to draw the same table at the
// same size, antialiased, with its labels and its mesh; in microseconds.

namespace {

using namespace rv52;

constexpr int kRuns = 11;
constexpr int kSamples = 4;
constexpr float kZoom = 95;  // %

void SetAxis(QValue3DAxis& axis, const ChartAxis& from) {
    axis.setTitle(QString::fromStdString(from.caption));
    axis.setTitleVisible(true);
    axis.setRange(static_cast<float>(from.from), static_cast<float>(from.to));
    axis.setSegmentCount(static_cast<int>((from.to - from.from) / from.step));
    axis.setLabelFormat(QStringLiteral("%d"));
}

QSurfaceDataArray* DataOf(const AdvanceTable& table) {
    auto* rows = new QSurfaceDataArray;
    for (int row = table.RowCount(); row >= 1; --row) {
        auto* items = new QSurfaceDataRow;
        for (int column = 1; column <= kColumnCount; ++column)
            *items << QVector3D(static_cast<float>(RpmOfColumn(column)),
                                static_cast<float>(table.GetCell({Column(column), Row(row)})),
                                static_cast<float>(MapOfRow(row)));
        *rows << items;
    }
    return rows;
}

QLinearGradient GradientOf(const ChartTemplate& chartTemplate) {
    QLinearGradient gradient;
    const auto count = static_cast<double>(chartTemplate.bands.size());
    double at = 0;
    for (const auto& band : chartTemplate.bands)
        gradient.setColorAt(at++ / count, QColor(band.red, band.green, band.blue));
    return gradient;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) return 2;
    const QSize size(std::atoi(argv[1]), std::atoi(argv[2]));
    const QApplication application(argc, argv);
    const auto chartTemplate = bench::ExTemplate();
    Q3DSurface graph;
    SetAxis(*graph.axisX(), chartTemplate.rpm);
    SetAxis(*graph.axisY(), chartTemplate.advance);
    SetAxis(*graph.axisZ(), chartTemplate.map);
    auto* series = new QSurface3DSeries;
    series->dataProxy()->resetArray(DataOf(bench::ExTable()));
    series->setBaseGradient(GradientOf(chartTemplate));
    series->setColorStyle(Q3DTheme::ColorStyleRangeGradient);
    series->setFlatShadingEnabled(true);
    graph.addSeries(series);
    graph.setShadowQuality(QAbstract3DGraph::ShadowQualityNone);
    // The same box from the same side, about as large.
    graph.setHorizontalAspectRatio(kBoxWidth / kBoxDepth);
    graph.setAspectRatio(std::max(kBoxWidth, kBoxDepth) / kBoxHeight);
    auto* camera = graph.scene()->activeCamera();
    camera->setCameraPosition(static_cast<float>(chartTemplate.azimuth),
                              static_cast<float>(chartTemplate.elevation), kZoom);
    graph.resize(size);
    graph.show();

    QImage picture = graph.renderToImage(kSamples, size);
    if (picture.size() != size) return 1;
    if (const char* file = std::getenv("RV52_BENCH_PICTURE")) picture.save(QString::fromLocal8Bit(file));
    const double seconds =
        bench::MedianSeconds(kRuns, [&] { picture = graph.renderToImage(kSamples, size); });
    std::printf("redraw %.1f\n", seconds * 1e6);
    return 0;
}
