#pragma once

#include "link/commands/LinkProcedures.h"
#include "platform/Prompts.h"
#include "simulator/VirtualLine.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <map>
#include <random>
#include <string>
#include <string_view>

namespace rv52::test {

// Chance that comes again from its seed, or falls as somebody has laid it down, two bytes a throw.
class Dice {
 public:
    explicit Dice(std::uint64_t seed) : random_(seed) {}
    explicit Dice(std::string_view laid) : random_(0), laid_(laid) {}

    std::uint64_t Roll() {
        if (laid_.empty()) return random_();
        std::uint64_t thrown = 0;
        for (const auto byte : laid_.substr(0, 2))
            thrown = thrown << 8 | static_cast<unsigned char>(byte);
        laid_.remove_prefix(std::min<std::size_t>(2, laid_.size()));
        return thrown;
    }
    // 0 to count - 1.
    int Below(int count) { return static_cast<int>(Roll() % static_cast<std::uint64_t>(count)); }
    bool OneIn(int count) { return Below(count) == 0; }
    // 1 to most, every order of magnitude as likely as the next.
    int Magnitude(int most) { return static_cast<int>(std::pow(most, Below(1001) / 1000.0)); }
    template <class List>
    const auto& Of(const List& list) {
        return list[static_cast<std::size_t>(Below(static_cast<int>(std::size(list))))];
    }

 private:
    std::mt19937_64 random_;
    std::string_view laid_;
};

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
        if (box.buttons == Buttons::AbortRetryIgnore && onFailure) onFailure();
        if (box.buttons == Buttons::RetryCancel && onCondition) onCondition();
        TakeTime();
        return given_[box.text] = Choose(box.buttons);
    }
    std::string AskText(const InputBox& box) override {
        TakeTime();
        if (dice_.OneIn(4)) return {};
        if (dice_.OneIn(4)) return "too short";
        if (VinCodes(box.defaultText) && dice_.OneIn(2)) return box.defaultText;
        return "4CVRV52A5SM00" + std::to_string(1000 + dice_.Below(9000));
    }
    std::string AskOpenPath(const FileDialog&) override { return {}; }
    std::string AskSavePath(const FileDialog&) override { return dice_.OneIn(2) ? "" : "/home/soak.tbl"; }

    // The user sees a failure box, or the box of a line condition.
    std::function<void()> onFailure;
    std::function<void()> onCondition;

 private:
    static constexpr int kPatience = 4;

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
