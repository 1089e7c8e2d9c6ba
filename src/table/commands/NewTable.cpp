#include "table/commands/NewTable.h"

#include "app/state/Session.h"
#include "platform/Text.h"
#include "table/LimitTables.h"
#include "table/commands/LoadChartTemplate.h"
#include "table/commands/SaveAndCloseTable.h"
#include "table/commands/TableDisplay.h"

#include <algorithm>

namespace rv52 {

namespace {

constexpr int kHighestExPosition = 4;
constexpr int kUnshiftedTiming = 5;

TableType AskType(Session& session) {
    const auto answer = session.steps.Value(
        [&] {
            return session.prompts.AskText(
                {"Enter table type (Race or EX)", "Create New Advance Table", "Race"});
        },
        std::string{});
    return UpperCase(answer) == "EX" ? TableType::EX : TableType::RACE;
}

bool LoadLimit(Session& session, TableType type, Limit limit, AdvanceTable& into) {
    const auto table = session.steps.Value([&] { return LoadLimitTable(session.files, type, limit); },
                                           std::optional<AdvanceTable>{});
    if (!table)
        return RefuseLoad(session, std::string(LimitFileName(type, limit)) + " not found.", "New Table");
    into = *table;
    return true;
}

bool LoadFiles(Session& session, TableType type, NewTable& newTable) {
    return TakeChartTemplate(session, type) && LoadLimit(session, type, Limit::Minimum, newTable.MinTable) &&
           LoadLimit(session, type, Limit::Maximum, newTable.MaxTable);
}

// An EX module has no rear offset and takes no initial timing towards more advance.
void AdjustParametersForEx(ModuleParameters& parameters) {
    parameters.RearOffset = 0;
    parameters.InitialTiming = std::min<std::int16_t>(parameters.InitialTiming, 0);
}

}  // namespace

int TimingSliderStop(TableType type, int position) {
    return type == TableType::EX ? std::max(position, kHighestExPosition) : position;
}

double NewAdvance(double minimum, double maximum, int advSlope, int initTiming) {
    constexpr int whole = kSwitchScale.last;
    // The ends are the limits to the last bit, which nine times a limit divided by nine need not be.
    const double between = advSlope == 0       ? minimum
                           : advSlope == whole ? maximum
                                               : ((whole - advSlope) * minimum + advSlope * maximum) / whole;
    const double shifted = between + (initTiming - kUnshiftedTiming);
    return shifted > 0 ? std::min(shifted, kHighestAdvance) : 0;
}

void mnuNewTable_Click(Session& session) {
    session.steps.Procedure([&](Steps& step) {
        NewTable newTable;
        if (OpenNewTable(session, newTable)) step([&] { session.shell.ShowNewTable(newTable); });
    });
}

bool OpenNewTable(Session& session, NewTable& newTable) {
    bool opened = false;
    session.steps.Procedure([&](Steps& step) {
        if (!OfferToSave(session, "Save advance table before closing file?", "Close File")) return;
        step([&] { HideTable(session); });
        const auto type = AskType(session);
        session.state.TableType = type;
        newTable = {0, 0, CreateTable(type), CreateTable(type)};
        step([&] { session.table.Replace(CreateTable(type)); });
        if (!LoadFiles(session, type, newTable)) return;
        step([&] { session.shell.SetCaption(session.state.BaseCaption); });
        step([&] { SetUpTableGrid(session, type); });
        step([&] { SetEditingPermission(session, type); });
        if (type == TableType::EX) AdjustParametersForEx(session.state.ModuleParameters);
        opened = true;
    });
    return opened;
}

void CreateNewTable(Session& session, const NewTable& newTable) {
    session.steps.Procedure([&](Steps& step) {
        auto table = CreateTable(session.state.TableType);
        step([&] {
            ForEachCell(table.Type(), [&](Cell cell) {
                table.SetCell(cell,
                              NewAdvance(newTable.MinTable.GetCell(cell), newTable.MaxTable.GetCell(cell),
                                         newTable.AdvSlope, newTable.InitTiming));
            });
            session.table.Replace(table);
        });
        FillAndShowTable(session, "made", {GridRow(3), GridColumn(3)});
    });
    // The dialog stays open, and the command with it: its end is too late for what this change has met.
    session.drawing.Tell(session.steps);
}

}  // namespace rv52
