/*
 * A C99 program that uses the library as any program would: through the DLL, with the bundled engine library.
 * Ends with 0, or says what went wrong.
 */
#include <stdio.h>
#include <string.h>

#include <speech/speech_c.h>

static int failures = 0;

static void expect(int32_t result, int32_t wanted, const char* what) {
  char detail[300] = "";
  if (result == wanted) return;
  speech_error_detail(detail, sizeof detail, NULL);
  printf("%s: %s %s\n", what, speech_error_text(result), detail);
  ++failures;
}

static void check(int holds, const char* what) {
  if (holds) return;
  printf("%s does not hold\n", what);
  ++failures;
}

typedef struct Heard {
  int started, words, finished;
  char text[200];
} Heard;

static const char kText[] = "Na\xC3\xAFve words, one by one.";

static void SPEECH_CALL on_event(void* user, const SpeechEvent* event) {
  Heard* heard = user;
  if (event->kind == SPEECH_EVENT_STARTED) ++heard->started;
  if (event->kind == SPEECH_EVENT_FINISHED) ++heard->finished;
  if (event->kind == SPEECH_EVENT_WORD) {
    ++heard->words;
    strncat(heard->text, kText + event->utf8_offset, event->utf8_length);
    strcat(heard->text, "/");
  }
}

static int32_t first_english_voice(void) {
  int32_t count = 0;
  int32_t voice;
  expect(speech_voice_count(&count), SPEECH_OK, "counting voices");
  for (voice = 0; voice < count; ++voice) {
    char language[20] = "";
    int32_t is_cloud = 1;
    expect(speech_voice_text(voice, SPEECH_VOICE_LANGUAGE, language, sizeof language, NULL), SPEECH_OK,
           "language");
    expect(speech_voice_number(voice, SPEECH_VOICE_IS_CLOUD, &is_cloud), SPEECH_OK, "is cloud");
    if (!is_cloud && strncmp(language, "en", 2) == 0) return voice;
  }
  return -1;
}

int main(void) {
  Heard heard = {0};
  SpeechEngine engine = NULL;
  SpeechAudio slow = {0}, fast = {0};
  int32_t maximum = 0;
  const int32_t voice = first_english_voice();

  expect(speech_engine_open(voice, on_event, &heard, &engine), SPEECH_OK, "opening");
  expect(speech_synthesize(engine, kText, 0, 16000, &slow), SPEECH_OK, "synthesizing");
  check(slow.sample_rate == 16000 && slow.byte_count > 16000, "at least half a second of samples");
  expect(speech_option_range(voice, SPEECH_OPTION_SPEED, NULL, &maximum, NULL), SPEECH_OK, "range");
  expect(speech_option_set(voice, SPEECH_OPTION_SPEED, maximum), SPEECH_OK, "setting the speed");
  expect(speech_synthesize(engine, kText, 0, 16000, &fast), SPEECH_OK, "synthesizing fast");
  check(fast.byte_count < slow.byte_count, "the fast speech is shorter");
  expect(speech_option_reset(voice), SPEECH_OK, "resetting");
  speech_audio_free(&slow);
  speech_audio_free(&fast);
  expect(speech_export(engine, kText, 0, SPEECH_FORMAT_ALAW, 48000, "x.wav"), SPEECH_ERROR_UNSUPPORTED,
         "A-law");

  expect(speech_speak(engine, kText, 0), SPEECH_OK, "speaking");
  expect(speech_wait(engine, 60000), SPEECH_OK, "waiting");
  check(heard.started == 1 && heard.finished == 1, "one start and one end");
  check(strcmp(heard.text, "Na\xC3\xAFve/words/one/by/one/") == 0, heard.text);

  expect(speech_speak(engine, kText, 0), SPEECH_OK, "speaking again");
  expect(speech_stop(engine), SPEECH_OK, "stopping");
  expect(speech_wait(engine, 0), SPEECH_OK, "waiting for nothing");
  check(heard.finished == 1, "a stopped speech does not finish");

  expect(speech_engine_close(engine), SPEECH_OK, "closing");
  expect(speech_speak(engine, kText, 0), SPEECH_ERROR_HANDLE, "speaking after closing");
  expect(speech_release(), SPEECH_OK, "releasing");
  printf("version %s, %d words heard, %d failures\n", speech_version_text(), heard.words, failures);
  return failures != 0;
}
