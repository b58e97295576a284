#pragma once

#include <filesystem>
#include <string>

#include "apps/narravo/text_encoding.h"

namespace narravo {

/// A path as Windows names it, from UTF-8.
inline std::filesystem::path pathFromUtf8(const std::string& name) { return fromUtf8(name).value_or(L""); }

}  // namespace narravo
