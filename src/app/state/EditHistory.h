#pragma once

#include "app/state/GridSheet.h"
#include "app/state/TableStore.h"

#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace rv52 {

// What the user has done to the current table since it was loaded, step by step, so that it can be taken back
// and made again; and in how many cells the table differs from what a file or a module holds.
//
// Texts are kept beside values, since the grid shows what was typed. A step takes some 200 bytes and 90 more
// for each further cell: 4 MB for the most steps there can be, each of a whole EX table.
class EditHistory {
 public:
    static constexpr std::size_t kMostSteps = 256;

    struct Content {
        double degrees = 0;
        std::string text;

        bool operator==(const Content&) const = default;
    };
    struct ChangedCell {
        GridCell at;
        Content before;
        Content after;
    };
    struct Place {
        GridCell cursor;
        GridRange selection;
    };
    struct Step {
        std::string name;
        std::vector<ChangedCell> cells;  // at least one
        Place before;
        Place after;
    };

    EditHistory(const TableStore& table, const GridSheet& sheet) : table_(table), sheet_(sheet) {}

    // A step may begin: cursor and selection stand where undoing it brings them back.
    void Begin() { begun_ = PlaceNow(); }
    // What has changed since the last step becomes one, if anything has. Whatever was undone before it is
    // gone.
    void End(const std::string& name);

    // The step to undo or redo next; none at the ends. Whoever brings its contents back says so after it.
    const Step* ToUndo() const { return done_ == 0 ? nullptr : &steps_[done_ - 1]; }
    const Step* ToRedo() const { return done_ == steps_.size() ? nullptr : &steps_[done_]; }
    void Undone();
    void Redone();

    // Another table is there, or none: there is nothing to undo. how is what the table was: "opened".
    void Loaded(const std::string& how);
    void Saved();
    void Forget();

    // In how many cells the values differ from what was last loaded or saved, and how that was.
    std::size_t ChangedCells() const;
    const std::string& Since() const { return since_; }

 private:
    Place PlaceNow() const { return {sheet_.Cursor(), sheet_.Selection()}; }
    std::vector<Content> ContentsNow() const;

    const TableStore& table_;
    const GridSheet& sheet_;
    std::deque<Step> steps_;
    std::size_t done_ = 0;           // as many steps are done; those behind them are undone
    std::vector<Content> contents_;  // of all cells, as the last step, or the load, has left them
    Place begun_;
    std::optional<AdvanceTable> unchanged_;  // what was last loaded or saved
    std::string since_;
};

}  // namespace rv52
