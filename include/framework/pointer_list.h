#pragma once

/// @file
/// Lists of pointers.

#include <cstddef>
#include <cstdint>

#include "framework/exception.h"

/// A place in a list; null behind the last.
struct __POSITION {};  // NOLINT(bugprone-reserved-identifier): the framework's own name
/// How places are passed around.
using POSITION = __POSITION*;

/// A doubly linked list of pointers that it does not own.
class CPtrList {
 public:
  /// An empty list. The framework allocates `blockSize` nodes together; here each is allocated by itself.
  explicit CPtrList(std::intptr_t blockSize = 10) { static_cast<void>(blockSize); }
  CPtrList(const CPtrList&) = delete;
  CPtrList& operator=(const CPtrList&) = delete;
  ~CPtrList() { RemoveAll(); }

  /// How many elements it has.
  std::intptr_t GetCount() const { return count_; }
  /// The same.
  std::intptr_t GetSize() const { return count_; }
  /// Whether it has none.
  bool IsEmpty() const { return count_ == 0; }

  /// The place of the first element, or null.
  POSITION GetHeadPosition() const { return head_; }
  /// The place of the last element, or null.
  POSITION GetTailPosition() const { return tail_; }
  /// The first element; an empty list throws a CInvalidArgException.
  void*& GetHead() { return node(head_)->value; }
  /// The last element; an empty list throws a CInvalidArgException.
  void*& GetTail() { return node(tail_)->value; }

  /// Returns the element at `position`, which moves on to the next; a null one throws a CInvalidArgException.
  void*& GetNext(POSITION& position) {
    Node* const current = node(position);
    position = current->next;
    return current->value;
  }

  /// The element at a place; null throws a CInvalidArgException.
  void*& GetAt(POSITION position) { return node(position)->value; }

  /// The place of an element by its index from 0, or null.
  POSITION FindIndex(std::intptr_t index) const {
    if (index < 0) return nullptr;
    Node* at = head_;
    while (at != nullptr && index-- > 0) at = at->next;
    return at;
  }

  /// Appends an element, which it does not own, and returns its place.
  POSITION AddTail(void* value) {
    Node* const added = new Node(nullptr, tail_, value);
    (tail_ != nullptr ? tail_->next : head_) = added;
    tail_ = added;
    ++count_;
    return added;
  }

  /// Removes the first element and returns it; an empty list throws a CInvalidArgException.
  void* RemoveHead() {
    Node* const removed = node(head_);
    void* const value = removed->value;
    head_ = removed->next;
    (head_ != nullptr ? head_->previous : tail_) = nullptr;
    --count_;
    delete removed;
    return value;
  }

  /// Removes every element.
  void RemoveAll() {
    while (head_ != nullptr) RemoveHead();
  }

 private:
  struct Node : __POSITION {
    Node(Node* nextNode, Node* previousNode, void* content)
        : next(nextNode), previous(previousNode), value(content) {}
    Node* next;
    Node* previous;
    void* value;
  };

  static Node* node(POSITION position) {
    if (position == nullptr) AfxThrowInvalidArgException();
    return static_cast<Node*>(position);
  }

  Node* head_ = nullptr;
  Node* tail_ = nullptr;
  std::intptr_t count_ = 0;
};

/// CPtrList with a pointer type of the caller's.
template <class Base, class Pointer>
class CTypedPtrList : public Base {
 public:
  /// As CPtrList's own.
  explicit CTypedPtrList(std::intptr_t blockSize = 10) : Base(blockSize) {}

  /// As CPtrList::GetHead.
  Pointer GetHead() { return static_cast<Pointer>(Base::GetHead()); }
  /// As CPtrList::GetTail.
  Pointer GetTail() { return static_cast<Pointer>(Base::GetTail()); }
  /// As CPtrList::GetNext.
  Pointer GetNext(POSITION& position) { return static_cast<Pointer>(Base::GetNext(position)); }
  /// As CPtrList::GetAt.
  Pointer GetAt(POSITION position) { return static_cast<Pointer>(Base::GetAt(position)); }
  /// As CPtrList::RemoveHead.
  Pointer RemoveHead() { return static_cast<Pointer>(Base::RemoveHead()); }
  /// As CPtrList::AddTail.
  POSITION AddTail(Pointer value) { return Base::AddTail(value); }
};
