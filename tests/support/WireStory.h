#pragma once

#include "simulator/WireTrace.h"

#include <string>
#include <string_view>

namespace rv52::test {

// What is to pass over the wire between the program and a module that knows its trade, told by hand: ">" goes
// to the module, "<" comes back, and "5ms" is the silence before a byte to the module.
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
    void Send(int byte, int silenceAfter);
    void Receive(int byte);

    bool echo_;
    int silence_ = 0;
    std::string text_;
};

// What has passed, told likewise; silences are rounded to whole milliseconds.
std::string Told(const std::vector<TracedByte>& trace);

}  // namespace rv52::test
