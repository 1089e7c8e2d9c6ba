#pragma once

#include <QImage>
#include <QTimer>

#include <deque>
#include <functional>
#include <string>
#include <vector>

class QMainWindow;

namespace rv52 {

// Drives the program's real windows as a person would: menus by the mouse, boxes and dialogs by their
// buttons and keys. Boxes are expected in order before the action that brings them; one that was not
// expected is a problem and is dismissed.
class Robot {
 public:
    explicit Robot(QMainWindow& window);

    // The next modal window is given to use, which must close it.
    void Expect(const std::string& what, std::function<void(QWidget&)> use);
    // A message box whose text begins so; presses the button with this object name ("cmdYes").
    void ExpectBox(const std::string& text, const char* button);
    // An input box; types the answer over the default and presses Enter.
    void ExpectInput(const std::string& answer, const std::string& what = "input box");
    // A file dialog; pastes the path and presses Enter.
    void ExpectFile(const std::string& path);

    // Opens the menu and clicks its item, both by object name; returns when the command has ended.
    void Choose(const char* menu, const char* item);

    // Clicks an item of a popup menu that is open, both by object name.
    void ChooseFromPopup(const char* menu, const char* item);

    // Drags with the left button; beforeRelease is called with the button still down.
    void Drag(QWidget& widget, QPoint from, QPoint to, const std::function<void()>& beforeRelease);

    // Types into whatever has the focus, key by key.
    void Type(const std::string& text);
    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = {});

    // The main window with the modal window on it, if there is one.
    QImage Picture() const;
    // Called with each modal window before it is used, for pictures.
    std::function<void(const std::string& what)> onBox;

    bool Done() const { return expected_.empty(); }
    const std::vector<std::string>& Problems() const { return problems_; }
    void Report(const std::string& problem) { problems_.push_back(problem); }

 private:
    struct Expectation {
        std::string what;
        std::function<void(QWidget&)> use;
    };

    QWidget* Focused();
    void Look();

    QMainWindow& window_;
    QTimer timer_;
    QWidget* used_ = nullptr;
    std::deque<Expectation> expected_;
    std::vector<std::string> problems_;
};

}  // namespace rv52
