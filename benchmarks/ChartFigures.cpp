#include "Groups.h"
#include "Inner.h"
#include "Samples.h"
#include "ShownProgram.h"
#include "WholeProcess.h"
#include "chart/ui/ChartPainter.h"
#include "chart/ui/ChartView.h"
#include "chart/ui/SurfacePainter.h"
#include "table/commands/GridCursor.h"
#include "table/commands/NewTable.h"
#include "table/commands/SelectionCommands.h"

#include <QCoreApplication>
#include <QFile>
#include <QImage>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPainter>
#include <QPalette>

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace rv52::bench {

namespace {

constexpr QSize kChart(1280, 700);
constexpr int kRuns = 41;

// A screen's picture of the chart at a scale.
class Canvas {
 public:
    Canvas(const QFont& font, double scale) : image_(kChart * scale, QImage::Format_RGB32), font_(font) {
        image_.setDevicePixelRatio(scale);
    }

    static constexpr Area kWhole{0, 0, kChart.width(), kChart.height()};

    void Draw(auto&& draw) {
        QPainter painter(&image_);
        painter.setFont(font_);
        draw(painter);
    }
    TextMeasure Measure() const { return MeasureOn(font_, &image_); }

 private:
    QImage image_;
    QFont font_;
};

// Everything anew: geometry, hidden surfaces, the place of every label, and all of the paint.
double Redraw(const char* name, const QFont& font, double scale) {
    const auto table = ExTable();
    const auto chartTemplate = ExTemplate();
    const auto viewpoint = ViewpointOf(chartTemplate);
    const auto colours = ScreenColours(QPalette());
    Canvas canvas(font, scale);
    return InnerTime(name, [&] {
        canvas.Draw([&](QPainter& painter) {
            PaintChart(painter, Canvas::kWhole, table, chartTemplate, viewpoint, colours);
        });
    });
}

// Ten surfaces of a tenth of the area each have the points, and the pixels, of one surface of ten times the
// points.
double RedrawOfTenfoldPoints(const QFont& font, double redraw) {
    const auto table = ExTable();
    const auto chartTemplate = ExTemplate();
    const auto colours = ScreenColours(QPalette());
    Canvas canvas(font, 1);
    const auto surface = [&](const char* name, double zoom, int times) {
        auto viewpoint = ViewpointOf(chartTemplate);
        viewpoint.zoom = zoom;
        auto scene = SceneOf(table, chartTemplate, viewpoint, Canvas::kWhole, canvas.Measure());
        return InnerTime(name, [&] {
            canvas.Draw([&](QPainter& painter) {
                for (int turn = 0; turn < times; ++turn) {
                    scene.mesh = Mesh(table, chartTemplate.advance, scene.projection);
                    PaintSurface(painter, scene, colours);
                }
            });
        });
    };
    return redraw - surface("surface", 1, 1) + surface("surface.points10", 1 / std::sqrt(10.0), 10);
}

// The window with the chart at its size for these figures.
class ShownChart {
 public:
    ShownChart() {
        program_.ShowExTable();
        constexpr double chartShare = 0.7;
        const int height = static_cast<int>(std::lround(kChart.height() / chartShare));
        auto& window = program_.window;
        window.resize(kChart.width(), height + window.menuBar()->heightForWidth(kChart.width()));
        program_.Settle();
        chart_ = window.findChild<ChartView*>();
        if (chart_->size() != kChart) throw std::runtime_error("the chart has not the size it should have");
    }

    QFont Font() const { return chart_->font(); }

    // Mouse move to finished paint, in microseconds.
    double Drag() {
        const auto at = chart_->Shown()->mesh.At({Column(9), Row(4)}).at;
        const QPointF grabbed(std::round(at.x), std::round(at.y));
        Mouse(QEvent::MouseButtonPress, grabbed);
        program_.Settle();
        int turn = 0;
        const double time = MedianSeconds(kRuns, [&] {
            Mouse(QEvent::MouseMove, grabbed + QPointF(0, ++turn % 2 == 0 ? 10 : 16));
            AwaitPaint();
        });
        Mouse(QEvent::MouseButtonRelease, grabbed);
        program_.Settle();
        return time * 1e6;
    }

    // A whole new table, on screen.
    double Generate() {
        NewTable newTable{0, 5, ExMinimum(), ExMaximum()};
        int turn = 0;
        return Shown([&] {
            newTable.AdvSlope = static_cast<std::int16_t>(3 + ++turn % 4);
            CreateNewTable(program_.session, newTable);
        });
    }

    // Every cell changed by one command, on screen.
    double Modify() {
        auto& session = program_.session;
        SelectGridCells(session,
                        {{GridRow(1), GridColumn(1)},
                         {GridRow(session.sheet.RowCountWithHeader() - 1),
                          GridColumn(session.sheet.ColumnCountWithHeader() - 1)}},
                        {GridRow(1), GridColumn(1)});
        program_.Settle();
        int turn = 0;
        return Shown([&] {
            program_.nobody.answer = ++turn % 2 == 0 ? "-1" : "-2";
            mnuPopUpModify3D_Click(session);
        });
    }

 private:
    double Shown(const std::function<void()>& change) {
        program_.Settle();
        return 1e6 * MedianSeconds(kRuns, [&] {
                   paintsBefore_ = chart_->PaintCount();
                   change();
                   AwaitPaint();
               });
    }

    void Mouse(QEvent::Type type, QPointF place) {
        paintsBefore_ = chart_->PaintCount();
        const auto button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
        const auto buttons = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, place, chart_->mapToGlobal(place), button, buttons, Qt::NoModifier);
        QCoreApplication::sendEvent(chart_, &event);
    }

    // Paints of all widgets come in one event.
    void AwaitPaint() {
        for (int turn = 0; chart_->PaintCount() == paintsBefore_; ++turn) {
            if (turn > 100) throw std::runtime_error("the chart was not painted");
            QCoreApplication::processEvents();
        }
    }

    ShownProgram program_;
    ChartView* chart_ = nullptr;
    int paintsBefore_ = 0;
};

void CompareWithReference(Report& report, double redraw) {
    const char* const name = "chart.redraw";
    constexpr double target = 1.0 / 15;
    const auto program = ProgramBeside("rv52_bench_surface");
    if (!QFile::exists(program)) return report.Skip(name, "qt6-datavisualization-dev is not installed");
    try {
        const VirtualScreen screen;
        const auto said =
            LinesOf(program, {QString::number(kChart.width()), QString::number(kChart.height())},
                    screen.Environment());
        const double reference = said.at("redraw");
        report.Add(Microseconds("chart.redraw.reference", reference));
        report.Add(Ratio(name, redraw / reference, target));
    } catch (const std::exception& failure) {
        report.CouldNot(name, failure.what());
    }
}

}  // namespace

void MeasureChart(Report& report) {
    ShownChart shown;
    const double redraw = Redraw("chart.redraw", shown.Font(), 1);
    report.Add(Microseconds("chart.redraw.time", redraw));
    CompareWithReference(report, redraw);
    report.Add(Ratio("chart.redraw.200", Redraw("chart.redraw.200", shown.Font(), 2) / redraw, 6));
    report.Add(
        Ratio("chart.redraw.points10", RedrawOfTenfoldPoints(shown.Font(), redraw) / redraw, std::nullopt));
    report.Add(Ratio("chart.drag", shown.Drag() / redraw, 1.3));
    report.Add(Ratio("generate.shown", shown.Generate() / redraw, 2));
    report.Add(Ratio("modify.shown", shown.Modify() / redraw, 2));
}

}  // namespace rv52::bench
