#include <algorithm>
#include <bit>
#include <cstdlib>
#include <vector>

#include "imaging/cell_image.h"
#include "imaging/pixel_words.h"

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

// The step of the four-step scale that a line or a tone below white shows, -1
// for any other pixel.
int32_t DarkTone(int32_t value) {
  if (value >= kToneBlack && value < kToneWhite)
    return value - kToneBlack;
  if (value >= kLineBlack && value <= kLineLast)
    return value - kLineBlack;
  return -1;
}

// The underdrawing form of a line or a tone below white, 0 for any other.
int32_t ToSketchColor(int32_t value) {
  const int32_t tone = DarkTone(value);
  return tone < 0 ? 0 : kSketchFirst + tone;
}

void ToSketchInk(PenSpec *pen) {
  pen->colorA = ToSketchColor(pen->colorA);
  pen->colorB = ToSketchColor(pen->colorB);
}

// Whether pixels of an image get this value from the pen.
bool InkHolds(const CellImage &image, const PenSpec &pen, int32_t value) {
  const int32_t stored = image.colors - 1;
  return (pen.colorB & stored) == value ||
         (pen.tone != 0 && (pen.colorA & stored) == value);
}

// The ink of a gradient over an image. Levels and coordinates differ by less
// than 64 bits hold.
class GradientInk {
public:
  GradientInk(const CellImage &image, int32_t x, int32_t y,
              const PenSpec &startPen, int32_t endX, int32_t endY,
              const PenSpec &endPen)
      : isPacked(IsPacked(image)), startLevel(PenToLevel(startPen)),
        delta(PenToLevel(endPen) - startLevel) {
    const int64_t dx = int64_t{endX} - x;
    const int64_t dy = int64_t{endY} - y;
    isHorizontal = std::abs(dx) > std::abs(dy);
    origin = isHorizontal ? x : y;
    span = isHorizontal ? dx : dy;
  }

  // Before the first row is asked for. False if there is no memory.
  bool Make(int32_t imageWidth) {
    if (!isHorizontal)
      return true;
    rowGroups = WordCount(imageWidth) * (kWordPixels / GroupPixels(isPacked));
    if (!groups.Make(uint64_t{4} * static_cast<uint64_t>(rowGroups)))
      return false;
    for (int32_t x = 0; x < imageWidth; x++) {
      const PenSpec pen = PenAt(x);
      for (int32_t y = 0; y < 4; y++) {
        uint64_t *const group = &groups[static_cast<size_t>(
            y * int64_t{rowGroups} + x / GroupPixels(isPacked))];
        PutPixel(group, x % GroupPixels(isPacked), PenColorAt(pen, x, y),
                 isPacked);
      }
    }
    return true;
  }

  InkRow Row(int32_t y) {
    if (isHorizontal)
      return {&groups[static_cast<size_t>((y & 3) * int64_t{rowGroups})], 1};
    rowGroup = PenGroup(PenAt(y), y, isPacked);
    return {&rowGroup, 0};
  }

private:
  PenSpec PenAt(int32_t position) const {
    // Two points in one place have no direction to change along.
    const int64_t change =
        delta == 0 || span == 0 ? 0 : (position - origin) * delta / span;
    return LevelToPen(static_cast<int32_t>(
        std::clamp<int64_t>(startLevel + change, 0, kLastLevel)));
  }

  bool isPacked;
  bool isHorizontal = false;
  int64_t startLevel;
  int64_t delta;
  int64_t origin = 0;
  int64_t span = 0;
  ZeroedArray<uint64_t>
      groups; // four rows of them; what lies across repeats as the dither does
  int32_t rowGroups = 0;
  uint64_t rowGroup = 0;
};

// A stretch of a row, both ends included.
struct Run {
  int32_t left;
  int32_t right;
};

// Values that a row may hold and a fill has to know of, as bits.
enum RowFlag : uint8_t {
  kIsRead = 1,
  kHoldsDark = 2,
  kHoldsLight = 4,
  kHoldsMarker = 8
};

// A connected area of an image, by four, of pixels of one value; a soft one has
// sketch pixels too. It grows by words: each takes all of its open pixels that
// hang together with those it was entered at, and enters its four neighbours.
// So the work follows the area and not the image, a passage of any length needs
// no depth, and at most one entry for each word waits. Nothing is written to
// the image before all of the area is known.
class Area {
public:
  Area(const CellImage &wholeImage, int32_t pixelValue, bool takesSketch)
      : image(wholeImage), value(static_cast<uint8_t>(pixelValue)),
        sketchCount(takesSketch ? kSketchLast - kSketchFirst + 1 : 0),
        rowWords(WordCount(wholeImage.width)), top(wholeImage.height) {}

  // Memory for it all, of which the system has to provide only what is used.
  // False if there is none.
  bool Make() {
    // A word and a row of nothing to each side, so that no step has to ask
    // where the image ends.
    stride = int64_t{rowWords} + 1;
    const int64_t rows = int64_t{image.height} + 2;
    if (!words.Make(static_cast<uint64_t>(stride * rows + 1)) ||
        !flags.Make(static_cast<uint64_t>(rows)))
      return false;
    flags[0] = kIsRead;
    flags[static_cast<size_t>(rows) - 1] = kIsRead;
    return true;
  }

  // Takes the area around a pixel.
  void GrowFrom(int32_t x, int32_t y) {
    Enter(y, x / kWordPixels, uint64_t{1} << x % kWordPixels);
    Spread();
  }

  // Takes all areas that touch another, whose rows, and the rows next to them,
  // say whether they hold the value.
  void GrowAround(const Area &other, RowFlag flag) {
    for (int32_t y = std::max(other.top - 1, 0);
         y <= std::min(other.bottom + 1, image.height - 1); y++) {
      if ((other.flags[static_cast<size_t>(y) + 1] & flag) == 0)
        continue;
      for (int32_t word = 0; word < rowWords; word++) {
        const uint64_t own = other.Bits(y, word);
        const uint64_t beside = own << 1 | other.Bits(y, word - 1) >> 63 |
                                own >> 1 | other.Bits(y, word + 1) << 63;
        const uint64_t touched =
            beside | other.Bits(y - 1, word) | other.Bits(y + 1, word);
        if (touched != 0)
          Enter(y, word, touched);
      }
    }
    Spread();
  }

  bool HasMemory() const { return words.IsMade(); }
  bool IsEmpty() const { return top > bottom; }

  bool Contains(int32_t x, int32_t y) const {
    return !IsEmpty() && x >= 0 &&
           (Bits(y, x / kWordPixels) >> x % kWordPixels & 1) != 0;
  }

  // Whether the value was seen in the area's rows and those next to them.
  bool SawValue(RowFlag flag) const { return (seen & flag) != 0; }

  // Grows a dirty rectangle by the ends of all rows but for one first point.
  void GrowRectExcept(Rect *rect, Point first) const {
    for (int32_t y = top; y <= bottom; y++) {
      int32_t word = 0;
      while (word < rowWords && Bits(y, word) == 0)
        word++;
      if (word == rowWords)
        continue;
      const int32_t left = word * kWordPixels + std::countr_zero(Bits(y, word));
      if (Point{left, y} != first)
        GrowRect(rect, left, y);
      word = rowWords - 1;
      while (Bits(y, word) == 0)
        word--;
      GrowRect(rect,
               word * kWordPixels + kWordPixels - 1 -
                   std::countl_zero(Bits(y, word)),
               y);
    }
  }

  template <typename Ink> void Paint(CellImage *target, Ink *ink) const {
    for (int32_t y = top; y <= bottom; y++) {
      const InkRow row = ink->Row(y);
      for (int32_t word = 0; word < rowWords; word++) {
        if (Bits(y, word) != 0)
          PaintWord(target, y, word, Bits(y, word), row);
      }
    }
  }

private:
  struct Word {
    uint64_t open;    // pixels that may be taken
    uint64_t waiting; // open pixels that it was entered at
    uint64_t taken;
  };

  struct Place {
    int32_t y;
    int32_t word;
  };

  size_t IndexOf(int32_t y, int32_t word) const {
    return static_cast<size_t>((int64_t{y} + 1) * stride + word + 1);
  }
  uint64_t Bits(int32_t y, int32_t word) const {
    return words[IndexOf(y, word)].taken;
  }

  void ReadRow(int32_t y) {
    const auto isOpen = [this](uint8_t pixel) {
      return static_cast<uint8_t>(
          (pixel == value ? 1 : 0) |
          (static_cast<uint8_t>(pixel - kSketchFirst) < sketchCount ? 1 : 0));
    };
    uint8_t run[kRunPixels];
    uint8_t found = kIsRead;
    for (int32_t x = 0; x < image.width; x += kRunPixels) {
      const int32_t count = std::min(kRunPixels, image.width - x);
      const uint8_t *const pixels = RunPixels(image, x, y, count, run);
      Word *const first = &words[IndexOf(y, x / kWordPixels)];
      TestPixels(pixels, count, isOpen, [first](int32_t word, uint64_t bits) {
        first[word].open = bits;
      });
      for (int32_t i = 0; i < count; i++) {
        found = static_cast<uint8_t>(
            found | (pixels[i] == kBoundaryFirst ? kHoldsDark : 0) |
            (pixels[i] == kLineLast ? kHoldsLight : 0) |
            (pixels[i] == kWorkMarker ? kHoldsMarker : 0));
      }
    }
    flags[static_cast<size_t>(y) + 1] = found;
    seen = static_cast<uint8_t>(seen | found);
  }

  void Enter(int32_t y, int32_t word, uint64_t pixels) {
    if (flags[static_cast<size_t>(int64_t{y} + 1)] == 0)
      ReadRow(y);
    Word &entered = words[IndexOf(y, word)];
    pixels &= entered.open;
    if (pixels == 0)
      return;
    if (entered.waiting == 0)
      places.push_back({y, word});
    entered.waiting |= pixels;
  }

  // All runs of open pixels that the seeds lie in.
  static uint64_t RunsAround(uint64_t seeds, uint64_t open) {
    // The carry of a sum runs up from the lowest seed of a run to the run's
    // end.
    uint64_t runs = (open & ~(open + seeds)) | seeds;
    uint64_t way = open;
    for (int32_t step = 1; step < kWordPixels; step *= 2) {
      runs |= way & runs >> step;
      way &= way >> step;
    }
    return runs;
  }

  void Spread() {
    while (!places.empty()) {
      const Place place = places.back();
      places.pop_back();
      Word &word = words[IndexOf(place.y, place.word)];
      const uint64_t runs = RunsAround(word.waiting, word.open);
      word.waiting = 0;
      word.open &= ~runs;
      word.taken |= runs;
      top = std::min(top, place.y);
      bottom = std::max(bottom, place.y);
      Enter(place.y - 1, place.word, runs);
      Enter(place.y + 1, place.word, runs);
      if ((runs & 1) != 0)
        Enter(place.y, place.word - 1, uint64_t{1} << 63);
      if (runs >> 63 != 0)
        Enter(place.y, place.word + 1, 1);
    }
  }

  const CellImage &image;
  uint8_t value;
  uint8_t sketchCount;
  int32_t rowWords;
  int64_t stride = 0;
  int32_t top;
  int32_t bottom = -1;
  uint8_t seen = 0;
  ZeroedArray<Word> words;
  ZeroedArray<uint8_t> flags; // of each row; 0 before it was read
  std::vector<Place> places;
};

// Grows the dirty rectangle of a fill, which goes run by run and tells of the
// two ends of each. A point at an edge of the rectangle moves it by one pixel
// more than the first point of all puts it, so that only the first matters: a
// fill enters a boundary at the left end of the run around its seed before
// anything else, then one at the right end.
void GrowByRuns(Rect *rect, int32_t x, int32_t y, const Area &area,
                const Area &dark, const Area &light) {
  const auto runAround = [y](const Area &part, int32_t place) {
    Run run = {place, place};
    while (part.Contains(run.left - 1, y))
      run.left--;
    while (part.Contains(run.right + 1, y))
      run.right++;
    return run;
  };
  const Run seedRun = runAround(area, x);
  Run first = seedRun;
  for (const int32_t beside : {seedRun.right + 1, seedRun.left - 1}) {
    for (const Area *boundary : {&dark, &light}) {
      if (boundary->Contains(beside, y))
        first = runAround(*boundary, beside);
    }
  }
  GrowRect(rect, first.left, y);
  GrowRect(rect, first.right, y);
  for (const Area *part : {&area, &dark, &light})
    part->GrowRectExcept(rect, {first.left, y});
}

// Puts the ink on the area of `value` around a point: as far as pixels of the
// value and, if it is no boundary, of the sketch family hang together, and then
// on each boundary that touches them and isn't masked. False, and nothing
// changed, if there is no memory.
template <typename Ink>
bool FillArea(CellImage *image, int32_t x, int32_t y, int32_t value,
              uint32_t mask, Rect *outRect, Ink *ink) {
  const bool isSoft = !IsBoundary(value);
  Area area(*image, value, isSoft);
  if (!area.Make())
    return false;
  area.GrowFrom(x, y);
  Area dark(*image, kBoundaryFirst, false);
  Area light(*image, kLineLast, false);
  const auto growAround = [&area](Area *boundary, RowFlag flag) {
    if (!area.SawValue(flag))
      return true;
    if (!boundary->Make())
      return false;
    boundary->GrowAround(area, flag);
    return true;
  };
  if (isSoft && !IsMasked(mask, kBoundaryFirst) &&
      !growAround(&dark, kHoldsDark))
    return false;
  if (isSoft && !IsMasked(mask, kLineLast) && !growAround(&light, kHoldsLight))
    return false;
  // Where a damaged cell holds the marker already, the ink runs on into it.
  Area marked(*image, kWorkMarker, false);
  for (const Area *part : {&area, &dark, &light}) {
    if (part->IsEmpty() || !part->SawValue(kHoldsMarker))
      continue;
    if (!marked.HasMemory() && !marked.Make())
      return false;
    marked.GrowAround(*part, kHoldsMarker);
  }
  if (outRect != nullptr)
    GrowByRuns(outRect, x, y, area, dark, light);
  for (const Area *part : {&area, &dark, &light, &marked})
    part->Paint(image, ink);
  return true;
}

// Exchanges two pixels, as far as the values that are replaced aren't masked.
void SwapPixels(CellImage *image, Point a, Point b, uint32_t mask) {
  const int32_t valueA = image->GetPixel(a.x, a.y);
  const int32_t valueB = image->GetPixel(b.x, b.y);
  if (!IsMasked(mask, valueB))
    image->SetPixel(b.x, b.y, valueA);
  if (!IsMasked(mask, valueA))
    image->SetPixel(a.x, a.y, valueB);
}

} // namespace

bool CellImage::FloodFill(int32_t x, int32_t y, const PenSpec &pen,
                          uint32_t mask, Rect *outRect) {
  int32_t value = PixelOrOutside(x, y);
  if (value < 0)
    return false;
  if (IsSketch(value))
    value = kTransparent;
  if (IsMasked(mask, value))
    return false;
  // The marker can neither be marked nor replaced by itself. Only a damaged
  // cell or pen holds it.
  if (value == kWorkMarker || InkHolds(*this, pen, kWorkMarker))
    return false;
  PenInk ink(*this, pen);
  return FillArea(this, x, y, value, mask, outRect, &ink);
}

bool CellImage::GradientFill(int32_t x, int32_t y, const PenSpec &startPen,
                             int32_t endX, int32_t endY, const PenSpec &endPen,
                             uint32_t mask, Rect *outRect) {
  const int32_t value = PixelOrOutside(x, y);
  if (value < 0 || IsMasked(mask, value) || value == kWorkMarker)
    return false;
  GradientInk ink(*this, x, y, startPen, endX, endY, endPen);
  if (!ink.Make(width))
    return false;
  // The mask guards only the point itself: shadow boundaries inside a gradient
  // would stand out as lines if it kept them.
  return FillArea(this, x, y, value, 0, outRect, &ink);
}

bool CellImage::EdgeFill(int32_t x, int32_t y, int32_t rectWidth,
                         int32_t rectHeight, const PenSpec &pen,
                         uint32_t mask) {
  if (!ClipRect(&x, &y, &rectWidth, &rectHeight))
    return false;
  const int32_t right = x + rectWidth;
  const int32_t bottom = y + rectHeight;
  const int32_t key = GetPixel(x, y);
  if (IsMasked(mask, key))
    return false;
  // A neighbour beyond the rectangle counts, one beyond the image does not. A
  // marked one is still the key colour.
  const auto isForeign = [this, key](int32_t column, int32_t row) {
    const int32_t pixel = PixelOrOutside(column, row);
    return pixel >= 0 && pixel != kWorkMarker && pixel != key;
  };
  const int32_t passes = std::abs(pen.shape - 7) + 1;
  for (int32_t pass = 0; pass < passes; pass++) {
    for (int32_t column = x; column < right; column++) {
      for (int32_t row = y; row < bottom; row++) {
        if (GetPixel(column, row) != key)
          continue;
        if (isForeign(column - 1, row) || isForeign(column, row - 1) ||
            isForeign(column + 1, row) || isForeign(column, row + 1)) {
          SetPixel(column, row, kWorkMarker);
        }
      }
    }
    for (int32_t column = x; column < right; column++) {
      for (int32_t row = y; row < bottom; row++) {
        if (GetPixel(column, row) == kWorkMarker)
          SetPixel(column, row, PenColorAt(pen, column, row));
      }
    }
  }
  return true;
}

bool CellImage::ToSketch(int32_t x, int32_t y, int32_t rectWidth,
                         int32_t rectHeight, int32_t whiteValue,
                         uint32_t mask) {
  if (!ClipRect(&x, &y, &rectWidth, &rectHeight))
    return false;
  for (int32_t column = x; column < x + rectWidth; column++) {
    for (int32_t row = y; row < y + rectHeight; row++) {
      const int32_t pixel = GetPixel(column, row);
      if (IsMasked(mask, pixel))
        continue;
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

bool CellImage::ClearSketch(int32_t x, int32_t y, int32_t rectWidth,
                            int32_t rectHeight, int32_t value) {
  if (!ClipRect(&x, &y, &rectWidth, &rectHeight))
    return false;
  for (int32_t column = x; column < x + rectWidth; column++) {
    for (int32_t row = y; row < y + rectHeight; row++) {
      if (IsSketch(GetPixel(column, row)))
        SetPixel(column, row, value);
    }
  }
  return true;
}

bool CellImage::Exchange(int32_t dx, int32_t dy, CellImage *other, int32_t sx,
                         int32_t sy, int32_t blockWidth, int32_t blockHeight) {
  if (!ClipBlock(&dx, &dy, &sx, &sy, &blockWidth, &blockHeight, *this, *other))
    return false;
  for (int32_t column = 0; column < blockWidth; column++) {
    for (int32_t row = 0; row < blockHeight; row++) {
      const int32_t mine = GetPixel(dx + column, dy + row);
      const int32_t theirs = other->GetPixel(sx + column, sy + row);
      if (mine == theirs)
        continue;
      SetPixel(dx + column, dy + row, theirs);
      other->SetPixel(sx + column, sy + row, mine);
    }
  }
  return true;
}

void CellImage::MoveBlock(int32_t x, int32_t y, int32_t blockWidth,
                          int32_t blockHeight, int32_t toX, int32_t toY,
                          int32_t fillValue, uint32_t mask) {
  const int64_t moveX = int64_t{toX} - x;
  const int64_t moveY = int64_t{toY} - y;
  // What lies outside has no ink to carry.
  if (!ClipRect(&x, &y, &blockWidth, &blockHeight))
    return;
  // From the far side of the move, so that nothing is written over before it
  // was carried away.
  for (int32_t i = 0; i < blockWidth; i++) {
    const int32_t column = moveX < 0 ? x + i : x + blockWidth - 1 - i;
    for (int32_t j = 0; j < blockHeight; j++) {
      const int32_t row = moveY < 0 ? y + j : y + blockHeight - 1 - j;
      const int32_t value = GetPixel(column, row);
      if (value == kTransparent || value == fillValue || IsMasked(mask, value))
        continue;
      SetPixel(column, row, fillValue);
      const int64_t targetX = column + moveX;
      const int64_t targetY = row + moveY;
      if (targetX < 0 || targetX >= width || targetY < 0 || targetY >= height)
        continue;
      const auto pixelX = static_cast<int32_t>(targetX);
      const auto pixelY = static_cast<int32_t>(targetY);
      if (!IsMasked(mask, GetPixel(pixelX, pixelY)))
        SetPixel(pixelX, pixelY, value);
    }
  }
}

bool CellImage::Mosaic(int32_t x, int32_t y, int32_t blockWidth,
                       int32_t blockHeight) {
  if (!ClipRect(&x, &y, &blockWidth, &blockHeight))
    return false;
  const int64_t count = int64_t{blockWidth} * blockHeight;
  if (count < 16)
    return false;
  int64_t sum = 0;
  for (int32_t column = x; column < x + blockWidth; column++) {
    for (int32_t row = y; row < y + blockHeight; row++) {
      const int32_t tone = DarkTone(GetPixel(column, row));
      sum += tone < 0 ? 3 : tone;
    }
  }
  const int64_t level = std::clamp<int64_t>(sum / (count / 16), 0, kLastLevel);
  return FillBox(x, y, blockWidth, blockHeight,
                 LevelToPen(static_cast<int32_t>(level)), 0, nullptr);
}

bool CellImage::FlipVertical(int32_t x, int32_t y, int32_t blockWidth,
                             int32_t blockHeight, uint32_t mask) {
  if (!ClipRect(&x, &y, &blockWidth, &blockHeight))
    return true;
  for (int32_t column = x; column < x + blockWidth; column++) {
    for (int32_t row = 0; row < blockHeight / 2; row++) {
      SwapPixels(this, {column, y + row}, {column, y + blockHeight - 1 - row},
                 mask);
    }
  }
  return true;
}

bool CellImage::FlipHorizontal(int32_t x, int32_t y, int32_t blockWidth,
                               int32_t blockHeight, uint32_t mask) {
  if (!ClipRect(&x, &y, &blockWidth, &blockHeight))
    return true;
  for (int32_t column = 0; column < blockWidth / 2; column++) {
    for (int32_t row = y; row < y + blockHeight; row++) {
      SwapPixels(this, {x + column, row}, {x + blockWidth - 1 - column, row},
                 mask);
    }
  }
  return true;
}

bool CellImage::RandomDots(int32_t x, int32_t y, int32_t blockWidth,
                           int32_t blockHeight, int32_t interval,
                           const PenSpec &pen, uint32_t mask) {
  if (!ClipRect(&x, &y, &blockWidth, &blockHeight))
    return false;
  const int64_t oneIn = int64_t{interval} * interval;
  for (int32_t column = x; column < x + blockWidth; column++) {
    for (int32_t row = y; row < y + blockHeight; row++) {
      if (std::rand() % oneIn == 0)
        Stamp(column, row, pen, mask, nullptr);
    }
  }
  return true;
}

bool CellImage::DrawGrid(int32_t x, int32_t y, int32_t blockWidth,
                         int32_t blockHeight, int32_t stepX, int32_t stepY,
                         PenSpec pen, uint32_t mask) {
  if (!ClipRect(&x, &y, &blockWidth, &blockHeight))
    return false;
  ToSketchInk(&pen);
  mask |= kFinishedMask;
  const int32_t right = x + blockWidth;
  const int32_t bottom = y + blockHeight;
  // Lines end at right and bottom as those of a box do: one pixel less would
  // leave a grid short of its frame. A step that doesn't go forward gives the
  // one line at the edge.
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

bool CellImage::DrawSketchLine(int32_t x0, int32_t y0, int32_t x1, int32_t y1,
                               PenSpec pen, Rect *outRect) {
  ToSketchInk(&pen);
  return DrawLine(x0, y0, x1, y1, &pen, kFinishedMask, outRect);
}

bool CellImage::PickPen(int32_t x, int32_t y, PenSpec *pen) {
  int32_t values[2] = {};
  int32_t counts[2] = {};
  for (int32_t i = -2; i < 2; i++) {
    for (int32_t j = -2; j < 2; j++) {
      const int64_t column = int64_t{x} + i;
      const int64_t row = int64_t{y} + j;
      if (column < 0 || column >= width || row < 0 || row >= height)
        continue;
      const int32_t pixel =
          GetPixel(static_cast<int32_t>(column), static_cast<int32_t>(row));
      int32_t place = 0;
      while (place < 2 && counts[place] != 0 && values[place] != pixel)
        place++;
      if (place == 2)
        return false;
      values[place] = pixel;
      counts[place]++;
    }
  }
  if (counts[0] == 0)
    return false;
  if (counts[1] == 0) {
    // Plain ink: colorA goes unused, but gives plain tones and lines their
    // level. Transparent gets -1: a 0, as black has it, would make the two the
    // same start of a gradient.
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

} // namespace sorvel
