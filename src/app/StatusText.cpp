#include "app/StatusText.h"

#include "app/state/AppState.h"
#include "app/state/EditHistory.h"
#include "app/state/GridSheet.h"
#include "app/state/TableStore.h"
#include "link/commands/ModuleMessages.h"
#include "platform/ComDevices.h"
#include "platform/Text.h"
#include "table/Numbers.h"

namespace rv52 {

namespace {

constexpr const char* kBetween = "   \u00b7   ";

std::string Degrees(double value) {
    return ReadableDecimal(value) + "\u00b0";
}

std::string CellText(const AppState& state, const TableStore& store, const GridSheet& sheet) {
    const auto cursor = sheet.Cursor();
    if (!state.TableShown || !store.HasTable() || !cursor.IsData()) return {};
    const auto& table = store.Table();
    if (sheet.Type() != table.Type()) return {};  // while another table is on its way to the screen
    const auto cell = CellAt(cursor, table.Type());
    return "RPM " + std::to_string(RpmOfColumn(cell.column)) + ", MAP " + std::to_string(MapOfRow(cell.row)) +
           ": " + Degrees(table.GetCell(cell)) + ", limit " + Degrees(CellLimit(state, table.Type(), cell));
}

std::string WorkText(const AppState& state) {
    switch (state.LinkWork) {
        case LinkWork::Reading:
            return "Reading the module. Escape stops it.";
        case LinkWork::Programming:
            return "Programming " + IdentifiedAs(state) + ". It must not be interrupted.";
        case LinkWork::Verifying:
            return "Verifying the module. Escape stops it.";
        case LinkWork::None:
            break;
    }
    return {};
}

std::string Advice(const AppState& state) {
    return state.TableShown ? "" : "Open a table, make a new one, or download one from a module.";
}

std::string Foremost(const AppState& state, const TableStore& table, const GridSheet& sheet) {
    if (state.LinkWork != LinkWork::None) return WorkText(state);
    if (!state.LastOutcome.empty()) return state.LastOutcome;
    const auto cell = CellText(state, table, sheet);
    return cell.empty() ? Advice(state) : cell;
}

std::string ChangesText(const AppState& state, const EditHistory& history) {
    const auto cells = history.ChangedCells();
    if (!state.TableShown || cells == 0) return {};
    return Counted(cells, "cell") + " changed since " + history.Since();
}

}  // namespace

std::string StatusText(const AppState& state, const TableStore& table, const GridSheet& sheet,
                       const EditHistory& history, const std::string& device) {
    std::string before;
    for (const auto& part : {Foremost(state, table, sheet), ChangesText(state, history)})
        if (!part.empty()) before += part + kBetween;
    return before + CommPortName(state.CommPort) + ": " + (device.empty() ? "no device of its own" : device);
}

}  // namespace rv52
