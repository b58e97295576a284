// The engine's functions by name.

#include <array>
#include <cstdarg>

#include "lxapi/bundled/guarded.h"
#include "lxapi/bundled/internal_functions.h"
#include "lxapi/lxapi.h"

int32_t LXAPI_CDECL LXAPI_CallEngineInternal(uint32_t engine, const char* name, int32_t* result, char* text,
                                             void* word, int32_t count, ...) {
  constexpr int32_t kMostArguments = 8;
  if (name == nullptr || count < 0 || count > kMostArguments) return LX_ERROR_BAD_ARGUMENT;
  std::array<intptr_t, kMostArguments> arguments{};
  va_list list;
  va_start(list, count);
  for (int32_t index = 0; index < count; ++index)
    arguments[static_cast<size_t>(index)] = va_arg(list, intptr_t);
  va_end(list);
  return lxapi::guarded([&]() -> int32_t {
    lxapi::Library& library = lxapi::Library::instance();
    const auto found = library.engine(engine);
    if (!found) return library.handleError();
    return lxapi::callInternalFunction(
        name, {*found, result, text, word, std::span(arguments).first(static_cast<size_t>(count))});
  });
}
