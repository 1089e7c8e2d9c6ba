#include "table/ModifyExpression.h"

#include <cmath>
#include <gtest/gtest.h>
#include <tuple>

namespace rv52 {
namespace {

TEST(ModifyExpressionTest, ReadsWhatAHurriedPersonTypes) {
    constexpr bool percent = true;
    constexpr bool relative = true;
    const std::tuple<const char*, ModifyExpression> cases[] = {
        {"  30  ", {30, !percent, !relative}},   {"+10", {10, !percent, relative}},
        {"80%", {80, percent, !relative}},       {"-7.5%", {-7.5, percent, relative}},
        {" - 7.5 %", {-7.5, percent, relative}}, {"-  5", {-5, !percent, relative}},
        {"%80", {80, percent, !relative}},       {"5-", {5, !percent, relative}},
        {"+-5", {-5, !percent, relative}},       {"-+5", {-5, !percent, relative}},
        {"1.2.3", {1.2, !percent, !relative}},   {"1e-3", {1, !percent, relative}}};
    for (const auto& [answer, expected] : cases)
        EXPECT_EQ(ParseModifyExpression(answer), expected) << answer;
    for (const auto* answer : {"", "   ", "+", "-", "- ", "%", "+%", ".", "--5", "- - 5", "x5"})
        EXPECT_EQ(ParseModifyExpression(answer), std::nullopt) << answer;
}

TEST(ModifyExpressionTest, StaysFiniteOnAnOverlongAnswer) {
    const auto nines = std::string(10000, '9');
    for (const auto& answer : {nines, "-" + nines, nines + "%", "-" + nines + "%"}) {
        const auto expression = ParseModifyExpression(answer);
        ASSERT_TRUE(expression);
        EXPECT_TRUE(std::isfinite(expression->value));
        EXPECT_FALSE(std::isnan(expression->Apply(0)));
        EXPECT_FALSE(std::isnan(expression->Apply(45)));
    }
}

}  // namespace
}  // namespace rv52
