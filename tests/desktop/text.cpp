#include "text.h"

#include <windows.h>

namespace sorvel::desktop {

namespace {

constexpr UINT kShiftJis = 932;

std::wstring ToWide(const std::string& text, UINT codePage) {
  const int size = static_cast<int>(text.size());
  std::wstring wide(static_cast<size_t>(MultiByteToWideChar(codePage, 0, text.data(), size, nullptr, 0)), L'\0');
  MultiByteToWideChar(codePage, 0, text.data(), size, wide.data(), static_cast<int>(wide.size()));
  return wide;
}

std::string FromWide(const std::wstring& wide, UINT codePage) {
  const int size = static_cast<int>(wide.size());
  const int length = WideCharToMultiByte(codePage, 0, wide.data(), size, nullptr, 0, nullptr, nullptr);
  std::string text(static_cast<size_t>(length), '\0');
  WideCharToMultiByte(codePage, 0, wide.data(), size, text.data(), length, nullptr, nullptr);
  return text;
}

}  // namespace

std::wstring Wide(const std::string& utf8) {
  return ToWide(utf8, CP_UTF8);
}

std::string Utf8(const std::wstring& wide) {
  return FromWide(wide, CP_UTF8);
}

std::string ShiftJis(const std::string& utf8) {
  return FromWide(Wide(utf8), kShiftJis);
}

std::string FromShiftJis(const std::string& bytes) {
  return Utf8(ToWide(bytes, kShiftJis));
}

}  // namespace sorvel::desktop
