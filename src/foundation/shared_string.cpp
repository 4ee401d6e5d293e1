#include "foundation/shared_string.h"

#include <cstring>

namespace sorvel {

char EmptyString[1] = {'\0'};

bool AssignString(char** field, const char* text) {
  if (std::strcmp(*field, text) == 0) return false;
  const size_t oldLength = std::strlen(*field);
  const size_t length = std::strlen(text);
  if (oldLength != length) {
    char* old = *field;
    // `text` may lie in the old buffer, which is therefore freed last.
    *field = EmptyString;
    if (length != 0) {
      *field = new char[length + 1];
      std::memcpy(*field, text, length + 1);
    }
    if (oldLength != 0) delete[] old;
    return true;
  }
  std::memcpy(*field, text, length + 1);
  return true;
}

}  // namespace sorvel
