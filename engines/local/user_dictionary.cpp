// User dictionaries, and the engine's own functions for those who edit them.

#include <cstdio>
#include <cstring>

#include "base/file.h"
#include "engines/engine_kind.h"
#include "engines/guarded.h"
#include "engines/local/orvane_lxapi.h"
#include "lxapi/lxapi.h"
#include "win32/text.h"

namespace speech {
namespace {

/// The number that a word list is loaded under.
constexpr int kWordListNumber = 0;

/// What every lexicon is answered with.
constexpr unsigned short kLexiconResult = 65535;

bool isWordList(const char* path) {
  const char* const extension = std::strrchr(path, '.');
  return extension != nullptr && _stricmp(extension, ".csv") == 0;
}

bool hasContent(const char* path) {
  const File file = openFile(path, "rb");
  return file != nullptr && std::fseek(file.get(), 0, SEEK_END) == 0 && std::ftell(file.get()) > 0;
}

/// Shows a message in a modal box; returns once the user has closed it.
void showUserMessage(const wchar_t* text) {
  MessageBoxW(nullptr, text, L"speech", MB_OK | MB_ICONEXCLAMATION | MB_TASKMODAL);
}

void reportLoadFailure(const UserReport& report, const char* path, int unloadResult, int loadResult) {
  CStringW message;
  message.Format(L"User dictionary load failed.\nFile name : %s\nError code : %d %d",
                 fromSystemCodePage(path).c_str(), unloadResult, loadResult);
  report(message);
}

}  // namespace

unsigned short OrvaneLXAPI::loadUserDict(const char* path) { return loadUserDict(path, showUserMessage); }

unsigned short OrvaneLXAPI::loadUserDict(const char* path, const UserReport& report) {
  const char* const file = path != nullptr ? path : "";
  if (!isWordList(file)) return guarded(kLexiconResult, [&] { return loadLexicon(file, report); });
  return guarded(static_cast<unsigned short>(LX_ERROR_MEMORY), [&] { return loadWordList(file, report); });
}

unsigned short OrvaneLXAPI::loadWordList(const char* path, const UserReport& report) {
  if (!hasContent(path)) return 0;
  const int unloadResult = static_cast<short>(unloadUserDict(kWordListNumber));
  const int loadResult = LXAPI_LoadUserDict(engineHandle_, kWordListNumber, path);
  if (loadResult != LX_OK) reportLoadFailure(report, path, unloadResult, loadResult);
  return static_cast<unsigned short>(loadResult);
}

unsigned short OrvaneLXAPI::loadLexicon(const char* path, const UserReport& report) const {
  if (LXAPI_SetLexiconHandle(ttsHandle_, LXAPI_CreateLexiconHandle(path)) != LX_OK) {
    reportLoadFailure(report, path, -1, -1);
  } else if (LXAPI_SetAttr(ttsHandle_, LX_ATTR_LEXICON, 0) != LX_OK) {
    report(L"LXAPI_SetAttr failed.");
  }
  // Kept: success and failure alike.
  return kLexiconResult;
}

int OrvaneLXAPI::unloadUserDict(int number) {
  constexpr int kNumberOfTypeNv = 1;
  const bool isTypeNv = guarded(false, [&] { return isNvEngine(product_->getEngineType()); });
  return LXAPI_UnloadUserDict(engineHandle_, isTypeNv ? kNumberOfTypeNv : number);
}

// The arguments are numbers or addresses of the host's data; they go to the engine unread.
template <class... Arguments>
int OrvaneLXAPI::callInternal(const char* name, Arguments... arguments) const {
  std::int32_t result = -1;
  LXAPI_CallEngineInternal(engineHandle_, name, &result, nullptr, nullptr, sizeof...(arguments),
                           arguments...);
  return result;
}

int OrvaneLXAPI::getUserDictLimit(intptr_t a) { return callInternal("LX_GetUserDictLimit", a); }

int OrvaneLXAPI::checkUserDictSourceLen(intptr_t a) { return callInternal("LX_CheckUserDict_SourceLen", a); }

int OrvaneLXAPI::checkUserDictSourceNorm(intptr_t a) {
  return callInternal("LX_CheckUserDict_SourceNorm", a);
}

int OrvaneLXAPI::checkUserDictTargetNorm(intptr_t a) {
  return callInternal("LX_CheckUserDict_TargetNorm", a);
}

int OrvaneLXAPI::checkUserDictTargetPhon(intptr_t a) {
  return callInternal("LX_CheckUserDict_TargetPhon", a);
}

int OrvaneLXAPI::checkUserDictSubstitution(intptr_t a) {
  return callInternal("LX_CheckUserDict_Substitution", a);
}

int OrvaneLXAPI::csvParserParsing(intptr_t a, intptr_t b) {
  // Kept: the third argument is the engine's, not the host's.
  return callInternal("LX_CsvParser_Parsing", a, b, intptr_t{2});
}

int OrvaneLXAPI::csvParserGetNfields(intptr_t a) { return callInternal("LX_CsvParser_GetNfields", a); }

int OrvaneLXAPI::csvParserMakeCsv(intptr_t a, intptr_t b, intptr_t c, intptr_t d) {
  return callInternal("LX_CsvParser_MakeCsv", a, b, c, d);
}

int OrvaneLXAPI::getPinyinActiveInfo(intptr_t a, intptr_t b) {
  return callInternal("LX_GetPinyinActiveInfo", a, b);
}

intptr_t OrvaneLXAPI::csvParserInit() {
  intptr_t parser = 0;
  LXAPI_CallEngineInternal(engineHandle_, "LX_CsvParser_Init", nullptr, nullptr, &parser, 0);
  return parser;
}

const char* OrvaneLXAPI::csvParserGetField(intptr_t a, intptr_t b) {
  field_.fill('\0');
  LXAPI_CallEngineInternal(engineHandle_, "LX_CsvParser_GetField", nullptr, field_.data(), nullptr, 2, a, b);
  field_.back() = '\0';
  return field_.data();
}

}  // namespace speech
