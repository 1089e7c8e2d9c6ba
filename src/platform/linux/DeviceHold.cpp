#include "platform/linux/DeviceHold.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <system_error>
#include <unistd.h>

namespace rv52 {

namespace {

using Status = struct stat;

// Where every user may put a lock.
std::string LockFolder() {
    Status status{};
    constexpr const char* usual = "/run/lock/";
    return ::stat(usual, &status) == 0 && S_ISDIR(status.st_mode) ? usual : "/tmp/";
}

// Devices are told apart by their numbers, since they may have several names.
std::string LockPath(const Status& device) {
    return LockFolder() + "corvane_rv52-" + std::to_string(major(device.st_rdev)) + "-" +
           std::to_string(minor(device.st_rdev)) + ".lock";
}

// The file stays when the hold ends: whoever removed it could remove it under another one's hold. A file that
// is there already may be another user's, which only an opening that would not create it is let through to.
int OpenLock(const std::string& path) {
    constexpr int flags = O_RDONLY | O_NOFOLLOW | O_CLOEXEC;
    for (;;) {
        int lock = ::open(path.c_str(), flags);
        if (lock < 0 && errno == ENOENT) {
            lock = ::open(path.c_str(), flags | O_CREAT | O_EXCL, 0644);
            if (lock >= 0) ::fchmod(lock, 0644);  // whatever the mask: every user shall see who holds it
        }
        if (lock >= 0 || errno != EEXIST) return lock;
    }
}

}  // namespace

bool DeviceHold::Take(const std::string& device) {
    Status status{};
    if (::stat(device.c_str(), &status) != 0 || !S_ISCHR(status.st_mode)) return true;
    const auto path = LockPath(status);
    if (lock_ >= 0 && path == path_) return true;
    End();
    const int lock = OpenLock(path);
    if (lock < 0) throw std::system_error(errno, std::generic_category(), path);
    if (::flock(lock, LOCK_EX | LOCK_NB) != 0) {
        const int error = errno;
        ::close(lock);
        if (error == EWOULDBLOCK) return false;
        throw std::system_error(error, std::generic_category(), path);
    }
    lock_ = lock;
    path_ = path;
    return true;
}

void DeviceHold::End() noexcept {
    if (lock_ >= 0) ::close(lock_);
    lock_ = -1;
}

}  // namespace rv52
