#include "app/HelpContents.h"

#include "platform/Text.h"

#include <array>
#include <utility>

namespace rv52 {

namespace {

constexpr int kDeepest = 16;

// The value of an attribute in a tag's text: value="The value".
std::string Attribute(std::string_view tag, std::string_view name) {
    const auto upper = UpperCase(tag);
    const auto start = upper.find(UpperCase(name) + "=\"");
    if (start == std::string::npos) return {};
    const auto rest = tag.substr(start + name.size() + 2);
    std::string value(rest.substr(0, rest.find('"')));
    static constexpr std::array<std::pair<std::string_view, char>, 4> entities{
        {{"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&amp;", '&'}}};
    for (const auto& [entity, character] : entities)
        for (auto at = value.find(entity); at != std::string::npos; at = value.find(entity, at + 1))
            value.replace(at, entity.size(), 1, character);
    return value;
}

class Reader {
 public:
    explicit Reader(std::string_view text) : text_(text) {}

    // The topics of a list, up to the tag that closes it or the end.
    std::vector<HelpTopic> List(int depth) {
        std::vector<HelpTopic> topics;
        while (Next() && tag_ != "/UL") {
            if (tag_.starts_with("OBJECT"))
                topics.emplace_back();
            else if (tag_.starts_with("PARAM") && !topics.empty())
                Take(topics.back());
            else if (tag_ == "UL" && depth < kDeepest)
                Below(topics, List(depth + 1));
        }
        return topics;
    }

 private:
    bool Next() {
        const auto start = text_.find('<');
        const auto end = text_.find('>', start);
        if (start == std::string_view::npos || end == std::string_view::npos) return false;
        shown_ = text_.substr(start + 1, end - start - 1);
        tag_ = UpperCase(shown_);
        text_.remove_prefix(end + 1);
        return true;
    }

    void Take(HelpTopic& topic) const {
        const auto name = UpperCase(Attribute(shown_, "name"));
        if (name == "NAME") topic.title = Attribute(shown_, "value");
        if (name == "LOCAL") topic.page = Attribute(shown_, "value");
    }

    // A list belongs to the topic before it; the outermost one to none.
    static void Below(std::vector<HelpTopic>& topics, std::vector<HelpTopic> list) {
        auto& owner = topics.empty() || topics.back().title.empty() ? topics : topics.back().topics;
        if (&owner == &topics) topics.clear();
        owner.insert(owner.end(), list.begin(), list.end());
    }

    std::string_view text_;
    std::string_view shown_;
    std::string tag_;
};

}  // namespace

std::vector<HelpTopic> ParseHelpContents(std::string_view sitemap) {
    return Reader(sitemap).List(0);
}

}  // namespace rv52
