#include "app/state/EditHistory.h"

#include <utility>

namespace rv52 {

namespace {

// In the order in which the contents are kept.
template <class Visit>
void ForEachGridCell(TableType type, Visit&& visit) {
    ForEachCell(type, [&](Cell cell) { visit(GridCellOf(cell, type)); });
}

}  // namespace

std::vector<EditHistory::Content> EditHistory::ContentsNow() const {
    const auto& table = table_.Table();
    std::vector<Content> contents;
    contents.reserve(table.GetValues().size());
    ForEachGridCell(table.Type(), [&](GridCell at) {
        contents.push_back({table.GetCell(CellAt(at, table.Type())), sheet_.Text(at)});
    });
    return contents;
}

void EditHistory::End(const std::string& name) {
    if (contents_.empty()) return;  // a table that is on its way to the screen has no past yet
    Step step{name, {}, begun_, PlaceNow()};
    const auto& table = table_.Table();
    auto kept = contents_.begin();
    ForEachGridCell(table.Type(), [&](GridCell at) {
        auto& before = *kept++;
        const double degrees = table.GetCell(CellAt(at, table.Type()));
        const auto& text = sheet_.Text(at);
        if (before.degrees == degrees && before.text == text) return;
        Content after{degrees, text};
        step.cells.push_back({at, std::exchange(before, after), after});
    });
    if (step.cells.empty()) return;
    steps_.erase(steps_.begin() + static_cast<std::ptrdiff_t>(done_), steps_.end());
    steps_.push_back(std::move(step));
    if (steps_.size() > kMostSteps) steps_.pop_front();
    done_ = steps_.size();
}

void EditHistory::Undone() {
    --done_;
    contents_ = ContentsNow();
}

void EditHistory::Redone() {
    ++done_;
    contents_ = ContentsNow();
}

void EditHistory::Loaded(const std::string& how) {
    Forget();
    contents_ = ContentsNow();
    unchanged_ = table_.Table();
    since_ = how;
}

void EditHistory::Saved() {
    unchanged_ = table_.Table();
    since_ = "saved";
}

void EditHistory::Forget() {
    steps_.clear();
    done_ = 0;
    contents_.clear();
    unchanged_.reset();
}

std::size_t EditHistory::ChangedCells() const {
    if (!unchanged_ || !table_.HasTable() || unchanged_->Type() != table_.Table().Type()) return 0;
    std::size_t changed = 0;
    ForEachCell(unchanged_->Type(),
                [&](Cell cell) { changed += unchanged_->GetCell(cell) != table_.Table().GetCell(cell); });
    return changed;
}

}  // namespace rv52
