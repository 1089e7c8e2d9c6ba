#include "table/AdvanceTable.h"

#include <algorithm>
#include <stdexcept>

namespace rv52 {

void AdvanceTable::SetValues(std::span<const double> values) {
    if (values.size() != Size())
        throw std::logic_error("an advance table takes 16 values for each of its rows");
    std::ranges::transform(values, cells_.begin(), WithoutSignedZero);
}

void AdvanceTable::RefuseCell() {
    throw std::logic_error("no such cell in an advance table");
}

}  // namespace rv52
