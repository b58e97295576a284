#pragma once

// What every program of ours that speaks through eSpeak NG asks of it in the same way.

#include <espeak-ng/speak_lib.h>

#include <string>
#include <string_view>
#include <vector>

namespace speech {

/// eSpeak NG's own rate for every voice that is not a recorded one.
inline constexpr int kEspeakRateHz = 22050;

/// The voices that need nothing but eSpeak NG: those of MBROLA need that program and its recorded sounds.
inline std::vector<const espeak_VOICE*> usableVoices() {
  std::vector<const espeak_VOICE*> usable;
  for (const espeak_VOICE** voice = espeak_ListVoices(nullptr); *voice != nullptr; ++voice) {
    const std::string_view identifier = (*voice)->identifier;
    const bool isOfMbrola = identifier.starts_with("mb/") || identifier.starts_with("mb\\");
    if (!isOfMbrola) usable.push_back(*voice);
  }
  return usable;
}

/// An espeak_SetUriCallback: SSML may name sound files, and no document has any business with files of this
/// machine. The answer 1 has the element's text spoken instead.
inline int refuseSoundFile(int /*type*/, const char* /*uri*/, const char* /*base*/) { return 1; }

}  // namespace speech
