#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "imaging/nibble_bitmap.h"
#include "support/test_images.h"

namespace sorvel {
namespace {

using namespace testimages;

// The front plane as text.
std::string FrontPicture(NibbleBitmap& bitmap) {
  std::string text;
  for (int32_t y = 0; y < bitmap.height; ++y) {
    for (int32_t x = 0; x < bitmap.width; ++x) text += PixelLetter(bitmap.GetFront(x, y));
    text += '\n';
  }
  return text;
}

// Gives a bitmap its pixels.
void Make(NibbleBitmap* bitmap, int32_t width, int32_t height, int32_t fill = 0) {
  EXPECT_EQ(bitmap->Create(width, height), 1);
  bitmap->FillBits(fill);
}

// The box of dark pixels in front of a back plane that is equal to a wholly white output.
Rect ChangedBox(int32_t width, int32_t height, const std::vector<Point>& changes) {
  NibbleBitmap bitmap;
  Make(&bitmap, width, height, 0x33);
  bitmap.frontIsHigh = 1;
  OwnedImage composition = MakeImage(false, width, height);
  for (const Point& point : changes) composition->SetPixel(point.x, point.y, 1);
  Rect box{-1, -2, -3, -4};
  bitmap.ReduceFrom(*composition, &box, 1, nullptr);
  return box;
}

TEST(ReduceFrom, EachIndexGivesItsTone) {
  const int32_t tones[] = {3, 0, 1, 2, 3, 3, 3, 3, 0, 1, 2, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3};
  OwnedImage composition = MakeImage(false, 25, 1);
  for (int32_t i = 0; i < 25; ++i) composition->SetPixel(i, 0, i);
  NibbleBitmap bitmap;
  Make(&bitmap, 25, 1);
  bitmap.ReduceFrom(*composition, nullptr, 1, nullptr);
  for (int32_t i = 0; i < 25; ++i) EXPECT_EQ(bitmap.GetFront(i, 0), tones[i]) << i;
}

TEST(ReduceFrom, HalfSizeAddsFourTones) {
  OwnedImage composition = ImageOf(true, "1144.\n114.1\n8123.\n9a44.\n.....\n");
  NibbleBitmap bitmap;
  Make(&bitmap, 2, 2);
  bitmap.ReduceFrom(*composition, nullptr, 2, nullptr);
  EXPECT_EQ(FrontPicture(bitmap), ".c\n39\n");
}

TEST(ReduceFrom, QuarterSizeDithersTheRemainder) {
  // Blocks of 4 by 4 with the sum 20 + remainder: six whites, a dark or light, and black.
  const int32_t expected[4][4] = {{5, 5, 5, 5}, {6, 5, 5, 5}, {6, 5, 5, 6}, {6, 6, 5, 6}};
  for (int32_t remainder = 0; remainder < 4; ++remainder) {
    OwnedImage composition = MakeImage(false, 16, 16);
    composition->Fill(1);
    for (int32_t by = 0; by < 4; ++by) {
      for (int32_t bx = 0; bx < 4; ++bx) {
        int32_t sum = 20 + remainder;
        for (int32_t i = 0; i < 16; ++i) {
          int32_t tone = sum < 3 ? sum : 3;
          sum -= tone;
          composition->SetPixel(bx * 4 + i % 4, by * 4 + i / 4, tone + 1);
        }
      }
    }
    NibbleBitmap bitmap;
    Make(&bitmap, 4, 4);
    bitmap.ReduceFrom(*composition, nullptr, 4, nullptr);
    for (int32_t y = 0; y < 4; ++y) {
      for (int32_t x = 0; x < 4; ++x) {
        EXPECT_EQ(bitmap.GetFront(x, y), expected[remainder][(y & 1) * 2 + (x & 1)])
            << remainder << " " << x << " " << y;
      }
    }
  }
}

TEST(ReduceFrom, QuarterSizeRunsFrom0To12) {
  NibbleBitmap bitmap;
  Make(&bitmap, 2, 2);
  OwnedImage composition = MakeImage(false, 8, 8);
  bitmap.ReduceFrom(*composition, nullptr, 4, nullptr);
  EXPECT_EQ(FrontPicture(bitmap), "cc\ncc\n");
  composition->Fill(8);
  bitmap.ReduceFrom(*composition, nullptr, 4, nullptr);
  EXPECT_EQ(FrontPicture(bitmap), "..\n..\n");
}

TEST(ReduceFrom, OnlyTheFrontPlaneChanges) {
  for (int32_t high = 0; high < 2; ++high) {
    NibbleBitmap bitmap;
    Make(&bitmap, 4, 1, 0x96);
    bitmap.frontIsHigh = high;
    OwnedImage composition = ImageOf(true, "1234\n");
    bitmap.ReduceFrom(*composition, nullptr, 1, nullptr);
    for (int32_t x = 0; x < 4; ++x) {
      EXPECT_EQ(bitmap.GetFront(x, 0), x);
      EXPECT_EQ(bitmap.GetBack(x, 0), high != 0 ? 6 : 9);
    }
  }
}

TEST(ReduceFrom, AreaLimitsWhatIsWritten) {
  NibbleBitmap bitmap;
  Make(&bitmap, 4, 3, 0xEE);
  OwnedImage composition = MakeImage(true, 8, 6);
  composition->Fill(8);
  Rect area{1, 1, 2, 1};
  bitmap.ReduceFrom(*composition, nullptr, 2, &area);
  EXPECT_EQ(FrontPicture(bitmap), "eeee\ne..e\neeee\n");
}

TEST(ReduceFrom, AreaIsCutAtTheBitmap) {
  NibbleBitmap bitmap;
  Make(&bitmap, 3, 3, 0xEE);
  OwnedImage composition = MakeImage(true, 15, 15);
  composition->Fill(8);
  Rect area{2, 1, 50, 60};
  bitmap.ReduceFrom(*composition, nullptr, 4, &area);
  EXPECT_EQ(FrontPicture(bitmap), "eee\nee.\nee.\n");
}

TEST(ReduceFrom, EmptyAreaWritesNothingAndGivesAZeroBox) {
  NibbleBitmap bitmap;
  Make(&bitmap, 3, 3, 0xEE);
  OwnedImage composition = MakeImage(true, 3, 3);
  for (const Rect& area : {Rect{0, 0, 0, 3}, Rect{0, 0, 3, 0}, Rect{3, 3, 1, 1}}) {
    Rect box{-1, -2, -3, -4};
    bitmap.ReduceFrom(*composition, &box, 1, &area);
    EXPECT_EQ(box, Rect{});
  }
  EXPECT_EQ(FrontPicture(bitmap), "eee\neee\neee\n");
}

TEST(ReduceFrom, BoxHoldsThePixelsThatDifferFromTheBack) {
  const struct {
    const char* rule;
    std::vector<Point> changes;
    Rect box;
  } cases[] = {
      {"BoxHoldsThePixelsThatDifferFromTheBack", {{4, 3}, {7, 5}}, {4, 3, 4, 3}},
      {"BoxHoldsThePixelsThatDifferFromTheBack", {{2, 1}}, {2, 1, 1, 1}},
      {"BoxBeginsAtAnEvenColumn", {{5, 3}, {7, 5}}, {4, 3, 4, 3}},
      {"BoxBeginsAtAnEvenColumn", {{1, 1}}, {0, 1, 2, 1}},
      {"BoxIsZeroWithoutAChange", {}, {}},
      {"ChangesOnlyInColumn0OrOnlyInRow0CountAsNone", {{0, 2}, {0, 7}}, {}},
      {"ChangesOnlyInColumn0OrOnlyInRow0CountAsNone", {{3, 0}, {9, 0}}, {}},
      {"ChangesOnlyInColumn0OrOnlyInRow0CountAsNone", {{0, 0}}, {}},
      {"ChangesOnlyInColumn0OrOnlyInRow0CountAsNone", {{0, 5}, {3, 0}}, {0, 0, 4, 6}},
      {"BoxAtTheRightBottomCorner", {{11, 8}}, {10, 8, 2, 1}},
  };
  for (const auto& one : cases) EXPECT_EQ(ChangedBox(12, 9, one.changes), one.box) << one.rule;
}

TEST(ReduceFrom, AgreesWithThePixelRules) {
  Random random(31);
  for (int32_t round = 0; round < 3000; ++round) {
    const int32_t scales[] = {1, 2, 4};
    int32_t scale = scales[random.Between(0, 2)];
    const bool wide = round % 50 == 0;
    NibbleBitmap bitmap;
    Make(&bitmap, wide ? random.Between(900, 3500) : random.Between(1, 13), random.Between(1, 9));
    bitmap.frontIsHigh = random.Between(0, 1);
    bool packed = random.OneIn(2);
    OwnedImage composition = MakeImage(packed, bitmap.width * scale + random.Between(0, scale - 1),
                                       bitmap.height * scale + random.Between(0, scale - 1));
    composition->Fill(random.OneIn(2) ? 0 : random.Between(0, packed ? 15 : 24));
    Scatter(composition.get(), random, packed ? 15 : 24, random.Between(1, 40));
    // A back plane that mostly agrees with the picture, so that the box has something to tell.
    bool similar = random.OneIn(2);
    for (int32_t y = 0; y < bitmap.height; ++y) {
      for (int32_t x = 0; x < bitmap.width; ++x) {
        int32_t back = similar && !random.OneIn(20) ? PlainGrey(*composition, x, y, scale) : random.Between(0, 15);
        int32_t front = random.Between(0, 15);
        bitmap.bits[y * bitmap.pitch + x] =
            static_cast<uint8_t>(bitmap.frontIsHigh != 0 ? front * 16 + back : back * 16 + front);
      }
    }
    std::vector<uint8_t> expected(bitmap.bits, bitmap.bits + bitmap.imageSize + 16);
    Rect area{random.Between(0, 13), random.Between(0, 9), random.Between(0, 15), random.Between(0, 12)};
    if (wide) area.width = random.Between(900, 3500);
    bool whole = random.OneIn(3);
    const Rect part = whole ? Rect{0, 0, bitmap.width, bitmap.height} : area;
    int32_t minX = INT32_MAX;
    int32_t minY = INT32_MAX;
    int32_t maxX = 0;
    int32_t maxY = 0;
    for (int32_t y = part.y; y < std::min(part.y + part.height, bitmap.height); ++y) {
      for (int32_t x = part.x; x < std::min(part.x + part.width, bitmap.width); ++x) {
        const int32_t value = PlainGrey(*composition, x, y, scale);
        if (bitmap.GetBack(x, y) != value) {
          minX = std::min(minX, x);
          minY = std::min(minY, y);
          maxX = std::max(maxX, x);
          maxY = std::max(maxY, y);
        }
        uint8_t& byte = expected[static_cast<size_t>(y * bitmap.pitch + x)];
        byte = static_cast<uint8_t>(bitmap.frontIsHigh != 0 ? (byte & 15) + value * 16 : (byte & 0xF0) + value);
      }
    }
    if (minX % 2 != 0) --minX;
    Rect expectedBox;
    if (maxX != 0 && maxY != 0) expectedBox = {minX, minY, maxX - minX + 1, maxY - minY + 1};
    bool wantsBox = !random.OneIn(4);
    Rect box{-1, -2, -3, -4};
    bitmap.ReduceFrom(*composition, wantsBox ? &box : nullptr, scale, whole ? nullptr : &area);
    ASSERT_EQ(std::vector<uint8_t>(bitmap.bits, bitmap.bits + bitmap.imageSize + 16), expected)
        << round << " scale " << scale;
    if (wantsBox) {
      ASSERT_EQ(box, expectedBox) << round << " scale " << scale;
    }
  }
}

}  // namespace
}  // namespace sorvel
