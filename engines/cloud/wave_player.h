#pragma once

// WavePlayer: plays one utterance at a time through the sound device and tells the host when it starts and
// ends.
//
//   WavePlayer player;
//   player.openDevice();
//   if (player.playFile(path)) ...  // the start notice is posted, the end notice follows
//
// Every operation belongs to the host's thread. A watcher thread waits for the device's stop signal and posts
// the end notice: once for every utterance that played to its end or was stopped, never for one that the next
// one replaced or that was still playing when the player closed.
//
// The utterance lies whole in one static sound buffer, so nothing has to be refilled while it plays.

#include <windows.h>

#include <mmsystem.h>

#include <dsound.h>

#include <atomic>
#include <mutex>

#include "engines/cloud/decoder.h"
#include "win32/com_ptr.h"
#include "win32/unique_handle.h"

namespace speech {

/// While it is true, as it is while the cloud engine is paused, its player posts no end notice.
extern std::atomic<bool> g_endNoticeHeld;

class WavePlayer {
 public:
  /// What openDevice answers.
  enum OpenResult {
    kOpened = 0,
    kAlreadyOpen = -1,
    kNoHostWindow = -2,
    kNoDevice = -3,
  };

  WavePlayer() = default;
  WavePlayer(const WavePlayer&) = delete;
  WavePlayer& operator=(const WavePlayer&) = delete;
  ~WavePlayer() { close(); }

  /// Opens the default sound device for the host window and starts the watcher thread.
  int openDevice();

  /// Loads a file, by its extension as WAV or as MP3, and plays it from its beginning in place of the
  /// utterance before. Posts the start notice.
  /// @return false, without any notice, when there is no device or the file cannot be loaded or played
  bool playFile(const wchar_t* path);

  /// Silences the utterance and forgets it. Its end notice is posted before this returns, unless it has been
  /// already.
  void stop();

  /// Halts the utterance where it is, without an end notice.
  void pause();

  /// Plays on from there. Does nothing when not a sample has been played yet, or none is left.
  void resume();

  /// Silences the utterance without an end notice, ends the watcher thread and releases the device.
  void close();

 private:
  bool load(const wchar_t* path);
  bool loadMp3(const wchar_t* path);
  HRESULT createBuffer();
  HRESULT fillBuffer();
  HRESULT armStopNotification();
  bool start();
  bool startWatcher();
  static unsigned __stdcall runWatcher(void* player);
  void letWatcherCatchUp();
  void watch();
  void reportEnd();

  bool initialised_ = false;
  ComPtr<IDirectSound8> device_;
  ComPtr<IDirectSoundBuffer8> buffer_;

  // The host thread's while endDue_ is false, else the watcher's.
  CDecoder reader_;

  UniqueHandle thread_;
  /// Signalled by the device when the buffer stops, at its end or before; resets itself.
  UniqueHandle stopEvent_;
  /// Signalled by letWatcherCatchUp, and by the watcher in return.
  UniqueHandle questionEvent_;
  UniqueHandle answerEvent_;
  std::atomic<bool> quit_ = false;

  // Shared by both threads under endMutex_.
  std::mutex endMutex_;
  /// Whether an utterance has started whose end is still to be posted, to where its start went.
  bool endDue_ = false;
  HWND noticeWindow_ = nullptr;
  UINT noticeMessage_ = 0;
};

}  // namespace speech
