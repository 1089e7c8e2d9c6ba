#include "platform/qt/QtPrinter.h"

#include "platform/Failure.h"
#include "platform/Storage.h"
#include "platform/qt/Text.h"

#include <QDateTime>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QLocale>
#include <QPageSetupDialog>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinterInfo>
#include <QPushButton>
#include <QRegularExpression>

namespace rv52 {

namespace {

constexpr double kTwipsPerInch = 1440;
constexpr double kDocumentMargin = 18;  // points, a quarter inch
constexpr int kDocumentResolution = 1200;
constexpr double kChartPoints = 9;

QPageSize UsualPaper() {
    const bool letter = QLocale::system().measurementSystem() == QLocale::ImperialUSSystem;
    return QPageSize(letter ? QPageSize::Letter : QPageSize::A4);
}

QFont ChartFont() {
    QFont font(QStringLiteral("Arial"));
    font.setPointSizeF(kChartPoints);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

// QPrinter knows the printer, but not the paper that lies in it by default. Without a default printer it is
// the first one.
std::unique_ptr<QPrinter> DefaultPrinter() {
    auto info = QPrinterInfo::defaultPrinter();
    if (info.isNull()) info = QPrinterInfo::availablePrinters().value(0);
    auto printer = std::make_unique<QPrinter>(info, QPrinter::HighResolution);
    if (info.defaultPageSize().isValid()) printer->setPageSize(info.defaultPageSize());
    return printer;
}

// The long time of a desktop may name the time zone, which nobody expects of a clock on paper.
QString LongTimeFormat(const QLocale& locale) {
    static const QRegularExpression zone(QStringLiteral("\\s*\\(?t+\\)?"));
    return locale.timeFormat(QLocale::LongFormat).remove(zone);
}

}  // namespace

QPageLayout DocumentLayout(const QPageSize& paper) {
    return {paper, QPageLayout::Landscape,
            QMarginsF(kDocumentMargin, kDocumentMargin, kDocumentMargin, kDocumentMargin)};
}

QFont MonospacedFont(const QString& family, double points) {
    const auto installed = QFontDatabase::families();
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    for (const auto& name : {family, QStringLiteral("Liberation Mono"), QStringLiteral("DejaVu Sans Mono")})
        if (installed.contains(name, Qt::CaseInsensitive)) {
            font = QFont(name);
            break;
        }
    font.setPointSizeF(points);
    font.setStyleHint(QFont::TypeWriter);
    font.setFixedPitch(true);
    font.setKerning(false);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

QtPrinter::QtPrinter(Files& files) : files_(files), documentLayout_(DocumentLayout(UsualPaper())) {}

bool QtPrinter::Present() const {
    return !QPrinterInfo::availablePrinterNames().isEmpty();
}

std::vector<std::string> QtPrinter::FontNames() const {
    std::vector<std::string> names;
    for (const auto& family : QFontDatabase::families())
        names.push_back(FromQt(family));
    return names;
}

std::string QtPrinter::DateAndTime() const {
    const auto now = QDateTime::currentDateTime();
    const auto locale = QLocale::system();
    return FromQt(locale.toString(now.date(), QLocale::ShortFormat) + QLatin1Char(' ') +
                  locale.toString(now.time(), LongTimeFormat(locale)));
}

void QtPrinter::Begin(const PrintJob& job) {
    Discard();
    if (job.path.empty())
        OpenPrinter(job);
    else
        OpenDocument(job);
    device_->setPageOrientation(QPageLayout::Landscape);
    font_ = MonospacedFont(ToQt(job.font), job.points);
    columnWidth_ = QFontMetricsF(font_, device_).horizontalAdvance(QLatin1Char('0'));
    line_ = job.top / Page().twipsPerPixelY;
}

void QtPrinter::OpenPrinter(const PrintJob& job) {
    if (!chosen_) current_ = DefaultPrinter();
    auto& printer = chosen_ ? *chosen_ : *current_;
    if (!printer.isValid() || QPrinterInfo::printerInfo(printer.printerName()).isNull())
        throw Failure("The printer \"" + FromQt(printer.printerName()) + "\" is not there.");
    printer.setDocName(ToQt(job.title));
    device_ = &printer;
}

void QtPrinter::OpenDocument(const PrintJob& job) {
    documentPath_ = job.path;
    document_.setData({});
    document_.open(QIODevice::WriteOnly);
    writer_ = std::make_unique<QPdfWriter>(&document_);
    writer_->setResolution(kDocumentResolution);
    writer_->setTitle(ToQt(job.title));
    writer_->setPageLayout(documentLayout_);
    device_ = writer_.get();
}

QPagedPaintDevice& QtPrinter::Device() const {
    if (device_ == nullptr) throw Failure("No page is being printed.");
    return *device_;
}

void QtPrinter::PrintLine(const std::vector<PrintItem>& items) {
    const QFontMetricsF metrics(font_, &Device());
    for (const auto& [column, text] : items) {
        const QPointF start((column - 1) * columnWidth_, line_ + metrics.ascent());
        page_.emplace_back([font = font_, start, shown = ToQt(text)](QPainter& painter) {
            painter.setFont(font);
            painter.drawText(start, shown);
        });
    }
    line_ += metrics.lineSpacing();
}

PrintPage QtPrinter::Page() const {
    const auto& device = Device();
    const double twipsX = kTwipsPerInch / device.logicalDpiX();
    const double twipsY = kTwipsPerInch / device.logicalDpiY();
    return {device.width() * twipsX, device.height() * twipsY, twipsX, twipsY};
}

void QtPrinter::DrawChart(const PixelRectangle& place) {
    Device();
    if (!drawChart_) return;
    const QRectF area(place.left, place.top, place.width, place.height);
    page_.emplace_back([this, area](QPainter& painter) {
        painter.save();
        painter.setFont(ChartFont());
        drawChart_(painter, area);
        painter.restore();
    });
}

void QtPrinter::PaintPage() {
    QPainter painter;
    if (!painter.begin(device_)) throw Failure("The printer does not take the page.");
    for (const auto& paint : page_)
        paint(painter);
    if (!painter.end()) throw Failure("The printer does not take the page.");
    painted_ = true;
}

// Made again after a failure to write, it only writes the document once more.
void QtPrinter::EndDocument() {
    Device();
    if (!painted_) PaintPage();
    if (writer_) {
        files_.ReplaceWhole(documentPath_, document_.data().toStdString());
    } else if (const auto& printer = chosen_ ? *chosen_ : *current_;
               printer.printerState() == QPrinter::Error) {
        throw Failure("The printer \"" + FromQt(printer.printerName()) + "\" reports an error.");
    }
    Discard();
}

void QtPrinter::Discard() noexcept {
    device_ = nullptr;
    page_.clear();
    painted_ = false;
    writer_.reset();
    document_.close();
    current_.reset();
}

void QtPrinter::SetUp() {
    if (Present())
        SetUpPrinter();
    else
        SetUpDocument();
}

// The desktop's print dialog without what belongs to a single print: it chooses and sets up, and prints
// nothing.
void QtPrinter::SetUpPrinter() {
    auto printer = std::move(chosen_);
    const bool chosenBefore = printer != nullptr;
    if (!chosenBefore) printer = DefaultPrinter();
    QPrintDialog dialog(printer.get(), parent_);
    dialog.setObjectName(QStringLiteral("PrinterSetup"));
    dialog.setWindowTitle(QStringLiteral("Printer Setup"));
    dialog.setOptions({});
    if (const auto* buttons = dialog.findChild<QDialogButtonBox*>())
        if (auto* accept = buttons->button(QDialogButtonBox::Ok)) accept->setText(QStringLiteral("OK"));
    if (dialog.exec() == QDialog::Accepted || chosenBefore) chosen_ = std::move(printer);
}

void QtPrinter::SetUpDocument() {
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setPageLayout(documentLayout_);
    QPageSetupDialog dialog(&printer, parent_);
    dialog.setObjectName(QStringLiteral("PrinterSetup"));
    dialog.setWindowTitle(QStringLiteral("Printer Setup"));
    if (dialog.exec() == QDialog::Accepted) documentLayout_ = printer.pageLayout();
}

}  // namespace rv52
