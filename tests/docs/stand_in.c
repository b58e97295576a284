/* Stands in for speech.dll where no Windows Python or .NET can run: the same declarations, so that a sample
 * that calls them with other types than the library has fails here too. Voice 0 is German, voice 1 English.
 */

#include <string.h>

#include <speech/speech_c.h>

static SpeechCallback callback;
static void* callback_user;
static const char kText[] = "One, tw\xC3\xB6.";
static const uint16_t kText16[] = {'O', 'n', 'e', ',', ' ', 't', 'w', 0xF6, '.', 0};
static char engine_address;
#define ENGINE ((SpeechEngine)&engine_address)

int32_t speech_voice_text(int32_t voice, int32_t which, char* buffer, uint32_t capacity, uint32_t* length) {
  if (voice < 0 || voice > 1) return SPEECH_ERROR_VOICE;
  if (which != SPEECH_VOICE_LANGUAGE || capacity < 6) return SPEECH_ERROR_ARGUMENT;
  strcpy(buffer, voice == 0 ? "de-DE" : "en-GB");
  if (length != NULL) *length = 5;
  return SPEECH_OK;
}

int32_t speech_engine_open(int32_t voice, SpeechCallback wanted, void* user, SpeechEngine* engine) {
  if (voice != 1) return SPEECH_ERROR_VOICE;
  callback = wanted;
  callback_user = user;
  *engine = ENGINE;
  return SPEECH_OK;
}

static int32_t speak(SpeechEngine engine, int is_known, uint32_t flags) {
  if (engine != ENGINE) return SPEECH_ERROR_HANDLE;
  return is_known && flags == 0 ? SPEECH_OK : SPEECH_ERROR_REFUSED;
}

int32_t speech_speak(SpeechEngine engine, const char* text, uint32_t flags) {
  return speak(engine, strcmp(text, kText) == 0, flags);
}

int32_t speech_speak_w(SpeechEngine engine, const wchar_t* text, uint32_t flags) {
  return speak(engine, memcmp(text, kText16, sizeof kText16) == 0, flags);
}

int32_t speech_wait(SpeechEngine engine, int32_t timeout_ms) {
  const SpeechEvent events[] = {
      {sizeof(SpeechEvent), SPEECH_EVENT_STARTED, ENGINE, 1, 2, 3, 4, SPEECH_OK, ""},
      {sizeof(SpeechEvent), SPEECH_EVENT_WORD, ENGINE, 0, 3, 0, 3, SPEECH_OK, ""},
      {sizeof(SpeechEvent), SPEECH_EVENT_WORD, ENGINE, 5, 4, 5, 3, SPEECH_OK, ""},
  };
  if (engine != ENGINE || timeout_ms != -1) return SPEECH_ERROR_ARGUMENT;
  for (size_t i = 0; i < sizeof events / sizeof *events; ++i) callback(callback_user, &events[i]);
  return SPEECH_OK;
}

const char* speech_error_text(int32_t error) {
  return error == SPEECH_ERROR_REFUSED ? "The engine refused the text or the setting."
                                       : "Something else failed.";
}

int32_t speech_release(void) { return SPEECH_OK; }
