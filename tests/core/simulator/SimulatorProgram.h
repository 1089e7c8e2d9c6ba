#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <sys/types.h>
#include <vector>

namespace rv52::test {

using Bytes = std::vector<std::uint8_t>;

// The simulator's program as a child process, ended with this.
class SimulatorProgram {
 public:
    explicit SimulatorProgram(std::vector<std::string> arguments);
    ~SimulatorProgram();
    SimulatorProgram(const SimulatorProgram&) = delete;
    SimulatorProgram& operator=(const SimulatorProgram&) = delete;

    // The first line that it prints; empty when it ends without one.
    const std::string& FirstLine() const { return firstLine_; }
    // Sends it a signal, none when 0, and waits for its end: the exit status, or −1 for another end.
    int End(int signal);

 private:
    pid_t pid_ = -1;
    std::string firstLine_;
};

// A program's end of the serial device.
class SerialDevice {
 public:
    explicit SerialDevice(const std::string& path);
    ~SerialDevice();
    SerialDevice(const SerialDevice&) = delete;
    SerialDevice& operator=(const SerialDevice&) = delete;

    // Sends these and waits for this many bytes; fewer when the device is gone or five seconds have passed.
    Bytes Exchange(const Bytes& sent, std::size_t count);
    bool IsGone() const { return gone_; }

 private:
    int descriptor_;
    bool gone_ = false;
};

}  // namespace rv52::test
