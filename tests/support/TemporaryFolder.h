#pragma once

#include <filesystem>
#include <random>
#include <string>

namespace rv52::test {

// A folder of its own that goes with everything in it.
class TemporaryFolder {
 public:
    TemporaryFolder() {
        std::random_device random;
        do {
            path_ = std::filesystem::temp_directory_path() / ("rv52-test-" + std::to_string(random()));
        } while (!std::filesystem::create_directory(path_));
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& Path() const { return path_; }

 private:
    std::filesystem::path path_;
};

}  // namespace rv52::test
