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
    void Connect(const ModuleOptions& options, Faults faults, bool slow);
    PeerAnswer Receive(std::uint8_t byte) override;

    SimulatedModule& Module() { return *module_; }
    const ModuleOptions& Options() const { return options_; }
    Seen SeenAt(int address) const { return seen_.at(static_cast<std::size_t>(address)); }
    void ForgetSeen() { seen_.fill(Seen::No); }
    // A stray byte is on the wire: the reply under way, and those that may be taken with it, count as
    // falsified.
    void NoteStray();

    // The clock of the wire.
    const VirtualLine* line = nullptr;

 private:
    void Judge(int address, const PeerAnswer& answer);

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
