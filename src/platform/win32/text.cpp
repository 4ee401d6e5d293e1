#include "platform/text.h"

#include "platform/win32/win32.h"

namespace sorvel::platform {

namespace {

constexpr UINT kShiftJis = 932;

bool ConvertWhole(UINT from, UINT to, std::string_view text, std::string* result) {
  result->clear();
  if (text.empty()) return true;
  const int length = static_cast<int>(text.size());
  std::wstring wide(text.size(), L'\0');
  const int wideLength = MultiByteToWideChar(from, MB_ERR_INVALID_CHARS, text.data(), length, wide.data(), length);
  if (wideLength == 0) return false;
  result->resize(static_cast<size_t>(wideLength) * 3);
  BOOL lost = FALSE;
  // No letter may turn into one that only looks like it.
  const DWORD flags = to == CP_UTF8 ? 0 : WC_NO_BEST_FIT_CHARS;
  const int size = WideCharToMultiByte(to, flags, wide.data(), wideLength, result->data(),
                                       static_cast<int>(result->size()), nullptr, to == CP_UTF8 ? nullptr : &lost);
  result->resize(static_cast<size_t>(size));
  return size > 0 && lost == FALSE;
}

// What can't be converted whole is cut from its end until it can: texts are short.
bool Convert(UINT from, UINT to, std::string_view text, std::string* result) {
  const bool whole = ConvertWhole(from, to, text, result);
  bool part = whole;
  while (!part) {
    text.remove_suffix(1);
    part = ConvertWhole(from, to, text, result);
  }
  return whole;
}

}  // namespace

bool ShiftJisToUtf8(std::string_view text, std::string* result) {
  return Convert(kShiftJis, CP_UTF8, text, result);
}

bool Utf8ToShiftJis(std::string_view text, std::string* result) {
  return Convert(CP_UTF8, kShiftJis, text, result);
}

}  // namespace sorvel::platform
