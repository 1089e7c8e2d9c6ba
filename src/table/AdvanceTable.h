#pragma once

#include "table/TableType.h"

#include <array>
#include <span>

namespace rv52 {

// A number that counts columns or rows: made by its name, so that no column is taken for a row, read as an
// int.
template <class Counted>
class Ordinal {
 public:
    constexpr Ordinal() = default;
    constexpr explicit Ordinal(int number) : number_(number) {}
    constexpr operator int() const { return number_; }

 private:
    int number_ = 0;
};
using Column = Ordinal<struct TableColumns>;
using Row = Ordinal<struct TableRows>;

// A position in a table: column c, 1 to 16, holds RPM 500·(c − 1); row r, 1 to R, holds MAP 32 − 2·r.
struct Cell {
    Column column;
    Row row;

    bool operator==(const Cell&) const = default;
};

// Degrees of advance that no table passes.
constexpr double kHighestAdvance = 45.0;

constexpr int RpmOfColumn(int column) {
    return 500 * (column - 1);
}
constexpr int MapOfRow(int row) {
    return 32 - 2 * row;
}

// 16 columns × R rows of ignition advance in degrees, as doubles that nothing here rounds or clamps. A
// negative zero, as -100 % of nothing leaves it, is the zero that it is equal to.
class AdvanceTable {
 public:
    // Every cell 0.
    explicit AdvanceTable(TableType type) : type_(type) {}

    TableType Type() const { return type_; }
    int RowCount() const { return rv52::RowCount(type_); }
    static constexpr int ColumnCount() { return kColumnCount; }

    double GetCell(Cell cell) const { return cells_[IndexOf(cell)]; }
    void SetCell(Cell cell, double degrees) { cells_[IndexOf(cell)] = WithoutSignedZero(degrees); }

    // All 16 × R cells, row 1 first, within a row column 1 first.
    std::span<const double> GetValues() const { return {cells_.data(), Size()}; }
    // As many values as GetValues gives.
    void SetValues(std::span<const double> values);
    void ClearTable() { cells_.fill(0.0); }

    bool operator==(const AdvanceTable&) const = default;

 private:
    std::size_t Size() const { return static_cast<std::size_t>(RowCount()) * kColumnCount; }
    std::size_t IndexOf(Cell cell) const {
        if (cell.column < 1 || cell.column > kColumnCount || cell.row < 1 || cell.row > RowCount())
            RefuseCell();
        return static_cast<std::size_t>((cell.row - 1) * kColumnCount + cell.column - 1);
    }
    [[noreturn]] static void RefuseCell();
    static double WithoutSignedZero(double degrees) { return degrees == 0 ? 0 : degrees; }

    TableType type_;
    std::array<double, 11 * kColumnCount> cells_{};
};

inline AdvanceTable CreateTable(TableType type) {
    return AdvanceTable(type);
}

// Calls visit(Cell) for every cell of a table of this type, row by row from row 1.
template <class Visit>
void ForEachCell(TableType type, Visit&& visit) {
    for (int row = 1; row <= RowCount(type); ++row)
        for (int column = 1; column <= kColumnCount; ++column)
            visit(Cell{Column(column), Row(row)});
}

}  // namespace rv52
