#pragma once

#include "table/TableType.h"

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace rv52::cli {

// What the tool ends with. Scripts rely on these numbers.
enum class Status {
    Done = 0,
    Found = 1,  // a difference, or something wrong in a file
    Usage = 2,
    File = 3,      // a file cannot be read, written, or is not what it should be
    Port = 4,      // the serial port
    NoAnswer = 5,  // none of the module, or a wrong one
    NotProgrammed = 6,
    NotVerified = 7,
    Interrupted = 130,
};

// In the place of a file: what the module holds.
constexpr const char* kModule = "module";
// Whether that is so for a command.
inline bool AdmitsModule(const std::string& command) {
    return command == "show" || command == "diff";
}

enum class Form { Text, Csv, Json };

// A command line, read.
struct Options {
    std::string command;

    // The module's line: at most one of them; none means the port that the window has stored.
    std::optional<int> port;
    std::string device;
    std::optional<TableType> simulate;

    std::vector<std::string>
        files;  // in the order in which the command takes them; "-" is standard input or output
    Form form = Form::Text;
    bool quiet = false;
    bool yes = false;
    std::string backup;
    std::string image;
    std::string vin;
    TableType type = TableType::RACE;
    int timing = 0;
    int slope = 0;
    std::string cells;
    std::string expression;
    std::string output;
};

// The options, or what the tool ends with after help, version or a refusal has been written.
std::variant<Options, Status> ReadOptions(int argc, char** argv);

}  // namespace rv52::cli
