// narravo log: shows today's exports.

#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>

#include <windows.h>

#include <CLI/CLI.hpp>

#include "apps/narravo/commands.h"
#include "apps/narravo/console.h"
#include "win32/paths.h"
#include "win32/text.h"

namespace narravo {
namespace {

std::filesystem::path todaysLog() {
  const std::optional<std::wstring> documents = speech::documentsFolder();
  if (!documents) throw HostError(kExitFile, "the documents folder is unknown");
  SYSTEMTIME today;
  GetLocalTime(&today);
  std::array<wchar_t, 32> name{};
  swprintf(name.data(), name.size(), L"%04d-%02d-%02d.log", today.wYear, today.wMonth, today.wDay);
  return std::filesystem::path(*documents) / L"Narravo" / L"log" / name.data();
}

void showLog() {
  std::ifstream file(todaysLog(), std::ios::binary);
  if (!file) {
    writeErrorLine("nothing has been exported today");
    return;
  }
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  writeOutput(speech::fromSystemCodePage(text));
}

}  // namespace

void addLogCommand(CLI::App& program) {
  program.add_subcommand("log", "Show today's log of exports")->callback([] { showLog(); });
}

}  // namespace narravo
