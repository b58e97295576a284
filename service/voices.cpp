#include "service/voices.h"

#include <algorithm>
#include <charconv>

#include "base/ascii.h"
#include "base/utf8.h"

namespace speech::service {
namespace {

std::string_view withoutBlanks(std::string_view text) { return trimmed(text, " "); }

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

VoiceList VoiceList::fromListing(std::string_view listing) {
  VoiceList list;
  for (const std::string_view line : split(listing, '\n')) {
    const std::vector<std::string_view> fields = split(line, '\t');
    if (fields[0] == "voice" && fields.size() >= 3) {
      Voice voice{std::string(withoutBlanks(fields[1])), std::string(fields[2]), {}};
      for (size_t i = 3; i < fields.size(); ++i) {
        if (auto language = parseLanguage(fields[i])) voice.languages.push_back(std::move(*language));
      }
      list.voices_.push_back(std::move(voice));
    } else if (fields[0] == "variety" && fields.size() >= 2) {
      list.varieties_.push_back({std::string(fields[1])});
    }
  }
  return list;
}

const Voice* VoiceList::findVoice(std::string_view name) const {
  const auto find = [&](auto matches) {
    const auto voice = std::find_if(voices_.begin(), voices_.end(), matches);
    return voice == voices_.end() ? nullptr : &*voice;
  };
  if (const Voice* voice = find([&](auto& v) { return equalIgnoringAsciiCase(v.name, name); })) return voice;
  if (const Voice* voice = find([&](auto& v) { return equalIgnoringAsciiCase(v.identifier, name); }))
    return voice;
  if (const Voice* voice =
          find([&](auto& v) { return equalIgnoringAsciiCase(fileOf(v.identifier), name); })) {
    return voice;
  }
  return bestForLanguage(name);
}

const Voice* VoiceList::bestForLanguage(std::string_view tag) const {
  const Voice* best = nullptr;
  int bestPriority = 0;
  for (const Voice& voice : voices_) {
    for (const VoiceLanguage& language : voice.languages) {
      if (!equalIgnoringAsciiCase(language.tag, tag)) continue;
      if (best != nullptr && language.priority >= bestPriority) continue;
      best = &voice;
      bestPriority = language.priority;
    }
  }
  return best;
}

const Variety* VoiceList::findVariety(std::string_view name) const {
  const auto variety = std::find_if(varieties_.begin(), varieties_.end(),
                                    [&](auto& v) { return equalIgnoringAsciiCase(v.name, name); });
  return variety == varieties_.end() ? nullptr : &*variety;
}

std::optional<ChosenVoice> VoiceList::byName(std::string_view rawName) const {
  // The module's client sends the name in its own narrow code page, which for the names there are is Latin-1.
  const std::string name = isValidUtf8(rawName) ? std::string(rawName) : latin1ToUtf8(rawName);

  std::string base = name;
  const Variety* variety = nullptr;
  if (const size_t plus = name.rfind('+'); plus != std::string::npos) {
    variety = findVariety(withoutBlanks(std::string_view(name).substr(plus + 1)));
    if (variety != nullptr) base.resize(plus);
  }
  const Voice* voice = findVoice(withoutBlanks(base));
  if (voice == nullptr) {
    std::replace(base.begin(), base.end(), '+', ' ');
    voice = findVoice(withoutBlanks(base));
  }
  if (voice == nullptr) return std::nullopt;
  const std::string suffix = variety == nullptr ? "" : "+" + variety->name;
  return ChosenVoice{voice->name + suffix, voice->identifier + suffix};
}

std::optional<ChosenVoice> VoiceList::byLanguage(std::string_view tag) const {
  while (!tag.empty()) {
    if (const Voice* voice = bestForLanguage(tag)) return ChosenVoice{voice->name, voice->identifier};
    const size_t hyphen = tag.rfind('-');
    tag = tag.substr(0, hyphen == std::string_view::npos ? 0 : hyphen);
  }
  return std::nullopt;
}

}  // namespace speech::service
