#include "platform/drawing.h"

#include <algorithm>
#include <cstdlib>

#include "platform/headless/internal.h"

namespace sorvel::platform {

namespace {

// Wide enough for every product of two coordinate differences.
__extension__ using Wide = __int128;

constexpr ColorEntry kFace = {192, 192, 192, 0};
constexpr ColorEntry kHighlight = {255, 255, 255, 0};
constexpr ColorEntry kLight = {223, 223, 223, 0};
constexpr ColorEntry kShadow = {128, 128, 128, 0};
constexpr ColorEntry kDark = {0, 0, 0, 0};

ColorEntry* PixelOf(DeviceContext* context, int64_t x, int64_t y) {
  return context->pixels.data() + y * context->width + x;
}

void Invert(ColorEntry* pixel) {
  pixel->blue = static_cast<uint8_t>(~pixel->blue);
  pixel->green = static_cast<uint8_t>(~pixel->green);
  pixel->red = static_cast<uint8_t>(~pixel->red);
}

Bounds Clipped(const DeviceContext* context, const Bounds& area) {
  return {std::max(area.left, context->clip.left), std::max(area.top, context->clip.top),
          std::min(area.right, context->clip.right), std::min(area.bottom, context->clip.bottom)};
}

void Fill(DeviceContext* context, const Bounds& area, ColorEntry color) {
  if (!headless::IsWindow(context)) return;
  const Bounds part = Clipped(context, area);
  if (part.IsEmpty()) return;
  for (int32_t y = part.top; y < part.bottom; ++y) {
    std::fill(PixelOf(context, part.left, y), PixelOf(context, part.right, y), color);
  }
}

// A frame one pixel wide, whose right and bottom side are drawn over the other two.
void DrawEdgeLine(DeviceContext* context, const Bounds& area, ColorEntry leftTop, ColorEntry rightBottom) {
  if (area.IsEmpty()) return;
  Fill(context, {area.left, area.top, area.left + 1, area.bottom}, leftTop);
  Fill(context, {area.left, area.top, area.right, area.top + 1}, leftTop);
  Fill(context, {area.right - 1, area.top, area.right, area.bottom}, rightBottom);
  Fill(context, {area.left, area.bottom - 1, area.right, area.bottom}, rightBottom);
}

// Inverts every second pixel. The dots of all frames lie on one checkerboard.
void InvertDots(DeviceContext* context, const Bounds& strip) {
  const Bounds part = Clipped(context, strip);
  for (int32_t y = part.top; y < part.bottom; ++y) {
    for (int32_t x = part.left; x < part.right; ++x) {
      if (((x ^ y) & 1) == 0) Invert(PixelOf(context, x, y));
    }
  }
}

}  // namespace

bool HasPalette(DeviceContext* context) {
  static_cast<void>(context);
  return false;
}

void SelectDrawingPalette(DeviceContext* context, PaletteHandle palette, bool foreground) {
  static_cast<void>(context);
  static_cast<void>(palette);
  static_cast<void>(foreground);
}

void RealizeDrawingPalette(DeviceContext* context) {
  static_cast<void>(context);
}

void FillBlack(DeviceContext* context, int32_t left, int32_t top, int32_t right, int32_t bottom) {
  Fill(context, {left, top, right, bottom}, kDark);
}

void FillArea(DeviceContext* context, const Bounds& area, BrushHandle brush) {
  if (brush != nullptr) Fill(context, area, brush->color);
}

void FillFace(DeviceContext* context, const Bounds& area) {
  Fill(context, area, kFace);
}

void DrawBitmap(DeviceContext* context, int32_t x, int32_t y, int32_t width, int32_t height, BitmapHandle bitmap,
                int32_t sourceX, int32_t sourceY, const ColorEntry (&colors)[256]) {
  if (!headless::IsWindow(context) || bitmap == nullptr) return;
  const Bounds& clip = context->clip;
  const int64_t first = std::max<int64_t>({0, int64_t{clip.left} - x, -int64_t{sourceX}});
  const int64_t last = std::min<int64_t>({width, int64_t{clip.right} - x, int64_t{bitmap->width} - sourceX});
  const int64_t top = std::max<int64_t>({0, int64_t{clip.top} - y, -int64_t{sourceY}});
  const int64_t bottom = std::min<int64_t>({height, int64_t{clip.bottom} - y, int64_t{bitmap->height} - sourceY});
  if (first >= last) return;
  for (int64_t row = top; row < bottom; ++row) {
    const uint8_t* from = bitmap->bits.Data() + (sourceY + row) * bitmap->pitch + sourceX + first;
    ColorEntry* to = PixelOf(context, x + first, y + row);
    for (int64_t i = 0; i < last - first; ++i) to[i] = colors[from[i]];
  }
}

void StretchBitmap(DeviceContext* context, const Bounds& target, BitmapHandle bitmap, const Bounds& source) {
  if (!headless::IsWindow(context) || bitmap == nullptr || target.IsEmpty() || source.IsEmpty()) return;
  const Bounds part = Clipped(context, target);
  const int64_t targetWidth = int64_t{target.right} - target.left;
  const int64_t targetHeight = int64_t{target.bottom} - target.top;
  const int64_t sourceWidth = int64_t{source.right} - source.left;
  const int64_t sourceHeight = int64_t{source.bottom} - source.top;
  if (part.IsEmpty()) return;
  const auto sourceOf = [](int64_t index, int64_t start, int64_t length, int64_t targetLength) {
    return start + static_cast<int64_t>(static_cast<Wide>(index) * length / targetLength);
  };
  // The columns of the source, and which of them the bitmap has.
  std::vector<int64_t> columns;
  columns.reserve(static_cast<size_t>(part.right - part.left));
  for (int64_t x = part.left; x < part.right; ++x) {
    columns.push_back(sourceOf(x - target.left, source.left, sourceWidth, targetWidth));
  }
  const auto first = std::lower_bound(columns.begin(), columns.end(), 0) - columns.begin();
  const auto last = std::lower_bound(columns.begin() + first, columns.end(), bitmap->width) - columns.begin();
  const ColorEntry* const colors = bitmap->colors;
  for (int64_t y = part.top; y < part.bottom; ++y) {
    const int64_t row = sourceOf(y - target.top, source.top, sourceHeight, targetHeight);
    if (row < 0 || row >= bitmap->height) continue;
    const uint8_t* from = bitmap->bits.Data() + row * bitmap->pitch;
    ColorEntry* to = PixelOf(context, part.left, y);
    if (sourceWidth == targetWidth) {
      for (auto i = first; i < last; ++i) to[i] = colors[from[columns[0] + i]];
    } else {
      for (auto i = first; i < last; ++i) to[i] = colors[from[columns[static_cast<size_t>(i)]]];
    }
  }
}

void DrawPixels(DeviceContext* context, const Bounds& area, const ColorEntry* pixels) {
  if (!headless::IsWindow(context)) return;
  const Bounds part = Clipped(context, area);
  if (part.IsEmpty()) return;
  for (int32_t y = part.top; y < part.bottom; ++y) {
    const ColorEntry* from = pixels + int64_t{y - area.top} * area.Width() + (part.left - area.left);
    std::copy_n(from, part.Width(), PixelOf(context, part.left, y));
  }
}

void InvertLine(DeviceContext* context, Point from, Point to) {
  if (!headless::IsWindow(context)) return;
  const Bounds& clip = context->clip;
  const int64_t dx = int64_t{to.x} - from.x;
  const int64_t dy = int64_t{to.y} - from.y;
  const bool flat = std::abs(dx) >= std::abs(dy);
  // Along the longer direction each step is one pixel.
  const int64_t length = flat ? std::abs(dx) : std::abs(dy);
  const int64_t slope = flat ? dy : dx;
  const int64_t start = flat ? from.x : from.y;
  const int64_t cross = flat ? from.y : from.x;
  const int64_t step = (flat ? dx : dy) < 0 ? -1 : 1;
  const int64_t low = flat ? clip.left : clip.top;
  const int64_t high = flat ? clip.right : clip.bottom;
  const int64_t crossLow = flat ? clip.top : clip.left;
  const int64_t crossHigh = flat ? clip.bottom : clip.right;
  const int64_t first = std::max<int64_t>(0, step > 0 ? low - start : start - high + 1);
  const int64_t last = std::min<int64_t>(length, step > 0 ? high - start : start - low + 1);
  for (int64_t i = first; i < last; ++i) {
    // The middle between two pixels goes to the left or upper one from both ends, so that a line covers the same
    // pixels when it is drawn backwards.
    const Wide numerator = 2 * static_cast<Wide>(i) * slope + length - 1;
    const Wide whole = 2 * static_cast<Wide>(length);
    const Wide quotient = numerator / whole - (numerator % whole < 0 ? 1 : 0);
    const int64_t across = cross + static_cast<int64_t>(quotient);
    if (across < crossLow || across >= crossHigh) continue;
    const int64_t along = start + step * i;
    Invert(flat ? PixelOf(context, along, across) : PixelOf(context, across, along));
  }
}

void InvertFrame(DeviceContext* context, const Bounds& frame) {
  if (!headless::IsWindow(context) || frame.IsEmpty()) return;
  InvertDots(context, {frame.left, frame.top, frame.right, frame.top + 1});
  if (frame.bottom - 1 > frame.top) InvertDots(context, {frame.left, frame.bottom - 1, frame.right, frame.bottom});
  // The corners belong to the rows.
  InvertDots(context, {frame.left, frame.top + 1, frame.left + 1, frame.bottom - 1});
  if (frame.right - 1 > frame.left) {
    InvertDots(context, {frame.right - 1, frame.top + 1, frame.right, frame.bottom - 1});
  }
}

void DrawRectEdge(DeviceContext* context, const Bounds& area, EdgeStyle style) {
  if (area.IsEmpty()) return;
  Bounds inner = {area.left + 1, area.top + 1, area.right - 1, area.bottom - 1};
  switch (style) {
    case EdgeStyle::kRaised:
      DrawEdgeLine(context, area, kLight, kDark);
      DrawEdgeLine(context, inner, kHighlight, kShadow);
      break;
    case EdgeStyle::kSunken:
      DrawEdgeLine(context, area, kShadow, kHighlight);
      DrawEdgeLine(context, inner, kDark, kLight);
      break;
    case EdgeStyle::kEtched:
      DrawEdgeLine(context, area, kShadow, kHighlight);
      DrawEdgeLine(context, inner, kHighlight, kShadow);
      break;
  }
}

}  // namespace sorvel::platform
