#pragma once

#include <optional>
#include <string>

namespace rv52 {

enum class Icon { None, Information, Warning, Critical };
enum class Buttons { Ok, OkCancel, RetryCancel, YesNoCancel, AbortRetryIgnore };
enum class Answer { Ok, Cancel, Yes, No, Retry, Abort, Ignore };

// One message box. Texts are plain UTF-8; a line break is "\r\n" or "\n".
struct MessageBox {
    std::string text;
    std::string title;
    Icon icon = Icon::None;
    Buttons buttons = Buttons::Ok;
    // The button that Enter presses; unset: the first one.
    std::optional<Answer> defaultAnswer = std::nullopt;
};

// What closing a box by Escape or its close button means: Cancel where there is Cancel,
// Abort in the failure box, else the only button.
constexpr Answer DismissAnswer(Buttons buttons) {
    switch (buttons) {
        case Buttons::Ok:
            return Answer::Ok;
        case Buttons::AbortRetryIgnore:
            return Answer::Abort;
        case Buttons::OkCancel:
        case Buttons::RetryCancel:
        case Buttons::YesNoCancel:
            break;
    }
    return Answer::Cancel;
}

struct InputBox {
    std::string prompt;
    std::string title;
    std::string defaultText;
};

// A file dialog. filter is "text shown|pattern", for example "All Files (*.*)|*.*".
struct FileDialog {
    std::string title;
    std::string filter;
    std::string proposedName = {};
};

// Everything the program asks of the user. All calls are modal and return when answered.
class Prompts {
 public:
    virtual ~Prompts() = default;

    virtual Answer Ask(const MessageBox& box) = 0;
    // The empty text when cancelled.
    virtual std::string AskText(const InputBox& box) = 0;
    // The empty text when cancelled. The path may name a missing file.
    virtual std::string AskOpenPath(const FileDialog& dialog) = 0;
    // The empty text when cancelled. ".tbl"-like extensions of the filter are added to a bare name.
    // Never asks about an existing file: that question is the program's own.
    virtual std::string AskSavePath(const FileDialog& dialog) = 0;
};

}  // namespace rv52
