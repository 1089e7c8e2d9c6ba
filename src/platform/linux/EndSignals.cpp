#include "platform/linux/EndSignals.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>

namespace rv52 {

namespace {

// A pipe, since the toolkit's own threads may be the ones that a signal interrupts: a descriptor for signals
// would need every one of them to hold it back.
std::array<int, 2> ends{-1, -1};

void Tell(int signal) {
    const int before = errno;
    const auto number = static_cast<unsigned char>(signal);
    // A full pipe holds enough of them.
    [[maybe_unused]] const auto written = write(ends[1], &number, sizeof number);
    errno = before;
}

}  // namespace

EndSignals::EndSignals(Handler handler) : handler_(std::move(handler)) {
    if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        throw std::system_error(errno, std::generic_category(), "signals cannot be waited for");
    notifier_ = std::make_unique<QSocketNotifier>(ends[0], QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] { Receive(); });
    for (const int signal : {SIGTERM, SIGHUP, SIGINT}) {
        struct sigaction was {};
        sigaction(signal, nullptr, &was);
        if (was.sa_handler == SIG_IGN) continue;
        struct sigaction told {};
        told.sa_handler = Tell;
        told.sa_flags = SA_RESTART;
        sigaction(signal, &told, nullptr);
        before_.push_back({signal, was});
    }
}

EndSignals::~EndSignals() {
    for (const auto& [signal, action] : before_)
        sigaction(signal, &action, nullptr);
    notifier_.reset();
    for (auto& end : ends) {
        close(end);
        end = -1;
    }
}

void EndSignals::Receive() {
    unsigned char number = 0;
    if (read(ends[0], &number, sizeof number) == sizeof number) handler_(number);
}

void EndSignals::LeaveBy(int signal) {
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

}  // namespace rv52
