#include <algorithm>
#include <array>
#include <cstdlib>

#include "foundation/arithmetic.h"
#include "imaging/cell_image.h"
#include "imaging/pixel_words.h"

namespace sorvel {

namespace {

int64_t SignOf(int64_t value) {
  return (value > 0) - (value < 0);
}

// An interval on one axis. The sum of a position and a size needs 64 bits.
struct Span {
  int64_t start;
  int64_t size;
};

// Cuts the span to 0 to limit - 1. False if nothing is left.
bool ClipSpan(Span* span, int32_t limit) {
  const int64_t end = std::min<int64_t>(span->start + span->size, limit);
  span->start = std::max<int64_t>(span->start, 0);
  span->size = end - span->start;
  return span->size > 0;
}

// With a negative size the interval ends at `start`, which belongs to it.
Span BoxSpan(int32_t start, int32_t size) {
  if (size >= 0) return {start, size};
  return {int64_t{start} + size + 1, -int64_t{size}};
}

bool ClipSpans(const CellImage& image, Span across, Span down, Rect* rect) {
  if (!ClipSpan(&across, image.width) || !ClipSpan(&down, image.height)) return false;
  *rect = {Saturated(across.start), Saturated(down.start), Saturated(across.size), Saturated(down.size)};
  return true;
}

// Extends one axis of a dirty rectangle to cover a stamp. A side that moves leaves a margin of one pixel.
void GrowSpan(int32_t* start, int32_t* size, int64_t position) {
  int64_t first = *start;
  int64_t end = first + *size;
  if (position - kPenReach <= first) first = position - kPenReach - 1;
  if (end <= position + kPenReach) end = position + kPenReach + 1;
  *start = Saturated(first);
  *size = Saturated(end - *start);
}

// Reverses the bits of a row of a pen's shape, so that bit 0 is the leftmost column.
constexpr std::array<uint8_t, 256> kFirstColumnLow = [] {
  std::array<uint8_t, 256> turned{};
  for (uint32_t bits = 0; bits < 256; bits++) {
    for (uint32_t column = 0; column < 8; column++) {
      if ((bits & 0x80U >> column) != 0) turned[bits] = static_cast<uint8_t>(turned[bits] | 1U << column);
    }
  }
  return turned;
}();

// Draws the pixels from x to end - 1 of a row that aren't masked.
void PaintUnmasked(CellImage* image, int32_t y, int32_t x, int32_t end, const InkRow& ink, uint32_t mask) {
  for (int32_t word = x / kWordPixels; word * int64_t{kWordPixels} < end; word++) {
    PaintUnmaskedWord(image, y, word, SpanBits(word, x, end), ink, mask);
  }
}

// Forces rounding to 32 bits where the CPU calculates with more, so that curves are the same everywhere.
float Rounded(float value) {
  volatile float stored = value;
  return stored;
}

float Weight(float a, float b, float c, float factor) {
  return Rounded(Rounded(Rounded(a * b) * c) * factor);
}

// Rounds a positive value to the nearest, ties up, and a negative one towards zero.
int32_t CurveCoordinate(long double value) {
  const auto whole = static_cast<int64_t>(value);
  return Saturated(value - static_cast<long double>(whole) >= 0.5L ? whole + 1 : whole);
}

}  // namespace

void GrowRect(Rect* rect, int32_t x, int32_t y) {
  if (rect->width == 0 || rect->height == 0) {
    *rect = StampRect({x, y});
    return;
  }
  GrowSpan(&rect->x, &rect->width, x);
  GrowSpan(&rect->y, &rect->height, y);
}

bool CellImage::ClipRect(int32_t* x, int32_t* y, int32_t* rectWidth, int32_t* rectHeight) const {
  Rect rect;
  if (!ClipSpans(*this, {*x, *rectWidth}, {*y, *rectHeight}, &rect)) return false;
  *x = rect.x;
  *y = rect.y;
  *rectWidth = rect.width;
  *rectHeight = rect.height;
  return true;
}

bool CellImage::Stamp(int32_t x, int32_t y, const PenSpec& pen, uint32_t mask, Rect* outRect) {
  if (outRect != nullptr) GrowRect(outRect, x, y);
  const int64_t left = int64_t{x} - kPenReach;
  const int64_t top = int64_t{y} - kPenReach;
  // Columns that lie in the image, the first of them as bit 0.
  if (left <= -kPenSize || left >= width) return true;
  const auto cutLeft = static_cast<uint32_t>(std::max<int64_t>(-left, 0));
  const auto first = static_cast<int32_t>(left + cutLeft);
  const uint32_t inside = width - first >= kPenSize ? 0xFF : (1U << (width - first)) - 1;
  // Rows that lie four apart have the same row of the dither.
  for (int32_t phase = 0; phase < 4; phase++) {
    const uint64_t group = PenGroup(pen, static_cast<int32_t>((top + phase) & 3), IsPacked(*this));
    for (int32_t row = phase; row < kPenSize; row += 4) {
      const int64_t py = top + row;
      const uint32_t inked = kFirstColumnLow[PenShapes[pen.shape][row]] >> cutLeft & inside;
      if (inked != 0 && py >= 0 && py < height) PaintEight(this, static_cast<int32_t>(py), first, inked, group, mask);
    }
  }
  return true;
}

bool CellImage::DrawLine(int32_t x0, int32_t y0, int32_t x1, int32_t y1, PenSpec* pen, uint32_t mask, Rect* outRect) {
  if (pen->tone == 0 && pen->colorB == kToneBlack) pen->colorB = kLineBlack;
  if (outRect != nullptr) {
    GrowRect(outRect, x0, y0);
    GrowRect(outRect, x1, y1);
  }
  Stamp(x0, y0, *pen, mask, nullptr);

  const int64_t dx = int64_t{x1} - x0;
  const int64_t dy = int64_t{y1} - y0;
  const bool isFlat = std::abs(dy) < std::abs(dx);
  const int64_t mainStart = isFlat ? x0 : y0;
  const int64_t sideStart = isFlat ? y0 : x0;
  const int64_t mainStep = SignOf(isFlat ? dx : dy);
  const int64_t sideStep = SignOf(isFlat ? dy : dx);
  const auto length = static_cast<uint64_t>(std::abs(isFlat ? dx : dy));
  const auto rise = static_cast<uint64_t>(std::abs(isFlat ? dy : dx));

  // Only the steps whose stamp can touch the image are taken, so that a line from far away costs nothing.
  const int64_t lowest = 1 - kPenReach;
  const int64_t highest = int64_t{isFlat ? width : height} + kPenReach - 1;
  const int64_t first = std::max<int64_t>(1, mainStep > 0 ? lowest - mainStart : mainStart - highest);
  const int64_t last = std::min(static_cast<int64_t>(length), mainStep > 0 ? highest - mainStart : mainStart - lowest);
  for (int64_t step = first; step <= last; step++) {
    // rise * step / length to the nearest, ties up. The product is below 2 to the 64th, twice the product is not.
    const uint64_t product = rise * static_cast<uint64_t>(step);
    const auto aside = static_cast<int64_t>(product / length + (product % length * 2 >= length ? 1 : 0));
    const auto main = static_cast<int32_t>(mainStart + mainStep * step);
    const auto side = static_cast<int32_t>(sideStart + sideStep * aside);
    Stamp(isFlat ? main : side, isFlat ? side : main, *pen, mask, nullptr);
  }

  // A colorB that was line black before the call comes out as black too: restoring it would let a pen picked up from
  // a line go on to fill areas with line black.
  if (pen->colorB == kLineBlack) pen->colorB = kToneBlack;
  return true;
}

bool CellImage::DrawBox(int32_t x, int32_t y, int32_t boxWidth, int32_t boxHeight, PenSpec* pen, uint32_t mask,
                        Rect* outRect) {
  Rect box;
  if (!ClipSpans(*this, BoxSpan(x, boxWidth), BoxSpan(y, boxHeight), &box)) return false;
  // One pixel beyond the block, and along the image's edge where the box was cut: ending at width - 1 would make every
  // box smaller than the drag that drew it.
  const int32_t right = box.x + box.width;
  const int32_t bottom = box.y + box.height;
  DrawLine(box.x, box.y, right, box.y, pen, mask, outRect);
  DrawLine(right, box.y, right, bottom, pen, mask, outRect);
  DrawLine(right, bottom, box.x, bottom, pen, mask, outRect);
  DrawLine(box.x, bottom, box.x, box.y, pen, mask, outRect);
  return true;
}

bool CellImage::FillBox(int32_t x, int32_t y, int32_t boxWidth, int32_t boxHeight, const PenSpec& pen, uint32_t mask,
                        Bounds* outBox) {
  Rect box;
  if (!ClipSpans(*this, BoxSpan(x, boxWidth), BoxSpan(y, boxHeight), &box)) return false;
  const int32_t right = box.x + box.width;
  const int32_t bottom = box.y + box.height;
  if (outBox != nullptr) *outBox = {box.x, box.y, right, bottom};
  const PenInk ink(*this, pen);
  for (int32_t row = box.y; row < bottom; row++) {
    if (mask == 0) {
      PaintRun(this, row, box.x, right, *ink.Row(row).groups);
    } else {
      PaintUnmasked(this, row, box.x, right, ink.Row(row), mask);
    }
  }
  return true;
}

bool CellImage::FillRect(int32_t x, int32_t y, int32_t rectWidth, int32_t rectHeight, int32_t value) {
  if (!ClipRect(&x, &y, &rectWidth, &rectHeight)) return false;
  if (rectWidth == width && rectHeight == height) {
    Fill(value);
    return true;
  }
  const uint64_t ink = PenGroup({0, 0, 0, value}, 0, IsPacked(*this));
  for (int32_t row = y; row < y + rectHeight; row++) {
    if (value != 0 || IsUsedRow(row)) PaintRun(this, row, x, x + rectWidth, ink);
  }
  return true;
}

bool CellImage::StampImage(int32_t dx, int32_t dy, CellImage* source, int32_t sx, int32_t sy, int32_t blockWidth,
                           int32_t blockHeight, const PenSpec& pen, uint32_t mask) {
  if (!ClipBlock(&dx, &dy, &sx, &sy, &blockWidth, &blockHeight, *this, *source)) return false;
  for (int32_t row = 0; row < blockHeight; row++) {
    for (int32_t column = 0; column < blockWidth; column++) {
      const int32_t value = source->GetPixel(sx + column, sy + row);
      // The mask looks at the source: testing what lies below would stop text from covering protected pixels.
      if (value == 0 || IsMasked(mask, value)) continue;
      // Quirk 11. The pattern's row counts from dx too: with dy, dithered text would look different in each row.
      SetPixel(dx + column, dy + row, PenColorAt(pen, dx + column, dx + row));
    }
  }
  return true;
}

bool CellImage::DrawCurve(const Point (&points)[4], PenSpec* pen, uint32_t mask, Rect* outRect) {
  const int64_t distance =
      std::max(std::abs(int64_t{points[1].x} - points[2].x), std::abs(int64_t{points[1].y} - points[2].y));
  const int64_t pieces = distance / 2;
  const float step = pieces == 0 ? 1.0F : Rounded(1.0F / static_cast<float>(pieces));
  // A step that no longer moves t where its digits are coarsest would never get to the end.
  const bool movesOn = Rounded(0.5F + step) > 0.5F;

  Point previous = points[1];
  for (float t = step; movesOn && t < 1.0F; t = Rounded(t + step)) {
    const float plus1 = Rounded(t + 1.0F);
    const float minus1 = Rounded(t - 1.0F);
    const float minus2 = Rounded(t - 2.0F);
    const float weights[4] = {
        Weight(t, minus1, minus2, -1.0F / 6.0F),
        Weight(plus1, minus1, minus2, 1.0F / 2.0F),
        Weight(plus1, t, minus2, -1.0F / 2.0F),
        Weight(plus1, t, minus1, 1.0F / 6.0F),
    };
    long double x = 0;
    long double y = 0;
    for (int32_t i = 0; i < 4; i++) {
      const auto weight = static_cast<long double>(weights[i]);
      x += weight * points[i].x;
      y += weight * points[i].y;
    }
    const Point next = {CurveCoordinate(x), CurveCoordinate(y)};
    DrawLine(previous.x, previous.y, next.x, next.y, pen, mask, outRect);
    previous = next;
  }
  return DrawLine(previous.x, previous.y, points[2].x, points[2].y, pen, mask, outRect);
}

}  // namespace sorvel
