#pragma once

#include "platform/Storage.h"

namespace rv52 {

// "Corvane_RV52_Main.conf" in the user's configuration folder. Nothing else is written there, not even a
// lock: the file is replaced as a whole, so that of two programs that store at once one has the last word.
class QtSettings : public Settings {
 public:
    std::string Get(const std::string& section, const std::string& key,
                    const std::string& fallback) const override;
    void Set(const std::string& section, const std::string& key, const std::string& value) override;
};

}  // namespace rv52
