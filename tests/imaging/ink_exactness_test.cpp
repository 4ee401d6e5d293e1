// The operations on pixels work in rows and words. Here each of them runs beside its plain form, which goes pixel by
// pixel through GetPixel and SetPixel, on images of both classes with anything in them, and every byte must be the same
// afterwards, padding and spare bytes included, and so must results and rectangles.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <utility>
#include <vector>

#include "foundation/arithmetic.h"
#include "imaging/cell_image.h"
#include "platform/bitmaps.h"
#include "support/ink_rules.h"
#include "support/test_images.h"

namespace sorvel {
namespace {

using testimages::MakeImage;
using testimages::OwnedImage;
using testimages::Random;

constexpr int32_t kLowest = std::numeric_limits<int32_t>::min();
constexpr int32_t kHighest = std::numeric_limits<int32_t>::max();

// ---- The plain forms.

bool PlainMasked(uint32_t mask, int32_t value) {
  return (mask >> (static_cast<uint32_t>(value) % 32) & 1) != 0;
}

bool PlainClip(const CellImage& image, Rect* rect, bool backward) {
  const auto clip = [backward](int32_t* position, int32_t* size, int32_t limit) {
    int64_t first = *position;
    int64_t count = *size;
    if (backward && count < 0) {
      first += count + 1;
      count = -count;
    }
    const int64_t end = std::min<int64_t>(first + count, limit);
    first = std::max<int64_t>(first, 0);
    if (end <= first) return false;
    *position = static_cast<int32_t>(first);
    *size = static_cast<int32_t>(end - first);
    return true;
  };
  return clip(&rect->x, &rect->width, image.width) && clip(&rect->y, &rect->height, image.height);
}

void PlainGrow(Rect* rect, int32_t x, int32_t y) {
  if (rect->width == 0 || rect->height == 0) {
    *rect = {x - 4, y - 4, 8, 8};
    return;
  }
  int64_t left = rect->x;
  int64_t top = rect->y;
  int64_t right = left + rect->width;
  int64_t bottom = top + rect->height;
  if (x - 4 <= left) left = x - 5;
  if (y - 4 <= top) top = y - 5;
  if (right <= x + 4) right = x + 5;
  if (bottom <= y + 4) bottom = y + 5;
  *rect = {Saturated(left), Saturated(top), Saturated(right - left), Saturated(bottom - top)};
}

int32_t PlainInk(const PenSpec& pen, int32_t x, int32_t y) {
  return inkrules::InkAt(pen.tone, pen.colorA, pen.colorB, x, y);
}

void PlainStamp(CellImage* image, int32_t x, int32_t y, const PenSpec& pen, uint32_t mask, Rect* outRect) {
  if (outRect != nullptr) GrowRect(outRect, x, y);
  for (int32_t dx = -4; dx < 4; ++dx) {
    for (int32_t dy = -4; dy < 4; ++dy) {
      const int32_t atX = SaturatingAdd(x, dx);
      const int32_t atY = SaturatingAdd(y, dy);
      if (!inkrules::Covers(pen.shape, dx, dy) || image->PixelOrOutside(atX, atY) < 0) continue;
      if (!PlainMasked(mask, image->GetPixel(atX, atY))) image->SetPixel(atX, atY, PlainInk(pen, atX, atY));
    }
  }
}

void PlainLine(CellImage* image, int32_t x0, int32_t y0, int32_t x1, int32_t y1, PenSpec* pen, uint32_t mask,
               Rect* outRect) {
  if (pen->tone == 0 && pen->colorB == 1) pen->colorB = 8;
  if (outRect != nullptr) {
    GrowRect(outRect, x0, y0);
    GrowRect(outRect, x1, y1);
  }
  inkrules::ForLine(x0, y0, x1, y1, [&](int32_t x, int32_t y) { PlainStamp(image, x, y, *pen, mask, nullptr); });
  if (pen->colorB == 8) pen->colorB = 1;
}

template <typename Visit>
void ForRect(const Rect& rect, const Visit& visit) {
  for (int32_t x = rect.x; x < rect.x + rect.width; ++x) {
    for (int32_t y = rect.y; y < rect.y + rect.height; ++y) visit(x, y);
  }
}

bool PlainFillBox(CellImage* image, Rect box, const PenSpec& pen, uint32_t mask, Bounds* outBox) {
  if (!PlainClip(*image, &box, true)) return false;
  if (outBox != nullptr) *outBox = {box.x, box.y, box.x + box.width, box.y + box.height};
  ForRect(box, [&](int32_t x, int32_t y) {
    if (!PlainMasked(mask, image->GetPixel(x, y))) image->SetPixel(x, y, PlainInk(pen, x, y));
  });
  return true;
}

bool PlainStampImage(CellImage* image, int32_t dx, int32_t dy, CellImage* source, int32_t sx, int32_t sy, int32_t width,
                     int32_t height, const PenSpec& pen, uint32_t mask) {
  if (!testimages::PlainClip(&dx, &dy, &sx, &sy, &width, &height, *image, *source)) return false;
  for (int32_t row = 0; row < height; ++row) {
    for (int32_t column = 0; column < width; ++column) {
      const int32_t value = source->GetPixel(sx + column, sy + row);
      if (value == 0 || PlainMasked(mask, value)) continue;
      image->SetPixel(dx + column, dy + row, PlainInk(pen, dx + column, dx + row));
    }
  }
  return true;
}

bool IsPlainSketch(int32_t value) {
  return value >= 5 && value <= 7;
}

// Lines in the sketch colours of the pen over what is transparent or sketch.
bool PlainGrid(CellImage* image, Rect rect, int32_t stepX, int32_t stepY, PenSpec pen, uint32_t mask) {
  if (!PlainClip(*image, &rect, false)) return false;
  for (int32_t* color : {&pen.colorA, &pen.colorB}) {
    *color = *color >= 1 && *color <= 3 ? *color + 4 : *color >= 8 && *color <= 10 ? *color - 3 : 0;
  }
  for (int32_t value = 0; value < 32; ++value) {
    if (value != 0 && !IsPlainSketch(value)) mask |= uint32_t{1} << value;
  }
  const int32_t right = rect.x + rect.width;
  const int32_t bottom = rect.y + rect.height;
  const int32_t columnStep = stepX > 0 ? stepX : rect.width;
  const int32_t rowStep = stepY > 0 ? stepY : rect.height;
  for (int64_t x = rect.x; x < right; x += columnStep) {
    const auto column = static_cast<int32_t>(x);
    PlainLine(image, column, rect.y, column, bottom, &pen, mask, nullptr);
  }
  for (int64_t y = rect.y; y < bottom; y += rowStep) {
    const auto row = static_cast<int32_t>(y);
    PlainLine(image, rect.x, row, right, row, &pen, mask, nullptr);
  }
  return true;
}

// The flood by recursion, with any ink.
template <typename Ink>
class PlainFlood {
 public:
  PlainFlood(CellImage* target, const Ink& fillInk, uint32_t boundaryMask, Rect* rect)
      : image(target), ink(fillInk), mask(boundaryMask), outRect(rect) {}

  void Span(int32_t y, int32_t left, int32_t right, int32_t value, bool soft) {
    while (Passes(P(left - 1, y), value, soft)) --left;
    Enter(left - 1, y, soft);
    while (Passes(P(right + 1, y), value, soft)) ++right;
    Enter(right + 1, y, soft);
    if (outRect != nullptr) {
      PlainGrow(outRect, left, y);
      PlainGrow(outRect, right, y);
    }
    for (int32_t x = left; x <= right; ++x) image->SetPixel(x, y, ink(x, y));
    for (const int32_t row : {y - 1, y + 1}) {
      for (int32_t x = left; x <= right; ++x) {
        if (!Passes(P(x, row), value, soft)) {
          Enter(x, row, soft);
          continue;
        }
        const int32_t start = x;
        while (x < right && Passes(P(x + 1, row), value, soft)) ++x;
        Span(row, start, x, value, soft);
      }
    }
  }

 private:
  int32_t P(int32_t x, int32_t y) { return image->PixelOrOutside(x, y); }
  static bool Passes(int32_t pixel, int32_t value, bool soft) {
    return pixel == value || (soft && IsPlainSketch(pixel));
  }
  void Enter(int32_t x, int32_t y, bool soft) {
    const int32_t pixel = P(x, y);
    if (!soft || (pixel != 9 && pixel != 10) || PlainMasked(mask, pixel)) return;
    const uint32_t kept = std::exchange(mask, 0U);
    Span(y, x, x, pixel, false);
    mask = kept;
  }

  CellImage* image;
  Ink ink;
  uint32_t mask;
  Rect* outRect;
};

template <typename Ink>
void PlainFill(CellImage* image, int32_t x, int32_t y, int32_t value, const Ink& ink, uint32_t mask, Rect* outRect) {
  const auto marker = [](int32_t, int32_t) { return 15; };
  PlainFlood(image, marker, mask, outRect).Span(y, x, x, value, value != 9 && value != 10);
  PlainFlood(image, ink, 0, nullptr).Span(y, x, x, 15, false);
}

bool PlainFloodFill(CellImage* image, int32_t x, int32_t y, const PenSpec& pen, uint32_t mask, Rect* outRect) {
  int32_t value = image->PixelOrOutside(x, y);
  if (value < 0) return false;
  if (IsPlainSketch(value)) value = 0;
  if (PlainMasked(mask, value)) return false;
  // Ink that is the marker would never come to an end.
  if (value == 15 || pen.colorB == 15 || (pen.tone != 0 && pen.colorA == 15)) return false;
  PlainFill(
      image, x, y, value, [&pen](int32_t px, int32_t py) { return PlainInk(pen, px, py); }, mask, outRect);
  return true;
}

bool PlainGradientFill(CellImage* image, int32_t x, int32_t y, const PenSpec& startPen, int32_t endX, int32_t endY,
                       const PenSpec& endPen, uint32_t mask, Rect* outRect) {
  const int32_t value = image->PixelOrOutside(x, y);
  if (value < 0 || PlainMasked(mask, value) || value == 15) return false;
  const int64_t dx = int64_t{endX} - x;
  const int64_t dy = int64_t{endY} - y;
  const bool across = std::abs(dx) > std::abs(dy);
  const int64_t startLevel = PenToLevel(startPen);
  const int64_t delta = PenToLevel(endPen) - startLevel;
  const int64_t span = across ? dx : dy;
  const auto ink = [&](int32_t px, int32_t py) {
    const int64_t way = across ? px - x : py - y;
    const int64_t level = startLevel + (delta == 0 || span == 0 ? 0 : way * delta / span);
    return PlainInk(LevelToPen(static_cast<int32_t>(std::clamp<int64_t>(level, 0, 48))), px, py);
  };
  PlainFill(image, x, y, value, ink, 0, outRect);
  return true;
}

bool PlainEdgeFill(CellImage* image, Rect rect, const PenSpec& pen, uint32_t mask) {
  if (!PlainClip(*image, &rect, false)) return false;
  const int32_t key = image->GetPixel(rect.x, rect.y);
  if (PlainMasked(mask, key)) return false;
  const auto isForeign = [&](int32_t x, int32_t y) {
    const int32_t pixel = image->PixelOrOutside(x, y);
    return pixel >= 0 && pixel != 15 && pixel != key;
  };
  for (int32_t pass = 0; pass < std::abs(pen.shape - 7) + 1; ++pass) {
    ForRect(rect, [&](int32_t x, int32_t y) {
      if (image->GetPixel(x, y) != key) return;
      if (isForeign(x - 1, y) || isForeign(x, y - 1) || isForeign(x + 1, y) || isForeign(x, y + 1)) {
        image->SetPixel(x, y, 15);
      }
    });
    ForRect(rect, [&](int32_t x, int32_t y) {
      if (image->GetPixel(x, y) == 15) image->SetPixel(x, y, PlainInk(pen, x, y));
    });
  }
  return true;
}

bool PlainToSketch(CellImage* image, Rect rect, int32_t whiteValue, uint32_t mask) {
  if (!PlainClip(*image, &rect, false)) return false;
  ForRect(rect, [&](int32_t x, int32_t y) {
    const int32_t pixel = image->GetPixel(x, y);
    if (PlainMasked(mask, pixel)) return;
    if (pixel >= 8 && pixel <= 10) image->SetPixel(x, y, pixel - 3);
    if (pixel >= 1 && pixel <= 3) image->SetPixel(x, y, pixel + 4);
    if (pixel == 4) image->SetPixel(x, y, whiteValue);
  });
  return true;
}

bool PlainClearSketch(CellImage* image, Rect rect, int32_t value) {
  if (!PlainClip(*image, &rect, false)) return false;
  ForRect(rect, [&](int32_t x, int32_t y) {
    if (IsPlainSketch(image->GetPixel(x, y))) image->SetPixel(x, y, value);
  });
  return true;
}

bool PlainExchange(CellImage* image, int32_t dx, int32_t dy, CellImage* other, int32_t sx, int32_t sy, int32_t width,
                   int32_t height) {
  if (!testimages::PlainClip(&dx, &dy, &sx, &sy, &width, &height, *image, *other)) return false;
  for (int32_t column = 0; column < width; ++column) {
    for (int32_t row = 0; row < height; ++row) {
      const int32_t mine = image->GetPixel(dx + column, dy + row);
      const int32_t theirs = other->GetPixel(sx + column, sy + row);
      if (mine == theirs) continue;
      image->SetPixel(dx + column, dy + row, theirs);
      other->SetPixel(sx + column, sy + row, mine);
    }
  }
  return true;
}

void PlainMoveBlock(CellImage* image, const Rect& block, int32_t toX, int32_t toY, int32_t fillValue, uint32_t mask) {
  for (int32_t a = 0; a < block.width; ++a) {
    const int32_t i = toX < block.x ? a : block.width - 1 - a;
    for (int32_t b = 0; b < block.height; ++b) {
      const int32_t j = toY < block.y ? b : block.height - 1 - b;
      const int32_t value = image->PixelOrOutside(block.x + i, block.y + j);
      if (value <= 0 || value == fillValue || PlainMasked(mask, value)) continue;
      image->SetPixel(block.x + i, block.y + j, fillValue);
      const int32_t present = image->PixelOrOutside(toX + i, toY + j);
      if (present >= 0 && !PlainMasked(mask, present)) image->SetPixel(toX + i, toY + j, value);
    }
  }
}

bool PlainMosaic(CellImage* image, Rect rect) {
  if (!PlainClip(*image, &rect, false)) return false;
  const int64_t count = int64_t{rect.width} * rect.height;
  if (count < 16) return false;
  int64_t sum = 0;
  ForRect(rect, [&](int32_t x, int32_t y) {
    const int32_t pixel = image->GetPixel(x, y);
    sum += pixel >= 1 && pixel <= 3 ? pixel - 1 : pixel >= 8 && pixel <= 10 ? pixel - 8 : 3;
  });
  const auto level = static_cast<int32_t>(std::clamp<int64_t>(sum / (count / 16), 0, 48));
  return PlainFillBox(image, rect, LevelToPen(level), 0, nullptr);
}

void PlainFlip(CellImage* image, Rect rect, uint32_t mask, bool vertical) {
  if (!PlainClip(*image, &rect, false)) return;
  for (int32_t x = 0; x < (vertical ? rect.width : rect.width / 2); ++x) {
    for (int32_t y = 0; y < (vertical ? rect.height / 2 : rect.height); ++y) {
      const Point a = {rect.x + x, rect.y + y};
      const Point b = {vertical ? a.x : rect.x + rect.width - 1 - x, vertical ? rect.y + rect.height - 1 - y : a.y};
      const int32_t valueA = image->GetPixel(a.x, a.y);
      const int32_t valueB = image->GetPixel(b.x, b.y);
      if (!PlainMasked(mask, valueB)) image->SetPixel(b.x, b.y, valueA);
      if (!PlainMasked(mask, valueA)) image->SetPixel(a.x, a.y, valueB);
    }
  }
}

// ---- Images with anything in them.

// An image and its plain twin, equal byte by byte.
struct Twins {
  OwnedImage real;
  OwnedImage plain;
  bool isPacked = true;
};

size_t MemoryOf(const CellImage& image) {
  return image.bits == nullptr ? 0 : static_cast<size_t>(image.ByteCount() + platform::kSpareBytes);
}

OwnedImage CopyOf(const CellImage& image, bool packed) {
  OwnedImage copy = MakeImage(packed, image.width, image.height);
  std::memcpy(copy->bits, image.bits, MemoryOf(image));
  return copy;
}

int32_t AnySize(Random* random) {
  switch (random->Between(0, 5)) {
    case 0:
      return random->Between(1, 4);
    case 1:
      return random->Between(60, 70);
    case 2:
      return random->Between(120, 200);
    default:
      return random->Between(1, 30);
  }
}

// What a picture is made of: ground with more or less of other things in it, or everything in equal parts.
int32_t AnyPixel(Random* random, int32_t kind, int32_t top) {
  static constexpr int32_t kSoft[] = {0, 0, 0, 0, 5, 6, 7, 8, 9, 9, 10, 10};
  switch (kind) {
    case 0:
      return random->OneIn(40) ? random->Between(0, top) : 0;
    case 1:
      return random->Between(0, 99) < 35 ? 8 : 0;
    case 2:
      return kSoft[random->Between(0, 11)];
    case 3:
      return random->OneIn(12) ? 15 : kSoft[random->Between(0, 11)];
    case 4:
      return random->Between(0, 1) * 9 + random->Between(0, 1);
    case 5:
      return random->Between(1, 3);
    default:
      return random->Between(0, top);
  }
}

constexpr int32_t kPixelKinds = 7;

Twins AnyTwins(Random* random) {
  Twins twins;
  twins.isPacked = random->OneIn(2);
  // Seldom wider than the runs that rows are worked on in.
  const int32_t width = random->OneIn(30) ? random->Between(1000, 2200) : AnySize(random);
  const int32_t height = width > 999 ? random->Between(1, 4) : width > 100 ? random->Between(1, 25) : AnySize(random);
  twins.real = MakeImage(twins.isPacked, width, height);
  CellImage* image = twins.real.get();
  for (int32_t i = 0; i < image->ByteCount(); ++i) image->bits[i] = random->Byte();
  const int32_t kind = random->Between(0, kPixelKinds - 1);
  const int32_t top = twins.isPacked ? 15 : random->OneIn(8) ? 255 : 24;
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width; ++x) image->SetPixel(x, y, AnyPixel(random, kind, top));
  }
  twins.plain = CopyOf(*image, twins.isPacked);
  return twins;
}

::testing::AssertionResult AreEqual(const Twins& twins) {
  if (std::memcmp(twins.real->bits, twins.plain->bits, MemoryOf(*twins.real)) == 0)
    return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << twins.real->width << " by " << twins.real->height
                                       << (twins.isPacked ? " packed\n" : " indexed\n")
                                       << testimages::Picture(*twins.real) << "instead of\n"
                                       << testimages::Picture(*twins.plain);
}

PenSpec AnyPen(Random* random, bool isPacked) {
  const int32_t top = isPacked ? 15 : 24;
  PenSpec pen;
  pen.shape = random->Between(0, 14);
  pen.tone = random->OneIn(2) ? 0 : random->Between(0, 15);
  pen.colorA = random->Between(0, top);
  pen.colorB = random->OneIn(4) ? 1 : random->Between(0, top);
  return pen;
}

uint32_t AnyMask(Random* random) {
  const uint32_t word = random->Word();
  return random->OneIn(2) ? 0 : random->OneIn(2) ? word : word & random->Word() & random->Word();
}

// Inside, over an edge, outside, empty, negative, and now and then as far as numbers go.
Rect AnyRect(Random* random, const CellImage& image) {
  const auto extreme = [random] {
    return random->OneIn(2) ? kLowest + random->Between(0, 9) : kHighest - random->Between(0, 9);
  };
  switch (random->Between(0, 9)) {
    case 0:
      return {0, 0, image.width, image.height};
    case 1:
      return {random->OneIn(2) ? extreme() : random->Between(-9, 9),
              random->OneIn(2) ? extreme() : random->Between(-9, 9),
              random->OneIn(2) ? extreme() : random->Between(-9, 99),
              random->OneIn(2) ? extreme() : random->Between(-9, 99)};
    default:
      return {random->Between(-10, image.width + 5), random->Between(-10, image.height + 5),
              random->Between(-20, image.width + 15), random->Between(-20, image.height + 15)};
  }
}

// A dirty rectangle at its start; seldom one that has been grown already.
Rect AnyDirty(Random* random) {
  if (!random->OneIn(4)) return {};
  return {random->Between(-9, 60), random->Between(-9, 30), random->Between(0, 40), random->Between(0, 30)};
}

// ---- The comparisons.

// Runs a check on random twins, which must still be equal afterwards.
template <typename Check>
void ForTwins(uint32_t seed, int32_t rounds, const Check& check) {
  Random random(seed);
  for (int32_t round = 0; round < rounds && !testing::Test::HasFatalFailure(); ++round) {
    SCOPED_TRACE(round);
    const Twins twins = AnyTwins(&random);
    check(&random, twins);
    ASSERT_TRUE(AreEqual(twins));
  }
}

TEST(InkExactness, GrowRectEqualsItsRule) {
  Random random(1);
  for (int32_t round = 0; round < 20000; ++round) {
    Rect real = AnyDirty(&random);
    Rect plain = real;
    for (int32_t i = 0; i < 4; ++i) {
      const Point at = {random.Between(-9, 60), random.Between(-9, 60)};
      GrowRect(&real, at.x, at.y);
      PlainGrow(&plain, at.x, at.y);
    }
    ASSERT_EQ(real, plain) << round;
  }
}

TEST(InkExactness, StampEqualsItsPlainForm) {
  ForTwins(2, 6000, [](Random* random, const Twins& twins) {
    for (int32_t i = 0; i < 8; ++i) {
      const PenSpec pen = AnyPen(random, twins.isPacked);
      const uint32_t mask = AnyMask(random);
      Rect real = AnyDirty(random);
      Rect plain = real;
      int32_t x = random->Between(-6, twins.real->width + 6);
      const int32_t y = random->Between(-6, twins.real->height + 6);
      if (random->OneIn(50)) x = random->OneIn(2) ? kLowest : kHighest;
      ASSERT_TRUE(twins.real->Stamp(x, y, pen, mask, &real));
      PlainStamp(twins.plain.get(), x, y, pen, mask, &plain);
      ASSERT_EQ(real, plain);
    }
  });
}

TEST(InkExactness, DrawLineEqualsItsPlainForm) {
  ForTwins(3, 4000, [](Random* random, const Twins& twins) {
    for (int32_t i = 0; i < 3; ++i) {
      PenSpec realPen = AnyPen(random, twins.isPacked);
      PenSpec plainPen = realPen;
      const uint32_t mask = AnyMask(random);
      Rect real = AnyDirty(random);
      Rect plain = real;
      const auto place = [&] {
        return Point{random->Between(-20, twins.real->width + 20), random->Between(-20, twins.real->height + 20)};
      };
      const Point from = place();
      const Point to = place();
      twins.real->DrawLine(from.x, from.y, to.x, to.y, &realPen, mask, &real);
      PlainLine(twins.plain.get(), from.x, from.y, to.x, to.y, &plainPen, mask, &plain);
      ASSERT_EQ(real, plain);
      ASSERT_EQ(realPen, plainPen);
    }
  });
}

TEST(InkExactness, FillBoxEqualsItsPlainForm) {
  ForTwins(4, 12000, [](Random* random, const Twins& twins) {
    const Rect box = AnyRect(random, *twins.real);
    const PenSpec pen = AnyPen(random, twins.isPacked);
    const uint32_t mask = AnyMask(random);
    Bounds real = {-1, -2, -3, -4};
    Bounds plain = real;
    ASSERT_EQ(twins.real->FillBox(box.x, box.y, box.width, box.height, pen, mask, &real),
              PlainFillBox(twins.plain.get(), box, pen, mask, &plain));
    ASSERT_EQ(real, plain);
  });
}

TEST(InkExactness, FillRectEqualsItsPlainForm) {
  ForTwins(5, 6000, [](Random* random, const Twins& twins) {
    Rect rect = AnyRect(random, *twins.real);
    const int32_t value = random->Between(0, twins.isPacked ? 15 : 255);
    const bool real = twins.real->FillRect(rect.x, rect.y, rect.width, rect.height, value);
    ASSERT_EQ(real, PlainClip(*twins.plain, &rect, false));
    if (real && rect == Rect{0, 0, twins.plain->width, twins.plain->height}) {
      twins.plain->Fill(value);
    } else if (real) {
      PlainFillBox(twins.plain.get(), rect, {7, 0, 0, value}, 0, nullptr);
    }
  });
}

TEST(InkExactness, StampImageEqualsItsPlainForm) {
  ForTwins(6, 6000, [](Random* random, const Twins& twins) {
    const Twins source = AnyTwins(random);
    const Rect block = AnyRect(random, *source.real);
    const int32_t sx = std::clamp(block.x, -100, 300);
    const int32_t sy = std::clamp(block.y, -100, 300);
    const int32_t width = std::clamp(block.width, -100, 300);
    const int32_t height = std::clamp(block.height, -100, 300);
    const int32_t dx = random->Between(-9, twins.real->width);
    const int32_t dy = random->Between(-9, twins.real->height);
    const PenSpec pen = AnyPen(random, twins.isPacked);
    const uint32_t mask = AnyMask(random);
    ASSERT_EQ(twins.real->StampImage(dx, dy, source.real.get(), sx, sy, width, height, pen, mask),
              PlainStampImage(twins.plain.get(), dx, dy, source.plain.get(), sx, sy, width, height, pen, mask));
    ASSERT_TRUE(AreEqual(twins));
    ASSERT_TRUE(AreEqual(source));
  });
}

// Pens of ordinary colours more often than not: with the marker's value nothing happens.
PenSpec AnyFillPen(Random* random, bool isPacked) {
  PenSpec pen = AnyPen(random, isPacked);
  if (!random->OneIn(20)) {
    if (pen.colorA == 15) pen.colorA = 14;
    if (pen.colorB == 15) pen.colorB = 0;
  }
  return pen;
}

TEST(InkExactness, FloodFillEqualsTheRecursion) {
  ForTwins(7, 12000, [](Random* random, const Twins& twins) {
    for (int32_t i = 0; i < 2; ++i) {
      const PenSpec pen = AnyFillPen(random, twins.isPacked);
      const uint32_t mask = AnyMask(random);
      const int32_t edge = random->OneIn(30) ? 3 : 0;
      const int32_t x = random->Between(-edge, twins.real->width - 1 + edge);
      const int32_t y = random->Between(-edge, twins.real->height - 1 + edge);
      Rect real = AnyDirty(random);
      Rect plain = real;
      ASSERT_EQ(twins.real->FloodFill(x, y, pen, mask, &real),
                PlainFloodFill(twins.plain.get(), x, y, pen, mask, &plain));
      ASSERT_EQ(real, plain) << " from " << x << ", " << y;
      ASSERT_TRUE(AreEqual(twins)) << " from " << x << ", " << y;
    }
  });
}

// Mostly ground, with columns of boundaries and sketch at chosen places around the borders of words.
TEST(InkExactness, FloodFillAcrossTheBordersOfWordsEqualsTheRecursion) {
  Random random(8);
  for (int32_t round = 0; round < 4000; ++round) {
    Twins twins;
    twins.isPacked = random.OneIn(2);
    twins.real = MakeImage(twins.isPacked, random.Between(126, 195), random.Between(1, 9));
    for (int32_t i = random.Between(0, 5); i > 0; --i) {
      const int32_t x = std::min(random.Between(62, 66) + 64 * random.Between(0, 1), twins.real->width - 1);
      const int32_t value = random.Between(5, 10);
      const int32_t top = random.Between(0, twins.real->height - 1);
      for (int32_t y = top; y < random.Between(top + 1, twins.real->height); ++y) twins.real->SetPixel(x, y, value);
    }
    twins.plain = CopyOf(*twins.real, twins.isPacked);
    const int32_t x = random.Between(0, twins.real->width - 1);
    const int32_t y = random.Between(0, twins.real->height - 1);
    const PenSpec pen = AnyFillPen(&random, twins.isPacked);
    const uint32_t mask = random.OneIn(3) ? random.Word() & 0x700 : 0;
    Rect real;
    Rect plain;
    ASSERT_EQ(twins.real->FloodFill(x, y, pen, mask, &real),
              PlainFloodFill(twins.plain.get(), x, y, pen, mask, &plain));
    ASSERT_EQ(real, plain) << round << " from " << x << ", " << y;
    ASSERT_TRUE(AreEqual(twins)) << round << " from " << x << ", " << y;
  }
}

TEST(InkExactness, GradientFillEqualsTheRecursion) {
  ForTwins(9, 8000, [](Random* random, const Twins& twins) {
    const PenSpec startPen = AnyPen(random, true);
    const PenSpec endPen = AnyPen(random, true);
    const uint32_t mask = AnyMask(random);
    const int32_t x = random->Between(0, twins.real->width - 1);
    const int32_t y = random->Between(0, twins.real->height - 1);
    int32_t endX = random->Between(-50, twins.real->width + 50);
    int32_t endY = random->Between(-50, twins.real->height + 50);
    if (random->OneIn(20)) endX = random->OneIn(2) ? kLowest : kHighest;
    if (random->OneIn(20)) endY = random->OneIn(2) ? kLowest : kHighest;
    Rect real = AnyDirty(random);
    Rect plain = real;
    ASSERT_EQ(twins.real->GradientFill(x, y, startPen, endX, endY, endPen, mask, &real),
              PlainGradientFill(twins.plain.get(), x, y, startPen, endX, endY, endPen, mask, &plain));
    ASSERT_EQ(real, plain);
  });
}

TEST(InkExactness, EdgeFillEqualsItsPlainForm) {
  ForTwins(10, 8000, [](Random* random, const Twins& twins) {
    const Rect rect = AnyRect(random, *twins.real);
    const PenSpec pen = AnyPen(random, twins.isPacked);
    const uint32_t mask = AnyMask(random);
    ASSERT_EQ(twins.real->EdgeFill(rect.x, rect.y, rect.width, rect.height, pen, mask),
              PlainEdgeFill(twins.plain.get(), rect, pen, mask));
  });
}

TEST(InkExactness, SketchOperationsEqualTheirPlainForms) {
  ForTwins(11, 10000, [](Random* random, const Twins& twins) {
    const Rect rect = AnyRect(random, *twins.real);
    const int32_t value = random->Between(0, twins.isPacked ? 15 : 255);
    if (random->OneIn(2)) {
      const uint32_t mask = AnyMask(random);
      ASSERT_EQ(twins.real->ToSketch(rect.x, rect.y, rect.width, rect.height, value, mask),
                PlainToSketch(twins.plain.get(), rect, value, mask));
    } else {
      ASSERT_EQ(twins.real->ClearSketch(rect.x, rect.y, rect.width, rect.height, value),
                PlainClearSketch(twins.plain.get(), rect, value));
    }
  });
}

TEST(InkExactness, DrawGridEqualsItsPlainForm) {
  ForTwins(19, 6000, [](Random* random, const Twins& twins) {
    const Rect rect = AnyRect(random, *twins.real);
    const PenSpec pen = AnyPen(random, twins.isPacked);
    const uint32_t mask = AnyMask(random);
    const auto step = [random] {
      return random->OneIn(9) ? kHighest - random->Between(0, 9) : random->Between(-2, 20);
    };
    const int32_t stepX = step();
    const int32_t stepY = step();
    ASSERT_EQ(twins.real->DrawGrid(rect.x, rect.y, rect.width, rect.height, stepX, stepY, pen, mask),
              PlainGrid(twins.plain.get(), rect, stepX, stepY, pen, mask));
  });
}

TEST(InkExactness, ExchangeEqualsItsPlainForm) {
  ForTwins(12, 8000, [](Random* random, const Twins& twins) {
    Twins other = AnyTwins(random);
    // What a byte holds needs a byte on the other side.
    if (other.isPacked != twins.isPacked) return;
    const bool withItself = random->OneIn(5);
    const int32_t sx = random->Between(-9, other.real->width);
    const int32_t sy = random->Between(-9, other.real->height);
    const int32_t dx = random->Between(-9, twins.real->width);
    const int32_t dy = random->Between(-9, twins.real->height);
    const int32_t width = random->Between(-9, random->OneIn(4) ? 2200 : 200);
    const int32_t height = random->Between(-9, 50);
    ASSERT_EQ(twins.real->Exchange(dx, dy, withItself ? twins.real.get() : other.real.get(), sx, sy, width, height),
              PlainExchange(twins.plain.get(), dx, dy, withItself ? twins.plain.get() : other.plain.get(), sx, sy,
                            width, height));
    ASSERT_TRUE(AreEqual(twins));
    ASSERT_TRUE(AreEqual(other));
  });
}

TEST(InkExactness, MoveBlockEqualsItsPlainForm) {
  ForTwins(13, 10000, [](Random* random, const Twins& twins) {
    const Rect block = {random->Between(-10, twins.real->width), random->Between(-10, twins.real->height),
                        random->Between(-5, twins.real->width + 9), random->Between(-5, twins.real->height + 9)};
    const int32_t reach = random->OneIn(3) ? 1200 : 6;
    const int32_t toX = block.x + random->Between(-reach, reach);
    const int32_t toY = block.y + (random->OneIn(4) ? 0 : random->Between(-reach, reach));
    const int32_t fillValue = random->OneIn(2) ? 0 : random->Between(0, 15);
    const uint32_t mask = AnyMask(random);
    twins.real->MoveBlock(block.x, block.y, block.width, block.height, toX, toY, fillValue, mask);
    PlainMoveBlock(twins.plain.get(), block, toX, toY, fillValue, mask);
  });
}

TEST(InkExactness, MosaicEqualsItsPlainForm) {
  ForTwins(14, 8000, [](Random* random, const Twins& twins) {
    for (int32_t i = 0; i < 3; ++i) {
      Rect rect = AnyRect(random, *twins.real);
      if (random->OneIn(2)) {
        const int32_t size = 4 * random->Between(1, 4);
        rect = {random->Between(-10, twins.real->width), random->Between(-10, twins.real->height), size, size};
      }
      ASSERT_EQ(twins.real->Mosaic(rect.x, rect.y, rect.width, rect.height), PlainMosaic(twins.plain.get(), rect));
    }
  });
}

TEST(InkExactness, FlipsEqualTheirPlainForms) {
  ForTwins(15, 8000, [](Random* random, const Twins& twins) {
    const Rect rect = AnyRect(random, *twins.real);
    const uint32_t mask = AnyMask(random);
    const bool vertical = random->OneIn(2);
    if (vertical) {
      ASSERT_TRUE(twins.real->FlipVertical(rect.x, rect.y, rect.width, rect.height, mask));
    } else {
      ASSERT_TRUE(twins.real->FlipHorizontal(rect.x, rect.y, rect.width, rect.height, mask));
    }
    PlainFlip(twins.plain.get(), rect, mask, vertical);
  });
}

TEST(InkExactness, CompositeAndOverlayEqualTheirPlainForms) {
  ForTwins(16, 12000, [](Random* random, const Twins& twins) {
    const Twins source = AnyTwins(random);
    // More than 15 doesn't go into four bits.
    if (twins.isPacked && !source.isPacked) return;
    const bool withItself = random->OneIn(8);
    CellImage* const realSource = withItself ? twins.real.get() : source.real.get();
    CellImage* const plainSource = withItself ? twins.plain.get() : source.plain.get();
    const int32_t dx = random->Between(-20, twins.real->width);
    const int32_t dy = random->Between(-20, twins.real->height);
    const int32_t sx = random->Between(-20, realSource->width);
    const int32_t sy = random->Between(-20, realSource->height);
    const int32_t width = random->Between(-9, random->OneIn(4) ? 2200 : 200);
    const int32_t height = random->Between(-9, 50);
    if (random->OneIn(4)) {
      const int32_t variant = random->Between(0, 1);
      // The plain form goes by columns: in an image of its own it would read other pixels.
      if (withItself) return;
      ASSERT_EQ(twins.real->Overlay(dx, dy, realSource, sx, sy, width, height, variant),
                testimages::PlainOverlay(twins.plain.get(), dx, dy, plainSource, sx, sy, width, height, variant));
    } else {
      const int32_t flags = random->Between(0, 3);
      // The pale family doesn't go into four bits either.
      if (twins.isPacked && flags == 3) return;
      // A keyed copy into itself has the ink of its rows from before.
      if (withItself && (flags & 1) != 0) return;
      const uint32_t destMask = AnyMask(random);
      const uint32_t sourceMask = AnyMask(random);
      Rect real = {-1, -2, -3, -4};
      Rect plain = real;
      ASSERT_EQ(twins.real->Composite(dx, dy, realSource, sx, sy, width, height, flags, destMask, sourceMask, &real),
                testimages::PlainComposite(twins.plain.get(), dx, dy, plainSource, sx, sy, width, height, flags,
                                           destMask, sourceMask, &plain));
      ASSERT_EQ(real, plain);
    }
    ASSERT_TRUE(AreEqual(twins));
    ASSERT_TRUE(AreEqual(source));
  });
}

TEST(InkExactness, FindInkEqualsPixelReads) {
  ForTwins(17, 6000, [](Random* random, const Twins& twins) {
    CellImage* const image = twins.real.get();
    for (int32_t i = 0; i < 10; ++i) {
      const int32_t y = random->Between(0, image->height - 1);
      const int32_t from = random->Between(0, image->width - 1);
      const int32_t end = random->Between(from + 1, image->width);
      int32_t x = from;
      while (x < end && image->GetPixel(x, y) == 0) ++x;
      ASSERT_EQ(image->FindInk(from, y, end, 1), x);
      const int32_t before = random->Between(-1, from - 1);
      x = from;
      while (x > before && image->GetPixel(x, y) == 0) --x;
      ASSERT_EQ(image->FindInk(from, y, before, 0), x);
    }
  });
}

TEST(InkExactness, RowsEqualPixelReadsAndWrites) {
  ForTwins(18, 6000, [](Random* random, const Twins& twins) {
    const int32_t y = random->Between(0, twins.real->height - 1);
    const int32_t x = random->Between(0, twins.real->width - 1);
    const int32_t count = random->Between(1, twins.real->width - x);
    std::vector<uint8_t> pixels(static_cast<size_t>(count));
    twins.real->ReadRow(x, y, count, pixels.data());
    for (int32_t i = 0; i < count; ++i) {
      ASSERT_EQ(pixels[static_cast<size_t>(i)], twins.real->GetPixel(x + i, y));
      pixels[static_cast<size_t>(i)] = static_cast<uint8_t>(random->Between(0, 15));
      twins.plain->SetPixel(x + i, y, pixels[static_cast<size_t>(i)]);
    }
    twins.real->WriteRow(x, y, count, pixels.data());
  });
}

// ---- Large cells, where nothing may go deeper with the size of the area.

// The fill of ground by a queue, and the rectangle by the extremes: a first visit at an edge leaves it at four pixels,
// all others make it five.
void ExpectLargeFill(CellImage* image, int32_t x, int32_t y) {
  std::vector<uint8_t> expected(static_cast<size_t>(image->width) * static_cast<size_t>(image->height));
  for (int32_t row = 0; row < image->height; ++row) {
    image->ReadRow(0, row, image->width, expected.data() + static_cast<ptrdiff_t>(row) * image->width);
  }
  std::vector<Point> queue = {{x, y}};
  const auto take = [&](int32_t px, int32_t py) {
    if (px < 0 || py < 0 || px >= image->width || py >= image->height) return;
    uint8_t& pixel = expected[static_cast<size_t>(py) * static_cast<size_t>(image->width) + static_cast<size_t>(px)];
    if (pixel != 0) return;
    pixel = 3;
    queue.push_back({px, py});
  };
  queue.clear();
  take(x, y);
  int32_t left = x;
  int32_t right = x;
  int32_t top = y;
  int32_t bottom = y;
  while (!queue.empty()) {
    const Point at = queue.back();
    queue.pop_back();
    left = std::min(left, at.x);
    right = std::max(right, at.x);
    top = std::min(top, at.y);
    bottom = std::max(bottom, at.y);
    take(at.x - 1, at.y);
    take(at.x + 1, at.y);
    take(at.x, at.y - 1);
    take(at.x, at.y + 1);
  }
  Rect rect;
  ASSERT_TRUE(image->FloodFill(x, y, {7, 0, 0, 3}, 0, &rect));
  EXPECT_EQ(rect, (Rect{left - 5, top - 5, right - left + 10, bottom - top + 10}));
  std::vector<uint8_t> row(static_cast<size_t>(image->width));
  for (int32_t py = 0; py < image->height; ++py) {
    image->ReadRow(0, py, image->width, row.data());
    ASSERT_EQ(std::memcmp(row.data(), expected.data() + static_cast<ptrdiff_t>(py) * image->width, row.size()), 0)
        << py;
  }
}

enum class LargePicture { kBlank, kWinding, kComb, kGrain };

void DrawLarge(CellImage* image, LargePicture picture) {
  Random random(19);
  for (int32_t y = 0; y < image->height; ++y) {
    for (int32_t x = 0; x < image->width; ++x) {
      bool isWall = false;
      // One passage, up and down through every other column.
      if (picture == LargePicture::kWinding) isWall = x % 2 == 1 && y != (x % 4 == 1 ? image->height - 1 : 0);
      if (picture == LargePicture::kComb) isWall = x % 2 == 1 && y % 8 != 0;
      if (picture == LargePicture::kGrain) isWall = x > 1 && random.Between(0, 99) < 35;
      if (isWall) image->SetPixel(x, y, 8);
    }
  }
}

constexpr LargePicture kLargePictures[] = {LargePicture::kBlank, LargePicture::kWinding, LargePicture::kComb,
                                           LargePicture::kGrain};

void ExpectLargeFill(bool packed, int32_t width, int32_t height, LargePicture picture, int32_t y) {
  const OwnedImage image = MakeImage(packed, width, height);
  DrawLarge(image.get(), picture);
  ExpectLargeFill(image.get(), 0, y);
}

TEST(InkExactness, FloodFillOfAVeryWideCell) {
  for (const bool packed : {true, false}) {
    for (const LargePicture picture : kLargePictures) ExpectLargeFill(packed, 32767, 8, picture, 1);
  }
}

TEST(InkExactness, FloodFillOfAVeryTallCell) {
  ExpectLargeFill(true, 8, 32767, LargePicture::kGrain, 20000);
}

TEST(InkExactness, FloodFillOfAVeryLargeCell) {
  for (const LargePicture picture : kLargePictures) ExpectLargeFill(true, 4000, 4000, picture, 3000);
}

}  // namespace
}  // namespace sorvel
