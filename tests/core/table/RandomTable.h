#pragma once

#include "table/AdvanceTable.h"

#include <random>

namespace rv52::test {

// Degrees that a table may have, at random.
inline AdvanceTable RandomTable(TableType type, unsigned seed) {
    std::mt19937 random(seed);
    AdvanceTable table(type);
    std::uniform_real_distribution<double> degrees(0, kHighestAdvance);
    ForEachCell(type, [&](Cell cell) { table.SetCell(cell, degrees(random)); });
    return table;
}

}  // namespace rv52::test
