#include "service/voice_catalogue.h"

#include <algorithm>
#include <charconv>

#include "service/utf8.h"

namespace speech::service {
namespace {

char lowerAscii(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

bool equalIgnoringCase(std::string_view left, std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char a, char b) { return lowerAscii(a) == lowerAscii(b); });
}

std::string_view trim(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

std::vector<std::string_view> split(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  for (;;) {
    const size_t end = text.find(separator);
    parts.push_back(text.substr(0, end));
    if (end == std::string_view::npos) return parts;
    text.remove_prefix(end + 1);
  }
}

// "gmw/en-US" is known as "en-US" too.
std::string_view fileOf(std::string_view identifier) {
  return identifier.substr(identifier.rfind('/') + 1);  // npos + 1 is 0: the whole identifier
}

std::optional<VoiceLanguage> parseLanguage(std::string_view field) {
  const size_t space = field.find(' ');
  if (space == std::string_view::npos) return std::nullopt;
  VoiceLanguage language{std::string(field.substr(space + 1)), 0};
  const auto [end, error] = std::from_chars(field.data(), field.data() + space, language.priority);
  if (error != std::errc() || end != field.data() + space) return std::nullopt;
  return language;
}

}  // namespace

VoiceCatalogue VoiceCatalogue::fromListing(std::string_view listing) {
  VoiceCatalogue catalogue;
  for (const std::string_view line : split(listing, '\n')) {
    const std::vector<std::string_view> fields = split(line, '\t');
    if (fields[0] == "voice" && fields.size() >= 3) {
      Voice voice{std::string(trim(fields[1])), std::string(fields[2]), {}};
      for (size_t i = 3; i < fields.size(); ++i) {
        if (auto language = parseLanguage(fields[i])) voice.languages.push_back(std::move(*language));
      }
      catalogue.voices_.push_back(std::move(voice));
    } else if (fields[0] == "variety" && fields.size() >= 2) {
      catalogue.varieties_.push_back({std::string(fields[1])});
    }
  }
  return catalogue;
}

const Voice* VoiceCatalogue::findVoice(std::string_view name) const {
  const auto find = [&](auto matches) {
    const auto voice = std::find_if(voices_.begin(), voices_.end(), matches);
    return voice == voices_.end() ? nullptr : &*voice;
  };
  if (const Voice* voice = find([&](auto& v) { return equalIgnoringCase(v.name, name); })) return voice;
  if (const Voice* voice = find([&](auto& v) { return equalIgnoringCase(v.identifier, name); })) return voice;
  if (const Voice* voice = find([&](auto& v) { return equalIgnoringCase(fileOf(v.identifier), name); })) {
    return voice;
  }
  return bestForLanguage(name);
}

const Voice* VoiceCatalogue::bestForLanguage(std::string_view tag) const {
  const Voice* best = nullptr;
  int bestPriority = 0;
  for (const Voice& voice : voices_) {
    for (const VoiceLanguage& language : voice.languages) {
      if (!equalIgnoringCase(language.tag, tag)) continue;
      if (best != nullptr && language.priority >= bestPriority) continue;
      best = &voice;
      bestPriority = language.priority;
    }
  }
  return best;
}

const Variety* VoiceCatalogue::findVariety(std::string_view name) const {
  const auto variety = std::find_if(varieties_.begin(), varieties_.end(),
                                    [&](auto& v) { return equalIgnoringCase(v.name, name); });
  return variety == varieties_.end() ? nullptr : &*variety;
}

std::optional<ChosenVoice> VoiceCatalogue::byName(std::string_view rawName) const {
  // The module's client sends the name in its own narrow code page, which for the names there are is Latin-1.
  const std::string name = countUtf8Characters(rawName) ? std::string(rawName) : latin1ToUtf8(rawName);

  std::string base = name;
  const Variety* variety = nullptr;
  if (const size_t plus = name.rfind('+'); plus != std::string::npos) {
    variety = findVariety(trim(std::string_view(name).substr(plus + 1)));
    if (variety != nullptr) base.resize(plus);
  }
  const Voice* voice = findVoice(trim(base));
  if (voice == nullptr) {
    std::replace(base.begin(), base.end(), '+', ' ');
    voice = findVoice(trim(base));
  }
  if (voice == nullptr) return std::nullopt;
  const std::string suffix = variety == nullptr ? "" : "+" + variety->name;
  return ChosenVoice{voice->name + suffix, voice->identifier + suffix};
}

std::optional<ChosenVoice> VoiceCatalogue::byLanguage(std::string_view tag) const {
  while (!tag.empty()) {
    if (const Voice* voice = bestForLanguage(tag)) return ChosenVoice{voice->name, voice->identifier};
    const size_t hyphen = tag.rfind('-');
    tag = tag.substr(0, hyphen == std::string_view::npos ? 0 : hyphen);
  }
  return std::nullopt;
}

}  // namespace speech::service
