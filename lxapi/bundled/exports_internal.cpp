// The functions of an engine that hosts call by name: limits and checks of user dictionaries, a CSV parser.

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstring>
#include <iterator>
#include <span>
#include <string_view>

#include "base/utf8.h"
#include "lxapi/bundled/dictionary.h"
#include "lxapi/bundled/exported_call.h"
#include "lxapi/bundled/voice_settings.h"
#include "lxapi/lxapi.h"

namespace speech::lxapi {
namespace {

/// What a call by name brings along; see LXAPI_CallEngineInternal.
struct InternalCall {
  const Engine& engine;
  int32_t* result;
  char* text;
  void* word;
  std::span<const intptr_t> arguments;
};

// The caller's buffer for a text, with its zero byte.
constexpr size_t kTextBytes = 1000;

// A parser's text lies in memory twice while it is read.
constexpr size_t kMostCsvBytes = 2 * kMostDictionaryBytes;

/// The caller's text behind an argument, cut off where it is longer than any that has a meaning.
std::string_view textAt(intptr_t address) {
  const char* const text = reinterpret_cast<const char*>(address);
  return {text, strnlen(text, kMostCsvBytes + 1)};
}

int32_t answer(const InternalCall& call, int32_t value) {
  *call.result = value;
  return LX_OK;
}

int32_t getTtsInfo(const InternalCall& call) {
  const std::optional<int32_t> value = voiceInformation(call.arguments[0]);
  return value ? answer(call, *value) : LX_ERROR_UNKNOWN_ATTRIBUTE;
}

int32_t getUserDictLimit(const InternalCall& call) {
  switch (call.arguments[0]) {
    case LX_DICT_LIMIT_ENTRIES:
      return answer(call, static_cast<int32_t>(kMostDictionaryEntries));
    case LX_DICT_LIMIT_SOURCE:
      return answer(call, static_cast<int32_t>(kLongestSource));
    case LX_DICT_LIMIT_TARGET:
      return answer(call, static_cast<int32_t>(kLongestTarget));
    case LX_DICT_LIMIT_BYTES:
      return answer(call, static_cast<int32_t>(kMostDictionaryBytes));
    case LX_DICT_LIMIT_NUMBERS:
      return answer(call, kMostDictionaries);
    default:
      return LX_ERROR_UNKNOWN_ATTRIBUTE;
  }
}

template <LxDictCheck (*check)(std::string_view)>
int32_t checkText(const InternalCall& call) {
  return call.arguments[0] != 0 ? answer(call, check(textAt(call.arguments[0]))) : LX_ERROR_BAD_ARGUMENT;
}

int32_t csvParserInit(const InternalCall& call) {
  const auto handle = static_cast<intptr_t>(Library::instance().createCsvSession());
  std::memcpy(call.word, &handle, sizeof(handle));
  return handle != 0 ? LX_OK : LX_ERROR_NOT_STARTED;
}

/// Runs `body` on the host's parser that the first argument names.
template <typename Body>
int32_t withCsvSession(const InternalCall& call, const Body& body) {
  const std::shared_ptr<CsvSession> session = Library::instance().csvSession(call.arguments[0]);
  if (!session) return LX_ERROR_BAD_HANDLE;
  const std::lock_guard guard(session->mutex);
  return body(*session);
}

int32_t readCsvRecord(CsvSession& session, size_t leastFields) {
  if (!session.parser) return LX_ERROR_BAD_ARGUMENT;
  switch (session.parser->next(session.fields)) {
    case CsvParser::Status::kEnd:
      return 0;
    case CsvParser::Status::kRecord:
      if (session.fields.size() < leastFields) return LX_ERROR_DICT_FORMAT;
      return static_cast<int32_t>(session.parser->line());
    default:
      return LX_ERROR_DICT_FORMAT;
  }
}

int32_t csvParserParsing(const InternalCall& call) {
  return withCsvSession(call, [&](CsvSession& session) {
    if (call.arguments[1] != 0) {
      const std::string_view text = textAt(call.arguments[1]);
      if (text.size() > kMostCsvBytes) return answer(call, LX_ERROR_DICT_SIZE);
      if (!isValidUtf8(text)) return answer(call, LX_ERROR_BAD_TEXT);
      session.text = text;
      session.parser.emplace(session.text);
    }
    const auto leastFields = static_cast<size_t>(std::max<intptr_t>(call.arguments[2], 0));
    return answer(call, readCsvRecord(session, leastFields));
  });
}

int32_t csvParserGetNfields(const InternalCall& call) {
  return withCsvSession(call, [&](const CsvSession& session) {
    return answer(call, static_cast<int32_t>(session.fields.size()));
  });
}

int32_t csvParserGetField(const InternalCall& call) {
  return withCsvSession(call, [&](const CsvSession& session) -> int32_t {
    const intptr_t index = call.arguments[1];
    if (index < 0 || static_cast<size_t>(index) >= session.fields.size()) return LX_ERROR_BAD_ARGUMENT;
    const std::string_view field = utf8Prefix(session.fields[static_cast<size_t>(index)], kTextBytes - 1);
    std::copy(field.begin(), field.end(), call.text);
    call.text[field.size()] = '\0';
    return LX_OK;
  });
}

int32_t csvParserMakeCsv(const InternalCall& call) {
  const auto& arguments = call.arguments;
  if (arguments[0] == 0 || arguments[1] == 0 || arguments[2] == 0 || arguments[3] <= 0)
    return LX_ERROR_BAD_ARGUMENT;
  const std::string record =
      makeCsvRecord({std::string(textAt(arguments[0])), std::string(textAt(arguments[1]))});
  if (record.size() >= static_cast<size_t>(arguments[3])) return answer(call, LX_ERROR_BAD_ARGUMENT);
  std::memcpy(reinterpret_cast<char*>(arguments[2]), record.c_str(), record.size() + 1);
  return answer(call, static_cast<int32_t>(record.size()));
}

int32_t getPinyinActiveInfo(const InternalCall& call) {
  const bool isActive = call.engine.installed.language.ends_with(L"-pinyin");
  return answer(call, isActive ? 1 : 0);
}

enum class Output { kResult, kText, kWord };

struct InternalFunction {
  std::string_view name;
  Output output;
  size_t argumentCount;
  int32_t (*call)(const InternalCall&);
};

constexpr InternalFunction kFunctions[] = {
    {"LX_GetTTSInfo", Output::kResult, 1, getTtsInfo},
    {"LX_GetUserDictLimit", Output::kResult, 1, getUserDictLimit},
    {"LX_CheckUserDict_SourceLen", Output::kResult, 1, checkText<checkSourceLength>},
    {"LX_CheckUserDict_SourceNorm", Output::kResult, 1, checkText<checkSource>},
    {"LX_CheckUserDict_TargetNorm", Output::kResult, 1, checkText<checkTargetText>},
    {"LX_CheckUserDict_TargetPhon", Output::kResult, 1, checkText<checkTargetPhonemes>},
    {"LX_CheckUserDict_Substitution", Output::kResult, 1, checkText<checkRecord>},
    {"LX_CsvParser_Init", Output::kWord, 0, csvParserInit},
    {"LX_CsvParser_Parsing", Output::kResult, 3, csvParserParsing},
    {"LX_CsvParser_GetNfields", Output::kResult, 1, csvParserGetNfields},
    {"LX_CsvParser_GetField", Output::kText, 2, csvParserGetField},
    {"LX_CsvParser_MakeCsv", Output::kResult, 4, csvParserMakeCsv},
    {"LX_GetPinyinActiveInfo", Output::kResult, 2, getPinyinActiveInfo},
};

const void* outputOf(const InternalCall& call, Output output) {
  switch (output) {
    case Output::kText:
      return call.text;
    case Output::kWord:
      return call.word;
    default:
      return call.result;
  }
}

/// @return LX_OK, LX_ERROR_UNKNOWN_ATTRIBUTE for an unknown name or number, or LX_ERROR_BAD_ARGUMENT
int32_t callInternalFunction(std::string_view name, const InternalCall& call) {
  const auto* const function =
      std::find_if(std::begin(kFunctions), std::end(kFunctions),
                   [name](const InternalFunction& candidate) { return candidate.name == name; });
  if (function == std::end(kFunctions)) return LX_ERROR_UNKNOWN_ATTRIBUTE;
  if (outputOf(call, function->output) == nullptr || call.arguments.size() < function->argumentCount) {
    return LX_ERROR_BAD_ARGUMENT;
  }
  return function->call(call);
}

}  // namespace
}  // namespace speech::lxapi

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
  return speech::lxapi::withEngine(engine, [&](const speech::lxapi::Engine& found) {
    return speech::lxapi::callInternalFunction(
        name, {found, result, text, word, std::span(arguments).first(static_cast<size_t>(count))});
  });
}
