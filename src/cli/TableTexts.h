#pragma once

#include "table/AdvanceTable.h"
#include "table/ModuleParameters.h"

#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace rv52::cli {

// A table with its parameters, as a file or a module holds them.
struct Snapshot {
    AdvanceTable table;
    ModuleParameters parameters;
};

// As people read them: the rows and columns of the grid with one decimal, then the parameters, one a line.
std::string AsText(const Snapshot& shown);
nlohmann::ordered_json AsJson(const Snapshot& shown);

// "MAP/RPM" and the speeds, then a line for each pressure, in the grid's order and every digit.
std::string AsCsv(const AdvanceTable& table);
// What AsCsv writes, or a spreadsheet of it, parted by commas, semicolons or tabs. limit tells the highest
// value of a cell. Throws FileFailure, with line and column, for any other shape and for values out of
// limits.
AdvanceTable TableOfCsv(std::string_view text, const std::function<double(TableType, Cell)>& limit);

// One value that is not the same twice.
struct Difference {
    std::string where;             // "RPM 3000, MAP 28" or a parameter's name
    nlohmann::ordered_json first;  // a number, a flag, a type's name, or nothing where there is no such cell
    nlohmann::ordered_json second;

    // By how much numbers differ; 0 for anything else.
    double By() const;
};
// Cells that only one of the two tables has differ, too.
std::vector<Difference> Differences(const Snapshot& first, const Snapshot& second);
std::string AsText(const std::vector<Difference>& differences);
nlohmann::ordered_json AsJson(const std::vector<Difference>& differences);

// As it goes to standard output.
std::string Written(const nlohmann::ordered_json& json);

// "RPM 3000, MAP 28".
std::string NameOf(Cell cell);

}  // namespace rv52::cli
