#pragma once

#include "simulator/Faults.h"
#include "table/TableType.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace rv52 {

struct SimulatorOptions {
    TableType type = TableType::RACE;
    std::string identification;  // empty: the type's own
    bool echo = true;
    std::string imagePath;             // empty: nothing is kept
    std::optional<int> bitsPerSecond;  // unset: bytes take no time
    std::vector<FaultRequest> faults;
    std::uint64_t seed = 1;
    std::string tracePath;  // empty: none
    bool help = false;
};

// Reads "--option VALUE" and "--option=VALUE". Throws std::invalid_argument with one line that tells what
// is wrong.
SimulatorOptions ParseSimulatorOptions(std::span<const char* const> arguments);

// A text of one's own as a simulated module of this type sends it: "RV52A", and for EX "EX", are put before
// it where it lacks them. Throws std::invalid_argument for a text that would make a RACE module pass for EX
// or that holds other than printable ASCII characters.
std::string CompleteIdentification(std::string_view text, TableType type);

// What --help prints.
std::string SimulatorUsage();

}  // namespace rv52
