#include "platform/clipboard.h"

#include <cstring>

#include "platform/win32/win32.h"

namespace sorvel::platform {

namespace {

constexpr int32_t kTile = 200;
constexpr size_t kTilePitch = kTile * 3;

}  // namespace

struct ClipboardPicture {
  HDC picture;
  HGDIOBJ oldPicture;
  HDC tile;
  HGDIOBJ oldTile;
  HBITMAP tileBitmap;
  const uint8_t* tilePixels;
};

bool OpenClipboard(WindowHandle owner) {
  return ::OpenClipboard(HandleOf(owner)) != FALSE;
}

void CloseClipboard() {
  ::CloseClipboard();
}

bool PutClipboardDib(const uint8_t* data, size_t size) {
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE | GMEM_DDESHARE, size);
  void* target = memory != nullptr ? GlobalLock(memory) : nullptr;
  if (target == nullptr) {
    GlobalFree(memory);
    return false;
  }
  std::memcpy(target, data, size);
  GlobalUnlock(memory);
  EmptyClipboard();
  // The clipboard owns the memory from here on.
  if (SetClipboardData(CF_DIB, memory) == nullptr) GlobalFree(memory);
  return true;
}

bool HasClipboardPicture() {
  return IsClipboardFormatAvailable(CF_BITMAP) != FALSE;
}

ClipboardPicture* TakeClipboardPicture(int32_t* width, int32_t* height) {
  const HBITMAP bitmap = static_cast<HBITMAP>(GetClipboardData(CF_BITMAP));
  BITMAP shape = {};
  if (bitmap == nullptr || GetObjectA(bitmap, sizeof(shape), &shape) == 0) return nullptr;
  BITMAPINFO info = {};
  info.bmiHeader.biSize = sizeof(info.bmiHeader);
  info.bmiHeader.biWidth = kTile;
  info.bmiHeader.biHeight = -kTile;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 24;
  void* pixels = nullptr;
  const HBITMAP tile = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &pixels, nullptr, 0);
  if (tile == nullptr) return nullptr;
  *width = shape.bmWidth;
  *height = shape.bmHeight;
  ClipboardPicture* picture = new ClipboardPicture{};
  picture->picture = CreateCompatibleDC(nullptr);
  picture->oldPicture = SelectObject(picture->picture, bitmap);
  picture->tile = CreateCompatibleDC(nullptr);
  picture->oldTile = SelectObject(picture->tile, tile);
  picture->tileBitmap = tile;
  picture->tilePixels = static_cast<const uint8_t*>(pixels);
  return picture;
}

bool ReadClipboardPicture(ClipboardPicture* picture, int32_t x, int32_t y, int32_t width, int32_t height,
                          uint8_t* pixels) {
  if (BitBlt(picture->tile, 0, 0, width, height, picture->picture, x, y, SRCCOPY) == FALSE) return false;
  GdiFlush();
  const size_t rowSize = static_cast<size_t>(width) * 3;
  for (size_t row = 0; row < static_cast<size_t>(height); row++) {
    std::memcpy(pixels + row * rowSize, picture->tilePixels + row * kTilePitch, rowSize);
  }
  return true;
}

void ReleaseClipboardPicture(ClipboardPicture* picture) {
  // The clipboard keeps owning the picture itself.
  SelectObject(picture->picture, picture->oldPicture);
  DeleteDC(picture->picture);
  SelectObject(picture->tile, picture->oldTile);
  DeleteDC(picture->tile);
  DeleteObject(picture->tileBitmap);
  delete picture;
}

}  // namespace sorvel::platform
