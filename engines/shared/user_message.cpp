#include "engines/shared/user_message.h"

#include <windows.h>

namespace speech {
namespace {

void modalBox(const wchar_t* text) {
  MessageBoxW(nullptr, text, L"speech", MB_OK | MB_ICONEXCLAMATION | MB_TASKMODAL);
}

UserMessageBox g_box = modalBox;

}  // namespace

void showUserMessage(const wchar_t* text) { g_box(text); }

void setUserMessageBox(UserMessageBox box) { g_box = box != nullptr ? box : modalBox; }

}  // namespace speech
