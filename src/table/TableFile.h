#pragma once

#include "table/AdvanceTable.h"
#include "table/ModuleParameters.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace rv52 {

// The table file: the table data block, then the "!" lines of its parameters. docs/file-formats.md has
// the syntax.

// The file's whole text, CR LF after every line.
std::string FormatTableFile(const AdvanceTable& table, const ModuleParameters& parameters);

// What a table file says besides its table. FlagByte is not kept in files.
struct TableFileParameters {
    TableType type = TableType::RACE;
    ModuleParameters parameters;
};

// What stands where the file says nothing: the four flags keep the values they had.
TableFileParameters UnstatedParameters(const ModuleParameters& current);

// One statement about a parameter: a key found in a line, the line's value, and which line of the file it is.
struct ParameterLine {
    std::size_t key;
    std::string_view value;
    int number;
};

// "RPMLimit".
std::string_view ParameterName(std::size_t key);

// Every statement of a file's text, in the order in which they are applied; the last one about a key holds.
std::vector<ParameterLine> FindParameters(std::string_view text);

// Applies one statement, clamping numbers to their range. Throws Failure, and changes nothing, for a number
// that is no 16-bit integer.
void ApplyParameter(const ParameterLine& line, TableFileParameters& to);

}  // namespace rv52
