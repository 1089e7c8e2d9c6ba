#include "Groups.h"
#include "Inner.h"
#include "Samples.h"
#include "ShownProgram.h"
#include "WholeProcess.h"
#include "chart/ui/ChartPainter.h"
#include "chart/ui/ChartView.h"
#include "chart/ui/SurfacePainter.h"
#include "table/commands/CopyPasteModify.h"
#include "table/commands/GridCursor.h"
#include "table/commands/NewTable.h"

#include <QCoreApplication>
#include <QFile>
#include <QImage>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPainter>
#include <QPalette>
#include <QWidget>

#include <algorithm>
#include <cmath>
#include <memory>
#include <stdexcept>

namespace rv52::bench {

namespace {

constexpr QSize kChart(1280, 700);
constexpr int kRuns = 101;

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
double RedrawsOfTenfoldPoints(const QFont& font) {
    const auto table = ExTable();
    const auto chartTemplate = ExTemplate();
    const auto colours = ScreenColours(QPalette());
    Canvas canvas(font, 1);
    const auto surface = [&](double zoom, int times) {
        auto viewpoint = ViewpointOf(chartTemplate);
        viewpoint.zoom = zoom;
        auto scene = SceneOf(table, chartTemplate, viewpoint, Canvas::kWhole, canvas.Measure());
        return [&, scene, times]() mutable {
            canvas.Draw([&](QPainter& painter) {
                for (int turn = 0; turn < times; ++turn) {
                    scene.mesh = Mesh(table, chartTemplate.advance, scene.projection);
                    PaintSurface(painter, scene, colours);
                }
            });
        };
    };
    const auto whole = [&] {
        canvas.Draw([&](QPainter& painter) {
            PaintChart(painter, Canvas::kWhole, table, chartTemplate, ViewpointOf(chartTemplate), colours);
        });
    };
    const auto times = MedianSecondsInTurns(kRuns, {whole, surface(1, 1), surface(1 / std::sqrt(10.0), 10)});
    return (times[0] - times[1] + times[2]) / times[0];
}

// A window that has nothing but the chart, drawn anew at each paint: what showing it costs at least.
class BareChart : public QWidget {
 public:
    explicit BareChart(const QFont& font) {
        setAttribute(Qt::WA_OpaquePaintEvent);
        setFont(font);
        resize(kChart);
    }
    int PaintCount() const { return paints_; }

 protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        PaintChart(painter, Canvas::kWhole, table_, template_, viewpoint_, ScreenColours(palette()));
        ++paints_;
    }

 private:
    const AdvanceTable table_ = ExTable();
    const ChartTemplate template_ = ExTemplate();
    const Viewpoint viewpoint_ = ViewpointOf(template_);
    int paints_ = 0;
};

// A change until the chart, and whatever else it changed, is painted. Paints of all widgets of a window come
// in one event.
std::function<void()> Painted(const auto& chart, const std::function<void()>& change) {
    return [&chart, change] {
        const int before = chart.PaintCount();
        change();
        for (int turn = 0; chart.PaintCount() == before; ++turn) {
            if (turn > 100) throw std::runtime_error("the chart was not painted");
            QCoreApplication::processEvents();
        }
    };
}

// The window with the chart at its size for these figures, and the bare chart beside it.
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
        bare_ = std::make_unique<BareChart>(chart_->font());
        bare_->move(window.frameGeometry().right() + 1, 0);
        bare_->show();
        program_.Settle();
    }

    QFont Font() const { return chart_->font(); }

    // Each in redraws of the bare chart: mouse move to finished paint.
    double Drag() {
        const auto at = chart_->Shown()->mesh.At({Column(9), Row(4)}).at;
        const QPointF grabbed(std::round(at.x), std::round(at.y));
        Mouse(QEvent::MouseButtonPress, grabbed);
        program_.Settle();
        int turn = 0;
        const double redraws =
            InRedraws([&] { Mouse(QEvent::MouseMove, grabbed + QPointF(0, ++turn % 2 == 0 ? 10 : 16)); });
        Mouse(QEvent::MouseButtonRelease, grabbed);
        program_.Settle();
        return redraws;
    }

    // A whole new table, on screen.
    double Generate() {
        NewTable newTable{0, 5, ExMinimum(), ExMaximum()};
        int turn = 0;
        return InRedraws([&] {
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
        return InRedraws([&] {
            program_.nobody.answer = ++turn % 2 == 0 ? "+1" : "-1";
            mnuPopUpModify3D_Click(session);
        });
    }

 private:
    double InRedraws(const std::function<void()>& change) {
        program_.Settle();
        const auto times = MedianSecondsInTurns(
            kRuns, {Painted(*bare_, [this] { bare_->update(); }), Painted(*chart_, change)});
        return times[1] / times[0];
    }

    void Mouse(QEvent::Type type, QPointF place) {
        const auto button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
        const auto buttons = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, place, chart_->mapToGlobal(place), button, buttons, Qt::NoModifier);
        QCoreApplication::sendEvent(chart_, &event);
    }

    ShownProgram program_;
    ChartView* chart_ = nullptr;
    std::unique_ptr<BareChart> bare_;
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
    report.Add(Ratio("chart.redraw.points10", RedrawsOfTenfoldPoints(shown.Font()), 4));
    report.Add(Ratio("chart.drag", shown.Drag(), 1.15));
    report.Add(Ratio("generate.shown", shown.Generate(), 1.5));
    report.Add(Ratio("modify.shown", shown.Modify(), 1.5));
}

}  // namespace rv52::bench
