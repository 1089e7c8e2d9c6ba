#include "platform/SettingsText.h"

#include "platform/Text.h"

#include <algorithm>

namespace rv52 {

namespace {

constexpr std::string_view kBlanks = " \t\r";

std::string_view Trimmed(std::string_view text) {
    const auto start = text.find_first_not_of(kBlanks);
    return start == std::string_view::npos ? std::string_view{}
                                           : text.substr(start, text.find_last_not_of(kBlanks) + 1 - start);
}

bool SaysNothing(std::string_view line) {
    return line.empty() || line.starts_with(';') || line.starts_with('#');
}

bool IsHeading(std::string_view line) {
    return line.size() >= 2 && line.starts_with('[') && line.ends_with(']');
}

bool IsHeadingOf(std::string_view section, std::string_view line) {
    return IsHeading(line) && Trimmed(line.substr(1, line.size() - 2)) == section;
}

bool States(std::string_view key, std::string_view line) {
    const auto equals = line.find('=');
    return equals != std::string_view::npos && !SaysNothing(line) && Trimmed(line.substr(0, equals)) == key;
}

std::string_view ValueOf(std::string_view line) {
    auto value = Trimmed(line.substr(line.find('=') + 1));
    if (value.size() >= 2 && value.starts_with('"') && value.ends_with('"'))
        value = value.substr(1, value.size() - 2);
    return value;
}

}  // namespace

bool IsSettingsText(std::string_view text) {
    if (text.find('\0') != std::string_view::npos) return false;
    return std::ranges::all_of(Lines(text), [](std::string_view whole) {
        const auto line = Trimmed(whole);
        return SaysNothing(line) || IsHeading(line) || (line.find('=') != 0 && line.find('=') < line.size());
    });
}

std::optional<std::string> SettingIn(std::string_view text, std::string_view section, std::string_view key) {
    std::optional<std::string> value;
    bool inside = false;
    for (const auto whole : Lines(text)) {
        const auto line = Trimmed(whole);
        if (IsHeading(line))
            inside = IsHeadingOf(section, line);
        else if (inside && States(key, line))
            value = ValueOf(line);
    }
    return value;
}

std::string WithSetting(std::string_view text, std::string_view section, std::string_view key,
                        std::string_view value) {
    const auto statement = std::string(key) + "=" + std::string(value) + "\n";
    std::string result;
    bool inside = false;
    bool stated = false;
    for (const auto whole : Lines(text)) {
        const auto line = Trimmed(whole);
        const bool stale = inside && !IsHeading(line) && States(key, line);
        if (IsHeading(line)) inside = IsHeadingOf(section, line);
        if (!stale) result.append(whole.substr(0, whole.find_last_not_of('\r') + 1)) += '\n';
        // The first place that may state it does: under the section's heading, so that nothing is stated
        // twice.
        if (!IsHeadingOf(section, line) || stated) continue;
        result += statement;
        stated = true;
    }
    return stated ? result : result + "[" + std::string(section) + "]\n" + statement;
}

}  // namespace rv52
