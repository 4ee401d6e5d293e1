#pragma once

#include <cstdint>

namespace sorvel {

// The one ordered container of the document model: a doubly linked list that remembers the position it was asked
// for last, so that access by integer index costs one step for the same index or its neighbour.
//
// The list owns its nodes and never its elements: a list of pointers is walked and its elements are freed by their
// owner before the list is cleared. Reads by index move the cursor, so a list is never read from two places at once,
// and a caller that relies on the cursor across a call into other code seeks again.
template <typename T>
class CursorList {
 public:
  CursorList() = default;
  CursorList(const CursorList&) = delete;
  CursorList& operator=(const CursorList&) = delete;
  ~CursorList() { RemoveAll(); }

  // Moves the cursor to `index`. False, and no change at all, when the index is negative or not below Count().
  bool Seek(int32_t index) {
    if (index < 0 || index >= count_) return false;
    int32_t distance = cursorIndex_ - index;
    bool backward = distance > 0;
    int32_t steps = backward ? distance : -distance;
    // An end is used only when it is strictly nearer than the cursor; the tail is tested first.
    if (count_ - index - 1 < steps) {
      cursor_ = tail_;
      cursorIndex_ = count_ - 1;
      backward = true;
    } else if (index < steps) {
      cursor_ = head_;
      cursorIndex_ = 0;
      backward = false;
    }
    if (backward) {
      while (cursorIndex_ != index) {
        cursor_ = cursor_->prev;
        --cursorIndex_;
      }
    } else {
      while (cursorIndex_ != index) {
        cursor_ = cursor_->next;
        ++cursorIndex_;
      }
    }
    return true;
  }

  // Each of these four moves the cursor and gives true, or gives false without a move when there is no such node.
  bool SeekFirst() {
    if (head_ == nullptr) return false;
    cursor_ = head_;
    cursorIndex_ = 0;
    return true;
  }
  bool SeekLast() {
    if (tail_ == nullptr) return false;
    cursor_ = tail_;
    cursorIndex_ = count_ - 1;
    return true;
  }
  bool SeekNext() {
    if (cursor_ == nullptr || cursor_->next == nullptr) return false;
    cursor_ = cursor_->next;
    ++cursorIndex_;
    return true;
  }
  bool SeekPrev() {
    if (cursor_ == nullptr || cursor_->prev == nullptr) return false;
    cursor_ = cursor_->prev;
    --cursorIndex_;
    return true;
  }

  // The element under the cursor, or the default element (null for pointers) of an empty list.
  T Current() const { return cursor_ != nullptr ? cursor_->element : defaultElement_; }

  // The element under the cursor, for a change in place; null on an empty list.
  T* CurrentSlot() { return cursor_ != nullptr ? &cursor_->element : nullptr; }

  // The element at `index`, or the default element for a bad index. A good index moves the cursor there.
  // This differs from Seek() with its result ignored and then Current(), which stays on the old element.
  T At(int32_t index) { return Seek(index) ? cursor_->element : defaultElement_; }

  // Put a new node behind, or ahead of, the cursor; the new node becomes the cursor.
  void InsertAfter(T element) {
    Node* node = new Node{cursor_, cursor_ != nullptr ? cursor_->next : nullptr, element};
    if (cursor_ != nullptr) ++cursorIndex_;
    Link(node);
  }
  void InsertBefore(T element) {
    Node* node = new Node{cursor_ != nullptr ? cursor_->prev : nullptr, cursor_, element};
    Link(node);
  }

  // Unlinks and frees the cursor's node. The cursor goes to the successor, or to the predecessor at the tail.
  bool RemoveCurrent() {
    Node* node = cursor_;
    if (node == nullptr) return false;
    if (node->prev != nullptr) {
      node->prev->next = node->next;
    } else {
      head_ = node->next;
    }
    if (node->next != nullptr) {
      node->next->prev = node->prev;
      cursor_ = node->next;
    } else {
      tail_ = node->prev;
      cursor_ = node->prev;
      if (cursorIndex_ != 0) --cursorIndex_;
    }
    delete node;
    --count_;
    return true;
  }

  void RemoveAll() {
    SeekFirst();
    while (RemoveCurrent()) {
    }
  }

  // The index of the first node, from the cursor on, whose element is `element`; the cursor goes there. Without a
  // match -1, and the cursor stays. It doesn't look ahead of the cursor: a search of the whole list starts with
  // SeekFirst().
  int32_t Find(T element) {
    int32_t index = cursorIndex_;
    for (Node* node = cursor_; node != nullptr; node = node->next, ++index) {
      if (node->element == element) {
        cursor_ = node;
        cursorIndex_ = index;
        return index;
      }
    }
    return -1;
  }

  int32_t Count() const { return count_; }

  // The index of the cursor; 0 on an empty list.
  int32_t CursorIndex() const { return cursorIndex_; }

 private:
  struct Node {
    Node* prev;
    Node* next;
    T element;
  };

  void Link(Node* node) {
    if (node->prev != nullptr) {
      node->prev->next = node;
    } else {
      head_ = node;
    }
    if (node->next != nullptr) {
      node->next->prev = node;
    } else {
      tail_ = node;
    }
    cursor_ = node;
    ++count_;
  }

  Node* head_ = nullptr;
  Node* tail_ = nullptr;
  Node* cursor_ = nullptr;
  int32_t cursorIndex_ = 0;
  int32_t count_ = 0;
  T defaultElement_{};
};

}  // namespace sorvel
