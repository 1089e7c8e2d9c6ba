#pragma once

#include <string>

namespace rv52 {

// A hold on a serial device that programs of ours keep for a whole command, also while the port is closed for
// a moment or a box stands, so that none of them steps in between an address and its bytes. Others neither
// see nor respect it. The system takes it away from a program that ends, however it ends.
class DeviceHold {
 public:
    DeviceHold() = default;
    ~DeviceHold() { End(); }
    DeviceHold(const DeviceHold&) = delete;
    DeviceHold& operator=(const DeviceHold&) = delete;

    // False when another one holds the device. A device that is not there cannot be held, and need not be.
    // Throws std::system_error when the system has no place for the lock.
    bool Take(const std::string& device);
    void End() noexcept;

 private:
    int lock_ = -1;
    std::string path_;  // of the file that is locked
};

}  // namespace rv52
