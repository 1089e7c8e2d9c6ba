#include "tour/Robot.h"

#include "platform/qt/QtText.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPainter>
#include <QTest>

#include <algorithm>

namespace rv52 {

namespace {

constexpr int kLookEvery = 10;  // ms

template <class Widget>
Widget* Find(const QWidget& window, const char* name) {
    return window.findChild<Widget*>(QString::fromLatin1(name));
}

}  // namespace

Robot::Robot(QMainWindow& window) : window_(window) {
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { Look(); });
    timer_.start(kLookEvery);
}

void Robot::Look() {
    auto* modal = QApplication::activeModalWidget();
    if (modal == nullptr) used_ = nullptr;
    if (modal == nullptr || modal == used_ || !modal->isVisible()) return;
    used_ = modal;
    if (expected_.empty()) {
        auto* box = qobject_cast<QMessageBox*>(modal);
        Report("not expected: " + FromQt(modal->windowTitle() + QStringLiteral(": ") +
                                         (box != nullptr ? box->text() : modal->objectName())));
        QTest::keyClick(modal, Qt::Key_Escape);
        used_ = nullptr;
        return;
    }
    const auto expectation = expected_.front();
    expected_.pop_front();
    if (onBox) onBox(expectation.what);
    expectation.use(*modal);
    used_ = nullptr;
}

void Robot::Expect(const std::string& what, std::function<void(QWidget&)> use) {
    expected_.push_back({what, std::move(use)});
}

void Robot::ExpectBox(const std::string& text, const char* button) {
    Expect(text, [this, text, button](QWidget& modal) {
        auto* box = qobject_cast<QMessageBox*>(&modal);
        auto* pressed = Find<QAbstractButton>(modal, button);
        if (box == nullptr || !FromQt(box->text()).starts_with(text))
            Report("expected \"" + text + "\", saw \"" + (box != nullptr ? FromQt(box->text()) : "") + "\"");
        if (pressed != nullptr) return QTest::mouseClick(pressed, Qt::LeftButton);
        Report(std::string("no button ") + button + " in \"" + text + "\"");
        QTest::keyClick(&modal, Qt::Key_Escape);
    });
}

void Robot::ExpectInput(const std::string& answer, const std::string& what) {
    Expect(what, [this, answer](QWidget& modal) {
        auto* edit = Find<QLineEdit>(modal, "txtAnswer");
        if (edit == nullptr) {
            Report("expected an input box");
            return QTest::keyClick(&modal, Qt::Key_Escape);
        }
        edit->selectAll();
        if (answer.empty())
            QTest::keyClick(edit, Qt::Key_Delete);
        else
            QTest::keyClicks(edit, ToQt(answer));
        QTest::keyClick(edit, Qt::Key_Return);
    });
}

void Robot::ExpectFile(const std::string& path) {
    Expect("file dialog", [this, path](QWidget& modal) {
        auto* edit = Find<QLineEdit>(modal, "fileNameEdit");
        if (qobject_cast<QFileDialog*>(&modal) == nullptr || edit == nullptr) {
            Report("expected a file dialog");
            return QTest::keyClick(&modal, Qt::Key_Escape);
        }
        // Pasted whole: typed faster than any hand, the dialog would take the folders on the way for answers.
        edit->selectAll();
        edit->insert(ToQt(path));
        QTest::keyClick(edit, Qt::Key_Return);
    });
}

void Robot::Choose(const char* menu, const char* item) {
    auto* bar = window_.menuBar();
    auto* opened = Find<QMenu>(window_, menu);
    auto* action = window_.findChild<QAction*>(QString::fromLatin1(item));
    if (opened == nullptr || action == nullptr) return Report(std::string("no menu item ") + item);
    QTest::mouseClick(bar, Qt::LeftButton, {}, bar->actionGeometry(opened->menuAction()).center());
    QTest::mouseClick(opened, Qt::LeftButton, {}, opened->actionGeometry(action).center());
}

void Robot::ChooseFromPopup(const char* menu, const char* item) {
    auto* opened = Find<QMenu>(window_, menu);
    auto* action = window_.findChild<QAction*>(QString::fromLatin1(item));
    if (opened == nullptr || action == nullptr || !opened->isVisible())
        return Report(std::string("no popup item ") + item);
    QTest::mouseClick(opened, Qt::LeftButton, {}, opened->actionGeometry(action).center());
}

// The moves carry the button: those of a test's mouse would say that it is up.
void Robot::Drag(QWidget& widget, QPoint from, QPoint to, const std::function<void()>& beforeRelease) {
    const auto moveTo = [&](QPoint place) {
        QMouseEvent move(QEvent::MouseMove, place, widget.mapToGlobal(QPointF(place)), Qt::NoButton,
                         Qt::LeftButton, {});
        QApplication::sendEvent(&widget, &move);
    };
    QTest::mousePress(&widget, Qt::LeftButton, {}, from);
    moveTo((from + to) / 2);
    moveTo(to);
    beforeRelease();
    QTest::mouseRelease(&widget, Qt::LeftButton, {}, to);
}

// A screenless platform gives no window the focus back when a box closes.
QWidget* Robot::Focused() {
    if (QApplication::focusWidget() == nullptr) {
        QApplication::setActiveWindow(&window_);
        QApplication::processEvents();
    }
    if (QApplication::focusWidget() != nullptr) return QApplication::focusWidget();
    Report("nothing has the focus");
    return &window_;
}

void Robot::Type(const std::string& text) {
    for (const auto character : text)
        QTest::keyClick(Focused(), character);
}

void Robot::Press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(Focused(), key, modifiers);
}

// What stands over the window, a menu or a box, is put over its picture; one larger than the window makes
// the picture larger, never cut.
QImage Robot::Picture() const {
    const auto plain = [](QWidget& widget) {
        auto image = widget.grab().toImage();
        image.setDevicePixelRatio(1);
        return image;
    };
    auto* menu = QApplication::activePopupWidget();
    auto* over = menu != nullptr ? menu : QApplication::activeModalWidget();
    auto window = plain(*window_.window());
    if (over == nullptr) return window;
    const auto box = plain(*over);
    const auto size = window.size().expandedTo(box.size() + QSize(20, 20));
    QImage both(size, QImage::Format_RGB32);
    both.fill(Qt::lightGray);
    QPainter painter(&both);
    painter.drawImage(0, 0, window);
    QRect place(QPoint(), box.size());
    place.moveCenter(both.rect().center());
    if (menu != nullptr)
        place.moveTopLeft((menu->mapToGlobal(QPoint()) - window_.mapToGlobal(QPoint())) *
                          window_.devicePixelRatio());
    place.moveRight(std::min(place.right(), both.width() - 2));
    place.moveBottom(std::min(place.bottom(), both.height() - 2));
    painter.fillRect(place.adjusted(-1, -1, 1, 1), Qt::black);
    painter.drawImage(place.topLeft(), box);
    return both;
}

}  // namespace rv52
