#include "support/ScriptedPrompts.h"

#include <gtest/gtest.h>

namespace rv52::test {

namespace {

std::string InWords(const MessageBox& box) {
    static const char* const icons[] = {"none", "information", "warning", "critical"};
    static const char* const buttons[] = {"OK", "OK/Cancel", "Retry/Cancel", "Yes/No/Cancel",
                                          "Abort/Retry/Ignore"};
    std::string words = "[" + box.title + "] " + box.text + " {" + icons[static_cast<int>(box.icon)] + "; " +
                        buttons[static_cast<int>(box.buttons)];
    if (box.defaultAnswer) words += "; default " + std::to_string(static_cast<int>(*box.defaultAnswer));
    return words + "}";
}

std::string InWords(const InputBox& box) {
    return "[" + box.title + "] " + box.prompt + " (" + box.defaultText + ")";
}

}  // namespace

ScriptedPrompts::~ScriptedPrompts() {
    for (const auto& entry : script_)
        ADD_FAILURE() << "expected, but never shown: " << entry.what;
}

void ScriptedPrompts::Expect(MessageBox box, Answer answer) {
    script_.push_back({Kind::Message, InWords(box), answer, {}});
}

void ScriptedPrompts::ExpectNotice(const std::string& text, const std::string& title, Icon icon) {
    Expect({text, title, icon, Buttons::Ok}, Answer::Ok);
}

void ScriptedPrompts::ExpectQuestion(const std::string& text, const std::string& title, Answer answer) {
    Expect({text, title, Icon::Warning, Buttons::YesNoCancel}, answer);
}

void ScriptedPrompts::ExpectError(const std::string& description, Answer answer) {
    Expect({description, "Error", Icon::Critical, Buttons::AbortRetryIgnore}, answer);
}

void ScriptedPrompts::ExpectText(InputBox box, std::string answer) {
    script_.push_back({Kind::Text, InWords(box), Answer::Ok, std::move(answer)});
}

void ScriptedPrompts::ExpectOpen(std::string path) {
    script_.push_back({Kind::Open, "an open dialog", Answer::Ok, std::move(path)});
}

void ScriptedPrompts::ExpectSave(std::string path) {
    script_.push_back({Kind::Save, "a save dialog", Answer::Ok, std::move(path)});
}

ScriptedPrompts::Entry ScriptedPrompts::Take(Kind kind, const std::string& what) {
    if (whileOpen) whileOpen();
    if (script_.empty()) {
        ADD_FAILURE() << "not expected: " << what;
        return {kind, what, Answer::Abort, {}};
    }
    auto entry = std::move(script_.front());
    script_.pop_front();
    EXPECT_EQ(entry.what, what);
    EXPECT_EQ(entry.kind, kind);
    return entry;
}

Answer ScriptedPrompts::Ask(const MessageBox& box) {
    const bool expected = !script_.empty();
    const auto answer = Take(Kind::Message, InWords(box)).answer;
    return expected ? answer : DismissAnswer(box.buttons);
}

std::string ScriptedPrompts::AskText(const InputBox& box) {
    return Take(Kind::Text, InWords(box)).text;
}

std::string ScriptedPrompts::AskOpenPath(const FileDialog& dialog) {
    dialogs.push_back(dialog);
    return Take(Kind::Open, "an open dialog").text;
}

std::string ScriptedPrompts::AskSavePath(const FileDialog& dialog) {
    dialogs.push_back(dialog);
    return Take(Kind::Save, "a save dialog").text;
}

}  // namespace rv52::test
