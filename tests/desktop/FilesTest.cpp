#include "platform/qt/QtFiles.h"
#include "support/FailureOf.h"
#include "support/TemporaryFolder.h"

#include <chrono>
#include <clocale>
#include <csignal>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <tuple>
#include <unistd.h>

namespace rv52::test {
namespace {

namespace fs = std::filesystem;

constexpr int kSkipped = 77;
constexpr uid_t kNobody = 65534;  // root may write anywhere
// Longer than a page, and of different lengths, so that a mixture shows.
const std::string kOld(20'000, 'o');
const std::string kNew(30'001, 'n');

class FilesTest : public testing::Test {
 protected:
    // The system's reasons in English, whatever the desktop's language.
    FilesTest() {
        std::setlocale(LC_MESSAGES, "C");
        files_.ReplaceWhole(table_, kOld);
    }

    std::string Path(const std::string& name) const { return (folder_.Path() / name).string(); }
    std::string Content(const std::string& path) const { return files_.ReadWhole(path); }
    std::string FailureToRead(const std::string& path) const {
        return FailureOf([&] { Content(path); });
    }
    // Why it could not be saved, without the words that all reasons begin with.
    std::string Save(const std::string& path, const std::string& content = kNew) {
        const auto failure = FailureOf([&] { files_.ReplaceWhole(path, content); });
        const auto start = "Cannot write " + path + ": ";
        return failure.starts_with(start) ? failure.substr(start.size()) : failure;
    }
    std::ptrdiff_t FileCount() const {
        return std::distance(fs::directory_iterator(folder_.Path()), fs::directory_iterator());
    }

    // Permissions, owner and group.
    static std::tuple<mode_t, uid_t, gid_t> RightsTo(const std::string& path) {
        struct stat status {};
        EXPECT_EQ(::stat(path.c_str(), &status), 0);
        return {status.st_mode & 07777, status.st_uid, status.st_gid};
    }

    // In a process of its own.
    static pid_t Start(const std::function<int()>& body) {
        const pid_t child = ::fork();
        if (child == 0) ::_exit(body());
        return child;
    }
    static int Finish(pid_t child) {
        int status = 0;
        ::waitpid(child, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    // Gives this process a name space of users in which it is root and nobody else is; where no group is
    // wanted, there is none.
    static bool EnterNameSpace(bool withGroup) {
        const auto user = std::to_string(::geteuid());
        const auto group = std::to_string(::getegid());
        const auto write = [](const char* path, const std::string& text) {
            return static_cast<bool>(std::ofstream(path) << text << std::flush);
        };
        return ::unshare(CLONE_NEWUSER) == 0 && write("/proc/self/uid_map", "0 " + user + " 1") &&
               (!withGroup ||
                (write("/proc/self/setgroups", "deny") && write("/proc/self/gid_map", "0 " + group + " 1")));
    }

    TemporaryFolder folder_;
    const std::string table_ = Path("table.tbl");
    QtFiles files_;
};

TEST_F(FilesTest, KeepsEveryByteUnderEveryNameAndReadsNoMoreThanATableCanHold) {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte)
        bytes += static_cast<char>(byte);
    for (const auto& name : {std::string("Vorzündung 点火 🏍.tbl"), std::string(251, 'n') + ".tbl",
                             std::string("%1 \"quoted\" [*].tbl")})
        for (const auto& content : {bytes, std::string()}) {
            EXPECT_EQ(files_.Exists(Path(name)), content.empty()) << name;
            EXPECT_EQ(Save(Path(name), content), "");
            EXPECT_EQ(Content(Path(name)), content) << name;
        }
    EXPECT_EQ(FileCount(), 4) << "nothing but the files themselves is left";
    EXPECT_EQ(Save(table_, std::string(4194304, 'x')), "");
    EXPECT_EQ(Content(table_).size(), 4194304U);
    EXPECT_EQ(Save(table_, std::string(4194305, 'x')), "");
    EXPECT_EQ(FailureToRead(table_), "Cannot read " + table_ + ": It has more than 4194304 bytes.");
    EXPECT_EQ(files_.ProgramFolder(), fs::canonical("/proc/self/exe").parent_path().string() + "/");
}

TEST_F(FilesTest, ReadsAndReplacesRegularFilesAloneAndSaysWhatIsWrong) {
    ASSERT_EQ(::mkfifo(Path("pipe").c_str(), 0600), 0);
    fs::create_symlink("round.tbl", Path("round.tbl"));
    const std::string missing = "No such file or directory.";
    const std::string noFile = "It is not a file.";
    // Run by root, a save that went wrong would take the machine's own device away: it is read only.
    const std::tuple<std::string, std::string, std::string> cases[] = {
        {Path(""), noFile, "Is a directory."},
        {Path("pipe"), noFile, noFile},
        {"/dev/zero", noFile, ""},
        {Path("missing/table.tbl"), missing, missing},
        {"/proc/table.tbl", missing, missing},
        {Path("round.tbl"), "Too many levels of symbolic links.", "Too many levels of symbolic links."},
        {Path(std::string(256, 'n')), "File name too long.", "File name too long."}};
    for (const auto& [path, reading, writing] : cases) {
        SCOPED_TRACE(path);
        EXPECT_EQ(FailureToRead(path), "Cannot read " + path + ": " + reading);
        if (!writing.empty()) {
            EXPECT_EQ(Save(path), writing);
        }
    }
    EXPECT_EQ(FileCount(), 3);
}

TEST_F(FilesTest, KeepsLinksOwnersAndPermissions) {
    fs::create_symlink("table.tbl", Path("link.tbl"));
    fs::create_symlink("link.tbl", Path("link to link.tbl"));
    fs::create_symlink(Path("new.tbl"), Path("dangling.tbl"));
    fs::create_hard_link(table_, Path("other name.tbl"));
    EXPECT_EQ(Save(Path("link to link.tbl")), "");
    EXPECT_EQ(Content(table_), kNew);
    EXPECT_EQ(Content(Path("other name.tbl")), kOld);
    EXPECT_FALSE(files_.Exists(Path("dangling.tbl")));
    const auto before = ::umask(027);
    EXPECT_EQ(Save(Path("dangling.tbl")), "");
    ::umask(before);
    for (const auto* link : {"link.tbl", "link to link.tbl", "dangling.tbl"})
        EXPECT_TRUE(fs::is_symlink(Path(link))) << link;
    EXPECT_EQ(std::get<0>(RightsTo(Path("new.tbl"))), 0640U) << "as the umask leaves it";
    for (const mode_t mode : {0600U, 0755U, 0660U}) {
        ASSERT_EQ(::chmod(table_.c_str(), mode), 0);
        ASSERT_TRUE(::geteuid() != 0 || ::chown(table_.c_str(), 1234, 5678) == 0);
        const auto rights = RightsTo(table_);
        EXPECT_EQ(Save(table_), "");
        EXPECT_EQ(RightsTo(table_), rights);
    }
}

// In name spaces of users that know none of the file's owners, or its owner alone, and as an ordinary user
// who is not in the file's group: whoever may write a file can save it.
TEST_F(FilesTest, AGroupThatCannotBeKeptFailsNoSaveAndItsRightsGoToNoOther) {
    constexpr uid_t stranger = 1234;
    const uid_t self = ::geteuid();
    const auto enterNameSpace = [] { return EnterNameSpace(false); };
    const auto becomeStranger = [] { return ::setgid(stranger) == 0 && ::setuid(stranger) == 0; };
    const struct {
        const char* what;
        uid_t owner;
        mode_t before, after;
        std::function<bool()> become;
    } cases[] = {{"group unknown, its rights its own", self, 0660, 0600, enterNameSpace},
                 {"group unknown, its rights everyone's", self, 0664, 0644, enterNameSpace},
                 {"group unknown and kept out", self, 02604, 0604, enterNameSpace},
                 {"owner and group unknown", stranger, 0676, 0666, enterNameSpace},
                 {"another's group, its rights its own", stranger, 0660, 0600, becomeStranger},
                 {"another's group, its rights everyone's", stranger, 0664, 0644, becomeStranger}};
    fs::permissions(folder_.Path(), fs::perms(0777));
    for (const auto& one : cases) {
        if (self != 0 && one.owner != self) continue;
        SCOPED_TRACE(one.what);
        ASSERT_EQ(Save(table_, kOld), "");
        ASSERT_TRUE(self != 0 || ::chown(table_.c_str(), one.owner, 5678) == 0);
        ASSERT_EQ(::chmod(table_.c_str(), one.before), 0);
        const int outcome = Finish(Start([&] {
            if (!one.become()) return kSkipped;
            return Save(table_).empty() ? 0 : 1;
        }));
        if (outcome == kSkipped) GTEST_SKIP() << "no name space of users here";
        EXPECT_EQ(outcome, 0);
        EXPECT_EQ(Content(table_), kNew);
        EXPECT_EQ(std::get<0>(RightsTo(table_)), one.after);
    }
}

TEST_F(FilesTest, FollowsNoLinkThatAnybodyMayHaveLaid) {
    const std::string refused = "It is another user's link, in a folder that everyone may write to.";
    const uid_t self = ::geteuid();
    const struct {
        uid_t linkOwner, folderOwner;
        mode_t folderMode;
        std::string failure;
    } cases[] = {{self, self, 01777, ""},     {1234, self, 01777, refused}, {1234, 1234, 01777, ""},
                 {self, 1234, 01777, ""},     {1234, self, 0777, ""},       {1234, self, 01755, ""},
                 {1234, 2345, 01777, refused}};
    const auto link = Path("shared/link.tbl");
    for (const auto& one : cases) {
        if (self != 0 && (one.linkOwner != self || one.folderOwner != self)) continue;
        SCOPED_TRACE(std::to_string(one.linkOwner) + " in a folder of " + std::to_string(one.folderOwner));
        fs::create_directory(Path("shared"));
        fs::create_symlink("../table.tbl", link);
        fs::create_symlink("shared/link.tbl", Path("own link.tbl"));
        ASSERT_EQ(::lchown(link.c_str(), one.linkOwner, static_cast<gid_t>(-1)), 0);
        ASSERT_EQ(::chown(Path("shared").c_str(), one.folderOwner, static_cast<gid_t>(-1)), 0);
        ASSERT_EQ(::chmod(Path("shared").c_str(), one.folderMode), 0);
        for (const auto& path : {link, Path("own link.tbl")}) {
            EXPECT_EQ(Save(path), one.failure) << path;
            EXPECT_EQ(Content(table_), one.failure.empty() ? kNew : kOld) << path;
            ASSERT_EQ(Save(table_, kOld), "");
        }
        fs::remove_all(Path("shared"));
        fs::remove(Path("own link.tbl"));
    }
}

TEST_F(FilesTest, AnyByteMayBeTheLastThatFits) {
    const std::string small(400, 's');
    struct rlimit before {};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    std::signal(SIGXFSZ, SIG_IGN);
    for (rlim_t fits = 0; fits <= small.size(); ++fits) {
        const bool whole = fits == small.size();
        const struct rlimit limit { fits, before.rlim_max };
        ::setrlimit(RLIMIT_FSIZE, &limit);
        const auto failure = Save(table_, small);
        ::setrlimit(RLIMIT_FSIZE, &before);
        EXPECT_EQ(failure, whole ? "" : "File too large.") << fits;
        EXPECT_EQ(Content(table_), whole ? small : kOld) << fits;
        EXPECT_EQ(FileCount(), 1) << fits;
    }
}

// A disk of its own in a name space of its own, where the system lets us.
TEST_F(FilesTest, AFullDiskKeepsTheOldTable) {
    const int outcome = Finish(Start([&] {
        const auto disk = folder_.Path().c_str();
        if ((::geteuid() != 0 && !EnterNameSpace(true)) || ::unshare(CLONE_NEWNS) != 0 ||
            ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            ::mount("tmpfs", disk, "tmpfs", 0, "size=64k") != 0)
            return kSkipped;
        if (!Save(table_, kOld).empty()) return 1;
        // Old and new do not fit beside each other any more.
        std::ofstream(Path("other")) << kNew;
        if (Save(table_) != "No space left on device.") return 2;
        if (Content(table_) != kOld || FileCount() != 2) return 3;
        fs::remove(Path("other"));
        return Save(table_).empty() && Content(table_) == kNew ? 0 : 4;
    }));
    if (outcome == kSkipped) GTEST_SKIP() << "no disk can be mounted here";
    EXPECT_EQ(outcome, 0);
}

TEST_F(FilesTest, AFolderThatTakesNoFileKeepsTheOldTable) {
    fs::permissions(table_, fs::perms(0666));
    fs::permissions(folder_.Path(), fs::perms(0555));
    EXPECT_EQ(Finish(Start([&] {
                  if (::geteuid() == 0 && ::setuid(kNobody) != 0) return 1;
                  return Save(table_) == "Permission denied." ? 0 : 2;
              })),
              0);
    EXPECT_EQ(Content(table_), kOld);
}

TEST_F(FilesTest, TwoProgramsThatSaveAtOnceNeverMix) {
    std::vector<pid_t> programs;
    for (const auto* content : {&kOld, &kNew})
        programs.push_back(Start([this, content] {
            for (int turn = 0; turn < 50; ++turn)
                if (!Save(table_, *content).empty()) return 1;
            return 0;
        }));
    int status = -1;
    long looks = 0;
    for (; ::waitpid(programs.front(), &status, WNOHANG) == 0; ++looks) {
        const auto content = Content(table_);
        ASSERT_TRUE(content == kOld || content == kNew) << content.size();
    }
    EXPECT_EQ(status, 0);
    EXPECT_EQ(Finish(programs.back()), 0);
    EXPECT_GT(looks, 0);
    EXPECT_EQ(FileCount(), 1);
}

TEST_F(FilesTest, KilledAtAnyMomentItIsOldOrNew) {
    const auto save = [&](int times) {
        return Start([this, times] {
            for (int turn = 0; turn < times; ++turn)
                Save(table_, turn % 2 == 0 ? kNew : kOld);
            return 0;
        });
    };
    const auto start = std::chrono::steady_clock::now();
    Finish(save(4));
    const auto fourSaves = std::chrono::steady_clock::now() - start;
    std::map<std::string, int> seen;
    for (int kill = 0; kill < 300; ++kill) {
        const pid_t saver = save(1000);
        std::this_thread::sleep_for(fourSaves * kill / 300);
        ::kill(saver, SIGKILL);
        Finish(saver);
        ++seen[Content(table_)];
    }
    EXPECT_TRUE(seen.size() == 2 && seen.contains(kOld) && seen.contains(kNew));
    EXPECT_EQ(Save(table_), "") << "what a killed save left behind is in nobody's way";
    EXPECT_EQ(Content(table_), kNew);
}

}  // namespace
}  // namespace rv52::test
