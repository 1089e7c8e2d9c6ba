#pragma once

#include "table/TableType.h"

namespace rv52 {

struct Session;

// The type's template from the program's folder into the chart; false when it is missing or malformed.
bool LoadChartTemplate(Session& session, TableType type);

// As every load of a table takes it: false when it could not be had and the load has been refused.
bool TakeChartTemplate(Session& session, TableType type);

}  // namespace rv52
