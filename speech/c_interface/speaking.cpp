// Speaking, and waiting for it to end.

#include <algorithm>

#include "speech/c_interface/open_engine.h"
#include "speech/c_interface/session.h"
#include "speech/c_interface/text.h"

namespace speech::c_interface {
namespace {

template <class Char>
std::int32_t speak(SpeechEngine handle, const Char* text, std::uint32_t flags) {
  return answeredBy(handle, [&](OpenEngine& engine) {
    constexpr std::uint32_t kKnown = SPEECH_FLAG_SSML | SPEECH_FLAG_INTERRUPT;
    if ((flags & ~kKnown) != 0) throw Failure(SPEECH_ERROR_ARGUMENT);
    std::wstring wide = textOf(text);
    if ((flags & SPEECH_FLAG_INTERRUPT) != 0 && engine.state() != SPEECH_STATE_IDLE) engine.stop();
    engine.requireIdle();
    engine.speak(std::move(wide), (flags & SPEECH_FLAG_SSML) != 0);
  });
}

/// Dispatches what waits. Fails when the program is to quit.
void dispatchPending() {
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    if (message.message == WM_QUIT) {
      PostQuitMessage(static_cast<int>(message.wParam));  // it is the program's own loop that must see it
      throw Failure(SPEECH_ERROR_QUIT);
    }
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

/// How long to wait for the next message; fails when the time is over.
DWORD remaining(std::int32_t timeoutMs, ULONGLONG start) {
  if (timeoutMs < 0) return INFINITE;
  const ULONGLONG passed = GetTickCount64() - start;
  if (passed >= static_cast<ULONGLONG>(timeoutMs)) throw Failure(SPEECH_ERROR_TIMEOUT);
  return static_cast<DWORD>(static_cast<ULONGLONG>(timeoutMs) - passed);
}

}  // namespace
}  // namespace speech::c_interface

using namespace speech::c_interface;

int32_t SPEECH_CALL speech_speak(SpeechEngine engine, const char* text, uint32_t flags) {
  return speak(engine, text, flags);
}

int32_t SPEECH_CALL speech_speak_w(SpeechEngine engine, const wchar_t* text, uint32_t flags) {
  return speak(engine, text, flags);
}

int32_t SPEECH_CALL speech_pause(SpeechEngine engine) {
  return answeredBy(engine, [](OpenEngine& open) { open.pause(); });
}

int32_t SPEECH_CALL speech_resume(SpeechEngine engine) {
  return answeredBy(engine, [](OpenEngine& open) { open.resume(); });
}

int32_t SPEECH_CALL speech_stop(SpeechEngine engine) {
  return answeredBy(engine, [](OpenEngine& open) { open.stop(); });
}

int32_t SPEECH_CALL speech_state(SpeechEngine engine, int32_t* state) {
  return answered([&] {
    required(state);
    *state = engineOf(engine)->state();
  });
}

int32_t SPEECH_CALL speech_wait(SpeechEngine engine, int32_t timeout_ms) {
  return answeredWhenFree([&] {
    const ULONGLONG start = GetTickCount64();
    engineOf(engine);
    for (;;) {
      dispatchPending();
      if (engineOf(engine)->state() == SPEECH_STATE_IDLE) return;
      MsgWaitForMultipleObjectsEx(0, nullptr, remaining(timeout_ms, start), QS_ALLINPUT, MWMO_INPUTAVAILABLE);
    }
  });
}
