/*
 * A C99 program that uses the library as any program would: through the DLL, with the bundled engine library.
 * Ends with 0, or says what went wrong.
 *
 * usage: c_interface_plain_c_test FOLDER TOOL_FOLDER   (a folder to write to, and that of sox.exe)
 */
#include <stdio.h>
#include <string.h>

#include <speech/audio_c.h>
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

/* What the first bytes of a file in each format are; raw samples have no mark. */
typedef struct Mark {
  int32_t format;
  const char* mark;
} Mark;

static const Mark kMarks[] = {
    {SPEECH_FORMAT_PCM, ""},     {SPEECH_FORMAT_WAV, "RIFF"}, {SPEECH_FORMAT_ALAW, "RIFF"},
    {SPEECH_FORMAT_OGG, "OggS"}, {SPEECH_FORMAT_GSM, "\xD"},  {SPEECH_FORMAT_MP3, "\xFF"},
};

static void check_file(const char* path, const Mark* mark) {
  unsigned char start[4] = {0};
  FILE* file = fopen(path, "rb");
  size_t size;
  check(file != NULL, path);
  if (file == NULL) return;
  size = fread(start, 1, sizeof start, file);
  fclose(file);
  check(size == sizeof start, path);
  if (mark->format == SPEECH_FORMAT_GSM) start[0] >>= 4; /* half of the byte is sound */
  check(memcmp(start, mark->mark, strlen(mark->mark)) == 0, path);
  remove(path);
}

static void export_every_format(SpeechEngine engine, const SpeechAudio* audio, const char* folder,
                                const char* tools) {
  size_t i;
  char path[300];
  sprintf(path, "%s\\speech.out", folder);
  expect(speech_set_tool_folder(engine, tools), SPEECH_OK, "tool folder");
  for (i = 0; i < sizeof kMarks / sizeof *kMarks; ++i) {
    const Mark* mark = &kMarks[i];
    expect(speech_export(engine, kText, 0, mark->format, 0, path), SPEECH_OK, "exporting text");
    check_file(path, mark);
    if (mark->format == SPEECH_FORMAT_ALAW) continue;
    expect(speech_export_samples(engine, audio->samples, audio->byte_count, audio->sample_rate, mark->format,
                                 path),
           SPEECH_OK, "exporting samples");
    check_file(path, mark);
  }
}

/* An entry goes out as a record and comes back. */
static void write_and_read_entries(SpeechEngine engine) {
  static const char kSource[] = "say \"na\xC3\xAFve\"";
  char record[100] = "";
  wchar_t field[20] = {0};
  uint32_t length = 0;
  int32_t number = 0;
  intptr_t reader = 0;
  expect(speech_csv_make(engine, kSource, "a, b", record, 10, &length), SPEECH_ERROR_BUFFER, "short buffer");
  check(length == 25, "the length that is needed");
  expect(speech_csv_make(engine, kSource, "a, b", record, sizeof record, &length), SPEECH_OK, "making");
  check(strcmp(record, "\"say \"\"na\xC3\xAFve\"\"\",\"a, b\"\r\n") == 0, record);
  strcat(record, "c,d,e\nlonely\n");

  expect(speech_csv_reader(engine, &reader), SPEECH_OK, "a reader");
  expect(speech_csv_read(engine, reader, record, &number), SPEECH_OK, "first record");
  check(number == 1, "line 1");
  expect(speech_csv_field_w(engine, reader, 0, field, 20, &length), SPEECH_OK, "field");
  check(length == 11 && field[7] == 0xEF, "the source in UTF-16");
  expect(speech_csv_read(engine, reader, NULL, &number), SPEECH_OK, "second record");
  check(number == 2, "line 2");
  expect(speech_csv_field_count(engine, reader, &number), SPEECH_OK, "counting fields");
  check(number == 3, "three fields");
  expect(speech_csv_read(engine, reader, NULL, &number), SPEECH_ERROR_DICTIONARY, "too few fields");
  expect(speech_csv_read(engine, reader, NULL, &number), SPEECH_OK, "behind the last record");
  check(number == 0, "no record is left");
  expect(speech_csv_read(engine, reader + 1000, "a,b", &number), SPEECH_ERROR_UNSUPPORTED, "no reader");
}

static void use_audio_utilities(const SpeechAudio* audio) {
  const int32_t bytes = (int32_t)audio->byte_count;
  int16_t* halved = NULL;
  const int32_t halvedBytes =
      RATEAPI_PCM2PCM(audio->samples, &bytes, audio->sample_rate, audio->sample_rate / 2, 16, 1, &halved);
  check(halved != NULL && halvedBytes >= bytes / 2 - 4 && halvedBytes <= bytes / 2 + 4,
        "half the rate is half the bytes");
  WFHeader header;
  ExternFree(halved);
  check(LXUTIL_Initialize_WFHeader(&header, 8000, kWaveFormatMuLaw, 1) == 1 && header.blockAlign == 1 &&
            header.dataSize == 0,
        "a mu-law header");
}

int main(int count, char** arguments) {
  const char* folder = count > 1 ? arguments[1] : "";
  const char* tools = count > 2 ? arguments[2] : "";
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
  use_audio_utilities(&slow);
  write_and_read_entries(engine);
  export_every_format(engine, &slow, folder, tools);
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
