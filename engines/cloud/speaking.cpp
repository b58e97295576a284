// Speaking through the sound device.

#include "engines/cloud/skyvo.h"
#include "engines/shared/buffer_synthesis.h"
#include "engines/shared/guarded.h"
#include "win32/paths.h"

namespace speech {

bool Skyvo::fetch(const wchar_t* text, bool isSsml, const wchar_t* outputPath) {
  return requestSpeech(text, isSsml, outputPath) && pathExists(outputPath);
}

bool Skyvo::speak(const wchar_t* text, bool isSsml) {
  return guarded(false, [&] {
    // Kept: the reply stays in the temporary folder.
    const std::wstring reply = newTemporaryPath(L".wav");
    if (!fetch(text, isSsml, reply.c_str())) return false;
    static_cast<void>(player_.openDevice());
    if (!player_.playFile(reply.c_str())) return false;
    paused_ = false;
    stopped_ = false;
    return true;
  });
}

bool Skyvo::stop() {
  guarded([&] { player_.stop(); });
  stopped_ = true;
  return true;
}

bool Skyvo::pauseResume() {
  guarded([&] { paused_ ? player_.resume() : player_.pause(); });
  // Kept: whatever the device answered.
  paused_ = !paused_;
  return true;
}

int Skyvo::synthesizeToBuffer(const wchar_t* text, bool isSsml, unsigned char** out) {
  // Kept: asks the engine library all the same, though none of its engines is ever opened here, and puts no
  // zero byte behind the samples as the local engine does.
  constexpr std::uint32_t kNoSynthesisHandle = 0;
  constexpr std::size_t kExtraBytes = 0;
  return guarded(0, [&] { return synthesizeIntoBuffer(kNoSynthesisHandle, text, isSsml, kExtraBytes, out); });
}

}  // namespace speech
