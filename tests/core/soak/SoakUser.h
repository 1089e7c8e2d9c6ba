#pragma once

#include "link/Vin.h"
#include "platform/Prompts.h"
#include "simulator/VirtualLine.h"
#include "soak/Dice.h"

#include <map>
#include <string>

namespace rv52::test {

// Answers every box as the dice fall, now and then after a while, or after putting the plug back in.
class SoakUser : public Prompts {
 public:
    SoakUser(Dice& dice, VirtualLine& line) : dice_(dice), line_(line) {}

    // The answers given since the last Forget, by the texts of their boxes.
    bool WasTold(const std::string& text) const { return given_.contains(text); }
    bool Answered(const std::string& text, Answer answer) const {
        const auto given = given_.find(text);
        return given != given_.end() && given->second == answer;
    }
    void Forget() {
        given_.clear();
        retries_ = 0;
    }

    Answer Ask(const MessageBox& box) override {
        TakeTime();
        return given_[box.text] = Choose(box.buttons);
    }
    std::string AskText(const InputBox& box) override {
        TakeTime();
        if (dice_.OneIn(4)) return {};
        if (dice_.OneIn(4)) return "too short";
        return VinCodes(box.defaultText) && dice_.OneIn(2) ? box.defaultText : "4CVRV52A5SM00" + FourDigits();
    }
    std::string AskOpenPath(const FileDialog&) override { return {}; }
    std::string AskSavePath(const FileDialog&) override { return dice_.OneIn(2) ? "" : "/home/soak.tbl"; }

 private:
    static constexpr int kPatience = 4;

    std::string FourDigits() { return std::to_string(1000 + dice_.Below(9000)); }

    void TakeTime() {
        if (dice_.OneIn(4)) line_.Advance(std::chrono::milliseconds(dice_.Magnitude(3000)));
        if (dice_.OneIn(2)) line_.PlugIn();
    }

    Answer Choose(Buttons buttons) {
        if (buttons == Buttons::Ok) return Answer::Ok;
        if (buttons == Buttons::OkCancel) return dice_.OneIn(4) ? Answer::Cancel : Answer::Ok;
        if (buttons == Buttons::RetryCancel) return dice_.OneIn(2) ? Answer::Retry : Answer::Cancel;
        if (buttons == Buttons::YesNoCancel)
            return dice_.OneIn(8) ? Answer::Cancel : dice_.OneIn(4) ? Answer::Yes : Answer::No;
        if (dice_.OneIn(3) && ++retries_ <= kPatience) return Answer::Retry;
        return dice_.OneIn(2) ? Answer::Abort : Answer::Ignore;
    }

    Dice& dice_;
    VirtualLine& line_;
    std::map<std::string, Answer> given_;
    int retries_ = 0;
};

}  // namespace rv52::test
