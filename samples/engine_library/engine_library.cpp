// A minimal engine library: one engine, whose every word is a beep. As liblxapi.dll beside speech.dll it
// takes the place of the bundled one. It takes SSML for plain text, and has no settings and no dictionaries.

#include <atomic>
#include <cstdio>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include <windows.h>

#include <mmsystem.h>

#include <lxapi/lxapi.h>

#include "beeper.h"

namespace {

constexpr uint32_t kCursor = 1;
constexpr uint32_t kEngine = 1;

void writeWavHeader(std::FILE* file, uint32_t byteCount) {
  const uint32_t header[] = {0x46464952,  36 + byteCount,
                             0x45564157,  // "RIFF", size, "WAVE"
                             0x20746D66,  16,
                             0x00010001,  kRateHz,
                             kRateHz * 2, 0x00100002,  // "fmt ": PCM, mono
                             0x61746164,  byteCount};  // "data"
  std::fwrite(header, 1, sizeof header, file);
}

// What a synthesis handle stands for.
struct Synthesis {
  LXEVENTPROC procedure = nullptr;
  int32_t mask = 0;
  UINT device = WAVE_MAPPER;
  std::string path;
  int32_t fileCode = LX_FILE_WAV;
  std::vector<int16_t> buffer;
  std::atomic<bool> isSpeaking = false;
  std::atomic<HWAVEOUT> output = nullptr;
  std::jthread thread;
};

std::mutex g_mutex;  // guards what follows; never held while the event procedure runs
std::map<uint32_t, std::unique_ptr<Synthesis>> g_syntheses;
uint32_t g_lastHandle = 100;
bool g_isLoaded = false;

Synthesis* find(uint32_t tts) {
  const std::lock_guard guard(g_mutex);
  const auto found = g_syntheses.find(tts);
  return found == g_syntheses.end() ? nullptr : found->second.get();
}

// region play
// Runs on the speech's own thread. Words are raised when they are heard, and the end when all has been heard.
void play(const std::stop_token& stop, uint32_t tts, Synthesis& synthesis, Speech speech) {
  WAVEHDR header{};
  header.lpData = reinterpret_cast<LPSTR>(speech.samples.data());
  header.dwBufferLength = static_cast<DWORD>(speech.samples.size() * sizeof(int16_t));
  HWAVEOUT output = synthesis.output;
  waveOutPrepareHeader(output, &header, sizeof header);
  waveOutWrite(output, &header, sizeof header);

  std::size_t raised = 0;
  const auto raise = [&](int32_t event, uint32_t word1, uint32_t word2) {
    const LXEVENT record{0, word1, word2, ""};
    if (synthesis.procedure != nullptr && (synthesis.mask & event) != 0)
      synthesis.procedure(tts, event, &record);
  };
  for (bool isOver = false; !isOver && !stop.stop_requested(); Sleep(5)) {
    isOver = (header.dwFlags & WHDR_DONE) != 0;
    MMTIME position{TIME_SAMPLES, {}};
    waveOutGetPosition(output, &position, sizeof position);
    for (; raised < speech.words.size() && !stop.stop_requested(); ++raised) {
      const Word& word = speech.words[raised];
      if (!isOver && position.u.sample < word.frame) break;
      raise(LX_EVENT_WORD, word.offset, word.length);
    }
  }
  waveOutReset(output);
  waveOutUnprepareHeader(output, &header, sizeof header);
  synthesis.output = nullptr;
  waveOutClose(output);
  const bool isHeardToItsEnd = !stop.stop_requested();
  synthesis.isSpeaking = false;  // the event procedure may speak again
  if (isHeardToItsEnd) raise(LX_EVENT_END, 0, 0);
}
// end

int32_t speak(uint32_t tts, const char* utf8, int32_t length) {
  Synthesis* const synthesis = find(tts);
  if (synthesis == nullptr) return LX_ERROR_BAD_HANDLE;
  if (utf8 == nullptr) return LX_ERROR_BAD_ARGUMENT;
  if (!g_isLoaded) return LX_ERROR_NOT_LOADED;
  if (synthesis->isSpeaking) return LX_ERROR_BUSY;
  Speech speech = render(length < 0 ? std::string_view(utf8) : std::string_view(utf8, length));
  WAVEFORMATEX format{WAVE_FORMAT_PCM, 1, kRateHz, kRateHz * 2, 2, 16, 0};
  HWAVEOUT output = nullptr;
  if (waveOutOpen(&output, synthesis->device, &format, 0, 0, CALLBACK_NULL) != MMSYSERR_NOERROR)
    return LX_ERROR_DEVICE;
  synthesis->output = output;
  synthesis->isSpeaking = true;
  if (synthesis->thread.get_id() == std::this_thread::get_id()) synthesis->thread.detach();
  synthesis->thread = std::jthread(play, tts, std::ref(*synthesis), std::move(speech));
  return LX_OK;
}

template <typename Change>
int32_t withSynthesis(uint32_t tts, const Change& change) {
  Synthesis* const synthesis = find(tts);
  if (synthesis == nullptr) return LX_ERROR_BAD_HANDLE;
  return change(*synthesis);
}

}  // namespace

// region catalogue
int32_t LXAPI_CALL LXAPI_Init(void) { return LX_OK; }

uint32_t LXAPI_CALL LXAPI_GetFirstInstalledEngine(void) { return kCursor; }
uint32_t LXAPI_CALL LXAPI_GetNextInstalledEngine(uint32_t) { return 0; }

int32_t LXAPI_CALL LXAPI_GetEngineInfoFieldEx2(uint32_t cursor, const wchar_t** key1, const wchar_t** key2,
                                               int32_t* engineNumber, const wchar_t** text3,
                                               const wchar_t** text4, const wchar_t** text5,
                                               const wchar_t** gender, const wchar_t** text7,
                                               int32_t* sampleRateHz, int32_t* number9,
                                               const wchar_t** language, const wchar_t** engineType) {
  if (cursor != kCursor) return LX_ERROR_BAD_HANDLE;
  for (const wchar_t** text : {text3, text4, text5, gender, text7})
    if (text != nullptr) *text = L"";
  if (key1 != nullptr) *key1 = L"Beeper";
  if (key2 != nullptr) *key2 = L"Plain";  // a capital N would have hosts call LXAPI_SynthesizeAsync
  if (engineNumber != nullptr) *engineNumber = 0;
  if (sampleRateHz != nullptr) *sampleRateHz = kRateHz;
  if (number9 != nullptr) *number9 = 0;
  if (language != nullptr) *language = L"en-US";
  if (engineType != nullptr) *engineType = L"beeper";
  return LX_OK;
}

uint32_t LXAPI_CALL LXAPI_GetEngine(const char* key1, const char* key2) {
  const bool isOurs =
      key1 != nullptr && key2 != nullptr && _stricmp(key1, "Beeper") == 0 && _stricmp(key2, "Plain") == 0;
  return isOurs ? kEngine : 0;
}
// end

int32_t LXAPI_CALL LXAPI_Exit(void) {
  std::map<uint32_t, std::unique_ptr<Synthesis>> ended;
  const std::lock_guard guard(g_mutex);
  ended.swap(g_syntheses);  // their threads are stopped and waited for
  return LX_OK;
}

uint32_t LXAPI_CALL LXAPI_CreateHandle(void) {
  const std::lock_guard guard(g_mutex);
  g_syntheses.emplace(++g_lastHandle, std::make_unique<Synthesis>());
  return g_lastHandle;
}

int32_t LXAPI_CALL LXAPI_GetTTSInfo(uint32_t engine, LXTTSINFO* info) {
  if (engine != kEngine) return LX_ERROR_BAD_HANDLE;
  *info = {L"Beeper", L"1.0", L"", L"", L""};
  return LX_OK;
}

int32_t LXAPI_CALL LXAPI_SetEngineHandle(uint32_t tts, uint32_t engine) {
  return engine == kEngine && find(tts) != nullptr ? LX_OK : LX_ERROR_BAD_HANDLE;
}
int32_t LXAPI_CALL LXAPI_LoadEngine(uint32_t engine) {
  g_isLoaded = g_isLoaded || engine == kEngine;
  return engine == kEngine ? LX_OK : LX_ERROR_BAD_HANDLE;
}
int32_t LXAPI_CALL LXAPI_UnloadEngine(uint32_t) {
  return std::exchange(g_isLoaded, false) ? LX_OK : LX_ERROR_NOT_LOADED;
}

int32_t LXAPI_CALL LXAPI_SetAttr(uint32_t, int32_t, int32_t) { return LX_OK; }
int32_t LXAPI_CALL LXAPI_SetEngineAttr(uint32_t, int32_t, int32_t) { return LX_OK; }

int32_t LXAPI_CALL LXAPI_SetOutputAudio(uint32_t tts, LXAUDIOOUT output) {
  return withSynthesis(tts, [&](Synthesis& synthesis) {
    synthesis.device = static_cast<UINT>(output.device);  // -1 is WAVE_MAPPER
    return LX_OK;
  });
}

int32_t LXAPI_CALL LXAPI_SetEvent(uint32_t tts, LXEVENTPROC procedure, int32_t mask) {
  return withSynthesis(tts, [=](Synthesis& synthesis) {
    synthesis.procedure = procedure;
    synthesis.mask = mask;
    return LX_OK;
  });
}

int32_t LXAPI_CALL LXAPI_Speak(uint32_t tts, const char* utf8, int32_t length, int32_t) {
  return speak(tts, utf8, length);
}
int32_t LXAPI_CALL LXAPI_SynthesizeAsync(uint32_t tts, const char* utf8, int32_t length, int32_t, int32_t) {
  return speak(tts, utf8, length);
}

int32_t LXAPI_CALL LXAPI_Stop(uint32_t tts) {
  return withSynthesis(tts, [](Synthesis& synthesis) {
    synthesis.thread.request_stop();
    // A host may stop from within the event procedure: a thread cannot wait for itself.
    if (synthesis.thread.joinable() && synthesis.thread.get_id() != std::this_thread::get_id())
      synthesis.thread.join();
    return LX_OK;
  });
}
int32_t LXAPI_CALL LXAPI_Pause(uint32_t tts) {
  return withSynthesis(tts, [](Synthesis& synthesis) {
    waveOutPause(synthesis.output);
    return LX_OK;
  });
}
int32_t LXAPI_CALL LXAPI_Resume(uint32_t tts) {
  return withSynthesis(tts, [](Synthesis& synthesis) {
    waveOutRestart(synthesis.output);
    return LX_OK;
  });
}

int32_t LXAPI_CALL LXAPI_SetOutputFile(uint32_t tts, const char* path, int32_t fileCode) {
  return withSynthesis(tts, [=](Synthesis& synthesis) {
    synthesis.path = path;
    synthesis.fileCode = fileCode;
    return fileCode == LX_FILE_PCM || fileCode == LX_FILE_WAV ? LX_OK : LX_ERROR_UNSUPPORTED;
  });
}
int32_t LXAPI_CALL LXAPI_TextToFile(uint32_t tts, const char* utf8, int32_t length, int32_t) {
  return withSynthesis(tts, [=](Synthesis& synthesis) {
    if (synthesis.fileCode != LX_FILE_PCM && synthesis.fileCode != LX_FILE_WAV) return LX_ERROR_UNSUPPORTED;
    const Speech speech = render(length < 0 ? std::string_view(utf8) : std::string_view(utf8, length));
    const auto byteCount = static_cast<int32_t>(speech.samples.size() * sizeof(int16_t));
    std::FILE* const file = std::fopen(synthesis.path.c_str(), "wb");
    if (file == nullptr) return LX_ERROR_FILE;
    if (synthesis.fileCode == LX_FILE_WAV) writeWavHeader(file, byteCount);
    const bool isWritten =
        std::fwrite(speech.samples.data(), 1, byteCount, file) == static_cast<size_t>(byteCount);
    return std::fclose(file) == 0 && isWritten ? LX_OK : LX_ERROR_FILE;
  });
}

int32_t LXAPI_CALL LXAPI_SetOutputBuffer(uint32_t, int32_t) { return LX_OK; }
int32_t LXAPI_CALL LXAPI_BufferOpen(uint32_t tts, const char* utf8, int32_t length, int32_t, int32_t) {
  return withSynthesis(tts, [=](Synthesis& synthesis) {
    synthesis.buffer = render(length < 0 ? std::string_view(utf8) : std::string_view(utf8, length)).samples;
    return LX_OK;
  });
}
int32_t LXAPI_CALL LXAPI_GetBuffer(uint32_t tts, void** buffer) {
  return withSynthesis(tts, [=](Synthesis& synthesis) {
    *buffer = synthesis.buffer.data();
    return static_cast<int32_t>(synthesis.buffer.size() * sizeof(int16_t));
  });
}
int32_t LXAPI_CALL LXAPI_FreeBuffer(void*) { return LX_OK; }  // BufferClose releases it
int32_t LXAPI_CALL LXAPI_BufferClose(uint32_t tts) {
  return withSynthesis(tts, [](Synthesis& synthesis) {
    synthesis.buffer.clear();
    return LX_OK;
  });
}

// region unsupported
// No dictionaries, no settings: hosts then show bounds of 100 and say that there are no dictionaries.
int32_t LXAPI_CALL LXAPI_LoadUserDict(uint32_t, int32_t, const char*) { return LX_ERROR_UNSUPPORTED; }
int32_t LXAPI_CALL LXAPI_UnloadUserDict(uint32_t, int32_t) { return LX_ERROR_NOT_LOADED; }
uint32_t LXAPI_CALL LXAPI_CreateLexiconHandle(const char*) { return 0; }
int32_t LXAPI_CALL LXAPI_SetLexiconHandle(uint32_t, uint32_t) { return LX_ERROR_BAD_HANDLE; }
int32_t LXAPI_CDECL LXAPI_CallEngineInternal(uint32_t, const char*, int32_t*, char*, void*, int32_t, ...) {
  return LX_ERROR_UNKNOWN_ATTRIBUTE;
}
// end
