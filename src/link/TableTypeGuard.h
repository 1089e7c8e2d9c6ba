#pragma once

#include "app/AppState.h"

namespace rv52 {

// Identifying a module makes TableType the module's. The guard gives it back at the end of the command, by
// whichever way the command ends, so that the module's type never outlives it.
class TableTypeGuard {
 public:
    explicit TableTypeGuard(AppState& state) : state_(state), kept_(state.TableType) {}
    ~TableTypeGuard() { state_.TableType = kept_; }
    TableTypeGuard(const TableTypeGuard&) = delete;
    TableTypeGuard& operator=(const TableTypeGuard&) = delete;

 private:
    AppState& state_;
    TableType kept_;
};

}  // namespace rv52
