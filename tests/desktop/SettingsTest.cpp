#include "platform/SettingsText.h"
#include "platform/qt/QtSettings.h"
#include "support/FailureOf.h"
#include "support/TemporaryFolder.h"

#include <clocale>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace rv52::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* kSection = "Properties";
constexpr const char* kKey = "CommPort";

class SettingsTest : public testing::Test {
 protected:
    SettingsTest() {
        std::setlocale(LC_MESSAGES, "C");
        ::setenv("XDG_CONFIG_HOME", folder_.Path().c_str(), 1);
    }
    ~SettingsTest() override { ::setenv("XDG_CONFIG_HOME", before_.c_str(), 1); }

    std::string Get() const { return settings_.Get(kSection, kKey, "absent"); }
    std::string Content() const {
        std::ifstream file(path_, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    const std::string before_ = std::getenv("XDG_CONFIG_HOME");
    TemporaryFolder folder_;
    const std::string path_ = (folder_.Path() / "Corvane_RV52_Main.conf").string();
    QtSettings settings_;
};

TEST_F(SettingsTest, KeepsThePortAmongWhateverElseStandsThere) {
    const struct {
        std::string before, read, after;
    } cases[] = {
        {"", "absent", "[Properties]\nCommPort=33\n"},
        {"[Properties]\nCommPort=12\n", "12", "[Properties]\nCommPort=33\n"},
        {"[Properties]\r\n CommPort = \"12\" ", "12", "[Properties]\nCommPort=33\n"},
        {"; mine\n[Other]\nCommPort=5\n\n[Properties]\nNote=a=b", "absent",
         "; mine\n[Other]\nCommPort=5\n\n[Properties]\nCommPort=33\nNote=a=b\n"},
        {"CommPort=5\n[ Properties ]\n#CommPort=6\nCommPort=7\nCommPort=8\n[Properties]\nCommPort=9\n", "9",
         "CommPort=5\n[ Properties ]\nCommPort=33\n#CommPort=6\n[Properties]\n"}};
    EXPECT_EQ(Get(), "absent") << "there is no file";
    for (const auto& one : cases) {
        SCOPED_TRACE(one.before);
        std::ofstream(path_, std::ios::binary) << one.before;
        EXPECT_EQ(Get(), one.read);
        settings_.Set(kSection, kKey, "33");
        EXPECT_EQ(Content(), one.after);
        EXPECT_EQ(Get(), "33");
    }
    fs::remove_all(folder_.Path());
    settings_.Set(kSection, kKey, "34");
    EXPECT_EQ(Get(), "34") << "the folder is made";
}

TEST_F(SettingsTest, TakesWhatCannotBeReadForNoAbsentOne) {
    const auto start = "Cannot read " + path_ + ": ";
    const auto failure = [&] { return FailureOf([&] { Get(); }); };
    const auto storing = [&] { return FailureOf([&] { settings_.Set(kSection, kKey, "33"); }); };
    for (const auto& text :
         {std::string(80, '\0'), std::string("[Properties]\nCommPort=12\nComm"),
          std::string("[Properties\nCommPort=12"), std::string("=12"), std::string("\x89PNG\r\n")}) {
        std::ofstream(path_, std::ios::binary) << text;
        EXPECT_EQ(failure(), start + "It is not a settings file.") << text;
        EXPECT_EQ(storing(), "") << text;
        EXPECT_EQ(Content(), "[Properties]\nCommPort=33\n") << text;
    }
    const auto cannot = "The setting cannot be stored in " + path_ + ".";
    fs::remove(path_);
    ASSERT_EQ(::mkfifo(path_.c_str(), 0600), 0);
    EXPECT_EQ(failure(), start + "It is not a file.");
    EXPECT_EQ(storing(), cannot);
    fs::remove(path_);
    // A file of one's own without the right to read it, and a folder that may not be looked into. Root may.
    const auto asNobody = [&] {
        const pid_t child = ::fork();
        if (child == 0) {
            if (::geteuid() == 0 && ::setuid(65534) != 0) ::_exit(1);
            ::_exit(failure() == start + "Permission denied." && storing() == cannot ? 0 : 2);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    };
    std::ofstream(path_) << "[Properties]\nCommPort=12\n";
    fs::permissions(folder_.Path(), fs::perms(0755));
    fs::permissions(path_, fs::perms::none);
    EXPECT_EQ(asNobody(), 0);
    fs::permissions(path_, fs::perms(0644));
    fs::permissions(folder_.Path(), fs::perms::none);
    EXPECT_EQ(asNobody(), 0);
    fs::permissions(folder_.Path(), fs::perms(0755));
}

TEST_F(SettingsTest, TwoProgramsThatStoreAtOnceLeaveAWholeFileAndNothingElse) {
    settings_.Set(kSection, kKey, "1");
    const std::string ports[] = {"1", "255"};
    std::vector<pid_t> programs;
    for (const auto& port : ports) {
        programs.push_back(::fork());
        if (programs.back() == 0)
            for (;;)
                if (!FailureOf([&] { settings_.Set(kSection, kKey, port); }).empty()) ::_exit(1);
    }
    int seen[2] = {};
    for (int look = 0; look < 100'000 && (look < 500 || seen[0] == 0 || seen[1] == 0); ++look) {
        const auto content = Content();
        ASSERT_TRUE(content == "[Properties]\nCommPort=1\n" || content == "[Properties]\nCommPort=255\n")
            << content;
        ++seen[content.size() > 24 ? 1 : 0];
    }
    EXPECT_TRUE(seen[0] > 0 && seen[1] > 0);
    for (const pid_t program : programs) {
        int status = 0;
        ASSERT_EQ(::waitpid(program, &status, WNOHANG), 0) << "one of them could not store";
        ::kill(program, SIGKILL);
        ::waitpid(program, &status, 0);
    }
    for (const auto& entry : fs::directory_iterator(folder_.Path()))
        EXPECT_TRUE(entry.path() == path_ || entry.path().extension() == ".tmp") << entry.path();
}

}  // namespace
}  // namespace rv52::test
