// Speaking to the sound device, and what the host hears of it.

#include <cstddef>
#include <cstdio>

#include "engines/guarded.h"
#include "engines/host_notices.h"
#include "engines/local/orvane_lxapi.h"
#include "lxapi/lxapi.h"
#include "win32/text.h"

namespace speech {

bool OrvaneLXAPI::speak(const wchar_t* text, bool isSsml) {
  const auto result = guarded<std::int32_t>(LX_ERROR_MEMORY, [&] {
    const bool isAsynchronous = product_->getEngineKey2().Find(L'N') >= 0;
    const std::string utf8 = toUtf8(textOrEmpty(text));
    return isAsynchronous ? LXAPI_SynthesizeAsync(ttsHandle_, utf8.c_str(), -1, speakFlags(isSsml), -1)
                          : LXAPI_Speak(ttsHandle_, utf8.c_str(), -1, speakFlags(isSsml));
  });
  if (result != LX_OK) {
    postNotice(kNoticeFinishedOrFailed, kDetailFinishedOrFailed);
    return false;
  }
  isPaused_ = false;
  isSpeaking_ = true;
  return true;
}

bool OrvaneLXAPI::speakSync(UINT message, const char* text) {
  guarded([&] {
    const std::string utf8 = toUtf8(fromSystemCodePage(textOrEmpty(text)));
    stop();
    LXAPI_Speak(ttsHandle_, utf8.c_str(), -1, speakFlags(false));
    // Kept: the null window; no window receives the message.
    SendMessageW(nullptr, message, 0, 0);
    isPaused_ = false;
    isSpeaking_ = true;
  });
  return true;
}

bool OrvaneLXAPI::stop() {
  LXAPI_Stop(ttsHandle_);
  // Kept: a stop while paused leaves `isPaused_` set until the next speak, and only a stop clears this one:
  // the end of a speech does not.
  isSpeaking_ = false;
  return true;
}

bool OrvaneLXAPI::pauseResume() {
  if (isPaused_) {
    LXAPI_Resume(ttsHandle_);
  } else {
    LXAPI_Pause(ttsHandle_);
  }
  isPaused_ = !isPaused_;
  return true;
}

// Where engine libraries put what hosts are told.
static_assert(offsetof(LXEVENT, word1) == 4 && offsetof(LXEVENT, word2) == 8);
static_assert(offsetof(LXEVENT, name) == 12 && sizeof(LXEVENT) == 288);

void LXAPI_CALL OrvaneLXAPI::onEngineEvent(std::uint32_t handle, std::int32_t event, const LXEVENT* record) {
  const std::uint32_t forwarded = eventTtsHandle_.load(std::memory_order_relaxed);
  if (forwarded == 0 || handle != forwarded || !isForwarding_.load(std::memory_order_relaxed)) return;
  // The end needs no record, so an engine library that sends it none loses nothing.
  if (record == nullptr && event != LX_EVENT_END) return;
  const LXEVENT own = record != nullptr ? *record : LXEVENT{};

  switch (event) {
    case LX_EVENT_WORD:
    case LX_EVENT_SENTENCE:
      postNotice(own.word1, static_cast<LPARAM>(own.word2));
      break;
    case LX_EVENT_END:
      postNotice(kNoticeFinishedOrFailed, kDetailFinishedOrFailed);
      break;
    case LX_EVENT_BOOKMARK:
    case LX_EVENT_BOOKMARK_PHRASE: {
      // Kept: the line goes no further; it is there for a debugger to read.
      char line[256];
      const int nameLength = static_cast<int>(strnlen(own.name, sizeof own.name));
      if (std::snprintf(line, sizeof line, "SPEI_TTS_BOOKMARK = [%.*s]\n", nameLength, own.name) < 0) return;
      break;
    }
    default:
      break;
  }
}

}  // namespace speech
