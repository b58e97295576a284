#include "lxapi/bundled/handle_objects.h"

#include <cstring>
#include <string_view>

#include "base/utf8.h"

namespace speech::lxapi {
namespace {

// A month of speech. Whatever is longer is a mistake of the caller's.
constexpr size_t kMostBytes = 64U << 20;

}  // namespace

int32_t Synthesis::accept(const char* utf8, int32_t length, int32_t flags, SpeechRequest& request) const {
  if (utf8 == nullptr || length < -1) return LX_ERROR_BAD_ARGUMENT;
  // A zero byte ends the text even if the caller gives a greater length.
  const size_t bound = length == -1 ? kMostBytes + 1 : static_cast<size_t>(length);
  const std::string_view text(utf8, strnlen(utf8, bound));
  if (text.size() > kMostBytes) return LX_ERROR_BAD_ARGUMENT;
  if (!isValidUtf8(text)) return LX_ERROR_BAD_TEXT;
  if (!engine) return LX_ERROR_NOT_LOADED;
  const std::lock_guard guard(engine->mutex);
  if (!engine->isLoaded) return LX_ERROR_NOT_LOADED;
  request.text = text;
  request.isSsml = (flags & LX_SPEAK_SSML) != 0;
  request.voice = engine->installed.synthesizerVoice;
  request.settings = settings;
  request.settings.commaPauseMs = engine->commaPauseMs;
  if (lexicon) request.dictionaries.push_back(lexicon);
  for (const auto& [number, dictionary] : engine->dictionaries) request.dictionaries.push_back(dictionary);
  return LX_OK;
}

}  // namespace speech::lxapi
