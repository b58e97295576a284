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
  /// @param blockSize  how many nodes the framework allocates together; nodes are allocated one by one here
  explicit CPtrList(std::intptr_t blockSize = 10) { static_cast<void>(blockSize); }
  CPtrList(const CPtrList&) = delete;
  CPtrList& operator=(const CPtrList&) = delete;
  ~CPtrList() { RemoveAll(); }

  /// @return how many elements it has
  std::intptr_t GetCount() const { return count_; }
  /// @return how many elements it has
  std::intptr_t GetSize() const { return count_; }
  /// @return true without elements
  bool IsEmpty() const { return count_ == 0; }

  /// @return the place of the first element, or null
  POSITION GetHeadPosition() const { return head_; }
  /// @return the place of the last element, or null
  POSITION GetTailPosition() const { return tail_; }
  /// @return the first element; an empty list throws a CInvalidArgException
  void*& GetHead() { return node(head_)->value; }
  /// @return the last element; an empty list throws a CInvalidArgException
  void*& GetTail() { return node(tail_)->value; }

  /// Walks the list.
  /// @param position  moves on to the next element
  /// @return the element at `position`; a null one throws a CInvalidArgException
  void*& GetNext(POSITION& position) {
    Node* const current = node(position);
    position = current->next;
    return current->value;
  }

  /// @param position  a place in this list; null throws a CInvalidArgException
  /// @return the element there
  void*& GetAt(POSITION position) { return node(position)->value; }

  /// Finds an element by its index.
  /// @param index  from 0
  /// @return its place, or null
  POSITION FindIndex(std::intptr_t index) const {
    if (index < 0) return nullptr;
    Node* at = head_;
    while (at != nullptr && index-- > 0) at = at->next;
    return at;
  }

  /// Appends an element.
  /// @param value  not owned
  /// @return its place
  POSITION AddTail(void* value) {
    Node* const added = new Node(nullptr, tail_, value);
    (tail_ != nullptr ? tail_->next : head_) = added;
    tail_ = added;
    ++count_;
    return added;
  }

  /// Removes the first element; an empty list throws a CInvalidArgException.
  /// @return the element
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
  /// @param blockSize  as for CPtrList
  explicit CTypedPtrList(std::intptr_t blockSize = 10) : Base(blockSize) {}

  /// @copydoc CPtrList::GetHead
  Pointer GetHead() { return static_cast<Pointer>(Base::GetHead()); }
  /// @copydoc CPtrList::GetTail
  Pointer GetTail() { return static_cast<Pointer>(Base::GetTail()); }
  /// @copydoc CPtrList::GetNext
  Pointer GetNext(POSITION& position) { return static_cast<Pointer>(Base::GetNext(position)); }
  /// @copydoc CPtrList::GetAt
  Pointer GetAt(POSITION position) { return static_cast<Pointer>(Base::GetAt(position)); }
  /// @copydoc CPtrList::RemoveHead
  Pointer RemoveHead() { return static_cast<Pointer>(Base::RemoveHead()); }
  /// @copydoc CPtrList::AddTail
  POSITION AddTail(Pointer value) { return Base::AddTail(value); }
};
