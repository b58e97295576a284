// Settings of handles and engines, speaking.

#include <memory>

#include "lxapi/bundled/accepted_text.h"
#include "lxapi/bundled/guarded.h"
#include "lxapi/bundled/library.h"
#include "lxapi/lxapi.h"

using lxapi::Engine;
using lxapi::guarded;
using lxapi::Library;
using lxapi::Speech;
using lxapi::Synthesis;

namespace {

/// Runs `body` on what the handle stands for, under its mutex.
template <typename Body>
int32_t withSynthesis(uint32_t tts, const Body& body) {
  return guarded([&]() -> int32_t {
    Library& library = Library::instance();
    const std::shared_ptr<Synthesis> synthesis = library.synthesis(tts);
    if (!synthesis) return library.handleError();
    const std::lock_guard guard(synthesis->mutex);
    return body(*synthesis);
  });
}

template <typename Body>
int32_t withEngine(uint32_t engine, const Body& body) {
  return guarded([&]() -> int32_t {
    Library& library = Library::instance();
    const std::shared_ptr<Engine> found = library.engine(engine);
    if (!found) return library.handleError();
    const std::lock_guard guard(found->mutex);
    return body(*found);
  });
}

bool isUsable(const LXAUDIOOUT& output) {
  constexpr int32_t kSoundDevice = 1;
  return output.kind == kSoundDevice && output.bitsPerSample == 16 && output.sampleRateHz > 0 &&
         output.device >= -1;
}

int32_t speak(uint32_t tts, const char* utf8, int32_t length, int32_t flags) {
  // Released behind the handle's mutex: the last owner of a speech waits for its device.
  std::shared_ptr<Speech> previous;
  const int32_t result = withSynthesis(tts, [&](Synthesis& synthesis) -> int32_t {
    lxapi::SpeechRequest request;
    const int32_t accepted = lxapi::acceptText(synthesis, utf8, length, flags, request);
    if (accepted != LX_OK) return accepted;
    if (synthesis.speech && synthesis.speech->isRunning()) return LX_ERROR_BUSY;
    previous = std::move(synthesis.speech);
    synthesis.speech.reset();
    auto speech = std::make_shared<Speech>(synthesis.handle, std::move(request), synthesis.receiver);
    const int32_t started = speech->start(synthesis.device);
    if (started == LX_OK) synthesis.speech = std::move(speech);
    return started;
  });
  Library::instance().retire(std::move(previous));
  return result;
}

}  // namespace

int32_t LXAPI_CALL LXAPI_SetEngineHandle(uint32_t tts, uint32_t engine) {
  return withSynthesis(tts, [=](Synthesis& synthesis) -> int32_t {
    std::shared_ptr<Engine> found = Library::instance().engine(engine);
    if (!found) return LX_ERROR_BAD_HANDLE;
    synthesis.engine = std::move(found);
    return LX_OK;
  });
}

int32_t LXAPI_CALL LXAPI_LoadEngine(uint32_t engine) {
  return withEngine(engine, [](Engine& found) -> int32_t {
    if (found.installed.synthesizerVoice.empty()) return LX_ERROR_UNSUPPORTED;
    found.loaded = true;
    return LX_OK;
  });
}

int32_t LXAPI_CALL LXAPI_UnloadEngine(uint32_t engine) {
  return guarded([=]() -> int32_t {
    Library& library = Library::instance();
    const std::shared_ptr<Engine> found = library.engine(engine);
    if (!found) return library.handleError();
    {
      const std::lock_guard guard(found->mutex);
      if (!found->loaded) return LX_ERROR_NOT_LOADED;
      found->loaded = false;
    }
    library.stopSpeechesOf(*found);
    return LX_OK;
  });
}

int32_t LXAPI_CALL LXAPI_SetAttr(uint32_t tts, int32_t attribute, int32_t value) {
  return withSynthesis(tts, [=](Synthesis& synthesis) {
    return lxapi::setSynthesisAttribute(synthesis.settings, attribute, value);
  });
}

int32_t LXAPI_CALL LXAPI_SetEngineAttr(uint32_t engine, int32_t attribute, int32_t value) {
  return withEngine(engine, [=](Engine& found) -> int32_t {
    if (attribute != LX_ATTR_COMMA_PAUSE) return LX_ERROR_UNKNOWN_ATTRIBUTE;
    found.commaPauseMs = lxapi::kCommaPauseRange.clamp(value);
    return LX_OK;
  });
}

int32_t LXAPI_CALL LXAPI_SetOutputAudio(uint32_t tts, LXAUDIOOUT output) {
  return withSynthesis(tts, [&](Synthesis& synthesis) -> int32_t {
    if (!isUsable(output)) return LX_ERROR_BAD_ARGUMENT;
    // The system converts between the engine's rate and the device's own.
    synthesis.device = output.device;
    return LX_OK;
  });
}

int32_t LXAPI_CALL LXAPI_SetEvent(uint32_t tts, LXEVENTPROC procedure, int32_t mask) {
  return withSynthesis(tts, [=](Synthesis& synthesis) -> int32_t {
    synthesis.receiver = {procedure, mask};
    return LX_OK;
  });
}

int32_t LXAPI_CALL LXAPI_Speak(uint32_t tts, const char* utf8, int32_t length, int32_t flags) {
  return speak(tts, utf8, length, flags);
}

int32_t LXAPI_CALL LXAPI_SynthesizeAsync(uint32_t tts, const char* utf8, int32_t length, int32_t flags,
                                         int32_t /*reserved*/) {
  return speak(tts, utf8, length, flags);
}

int32_t LXAPI_CALL LXAPI_Stop(uint32_t tts) {
  return guarded([=]() -> int32_t {
    Library& library = Library::instance();
    const std::shared_ptr<Synthesis> synthesis = library.synthesis(tts);
    if (!synthesis) return library.handleError();
    lxapi::stopSynthesis(*synthesis);
    return LX_OK;
  });
}

int32_t LXAPI_CALL LXAPI_Pause(uint32_t tts) {
  return withSynthesis(tts, [](Synthesis& synthesis) -> int32_t {
    if (synthesis.speech) synthesis.speech->pause();
    return LX_OK;
  });
}

int32_t LXAPI_CALL LXAPI_Resume(uint32_t tts) {
  return withSynthesis(tts, [](Synthesis& synthesis) -> int32_t {
    if (synthesis.speech) synthesis.speech->resume();
    return LX_OK;
  });
}
