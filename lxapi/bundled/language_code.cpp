#include "lxapi/bundled/language_code.h"

#include <algorithm>

namespace lxapi {
namespace {

char toLower(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}
char toUpper(char letter) {
  return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

bool isAlphabetic(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char letter) { return toLower(letter) >= 'a' && toLower(letter) <= 'z'; });
}

}  // namespace

std::string formatLanguageCode(std::string_view tag) {
  std::string result;
  bool privateUse = false;
  for (size_t begin = 0; begin <= tag.size();) {
    const size_t end = std::min(tag.find_first_of("-_", begin), tag.size());
    const std::string_view part = tag.substr(begin, end - begin);
    const bool first = begin == 0;
    const bool region = !first && !privateUse && part.size() == 2 && isAlphabetic(part);
    const bool script = !first && !privateUse && part.size() == 4 && isAlphabetic(part);
    if (!first) result.push_back('-');
    const size_t written = result.size();
    std::transform(part.begin(), part.end(), std::back_inserter(result), region ? toUpper : toLower);
    if (script) result[written] = toUpper(result[written]);
    if (part.size() == 1) privateUse = true;
    begin = end + 1;
  }
  return result;
}

}  // namespace lxapi
