#pragma once

#include <memory>
#include <optional>
#include <string>

struct chmFile;

namespace rv52 {

// A compiled help file, opened for reading.
class ChmFile {
 public:
    // Throws FileFailure when the file is missing, or is not byte for byte what the build made.
    explicit ChmFile(const std::string& path);

    // The whole content of a file inside, named by its path from the root: "/index.html". Nothing when it
    // is not there or cannot be unpacked whole.
    std::optional<std::string> Read(const std::string& name) const;

    // The name of the first file inside with this extension (".hhc"); the empty text when there is none.
    std::string FirstNamed(const std::string& extension) const;

 private:
    struct Close {
        void operator()(chmFile* file) const;
    };
    std::unique_ptr<chmFile, Close> file_;
};

}  // namespace rv52
