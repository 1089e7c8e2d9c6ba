#pragma once

#include <QApplication>

namespace rv52 {

class DrawFailures;

// The toolkit's application. No exception may cross the toolkit: what escapes from the handler of an event,
// painting above all, ends that handler alone.
class Application : public QApplication {
 public:
    using QApplication::QApplication;

    bool notify(QObject* receiver, QEvent* event) override;

    // Who tells of such failures; nobody with a null.
    static void KeepFailuresIn(DrawFailures* drawing);
};

}  // namespace rv52
