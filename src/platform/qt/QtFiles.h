#pragma once

#include "platform/Storage.h"

namespace rv52 {

// Files on disk.
class QtFiles : public Files {
 public:
    bool Exists(const std::string& path) const override;
    // Regular files alone: a pipe or a device could keep the program waiting for ever.
    std::string ReadWhole(const std::string& path) const override;
    void ReplaceWhole(const std::string& path, const std::string& bytes) override;
    // The folder of the executable, symbolic links resolved.
    std::string ProgramFolder() const override;
};

}  // namespace rv52
