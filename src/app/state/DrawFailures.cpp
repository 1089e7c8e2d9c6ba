#include "app/state/DrawFailures.h"

#include "platform/Failure.h"

#include <utility>

namespace rv52 {

void DrawFailures::Guard(const Draw& draw, const Draw& again) noexcept {
    try {
        draw();
    } catch (const std::exception& failure) {
        try {
            Keep(failure.what(), again ? again : draw);
        } catch (const std::exception&) {
            // Nothing is left to tell it with; the next change draws anew.
        }
    }
}

void DrawFailures::Keep(const std::string& description, Draw again) {
    if (!first_) first_ = description;
    undone_.push_back(std::move(again));
    if (telling_ || undone_.size() != 1) return;
    onKept_.ForEach([](const auto& tell) { tell(); });
}

void DrawFailures::Tell(Steps& steps) {
    // What fails beneath the box is what the box asks about.
    if (!first_ || std::exchange(telling_, true)) return;
    bool retry = false;
    steps.Procedure([&](Steps& step) {
        step([&] {
            if (std::exchange(retry, true)) DrawAgain();
            if (first_) throw Failure(*first_);
        });
    });
    first_.reset();
    undone_.clear();
    telling_ = false;
}

void DrawFailures::DrawAgain() {
    first_.reset();
    for (const auto& draw : std::exchange(undone_, {}))
        Guard(draw);
}

}  // namespace rv52
