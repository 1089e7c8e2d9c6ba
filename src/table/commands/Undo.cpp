#include "table/commands/Undo.h"

#include "app/state/Session.h"
#include "platform/Text.h"

namespace rv52 {

namespace {

using History = EditHistory;

void Bring(Session& session, const History::Step& to, History::Content History::ChangedCell::*content,
           History::Place History::Step::*place) {
    const RedrawHold redrawHold(session.table);
    const SheetHold sheetHold(session.sheet);
    session.chart.HideLabel();
    for (const auto& cell : to.cells) {
        session.table.SetCell(CellAt(cell.at, session.table.Table().Type()), (cell.*content).degrees);
        session.sheet.SetText(cell.at, (cell.*content).text);
    }
    session.sheet.Select((to.*place).selection, (to.*place).cursor);
}

void Tell(Session& session, const std::string& outcome) {
    session.state.LastOutcome = outcome;
    session.shell.RenewStatus();
}

// "Undone: Modify, 12 cells"
std::string Outcome(const std::string& done, const History::Step& step) {
    return done + ": " + step.name + ", " + Counted(step.cells.size(), "cell");
}

}  // namespace

void UndoEdit(Session& session) {
    session.steps.Procedure([&](Steps& step) {
        const auto* undone = session.history.ToUndo();
        if (undone == nullptr) return Tell(session, "Nothing to undo");
        step([&] { Bring(session, *undone, &History::ChangedCell::before, &History::Step::before); });
        session.history.Undone();
        Tell(session, Outcome("Undone", *undone));
    });
}

void RedoEdit(Session& session) {
    session.steps.Procedure([&](Steps& step) {
        const auto* redone = session.history.ToRedo();
        if (redone == nullptr) return Tell(session, "Nothing to redo");
        step([&] { Bring(session, *redone, &History::ChangedCell::after, &History::Step::after); });
        session.history.Redone();
        Tell(session, Outcome("Redone", *redone));
    });
}

}  // namespace rv52
