// Speaking through the sound device.

#include "engines/cloud/skyvo.h"
#include "engines/guarded.h"
#include "win32/paths.h"

namespace speech {

bool Skyvo::fetch(const wchar_t* text, bool isSsml, const wchar_t* path) {
  return requestSpeech(text, isSsml, path) && pathExists(path);
}

bool Skyvo::speak(const wchar_t* text, bool isSsml) {
  return guarded(false, [&] {
    // Kept: the reply stays in the temporary folder.
    const std::wstring reply = newTemporaryPath(L".wav");
    if (!fetch(text, isSsml, reply.c_str())) return false;
    static_cast<void>(player_.openDevice());
    if (!player_.playFile(reply.c_str())) return false;
    isPaused_ = false;
    isSpeaking_ = true;
    return true;
  });
}

bool Skyvo::stop() {
  guarded([&] { player_.stop(); });
  isSpeaking_ = false;
  return true;
}

bool Skyvo::pauseResume() {
  guarded([&] { isPaused_ ? player_.resume() : player_.pause(); });
  // Kept: whatever the device answered.
  isPaused_ = !isPaused_;
  return true;
}

}  // namespace speech
