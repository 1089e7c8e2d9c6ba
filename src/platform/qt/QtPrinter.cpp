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
#include <QPdfWriter>
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
    auto& device = job.path.empty() ? OpenPrinter(job) : OpenDocument(job);
    painter_ = std::make_unique<QPainter>();
    if (!painter_->begin(&device)) {
        Discard();
        throw Failure("The printer does not take the job \"" + job.title + "\".");
    }
    const auto font = MonospacedFont(ToQt(job.font), job.points);
    painter_->setFont(font);
    const QFontMetricsF metrics(font, &device);
    columnWidth_ = metrics.horizontalAdvance(QLatin1Char('0'));
    line_ = job.top / Page().twipsPerPixelY;
}

QPagedPaintDevice& QtPrinter::OpenPrinter(const PrintJob& job) {
    auto& printer = chosen_ ? chosen_ : current_;
    if (!printer) {
        const auto byDefault = QPrinterInfo::defaultPrinter();
        current_ = byDefault.isNull() ? std::make_unique<QPrinter>(QPrinter::HighResolution)
                                      : std::make_unique<QPrinter>(byDefault, QPrinter::HighResolution);
    }
    if (!printer->isValid() || QPrinterInfo::printerInfo(printer->printerName()).isNull())
        throw Failure("The printer \"" + FromQt(printer->printerName()) + "\" is not there.");
    printer->setDocName(ToQt(job.title));
    printer->setPageOrientation(QPageLayout::Landscape);
    return *printer;
}

QPagedPaintDevice& QtPrinter::OpenDocument(const PrintJob& job) {
    documentPath_ = job.path;
    document_.setData({});
    document_.open(QIODevice::WriteOnly);
    auto writer = std::make_unique<QPdfWriter>(&document_);
    writer->setResolution(kDocumentResolution);
    writer->setTitle(ToQt(job.title));
    writer->setPageLayout(documentLayout_);
    writer->setPageOrientation(QPageLayout::Landscape);
    documentDevice_ = std::move(writer);
    return *documentDevice_;
}

void QtPrinter::RequireJob() const {
    if (painter_ == nullptr || !painter_->isActive()) throw Failure("No page is being printed.");
}

void QtPrinter::PrintLine(const std::vector<PrintItem>& items) {
    RequireJob();
    const QFontMetricsF metrics(painter_->font(), painter_->device());
    for (const auto& [column, text] : items)
        painter_->drawText(QPointF((column - 1) * columnWidth_, line_ + metrics.ascent()), ToQt(text));
    line_ += metrics.lineSpacing();
}

PrintPage QtPrinter::Page() const {
    RequireJob();
    const auto* device = painter_->device();
    const double twipsX = kTwipsPerInch / device->logicalDpiX();
    const double twipsY = kTwipsPerInch / device->logicalDpiY();
    return {device->width() * twipsX, device->height() * twipsY, twipsX, twipsY};
}

void QtPrinter::DrawChart(const PixelRectangle& place) {
    RequireJob();
    if (!drawChart_) return;
    painter_->save();
    painter_->setFont(ChartFont());
    drawChart_(*painter_, QRectF(place.left, place.top, place.width, place.height));
    painter_->restore();
}

// Made again after a failure, it only writes the document once more.
void QtPrinter::EndDocument() {
    if (painter_ == nullptr) throw Failure("No page is being printed.");
    if (painter_->isActive() && !painter_->end()) throw Failure("The printer does not take the page.");
    if (!documentPath_.empty())
        files_.ReplaceWhole(documentPath_, document_.data().toStdString());
    else if (const auto& printer = chosen_ ? chosen_ : current_; printer->printerState() == QPrinter::Error)
        throw Failure("The printer \"" + FromQt(printer->printerName()) + "\" reports an error.");
    painter_.reset();
    Discard();
}

void QtPrinter::Discard() noexcept {
    if (painter_ != nullptr && painter_->isActive() && documentPath_.empty())
        (chosen_ ? chosen_ : current_)->abort();
    painter_.reset();
    documentDevice_.reset();
    document_.close();
    documentPath_.clear();
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
    if (!chosenBefore) printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
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
