/* A program as Microsoft's compiler makes it, without a C runtime: it ends with 42 when it has got speech. */

#include <speech/speech_c.h>

static SpeechAudio audio; /* emptied by the loader, as there is no memset here */

int start(void) {
  SpeechEngine engine;
  int32_t result = speech_engine_open(0, 0, 0, &engine);
  if (result == SPEECH_OK) result = speech_synthesize_w(engine, L"One.", 0, 16000, &audio);
  const int is_speech = result == SPEECH_OK && audio.byte_count > 4000 && audio.sample_rate == 16000;
  speech_audio_free(&audio);
  speech_release();
  return is_speech ? 42 : 1;
}
