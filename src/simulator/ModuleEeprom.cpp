#include "simulator/ModuleEeprom.h"

#include "module/EepromImage.h"
#include "module/EepromMap.h"

#include <algorithm>
#include <string_view>

namespace rv52 {

namespace {

constexpr std::string_view kSampleVin = "1CVRV52A0SM000081";
static_assert(kSampleVin.size() == ModuleEeprom::kVinLength);

constexpr int kFullLoadMap = 30;
constexpr double kPlateauRpm = 3000.0;

// Degrees: rising with speed to a plateau, and with the manifold's vacuum, which slows the burning.
double SampleAdvance(Cell cell) {
    const double rise = std::min(RpmOfColumn(cell.column) / kPlateauRpm, 1.0);
    const double lightLoad = (kFullLoadMap - MapOfRow(cell.row)) * 0.5;
    return 7.0 + (24.0 + lightLoad) * rise;
}

ModuleParameters SampleParameters() {
    ModuleParameters parameters;
    parameters.CrankRevs = 1;
    parameters.RPMLimit = 6200;
    parameters.FixedLimFlag = true;
    parameters.TachEnableFlag = true;
    return parameters;
}

}  // namespace

ModuleEeprom FactoryEeprom(TableType type) {
    AdvanceTable table(type);
    ForEachCell(type, [&](Cell cell) { table.SetCell(cell, SampleAdvance(cell)); });
    EepromBuffer image;
    image.fill(ModuleEeprom::kErased);
    EncodeEepromImage(table, SampleParameters(), type, image);

    ModuleEeprom eeprom;
    eeprom.bytes.fill(ModuleEeprom::kErased);
    std::copy(image.begin(), image.end() - kImageStart.value, eeprom.bytes.begin() + kImageStart.value);
    std::copy(kSampleVin.begin(), kSampleVin.end(), eeprom.bytes.begin() + ModuleEeprom::kVin);
    return eeprom;
}

}  // namespace rv52
