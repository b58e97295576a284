#pragma once

// Finding a voice by what a user calls it.

#include <string>
#include <vector>

namespace narravo {

/// What the catalogue says of a voice, as far as it can be chosen by it.
struct VoiceEntry {
  std::string name;         ///< Both engine keys: "English (America)-F".
  std::string key;          ///< The first engine key: "English (America)".
  std::string displayName;  ///< The engine's own name and version.
  std::string language;     ///< "en-US".
  std::string gender;       ///< "FEMALE", "MALE" or "UNKNOWN".
  int sampleRateHz = 0;
  std::string engineType;
};

struct VoiceWish {
  std::string
      voice;  ///< A name, key, display name, language code or part of a key; empty: the user's language.
  std::string gender;  ///< "female" or "male"; empty: any.
};

/// Whether a language code is `wanted` or a kind of it: "en-US" is "en". Case does not matter.
bool isLanguage(const std::string& code, const std::string& wanted);

/// The index of the voice that fits best. Throws HostError(kExitNoVoice), naming similar voices, when none
/// does.
/// @param userLanguage  decides between voices that fit equally well: "en-US"
std::size_t chooseVoice(const std::vector<VoiceEntry>& voices, const VoiceWish& wish,
                        const std::string& userLanguage);

}  // namespace narravo
