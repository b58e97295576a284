// Whatever a form holds, the speech service gets either something that it can speak or a clear line of text.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "base/utf8.h"
#include "service/speech_request.h"

using namespace speech::service;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const VoiceList voices = VoiceList::fromListing(
      "voice\tEnglish (America)\tgmw/en-US\t2 en-us\t3 en\nvoice\tGerman\tgmw/de\t5 de\nvariety\tf2\n");
  constexpr size_t kMaxCharacters = 100;
  const auto require = [](bool condition) {
    if (!condition) std::abort();
  };
  const std::string_view body(reinterpret_cast<const char*>(data), size);
  const auto result = readSpeechRequest(body, voices, {"k", kMaxCharacters});
  if (const auto* request = std::get_if<SpeechRequest>(&result)) {
    require(speech::isValidUtf8(request->text));
    require(speech::countCodePoints(request->text) == request->characterCount);
    require(request->characterCount <= kMaxCharacters && request->text.find('\0') == std::string::npos);
    require(request->voice.engine.starts_with("gmw/"));
  } else {
    const auto& [status, message] = std::get<Refusal>(result);
    require(status >= 400 && status < 500 && !message.empty());
    for (const char character : message) require(character >= ' ' && character <= '~');
  }
  // The listing comes from a program of ours, but is text all the same.
  VoiceList::fromListing(body);
  return 0;
}
