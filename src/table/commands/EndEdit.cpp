#include "table/commands/EndEdit.h"

#include "app/state/Session.h"
#include "table/Numbers.h"

namespace rv52 {

namespace {

std::string Refusal(const Session& session, GridCell at) {
    if (session.state.TableType != TableType::EX)
        return "Advance must be numeric value between zero and 45 degrees.";
    return "EX version advance must be numeric value between zero and " +
           FormatTenths(UpperLimit(session, at)) + " degrees.";
}

// What another program's clipboard hangs on to a number, and what the grid's own copies part cells with.
std::string WithoutCellEnds(const std::string& text) {
    constexpr const char* ends = "\t\r\n";
    const auto first = text.find_first_not_of(ends);
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(ends) + 1 - first);
}

bool MayBecome(const Session& session, GridCell at, const std::string& text) {
    const auto value = EntireNumber(text);
    return value && *value >= 0 && *value <= UpperLimit(session, at);
}

}  // namespace

double UpperLimit(const Session& session, GridCell at) {
    const auto type = session.state.TableType;
    return CellLimit(session.state, type, CellAt(at, type));
}

bool ValidateEdit(Session& session, GridCell at, const std::string& text) {
    if (MayBecome(session, at, text)) return true;
    session.steps.Tell(Refusal(session, at), "Advance Edit", Icon::Critical);
    return false;
}

void AcceptEdit(Session& session, GridCell at, const std::string& text) {
    const RedrawHold hold(session.table);
    const double degrees = LeadingNumber(text).value_or(0.0);
    session.history.Begin();
    session.sheet.SetText(at, text);
    session.table.SetCell(CellAt(at, session.table.Table().Type()), degrees);
    session.chart.SetLabelText(FormatTenths(degrees));
    session.history.End("Edit");
}

bool EndEdit(Session& session, GridCell at, const std::string& typed) {
    const auto text = WithoutCellEnds(typed);
    bool accepted = false;
    session.steps.Procedure([&](Steps& step) {
        accepted = ValidateEdit(session, at, text);
        if (accepted) step([&] { AcceptEdit(session, at, text); });
    });
    return accepted;
}

void SettleEdit(Session& session, GridCell at, const std::string& typed) {
    const auto text = WithoutCellEnds(typed);
    session.steps.Procedure([&](Steps& step) {
        if (MayBecome(session, at, text)) step([&] { AcceptEdit(session, at, text); });
    });
}

}  // namespace rv52
