#pragma once

#include "table/TableType.h"

#include <map>
#include <optional>
#include <span>
#include <string>
#include <variant>

namespace rv52 {

struct CommandLine {
    bool help = false;
    bool version = false;
    std::map<int, std::string> devices;  // --com N=DEVICE
    std::optional<TableType> simulate;   // --simulate RACE|EX
    std::string tableFile;               // empty: none
};

// The options as given, or what is wrong with them in one line. Paths are left as they are.
std::variant<CommandLine, std::string> ParseCommandLine(std::span<const char* const> arguments);

// What --help prints.
const char* UsageText();

}  // namespace rv52
