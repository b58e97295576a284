// speech/c/speaking.h: speaking, waiting for the end of it, and preparing text for SSML.

#include "engines/engine.h"
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

/// Dispatches the messages that wait, but not all that are posted meanwhile: a busy window may never stop.
/// Fails when the program is to quit.
void dispatchPending() {
  const DWORD begin = GetTickCount();
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    if (message.message == WM_QUIT) {
      PostQuitMessage(static_cast<int>(message.wParam));  // for the program's own loop
      throw Failure(SPEECH_ERROR_QUIT);
    }
    TranslateMessage(&message);
    DispatchMessageW(&message);
    const bool isLater = static_cast<LONG>(message.time - begin) > 0;
    if (isLater) return;
  }
}

/// How long to wait for the next message. Fails when the time is over.
DWORD remaining(std::int32_t timeoutMs, ULONGLONG start) {
  if (timeoutMs < 0) return INFINITE;
  const ULONGLONG passed = GetTickCount64() - start;
  if (passed >= static_cast<ULONGLONG>(timeoutMs)) throw Failure(SPEECH_ERROR_TIMEOUT);
  return static_cast<DWORD>(static_cast<ULONGLONG>(timeoutMs) - passed);
}

template <class Char>
std::int32_t escapeXml(const Char* text, Char* buffer, std::uint32_t capacity, std::uint32_t* length) {
  return outcomeOf(
             [&] { handOut(viewOf(Engine::escapedXml(textOf(text).c_str())), buffer, capacity, length); })
      .error;
}

}  // namespace
}  // namespace speech::c_interface

using namespace speech::c_interface;

std::int32_t SPEECH_CALL speech_speak(SpeechEngine engine, const char* text, std::uint32_t flags) {
  return speak(engine, text, flags);
}

std::int32_t SPEECH_CALL speech_speak_w(SpeechEngine engine, const wchar_t* text, std::uint32_t flags) {
  return speak(engine, text, flags);
}

std::int32_t SPEECH_CALL speech_pause(SpeechEngine engine) {
  return answeredBy(engine, [](OpenEngine& open) { open.pause(); });
}

std::int32_t SPEECH_CALL speech_resume(SpeechEngine engine) {
  return answeredBy(engine, [](OpenEngine& open) { open.resume(); });
}

std::int32_t SPEECH_CALL speech_stop(SpeechEngine engine) {
  return answeredBy(engine, [](OpenEngine& open) { open.stop(); });
}

std::int32_t SPEECH_CALL speech_state(SpeechEngine engine, std::int32_t* state) {
  return answered([&] {
    required(state);
    *state = engineOf(engine)->state();
  });
}

std::int32_t SPEECH_CALL speech_wait(SpeechEngine engine, std::int32_t timeout_ms) {
  return answeredWhenFree([&] {
    const ULONGLONG start = GetTickCount64();
    engineOf(engine);
    for (;;) {
      dispatchPending();
      if (engineOf(engine)->deliverDue()) return;
      MsgWaitForMultipleObjectsEx(0, nullptr, remaining(timeout_ms, start), QS_ALLINPUT, MWMO_INPUTAVAILABLE);
    }
  });
}

std::int32_t SPEECH_CALL speech_escape_xml(const char* text, char* buffer, std::uint32_t capacity,
                                           std::uint32_t* length) {
  return escapeXml(text, buffer, capacity, length);
}

std::int32_t SPEECH_CALL speech_escape_xml_w(const wchar_t* text, wchar_t* buffer, std::uint32_t capacity,
                                             std::uint32_t* length) {
  return escapeXml(text, buffer, capacity, length);
}
