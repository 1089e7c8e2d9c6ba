#include "support/WireStory.h"

#include <cmath>

namespace rv52::test {

namespace {

std::string Silence(int milliseconds) {
    return milliseconds == 0 ? "" : std::to_string(milliseconds) + "ms ";
}

std::string Told(Direction direction, int byte) {
    return ToText(TracedByte{direction, static_cast<std::uint8_t>(byte), {}}) + " ";
}

}  // namespace

void WireStory::Send(int byte, int silenceAfter) {
    text_ += Silence(silence_) + Told(Direction::ToModule, byte);
    silence_ = silenceAfter;
    if (echo_) Receive(byte);
}

void WireStory::Receive(int byte) {
    text_ += Told(Direction::ToPc, byte);
}

std::string Told(const std::vector<TracedByte>& trace) {
    std::string text;
    auto last = trace.empty() ? std::chrono::nanoseconds{0} : trace.front().time;
    for (const auto& traced : trace) {
        const std::chrono::duration<double, std::milli> silence = traced.time - last;
        if (traced.direction == Direction::ToModule)
            text += Silence(static_cast<int>(std::lround(silence.count())));
        text += Told(traced.direction, traced.byte);
        last = traced.time;
    }
    return text;
}

}  // namespace rv52::test
