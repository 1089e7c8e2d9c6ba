#pragma once

#include "chart/ChartTemplate.h"
#include "table/AdvanceTable.h"

#include <string>

namespace rv52::bench {

// The shipped EX limits and template, from beside this program.
AdvanceTable ExMinimum();
AdvanceTable ExMaximum();
ChartTemplate ExTemplate();

// An EX table between the two: ordinary advances, all over the chart.
AdvanceTable ExTable();

// A table file with it, in a folder of memory where there is one: writing there waits for no disk.
std::string ScratchFile(const char* name);

}  // namespace rv52::bench
