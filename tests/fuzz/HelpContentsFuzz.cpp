#include "app/HelpContents.h"
#include "fuzz/Target.h"

#include <algorithm>

namespace rv52::fuzz {

static std::size_t Depth(const std::vector<HelpTopic>& topics) {
    std::size_t depth = 0;
    for (const auto& topic : topics)
        depth = std::max(depth, 1 + Depth(topic.topics));
    return depth;
}

void Target(std::string_view input) {
    Require(Depth(ParseHelpContents(input)) < 20, "a table of contents that a window can show");
}

}  // namespace rv52::fuzz
