#pragma once

// The installed voices, and finding one by what a user calls it.

#include <string>
#include <vector>

class LXAPIProduct;

namespace narravo {

/// What the catalogue says of a voice, in UTF-8.
struct Voice {
  std::string name;         ///< Both engine keys: "English (America)-F".
  std::string key;          ///< The first engine key: "English (America)".
  std::string displayName;  ///< The engine's own name and version.
  std::string language;     ///< "en-US".
  std::string gender;       ///< "FEMALE", "MALE" or "UNKNOWN".
  int sampleRateHz = 0;
  std::string engineType;
  LXAPIProduct* product = nullptr;  ///< Belongs to the library.
};

/// Ends the engine and the catalogue at the end of a scope.
class LibraryRelease {
 public:
  LibraryRelease() = default;
  LibraryRelease(const LibraryRelease&) = delete;
  LibraryRelease& operator=(const LibraryRelease&) = delete;
  ~LibraryRelease();
};

/// Every installed voice, in the catalogue's order.
std::vector<Voice> installedVoices();

/// Which voice the user wants.
struct VoiceWish {
  /// A name, key, display name, language code or part of a key; empty: the user's language.
  std::string voice;
  std::string gender;  ///< "female" or "male"; empty: any.
};

/// Whether a language code is `wanted` or a kind of it: "en-US" is "en". Case does not matter.
bool isLanguage(const std::string& code, const std::string& wanted);

/// The voice that fits best. Throws HostError(kExitNoVoice), naming similar voices, when none does.
/// @param userLanguage  decides between voices that fit equally well: "en-US"
Voice chooseVoice(const std::vector<Voice>& voices, const VoiceWish& wish, const std::string& userLanguage);

}  // namespace narravo
