#pragma once

// Everything that the module keeps between calls: one copy per process, all of it empty at first.
//
// The host's one thread writes it. What engine and player threads read as well is atomic, each value by
// itself: a relaxed load or store is the plain instruction.

#include <windows.h>

#include <atomic>
#include <cstdint>

#include <speech/text_to_speech.h>

namespace speech {

// The host's thread only.

/// The one live engine; owned.
extern ITextToSpeech* g_currentInstance;
/// The product of the last successful getInstance; not owned.
extern LXAPIProduct* g_currentProduct;
/// The installed voices; owned. While it is null the engine library must not be called.
extern LXAPIProductList* g_productList;
/// The distinct language codes, appended to by every getISOCodeList.
extern CStringArray g_languageCodes;

// Read by engine and player threads too.

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
