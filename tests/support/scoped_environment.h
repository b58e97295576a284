#pragma once

#include <windows.h>

#include <string>

namespace speech::test {

/// An environment variable that has its former value again at the end of the scope.
class ScopedEnvironment {
 public:
  ScopedEnvironment(const wchar_t* name, const std::wstring& value) : name_(name) {
    wchar_t former[1024];
    wasSet_ = GetEnvironmentVariableW(name, former, ARRAYSIZE(former)) != 0;
    if (wasSet_) former_ = former;
    SetEnvironmentVariableW(name, value.c_str());
  }
  ScopedEnvironment(const ScopedEnvironment&) = delete;
  ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;
  ~ScopedEnvironment() { SetEnvironmentVariableW(name_, wasSet_ ? former_.c_str() : nullptr); }

 private:
  const wchar_t* name_;
  std::wstring former_;
  bool wasSet_ = false;
};

}  // namespace speech::test
