#include "tests/support/recording_engine.h"

#include <windows.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <new>
#include <thread>
#include <type_traits>
#include <utility>

namespace speech::test {
namespace {

constexpr std::uint32_t kFirstEngine = 101;

/// Whether a host's key in the thread's code page names `key`.
bool named(const std::wstring& key, const std::string& asked) {
  wchar_t wide[256] = {};
  MultiByteToWideChar(CP_THREAD_ACP, 0, asked.c_str(), -1, wide, 255);
  return CompareStringOrdinal(key.c_str(), -1, wide, -1, TRUE) == CSTR_EQUAL;
}

/// An output pointer, recorded by its name.
struct Output {
  const void* pointer;
  const char* name;
};

template <class Number>
requires std::is_integral_v<Number> std::string shown(Number value) { return std::to_string(value); }
std::string shown(const char* text) { return text != nullptr ? '"' + std::string(text) + '"' : "0"; }
std::string shown(Output output) { return output.pointer != nullptr ? output.name : "0"; }
std::string shown(LXAUDIOOUT output) {
  return '{' + shown(output.kind) + ", " + shown(output.bitsPerSample) + ", " + shown(output.sampleRateHz) +
         ", " + shown(output.device) + '}';
}

template <class... Values>
std::string list(const Values&... values) {
  std::string text;
  ((text += (text.empty() ? "" : ", ") + shown(values)), ...);
  return text;
}

template <class... Values>
std::int32_t note(const char* function, const Values&... values) {
  return recording().record(function, list(values...));
}

template <class... Values>
std::uint32_t noteHandle(std::uint32_t standard, const char* function, const Values&... values) {
  return static_cast<std::uint32_t>(
      recording().record(function, list(values...), static_cast<std::int32_t>(standard)));
}

const void* address(LXEVENTPROC procedure) { return reinterpret_cast<const void*>(procedure); }

}  // namespace

RecordingEngine& recording() {
  static RecordingEngine engine;
  return engine;
}

void RecordingEngine::reset() {
  const std::scoped_lock lock(mutex_);
  calls_.clear();
  answers_.clear();
  internalNumbers.clear();
  internalTexts.clear();
  engines_.clear();
  lastHandle = 0;
  ttsInfo = {};
  audio.clear();
  eventProcedure = nullptr;
  outputFile.clear();
  outOfMemoryIn.clear();
}

std::vector<std::string> RecordingEngine::takeCalls() {
  const std::scoped_lock lock(mutex_);
  return std::exchange(calls_, {});
}

void RecordingEngine::raise(std::uint32_t tts, std::int32_t event, std::uint32_t word1, std::uint32_t word2,
                            const std::string& name) {
  // Laid out by hand: these are the offsets at which engine libraries put them.
  constexpr std::size_t kWord1 = 4, kWord2 = 8, kName = 12, kSize = 288;
  std::vector<std::uint32_t> words(kSize / 4);
  auto* const record = reinterpret_cast<char*>(words.data());
  std::memcpy(record + kWord1, &word1, sizeof word1);
  std::memcpy(record + kWord2, &word2, sizeof word2);
  std::memcpy(record + kName, name.data(), std::min(name.size(), kSize - kName));
  std::thread([&] { eventProcedure(tts, event, reinterpret_cast<const LXEVENT*>(record)); }).join();
}

void RecordingEngine::raiseWithoutRecord(std::uint32_t tts, std::int32_t event) const {
  std::thread([&] { eventProcedure(tts, event, nullptr); }).join();
}

std::int32_t RecordingEngine::record(const std::string& function, const std::string& arguments,
                                     std::int32_t standard) {
  const std::scoped_lock lock(mutex_);
  calls_.push_back(function + '(' + arguments + ')');
  if (outOfMemoryIn == function || outOfMemoryIn == calls_.back()) throw std::bad_alloc();
  for (const std::string& key : {calls_.back(), function}) {
    if (const auto found = answers_.find(key); found != answers_.end()) return found->second;
  }
  return standard;
}

const InstalledEngine* RecordingEngine::installed(std::uint32_t cursor) const {
  return cursor >= 1 && cursor <= engines_.size() ? &engines_[cursor - 1] : nullptr;
}

std::uint32_t RecordingEngine::findEngine(const std::string& key1, const std::string& key2) const {
  for (std::size_t i = 0; i < engines_.size(); ++i) {
    if (named(engines_[i].key1, key1) && named(engines_[i].key2, key2)) {
      return kFirstEngine + static_cast<std::uint32_t>(i);
    }
  }
  return 0;
}

}  // namespace speech::test

using namespace speech::test;

extern "C" {

int32_t LXAPI_CALL LXAPI_Init(void) { return note("LXAPI_Init"); }
int32_t LXAPI_CALL LXAPI_Exit(void) { return note("LXAPI_Exit"); }

uint32_t LXAPI_CALL LXAPI_GetFirstInstalledEngine(void) {
  return noteHandle(recording().installed(1) != nullptr ? 1 : 0, "LXAPI_GetFirstInstalledEngine");
}

uint32_t LXAPI_CALL LXAPI_GetNextInstalledEngine(uint32_t cursor) {
  return noteHandle(recording().installed(cursor + 1) != nullptr ? cursor + 1 : 0,
                    "LXAPI_GetNextInstalledEngine", cursor);
}

int32_t LXAPI_CALL LXAPI_GetEngineInfoFieldEx2(uint32_t cursor, const wchar_t** key1, const wchar_t** key2,
                                               int32_t* engineNumber, const wchar_t** text3,
                                               const wchar_t** text4, const wchar_t** text5,
                                               const wchar_t** gender, const wchar_t** text7,
                                               int32_t* sampleRateHz, int32_t* number9,
                                               const wchar_t** language, const wchar_t** engineType) {
  if (const InstalledEngine* const engine = recording().installed(cursor)) {
    *key1 = engine->key1.c_str();
    *key2 = engine->key2.c_str();
    *engineNumber = engine->engineNumber;
    *text3 = engine->text3.c_str();
    *text4 = engine->text4.c_str();
    *text5 = engine->text5.c_str();
    *gender = engine->gender.c_str();
    *text7 = engine->text7.c_str();
    *sampleRateHz = engine->sampleRateHz;
    *number9 = engine->number9;
    *language = engine->language.c_str();
    *engineType = engine->type.c_str();
  }
  return note("LXAPI_GetEngineInfoFieldEx2", cursor);
}

uint32_t LXAPI_CALL LXAPI_CreateHandle(void) {
  return noteHandle(++recording().lastHandle, "LXAPI_CreateHandle");
}

uint32_t LXAPI_CALL LXAPI_GetEngine(const char* key1, const char* key2) {
  return noteHandle(recording().findEngine(key1, key2), "LXAPI_GetEngine", key1, key2);
}

int32_t LXAPI_CALL LXAPI_GetTTSInfo(uint32_t engine, LXTTSINFO* info) {
  *info = recording().ttsInfo;
  return note("LXAPI_GetTTSInfo", engine, Output{info, "info"});
}

int32_t LXAPI_CALL LXAPI_SetEngineHandle(uint32_t tts, uint32_t engine) {
  return note("LXAPI_SetEngineHandle", tts, engine);
}

int32_t LXAPI_CALL LXAPI_LoadEngine(uint32_t engine) { return note("LXAPI_LoadEngine", engine); }
int32_t LXAPI_CALL LXAPI_UnloadEngine(uint32_t engine) { return note("LXAPI_UnloadEngine", engine); }

int32_t LXAPI_CALL LXAPI_SetAttr(uint32_t tts, int32_t attribute, int32_t value) {
  return note("LXAPI_SetAttr", tts, attribute, value);
}

int32_t LXAPI_CALL LXAPI_SetEngineAttr(uint32_t engine, int32_t attribute, int32_t value) {
  return note("LXAPI_SetEngineAttr", engine, attribute, value);
}

int32_t LXAPI_CALL LXAPI_SetOutputAudio(uint32_t tts, LXAUDIOOUT output) {
  return note("LXAPI_SetOutputAudio", tts, output);
}

int32_t LXAPI_CALL LXAPI_SetEvent(uint32_t tts, LXEVENTPROC procedure, int32_t mask) {
  recording().eventProcedure = procedure;
  return note("LXAPI_SetEvent", tts, Output{address(procedure), "procedure"}, mask);
}

int32_t LXAPI_CALL LXAPI_Speak(uint32_t tts, const char* utf8, int32_t length, int32_t flags) {
  return note("LXAPI_Speak", tts, utf8, length, flags);
}

int32_t LXAPI_CALL LXAPI_SynthesizeAsync(uint32_t tts, const char* utf8, int32_t length, int32_t flags,
                                         int32_t reserved) {
  return note("LXAPI_SynthesizeAsync", tts, utf8, length, flags, reserved);
}

int32_t LXAPI_CALL LXAPI_Stop(uint32_t tts) { return note("LXAPI_Stop", tts); }
int32_t LXAPI_CALL LXAPI_Pause(uint32_t tts) { return note("LXAPI_Pause", tts); }
int32_t LXAPI_CALL LXAPI_Resume(uint32_t tts) { return note("LXAPI_Resume", tts); }

int32_t LXAPI_CALL LXAPI_SetOutputFile(uint32_t tts, const char* path, int32_t fileCode) {
  recording().outputFile = path;
  return note("LXAPI_SetOutputFile", tts, path, fileCode);
}

int32_t LXAPI_CALL LXAPI_TextToFile(uint32_t tts, const char* utf8, int32_t length, int32_t flags) {
  const auto& audio = recording().audio;
  if (!audio.empty()) {
    if (std::FILE* const file = std::fopen(recording().outputFile.c_str(), "wb")) {
      std::fwrite(audio.data(), 1, audio.size(), file);
      std::fclose(file);
    }
  }
  return note("LXAPI_TextToFile", tts, utf8, length, flags);
}

int32_t LXAPI_CALL LXAPI_SetOutputBuffer(uint32_t tts, int32_t reserved) {
  return note("LXAPI_SetOutputBuffer", tts, reserved);
}

int32_t LXAPI_CALL LXAPI_BufferOpen(uint32_t tts, const char* utf8, int32_t length, int32_t flags,
                                    int32_t reserved) {
  return note("LXAPI_BufferOpen", tts, utf8, length, flags, reserved);
}

int32_t LXAPI_CALL LXAPI_GetBuffer(uint32_t tts, void** buffer) {
  *buffer = recording().audio.data();
  return static_cast<int32_t>(
      noteHandle(recording().audio.size(), "LXAPI_GetBuffer", tts, Output{buffer, "buffer"}));
}

int32_t LXAPI_CALL LXAPI_FreeBuffer(void* buffer) {
  return note("LXAPI_FreeBuffer", Output{buffer, buffer == recording().audio.data() ? "buffer" : "stray"});
}

int32_t LXAPI_CALL LXAPI_BufferClose(uint32_t tts) { return note("LXAPI_BufferClose", tts); }

int32_t LXAPI_CALL LXAPI_LoadUserDict(uint32_t engine, int32_t number, const char* path) {
  return note("LXAPI_LoadUserDict", engine, number, path);
}

int32_t LXAPI_CALL LXAPI_UnloadUserDict(uint32_t engine, int32_t number) {
  return note("LXAPI_UnloadUserDict", engine, number);
}

uint32_t LXAPI_CALL LXAPI_CreateLexiconHandle(const char* path) {
  return noteHandle(++recording().lastHandle, "LXAPI_CreateLexiconHandle", path);
}

int32_t LXAPI_CALL LXAPI_SetLexiconHandle(uint32_t tts, uint32_t lexicon) {
  return note("LXAPI_SetLexiconHandle", tts, lexicon);
}

int32_t LXAPI_CDECL LXAPI_CallEngineInternal(uint32_t engine, const char* name, int32_t* result, char* text,
                                             void* word, int32_t count, ...) {
  std::string function = std::string(name) + '(';
  std::string arguments =
      list(engine, name, Output{result, "result"}, Output{text, "text"}, Output{word, "word"}, count);
  va_list values;
  va_start(values, count);
  for (int32_t i = 0; i < count; ++i) {
    const std::string value = std::to_string(va_arg(values, intptr_t));
    function += (i > 0 ? ", " : "") + value;
    arguments += ", " + value;
  }
  va_end(values);
  function += ')';
  const auto& numbers = recording().internalNumbers;
  if (const auto found = numbers.find(function); found != numbers.end()) {
    if (result != nullptr) *result = found->second;
    if (word != nullptr) *static_cast<intptr_t*>(word) = found->second;
  }
  const auto& texts = recording().internalTexts;
  if (const auto found = texts.find(function); found != texts.end() && text != nullptr) {
    constexpr std::size_t kBufferSize = 1000;
    std::memcpy(text, found->second.c_str(), std::min(found->second.size() + 1, kBufferSize));
  }
  return recording().record("LXAPI_CallEngineInternal", arguments);
}

}  // extern "C"
