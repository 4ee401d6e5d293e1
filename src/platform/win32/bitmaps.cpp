#include <cstring>

#include "platform/win32/win32.h"

namespace sorvel::platform {

BitmapHandle CreateBitmap(int32_t width, int32_t height, const ColorEntry* colors, int32_t colorCount,
                          int32_t colorsUsed, uint8_t** bits) {
  struct {
    BITMAPINFOHEADER head;
    RGBQUAD colors[256];
  } info = {};
  const int32_t pitch = (width + 3) & ~3;
  info.head.biSize = sizeof(info.head);
  info.head.biWidth = width;
  // Additional rows, which are never shown, provide the spare bytes.
  info.head.biHeight = -(height + (kSpareBytes + pitch - 1) / pitch);
  info.head.biPlanes = 1;
  info.head.biBitCount = 8;
  info.head.biClrUsed = static_cast<DWORD>(colorsUsed);
  std::memcpy(info.colors, colors, static_cast<size_t>(colorCount) * sizeof(RGBQUAD));
  void* pixels = nullptr;
  const HBITMAP handle =
      CreateDIBSection(nullptr, reinterpret_cast<BITMAPINFO*>(&info), DIB_RGB_COLORS, &pixels, nullptr, 0);
  if (handle == nullptr) return nullptr;
  *bits = static_cast<uint8_t*>(pixels);
  return new Bitmap{handle, width, height};
}

void SetBitmapColors(BitmapHandle bitmap, int32_t first, int32_t count, const ColorEntry* colors) {
  const HDC memory = CreateCompatibleDC(nullptr);
  const HGDIOBJ old = SelectObject(memory, bitmap->handle);
  SetDIBColorTable(memory, static_cast<UINT>(first), static_cast<UINT>(count),
                   reinterpret_cast<const RGBQUAD*>(colors));
  SelectObject(memory, old);
  DeleteDC(memory);
}

void ReadBitmapColors(BitmapHandle bitmap, ColorEntry (&colors)[256]) {
  const HDC memory = CreateCompatibleDC(nullptr);
  const HGDIOBJ old = SelectObject(memory, bitmap->handle);
  GetDIBColorTable(memory, 0, 256, reinterpret_cast<RGBQUAD*>(colors));
  SelectObject(memory, old);
  DeleteDC(memory);
}

void DeleteBitmap(BitmapHandle bitmap) {
  if (bitmap == nullptr) return;
  DeleteObject(bitmap->handle);
  delete bitmap;
}

}  // namespace sorvel::platform
