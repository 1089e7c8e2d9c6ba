#include "platform/linux/ReplaceFile.h"

#include "platform/Failure.h"

#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace rv52 {

namespace {

using Status = struct stat;

constexpr mode_t kPermissions = 07777;
constexpr int kMostLinks = 40;
// What the system shows for every group that it has no name for here, be it the same one or not.
constexpr gid_t kUnnamedGroup = 65534;

[[noreturn]] void Fail(const std::string& path, int error) {
    throw FileFailure("Cannot write " + path + ": " + std::generic_category().message(error) + ".");
}

// With the separator at its end; empty for a name in the current folder.
std::string FolderOf(const std::string& path) {
    return path.substr(0, path.rfind('/') + 1);
}

std::string OrHere(const std::string& folder) {
    return folder.empty() ? "." : folder;
}

// A link that anybody may have laid there to lead a save astray: in a sticky folder that everyone may write
// to, neither of this user nor of the folder's owner. The kernel follows none of those either, but here the
// links are followed by hand, and not every system has that protection switched on.
bool IsForeignLink(const std::string& link) {
    Status itself{};
    Status folder{};
    if (::lstat(link.c_str(), &itself) != 0 || ::stat(OrHere(FolderOf(link)).c_str(), &folder) != 0)
        return true;
    constexpr mode_t everyonesSticky = S_ISVTX | S_IWOTH;
    return (folder.st_mode & everyonesSticky) == everyonesSticky && itself.st_uid != ::geteuid() &&
           itself.st_uid != folder.st_uid;
}

// The path behind symbolic links, whether or not there is a file.
std::string Resolve(const std::string& path) {
    std::string target = path;
    for (int links = 0; links <= kMostLinks; ++links) {
        std::array<char, PATH_MAX> content{};
        const auto length = ::readlink(target.c_str(), content.data(), content.size());
        if (length < 0) return target;  // no link
        if (IsForeignLink(target))
            throw FileFailure("Cannot write " + path +
                              ": It is another user's link, in a folder that everyone may write to.");
        const std::string next(content.data(), static_cast<std::size_t>(length));
        target = next.starts_with('/') ? next : FolderOf(target).append(next);
    }
    Fail(path, ELOOP);
}

// What stands at the target: nothing, or a regular file that may be written.
std::optional<Status> Existing(const std::string& path, const std::string& target) {
    Status status{};
    if (::stat(target.c_str(), &status) != 0) {
        if (errno != ENOENT) Fail(path, errno);
        return std::nullopt;
    }
    if (S_ISDIR(status.st_mode)) Fail(path, EISDIR);
    if (!S_ISREG(status.st_mode)) throw FileFailure("Cannot write " + path + ": It is not a file.");
    if (::access(target.c_str(), W_OK) != 0) Fail(path, errno);
    return status;
}

// The old permissions where the group could not be kept: what was that group's is not given to another one,
// which gets no more than everyone has.
mode_t WithoutGroup(mode_t mode) {
    const mode_t everyones = (mode & S_IRWXO) << 3U;
    return mode & (S_IRWXU | everyones | S_IRWXO);
}

// A file that disappears again unless it takes another one's place.
class TemporaryFile {
 public:
    // A name of its own, since the target's may leave no room for an ending.
    TemporaryFile(const std::string& path, const std::string& folder, mode_t mode) : path_(path) {
        for (int attempt = 0; descriptor_ < 0; ++attempt) {
            name_ = folder + ".rv52-" + std::to_string(::getpid()) + "-" + std::to_string(attempt) + ".tmp";
            descriptor_ = ::open(name_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
            if (descriptor_ < 0 && errno != EEXIST && errno != EINTR) Fail(path_, errno);
        }
    }
    ~TemporaryFile() {
        if (descriptor_ >= 0) ::close(descriptor_);
        if (!name_.empty()) ::unlink(name_.c_str());
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    void Write(std::string_view bytes) const {
        while (!bytes.empty()) {
            const auto written = ::write(descriptor_, bytes.data(), bytes.size());
            if (written >= 0)
                bytes.remove_prefix(static_cast<std::size_t>(written));
            else if (errno != EINTR)
                Fail(path_, errno);
        }
    }

    // Owner and group as far as the system allows, whatever it says where it does not: containers and network
    // file systems know owners that nobody may be given. First, as changing them takes permissions away.
    void TakeOver(const Status& old) const {
        bool groupKept = ::fchown(descriptor_, old.st_uid, old.st_gid) == 0 ||
                         ::fchown(descriptor_, static_cast<uid_t>(-1), old.st_gid) == 0;
        Status fresh{};
        if (::fstat(descriptor_, &fresh) != 0) Fail(path_, errno);
        groupKept |= fresh.st_gid == old.st_gid && fresh.st_gid != kUnnamedGroup;
        const auto mode = groupKept ? old.st_mode & kPermissions : WithoutGroup(old.st_mode);
        // A file system without permissions of its own shows the same for both and refuses to set any. One
        // that refuses otherwise leaves the file to its owner alone, which gives nothing away.
        if (((mode ^ fresh.st_mode) & kPermissions) != 0 && ::fchmod(descriptor_, mode) != 0 &&
            (fresh.st_mode & kPermissions & ~mode) != 0)
            Fail(path_, errno);
    }

    void MoveTo(const std::string& target) {
        // Some file systems have nothing to sync, and say so with EINVAL.
        if (::fsync(descriptor_) != 0 && errno != EINVAL) Fail(path_, errno);
        const int descriptor = descriptor_;
        descriptor_ = -1;
        if (::close(descriptor) != 0 && errno != EINTR) Fail(path_, errno);
        if (::rename(name_.c_str(), target.c_str()) != 0) Fail(path_, errno);
        name_.clear();
    }

 private:
    const std::string& path_;
    std::string name_;
    int descriptor_ = -1;
};

// The new content already stands; that its name is on disk too cannot be made surer than by asking.
void SyncFolder(const std::string& folder) {
    const int descriptor = ::open(OrHere(folder).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) return;
    ::fsync(descriptor);
    ::close(descriptor);
}

}  // namespace

void ReplaceFile(const std::string& path, std::string_view bytes) {
    const auto target = Resolve(path);
    const auto old = Existing(path, target);
    constexpr mode_t ownerOnly = 0600;
    constexpr mode_t asUmaskLeaves = 0666;
    TemporaryFile temporary(path, FolderOf(target), old ? ownerOnly : asUmaskLeaves);
    temporary.Write(bytes);
    if (old) temporary.TakeOver(*old);
    temporary.MoveTo(target);
    SyncFolder(FolderOf(target));
}

}  // namespace rv52
