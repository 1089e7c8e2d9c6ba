#include "app/HelpMenu.h"

#include "app/Branding.h"
#include "app/state/Session.h"

namespace rv52 {

void mnuAbout_Click(Session& session) {
    session.steps.Procedure([&](Steps& step) {
        const auto& branding = session.state.BrandingLines;
        std::string text = (branding.empty() ? "" : branding.front()) + " Corvane RV52 Version 8.10\r\n";
        text += std::string(kMakersNotice) + "\r\n\r\n";
        for (std::size_t line = 1; line < branding.size(); ++line)
            text += branding[line] + "\r\n";
        step.Tell(text, "About", Icon::Information);
    });
}

void mnuHelpContents_Click(Session& session) {
    session.steps.Procedure([&](Steps& step) {
        step([&] { session.shell.OpenHelp(session.files.ProgramFolder() + "Corvane_RV52_Help.chm"); });
    });
}

}  // namespace rv52
