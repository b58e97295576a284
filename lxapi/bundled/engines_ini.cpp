#include "lxapi/bundled/engines_ini.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <optional>

#include "base/ascii.h"
#include "base/utf8.h"

namespace speech::lxapi {
namespace {

// More than any list of voices needs; a file of another kind does not fill the memory.
constexpr size_t kMostEngines = 10'000;
constexpr size_t kMostComplaints = 100;
constexpr size_t kLongestValue = 200;
constexpr int32_t kLowestRateHz = 1'000;
constexpr int32_t kHighestRateHz = 768'000;

struct TextField {
  std::string_view name;
  std::wstring InstalledEngine::*member;
};

constexpr TextField kTextFields[] = {
    {"variety", &InstalledEngine::key2},      {"gender", &InstalledEngine::gender},
    {"language", &InstalledEngine::language}, {"type", &InstalledEngine::engineType},
    {"text3", &InstalledEngine::text3},       {"text4", &InstalledEngine::text4},
    {"text5", &InstalledEngine::text5},       {"text7", &InstalledEngine::text7},
};

std::string_view withoutBlanks(std::string_view text) { return trimmed(text, " \t\r\f\v"); }

std::wstring widen(std::string_view text) {
  std::wstring result;
  for (size_t position = 0; position < text.size();) {
    const CodePoint current = decodeAt(text, position);
    position += current.byteCount;
    if (sizeof(wchar_t) == 2 && current.value > 0xFFFF) {
      const char32_t offset = current.value - 0x10000;
      result.push_back(static_cast<wchar_t>(0xD800 + (offset >> 10)));
      result.push_back(static_cast<wchar_t>(0xDC00 + (offset & 0x3FF)));
    } else {
      result.push_back(static_cast<wchar_t>(current.value));
    }
  }
  return result;
}

class Parser {
 public:
  EnginesIni parse(std::string_view text) {
    if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
    while (!text.empty()) {
      const size_t end = std::min(text.find('\n'), text.size());
      ++line_;
      parseLine(withoutBlanks(text.substr(0, end)));
      text.remove_prefix(std::min(end + 1, text.size()));
    }
    endSection();
    return std::move(result_);
  }

 private:
  void parseLine(std::string_view line) {
    if (line.empty() || line.front() == ';' || line.front() == '#') return;
    if (line.size() > kLongestValue * 2 || !isValidUtf8(line))
      return reject("not a line of UTF-8 text of usual length");
    if (line.front() == '[') return beginSection(line);
    if (!section_) {
      if (!isSkipping_) complain("a setting outside of any section");
      return;
    }
    const size_t equals = line.find('=');
    if (equals == std::string_view::npos) return reject(R"(neither "name = value" nor "[voice]")");
    set(lowerAscii(withoutBlanks(line.substr(0, equals))), withoutBlanks(line.substr(equals + 1)));
  }

  void beginSection(std::string_view line) {
    endSection();
    isSkipping_ = true;
    const std::string_view name =
        line.back() == ']' ? withoutBlanks(line.substr(1, line.size() - 2)) : std::string_view();
    if (name.empty() || name.size() > kLongestValue)
      return complain("a section needs a name between brackets");
    if (result_.engines.size() >= kMostEngines) return complain("too many engines");
    section_.emplace();
    section_->key1 = widen(name);
    section_->sampleRateHz = 22'050;
    sectionLine_ = line_;
  }

  void set(const std::string& name, std::string_view value) {
    if (value.size() > kLongestValue) return reject("the value is too long");
    if (name == "rate") {
      int32_t rate = 0;
      const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), rate);
      if (error != std::errc() || end != value.data() + value.size() || rate < kLowestRateHz ||
          rate > kHighestRateHz) {
        return reject("the rate is not a usual number of Hz");
      }
      section_->sampleRateHz = rate;
      return;
    }
    const auto* const field =
        std::find_if(std::begin(kTextFields), std::end(kTextFields),
                     [&name](const TextField& candidate) { return candidate.name == name; });
    // A later version may know more settings.
    if (field == std::end(kTextFields)) return complain("unknown setting \"" + name + "\"");
    (*section_).*(field->member) = widen(name == "language" ? formatLanguageCode(value) : std::string(value));
  }

  void endSection() {
    isSkipping_ = false;
    if (!section_) return;
    InstalledEngine engine = *std::move(section_);
    section_.reset();
    const size_t line = sectionLine_;
    const auto& gender = engine.gender;
    if (engine.language.empty()) return complain("the engine has no language", line);
    if (engine.engineType.empty()) return complain("the engine has no type", line);
    if (!gender.empty() && gender != L"F" && gender != L"M")
      return complain("the gender is neither F nor M", line);
    if (engine.key2.empty()) engine.key2 = L"Standard";
    result_.engines.push_back(std::move(engine));
  }

  /// Gives up the section under way.
  void reject(std::string_view reason) {
    complain(reason);
    isSkipping_ = section_.has_value() || isSkipping_;
    section_.reset();
  }

  void complain(std::string_view reason) { complain(reason, line_); }

  void complain(std::string_view reason, size_t line) {
    if (result_.complaints.size() >= kMostComplaints) return;
    result_.complaints.push_back("engines.ini, line " + std::to_string(line) + ": " + std::string(reason));
  }

  EnginesIni result_;
  std::optional<InstalledEngine> section_;
  bool isSkipping_ = false;
  size_t line_ = 0;
  size_t sectionLine_ = 0;
};

}  // namespace

EnginesIni parseEnginesIni(std::string_view text) { return Parser().parse(text); }

std::string formatLanguageCode(std::string_view tag) {
  std::string result;
  bool isPrivateUse = false;
  for (size_t begin = 0; begin <= tag.size();) {
    const size_t end = std::min(tag.find_first_of("-_", begin), tag.size());
    const std::string_view part = tag.substr(begin, end - begin);
    const bool isAlphabetic = std::all_of(part.begin(), part.end(), isAsciiLetter);
    const bool isFirst = begin == 0;
    const bool isSubtag = !isFirst && !isPrivateUse && isAlphabetic;
    const bool isRegion = isSubtag && part.size() == 2;
    const bool isScript = isSubtag && part.size() == 4;
    if (!isFirst) result.push_back('-');
    const size_t written = result.size();
    std::transform(part.begin(), part.end(), std::back_inserter(result),
                   isRegion ? toUpperAscii : toLowerAscii);
    if (isScript) result[written] = toUpperAscii(result[written]);
    if (part.size() == 1) isPrivateUse = true;
    begin = end + 1;
  }
  return result;
}

}  // namespace speech::lxapi
