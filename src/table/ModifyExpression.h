#pragma once

#include <optional>
#include <string_view>

namespace rv52 {

// What a Modify answer asks for each cell: 30 sets, -5 and +10 shift, 80% scales, -7.5% and +15% change by a
// share of the cell's own value.
struct ModifyExpression {
    double value = 0;  // with its sign; always finite
    bool percent = false;
    bool relative = false;

    bool operator==(const ModifyExpression&) const = default;

    // The new value, before limits, of a cell that shows current.
    double Apply(double current) const;
};

// Nothing when the answer, its "%" and "+" apart, does not begin with a decimal number. Blanks around the
// answer and after its sign do not matter.
std::optional<ModifyExpression> ParseModifyExpression(std::string_view answer);

}  // namespace rv52
