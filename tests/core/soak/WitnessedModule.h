#pragma once

#include "simulator/SimulatedModule.h"
#include "simulator/VirtualLine.h"

#include <array>
#include <memory>

namespace rv52::test {

// A simulated module and a witness at its plug, who follows the commands by himself and knows of each EEPROM
// address whether it has been read since it was last written, and whether the PC was then told the truth.
class WitnessedModule : public Peer {
 public:
    enum class Seen { No, AsItIs, Falsified };

    // Another module in place of the one before; a slow one may hold replies back for about a second.
    void Connect(const ModuleOptions& options, Faults faults, bool slow) {
        options_ = options;
        slow_ = slow;
        module_ = std::make_unique<SimulatedModule>(options, std::move(faults));
        ForgetSeen();
        arguments_ = address_ = 0;
    }
    PeerAnswer Receive(std::uint8_t byte) override {
        auto answer = module_->Receive(byte);
        // Two echoes, if any, of which one belongs to this byte, and one byte of reply.
        if (command_ != 0x10 && byte != 0x10 && answer.bytes.size() > (options_.echo ? 2U : 1U)) NoteStray();
        if (arguments_ == 0) {
            command_ = byte;
            arguments_ = byte == 0x14 ? 2 : byte == 0x16 ? 1 : 0;
            if (byte != 0x15) return answer;
            Judge(address_, answer);
            address_ = (address_ + 1) % ModuleEeprom::kSize;
        } else if (--arguments_ == 0 && command_ == 0x16) {
            seen_[static_cast<std::size_t>(address_)] = Seen::No;
            address_ = (address_ + 1) % ModuleEeprom::kSize;
        } else if (arguments_ == 0) {
            address_ = (low_ + 256 * byte) % ModuleEeprom::kSize;
        } else {
            low_ = byte;
        }
        return answer;
    }

    SimulatedModule& Module() { return *module_; }
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

    void Judge(int address, const PeerAnswer& answer) {
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
    int address_ = 0;
    int lastRead_ = 0;
    std::uint8_t low_ = 0;
    std::uint8_t command_ = 0;  // whose arguments are still to come
    int arguments_ = 0;
};

}  // namespace rv52::test
