#pragma once

#include "platform/qt/QtText.h"
#include "support/FailureOf.h"
#include "support/IdleLine.h"
#include "support/ShownTable.h"
#include "support/TestSession.h"

#include <QApplication>
#include <QDrag>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QWheelEvent>

#include <gtest/gtest.h>
#include <vector>

namespace rv52::test {

// Real widgets on a session of recorders.
class WidgetTest : public testing::Test {
 protected:
    IdleLine line;
    TestSession test{line};
    Session& session = test.session;
};

// What a user does with windows, and sees of them.

inline void Activate(QWidget& window) {
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
}

template <class Widget = QWidget>
Widget& Find(const QObject& in, const std::string& name) {
    if (auto* found = in.findChild<Widget*>(ToQt(name))) return *found;
    throw std::runtime_error("nothing is called " + name);
}

// To what has the focus, as a keyboard does.
inline void Key(Qt::Key key, Qt::KeyboardModifiers keys = {}) {
    QTest::keyClick(QApplication::focusWidget(), key, keys);
}
inline void Type(const char* text) {
    for (; *text != 0; ++text)
        QTest::keyClick(QApplication::focusWidget(), *text);
}

// Through the window system's way, so that focus, popups and buttons are as a mouse makes them.
inline void Click(const QWidget& widget, QPoint place = {8, 8}, Qt::MouseButton button = Qt::LeftButton,
                  Qt::KeyboardModifiers keys = {}) {
    const auto* window = widget.window();
    QTest::mouseClick(window->windowHandle(), button, keys, widget.mapTo(window, place));
    QTest::qWait(0);
}
inline void MoveHeld(QWidget& widget, QPoint to, Qt::MouseButton button = Qt::LeftButton,
                     Qt::KeyboardModifiers keys = {}) {
    QMouseEvent move(QEvent::MouseMove, to, widget.mapToGlobal(QPointF(to)), Qt::NoButton, button, keys);
    QApplication::sendEvent(&widget, &move);
}
// Whether marked text is dragged away by a press on it and a way from there. A platform without a screen ends
// a drag at once, so it is noticed as it is made.
inline bool DragsMarkedText(QWidget& body, QPoint from) {
    struct Watch : QObject {
        bool eventFilter(QObject*, QEvent* event) override {
            if (event->type() == QEvent::ChildAdded)
                made.push_back(static_cast<QChildEvent*>(event)->child());
            return false;
        }
        std::vector<QPointer<QObject>> made;
    } watch;
    qApp->installEventFilter(&watch);
    QTest::mousePress(&body, Qt::LeftButton, {}, from);
    bool dragged = false;
    for (int way = 0; way < 100; way += 10) {
        MoveHeld(body, from + QPoint(way, 0));
        for (const auto& object : watch.made)
            dragged |= qobject_cast<QDrag*>(object.data()) != nullptr;
    }
    QTest::mouseRelease(&body, Qt::LeftButton, {}, from + QPoint(100, 0));
    return dragged;
}
inline void Wheel(QWidget& widget, QPoint at, int notches) {
    QWheelEvent turn(at, widget.mapToGlobal(QPointF(at)), {}, {0, 120 * notches}, Qt::NoButton, {},
                     Qt::NoScrollPhase, false);
    QApplication::sendEvent(&widget, &turn);
}

// Paints of the widget that a change costs.
inline int PaintsOf(QWidget& widget, const Act& change) {
    struct Count : QObject {
        bool eventFilter(QObject*, QEvent* event) override {
            paints += event->type() == QEvent::Paint;
            return false;
        }
        int paints = 0;
    } count;
    QTest::qWait(1);
    widget.installEventFilter(&count);
    change();
    QTest::qWait(1);
    return count.paints;
}

}  // namespace rv52::test
