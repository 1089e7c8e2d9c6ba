#include "fuzz/Target.h"
#include "table/ModifyExpression.h"
#include "table/Numbers.h"

#include <cmath>

namespace rv52::fuzz {

void Target(std::string_view input) {
    const auto expression = ParseModifyExpression(input);
    if (!expression) return;
    Require(std::isfinite(expression->value), "a number that can be reckoned with");
    for (const double current : {0.0, 0.1, 45.0}) {
        const double advance = expression->Apply(current);
        Require(!std::isnan(advance), "a new value");
        Require(!FormatTenths(std::fmin(std::fmax(advance, -99.0), 45.0)).empty(), "its text");
    }
}

}  // namespace rv52::fuzz
