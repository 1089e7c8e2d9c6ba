#include "table/commands/TableDisplay.h"

#include "app/state/FormResize.h"
#include "app/state/Session.h"
#include "table/Numbers.h"
#include "table/commands/GridCursor.h"

namespace rv52 {

void SetUpTableGrid(Session& session, TableType type) {
    session.sheet.SetUp(type);
}

void SetGridEditability(Session& session, TableType type) {
    session.sheet.SetEditable(type != TableType::EX);
}

void SetEditingPermission(Session& session, TableType type) {
    SetGridEditability(session, type);
    session.chart.SetInteractive(type != TableType::EX);
}

void CopyChartToGrid(Session& session) {
    const auto& table = session.table.Table();
    const SheetHold hold(session.sheet);
    ForEachCell(table.Type(), [&](Cell cell) {
        session.sheet.SetText(GridCellOf(cell, table.Type()), FormatTenths(table.GetCell(cell)));
    });
}

void FillAndShowTable(Session& session, const std::string& how, GridCell cursor) {
    session.steps([&] { CopyChartToGrid(session); });
    session.steps([&] { session.history.Loaded(how); });
    session.steps([&] { session.chart.HideLabel(); });
    session.steps([&] { Form_Resize(session); });
    session.steps([&] { ShowTable(session); });
    session.steps([&] { MoveGridCursor(session, cursor); });
}

void ShowTable(Session& session) {
    session.view.Show();
    session.state.TableShown = true;
    session.shell.RenewStatus();
}

void HideTable(Session& session) {
    session.view.Hide();
    session.history.Forget();
    session.state.TableShown = false;
    session.shell.RenewStatus();
}

}  // namespace rv52
