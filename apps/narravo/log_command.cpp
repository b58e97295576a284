// narravo log: shows today's exports.

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <windows.h>

#include <shlobj.h>

#include "apps/narravo/commands.h"
#include "apps/narravo/console.h"
#include "apps/narravo/host_error.h"
#include "apps/narravo/text_encoding.h"

namespace narravo {
namespace {

std::filesystem::path todaysLog() {
  wchar_t documents[MAX_PATH] = L"";
  if (FAILED(SHGetFolderPathW(nullptr, CSIDL_PERSONAL, nullptr, SHGFP_TYPE_CURRENT, documents))) {
    throw HostError(kExitFile, "the documents folder is unknown");
  }
  SYSTEMTIME today;
  GetLocalTime(&today);
  wchar_t name[32];
  swprintf(name, std::size(name), L"%04d-%02d-%02d.log", today.wYear, today.wMonth, today.wDay);
  return std::filesystem::path(documents) / L"Narravo" / L"log" / name;
}

/// The library logs in the system's code page.
std::wstring fromCodePage(const std::string& text) {
  const int size = static_cast<int>(text.size());
  std::wstring wide(text.size(), L'\0');
  wide.resize(static_cast<std::size_t>(
      MultiByteToWideChar(CP_THREAD_ACP, 0, text.data(), size, wide.data(), static_cast<int>(wide.size()))));
  return wide;
}

void showLog() {
  const std::filesystem::path path = todaysLog();
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    writeErrorLine("nothing has been exported today");
    return;
  }
  writeOutput(fromCodePage({std::istreambuf_iterator<char>(file), {}}));
}

}  // namespace

void addLogCommand(CLI::App& program) {
  program.add_subcommand("log", "Show today's log of exports")->callback([] { showLog(); });
}

}  // namespace narravo
