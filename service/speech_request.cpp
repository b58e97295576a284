#include "service/speech_request.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>
#include <vector>

#include "base/utf8.h"

namespace speech::service {
namespace {

constexpr std::array<std::string_view, 7> kFields = {"streaming", "key",  "voice",      "lang",
                                                     "text",      "ssml", "audioformat"};

// The body of a form request: "name=value" pairs joined by "&". Keeps views into the body, which must outlive
// it.
class Form {
 public:
  explicit Form(std::string_view body) {
    while (!body.empty()) {
      const std::string_view pair = body.substr(0, body.find('&'));
      body.remove_prefix(std::min(body.size(), pair.size() + 1));
      if (pair.empty()) continue;
      // Only the first equals sign separates.
      const size_t equals = pair.find('=');
      fields_.emplace_back(pair.substr(0, equals),
                           equals == std::string_view::npos ? std::string_view() : pair.substr(equals + 1));
    }
  }

  // The value as it was sent, still encoded; the first one when the field is repeated.
  std::optional<std::string_view> encodedValue(std::string_view name) const {
    const auto field = std::find_if(fields_.begin(), fields_.end(), [&](auto& f) { return f.first == name; });
    if (field == fields_.end()) return std::nullopt;
    return field->second;
  }

  bool repeats(std::string_view name) const {
    return std::count_if(fields_.begin(), fields_.end(), [&](auto& field) { return field.first == name; }) >
           1;
  }

 private:
  std::vector<std::pair<std::string_view, std::string_view>> fields_;
};

int hexDigit(char character) {
  if (character >= '0' && character <= '9') return character - '0';
  if (character >= 'a' && character <= 'f') return character - 'a' + 10;
  if (character >= 'A' && character <= 'F') return character - 'A' + 10;
  return -1;
}

// Undoes percent-encoding; with plusIsSpace a "+" stands for a space, as forms write it. Nothing when a "%"
// is not followed by two hexadecimal digits.
std::optional<std::string> percentDecode(std::string_view encoded, bool plusIsSpace) {
  std::string decoded;
  decoded.reserve(encoded.size());
  for (size_t i = 0; i < encoded.size(); ++i) {
    if (encoded[i] == '+' && plusIsSpace) {
      decoded += ' ';
    } else if (encoded[i] != '%') {
      decoded += encoded[i];
    } else {
      if (encoded.size() - i < 3) return std::nullopt;
      const int high = hexDigit(encoded[i + 1]);
      const int low = hexDigit(encoded[i + 2]);
      if (high < 0 || low < 0) return std::nullopt;
      decoded += static_cast<char>(high * 16 + low);
      i += 2;
    }
  }
  return decoded;
}

// Takes the same time wherever the first difference is, so that the key cannot be guessed byte by byte.
bool sameSecret(std::string_view given, std::string_view expected) {
  unsigned difference = given.size() == expected.size() ? 0 : 1;
  for (size_t i = 0; i < given.size(); ++i) {
    const char other = expected.empty() ? '\0' : expected[i % expected.size()];
    difference |= static_cast<unsigned>(given[i] ^ other) & 0xFFU;
  }
  return difference == 0;
}

// What a caller sent, made fit for an error line: short, and printable ASCII only.
std::string quote(std::string_view value) {
  constexpr size_t kLongest = 60;
  std::string quoted = "\"";
  for (const char character : value.substr(0, kLongest)) {
    quoted += character >= ' ' && character <= '~' ? character : '?';
  }
  return quoted + (value.size() > kLongest ? "...\"" : "\"");
}

// The values go through unescaped from the module's client, so a "+" is a plus sign here, not a space.
std::optional<std::string> rawValue(const Form& form, std::string_view name) {
  return percentDecode(form.encodedValue(name).value_or(""), false);
}

std::variant<ChosenVoice, Refusal> chooseVoice(const Form& form, const VoiceList& voices) {
  const auto voiceName = rawValue(form, "voice");
  if (!voiceName) return Refusal{400, "the field \"voice\" has a malformed percent-encoding"};
  const auto language = rawValue(form, "lang");
  if (!language) return Refusal{400, "the field \"lang\" has a malformed percent-encoding"};

  if (!voiceName->empty()) {
    if (auto voice = voices.byName(*voiceName)) return *voice;
    return Refusal{404, "there is no voice " + quote(*voiceName)};
  }
  if (language->empty()) return Refusal{400, R"(one of the fields "voice" and "lang" must be given)"};
  if (auto voice = voices.byLanguage(*language)) return *voice;
  return Refusal{404, "there is no voice for the language " + quote(*language)};
}

std::variant<AudioFormat, Refusal> readFormat(const Form& form) {
  const std::string_view format = form.encodedValue("audioformat").value_or("pcm");
  // Kept: "pcm" means 16-bit samples in a WAV file. The module's client asks for it and looks for
  // "audio/wav".
  if (format == "pcm" || format == "wav") return AudioFormat::kWav;
  if (format == "mp3") return AudioFormat::kMp3;
  return Refusal{400, "audioformat " + quote(format) + " is not offered; there are pcm, wav and mp3"};
}

}  // namespace

std::variant<SpeechRequest, Refusal> readSpeechRequest(std::string_view body, const VoiceList& voices,
                                                       const RequestRules& rules) {
  const Form form(body);
  if (!sameSecret(form.encodedValue("key").value_or(""), rules.key)) {
    return Refusal{401, "the field \"key\" does not hold this service's key"};
  }
  const auto repeated =
      std::find_if(kFields.begin(), kFields.end(), [&](auto name) { return form.repeats(name); });
  if (repeated != kFields.end()) {
    return Refusal{400, "the field \"" + std::string(*repeated) + "\" is given more than once"};
  }
  if (form.encodedValue("streaming").value_or("0") != "0") {
    return Refusal{400, "streaming is not offered; the field \"streaming\" must be 0"};
  }

  SpeechRequest request;
  auto format = readFormat(form);
  if (auto* refusal = std::get_if<Refusal>(&format)) return std::move(*refusal);
  request.format = std::get<AudioFormat>(format);

  const auto text = form.encodedValue("text");
  const auto ssml = form.encodedValue("ssml");
  if (text.has_value() == ssml.has_value()) {
    return Refusal{400, R"(exactly one of the fields "text" and "ssml" must be given)"};
  }
  request.isSsml = ssml.has_value();
  const std::string fieldName = request.isSsml ? "ssml" : "text";
  auto decoded = percentDecode(request.isSsml ? *ssml : *text, true);
  if (!decoded) return Refusal{400, "the field \"" + fieldName + "\" has a malformed percent-encoding"};
  if (!isValidUtf8(*decoded)) return Refusal{400, "the field \"" + fieldName + "\" is not valid UTF-8"};
  if (decoded->find('\0') != std::string::npos) {
    return Refusal{400, "the field \"" + fieldName + "\" holds a zero character"};
  }
  const size_t characterCount = countCodePoints(*decoded);
  if (characterCount > rules.maxTextCharacters) {
    return Refusal{413, "the text has " + std::to_string(characterCount) + " characters; at most " +
                            std::to_string(rules.maxTextCharacters) + " are spoken"};
  }
  request.text = std::move(*decoded);
  request.characterCount = characterCount;

  auto voice = chooseVoice(form, voices);
  if (auto* refusal = std::get_if<Refusal>(&voice)) return std::move(*refusal);
  request.voice = std::move(std::get<ChosenVoice>(voice));
  return request;
}

}  // namespace speech::service
