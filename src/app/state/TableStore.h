#pragma once

#include "app/state/DrawFailures.h"
#include "app/state/Listeners.h"
#include "table/AdvanceTable.h"

#include <functional>
#include <optional>

namespace rv52 {

// The current table: the one store of its values, which chart and grid show and upload, save and report
// read. Redrawing can be suspended, counted: many changes between, one redraw at the end.
class TableStore {
 public:
    explicit TableStore(DrawFailures& drawing) : drawing_(drawing) {}

    bool HasTable() const { return table_.has_value(); }
    // Only with a table.
    const AdvanceTable& Table() const { return table_.value(); }

    void Replace(const AdvanceTable& table);
    void SetCell(Cell cell, double degrees);
    // Something drawn with the values has changed: the value label, the template.
    void Touch();

    void Suspend() { ++suspended_; }
    void Resume();

    // Called once after every change, or once after a suspended run of changes. Whoever changes the table
    // never hears of a failure there: it is told when the change is over.
    [[nodiscard]] Listening OnRedraw(std::function<void()> redraw) { return redraws_.Add(std::move(redraw)); }

 private:
    DrawFailures& drawing_;
    std::optional<AdvanceTable> table_;
    Listeners<> redraws_;
    int suspended_ = 0;
    bool touched_ = false;
};

// Holds redrawing suspended for its own life.
class RedrawHold {
 public:
    explicit RedrawHold(TableStore& store) : store_(store) { store_.Suspend(); }
    ~RedrawHold() { store_.Resume(); }
    RedrawHold(const RedrawHold&) = delete;
    RedrawHold& operator=(const RedrawHold&) = delete;

 private:
    TableStore& store_;
};

}  // namespace rv52
