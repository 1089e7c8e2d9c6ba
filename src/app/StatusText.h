#pragma once

#include <string>

namespace rv52 {

struct AppState;
class EditHistory;
class GridSheet;
class TableStore;

// The line under the grid. First what matters most right now: the work on the module and what may be done
// meanwhile; else how the last transfer into it ended; else the current cell with its exact value and its
// limit; else, without a table, what to do first. Then the selected port with its device, which is empty for
// a port without one. Between them, in how many cells the table differs from what was last loaded or saved.
std::string StatusText(const AppState& state, const TableStore& table, const GridSheet& sheet,
                       const EditHistory& history, const std::string& device);

}  // namespace rv52
