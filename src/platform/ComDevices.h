#pragma once

#include <map>
#include <string>

namespace rv52 {

constexpr int kHighestCommPort = 255;

// "Com1" to "Com255".
std::string CommPortName(int commPort);

// Which serial device ComN is on this machine. On Linux Com1 to Com32 are /dev/ttyS0 to 31, Com33 to Com64
// /dev/ttyUSB0 to 31, Com65 to Com96 /dev/ttyACM0 to 31; the others have no device of their own. On Windows
// ComN is the system's own.
class ComDevices {
 public:
    // For this run ComN is that device, a path from the working folder; known by a name where the path tells
    // a user nothing.
    void Override(int commPort, const std::string& device, const std::string& name = {});

    // The empty text when ComN has no device.
    std::string DeviceOf(int commPort) const;

    // What users know the device by: mostly its path.
    std::string NameOf(int commPort) const;

 private:
    struct Chosen {
        std::string device;
        std::string name;
    };

    std::map<int, Chosen> overrides_;
};

}  // namespace rv52
