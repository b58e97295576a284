#pragma once

/// @file
/// Strings.

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <cwchar>
#include <string>
#include <string_view>
#include <utility>

#include "framework/exception.h"

/// A growable string that a pointer to its characters can be taken from anywhere. Positions and lengths are
/// in characters; -1 is "not found". A null pointer stands for the empty text. Counts and places beyond the
/// text are brought into it, save where a character itself is asked for: that throws a CInvalidArgException.
///
///   CStringW label;
///   label.Format(L"%s (v.%d)", name.GetString(), 3);
///   if (label.CompareNoCase(L"ALEX (v.3)") == 0) label += L'!';
template <class Char>
class CStringT {
 public:
  /// An empty text.
  CStringT() = default;
  /// @param text  copied; null for the empty text
  CStringT(const Char* text) : text_(viewOf(text)) {}  // NOLINT(google-explicit-constructor)
  /// @param text    copied; need not be terminated
  /// @param length  of the text
  CStringT(const Char* text, int length) : text_(text, size(length)) {}

  /// @return the text, terminated; valid until the string is changed
  operator const Char*() const { return text_.c_str(); }  // NOLINT(google-explicit-constructor)
  /// @return the same
  const Char* GetString() const { return text_.c_str(); }
  /// @return the length
  int GetLength() const { return static_cast<int>(text_.size()); }
  /// @return true for the empty text
  bool IsEmpty() const { return text_.empty(); }
  /// Makes it the empty text.
  void Empty() { text_.clear(); }

  /// @param index  from 0
  /// @return the character there
  Char GetAt(int index) const { return text_[checked(index)]; }
  /// @param index  from 0
  /// @param value  the new character there
  void SetAt(int index, Char value) { text_[checked(index)] = value; }

  /// @param other  another text
  /// @return below, at or above 0: its place before, at or behind the other's
  int Compare(const Char* other) const { return text_.compare(viewOf(other)); }
  /// @copydoc Compare
  /// Letter case does not count.
  int CompareNoCase(const Char* other) const {
    if constexpr (sizeof(Char) == 1) {
      return _stricmp(text_.c_str(), viewOf(other).data());
    } else {
      return _wcsicmp(text_.c_str(), viewOf(other).data());
    }
  }

  /// @param wanted  what to look for
  /// @param start   where to begin
  /// @return its first place, or -1
  int Find(Char wanted, int start = 0) const {
    return start < 0 ? -1 : place(text_.find(wanted, size(start)));
  }
  /// @param wanted  what to look for
  /// @param start   where to begin
  /// @return its first place, or -1
  int Find(const Char* wanted, int start = 0) const {
    return start < 0 ? -1 : place(text_.find(viewOf(wanted), size(start)));
  }
  /// @param wanted  what to look for
  /// @return its last place, or -1
  int ReverseFind(Char wanted) const { return place(text_.rfind(wanted)); }

  /// @param count  how many
  /// @return the first characters
  CStringT Left(int count) const { return CStringT(text_.substr(0, size(count))); }
  /// @param first  where to begin
  /// @return the characters from there on
  CStringT Mid(int first) const { return Mid(first, GetLength()); }
  /// @param first  where to begin
  /// @param count  how many
  /// @return the characters from there on
  CStringT Mid(int first, int count) const {
    return CStringT(text_.substr(std::min(size(first), text_.size()), size(count)));
  }

  /// Replaces every occurrence of a text.
  /// @param wanted       the text
  /// @param replacement  what takes its place
  /// @return how many there were
  int Replace(const Char* wanted, const Char* replacement) {
    const std::basic_string<Char> from(viewOf(wanted)), to(viewOf(replacement));
    if (from.empty()) return 0;
    int count = 0;
    for (auto at = text_.find(from); at != text_.npos; at = text_.find(from, at + to.size())) {
      text_.replace(at, from.size(), to);
      ++count;
    }
    return count;
  }

  /// Makes the letters small ones.
  /// @return this string
  CStringT& MakeLower() {
    if constexpr (sizeof(Char) == 1) {
      _strlwr(text_.data());
    } else {
      _wcslwr(text_.data());
    }
    return *this;
  }

  /// Formats as printf does. "%s" is text of this string's own width, "%S" of the other.
  /// @param format  with the arguments that it names behind it
  void Format(const Char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    FormatV(format, arguments);
    va_end(arguments);
  }

  /// As Format.
  /// @param format     as for Format
  /// @param arguments  what the format names
  void FormatV(const Char* format, std::va_list arguments) {
    std::va_list counted;
    va_copy(counted, arguments);
    int length = 0;
    if constexpr (sizeof(Char) == 1) {
      length = _vscprintf(format, counted);
    } else {
      length = _vscwprintf(format, counted);
    }
    va_end(counted);
    std::basic_string<Char> formatted(length > 0 ? static_cast<std::size_t>(length) : 0, Char{});
    if (length > 0) {
      if constexpr (sizeof(Char) == 1) {
        _vsnprintf(formatted.data(), formatted.size(), format, arguments);
      } else {
        _vsnwprintf(formatted.data(), formatted.size(), format, arguments);
      }
    }
    text_ = std::move(formatted);
  }

  /// @param more  appended
  /// @return this string
  CStringT& operator+=(const Char* more) {
    text_ += viewOf(more);
    return *this;
  }
  /// @param more  appended
  /// @return this string
  CStringT& operator+=(Char more) {
    text_ += more;
    return *this;
  }

  /// @param left,right  put together
  /// @return the whole
  friend CStringT operator+(CStringT left, const CStringT& right) { return left += right.GetString(); }
  /// @param left,right  put together
  /// @return the whole
  friend CStringT operator+(CStringT left, const Char* right) { return left += right; }
  /// @param left,right  put together
  /// @return the whole
  friend CStringT operator+(const Char* left, const CStringT& right) {
    return CStringT(left) += right.GetString();
  }
  /// @param left,right  compared with regard to case
  /// @return true for the same text
  friend bool operator==(const CStringT& left, const CStringT& right) { return left.text_ == right.text_; }
  /// @param left,right  compared with regard to case
  /// @return true for the same text
  friend bool operator==(const CStringT& left, const Char* right) { return left.text_ == viewOf(right); }
  /// @param left,right  compared character by character
  /// @return true when the left one comes first
  friend bool operator<(const CStringT& left, const CStringT& right) { return left.text_ < right.text_; }

 private:
  explicit CStringT(std::basic_string<Char> text) : text_(std::move(text)) {}

  static std::basic_string_view<Char> viewOf(const Char* text) {
    static constexpr Char kEmpty = 0;
    return text != nullptr ? text : &kEmpty;
  }
  static std::size_t size(int count) { return static_cast<std::size_t>(std::max(count, 0)); }
  std::size_t checked(int index) const {
    if (index < 0 || index >= GetLength()) AfxThrowInvalidArgException();
    return static_cast<std::size_t>(index);
  }
  static int place(std::size_t found) {
    return found == std::basic_string<Char>::npos ? -1 : static_cast<int>(found);
  }

  std::basic_string<Char> text_;
};

/// UTF-16.
using CStringW = CStringT<wchar_t>;
/// Text in a code page, or UTF-8.
using CStringA = CStringT<char>;
