// speech/c/base.h: results, the version, the library as a whole.

#include <algorithm>
#include <iterator>
#include <string_view>

#include "speech/c_interface/session.h"
#include "speech/c_interface/text.h"

namespace {

struct ErrorText {
  std::int32_t error;
  const char* text;
};

constexpr ErrorText kErrorTexts[] = {
    {SPEECH_OK, "Done."},
    {SPEECH_ERROR_ARGUMENT, "An argument is null or has a value that means nothing."},
    {SPEECH_ERROR_HANDLE, "The engine handle is null, or its engine has been closed."},
    {SPEECH_ERROR_ENGINE_OPEN, "Another engine is open; close it first."},
    {SPEECH_ERROR_WRONG_THREAD, "The library belongs to another thread."},
    {SPEECH_ERROR_BUSY, "The engine is speaking, or another call must end first."},
    {SPEECH_ERROR_STATE, "Nothing is being spoken."},
    {SPEECH_ERROR_TEXT, "The text is not well-formed UTF-8 or UTF-16."},
    {SPEECH_ERROR_RANGE, "The value is outside the range of the option."},
    {SPEECH_ERROR_BUFFER, "The buffer is too small."},
    {SPEECH_ERROR_VOICE, "There is no voice or language of that index."},
    {SPEECH_ERROR_LOAD, "The engine could not be loaded."},
    {SPEECH_ERROR_REFUSED, "The engine refused the text or the setting."},
    {SPEECH_ERROR_SERVICE, "The speech service failed."},
    {SPEECH_ERROR_UNSUPPORTED, "The voice cannot do this, or not in that format or at that rate."},
    {SPEECH_ERROR_TOOL, "A program that this needs is missing or could not be started."},
    {SPEECH_ERROR_FILE, "A file could not be opened, read or written."},
    {SPEECH_ERROR_DICTIONARY, "The engine refused the dictionary."},
    {SPEECH_ERROR_TIMEOUT, "Timed out before the speech ended."},
    {SPEECH_ERROR_QUIT, "The program was asked to quit while it waited."},
    {SPEECH_ERROR_MEMORY, "There is not enough memory."},
    {SPEECH_ERROR_INTERNAL, "The library failed inside."},
};

}  // namespace

using namespace speech::c_interface;

std::uint32_t SPEECH_CALL speech_version() {
  return std::uint32_t{SPEECH_VERSION_MAJOR} << 16 | std::uint32_t{SPEECH_VERSION_MINOR} << 8 |
         std::uint32_t{SPEECH_VERSION_PATCH};
}

const char* SPEECH_CALL speech_version_text() { return SPEECH_VERSION_TEXT; }

const char* SPEECH_CALL speech_error_text(std::int32_t error) {
  const auto found = std::ranges::find(kErrorTexts, error, &ErrorText::error);
  return found != std::end(kErrorTexts) ? found->text : "Unknown result code.";
}

std::int32_t SPEECH_CALL speech_error_detail(char* buffer, std::uint32_t capacity, std::uint32_t* length) {
  // Not by answered(): asking for the detail must not forget it.
  return outcomeOf([&] {
           requireThread();
           handOut(std::string_view(session().detail), buffer, capacity, length);
         })
      .error;
}

std::int32_t SPEECH_CALL speech_release() {
  return answeredWhenFree([] {
    requireNoForeignEngine();
    closeEngine();
    ITextToSpeech::releaseInstance();
    session().thread = 0;
  });
}
