#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <vector>

namespace sorvel {

// Which elements of a list its users may have changed: those that it handed out since Clear(). Once elements were put
// in, moved or removed, or many handed out, the log says that it was the whole list.
class AccessLog {
 public:
  void Add(int32_t index) {
    if (isWhole || (!indices.empty() && indices.back() == index)) return;
    indices.push_back(index);
    if (indices.size() == kMost) isWhole = Indices().size() > kMost / 2;
  }
  void AddAll() { isWhole = true; }
  void Clear() {
    isWhole = false;
    indices.clear();
  }

  bool IsWhole() const { return isWhole; }
  // In ascending order; of no use if it was the whole list.
  std::vector<int32_t> Indices() {
    std::sort(indices.begin(), indices.end());
    indices.erase(std::unique(indices.begin(), indices.end()), indices.end());
    return indices;
  }

 private:
  static constexpr size_t kMost = 64;

  bool isWhole = false;
  std::vector<int32_t> indices;
};

// The list of the document model: a doubly linked list with a cursor, the position of the last access, so that access
// by index to the same element or its neighbour is one step.
//
// The list owns its nodes but not its elements: the owner of a list of pointers frees them, see ReleaseElements().
// Reading by index moves the cursor. Code that calls other code while it walks a list must seek again afterwards.
template <typename T>
class CursorList {
 private:
  struct Node {
    Node* prev;
    Node* next;
    T element;
  };

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
    // Start at an end of the list if that is nearer than the cursor.
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

  // Each moves the cursor, or gives false and leaves it when there is no such node.
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
  T Current() const {
    if (cursor == nullptr) return defaultElement;
    if (log != nullptr) log->Add(cursorIndex);
    return cursor->element;
  }

  // The element under the cursor, for a change in place; null on an empty list.
  T* CurrentSlot() {
    NoteMove();
    return cursor != nullptr ? &cursor->element : nullptr;
  }

  // The element at `index`, to which the cursor moves, or the default element for an index out of range.
  T At(int32_t index) { return Seek(index) ? Current() : defaultElement; }

  // The same for reading only: what a pointer points to is constant, so that no log need know.
  using Constant = std::conditional_t<std::is_pointer_v<T>, const std::remove_pointer_t<T>*, T>;
  Constant Peek(int32_t index) { return Seek(index) ? cursor->element : defaultElement; }

  // Insert a new node after, or before, the cursor; the cursor moves to it.
  void InsertAfter(T element) {
    Node* node = new Node{cursor, cursor != nullptr ? cursor->next : nullptr, element};
    if (cursor != nullptr) ++cursorIndex;
    Link(node);
  }
  void InsertBefore(T element) {
    Node* node = new Node{cursor != nullptr ? cursor->prev : nullptr, cursor, element};
    Link(node);
  }

  // Removes the cursor's node. The cursor moves to the next node, or from the tail to the previous one.
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
    NoteMove();
    return true;
  }

  void RemoveAll() {
    SeekFirst();
    while (RemoveCurrent()) {
    }
  }

  // Searches from the cursor to the tail: the index of the first match, to which the cursor moves, or -1. Call
  // SeekFirst() first to search the whole list.
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

  // Walks from the head on and leaves the cursor where it is. What pointers of a constant list point to is constant.
  template <typename Element>
  class Iterator {
   public:
    Element operator*() const { return node->element; }
    Iterator& operator++() {
      node = node->next;
      return *this;
    }
    bool operator==(const Iterator&) const = default;

   private:
    friend class CursorList;
    const typename CursorList::Node* node = nullptr;
  };
  Iterator<T> begin() {
    if (log != nullptr) log->AddAll();
    Iterator<T> first;
    first.node = head;
    return first;
  }
  Iterator<T> end() { return {}; }
  Iterator<Constant> begin() const {
    Iterator<Constant> first;
    first.node = head;
    return first;
  }
  Iterator<Constant> end() const { return {}; }

  int32_t Count() const { return count; }

  // The index of the cursor; 0 on an empty list.
  int32_t CursorIndex() const { return cursorIndex; }

  // Another number after each insertion and removal, and each slot that was handed out.
  uint64_t Revision() const { return revision; }

  // From now on the log is told which elements are handed out, until it is null. It isn't owned.
  void LogTo(AccessLog* accessLog) { log = accessLog; }

 private:
  void NoteMove() {
    ++revision;
    if (log != nullptr) log->AddAll();
  }
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
    NoteMove();
  }

  Node* head = nullptr;
  Node* tail = nullptr;
  Node* cursor = nullptr;
  int32_t cursorIndex = 0;
  int32_t count = 0;
  uint64_t revision = 0;
  AccessLog* log = nullptr;
  T defaultElement{};
};

// Calls `release` for each element, then empties the list.
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
