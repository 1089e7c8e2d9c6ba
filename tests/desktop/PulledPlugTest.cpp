#include "app/RunCommand.h"
#include "link/commands/LineConditions.h"
#include "link/commands/Vin.h"
#include "module/EepromImage.h"
#include "module/commands/Download.h"
#include "module/commands/Upload.h"
#include "platform/qt/SerialLine.h"
#include "support/DismissingUser.h"
#include "support/PatternModule.h"
#include "support/ShownTable.h"
#include "support/TemporaryFolder.h"

#include <atomic>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <poll.h>
#include <thread>
#include <unistd.h>

namespace rv52::test {
namespace {

using namespace std::chrono_literals;

// A module on a real serial device whose plug can be pulled. Its device is known by one name whichever it is.
class Cable {
 public:
    Cable(SimulatedModule& module, std::string name) : module_(module), name_(std::move(name)) {}
    ~Cable() { Wait(); }

    // Plugged in, and pulled shortly after so many bytes have crossed it; shaken, it is back at once.
    void Plug(int bytes, bool shaken) {
        server_ = std::thread([this, far = NewDevice(), bytes, shaken] {
            const bool pulled = Serve(far, bytes);
            if (!shaken) {
                close(far);
                if (pulled) std::filesystem::remove(name_);
                return;
            }
            CycleIgnition();
            const int back = NewDevice();
            close(far);
            Serve(back, kEndless);
            close(back);
        });
    }
    void PlugInAgain() {
        Wait();
        CycleIgnition();
        Plug(kEndless, false);
    }

 private:
    static constexpr int kEndless = 1'000'000;

    int NewDevice() {
        const int far = posix_openpt(O_RDWR | O_NOCTTY);
        if (far < 0 || grantpt(far) != 0 || unlockpt(far) != 0) throw std::runtime_error("no device");
        // In one step: the name is never without a device.
        std::filesystem::create_symlink(ptsname(far), name_ + ".new");
        std::filesystem::rename(name_ + ".new", name_);
        return far;
    }
    // It comes back without memory of what it was told, at another address than before.
    void CycleIgnition() {
        auto options = Options(TableType::RACE, true);
        options.eeprom = module_.Eeprom();
        module_ = SimulatedModule(options);
        for (const int byte : {0x14, 0xC0, 0x00})
            module_.Receive(static_cast<std::uint8_t>(byte));
    }
    // True when so many bytes have crossed, false when the module is no longer wanted.
    bool Serve(int far, int left) {
        pollfd waiting{far, POLLIN, 0};
        while (left > 0 && !end_) {
            std::uint8_t byte = 0;
            if (poll(&waiting, 1, 5) <= 0 || (waiting.revents & POLLIN) == 0 || read(far, &byte, 1) != 1) {
                std::this_thread::sleep_for(100us);  // nobody has it open
                continue;
            }
            --left;
            for (const auto& answer : module_.Receive(byte).bytes)
                left -= left > 0 && write(far, &answer.byte, 1) == 1;
        }
        std::this_thread::sleep_for(1500us);  // what has crossed has arrived
        return left <= 0;
    }
    void Wait() {
        end_ = true;
        if (server_.joinable()) server_.join();
        end_ = false;
    }

    SimulatedModule& module_;
    std::string name_;
    std::atomic<bool> end_{false};
    std::thread server_;
};

// Plugs the cable in again while the first failure box stands, and wants to go on.
class HastyUser : public DismissingUser {
 public:
    Answer Ask(const MessageBox& box) override {
        const auto dismissal = DismissingUser::Ask(box);
        if (box.buttons == Buttons::OkCancel) return Answer::Ok;
        if (box.buttons != Buttons::AbortRetryIgnore) return dismissal;
        if (whileOpen) whileOpen();
        return Answer::Retry;
    }
    std::string AskText(const InputBox& box) override { return "9" + box.defaultText.substr(1); }

    std::function<void()> whileOpen;
};

struct Scene {
    const char* what;
    void (*command)(Session&);
    int bytes;         // that cross before the plug is pulled
    bool boxed;        // whether a failure box asks
    const char* last;  // what the user is told in the end
};

// With both echoes: the request, its echo, the text and its end; an address; a byte read; a byte written.
constexpr int kIdentified = 2 + 13 + 1;
constexpr int kAddress = 7;
constexpr int kReadByte = 3;
constexpr int kWrittenByte = 5;

// The ignition is off and on while the plug is away, so the module's address is another one.
TEST(PulledPlugTest, NothingIsReadOrWrittenWhereItDoesNotBelong) {
    const Scene scenes[] = {
        {"an upload, behind its address", mnuUpload_Click, kIdentified + kAddress, false, kUnprogrammed},
        {"an upload, in its midst", mnuUpload_Click, kIdentified + kAddress + 40 * kWrittenByte + 1, true,
         kUnprogrammed},
        {"an upload, verifying", mnuUpload_Click,
         kIdentified + 2 * kAddress + 135 * kWrittenByte + 50 * kReadByte, true, kUnverified},
        {"a VIN, behind its address", mnuEditVIN_Click, kIdentified + 2 * kAddress + 17 * kReadByte, false,
         kUnprogrammed},
        {"a download, in its midst", mnuDownload_Click, kIdentified + kAddress + 40 * kReadByte, true,
         "Download failed."}};
    for (const auto& [what, command, bytes, boxed, last] : scenes) {
        for (const bool shaken : {false, true}) {
            SCOPED_TRACE(std::string(what) + (shaken ? ", back at once" : ""));
            const auto options = Options(TableType::RACE, true);
            SimulatedModule module(options);
            const TemporaryFolder folder;
            const auto name = (folder.Path() / "port").string();
            ComDevices devices;
            devices.Override(1, name);
            SerialLine line(devices);
            TestSession test(line);
            HastyUser user;
            Session session(PortsOf(test.session, user, line));
            HandleLineConditions(session);
            if (command == mnuUpload_Click)
                ShowAs(session,
                       DecodeEepromImage(PatternBuffer(), TableType::RACE, session.state.ModuleParameters));
            const auto wanted = Programmed(options.eeprom, TableType::RACE);

            Cable cable(module, name);
            cable.Plug(bytes, shaken);
            if (!shaken) user.whileOpen = [&] { cable.PlugInAgain(); };
            RunCommand(session, command);

            EXPECT_EQ(user.told.back(), last);
            std::string lost;
            for (const auto& text : user.told)
                if (text.starts_with("Com1 (" + name + ") ")) lost += text;
            const std::string reason = shaken ? "the connection broke off." : "the device is gone.";
            EXPECT_EQ(lost, boxed ? "Com1 (" + name + ") is lost: " + reason : "");
            EXPECT_FALSE(line.IsOpen());
            for (int address = 0; address < ModuleEeprom::kSize; ++address) {
                const auto now = module.Eeprom()[address];
                EXPECT_TRUE(now == options.eeprom[address] || now == wanted[address]) << address;
            }
            EXPECT_EQ(session.state.TableShown, command == mnuUpload_Click);
        }
    }
}

}  // namespace
}  // namespace rv52::test
