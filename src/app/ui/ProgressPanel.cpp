#include "app/ui/ProgressPanel.h"

#include "platform/qt/ControlFont.h"
#include "platform/qt/Twips.h"

#include <QPainter>
#include <QProgressBar>
#include <QVBoxLayout>

namespace rv52 {

namespace {

// Over the chart, at a fixed place.
constexpr TwipRectangle kProgressPanel{1200, 4200, 4335, 735};

// From a byte that has moved to the bar's paint: with the next byte asked for by then, the paint falls into a
// delay that the module is due, and holds nothing up.
constexpr int kUntilPainted = 1;  // ms

// A progress bar that is painted once for every byte that a module takes or gives, so it is flat and opaque:
// a style's gradients, and the panel under them, would take longer than the byte is on the wire.
class FlatProgressBar : public QProgressBar {
 public:
    explicit FlatProgressBar(QWidget* parent);

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    int FilledWidth() const;
};

FlatProgressBar::FlatProgressBar(QWidget* parent) : QProgressBar(parent) {
    // Opaque by its own background: styles take the attribute of opaque painting back.
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Base);
}

int FlatProgressBar::FilledWidth() const {
    return (width() - 2) * (value() - minimum()) / (maximum() - minimum());
}

void FlatProgressBar::paintEvent(QPaintEvent*) {
    const auto& colours = palette();
    const QRect inside = rect().adjusted(1, 1, -1, -1);
    const QRect filled(inside.topLeft(), QSize(FilledWidth(), inside.height()));
    QPainter painter(this);
    painter.setPen(colours.color(QPalette::Mid));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
    painter.fillRect(filled, colours.color(QPalette::Highlight));
    // The figure stands over both parts, each of its halves readable on its own ground.
    const auto write = [&](const QRect& part, QPalette::ColorRole ink) {
        painter.setClipRect(part);
        painter.setPen(colours.color(ink));
        painter.drawText(rect(), Qt::AlignCenter, text());
    };
    write(filled, QPalette::HighlightedText);
    write(inside.adjusted(filled.width(), 0, 0, 0), QPalette::Text);
}

}  // namespace

ProgressPanel::ProgressPanel(QWidget* parent)
    : QGroupBox(QStringLiteral("Programming"), parent), bar_(new FlatProgressBar(this)) {
    setObjectName(QStringLiteral("fraProgress1"));
    setGeometry(ToPixels(kProgressPanel));
    setFont(PanelFont());
    setAutoFillBackground(true);
    bar_->setObjectName(QStringLiteral("prgProgress1"));
    bar_->setAccessibleName(QStringLiteral("Progress"));
    bar_->setRange(0, 100);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(8, 2, 8, 6);
    column->addWidget(bar_);
    painting_.setSingleShot(true);
    painting_.setTimerType(Qt::PreciseTimer);
    painting_.setInterval(kUntilPainted);
    connect(&painting_, &QTimer::timeout, bar_, [this] { bar_->setUpdatesEnabled(true); });
    hide();
}

void ProgressPanel::Begin(const QString& caption) {
    setTitle(caption);
    bar_->setUpdatesEnabled(true);
    bar_->setValue(0);
    raise();
    show();
    repaint();
    bar_->repaint();
}

void ProgressPanel::SetPercent(int percent) {
    if (percent == bar_->value()) return;
    bar_->setUpdatesEnabled(false);
    bar_->setValue(percent);
    painting_.start();
}

}  // namespace rv52
