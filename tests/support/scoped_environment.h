#pragma once

#include <windows.h>

#include <string>

namespace speech::test {

/// An environment variable that has its former value again at the end of the scope.
class ScopedEnvironment {
 public:
  ScopedEnvironment(const wchar_t* name, const std::wstring& value) : name_(name), former_(1024, L'\0') {
    former_.resize(GetEnvironmentVariableW(name, former_.data(), 1024));
    SetEnvironmentVariableW(name, value.c_str());
  }
  ScopedEnvironment(const ScopedEnvironment&) = delete;
  ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;
  ~ScopedEnvironment() { SetEnvironmentVariableW(name_, former_.empty() ? nullptr : former_.c_str()); }

 private:
  const wchar_t* name_;
  std::wstring former_;
};

}  // namespace speech::test
