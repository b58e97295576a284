#pragma once

#include <cstddef>
#include <cstdint>

#include "framework/exception.h"

/// A place in a list; null behind the last.
struct __POSITION {};  // NOLINT(bugprone-reserved-identifier): the framework's own name
using POSITION = __POSITION*;

/// A doubly linked list of pointers that it does not own.
class CPtrList {
 public:
  /// @param blockSize  how many nodes the framework allocates together; nodes are allocated one by one here
  explicit CPtrList(std::intptr_t blockSize = 10) { static_cast<void>(blockSize); }
  CPtrList(const CPtrList&) = delete;
  CPtrList& operator=(const CPtrList&) = delete;
  ~CPtrList() { RemoveAll(); }

  std::intptr_t GetCount() const { return count_; }
  std::intptr_t GetSize() const { return count_; }
  bool IsEmpty() const { return count_ == 0; }

  POSITION GetHeadPosition() const { return head_; }
  POSITION GetTailPosition() const { return tail_; }
  void*& GetHead() { return node(head_)->value; }
  void*& GetTail() { return node(tail_)->value; }

  /// The element at `position`, which moves on to the next one.
  void*& GetNext(POSITION& position) {
    Node* const current = node(position);
    position = current->next;
    return current->value;
  }

  void*& GetAt(POSITION position) { return node(position)->value; }

  /// The place of the element with an index from 0, or null.
  POSITION FindIndex(std::intptr_t index) const {
    if (index < 0) return nullptr;
    Node* at = head_;
    while (at != nullptr && index-- > 0) at = at->next;
    return at;
  }

  POSITION AddTail(void* value) {
    Node* const added = new Node(nullptr, tail_, value);
    (tail_ != nullptr ? tail_->next : head_) = added;
    tail_ = added;
    ++count_;
    return added;
  }

  /// Removes the first element and returns it.
  void* RemoveHead() {
    Node* const removed = node(head_);
    void* const value = removed->value;
    head_ = removed->next;
    (head_ != nullptr ? head_->previous : tail_) = nullptr;
    --count_;
    delete removed;
    return value;
  }

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
  explicit CTypedPtrList(std::intptr_t blockSize = 10) : Base(blockSize) {}

  Pointer GetHead() { return static_cast<Pointer>(Base::GetHead()); }
  Pointer GetTail() { return static_cast<Pointer>(Base::GetTail()); }
  Pointer GetNext(POSITION& position) { return static_cast<Pointer>(Base::GetNext(position)); }
  Pointer GetAt(POSITION position) { return static_cast<Pointer>(Base::GetAt(position)); }
  Pointer RemoveHead() { return static_cast<Pointer>(Base::RemoveHead()); }
  POSITION AddTail(Pointer value) { return Base::AddTail(value); }
};
