#include "fuzz/Bytes.h"
#include "fuzz/FuzzedSession.h"
#include "fuzz/Target.h"
#include "support/ShownTable.h"
#include "table/Numbers.h"
#include "table/commands/CopyPasteModify.h"
#include "table/commands/EndEdit.h"

#include <cmath>

namespace rv52::fuzz {

namespace {

GridCell CellOf(Bytes& bytes, const GridSheet& sheet) {
    return {GridRow(bytes.Next() % sheet.RowCountWithHeader()),
            GridColumn(bytes.Next() % sheet.ColumnCountWithHeader())};
}

void Select(Session& session, Bytes& bytes) {
    auto one = CellOf(bytes, session.sheet);
    auto other = CellOf(bytes, session.sheet);
    if (one.row > other.row) std::swap(one.row, other.row);
    if (one.column > other.column) std::swap(one.column, other.column);
    session.sheet.Select({one, other}, one);
}

void Edit(Session& session, Bytes& bytes) {
    const auto at = CellOf(bytes, session.sheet);
    if (!at.IsData()) return;
    const auto text = bytes.Text('\n');
    const auto before = session.table.Table();
    const bool accepted = EndEdit(session, at, text);
    const bool stands = text.find(session.sheet.Text(at)) != std::string::npos;
    Require(accepted ? stands : session.table.Table() == before,
            "a text stands as typed, a refused one changes nothing");
}

void RequireInLimits(const Session& session) {
    const auto type = session.state.TableType;
    ForEachCell(type, [&](Cell cell) {
        const double degrees = session.table.Table().GetCell(cell);
        Require(std::isfinite(degrees) && (type == TableType::EX || degrees >= 0), "an advance");
        Require(degrees <= CellLimit(session.state, type, cell), "within its limit");
        const auto text = session.sheet.Text(GridCellOf(cell, type));
        // To a tenth, of a number of more than 15 digits to the last of those.
        Require(std::abs(LeadingNumber(text).value_or(0) - degrees) <= 0.051 + std::abs(degrees) * 5e-15,
                "the grid shows the table");
    });
}

}  // namespace

// What is typed into cells, copied, pasted and typed to Modify, in any order.
void Target(std::string_view input) {
    FuzzedSession desk;
    auto& session = desk.session;
    Bytes bytes(input);
    test::ShowAs(session, AdvanceTable(bytes.Next() % 2 == 0 ? TableType::RACE : TableType::EX));
    while (bytes.Any()) {
        const int deed = bytes.Next() % 4;
        if (deed == 0) {
            Edit(session, bytes);
        } else {
            Select(session, bytes);
            if (deed == 1) mnuPopUpCopy3D_Click(session);
            if (deed == 2) mnuPopupPaste3D_Click(session);
            if (deed == 3) desk.user.text = bytes.Text('\n');
            if (deed == 3) mnuPopUpModify3D_Click(session);
        }
    }
    RequireInLimits(session);
}

}  // namespace rv52::fuzz
