#include "simulator/PseudoTerminal.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <system_error>
#include <termios.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace rv52 {

namespace {

int Checked(int result, const char* what) {
    if (result < 0) throw std::system_error(errno, std::generic_category(), what);
    return result;
}

void CloseIfOpen(int& descriptor) {
    if (descriptor >= 0) close(std::exchange(descriptor, -1));
}

int TakeSignals() {
    sigset_t ending;
    sigemptyset(&ending);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaddset(&ending, signal);
    Checked(sigprocmask(SIG_BLOCK, &ending, nullptr), "cannot take signals");
    return Checked(signalfd(-1, &ending, SFD_CLOEXEC), "cannot take signals");
}

// A sleep wakes late by about this much; a byte at 56000 bit/s takes 179 µs. What is left is spun.
constexpr std::chrono::microseconds kSpin{100};

constexpr int kDrainPatience = 1000;  // ms

// By poll, which first makes the kernel hand over what it still carries; a count of the bytes that wait
// (FIONREAD) misses those on a busy machine.
bool HasUnread(int descriptor) {
    pollfd event{descriptor, POLLIN, 0};
    return poll(&event, 1, 0) > 0;
}

timespec SleepBefore(PseudoTerminal::Clock time) {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    const auto left = std::max(time - now - kSpin, PseudoTerminal::Clock::zero());
    const auto seconds = std::chrono::floor<std::chrono::seconds>(left);
    return {seconds.count(), (left - seconds).count()};
}

}  // namespace

PseudoTerminal::PseudoTerminal() {
    try {
        signals_ = TakeSignals();
        OpenDevice();
    } catch (...) {
        CloseAll();
        throw;
    }
    // Without this the kernel may add 50 µs to every sleep.
    prctl(PR_SET_TIMERSLACK, 1UL);
}

PseudoTerminal::~PseudoTerminal() {
    CloseAll();
}

void PseudoTerminal::OpenDevice() {
    master_ = Checked(posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC), "no pseudo-terminal");
    Checked(grantpt(master_), "no pseudo-terminal");
    Checked(unlockpt(master_), "no pseudo-terminal");
    std::array<char, 128> name{};
    if (ptsname_r(master_, name.data(), name.size()) != 0)
        throw std::system_error(errno, std::generic_category(), "no pseudo-terminal");
    path_ = name.data();
    device_ = Checked(open(path_.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC), path_.c_str());
    termios raw{};
    Checked(tcgetattr(device_, &raw), path_.c_str());
    cfmakeraw(&raw);
    Checked(tcsetattr(device_, TCSANOW, &raw), path_.c_str());
    watch_.Begin(path_);
}

PseudoTerminal::Event PseudoTerminal::WaitUntil(std::optional<Clock> time) {
    std::array<pollfd, 3> events{pollfd{signals_, POLLIN, 0}, pollfd{master_, POLLIN, 0},
                                 pollfd{watch_.Descriptor(), POLLIN, 0}};
    const auto timeout = SleepBefore(time.value_or(Clock::zero()));
    const int ready = ppoll(events.data(), events.size(), time ? &timeout : nullptr, nullptr);
    if (ready < 0 && errno != EINTR) throw std::system_error(errno, std::generic_category(), "cannot wait");
    if (ready <= 0) return Event::Time;
    return events[0].revents != 0 ? Event::Signal : Event::Traffic;
}

// The bytes first: a closing noticed after them may be older than they, one that is not there yet is younger.
PseudoTerminal::Traffic PseudoTerminal::Read() {
    Traffic traffic{.bytes = ReadBytes()};
    const auto seen = watch_.Look();
    const bool lastIsYounger = seen.closings > 0 && !seen.openedSince;
    traffic.closingsAfter = lastIsYounger ? 1 : 0;
    traffic.closingsBefore = seen.closings - traffic.closingsAfter;
    if (lastIsYounger) EndExclusiveMode();
    return traffic;
}

// Not that of a program that has come since.
void PseudoTerminal::EndExclusiveMode() {
    int exclusive = 0;
    if (ioctl(device_, TIOCGEXCL, &exclusive) == 0 && exclusive != 0 && !HasUnread(watch_.Descriptor()))
        ioctl(device_, TIOCNXCL);
}

std::vector<std::uint8_t> PseudoTerminal::ReadBytes() {
    std::vector<std::uint8_t> bytes(256);
    const auto count = read(master_, bytes.data(), bytes.size());
    if (count < 0 && errno != EAGAIN && errno != EINTR)
        throw std::system_error(errno, std::generic_category(), path_);
    bytes.resize(count < 0 ? 0 : static_cast<std::size_t>(count));
    return bytes;
}

void PseudoTerminal::Write(std::uint8_t byte) {
    const auto count = write(master_, &byte, 1);
    if (count < 0 && errno != EAGAIN && errno != EINTR)
        throw std::system_error(errno, std::generic_category(), path_);
}

void PseudoTerminal::HangUp() {
    // The kernel drops what has not been read yet when the line goes; what went over it before still counts.
    for (int left = kDrainPatience; left > 0 && HasUnread(device_); --left)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    CloseIfOpen(device_);
    CloseIfOpen(master_);
}

void PseudoTerminal::CloseAll() noexcept {
    CloseIfOpen(device_);
    CloseIfOpen(master_);
    CloseIfOpen(signals_);
}

}  // namespace rv52
