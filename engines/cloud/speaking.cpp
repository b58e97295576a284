// Speaking through the sound device.

#include <io.h>

#include "engines/cloud/skyvo.h"
#include "engines/cloud/temporary_names.h"
#include "engines/shared/guarded.h"

namespace speech {

bool Skyvo::initialize() { return true; }

bool Skyvo::speak(const wchar_t* text, bool useSsml) {
  return guarded(false, [&] {
    // Kept: the reply stays in the temporary folder.
    const CStringW path = makeTempPath(L".wav");
    if (!requestSpeech(text, useSsml, path)) return false;
    if (_waccess_s(path, 0) != 0) return false;
    static_cast<void>(player_.openDevice());
    if (!player_.playFile(path)) return false;
    paused_ = false;
    stopped_ = false;
    return true;
  });
}

bool Skyvo::speakSync(UINT /*message*/, const char* /*text*/) { return true; }

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

bool Skyvo::isSpeaking() { return !stopped_; }
bool Skyvo::isPaused() { return paused_; }

}  // namespace speech
