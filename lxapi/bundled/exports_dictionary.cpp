// User dictionaries, lexicons and the engine's functions by name.

#include <cstdarg>
#include <cstring>

#include "lxapi/bundled/guarded.h"
#include "lxapi/bundled/library.h"
#include "lxapi/bundled/voice_settings.h"
#include "lxapi/lxapi.h"

using lxapi::guarded;
using lxapi::Library;

int32_t LXAPI_CALL LXAPI_LoadUserDict(uint32_t engine, int32_t, const char*) {
  return guarded([=]() -> int32_t {
    Library& library = Library::instance();
    return library.engine(engine) ? LX_ERROR_UNSUPPORTED : library.handleError();
  });
}

int32_t LXAPI_CALL LXAPI_UnloadUserDict(uint32_t engine, int32_t) {
  return guarded([=]() -> int32_t {
    Library& library = Library::instance();
    return library.engine(engine) ? LX_ERROR_UNSUPPORTED : library.handleError();
  });
}

uint32_t LXAPI_CALL LXAPI_CreateLexiconHandle(const char*) { return 0; }

int32_t LXAPI_CALL LXAPI_SetLexiconHandle(uint32_t tts, uint32_t) {
  return guarded([=]() -> int32_t {
    Library& library = Library::instance();
    return library.synthesis(tts) ? LX_ERROR_BAD_HANDLE : library.handleError();
  });
}

int32_t LXAPI_CDECL LXAPI_CallEngineInternal(uint32_t engine, const char* name, int32_t* result, char*, void*,
                                             int32_t count, ...) {
  constexpr int32_t kMostArguments = 8;
  if (name == nullptr || count < 0 || count > kMostArguments) return LX_ERROR_BAD_ARGUMENT;
  intptr_t arguments[kMostArguments] = {};
  va_list list;
  va_start(list, count);
  for (int32_t index = 0; index < count; ++index) arguments[index] = va_arg(list, intptr_t);
  va_end(list);
  return guarded([&]() -> int32_t {
    Library& library = Library::instance();
    if (!library.engine(engine)) return library.handleError();
    if (std::strcmp(name, "LX_GetTTSInfo") != 0) return LX_ERROR_UNKNOWN_ATTRIBUTE;
    if (result == nullptr || count < 1) return LX_ERROR_BAD_ARGUMENT;
    const std::optional<int32_t> answer = lxapi::voiceInformation(arguments[0]);
    if (!answer) return LX_ERROR_UNKNOWN_ATTRIBUTE;
    *result = *answer;
    return LX_OK;
  });
}
