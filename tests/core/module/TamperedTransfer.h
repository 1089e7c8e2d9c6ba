#pragma once

#include "app/RunCommand.h"
#include "link/commands/Vin.h"
#include "module/EepromImage.h"
#include "module/commands/Download.h"
#include "module/commands/Upload.h"
#include "support/DismissingUser.h"
#include "support/PatternModule.h"
#include "support/ShownTable.h"

#include <gtest/gtest.h>

namespace rv52::test {

// A module with someone at its plug, who may change each byte on its way in and each answer on its way out;
// both are told how many bytes have come in before.
struct TamperedModule : Peer {
    TamperedModule(const ModuleOptions& moduleOptions, Faults faults)
        : options(moduleOptions), module(moduleOptions, std::move(faults)) {}

    PeerAnswer Receive(std::uint8_t byte) override {
        auto answer = module.Receive(in ? in(received, byte) : byte);
        if (out) out(received, answer);
        ++received;
        return answer;
    }
    void PassTime(Clock now) override { module.PassTime(now); }
    void PortClosed() override {
        module.PortClosed();
        if (closed) closed();
    }
    // The ignition is off and on: its memory stays, and it stands at another address.
    void CycleIgnition() {
        auto restarted = options;
        restarted.eeprom = module.Eeprom();
        module = SimulatedModule(restarted);
        for (const int byte : {0x14, 0xC0, 0x00})
            module.Receive(static_cast<std::uint8_t>(byte));
    }

    ModuleOptions options;
    SimulatedModule module;
    std::function<void()> closed;
    std::function<std::uint8_t(int, std::uint8_t)> in;
    std::function<void(int, PeerAnswer&)> out;
    int received = 0;
};

// Gives every failure box the same answer, wants a VIN, and confirms it.
struct MatrixUser : OneAnswer {
    using OneAnswer::OneAnswer;

    Answer Ask(const MessageBox& box) override {
        const auto answer = OneAnswer::Ask(box);
        return box.buttons == Buttons::OkCancel ? Answer::Ok : answer;
    }
    std::string AskText(const InputBox&) override { return kVin; }

    static constexpr const char* kVin = "9XYRV52A7SM123456";
};

inline constexpr const char* kVinDone = "Upload completed.\r\n";

// The program connected to it, with the pattern's table on screen.
struct TamperedTransfer {
    explicit TamperedTransfer(const ModuleOptions& options, const std::string& fault = {},
                              Answer answer = Answer::Abort)
        : peer(options, fault.empty() ? Faults() : Faults({fault}, 7)), before(options.eeprom), user(answer) {
        HandleLineConditions(session);
        ShowAs(session, DecodeEepromImage(PatternBuffer(), options.type, session.state.ModuleParameters));
    }

    // What the user read last. Nothing that is so for every outcome may be otherwise: each byte has gone to
    // its own place or nowhere.
    std::string Upload() {
        const auto type = session.state.TableType;
        const auto outcome = Program(mnuUpload_Click, Programmed(before, type), kCompleted);
        EXPECT_EQ(session.state.TableType, type);
        EXPECT_TRUE(session.state.TableShown);
        return outcome;
    }
    std::string EditVin() {
        auto wanted = before;
        std::copy_n(MatrixUser::kVin, ModuleEeprom::kVinLength, wanted.bytes.begin() + ModuleEeprom::kVin);
        return Program(mnuEditVIN_Click, wanted, kVinDone);
    }
    std::string Program(void (*command)(Session&), const ModuleEeprom& wanted, const char* success) {
        RunCommand(session, command);
        const auto outcome = user.told.empty() ? "" : user.told.back();
        const auto& after = peer.module.Eeprom();
        int strayed = 0;
        for (int address = 0; address < ModuleEeprom::kSize; ++address)
            strayed += after[address] != wanted[address] &&
                       (after[address] != before[address] || outcome == success);
        EXPECT_TRUE(strayed == 0 || (repointed && outcome != success)) << strayed << " strayed";
        ExpectRest();
        return outcome;
    }

    // True when the table was downloaded, which is then the module's; else the screen is empty.
    bool Download() {
        HideTable(session);
        RunCommand(session, mnuDownload_Click);
        const bool done = at.test.shell.caption.ends_with(" - Downloaded Data");
        EXPECT_EQ(session.state.TableShown, done);
        EepromBuffer read{};
        if (done)
            for (const auto& range : ReadExtent(session.state.TableType).ranges)
                for (int index = range.first; index <= range.last; ++index)
                    read[static_cast<std::size_t>(index)] = peer.module.Eeprom()[AddressOf(index).value];
        EXPECT_EQ(session.state.EepromBuffer, read);
        ExpectRest();
        return done;
    }

    void ExpectRest() const { EXPECT_FALSE(at.line.IsOpen() || at.test.shell.progressShown); }

    bool repointed = false;  // by somebody else, which no program can notice
    TamperedModule peer;
    ConnectedSession at{peer};
    ModuleEeprom before;
    MatrixUser user;
    Session session{PortsOf(at.session, user, at.line)};
};

}  // namespace rv52::test
