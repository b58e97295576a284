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

/// A growable string whose characters can be accessed in place. Positions and lengths are in characters; -1
/// is "not found". A null pointer stands for the empty text. Counts and places beyond the text are brought
/// into it, save where a character itself is asked for: that throws a CInvalidArgException.
///
///   CStringW label;
///   label.Format(L"%s (v.%d)", name.GetString(), 3);
///   if (label.CompareNoCase(L"ALEX (v.3)") == 0) label += L'!';
template <class Char>
class CStringT {
 public:
  /// An empty text.
  CStringT() = default;
  /// Copies a text.
  CStringT(const Char* text) : text_(viewOf(text)) {}  // NOLINT(google-explicit-constructor)
  /// Copies a text that need not be terminated.
  CStringT(const Char* text, int length) : text_(text, size(length)) {}

  /// The text, terminated; valid until the string is changed.
  operator const Char*() const { return text_.c_str(); }  // NOLINT(google-explicit-constructor)
  /// The same.
  const Char* GetString() const { return text_.c_str(); }
  /// The length without the terminator.
  int GetLength() const { return static_cast<int>(text_.size()); }
  /// Whether it is the empty text.
  bool IsEmpty() const { return text_.empty(); }
  /// Makes it the empty text.
  void Empty() { text_.clear(); }

  /// The character at a place.
  Char GetAt(int index) const { return text_[checked(index)]; }
  /// Replaces the character at a place.
  void SetAt(int index, Char value) { text_[checked(index)] = value; }

  /// Below, at or above 0 as the text sorts before, with or behind the other.
  int Compare(const Char* other) const { return text_.compare(viewOf(other)); }
  /// The same without regard to case.
  int CompareNoCase(const Char* other) const {
    if constexpr (sizeof(Char) == 1) {
      return _stricmp(text_.c_str(), viewOf(other).data());
    } else {
      return _wcsicmp(text_.c_str(), viewOf(other).data());
    }
  }

  /// The first place of a character, or -1.
  int Find(Char wanted, int start = 0) const {
    return start < 0 ? -1 : place(text_.find(wanted, size(start)));
  }
  /// The first place of a text, or -1.
  int Find(const Char* wanted, int start = 0) const {
    return start < 0 ? -1 : place(text_.find(viewOf(wanted), size(start)));
  }
  /// The last place of a character, or -1.
  int ReverseFind(Char wanted) const { return place(text_.rfind(wanted)); }

  /// The first `count` characters.
  CStringT Left(int count) const { return CStringT(text_.substr(0, size(count))); }
  /// The characters from `first` on.
  CStringT Mid(int first) const { return Mid(first, GetLength()); }
  /// At most `count` characters from `first` on.
  CStringT Mid(int first, int count) const {
    return CStringT(text_.substr(std::min(size(first), text_.size()), size(count)));
  }

  /// Replaces every occurrence of a text and returns how many there were.
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

  /// Puts every letter into lower case.
  CStringT& MakeLower() {
    if constexpr (sizeof(Char) == 1) {
      _strlwr(text_.data());
    } else {
      _wcslwr(text_.data());
    }
    return *this;
  }

  /// Formats as printf does. "%s" is text of this string's own width, "%S" of the other.
  void Format(const Char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    FormatV(format, arguments);
    va_end(arguments);
  }

  /// The same with the arguments in a list.
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

  /// Appends.
  CStringT& operator+=(const Char* more) {
    text_ += viewOf(more);
    return *this;
  }
  /// Appends a character.
  CStringT& operator+=(Char more) {
    text_ += more;
    return *this;
  }

  /// @name Joining and comparing, with regard to case
  /// @{

  /// Joins two texts.
  friend CStringT operator+(CStringT left, const CStringT& right) { return left += right.GetString(); }
  friend CStringT operator+(CStringT left, const Char* right) { return left += right; }
  friend CStringT operator+(const Char* left, const CStringT& right) {
    return CStringT(left) += right.GetString();
  }
  /// Compares two texts.
  friend bool operator==(const CStringT& left, const CStringT& right) { return left.text_ == right.text_; }
  friend bool operator==(const CStringT& left, const Char* right) { return left.text_ == viewOf(right); }
  friend bool operator<(const CStringT& left, const CStringT& right) { return left.text_ < right.text_; }

  /// @}

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
