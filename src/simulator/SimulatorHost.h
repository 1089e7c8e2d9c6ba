#pragma once

#include "simulator/ImageFile.h"
#include "simulator/PseudoTerminal.h"
#include "simulator/SimulatedModule.h"
#include "simulator/SimulatorOptions.h"
#include "simulator/Wire.h"
#include "simulator/WireTrace.h"

#include <fstream>
#include <memory>
#include <vector>

namespace rv52 {

// A simulated module on a pseudo-terminal, in real time.
class SimulatorHost {
 public:
    // Throws FileFailure when the image or the trace file cannot be used, std::system_error when there is
    // no pseudo-terminal.
    explicit SimulatorHost(const SimulatorOptions& options);

    const std::string& DevicePath() const { return terminal_.Path(); }

    // Until a signal ends it or a fault hangs the line up. False when the last change of the EEPROM could
    // not be saved.
    bool Serve();

 private:
    using Clock = Wire::Clock;

    void Receive();
    void ReceiveBytes(const std::vector<std::uint8_t>& bytes, Clock now);
    // False when the line has been hung up.
    bool SendDueBytes();
    std::optional<Clock> NextMoment() const;
    PseudoTerminal::Event Wait();
    void Trace(Direction direction, std::uint8_t byte, Clock time);
    bool Save();

    std::unique_ptr<ImageFile> image_;
    std::ofstream trace_;
    SimulatedModule module_;
    Wire wire_;
    PseudoTerminal terminal_;
    Clock start_;
    bool paced_;
    Clock attentiveUntil_{0};
    long storesSeen_ = 0;
    // A change of the EEPROM waits to be saved then.
    std::optional<Clock> saveAt_;
};

}  // namespace rv52
