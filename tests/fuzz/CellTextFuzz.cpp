#include "app/StartUp.h"
#include "fuzz/Bytes.h"
#include "fuzz/FuzzedSession.h"
#include "fuzz/Target.h"
#include "table/Numbers.h"
#include "table/commands/CopyPasteModify.h"
#include "table/commands/EndEdit.h"
#include "table/commands/TableDisplay.h"

#include <cmath>

namespace rv52::fuzz {

namespace {

// Who types what the input says.
class Typist : public test::DismissingUser {
 public:
    std::string AskText(const InputBox&) override { return text; }

    std::string text;
};

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

// Tabs and line ends around a text are another program's, and no part of it.
std::string Bare(const std::string& text) {
    constexpr const char* ends = "\t\r\n";
    const auto first = std::min(text.find_first_not_of(ends), text.size());
    return text.substr(first, text.find_last_not_of(ends) + 1 - first);
}

void Edit(Session& session, Bytes& bytes) {
    const auto at = CellOf(bytes, session.sheet);
    if (!at.IsData()) return;
    const auto text = bytes.Text('\n');
    const auto before = session.table.Table();
    const bool accepted = EndEdit(session, at, text);
    Require(accepted ? session.sheet.Text(at) == Bare(text) : session.table.Table() == before,
            "a text stands as typed, a refused one changes nothing");
}

void RequireInLimits(const Session& session) {
    const bool ex = session.state.TableType == TableType::EX;
    ForEachCell(session.state.TableType, [&](Cell cell) {
        const double degrees = session.table.Table().GetCell(cell);
        Require(std::isfinite(degrees) && (ex || degrees >= 0), "an advance");
        Require(degrees <= CellLimit(session.state, session.state.TableType, cell), "within its limit");
        const auto text = session.sheet.Text(GridCellOf(cell, session.state.TableType));
        // To a tenth, of a number of more than 15 digits to the last of those.
        Require(std::abs(LeadingNumber(text).value_or(0) - degrees) <= 0.051 + std::abs(degrees) * 5e-15,
                "the grid shows the table");
    });
}

}  // namespace

// What is typed into cells, copied, pasted and typed to Modify, in any order.
void Target(std::string_view input) {
    test::IdleLine line;
    static const test::TestSession shipped(line);
    test::MemoryFiles files = shipped.files;
    test::RecordingView view;
    test::RecordingShell shell;
    test::MemorySettings settings;
    test::RecordingPrinter printer;
    Typist user;
    Session session(Ports{line, user, view, shell, files, settings, printer});
    Require(StartUp(session), "it starts");

    Bytes bytes(input);
    const auto type = bytes.Next() % 2 == 0 ? TableType::RACE : TableType::EX;
    session.state.TableType = type;
    session.table.Replace(AdvanceTable(type));
    SetUpTableGrid(session, type);
    FillAndShowTable(session, "opened", {GridRow(1), GridColumn(1)});
    while (bytes.Any()) {
        const int deed = bytes.Next() % 4;
        if (deed == 0) {
            Edit(session, bytes);
        } else {
            Select(session, bytes);
            if (deed == 1) mnuPopUpCopy3D_Click(session);
            if (deed == 2) mnuPopupPaste3D_Click(session);
            if (deed == 3) user.text = bytes.Text('\n');
            if (deed == 3) mnuPopUpModify3D_Click(session);
        }
    }
    RequireInLimits(session);
}

}  // namespace rv52::fuzz
