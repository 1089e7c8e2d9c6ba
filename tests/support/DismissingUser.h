#pragma once

#include "platform/Prompts.h"

#include <functional>
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

// A user who gives the answers in their order, and remembers the boxes.
class AnsweringUser : public DismissingUser {
 public:
    Answer Ask(const MessageBox& box) override {
        const auto dismissal = DismissingUser::Ask(box);
        return told.size() <= answers.size() ? answers[told.size() - 1] : dismissal;
    }

    std::vector<Answer> answers;
};

// One who gives every failure box the same answer, and can do something while it is open.
class OneAnswer : public DismissingUser {
 public:
    explicit OneAnswer(Answer answer) : answer_(answer) {}

    Answer Ask(const MessageBox& box) override {
        const auto dismissal = DismissingUser::Ask(box);
        if (box.buttons != Buttons::AbortRetryIgnore) return dismissal;
        if (whileOpen) whileOpen();
        // Retrying for ever would be no test: now and then even the most stubborn gives up.
        return ++asked_ % 3 == 0 && answer_ == Answer::Retry ? Answer::Ignore : answer_;
    }

    std::function<void()> whileOpen;

 private:
    Answer answer_;
    int asked_ = 0;
};

}  // namespace rv52::test
