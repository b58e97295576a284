// Whatever a form holds, the speech service gets either something that it can speak or a clear line of text.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "service/speech_request.h"
#include "service/utf8.h"

namespace {

using namespace speech::service;

void require(bool condition) {
  if (!condition) std::abort();
}

const VoiceCatalogue& catalogue() {
  static const VoiceCatalogue voices = VoiceCatalogue::fromListing(
      "voice\tEnglish (America)\tgmw/en-US\t2 en-us\t3 en\nvoice\tGerman\tgmw/de\t5 de\nvariety\tf2\n");
  return voices;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  constexpr size_t kMaxCharacters = 100;
  const std::string_view body(reinterpret_cast<const char*>(data), size);
  const auto result = readSpeechRequest(body, catalogue(), {"k", kMaxCharacters});
  if (const auto* request = std::get_if<SpeechRequest>(&result)) {
    require(countUtf8Characters(request->text) == request->characterCount);
    require(request->characterCount <= kMaxCharacters);
    require(request->text.find('\0') == std::string::npos);
    require(request->voice.engine.starts_with("gmw/"));
  } else {
    const Refusal& refusal = std::get<Refusal>(result);
    require(refusal.status >= 400 && refusal.status < 500 && !refusal.message.empty());
    for (const char character : refusal.message) require(character >= ' ' && character <= '~');
  }
  // The listing comes from a program of ours, but is text all the same.
  VoiceCatalogue::fromListing(body);
  return 0;
}
