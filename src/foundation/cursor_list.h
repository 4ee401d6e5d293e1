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
    if (index < 0 || index >= count) return false;
    int32_t distance = cursorIndex - index;
    bool backward = distance > 0;
    int32_t steps = backward ? distance : -distance;
    // An end is used only when it is strictly nearer than the cursor; the tail is tested first.
    if (count - index - 1 < steps) {
      cursor = tail;
      cursorIndex = count - 1;
      backward = true;
    } else if (index < steps) {
      cursor = head;
      cursorIndex = 0;
      backward = false;
    }
    if (backward) {
      while (cursorIndex != index) {
        cursor = cursor->prev;
        --cursorIndex;
      }
    } else {
      while (cursorIndex != index) {
        cursor = cursor->next;
        ++cursorIndex;
      }
    }
    return true;
  }

  // Each of these four moves the cursor and gives true, or gives false without a move when there is no such node.
  bool SeekFirst() {
    if (head == nullptr) return false;
    cursor = head;
    cursorIndex = 0;
    return true;
  }
  bool SeekLast() {
    if (tail == nullptr) return false;
    cursor = tail;
    cursorIndex = count - 1;
    return true;
  }
  bool SeekNext() {
    if (cursor == nullptr || cursor->next == nullptr) return false;
    cursor = cursor->next;
    ++cursorIndex;
    return true;
  }
  bool SeekPrev() {
    if (cursor == nullptr || cursor->prev == nullptr) return false;
    cursor = cursor->prev;
    --cursorIndex;
    return true;
  }

  // The element under the cursor, or the default element (null for pointers) of an empty list.
  T Current() const { return cursor != nullptr ? cursor->element : defaultElement; }

  // The element under the cursor, for a change in place; null on an empty list.
  T* CurrentSlot() { return cursor != nullptr ? &cursor->element : nullptr; }

  // The element at `index`, or the default element for a bad index. A good index moves the cursor there.
  // This differs from Seek() with its result ignored and then Current(), which stays on the old element.
  T At(int32_t index) { return Seek(index) ? cursor->element : defaultElement; }

  // Put a new node behind, or ahead of, the cursor; the new node becomes the cursor.
  void InsertAfter(T element) {
    Node* node = new Node{cursor, cursor != nullptr ? cursor->next : nullptr, element};
    if (cursor != nullptr) ++cursorIndex;
    Link(node);
  }
  void InsertBefore(T element) {
    Node* node = new Node{cursor != nullptr ? cursor->prev : nullptr, cursor, element};
    Link(node);
  }

  // Unlinks and frees the cursor's node. The cursor goes to the successor, or to the predecessor at the tail.
  bool RemoveCurrent() {
    Node* node = cursor;
    if (node == nullptr) return false;
    if (node->prev != nullptr) {
      node->prev->next = node->next;
    } else {
      head = node->next;
    }
    if (node->next != nullptr) {
      node->next->prev = node->prev;
      cursor = node->next;
    } else {
      tail = node->prev;
      cursor = node->prev;
      if (cursorIndex != 0) --cursorIndex;
    }
    delete node;
    --count;
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
    int32_t index = cursorIndex;
    for (Node* node = cursor; node != nullptr; node = node->next, ++index) {
      if (node->element == element) {
        cursor = node;
        cursorIndex = index;
        return index;
      }
    }
    return -1;
  }

  int32_t Count() const { return count; }

  // The index of the cursor; 0 on an empty list.
  int32_t CursorIndex() const { return cursorIndex; }

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
      head = node;
    }
    if (node->next != nullptr) {
      node->next->prev = node;
    } else {
      tail = node;
    }
    cursor = node;
    ++count;
  }

  Node* head = nullptr;
  Node* tail = nullptr;
  Node* cursor = nullptr;
  int32_t cursorIndex = 0;
  int32_t count = 0;
  T defaultElement{};
};

// How an owner lets go of a list: each element is freed by `release`, and then the list is empty.
template <typename T, typename Release>
void ReleaseElements(CursorList<T>* list, const Release& release) {
  if (list->SeekFirst()) {
    do {
      release(list->Current());
    } while (list->SeekNext());
  }
  list->RemoveAll();
}

}  // namespace sorvel
