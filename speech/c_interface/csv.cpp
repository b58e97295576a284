// Reading and writing the lines of word lists with the engine's own means.

#include <algorithm>
#include <cstdint>

#include "speech/c_interface/open_engine.h"
#include "speech/c_interface/session.h"
#include "speech/c_interface/text.h"
#include "win32/text.h"

namespace speech::c_interface {
namespace {

/// An engine's answer. Fails where it has none, and with `refusal` where it is an error code.
std::int32_t answerOf(int said, std::int32_t refusal) {
  constexpr int kNoAnswer = -1;
  if (said == kNoAnswer) throw Failure(SPEECH_ERROR_UNSUPPORTED);
  if (said < 0) throw Failure(refusal, "The engine answered " + std::to_string(said) + ".");
  return said;
}

intptr_t addressOf(const std::string& text) { return reinterpret_cast<intptr_t>(text.c_str()); }

template <class Char>
std::int32_t read(SpeechEngine handle, std::intptr_t reader, const Char* text, std::int32_t* line) {
  return answeredBy(handle, [&](OpenEngine& engine) {
    required(line);
    engine.requireLocal();
    const std::string utf8 = toUtf8(textOrNone(text));
    const int said = engine.instance().csvParserParsing(reader, text != nullptr ? addressOf(utf8) : 0);
    *line = answerOf(said, SPEECH_ERROR_DICTIONARY);
  });
}

template <class Char>
std::int32_t field(SpeechEngine handle, std::intptr_t reader, std::int32_t index, Char* buffer,
                   std::uint32_t capacity, std::uint32_t* length) {
  return answeredBy(handle, [&](OpenEngine& engine) {
    engine.requireLocal();
    handOut(textOfUnknown(engine.instance().csvParserGetField(reader, index)), buffer, capacity, length);
  });
}

template <class Char>
std::int32_t make(SpeechEngine handle, const Char* source, const Char* target, Char* buffer,
                  std::uint32_t capacity, std::uint32_t* length) {
  return answeredBy(handle, [&](OpenEngine& engine) {
    const std::string from = toUtf8(textOf(source));
    const std::string to = toUtf8(textOf(target));
    engine.requireLocal();
    // Every letter a doubled quote, quotes around both, the comma, the end of the line, the zero byte.
    constexpr std::size_t kAroundBoth = 8;
    std::string record(2 * (from.size() + to.size()) + kAroundBoth, '\0');
    const int said = engine.instance().csvParserMakeCsv(addressOf(from), addressOf(to), addressOf(record),
                                                        static_cast<std::intptr_t>(record.size()));
    const auto size = static_cast<std::size_t>(answerOf(said, SPEECH_ERROR_REFUSED));
    record.resize(std::min(size, record.size()));
    handOut(textOfUnknown(record), buffer, capacity, length);
  });
}

}  // namespace
}  // namespace speech::c_interface

using namespace speech::c_interface;

int32_t SPEECH_CALL speech_csv_reader(SpeechEngine engine, intptr_t* reader) {
  return answeredBy(engine, [&](OpenEngine& open) {
    required(reader);
    const intptr_t made = open.instance().csvParserInit();
    if (made == 0) throw Failure(SPEECH_ERROR_UNSUPPORTED);
    *reader = made;
  });
}

int32_t SPEECH_CALL speech_csv_read(SpeechEngine engine, intptr_t reader, const char* text, int32_t* line) {
  return read(engine, reader, text, line);
}

int32_t SPEECH_CALL speech_csv_read_w(SpeechEngine engine, intptr_t reader, const wchar_t* text,
                                      int32_t* line) {
  return read(engine, reader, text, line);
}

int32_t SPEECH_CALL speech_csv_field_count(SpeechEngine engine, intptr_t reader, int32_t* count) {
  return answeredBy(engine, [&](OpenEngine& open) {
    required(count);
    *count = answerOf(open.instance().csvParserGetNfields(reader), SPEECH_ERROR_DICTIONARY);
  });
}

int32_t SPEECH_CALL speech_csv_field(SpeechEngine engine, intptr_t reader, int32_t index, char* buffer,
                                     uint32_t capacity, uint32_t* length) {
  return field(engine, reader, index, buffer, capacity, length);
}

int32_t SPEECH_CALL speech_csv_field_w(SpeechEngine engine, intptr_t reader, int32_t index, wchar_t* buffer,
                                       uint32_t capacity, uint32_t* length) {
  return field(engine, reader, index, buffer, capacity, length);
}

int32_t SPEECH_CALL speech_csv_make(SpeechEngine engine, const char* source, const char* target, char* buffer,
                                    uint32_t capacity, uint32_t* length) {
  return make(engine, source, target, buffer, capacity, length);
}

int32_t SPEECH_CALL speech_csv_make_w(SpeechEngine engine, const wchar_t* source, const wchar_t* target,
                                      wchar_t* buffer, uint32_t capacity, uint32_t* length) {
  return make(engine, source, target, buffer, capacity, length);
}
