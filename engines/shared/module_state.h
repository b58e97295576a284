#pragma once

// What engines share with their threads and the facade: one copy per process, all of it empty at first.
//
// The host's one thread writes it, engine and player threads read it. Each value is atomic by itself: a
// relaxed load or store is the plain instruction.

#include <windows.h>

#include <atomic>
#include <cstdint>

#include <speech/notices.h>

namespace speech {

/// Where notices go.
extern std::atomic<HWND> g_hostWindow;
/// The message number that notices carry.
extern std::atomic<UINT> g_noticeMessage;
/// The synthesis handle whose events are forwarded to the host; 0 until the first local engine is built, then
/// the last-built one's. Never cleared.
extern std::atomic<std::uint32_t> g_eventTtsHandle;
/// Local engine events are forwarded only while it is true; every construction sets it.
extern std::atomic<bool> g_eventForwarding;
/// While it is true, as it is while the cloud engine is paused, its player posts no end notice.
extern std::atomic<bool> g_endNoticeHeld;

/// Posts a notice, from any thread; without a window it is dropped.
void postNotice(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

/// Posts a notice to the host window of the moment, from any thread.
void postNotice(WPARAM wParam, LPARAM lParam);

}  // namespace speech
