#pragma once

// UTF-8 outside (arguments, files, output), UTF-16 towards the library.

#include <optional>
#include <string>
#include <string_view>

namespace narravo {

/// Lone surrogates become U+FFFD.
std::string toUtf8(std::wstring_view text);

/// Nothing when `text` is not well-formed UTF-8.
std::optional<std::wstring> fromUtf8(std::string_view text);

}  // namespace narravo
