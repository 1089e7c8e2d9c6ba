#include "simulator/SimulatedModule.h"

#include "link/WireProtocol.h"

#include <utility>

namespace rv52 {

namespace {

using Expecting = ModuleState::Expecting;

// The current address, which each read and write moves on by one.
int TakeAddress(ModuleState& state) {
    return std::exchange(state.address, (state.address + 1) % ModuleEeprom::kSize);
}

}  // namespace

ModuleOptions::ModuleOptions(TableType moduleType)
    : type(moduleType),
      identification(moduleType == TableType::EX ? "RV52A EX SIM 8.1" : "RV52A SIM 8.1"),
      eeprom(FactoryEeprom(moduleType)) {}

SimulatedModule::SimulatedModule(ModuleOptions options, Faults faults)
    : options_(std::move(options)), faults_(std::move(faults)) {}

PeerAnswer SimulatedModule::Receive(std::uint8_t byte) {
    if (now_ < awayUntil_) return {};
    auto step = StepFor(byte);
    Take(step);
    return static_cast<const PeerAnswer&>(step);
}

void SimulatedModule::PortClosed() {
    ModuleStep step;
    step.cause = ModuleStep::Cause::PortClosed;
    step.before = step.after = state_;
    Take(step);
}

void SimulatedModule::Take(ModuleStep& step) {
    faults_.Shape(step);
    if (step.store) {
        options_.eeprom[step.store->address] = step.store->byte;
        ++stored_;
    }
    state_ = step.after;
    if (step.away) awayUntil_ = now_ + *step.away;
}

ModuleStep SimulatedModule::StepFor(std::uint8_t byte) {
    ModuleStep step;
    step.before = step.after = state_;
    step.after.expecting = Expecting::Command;
    if (options_.echo) step.Send(byte);
    step.echoes = step.bytes.size();

    switch (step.before.expecting) {
        case Expecting::Command:
            Obey(byte, step);
            break;
        case Expecting::AddressLow:
            step.after.addressLow = byte;
            step.after.expecting = Expecting::AddressHigh;
            break;
        case Expecting::AddressHigh:
            step.after.address = step.before.addressLow + 256 * byte;
            step.completed = ModuleStep::Completed::Address;
            step.Send(WireBytes::kAcknowledge);
            break;
        case Expecting::Data:
            step.completed = ModuleStep::Completed::Write;
            step.store = {TakeAddress(step.after), byte};
            step.Send(WireBytes::kAcknowledge);
            break;
    }
    return step;
}

void SimulatedModule::Obey(std::uint8_t command, ModuleStep& step) {
    switch (command) {
        case WireBytes::kIdentify:
            step.completed = ModuleStep::Completed::Identification;
            for (const char character : options_.identification)
                step.Send(static_cast<std::uint8_t>(character));
            step.Send(WireBytes::kEndOfText);
            break;
        case WireBytes::kSetAddress:
            step.after.expecting = Expecting::AddressLow;
            break;
        case WireBytes::kRead:
            step.completed = ModuleStep::Completed::Read;
            step.Send(options_.eeprom[TakeAddress(step.after)]);
            break;
        case WireBytes::kWrite:
            step.after.expecting = Expecting::Data;
            break;
        default:
            break;
    }
}

}  // namespace rv52
