#include "simulator/ImageFile.h"

#include "platform/Failure.h"
#include "platform/linux/ReplaceFile.h"

#include <filesystem>
#include <fstream>

namespace rv52 {

namespace {

namespace fs = std::filesystem;

char* Characters(ModuleEeprom& eeprom) {
    return reinterpret_cast<char*>(eeprom.bytes.data());
}

}  // namespace

ModuleEeprom ImageFile::LoadOrCreate(const ModuleEeprom& fresh) {
    std::error_code error;
    if (!fs::exists(path_, error) && !error) {
        Save(fresh);
        return fresh;
    }
    std::ifstream file;
    if (fs::is_regular_file(path_, error)) file.open(path_, std::ios::binary);  // a pipe would be waited for
    ModuleEeprom eeprom;
    file.read(Characters(eeprom), ModuleEeprom::kSize);
    if (!file || file.peek() != std::ifstream::traits_type::eof())
        throw FileFailure("the image file " + path_ + " cannot be read as 512 bytes");
    saved_ = eeprom;
    known_ = true;
    return eeprom;
}

void ImageFile::Save(const ModuleEeprom& eeprom) {
    if (known_ && eeprom == saved_) return;
    auto bytes = eeprom;
    ReplaceFile(path_, {Characters(bytes), ModuleEeprom::kSize});
    saved_ = eeprom;
    known_ = true;
}

}  // namespace rv52
