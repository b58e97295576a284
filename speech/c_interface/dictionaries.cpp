// User dictionaries.

#include "base/file.h"
#include "engines/local/orvane_lxapi.h"
#include "speech/c_interface/open_engine.h"
#include "speech/c_interface/session.h"
#include "speech/c_interface/temporary_output.h"
#include "speech/c_interface/text.h"
#include "win32/text.h"

namespace speech::c_interface {
namespace {

bool hasContent(const std::wstring& path) {
  const File file = openFile(path.c_str(), L"rb");
  return file != nullptr && std::fgetc(file.get()) != EOF;
}

template <class Char>
std::int32_t load(SpeechEngine handle, const Char* path) {
  return answeredBy(handle, [&](OpenEngine& engine) {
    const std::wstring wide = textOf(path);
    engine.requireLocal();
    if (!hasContent(wide))
      throw Failure(SPEECH_ERROR_FILE, "The dictionary is missing or empty: " + toUtf8(wide));
    // Every lexicon gets the same result, so the message for the user is what shows a failure.
    std::string failure;
    engine.local().loadUserDict(toThreadCodePage(narrowPath(wide)).c_str(),
                                [&](const wchar_t* text) { failure = toUtf8(text); });
    if (!failure.empty()) throw Failure(SPEECH_ERROR_DICTIONARY, failure);
  });
}

template <class Char>
std::int32_t edit(SpeechEngine handle, const Char* path, const Char* extra) {
  return answeredBy(handle, [&](OpenEngine& engine) {
    const std::wstring file = textOrNone(path);
    const std::wstring parameters = textOrNone(extra);
    const Busy busy;
    if (!engine.instance().runUserDictEditor(file.c_str(), parameters.c_str()))
      throw Failure(SPEECH_ERROR_TOOL);
  });
}

using Question = int (*)(ITextToSpeech& instance, intptr_t argument);

/// By SpeechDictionaryQuestion.
constexpr Question kQuestions[] = {
    [](ITextToSpeech& instance, intptr_t argument) { return instance.getUserDictLimit(argument); },
    [](ITextToSpeech& instance, intptr_t argument) { return instance.checkUserDictSourceLen(argument); },
    [](ITextToSpeech& instance, intptr_t argument) { return instance.checkUserDictSourceNorm(argument); },
    [](ITextToSpeech& instance, intptr_t argument) { return instance.checkUserDictTargetNorm(argument); },
    [](ITextToSpeech& instance, intptr_t argument) { return instance.checkUserDictTargetPhon(argument); },
    [](ITextToSpeech& instance, intptr_t argument) { return instance.checkUserDictSubstitution(argument); },
    [](ITextToSpeech& instance, intptr_t argument) { return instance.getPinyinActiveInfo(argument, 0); },
};

}  // namespace
}  // namespace speech::c_interface

using namespace speech::c_interface;

int32_t SPEECH_CALL speech_dictionary_load(SpeechEngine engine, const char* path) {
  return load(engine, path);
}

int32_t SPEECH_CALL speech_dictionary_load_w(SpeechEngine engine, const wchar_t* path) {
  return load(engine, path);
}

int32_t SPEECH_CALL speech_dictionary_unload(SpeechEngine engine, int32_t number) {
  return answeredBy(engine, [&](OpenEngine& open) {
    open.requireLocal();
    if (open.instance().unloadUserDict(number) != 0) throw Failure(SPEECH_ERROR_DICTIONARY);
  });
}

int32_t SPEECH_CALL speech_dictionary_ask(SpeechEngine engine, int32_t question, intptr_t argument,
                                          int32_t* answer) {
  return answeredBy(engine, [&](OpenEngine& open) {
    constexpr int kNoAnswer = -1;
    required(answer);
    if (question < 0 || static_cast<std::size_t>(question) >= std::size(kQuestions)) {
      throw Failure(SPEECH_ERROR_ARGUMENT);
    }
    const int said = kQuestions[question](open.instance(), argument);
    if (said == kNoAnswer) throw Failure(SPEECH_ERROR_UNSUPPORTED);
    *answer = said;
  });
}

int32_t SPEECH_CALL speech_dictionary_edit(SpeechEngine engine, const char* path, const char* extra) {
  return edit(engine, path, extra);
}

int32_t SPEECH_CALL speech_dictionary_edit_w(SpeechEngine engine, const wchar_t* path, const wchar_t* extra) {
  return edit(engine, path, extra);
}
