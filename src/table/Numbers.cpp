#include "table/Numbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

namespace rv52 {

namespace {

std::string_view SkipBlanks(std::string_view text) {
    const auto start = text.find_first_not_of(' ');
    return start == std::string_view::npos ? std::string_view{} : text.substr(start);
}

constexpr int kReliableDigits = 15;  // that every double holds, whatever the arithmetic before it left behind

// An unsigned decimal number as text begins with it.
struct Decimal {
    std::size_t length = 0;    // in characters; 0 when text begins with none
    std::uint64_t digits = 0;  // without the point; only for kReliableDigits or fewer
    int count = 0;             // of the digits
    std::size_t places = 0;    // of them behind the point
};

Decimal ReadDecimal(std::string_view text) {
    Decimal read;
    bool point = false;
    for (; read.length < text.size(); ++read.length) {
        const char letter = text[read.length];
        if (letter >= '0' && letter <= '9') {
            read.digits = read.digits * 10 + static_cast<std::uint64_t>(letter - '0');
            ++read.count;
            read.places += point ? 1 : 0;
        } else if (letter == '.' && !point) {
            point = true;
        } else {
            break;
        }
    }
    if (read.count == 0) read.length = 0;
    return read;
}

// Of so few digits both they and the power of ten are exact, and their quotient is the nearest double: what a
// reader of any decimal gives too, but takes longer to.
double ShortDecimal(const Decimal& decimal) {
    constexpr std::array<double, kReliableDigits + 1> powers{1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                             1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    return static_cast<double>(decimal.digits) / powers[decimal.places];
}

struct Reading {
    double value;
    std::string_view rest;
};

double LongDecimal(std::string_view text) {
    double value = 0;
    const auto result =
        std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
    if (result.ec != std::errc::result_out_of_range) return value;
    // Too small to tell from 0, or too large: only a non-zero whole part makes it large.
    const bool large = text.substr(0, text.find('.')).find_first_of("123456789") != std::string_view::npos;
    return large ? std::numeric_limits<double>::infinity() : 0.0;
}

std::optional<Reading> ReadNumber(std::string_view text) {
    text = SkipBlanks(text);
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    const auto decimal = ReadDecimal(text);
    if (decimal.length == 0) return std::nullopt;
    const double value = decimal.count <= kReliableDigits ? ShortDecimal(decimal)
                                                          : LongDecimal(text.substr(0, decimal.length));
    return Reading{negative && value != 0 ? -value : value, text.substr(decimal.length)};
}

// Adds one to the last of a run of digits, carrying.
void CountUp(std::string& digits) {
    for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit) {
        if (*digit != '9') {
            ++*digit;
            return;
        }
        *digit = '0';
    }
    digits.insert(digits.begin(), '1');
}

// The digits of a finite number from its whole part on, rounded to those that are reliable: 12.5 gives "125…"
// with a whole part of two digits, and so does 0.05 give "005…" with one.
struct Digits {
    std::string run;
    std::size_t whole;
};

Digits DigitsOf(double value) {
    std::array<char, 32> text{};
    const auto* end = std::to_chars(text.data(), text.data() + text.size(), std::abs(value),
                                    std::chars_format::scientific, kReliableDigits - 1)
                          .ptr;
    const auto* mark = text.data() + kReliableDigits + 1;  // a point stands after the first digit
    int exponent = 0;
    std::from_chars(mark[1] == '+' ? mark + 2 : mark + 1, end, exponent);

    const auto before = static_cast<std::size_t>(std::max(0, -exponent));
    std::string run(before, '0');
    run += text.front();
    run.append(text.data() + 2, kReliableDigits - 1);
    return {std::move(run), static_cast<std::size_t>(std::max(0, exponent)) + 1};
}

// The tenths that a magnitude rounds to, where arithmetic alone can tell. Below a thousand, neither the error
// of multiplying by ten nor rounding to the reliable digits first moves a number by as much as the room kept
// around a half.
std::optional<int> PlainTenths(double magnitude) {
    constexpr double tooLarge = 1000;
    constexpr double room = 1e-9;
    if (!(magnitude < tooLarge)) return std::nullopt;
    const double scaled = magnitude * 10;
    const int below = static_cast<int>(scaled);
    const double above = scaled - below - 0.5;
    if (std::abs(above) < room) return std::nullopt;
    return above > 0 ? below + 1 : below;
}

std::string WrittenTenths(bool negative, int tenths) {
    std::array<char, 8> text{'-'};
    auto* end = std::to_chars(text.data() + 1, text.data() + text.size(), tenths / 10).ptr;
    *end++ = '.';
    *end++ = static_cast<char>('0' + tenths % 10);
    return {text.data() + (negative && tenths > 0 ? 0 : 1), end};
}

}  // namespace

double RoundHalfEven(double value) {
    return std::isfinite(value) ? value - std::remainder(value, 1.0) : value;
}

std::string ReadableDecimal(double value) {
    constexpr int digits = 12;
    std::array<char, 32> text{};
    const auto result =
        std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::general, digits);
    return {text.data(), result.ptr};
}

std::string ShortestDecimal(double value) {
    std::array<char, 32> text{};
    const auto result = std::to_chars(text.data(), text.data() + text.size(), value);
    return {text.data(), result.ptr};
}

std::string FormatTenths(double value) {
    if (!std::isfinite(value)) return value < 0 ? "-inf" : std::isnan(value) ? "nan" : "inf";
    if (const auto tenths = PlainTenths(std::abs(value))) return WrittenTenths(value < 0, *tenths);
    auto [digits, whole] = DigitsOf(value);
    digits.resize(std::max(digits.size(), whole + 2), '0');
    const bool up = digits[whole + 1] >= '5';
    digits.resize(whole + 1);
    if (up) CountUp(digits);
    digits.insert(digits.size() - 1, 1, '.');
    return value < 0 && digits != "0.0" ? "-" + digits : digits;
}

std::optional<double> StoredNumber(std::string_view text) {
    if (text.find_first_not_of("0123456789.eE+-") != std::string_view::npos) return std::nullopt;
    double value = 0;
    const auto* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    return result.ec == std::errc() && result.ptr == end ? std::optional(value) : std::nullopt;
}

std::optional<double> LeadingNumber(std::string_view text) {
    const auto reading = ReadNumber(text);
    return reading ? std::optional(reading->value) : std::nullopt;
}

std::optional<double> EntireNumber(std::string_view text) {
    const auto reading = ReadNumber(text);
    return reading && SkipBlanks(reading->rest).empty() ? std::optional(reading->value) : std::nullopt;
}

}  // namespace rv52
