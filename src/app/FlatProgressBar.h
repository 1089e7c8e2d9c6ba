#pragma once

#include <QProgressBar>

namespace rv52 {

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

}  // namespace rv52
