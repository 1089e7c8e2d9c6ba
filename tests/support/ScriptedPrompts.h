#pragma once

#include "platform/Prompts.h"

#include <deque>
#include <functional>
#include <string>
#include <vector>

namespace rv52::test {

// Answers from a script. A box that the script does not expect fails the test and is dismissed.
class ScriptedPrompts : public Prompts {
 public:
    ~ScriptedPrompts() override;

    // The next message box must be exactly this one.
    void Expect(MessageBox box, Answer answer);
    // A box with OK alone, and a question with Yes, No and Cancel.
    void ExpectNotice(const std::string& text, const std::string& title, Icon icon = Icon::Warning);
    void ExpectQuestion(const std::string& text, const std::string& title, Answer answer);
    // The failure box with this description.
    void ExpectError(const std::string& description, Answer answer);
    void ExpectText(InputBox box, std::string answer);
    void ExpectOpen(std::string path);
    void ExpectSave(std::string path);

    bool Done() const { return script_.empty(); }

    Answer Ask(const MessageBox& box) override;
    std::string AskText(const InputBox& box) override;
    std::string AskOpenPath(const FileDialog& dialog) override;
    std::string AskSavePath(const FileDialog& dialog) override;

    // File dialogs shown, in order.
    std::vector<FileDialog> dialogs;
    // Runs inside each box, while it is open.
    std::function<void()> whileOpen;

 private:
    enum class Kind { Message, Text, Open, Save };
    struct Entry {
        Kind kind;
        std::string what;  // the box in words, compared whole
        Answer answer = Answer::Ok;
        std::string text;
    };

    Entry Take(Kind kind, const std::string& what);

    std::deque<Entry> script_;
};

}  // namespace rv52::test
