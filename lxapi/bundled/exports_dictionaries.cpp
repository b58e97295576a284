// User dictionaries and lexicons.

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "lxapi/bundled/dictionary.h"
#include "lxapi/bundled/exported_call.h"
#include "lxapi/bundled/library.h"
#include "lxapi/lxapi.h"
#include "win32/text.h"

using namespace speech::lxapi;

namespace {

/// Reads and checks a file whole before anything is replaced.
DictionaryResult loadDictionary(const char* path, DictionaryKind kind) {
  const std::filesystem::path file = speech::fromSystemCodePage(path);
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(file, error);
  if (error) return {LX_ERROR_FILE, 0, nullptr};
  if (size > kMostDictionaryBytes) return {LX_ERROR_DICT_SIZE, 0, nullptr};
  std::ifstream stream(file, std::ios::binary);
  std::string text(static_cast<size_t>(size), '\0');
  if (!stream.read(text.data(), static_cast<std::streamsize>(size))) return {LX_ERROR_FILE, 0, nullptr};
  return parseDictionary(text, kind);
}

}  // namespace

int32_t LXAPI_CALL LXAPI_LoadUserDict(uint32_t engine, int32_t number, const char* path) {
  return withEngine(engine, [=](Engine& found) -> int32_t {
    if (path == nullptr || number < 0 || number >= kMostDictionaries) return LX_ERROR_BAD_ARGUMENT;
    DictionaryResult result = loadDictionary(path, DictionaryKind::kText);
    if (result.error != LX_OK) return result.error;
    const std::lock_guard guard(found.mutex);
    found.dictionaries[number] = std::move(result.dictionary);
    return LX_OK;
  });
}

int32_t LXAPI_CALL LXAPI_UnloadUserDict(uint32_t engine, int32_t number) {
  return withLockedEngine(engine, [=](Engine& found) -> int32_t {
    return found.dictionaries.erase(number) == 1 ? LX_OK : LX_ERROR_NOT_LOADED;
  });
}

uint32_t LXAPI_CALL LXAPI_CreateLexiconHandle(const char* path) {
  return exportedHandleCall([=]() -> uint32_t {
    Library& library = Library::instance();
    if (path == nullptr || !library.isStarted()) return 0;
    DictionaryResult result = loadDictionary(path, DictionaryKind::kPhonemes);
    return result.error == LX_OK ? library.addLexicon(std::move(result.dictionary)) : 0;
  });
}

int32_t LXAPI_CALL LXAPI_SetLexiconHandle(uint32_t tts, uint32_t lexicon) {
  return withLockedSynthesis(tts, [=](Synthesis& synthesis) -> int32_t {
    std::shared_ptr<const Dictionary> found = Library::instance().lexicon(lexicon);
    if (!found) return LX_ERROR_BAD_HANDLE;
    synthesis.lexicon = std::move(found);
    return LX_OK;
  });
}
