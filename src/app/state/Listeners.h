#pragma once

#include <functional>
#include <memory>
#include <vector>

namespace rv52 {

// Whoever listens keeps this, and is told as long as it is there: one that goes is told nothing more.
using Listening = std::shared_ptr<void>;

template <class... Told>
class Listeners {
 public:
    using Listener = std::function<void(Told...)>;

    [[nodiscard]] Listening Add(Listener listener) {
        auto added = std::make_shared<Listener>(std::move(listener));
        std::erase_if(listeners_, [](const auto& other) { return other.expired(); });
        listeners_.push_back(added);
        return added;
    }

    // Calls visit with a call of each listener that is there, in the order in which they came; the call can
    // be kept, and does nothing once its listener has gone.
    template <class Visit>
    void ForEach(Visit&& visit, Told... told) const {
        for (const auto& listener : std::vector(listeners_))
            visit([listener, told...] {
                if (const auto there = listener.lock()) (*there)(told...);
            });
    }

 private:
    std::vector<std::weak_ptr<Listener>> listeners_;
};

}  // namespace rv52
