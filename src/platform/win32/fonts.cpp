#include "platform/fonts.h"

#include "platform/win32/win32.h"

namespace sorvel::platform {

namespace {

// In tenths of a degree, counterclockwise: 270 degrees make a line run downward.
constexpr int kDownward = 2700;

struct FontListing {
  FontFunction function;
  void* user;
};

int CALLBACK OnFont(const LOGFONTA* font, const TEXTMETRICA*, DWORD type, LPARAM parameter) {
  const FontListing* listing = reinterpret_cast<const FontListing*>(parameter);
  if (type == TRUETYPE_FONTTYPE) {
    listing->function(reinterpret_cast<const char*>(reinterpret_cast<const ENUMLOGFONTA*>(font)->elfFullName),
                      listing->user);
  }
  return TRUE;
}

}  // namespace

FontHandle MakeFont(const char* faceName, int32_t size, int32_t weight) {
  const int direction = faceName[0] == '@' ? kDownward : 0;
  return reinterpret_cast<FontHandle>(
      CreateFontA(size, 0, direction, direction, weight, FALSE, FALSE, FALSE, DEFAULT_CHARSET, 0, 0, 0, 0, faceName));
}

void DeleteFont(FontHandle font) {
  DeleteObject(HandleOf(font));
}

void MeasureText(WindowHandle window, FontHandle font, const char* text, int32_t length, int32_t* width,
                 int32_t* height) {
  const HDC context = GetDC(HandleOf(window));
  const HGDIOBJ old = SelectObject(context, HandleOf(font));
  SIZE size = {};
  GetTextExtentPoint32A(context, text, length, &size);
  SelectObject(context, old);
  ReleaseDC(HandleOf(window), context);
  *width = size.cx;
  *height = size.cy;
}

void DrawTextLine(BitmapHandle bitmap, FontHandle font, int32_t x, int32_t y, const char* text, int32_t length) {
  const HDC memory = CreateCompatibleDC(nullptr);
  const HGDIOBJ oldBitmap = SelectObject(memory, bitmap->handle);
  const HGDIOBJ oldFont = SelectObject(memory, HandleOf(font));
  SetBkMode(memory, TRANSPARENT);
  SetTextColor(memory, RGB(0, 0, 0));
  ExtTextOutA(memory, x, y, 0, nullptr, text, static_cast<UINT>(length), nullptr);
  SelectObject(memory, oldFont);
  SelectObject(memory, oldBitmap);
  DeleteDC(memory);
  // The program reads the pixels next.
  GdiFlush();
}

void ListFonts(FontFunction function, void* user) {
  const HDC context = GetDC(nullptr);
  const FontListing listing = {function, user};
  EnumFontFamiliesA(context, nullptr, OnFont, reinterpret_cast<LPARAM>(&listing));
  ReleaseDC(nullptr, context);
}

}  // namespace sorvel::platform
