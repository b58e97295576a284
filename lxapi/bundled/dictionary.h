#pragma once

// User dictionaries and lexicons: what is spoken instead of a word or phrase, the files that say so, their
// limits and the checks of their entries.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "lxapi/lxapi.h"

namespace speech::lxapi {

/// A word list gives other words, a lexicon pronunciations in the synthesizer's notation.
enum class DictionaryKind { kText, kPhonemes };

/// One dictionary or lexicon. A source without capital letters stands for every way of writing it; one with
/// capitals stands for exactly itself, and comes first.
class Dictionary {
 public:
  explicit Dictionary(DictionaryKind kind) : kind_(kind) {}

  /// Makes room for `count` entries.
  void reserve(size_t count) { targets_.reserve(count); }

  /// Takes valid UTF-8. False when the source is there already.
  bool add(std::string_view source, std::string_view target);

  struct Match {
    size_t length;            ///< In code points of the text.
    std::string_view target;  ///< UTF-8, as long as the object lives.
  };

  /// The longest source at the start of `text`, which must end at the end of a word where its own last
  /// character belongs to one. @param before  the character in front of `text`, 0 for none
  std::optional<Match> find(std::u32string_view text, char32_t before) const;

  DictionaryKind kind() const { return kind_; }
  size_t size() const { return targets_.size(); }

 private:
  /// Looks texts up without making strings of them.
  struct Hash : std::hash<std::string_view> {
    using is_transparent = void;
  };

  const DictionaryKind kind_;
  std::unordered_map<std::string, std::string, Hash, std::equal_to<>> targets_;
  /// The longest source for each first character, in characters, so that most words need no look-up.
  std::unordered_map<char32_t, size_t> longest_;
};

/// The dictionaries and lexicons of one speech; the first one in the list that has a match decides.
using DictionaryList = std::vector<std::shared_ptr<const Dictionary>>;

inline constexpr size_t kMostDictionaryEntries = 200'000;
inline constexpr size_t kMostDictionaryBytes = 32U << 20;
inline constexpr size_t kLongestSource = 100;     ///< In characters.
inline constexpr size_t kLongestTarget = 200;     ///< In characters.
inline constexpr int32_t kMostDictionaries = 16;  ///< Numbers 0 to 15.

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
  size_t line = 0;                               ///< Where the error is, from 1; 0 for the file as a whole.
  std::shared_ptr<const Dictionary> dictionary;  ///< Null on an error.
};

/// Reads a dictionary's CSV text: source, target, and further fields that are not looked at.
DictionaryResult parseDictionary(std::string_view text, DictionaryKind kind);

}  // namespace speech::lxapi
