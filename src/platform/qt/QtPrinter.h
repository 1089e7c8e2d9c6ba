#pragma once

#include "platform/Printer.h"
#include "platform/qt/PrinterSetupDialog.h"

#include <QBuffer>
#include <QFont>
#include <QPdfWriter>

#include <functional>
#include <memory>
#include <optional>

class QPainter;
class QWidget;

namespace rv52 {

class Files;

// Every page becomes a PDF document, which goes to the print system or, where there is no printer, to a file:
// nothing leaves that is not whole.
class QtPrinter : public Printer {
 public:
    using ChartDrawing = std::function<void(QPainter&, const QRectF&)>;

    QtPrinter(Files& files, PrintSystem& system);

    // The window that the setup dialog belongs to.
    void SetParent(QWidget* parent) { parent_ = parent; }
    // Draws what the chart shows, as vectors.
    void SetChartDrawing(ChartDrawing draw) { drawChart_ = std::move(draw); }

    PrintTarget Target() override;
    std::vector<std::string> FontNames() const override;
    std::string DateAndTime() const override;
    void Begin(const PrintJob& job) override;
    void PrintLine(const std::vector<PrintItem>& items) override;
    PrintPage Page() const override;
    void DrawChart(const PixelRectangle& place) override;
    void EndDocument() override;
    void Discard() noexcept override;
    bool SetUp() override;

 private:
    using Painting = std::function<void(QPainter&)>;

    PrinterChoice PrinterNow() const;
    QPdfWriter& Device() const;
    std::string PaintPage();

    Files& files_;
    PrintSystem& system_;
    QWidget* parent_ = nullptr;
    ChartDrawing drawChart_;
    // Set up by the user during this run; else each job goes to the default printer of its moment.
    std::optional<PrinterChoice> chosen_;
    PrintPaper documentPaper_;

    // The job that has begun, and what its page will show.
    PrintJob job_;
    PrinterChoice destination_;
    QBuffer document_;
    std::unique_ptr<QPdfWriter> writer_;
    std::vector<Painting> page_;
    QFont font_;
    double line_ = 0;         // top of the next line, in device pixels
    double columnWidth_ = 0;  // device pixels
};

// The family itself where it is installed, else a monospaced substitute of the same width: 0.6 of its size.
QFont MonospacedFont(const QString& family, double points);

}  // namespace rv52
