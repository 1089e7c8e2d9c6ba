#include "module/EepromMap.h"
#include "support/TemporaryFolder.h"
#include "support/WaitsForSignals.h"

#include <QProcess>
#include <QProcessEnvironment>

#include <csignal>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

namespace rv52::test {
namespace {

struct Outcome {
    int status;
    std::string out;
    std::string err;
};

// The tool as a shell runs it, in a folder of its own, against the simulator on its pseudo-terminal.
class CliTest : public testing::Test {
 protected:
    // A module whose memory is the file module.bin in the folder.
    void Connect(const char* type, const QStringList& faults = {}) {
        Disconnect();
        QStringList arguments{"--type", type, "--image", QString::fromStdString(Path("module.bin"))};
        for (const auto& fault : faults)
            arguments << "--fault" << fault;
        simulator_.start(QStringLiteral(RV52_BIN "/rv52_simulator"), arguments);
        while (!simulator_.canReadLine())
            ASSERT_TRUE(simulator_.waitForReadyRead(5000));
        device_ = QString::fromLatin1(simulator_.readLine().trimmed());
    }
    void Disconnect() {
        simulator_.terminate();
        simulator_.waitForFinished();
    }
    void TearDown() override { Disconnect(); }

    void Start(QProcess& tool, const QStringList& arguments) const {
        tool.setWorkingDirectory(QString::fromStdString(folder_.Path().string()));
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), tool.workingDirectory());
        tool.setProcessEnvironment(environment);
        tool.start(QStringLiteral(RV52_BIN "/rv52"), arguments);
    }
    Outcome Run(const QStringList& arguments, const std::string& input = {}) const {
        QProcess tool;
        Start(tool, arguments);
        tool.write(input.data(), static_cast<qint64>(input.size()));
        tool.closeWriteChannel();
        tool.waitForFinished(30000);
        return {tool.exitCode(), tool.readAllStandardOutput().toStdString(),
                tool.readAllStandardError().toStdString()};
    }
    Outcome OnModule(QStringList arguments) const {
        return Run(QStringList{"--device", device_} + arguments);
    }

    std::string Path(const std::string& name) const { return (folder_.Path() / name).string(); }
    std::string Content(const std::string& name) const {
        std::ifstream file(Path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    void Write(const std::string& name, const std::string& content) const {
        std::ofstream(Path(name), std::ios::binary) << content;
    }
    void ExpectDone(const Outcome& outcome) const { EXPECT_EQ(outcome.status, 0) << outcome.err; }

    TemporaryFolder folder_;
    QProcess simulator_;
    QString device_;
};

TEST_F(CliTest, LinksNoLibraryOfWindows) {
    QProcess ldd;
    ldd.start(QStringLiteral("ldd"), {QStringLiteral(RV52_BIN "/rv52")});
    ASSERT_TRUE(ldd.waitForFinished());
    const auto libraries = ldd.readAll();
    EXPECT_TRUE(libraries.contains("libQt6Core"));
    for (const auto* windows : {"Widgets", "Qt6Gui", "libxcb", "libX11", "libcups"})
        EXPECT_FALSE(libraries.contains(windows)) << windows;
}

TEST_F(CliTest, MakesChangesComparesAndConvertsFilesExactly) {
    for (const char* type : {"RACE", "EX"}) {
        SCOPED_TRACE(type);
        ExpectDone(Run({"new", type, "--timing", "4", "--slope", "7", "a.tbl"}));
        ExpectDone(Run({"modify", "a.tbl", "--cells", "3000..3500,28..30", "--by=-1", "-o", "b.tbl"}));
        const auto changed = Run({"diff", "a.tbl", "b.tbl"});
        EXPECT_EQ(changed.status, 1);
        EXPECT_EQ(std::ranges::count(changed.out, '\n'), 4) << changed.out;
        EXPECT_NE(changed.out.find("RPM 3000, MAP 28: "), std::string::npos);

        ExpectDone(Run({"export", "a.tbl", "a.csv"}));
        ExpectDone(Run({"import", "a.csv", "c.tbl"}));
        EXPECT_EQ(Content("c.tbl"), Content("a.tbl"));
        // As a spreadsheet of another language parts it, through a pipe.
        auto parted = Content("a.csv");
        std::ranges::replace(parted, ',', ';');
        EXPECT_EQ(Run({"import", "-", "-"}, parted).out, Content("a.tbl"));
        EXPECT_EQ(Run({"export", "-", "-"}, Content("a.tbl")).out, Content("a.csv"));
        EXPECT_EQ(Run({"show", "a.tbl", "--csv"}).out, Content("a.csv"));
        EXPECT_EQ(Run({"check", "a.tbl"}).out, "a.tbl: good\n");
        EXPECT_EQ(Run({"modify", "a.tbl", "--cells", "3000..3500,30", "--by=+99", "-o", "c.tbl"}).err,
                  "rv52: 2 cells changed, 2 of them held at a limit.\n");
        EXPECT_EQ(Run({"diff", "a.tbl", "b.tbl", "--json"}).out.find("\"first\": \""), std::string::npos);
        std::filesystem::remove(Path("c.tbl"));
    }
}

TEST_F(CliTest, RefusesWithItsStatusAndOneLine) {
    ExpectDone(Run({"new", "RACE", "--timing", "5", "--slope", "5", "a.tbl"}));
    ExpectDone(Run({"export", "a.tbl", "a.csv"}));
    const auto csv = Content("a.csv");
    const auto with = [&](std::string_view was, std::string_view now) {
        auto changed = csv;
        return changed.replace(changed.find(was), was.size(), now);
    };
    Write("text.csv", with("\r\n18,", "\r\n18,x"));
    Write("high.csv", with("\r\n16,", "\r\n16,4"));
    Write("label.csv", with("\r\n22,", "\r\n23,"));
    Write("narrow.csv", with(",7500\r\n", "\r\n"));
    Write("short.csv", csv.substr(0, csv.find("\r\n20,") + 2));
    Write("blank.csv", "\n\n" + Content("text.csv"));
    ExpectDone(Run({"new", "EX", "--timing", "5", "--slope", "5", "ex.tbl"}));
    ExpectDone(Run({"export", "ex.tbl", "ex.csv"}));
    auto low = Content("ex.csv");
    Write("low.csv", low.replace(low.find("\r\n18,") + 5, 0, "-"));
    Write("broken.tbl", "no table");
    const std::tuple<QStringList, int, const char*> cases[] = {
        {{}, 2, "rv52 --help"},
        {{"frobnicate", "--yes"}, 2, "\"frobnicate\" is no command"},
        {{"show", ""}, 2, "empty"},
        {{"--device", "", "id"}, 2, "empty"},
        {{"upload", "a.tbl", "--yes", "--backup", ""}, 2, "empty"},
        {{"upload", "a.tbl", "--backup", "--yes"}, 2, "is an option"},
        {{"download", "x.tbl", "--image", "./x.tbl"}, 2, "cannot both be"},
        {{"modify", "a.tbl", "--cells", "3000,30", "--by=-1,5"}, 2, "no change"},
        {{"modify", "a.tbl", "--cells", "3000,30", "--by=1O"}, 2, "no change"},
        {{"modify", "a.tbl", "--cells", "3000,30", "--by=5-10"}, 2, "no change"},
        {{"--device", "id"}, 2, "a command is required"},
        {{"--simulate", "foo", "id"}, 2, "foo is neither RACE nor EX"},
        {{"--port", "256", "id"}, 2, "255"},
        {{"--port", "1", "--device", "/dev/null", "id"}, 2, "excludes"},
        {{"new", "EX", "--timing", "6", "--slope", "5", "x.tbl"}, 2, "at most"},
        {{"modify", "a.tbl", "--cells", "3000..x,30", "--by=1"}, 2, "range of cells"},
        {{"modify", "a.tbl", "--cells", "3100..3200,30", "--by=1"}, 2, "no cell"},
        {{"modify", "a.tbl", "--cells", "3000,30", "--by=more"}, 2, "no change"},
        {{"upload", "a.tbl"}, 2, "--yes"},
        {{"verify", "module"}, 2, "./module"},
        {{"upload", "a.tbl", "--yes", "--backup", "./a.tbl"}, 2, "would overwrite a.tbl"},
        {{"vin", "TOO SHORT", "--yes"}, 2, "17 characters"},
        {{"show", "missing.tbl"}, 3, "missing.tbl"},
        {{"show", "broken.tbl"}, 3, "Error loading broken.tbl"},
        {{"export", "a.tbl", "/nowhere/a.csv"}, 3, "/nowhere/a.csv"},
        {{"import", "text.csv", "x.tbl"}, 3, "text.csv: line 3, column 2: \"x"},
        {{"import", "high.csv", "x.tbl"}, 3, "high.csv: line 2, column 2: "},
        {{"import", "label.csv", "x.tbl"}, 3, "line 5, column 1: \"23\", where 22 belongs"},
        {{"import", "narrow.csv", "x.tbl"}, 3, "line 1, column 17: 16 columns"},
        {{"import", "short.csv", "x.tbl"}, 3, "2 rows"},
        {{"import", "blank.csv", "x.tbl"}, 3, "line 5, column 2: "},
        {{"import", "low.csv", "x.tbl"}, 3, "0 to"},
        {{"check", "a.tbl", "broken.tbl"}, 1, ""},
        {{"check", "missing.tbl", "broken.tbl"}, 3, ""},
        {{"--device", "/dev/no-such", "id"}, 4, "the device is not there"},
    };
    const auto before = Content("a.tbl");
    for (const auto& [arguments, status, says] : cases) {
        SCOPED_TRACE(arguments.join(QLatin1Char(' ')).toStdString());
        const auto outcome = Run(arguments);
        EXPECT_EQ(outcome.status, status);
        EXPECT_NE(outcome.err.find(says), std::string::npos) << outcome.err;
        EXPECT_LE(std::ranges::count(outcome.err, '\n'), 1) << outcome.err;
        EXPECT_FALSE(std::filesystem::exists(Path("x.tbl")));
    }
    EXPECT_EQ(Content("a.tbl"), before);
    auto cut = before;
    Write("cut.tbl", cut.replace(cut.find("    26 "), 7, "    27 "));
    EXPECT_EQ(Run({"check", "missing.tbl", "cut.tbl", "a.tbl"}).out,
              "missing.tbl: Cannot read missing.tbl: No such file or directory.\n"
              "cut.tbl: Error loading cut.tbl: line 5 is not what belongs there\n"
              "a.tbl: good\n");
    // Flags that a file does not state are nobody else's, and check tells of them.
    auto parameters = before;
    parameters.replace(parameters.find("!TachEnableFlag: False"), 22, "!RPMLimit: banana");
    Write("parameters.tbl", parameters);
    EXPECT_EQ(Run({"check", "parameters.tbl"}).out,
              "parameters.tbl: line 20: RPMLimit \"banana\" is read as 3000\n"
              "parameters.tbl: TachEnableFlag is not stated, and read as False\n");
    Write("flags.tbl", parameters.replace(parameters.find("!RPMLimit: banana"), 17, "!TachEnableFlag: True"));
    Write("noflags.tbl", parameters.substr(0, parameters.find("!Module")));
    EXPECT_EQ(Run({"diff", "noflags.tbl", "flags.tbl"}).status, 1);
    EXPECT_EQ(Run({"diff", "flags.tbl", "noflags.tbl"}).status, 1);
    // A port that is not the user's may be another machine's.
    Write("Corvane_RV52_Main.conf", "no settings");
    EXPECT_EQ(Run({"id"}).status, 3);
    std::filesystem::remove(Path("Corvane_RV52_Main.conf"));
}

// The four flag bits that a file does not keep come from the backup, or become 0.
TEST_F(CliTest, BacksUpProgramsVerifiesAndGoesBackByteForByte) {
    constexpr int flags = EepromMap::kFlags + kImageStart.value;
    Connect("RACE");
    Disconnect();
    auto image = Content("module.bin");
    constexpr int unknown = 0x36;
    image[flags] = static_cast<char>(image[flags] | unknown);
    Write("module.bin", image);
    Connect("RACE");
    ExpectDone(OnModule({"download", "first.tbl", "--image", "first.bin"}));
    EXPECT_EQ(Content("first.bin").substr(0, 128), image.substr(kImageStart.value, 128));
    ExpectDone(Run({"modify", "first.tbl", "--cells", "3000..5000,30", "--by=-1", "-o", "new.tbl"}));
    EXPECT_EQ(OnModule({"verify", "new.tbl"}).status, 1);
    EXPECT_EQ(OnModule({"diff", "first.tbl", "module"}).status, 0);
    // Against a module a file is what the module would keep of it.
    ExpectDone(Run({"modify", "first.tbl", "--cells", "3000,30", "--by=+0.02", "-o", "close.tbl"}));
    EXPECT_EQ(Run({"diff", "first.tbl", "close.tbl"}).status, 1);
    EXPECT_EQ(OnModule({"diff", "module", "close.tbl"}).status, OnModule({"verify", "close.tbl"}).status);
    EXPECT_EQ(Run({"--simulate", "EX", "diff", "module", "module"}).status, 0);
    ExpectDone(OnModule({"upload", "new.tbl", "--yes", "--backup", "back.tbl"}));
    EXPECT_EQ(Content("back.tbl"), Content("first.tbl"));
    ExpectDone(OnModule({"verify", "new.tbl"}));
    EXPECT_EQ(OnModule({"verify", "first.tbl"}).status, 1);
    ExpectDone(OnModule({"vin", "1CVRV52A0SM000099", "--yes"}));
    EXPECT_EQ(OnModule({"vin"}).out, "1CVRV52A0SM000099\n");
    const auto refused = OnModule({"upload", "first.tbl", "--yes", "--backup", "back.tbl"});
    EXPECT_EQ(refused.status, 3);
    EXPECT_NE(refused.err.find("Back up to another name"), std::string::npos) << refused.err;
    EXPECT_EQ(Content("back.tbl"), Content("first.tbl"));
    ExpectDone(OnModule({"verify", "new.tbl"}));
    ExpectDone(OnModule({"upload", "back.tbl", "--yes", "--backup", "again.tbl"}));
    Disconnect();
    const auto after = Content("module.bin");
    EXPECT_EQ(after.substr(kImageStart.value, 136), image.substr(kImageStart.value, 136))
        << "all is as it was";
    Connect("RACE");
    ExpectDone(OnModule({"upload", "back.tbl", "--yes"}));
    Disconnect();
    EXPECT_EQ(Content("module.bin")[flags] & unknown, 0);
}

TEST_F(CliTest, ABadLineNeverLooksLikeSuccess) {
    ExpectDone(Run({"new", "RACE", "--timing", "5", "--slope", "5", "a.tbl"}));
    const std::tuple<const char*, const char*, QStringList, int> cases[] = {
        {"RACE", "silent", {"id"}, 5},
        {"RACE", "silent=40", {"download", "x.tbl"}, 5},
        {"RACE", "hang-up=60", {"download", "x.tbl"}, 5},
        {"RACE", "silent", {"upload", "a.tbl", "--yes"}, 5},
        {"RACE", "silent=40", {"upload", "a.tbl", "--yes", "--backup", "x.tbl"}, 5},
        {"RACE", "refused-write=30", {"upload", "a.tbl", "--yes"}, 6},
        {"RACE", "hang-up=200", {"upload", "a.tbl", "--yes"}, 6},
        {"RACE", "not-stored=30", {"upload", "a.tbl", "--yes"}, 7},
        {"RACE", "flipped-bit=30", {"upload", "a.tbl", "--yes"}, 7},
        {"RACE", "flipped-bit=30", {"verify", "module.tbl"}, 1},
        {"RACE", "not-stored=17", {"vin", "1CVRV52A0SM000098", "--yes"}, 7},
        {"EX", "", {"upload", "a.tbl", "--yes", "--backup", "x.tbl"}, 3},
        {"RACE", "flipped-bit=3", {"upload", "a.tbl", "--yes", "--backup", "x.tbl"}, 5},
        {"RACE", "flipped-identification=1", {"upload", "a.tbl", "--yes", "--backup", "x.tbl"}, 5},
    };
    Connect("RACE");
    ExpectDone(OnModule({"download", "module.tbl"}));
    for (const auto& [type, fault, command, status] : cases) {
        SCOPED_TRACE(std::string(fault) + ": " + command.join(QLatin1Char(' ')).toStdString());
        std::filesystem::remove(Path("module.bin"));
        Connect(type, *fault == 0 ? QStringList() : QStringList{fault});
        const auto outcome = OnModule(command);
        EXPECT_EQ(outcome.status, status) << outcome.err;
        EXPECT_NE(outcome.err, "");
        EXPECT_FALSE(std::filesystem::exists(Path("x.tbl")));
    }
    // Somebody else is at work on the port.
    Connect("RACE", {"slow-reply"});
    QProcess other;
    Start(other, {"--device", device_, "download", "other.tbl"});
    ASSERT_TRUE(other.waitForStarted());
    EXPECT_FALSE(other.waitForFinished(500));
    const auto refused = OnModule({"id"});
    EXPECT_EQ(refused.status, 4);
    EXPECT_NE(refused.err.find("is at work on it"), std::string::npos) << refused.err;
    other.kill();
    other.waitForFinished();
}

TEST_F(CliTest, AnInterruptStopsAReadAndWaitsForProgrammingAndItsVerify) {
    ExpectDone(Run({"new", "RACE", "--timing", "5", "--slope", "5", "a.tbl"}));
    const std::tuple<QStringList, int, bool> moments[] = {
        {{"download", "x.tbl"}, 200, false},
        {{"upload", "a.tbl", "--yes", "--backup", "x.tbl"}, 200, false},
        {{"upload", "a.tbl", "--yes"}, 350, true},  // programming
        {{"upload", "a.tbl", "--yes"}, 700, true},  // verifying, more or less
    };
    for (const auto signal : {SIGINT, SIGTERM, SIGHUP})
        for (const auto& [command, after, programs] : moments) {
            SCOPED_TRACE(std::to_string(signal) + " after " + std::to_string(after) +
                         " ms: " + command.join(QLatin1Char(' ')).toStdString());
            std::filesystem::remove(Path("module.bin"));
            Connect("RACE");
            QProcess tool;
            Start(tool, QStringList{"--device", device_} + command);
            ASSERT_TRUE(tool.waitForStarted());
            while (!WaitsForSignals(tool.processId()))
                ASSERT_FALSE(tool.waitForFinished(5));
            EXPECT_FALSE(tool.waitForFinished(after));
            tool.closeReadChannel(QProcess::StandardError);  // as a reader that the same Ctrl+C has ended
            kill(static_cast<pid_t>(tool.processId()), signal);
            ASSERT_TRUE(tool.waitForFinished(10000));
            EXPECT_EQ(tool.exitStatus(), QProcess::NormalExit);
            EXPECT_EQ(tool.exitCode(), 130) << tool.readAllStandardError().toStdString();
            EXPECT_FALSE(std::filesystem::exists(Path("x.tbl")));
            EXPECT_EQ(OnModule({"verify", "a.tbl"}).status, programs ? 0 : 1);
        }
}

}  // namespace
}  // namespace rv52::test
