#pragma once

#include <chrono>
#include <ctime>

namespace rv52 {

// The time since the machine was started. Unlike the standard library's steady clock it goes on while the
// machine sleeps, as the module at the other end does.
inline std::chrono::nanoseconds BootTime() {
    std::timespec now{};
    ::clock_gettime(CLOCK_BOOTTIME, &now);
    return std::chrono::seconds(now.tv_sec) + std::chrono::nanoseconds(now.tv_nsec);
}

}  // namespace rv52
