#include "cli/TableTexts.h"

#include "platform/Failure.h"
#include "platform/Text.h"
#include "table/Numbers.h"

#include <algorithm>
#include <map>

namespace rv52::cli {

namespace {

using nlohmann::ordered_json;

constexpr const char* kCorner = "MAP/RPM";

// The grid shows the highest row of the table first.
template <class Visit>
void ForEachRowAsShown(TableType type, Visit&& visit) {
    for (int row = RowCount(type); row >= 1; --row)
        visit(Row(row));
}

std::string Padded(const std::string& text, std::size_t width) {
    return std::string(width - std::min(width, text.size()), ' ') + text;
}

struct Parameter {
    const char* name;
    const char* key;
    double value;
    bool flag;

    ordered_json Json() const {
        return flag ? ordered_json(value != 0) : ordered_json(static_cast<int>(value));
    }
};

std::string ValueText(const ordered_json& value) {
    if (value.is_null()) return "none";
    if (value.is_boolean()) return value.get<bool>() ? "on" : "off";
    return value.is_string() ? value.get<std::string>() : ReadableDecimal(value.get<double>());
}

std::vector<Parameter> ListOf(const ModuleParameters& of) {
    return {{"Advance table in EEPROM", "SelEEPROMTblFlag", double(of.SelEEPROMTblFlag), true},
            {"Fixed initial timing", "FixedInitialTmgFlag", double(of.FixedInitialTmgFlag), true},
            {"Initial timing, degrees", "InitialTiming", double(of.InitialTiming), false},
            {"Fixed RPM limit", "FixedLimFlag", double(of.FixedLimFlag), true},
            {"RPM limit", "RPMLimit", double(of.RPMLimit), false},
            {"Rear offset, degrees", "RearOffset", double(of.RearOffset), false},
            {"Crank revolutions", "CrankRevs", double(of.CrankRevs), false},
            {"VSS frequency, Hz at 100 km/h", "VSSFreq", double(of.VSSFreq), false},
            {"Tachometer enabled", "TachEnableFlag", double(of.TachEnableFlag), true}};
}

// Reads a CSV line by line and field by field, and knows where it is.
class CsvReader {
 public:
    explicit CsvReader(std::string_view text) {
        std::size_t number = 0;
        for (const auto line : Lines(text)) {
            ++number;
            if (line.find_first_not_of(" \t,;") == std::string_view::npos) continue;
            lines_.push_back(Fields(line));
            numbers_.push_back(number);
        }
        numbers_.push_back(number + 1);
    }

    std::size_t LineCount() const { return lines_.size(); }
    [[noreturn]] void Refuse(std::size_t line, std::size_t column, const std::string& why) const {
        throw FileFailure("line " + std::to_string(numbers_[line - 1]) + ", column " +
                          std::to_string(column) + ": " + why);
    }
    double Number(std::size_t line, std::size_t column) const {
        const auto& text = lines_[line - 1][column - 1];
        if (const auto number = EntireNumber(text)) return *number;
        if (const auto number = StoredNumber(text)) return *number;
        Refuse(line, column, "\"" + OneLine(text) + "\" is no number");
    }
    void ExpectWidth(std::size_t line) const {
        const auto width = lines_[line - 1].size();
        constexpr std::size_t wanted = kColumnCount + 1;
        if (width != wanted)
            Refuse(line, std::min(width, wanted) + 1,
                   std::to_string(width) + " columns, where " + std::to_string(wanted) + " belong");
    }
    void Expect(std::size_t line, std::size_t column, const std::string& wanted) const {
        const auto& text = lines_[line - 1][column - 1];
        if (text != wanted) Refuse(line, column, "\"" + OneLine(text) + "\", where " + wanted + " belongs");
    }

 private:
    static std::vector<std::string> Fields(std::string_view line) {
        const auto part = line.find_first_of(";\t") == std::string_view::npos ? "," : ";\t";
        std::vector<std::string> fields;
        for (std::size_t end = 0; end != std::string_view::npos;
             line.remove_prefix(std::min(end, line.size() - 1) + 1)) {
            end = line.find_first_of(part);
            fields.push_back(Bare(line.substr(0, end)));
            if (end == std::string_view::npos || line.empty()) break;
        }
        return fields;
    }
    // Without blanks and quotes around it.
    static std::string Bare(std::string_view field) {
        const auto first = field.find_first_not_of(" \"");
        if (first == std::string_view::npos) return {};
        return std::string(field.substr(first, field.find_last_not_of(" \"") + 1 - first));
    }

    std::vector<std::vector<std::string>> lines_;
    std::vector<std::size_t> numbers_;  // of these lines in the file, and of the one behind it
};

}  // namespace

double Difference::By() const {
    return first.is_number() && second.is_number() ? second.get<double>() - first.get<double>() : 0;
}

std::string Written(const ordered_json& json) {
    // File names need not be UTF-8.
    return json.dump(2, ' ', false, ordered_json::error_handler_t::replace) + "\n";
}

std::string NameOf(Cell cell) {
    return "RPM " + std::to_string(RpmOfColumn(cell.column)) + ", MAP " + std::to_string(MapOfRow(cell.row));
}

std::string AsText(const Snapshot& shown) {
    const auto& table = shown.table;
    constexpr std::size_t width = 6;
    std::string text = std::string(ToText(table.Type())) + "\n" + kCorner;
    for (int column = 1; column <= kColumnCount; ++column)
        text += Padded(std::to_string(RpmOfColumn(column)), width);
    ForEachRowAsShown(table.Type(), [&](Row row) {
        text += "\n" + Padded(std::to_string(MapOfRow(row)), std::string_view(kCorner).size());
        for (int column = 1; column <= kColumnCount; ++column)
            text += Padded(FormatTenths(table.GetCell({Column(column), row})), width);
    });
    text += "\n";
    for (const auto& parameter : ListOf(shown.parameters))
        text += std::string(parameter.name) + ": " + ValueText(parameter.Json()) + "\n";
    return text;
}

ordered_json AsJson(const Snapshot& shown) {
    ordered_json json{{"type", ToText(shown.table.Type())}};
    for (int column = 1; column <= kColumnCount; ++column)
        json["rpm"].push_back(RpmOfColumn(column));
    ForEachRowAsShown(shown.table.Type(), [&](Row row) {
        ordered_json values;
        for (int column = 1; column <= kColumnCount; ++column)
            values.push_back(shown.table.GetCell({Column(column), row}));
        json["map"].push_back(MapOfRow(row));
        json["advance"].push_back(values);
    });
    for (const auto& parameter : ListOf(shown.parameters))
        json["parameters"][parameter.key] = parameter.Json();
    return json;
}

std::string AsCsv(const AdvanceTable& table) {
    std::string text = kCorner;
    for (int column = 1; column <= kColumnCount; ++column)
        text += "," + std::to_string(RpmOfColumn(column));
    ForEachRowAsShown(table.Type(), [&](Row row) {
        text += "\r\n" + std::to_string(MapOfRow(row));
        for (int column = 1; column <= kColumnCount; ++column)
            text += "," + ShortestDecimal(table.GetCell({Column(column), row}));
    });
    return text + "\r\n";
}

AdvanceTable TableOfCsv(std::string_view text, const std::function<double(TableType, Cell)>& limit) {
    const CsvReader csv(text);
    const auto rows = csv.LineCount() == 0 ? 0 : csv.LineCount() - 1;
    auto type = TableType::RACE;
    if (rows == std::size_t(RowCount(TableType::EX)))
        type = TableType::EX;
    else if (rows != std::size_t(RowCount(TableType::RACE)))
        csv.Refuse(csv.LineCount() + 1, 1, std::to_string(rows) + " rows, where 8 (RACE) or 11 (EX) belong");

    csv.ExpectWidth(1);
    for (int column = 1; column <= kColumnCount; ++column)
        csv.Expect(1, std::size_t(column) + 1, std::to_string(RpmOfColumn(column)));
    AdvanceTable table(type);
    std::size_t line = 1;
    ForEachRowAsShown(type, [&](Row row) {
        csv.ExpectWidth(++line);
        csv.Expect(line, 1, std::to_string(MapOfRow(row)));
        for (int column = 1; column <= kColumnCount; ++column) {
            const Cell cell{Column(column), row};
            const double degrees = csv.Number(line, std::size_t(column) + 1);
            if (degrees > limit(type, cell) || degrees < 0)
                csv.Refuse(line, std::size_t(column) + 1,
                           ReadableDecimal(degrees) + " degrees, where 0 to " +
                               ReadableDecimal(limit(type, cell)) + " are allowed");
            table.SetCell(cell, degrees);
        }
    });
    return table;
}

std::vector<Difference> Differences(const Snapshot& first, const Snapshot& second) {
    std::vector<Difference> differences;
    const auto [one, other] = std::pair(first.table.Type(), second.table.Type());
    if (one != other) differences.push_back({"Type", ToText(one), ToText(other)});
    ForEachCell(RowCount(one) > RowCount(other) ? one : other, [&](Cell cell) {
        const auto valueIn = [&](const AdvanceTable& table) {
            return cell.row > table.RowCount() ? ordered_json() : ordered_json(table.GetCell(cell));
        };
        const auto [a, b] = std::pair(valueIn(first.table), valueIn(second.table));
        if (a != b) differences.push_back({NameOf(cell), a, b});
    });
    const auto [ours, theirs] = std::pair(ListOf(first.parameters), ListOf(second.parameters));
    for (std::size_t i = 0; i < ours.size(); ++i)
        if (ours[i].value != theirs[i].value)
            differences.push_back({ours[i].name, ours[i].Json(), theirs[i].Json()});
    return differences;
}

std::string AsText(const std::vector<Difference>& differences) {
    std::string text;
    for (const auto& difference : differences) {
        text += difference.where + ": " + ValueText(difference.first) + " -> " + ValueText(difference.second);
        const double by = difference.By();
        if (by != 0) text += std::string(" (") + (by > 0 ? "+" : "") + ReadableDecimal(by) + ")";
        text += "\n";
    }
    return text;
}

ordered_json AsJson(const std::vector<Difference>& differences) {
    auto list = ordered_json::array();
    for (const auto& difference : differences)
        list.push_back({{"where", difference.where},
                        {"first", difference.first},
                        {"second", difference.second},
                        {"by", difference.By()}});
    return {{"same", differences.empty()}, {"differences", list}};
}

}  // namespace rv52::cli
