#pragma once

#include "simulator/WireTrace.h"

#include <cmath>
#include <string>
#include <string_view>

namespace rv52::test {

// A silence before a byte, and a byte: ">" goes to the module, "<" comes back.
inline std::string InWords(int silence, Direction direction, int byte) {
    return (silence == 0 ? "" : std::to_string(silence) + "ms ") +
           ToText(TracedByte{direction, static_cast<std::uint8_t>(byte), {}}) + " ";
}

// What is to pass over the wire between the program and a module that knows its trade, told by hand,
// with the silences before bytes to the module.
class WireStory {
 public:
    explicit WireStory(bool echo) : echo_(echo) {}

    void Identification(std::string_view text) {
        Send(0x10, 5);
        for (const char character : text)
            Receive(static_cast<unsigned char>(character));
        Receive(0x0D);
    }
    void Address(int low, int high) {
        Send(0x14, 5);
        Send(low, 5);
        Send(high, 5);
        Receive(0x06);
    }
    void Read(int byte, int silenceAfter) {
        Send(0x15, silenceAfter);
        Receive(byte);
    }
    void Write(int byte) {
        Send(0x16, 2);
        Send(byte, 2);
        Receive(0x06);
    }

    const std::string& Text() const { return text_; }

 private:
    // The silence after it and its answer is what the program keeps before its next byte.
    void Send(int byte, int silenceAfter) {
        text_ += InWords(silence_, Direction::ToModule, byte);
        silence_ = silenceAfter;
        if (echo_) Receive(byte);
    }
    void Receive(int byte) { text_ += InWords(0, Direction::ToPc, byte); }

    bool echo_;
    int silence_ = 0;
    std::string text_;
};

// What has passed, told likewise; silences are rounded to whole milliseconds.
inline std::string Told(const std::vector<TracedByte>& trace) {
    std::string text;
    auto last = trace.empty() ? std::chrono::nanoseconds{0} : trace.front().time;
    for (const auto& [direction, byte, time] : trace) {
        const std::chrono::duration<double, std::milli> silence = time - last;
        const bool leaves = direction == Direction::ToModule;
        text += InWords(leaves ? static_cast<int>(std::lround(silence.count())) : 0, direction, byte);
        last = time;
    }
    return text;
}

}  // namespace rv52::test
