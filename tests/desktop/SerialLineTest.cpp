#include "platform/Failure.h"
#include "platform/qt/SerialLine.h"

#include <QCoreApplication>
#include <QTimer>

#include <chrono>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace rv52 {
namespace {

using namespace std::chrono_literals;

// A serial device whose far end the test holds.
class SerialLineTest : public testing::Test {
 protected:
    void SetUp() override {
        far_ = posix_openpt(O_RDWR | O_NOCTTY);
        ASSERT_GE(far_, 0);
        ASSERT_EQ(grantpt(far_), 0);
        ASSERT_EQ(unlockpt(far_), 0);
        device_ = ptsname(far_);
        devices_.Override(7, device_);
    }
    void TearDown() override { HangUp(); }

    void HangUp() {
        if (far_ >= 0) close(far_);
        far_ = -1;
    }
    void FarSends(const std::string& bytes) {
        ASSERT_EQ(write(far_, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    }
    std::string FailureOf(const std::function<void()>& call) {
        try {
            call();
        } catch (const PortFailure& failure) {
            return failure.what();
        }
        return "none";
    }

    int far_ = -1;
    std::string device_;
    ComDevices devices_;
    SerialLine line_{devices_};
};

TEST_F(SerialLineTest, CarriesEveryByteUnchangedBothWays) {
    line_.Open(7);
    std::string all;
    for (int byte = 0; byte < 256; ++byte)
        all += static_cast<char>(byte);
    FarSends(all);
    ASSERT_EQ(line_.Await(256, line_.Now() + 1s, Yielding::Yes), 256);
    for (const char byte : all) {
        const int received = line_.ReadByte();
        line_.SendByte(static_cast<std::uint8_t>(received));
        char back = 0;
        ASSERT_EQ(read(far_, &back, 1), 1);
        ASSERT_EQ(received, static_cast<unsigned char>(byte));
        ASSERT_EQ(back, byte);
    }
}

TEST_F(SerialLineTest, WaitsForBytesOrTheDeadlineAndDiscards) {
    line_.Open(7);
    for (const auto yielding : {Yielding::Yes, Yielding::No}) {
        auto start = line_.Now();
        EXPECT_EQ(line_.Await(1, start + 30ms, yielding), 0);
        EXPECT_GE(line_.Now() - start, 30ms);
        EXPECT_LT(line_.Now() - start, 60ms);

        FarSends("ab");
        EXPECT_EQ(line_.Await(2, line_.Now() + 1s, yielding), 2);
        line_.Discard();
        EXPECT_EQ(line_.Await(1, line_.Now() + 5ms, yielding), 0);
    }
}

TEST_F(SerialLineTest, PausesAreNeverShorterAndServeWindowEvents) {
    for (const auto duration : {2ms, 5ms, 100ms}) {
        bool served = false;
        QTimer::singleShot(0, [&] { served = true; });
        const auto start = line_.Now();
        line_.Pause(duration);
        EXPECT_GE(line_.Now() - start, duration);
        EXPECT_TRUE(served);
    }
}

TEST_F(SerialLineTest, TellsWhyAPortCannotBeOpened) {
    EXPECT_EQ(FailureOf([&] { line_.Open(97); }), "Com97 has no serial device on this computer.");
    devices_.Override(8, "/dev/no-such-device");
    EXPECT_EQ(FailureOf([&] { line_.Open(8); }),
              "Com8 (/dev/no-such-device) could not be opened: the device is not there.");
    for (const auto* noLine : {"/dev/null", "/tmp"}) {
        devices_.Override(9, noLine);
        EXPECT_EQ(FailureOf([&] { line_.Open(9); }),
                  std::string("Com9 (") + noLine + ") could not be opened: it is not a serial device.");
    }
    SerialLine other(devices_);
    other.Open(7);
    EXPECT_EQ(FailureOf([&] { line_.Open(7); }),
              "Com7 (" + device_ + ") could not be opened: another program is using it.");
    EXPECT_FALSE(line_.IsOpen());
    other.Close();
    line_.Open(7);
    EXPECT_TRUE(line_.IsOpen());
}

TEST_F(SerialLineTest, SaysWhoMayUseADevice) {
    if (::geteuid() != 0) GTEST_SKIP() << "only root can make a device that is not for us";
    constexpr uid_t nobody = 65534;
    constexpr gid_t dialout = 20;  // Debian's own group of serial devices
    ASSERT_EQ(::chown(device_.c_str(), 0, dialout), 0);
    for (const auto& [mode, wayIn] : {std::pair(0600U, false), std::pair(0660U, true)}) {
        ASSERT_EQ(::chmod(device_.c_str(), mode), 0);
        ASSERT_EQ(::setresuid(nobody, nobody, 0), 0);
        const auto failure = FailureOf([&] { line_.Open(7); });
        ASSERT_EQ(::setresuid(0, 0, 0), 0);
        EXPECT_TRUE(failure.starts_with("Com7 (" + device_ +
                                        ") could not be opened: you are not permitted to use it."))
            << failure;
        EXPECT_EQ(failure.ends_with(" Join the group \"dialout\" and log in again."), wayIn) << failure;
        EXPECT_FALSE(line_.IsOpen());
    }
    line_.Open(7);
    EXPECT_TRUE(line_.IsOpen());
}

TEST_F(SerialLineTest, ADeviceThatGoesAwayClosesTheLine) {
    line_.Open(7);
    HangUp();
    const auto start = line_.Now();
    EXPECT_EQ(FailureOf([&] { line_.Await(1, start + 1s, Yielding::Yes); }),
              "Com7 (" + device_ + ") is lost: the device is gone.");
    EXPECT_LT(line_.Now() - start, 500ms);
    EXPECT_FALSE(line_.IsOpen());
    EXPECT_NE(FailureOf([&] { line_.SendByte(0x16); }), "none");
    EXPECT_NE(FailureOf([&] { line_.Discard(); }), "none");
    EXPECT_NE(FailureOf([&] { line_.Open(7); }), "none");
}

TEST_F(SerialLineTest, NothingCrossesAClosedLine) {
    EXPECT_EQ(FailureOf([&] { line_.SendByte(0x10); }), "The serial port is not open.");
    EXPECT_EQ(FailureOf([&] { line_.Await(1, line_.Now(), Yielding::No); }), "The serial port is not open.");
    line_.Pause(1ms);
    line_.Pump();
    line_.Close();
}

}  // namespace
}  // namespace rv52
