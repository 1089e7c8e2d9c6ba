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

// The ignition module's side of the wire, one received byte at a time. But for its power, time is nothing to
// it: a command whose arguments have not all come waits for them for ever, and takes the next byte for one,
// whatever it is.
// Bytes that are no command are echoed, where it echoes, and otherwise ignored.
class SimulatedModule : public Peer {
 public:
    explicit SimulatedModule(ModuleOptions options, Faults faults = {});

    PeerAnswer Receive(std::uint8_t byte) override;
    void PassTime(Clock now) override { now_ = now; }
    void PortClosed() override;

    const ModuleEeprom& Eeprom() const { return options_.eeprom; }
    ModuleEeprom& Eeprom() { return options_.eeprom; }
    // Times that a byte was stored, whatever its value.
    long Stored() const { return stored_; }
    // Where it stands: the current address, and what it takes the next byte for.
    const ModuleState& State() const { return state_; }

 private:
    ModuleStep StepFor(std::uint8_t byte);
    void Obey(std::uint8_t command, ModuleStep& step);
    void Take(ModuleStep& step);

    ModuleOptions options_;
    Faults faults_;
    ModuleState state_;
    Clock now_{0};
    Clock awayUntil_{0};
    long stored_ = 0;
};

}  // namespace rv52
