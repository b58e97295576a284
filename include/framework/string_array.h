#pragma once

/// @file
/// Arrays of strings.

#include <cstdint>
#include <deque>

#include "framework/exception.h"
#include "framework/string.h"

/// A growable array of wide strings. An index out of range throws a CInvalidArgException.
class CStringArray {
 public:
  /// How many strings it has.
  std::intptr_t GetSize() const { return static_cast<std::intptr_t>(items_.size()); }
  /// The same.
  std::intptr_t GetCount() const { return GetSize(); }
  /// Whether it has none.
  bool IsEmpty() const { return items_.empty(); }

  /// The string at a place; it stays where it is while the array grows.
  const CStringW& GetAt(std::intptr_t index) const {
    if (index < 0 || index >= GetSize()) AfxThrowInvalidArgException();
    return items_[static_cast<std::size_t>(index)];
  }
  /// The same.
  const CStringW& operator[](std::intptr_t index) const { return GetAt(index); }

  /// Appends a copy of a string and returns its index.
  std::intptr_t Add(const wchar_t* item) {
    items_.emplace_back(item);
    return GetSize() - 1;
  }
  /// Removes every string.
  void RemoveAll() { items_.clear(); }

 private:
  // A deque, so that texts stay where they are while the array grows: hosts keep pointers to them.
  std::deque<CStringW> items_;
};
