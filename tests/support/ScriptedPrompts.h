#pragma once

#include "platform/Prompts.h"

#include <deque>
#include <functional>
#include <string>
#include <vector>

namespace rv52::test {

// Each box in words, icon, buttons and default included.
std::string InWords(const MessageBox& box);
std::string InWords(const InputBox& box);

// Answers from a script. A box that the script does not expect fails the test and is dismissed.
class ScriptedPrompts : public Prompts {
 public:
    ~ScriptedPrompts() override;

    // The next message box must be exactly this one.
    void Expect(const MessageBox& box, Answer answer) { script_.push_back({InWords(box), answer, {}}); }
    // A box with OK alone, and a question with Yes, No and Cancel.
    void ExpectNotice(const std::string& text, const std::string& title, Icon icon = Icon::Warning) {
        Expect({text, title, icon, Buttons::Ok}, Answer::Ok);
    }
    void ExpectQuestion(const std::string& text, const std::string& title, Answer answer) {
        Expect({text, title, Icon::Warning, Buttons::YesNoCancel}, answer);
    }
    // The failure box with this description.
    void ExpectError(const std::string& description, Answer answer) {
        Expect({description, "Error", Icon::Critical, Buttons::AbortRetryIgnore}, answer);
    }
    void ExpectText(const InputBox& box, const std::string& answer) {
        script_.push_back({InWords(box), {}, answer});
    }
    void ExpectOpen(const std::string& path) { script_.push_back({kOpenDialog, {}, path}); }
    void ExpectSave(const std::string& path) { script_.push_back({kSaveDialog, {}, path}); }

    bool Done() const { return script_.empty(); }

    Answer Ask(const MessageBox& box) override {
        return Take(InWords(box), DismissAnswer(box.buttons)).answer;
    }
    std::string AskText(const InputBox& box) override { return Take(InWords(box)).text; }
    std::string AskOpenPath(const FileDialog& dialog) override {
        dialogs.push_back(dialog);
        return Take(kOpenDialog).text;
    }
    std::string AskSavePath(const FileDialog& dialog) override {
        dialogs.push_back(dialog);
        return Take(kSaveDialog).text;
    }

    // File dialogs shown, in order.
    std::vector<FileDialog> dialogs;
    // Runs inside each box, while it is open.
    std::function<void()> whileOpen;

 private:
    struct Entry {
        std::string what;
        Answer answer;
        std::string text;
    };

    static constexpr const char* kOpenDialog = "an open dialog";
    static constexpr const char* kSaveDialog = "a save dialog";

    Entry Take(const std::string& what, Answer dismissal = Answer::Cancel);

    std::deque<Entry> script_;
};

}  // namespace rv52::test
