#pragma once

#include "simulator/SimulatedModule.h"
#include "simulator/VirtualLine.h"

#include <array>
#include <memory>
#include <utility>

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
        address_ = 0;
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
        const auto before = module_->State();
        const bool command = before.expecting == Expecting::Command;
        NoteConduct(byte, before.expecting);
        auto answer = module_->Receive(byte);
        // Two echoes, if any, of which one belongs to this byte, and one byte of reply.
        const bool identifies = command && byte == 0x10;
        if (!identifies && answer.bytes.size() > (options_.echo ? 2U : 1U)) NoteStray();
        if (command) command_ = byte;
        if (command && byte == 0x15) NoteRead(answer);
        if (before.expecting == Expecting::Data) seen_[TakeAddress()] = Seen::No;
        if (before.expecting == Expecting::AddressHigh) {
            address_ = (before.addressLow + 256 * byte) % ModuleEeprom::kSize;
            broken_ = readsBroken_ = talkedTo_ = false;
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
        if (command_ == 0x15 || command_ == 0x16) NoteBreak();
    }
    Seen SeenAt(int address) const { return seen_.at(static_cast<std::size_t>(address)); }
    void ForgetSeen() { seen_.fill(Seen::No); }
    // A stray byte is on the wire: the reply under way, and those that may be taken with it, count as
    // falsified.
    void NoteStray() {
        strayUntil_ = line->Now() + (slow_ ? kSlowShift : kUsualShift);
        if (seen_[lastRead_] == Seen::AsItIs) seen_[lastRead_] = Seen::Falsified;
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

    using Expecting = ModuleState::Expecting;

    // The address that the PC takes for the module's, which each read and write moves on by one.
    std::size_t TakeAddress() {
        return static_cast<std::size_t>(std::exchange(address_, (address_ + 1) % ModuleEeprom::kSize));
    }
    void NoteConduct(std::uint8_t byte, Expecting expecting) {
        // What comes first through a newly opened port is the next command's, taken for a byte begun or not.
        const bool command = expecting == Expecting::Command;
        const bool writes = (expecting == Expecting::Data && !reopened_) || (command && byte == 0x16);
        const bool reads = command && byte == 0x15;
        if ((writes && broken_) || (reads && readsBroken_)) ++conduct_.sentAfterBreak;
        if (writes && !slow_ && line->Now() - lastByte_ > kLongestSilence) ++conduct_.writtenAfterSilence;
        if ((writes || reads) && talkedTo_) {
            conduct_.repointed = true;
            address_ = module_->State().address;
        }
        lastByte_ = line->Now();
        reopened_ = false;
    }
    void NoteRead(const PeerAnswer& answer) {
        const bool told = !answer.bytes.empty() && answer.bytes.back().byte == module_->Eeprom()[address_];
        lastRead_ = TakeAddress();
        seen_[lastRead_] = told && line->Now() > strayUntil_ ? Seen::AsItIs : Seen::Falsified;
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
    std::size_t lastRead_ = 0;
    std::uint8_t command_ = 0;  // the last one
};

}  // namespace rv52::test
