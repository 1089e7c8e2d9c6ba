#include "module/VssFrequencyEdit.h"

#include <QCoreApplication>
#include <QFocusEvent>
#include <QTimer>

namespace rv52 {

VssFrequencyEdit::VssFrequencyEdit(QWidget* parent) : QLineEdit(QStringLiteral("1424"), parent) {
    setObjectName(QStringLiteral("txtVSSFreq"));
}

void VssFrequencyEdit::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    switch (event->reason()) {
        case Qt::PopupFocusReason:
        case Qt::ActiveWindowFocusReason:
            return;  // a menu or a box, which gives the focus back
        case Qt::MouseFocusReason:
            // A box in the middle of a click would rob the clicked control of the button's release.
            return QCoreApplication::instance()->installEventFilter(this);
        default:
            Q_EMIT Left();
    }
}

bool VssFrequencyEdit::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonRelease) {
        QCoreApplication::instance()->removeEventFilter(this);
        QTimer::singleShot(0, this, &VssFrequencyEdit::Left);
    }
    return QLineEdit::eventFilter(watched, event);
}

}  // namespace rv52
