#pragma once

#include "simulator/ModuleEeprom.h"

#include <string>

namespace rv52 {

// A module's EEPROM kept in a file: 512 bytes, the offset is the EEPROM address.
class ImageFile {
 public:
    explicit ImageFile(std::string path) : path_(std::move(path)) {}

    // What the file holds; where there is none, it is created with this. Throws FileFailure, also for a
    // file of another size.
    ModuleEeprom LoadOrCreate(const ModuleEeprom& fresh);
    // As ReplaceFile does it, so that a bench that loses its power keeps a module's whole memory. Nothing is
    // written when the file already holds this. Throws FileFailure.
    void Save(const ModuleEeprom& eeprom);

 private:
    std::string path_;
    ModuleEeprom saved_;
    bool known_ = false;
};

}  // namespace rv52
