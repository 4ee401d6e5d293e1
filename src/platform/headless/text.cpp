#include "platform/text.h"

#include <iconv.h>

namespace sorvel::platform {

namespace {

bool Convert(const char* from, const char* to, std::string_view text, std::string* result) {
  result->clear();
  iconv_t converter = iconv_open(to, from);
  // The library's failure value. NOLINTNEXTLINE(performance-no-int-to-ptr)
  if (converter == reinterpret_cast<iconv_t>(-1)) return false;
  // A byte of either encoding becomes at most three of the other.
  result->resize(text.size() * 3 + 4);
  char* in = const_cast<char*>(text.data());
  size_t inLeft = text.size();
  char* out = result->data();
  size_t outLeft = result->size();
  const bool done = iconv(converter, &in, &inLeft, &out, &outLeft) != static_cast<size_t>(-1);
  iconv_close(converter);
  result->resize(result->size() - outLeft);
  return done;
}

}  // namespace

bool ShiftJisToUtf8(std::string_view text, std::string* result) {
  return Convert("CP932", "UTF-8", text, result);
}

bool Utf8ToShiftJis(std::string_view text, std::string* result) {
  return Convert("UTF-8", "CP932", text, result);
}

}  // namespace sorvel::platform
