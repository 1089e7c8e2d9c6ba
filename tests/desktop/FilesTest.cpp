#include "platform/Failure.h"
#include "platform/qt/QtFiles.h"
#include "platform/qt/Text.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <clocale>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace rv52 {
namespace {

namespace fs = std::filesystem;

class FilesTest : public testing::Test {
 protected:
    // The system's reasons in English, whatever the desktop's language.
    void SetUp() override { std::setlocale(LC_MESSAGES, "C"); }

    std::string Path(const std::string& name) const { return FromQt(folder_.path()) + "/" + name; }

    std::string Make(const std::string& name, const std::string& content) const {
        std::ofstream(Path(name), std::ios::binary) << content;
        return Path(name);
    }

    // What is wrong, in the words that the user reads.
    static std::string FailureOf(const std::function<void()>& act) {
        try {
            act();
        } catch (const FileFailure& failure) {
            return failure.what();
        }
        return "nothing";
    }
    std::string ReadFailure(const std::string& path) const {
        return FailureOf([&] { files_.ReadWhole(path); });
    }
    std::string WriteFailure(const std::string& path) {
        return FailureOf([&] { files_.ReplaceWhole(path, "new"); });
    }

    std::size_t FileCount() const {
        const fs::directory_iterator all(FromQt(folder_.path()));
        return static_cast<std::size_t>(std::distance(begin(all), end(all)));
    }

    static struct stat StatusOf(const std::string& path) {
        struct stat status {};
        EXPECT_EQ(::lstat(path.c_str(), &status), 0);
        return status;
    }

    QTemporaryDir folder_;
    QtFiles files_;
};

TEST_F(FilesTest, KeepsEveryByteUnderEveryName) {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte)
        bytes += static_cast<char>(byte);
    for (const auto& name : {std::string("a table.tbl"), std::string("Vorzündung 点火 🏍.tbl"),
                             std::string(251, 'n') + ".tbl", std::string("%1 \"quoted\" [*].tbl")}) {
        const auto path = Path(name);
        EXPECT_FALSE(files_.Exists(path));
        files_.ReplaceWhole(path, "a longer text than all that follows it" + bytes);
        files_.ReplaceWhole(path, bytes);
        EXPECT_TRUE(files_.Exists(path));
        EXPECT_EQ(files_.ReadWhole(path), bytes);
    }
    files_.ReplaceWhole(Path("empty"), "");
    EXPECT_EQ(files_.ReadWhole(Path("empty")), "");
    EXPECT_EQ(FileCount(), 5U) << "nothing but the files themselves is left";
}

TEST_F(FilesTest, ReadsNoMoreThanATableFileCanHold) {
    EXPECT_EQ(files_.ReadWhole(Make("largest", std::string(Files::kLargest, 'x'))).size(),
              static_cast<std::size_t>(Files::kLargest));
    EXPECT_NE(ReadFailure(Make("larger", std::string(Files::kLargest + 1, 'x'))).find("4194304 bytes"),
              std::string::npos);
}

TEST_F(FilesTest, ReadsRegularFilesAloneAndSaysWhatIsWrong) {
    ASSERT_EQ(::mkfifo(Path("pipe").c_str(), 0600), 0);
    const struct {
        std::string path;
        const char* reason;
    } cases[] = {{Path("missing"), "No such file or directory"},
                 {FromQt(folder_.path()), "not a file"},
                 {Path("pipe"), "not a file"},
                 {"/dev/zero", "not a file"}};
    for (const auto& one : cases) {
        const auto failure = ReadFailure(one.path);
        EXPECT_NE(failure.find(one.path), std::string::npos) << failure;
        EXPECT_NE(failure.find(one.reason), std::string::npos) << failure;
    }
}

TEST_F(FilesTest, KeepsALinkALink) {
    fs::create_directory(Path("elsewhere"));
    Make("elsewhere/table.tbl", "old");
    fs::create_symlink("elsewhere/table.tbl", Path("link.tbl"));
    fs::create_symlink("link.tbl", Path("link to link.tbl"));
    fs::create_symlink(Path("elsewhere/new.tbl"), Path("dangling.tbl"));

    files_.ReplaceWhole(Path("link to link.tbl"), "new");
    EXPECT_EQ(files_.ReadWhole(Path("elsewhere/table.tbl")), "new");
    EXPECT_TRUE(fs::is_symlink(Path("link.tbl")) && fs::is_symlink(Path("link to link.tbl")));

    EXPECT_FALSE(files_.Exists(Path("dangling.tbl")));
    files_.ReplaceWhole(Path("dangling.tbl"), "created");
    EXPECT_EQ(files_.ReadWhole(Path("elsewhere/new.tbl")), "created");
    EXPECT_TRUE(fs::is_symlink(Path("dangling.tbl")));

    fs::create_symlink("round.tbl", Path("round.tbl"));
    EXPECT_NE(WriteFailure(Path("round.tbl")).find("round.tbl: Too many levels"), std::string::npos);
}

TEST_F(FilesTest, KeepsPermissionsAndGivesNewFilesTheUsualOnes) {
    for (const mode_t mode : {0600U, 0644U, 0755U, 0660U}) {
        const auto path = Make("table.tbl", "old");
        ASSERT_EQ(::chmod(path.c_str(), mode), 0);
        files_.ReplaceWhole(path, "new");
        EXPECT_EQ(StatusOf(path).st_mode & 07777, mode);
    }
    const auto before = ::umask(027);
    files_.ReplaceWhole(Path("fresh.tbl"), "new");
    ::umask(before);
    EXPECT_EQ(StatusOf(Path("fresh.tbl")).st_mode & 07777, 0640U);

    if (::geteuid() == 0) {
        const auto path = Make("others.tbl", "old");
        ASSERT_EQ(::chown(path.c_str(), 1234, 5678), 0);
        files_.ReplaceWhole(path, "new");
        EXPECT_EQ(StatusOf(path).st_uid, 1234U);
        EXPECT_EQ(StatusOf(path).st_gid, 5678U);
    }
}

TEST_F(FilesTest, RefusesToReplaceWhatIsNoWritableFile) {
    ASSERT_EQ(::mkfifo(Path("pipe").c_str(), 0600), 0);
    fs::create_directory(Path("folder"));
    const struct {
        std::string path;
        const char* reason;
    } cases[] = {{Path("folder"), "Is a directory"},
                 {Path("pipe"), "It is not a file"},
                 {"/dev/null", "It is not a file"},
                 {Path("missing/table.tbl"), "No such file or directory"},
                 {Path(std::string(256, 'n')), "File name too long"},
                 // The kernel's folder takes no files, not even from root.
                 {"/proc/table.tbl", ""}};
    for (const auto& [path, reason] : cases)
        EXPECT_TRUE(WriteFailure(path).starts_with("Cannot write " + path + ": " + reason)) << path;
    EXPECT_TRUE(fs::is_fifo(Path("pipe")));
    EXPECT_EQ(FileCount(), 2U);
}

TEST_F(FilesTest, FindsTheProgramsOwnFolder) {
    EXPECT_TRUE(files_.ProgramFolder().ends_with("/"));
    EXPECT_EQ(files_.ProgramFolder(), fs::canonical("/proc/self/exe").parent_path().string() + "/");
}

}  // namespace
}  // namespace rv52
