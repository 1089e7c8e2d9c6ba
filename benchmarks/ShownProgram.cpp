#include "ShownProgram.h"

#include "Samples.h"
#include "app/StartUp.h"
#include "table/commands/LoadChartTemplate.h"
#include "table/commands/TableDisplay.h"

#include <QCoreApplication>
#include <QWindow>

#include <stdexcept>

namespace rv52::bench {

ShownProgram::ShownProgram() {
    if (!StartUp(session)) throw std::runtime_error("the program's files are not beside this one");
    window.Compose(session, devices);
    window.show();
    while (!window.windowHandle()->isExposed())
        QCoreApplication::processEvents();
    Settle();
}

ShownProgram::~ShownProgram() {
    window.hide();
}

void ShownProgram::ShowExTable() {
    session.state.TableType = TableType::EX;
    session.table.Replace(ExTable());
    LoadChartTemplate(session, TableType::EX);
    SetUpTableGrid(session, TableType::EX);
    FillAndShowTable(session, "opened", {GridRow(1), GridColumn(1)});
    SetEditingPermission(session, TableType::EX);
    Settle();
}

void ShownProgram::Settle() {
    for (int turn = 0; turn < 3; ++turn)
        QCoreApplication::processEvents();
}

}  // namespace rv52::bench
