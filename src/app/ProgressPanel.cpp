#include "app/ProgressPanel.h"

#include "app/FlatProgressBar.h"
#include "platform/qt/ControlFont.h"
#include "platform/qt/Twips.h"

#include <QVBoxLayout>

namespace rv52 {

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
    hide();
}

void ProgressPanel::Begin(const QString& caption) {
    setTitle(caption);
    bar_->setValue(0);
    raise();
    show();
    repaint();
    bar_->repaint();
}

void ProgressPanel::SetPercent(int percent) {
    bar_->setValue(percent);
}

}  // namespace rv52
