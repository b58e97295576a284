#include "lxapi/bundled/dictionary.h"

#include <algorithm>
#include <vector>

#include "base/ascii.h"
#include "base/utf8.h"
#include "lxapi/bundled/characters.h"
#include "lxapi/bundled/csv_parser.h"

namespace speech::lxapi {
namespace {

std::string_view withoutBlanks(std::string_view field) { return trimmed(field, " \t"); }

/// The checks of valid UTF-8.
LxDictCheck checkWords(std::string_view text, size_t longest) {
  if (text.empty()) return LX_DICT_EMPTY;
  size_t length = 0;
  bool hasWord = false;
  bool hasControl = false;
  for (size_t position = 0; position < text.size(); ++length) {
    const CodePoint current = decodeAt(text, position);
    position += current.byteCount;
    hasWord = hasWord || isWordCharacter(current.value);
    hasControl = hasControl || isControl(current.value);
  }
  return length > longest ? LX_DICT_TOO_LONG
         : hasControl     ? LX_DICT_CONTROL
         : hasWord        ? LX_DICT_OK
                          : LX_DICT_NO_WORD;
}

LxDictCheck checkText(std::string_view text, size_t longest) {
  return isValidUtf8(text) ? checkWords(text, longest) : LX_DICT_BAD_TEXT;
}

LxDictCheck checkEntry(const std::vector<std::string>& fields, DictionaryKind kind) {
  if (fields.size() < 2) return LX_DICT_BAD_RECORD;
  const std::string_view target = withoutBlanks(fields[1]);
  if (const LxDictCheck source = checkWords(withoutBlanks(fields[0]), kLongestSource); source != LX_DICT_OK)
    return source;
  return kind == DictionaryKind::kText ? checkWords(target, kLongestTarget) : checkTargetPhonemes(target);
}

}  // namespace

bool Dictionary::add(std::string_view source, std::string_view target) {
  if (source.empty() || !targets_.try_emplace(std::string(source), target).second) return false;
  size_t& longest = longest_[foldCase(decodeAt(source, 0).value)];
  longest = std::max(longest, countCodePoints(source));
  return true;
}

std::optional<Dictionary::Match> Dictionary::find(std::u32string_view text, char32_t before) const {
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

LxDictCheck checkSourceLength(std::string_view source) {
  if (!isValidUtf8(source)) return LX_DICT_BAD_TEXT;
  const LxDictCheck check = checkWords(source, kLongestSource);
  return check == LX_DICT_EMPTY || check == LX_DICT_TOO_LONG ? check : LX_DICT_OK;
}

LxDictCheck checkSource(std::string_view source) { return checkText(source, kLongestSource); }

LxDictCheck checkTargetText(std::string_view target) { return checkText(target, kLongestTarget); }

LxDictCheck checkTargetPhonemes(std::string_view target) {
  if (target.empty()) return LX_DICT_EMPTY;
  if (target.size() > kLongestTarget) return LX_DICT_TOO_LONG;
  // The notation is ASCII; brackets would end it.
  const bool allowed = std::all_of(target.begin(), target.end(), [](char letter) {
    return letter >= ' ' && letter <= '~' && letter != '[' && letter != ']' && letter != '<' &&
           letter != '>' && letter != '&';
  });
  const bool sounds = std::any_of(target.begin(), target.end(), [](char letter) {
    return letter == '@' || isWordCharacter(static_cast<unsigned char>(letter));
  });
  return allowed && sounds ? LX_DICT_OK : LX_DICT_BAD_PHONEMES;
}

LxDictCheck checkRecord(std::string_view record) {
  if (!isValidUtf8(record)) return LX_DICT_BAD_TEXT;
  CsvParser parser(record);
  std::vector<std::string> fields;
  if (parser.next(fields) != CsvParser::Status::kRecord) return LX_DICT_BAD_RECORD;
  return checkEntry(fields, DictionaryKind::kText);
}

DictionaryResult parseDictionary(std::string_view text, DictionaryKind kind) {
  if (text.size() > kMostDictionaryBytes) return {LX_ERROR_DICT_SIZE, 0, nullptr};
  if (!isValidUtf8(text) || text.find('\0') != std::string_view::npos) return {LX_ERROR_BAD_TEXT, 0, nullptr};
  auto dictionary = std::make_shared<Dictionary>(kind);
  const auto lines = static_cast<size_t>(std::count(text.begin(), text.end(), '\n')) + 1;
  dictionary->reserve(std::min(lines, kMostDictionaryEntries));
  CsvParser parser(text);
  std::vector<std::string> fields;
  for (;;) {
    const CsvParser::Status status = parser.next(fields);
    if (status == CsvParser::Status::kEnd) break;
    if (status != CsvParser::Status::kRecord) return {LX_ERROR_DICT_FORMAT, parser.line(), nullptr};
    const bool emptyLine = fields.size() == 1 && withoutBlanks(fields[0]).empty();
    if (emptyLine) continue;
    const LxDictCheck check = checkEntry(fields, kind);
    if (check == LX_DICT_BAD_RECORD) return {LX_ERROR_DICT_FORMAT, parser.line(), nullptr};
    if (check != LX_DICT_OK) return {LX_ERROR_DICT_ENTRY, parser.line(), nullptr};
    if (dictionary->size() == kMostDictionaryEntries) return {LX_ERROR_DICT_SIZE, parser.line(), nullptr};
    if (!dictionary->add(withoutBlanks(fields[0]), withoutBlanks(fields[1]))) {
      return {LX_ERROR_DICT_DUPLICATE, parser.line(), nullptr};
    }
  }
  if (dictionary->size() == 0) return {LX_ERROR_DICT_EMPTY, 0, nullptr};
  return {LX_OK, 0, std::move(dictionary)};
}

}  // namespace speech::lxapi
