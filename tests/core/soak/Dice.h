#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <random>

namespace rv52::test {

// Chance that comes again from its seed.
class Dice {
 public:
    explicit Dice(std::uint64_t seed) : random_(seed) {}

    std::uint64_t Roll() { return random_(); }
    // 0 to count - 1.
    int Below(int count) { return static_cast<int>(random_() % static_cast<std::uint64_t>(count)); }
    bool OneIn(int count) { return Below(count) == 0; }
    // 1 to most, every order of magnitude as likely as the next.
    int Magnitude(int most) { return static_cast<int>(std::pow(most, Below(1001) / 1000.0)); }
    template <class List>
    const auto& Of(const List& list) {
        return list[static_cast<std::size_t>(Below(static_cast<int>(std::size(list))))];
    }

 private:
    std::mt19937_64 random_;
};

}  // namespace rv52::test
