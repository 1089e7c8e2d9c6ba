#include "cli/Commands.h"
#include "cli/Sources.h"
#include "cli/Tool.h"
#include "link/commands/LinkProcedures.h"
#include "link/commands/ModuleMessages.h"
#include "link/commands/Vin.h"
#include "module/EepromImage.h"
#include "module/commands/Download.h"
#include "module/commands/Upload.h"
#include "platform/Text.h"
#include "platform/linux/PortLock.h"
#include "table/TableFile.h"

#include <cmath>
#include <filesystem>
#include <iostream>
#include <unistd.h>

namespace rv52::cli {

namespace {

bool SameFile(const std::string& one, const std::string& other) {
    using std::filesystem::absolute;
    using std::filesystem::weakly_canonical;
    std::error_code none;
    return std::filesystem::equivalent(one, other, none) ||
           weakly_canonical(absolute(one), none) == weakly_canonical(absolute(other), none);
}

// A backup in the place of the very table that is to be programmed would be its end.
std::string BackupFor(const Tool& tool, const std::string& path) {
    const auto& backup = tool.options.backup;
    if (!backup.empty() && SameFile(backup, path))
        throw Ending(Status::Usage, "the backup would overwrite " + path + ", which is to be programmed");
    return backup;
}

// A backup is there to go back to: it never takes the place of another table.
void SaveBackup(Tool& tool, const std::string& backup, const Snapshot& held) {
    if (backup != "-" && tool.files.Exists(backup)) {
        if (tool.files.ReadWhole(backup) == FormatTableFile(held.table, held.parameters)) return;
        throw Ending(Status::File, backup +
                                       " is there, and holds something else than the module; nothing was " +
                                       "written to the module. Back up to another name.");
    }
    SaveTable(tool, backup, held);
}

// The module was identified, and refused as the window refuses it: told from the types alone.
bool RefusedByType(const Session& session) {
    return session.state.CommOK && session.table.Table().Type() == TableType::RACE &&
           TypeNamedIn(session.state.FirmwareId) == TableType::EX;
}

// After a command that programs.
Status OutcomeOf(const Tool& tool) {
    const auto& state = tool.session.state;
    if (state.LastOutcome.empty()) throw NotReached(tool);
    if (!state.CommOK) throw Ending(Status::NotProgrammed, tool.Told() + " Upload again.");
    if (state.VerifyErrors != 0) throw Ending(Status::NotVerified, tool.Told() + " Upload again.");
    if (tool.Interrupted() || !tool.options.quiet) std::cerr << "rv52: " << state.LastOutcome << "\n";
    return tool.Interrupted() ? Status::Interrupted : Status::Done;
}

// Before anything is done for a command that programs; a file from standard input leaves nothing to answer
// at.
void RequireAnswer(const Tool& tool, bool fromInput) {
    if (!tool.options.yes && (fromInput || isatty(STDIN_FILENO) == 0))
        throw Ending(Status::Usage, "without a terminal to ask at, programming wants --yes");
}

// Before the first byte is sent.
void AskBefore(const Tool& tool, const std::string& what) {
    if (tool.options.yes) return;
    std::cerr << "rv52: " << what << "? [y/N] ";
    std::string answer;
    std::getline(std::cin, answer);
    answer = UpperCase(answer);
    if (answer != "Y" && answer != "YES")
        throw Ending(Status::Interrupted, "nothing was written to the module");
}

// Reads the module's table and parameters twice: a byte that came differently is in no backup.
Snapshot ReadTwice(Tool& tool) {
    const auto read = [&] {
        mnuDownload_Click(tool.session);
        tool.session.gate.SetCloseAborts(false);
        RequireDownloaded(tool);
        return std::pair(tool.session.state.FirmwareId, tool.session.state.EepromBuffer);
    };
    const auto first = read();
    if (read() != first)
        throw Ending(Status::NoAnswer,
                     "two reads of the module differ; nothing was written to it. Check cable.");
    return Current(tool);
}

// Tells what of a file such a module has no place for, or cannot hold.
void RemarkOutOfRange(const Tool& tool, const Snapshot& file, TableType type) {
    const auto kept = ReadBytes(BytesOf(file, type, file.parameters), type).table;
    const auto left = static_cast<std::size_t>(file.table.RowCount() - kept.RowCount());
    if (left > 0)
        tool.Remark("a RACE module has no place for the " + Counted(left, "row") + " of lowest pressure.");
    std::size_t clamped = 0;
    ForEachCell(type, [&](Cell cell) {
        clamped += std::abs(kept.GetCell(cell) - file.table.GetCell(cell)) > kDegreesPerCount;
    });
    if (clamped > 0)
        tool.Remark(Counted(clamped, "cell") + " of " + tool.options.files.front() +
                    " cannot be held: the module has the nearest value that it can.");
}

// As the window uploads. With a backup, only into a module that names itself as the one it was read from.
void UploadTo(Tool& tool, const std::string& backedUp) {
    auto& session = tool.session;
    session.steps.Procedure([&](Steps&) {
        const auto file = Current(tool);
        const TableTypeGuard guard(session.state);
        if (!IdentifyModule(session, "Upload To EEPROM", "upload")) return;
        const auto& now = session.state.FirmwareId;
        if (!backedUp.empty() && now != backedUp)
            throw Ending(Status::NoAnswer, "the module named itself \"" + backedUp + "\" and then \"" + now +
                                               "\"; nothing was written to it. Check cable.");
        if (!RefusedByType(session)) RemarkOutOfRange(tool, file, session.state.TableType);
        UploadToIdentified(session);
    });
}

}  // namespace

Status ListPorts(Tool& tool) {
    auto list = nlohmann::ordered_json::array();
    for (int port = 1; port <= kHighestCommPort; ++port) {
        const auto device = tool.devices.DeviceOf(port);
        if (device.empty() || access(device.c_str(), F_OK) != 0) continue;
        const auto lock = LockOn(device);
        const bool used = lock && !lock->program.empty();
        const bool permitted = access(device.c_str(), R_OK | W_OK) == 0;
        const bool usable = permitted && !used;
        const auto state = used ? "used by " + lock->program : permitted ? "usable" : "not permitted";
        if (tool.options.form == Form::Json)
            list.push_back({{"port", port}, {"device", device}, {"usable", usable}});
        else
            std::cout << CommPortName(port) << "\t" << device << "\t" << state << "\n";
    }
    if (tool.options.form == Form::Json) std::cout << Written(list);
    return Status::Done;
}

Status Identify(Tool& tool) {
    tool.ConnectModule();
    bool identified = false;
    tool.Run([&](Session& session) {
        session.steps.Procedure([&](Steps&) { identified = IdentifyModule(session, "rv52", "identify"); });
    });
    if (!identified) throw NotReached(tool);
    const auto& state = tool.session.state;
    if (tool.options.form == Form::Json)
        std::cout << Written({{"identification", state.FirmwareId},
                              {"type", ToText(state.TableType)},
                              {"echo", state.EchoMode}});
    else
        std::cout << state.FirmwareId << "\n"
                  << ToText(state.TableType) << "\n"
                  << (state.EchoMode ? "echoes" : "does not echo") << "\n";
    return Status::Done;
}

Status Download(Tool& tool) {
    if (!tool.options.image.empty() && SameFile(tool.options.image, tool.options.files.front()))
        throw Ending(Status::Usage, "table and image cannot both be " + tool.options.image);
    const auto read = DownloadedFrom(tool);
    if (!tool.options.image.empty()) {
        const auto& buffer = tool.session.state.EepromBuffer;
        tool.files.ReplaceWhole(tool.options.image, std::string(buffer.begin(), buffer.end()));
    }
    SaveTable(tool, tool.options.files.front(), read);
    tool.Remark("the table of " + tool.session.state.FirmwareId + " is in " + tool.options.files.front() +
                "; verify proves it.");
    return Status::Done;
}

Status Upload(Tool& tool) {
    const auto& path = tool.options.files.front();
    const auto backup = BackupFor(tool, path);
    RequireAnswer(tool, path == "-");
    const auto file = tool.files.ReadWhole(path);
    LoadTable(tool, path, file);
    tool.ConnectModule();
    AskBefore(tool, "Program the module at " + tool.Port() + " with " + path);
    if (backup.empty())
        tool.Remark("without --backup the four flag bits that a file does not keep become 0.");
    std::exception_ptr ended;
    tool.Run([&](Session& session) {
        try {
            std::string backedUp;
            if (!backup.empty()) {
                const auto held = ReadTwice(tool);
                backedUp = session.state.FirmwareId;
                LoadTable(tool, path, file);
                if (!RefusedByType(session)) SaveBackup(tool, backup, held);
                session.state.ModuleParameters.FlagByte = held.parameters.FlagByte;
            }
            UploadTo(tool, backedUp);
        } catch (...) {
            ended = std::current_exception();
        }
    });
    if (ended) std::rethrow_exception(ended);
    if (!tool.Interrupted() && RefusedByType(tool.session)) throw Ending(Status::File, tool.Told());
    return OutcomeOf(tool);
}

Status Verify(Tool& tool) {
    const auto wanted = LoadTable(tool, tool.options.files.front());
    const auto held = DownloadedFrom(tool);
    const auto& state = tool.session.state;
    const auto expected = BytesOf(wanted, state.TableType, held.parameters);
    std::size_t bytes = 0;
    for (const auto& range : ReadExtent(state.TableType).ranges)
        for (auto index = static_cast<std::size_t>(range.first);
             index <= static_cast<std::size_t>(range.last); ++index)
            bytes += expected[index] != state.EepromBuffer[index];
    RemarkOutOfRange(tool, wanted, state.TableType);
    const auto differences = Differences(ReadBytes(expected, state.TableType), held);
    if (tool.options.form == Form::Json) {
        auto json = AsJson(differences);
        json["same"] = bytes == 0;
        json["bytes"] = bytes;
        std::cout << Written(json);
    } else {
        std::cout << AsText(differences);
    }
    if (bytes != 0)
        throw Ending(Status::Found, Counted(bytes, "byte") + " of the module not as in " +
                                        tool.options.files.front() +
                                        "; upload it, or look which of the two is right");
    tool.Remark("every byte is as " + tool.options.files.front() + " says.");
    return Status::Done;
}

Status Vin(Tool& tool) {
    const auto& wanted = tool.options.vin;
    if (!wanted.empty() && !VinCodes(wanted))
        throw Ending(Status::Usage, "a VIN has 17 characters that the module can hold");
    if (!wanted.empty()) RequireAnswer(tool, false);
    tool.ConnectModule();
    if (!wanted.empty()) AskBefore(tool, "Write the VIN " + wanted + " to the module at " + tool.Port());
    tool.answers.text = wanted;
    auto& state = tool.session.state;
    state.Vin.clear();
    tool.Run(mnuEditVIN_Click);
    if (!wanted.empty()) {
        const auto status = OutcomeOf(tool);
        if (tool.options.form == Form::Json) std::cout << Written({{"vin", wanted}});
        return status;
    }
    if (state.Vin.empty() || tool.Interrupted()) throw NotReached(tool);
    if (tool.options.form == Form::Json)
        std::cout << Written({{"vin", state.Vin}});
    else
        std::cout << state.Vin << "\n";
    return Status::Done;
}

}  // namespace rv52::cli
