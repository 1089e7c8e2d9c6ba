#include "table/commands/SaveAndCloseTable.h"

#include "app/state/Session.h"
#include "platform/Text.h"
#include "table/TableFile.h"
#include "table/commands/FileQuestions.h"
#include "table/commands/TableDisplay.h"

#include <filesystem>

namespace rv52 {

namespace {

constexpr std::size_t kLongestCaptionName = 60;

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

void SetFileCaption(Session& session, const std::string& path) {
    constexpr char separator{std::filesystem::path::preferred_separator};
    const auto name = path.substr(path.rfind(separator) + 1);
    const auto shown = LastCharacters(name, kLongestCaptionName);
    session.shell.SetCaption(session.state.BaseCaption + (shown.size() < name.size() ? " - ..." : " - ") +
                             std::string(shown));
}

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
