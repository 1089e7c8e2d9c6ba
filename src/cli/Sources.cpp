#include "cli/Sources.h"

#include "cli/Tool.h"
#include "module/commands/Download.h"
#include "table/TableFile.h"
#include "table/commands/FileCommands.h"

namespace rv52::cli {

Snapshot LoadTable(Tool& tool, const std::string& path) {
    return LoadTable(tool, path, tool.files.ReadWhole(path));
}

Snapshot LoadTable(Tool& tool, const std::string& path, const std::string& content) {
    tool.answers.told.clear();
    tool.files.Serve(path, content);
    OpenTableFile(tool.session, path);
    if (!tool.session.state.TableShown) throw Ending(Status::File, tool.Told());
    return Current(tool);
}

void SaveTable(Tool& tool, const std::string& path, const Snapshot& saved) {
    tool.files.ReplaceWhole(path, FormatTableFile(saved.table, saved.parameters));
}

Ending NotReached(const Tool& tool) {
    if (tool.Interrupted()) return {Status::Interrupted, "interrupted; nothing was written to the module"};
    return {tool.line.refused ? Status::Port : Status::NoAnswer, tool.Told()};
}

void RequireDownloaded(const Tool& tool) {
    if (!tool.session.state.TableShown || tool.Interrupted()) throw NotReached(tool);
}

Snapshot DownloadedFrom(Tool& tool) {
    tool.ConnectModule();
    tool.Run(mnuDownload_Click);
    RequireDownloaded(tool);
    return Current(tool);
}

Snapshot LoadAny(Tool& tool, const std::string& name) {
    return name == "module" ? DownloadedFrom(tool) : LoadTable(tool, name);
}

Snapshot Current(const Tool& tool) {
    return {tool.session.table.Table(), tool.session.state.ModuleParameters};
}

}  // namespace rv52::cli
