#pragma once

/// @file
/// What the library posts to the host window.
///
/// Every notice but the copy-data one carries the message number that the host gave to
/// ITextToSpeech::getInstance. It is posted, never sent, because engine and player threads raise it.
///
///     wParam        lParam   raised by  when
///     0             0        cloud      playback has started
///     0xFFFFFFFF    1        cloud      playback has ended
///     3858          1        local      the speech has ended, or the engine refused the text
///     3858          1        cloud      the request failed
///     word offset   length   local      a word is heard (UTF-16 units of the text given to speak)
///
/// Just before the cloud engine posts a failure it may send WM_COPYDATA with dwData 0 and a narrow text
/// without terminator that says what went wrong.

#include <framework/windows.h>

/// What hosts see of the library beside its classes.
namespace speech {

/// wParam of a notice that is not a word's.
enum Notice : WPARAM {
  kNoticePlaybackStarted = 0,         ///< Cloud: the sound begins.
  kNoticePlaybackEnded = 0xFFFFFFFF,  ///< Cloud: the sound has ended.
  kNoticeFinishedOrFailed = 0x0F12,   ///< Local: the end, or a refusal; cloud: a failure.
};

/// lParam that goes with it.
enum NoticeDetail : LPARAM {
  kDetailPlaybackStarted = 0,   ///< With kNoticePlaybackStarted.
  kDetailPlaybackEnded = 1,     ///< With kNoticePlaybackEnded.
  kDetailFinishedOrFailed = 1,  ///< With kNoticeFinishedOrFailed.
};

}  // namespace speech
