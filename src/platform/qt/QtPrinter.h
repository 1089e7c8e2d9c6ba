#pragma once

#include "platform/Printer.h"

#include <QBuffer>
#include <QPageLayout>
#include <QPainter>
#include <QPrinter>

#include <functional>
#include <memory>

class QWidget;

namespace rv52 {

class Files;

// The printers of the desktop. Where there is none, a job becomes a PDF, which is written only once it is
// whole.
class QtPrinter : public Printer {
 public:
    using ChartDrawing = std::function<void(QPainter&, const QRectF&)>;

    explicit QtPrinter(Files& files);
    ~QtPrinter() override { Discard(); }

    // The window that the setup dialog belongs to.
    void SetParent(QWidget* parent) { parent_ = parent; }
    // Draws what the chart shows, as vectors.
    void SetChartDrawing(ChartDrawing draw) { drawChart_ = std::move(draw); }

    bool Present() const override;
    std::vector<std::string> FontNames() const override;
    std::string DateAndTime() const override;
    void Begin(const PrintJob& job) override;
    void PrintLine(const std::vector<PrintItem>& items) override;
    PrintPage Page() const override;
    void DrawChart(const PixelRectangle& place) override;
    void EndDocument() override;
    void Discard() noexcept override;
    void SetUp() override;

 private:
    QPagedPaintDevice& OpenPrinter(const PrintJob& job);
    QPagedPaintDevice& OpenDocument(const PrintJob& job);
    void RequireJob() const;
    void SetUpPrinter();
    void SetUpDocument();

    Files& files_;
    QWidget* parent_ = nullptr;
    ChartDrawing drawChart_;
    // Set up by the user during this run; else each job goes to the default printer of its moment.
    std::unique_ptr<QPrinter> chosen_;
    QPageLayout documentLayout_;

    // The job that has begun: a device and what is painted on it.
    std::unique_ptr<QPrinter> current_;
    QBuffer document_;
    std::string documentPath_;
    std::unique_ptr<QPagedPaintDevice> documentDevice_;
    std::unique_ptr<QPainter> painter_;
    double line_ = 0;         // top of the next line, in device pixels
    double columnWidth_ = 0;  // device pixels
};

// A document's page where nothing else is set up: across, with a quarter inch of margin.
QPageLayout DocumentLayout(const QPageSize& paper);

// The family itself where it is installed, else a monospaced substitute of the same width: 0.6 of its size.
QFont MonospacedFont(const QString& family, double points);

}  // namespace rv52
