#include "apps/narravo/voices.h"

#include <algorithm>
#include <numeric>
#include <string_view>

#include <speech/text_to_speech.h>

#include "apps/narravo/commands.h"

namespace narravo {
namespace {

/// Changes only ASCII letters: keys and codes need no others.
std::string lower(std::string text) {
  for (char& letter : text) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  }
  return text;
}

bool same(const std::string& left, const std::string& right) { return lower(left) == lower(right); }

std::size_t editDistance(std::string_view from, std::string_view to) {
  std::vector<std::size_t> row(to.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (const char letter : from) {
    std::size_t diagonal = row[0]++;
    for (std::size_t j = 0; j < to.size(); ++j) {
      const std::size_t replaced = diagonal + (letter == to[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
    }
  }
  return row.back();
}

// How a voice can match what the user wants, best first.
using Fits = bool (*)(const Voice&, const std::string& wanted);
constexpr Fits kWaysToFit[] = {
    [](const Voice& voice, const std::string& wanted) { return same(voice.name, wanted); },
    [](const Voice& voice, const std::string& wanted) { return same(voice.key, wanted); },
    [](const Voice& voice, const std::string& wanted) { return same(voice.displayName, wanted); },
    [](const Voice& voice, const std::string& wanted) { return same(voice.language, wanted); },
    [](const Voice& voice, const std::string& wanted) { return isLanguage(voice.language, wanted); },
    [](const Voice& voice, const std::string& wanted) {
      return lower(voice.key).find(lower(wanted)) != std::string::npos;
    },
};

/// Orders voices that match equally well: the user's own language, then a language's home country (fr-FR),
/// then the rest.
int distance(const Voice& voice, const std::string& userLanguage) {
  const std::string code = lower(voice.language);
  if (code == lower(userLanguage)) return 0;
  const std::size_t dash = code.find('-');
  return dash != code.npos && code.substr(0, dash) == code.substr(dash + 1) ? 1 : 2;
}

std::string similarVoices(const std::vector<Voice>& voices, const std::string& wanted) {
  constexpr std::size_t kSuggestions = 3;
  const std::size_t tolerated = std::max<std::size_t>(1, wanted.size() / 3);
  std::vector<std::pair<std::size_t, std::string>> similar;
  for (const Voice& voice : voices) {
    for (const std::string& name : {voice.key, voice.language}) {
      const std::size_t distance = editDistance(lower(name), lower(wanted));
      if (distance <= tolerated) similar.emplace_back(distance, name);
    }
  }
  std::sort(similar.begin(), similar.end());
  similar.erase(std::unique(similar.begin(), similar.end()), similar.end());
  if (similar.size() > kSuggestions) similar.resize(kSuggestions);
  std::string text;
  for (const auto& [distance, name] : similar) text += (text.empty() ? "; did you mean " : ", ") + name;
  return text.empty() ? text : text + "?";
}

Voice describe(LXAPIProduct& product) {
  using speech::toUtf8;
  Voice voice;
  voice.key = toUtf8(product.getEngineKey1().GetString());
  voice.name = voice.key + "-" + toUtf8(product.getEngineKey2().GetString());
  voice.displayName = toUtf8(product.getDisplayName().GetString());
  voice.language = toUtf8(product.getLanguageCode().GetString());
  voice.gender = toUtf8(product.getGenderText().GetString());
  voice.sampleRateHz = product.getSampleRateHz();
  voice.engineType = toUtf8(product.getEngineType().GetString());
  voice.product = &product;
  return voice;
}

}  // namespace

LibraryRelease::~LibraryRelease() { ITextToSpeech::releaseInstance(); }

std::vector<Voice> installedVoices() {
  std::vector<Voice> voices;
  LXAPIProductList* const products = ITextToSpeech::getLXAPIProductList();
  for (POSITION at = products->GetHeadPosition(); at != nullptr;)
    voices.push_back(describe(*products->GetNext(at)));
  return voices;
}

bool isLanguage(const std::string& code, const std::string& wanted) {
  const std::string prefix = lower(wanted);
  return lower(code).starts_with(prefix) && (code.size() == prefix.size() || code[prefix.size()] == '-');
}

Voice chooseVoice(const std::vector<Voice>& voices, const VoiceWish& wish, const std::string& userLanguage) {
  if (voices.empty()) throw HostError(kExitNoVoice, "no voice is installed");

  const auto findBest = [&](const std::string& wanted) -> const Voice* {
    for (const Fits fits : kWaysToFit) {
      const Voice* best = nullptr;
      for (const Voice& voice : voices) {
        if (!wish.gender.empty() && !same(voice.gender, wish.gender)) continue;
        if (!fits(voice, wanted)) continue;
        if (best == nullptr || distance(voice, userLanguage) < distance(*best, userLanguage)) best = &voice;
      }
      if (best != nullptr) return best;
    }
    return nullptr;
  };

  if (!wish.voice.empty()) {
    if (const Voice* const found = findBest(wish.voice)) return *found;
    const std::string gender = wish.gender.empty() ? "" : lower(wish.gender) + " ";
    throw HostError(kExitNoVoice, "no " + gender + "voice matches '" + wish.voice + "'" +
                                      similarVoices(voices, wish.voice) + " (narravo voices lists them all)");
  }
  for (const std::string& language :
       {userLanguage, userLanguage.substr(0, userLanguage.find('-')), std::string("en")}) {
    if (const Voice* const found = findBest(language)) return *found;
  }
  return voices.front();
}

}  // namespace narravo
