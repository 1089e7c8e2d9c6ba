#include "app/ui/Application.h"

#include "app/state/DrawFailures.h"

#include <QPointer>
#include <QScrollBar>
#include <QWidget>

namespace rv52 {

namespace {

constexpr const char* kTold = "paintFailureTold";

DrawFailures* failures = nullptr;

// A widget is painted at every glance: it is told of once, until Retry.
void KeepPaintFailure(QWidget& widget, const char* description) {
    if (widget.property(kTold).toBool()) return;
    widget.setProperty(kTold, true);
    failures->Keep(description, [painted = QPointer<QWidget>(&widget)] {
        if (!painted) return;
        painted->setProperty(kTold, {});
        painted->update();
    });
}

}  // namespace

bool Application::notify(QObject* receiver, QEvent* event) {
    // A scroll bar waits for the answer to its menu, and a module that is being programmed would wait with
    // it.
    if (event->type() == QEvent::ContextMenu && qobject_cast<QScrollBar*>(receiver) != nullptr) return true;
    const bool paints = event->type() == QEvent::Paint;
    try {
        return QApplication::notify(receiver, event);
    } catch (const std::exception& failure) {
        if (failures == nullptr) return true;
        // What received any other event may be gone by now, and an event cannot be had again.
        if (paints)
            KeepPaintFailure(*qobject_cast<QWidget*>(receiver), failure.what());
        else
            failures->Keep(failure.what(), [] {});
    }
    return true;
}

void Application::KeepFailuresIn(DrawFailures* drawing) {
    failures = drawing;
}

}  // namespace rv52
