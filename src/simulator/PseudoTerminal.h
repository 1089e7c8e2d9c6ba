#pragma once

#include "simulator/DeviceWatch.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace rv52 {

// The far end of a serial device that exists only in the kernel: no byte is translated or echoed on the
// way. Programs may open and close the device as often as they like. While one of these lives, the signals
// that end a program (SIGINT, SIGTERM, SIGHUP) are events of WaitUntil. Calls that fail throw
// std::system_error.
class PseudoTerminal {
 public:
    using Clock = std::chrono::nanoseconds;  // of std::chrono::steady_clock
    enum class Event { Time, Traffic, Signal };
    // Bytes, and closings of the device by the programs that use it. Where both have come by the same moment,
    // a closing stands before the bytes if the device has been opened again since: it is most likely that
    // program's bytes that have come.
    struct Traffic {
        int closingsBefore = 0;
        std::vector<std::uint8_t> bytes;
        int closingsAfter = 0;
    };

    PseudoTerminal();
    ~PseudoTerminal();
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;

    const std::string& Path() const { return path_; }

    // Until there is traffic, a signal has, or it is just short of this time: the last few microseconds are
    // the caller's to ask again.
    Event WaitUntil(std::optional<Clock> time);
    // What has come. A program that was killed may have left the device in exclusive mode, which would keep
    // every other one out: that ends here.
    Traffic Read();
    // A byte that nobody takes in time is lost, as it is on a wire.
    void Write(std::uint8_t byte);
    // The device is gone, as if its plug had been pulled.
    void HangUp();

 private:
    void OpenDevice();
    std::vector<std::uint8_t> ReadBytes();
    void EndExclusiveMode();
    void CloseAll() noexcept;

    int master_ = -1;
    // Held open so that the device outlives the programs that use it.
    int device_ = -1;
    int signals_ = -1;
    DeviceWatch watch_;
    std::string path_;
};

}  // namespace rv52
