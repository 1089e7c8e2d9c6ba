#pragma once

#include <QGroupBox>

namespace rv52 {

// A titled frame of a dialog with its design size in twips. It grows where the desktop's font needs more
// room, so that nothing in it is ever cut.
class TwipFrame : public QGroupBox {
    Q_OBJECT

 public:
    TwipFrame(const char* name, const QString& title, double width, double height, QWidget* parent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

 private:
    QSize design_;
};

// A dialog's client area likewise: its design size, or what its layout needs.
QSize FittedSize(const QWidget& dialog, double width, double height);

}  // namespace rv52
