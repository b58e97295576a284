// The modal boxes that a user meets when a dictionary cannot be loaded, on a real desktop.

#include <string>
#include <vector>

#include "tests/engines/local/local_engine_test.h"
#include "tests/support/own_desktop.h"

namespace speech::test {
namespace {

using ::testing::ElementsAre;

class DesktopOfTheProgram : public ::testing::Environment {
  OwnDesktop desktop_;
};
const auto* const kDesktop = ::testing::AddGlobalTestEnvironment(new DesktopOfTheProgram);

using DictionaryMessage = LocalEngineTest;

/// Reads every message box of this thread as it comes up, and presses OK.
class UserAtTheDesk {
 public:
  UserAtTheDesk() : timer_(SetTimer(nullptr, 0, kLookEveryMs, lookAround)) { texts().clear(); }
  UserAtTheDesk(const UserAtTheDesk&) = delete;
  UserAtTheDesk& operator=(const UserAtTheDesk&) = delete;
  ~UserAtTheDesk() { KillTimer(nullptr, timer_); }

  static std::vector<std::wstring>& texts() {
    static std::vector<std::wstring> texts;
    return texts;
  }

 private:
  static constexpr UINT kLookEveryMs = 20;

  static bool hasClass(HWND window, const wchar_t* wanted) {
    wchar_t name[16] = L"";
    GetClassNameW(window, name, ARRAYSIZE(name));
    return std::wstring(name) == wanted;
  }

  static BOOL CALLBACK noteText(HWND control, LPARAM) {
    wchar_t text[1024] = L"";
    GetWindowTextW(control, text, ARRAYSIZE(text));
    if (hasClass(control, L"Static") && text[0] != 0) texts().push_back(text);
    return TRUE;
  }

  static BOOL CALLBACK lookAt(HWND window, LPARAM) {
    if (!hasClass(window, L"#32770") || !IsWindowVisible(window)) return TRUE;
    EnumChildWindows(window, noteText, 0);
    PostMessageW(window, WM_COMMAND, IDOK, 0);
    return FALSE;
  }

  /// Runs in the box's own message loop, so the box is complete.
  static void CALLBACK lookAround(HWND, UINT, UINT_PTR, DWORD) {
    EnumThreadWindows(GetCurrentThreadId(), lookAt, 0);
  }

  UINT_PTR timer_;
};

TEST_F(DictionaryMessage, WhatIsRefusedIsShown) {
  const UserAtTheDesk user;
  recording().answer("LXAPI_SetLexiconHandle", -3);
  EXPECT_EQ(engine_->loadUserDict("words.lex"), 65535);
  recording().answer("LXAPI_SetLexiconHandle", 0);
  recording().answer("LXAPI_SetAttr", -7);
  EXPECT_EQ(engine_->loadUserDict("words.lex"), 65535);
  EXPECT_THAT(user.texts(),
              ElementsAre(L"User dictionary load failed.\nFile name : words.lex\nError code : -1 -1",
                          L"LXAPI_SetAttr failed."));
}

}  // namespace
}  // namespace speech::test
