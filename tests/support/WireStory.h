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

    WireStory& Identification(std::string_view text);
    WireStory& Address(int low, int high);
    // The silence after it is what the program keeps before its next byte.
    WireStory& Read(int byte, int silenceAfter);
    WireStory& Write(int byte);

    const std::string& Text() const { return text_; }

 private:
    void Send(int byte);
    void SendEchoed(int byte);
    void Receive(int byte);

    bool echo_;
    int silence_ = 0;
    std::string text_;
};

// What has passed, told likewise; silences are rounded to whole milliseconds.
std::string Told(const std::vector<TracedByte>& trace);

}  // namespace rv52::test
