#include "table/commands/CopyPasteModify.h"

#include "app/state/Session.h"
#include "table/ModifyExpression.h"
#include "table/Numbers.h"
#include "table/commands/EndEdit.h"
#include "table/commands/GridCursor.h"

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

namespace rv52 {

namespace {

constexpr const char* kModifyPrompt =
    "Enter a new value. See examples below or Help for details.\r\n"
    "   Enter 30 to set all cells in selection to 30\r\n"
    "   Enter -5 to subtract 5 from each cell in selection\r\n"
    "   Enter +10 to add 10 to each cell in selection\r\n"
    "   Enter 80% to multiply each cell in selection by 80%\r\n"
    "   Enter -7.5% to reduce each cell in selection by 7.5%\r\n"
    "   Enter +15% to increase each cell in selection by 15%";

constexpr const char* kNoCells = "No cells are selected.";

constexpr char kCellSeparator = '\t';
constexpr char kRowSeparator = '\r';

std::size_t CellCount(const GridRange& range) {
    return static_cast<std::size_t>(range.last.row - range.first.row + 1) *
           static_cast<std::size_t>(range.last.column - range.first.column + 1);
}

template <class Visit>
void ForEachCellOf(const GridRange& range, Visit&& visit) {
    for (int row = range.first.row; row <= range.last.row; ++row)
        for (int column = range.first.column; column <= range.last.column; ++column)
            visit(GridCell{GridRow(row), GridColumn(column)});
}

double Spelled(const std::string& text) {
    return LeadingNumber(text).value_or(0.0);
}

bool IsEx(const Session& session) {
    return session.state.TableType == TableType::EX;
}

struct Changed {
    GridCell at;
    std::string text;
    double degrees = 0;
};
using Changes = std::vector<Changed>;

// Hides the label and puts the changes into their cells, under one redraw of chart and grid. They were worked
// out before the first cell changes, so that doing it once more is no second change.
void ChangeCells(Session& session, const Changes& changes) {
    const RedrawHold redrawHold(session.table);
    const SheetHold sheetHold(session.sheet);
    session.chart.HideLabel();
    for (const auto& changed : changes) {
        session.table.SetCell(CellAt(changed.at, session.table.Table().Type()), changed.degrees);
        session.sheet.SetText(changed.at, changed.text);
    }
}

// RACE stays within 0 to 45. EX has the cell's maximum above and nothing below but what a double can hold.
double ModifiedWithinLimits(const Session& session, GridCell at, double degrees) {
    const double lowest = IsEx(session) ? std::numeric_limits<double>::lowest() : 0.0;
    return std::clamp(degrees, lowest, UpperLimit(session, at));
}

Changes Modified(const Session& session, const GridRange& block, const ModifyExpression& expression) {
    Changes changes;
    changes.reserve(CellCount(block));
    ForEachCellOf(block, [&](GridCell at) {
        auto& changed = changes.emplace_back();
        changed.at = at;
        changed.degrees =
            ModifiedWithinLimits(session, at, expression.Apply(Spelled(session.sheet.Text(at))));
        changed.text = FormatTenths(changed.degrees);
    });
    return changes;
}

// The copied cells by rows, as CopyBuffer holds them.
std::vector<std::string> CopiedTexts(const std::string& buffer) {
    std::vector<std::string> texts(1);
    for (const char letter : buffer) {
        if (letter == kCellSeparator || letter == kRowSeparator)
            texts.emplace_back();
        else
            texts.back() += letter;
    }
    return texts;
}

// A copied block at the selection's top left; what would pass the grid's edge is left out.
GridRange PasteTarget(const Session& session, const GridRange& selection) {
    const auto [rows, columns] = std::pair(session.state.CopyRows, session.state.CopyCols);
    if (rows == 0 && columns == 0) return selection;
    return {
        selection.first,
        {GridRow(std::min(selection.first.row + rows, session.sheet.RowCountWithHeader() - 1)),
         GridColumn(std::min(selection.first.column + columns, session.sheet.ColumnCountWithHeader() - 1))}};
}

Changes Pasted(const Session& session, const GridRange& target) {
    const auto texts = CopiedTexts(session.state.CopyBuffer);
    const int columns = session.state.CopyCols + 1;
    Changes changes;
    changes.reserve(CellCount(target));
    ForEachCellOf(target, [&](GridCell at) {
        const int index = (at.row - target.first.row) * columns + at.column - target.first.column;
        auto text = texts.size() == 1 ? texts.front() : texts.at(static_cast<std::size_t>(index));
        if (IsEx(session) && Spelled(text) > UpperLimit(session, at))
            text = FormatTenths(UpperLimit(session, at));
        const double degrees = Spelled(text);
        changes.push_back({at, std::move(text), degrees});
    });
    return changes;
}

}  // namespace

void mnuPopUpCopy3D_Click(Session& session) {
    const auto block = session.sheet.SelectedData();
    if (!block) return TellOutcome(session, kNoCells);
    std::string buffer;
    ForEachCellOf(*block, [&](GridCell at) {
        if (at != block->first) buffer += at.column == block->first.column ? kRowSeparator : kCellSeparator;
        buffer += session.sheet.Text(at);
    });
    session.state.CopyBuffer = std::move(buffer);
    session.state.CopyRows = block->last.row - block->first.row;
    session.state.CopyCols = block->last.column - block->first.column;
}

void mnuPopupPaste3D_Click(Session& session) {
    session.steps.Procedure([&](Steps& step) {
        const auto selection = session.sheet.SelectedData();
        if (!selection) return TellOutcome(session, kNoCells);
        if (session.state.CopyBuffer.empty()) return;
        const auto target = PasteTarget(session, *selection);
        const auto changes = step.Value([&] { return Pasted(session, target); }, Changes{});
        session.history.Begin();
        step([&] {
            const RedrawHold hold(session.table);
            if (session.state.CopyRows > 0 || session.state.CopyCols > 0)
                SelectGridCells(session, target, target.first);
            ChangeCells(session, changes);
        });
        session.history.End("Paste");
    });
}

void mnuPopUpModify3D_Click(Session& session) {
    session.steps.Procedure([&](Steps& step) {
        const auto answer = step.Value(
            [&] {
                return session.prompts.AskText({kModifyPrompt, "Modify Selection", ""});
            },
            std::string{});
        const auto expression = ParseModifyExpression(answer);
        const auto block = session.sheet.SelectedData();
        if (answer.empty()) return;
        if (!expression)
            return TellOutcome(session, "No number in \"" + answer + "\": nothing was modified.");
        if (!block) return TellOutcome(session, kNoCells);
        const auto changes = step.Value([&] { return Modified(session, *block, *expression); }, Changes{});
        session.history.Begin();
        step([&] { ChangeCells(session, changes); });
        session.history.End("Modify");
    });
}

}  // namespace rv52
