#include "table/commands/LoadChartTemplate.h"

#include "app/state/Session.h"
#include "platform/Failure.h"

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

}  // namespace rv52
