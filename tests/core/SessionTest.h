#pragma once

#include "support/IdleLine.h"
#include "support/ShownTable.h"
#include "support/TestSession.h"

#include <gtest/gtest.h>

namespace rv52::test {

// A session without a module, for the commands that want none.
class SessionTest : public testing::Test {
 protected:
    void Show(const AdvanceTable& table) { ShowAs(session, table); }
    void ShowFlat(TableType type, double degrees) { Show(FlatTable(type, degrees)); }

    TableType Type() const { return session.table.Table().Type(); }
    double Degrees(Cell cell) const { return session.table.Table().GetCell(cell); }
    double Degrees(GridCell at) const { return Degrees(CellAt(at, Type())); }
    std::string Text(GridCell at) const { return session.sheet.Text(at); }
    std::string Text(Cell cell) const { return Text(GridCellOf(cell, Type())); }

    IdleLine line;
    TestSession test{line};
    Session& session = test.session;
    ScriptedPrompts& prompts = test.prompts;
    std::map<std::string, std::string>& files = test.files.contents;
    std::string& caption = test.shell.caption;
    ModuleParameters& parameters = session.state.ModuleParameters;
};

}  // namespace rv52::test
