#pragma once

#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include "platform/bitmaps.h"
#include "platform/drawing.h"
#include "platform/window.h"

// The window system's handles behind the seam's.
namespace sorvel::platform {

struct Bitmap {
  HBITMAP handle;
};

inline HWND HandleOf(WindowHandle window) {
  return reinterpret_cast<HWND>(window);
}

inline HDC HandleOf(DeviceContext* context) {
  return reinterpret_cast<HDC>(context);
}

}  // namespace sorvel::platform
