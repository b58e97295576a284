// What the service needs to know about UTF-8 text.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace speech::service {

// The number of characters (code points), or nothing when the bytes are not well-formed UTF-8:
// stray or missing continuation bytes, over-long forms, surrogates, values above U+10FFFF.
std::optional<size_t> countUtf8Characters(std::string_view bytes);

// Reads every byte as the character of the same number (ISO 8859-1).
std::string latin1ToUtf8(std::string_view bytes);

}  // namespace speech::service
