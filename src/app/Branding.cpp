#include "app/Branding.h"

#include "platform/CodePage.h"
#include "platform/Text.h"

#include <algorithm>

namespace rv52 {

namespace {

bool IsComment(std::string_view line) {
    return line.starts_with('!');
}

}  // namespace

std::vector<std::string> DefaultSplashLines() {
    return {kDefaultBrand, "Arial", "48", "bold italic", "Emberline_Logo.gif"};
}

std::vector<std::string> DefaultBrandingLines() {
    return {kDefaultBrand,         "Emberline Ignition Works",
            "14 Foundry Lane",     "Harrowgate Mills, NY 00000",
            "Phone: 555 010 0152", "www.emberline.example"};
}

Branding ParseBranding(std::string_view bytes) {
    Branding branding;
    const auto lines = Lines(bytes);
    auto line = std::ranges::find_if_not(lines, IsComment);
    // A section is what stands before the next comment line, which closes it.
    const auto take = [&](std::vector<std::string>& section) {
        for (; line != lines.end() && !IsComment(*line); ++line)
            section.push_back(FromCodePage(*line));
        if (line == lines.end()) return false;
        ++line;
        return true;
    };
    branding.complete = take(branding.splashLines) && take(branding.brandingLines);
    return branding;
}

}  // namespace rv52
