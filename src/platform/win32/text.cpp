#include "platform/text.h"

#include "platform/win32/win32.h"

namespace sorvel::platform {

namespace {

constexpr UINT kShiftJis = 932;

bool Convert(UINT from, UINT to, std::string_view text, std::string* result) {
  result->clear();
  if (text.empty()) return true;
  const int length = static_cast<int>(text.size());
  std::wstring wide(text.size(), L'\0');
  const int wideLength = MultiByteToWideChar(from, MB_ERR_INVALID_CHARS, text.data(), length, wide.data(), length);
  if (wideLength == 0) return false;
  result->resize(static_cast<size_t>(wideLength) * 3);
  BOOL lost = FALSE;
  const int size = WideCharToMultiByte(to, 0, wide.data(), wideLength, result->data(), static_cast<int>(result->size()),
                                       nullptr, to == CP_UTF8 ? nullptr : &lost);
  result->resize(static_cast<size_t>(size));
  return size > 0 && lost == FALSE;
}

}  // namespace

bool ShiftJisToUtf8(std::string_view text, std::string* result) {
  return Convert(kShiftJis, CP_UTF8, text, result);
}

bool Utf8ToShiftJis(std::string_view text, std::string* result) {
  return Convert(CP_UTF8, kShiftJis, text, result);
}

}  // namespace sorvel::platform
