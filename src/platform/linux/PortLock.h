#pragma once

#include <optional>
#include <string>

namespace rv52 {

// The file by which programs of all kinds tell each other that they use a serial device: LCK..ttyS0 in
// /var/lock, with the number of the process in it.
struct PortLock {
    std::string path;
    std::string user;     // whose it is
    std::string program;  // that laid it, as "minicom, process 4711"; empty when it is gone
};

// Nothing when no lock lies on the device.
std::optional<PortLock> LockOn(const std::string& device);

// Takes away the lock of a program that is gone, where the system lets us. False when there is none, when its
// program lives, or when it is not ours to remove.
bool RemoveStaleLock(const std::string& device);

}  // namespace rv52
