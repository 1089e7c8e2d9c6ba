#include "BareLine.h"

#include "platform/Failure.h"
#include "platform/linux/BootClock.h"

#include <algorithm>
#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <thread>
#include <unistd.h>

namespace rv52::bench {

namespace {

using namespace std::chrono_literals;

constexpr auto kSpin = 400us;  // as the program's own line does it

}  // namespace

void BareLine::Open(int) {
    port_ = ::open(device_.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (port_ < 0) throw PortFailure(device_ + " could not be opened.");
    termios settings{};
    ::tcgetattr(port_, &settings);
    ::cfmakeraw(&settings);
    ::tcsetattr(port_, TCSANOW, &settings);
}

void BareLine::Close() noexcept {
    if (port_ >= 0) ::close(port_);
    port_ = -1;
    waiting_.clear();
}

void BareLine::Discard() {
    ::tcflush(port_, TCIFLUSH);
    TakeWhatIsThere();
    waiting_.clear();
}

std::uint8_t BareLine::ReadByte() {
    const auto byte = waiting_.at(0);
    waiting_.erase(waiting_.begin());
    return byte;
}

void BareLine::SendByte(std::uint8_t byte) {
    if (::write(port_, &byte, 1) != 1) throw PortFailure(device_ + " does not take bytes.");
}

Line::Clock BareLine::Now() const {
    return BootTime();
}

void BareLine::TakeWhatIsThere() {
    std::uint8_t bytes[SerialSettings::kReceiveBuffer];
    const auto count = ::read(port_, bytes, sizeof bytes);
    if (count <= 0) return;
    waiting_.insert(waiting_.end(), bytes, bytes + count);
    lastArrival_ = Now();
}

int BareLine::WaitForBytes(int count, Clock deadline, Yielding) {
    for (;;) {
        TakeWhatIsThere();
        const auto left = deadline - Now();
        const auto waiting = static_cast<int>(waiting_.size());
        if (waiting >= count || left <= 0ns) return waiting;
        pollfd readable{port_, POLLIN, 0};
        ::poll(&readable, 1, static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(left).count()));
    }
}

void BareLine::WaitFor(std::chrono::milliseconds duration) {
    const auto end = Now() + duration;
    if (duration > kSpin) std::this_thread::sleep_for(duration - kSpin);
    while (Now() < end) {
    }
}

}  // namespace rv52::bench
