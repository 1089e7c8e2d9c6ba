#include "table/commands/LoadChartTemplate.h"

#include "app/state/Session.h"
#include "platform/Failure.h"
#include "table/commands/SaveAndCloseTable.h"

namespace rv52 {

bool LoadChartTemplate(Session& session, TableType type) {
    const auto path = session.files.ProgramFolder() + std::string(ChartTemplateFileName(type));
    if (!session.files.Exists(path)) return false;
    std::optional<ChartTemplate> chartTemplate;
    try {
        chartTemplate = ParseChartTemplate(session.files.ReadWhole(path), type);
    } catch (const FileFailure&) {
        return false;
    }
    if (!chartTemplate) return false;
    session.chart.SetTemplate(std::move(*chartTemplate));
    return true;
}

bool TakeChartTemplate(Session& session, TableType type) {
    if (session.steps.Value([&] { return LoadChartTemplate(session, type); }, true)) return true;
    const std::string file(ChartTemplateFileName(type));
    return RefuseLoad(session, "Chart template file " + file + " not found.", "File Open");
}

}  // namespace rv52
