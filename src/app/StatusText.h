#pragma once

#include <string>

namespace rv52 {

struct AppState;
class GridSheet;
class TableStore;

// The line under the grid: the current cell with its exact value and its limit, or during a transfer what
// may be done meanwhile; then the selected port with its device, which is empty for a port without one.
std::string StatusText(const AppState& state, const TableStore& table, const GridSheet& sheet,
                       const std::string& device);

}  // namespace rv52
