#include "apps/narravo/voice_choice.h"

#include <algorithm>
#include <numeric>
#include <optional>
#include <string_view>

#include "apps/narravo/host_error.h"

namespace narravo {
namespace {

/// Only ASCII letters change: keys and codes hold no others that would need it.
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

// The ways in which a voice can fit a wish, best first.
using Fits = bool (*)(const VoiceEntry&, const std::string& wanted);
constexpr Fits kWaysToFit[] = {
    [](const VoiceEntry& voice, const std::string& wanted) { return same(voice.name, wanted); },
    [](const VoiceEntry& voice, const std::string& wanted) { return same(voice.key, wanted); },
    [](const VoiceEntry& voice, const std::string& wanted) { return same(voice.displayName, wanted); },
    [](const VoiceEntry& voice, const std::string& wanted) { return same(voice.language, wanted); },
    [](const VoiceEntry& voice, const std::string& wanted) { return isLanguage(voice.language, wanted); },
    [](const VoiceEntry& voice, const std::string& wanted) {
      return lower(voice.key).find(lower(wanted)) != std::string::npos;
    },
};

/// Among voices that fit equally: the user's own language, then a language's home country (fr-FR), then list
/// order.
int distance(const VoiceEntry& voice, const std::string& userLanguage) {
  const std::string code = lower(voice.language);
  if (code == lower(userLanguage)) return 0;
  const std::size_t dash = code.find('-');
  return dash != code.npos && code.substr(0, dash) == code.substr(dash + 1) ? 1 : 2;
}

std::string similarVoices(const std::vector<VoiceEntry>& voices, const std::string& wanted) {
  constexpr std::size_t kSuggestions = 3;
  const std::size_t tolerated = std::max<std::size_t>(1, wanted.size() / 3);
  std::vector<std::pair<std::size_t, std::string>> similar;
  for (const VoiceEntry& voice : voices) {
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

}  // namespace

bool isLanguage(const std::string& code, const std::string& wanted) {
  const std::string prefix = lower(wanted);
  return lower(code).starts_with(prefix) && (code.size() == prefix.size() || code[prefix.size()] == '-');
}

std::size_t chooseVoice(const std::vector<VoiceEntry>& voices, const VoiceWish& wish,
                        const std::string& userLanguage) {
  if (voices.empty()) throw HostError(kExitNoVoice, "no voice is installed");

  const auto best = [&](const std::string& wanted) -> std::optional<std::size_t> {
    for (const Fits fits : kWaysToFit) {
      std::optional<std::size_t> found;
      for (std::size_t i = 0; i < voices.size(); ++i) {
        if (!wish.gender.empty() && !same(voices[i].gender, wish.gender)) continue;
        if (!fits(voices[i], wanted)) continue;
        if (!found || distance(voices[i], userLanguage) < distance(voices[*found], userLanguage)) found = i;
      }
      if (found) return found;
    }
    return std::nullopt;
  };

  if (!wish.voice.empty()) {
    if (const auto found = best(wish.voice)) return *found;
    const std::string gender = wish.gender.empty() ? "" : lower(wish.gender) + " ";
    throw HostError(kExitNoVoice, "no " + gender + "voice matches '" + wish.voice + "'" +
                                      similarVoices(voices, wish.voice) + " (narravo voices lists them all)");
  }
  for (const std::string& language :
       {userLanguage, userLanguage.substr(0, userLanguage.find('-')), std::string("en")}) {
    if (const auto found = best(language)) return *found;
  }
  return 0;
}

}  // namespace narravo
