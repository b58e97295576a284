#include "lxapi/bundled/accepted_text.h"

#include <cstring>
#include <string_view>

#include "lxapi/bundled/utf8.h"

namespace lxapi {
namespace {

// A month of speech. Whatever is longer is a mistake of the caller's.
constexpr size_t kMostBytes = 64U << 20;

}  // namespace

int32_t acceptText(const Synthesis& synthesis, const char* utf8, int32_t length, int32_t flags,
                   SpeechRequest& request) {
  if (utf8 == nullptr || length < -1) return LX_ERROR_BAD_ARGUMENT;
  // A zero byte ends the text also where the caller says that it is longer.
  const size_t bound = length == -1 ? kMostBytes + 1 : static_cast<size_t>(length);
  const std::string_view text(utf8, strnlen(utf8, bound));
  if (text.size() > kMostBytes) return LX_ERROR_BAD_ARGUMENT;
  if (!isValidUtf8(text)) return LX_ERROR_BAD_TEXT;
  if (!synthesis.engine) return LX_ERROR_NOT_LOADED;
  const std::lock_guard guard(synthesis.engine->mutex);
  if (!synthesis.engine->loaded) return LX_ERROR_NOT_LOADED;
  request.text = text;
  request.ssml = (flags & LX_SPEAK_SSML) != 0;
  request.voice = synthesis.engine->installed.synthesizerVoice;
  request.settings = synthesis.settings;
  request.settings.commaPauseMs = synthesis.engine->commaPauseMs;
  if (synthesis.lexicon) request.substitutions.push_back(synthesis.lexicon);
  for (const auto& [number, dictionary] : synthesis.engine->dictionaries)
    request.substitutions.push_back(dictionary);
  return LX_OK;
}

}  // namespace lxapi
