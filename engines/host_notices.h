#pragma once

// Notices to the host: where they go, and how an engine posts one. The host's thread writes the two values,
// engine and player threads read them too; each is atomic by itself.

#include <windows.h>

#include <atomic>

#include <speech/notices.h>

namespace speech {

/// Where notices go.
extern std::atomic<HWND> g_hostWindow;
/// The message number that notices carry.
extern std::atomic<UINT> g_noticeMessage;

/// Posts a notice, from any thread; without a window it is dropped.
void postNotice(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

/// Posts a notice to the host window of the moment, from any thread.
void postNotice(WPARAM wParam, LPARAM lParam);

}  // namespace speech
