// A C99 program that uses the library as any program would: through the DLL, with the bundled engine library.
// Ends with 0, or says what went wrong.
//
// usage: c_interface_plain_c_test FOLDER TOOL_FOLDER   (a folder to write to, and that of sox.exe)

#include <stdio.h>
#include <string.h>

#include <speech/audio.h>
#include <speech/speech_c.h>

#define CHECK(condition) check(condition, #condition)
#define OK(call) check((call) == SPEECH_OK, #call)

static int failures = 0;

static void check(int holds, const char* condition) {
  char detail[300] = "";
  if (holds) return;
  speech_error_detail(detail, sizeof detail, NULL);
  printf("not so: %s (%s)\n", condition, detail);
  ++failures;
}

static const char kText[] = "Na\xC3\xAFve words, one by one.";

static void SPEECH_CALL on_event(void* user, const SpeechEvent* event) {
  if (event->kind == SPEECH_EVENT_WORD) strncat(user, kText + event->utf8_offset, event->utf8_length);
  strcat(user, event->kind == SPEECH_EVENT_STARTED ? "<" : event->kind == SPEECH_EVENT_WORD ? "/" : ">");
}

static int32_t first_english_voice(void) {
  char language[20] = "";
  int32_t voice = 0;
  while (strncmp(language, "en", 2) != 0)
    if (speech_voice_text(voice++, SPEECH_VOICE_LANGUAGE, language, sizeof language, NULL) != SPEECH_OK)
      break;
  return voice - 1;
}

// The first bytes of a file say which type it is.
static void check_file(const char* path, const char* mark) {
  char start[4] = "";
  FILE* file = fopen(path, "rb");
  CHECK(file != NULL && fread(start, 1, sizeof start, file) == sizeof start);
  CHECK(memcmp(start, mark, strlen(mark)) == 0);
  if (file != NULL) fclose(file);
  remove(path);
}

int main(int count, char** arguments) {
  char path[300], record[100] = "", heard[200] = "";
  SpeechEngine engine = NULL;
  SpeechAudio audio = {0};
  WFHeader header;
  sprintf(path, "%s\\speech.out", count > 1 ? arguments[1] : "");

  OK(speech_engine_open(first_english_voice(), on_event, heard, &engine));
  CHECK(LXUTIL_Initialize_WFHeader(&header, 8000, kWaveFormatMuLaw, 1) == 1 && header.blockAlign == 1);

  OK(speech_csv_make(engine, "say \"na\xC3\xAFve\"", "a, b", record, sizeof record, NULL));
  CHECK(strcmp(record, "\"say \"\"na\xC3\xAFve\"\"\",\"a, b\"\r\n") == 0);

  OK(speech_set_tool_folder(engine, count > 2 ? arguments[2] : ""));
  OK(speech_export(engine, kText, 0, SPEECH_FORMAT_MP3, 0, path));
  check_file(path, "\xFF");
  OK(speech_synthesize(engine, kText, 0, 16000, &audio));
  CHECK(audio.sample_rate == 16000 && audio.byte_count > 16000);
  OK(speech_export_samples(engine, audio.samples, audio.byte_count, 16000, SPEECH_FORMAT_OGG, path));
  check_file(path, "OggS");
  speech_audio_free(&audio);

  OK(speech_speak(engine, kText, 0));
  OK(speech_wait(engine, 60000));
  check(strcmp(heard, "<Na\xC3\xAFve/words/one/by/one/>") == 0, heard);
  OK(speech_release());
  return failures != 0;
}
