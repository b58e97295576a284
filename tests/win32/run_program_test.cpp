#include "win32/run_program.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <cstdint>
#include <string>

#include "tests/support/file_content.h"
#include "tests/support/process_figures.h"
#include "tests/support/scoped_environment.h"
#include "tests/support/temporary_folder.h"

namespace speech {
namespace {

bool dispatched = false;
void CALLBACK noteDispatch(HWND, UINT, UINT_PTR, DWORD) { dispatched = true; }

/// What this thread has used of the processor, in milliseconds.
std::uint64_t processorMilliseconds() {
  FILETIME created, ended, kernel, user;
  GetThreadTimes(GetCurrentThread(), &created, &ended, &kernel, &user);
  constexpr std::uint64_t kUnitsPerMillisecond = 10'000;
  return (std::uint64_t{kernel.dwLowDateTime} + user.dwLowDateTime) / kUnitsPerMillisecond;
}

TEST(RunProgram, WaitsForTheProgramToEndAndAnswersMessagesMeanwhile) {
  const test::TemporaryFolder folder;
  const std::wstring done = (folder / "done").wstring();
  const auto timer = SetTimer(nullptr, 0, 10, noteDispatch);
  ASSERT_NE(timer, 0u);
  const std::uint64_t before = processorMilliseconds();
  EXPECT_TRUE(runProgram(L"cmd.exe", (L"/c ping -n 2 127.0.0.1 >nul & echo x>" + done).c_str()));
  EXPECT_LT(processorMilliseconds() - before, 100u) << "of the second that the program takes";
  KillTimer(nullptr, timer);
  EXPECT_TRUE(std::filesystem::exists(done));
  EXPECT_TRUE(dispatched);
}

ULONGLONG timeToGiveUp = 0;
bool gaveUp = false;

/// A window procedure that posts a message for every one that it gets, until the runner is held to hang.
LRESULT CALLBACK postNext(HWND window, UINT message, WPARAM, LPARAM) {
  gaveUp = GetTickCount64() > timeToGiveUp;
  if (!gaveUp) PostMessageW(window, message, 0, 0);
  return 0;
}

TEST(RunProgram, ReturnsThoughTheQueueNeverEmpties) {
  const HWND window =
      CreateWindowExW(0, L"Static", nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
  ASSERT_NE(window, nullptr);
  SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(postNext));
  timeToGiveUp = GetTickCount64() + 20'000;
  PostMessageW(window, WM_APP, 0, 0);
  EXPECT_TRUE(runProgram(L"cmd.exe", L"/c exit 0"));
  EXPECT_FALSE(gaveUp) << "returns only when no message is left";
  DestroyWindow(window);
}

TEST(RunProgram, LeavesARequestToQuitToTheHost) {
  PostQuitMessage(7);
  EXPECT_TRUE(runProgram(L"cmd.exe", L"/c exit 0"));
  MSG message;
  ASSERT_TRUE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE));
  EXPECT_EQ(message.message, static_cast<UINT>(WM_QUIT));
  EXPECT_EQ(message.wParam, 7u);
}

TEST(RunProgram, HidesTheProgramAndKeepsNoHandleOfIt) {
  const test::TemporaryFolder folder;
  const test::ScopedEnvironment log(L"FAKE_SOX_LOG", (folder / "calls").wstring());
  wchar_t own[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, own, MAX_PATH);
  const std::wstring program = std::filesystem::path(own).replace_filename("fake_sox.exe");
  EXPECT_TRUE(runProgram(program.c_str(), L""));
  EXPECT_EQ(test::readFile(folder / "calls").substr(0, 7), "hidden ");
  const int before = test::openHandleCount();
  for (int i = 0; i < 10; ++i) EXPECT_TRUE(runProgram(program.c_str(), L""));
  EXPECT_LT(test::openHandleCount(), before + 10);
}

TEST(RunProgram, LooksNeitherAtTheExitCodeNorTakesOneForStillRunning) {
  EXPECT_TRUE(runProgram(L"cmd.exe", L"/c exit 259"));
  EXPECT_TRUE(runProgram(L"cmd.exe", L"/c exit 1"));
}

TEST(RunProgram, ReportsAProgramThatCannotBeStarted) {
  EXPECT_FALSE(runProgram(L"C:\\no\\such\\program.exe", L""));
}

}  // namespace
}  // namespace speech
