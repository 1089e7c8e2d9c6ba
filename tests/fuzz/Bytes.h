#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace rv52::fuzz {

// An input piece by piece; zeros and empty texts after its end.
class Bytes {
 public:
    explicit Bytes(std::string_view input) : left_(input) {}

    bool Any() const { return !left_.empty(); }
    int Next() {
        const std::string_view next = left_.substr(0, 1);
        left_.remove_prefix(next.size());
        return next.empty() ? 0 : static_cast<unsigned char>(next.front());
    }
    // Up to the next of these, which is taken too.
    std::string Text(char end) {
        const std::string text(left_.substr(0, left_.find(end)));
        left_.remove_prefix(std::min(text.size() + 1, left_.size()));
        return text;
    }

 private:
    std::string_view left_;
};

}  // namespace rv52::fuzz
