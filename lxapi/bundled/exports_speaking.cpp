// Settings of a synthesis handle, and speaking on a sound device.

#include <memory>

#include "lxapi/bundled/exported_call.h"
#include "lxapi/bundled/library.h"
#include "lxapi/lxapi.h"

using namespace speech::lxapi;

namespace {

bool isUsable(const LXAUDIOOUT& output) {
  constexpr int32_t kSoundDevice = 1;
  return output.kind == kSoundDevice && output.bitsPerSample == 16 && output.sampleRateHz > 0 &&
         output.device >= -1;
}

int32_t speak(uint32_t tts, const char* utf8, int32_t length, int32_t flags) {
  // Released behind the handle's mutex: the last owner of a speech waits for its device.
  std::shared_ptr<Speech> previous;
  const int32_t result = withLockedSynthesis(tts, [&](Synthesis& synthesis) -> int32_t {
    SpeechRequest request;
    const int32_t accepted = synthesis.accept(utf8, length, flags, request);
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
  return withLockedSynthesis(tts, [=](Synthesis& synthesis) -> int32_t {
    std::shared_ptr<Engine> found = Library::instance().engine(engine);
    if (!found) return LX_ERROR_BAD_HANDLE;
    synthesis.engine = std::move(found);
    return LX_OK;
  });
}

int32_t LXAPI_CALL LXAPI_SetAttr(uint32_t tts, int32_t attribute, int32_t value) {
  return withLockedSynthesis(
      tts, [=](Synthesis& synthesis) { return setSynthesisAttribute(synthesis.settings, attribute, value); });
}

int32_t LXAPI_CALL LXAPI_SetOutputAudio(uint32_t tts, LXAUDIOOUT output) {
  return withLockedSynthesis(tts, [&](Synthesis& synthesis) -> int32_t {
    if (!isUsable(output)) return LX_ERROR_BAD_ARGUMENT;
    // The system converts between the engine's rate and the device's own.
    synthesis.device = output.device;
    return LX_OK;
  });
}

int32_t LXAPI_CALL LXAPI_SetEvent(uint32_t tts, LXEVENTPROC procedure, int32_t mask) {
  return withLockedSynthesis(tts, [=](Synthesis& synthesis) -> int32_t {
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
  return withSynthesis(tts, [](Synthesis& synthesis) -> int32_t {
    Library::instance().stop(synthesis);
    return LX_OK;
  });
}

int32_t LXAPI_CALL LXAPI_Pause(uint32_t tts) {
  return withLockedSynthesis(tts, [](Synthesis& synthesis) -> int32_t {
    if (synthesis.speech) synthesis.speech->pause();
    return LX_OK;
  });
}

int32_t LXAPI_CALL LXAPI_Resume(uint32_t tts) {
  return withLockedSynthesis(tts, [](Synthesis& synthesis) -> int32_t {
    if (synthesis.speech) synthesis.speech->resume();
    return LX_OK;
  });
}
