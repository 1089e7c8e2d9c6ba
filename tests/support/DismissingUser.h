#pragma once

#include "platform/Prompts.h"

#include <string>
#include <vector>

namespace rv52::test {

// A user who closes every box as Escape does and remembers what it said.
class DismissingUser : public Prompts {
 public:
    Answer Ask(const MessageBox& box) override {
        told.push_back(box.text);
        return DismissAnswer(box.buttons);
    }
    std::string AskText(const InputBox&) override { return {}; }
    std::string AskOpenPath(const FileDialog&) override { return {}; }
    std::string AskSavePath(const FileDialog&) override { return {}; }

    std::vector<std::string> told;
};

}  // namespace rv52::test
