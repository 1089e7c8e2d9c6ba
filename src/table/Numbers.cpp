#include "table/Numbers.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace rv52 {

namespace {

std::string_view SkipBlanks(std::string_view text) {
    const auto start = text.find_first_not_of(' ');
    return start == std::string_view::npos ? std::string_view{} : text.substr(start);
}

// How many characters of text an unsigned decimal number takes; 0 when it begins with none.
std::size_t DecimalLength(std::string_view text) {
    std::size_t length = 0;
    std::size_t digits = 0;
    bool point = false;
    for (; length < text.size(); ++length) {
        if (text[length] >= '0' && text[length] <= '9')
            ++digits;
        else if (text[length] == '.' && !point)
            point = true;
        else
            break;
    }
    return digits == 0 ? 0 : length;
}

struct Reading {
    double value;
    std::string_view rest;
};

std::optional<Reading> ReadNumber(std::string_view text) {
    text = SkipBlanks(text);
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    const auto length = DecimalLength(text);
    if (length == 0) return std::nullopt;

    double value = 0;
    const auto* end = text.data() + length;
    const auto result = std::from_chars(text.data(), end, value, std::chars_format::fixed);
    if (result.ec == std::errc::result_out_of_range) {
        // Too small to tell from 0, or too large: only a non-zero whole part makes it large.
        const bool large =
            text.substr(0, text.find('.')).find_first_of("123456789") != std::string_view::npos;
        value = large ? std::numeric_limits<double>::infinity() : 0.0;
    }
    return Reading{negative ? -value : value, text.substr(length)};
}

// Adds one to the last digit of a run of digits, carrying; the point is passed over.
void CountUp(std::string& digits) {
    for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit) {
        if (*digit == '.') continue;
        if (*digit != '9') {
            ++*digit;
            return;
        }
        *digit = '0';
    }
    digits.insert(digits.begin(), '1');
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
    // The longest fixed text of a double has 309 digits before the point, or some 760 after it. Not cleared
    // first: that would take longer than the digits.
    std::array<char, 1200> buffer;  // NOLINT(cppcoreguidelines-pro-type-member-init)
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::abs(value),
                                      std::chars_format::fixed);
    std::string text(buffer.data(), result.ptr);
    if (!std::isfinite(value)) return value < 0 ? "-" + text : text;

    const auto point = text.find('.');
    if (point == std::string::npos) {
        text += ".0";
    } else if (text.size() > point + 2) {
        const bool up = text[point + 2] >= '5';
        text.resize(point + 2);
        if (up) CountUp(text);
    }
    return value < 0 && text != "0.0" ? "-" + text : text;
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
