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

WireStory& WireStory::Identification(std::string_view text) {
    SendEchoed(0x10);
    for (const char character : text)
        Receive(static_cast<unsigned char>(character));
    Receive(0x0D);
    silence_ = 5;
    return *this;
}

WireStory& WireStory::Address(int low, int high) {
    SendEchoed(0x14);
    silence_ = 5;
    SendEchoed(low);
    silence_ = 5;
    SendEchoed(high);
    Receive(0x06);
    silence_ = 5;
    return *this;
}

WireStory& WireStory::Read(int byte, int silenceAfter) {
    SendEchoed(0x15);
    Receive(byte);
    silence_ = silenceAfter;
    return *this;
}

WireStory& WireStory::Write(int byte) {
    SendEchoed(0x16);
    silence_ = 2;
    SendEchoed(byte);
    Receive(0x06);
    silence_ = 2;
    return *this;
}

void WireStory::Send(int byte) {
    text_ += Silence(silence_) + Told(Direction::ToModule, byte);
    silence_ = 0;
}

void WireStory::SendEchoed(int byte) {
    Send(byte);
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
