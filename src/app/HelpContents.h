#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace rv52 {

// An entry of the help's table of contents.
struct HelpTopic {
    std::string title;
    std::string page;  // the page's name in the help file
    std::vector<HelpTopic> topics;

    bool operator==(const HelpTopic&) const = default;
};

// The table of contents of a compiled help file: nested lists of objects with the parameters Name and Local.
// Reads what it understands of any text.
std::vector<HelpTopic> ParseHelpContents(std::string_view sitemap);

}  // namespace rv52
