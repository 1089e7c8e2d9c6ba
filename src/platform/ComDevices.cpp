#include "platform/ComDevices.h"

#include <filesystem>

namespace rv52 {

std::string CommPortName(int commPort) {
    return "Com" + std::to_string(commPort);
}

void ComDevices::Override(int commPort, const std::string& device, const std::string& name) {
    const auto path = std::filesystem::absolute(device).string();
    overrides_[commPort] = {path, name.empty() ? path : name};
}

std::string ComDevices::DeviceOf(int commPort) const {
    if (const auto chosen = overrides_.find(commPort); chosen != overrides_.end())
        return chosen->second.device;
#ifdef _WIN32
    return "COM" + std::to_string(commPort);
#else
    static constexpr int kDevicesOfAKind = 32;
    static constexpr const char* kKinds[] = {"/dev/ttyS", "/dev/ttyUSB", "/dev/ttyACM"};
    const int kind = (commPort - 1) / kDevicesOfAKind;
    if (commPort < 1 || kind >= 3) return {};
    return kKinds[kind] + std::to_string((commPort - 1) % kDevicesOfAKind);
#endif
}

std::string ComDevices::NameOf(int commPort) const {
    const auto chosen = overrides_.find(commPort);
    return chosen == overrides_.end() ? DeviceOf(commPort) : chosen->second.name;
}

}  // namespace rv52
