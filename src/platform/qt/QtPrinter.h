#pragma once

#include "platform/Printer.h"

#include <QBuffer>
#include <QFont>
#include <QPageLayout>
#include <QPdfWriter>
#include <QPrinter>

#include <functional>
#include <memory>

class QPainter;
class QWidget;

namespace rv52 {

class Files;

// The printers of the desktop. Where there is none, a job becomes a PDF. A page is painted only when the job
// ends, since a print system prints whatever has been begun: so nothing reaches it that is not whole.
class QtPrinter : public Printer {
 public:
    using ChartDrawing = std::function<void(QPainter&, const QRectF&)>;

    explicit QtPrinter(Files& files);

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
    using Painting = std::function<void(QPainter&)>;

    void OpenPrinter(const PrintJob& job);
    void OpenDocument(const PrintJob& job);
    QPagedPaintDevice& Device() const;
    void PaintPage();
    void SetUpPrinter();
    void SetUpDocument();

    Files& files_;
    QWidget* parent_ = nullptr;
    ChartDrawing drawChart_;
    // Set up by the user during this run; else each job goes to the default printer of its moment.
    std::unique_ptr<QPrinter> chosen_;
    QPageLayout documentLayout_;

    // The job that has begun: its device, which is a printer or a document, and what its page will show.
    std::unique_ptr<QPrinter> current_;
    QBuffer document_;
    std::unique_ptr<QPdfWriter> writer_;
    std::string documentPath_;
    QPagedPaintDevice* device_ = nullptr;
    std::vector<Painting> page_;
    bool painted_ = false;
    QFont font_;
    double line_ = 0;         // top of the next line, in device pixels
    double columnWidth_ = 0;  // device pixels
};

// A document's page where nothing else is set up: across, with a quarter inch of margin.
QPageLayout DocumentLayout(const QPageSize& paper);

// The family itself where it is installed, else a monospaced substitute of the same width: 0.6 of its size.
QFont MonospacedFont(const QString& family, double points);

}  // namespace rv52
