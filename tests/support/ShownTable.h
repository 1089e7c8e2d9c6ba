#pragma once

#include "support/TestSession.h"
#include "table/LimitTables.h"
#include "table/commands/TableDisplay.h"

#include <gtest/gtest.h>
#include <stdexcept>
#include <tuple>

namespace rv52::test {

// Shows a table as the loading commands do, with the shipped EX maximum as the EX limits.
inline void ShowAs(Session& session, const AdvanceTable& table) {
    const auto maximum = LoadLimitTable(session.files, TableType::EX, Limit::Maximum);
    if (!maximum) throw std::runtime_error("no EX maximum");
    session.state.ExMaxTable = *maximum;
    session.state.TableType = table.Type();
    session.table.Replace(table);
    SetUpTableGrid(session, table.Type());
    FillAndShowTable(session, "opened", {GridRow(0), GridColumn(0)});
    SetEditingPermission(session, table.Type());
}

// What the user sees of it, in words.
inline std::string OnScreen(const TestSession& test) {
    const auto& [sheet, chart] = std::tie(test.session.sheet, test.session.chart);
    EXPECT_EQ(test.view.shown, test.session.state.TableShown);
    const auto cursor = sheet.Cursor();
    return std::string(ToText(test.session.state.TableType)) + (test.view.shown ? " shown, " : " hidden, ") +
           std::to_string(sheet.RowCountWithHeader() - 1) + " rows, at " + std::to_string(cursor.row) + " " +
           std::to_string(cursor.column) + (sheet.Editable() ? ", editable" : ", fixed") +
           (chart.Interactive() ? ", chart editable" : ", chart fixed") + ", template of " +
           std::to_string(chart.Template() ? chart.Template()->rows : 0) +
           (chart.Label().shown ? ", label " + chart.Label().text : "") + ": " + test.shell.caption;
}

// A table whose cells all hold the same advance.
inline AdvanceTable FlatTable(TableType type, double degrees) {
    AdvanceTable table(type);
    ForEachCell(type, [&](Cell cell) { table.SetCell(cell, degrees); });
    return table;
}

}  // namespace rv52::test
