#include "app/StartUp.h"

#include "app/state/FormResize.h"
#include "app/state/Session.h"
#include "link/commands/LineConditions.h"
#include "link/commands/PortSetup.h"
#include "platform/Failure.h"
#include "table/LimitTables.h"
#include "table/commands/LoadChartTemplate.h"

namespace rv52 {

namespace {

bool LoadExMaximum(Session& session) {
    const RedrawHold hold(session.table);
    const auto refuse = [&](const char* text) {
        session.prompts.Ask({text, "Form Load", Icon::Warning, Buttons::Ok});
        return false;
    };
    if (!LoadChartTemplate(session, TableType::EX))
        return refuse("Chart template file RV52_EX_Chart.oc3 not found.");
    session.chart.HideLabel();
    const auto maximum = LoadLimitTable(session.files, TableType::EX, Limit::Maximum);
    if (!maximum) return refuse("Chart data file RV52_EX_Max.dat not found.");
    session.state.ExMaxTable = *maximum;
    return true;
}

// A store that cannot be read is told of: a port that is not the user's may be another machine's.
void RestoreCommPort(Session& session) {
    try {
        session.state.CommPort = StoredCommPort(session.settings);
    } catch (const FileFailure& failure) {
        session.state.CommPort = 1;
        session.prompts.Ask(
            {std::string(failure.what()) + "\r\n\r\nCom1 is used until you choose another port.", "Form Load",
             Icon::Warning, Buttons::Ok});
    }
}

}  // namespace

bool StartUp(Session& session) {
    bool loaded = false;
    session.steps.Procedure([&](Steps& step) {
        session.state.AbortRequested = false;
        step([&] { RestoreCommPort(session); });
        RestartLineErrorCount(session);
        HandleLineConditions(session);
        step([&] {
            const auto& branding = session.state.BrandingLines;
            session.shell.SetCaption((branding.empty() ? "" : branding.front()) + " " +
                                     session.state.BaseCaption);
        });
        loaded = step.Value([&] { return LoadExMaximum(session); }, false);
    });
    return loaded;
}

}  // namespace rv52
