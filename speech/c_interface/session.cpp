#include "speech/c_interface/session.h"

#include "engines/shared/module_state.h"
#include "speech/c_interface/open_engine.h"

namespace speech::c_interface {

Session& session() {
  // Never destroyed: when a process ends without speech_release its windows and threads go before this would.
  static Session& theSession = *new Session;
  return theSession;
}

void requireThread() {
  DWORD& owner = session().thread;
  const DWORD caller = GetCurrentThreadId();
  if (owner == 0) owner = caller;
  if (owner != caller) throw Failure(SPEECH_ERROR_WRONG_THREAD);
}

std::shared_ptr<OpenEngine> engineOf(SpeechEngine handle) {
  std::shared_ptr<OpenEngine> engine = session().engine;
  if (handle == nullptr || engine == nullptr || engine->handle() != handle)
    throw Failure(SPEECH_ERROR_HANDLE);
  if (!engine->isCurrent()) {
    engine->abandon();
    session().engine.reset();
    throw Failure(SPEECH_ERROR_HANDLE);
  }
  return engine;
}

void requireNoForeignEngine() {
  if (g_currentInstance != nullptr && g_currentInstance != session().own)
    throw Failure(SPEECH_ERROR_ENGINE_OPEN);
}

void closeEngine() {
  const std::shared_ptr<OpenEngine> engine = std::exchange(session().engine, nullptr);
  if (engine != nullptr) engine->close();
}

}  // namespace speech::c_interface

using namespace speech::c_interface;

int32_t SPEECH_CALL speech_release() {
  return answeredWhenFree([] {
    requireNoForeignEngine();
    closeEngine();
    ITextToSpeech::releaseInstance();
    session().own = nullptr;
    session().thread = 0;
  });
}
