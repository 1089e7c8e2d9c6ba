#include "support/ScriptedPrompts.h"

#include <gtest/gtest.h>

namespace rv52::test {

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

ScriptedPrompts::~ScriptedPrompts() {
    for (const auto& entry : script_)
        ADD_FAILURE() << "expected, but never shown: " << entry.what;
}

ScriptedPrompts::Entry ScriptedPrompts::Take(const std::string& what, Answer dismissal) {
    if (whileOpen) whileOpen();
    if (script_.empty()) {
        ADD_FAILURE() << "not expected: " << what;
        return {what, dismissal, {}};
    }
    auto entry = std::move(script_.front());
    script_.pop_front();
    EXPECT_EQ(entry.what, what);
    return entry;
}

}  // namespace rv52::test
