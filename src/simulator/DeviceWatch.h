#pragma once

#include <string>

namespace rv52 {

// Notices how programs open and close a device, however soon the one follows the other. Calls that fail throw
// std::system_error.
class DeviceWatch {
 public:
    // What has been noticed since the last look.
    struct Seen {
        // Closings by programs that could write to the device; who only asked for its settings does not
        // count.
        int closings = 0;
        // Whether it has been opened again since the last of them.
        bool openedSince = false;
    };

    DeviceWatch() = default;
    ~DeviceWatch();
    DeviceWatch(const DeviceWatch&) = delete;
    DeviceWatch& operator=(const DeviceWatch&) = delete;

    void Begin(const std::string& path);
    // To be polled for reading.
    int Descriptor() const { return descriptor_; }
    Seen Look();

 private:
    int descriptor_ = -1;
};

}  // namespace rv52
