#include "table/commands/Undo.h"

#include "app/state/Session.h"
#include "platform/Text.h"

namespace rv52 {

namespace {

using History = EditHistory;

// Back, or forth again: the step next on the way, and what it brings.
struct Way {
    const char* done;
    const char* nothing;
    const History::Step* (History::*next)() const;
    History::Content History::ChangedCell::*content;
    History::Place History::Step::*place;
    void (History::*walked)();
};

constexpr Way kBack{"Undone",
                    "Nothing to undo",
                    &History::ToUndo,
                    &History::ChangedCell::before,
                    &History::Step::before,
                    &History::Undone};
constexpr Way kForth{
    "Redone",        "Nothing to redo", &History::ToRedo, &History::ChangedCell::after, &History::Step::after,
    &History::Redone};

void Bring(Session& session, const History::Step& to, const Way& way) {
    const RedrawHold redrawHold(session.table);
    const SheetHold sheetHold(session.sheet);
    session.chart.HideLabel();
    for (const auto& cell : to.cells) {
        const auto& content = cell.*way.content;
        session.table.SetCell(CellAt(cell.at, session.table.Table().Type()), content.degrees);
        session.sheet.SetText(cell.at, content.text);
    }
    const auto& place = to.*way.place;
    session.sheet.Select(place.selection, place.cursor);
}

// Tells "Undone: Modify, 12 cells".
void Walk(Session& session, const Way& way) {
    session.steps.Procedure([&](Steps& step) {
        const auto* next = (session.history.*way.next)();
        if (next == nullptr) return TellOutcome(session, way.nothing);
        step([&] { Bring(session, *next, way); });
        (session.history.*way.walked)();
        TellOutcome(session,
                    std::string(way.done) + ": " + next->name + ", " + Counted(next->cells.size(), "cell"));
    });
}

}  // namespace

void UndoEdit(Session& session) {
    Walk(session, kBack);
}

void RedoEdit(Session& session) {
    Walk(session, kForth);
}

}  // namespace rv52
