#include "app/state/AppState.h"

namespace rv52 {

double CellLimit(const AppState& state, TableType type, Cell cell) {
    return type == TableType::EX ? state.ExMaxTable.GetCell(cell) : kHighestAdvance;
}

}  // namespace rv52
