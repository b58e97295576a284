// The player's second thread: it turns the device's stop signal into the end notice.

#include <process.h>

#include "engines/cloud/wave_player.h"
#include "engines/shared/module_state.h"

namespace speech {
namespace {

// The watcher never blocks; a wait this long means that the system has stopped it.
constexpr DWORD kPatienceMilliseconds = 5000;

}  // namespace

bool WavePlayer::startWatcher() {
  quit_ = false;
  stopEvent_.reset(CreateEventW(nullptr, FALSE, FALSE, nullptr));
  answeredEvent_.reset(CreateEventW(nullptr, FALSE, FALSE, nullptr));
  if (!stopEvent_ || !answeredEvent_) return false;
  thread_.reset(reinterpret_cast<HANDLE>(_beginthreadex(nullptr, 0, runWatcher, this, 0, nullptr)));
  return thread_ != nullptr;
}

unsigned __stdcall WavePlayer::runWatcher(void* player) {
  static_cast<WavePlayer*>(player)->watch();
  return 0;
}

void WavePlayer::watch() {
  while (WaitForSingleObject(stopEvent_.get(), INFINITE) == WAIT_OBJECT_0) {
    // Taken before the work, so that an answer stands for everything that was signalled before it was wanted.
    const bool answer = answerWanted_.exchange(false);
    reportEnd();
    if (quit_) return;
    if (answer) SetEvent(answeredEvent_.get());
  }
}

void WavePlayer::reportEnd() {
  const std::scoped_lock lock(endMutex_);
  if (noticeMessage_ == 0 || !endDue_ || g_endNoticeHeld) return;
  endDue_ = false;
  reader_.close();  // the buffer has its own copy
  PostMessageW(noticeWindow_, noticeMessage_, kNoticePlaybackEnded, kDetailPlaybackEnded);
}

// Returns once the watcher has dealt with every stop that was signalled before. The wake-up itself counts as
// one.
void WavePlayer::wakeWatcher() {
  if (!initialised_) return;
  answerWanted_ = true;
  SetEvent(stopEvent_.get());
  WaitForSingleObject(answeredEvent_.get(), kPatienceMilliseconds);
}

void WavePlayer::close() {
  if (buffer_) static_cast<void>(buffer_->Stop());
  if (initialised_) {
    quit_ = true;
    SetEvent(stopEvent_.get());
    WaitForSingleObject(thread_.get(), kPatienceMilliseconds);
    initialised_ = false;
  }
  reader_.close();
  buffer_.reset();
  device_.reset();
  stopEvent_.reset();
  answeredEvent_.reset();
  thread_.reset();
}

}  // namespace speech
