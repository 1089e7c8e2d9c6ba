#include "platform/qt/TwipFrame.h"

#include "platform/qt/Twips.h"

#include <QLayout>

namespace rv52 {

TwipFrame::TwipFrame(const char* name, const QString& title, double width, double height, QWidget* parent)
    : QGroupBox(title, parent), design_(ToPixels(width), ToPixels(height)) {
    setObjectName(QLatin1String(name));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    // A frame that disappears leaves its place empty: nothing else moves.
    auto policy = sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    setSizePolicy(policy);
}

QSize TwipFrame::sizeHint() const {
    return minimumSizeHint();
}

QSize TwipFrame::minimumSizeHint() const {
    return design_.expandedTo(QGroupBox::minimumSizeHint());
}

QSize FittedSize(const QWidget& dialog, double width, double height) {
    return QSize(ToPixels(width), ToPixels(height)).expandedTo(dialog.layout()->minimumSize());
}

}  // namespace rv52
