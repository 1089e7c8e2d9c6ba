#include "Samples.h"

#include "platform/qt/QtFiles.h"
#include "table/LimitTables.h"
#include "table/commands/NewTable.h"

#include <filesystem>
#include <stdexcept>
#include <unistd.h>

namespace rv52::bench {

namespace {

AdvanceTable ExLimit(Limit limit) {
    const auto table = LoadLimitTable(QtFiles(), TableType::EX, limit);
    if (!table) throw std::runtime_error("the EX limits are not beside the program");
    return *table;
}

}  // namespace

AdvanceTable ExMinimum() {
    return ExLimit(Limit::Minimum);
}

AdvanceTable ExMaximum() {
    return ExLimit(Limit::Maximum);
}

ChartTemplate ExTemplate() {
    const QtFiles files;
    const auto path = files.ProgramFolder() + std::string(ChartTemplateFileName(TableType::EX));
    const auto chartTemplate = ParseChartTemplate(files.ReadWhole(path), TableType::EX);
    if (!chartTemplate) throw std::runtime_error("the EX template is not beside the program");
    return *chartTemplate;
}

AdvanceTable ExTable() {
    constexpr int slope = 7;
    constexpr int timing = 5;
    const auto minimum = ExMinimum();
    const auto maximum = ExMaximum();
    auto table = CreateTable(TableType::EX);
    ForEachCell(TableType::EX, [&](Cell cell) {
        table.SetCell(cell, NewAdvance(minimum.GetCell(cell), maximum.GetCell(cell), slope, timing));
    });
    return table;
}

std::string ScratchFile(const char* name) {
    const std::filesystem::path memory = "/dev/shm";
    const auto folder = access(memory.c_str(), W_OK) == 0 ? memory : std::filesystem::temp_directory_path();
    return (folder / ("rv52_bench." + std::to_string(getpid()) + "." + name)).string();
}

}  // namespace rv52::bench
