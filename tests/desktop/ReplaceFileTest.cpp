#include "platform/Failure.h"
#include "platform/linux/ReplaceFile.h"
#include "support/TemporaryFolder.h"

#include <csignal>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <sched.h>
#include <sstream>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace rv52::test {
namespace {

namespace fs = std::filesystem;

constexpr int kSkipped = 77;
// Longer than a page, and of different lengths, so that a mixture shows.
const std::string kOld(20'000, 'o');
const std::string kNew(30'001, 'n');

std::string Content(const fs::path& path) {
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
}

bool OldOrNew(const std::string& content) {
    return content == kOld || content == kNew;
}

class ReplaceFileTest : public testing::Test {
 protected:
    ReplaceFileTest() { ReplaceFile(path_, kOld); }

    // Why the new content could not be saved; empty when it was.
    std::string Save(const std::string& content = kNew) const {
        try {
            ReplaceFile(path_, content);
        } catch (const FileFailure& failure) {
            return failure.what();
        }
        return {};
    }

    std::ptrdiff_t FileCount() const {
        const fs::directory_iterator all(folder_.Path());
        return std::distance(begin(all), end(all));
    }

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

    TemporaryFolder folder_;
    const std::string path_ = folder_.Path() / "table.tbl";
};

TEST_F(ReplaceFileTest, AnyByteMayBeTheLastThatFits) {
    const std::string small(400, 's');
    struct rlimit before {};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    for (rlim_t fits = 0; fits <= small.size(); ++fits) {
        const bool whole = fits == small.size();
        const struct rlimit limit { fits, before.rlim_max };
        ::setrlimit(RLIMIT_FSIZE, &limit);
        const auto failure = Save(small);
        ::setrlimit(RLIMIT_FSIZE, &before);
        EXPECT_EQ(failure, whole ? "" : "Cannot write " + path_ + ": File too large.") << fits;
        EXPECT_EQ(Content(path_), whole ? small : kOld) << fits;
        EXPECT_EQ(FileCount(), 1) << fits;
    }
    std::signal(SIGXFSZ, handler);
}

// A disk of its own in a name space of its own, where the system lets us.
TEST_F(ReplaceFileTest, AFullDiskKeepsTheOldTable) {
    const int outcome = Finish(Start([&] {
        const auto disk = folder_.Path().c_str();
        if (::unshare(::geteuid() == 0 ? CLONE_NEWNS : CLONE_NEWNS | CLONE_NEWUSER) != 0 ||
            ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            ::mount("tmpfs", disk, "tmpfs", 0, "size=64k") != 0)
            return kSkipped;
        if (!Save(kOld).empty()) return 1;
        // Old and new do not fit beside each other any more.
        std::ofstream(folder_.Path() / "other") << std::string(30'000, 'x');
        if (Save() != "Cannot write " + path_ + ": No space left on device.") return 2;
        if (Content(path_) != kOld || FileCount() != 2) return 3;
        fs::remove(folder_.Path() / "other");
        return Save().empty() && Content(path_) == kNew ? 0 : 4;
    }));
    if (outcome == kSkipped) GTEST_SKIP() << "no disk can be mounted here";
    EXPECT_EQ(outcome, 0);
}

TEST_F(ReplaceFileTest, AFolderThatTakesNoFileKeepsTheOldTable) {
    fs::permissions(path_, fs::perms(0666));
    fs::permissions(folder_.Path(), fs::perms(0555));
    EXPECT_EQ(Finish(Start([&] {
                  constexpr uid_t nobody = 65534;  // root may write anywhere
                  if (::geteuid() == 0 && ::setuid(nobody) != 0) return 1;
                  return Save() == "Cannot write " + path_ + ": Permission denied." ? 0 : 2;
              })),
              0);
    EXPECT_EQ(Content(path_), kOld);
    fs::permissions(folder_.Path(), fs::perms(0755));
    fs::remove_all(folder_.Path());
    EXPECT_EQ(Save(), "Cannot write " + path_ + ": No such file or directory.");
    EXPECT_FALSE(fs::exists(folder_.Path()));
}

TEST_F(ReplaceFileTest, AHardLinkKeepsTheOldTableUnderItsName) {
    const auto other = folder_.Path() / "other name.tbl";
    fs::create_hard_link(path_, other);
    EXPECT_EQ(Save(), "");
    EXPECT_EQ(Content(path_), kNew);
    EXPECT_EQ(Content(other), kOld);
    EXPECT_EQ(fs::hard_link_count(path_), 1U);
}

TEST_F(ReplaceFileTest, TwoProgramsThatSaveAtOnceNeverMix) {
    std::vector<pid_t> programs;
    for (const auto* content : {&kOld, &kNew})
        programs.push_back(Start([&, content] {
            for (int turn = 0; turn < 50; ++turn)
                if (!Save(*content).empty()) return 1;
            return 0;
        }));
    int status = 0;
    long looks = 0;
    for (; ::waitpid(programs.front(), &status, WNOHANG) == 0; ++looks)
        ASSERT_TRUE(OldOrNew(Content(path_)));
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    EXPECT_EQ(Finish(programs.back()), 0);
    EXPECT_GT(looks, 0);
    EXPECT_EQ(FileCount(), 1);
    // Changed, removed and replaced by something else between two saves.
    std::ofstream(path_) << "by another program";
    EXPECT_EQ(Save(), "");
    fs::remove(path_);
    EXPECT_EQ(Save(), "");
    EXPECT_EQ(Content(path_), kNew);
    fs::remove(path_);
    fs::create_directory(path_);
    EXPECT_EQ(Save(), "Cannot write " + path_ + ": Is a directory.");
}

TEST_F(ReplaceFileTest, KilledAtAnyMomentItIsOldOrNew) {
    constexpr int kKills = 300;
    bool sawOld = false;
    bool sawNew = false;
    for (int kill = 0; kill < kKills; ++kill) {
        const pid_t saver = Start([&] {
            for (bool turn = false;; turn = !turn)
                Save(turn ? kOld : kNew);
            return 0;
        });
        ::usleep(static_cast<useconds_t>(kill * 37 % 4000));
        ::kill(saver, SIGKILL);
        Finish(saver);
        const auto content = Content(path_);
        ASSERT_TRUE(OldOrNew(content)) << "after kill " << kill << ": " << content.size() << " bytes";
        (content == kOld ? sawOld : sawNew) = true;
    }
    EXPECT_TRUE(sawOld && sawNew);
    EXPECT_EQ(Save(), "") << "what a killed save left behind is in nobody's way";
    EXPECT_EQ(Content(path_), kNew);
}

}  // namespace
}  // namespace rv52::test
