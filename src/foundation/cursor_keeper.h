#pragma once

#include <cstdint>

#include "foundation/cursor_list.h"

namespace sorvel {

// Puts the cursor of a list back at the end of its scope: commands may rely on where they left it. For code that only
// reads.
template <typename T>
class CursorKeeper {
 public:
  explicit CursorKeeper(CursorList<T>* kept) : list(kept), index(kept->CursorIndex()) {}
  CursorKeeper(const CursorKeeper&) = delete;
  CursorKeeper& operator=(const CursorKeeper&) = delete;
  ~CursorKeeper() { list->Seek(index); }

 private:
  CursorList<T>* list;
  int32_t index;
};

}  // namespace sorvel
