#include "engines/shared/user_message.h"

#include <windows.h>

namespace speech {

void showUserMessage(const wchar_t* text) {
  MessageBoxW(nullptr, text, L"speech", MB_OK | MB_ICONEXCLAMATION | MB_TASKMODAL);
}

}  // namespace speech
