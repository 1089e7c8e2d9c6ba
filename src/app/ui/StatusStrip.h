#pragma once

#include <QLabel>

namespace rv52 {

// One quiet line in the strip under the grid, lblStatus: shortened where the window is narrow, gone where
// it is too low.
class StatusStrip : public QLabel {
    Q_OBJECT

 public:
    explicit StatusStrip(QWidget* parent);

    // Nothing is painted anew for the same text.
    void Tell(const QString& text);
    void PlaceIn(const QRect& strip);

 protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace rv52
