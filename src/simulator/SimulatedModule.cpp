#include "simulator/SimulatedModule.h"

#include "link/WireProtocol.h"

#include <utility>

namespace rv52 {

ModuleOptions::ModuleOptions(TableType moduleType)
    : type(moduleType),
      identification(moduleType == TableType::EX ? "RV52A EX SIM 8.1" : "RV52A SIM 8.1"),
      eeprom(FactoryEeprom(moduleType)) {}

SimulatedModule::SimulatedModule(ModuleOptions options, Faults faults)
    : options_(std::move(options)), faults_(std::move(faults)) {}

PeerAnswer SimulatedModule::Receive(std::uint8_t byte) {
    auto step = StepFor(byte);
    faults_.Shape(step);
    if (step.store) {
        options_.eeprom[step.store->address] = step.store->byte;
        ++stored_;
    }
    return {std::move(step.bytes), step.hangUp};
}

ModuleStep SimulatedModule::StepFor(std::uint8_t byte) {
    ModuleStep step;
    if (options_.echo) step.Send(byte);
    step.echoes = step.bytes.size();

    switch (std::exchange(expecting_, Expecting::Command)) {
        case Expecting::Command:
            Obey(byte, step);
            break;
        case Expecting::AddressLow:
            addressLow_ = byte;
            expecting_ = Expecting::AddressHigh;
            break;
        case Expecting::AddressHigh:
            address_ = addressLow_ + 256 * byte;
            step.completed = ModuleStep::Completed::Address;
            step.Send(WireBytes::kAcknowledge);
            break;
        case Expecting::Data:
            step.completed = ModuleStep::Completed::Write;
            step.store = {NextAddress(), byte};
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
            expecting_ = Expecting::AddressLow;
            break;
        case WireBytes::kRead:
            step.completed = ModuleStep::Completed::Read;
            step.Send(options_.eeprom[NextAddress()]);
            break;
        case WireBytes::kWrite:
            expecting_ = Expecting::Data;
            break;
        default:
            break;
    }
}

int SimulatedModule::NextAddress() {
    const int current = address_;
    address_ = (address_ + 1) % ModuleEeprom::kSize;
    return current;
}

}  // namespace rv52
