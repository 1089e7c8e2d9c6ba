#include "soak/WitnessedModule.h"

namespace rv52::test {

namespace {

using namespace std::chrono_literals;

// Until the next exchange has thrown the stray byte away; behind a reply that is held back, what was asked
// meanwhile comes late too.
constexpr Line::Clock kUsualShift = 5ms;
constexpr Line::Clock kSlowShift = 1100ms;

}  // namespace

void WitnessedModule::Connect(const ModuleOptions& options, Faults faults, bool slow) {
    options_ = options;
    slow_ = slow;
    module_ = std::make_unique<SimulatedModule>(options, std::move(faults));
    ForgetSeen();
    arguments_ = address_ = 0;
}

PeerAnswer WitnessedModule::Receive(std::uint8_t byte) {
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

void WitnessedModule::NoteStray() {
    strayUntil_ = line->Now() + (slow_ ? kSlowShift : kUsualShift);
    auto& seen = seen_[static_cast<std::size_t>(lastRead_)];
    if (seen == Seen::AsItIs) seen = Seen::Falsified;
}

void WitnessedModule::Judge(int address, const PeerAnswer& answer) {
    lastRead_ = address;
    const bool told = !answer.bytes.empty() && answer.bytes.back().byte == module_->Eeprom()[address];
    seen_[static_cast<std::size_t>(address)] =
        told && line->Now() > strayUntil_ ? Seen::AsItIs : Seen::Falsified;
}

}  // namespace rv52::test
