#pragma once

#include "platform/PrintSystem.h"

#include <QPageLayout>
#include <QPageSize>
#include <QString>

#include <vector>

namespace rv52 {

PrintPaper PaperOf(QPageSize::PageSizeId id);
// What a document may be on, the country's usual one first.
std::vector<PrintPaper> StandardPapers();
// "A4", "Letter", or the size in millimetres.
QString PaperName(const PrintPaper& paper);

// The paper across, with a quarter inch of margin or what the printer needs. Which edge it feeds first is not
// known, so opposite margins are alike.
QPageLayout PageAcross(const PrintPaper& paper);

}  // namespace rv52
