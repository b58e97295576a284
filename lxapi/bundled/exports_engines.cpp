// Start and end, installed engines, handles, and what an engine can be told.

#include <algorithm>
#include <string_view>

#include "lxapi/bundled/exported_call.h"
#include "lxapi/bundled/library.h"
#include "lxapi/bundled/synthesizer.h"
#include "lxapi/lxapi.h"
#include "win32/text.h"

using namespace speech::lxapi;

namespace {

constexpr const wchar_t* kLicence = L"Speech by eSpeak NG, GNU General Public License, version 3 or later";

template <size_t size>
void copyText(wchar_t (&target)[size], std::wstring_view text) {
  const size_t count = std::min(text.size(), size - 1);
  std::copy_n(text.begin(), count, target);
  target[count] = L'\0';
}

void store(const wchar_t** target, const std::wstring& text) {
  if (target != nullptr) *target = text.c_str();
}

void store(int32_t* target, int32_t number) {
  if (target != nullptr) *target = number;
}

}  // namespace

int32_t LXAPI_CALL LXAPI_Init(void) {
  return exportedCall([] { return Library::instance().start(); });
}

int32_t LXAPI_CALL LXAPI_Exit(void) {
  return exportedCall([] { return Library::instance().end(); });
}

uint32_t LXAPI_CALL LXAPI_GetFirstInstalledEngine(void) { return LXAPI_GetNextInstalledEngine(0); }

uint32_t LXAPI_CALL LXAPI_GetNextInstalledEngine(uint32_t cursor) {
  return exportedHandleCall([=]() -> uint32_t {
    // Behind the largest cursor there is nothing, least of all the first engine again.
    return Library::instance().installedEngine(cursor + 1) != nullptr ? cursor + 1 : 0;
  });
}

int32_t LXAPI_CALL LXAPI_GetEngineInfoFieldEx2(uint32_t cursor, const wchar_t** key1, const wchar_t** key2,
                                               int32_t* engineNumber, const wchar_t** text3,
                                               const wchar_t** text4, const wchar_t** text5,
                                               const wchar_t** gender, const wchar_t** text7,
                                               int32_t* sampleRateHz, int32_t* number9,
                                               const wchar_t** language, const wchar_t** engineType) {
  return exportedCall([&]() -> int32_t {
    Library& library = Library::instance();
    const InstalledEngine* const engine = library.installedEngine(cursor);
    if (engine == nullptr) return library.handleError();
    store(key1, engine->key1);
    store(key2, engine->key2);
    store(engineNumber, static_cast<int32_t>(cursor - 1));
    store(text3, engine->text3);
    store(text4, engine->text4);
    store(text5, engine->text5);
    store(gender, engine->gender);
    store(text7, engine->text7);
    store(sampleRateHz, engine->sampleRateHz);
    store(number9, engine->number9);
    store(language, engine->language);
    store(engineType, engine->engineType);
    return LX_OK;
  });
}

uint32_t LXAPI_CALL LXAPI_CreateHandle(void) {
  return exportedHandleCall([] { return Library::instance().createSynthesis(); });
}

uint32_t LXAPI_CALL LXAPI_GetEngine(const char* key1, const char* key2) {
  if (key1 == nullptr || key2 == nullptr) return 0;
  return exportedHandleCall([=] { return Library::instance().openEngine(key1, key2); });
}

int32_t LXAPI_CALL LXAPI_GetTTSInfo(uint32_t engine, LXTTSINFO* info) {
  return withEngine(engine, [=](const Engine& found) -> int32_t {
    if (info == nullptr) return LX_ERROR_BAD_ARGUMENT;
    const InstalledEngine& installed = found.installed;
    *info = {};
    copyText(info->name, installed.key1);
    copyText(info->text1, installed.text7);
    if (!installed.synthesizerVoice.empty()) {
      copyText(info->version, speech::fromUtf8(Synthesizer::instance().version()));
      copyText(info->text2, kLicence);
    }
    copyText(info->folder, libraryFolder().native());
    return LX_OK;
  });
}

int32_t LXAPI_CALL LXAPI_LoadEngine(uint32_t engine) {
  return withLockedEngine(engine, [](Engine& found) -> int32_t {
    if (found.installed.synthesizerVoice.empty()) return LX_ERROR_UNSUPPORTED;
    found.isLoaded = true;
    return LX_OK;
  });
}

int32_t LXAPI_CALL LXAPI_UnloadEngine(uint32_t engine) {
  return withEngine(engine, [](Engine& found) -> int32_t {
    {
      const std::lock_guard guard(found.mutex);
      if (!found.isLoaded) return LX_ERROR_NOT_LOADED;
      found.isLoaded = false;
    }
    Library::instance().stopSpeechesOf(found);
    return LX_OK;
  });
}

int32_t LXAPI_CALL LXAPI_SetEngineAttr(uint32_t engine, int32_t attribute, int32_t value) {
  return withLockedEngine(engine, [=](Engine& found) -> int32_t {
    if (attribute != LX_ATTR_COMMA_PAUSE) return LX_ERROR_UNKNOWN_ATTRIBUTE;
    found.commaPauseMs = kCommaPauseRange.clamp(value);
    return LX_OK;
  });
}
