#include "table/commands/FileCommands.h"

#include "app/state/Session.h"
#include "platform/Text.h"
#include "table/TableBlock.h"
#include "table/TableFile.h"
#include "table/commands/FileDialogs.h"
#include "table/commands/LoadChartTemplate.h"
#include "table/commands/TableDisplay.h"

#include <filesystem>
#include <utility>

namespace rv52 {

namespace {

constexpr const char* kTableFilter = "Advance table files (*.tbl)|*.tbl";
constexpr const char* kOpenTitle = "File Open";
constexpr std::size_t kLongestCaptionName = 60;

void SetFileCaption(Session& session, const std::string& path) {
    constexpr char separator{std::filesystem::path::preferred_separator};
    const auto name = path.substr(path.rfind(separator) + 1);
    const auto shown = LastCharacters(name, kLongestCaptionName);
    session.shell.SetCaption(session.state.BaseCaption + (shown.size() < name.size() ? " - ..." : " - ") +
                             std::string(shown));
}

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
    if (!table) return RefuseLoad(session, "Error loading " + path, kOpenTitle);
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

// One replacement of the whole file: a table without its parameters would open as something else.
bool WriteTableFile(Session& session, const std::string& path) {
    try {
        session.files.ReplaceWhole(path,
                                   FormatTableFile(session.table.Table(), session.state.ModuleParameters));
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

}  // namespace

bool OfferToSave(Session& session, const std::string& question, const std::string& title) {
    if (!session.state.TableShown) return true;
    const auto answer = session.steps.Value(
        [&] {
            return session.prompts.Ask({question, title, Icon::Warning, Buttons::YesNoCancel});
        },
        Answer::No);
    if (answer == Answer::Yes) mnuSaveTable_Click(session);
    return answer != Answer::Cancel;
}

bool RefuseLoad(Session& session, const std::string& text, const std::string& title) {
    session.steps.Tell(text, title, Icon::Critical);
    mnuCloseTable_Click(session);
    return false;
}

bool TakeChartTemplate(Session& session, TableType type) {
    if (session.steps.Value([&] { return LoadChartTemplate(session, type); }, true)) return true;
    const std::string file(ChartTemplateFileName(type));
    return RefuseLoad(session, "Chart template file " + file + " not found.", kOpenTitle);
}

void mnuOpenTable_Click(Session& session) {
    Open(session, {});
}

void OpenTableFile(Session& session, const std::string& path) {
    Open(session, path);
}

void mnuSaveTable_Click(Session& session) {
    session.steps.Procedure([&](Steps& step) {
        if (!session.table.HasTable()) return step.Tell("No advance table data for saving.", "File Save");
        const auto path =
            step.Value([&] { return FileSave(session, "Save File", kTableFilter, {}); }, std::string{});
        if (path.empty()) return;
        if (!WriteTableFile(session, path)) {
            step.Tell("Error saving " + path, "File Save", Icon::Critical);
            return mnuCloseTable_Click(session);
        }
        session.history.Saved();
        session.shell.RenewStatus();
        step([&] { SetFileCaption(session, path); });
    });
}

void mnuCloseTable_Click(Session& session) {
    session.steps.Procedure([&](Steps& step) {
        if (!OfferToSave(session, "Save advance table before closing file?", "Close File")) return;
        step([&] { HideTable(session); });
        step([&] { session.shell.SetCaption(session.state.BaseCaption); });
    });
}

}  // namespace rv52
