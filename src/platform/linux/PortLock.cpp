#include "platform/linux/PortLock.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <pwd.h>
#include <sys/stat.h>
#include <system_error>
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

// By the name of the process or of the file that it runs: a script's process bears the script's name, its
// lock the interpreter's. A file that is hidden from us may well be the one.
bool Runs(pid_t process, const std::string& program) {
    const auto name = ProgramOf(process);
    if (program.empty() || name.empty() || program.starts_with(name)) return true;
    std::error_code failure;
    const auto file = std::filesystem::read_symlink("/proc/" + std::to_string(process) + "/exe", failure);
    if (failure) return failure == std::errc::permission_denied;
    return file.filename().string().starts_with(program);
}

// A process of that number that runs another program than the one that laid the lock only got the number.
bool Lives(pid_t process, const std::string& program) {
    return (kill(process, 0) == 0 || errno == EPERM) && Runs(process, program);
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
