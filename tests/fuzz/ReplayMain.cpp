#include "fuzz/Target.h"

#include <filesystem>
#include <fstream>
#include <sstream>

// Gives the target every file of the folders named: the kept corpus, without a fuzzer.
int main(int count, char** folders) {
    int files = 0;
    for (int i = 1; i < count; ++i) {
        for (const auto& entry : std::filesystem::directory_iterator(folders[i])) {
            std::ostringstream content;
            content << std::ifstream(entry.path(), std::ios::binary).rdbuf();
            rv52::fuzz::Target(content.str());
            ++files;
        }
    }
    std::printf("%d inputs\n", files);
    return files > 0 ? 0 : 1;
}
