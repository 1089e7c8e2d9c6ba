#pragma once

#include <string>

namespace rv52 {

// Paths are bytes as the platform gives them (UTF-8 as a rule).
class Files {
 public:
    virtual ~Files() = default;

    virtual bool Exists(const std::string& path) const = 0;
    // The whole content. Throws FileFailure, also for a file of more than kLargest bytes.
    virtual std::string ReadWhole(const std::string& path) const = 0;
    // The old content stands until all of the new one is on disk. A symbolic link stays a link;
    // permissions stay. Throws FileFailure, the old content then unchanged.
    virtual void ReplaceWhole(const std::string& path, const std::string& bytes) = 0;
    // The program's own folder with a separator at its end.
    virtual std::string ProgramFolder() const = 0;

    static constexpr long kLargest = 4L << 20;
};

// The per-user settings store, application "Corvane_RV52_Main".
class Settings {
 public:
    virtual ~Settings() = default;

    // The fallback where nothing is stored. Throws FileFailure for a store that is there but cannot be read.
    virtual std::string Get(const std::string& section, const std::string& key,
                            const std::string& fallback) const = 0;
    // Stored at once. Throws Failure when it cannot be.
    virtual void Set(const std::string& section, const std::string& key, const std::string& value) = 0;
};

}  // namespace rv52
