#include "chart/ChartTemplate.h"
#include "fuzz/Target.h"

namespace rv52::fuzz {

void Target(std::string_view input) {
    const auto race = ParseChartTemplate(input, TableType::RACE);
    const auto ex = ParseChartTemplate(input, TableType::EX);
    Require(!race || !ex, "no template fits both types");
    for (const auto& one : {race, ex})
        if (one) Require(!one->bands.empty(), "a template has colours");
}

}  // namespace rv52::fuzz
