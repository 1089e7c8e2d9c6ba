#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace rv52 {

// The text of a settings file: "[Section]" lines, each followed by its "Key=value" lines, with comments that
// begin with ";" or "#" and blank lines anywhere. Of several lines about one key the last one holds.

// Whether every line is one of these. A picture, zeros that a power cut left behind or a half-written line
// are not.
bool IsSettingsText(std::string_view text);

// The value of a key; nothing where the text does not state it.
std::optional<std::string> SettingIn(std::string_view text, std::string_view section, std::string_view key);

// The text with the key's value stated; all other lines stay as they are.
std::string WithSetting(std::string_view text, std::string_view section, std::string_view key,
                        std::string_view value);

}  // namespace rv52
