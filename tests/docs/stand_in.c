// Stands in for speech.dll where no Windows Python or .NET can run: the same declarations, so that a sample
// that calls them with other types than the library has fails here too. Voice 0 is German, voice 1 English.

#include <string.h>

#include <speech/speech_c.h>

static SpeechCallback callback;
#define ENGINE ((SpeechEngine)&callback)

int32_t speech_voice_text(int32_t voice, int32_t which, char* buffer, uint32_t capacity, uint32_t* length) {
  if (which != SPEECH_VOICE_LANGUAGE || capacity != 16) return SPEECH_ERROR_ARGUMENT;
  memcpy(buffer, voice == 0 ? "de-DE" : "en-GB", 6);
  if (length != NULL) *length = 5;
  return SPEECH_OK;
}

int32_t speech_engine_open(int32_t voice, SpeechCallback wanted, void* user, SpeechEngine* engine) {
  callback = wanted;
  *engine = ENGINE;
  return voice == 1 && user == NULL ? SPEECH_OK : SPEECH_ERROR_VOICE;
}

static int32_t speak(SpeechEngine engine, int is_known, uint32_t flags) {
  return engine == ENGINE && is_known && flags == 0 ? SPEECH_OK : SPEECH_ERROR_REFUSED;
}

int32_t speech_speak(SpeechEngine engine, const char* text, uint32_t flags) {
  return speak(engine, strcmp(text, "One, tw\xC3\xB6.") == 0, flags);
}

int32_t speech_speak_w(SpeechEngine engine, const wchar_t* text, uint32_t flags) {
  return speak(engine, memcmp(text, L"One, tw\xF6.", sizeof L"One, tw\xF6.") == 0, flags);
}

int32_t speech_wait(SpeechEngine engine, int32_t timeout_ms) {
  const SpeechEvent events[] = {{sizeof *events, SPEECH_EVENT_STARTED, engine, 1, 2, 3, 4, SPEECH_OK, ""},
                                {sizeof *events, SPEECH_EVENT_WORD, engine, 0, 3, 0, 3, SPEECH_OK, ""},
                                {sizeof *events, SPEECH_EVENT_WORD, engine, 5, 4, 5, 3, SPEECH_OK, ""}};
  for (size_t i = 0; i < sizeof events / sizeof *events; ++i) callback(NULL, &events[i]);
  return engine == ENGINE && timeout_ms == -1 ? SPEECH_OK : SPEECH_ERROR_ARGUMENT;
}

const char* speech_error_text(int32_t error) { return error == SPEECH_ERROR_REFUSED ? "refused" : "other"; }

int32_t speech_release(void) { return SPEECH_OK; }
