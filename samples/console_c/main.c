/* console_c TEXT [FILE]: speaks a text with the first English voice, or writes its speech into a WAV file. */

#include <stdio.h>
#include <string.h>

#include <speech/speech_c.h>

static void SPEECH_CALL on_event(void* user, const SpeechEvent* event) {
  const char* text = user;
  if (event->kind == SPEECH_EVENT_WORD) printf("%.*s\n", (int)event->utf8_length, text + event->utf8_offset);
}

static int32_t find_voice(const char* language) {
  char code[16];
  int32_t voice = 0;
  while (speech_voice_text(voice, SPEECH_VOICE_LANGUAGE, code, sizeof code, NULL) != SPEECH_ERROR_VOICE) {
    if (strncmp(code, language, strlen(language)) == 0) return voice;
    ++voice;
  }
  return -1; /* which speech_engine_open reports */
}

int main(int count, char** arguments) {
  char* text = count > 1 ? arguments[1] : "Hello, world.";
  SpeechEngine engine;
  int32_t result = speech_engine_open(find_voice("en"), on_event, text, &engine);

  if (result == SPEECH_OK && count > 2) {
    result = speech_export(engine, text, 0, SPEECH_FORMAT_WAV, 0, arguments[2]);
  } else if (result == SPEECH_OK) {
    result = speech_speak(engine, text, 0);
    if (result == SPEECH_OK) result = speech_wait(engine, -1);
  }

  if (result != SPEECH_OK) {
    char detail[300] = "";
    speech_error_detail(detail, sizeof detail, NULL);
    fprintf(stderr, "%s %s\n", speech_error_text(result), detail);
  }
  speech_release();
  return result == SPEECH_OK ? 0 : 1;
}
