#include "platform/drawing.h"

#include "platform/win32/win32.h"

namespace sorvel::platform {

namespace {

// The state of the one WM_PAINT that is being answered.
PAINTSTRUCT gPainting;

}  // namespace

DeviceContext* BeginDrawing(WindowHandle window) {
  return reinterpret_cast<DeviceContext*>(GetDC(HandleOf(window)));
}

void EndDrawing(WindowHandle window, DeviceContext* context) {
  ReleaseDC(HandleOf(window), HandleOf(context));
}

DeviceContext* BeginPainting(WindowHandle window) {
  return reinterpret_cast<DeviceContext*>(BeginPaint(HandleOf(window), &gPainting));
}

void EndPainting(WindowHandle window, DeviceContext*) {
  EndPaint(HandleOf(window), &gPainting);
}

void FillBlack(DeviceContext* context, int32_t left, int32_t top, int32_t right, int32_t bottom) {
  if (left >= right || top >= bottom) return;
  const RECT rect = {left, top, right, bottom};
  FillRect(HandleOf(context), &rect, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
}

void DrawBitmap(DeviceContext* context, int32_t x, int32_t y, int32_t width, int32_t height, BitmapHandle bitmap,
                int32_t sourceX, int32_t sourceY, const ColorEntry (&colors)[256]) {
  if (bitmap == nullptr) return;
  const HDC memory = CreateCompatibleDC(HandleOf(context));
  const HGDIOBJ old = SelectObject(memory, bitmap->handle);
  SetDIBColorTable(memory, 0, 256, reinterpret_cast<const RGBQUAD*>(colors));
  BitBlt(HandleOf(context), x, y, width, height, memory, sourceX, sourceY, SRCCOPY);
  SelectObject(memory, old);
  DeleteDC(memory);
  // The pixels are written to next, so nothing that reads them may still be waiting.
  GdiFlush();
}

}  // namespace sorvel::platform
