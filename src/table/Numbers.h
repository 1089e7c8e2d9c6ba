#pragma once

#include <optional>
#include <string>
#include <string_view>

// The number rules of the tool. No other code rounds to integers, writes one-decimal texts or reads decimal
// numbers. All know the decimal point "." only, whatever the desktop's language.
namespace rv52 {

// To the nearest whole number, halves to the even neighbour.
double RoundHalfEven(double value);

// "#0.0": one decimal, at least one digit before the point, halves away from zero (27.75 gives 27.8). Judged
// on fifteen digits, which binary arithmetic leaves right: 9.0 lowered by 5 % is 8.549999999999999 in binary
// and 8.55 to everyone else, and gives 8.6. Never "-0.0".
std::string FormatTenths(double value);

// The leading decimal number of a text: blanks, an optional sign, digits with at most one decimal point and
// at least one digit; what follows is not looked at. Nothing when there is none. A number too large for a
// double is infinite, and "-0" is 0.
std::optional<double> LeadingNumber(std::string_view text);

// As LeadingNumber, but the number must be the whole text but for blanks around it.
std::optional<double> EntireNumber(std::string_view text);

// For the eye: twelve digits at most, which hold all that is typed or decoded and none of the noise that
// binary arithmetic leaves behind them (72 × 0.176 gives 12.672).
std::string ReadableDecimal(double value);

// The shortest decimal that reads back as the same double, with an exponent where that is shorter.
std::string ShortestDecimal(double value);

// What ShortestDecimal writes, read back to the same double: digits, a "-" before them, a point and an
// exponent as need be. Nothing for any other text, and for what is too large or too small for a double.
std::optional<double> StoredNumber(std::string_view text);

}  // namespace rv52
