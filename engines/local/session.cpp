// Binding, loading and setting up the engine.

#include "engines/local/orvane_lxapi.h"
#include "lxapi/lxapi.h"

namespace speech {

namespace {

/// The events that this engine asks for: bookmarks, the end of speech, words.
constexpr std::int32_t kEventMask = LX_EVENT_BOOKMARK | LX_EVENT_END | LX_EVENT_WORD;

}  // namespace

OrvaneLXAPI::OrvaneLXAPI(LXAPIProduct* product)
    : Engine(product, product->getSynthHandle(), kCustoms), engineHandle_(product->getEngineRef()) {
  eventTtsHandle_.store(ttsHandle_, std::memory_order_relaxed);
  LXAPI_SetEvent(ttsHandle_, onEngineEvent, kEventMask);
  isForwarding_.store(true, std::memory_order_relaxed);
}

// Kept: unloads even an engine that was never loaded.
OrvaneLXAPI::~OrvaneLXAPI() { LXAPI_UnloadEngine(engineHandle_); }

bool OrvaneLXAPI::initialize() {
  return LXAPI_SetEngineHandle(ttsHandle_, engineHandle_) == LX_OK &&
         LXAPI_LoadEngine(engineHandle_) == LX_OK;
}

int OrvaneLXAPI::applyOptions(const TextToSpeech_Options& options) {
  LXAPI_SetAttr(ttsHandle_, LX_ATTR_VOLUME, options.getVolume());
  LXAPI_SetAttr(ttsHandle_, LX_ATTR_SPEED, options.getSpeed());
  LXAPI_SetAttr(ttsHandle_, LX_ATTR_PITCH, options.getPitch());
  LXAPI_SetEngineAttr(engineHandle_, LX_ATTR_COMMA_PAUSE, options.getCommaPause());
  return LXAPI_SetAttr(ttsHandle_, LX_ATTR_SENTENCE_PAUSE, options.getPause());
}

bool OrvaneLXAPI::setOutputAudio(int device) {
  constexpr int kKindSoundDevice = 1;
  constexpr int kBitsPerSample = 16;
  LXAPI_SetOutputAudio(ttsHandle_,
                       {kKindSoundDevice, kBitsPerSample, product_->getSampleRateHz(), device - 1});
  return true;
}

void OrvaneLXAPI::setEventNotify(bool on) { isForwarding_.store(on, std::memory_order_relaxed); }

bool OrvaneLXAPI::unloadEngine() { return LXAPI_UnloadEngine(engineHandle_) == LX_OK; }

bool OrvaneLXAPI::loadEngine() { return LXAPI_LoadEngine(engineHandle_) == LX_OK; }

}  // namespace speech
