#include "lxapi/bundled/dictionary.h"

#include <algorithm>
#include <vector>

#include "lxapi/bundled/csv_parser.h"
#include "lxapi/bundled/utf8.h"

namespace lxapi {
namespace {

std::string_view trim(std::string_view text) {
  const size_t begin = text.find_first_not_of(" \t");
  return begin == std::string_view::npos ? std::string_view()
                                         : text.substr(begin, text.find_last_not_of(" \t") - begin + 1);
}

bool isControl(char32_t value) { return value < 0x20 || (value >= 0x7F && value < 0xA0); }

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
  const std::string_view target = trim(fields[1]);
  if (const LxDictCheck source = checkWords(trim(fields[0]), kLongestSource); source != LX_DICT_OK)
    return source;
  return kind == DictionaryKind::Text ? checkWords(target, kLongestTarget) : checkTargetPhonemes(target);
}

}  // namespace

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
  if (parser.next(fields) != CsvParser::Status::Record) return LX_DICT_BAD_RECORD;
  return checkEntry(fields, DictionaryKind::Text);
}

DictionaryResult parseDictionary(std::string_view text, DictionaryKind kind) {
  if (text.size() > kMostDictionaryBytes) return {LX_ERROR_DICT_SIZE, 0, nullptr};
  if (!isValidUtf8(text) || text.find('\0') != std::string_view::npos) return {LX_ERROR_BAD_TEXT, 0, nullptr};
  auto substitutions = std::make_shared<Substitutions>(kind == DictionaryKind::Phonemes);
  const auto lines = static_cast<size_t>(std::count(text.begin(), text.end(), '\n')) + 1;
  substitutions->reserve(std::min(lines, kMostDictionaryEntries));
  CsvParser parser(text);
  std::vector<std::string> fields;
  for (;;) {
    const CsvParser::Status status = parser.next(fields);
    if (status == CsvParser::Status::End) break;
    if (status != CsvParser::Status::Record) return {LX_ERROR_DICT_FORMAT, parser.line(), nullptr};
    const bool emptyLine = fields.size() == 1 && trim(fields[0]).empty();
    if (emptyLine) continue;
    const LxDictCheck check = checkEntry(fields, kind);
    if (check == LX_DICT_BAD_RECORD) return {LX_ERROR_DICT_FORMAT, parser.line(), nullptr};
    if (check != LX_DICT_OK) return {LX_ERROR_DICT_ENTRY, parser.line(), nullptr};
    if (substitutions->size() == kMostDictionaryEntries) return {LX_ERROR_DICT_SIZE, parser.line(), nullptr};
    if (!substitutions->add(trim(fields[0]), trim(fields[1]))) {
      return {LX_ERROR_DICT_DUPLICATE, parser.line(), nullptr};
    }
  }
  if (substitutions->size() == 0) return {LX_ERROR_DICT_EMPTY, 0, nullptr};
  return {LX_OK, 0, std::move(substitutions)};
}

}  // namespace lxapi
