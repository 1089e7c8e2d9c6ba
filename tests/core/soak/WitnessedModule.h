#pragma once

#include "simulator/SimulatedModule.h"
#include "simulator/VirtualLine.h"

#include <array>
#include <memory>

namespace rv52::test {

// A simulated module and a witness at its plug, who follows the commands by himself and knows of each EEPROM
// address whether it has been read since it was last written, and whether the PC was then told the truth. He
// also knows when the PC has been shown that something broke, and what it sends all the same.
class WitnessedModule : public Peer {
 public:
    enum class Seen { No, AsItIs, Falsified };
    // What a command has done that it must not do, and what no program can notice on this wire.
    struct Conduct {
        int sentAfterBreak = 0;       // bytes of a range that was broken
        int writtenAfterSilence = 0;  // bytes programmed after more than a second
        bool repointed = false;       // somebody else moved the module's address from under a range
    };

    // Another module in place of the one before; a slow one may hold replies back for about a second.
    void Connect(const ModuleOptions& options, Faults faults, bool slow) {
        options_ = options;
        slow_ = slow;
        module_ = std::make_unique<SimulatedModule>(options, std::move(faults));
        ForgetSeen();
        arguments_ = address_ = 0;
        broken_ = readsBroken_ = talkedTo_ = false;
    }
    void PassTime(Clock now) override {
        if (module_) module_->PassTime(now);
    }
    void PortClosed() override {
        if (!module_) return;
        reopened_ = true;
        const auto before = module_->State().address;
        module_->PortClosed();
        talkedTo_ = talkedTo_ || module_->State().address != before;
    }
    PeerAnswer Receive(std::uint8_t byte) override {
        // A module that was without power has forgotten a command begun, one that lost its byte still waits
        // for it.
        using Expecting = ModuleState::Expecting;
        const auto expecting = module_->State().expecting;
        arguments_ = expecting == Expecting::Command ? 0 : expecting == Expecting::AddressLow ? 2 : 1;
        if (expecting == Expecting::Data) command_ = 0x16;
        NoteConduct(byte);
        auto answer = module_->Receive(byte);
        // Two echoes, if any, of which one belongs to this byte, and one byte of reply.
        if (command_ != 0x10 && byte != 0x10 && answer.bytes.size() > (options_.echo ? 2U : 1U)) NoteStray();
        if (arguments_ == 0) {
            command_ = byte;
            arguments_ = byte == 0x14 ? 2 : byte == 0x16 ? 1 : 0;
            if (byte != 0x15) return answer;
            NoteRead(address_, answer);
            address_ = (address_ + 1) % ModuleEeprom::kSize;
        } else if (--arguments_ == 0 && command_ == 0x16) {
            seen_[static_cast<std::size_t>(address_)] = Seen::No;
            address_ = (address_ + 1) % ModuleEeprom::kSize;
        } else if (arguments_ == 0) {
            address_ = (low_ + 256 * byte) % ModuleEeprom::kSize;
            broken_ = readsBroken_ = talkedTo_ = false;
        } else {
            low_ = byte;
        }
        return answer;
    }

    SimulatedModule& Module() { return *module_; }
    const ModuleOptions& Options() const { return options_; }
    // What has been done since the last look.
    Conduct TakeConduct() { return std::exchange(conduct_, {}); }
    // The PC has been told of a failure of the line or the module: the range under way is over, and none may
    // follow the address that was being set. A verify still reads behind an address that failed.
    void NoteBreak() {
        broken_ = true;
        readsBroken_ = readsBroken_ || command_ == 0x15;
    }
    // A line condition ends a range; an address that it interrupts goes on.
    void NoteCondition() {
        if (InRange()) NoteBreak();
    }
    Seen SeenAt(int address) const { return seen_.at(static_cast<std::size_t>(address)); }
    void ForgetSeen() { seen_.fill(Seen::No); }
    // A stray byte is on the wire: the reply under way, and those that may be taken with it, count as
    // falsified.
    void NoteStray() {
        strayUntil_ = line->Now() + (slow_ ? kSlowShift : kUsualShift);
        auto& seen = seen_[static_cast<std::size_t>(lastRead_)];
        if (seen == Seen::AsItIs) seen = Seen::Falsified;
    }

    // The clock of the wire.
    const VirtualLine* line = nullptr;

 private:
    // Until the next exchange has thrown the stray byte away; behind a reply that is held back, what was
    // asked meanwhile comes late too.
    static constexpr std::chrono::milliseconds kUsualShift{5};
    static constexpr std::chrono::milliseconds kSlowShift{1100};
    // A second, and the pauses of an exchange.
    static constexpr std::chrono::milliseconds kLongestSilence{1020};

    bool InRange() const { return command_ == 0x15 || command_ == 0x16; }
    void NoteConduct(std::uint8_t byte) {
        // What comes first through a newly opened port is the next command's, taken for a byte begun or not.
        const bool data = arguments_ > 0 && command_ == 0x16 && !reopened_;
        const bool writes = data || (arguments_ == 0 && byte == 0x16);
        const bool reads = arguments_ == 0 && byte == 0x15;
        if ((writes && broken_) || (reads && readsBroken_)) ++conduct_.sentAfterBreak;
        if (writes && !slow_ && line->Now() - lastByte_ > kLongestSilence) ++conduct_.writtenAfterSilence;
        if ((writes || reads) && talkedTo_) {
            conduct_.repointed = true;
            address_ = module_->State().address;
        }
        lastByte_ = line->Now();
        reopened_ = false;
    }
    void NoteRead(int address, const PeerAnswer& answer) {
        lastRead_ = address;
        const bool told = !answer.bytes.empty() && answer.bytes.back().byte == module_->Eeprom()[address];
        seen_[static_cast<std::size_t>(address)] =
            told && line->Now() > strayUntil_ ? Seen::AsItIs : Seen::Falsified;
    }

    ModuleOptions options_;
    std::unique_ptr<SimulatedModule> module_;
    std::array<Seen, ModuleEeprom::kSize> seen_{};
    Line::Clock strayUntil_{-1};
    bool slow_ = false;
    bool broken_ = false;       // no byte may be programmed until another address is set
    bool readsBroken_ = false;  // nor read
    bool talkedTo_ = false;     // somebody else has moved the address since it was set
    bool reopened_ = false;     // the port was closed since the last byte
    Line::Clock lastByte_{0};
    Conduct conduct_;
    int address_ = 0;
    int lastRead_ = 0;
    std::uint8_t low_ = 0;
    std::uint8_t command_ = 0;  // whose arguments are still to come
    int arguments_ = 0;
};

}  // namespace rv52::test
