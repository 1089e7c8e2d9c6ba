#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace rv52 {

// Letters A to Z only; bytes of other alphabets stay as they are.
std::string UpperCase(std::string_view text);

// Whether text holds word, without regard to the case of letters A to Z.
bool ContainsNoCase(std::string_view text, std::string_view word);

// The end of a UTF-8 text that holds at most so many characters.
std::string_view LastCharacters(std::string_view text, std::size_t count);

// Takes the first line, ended by CR LF, LF or the end, off a text; the line is given without its end.
std::string_view TakeLine(std::string_view& text);

// The lines of a text file, CR LF or LF; a line break at the end starts no further line.
std::vector<std::string_view> Lines(std::string_view text);

// "1 cell", "5 cells".
std::string Counted(std::size_t count, const std::string& what);

// A text for the terminal that quotes what somebody gave: control characters, line ends among them, become
// "?".
std::string OneLine(std::string_view text);

}  // namespace rv52
