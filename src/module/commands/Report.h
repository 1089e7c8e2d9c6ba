#pragma once

#include "platform/Printer.h"

#include <string>
#include <vector>

namespace rv52 {

struct Session;

using ReportLine = std::vector<PrintItem>;

// What both pages say besides the program's state.
struct ReportNotes {
    std::string printed;  // date and time
    std::string comment;  // empty: none
};

// The text of the chart page, and of the page with the grid's texts and the parameters. No items: an empty
// line.
std::vector<ReportLine> ChartPageLines(const Session& session, const ReportNotes& notes);
std::vector<ReportLine> TablePageLines(const Session& session, const ReportNotes& notes);

// Where the chart goes: the page below the header band, to the nearest device pixels.
PixelRectangle ChartRectangle(const PrintPage& page);

// The report: two jobs of one page each.
void mnuPrintTable_Click(Session& session);
void mnuPrintSetup_Click(Session& session);

}  // namespace rv52
