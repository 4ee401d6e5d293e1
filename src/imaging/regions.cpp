#include <algorithm>
#include <cstdlib>
#include <vector>

#include "imaging/cell_image.h"

namespace sorvel {

namespace {

// All but transparent and sketch.
constexpr uint32_t kFinishedMask = 0xFFFFFF1E;
// The shadow boundaries are the line family without its black.
constexpr int32_t kBoundaryFirst = kLineBlack + 1;
constexpr int32_t kLastLevel = 48;

bool IsSketch(int32_t value) {
  return value >= kSketchFirst && value <= kSketchLast;
}

bool IsBoundary(int32_t value) {
  return value >= kBoundaryFirst && value <= kLineLast;
}

// The step of the four-step scale that a line or a tone below white shows, -1 for any other pixel.
int32_t DarkTone(int32_t value) {
  if (value >= kToneBlack && value < kToneWhite) return value - kToneBlack;
  if (value >= kLineBlack && value <= kLineLast) return value - kLineBlack;
  return -1;
}

// The underdrawing form of a line or a tone below white, 0 for any other.
int32_t ToSketchColor(int32_t value) {
  const int32_t tone = DarkTone(value);
  return tone < 0 ? 0 : kSketchFirst + tone;
}

void ToSketchInk(PenSpec* pen) {
  pen->colorA = ToSketchColor(pen->colorA);
  pen->colorB = ToSketchColor(pen->colorB);
}

// Whether pixels of an image get this value from the pen.
bool InkHolds(const CellImage& image, const PenSpec& pen, int32_t value) {
  const int32_t stored = image.colors - 1;
  return (pen.colorB & stored) == value || (pen.tone != 0 && (pen.colorA & stored) == value);
}

struct PenInk {
  int32_t At(int32_t x, int32_t y) const { return PenColorAt(pen, x, y); }

  PenSpec pen;
};

constexpr PenInk kMarkerInk = {{0, 0, kWorkMarker, kWorkMarker}};

// The ink of a gradient. The fields are wide enough for any difference of coordinates and levels.
struct GradientInk {
  int32_t At(int32_t x, int32_t y) const {
    const int64_t position = isHorizontal ? x : y;
    // Two points in one place have no direction to change along.
    const int64_t change = delta == 0 || span == 0 ? 0 : (position - origin) * delta / span;
    const int64_t level = std::clamp<int64_t>(startLevel + change, 0, kLastLevel);
    return PenColorAt(LevelToPen(static_cast<int32_t>(level)), x, y);
  }

  int64_t startLevel;
  int64_t origin;
  int64_t span;
  int64_t delta;
  bool isHorizontal;
};

// The fill of a connected area. It is a recursion over horizontal runs, each of which fills itself and enters the
// runs above and below it. A soft fill also flows across sketch pixels and enters every shadow boundary that it
// touches, to fill its connected pixels of the same value.
//
// The activations of the recursion lie on a stack of their own, for a large area has more of them than the machine's
// stack can take. They are taken up in the order of the recursion, since the dirty rectangle depends on it. One that
// has nothing left to enter makes room before it enters its last run, so that a winding passage needs no stack at all.
// That relies on the ink never being a value that the fill looks for.
template <typename Ink>
class SpanFill {
 public:
  SpanFill(CellImage* target, const Ink& fillInk, uint32_t boundaryMask, Rect* dirtyRect)
      : image(target), ink(fillInk), mask(boundaryMask), outRect(dirtyRect) {}

  void Run(int32_t x, int32_t y, int32_t value, bool isSoft) {
    stack.push_back({y, x, x, 0, value, isSoft, Stage::kExtendLeft});
    while (!stack.empty()) Advance();
  }

 private:
  enum class Stage : uint8_t { kExtendLeft, kExtendRight, kPaint, kScanAbove, kScanBelow };

  struct Activation {
    int32_t y;
    int32_t left;
    int32_t right;
    int32_t cursor;  // where the scan of the row above or below goes on
    int32_t value;
    bool isSoft;
    Stage stage;
  };

  static bool Matches(const Activation& run, int32_t pixel) {
    return pixel == run.value || (run.isSoft && IsSketch(pixel));
  }

  bool Enters(const Activation& run, int32_t pixel) const {
    return run.isSoft && IsBoundary(pixel) && !IsMasked(mask, pixel);
  }

  static Activation BoundaryRun(int32_t x, int32_t y, int32_t pixel) {
    return {y, x, x, 0, pixel, false, Stage::kExtendLeft};
  }

  // Takes the topmost activation up to the next run that it enters, or to its end.
  void Advance() {
    Activation& run = stack.back();
    switch (run.stage) {
      case Stage::kExtendLeft:
        run.stage = Stage::kExtendRight;
        Extend(&run, &run.left, -1);
        break;
      case Stage::kExtendRight:
        run.stage = Stage::kPaint;
        Extend(&run, &run.right, 1);
        break;
      case Stage::kPaint:
        if (outRect != nullptr) {
          GrowRect(outRect, run.left, run.y);
          GrowRect(outRect, run.right, run.y);
        }
        for (int32_t x = run.left; x <= run.right; x++) image->SetPixel(x, run.y, ink.At(x, run.y));
        run.stage = Stage::kScanAbove;
        run.cursor = run.left;
        break;
      case Stage::kScanAbove:
      case Stage::kScanBelow:
        EnterNext();
        break;
    }
  }

  // `run` is gone when this returns.
  void Extend(Activation* run, int32_t* edge, int32_t step) {
    int32_t pixel = image->PixelOrOutside(*edge + step, run->y);
    while (Matches(*run, pixel)) {
      *edge += step;
      pixel = image->PixelOrOutside(*edge + step, run->y);
    }
    if (Enters(*run, pixel)) stack.push_back(BoundaryRun(*edge + step, run->y, pixel));
  }

  void EnterNext() {
    Activation& run = stack.back();
    if (!Seek(&run)) {
      stack.pop_back();
      return;
    }
    const int32_t row = ScanRow(run);
    const int32_t first = run.cursor++;
    const int32_t pixel = image->GetPixel(first, row);
    Activation next = BoundaryRun(first, row, pixel);
    if (Matches(run, pixel)) {
      next.value = run.value;
      next.isSoft = run.isSoft;
      while (run.cursor <= run.right && Matches(run, image->GetPixel(run.cursor, row))) next.right = run.cursor++;
    }
    if (!Seek(&run)) stack.pop_back();
    stack.push_back(next);
  }

  static int32_t ScanRow(const Activation& run) { return run.stage == Stage::kScanAbove ? run.y - 1 : run.y + 1; }

  // Moves the cursor to the next pixel to be entered, first in the row above, then in the one below. False if there
  // is none, and then there will never be one.
  bool Seek(Activation* run) {
    for (;;) {
      const int32_t row = ScanRow(*run);
      if (row >= 0 && row < image->height) {
        for (; run->cursor <= run->right; run->cursor++) {
          const int32_t pixel = image->GetPixel(run->cursor, row);
          if (Matches(*run, pixel) || Enters(*run, pixel)) return true;
        }
      }
      if (run->stage == Stage::kScanBelow) return false;
      run->stage = Stage::kScanBelow;
      run->cursor = run->left;
    }
  }

  CellImage* image;
  Ink ink;
  uint32_t mask;
  Rect* outRect;
  std::vector<Activation> stack;
};

// Puts the ink on the area of `value` around a point, in two rounds over a marker: the ink may hold the very value
// that it replaces.
template <typename Ink>
void FillOverMarker(CellImage* image, int32_t x, int32_t y, int32_t value, const Ink& ink, uint32_t mask,
                    Rect* outRect) {
  SpanFill<PenInk>(image, kMarkerInk, mask, outRect).Run(x, y, value, !IsBoundary(value));
  SpanFill<Ink>(image, ink, 0, nullptr).Run(x, y, kWorkMarker, false);
}

// Exchanges two pixels, as far as the values that are replaced aren't masked.
void SwapPixels(CellImage* image, Point a, Point b, uint32_t mask) {
  const int32_t valueA = image->GetPixel(a.x, a.y);
  const int32_t valueB = image->GetPixel(b.x, b.y);
  if (!IsMasked(mask, valueB)) image->SetPixel(b.x, b.y, valueA);
  if (!IsMasked(mask, valueA)) image->SetPixel(a.x, a.y, valueB);
}

}  // namespace

bool CellImage::FloodFill(int32_t x, int32_t y, const PenSpec& pen, uint32_t mask, Rect* outRect) {
  int32_t value = PixelOrOutside(x, y);
  if (value < 0) return false;
  if (IsSketch(value)) value = kTransparent;
  if (IsMasked(mask, value)) return false;
  // The marker can neither be marked nor replaced by itself. Only a damaged cell or pen holds it.
  if (value == kWorkMarker || InkHolds(*this, pen, kWorkMarker)) return false;
  FillOverMarker(this, x, y, value, PenInk{pen}, mask, outRect);
  return true;
}

bool CellImage::GradientFill(int32_t x, int32_t y, const PenSpec& startPen, int32_t endX, int32_t endY,
                             const PenSpec& endPen, uint32_t mask, Rect* outRect) {
  const int32_t value = PixelOrOutside(x, y);
  if (value < 0 || IsMasked(mask, value) || value == kWorkMarker) return false;
  const int64_t dx = int64_t{endX} - x;
  const int64_t dy = int64_t{endY} - y;
  GradientInk ink;
  ink.isHorizontal = std::abs(dx) > std::abs(dy);
  ink.startLevel = PenToLevel(startPen);
  ink.origin = ink.isHorizontal ? x : y;
  ink.span = ink.isHorizontal ? dx : dy;
  ink.delta = PenToLevel(endPen) - ink.startLevel;
  // The mask guards only the point itself: shadow boundaries inside a gradient would stand out as lines if it kept
  // them.
  FillOverMarker(this, x, y, value, ink, 0, outRect);
  return true;
}

bool CellImage::EdgeFill(int32_t x, int32_t y, int32_t rectWidth, int32_t rectHeight, const PenSpec& pen,
                         uint32_t mask) {
  if (!ClipRect(&x, &y, &rectWidth, &rectHeight)) return false;
  const int32_t right = x + rectWidth;
  const int32_t bottom = y + rectHeight;
  const int32_t key = GetPixel(x, y);
  if (IsMasked(mask, key)) return false;
  // A neighbour beyond the rectangle counts, one beyond the image does not. A marked one is still the key colour.
  const auto isForeign = [this, key](int32_t column, int32_t row) {
    const int32_t pixel = PixelOrOutside(column, row);
    return pixel >= 0 && pixel != kWorkMarker && pixel != key;
  };
  const int32_t passes = std::abs(pen.shape - 7) + 1;
  for (int32_t pass = 0; pass < passes; pass++) {
    for (int32_t column = x; column < right; column++) {
      for (int32_t row = y; row < bottom; row++) {
        if (GetPixel(column, row) != key) continue;
        if (isForeign(column - 1, row) || isForeign(column, row - 1) || isForeign(column + 1, row) ||
            isForeign(column, row + 1)) {
          SetPixel(column, row, kWorkMarker);
        }
      }
    }
    for (int32_t column = x; column < right; column++) {
      for (int32_t row = y; row < bottom; row++) {
        if (GetPixel(column, row) == kWorkMarker) SetPixel(column, row, PenColorAt(pen, column, row));
      }
    }
  }
  return true;
}

bool CellImage::ToSketch(int32_t x, int32_t y, int32_t rectWidth, int32_t rectHeight, int32_t whiteValue,
                         uint32_t mask) {
  if (!ClipRect(&x, &y, &rectWidth, &rectHeight)) return false;
  for (int32_t column = x; column < x + rectWidth; column++) {
    for (int32_t row = y; row < y + rectHeight; row++) {
      const int32_t pixel = GetPixel(column, row);
      if (IsMasked(mask, pixel)) continue;
      const int32_t sketch = ToSketchColor(pixel);
      if (sketch != 0) {
        SetPixel(column, row, sketch);
      } else if (pixel == kToneWhite) {
        SetPixel(column, row, whiteValue);
      }
    }
  }
  return true;
}

bool CellImage::ClearSketch(int32_t x, int32_t y, int32_t rectWidth, int32_t rectHeight, int32_t value) {
  if (!ClipRect(&x, &y, &rectWidth, &rectHeight)) return false;
  for (int32_t column = x; column < x + rectWidth; column++) {
    for (int32_t row = y; row < y + rectHeight; row++) {
      if (IsSketch(GetPixel(column, row))) SetPixel(column, row, value);
    }
  }
  return true;
}

bool CellImage::Exchange(int32_t dx, int32_t dy, CellImage* other, int32_t sx, int32_t sy, int32_t blockWidth,
                         int32_t blockHeight) {
  if (!ClipBlock(&dx, &dy, &sx, &sy, &blockWidth, &blockHeight, *this, *other)) return false;
  for (int32_t column = 0; column < blockWidth; column++) {
    for (int32_t row = 0; row < blockHeight; row++) {
      const int32_t mine = GetPixel(dx + column, dy + row);
      const int32_t theirs = other->GetPixel(sx + column, sy + row);
      if (mine == theirs) continue;
      SetPixel(dx + column, dy + row, theirs);
      other->SetPixel(sx + column, sy + row, mine);
    }
  }
  return true;
}

void CellImage::MoveBlock(int32_t x, int32_t y, int32_t blockWidth, int32_t blockHeight, int32_t toX, int32_t toY,
                          int32_t fillValue, uint32_t mask) {
  const int64_t moveX = int64_t{toX} - x;
  const int64_t moveY = int64_t{toY} - y;
  // What lies outside has no ink to carry.
  if (!ClipRect(&x, &y, &blockWidth, &blockHeight)) return;
  // From the far side of the move, so that nothing is written over before it was carried away.
  for (int32_t i = 0; i < blockWidth; i++) {
    const int32_t column = moveX < 0 ? x + i : x + blockWidth - 1 - i;
    for (int32_t j = 0; j < blockHeight; j++) {
      const int32_t row = moveY < 0 ? y + j : y + blockHeight - 1 - j;
      const int32_t value = GetPixel(column, row);
      if (value == kTransparent || value == fillValue || IsMasked(mask, value)) continue;
      SetPixel(column, row, fillValue);
      const int64_t targetX = column + moveX;
      const int64_t targetY = row + moveY;
      if (targetX < 0 || targetX >= width || targetY < 0 || targetY >= height) continue;
      const auto pixelX = static_cast<int32_t>(targetX);
      const auto pixelY = static_cast<int32_t>(targetY);
      if (!IsMasked(mask, GetPixel(pixelX, pixelY))) SetPixel(pixelX, pixelY, value);
    }
  }
}

bool CellImage::Mosaic(int32_t x, int32_t y, int32_t blockWidth, int32_t blockHeight) {
  if (!ClipRect(&x, &y, &blockWidth, &blockHeight)) return false;
  const int64_t count = int64_t{blockWidth} * blockHeight;
  if (count < 16) return false;
  int64_t sum = 0;
  for (int32_t column = x; column < x + blockWidth; column++) {
    for (int32_t row = y; row < y + blockHeight; row++) {
      const int32_t tone = DarkTone(GetPixel(column, row));
      sum += tone < 0 ? 3 : tone;
    }
  }
  const int64_t level = std::clamp<int64_t>(sum / (count / 16), 0, kLastLevel);
  return FillBox(x, y, blockWidth, blockHeight, LevelToPen(static_cast<int32_t>(level)), 0, nullptr);
}

bool CellImage::FlipVertical(int32_t x, int32_t y, int32_t blockWidth, int32_t blockHeight, uint32_t mask) {
  if (!ClipRect(&x, &y, &blockWidth, &blockHeight)) return true;
  for (int32_t column = x; column < x + blockWidth; column++) {
    for (int32_t row = 0; row < blockHeight / 2; row++) {
      SwapPixels(this, {column, y + row}, {column, y + blockHeight - 1 - row}, mask);
    }
  }
  return true;
}

bool CellImage::FlipHorizontal(int32_t x, int32_t y, int32_t blockWidth, int32_t blockHeight, uint32_t mask) {
  if (!ClipRect(&x, &y, &blockWidth, &blockHeight)) return true;
  for (int32_t column = 0; column < blockWidth / 2; column++) {
    for (int32_t row = y; row < y + blockHeight; row++) {
      SwapPixels(this, {x + column, row}, {x + blockWidth - 1 - column, row}, mask);
    }
  }
  return true;
}

bool CellImage::RandomDots(int32_t x, int32_t y, int32_t blockWidth, int32_t blockHeight, int32_t interval,
                           const PenSpec& pen, uint32_t mask) {
  if (!ClipRect(&x, &y, &blockWidth, &blockHeight)) return false;
  const int64_t oneIn = int64_t{interval} * interval;
  for (int32_t column = x; column < x + blockWidth; column++) {
    for (int32_t row = y; row < y + blockHeight; row++) {
      if (std::rand() % oneIn == 0) Stamp(column, row, pen, mask, nullptr);
    }
  }
  return true;
}

bool CellImage::DrawGrid(int32_t x, int32_t y, int32_t blockWidth, int32_t blockHeight, int32_t stepX, int32_t stepY,
                         PenSpec pen, uint32_t mask) {
  if (!ClipRect(&x, &y, &blockWidth, &blockHeight)) return false;
  ToSketchInk(&pen);
  mask |= kFinishedMask;
  const int32_t right = x + blockWidth;
  const int32_t bottom = y + blockHeight;
  // Lines end at right and bottom as those of a box do: one pixel less would leave a grid short of its frame.
  // A step that doesn't go forward gives the one line at the edge.
  const int64_t columnStep = stepX > 0 ? stepX : blockWidth;
  const int64_t rowStep = stepY > 0 ? stepY : blockHeight;
  for (int64_t column = x; column < right; column += columnStep) {
    const auto lineX = static_cast<int32_t>(column);
    DrawLine(lineX, y, lineX, bottom, &pen, mask, nullptr);
  }
  for (int64_t row = y; row < bottom; row += rowStep) {
    const auto lineY = static_cast<int32_t>(row);
    DrawLine(x, lineY, right, lineY, &pen, mask, nullptr);
  }
  return true;
}

bool CellImage::DrawSketchLine(int32_t x0, int32_t y0, int32_t x1, int32_t y1, PenSpec pen, Rect* outRect) {
  ToSketchInk(&pen);
  return DrawLine(x0, y0, x1, y1, &pen, kFinishedMask, outRect);
}

bool CellImage::PickPen(int32_t x, int32_t y, PenSpec* pen) {
  int32_t values[2] = {};
  int32_t counts[2] = {};
  for (int32_t i = -2; i < 2; i++) {
    for (int32_t j = -2; j < 2; j++) {
      const int64_t column = int64_t{x} + i;
      const int64_t row = int64_t{y} + j;
      if (column < 0 || column >= width || row < 0 || row >= height) continue;
      const int32_t pixel = GetPixel(static_cast<int32_t>(column), static_cast<int32_t>(row));
      int32_t place = 0;
      while (place < 2 && counts[place] != 0 && values[place] != pixel) place++;
      if (place == 2) return false;
      values[place] = pixel;
      counts[place]++;
    }
  }
  if (counts[0] == 0) return false;
  if (counts[1] == 0) {
    // Plain ink: colorA goes unused, but gives plain tones and lines their level. Transparent gets -1: a 0, as black
    // has it, would make the two the same start of a gradient.
    pen->colorA = values[0] > kSketchLast ? values[0] - 8 : values[0] - 1;
    pen->colorB = values[0];
    pen->tone = 0;
    return true;
  }
  const int32_t low = values[0] < values[1] ? 0 : 1;
  pen->colorA = values[low];
  pen->colorB = values[1 - low];
  pen->tone = counts[low];
  return true;
}

}  // namespace sorvel
