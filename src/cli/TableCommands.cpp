#include "cli/Commands.h"
#include "cli/Sources.h"
#include "cli/Tool.h"
#include "platform/Text.h"
#include "table/LimitTables.h"
#include "table/ModifyExpression.h"
#include "table/Numbers.h"
#include "table/TableBlock.h"
#include "table/TableFile.h"
#include "table/commands/CopyPasteModify.h"
#include "table/commands/LoadChartTemplate.h"
#include "table/commands/NewTable.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iostream>

namespace rv52::cli {

namespace {

// Between neighbours; a rule of thumb, no limit of the module.
constexpr double kSteepStep = 12;

// "3000..5000", or one number for both ends.
std::pair<int, int> ReadRange(std::string_view text, const std::string& whole) {
    const auto dots = text.find("..");
    const auto read = [&](std::string_view part) {
        int number = 0;
        const auto result = std::from_chars(part.data(), part.data() + part.size(), number);
        if (part.empty() || result.ec != std::errc{} || result.ptr != part.data() + part.size())
            throw Ending(Status::Usage, "\"" + whole + "\" is no range of cells such as 3000..5000,28..30");
        return number;
    };
    const int first = read(text.substr(0, dots));
    const int last = dots == std::string_view::npos ? first : read(text.substr(dots + 2));
    return std::minmax(first, last);
}

GridRange ReadCells(const std::string& text, TableType type) {
    const auto comma = text.find(',');
    const auto rpms = ReadRange(std::string_view(text).substr(0, comma), text);
    const auto maps = ReadRange(
        comma == std::string::npos ? std::string_view() : std::string_view(text).substr(comma + 1), text);
    const auto holds = [](const std::pair<int, int>& ends, int number) {
        return ends.first <= number && number <= ends.second;
    };
    std::optional<GridRange> range;
    ForEachCell(type, [&](Cell cell) {
        if (!holds(rpms, RpmOfColumn(cell.column)) || !holds(maps, MapOfRow(cell.row))) return;
        const auto at = GridCellOf(cell, type);
        if (!range) range = GridRange{at, at};
        range->first = {std::min(range->first.row, at.row), std::min(range->first.column, at.column)};
        range->last = {std::max(range->last.row, at.row), std::max(range->last.column, at.column)};
    });
    if (!range)
        throw Ending(Status::Usage,
                     "there is no cell in " + text + "; \"rv52 show\" lists RPM and MAP of a table");
    return *range;
}

// Whether nothing but one change is said: the window reads as far as it understands, and shows what came of
// it.
bool IsChange(std::string_view text) {
    if (text.ends_with('%')) text.remove_suffix(1);
    if (text.starts_with('+') || text.starts_with('-')) text.remove_prefix(1);
    return !text.empty() && text.find_first_not_of("0123456789.") == std::string_view::npos &&
           EntireNumber(text);
}

// "5 cells changed, 2 of them held at a limit."
std::string ChangesSince(const AdvanceTable& before, const Tool& tool, const ModifyExpression& expression) {
    const auto& now = tool.session.table.Table();
    std::size_t changed = 0;
    int held = 0;
    ForEachCell(now.Type(), [&](Cell cell) {
        const auto [was, is] = std::pair(before.GetCell(cell), now.GetCell(cell));
        if (was == is) return;
        ++changed;
        held += expression.Apply(*EntireNumber(FormatTenths(was))) != is;
    });
    const auto text = Counted(changed, "cell") + " changed";
    return held == 0 ? text + "." : text + ", " + std::to_string(held) + " of them held at a limit.";
}

// What is wrong with the values of a table that opens.
std::vector<std::string> Findings(const Tool& tool, const AdvanceTable& table) {
    std::vector<std::string> findings;
    ForEachCell(table.Type(), [&](Cell cell) {
        const double value = table.GetCell(cell);
        const double limit = CellLimit(tool.session.state, table.Type(), cell);
        if (value > limit)
            findings.push_back(NameOf(cell) + ": " + ReadableDecimal(value) + " is above the limit of " +
                               ReadableDecimal(limit));
        if (value < 0) findings.push_back(NameOf(cell) + ": " + ReadableDecimal(value) + " is below 0");
        const auto compare = [&](Cell next) {
            if (next.column > kColumnCount || next.row > table.RowCount()) return;
            if (std::abs(table.GetCell(next) - value) > kSteepStep)
                findings.push_back(NameOf(cell) + " to " + NameOf(next) + ": a step of " +
                                   ReadableDecimal(std::abs(table.GetCell(next) - value)) +
                                   " degrees; more than " + ReadableDecimal(kSteepStep) +
                                   " between neighbours is rarely meant (a rule of thumb)");
        };
        compare({Column(cell.column + 1), cell.row});
        compare({cell.column, Row(cell.row + 1)});
    });
    return findings;
}

// Whether what a file states of a parameter is what is read, but for the spelling.
bool SaysTheSame(std::string_view stated, std::string_view read) {
    const auto number = EntireNumber(stated);
    return UpperCase(stated) == UpperCase(read) || (number && number == EntireNumber(read));
}

std::string NotStated(std::string_view name, std::string_view read) {
    return std::string(name) + " is not stated, and read as " + std::string(read);
}

std::string ReadOtherwise(const ParameterLine& stated, std::string_view value, std::string_view read) {
    return "line " + std::to_string(stated.number) + ": " + std::string(ParameterName(stated.key)) + " \"" +
           OneLine(value) + "\" is read as " + std::string(read);
}

// Parameters that a file does not state, or states otherwise than they are read. The last statement about one
// holds.
void AddParameterFindings(const Snapshot& read, std::string_view content,
                          std::vector<std::string>& findings) {
    auto stated = FindParameters(content);
    std::ranges::reverse(stated);
    const auto written = FormatTableFile(read.table, read.parameters);
    for (const auto& parameter : FindParameters(written)) {
        const auto last = std::ranges::find(stated, parameter.key, &ParameterLine::key);
        if (last == stated.end()) {
            findings.push_back(NotStated(ParameterName(parameter.key), parameter.value));
            continue;
        }
        const auto value = last->value.substr(0, last->value.find_last_not_of(" \t") + 1);
        if (!SaysTheSame(value, parameter.value))
            findings.push_back(ReadOtherwise(*last, value, parameter.value));
    }
}

// The same of a file's content, which need not open.
std::vector<std::string> FindingsOf(Tool& tool, const std::string& path, const std::string& content) {
    try {
        const auto read = LoadTable(tool, path, content);
        auto findings = Findings(tool, read.table);
        AddParameterFindings(read, content, findings);
        return findings;
    } catch (const Ending& ending) {
        const int line = MalformedLine(content, tool.session.state.TableType);
        const std::string where = ": line " + std::to_string(line) + " is not what belongs there";
        return {ending.what() + (line == 0 ? "" : where)};
    }
}

}  // namespace

Status Show(Tool& tool) {
    const auto shown = LoadAny(tool, tool.options.files.front());
    if (tool.options.form == Form::Csv)
        std::cout << AsCsv(shown.table);
    else if (tool.options.form == Form::Json)
        std::cout << Written(AsJson(shown));
    else
        std::cout << AsText(shown);
    return Status::Done;
}

Status Diff(Tool& tool) {
    const auto& names = tool.options.files;
    auto first = LoadAny(tool, names[0]);
    auto second = LoadAny(tool, names[1]);
    // A file and a module differ in what the module can hold, as verify tells it.
    const auto asHeldBy = [](Snapshot& file, const Snapshot& module) {
        const auto type = module.table.Type();
        if (file.table.Type() == type || type == TableType::RACE)
            file = ReadBytes(BytesOf(file, type, module.parameters), type);
    };
    if (names[0] == kModule && names[1] != kModule) asHeldBy(second, first);
    if (names[1] == kModule && names[0] != kModule) asHeldBy(first, second);
    const auto differences = Differences(first, second);
    if (tool.options.form == Form::Json)
        std::cout << Written(AsJson(differences));
    else
        std::cout << AsText(differences);
    return differences.empty() ? Status::Done : Status::Found;
}

Status New(Tool& tool) {
    const auto type = tool.options.type;
    auto& session = tool.session;
    NewTable settings{static_cast<std::int16_t>(tool.options.slope),
                      static_cast<std::int16_t>(tool.options.timing), AdvanceTable(type), AdvanceTable(type)};
    const int position = kSwitchScale.PositionOf(settings.InitTiming);
    if (TimingSliderStop(type, position) != position)
        throw Ending(Status::Usage, "an EX table takes a timing of 5 at most");
    for (const auto& [limit, into] :
         {std::pair(Limit::Minimum, &settings.MinTable), {Limit::Maximum, &settings.MaxTable}}) {
        const auto table = LoadLimitTable(tool.files, type, limit);
        if (!table) throw Ending(Status::File, std::string(LimitFileName(type, limit)) + " not found.");
        *into = *table;
    }
    session.state.TableType = type;
    session.table.Replace(AdvanceTable(type));
    if (!TakeChartTemplate(session, type)) throw Ending(Status::File, tool.Told());
    CreateNewTable(session, settings);
    SaveTable(tool, tool.options.files.front(), Current(tool));
    return Status::Done;
}

Status Modify(Tool& tool) {
    const auto expression = ParseModifyExpression(tool.options.expression);
    if (!expression || !IsChange(tool.options.expression))
        throw Ending(Status::Usage,
                     "\"" + tool.options.expression + "\" is no change such as 30, -1, +1.5 or 95%");
    const auto& path = tool.options.files.front();
    const auto before = LoadTable(tool, path).table;
    const auto cells = ReadCells(tool.options.cells, before.Type());
    tool.session.sheet.Select(cells, cells.first);
    tool.answers.text = tool.options.expression;
    mnuPopUpModify3D_Click(tool.session);
    SaveTable(tool, tool.options.output.empty() ? path : tool.options.output, Current(tool));
    tool.Remark(ChangesSince(before, tool, *expression));
    return Status::Done;
}

Status Import(Tool& tool) {
    const auto& csv = tool.options.files[0];
    const auto& path = tool.options.files[1];
    const auto limit = [&](TableType type, Cell cell) { return CellLimit(tool.session.state, type, cell); };
    const auto table = [&] {
        try {
            return TableOfCsv(tool.files.ReadWhole(csv), limit);
        } catch (const FileFailure& failure) {
            throw Ending(Status::File, csv + ": " + failure.what());
        }
    }();
    ModuleParameters parameters;
    if (path != "-" && tool.files.Exists(path)) parameters = LoadTable(tool, path).parameters;
    SaveTable(tool, path, {table, parameters});
    return Status::Done;
}

Status Export(Tool& tool) {
    const auto table = LoadTable(tool, tool.options.files[0]).table;
    tool.files.ReplaceWhole(tool.options.files[1], AsCsv(table));
    return Status::Done;
}

Status Check(Tool& tool) {
    auto list = nlohmann::ordered_json::array();
    auto worst = Status::Done;
    for (const auto& path : tool.options.files) {
        std::vector<std::string> findings;
        auto status = Status::Found;
        try {
            const auto content = tool.files.ReadWhole(path);
            findings = FindingsOf(tool, path, content);
        } catch (const FileFailure& failure) {
            findings = {failure.what()};
            status = Status::File;
        }
        if (!findings.empty()) worst = std::max(worst, status);
        list.push_back({{"file", path}, {"good", findings.empty()}, {"findings", findings}});
        if (tool.options.form == Form::Json) continue;
        if (findings.empty()) std::cout << path << ": good\n";
        for (const auto& finding : findings)
            std::cout << path << ": " << finding << "\n";
    }
    if (tool.options.form == Form::Json) std::cout << Written(list);
    return worst;
}

}  // namespace rv52::cli
