#include "simulator/DeviceWatch.h"

#include <array>
#include <cerrno>
#include <sys/inotify.h>
#include <system_error>
#include <unistd.h>

namespace rv52 {

namespace {

void Note(const inotify_event& event, DeviceWatch::Seen& seen) {
    if ((event.mask & IN_OPEN) != 0) seen.openedSince = true;
    if ((event.mask & IN_CLOSE_WRITE) == 0) return;
    ++seen.closings;
    seen.openedSince = false;
}

}  // namespace

DeviceWatch::~DeviceWatch() {
    if (descriptor_ >= 0) close(descriptor_);
}

void DeviceWatch::Begin(const std::string& path) {
    descriptor_ = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (descriptor_ < 0 || inotify_add_watch(descriptor_, path.c_str(), IN_OPEN | IN_CLOSE_WRITE) < 0)
        throw std::system_error(errno, std::generic_category(), "cannot watch " + path);
}

// The kernel merges an event with the one before it when both are alike, so openings and closings that
// alternate all come.
DeviceWatch::Seen DeviceWatch::Look() {
    Seen seen;
    alignas(inotify_event) std::array<char, 4096> events{};
    for (;;) {
        const auto size = read(descriptor_, events.data(), events.size());
        if (size <= 0) return seen;
        for (auto at = 0L; at < size;) {
            const auto& event = *reinterpret_cast<const inotify_event*>(events.data() + at);
            Note(event, seen);
            at += static_cast<long>(sizeof event + event.len);
        }
    }
}

}  // namespace rv52
