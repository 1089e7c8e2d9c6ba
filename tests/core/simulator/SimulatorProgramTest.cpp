#include "simulator/ModuleEeprom.h"
#include "simulator/SimulatorOptions.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <poll.h>
#include <stdexcept>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace rv52 {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;
using Bytes = std::vector<std::uint8_t>;

TEST(SimulatorOptionsTest, AreRead) {
    const auto none = ParseSimulatorOptions({});
    EXPECT_TRUE(none.type == TableType::RACE && none.echo && !none.bitsPerSecond);
    const auto all = ParseSimulatorOptions(std::vector<const char*>{
        "--type", "EX", "--echo=off", "--image", "a=b.bin", "--pace=56000", "--fault", "silent=3",
        "--fault=flipped-bit", "--seed", "18446744073709551615", "--trace", "wire.txt", "--id=Bench"});
    EXPECT_EQ(std::tie(all.type, all.echo, all.bitsPerSecond, all.seed),
              std::tuple(TableType::EX, false, 56000, 18446744073709551615U));
    EXPECT_EQ(std::tie(all.imagePath, all.tracePath, all.identification),
              std::tuple("a=b.bin", "wire.txt", "RV52A EX Bench"));
    ASSERT_EQ(all.faults.size(), 2U);
    EXPECT_EQ(all.faults[0].k, 3);
    EXPECT_FALSE(all.faults[1].k);
    EXPECT_EQ(CompleteIdentification("RV52A 9.0", TableType::RACE), "RV52A 9.0");
    EXPECT_EQ(CompleteIdentification("RV52A 9.0", TableType::EX), "EX RV52A 9.0");
}

TEST(SimulatorOptionsTest, AreRefusedInOneLineThatNamesWhatIsWrong) {
    const std::pair<const char*, std::vector<const char*>> rows[] = {
        {"--typ", {"--typ=EX"}},
        {"EX", {"EX", "--id=Exhaust"}},
        {"--type", {"--type=race"}},
        {"maybe", {"--echo=maybe"}},
        {"--image wants a value", {"--image"}},
        {"a file name", {"--image=", "--trace="}},
        {"--pace", {"--pace=fast", "--pace=0"}},
        {"--seed", {"--seed=-1"}},
        {"noise", {"--fault=noise"}},
        {"two?lines", {"--fault=two\nlines"}},
        {"silent", {"--fault=silent=0", "--fault=silent=", "--fault=silent=1x"}},
        {"no details", {"--fault=silent,for=5"}},
        {"it takes for, at", {"--fault=power-cycle,bit=5", "--fault=power-cycle=1,"}},
        {"wants a number", {"--fault=power-cycle,for"}},
        {"3600000", {"--fault=power-cycle=1,for=", "--fault=power-cycle=1,for=3600001"}},
        {"511", {"--fault=second-talker,at=512"}},
        {"twice", {"--fault=second-talker,at=5,at=5"}},
        {"bit", {"--fault=flipped-echo,bit=8"}},
        {"character", {"--fault=flipped-identification,character=0"}},
        {"--id", {"--id=a\rb"}}};
    for (const auto& [named, arguments] : rows) {
        for (const auto* argument : arguments) {
            SCOPED_TRACE(argument);
            std::string refusal;
            try {
                ParseSimulatorOptions({&argument, 1});
            } catch (const std::invalid_argument& error) {
                refusal = error.what();
            }
            EXPECT_EQ(refusal.find('\n'), std::string::npos);
            EXPECT_NE(refusal.find(named), std::string::npos) << refusal;
        }
    }
}

// The simulator's program as a child process, ended with this.
class SimulatorProgram {
 public:
    explicit SimulatorProgram(const std::string& arguments, const std::string& folder = "/")
        : out_(popen(("cd " + folder + "; echo $$; exec '" RV52_SIMULATOR "' " + arguments).c_str(), "r")),
          pid_(std::stoi(ReadLine())) {}
    ~SimulatorProgram() {
        if (out_ != nullptr) End(SIGKILL);
    }

    // The next line that it prints, its device's path being the first; empty when it ends without one.
    std::string ReadLine() {
        std::string line;
        for (int letter = fgetc(out_); letter != '\n' && letter != EOF; letter = fgetc(out_))
            line += static_cast<char>(letter);
        return line;
    }
    // Sends it a signal, none when 0, and waits for its end: the exit status, or −1 for another end.
    int End(int signal) {
        if (signal != 0) kill(pid_, signal);
        const int status = pclose(std::exchange(out_, nullptr));
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

 private:
    FILE* out_;
    pid_t pid_;
};

// Sends these on the device, opened for it, and waits for this many bytes; fewer when it is gone, or silent
// for five seconds.
Bytes Exchange(const std::string& path, const Bytes& sent, std::size_t count) {
    const int device = open(path.c_str(), O_RDWR | O_NOCTTY);
    EXPECT_EQ(write(device, sent.data(), sent.size()), static_cast<ssize_t>(sent.size())) << path;
    Bytes received;
    pollfd event{device, POLLIN, 0};
    std::uint8_t byte = 0;
    while (received.size() < count && poll(&event, 1, 5000) > 0 && read(device, &byte, 1) == 1)
        received.push_back(byte);
    close(device);
    return received;
}

std::string Content(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(SimulatorProgramTest, ServesAcrossOpensAndKeepsItsMemory) {
    const test::TemporaryFolder folder;
    const auto image = folder.Path() / "module.bin";
    const auto link = folder.Path() / "link.bin";
    const auto mode = fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read;
    fs::create_symlink(image, link);
    // Names that a saver could be expected to use, laid there to lead it astray.
    const auto other = folder.Path() / "other.txt";
    std::ofstream(other) << "other";
    for (const auto* name : {"module.bin.new", "module.bin.tmp", "module.bin~"})
        fs::create_symlink(other, folder.Path() / name);
    const std::string name = "RV52A EX SIM 8.1\r";
    auto expected = FactoryEeprom(TableType::EX).bytes;
    for (const int signal : {SIGTERM, SIGINT}) {
        SimulatorProgram simulator("--echo off --type EX --image " +
                                   (signal == SIGINT ? link : image).string());
        const auto device = simulator.ReadLine();
        EXPECT_EQ(Exchange(device, {0x10}, 17), Bytes(name.begin(), name.end()));
        fs::permissions(image, mode);
        expected[256] = static_cast<std::uint8_t>(signal);
        EXPECT_EQ(Exchange(device, {0x14, 0x00, 0x01}, 1), Bytes{0x06});
        EXPECT_EQ(Exchange(device, {0x16, expected[256]}, 1), Bytes{0x06});
        EXPECT_EQ(simulator.End(signal), 0);
        EXPECT_EQ(Content(image), std::string(expected.begin(), expected.end()));
        EXPECT_TRUE(fs::is_symlink(link));
        EXPECT_EQ(fs::status(image).permissions(), mode);
        EXPECT_EQ(Content(other), "other");
        EXPECT_EQ(std::distance(fs::directory_iterator(folder.Path()), fs::directory_iterator()), 6);
    }
}

TEST(SimulatorProgramTest, CarriesEveryByteValueInTheTimeOfARealLine) {
    const test::TemporaryFolder folder;
    const auto trace = folder.Path() / "wire.txt";
    SimulatorProgram simulator("--pace=20000 --trace " + trace.string());
    const auto path = simulator.ReadLine();
    const auto start = std::chrono::steady_clock::now();
    Exchange(path, {0x14, 0x00, 0x00}, 4);
    for (int value = 0; value < 256; ++value) {
        const auto byte = static_cast<std::uint8_t>(value);
        ASSERT_EQ(Exchange(path, {0x16, byte}, 3), (Bytes{0x16, byte, 0x06}));
    }
    // A busy machine may take longer than 0.5 ms for each byte, never shorter.
    EXPECT_GE(std::chrono::steady_clock::now() - start, 256 * 3 * 500us);
    EXPECT_EQ(simulator.End(SIGTERM), 0);
    const auto lines = Content(trace);
    EXPECT_EQ(lines.find('\n'), std::string("0.000000 >14").size()) << lines.substr(0, 40);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), '>'), 3 + 2 * 256);
    EXPECT_TRUE(lines.ends_with(" <06\n"));
}

TEST(SimulatorProgramTest, HangsUpSoThatTheDeviceIsGone) {
    SimulatorProgram simulator("--echo off --fault hang-up=4");
    const auto path = simulator.ReadLine();
    EXPECT_EQ(Exchange(path, {0x10}, 18), (Bytes{'R', 'V'}));
    EXPECT_EQ(simulator.End(0), 0);
    EXPECT_FALSE(fs::exists(path));
}

// Bytes sent without waiting, on a device that stays open.
TEST(SimulatorProgramTest, IsGoneWithoutPowerAndComesBackByTheRealClock) {
    SimulatorProgram simulator("--echo off --fault power-cycle=4,for=300,at=432");
    const auto path = simulator.ReadLine();
    EXPECT_EQ(Exchange(path, {0x14, 0x00, 0x01}, 1), Bytes{0x06});
    const int device = open(path.c_str(), O_RDWR | O_NOCTTY);
    const auto start = std::chrono::steady_clock::now();
    pollfd event{device, POLLIN, 0};
    const std::uint8_t command = 0x15;
    std::uint8_t reply = 0;
    do {
        ASSERT_EQ(write(device, &command, 1), 1);
        ASSERT_LT(std::chrono::steady_clock::now() - start, 5s);
    } while (poll(&event, 1, 10) == 0);
    EXPECT_GE(std::chrono::steady_clock::now() - start, 300ms);
    EXPECT_EQ(read(device, &reply, 1), 1);
    EXPECT_EQ(reply, FactoryEeprom(TableType::RACE)[432]);
    close(device);
}

TEST(SimulatorProgramTest, NoticesEveryClosingHoweverSoonTheDeviceIsOpenedAgain) {
    constexpr int rounds = 300;
    SimulatorProgram simulator("--echo off --fault second-talker=" + std::to_string(rounds + 1) + ",at=432");
    const auto path = simulator.ReadLine();
    const auto eeprom = FactoryEeprom(TableType::RACE);
    EXPECT_EQ(Exchange(path, {0x14, 0x00, 0x01}, 1), Bytes{0x06});
    // Some with a byte between, some without; who may not write does not count.
    for (int round = 1; round < rounds; ++round) {
        if (round % 3 == 0) close(open(path.c_str(), O_RDONLY | O_NOCTTY));
        if (round % 2 == 0)
            EXPECT_EQ(Exchange(path, {0x14, 0x00, 0x01}, 1), Bytes{0x06}) << round;
        else
            close(open(path.c_str(), O_RDWR | O_NOCTTY));
    }
    EXPECT_EQ(Exchange(path, {0x14, 0x00, 0x01, 0x15}, 2), (Bytes{0x06, eeprom[256]}));
    EXPECT_EQ(Exchange(path, {0x15}, 1), Bytes{eeprom[432]});
    EXPECT_EQ(Exchange(path, {0x15}, 1), Bytes{eeprom[433]});
}

// A program that has the device to itself leaves it so when it is killed. One that lives keeps it to itself.
TEST(SimulatorProgramTest, LetsTheNextProgramInAfterOneThatWasKilled) {
    SimulatorProgram simulator("");
    const auto path = simulator.ReadLine();
    const int watching = open(path.c_str(), O_RDONLY | O_NOCTTY);
    const auto isExclusive = [watching] {
        int exclusive = 0;
        EXPECT_EQ(ioctl(watching, TIOCGEXCL, &exclusive), 0);
        return exclusive != 0;
    };
    const auto killed = fork();
    if (killed == 0) {
        ioctl(open(path.c_str(), O_RDWR | O_NOCTTY), TIOCEXCL);
        raise(SIGKILL);
    }
    EXPECT_EQ(waitpid(killed, nullptr, 0), killed);
    const auto start = std::chrono::steady_clock::now();
    while (isExclusive() && std::chrono::steady_clock::now() - start < 5s)
        poll(nullptr, 0, 1);
    EXPECT_FALSE(isExclusive());
    for (int round = 0; round < 300; ++round) {
        const int device = open(path.c_str(), O_RDWR | O_NOCTTY);
        ASSERT_EQ(ioctl(device, TIOCEXCL), 0);
        const std::uint8_t sent = 0x99;
        std::uint8_t echo = 0;
        EXPECT_EQ(write(device, &sent, 1), 1);
        EXPECT_EQ(read(device, &echo, 1), 1);
        ASSERT_TRUE(isExclusive()) << round;
        ioctl(device, TIOCNXCL);
        close(device);
    }
    close(watching);
}

TEST(SimulatorProgramTest, RefusesBadOptionsWithStatusTwo) {
    const test::TemporaryFolder folder;
    const auto path = folder.Path().string();
    std::ofstream(path + "/511.bin") << std::string(511, 'x');
    std::ofstream(path + "/513.bin") << std::string(513, 'x');
    ASSERT_EQ(mkfifo((path + "/pipe").c_str(), 0600), 0);
    for (const auto& arguments : {"--pace never", "--trace /no/where", "--image 511.bin", "--image 513.bin",
                                  "--image .", "--image no/folder", "--image pipe"}) {
        SimulatorProgram simulator(arguments, path);
        ASSERT_EQ(simulator.ReadLine(), "") << arguments;
        EXPECT_EQ(simulator.End(0), 2);
    }
    EXPECT_EQ(Content(path + "/511.bin"), std::string(511, 'x'));
}

}  // namespace
}  // namespace rv52
