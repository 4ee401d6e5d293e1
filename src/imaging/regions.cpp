#include <algorithm>
#include <array>
#include <bit>
#include <cstdlib>
#include <utility>
#include <vector>

#include "foundation/buffer.h"
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

// The step of the four-step scale that a line or a tone below white shows, -1 for any other pixel.
constexpr int32_t DarkTone(int32_t value) {
  if (value >= kToneBlack && value < kToneWhite) return value - kToneBlack;
  if (value >= kLineBlack && value <= kLineLast) return value - kLineBlack;
  return -1;
}

// What a pixel of each value adds to the grey of a mosaic; all that isn't dark counts as white.
constexpr std::array<uint8_t, 256> kMosaicTones = [] {
  std::array<uint8_t, 256> tones{};
  for (int32_t value = 0; value < 256; value++) {
    tones[static_cast<size_t>(value)] = static_cast<uint8_t>(DarkTone(value) < 0 ? 3 : DarkTone(value));
  }
  return tones;
}();

// The underdrawing form of a line or a tone below white, 0 for any other.
int32_t ToSketchColor(int32_t value) {
  const int32_t tone = DarkTone(value);
  return tone < 0 ? 0 : kSketchFirst + tone;
}

void ToSketchInk(PenSpec* pen) {
  pen->colorA = ToSketchColor(pen->colorA);
  pen->colorB = ToSketchColor(pen->colorB);
}

struct Columns {
  int32_t first;
  int32_t end;
};

// The columns of an image that a row of the pen's shape, or several put together, covers when it is stamped at all
// points from `left` to `right`. Every row of a shape is one run and covers the column of its point, or is empty.
Columns StampedColumns(const CellImage& image, uint8_t shapeRow, int64_t left, int64_t right) {
  if (shapeRow == 0) return {0, 0};
  const int64_t first = left - kPenReach + std::countl_zero(shapeRow);
  const int64_t end = right + kPenReach - std::countr_zero(shapeRow);
  return {static_cast<int32_t>(std::max<int64_t>(first, 0)), static_cast<int32_t>(std::min<int64_t>(end, image.width))};
}

// Whether pixels of an image get this value from the pen.
bool InkHolds(const CellImage& image, const PenSpec& pen, int32_t value) {
  const int32_t stored = image.colors - 1;
  return (pen.colorB & stored) == value || (pen.tone != 0 && (pen.colorA & stored) == value);
}

// The ink of a gradient over an image. Differences of coordinates need 64 bits.
class GradientInk {
 public:
  GradientInk(const CellImage& image, int32_t x, int32_t y, const PenSpec& startPen, int32_t endX, int32_t endY,
              const PenSpec& endPen)
      : isPacked(IsPacked(image)), startLevel(PenToLevel(startPen)), delta(PenToLevel(endPen) - startLevel) {
    const int64_t dx = int64_t{endX} - x;
    const int64_t dy = int64_t{endY} - y;
    isHorizontal = std::abs(dx) > std::abs(dy);
    origin = isHorizontal ? x : y;
    span = isHorizontal ? dx : dy;
  }

  // Before the first row is asked for. False if there is no memory.
  bool Make(int32_t imageWidth) {
    if (!isHorizontal) return true;
    rowGroups = WordCount(imageWidth) * (kWordPixels / GroupPixels(isPacked));
    if (!groups.AllocateZeroed(uint64_t{4} * static_cast<uint64_t>(rowGroups))) return false;
    for (int32_t x = 0; x < imageWidth; x++) {
      const PenSpec pen = PenAt(x);
      for (int32_t y = 0; y < 4; y++) {
        uint64_t* const group = &groups[static_cast<size_t>(y * int64_t{rowGroups} + x / GroupPixels(isPacked))];
        PutPixel(group, x % GroupPixels(isPacked), PenColorAt(pen, x, y), isPacked);
      }
    }
    return true;
  }

  InkRow Row(int32_t y) {
    if (isHorizontal) return {&groups[static_cast<size_t>((y & 3) * int64_t{rowGroups})], 1};
    rowGroup = PenGroup(PenAt(y), y, isPacked);
    return {&rowGroup, 0};
  }

 private:
  PenSpec PenAt(int32_t position) const {
    // Two points in one place have no direction to change along.
    const int64_t change = delta == 0 || span == 0 ? 0 : (position - origin) * delta / span;
    return LevelToPen(static_cast<int32_t>(std::clamp<int64_t>(startLevel + change, 0, kLastLevel)));
  }

  bool isPacked;
  bool isHorizontal = false;
  int64_t startLevel;
  int64_t delta;
  int64_t origin = 0;
  int64_t span = 0;
  Buffer<uint64_t> groups;  // of a horizontal gradient: four rows, as the dither repeats every four rows
  int32_t rowGroups = 0;
  uint64_t rowGroup = 0;
};

// A stretch of a row, both ends included.
struct Run {
  int32_t left;
  int32_t right;
};

// What is known of a row: that it was read, and which values it holds that a fill must treat apart.
enum RowFlag : uint8_t { kIsRead = 1, kHoldsDark = 2, kHoldsLight = 4, kHoldsMarker = 8 };

// A 4-connected area of pixels of one value, for a flood fill; if asked for, sketch pixels belong to it too. The search
// works on words of 64 pixels with a stack of its own: a word takes all of its open pixels that are connected to the
// pixels it was entered at, and enters its four neighbours. The cost depends on the area and not on the image, there is
// no recursion, and a word is at most once on the stack. Nothing is drawn before the whole area is known.
class Area {
 public:
  Area(const CellImage& wholeImage, int32_t pixelValue, bool takesSketch)
      : image(wholeImage),
        value(static_cast<uint8_t>(pixelValue)),
        sketchCount(takesSketch ? kSketchLast - kSketchFirst + 1 : 0),
        rowWords(WordCount(wholeImage.width)),
        top(wholeImage.height) {}

  // Allocates; false if memory runs out. The system provides only the pages that are used.
  bool Make() {
    // An empty word and an empty row on each side, so that no step has to test for the edge of the image.
    stride = int64_t{rowWords} + 1;
    const int64_t rows = int64_t{image.height} + 2;
    if (!words.AllocateZeroed(static_cast<uint64_t>(stride * rows + 1)) ||
        !flags.AllocateZeroed(static_cast<uint64_t>(rows)))
      return false;
    flags[0] = kIsRead;
    flags[static_cast<size_t>(rows) - 1] = kIsRead;
    return true;
  }

  // Adds the area around a pixel.
  void GrowFrom(int32_t x, int32_t y) {
    Enter(y, x / kWordPixels, uint64_t{1} << x % kWordPixels);
    Spread();
  }

  // Adds all areas that touch another. `flag` tells which rows of the other area need a look.
  void GrowAround(const Area& other, RowFlag flag) {
    for (int32_t y = std::max(other.top - 1, 0); y <= std::min(other.bottom + 1, image.height - 1); y++) {
      if ((other.flags[static_cast<size_t>(y) + 1] & flag) == 0) continue;
      for (int32_t word = 0; word < rowWords; word++) {
        const uint64_t own = other.Bits(y, word);
        const uint64_t beside = own << 1 | other.Bits(y, word - 1) >> 63 | own >> 1 | other.Bits(y, word + 1) << 63;
        const uint64_t touched = beside | other.Bits(y - 1, word) | other.Bits(y + 1, word);
        if (touched != 0) Enter(y, word, touched);
      }
    }
    Spread();
  }

  bool HasMemory() const { return words.IsAllocated(); }
  bool IsEmpty() const { return top > bottom; }

  bool Contains(int32_t x, int32_t y) const {
    return !IsEmpty() && x >= 0 && (Bits(y, x / kWordPixels) >> x % kWordPixels & 1) != 0;
  }

  // Whether the value was seen in the area's rows and those next to them.
  bool SawValue(RowFlag flag) const { return (seen & flag) != 0; }

  // Grows a dirty rectangle by the ends of all rows but for one first point.
  void GrowRectExcept(Rect* rect, Point first) const {
    for (int32_t y = top; y <= bottom; y++) {
      int32_t word = 0;
      while (word < rowWords && Bits(y, word) == 0) word++;
      if (word == rowWords) continue;
      const int32_t left = word * kWordPixels + std::countr_zero(Bits(y, word));
      if (Point{left, y} != first) GrowRect(rect, left, y);
      word = rowWords - 1;
      while (Bits(y, word) == 0) word--;
      GrowRect(rect, word * kWordPixels + kWordPixels - 1 - std::countl_zero(Bits(y, word)), y);
    }
  }

  template <typename Ink>
  void Paint(CellImage* target, Ink* ink) const {
    for (int32_t y = top; y <= bottom; y++) {
      const InkRow row = ink->Row(y);
      for (int32_t word = 0; word < rowWords; word++) {
        if (Bits(y, word) != 0) PaintWord(target, y, word, Bits(y, word), row);
      }
    }
  }

 private:
  struct Word {
    uint64_t open;     // pixels of the value that aren't in the area yet
    uint64_t waiting;  // open pixels that the search has reached
    uint64_t taken;    // pixels in the area
  };

  struct Place {
    int32_t y;
    int32_t word;
  };

  size_t IndexOf(int32_t y, int32_t word) const { return static_cast<size_t>((int64_t{y} + 1) * stride + word + 1); }
  uint64_t Bits(int32_t y, int32_t word) const { return words[IndexOf(y, word)].taken; }

  void ReadRow(int32_t y) {
    const auto isOpen = [this](uint8_t pixel) {
      return static_cast<uint8_t>((pixel == value ? 1 : 0) |
                                  (static_cast<uint8_t>(pixel - kSketchFirst) < sketchCount ? 1 : 0));
    };
    uint8_t run[kRunPixels];
    uint64_t holds[kRunPixels / 8] = {};  // a RowFlag byte for each column, so that the compiler can vectorize
    const auto holdsAt = reinterpret_cast<uint8_t*>(holds);
    for (int32_t x = 0, count = 0; x < image.width; x += count) {
      count = std::min(kRunPixels, image.width - x);
      const uint8_t* const pixels = RunPixels(image, x, y, count, run);
      Word* const first = &words[IndexOf(y, x / kWordPixels)];
      TestPixels(pixels, count, isOpen, [first](int32_t word, uint64_t bits) { first[word].open = bits; });
      for (int32_t i = 0; i < count; i++) {
        holdsAt[i] = static_cast<uint8_t>(holdsAt[i] | (pixels[i] == kBoundaryFirst ? kHoldsDark : 0) |
                                          (pixels[i] == kLineLast ? kHoldsLight : 0) |
                                          (pixels[i] == kWorkMarker ? kHoldsMarker : 0));
      }
    }
    uint64_t all = 0;
    for (const uint64_t eight : holds) all |= eight;
    all |= all >> 32;
    all |= all >> 16;
    const auto found = static_cast<uint8_t>(kIsRead | all | all >> 8);
    flags[static_cast<size_t>(y) + 1] = found;
    seen = static_cast<uint8_t>(seen | found);
  }

  void Enter(int32_t y, int32_t word, uint64_t pixels) {
    if (flags[static_cast<size_t>(int64_t{y} + 1)] == 0) ReadRow(y);
    Word& entered = words[IndexOf(y, word)];
    pixels &= entered.open;
    if (pixels == 0) return;
    if (entered.waiting == 0) places.push_back({y, word});
    entered.waiting |= pixels;
  }

  // All runs of open pixels that contain a seed.
  static uint64_t RunsAround(uint64_t seeds, uint64_t open) {
    // The carry of the sum extends a run upwards from its lowest seed to its end; the loop extends it downwards.
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
      Word& word = words[IndexOf(place.y, place.word)];
      const uint64_t runs = RunsAround(word.waiting, word.open);
      word.waiting = 0;
      word.open &= ~runs;
      word.taken |= runs;
      top = std::min(top, place.y);
      bottom = std::max(bottom, place.y);
      Enter(place.y - 1, place.word, runs);
      Enter(place.y + 1, place.word, runs);
      if ((runs & 1) != 0) Enter(place.y, place.word - 1, uint64_t{1} << 63);
      if (runs >> 63 != 0) Enter(place.y, place.word + 1, 1);
    }
  }

  const CellImage& image;
  uint8_t value;
  uint8_t sketchCount;
  int32_t rowWords;
  int64_t stride = 0;
  int32_t top;
  int32_t bottom = -1;
  uint8_t seen = 0;
  Buffer<Word> words;
  Buffer<uint8_t> flags;  // of each row; 0 before it was read
  std::vector<Place> places;
};

// Grows the dirty rectangle of a fill by both ends of each of its runs. GrowRect() adds a margin for every point except
// the first, so the result depends on which point is first, and on nothing else in the order. The first point is the
// left end of one run: the boundary run directly left of the start's own run, else the one directly right of it, else
// the start's own run. Another choice would make some rectangles one pixel wider.
void GrowByRuns(Rect* rect, int32_t x, int32_t y, const Area& area, const Area& dark, const Area& light) {
  const auto runAround = [y](const Area& part, int32_t place) {
    Run run = {place, place};
    while (part.Contains(run.left - 1, y)) run.left--;
    while (part.Contains(run.right + 1, y)) run.right++;
    return run;
  };
  const Run seedRun = runAround(area, x);
  Run first = seedRun;
  for (const int32_t beside : {seedRun.right + 1, seedRun.left - 1}) {
    for (const Area* boundary : {&dark, &light}) {
      if (boundary->Contains(beside, y)) first = runAround(*boundary, beside);
    }
  }
  GrowRect(rect, first.left, y);
  GrowRect(rect, first.right, y);
  for (const Area* part : {&area, &dark, &light}) part->GrowRectExcept(rect, {first.left, y});
}

// Fills the connected area of `value` around a point. Unless the value is a boundary, sketch pixels count as part of
// the area, and boundaries that touch it are filled too if they aren't masked. False, and no change, if memory runs
// out.
template <typename Ink>
bool FillArea(CellImage* image, int32_t x, int32_t y, int32_t value, uint32_t mask, Rect* outRect, Ink* ink) {
  const bool isSoft = !IsBoundary(value);
  Area area(*image, value, isSoft);
  if (!area.Make()) return false;
  area.GrowFrom(x, y);
  Area dark(*image, kBoundaryFirst, false);
  Area light(*image, kLineLast, false);
  const auto growAround = [&area](Area* boundary, RowFlag flag) {
    if (!area.SawValue(flag)) return true;
    if (!boundary->Make()) return false;
    boundary->GrowAround(area, flag);
    return true;
  };
  if (isSoft && !IsMasked(mask, kBoundaryFirst) && !growAround(&dark, kHoldsDark)) return false;
  if (isSoft && !IsMasked(mask, kLineLast) && !growAround(&light, kHoldsLight)) return false;
  // A damaged cell may hold the marker; the fill flows into it.
  Area marked(*image, kWorkMarker, false);
  for (const Area* part : {&area, &dark, &light}) {
    if (part->IsEmpty() || !part->SawValue(kHoldsMarker)) continue;
    if (!marked.HasMemory() && !marked.Make()) return false;
    marked.GrowAround(*part, kHoldsMarker);
  }
  if (outRect != nullptr) GrowByRuns(outRect, x, y, area, dark, light);
  for (const Area* part : {&area, &dark, &light, &marked}) part->Paint(image, ink);
  return true;
}

// The border of the area of one colour within a rectangle; it grows inward by one pixel a pass. A pixel of another
// colour anywhere in the image makes its neighbour a border pixel; the edge of the image doesn't.
class Border {
 public:
  Border(const CellImage& wholeImage, const Rect& rect, int32_t keyColor)
      : image(wholeImage),
        area(rect),
        key(static_cast<uint8_t>(keyColor)),
        firstWord(std::max(rect.x - 1, 0) / kWordPixels),
        wordCount(std::min(rect.x + rect.width, wholeImage.width - 1) / kWordPixels - firstWord + 1),
        top(std::max(rect.y - 1, 0)),
        bottom(std::min(rect.y + rect.height, wholeImage.height - 1)) {}

  // Reads the pixels. False if there is no memory.
  bool Make() {
    const uint64_t columns = static_cast<uint64_t>(wordCount);
    if (!words.AllocateZeroed(columns * (static_cast<uint64_t>(bottom - top) + 1)) || !above.AllocateZeroed(columns))
      return false;
    const auto isKey = [this](uint8_t pixel) { return static_cast<uint8_t>(pixel == key ? 1 : 0); };
    const auto isMarker = [](uint8_t pixel) { return static_cast<uint8_t>(pixel == kWorkMarker ? 1 : 0); };
    const int32_t firstX = firstWord * kWordPixels;
    const int32_t columnCount = std::min(image.width - firstX, wordCount * kWordPixels);
    for (int32_t y = top; y <= bottom; y++) {
      Word* row = RowAt(y);
      for (int32_t done = 0, count = 0; done < columnCount; done += count) {
        uint8_t run[kRunPixels];
        count = std::min(kRunPixels, columnCount - done);
        const uint8_t* const pixels = RunPixels(image, firstX + done, y, count, run);
        TestPixels(pixels, count, isKey, [row](int32_t word, uint64_t bits) { row[word].key = bits; });
        TestPixels(pixels, count, isMarker, [row](int32_t word, uint64_t bits) { row[word].marker = bits; });
        row += WordCount(count);
      }
      for (int32_t word = 0; word < wordCount; word++) {
        Word& at = RowAt(y)[word];
        at.foreign = SpanBits(firstWord + word, 0, image.width) & ~(at.key | at.marker);
      }
    }
    return true;
  }

  // One pass. False when further passes would change nothing.
  bool Grow(const PenSpec& pen) {
    for (int32_t word = 0; word < wordCount; word++) above[static_cast<size_t>(word)] = 0;
    if (top < area.y) {
      for (int32_t word = 0; word < wordCount; word++) above[static_cast<size_t>(word)] = RowAt(top)[word].foreign;
    }
    uint64_t change = 0;
    for (int32_t y = area.y; y < area.y + area.height; y++) {
      Word* const row = RowAt(y);
      const Word* const below = y < bottom ? RowAt(y + 1) : nullptr;
      const uint64_t foreignInk = ~(InkBits(pen, y, key) | InkBits(pen, y, kWorkMarker));
      uint64_t before = 0;
      for (int32_t word = 0; word < wordCount; word++) {
        Word& at = row[word];
        const uint64_t foreign = at.foreign;
        const uint64_t behind = word + 1 < wordCount ? row[word + 1].foreign : 0;
        uint64_t beside = foreign << 1 | before >> 63 | foreign >> 1 | behind << 63;
        beside |= above[static_cast<size_t>(word)] | (below != nullptr ? below[word].foreign : 0);
        // Pixels that held the marker from the start are painted too.
        const uint64_t painted =
            ((at.key & beside) | at.marker) & SpanBits(firstWord + word, area.x, area.x + area.width);
        // A pass sees the state before it.
        above[static_cast<size_t>(word)] = foreign;
        before = foreign;
        // A pixel that is painted in the colour it had doesn't count as one of another colour.
        at.painted |= painted;
        at.foreign |= painted & foreignInk;
        change |= foreign ^ at.foreign;
      }
    }
    return change != 0;
  }

  void Paint(CellImage* target, const PenSpec& pen) {
    const PenInk ink(image, pen);
    for (int32_t y = area.y; y < area.y + area.height; y++) {
      const InkRow row = ink.Row(y);
      for (int32_t word = 0; word < wordCount; word++) {
        const uint64_t painted = RowAt(y)[word].painted;
        if (painted != 0) PaintWord(target, y, firstWord + word, painted, row);
      }
    }
  }

 private:
  struct Word {
    uint64_t key;
    uint64_t marker;
    uint64_t foreign;  // neither of the two, or painted in another colour
    uint64_t painted;
  };

  Word* RowAt(int32_t y) { return &words[static_cast<size_t>(int64_t{y - top} * wordCount)]; }

  // The pixels of row y that the ink sets to `value`.
  uint64_t InkBits(const PenSpec& pen, int32_t y, int32_t value) const {
    uint64_t found = 0;
    for (int32_t x = 0; x < 4; x++) {
      if ((PenColorAt(pen, x, y) & (image.colors - 1)) == value) found |= uint64_t{0x1111111111111111U} << x;
    }
    return found;
  }

  const CellImage& image;
  Rect area;  // inside the image
  uint8_t key;
  int32_t firstWord;
  int32_t wordCount;  // with the columns next to the rectangle
  int32_t top;
  int32_t bottom;  // with the rows next to it
  Buffer<Word> words;
  Buffer<uint64_t> above;  // the row above as it was before the pass
};

// What each value of a pixel becomes.
using PixelMap = std::array<uint8_t, 256>;

PixelMap KeepAll() {
  PixelMap map;
  for (size_t value = 0; value < map.size(); value++) map[value] = static_cast<uint8_t>(value);
  return map;
}

// The rectangle lies inside the image.
void MapPixels(CellImage* image, const Rect& rect, const PixelMap& map) {
  uint8_t run[kRunPixels];
  for (int32_t y = rect.y; y < rect.y + rect.height; y++) {
    for (int32_t done = 0, count = 0; done < rect.width; done += count) {
      count = std::min(kRunPixels, rect.width - done);
      image->ReadRow(rect.x + done, y, count, run);
      for (int32_t i = 0; i < count; i++) run[i] = map[run[i]];
      image->WriteRow(rect.x + done, y, count, run);
    }
  }
}

// Exchanges two pixels, as far as the values that are replaced aren't masked.
void SwapPixels(uint8_t* a, uint8_t* b, uint32_t mask) {
  const uint8_t valueA = *a;
  const uint8_t valueB = *b;
  if (!IsMasked(mask, valueB)) *b = valueA;
  if (!IsMasked(mask, valueA)) *a = valueB;
}

}  // namespace

bool CellImage::FloodFill(int32_t x, int32_t y, const PenSpec& pen, uint32_t mask, Rect* outRect) {
  int32_t value = PixelOrOutside(x, y);
  if (value < 0) return false;
  if (IsSketch(value)) value = kTransparent;
  if (IsMasked(mask, value)) return false;
  // A fill of the marker, or with it, has no effect. Only a damaged cell or pen holds it.
  if (value == kWorkMarker || InkHolds(*this, pen, kWorkMarker)) return false;
  PenInk ink(*this, pen);
  return FillArea(this, x, y, value, mask, outRect, &ink);
}

bool CellImage::GradientFill(int32_t x, int32_t y, const PenSpec& startPen, int32_t endX, int32_t endY,
                             const PenSpec& endPen, uint32_t mask, Rect* outRect) {
  const int32_t value = PixelOrOutside(x, y);
  if (value < 0 || IsMasked(mask, value) || value == kWorkMarker) return false;
  GradientInk ink(*this, x, y, startPen, endX, endY, endPen);
  if (!ink.Make(width)) return false;
  // The mask protects only the starting pixel: protected shadow boundaries would show as lines inside a gradient.
  return FillArea(this, x, y, value, 0, outRect, &ink);
}

bool CellImage::EdgeFill(int32_t x, int32_t y, int32_t rectWidth, int32_t rectHeight, const PenSpec& pen,
                         uint32_t mask) {
  if (!ClipRect(&x, &y, &rectWidth, &rectHeight)) return false;
  const int32_t key = GetPixel(x, y);
  if (IsMasked(mask, key)) return false;
  Border border(*this, {x, y, rectWidth, rectHeight}, key);
  if (!border.Make()) return false;
  const int32_t passes = SizeOfShape(pen.shape) + 1;
  for (int32_t pass = 0; pass < passes && border.Grow(pen); pass++) {
  }
  border.Paint(this, pen);
  return true;
}

bool CellImage::ToSketch(int32_t x, int32_t y, int32_t rectWidth, int32_t rectHeight, int32_t whiteValue,
                         uint32_t mask) {
  if (!ClipRect(&x, &y, &rectWidth, &rectHeight)) return false;
  PixelMap map = KeepAll();
  for (int32_t value = kToneBlack; value <= kLineLast; value++) {
    if (ToSketchColor(value) != 0) map[static_cast<size_t>(value)] = static_cast<uint8_t>(ToSketchColor(value));
  }
  map[kToneWhite] = static_cast<uint8_t>(whiteValue);
  for (int32_t value = 0; value < static_cast<int32_t>(map.size()); value++) {
    if (IsMasked(mask, value)) map[static_cast<size_t>(value)] = static_cast<uint8_t>(value);
  }
  MapPixels(this, {x, y, rectWidth, rectHeight}, map);
  return true;
}

bool CellImage::ClearSketch(int32_t x, int32_t y, int32_t rectWidth, int32_t rectHeight, int32_t value) {
  if (!ClipRect(&x, &y, &rectWidth, &rectHeight)) return false;
  PixelMap map = KeepAll();
  std::fill(map.begin() + kSketchFirst, map.begin() + kSketchLast + 1, static_cast<uint8_t>(value));
  MapPixels(this, {x, y, rectWidth, rectHeight}, map);
  return true;
}

bool CellImage::Exchange(int32_t dx, int32_t dy, CellImage* other, int32_t sx, int32_t sy, int32_t blockWidth,
                         int32_t blockHeight) {
  if (!ClipBlock(&dx, &dy, &sx, &sy, &blockWidth, &blockHeight, *this, *other)) return false;
  if (other == this) {
    // Column by column and pixel by pixel: where the blocks overlap, a pixel is swapped more than once.
    for (int32_t column = 0; column < blockWidth; column++) {
      for (int32_t row = 0; row < blockHeight; row++) {
        const int32_t mine = GetPixel(dx + column, dy + row);
        SetPixel(dx + column, dy + row, GetPixel(sx + column, sy + row));
        SetPixel(sx + column, sy + row, mine);
      }
    }
    return true;
  }
  uint8_t mine[kRunPixels];
  uint8_t theirs[kRunPixels];
  for (int32_t row = 0; row < blockHeight; row++) {
    for (int32_t done = 0, count = 0; done < blockWidth; done += count) {
      count = std::min(kRunPixels, blockWidth - done);
      ReadRow(dx + done, dy + row, count, mine);
      other->ReadRow(sx + done, sy + row, count, theirs);
      WriteRow(dx + done, dy + row, count, theirs);
      other->WriteRow(sx + done, sy + row, count, mine);
    }
  }
  return true;
}

void CellImage::MoveBlock(int32_t x, int32_t y, int32_t blockWidth, int32_t blockHeight, int32_t toX, int32_t toY,
                          int32_t fillValue, uint32_t mask) {
  const int64_t moveX = int64_t{toX} - x;
  const int64_t moveY = int64_t{toY} - y;
  // Outside of the image there is nothing to move.
  if (!ClipRect(&x, &y, &blockWidth, &blockHeight)) return;
  // The columns whose target lies in the image.
  const auto first = static_cast<int32_t>(std::clamp<int64_t>(-moveX, x, int64_t{x} + blockWidth));
  const auto end = static_cast<int32_t>(std::clamp<int64_t>(width - moveX, first, int64_t{x} + blockWidth));
  // By value: what stays behind, what moves (transparent: nothing), and whether it is protected at the target.
  PixelMap left = KeepAll();
  PixelMap taken{};
  PixelMap covered{};
  for (int32_t value = 0; value < static_cast<int32_t>(left.size()); value++) {
    const auto index = static_cast<size_t>(value);
    covered[index] = IsMasked(mask, value) ? 1 : 0;
    if (value == kTransparent || value == fillValue || IsMasked(mask, value)) continue;
    taken[index] = std::exchange(left[index], static_cast<uint8_t>(fillValue));
  }
  uint8_t carried[kRunPixels];
  uint8_t target[kRunPixels];
  // Rows, and pieces of a row, are moved in the order that reads each pixel before it is overwritten, as memmove does.
  for (int32_t j = 0; j < blockHeight; j++) {
    const int32_t row = moveY < 0 ? y + j : y + blockHeight - 1 - j;
    const int64_t targetRow = row + moveY;
    const bool hasTarget = targetRow >= 0 && targetRow < height;
    for (int32_t done = 0, count = 0; done < blockWidth; done += count) {
      count = std::min(kRunPixels, blockWidth - done);
      const int32_t start = moveX < 0 ? x + done : x + blockWidth - done - count;
      ReadRow(start, row, count, carried);
      for (int32_t i = 0; i < count; i++) {
        target[i] = left[carried[i]];
        carried[i] = taken[carried[i]];
      }
      WriteRow(start, row, count, target);
      const int32_t from = std::max(first, start);
      const int32_t inside = std::min(end, start + count) - from;
      if (!hasTarget || inside <= 0) continue;
      const auto targetX = static_cast<int32_t>(from + moveX);
      const auto targetY = static_cast<int32_t>(targetRow);
      ReadRow(targetX, targetY, inside, target);
      for (int32_t i = 0; i < inside; i++) {
        const uint8_t value = carried[from - start + i];
        target[i] = value != kTransparent && covered[target[i]] == 0 ? value : target[i];
      }
      WriteRow(targetX, targetY, inside, target);
    }
  }
}

bool CellImage::Mosaic(int32_t x, int32_t y, int32_t blockWidth, int32_t blockHeight) {
  if (!ClipRect(&x, &y, &blockWidth, &blockHeight)) return false;
  const int64_t count = int64_t{blockWidth} * blockHeight;
  if (count < 16) return false;
  int64_t sum = 0;
  uint8_t run[kRunPixels];
  for (int32_t row = y; row < y + blockHeight; row++) {
    for (int32_t done = 0, part = 0; done < blockWidth; done += part) {
      part = std::min(kRunPixels, blockWidth - done);
      const uint8_t* const pixels = RunPixels(*this, x + done, row, part, run);
      for (int32_t i = 0; i < part; i++) sum += kMosaicTones[pixels[i]];
    }
  }
  const int64_t level = std::clamp<int64_t>(sum / (count / 16), 0, kLastLevel);
  return FillBox(x, y, blockWidth, blockHeight, LevelToPen(static_cast<int32_t>(level)), 0, nullptr);
}

bool CellImage::FlipVertical(int32_t x, int32_t y, int32_t blockWidth, int32_t blockHeight, uint32_t mask) {
  if (!ClipRect(&x, &y, &blockWidth, &blockHeight)) return true;
  uint8_t upper[kRunPixels];
  uint8_t lower[kRunPixels];
  for (int32_t row = 0; row < blockHeight / 2; row++) {
    const int32_t upperY = y + row;
    const int32_t lowerY = y + blockHeight - 1 - row;
    for (int32_t done = 0, count = 0; done < blockWidth; done += count) {
      count = std::min(kRunPixels, blockWidth - done);
      ReadRow(x + done, upperY, count, upper);
      ReadRow(x + done, lowerY, count, lower);
      for (int32_t i = 0; mask != 0 && i < count; i++) SwapPixels(upper + i, lower + i, mask);
      WriteRow(x + done, upperY, count, mask != 0 ? upper : lower);
      WriteRow(x + done, lowerY, count, mask != 0 ? lower : upper);
    }
  }
  return true;
}

bool CellImage::FlipHorizontal(int32_t x, int32_t y, int32_t blockWidth, int32_t blockHeight, uint32_t mask) {
  if (!ClipRect(&x, &y, &blockWidth, &blockHeight)) return true;
  uint8_t front[kRunPixels];
  uint8_t back[kRunPixels];
  for (int32_t row = y; row < y + blockHeight; row++) {
    for (int32_t done = 0, count = 0; done < blockWidth / 2; done += count) {
      count = std::min(kRunPixels, blockWidth / 2 - done);
      const int32_t backX = x + blockWidth - done - count;
      ReadRow(x + done, row, count, front);
      ReadRow(backX, row, count, back);
      for (int32_t i = 0; i < count; i++) SwapPixels(front + i, back + count - 1 - i, mask);
      WriteRow(x + done, row, count, front);
      WriteRow(backX, row, count, back);
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
  Buffer<uint64_t> uprights;
  if (!uprights.AllocateZeroed(static_cast<uint64_t>(WordCount(width)))) return false;
  // Lines end at right and bottom, as those of DrawBox() do: one pixel less would leave a gap to a frame around the
  // grid. A step of 0 or less gives one line at the left or top edge.
  const int64_t right = int64_t{x} + blockWidth;
  const int64_t bottom = int64_t{y} + blockHeight;
  const int64_t columnStep = stepX > 0 ? stepX : blockWidth;
  const int64_t rowStep = stepY > 0 ? stepY : blockHeight;
  // The ink of a pixel depends on its place alone. So each row is drawn once, whatever lines meet there.
  const PenInk ink(*this, pen);
  uint8_t knownUpright = 0;
  const auto lastRow = static_cast<int32_t>(std::min<int64_t>(bottom + kPenReach, height));
  for (int32_t row = std::max(y - kPenReach, 0); row < lastRow; row++) {
    uint8_t upright = 0;
    uint8_t level = 0;
    for (int32_t part = 0; part < kPenSize; part++) {
      const int64_t point = int64_t{row} + kPenReach - part;
      const uint8_t shape = PenShapes[pen.shape][part];
      if (point < y || point > bottom) continue;
      upright |= shape;
      if (point < bottom && (point - y) % rowStep == 0) level |= shape;
    }
    if (upright != knownUpright) {
      std::fill_n(uprights.Data(), uprights.Count(), 0);
      for (int64_t column = x; column < right; column += columnStep) {
        const Columns covered = StampedColumns(*this, upright, column, column);
        for (int32_t word = covered.first / kWordPixels; word < WordCount(covered.end); word++) {
          uprights[static_cast<size_t>(word)] |= SpanBits(word, covered.first, covered.end);
        }
      }
      knownUpright = upright;
    }
    const Columns covered = StampedColumns(*this, level, x, right);
    for (int32_t word = 0; word < WordCount(width); word++) {
      const uint64_t drawn = uprights[static_cast<size_t>(word)] | SpanBits(word, covered.first, covered.end);
      if (drawn != 0) PaintUnmaskedWord(this, row, word, drawn, ink.Row(row), mask);
    }
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
    // Solid ink. PenToLevel() needs a colorA for tones and lines. Transparent gets -1, since 0 would make a gradient
    // from transparent start like one from black.
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
