#include "engines/host_notices.h"

namespace speech {

constinit std::atomic<HWND> g_hostWindow = nullptr;
constinit std::atomic<UINT> g_noticeMessage = 0;

void postNotice(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  // Without a window the message would pile up in the calling thread's own queue.
  if (window != nullptr) PostMessageW(window, message, wParam, lParam);
}

void postNotice(WPARAM wParam, LPARAM lParam) {
  postNotice(g_hostWindow.load(std::memory_order_relaxed), g_noticeMessage.load(std::memory_order_relaxed),
             wParam, lParam);
}

}  // namespace speech
