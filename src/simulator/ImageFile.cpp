#include "simulator/ImageFile.h"

#include "platform/Failure.h"

#include <filesystem>
#include <fstream>

namespace rv52 {

namespace {

namespace fs = std::filesystem;

char* Characters(ModuleEeprom& eeprom) {
    return reinterpret_cast<char*>(eeprom.bytes.data());
}

void WriteWhole(const fs::path& path, ModuleEeprom eeprom) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(Characters(eeprom), ModuleEeprom::kSize);
    file.close();
    if (file) return;
    std::error_code ignored;
    fs::remove(path, ignored);
    throw FileFailure("cannot write the image file " + path.string());
}

}  // namespace

ModuleEeprom ImageFile::LoadOrCreate(const ModuleEeprom& fresh) {
    std::error_code error;
    if (!fs::exists(path_, error) && !error) {
        Save(fresh);
        return fresh;
    }
    std::ifstream file(path_, std::ios::binary);
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
    try {
        const auto target = fs::weakly_canonical(path_);
        auto fresh = target;
        fresh += ".new";
        WriteWhole(fresh, eeprom);
        if (fs::exists(target)) fs::permissions(fresh, fs::status(target).permissions());
        fs::rename(fresh, target);
    } catch (const fs::filesystem_error& error) {
        throw FileFailure("cannot write the image file " + path_ + ": " + error.code().message());
    }
    saved_ = eeprom;
    known_ = true;
}

}  // namespace rv52
