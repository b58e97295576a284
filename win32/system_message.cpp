#include "win32/system_message.h"

#include <windows.h>

#include <array>

namespace speech {

std::wstring systemMessage(unsigned long error) {
  constexpr DWORD kFlags = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
  std::array<wchar_t, 512> text{};
  const DWORD length =
      FormatMessageW(kFlags, nullptr, error, 0, text.data(), static_cast<DWORD>(text.size()), nullptr);
  std::wstring message(text.data(), length);
  message.resize(message.find_last_not_of(L" \r\n") + 1);
  return message.empty() ? std::to_wstring(error) : message;
}

}  // namespace speech
