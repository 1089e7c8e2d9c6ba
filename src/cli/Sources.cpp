#include "cli/Sources.h"

#include "cli/Tool.h"
#include "module/EepromImage.h"
#include "module/commands/Download.h"
#include "table/TableFile.h"
#include "table/commands/OpenTable.h"

namespace rv52::cli {

Snapshot LoadTable(Tool& tool, const std::string& path) {
    return LoadTable(tool, path, tool.files.ReadWhole(path));
}

Snapshot LoadTable(Tool& tool, const std::string& path, const std::string& content) {
    tool.answers.told.clear();
    tool.session.state.ModuleParameters = {};  // what a file does not state is never another file's
    tool.files.Serve(path, content);
    OpenTableFile(tool.session, path);
    if (!tool.session.state.TableShown) throw Ending(Status::File, tool.Told());
    return Current(tool);
}

void SaveTable(Tool& tool, const std::string& path, const Snapshot& saved) {
    tool.files.ReplaceWhole(path, FormatTableFile(saved.table, saved.parameters));
}

Ending NotReached(const Tool& tool) {
    if (tool.Interrupted()) {
        const bool writes = tool.options.command == "upload" || !tool.options.vin.empty();
        return {Status::Interrupted,
                writes ? "interrupted; nothing was written to the module" : "interrupted"};
    }
    const auto told = tool.Told();
    const auto name = CommPortName(tool.session.state.CommPort);
    return {tool.line.refused ? Status::Port : Status::NoAnswer,
            told.starts_with(name) ? told : tool.Port() + ": " + told};
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
    return name == kModule ? DownloadedFrom(tool) : LoadTable(tool, name);
}

Snapshot Current(const Tool& tool) {
    return {tool.session.table.Table(), tool.session.state.ModuleParameters};
}

EepromBuffer BytesOf(const Snapshot& file, TableType type, const ModuleParameters& held) {
    auto parameters = file.parameters;
    parameters.FlagByte = held.FlagByte;
    EepromBuffer bytes{};
    try {
        EncodeEepromImage(file.table, parameters, type, bytes);
    } catch (const std::logic_error&) {
        throw Ending(Status::File, "Cannot compare race data with EX version");
    }
    return bytes;
}

Snapshot ReadBytes(const EepromBuffer& bytes, TableType type) {
    ModuleParameters parameters;
    const auto table = DecodeEepromImage(bytes, type, parameters);
    return {table, parameters};
}

}  // namespace rv52::cli
