#pragma once

#include <windows.h>

#include <stdexcept>
#include <string>

namespace speech::test {

/// A desktop of the calling thread's own. Under Wine the desktop that all programs share belongs to whichever
/// display the first of them had, which may be none; a new one goes to this process's display. Make it before
/// any window.
class OwnDesktop {
 public:
  OwnDesktop() : former_(GetThreadDesktop(GetCurrentThreadId())) {
    const std::wstring name = L"speech-test-" + std::to_wstring(GetCurrentProcessId());
    desktop_ = CreateDesktopW(name.c_str(), nullptr, nullptr, 0, GENERIC_ALL, nullptr);
    if (desktop_ == nullptr || !SetThreadDesktop(desktop_)) throw std::runtime_error("no desktop");
  }
  OwnDesktop(const OwnDesktop&) = delete;
  OwnDesktop& operator=(const OwnDesktop&) = delete;
  ~OwnDesktop() {
    SetThreadDesktop(former_);
    CloseDesktop(desktop_);
  }

 private:
  HDESK former_;
  HDESK desktop_;
};

}  // namespace speech::test
