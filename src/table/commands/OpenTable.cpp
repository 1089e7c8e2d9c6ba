#include "table/commands/OpenTable.h"

#include "app/state/Session.h"
#include "table/TableBlock.h"
#include "table/TableFile.h"
#include "table/commands/FileQuestions.h"
#include "table/commands/LoadChartTemplate.h"
#include "table/commands/SaveAndCloseTable.h"
#include "table/commands/TableDisplay.h"

#include <utility>

namespace rv52 {

namespace {

void ReadParameters(Session& session, std::string_view content) {
    auto& state = session.state;
    TableFileParameters read = UnstatedParameters(state.ModuleParameters);
    const auto apply = [&] {
        state.TableType = read.type;
        state.ModuleParameters = read.parameters;
    };
    apply();
    const auto lines =
        session.steps.Value([&] { return FindParameters(content); }, std::vector<ParameterLine>{});
    for (const auto& line : lines)
        session.steps([&] {
            ApplyParameter(line, read);
            apply();
        });
}

// Template and values into the chart; false when either could not be had and the table has been closed.
bool LoadTable(Session& session, const std::string& path, std::string_view content) {
    const auto type = session.state.TableType;
    const RedrawHold hold(session.table);
    if (!TakeChartTemplate(session, type)) return false;
    const auto table =
        session.steps.Value([&] { return ParseTableBlock(content, type); }, std::optional<AdvanceTable>{});
    if (!table) return RefuseLoad(session, "Error loading " + path, "File Open");
    session.steps([&] { session.table.Replace(*table); });
    return true;
}

void ShowFile(Session& session, const std::string& path) {
    session.steps.Procedure([&](Steps& step) {
        const auto content = step.Value([&] { return session.files.ReadWhole(path); }, std::string{});
        ReadParameters(session, content);
        if (!LoadTable(session, path, content)) return;
        step([&] { SetUpTableGrid(session, session.state.TableType); });
        FillAndShowTable(session, "opened", {GridRow(0), GridColumn(0)});
        step([&] { SetFileCaption(session, path); });
        step([&] { SetEditingPermission(session, session.state.TableType); });
    });
}

// A path chosen beforehand counts once: choosing again, after a box or a failure, brings the dialog.
void Open(Session& session, std::string chosen) {
    session.steps.Procedure([&](Steps& step) {
        if (!OfferToSave(session, "Save advance table before opening file?", "Open File")) return;
        step([&] { HideTable(session); });
        const auto path = step.Value(
            [&] { return FileOpen(session, "Open File", kTableFilter, {}, std::exchange(chosen, {})); },
            std::string{});
        if (!path.empty()) ShowFile(session, path);
    });
}

}  // namespace

void mnuOpenTable_Click(Session& session) {
    Open(session, {});
}

void OpenTableFile(Session& session, const std::string& path) {
    Open(session, path);
}

}  // namespace rv52
