// The player's second thread: it turns the device's stop signal into the end notice.

#include <process.h>

#include "engines/cloud/wave_player.h"
#include "engines/shared/module_state.h"

namespace speech {
namespace {

constexpr DWORD kPatienceMilliseconds = 5000;

}  // namespace

bool WavePlayer::startWatcher() {
  quit_ = false;
  for (UniqueHandle* const event : {&stopEvent_, &questionEvent_, &answerEvent_}) {
    event->reset(CreateEventW(nullptr, FALSE, FALSE, nullptr));
    if (!*event) return false;
  }
  thread_.reset(reinterpret_cast<HANDLE>(_beginthreadex(nullptr, 0, runWatcher, this, 0, nullptr)));
  return thread_ != nullptr;
}

unsigned __stdcall WavePlayer::runWatcher(void* player) {
  static_cast<WavePlayer*>(player)->watch();
  return 0;
}

void WavePlayer::watch() {
  // Of two signalled events the wait chooses the first: a question is answered when no stop is left.
  const HANDLE events[] = {stopEvent_.get(), questionEvent_.get()};
  constexpr DWORD kStopped = WAIT_OBJECT_0;
  constexpr DWORD kAsked = WAIT_OBJECT_0 + 1;
  for (;;) {
    const DWORD event = WaitForMultipleObjects(2, events, FALSE, INFINITE);
    if (quit_ || (event != kStopped && event != kAsked)) return;
    if (event == kStopped) reportEnd();
    if (event == kAsked) SetEvent(answerEvent_.get());
  }
}

void WavePlayer::reportEnd() {
  const std::scoped_lock lock(endMutex_);
  if (!endDue_ || g_endNoticeHeld) return;
  endDue_ = false;
  reader_.close();  // the buffer has its own copy
  postNotice(noticeWindow_, noticeMessage_, kNoticePlaybackEnded, kDetailPlaybackEnded);
}

// Returns once the watcher has dealt with every stop that was signalled before.
void WavePlayer::letWatcherCatchUp() {
  if (!initialised_) return;
  SetEvent(questionEvent_.get());
  const HANDLE answers[] = {answerEvent_.get(), thread_.get()};
  WaitForMultipleObjects(2, answers, FALSE, INFINITE);
}

void WavePlayer::close() {
  quit_ = true;  // before the stop, whose signal must not count as an end
  if (buffer_) static_cast<void>(buffer_->Stop());
  if (initialised_) {
    SetEvent(stopEvent_.get());
    WaitForSingleObject(thread_.get(), kPatienceMilliseconds);
    initialised_ = false;
  }
  reader_.close();
  buffer_.reset();
  device_.reset();
  stopEvent_.reset();
  questionEvent_.reset();
  answerEvent_.reset();
  thread_.reset();
}

}  // namespace speech
