#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace rv52 {

// The single-byte text of branding files and of the module's VIN is Windows-1252. Its five codes without a
// character stand for the control characters of the same number, so that all 256 codes come back.

// As UTF-8.
std::string FromCodePage(std::string_view bytes);

// Nothing when a character has no code, or the text is not UTF-8.
std::optional<std::string> ToCodePage(std::string_view utf8);

// How many characters a UTF-8 text has, which is not how many bytes.
std::size_t CharacterCount(std::string_view utf8);

}  // namespace rv52
