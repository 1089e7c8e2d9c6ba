#include "platform/qt/SerialLine.h"
#include "support/FailureOf.h"

#include <QSerialPort>
#include <QTimer>

#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <iomanip>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/wait.h>
#include <unistd.h>

namespace rv52::test {

using namespace std::chrono_literals;

// A serial device whose far end the test holds.
class SerialLineTest : public testing::Test {
 protected:
    void SetUp() override {
        far = posix_openpt(O_RDWR | O_NOCTTY);
        ASSERT_EQ(grantpt(far), 0);
        ASSERT_EQ(unlockpt(far), 0);
        device = ptsname(far);
        devices.Override(7, device);
    }
    void TearDown() override { HangUp(); }

    void HangUp() {
        if (far >= 0) close(far);
        far = -1;
    }
    void FarSends(const std::string& bytes) {
        ASSERT_EQ(write(far, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    }
    std::string OpenFailure(int commPort) {
        return FailureOf([&] { line.Open(commPort); });
    }

    int far = -1;
    std::string device;
    ComDevices devices;
    SerialLine line{devices};
};

TEST_F(SerialLineTest, CarriesEveryByteUnchangedBothWays) {
    line.Open(7);
    std::string all;
    for (int byte = 0; byte < 256; ++byte)
        all += static_cast<char>(byte);
    FarSends(all);
    ASSERT_EQ(line.WaitForBytes(256, line.Now() + 1s, Yielding::Yes), 256);
    for (const char byte : all) {
        const auto received = line.ReadByte();
        line.SendByte(received);
        char back = 0;
        ASSERT_EQ(read(far, &back, 1), 1);
        ASSERT_EQ(received, static_cast<unsigned char>(byte));
        ASSERT_EQ(back, byte);
    }
}

TEST_F(SerialLineTest, WaitsForBytesOrTheDeadlineAndPausesNoShorterServingEvents) {
    line.Open(7);
    for (const auto yielding : {Yielding::Yes, Yielding::No}) {
        const auto start = line.Now();
        EXPECT_EQ(line.WaitForBytes(1, start + 30ms, yielding), 0);
        EXPECT_GE(line.Now() - start, 30ms);
        EXPECT_LT(line.Now() - start, 60ms);
        FarSends("ab");
        EXPECT_EQ(line.WaitForBytes(2, line.Now() + 1s, yielding), 2);
        line.Discard();
        EXPECT_EQ(line.WaitForBytes(1, line.Now() + 5ms, yielding), 0);
    }
    // Many a short one, since a sleep that wakes late hides what is missing.
    for (int pause = 0; pause < 60; ++pause) {
        const auto duration = pause == 0 ? 100ms : 2ms;
        bool served = false;
        QTimer::singleShot(0, [&] { served = true; });
        const auto start = line.Now();
        line.WaitFor(duration);
        EXPECT_GE(line.Now() - start, duration);
        EXPECT_TRUE(served);
    }
}

TEST_F(SerialLineTest, AHoldCanBeSeenByEveryUserWhateverTheMask) {
    struct stat status {};
    ASSERT_EQ(::stat(device.c_str(), &status), 0);
    const auto lock = "/run/lock/corvane_rv52-" + std::to_string(major(status.st_rdev)) + "-" +
                      std::to_string(minor(status.st_rdev)) + ".lock";
    ::unlink(lock.c_str());
    const auto mask = ::umask(077);
    line.Open(7);
    ::umask(mask);
    ASSERT_EQ(::stat(lock.c_str(), &status), 0) << lock;
    EXPECT_EQ(status.st_mode & 0777U, 0644U);
}

// Of another user, in a folder from which only the owner may remove it.
TEST_F(SerialLineTest, ALockLeftByAProgramThatIsGoneIsRemovedOrExplained) {
    if (::geteuid() != 0) GTEST_SKIP() << "only root can lay another user's lock";
    constexpr uid_t daemon = 1;
    constexpr uid_t nobody = 65534;
    const pid_t gone = ::fork();
    if (gone == 0) ::_exit(0);
    ::waitpid(gone, nullptr, 0);
    const auto path = "/var/lock/LCK.." + device.substr(5, 3) + "_" + device.substr(9);
    const auto lay = [&](pid_t process, const char* program = "") {
        std::ofstream(path) << std::setw(10) << process << '\n' << program << '\n';
        ASSERT_EQ(::chown(path.c_str(), daemon, daemon), 0);
    };
    ASSERT_EQ(::chmod(device.c_str(), 0666), 0);
    const auto refused = "Com7 (" + device + ") could not be opened: ";
    lay(::getpid());
    const auto living = OpenFailure(7);
    EXPECT_TRUE(living.starts_with(refused + "another program is using it (serial_line")) << living;
    EXPECT_TRUE(living.ends_with(", process " + std::to_string(::getpid()) + " of user daemon).")) << living;
    // As a script does: its process bears its own name, its lock the interpreter's.
    char usual[16];
    ::prctl(PR_GET_NAME, usual);
    ::prctl(PR_SET_NAME, "logger.py");
    lay(::getpid(), "serial_line_tests");
    EXPECT_TRUE(OpenFailure(7).starts_with(refused + "another program is using it (logger.py"));
    ::prctl(PR_SET_NAME, usual);
    lay(gone);
    ASSERT_EQ(::setresuid(nobody, nobody, 0), 0);
    const auto left = OpenFailure(7);
    ASSERT_EQ(::setresuid(0, 0, 0), 0);
    EXPECT_EQ(left, refused + "a program of user daemon that is gone has left its lock on it. Remove " +
                        path + " as daemon or as the administrator, or start the computer anew.");
    EXPECT_EQ(OpenFailure(7), "") << "who may remove it does";
}

TEST_F(SerialLineTest, TellsWhyAPortCannotBeOpened) {
    const auto notOpened = [](const std::string& port, const char* reason) {
        return port + " could not be opened: " + reason;
    };
    EXPECT_EQ(OpenFailure(97), "Com97 has no serial device on this computer.");
    for (const auto& [path, reason] : {std::pair("/dev/no-such-device", "the device is not there."),
                                       {"/dev/null", "it is not a serial device."},
                                       {"/tmp", "it is not a serial device."}}) {
        devices.Override(9, path);
        EXPECT_EQ(OpenFailure(9), notOpened("Com9 (" + std::string(path) + ")", reason));
    }
    const auto ours = "Com7 (" + device + ")";
    {
        QSerialPort other(QString::fromStdString(device));
        ASSERT_TRUE(other.open(QIODevice::ReadWrite));
        EXPECT_TRUE(OpenFailure(7).starts_with(notOpened(ours, "another program is using it (serial_line")));
    }
    line.EndHold();
    {
        SerialLine other(devices);
        other.Open(7);
        other.Close();  // while a box stands, or between an address and its bytes
        EXPECT_EQ(OpenFailure(7), notOpened(ours, "another Corvane RV52 is at work on it."));
        other.EndHold();
        EXPECT_EQ(OpenFailure(7), "");
        line.Close();
        line.EndHold();
    }
    if (::geteuid() != 0) GTEST_SKIP() << "only root can make a device that is not for us";
    constexpr uid_t nobody = 65534;
    constexpr gid_t dialout = 20;  // Debian's own group of serial devices
    ASSERT_EQ(::chown(device.c_str(), 0, dialout), 0);
    for (const auto& [mode, reason] :
         {std::pair(0600U, "you are not permitted to use it."),
          {0660U, "you are not permitted to use it. Join the group \"dialout\" and log in again."}}) {
        ASSERT_EQ(::chmod(device.c_str(), mode), 0);
        ASSERT_EQ(::setresuid(nobody, nobody, 0), 0);
        const auto failure = OpenFailure(7);
        ASSERT_EQ(::setresuid(0, 0, 0), 0);
        EXPECT_EQ(failure, notOpened(ours, reason));
        EXPECT_FALSE(line.IsOpen());
    }
}

TEST_F(SerialLineTest, ADeviceThatGoesAwayClosesTheLineAndNothingCrossesAClosedOne) {
    const auto send = [&] { line.SendByte(0x16); };
    EXPECT_EQ(FailureOf(send), "The serial port is not open.");
    line.Open(7);
    HangUp();
    const auto start = line.Now();
    EXPECT_EQ(FailureOf([&] { line.WaitForBytes(1, start + 1s, Yielding::Yes); }),
              "Com7 (" + device + ") is lost: the device is gone.");
    EXPECT_LT(line.Now() - start, 500ms);
    EXPECT_FALSE(line.IsOpen());
    for (const Act& act : {Act(send), Act([&] { line.Discard(); }), Act([&] { line.Open(7); })})
        EXPECT_NE(FailureOf(act), "");
    line.WaitFor(1ms);
    line.Close();
}

}  // namespace rv52::test
