#pragma once

#include <csignal>
#include <cstdint>
#include <fstream>
#include <string>

namespace rv52::test {

// Whether a process has come to where a SIGTERM no longer just kills it.
inline bool WaitsForSignals(std::int64_t process) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string key, value; status >> key && std::getline(status, value);)
        if (key == "SigCgt:") return (std::stoull(value, nullptr, 16) >> (SIGTERM - 1) & 1U) != 0;
    return false;
}

}  // namespace rv52::test
