// User dictionaries and lexicons.

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "lxapi/bundled/dictionary.h"
#include "lxapi/bundled/guarded.h"
#include "lxapi/bundled/library.h"
#include "lxapi/lxapi.h"
#include "win32/text.h"

using lxapi::DictionaryKind;
using lxapi::DictionaryResult;
using lxapi::guarded;
using lxapi::guardedHandle;
using lxapi::Library;

namespace {

/// Reads and checks a file whole before anything is replaced.
DictionaryResult loadDictionary(const char* path, DictionaryKind kind) {
  const std::filesystem::path file = speech::fromSystemCodePage(path);
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(file, error);
  if (error) return {LX_ERROR_FILE, 0, nullptr};
  if (size > lxapi::kMostDictionaryBytes) return {LX_ERROR_DICT_SIZE, 0, nullptr};
  std::ifstream stream(file, std::ios::binary);
  std::string text(static_cast<size_t>(size), '\0');
  if (!stream.read(text.data(), static_cast<std::streamsize>(size))) return {LX_ERROR_FILE, 0, nullptr};
  return lxapi::parseDictionary(text, kind);
}

}  // namespace

int32_t LXAPI_CALL LXAPI_LoadUserDict(uint32_t engine, int32_t number, const char* path) {
  return guarded([=]() -> int32_t {
    Library& library = Library::instance();
    const auto found = library.engine(engine);
    if (!found) return library.handleError();
    if (path == nullptr || number < 0 || number >= lxapi::kMostDictionaries) return LX_ERROR_BAD_ARGUMENT;
    DictionaryResult result = loadDictionary(path, DictionaryKind::Text);
    if (result.error != LX_OK) return result.error;
    const std::lock_guard guard(found->mutex);
    found->dictionaries[number] = std::move(result.substitutions);
    return LX_OK;
  });
}

int32_t LXAPI_CALL LXAPI_UnloadUserDict(uint32_t engine, int32_t number) {
  return guarded([=]() -> int32_t {
    Library& library = Library::instance();
    const auto found = library.engine(engine);
    if (!found) return library.handleError();
    const std::lock_guard guard(found->mutex);
    return found->dictionaries.erase(number) == 1 ? LX_OK : LX_ERROR_NOT_LOADED;
  });
}

uint32_t LXAPI_CALL LXAPI_CreateLexiconHandle(const char* path) {
  return guardedHandle([=]() -> uint32_t {
    Library& library = Library::instance();
    if (path == nullptr || !library.isStarted()) return 0;
    DictionaryResult result = loadDictionary(path, DictionaryKind::Phonemes);
    return result.error == LX_OK ? library.addLexicon(std::move(result.substitutions)) : 0;
  });
}

int32_t LXAPI_CALL LXAPI_SetLexiconHandle(uint32_t tts, uint32_t lexicon) {
  return guarded([=]() -> int32_t {
    Library& library = Library::instance();
    const auto synthesis = library.synthesis(tts);
    if (!synthesis) return library.handleError();
    auto found = library.lexicon(lexicon);
    if (!found) return LX_ERROR_BAD_HANDLE;
    const std::lock_guard guard(synthesis->mutex);
    synthesis->lexicon = std::move(found);
    return LX_OK;
  });
}
