#pragma once

// Words and phrases that are to be spoken as something else.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace lxapi {

/// One dictionary or lexicon. A source without capital letters stands for every way of writing it; one with
/// capitals stands for exactly itself, and comes first.
class Substitutions {
 public:
  /// @param phonemes  the targets are phonemes, not text
  explicit Substitutions(bool phonemes) : phonemes_(phonemes) {}

  /// Makes room for so many entries.
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

  bool phonemes() const { return phonemes_; }
  size_t size() const { return targets_.size(); }

 private:
  /// Looks texts up without making strings of them.
  struct Hash : std::hash<std::string_view> {
    using is_transparent = void;
  };

  const bool phonemes_;
  std::unordered_map<std::string, std::string, Hash, std::equal_to<>> targets_;
  /// The longest source for each first character, in characters, so that most words need no look-up.
  std::unordered_map<char32_t, size_t> longest_;
};

/// The dictionaries and lexicons of one speech, those that come first in the list having the last word.
using SubstitutionList = std::vector<std::shared_ptr<const Substitutions>>;

/// Lower case of Latin, Greek and Cyrillic letters; other characters as they are.
char32_t foldCase(char32_t value);

}  // namespace lxapi
