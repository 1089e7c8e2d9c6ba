#pragma once

#include <QGroupBox>
#include <QTimer>

class QProgressBar;

namespace rv52 {

// The transfer's progress over the chart, fraProgress1. Opaque, so that the chart below is not repainted
// with every step of the bar.
class ProgressPanel : public QGroupBox {
 public:
    explicit ProgressPanel(QWidget* parent);

    // The bar at 0, painted before the call returns.
    void Begin(const QString& caption);
    void SetPercent(int percent);

 private:
    QProgressBar* bar_;
    QTimer painting_;
};

}  // namespace rv52
