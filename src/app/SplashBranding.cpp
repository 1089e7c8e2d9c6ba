#include "app/SplashBranding.h"

#include "app/Branding.h"
#include "app/state/Session.h"
#include "platform/Failure.h"
#include "platform/Text.h"
#include "table/Numbers.h"

#include <cmath>

namespace rv52 {

namespace {

// The lines of the first section and what each of them is.
enum SplashLine : std::size_t { kBrandText, kFontName, kFontSize, kStyle, kLogo };

Failure InFile(const std::string& what) {
    return Failure("The branding file " + std::string(kBrandingFileName) + " " + what);
}

// What was read stays, also when the file ends early and the user goes on or gives up.
void ReadBranding(Session& session, std::vector<std::string>& splashLines) {
    const auto path = session.files.ProgramFolder() + kBrandingFileName;
    if (!session.files.Exists(path)) {
        splashLines = DefaultSplashLines();
        session.state.BrandingLines = DefaultBrandingLines();
        return;
    }
    const auto branding = ParseBranding(session.files.ReadWhole(path));
    splashLines = branding.splashLines;
    session.state.BrandingLines = branding.brandingLines;
    if (!branding.complete) throw InFile("ends before its second section is closed by a line with \"!\".");
}

const std::string& LineOf(const std::vector<std::string>& lines, SplashLine line, const char* what) {
    if (line >= lines.size())
        throw InFile("has no line " + std::to_string(line + 1) + " (" + what + ") in its first section.");
    return lines[line];
}

double BrandSize(const std::vector<std::string>& lines) {
    const auto& text = LineOf(lines, kFontSize, "font size");
    const auto points = LeadingNumber(text).value_or(0.0);
    if (!(points > 0) || !std::isfinite(points))
        throw InFile("gives \"" + text + "\" as font size, which is not a positive number.");
    return points;
}

void LoadLogo(Session& session, Splash& splash, const std::string& name) {
    if (UpperCase(name) != "NULL") splash.LoadLogo(session.files.ProgramFolder() + name);
}

}  // namespace

void LoadSplash(Session& session, Splash& splash) {
    std::vector<std::string> lines;
    session.steps.Procedure([&](Steps& step) {
        step([&] { ReadBranding(session, lines); });
        step([&] { splash.SetBrandText(LineOf(lines, kBrandText, "brand caption")); });
        step([&] { splash.SetBrandFont(LineOf(lines, kFontName, "font name")); });
        step([&] { splash.SetBrandSize(BrandSize(lines)); });
        step([&] {
            const auto& style = LineOf(lines, kStyle, "font style");
            splash.SetBrandStyle(ContainsNoCase(style, "bold"), ContainsNoCase(style, "italic"));
        });
        step([&] { LoadLogo(session, splash, LineOf(lines, kLogo, "logo file")); });
        step([&] { splash.SetApplicationTitle("Corvane_RV52_Splash"); });
    });
    if (session.state.BrandingLines.empty()) session.state.BrandingLines = {kDefaultBrand};
}

}  // namespace rv52
