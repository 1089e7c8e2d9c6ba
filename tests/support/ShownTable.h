#pragma once

#include "app/Session.h"
#include "table/LimitTables.h"
#include "table/TableDisplay.h"

#include <stdexcept>

namespace rv52::test {

// Shows a table as the loading commands do, with the shipped EX maximum as the EX limits.
inline void ShowAs(Session& session, const AdvanceTable& table) {
    const auto maximum = LoadLimitTable(session.files, TableType::EX, Limit::Maximum);
    if (!maximum) throw std::runtime_error("no EX maximum");
    session.state.ExMaxTable = *maximum;
    session.state.TableType = table.Type();
    session.table.Replace(table);
    SetUpTableGrid(session, table.Type());
    FillAndShowTable(session, {0, 0});
    SetEditingPermission(session, table.Type());
}

// A table whose cells all hold the same advance.
inline AdvanceTable FlatTable(TableType type, double degrees) {
    AdvanceTable table(type);
    ForEachCell(type, [&](Cell cell) { table.SetCell(cell, degrees); });
    return table;
}

}  // namespace rv52::test
