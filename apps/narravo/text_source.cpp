#include "apps/narravo/text_source.h"

#include <fstream>
#include <iterator>

#include "apps/narravo/commands.h"
#include "apps/narravo/console.h"
#include "win32/text.h"

namespace narravo {
namespace {

std::string readFile(const std::string& name) {
  std::ifstream file(pathOf(name), std::ios::binary);
  if (!file) throw HostError(kExitFile, "cannot open " + name);
  std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  if (file.bad()) throw HostError(kExitFile, "cannot read " + name);
  return bytes;
}

std::string join(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) {
    if (!text.empty()) text += ' ';
    text += word;
  }
  return text;
}

}  // namespace

void addTextArguments(CLI::App& command, TextSource& source) {
  CLI::Option* const text = command.add_option("TEXT", source.words, "The text; - reads standard input");
  CLI::Option* const file = command.add_option("-f,--file", source.file, "Read the text from a UTF-8 file");
  text->excludes(file);
  file->excludes(text);
}

std::wstring decodeText(std::string_view bytes, const std::string& name) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (bytes.starts_with(kByteOrderMark)) bytes.remove_prefix(kByteOrderMark.size());
  // The library takes zero-terminated text: what follows a zero would be lost silently.
  if (bytes.find('\0') != bytes.npos)
    throw HostError(kExitFile, name + " is not UTF-8 text: it holds a zero byte");
  std::optional<std::wstring> text = speech::fromWellFormedUtf8(bytes);
  if (!text) throw HostError(kExitFile, name + " is not UTF-8 text");
  if (text->find_first_not_of(L" \t\r\n") == text->npos) throw HostError(kExitFile, name + " holds no text");
  return *std::move(text);
}

std::wstring readText(const TextSource& source) {
  if (!source.file.empty()) return decodeText(readFile(source.file), source.file);
  if (source.words.empty())
    throw HostError(kExitUsage, "no text given: pass TEXT, -f FILE or - for standard input");
  if (source.words.size() == 1 && source.words.front() == "-")
    return decodeText(readInput(), "standard input");
  return decodeText(join(source.words), "the given text");
}

}  // namespace narravo
