#include "engines/cloud/wave_player.h"

#include <process.h>
#include <shlwapi.h>

#include <algorithm>
#include <cstring>

#include "engines/host_notices.h"

namespace speech {

constinit std::atomic<bool> g_endNoticeHeld = false;

namespace {

// Volume control is asked for, control of pan and frequency is not.
constexpr DWORD kBufferFlags =
    DSBCAPS_STATIC | DSBCAPS_CTRLPOSITIONNOTIFY | DSBCAPS_GLOBALFOCUS | DSBCAPS_CTRLVOLUME;
static_assert(kBufferFlags == 0x8182);
static_assert(sizeof(DSBUFFERDESC) == 36);

constexpr DWORD kPatienceMilliseconds = 5000;

}  // namespace

int WavePlayer::openDevice() {
  if (device_ && initialised_) return kAlreadyOpen;
  const HWND window = g_hostWindow;
  if (window == nullptr) return kNoHostWindow;
  if (FAILED(DirectSoundCreate8(nullptr, device_.put(), nullptr))) return kNoDevice;
  // Kept: a window that the device refuses, such as one that is not top-level, does not matter.
  static_cast<void>(device_->SetCooperativeLevel(window, DSSCL_PRIORITY));
  if (!startWatcher()) {
    device_.reset();
    return kNoDevice;
  }
  initialised_ = true;
  return kOpened;
}

bool WavePlayer::playFile(const wchar_t* path) {
  {
    const std::scoped_lock lock(endMutex_);
    endDue_ = false;  // from here on the reader is this thread's
  }
  if (!load(path)) return false;
  if (FAILED(createBuffer()) || FAILED(armStopNotification())) return false;
  letWatcherCatchUp();  // nothing that the buffer before has signalled may count for this one
  return start();
}

bool WavePlayer::load(const wchar_t* path) {
  CStringW extension(PathFindExtensionW(path));
  extension.MakeLower();
  if (extension.Find(L"wav") > 0) return reader_.openWav(path) == CDecoder::kOpened;
  if (extension.Find(L"mp3") > 0) return loadMp3(path);
  return false;
}

bool WavePlayer::loadMp3(const wchar_t* path) {
  const CStringW decodedPath = CDecoder::decodeMp3ToWav(path);
  if (decodedPath.IsEmpty() || reader_.openWav(decodedPath) != CDecoder::kOpened) return false;
  DeleteFileW(decodedPath);
  return true;
}

HRESULT WavePlayer::createBuffer() {
  buffer_.reset();
  if (!device_) return DSERR_NODRIVER;

  WAVEFORMATEXTENSIBLE format = reader_.format();
  // The device reads as far as the field says.
  constexpr WORD kExtensionBytes = sizeof format - sizeof format.Format;
  format.Format.cbSize = std::min(format.Format.cbSize, kExtensionBytes);

  DSBUFFERDESC description = {};
  description.dwSize = sizeof description;
  description.dwFlags = kBufferFlags;
  description.dwBufferBytes = reader_.payloadSize();
  description.lpwfxFormat = &format.Format;

  ComPtr<IDirectSoundBuffer> plain;
  HRESULT result = device_->CreateSoundBuffer(&description, plain.put(), nullptr);
  if (FAILED(result)) return result;
  result = plain->QueryInterface(IID_IDirectSoundBuffer8, buffer_.putVoid());
  return FAILED(result) ? result : fillBuffer();
}

HRESULT WavePlayer::fillBuffer() {
  const std::shared_ptr<unsigned char> payload = reader_.sharedPayload();
  const DWORD size = reader_.payloadSize();
  void* regions[2] = {};
  DWORD regionBytes[2] = {};
  const HRESULT result =
      buffer_->Lock(0, size, &regions[0], &regionBytes[0], &regions[1], &regionBytes[1], 0);
  if (FAILED(result)) return result;
  DWORD copied = 0;
  for (int i = 0; i < 2; ++i) {
    const DWORD count = std::min(regionBytes[i], size - copied);
    if (count > 0) std::memcpy(regions[i], payload.get() + copied, count);
    copied += count;
  }
  static_cast<void>(buffer_->Unlock(regions[0], regionBytes[0], regions[1], regionBytes[1]));
  return result;
}

HRESULT WavePlayer::armStopNotification() {
  ComPtr<IDirectSoundNotify> notify;
  const HRESULT result = buffer_->QueryInterface(IID_IDirectSoundNotify, notify.putVoid());
  if (FAILED(result)) return result;
  const DSBPOSITIONNOTIFY atStop = {static_cast<DWORD>(DSBPN_OFFSETSTOP), stopEvent_.get()};
  return notify->SetNotificationPositions(1, &atStop);
}

bool WavePlayer::start() {
  // Even the shortest utterance's end waits for the lock, and so for its start notice.
  const std::scoped_lock lock(endMutex_);
  g_endNoticeHeld = false;  // what was paused is gone
  static_cast<void>(buffer_->SetCurrentPosition(0));
  if (FAILED(buffer_->Play(0, 0, 0))) return false;
  noticeWindow_ = g_hostWindow;
  noticeMessage_ = g_noticeMessage;
  endDue_ = true;
  postNotice(noticeWindow_, noticeMessage_, kNoticePlaybackStarted, kDetailPlaybackStarted);
  return true;
}

void WavePlayer::stop() {
  if (!buffer_ || FAILED(buffer_->Stop())) return;
  g_endNoticeHeld = false;
  static_cast<void>(buffer_->Stop());
  SetEvent(stopEvent_.get());  // a paused buffer signals no second stop
  letWatcherCatchUp();
  buffer_.reset();
  reader_.close();
}

void WavePlayer::pause() {
  if (!buffer_) return;
  letWatcherCatchUp();  // where the utterance has just ended, its end is not held
  // The stop's signal must find the notice held already.
  const bool wasHeld = g_endNoticeHeld.exchange(true);
  if (FAILED(buffer_->Stop())) g_endNoticeHeld = wasHeld;
}

void WavePlayer::resume() {
  DWORD cursor = 0;
  if (!buffer_ || FAILED(buffer_->GetCurrentPosition(&cursor, nullptr)) || cursor == 0) return;
  letWatcherCatchUp();  // the pause's own signal must not end the utterance once the notice is free
  const bool wasHeld = g_endNoticeHeld.exchange(false);
  if (FAILED(buffer_->Play(0, 0, 0))) g_endNoticeHeld = wasHeld;
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

// The watcher thread.

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

}  // namespace speech
