#include "apps/narravo/user_dictionary.h"

#include <filesystem>

#include <windows.h>

#include "apps/narravo/file_path.h"
#include "apps/narravo/host_error.h"

namespace narravo {
namespace {

/// The library takes the path in the system's code page. A name that the code page lacks has a short one that
/// it does not lack.
std::string narrowPath(const std::filesystem::path& path) {
  wchar_t shortPath[MAX_PATH] = L"";
  const DWORD length = GetShortPathNameW(path.c_str(), shortPath, MAX_PATH);
  const std::wstring chosen = length > 0 && length < MAX_PATH ? shortPath : path.wstring();
  char narrow[2 * MAX_PATH] = "";
  WideCharToMultiByte(CP_THREAD_ACP, 0, chosen.c_str(), -1, narrow, sizeof narrow - 1, nullptr, nullptr);
  return narrow;
}

}  // namespace

void loadUserDictionary(ITextToSpeech& engine, const std::string& name) {
  const std::filesystem::path path = pathFromUtf8(name);
  std::error_code error;
  const auto size = std::filesystem::file_size(path, error);
  if (error) throw HostError(kExitFile, "cannot read " + name);
  if (size == 0) throw HostError(kExitFile, name + " is empty");
  if (const int code = engine.loadUserDict(narrowPath(path).c_str()); code != 0) {
    throw HostError(kExitFile, name + " is not a usable dictionary (code " +
                                   std::to_string(static_cast<short>(code)) + "; try: narravo dict check " +
                                   name + ")");
  }
}

}  // namespace narravo
