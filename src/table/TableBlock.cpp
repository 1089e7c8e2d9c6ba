#include "table/TableBlock.h"

#include "platform/Text.h"
#include "table/Numbers.h"

#include <algorithm>
#include <array>
#include <vector>

namespace rv52 {

namespace {

constexpr std::string_view kName = "AdvanceTable";
constexpr std::string_view kCorner = "MAP/RPM";
// A row of the longest doubles there are takes some 430 characters.
constexpr std::size_t kLongestLine = 1000;
constexpr std::size_t kFieldCount = 1 + kColumnCount;

using Fields = std::array<std::string, kFieldCount>;

Fields RpmFields() {
    Fields fields{std::string(kCorner)};
    for (int column = 1; column <= kColumnCount; ++column)
        fields[static_cast<std::size_t>(column)] = std::to_string(RpmOfColumn(column));
    return fields;
}

Fields RowFields(const AdvanceTable& table, int row) {
    Fields fields{std::to_string(MapOfRow(row))};
    for (int column = 1; column <= kColumnCount; ++column)
        fields[static_cast<std::size_t>(column)] = ShortestDecimal(table.GetCell({Column(column), Row(row)}));
    return fields;
}

std::string HeaderLine(TableType type) {
    return std::string(kName) + " " + std::to_string(kColumnCount) + " " + std::to_string(RowCount(type));
}

// Whether a line is no part of the block: a "!" line, or one that holds nothing to read, as editors add them.
bool IsPassedOver(std::string_view line) {
    return line.starts_with('!') || line.find_first_not_of(" \t") == std::string_view::npos;
}

// Takes the next line that belongs to a data block. Nothing at the end of the text, and for a line that
// cannot be one: overlong, or without its line break, for then the file may have been cut in a number.
std::optional<std::string_view> TakeBlockLine(std::string_view& text) {
    while (!text.empty()) {
        const bool ended = text.find('\n') != std::string_view::npos;
        const auto line = TakeLine(text);
        if (IsPassedOver(line)) continue;
        if (!ended || line.size() > kLongestLine) return std::nullopt;
        return line;
    }
    return std::nullopt;
}

// The blank-separated fields of a line; at most one more than a row has.
std::vector<std::string_view> FieldsOf(std::string_view line) {
    std::vector<std::string_view> fields;
    while (fields.size() <= kFieldCount) {
        const auto start = line.find_first_not_of(' ');
        if (start == std::string_view::npos) break;
        const auto end = std::min(line.find(' ', start), line.size());
        fields.push_back(line.substr(start, end - start));
        line.remove_prefix(end);
    }
    return fields;
}

bool IsHeader(std::string_view line, TableType type) {
    return std::ranges::equal(FieldsOf(line), FieldsOf(HeaderLine(type)));
}

bool IsRpmLine(std::string_view line) {
    return std::ranges::equal(FieldsOf(line), RpmFields());
}

bool ReadRow(std::string_view line, int row, AdvanceTable& table) {
    const auto fields = FieldsOf(line);
    if (fields.size() != kFieldCount || fields[0] != std::to_string(MapOfRow(row))) return false;
    for (int column = 1; column <= kColumnCount; ++column) {
        const auto degrees = StoredNumber(fields[static_cast<std::size_t>(column)]);
        if (!degrees) return false;
        table.SetCell({Column(column), Row(row)}, *degrees);
    }
    return true;
}

// Takes the block off the text, or what comes before the end of the line that breaks it.
std::optional<AdvanceTable> TakeBlock(std::string_view& text, TableType type) {
    const auto header = TakeBlockLine(text);
    if (!header || !IsHeader(*header, type)) return std::nullopt;
    const auto rpms = TakeBlockLine(text);
    if (!rpms || !IsRpmLine(*rpms)) return std::nullopt;

    AdvanceTable table(type);
    for (int row = 1; row <= table.RowCount(); ++row) {
        const auto line = TakeBlockLine(text);
        if (!line || !ReadRow(*line, row, table)) return std::nullopt;
    }
    while (!text.empty())
        if (!IsPassedOver(TakeLine(text))) return std::nullopt;
    return table;
}

}  // namespace

std::string FormatTableBlock(const AdvanceTable& table) {
    std::vector<Fields> lines{RpmFields()};
    for (int row = 1; row <= table.RowCount(); ++row)
        lines.push_back(RowFields(table, row));

    std::string text = HeaderLine(table.Type()) + "\r\n";
    for (const auto& line : lines) {
        for (std::size_t field = 0; field < kFieldCount; ++field) {
            const auto sizeOf = [&](const Fields& fields) { return fields[field].size(); };
            const auto width = sizeOf(*std::ranges::max_element(lines, {}, sizeOf));
            text.append(width - line[field].size() + (field == 0 ? 0 : 1), ' ') += line[field];
        }
        text += "\r\n";
    }
    return text;
}

std::optional<AdvanceTable> ParseTableBlock(std::string_view text, TableType type) {
    if (text.find('\0') != std::string_view::npos) return std::nullopt;
    return TakeBlock(text, type);
}

int MalformedLine(std::string_view text, TableType type) {
    const auto whole = text.substr(0, text.find('\0'));
    auto rest = whole;
    if (TakeBlock(rest, type) && whole.size() == text.size()) return 0;
    return static_cast<int>(
        std::max<std::size_t>(1, Lines(whole.substr(0, whole.size() - rest.size())).size()));
}

}  // namespace rv52
