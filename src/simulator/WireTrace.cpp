#include "simulator/WireTrace.h"

namespace rv52 {

std::string ToText(const TracedByte& traced) {
    constexpr const char* kDigits = "0123456789ABCDEF";
    return {traced.direction == Direction::ToModule ? '>' : '<', kDigits[traced.byte / 16],
            kDigits[traced.byte % 16]};
}

std::string ToText(const std::vector<TracedByte>& trace) {
    std::string text;
    for (const auto& traced : trace) {
        if (!text.empty()) text += ' ';
        text += ToText(traced);
    }
    return text;
}

}  // namespace rv52
