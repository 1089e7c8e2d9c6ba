#include "table/ModifyExpression.h"

#include "table/Numbers.h"

#include <algorithm>
#include <limits>
#include <string>

namespace rv52 {

namespace {

// The answer as a number is written: no "%" and "+", nothing before the sign, no blanks after it.
std::string NumberPart(std::string_view answer) {
    std::string number(answer);
    std::erase_if(number, [](char letter) { return letter == '%' || letter == '+'; });
    number.erase(0, number.find_first_not_of(' '));
    if (number.starts_with('-')) number.erase(1, number.find_first_not_of(' ', 1) - 1);
    return number;
}

}  // namespace

double ModifyExpression::Apply(double current) const {
    if (percent) return relative ? current * (1 + value / 100) : current * value / 100;
    return relative ? current + value : value;
}

std::optional<ModifyExpression> ParseModifyExpression(std::string_view answer) {
    const auto value = LeadingNumber(NumberPart(answer));
    if (!value) return std::nullopt;
    constexpr double largest = std::numeric_limits<double>::max();
    return ModifyExpression{.value = std::clamp(*value, -largest, largest),
                            .percent = answer.find('%') != std::string_view::npos,
                            .relative = answer.find_first_of("+-") != std::string_view::npos};
}

}  // namespace rv52
