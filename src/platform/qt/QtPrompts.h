#pragma once

#include "platform/Prompts.h"

#include <QString>

#include <functional>

class QWidget;

namespace rv52 {

// Message boxes, the input box and the file dialogs, as plain text and modal to the main window.
class QtPrompts : public Prompts {
 public:
    // Where the boxes belong; none before the main window is on screen.
    void SetParent(QWidget* parent) { parent_ = parent; }

    // While this is so, every box is closed before it is seen.
    void SetDismissing(std::function<bool()> dismissing) { dismissing_ = std::move(dismissing); }

    Answer Ask(const MessageBox& box) override;
    std::string AskText(const InputBox& box) override;
    std::string AskOpenPath(const FileDialog& dialog) override;
    std::string AskSavePath(const FileDialog& dialog) override;

 private:
    QWidget* Parent() const;
    std::string AskPath(const FileDialog& dialog, bool forSaving);

    QWidget* parent_ = nullptr;
    std::function<bool()> dismissing_ = [] { return false; };
    // The user's documents at first, then wherever a file was last chosen in this run.
    QString folder_;
};

}  // namespace rv52
