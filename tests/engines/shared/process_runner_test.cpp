#include "engines/shared/process_runner.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <string>

#include "tests/support/file_content.h"
#include "tests/support/temporary_folder.h"

namespace speech {
namespace {

bool dispatched = false;
void CALLBACK noteDispatch(HWND, UINT, UINT_PTR, DWORD) { dispatched = true; }

TEST(ProcessRunner, WaitsForTheProgramToEndAndAnswersMessagesMeanwhile) {
  const test::TemporaryFolder folder;
  const std::wstring done = (folder / "done").wstring();
  const auto timer = SetTimer(nullptr, 0, 10, noteDispatch);
  ASSERT_NE(timer, 0u);
  EXPECT_TRUE(runProgram(L"cmd.exe", (L"/c ping -n 2 127.0.0.1 >nul & echo x>" + done).c_str()));
  KillTimer(nullptr, timer);
  EXPECT_TRUE(std::filesystem::exists(done));
  EXPECT_TRUE(dispatched);
}

TEST(ProcessRunner, LeavesARequestToQuitToTheHost) {
  PostQuitMessage(7);
  EXPECT_TRUE(runProgram(L"cmd.exe", L"/c exit 0"));
  MSG message;
  ASSERT_TRUE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE));
  EXPECT_EQ(message.message, static_cast<UINT>(WM_QUIT));
  EXPECT_EQ(message.wParam, 7u);
}

TEST(ProcessRunner, LooksNeitherAtTheExitCodeNorTakesOneForStillRunning) {
  EXPECT_TRUE(runProgram(L"cmd.exe", L"/c exit 259"));
  EXPECT_TRUE(runProgram(L"cmd.exe", L"/c exit 1"));
}

TEST(ProcessRunner, ReportsAProgramThatCannotBeStarted) {
  EXPECT_FALSE(runProgram(L"C:\\no\\such\\program.exe", L""));
}

}  // namespace
}  // namespace speech
