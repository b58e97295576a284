// Stands in for sox.exe: it appends a line to the file that FAKE_SOX_LOG names, "hidden " or "shown " and its
// command line, and then does what FAKE_SOX_MODE asks for: "fail", "crash", or write a file to its last
// argument.

#include <windows.h>

#include <cstdlib>
#include <fstream>
#include <string>

namespace {

std::wstring environmentText(const wchar_t* name) {
  wchar_t value[1024] = L"";
  GetEnvironmentVariableW(name, value, ARRAYSIZE(value));
  return value;
}

std::string utf8(const wchar_t* text) {
  char buffer[4096] = "";
  WideCharToMultiByte(CP_UTF8, 0, text, -1, buffer, sizeof buffer, nullptr, nullptr);
  return buffer;
}

}  // namespace

int wmain(int argumentCount, wchar_t** arguments) {
  std::ofstream log(environmentText(L"FAKE_SOX_LOG").c_str(), std::ios::binary | std::ios::app);
  STARTUPINFOW start{};
  GetStartupInfoW(&start);
  const bool isHidden = (start.dwFlags & STARTF_USESHOWWINDOW) != 0 && start.wShowWindow == SW_HIDE;
  log << (isHidden ? "hidden " : "shown ") << utf8(GetCommandLineW()) << '\n';
  log.close();
  const std::wstring mode = environmentText(L"FAKE_SOX_MODE");
  if (mode == L"fail") return 2;
  if (mode == L"crash") std::abort();
  if (argumentCount > 1) {
    const HANDLE output =
        CreateFileW(arguments[argumentCount - 1], GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    if (output != INVALID_HANDLE_VALUE) CloseHandle(output);
  }
  return 0;
}
