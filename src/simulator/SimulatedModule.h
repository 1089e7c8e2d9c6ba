#pragma once

#include "simulator/Faults.h"
#include "simulator/ModuleEeprom.h"
#include "simulator/ModuleStep.h"
#include "simulator/Peer.h"
#include "table/TableType.h"

#include <string>

namespace rv52 {

struct ModuleOptions {
    explicit ModuleOptions(TableType moduleType = TableType::RACE);

    TableType type;
    std::string identification;  // sent as it stands, its end of text added
    bool echo = true;            // sends every received byte back before it answers
    ModuleEeprom eeprom;
};

// The ignition module's side of the wire, one received byte at a time. It knows no time: a command whose
// arguments have not all come waits for them for ever, and takes the next byte for one, whatever it is.
// Bytes that are no command are echoed, where it echoes, and otherwise ignored.
class SimulatedModule : public Peer {
 public:
    explicit SimulatedModule(ModuleOptions options, Faults faults = {});

    PeerAnswer Receive(std::uint8_t byte) override;

    const ModuleEeprom& Eeprom() const { return options_.eeprom; }
    ModuleEeprom& Eeprom() { return options_.eeprom; }
    // Times that a byte was stored, whatever its value.
    long Stored() const { return stored_; }

 private:
    enum class Expecting { Command, AddressLow, AddressHigh, Data };

    ModuleStep StepFor(std::uint8_t byte);
    void Obey(std::uint8_t command, ModuleStep& step);
    int NextAddress();

    ModuleOptions options_;
    Faults faults_;
    Expecting expecting_ = Expecting::Command;
    int address_ = 0;
    std::uint8_t addressLow_ = 0;
    long stored_ = 0;
};

}  // namespace rv52
