#include "engines/shared/process_runner.h"

#include <windows.h>

#include <shellapi.h>

#include <optional>

#include "win32/unique_handle.h"

namespace speech {
namespace {

/// Dispatches what waits in the thread's queue. A request to quit is handed back: it is for the host's own
/// loop.
std::optional<WPARAM> dispatchPendingMessages() {
  std::optional<WPARAM> quit;
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    if (message.message == WM_QUIT) {
      quit = message.wParam;
      continue;
    }
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  return quit;
}

void waitPumpingMessages(HANDLE process) {
  constexpr DWORD kMessageArrived = WAIT_OBJECT_0 + 1;
  std::optional<WPARAM> quit;
  DWORD answer = kMessageArrived;
  while (answer == kMessageArrived) {
    if (const auto asked = dispatchPendingMessages()) quit = asked;
    answer = MsgWaitForMultipleObjectsEx(1, &process, INFINITE, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
  }
  if (quit) PostQuitMessage(static_cast<int>(*quit));
}

}  // namespace

bool runProgram(const wchar_t* file, const wchar_t* parameters) {
  SHELLEXECUTEINFOW request{};
  request.cbSize = sizeof request;
  request.fMask = SEE_MASK_NOCLOSEPROCESS | SEE_MASK_NOASYNC;
  request.lpVerb = L"open";
  request.lpFile = file;
  request.lpParameters = parameters;
  request.nShow = SW_HIDE;
  const bool started = ShellExecuteExW(&request) != FALSE;
  const UniqueHandle process(request.hProcess);
  if (process) {
    waitPumpingMessages(process.get());
    TerminateProcess(process.get(), 0xFFFFFFFF);
  }
  return started;
}

}  // namespace speech
