#pragma once

#include <string>
#include <string_view>

namespace lxapi {

/// A language tag in its usual letter case: "en-us" becomes "en-US", "zh-hant" "zh-Hant", "en-gb-x-rp"
/// "en-GB-x-rp".
std::string formatLanguageCode(std::string_view tag);

}  // namespace lxapi
