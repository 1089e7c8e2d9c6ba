#include "fuzz/Target.h"
#include "link/commands/PortSetup.h"
#include "platform/ComDevices.h"
#include "platform/SettingsText.h"
#include "support/Recorders.h"

namespace rv52::fuzz {

void Target(std::string_view input) {
    constexpr const char* section = "Properties";
    constexpr const char* key = "CommPort";
    const auto before = SettingIn(input, section, key);
    test::MemorySettings settings;
    if (before) settings.values["Properties/CommPort"] = *before;
    const int commPort = StoredCommPort(settings);
    Require(commPort >= 1 && commPort <= kHighestCommPort, "a port that there is");
    if (!IsSettingsText(input)) return;

    const auto stored = WithSetting(input, section, key, "33");
    Require(IsSettingsText(stored) && SettingIn(stored, section, key) == "33", "what is stored reads back");
    Require(WithSetting(stored, section, key, "33") == stored, "storing it again changes nothing");
    for (const auto& [otherSection, otherKey] : {std::pair(section, "Other"), {"Other", key}})
        Require(SettingIn(stored, otherSection, otherKey) == SettingIn(input, otherSection, otherKey),
                "other settings stay");
}

}  // namespace rv52::fuzz
