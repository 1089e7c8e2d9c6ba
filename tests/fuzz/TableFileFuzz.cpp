#include "fuzz/FuzzedSession.h"
#include "fuzz/Target.h"
#include "table/TableBlock.h"
#include "table/TableFile.h"
#include "table/commands/OpenTable.h"

namespace rv52::fuzz {

void Target(std::string_view input) {
    static FuzzedSession desk;
    const std::string path = "/fuzz.tbl";
    desk.parts.files.contents[path] = input;
    desk.session.state.TableShown = false;
    desk.user.told.clear();
    OpenTableFile(desk.session, path);
    const auto& state = desk.session.state;
    const auto& parameters = state.ModuleParameters;
    Require(ModuleParameters::kRPMLimit.Clamp(parameters.RPMLimit) == parameters.RPMLimit, "an RPM limit");
    Require(ModuleParameters::kTiming.Clamp(parameters.InitialTiming) == parameters.InitialTiming, "timing");
    Require(
        state.TableShown == ParseTableBlock(input, state.TableType).has_value() || !desk.user.told.empty(),
        "a table is shown when there is one");
    if (!state.TableShown) return;

    const auto& table = desk.session.table.Table();
    const auto saved = FormatTableFile(table, parameters);
    Require(ParseTableBlock(saved, table.Type()) == table, "a saved table reads back");
    auto again = UnstatedParameters(parameters);
    for (const auto& line : FindParameters(saved))
        ApplyParameter(line, again);
    auto expected = parameters;
    expected.FlagByte = again.parameters.FlagByte;
    Require(again.parameters == expected && again.type == table.Type(), "saved parameters read back");
}

}  // namespace rv52::fuzz
