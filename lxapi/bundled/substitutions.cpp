#include "lxapi/bundled/substitutions.h"

#include <algorithm>

#include "lxapi/bundled/utf8.h"

namespace lxapi {

bool Substitutions::add(std::string_view source, std::string_view target) {
  if (source.empty() || !targets_.try_emplace(std::string(source), target).second) return false;
  size_t length = 0;
  for (size_t position = 0; position < source.size(); ++length)
    position += decodeAt(source, position).byteCount;
  size_t& longest = longest_[foldCase(decodeAt(source, 0).value)];
  longest = std::max(longest, length);
  return true;
}

std::optional<Substitutions::Match> Substitutions::find(std::u32string_view text, char32_t before) const {
  if (text.empty() || (isWordCharacter(before) && isWordCharacter(text.front()))) return std::nullopt;
  const auto longest = longest_.find(foldCase(text.front()));
  if (longest == longest_.end()) return std::nullopt;
  const std::u32string_view candidate = text.substr(0, longest->second);
  std::string exact;
  std::string folded;
  std::vector<std::pair<size_t, size_t>> sizes;  // after each character, in bytes
  for (const char32_t value : candidate) {
    appendUtf8(exact, value);
    appendUtf8(folded, foldCase(value));
    sizes.emplace_back(exact.size(), folded.size());
  }
  for (size_t length = candidate.size(); length > 0; --length) {
    const char32_t last = candidate[length - 1];
    const bool insideWord = length < text.size() && isWordCharacter(last) && isWordCharacter(text[length]);
    if (insideWord || isSpace(last)) continue;
    auto found = targets_.find(std::string_view(exact).substr(0, sizes[length - 1].first));
    if (found == targets_.end())
      found = targets_.find(std::string_view(folded).substr(0, sizes[length - 1].second));
    if (found != targets_.end()) return Match{length, found->second};
  }
  return std::nullopt;
}

char32_t foldCase(char32_t value) {
  const auto within = [value](char32_t first, char32_t last) { return value >= first && value <= last; };
  if (within('A', 'Z') || (within(0xC0, 0xDE) && value != 0xD7)) return value + 0x20;
  if (within(0x391, 0x3A9) || within(0x410, 0x42F)) return value + 0x20;
  if (within(0x400, 0x40F)) return value + 0x50;
  // Pairs of a capital and a small letter, the capital even or odd.
  if (within(0x100, 0x137) || within(0x14A, 0x177) || within(0x460, 0x481) || within(0x1E00, 0x1E95))
    return value | 1;
  if ((within(0x139, 0x148) || within(0x179, 0x17E)) && value % 2 == 1) return value + 1;
  return value;
}

}  // namespace lxapi
