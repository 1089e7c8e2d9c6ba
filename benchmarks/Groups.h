#pragma once

#include "Figures.h"

namespace rv52 {
class DesktopProgram;
struct Session;
}  // namespace rv52

namespace rv52::bench {

// Each measures its figures and reports them.
void MeasureCore(Report& report);
void MeasureChart(Report& report);
void MeasureTransfers(Report& report);
void MeasureStart(Report& report);

}  // namespace rv52::bench
