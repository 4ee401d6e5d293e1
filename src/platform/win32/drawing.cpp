#include "platform/drawing.h"

#include <algorithm>

#include "platform/win32/win32.h"

namespace sorvel::platform {

namespace {

// The state of the one WM_PAINT that is being answered.
PAINTSTRUCT gPainting;

// A bitmap as the source of a copy.
class BitmapSource {
 public:
  BitmapSource(DeviceContext* context, BitmapHandle bitmap)
      : handle(CreateCompatibleDC(HandleOf(context))), old(SelectObject(handle, bitmap->handle)) {}
  BitmapSource(const BitmapSource&) = delete;
  BitmapSource& operator=(const BitmapSource&) = delete;
  ~BitmapSource() {
    SelectObject(handle, old);
    DeleteDC(handle);
    // The program writes to the pixels next, so queued drawing that reads them must finish.
    GdiFlush();
  }

  const HDC handle;

 private:
  const HGDIOBJ old;
};

// Clips a range of the source to 0 up to `limit`, and adjusts the target.
void CutToSource(int32_t limit, int32_t* source, int32_t* target, int32_t* length) {
  const int32_t before = std::max(0, -*source);
  *source += before;
  *target += before;
  *length = std::min(*length - before, limit - *source);
}

}  // namespace

DeviceContext* BeginDrawing(WindowHandle window) {
  return reinterpret_cast<DeviceContext*>(GetDC(HandleOf(window)));
}

void EndDrawing(WindowHandle window, DeviceContext* context) {
  ReleaseDC(HandleOf(window), HandleOf(context));
}

DeviceContext* BeginPainting(WindowHandle window, Bounds* update) {
  const HDC context = BeginPaint(HandleOf(window), &gPainting);
  if (update != nullptr) *update = BoundsOf(gPainting.rcPaint);
  return reinterpret_cast<DeviceContext*>(context);
}

void EndPainting(WindowHandle window, DeviceContext*) {
  EndPaint(HandleOf(window), &gPainting);
}

DeviceContext* ContextOf(uintptr_t first) {
  return reinterpret_cast<DeviceContext*>(first);
}

bool HasPalette(DeviceContext* context) {
  return (GetDeviceCaps(HandleOf(context), RASTERCAPS) & RC_PALETTE) != 0;
}

void SelectDrawingPalette(DeviceContext* context, PaletteHandle palette, bool foreground) {
  SelectPalette(HandleOf(context), HandleOf(palette), !foreground);
}

void RealizeDrawingPalette(DeviceContext* context) {
  RealizePalette(HandleOf(context));
}

void FillBlack(DeviceContext* context, int32_t left, int32_t top, int32_t right, int32_t bottom) {
  if (left >= right || top >= bottom) return;
  const RECT rect = {left, top, right, bottom};
  FillRect(HandleOf(context), &rect, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
}

void FillArea(DeviceContext* context, const Bounds& area, BrushHandle brush) {
  if (area.IsEmpty()) return;
  const RECT rect = RectOf(area);
  FillRect(HandleOf(context), &rect, HandleOf(brush));
}

void FillFace(DeviceContext* context, const Bounds& area) {
  if (area.IsEmpty()) return;
  const RECT rect = RectOf(area);
  FillRect(HandleOf(context), &rect, GetSysColorBrush(COLOR_BTNFACE));
}

void DrawBitmap(DeviceContext* context, int32_t x, int32_t y, int32_t width, int32_t height, BitmapHandle bitmap,
                int32_t sourceX, int32_t sourceY, const ColorEntry (&colors)[256]) {
  if (bitmap == nullptr) return;
  // The rows of spare bytes belong to the handle but not to the picture.
  CutToSource(bitmap->width, &sourceX, &x, &width);
  CutToSource(bitmap->height, &sourceY, &y, &height);
  if (width <= 0 || height <= 0) return;
  const BitmapSource source(context, bitmap);
  SetDIBColorTable(source.handle, 0, 256, reinterpret_cast<const RGBQUAD*>(colors));
  BitBlt(HandleOf(context), x, y, width, height, source.handle, sourceX, sourceY, SRCCOPY);
}

void StretchBitmap(DeviceContext* context, const Bounds& target, BitmapHandle bitmap, const Bounds& source) {
  if (bitmap == nullptr || target.IsEmpty() || source.IsEmpty()) return;
  const BitmapSource from(context, bitmap);
  SetStretchBltMode(HandleOf(context), COLORONCOLOR);
  StretchBlt(HandleOf(context), target.left, target.top, target.Width(), target.Height(), from.handle, source.left,
             source.top, source.Width(), source.Height(), SRCCOPY);
}

void DrawPixels(DeviceContext* context, const Bounds& area, const ColorEntry* pixels) {
  BITMAPINFO info = {};
  info.bmiHeader.biSize = sizeof(info.bmiHeader);
  info.bmiHeader.biWidth = area.Width();
  info.bmiHeader.biHeight = -area.Height();
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  SetDIBitsToDevice(HandleOf(context), area.left, area.top, static_cast<DWORD>(area.Width()),
                    static_cast<DWORD>(area.Height()), 0, 0, 0, static_cast<UINT>(area.Height()), pixels, &info,
                    DIB_RGB_COLORS);
}

void InvertLine(DeviceContext* context, Point from, Point to) {
  const int old = SetROP2(HandleOf(context), R2_NOT);
  MoveToEx(HandleOf(context), from.x, from.y, nullptr);
  LineTo(HandleOf(context), to.x, to.y);
  SetROP2(HandleOf(context), old);
}

void InvertFrame(DeviceContext* context, const Bounds& frame) {
  const RECT rect = RectOf(frame);
  DrawFocusRect(HandleOf(context), &rect);
}

void DrawRectEdge(DeviceContext* context, const Bounds& area, EdgeStyle style) {
  RECT rect = RectOf(area);
  const UINT edge = style == EdgeStyle::kRaised ? EDGE_RAISED : style == EdgeStyle::kSunken ? EDGE_SUNKEN : EDGE_ETCHED;
  DrawEdge(HandleOf(context), &rect, edge, BF_RECT);
}

}  // namespace sorvel::platform
