#pragma once

#include "app/state/Listeners.h"
#include "platform/Steps.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace rv52 {

// What failed while a change was being shown. The change itself is done by then, and whoever made it has
// nothing to repeat: the failure is kept, and asked about once when the change is over and nothing is being
// painted. Retry draws again, and does nothing else.
class DrawFailures {
 public:
    using Draw = std::function<void()>;

    // Runs draw, keeping its failure. Drawing again means again, which is draw itself where none is given.
    void Guard(const Draw& draw, const Draw& again = {}) noexcept;
    // Keeps a failure, and how to draw again what it has left undone.
    void Keep(const std::string& description, Draw again);

    // Asks about what is kept. After anything but Retry it is forgotten: the next change draws anew.
    void Tell(Steps& steps);

    // Called when there is something to tell.
    [[nodiscard]] Listening OnKept(std::function<void()> kept) { return onKept_.Add(std::move(kept)); }

 private:
    void DrawAgain();

    std::optional<std::string> first_;  // of several failures the first one, most often the others' cause
    std::vector<Draw> undone_;
    bool telling_ = false;
    Listeners<> onKept_;
};

}  // namespace rv52
