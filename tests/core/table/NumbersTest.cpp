#include "table/Numbers.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <tuple>

namespace rv52 {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(NumbersTest, WritesOneDecimalAsAPersonWouldRoundWhatTheyRead) {
    // What is no more than the noise of binary arithmetic beside a half is a half.
    const double below = std::nextafter(0.25, 0);
    const double above = std::nextafter(0.25, 1);
    const std::pair<double, const char*> cases[] = {{0, "0.0"},
                                                    {-0.0, "0.0"},
                                                    {7, "7.0"},
                                                    {0.25, "0.3"},
                                                    {0.15, "0.2"},
                                                    {0.05, "0.1"},
                                                    {44.88, "44.9"},
                                                    {10.032, "10.0"},
                                                    {9.95, "10.0"},
                                                    {99.95, "100.0"},
                                                    {44.95, "45.0"},
                                                    {27.75, "27.8"},
                                                    {-0.04, "0.0"},
                                                    {-0.05, "-0.1"},
                                                    {-9.96, "-10.0"},
                                                    {9 * 0.95, "8.6"},
                                                    {below, "0.3"},
                                                    {above, "0.3"},
                                                    {28.0499999999, "28.0"},
                                                    {28.0499999999999, "28.0"},
                                                    {4.99999999999999e-2, "0.0"},
                                                    {4.999999999999999e-2, "0.1"},
                                                    {5e-324, "0.0"},
                                                    {-2e-310, "0.0"},
                                                    {1e14 + 0.25, "100000000000000.0"}};
    for (const auto& [value, text] : cases)
        EXPECT_EQ(FormatTenths(value), text) << ShortestDecimal(value);
    EXPECT_EQ(FormatTenths(1e300).size(), 303U);
    EXPECT_EQ(FormatTenths(-std::numeric_limits<double>::max()).size(), 312U);
    EXPECT_EQ(FormatTenths(-kInfinity), "-inf");
}

// The slow way: fifteen digits as the C library writes them, then whole numbers only.
std::string SlowTenths(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.14e", std::fabs(value));
    const int exponent = std::atoi(text + 17);
    if (exponent < -3) return "0.0";
    const long long digits = std::atoll((text[0] + std::string(text + 2, 14)).c_str());
    long long tenth = 1;
    for (int power = exponent; power < 13; ++power)
        tenth *= 10;
    const long long tenths = (digits + tenth / 2) / tenth;
    const bool negative = value < 0 && tenths > 0;
    return (negative ? "-" : "") + std::to_string(tenths / 10) + "." + std::to_string(tenths % 10);
}

TEST(NumbersTest, WritesOneDecimalAsTheSlowWayDoes) {
    std::mt19937_64 random(52);
    std::uniform_real_distribution<double> any(-50, 50);
    std::uniform_real_distribution<double> magnitude(-5, 12);
    const auto compare = [](double value) {
        if (HasFailure()) return;  // one is enough
        EXPECT_EQ(FormatTenths(value), SlowTenths(value)) << ShortestDecimal(value);
    };
    for (int tenths = 0; tenths <= 450; ++tenths) {
        const double shown = tenths / 10.0;
        for (int percent = 1; percent <= 200; ++percent)
            compare(shown * (1 - percent / 200.0));
        double neighbour = shown + 0.05;
        for (int step = 0; step < 64; ++step)
            neighbour = std::nextafter(neighbour, 0);
        for (int step = 0; step < 128; ++step)
            compare(neighbour = std::nextafter(neighbour, 100));
    }
    for (int count = 0; count < 100'000; ++count) {
        compare(any(random));
        compare(std::pow(10, magnitude(random)));
    }
}

TEST(NumbersTest, RoundsHalvesToTheEvenNeighbour) {
    const double below = std::nextafter(0.5, 0);
    const double cases[][2] = {
        {0.5, 0},   {1.5, 2},       {2.5, 2},   {-0.5, 0},      {-1.5, -2},
        {-2.5, -2}, {1529.5, 1530}, {below, 0}, {1e300, 1e300}, {-kInfinity, -kInfinity}};
    for (const auto& [value, rounded] : cases)
        EXPECT_EQ(RoundHalfEven(value), rounded) << value;
}

TEST(NumbersTest, ReadsTheNumberThatATextBeginsWith) {
    const std::tuple<const char*, std::optional<double>, std::optional<double>> cases[] = {
        {"007", 7, 7},      {"  -3.5  ", -3.5, -3.5},
        {"+7", 7, 7},       {".5", 0.5, 0.5},
        {"5.", 5, 5},       {"-.25", -0.25, -0.25},
        {"1.2.3", 1.2, {}}, {"12 degrees", 12, {}},
        {"1,5", 1, {}},     {"1e3", 1, {}},
        {"0x10", 0, {}},    {"5-", 5, {}},
        {"4 5", 4, {}},     {"", {}, {}},
        {"   ", {}, {}},    {".", {}, {}},
        {"-", {}, {}},      {"--5", {}, {}},
        {"+-5", {}, {}},    {"- 5", {}, {}},
        {"x", {}, {}},      {"inf", {}, {}},
        {"nan", {}, {}},    {"\xEF\xBC\x95", {}, {}}};  // a full-width 5
    for (const auto& [text, leading, entire] : cases) {
        EXPECT_EQ(LeadingNumber(text), leading) << text;
        EXPECT_EQ(EntireNumber(text), entire) << text;
    }
    std::mt19937_64 random(52);
    for (int count = 0; count < 100'000 && !HasFailure(); ++count) {
        auto text = std::to_string(random() >> random() % 64);
        text.insert(random() % (text.size() + 1), ".");
        EXPECT_EQ(LeadingNumber(text), std::strtod(text.c_str(), nullptr)) << text;
    }
    const std::string nines(10'000, '9');
    const std::string zeros(10'000, '0');
    EXPECT_FALSE(std::signbit(LeadingNumber("-0.0").value_or(-1)));
    EXPECT_EQ(LeadingNumber(nines), kInfinity);
    EXPECT_EQ(LeadingNumber("-" + nines), -kInfinity);
    EXPECT_EQ(LeadingNumber("0." + zeros + "1"), 0.0);
    EXPECT_EQ(LeadingNumber(zeros + "3"), 3.0);
}

TEST(NumbersTest, StoresNumbersExactly) {
    for (const double value : {0.1 + 0.2, 44.88, -1e300 / 7, std::numeric_limits<double>::max(), 5e-324})
        EXPECT_EQ(StoredNumber(ShortestDecimal(value)), value);
    for (const auto* text : {"", "-", "1,5", "inf", "0x1p3", "1 ", " 1", "1e", "1e999", "1e-999", "+1"})
        EXPECT_EQ(StoredNumber(text), std::nullopt) << text;
}

}  // namespace
}  // namespace rv52
