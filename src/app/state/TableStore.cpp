#include "app/state/TableStore.h"

namespace rv52 {

void TableStore::Replace(const AdvanceTable& table) {
    table_ = table;
    Touch();
}

void TableStore::SetCell(Cell cell, double degrees) {
    table_.value().SetCell(cell, degrees);
    Touch();
}

void TableStore::Touch() {
    touched_ = true;
    if (suspended_ > 0) return;
    touched_ = false;
    redraws_.ForEach([this](const auto& redraw) { drawing_.Guard(redraw); });
}

void TableStore::Resume() {
    if (--suspended_ == 0 && touched_) Touch();
}

}  // namespace rv52
