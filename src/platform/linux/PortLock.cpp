#include "platform/linux/PortLock.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fstream>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace rv52 {

namespace {

std::string PathOf(const std::string& device) {
    constexpr std::string_view devices = "/dev/";
    auto name = device.starts_with(devices) ? device.substr(devices.size()) : device;
    std::ranges::replace(name, '/', '_');
    return "/var/lock/LCK.." + name;
}

std::string UserOf(uid_t number) {
    const auto* entry = getpwuid(number);
    return entry != nullptr ? entry->pw_name : std::to_string(number);
}

std::string ProgramOf(pid_t process) {
    std::string name;
    std::getline(std::ifstream("/proc/" + std::to_string(process) + "/comm"), name);
    return name;
}

// A process of that number that runs another program than the one that laid the lock only got the number.
bool Lives(pid_t process, const std::string& program) {
    if (kill(process, 0) != 0 && errno != EPERM) return false;
    const auto running = ProgramOf(process);
    return program.empty() || running.empty() || program.starts_with(running);
}

}  // namespace

std::optional<PortLock> LockOn(const std::string& device) {
    PortLock lock{PathOf(device), {}, {}};
    struct stat status {};
    if (lstat(lock.path.c_str(), &status) != 0) return std::nullopt;
    lock.user = UserOf(status.st_uid);
    pid_t process = 0;
    std::string program;  // not every program writes its name
    std::ifstream file(lock.path);
    // What cannot be read or names no process may well be in use.
    if (!(file >> process) || process <= 0)
        lock.program = "an unknown program";
    else if (std::getline(file >> std::ws, program); Lives(process, program))
        lock.program = ProgramOf(process) + ", process " + std::to_string(process);
    return lock;
}

bool RemoveStaleLock(const std::string& device) {
    const auto lock = LockOn(device);
    return lock && lock->program.empty() && unlink(lock->path.c_str()) == 0;
}

}  // namespace rv52
