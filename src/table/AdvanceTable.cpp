#include "table/AdvanceTable.h"

#include <algorithm>
#include <stdexcept>

namespace rv52 {

void AdvanceTable::SetValues(std::span<const double> values) {
    if (values.size() != Size())
        throw std::logic_error("an advance table takes 16 values for each of its rows");
    std::ranges::transform(values, cells_.begin(), WithoutSignedZero);
}

std::size_t AdvanceTable::IndexOf(Cell cell) const {
    if (cell.column < 1 || cell.column > kColumnCount || cell.row < 1 || cell.row > RowCount())
        throw std::logic_error("no such cell in an advance table");
    return static_cast<std::size_t>((cell.row - 1) * kColumnCount + cell.column - 1);
}

}  // namespace rv52
