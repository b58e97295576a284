#include "win32/run_program.h"

#include <windows.h>

#include <shellapi.h>

#include <optional>

#include "win32/unique_handle.h"

namespace speech {
namespace {

/// Dispatches the next message of the thread's queue, if there is one. A request to quit is returned instead:
/// it is for the host's own loop.
std::optional<WPARAM> dispatchNextMessage() {
  MSG message;
  if (!PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) return std::nullopt;
  if (message.message == WM_QUIT) return message.wParam;
  TranslateMessage(&message);
  DispatchMessageW(&message);
  return std::nullopt;
}

void waitPumpingMessages(HANDLE process) {
  constexpr DWORD kMessageArrived = WAIT_OBJECT_0 + 1;
  std::optional<WPARAM> quit;
  // The process is looked at after every message, and comes first in the wait: the queue of a busy window may
  // never be empty.
  do {
    if (const auto requested = dispatchNextMessage()) quit = requested;
  } while (MsgWaitForMultipleObjectsEx(1, &process, INFINITE, QS_ALLINPUT, MWMO_INPUTAVAILABLE) ==
           kMessageArrived);
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
