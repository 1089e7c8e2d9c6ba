#pragma once

#include <string_view>

namespace rv52 {

// The type of a table and of a module. Files and screens know it as the texts "RACE" and "EX".
enum class TableType { RACE, EX };

constexpr int kColumnCount = 16;

// R: 8 MAP rows for RACE, 11 for EX.
constexpr int RowCount(TableType type) {
    return type == TableType::EX ? 11 : 8;
}

constexpr std::string_view ToText(TableType type) {
    return type == TableType::EX ? "EX" : "RACE";
}

// EX when the text holds the two letters "EX" anywhere, in any case; else RACE. So a module tells its type
// in its identification, and a table file in its version line.
TableType TypeNamedIn(std::string_view text);

}  // namespace rv52
