// Binding, loading and setting up the engine.

#include "engines/local/engine_events.h"
#include "engines/local/orvane_lxapi.h"
#include "engines/shared/module_state.h"
#include "lxapi/lxapi.h"

namespace speech {

OrvaneLXAPI::OrvaneLXAPI(LXAPIProduct* chosenProduct)
    : engineHandle(chosenProduct->getEngineRef()),
      ttsHandle(chosenProduct->getSynthHandle()),
      product(chosenProduct) {
  g_eventTtsHandle.store(ttsHandle, std::memory_order_relaxed);
  LXAPI_SetEvent(ttsHandle, onEngineEvent, kEventMask);
  g_eventForwarding.store(true, std::memory_order_relaxed);
}

// Kept: unloads even an engine that was never loaded.
OrvaneLXAPI::~OrvaneLXAPI() { LXAPI_UnloadEngine(engineHandle); }

bool OrvaneLXAPI::initialize() {
  return LXAPI_SetEngineHandle(ttsHandle, engineHandle) == LX_OK && LXAPI_LoadEngine(engineHandle) == LX_OK;
}

int OrvaneLXAPI::applyOptions(const TextToSpeech_Options& values) {
  LXAPI_SetAttr(ttsHandle, LX_ATTR_VOLUME, values.getVolume());
  LXAPI_SetAttr(ttsHandle, LX_ATTR_SPEED, values.getSpeed());
  LXAPI_SetAttr(ttsHandle, LX_ATTR_PITCH, values.getPitch());
  LXAPI_SetEngineAttr(engineHandle, LX_ATTR_COMMA_PAUSE, values.getCommaPause());
  return LXAPI_SetAttr(ttsHandle, LX_ATTR_SENTENCE_PAUSE, values.getPause());
}

bool OrvaneLXAPI::setOutputAudio(int device) {
  constexpr int kKindSoundDevice = 1;
  constexpr int kBitsPerSample = 16;
  LXAPI_SetOutputAudio(ttsHandle, {kKindSoundDevice, kBitsPerSample, product->getSampleRateHz(), device - 1});
  return true;
}

void OrvaneLXAPI::setEventNotify(bool on) { g_eventForwarding.store(on, std::memory_order_relaxed); }

bool OrvaneLXAPI::unloadEngine() { return LXAPI_UnloadEngine(engineHandle) == LX_OK; }

bool OrvaneLXAPI::loadEngine() { return LXAPI_LoadEngine(engineHandle) == LX_OK; }

}  // namespace speech
