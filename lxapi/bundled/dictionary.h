#pragma once

// User dictionaries and lexicons as files: their limits, the checks of their entries, loading.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "lxapi/bundled/substitutions.h"
#include "lxapi/lxapi.h"

namespace lxapi {

inline constexpr size_t kMostDictionaryEntries = 200'000;
inline constexpr size_t kMostDictionaryBytes = 32U << 20;
inline constexpr size_t kLongestSource = 100;     ///< In characters.
inline constexpr size_t kLongestTarget = 200;     ///< In characters.
inline constexpr int32_t kMostDictionaries = 16;  ///< Numbers 0 to 15.

enum class DictionaryKind { Text, Phonemes };

/// The checks of one entry; each takes any bytes.
LxDictCheck checkSourceLength(std::string_view source);
LxDictCheck checkSource(std::string_view source);
LxDictCheck checkTargetText(std::string_view target);
LxDictCheck checkTargetPhonemes(std::string_view target);

/// The checks of a whole CSV record, in the order of its fields.
LxDictCheck checkRecord(std::string_view record);

struct DictionaryResult {
  /// LX_OK, LX_ERROR_BAD_TEXT, or one of the LX_ERROR_DICT codes.
  int32_t error = LX_OK;
  size_t line = 0;  ///< Where the error is, from 1; 0 for the file as a whole.
  std::shared_ptr<const Substitutions> substitutions;  ///< Null on an error.
};

/// Reads a dictionary's CSV text: source, target, and further fields that are not looked at.
DictionaryResult parseDictionary(std::string_view text, DictionaryKind kind);

}  // namespace lxapi
