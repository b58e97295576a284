#include "speech/c_interface/session.h"

#include "speech/c_interface/open_engine.h"
#include "speech/facade.h"

namespace speech::c_interface {

Session& session() {
  // Never destroyed: when a process ends without speech_release, its windows and threads are gone before
  // this would be.
  static Session& theSession = *new Session;
  return theSession;
}

LXAPIProductList& voices() {
  LXAPIProductList* const list = ITextToSpeech::getLXAPIProductList();
  if (list == nullptr) throw Failure(SPEECH_ERROR_MEMORY);
  return *list;
}

LXAPIProduct& voiceAt(std::int32_t index) {
  LXAPIProductList& list = voices();
  const POSITION at = list.FindIndex(index);
  if (at == nullptr) throw Failure(SPEECH_ERROR_VOICE);
  return *list.GetAt(at);
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

void closeEngine() {
  const std::shared_ptr<OpenEngine> engine = std::exchange(session().engine, nullptr);
  if (engine != nullptr) engine->close();
}

void requireNoForeignEngine() {
  const std::uint32_t live = currentInstanceNumber();
  if (live != 0 && live != session().ownInstance) throw Failure(SPEECH_ERROR_ENGINE_OPEN);
}

void requireThread() {
  DWORD& owner = session().thread;
  const DWORD caller = GetCurrentThreadId();
  if (owner == 0) owner = caller;
  if (owner != caller) throw Failure(SPEECH_ERROR_WRONG_THREAD);
}

}  // namespace speech::c_interface
