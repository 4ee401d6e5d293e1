#pragma once

#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
// Needs the types of the header above.
#include <objbase.h>

#include "platform/bitmaps.h"
#include "platform/drawing.h"
#include "platform/fonts.h"
#include "platform/menus.h"
#include "platform/window.h"

// Conversion between the platform's handles and those of the window system. Except for bitmaps they are the same
// values.
namespace sorvel::platform {

struct Bitmap {
  HBITMAP handle;
  int32_t width;
  int32_t height;  // without the rows that hold the spare bytes
};

inline HWND HandleOf(WindowHandle window) {
  return reinterpret_cast<HWND>(window);
}
inline HDC HandleOf(DeviceContext* context) {
  return reinterpret_cast<HDC>(context);
}
inline HMENU HandleOf(MenuHandle menu) {
  return reinterpret_cast<HMENU>(menu);
}
inline HBRUSH HandleOf(BrushHandle brush) {
  return reinterpret_cast<HBRUSH>(brush);
}
inline HPALETTE HandleOf(PaletteHandle palette) {
  return reinterpret_cast<HPALETTE>(palette);
}
inline HFONT HandleOf(FontHandle font) {
  return reinterpret_cast<HFONT>(font);
}

inline WindowHandle WindowOf(HWND window) {
  return reinterpret_cast<WindowHandle>(window);
}

inline HINSTANCE Instance() {
  return GetModuleHandleA(nullptr);
}

// The font of panels and hints. By default controls use the bold system font, which has no Japanese glyphs.
HFONT PanelFont();

// Whether this is one of the tool tip controls that show hints, whose events are nobody else's business.
bool IsHint(HWND tips);

// The number of a resource where a name can stand.
inline const char* ResourceName(int32_t id) {
  return MAKEINTRESOURCEA(id);
}

// The system's objects may be used while this lives, on the thread that made it. An outer one keeps what inner ones
// have loaded.
class ComUse {
 public:
  ComUse() : hasBegun(SUCCEEDED(CoInitializeEx(nullptr, COINIT_MULTITHREADED))) {}
  ComUse(const ComUse&) = delete;
  ComUse& operator=(const ComUse&) = delete;
  ~ComUse() {
    if (hasBegun) CoUninitialize();
  }

 private:
  bool hasBegun;
};

inline RECT RectOf(const Bounds& bounds) {
  return {bounds.left, bounds.top, bounds.right, bounds.bottom};
}
inline Bounds BoundsOf(const RECT& rect) {
  return {rect.left, rect.top, rect.right, rect.bottom};
}

}  // namespace sorvel::platform
