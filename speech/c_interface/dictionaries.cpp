// speech/c/dictionaries.h: user dictionaries, and the lines of word lists by the engine's own reader and
// writer.

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string>

#include "base/file.h"
#include "speech/c_interface/open_engine.h"
#include "speech/c_interface/session.h"
#include "speech/c_interface/text.h"
#include "win32/paths.h"
#include "win32/text.h"

namespace speech::c_interface {
namespace {

/// What the engine's own functions answer where they have no answer.
constexpr int kNoAnswer = -1;

bool hasContent(const std::wstring& path) {
  const File file = openFile(path.c_str(), L"rb");
  return file != nullptr && std::fgetc(file.get()) != EOF;
}

template <class Char>
std::int32_t load(SpeechEngine handle, const Char* path) {
  return answeredBy(handle, [&](OpenEngine& engine) {
    const std::wstring wide = textOf(path);
    OrvaneLXAPI& local = engine.local();
    if (!hasContent(wide))
      throw Failure(SPEECH_ERROR_FILE, "The dictionary is missing or empty: " + toUtf8(wide));
    const auto narrow = narrowPath(wide);
    if (!narrow) {
      throw Failure(SPEECH_ERROR_FILE, "The engine cannot open paths with these characters: " + toUtf8(wide));
    }
    // Every lexicon gets the same result, so the message for the user is what shows a failure.
    std::string failure;
    local.loadUserDict(narrow->c_str(), [&](const wchar_t* text) { failure = toUtf8(text); });
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

using Question = int (*)(ITextToSpeech& engine, std::intptr_t argument);

template <auto function>
int ask(ITextToSpeech& engine, std::intptr_t argument) {
  return (engine.*function)(argument);
}

/// By SpeechDictionaryQuestion.
constexpr Question kQuestions[] = {
    ask<&ITextToSpeech::getUserDictLimit>,
    ask<&ITextToSpeech::checkUserDictSourceLen>,
    ask<&ITextToSpeech::checkUserDictSourceNorm>,
    ask<&ITextToSpeech::checkUserDictTargetNorm>,
    ask<&ITextToSpeech::checkUserDictTargetPhon>,
    ask<&ITextToSpeech::checkUserDictSubstitution>,
    [](ITextToSpeech& engine, std::intptr_t argument) { return engine.getPinyinActiveInfo(argument, 0); },
};

/// An engine's answer. Fails where it has none, and with `refusal` where it is an error code.
std::int32_t answerOf(int said, std::int32_t refusal) {
  if (said == kNoAnswer) throw Failure(SPEECH_ERROR_UNSUPPORTED);
  if (said < 0) throw Failure(refusal, "The engine answered " + std::to_string(said) + ".");
  return said;
}

std::intptr_t addressOf(const std::string& text) { return reinterpret_cast<std::intptr_t>(text.c_str()); }

template <class Char>
std::int32_t read(SpeechEngine handle, std::intptr_t reader, const Char* text, std::int32_t* line) {
  return answeredBy(handle, [&](OpenEngine& engine) {
    required(line);
    OrvaneLXAPI& local = engine.local();
    const std::string utf8 = toUtf8(textOrNone(text));
    const int said = local.csvParserParsing(reader, text != nullptr ? addressOf(utf8) : 0);
    *line = answerOf(said, SPEECH_ERROR_DICTIONARY);
  });
}

template <class Char>
std::int32_t field(SpeechEngine handle, std::intptr_t reader, std::int32_t index, Char* buffer,
                   std::uint32_t capacity, std::uint32_t* length) {
  return answeredBy(handle, [&](OpenEngine& engine) {
    handOut(textOfUnknown(engine.local().csvParserGetField(reader, index)), buffer, capacity, length);
  });
}

template <class Char>
std::int32_t make(SpeechEngine handle, const Char* source, const Char* target, Char* buffer,
                  std::uint32_t capacity, std::uint32_t* length) {
  return answeredBy(handle, [&](OpenEngine& engine) {
    const std::string from = toUtf8(textOf(source));
    const std::string to = toUtf8(textOf(target));
    OrvaneLXAPI& local = engine.local();
    // At most every letter is a doubled quote; around both come quotes, a comma, the line end and a zero
    // byte.
    constexpr std::size_t kAroundBoth = 8;
    std::string record(2 * (from.size() + to.size()) + kAroundBoth, '\0');
    const int said = local.csvParserMakeCsv(addressOf(from), addressOf(to), addressOf(record),
                                            static_cast<std::intptr_t>(record.size()));
    const auto size = static_cast<std::size_t>(answerOf(said, SPEECH_ERROR_REFUSED));
    record.resize(std::min(size, record.size()));
    handOut(textOfUnknown(record), buffer, capacity, length);
  });
}

}  // namespace
}  // namespace speech::c_interface

using namespace speech::c_interface;

std::int32_t SPEECH_CALL speech_dictionary_load(SpeechEngine engine, const char* path) {
  return load(engine, path);
}

std::int32_t SPEECH_CALL speech_dictionary_load_w(SpeechEngine engine, const wchar_t* path) {
  return load(engine, path);
}

std::int32_t SPEECH_CALL speech_dictionary_unload(SpeechEngine engine, std::int32_t number) {
  return answeredBy(engine, [&](OpenEngine& open) {
    if (open.local().unloadUserDict(number) != 0) throw Failure(SPEECH_ERROR_DICTIONARY);
  });
}

std::int32_t SPEECH_CALL speech_dictionary_ask(SpeechEngine engine, std::int32_t question,
                                               std::intptr_t argument, std::int32_t* answer) {
  return answeredBy(engine, [&](OpenEngine& open) {
    required(answer);
    if (question < 0 || static_cast<std::size_t>(question) >= std::size(kQuestions)) {
      throw Failure(SPEECH_ERROR_ARGUMENT);
    }
    const int said = kQuestions[question](open.instance(), argument);
    if (said == kNoAnswer) throw Failure(SPEECH_ERROR_UNSUPPORTED);
    *answer = said;
  });
}

std::int32_t SPEECH_CALL speech_dictionary_edit(SpeechEngine engine, const char* path, const char* extra) {
  return edit(engine, path, extra);
}

std::int32_t SPEECH_CALL speech_dictionary_edit_w(SpeechEngine engine, const wchar_t* path,
                                                  const wchar_t* extra) {
  return edit(engine, path, extra);
}

std::int32_t SPEECH_CALL speech_csv_reader(SpeechEngine engine, std::intptr_t* reader) {
  return answeredBy(engine, [&](OpenEngine& open) {
    required(reader);
    const std::intptr_t made = open.local().csvParserInit();
    if (made == 0) throw Failure(SPEECH_ERROR_UNSUPPORTED);
    *reader = made;
  });
}

std::int32_t SPEECH_CALL speech_csv_read(SpeechEngine engine, std::intptr_t reader, const char* text,
                                         std::int32_t* line) {
  return read(engine, reader, text, line);
}

std::int32_t SPEECH_CALL speech_csv_read_w(SpeechEngine engine, std::intptr_t reader, const wchar_t* text,
                                           std::int32_t* line) {
  return read(engine, reader, text, line);
}

std::int32_t SPEECH_CALL speech_csv_field_count(SpeechEngine engine, std::intptr_t reader,
                                                std::int32_t* count) {
  return answeredBy(engine, [&](OpenEngine& open) {
    required(count);
    *count = answerOf(open.local().csvParserGetNfields(reader), SPEECH_ERROR_DICTIONARY);
  });
}

std::int32_t SPEECH_CALL speech_csv_field(SpeechEngine engine, std::intptr_t reader, std::int32_t index,
                                          char* buffer, std::uint32_t capacity, std::uint32_t* length) {
  return field(engine, reader, index, buffer, capacity, length);
}

std::int32_t SPEECH_CALL speech_csv_field_w(SpeechEngine engine, std::intptr_t reader, std::int32_t index,
                                            wchar_t* buffer, std::uint32_t capacity, std::uint32_t* length) {
  return field(engine, reader, index, buffer, capacity, length);
}

std::int32_t SPEECH_CALL speech_csv_make(SpeechEngine engine, const char* source, const char* target,
                                         char* buffer, std::uint32_t capacity, std::uint32_t* length) {
  return make(engine, source, target, buffer, capacity, length);
}

std::int32_t SPEECH_CALL speech_csv_make_w(SpeechEngine engine, const wchar_t* source, const wchar_t* target,
                                           wchar_t* buffer, std::uint32_t capacity, std::uint32_t* length) {
  return make(engine, source, target, buffer, capacity, length);
}
