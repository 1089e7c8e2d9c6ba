#include "module/VssFrequencyEdit.h"

#include <QCoreApplication>
#include <QFocusEvent>
#include <QTimer>

#include <utility>

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
            waiting_ = true;
            return QCoreApplication::instance()->installEventFilter(this);
        default:
            Q_EMIT Left();
    }
}

void VssFrequencyEdit::Settle() {
    if (!std::exchange(waiting_, false)) return;
    QCoreApplication::instance()->removeEventFilter(this);
    Q_EMIT Left();
}

bool VssFrequencyEdit::eventFilter(QObject* watched, QEvent* event) {
    // Once the clicked control has had it.
    if (event->type() == QEvent::MouseButtonRelease) QTimer::singleShot(0, this, &VssFrequencyEdit::Settle);
    return QLineEdit::eventFilter(watched, event);
}

}  // namespace rv52
