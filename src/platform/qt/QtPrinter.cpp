#include "platform/qt/QtPrinter.h"

#include "platform/Failure.h"
#include "platform/Storage.h"
#include "platform/qt/Papers.h"
#include "platform/qt/QtText.h"

#include <QDateTime>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QLocale>
#include <QPainter>
#include <QRegularExpression>

#include <algorithm>

namespace rv52 {

namespace {

constexpr double kTwipsPerInch = 1440;
constexpr int kResolution = 1440;  // a point is a whole number of pixels, else glyphs are rounded to one
constexpr double kChartPoints = 9;

QFont ChartFont() {
    QFont font(QStringLiteral("Arial"));
    font.setPointSizeF(kChartPoints);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

// The default one, or the only one.
const PrintQueue* UsualQueue(const std::vector<PrintQueue>& queues) {
    const auto found = std::ranges::find(queues, true, &PrintQueue::isDefault);
    if (found != queues.end()) return &*found;
    return queues.size() == 1 ? queues.data() : nullptr;
}

// The long time of a desktop may name the time zone, which nobody expects of a clock on paper.
QString LongTimeFormat(const QLocale& locale) {
    static const QRegularExpression zone(QStringLiteral("\\s*\\(?t+\\)?"));
    return locale.timeFormat(QLocale::LongFormat).remove(zone);
}

}  // namespace

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

QtPrinter::QtPrinter(Files& files, PrintSystem& system)
    : files_(files), system_(system), documentPaper_(StandardPapers().front()) {}

PrintTarget QtPrinter::Target() {
    if (chosen_) return PrintTarget::Printer;
    const auto queues = system_.Queues();
    if (queues.empty()) return PrintTarget::Documents;
    return UsualQueue(queues) != nullptr ? PrintTarget::Printer : PrintTarget::Unchosen;
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
    destination_ = job.path.empty() ? PrinterNow() : PrinterChoice{{}, documentPaper_, {}};
    job_ = job;
    document_.setData({});
    document_.open(QIODevice::WriteOnly);
    writer_ = std::make_unique<QPdfWriter>(&document_);
    writer_->setResolution(kResolution);
    writer_->setTitle(ToQt(job.title));
    writer_->setPageLayout(PageAcross(destination_.paper));
    font_ = MonospacedFont(ToQt(job.font), job.points);
    columnWidth_ = QFontMetricsF(font_, writer_.get()).horizontalAdvance(QLatin1Char('0'));
    line_ = job.top / Page().twipsPerPixelY;
}

PrinterChoice QtPrinter::PrinterNow() const {
    const auto queues = system_.Queues();
    if (chosen_) {
        if (std::ranges::find(queues, chosen_->queue, &PrintQueue::name) == queues.end())
            throw Failure("The printer \"" + chosen_->queue + "\" is not there.");
        return *chosen_;
    }
    const auto* queue = UsualQueue(queues);
    if (queue == nullptr) throw Failure("There is no printer to print on.");
    const auto media = system_.Media(queue->name);
    return {queue->name, media.papers.empty() ? StandardPapers().front() : media.papers.front(), {}};
}

QPdfWriter& QtPrinter::Device() const {
    if (!writer_) throw Failure("No page is being printed.");
    return *writer_;
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

std::string QtPrinter::PaintPage() {
    QPainter painter;
    if (!painter.begin(&Device())) throw Failure("The page cannot be drawn.");
    for (const auto& paint : page_)
        paint(painter);
    if (!painter.end()) throw Failure("The page cannot be drawn.");
    return document_.data().toStdString();
}

void QtPrinter::EndDocument() {
    const auto document = PaintPage();
    Discard();
    if (job_.path.empty())
        system_.Send({destination_.queue, job_.title, destination_.paper, destination_.tray}, document);
    else
        files_.ReplaceWhole(job_.path, document);
}

void QtPrinter::Discard() noexcept {
    page_.clear();
    writer_.reset();
    document_.close();
}

bool QtPrinter::SetUp() {
    const auto queues = system_.Queues();
    const auto current = queues.empty() ? PrinterChoice{{}, documentPaper_, {}} : chosen_;
    PrinterSetupDialog dialog(system_, queues, current, parent_);
    if (dialog.exec() != QDialog::Accepted) return false;
    const auto choice = dialog.Choice();
    if (choice.queue.empty()) {
        documentPaper_ = choice.paper;
        chosen_.reset();  // its queue is gone with the others
    } else {
        chosen_ = choice;
    }
    return true;
}

}  // namespace rv52
