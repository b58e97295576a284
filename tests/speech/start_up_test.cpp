// The module's start-up and end as the system runs them, with stand-ins for the sockets and the user's
// screen.

#include <winsock2.h>

#include <windows.h>

#include <gtest/gtest.h>

#include <string>

namespace {

bool socketsFail = false;
int socketStarts = 0;
std::wstring shown;

int startSockets(WORD, WSADATA*) {
  if (!socketsFail) ++socketStarts;
  return socketsFail ? WSASYSNOTREADY : 0;
}
int endSockets() { return --socketStarts; }
int showBox(HWND, const wchar_t* text, const wchar_t*, UINT) {
  shown = text;
  return IDOK;
}

}  // namespace

#undef MessageBoxW
#define WSAStartup startSockets
#define WSACleanup endSockets
#define MessageBoxW showBox
#include "framework/module_entry.cpp"
#include "speech/application.cpp"

namespace {

const HINSTANCE kModule = GetModuleHandleW(nullptr);

TEST(StartUp, WithoutSocketsTheLoadIsRefusedWithAMessageAndNothingIsEnded) {
  socketsFail = true;
  EXPECT_FALSE(DllMain(kModule, DLL_PROCESS_ATTACH, nullptr));
  wchar_t text[200] = L"";
  ASSERT_GT(LoadStringW(kModule, 101, text, 200), 0);
  EXPECT_EQ(shown, text);
  DllMain(kModule, DLL_PROCESS_DETACH, nullptr);  // as the system does when a load is refused
  EXPECT_EQ(socketStarts, 0);
  socketsFail = false;
}

TEST(StartUp, SocketsLastFromTheLoadToTheUnloadUnlessTheProcessEnds) {
  int endOfProcess = 0;
  EXPECT_TRUE(DllMain(kModule, DLL_PROCESS_ATTACH, nullptr));
  DllMain(kModule, DLL_PROCESS_DETACH, &endOfProcess);
  EXPECT_EQ(socketStarts, 1) << "the socket library may be gone";
  DllMain(kModule, DLL_PROCESS_DETACH, nullptr);
  EXPECT_EQ(socketStarts, 0);
}

}  // namespace
