#include "apps/narravo/user_dictionary.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <unordered_map>

#include "apps/narravo/commands.h"
#include "lxapi/lxapi.h"

namespace narravo {
namespace {

std::string readDictionary(ITextToSpeech& engine, const std::string& name) {
  const std::filesystem::path path = pathOf(name);
  std::error_code error;
  const auto size = std::filesystem::file_size(path, error);
  const int limit = engine.getUserDictLimit(LX_DICT_LIMIT_BYTES);
  if (!error && limit > 0 && size > static_cast<std::uintmax_t>(limit)) {
    throw HostError(kExitFile,
                    name + " is larger than a dictionary may be, " + std::to_string(limit) + " bytes");
  }
  std::ifstream file(path, std::ios::binary);
  if (error || !file) throw HostError(kExitFile, "cannot read " + name);
  std::string text{std::istreambuf_iterator<char>(file), {}};
  if (text.find('\0') != std::string::npos)
    throw HostError(kExitFile, name + " is not text: it holds zero bytes");
  return text;
}

const char* reasonOf(int check) {
  switch (check) {
    case LX_DICT_EMPTY:
      return "is empty";
    case LX_DICT_TOO_LONG:
      return "is too long";
    case LX_DICT_BAD_TEXT:
      return "is not UTF-8";
    case LX_DICT_CONTROL:
      return "holds control characters";
    case LX_DICT_NO_WORD:
      return "holds no letter and no digit";
    default:
      return "is refused by the engine";
  }
}

/// Walks the records of a word list with the engine's own parser.
class DictionaryCheck {
 public:
  explicit DictionaryCheck(ITextToSpeech& engine) : engine_(engine), parser_(engine.csvParserInit()) {}

  DictionaryReport run(const std::string& text, const std::string& name) {
    for (int line = parse(text.c_str()); line != 0; line = parse(nullptr)) {
      if (line == LX_ERROR_BAD_TEXT) throw HostError(kExitFile, name + " is not UTF-8 text");
      if (line > 0) {
        nextLine_ = line;
        checkEntry();
      } else if (line == LX_ERROR_DICT_FORMAT) {
        reportMalformed();
      } else {
        throw HostError(kExitEngineFailed, "this voice's engine does not check dictionaries");
      }
      nextLine_ += 1 + lineEndsInRecord();
    }
    return std::move(report_);
  }

 private:
  int parse(const char* text) { return engine_.csvParserParsing(parser_, reinterpret_cast<intptr_t>(text)); }
  int fieldCount() { return engine_.csvParserGetNfields(parser_); }
  std::string field(int index) { return engine_.csvParserGetField(parser_, index); }

  void report(const std::string& reason) { report_.badEntries.push_back({nextLine_, reason}); }

  void reportMalformed() {
    const bool isEmptyLine = fieldCount() == 1 && field(0).find_first_not_of(" \t") == std::string::npos;
    if (!isEmptyLine) report("expected two fields; missing comma or unclosed quote");
  }

  void checkEntry() {
    const std::string source = field(0);
    const std::string target = field(1);
    const auto address = [](const std::string& text) { return reinterpret_cast<intptr_t>(text.c_str()); };
    int check = engine_.checkUserDictSourceLen(address(source));
    if (check == LX_DICT_OK) check = engine_.checkUserDictSourceNorm(address(source));
    if (check != LX_DICT_OK) return report(std::string("the word ") + reasonOf(check));
    check = engine_.checkUserDictTargetNorm(address(target));
    if (check != LX_DICT_OK) return report(std::string("the replacement ") + reasonOf(check));
    const auto [earlier, isNew] = lines_.try_emplace(source, nextLine_);
    if (!isNew) return report("the word is already in line " + std::to_string(earlier->second));
    ++report_.goodEntries;
  }

  /// The engine gives the line of a good record only, so the lines of the others are counted from there.
  long lineEndsInRecord() {
    long count = 0;
    for (int i = 0; i < fieldCount(); ++i) {
      const std::string text = field(i);
      count += static_cast<long>(std::count(text.begin(), text.end(), '\n'));
    }
    return count;
  }

  ITextToSpeech& engine_;
  intptr_t parser_;
  long nextLine_ = 1;
  std::unordered_map<std::string, long> lines_;
  DictionaryReport report_;
};

}  // namespace

DictionaryReport checkUserDictionary(ITextToSpeech& engine, const std::string& name) {
  const std::string text = readDictionary(engine, name);
  return DictionaryCheck(engine).run(text, name);
}

void loadUserDictionary(ITextToSpeech& engine, const std::string& name) {
  // Checked first, because the library shows a message box for a bad one.
  const DictionaryReport report = checkUserDictionary(engine, name);
  if (!report.badEntries.empty()) {
    const BadEntry& first = report.badEntries.front();
    throw HostError(kExitFile, name + ", line " + std::to_string(first.line) + ": " + first.reason);
  }
  if (report.goodEntries == 0) throw HostError(kExitFile, name + " holds no entry");
  if (const int code = engine.loadUserDict(narrowPathOf(pathOf(name), name).c_str()); code != 0) {
    throw HostError(kExitFile,
                    name + " is not a usable dictionary, code " + std::to_string(static_cast<short>(code)));
  }
}

}  // namespace narravo
