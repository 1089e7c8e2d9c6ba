#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace rv52 {

constexpr const char* kBrandingFileName = "Corvane_RV52.cfg";
constexpr const char* kDefaultBrand = "Emberline";
// The notice line of the splash and of About.
constexpr const char* kMakersNotice = "Ignition advance tables for RV52 modules. All rights reserved.";

// The program's branding as UTF-8 lines. The syntax of its file is in docs/file-formats.md.
struct Branding {
    // Text, font name, size and style of the brand caption, and the logo's file; further lines mean nothing.
    std::vector<std::string> splashLines;
    // The brand, then the maker's contact lines.
    std::vector<std::string> brandingLines;
    // The line that closes the second section was there; false when the file ends before it.
    bool complete = false;
};

// A program without a branding file.
std::vector<std::string> DefaultSplashLines();
std::vector<std::string> DefaultBrandingLines();

// The content of a branding file, Windows-1252, as far as it goes: every content is read without failing.
Branding ParseBranding(std::string_view bytes);

}  // namespace rv52
