#include "imaging/plane_bitmap.h"

#include <gtest/gtest.h>

#include <vector>

#include "imaging/nibble_bitmap.h"
#include "support/test_images.h"

namespace sorvel {
namespace {

using namespace testimages;

Color Grey(int32_t level) {
  return {level, level, level};
}

using ColorGetter = int32_t (NibbleBitmap::*)(int32_t, int32_t*, int32_t*, int32_t*);

Color ColorOf(NibbleBitmap& bitmap, ColorGetter getter, int32_t index) {
  Color color{-1, -1, -1};
  EXPECT_EQ((bitmap.*getter)(index, &color.red, &color.green, &color.blue), 1);
  return color;
}

Color BaseOf(NibbleBitmap& bitmap, int32_t index) {
  return ColorOf(bitmap, &NibbleBitmap::GetBaseColor, index);
}

Color FrontOf(NibbleBitmap& bitmap, int32_t index) {
  return ColorOf(bitmap, &NibbleBitmap::GetFrontColor, index);
}

Color BackOf(NibbleBitmap& bitmap, int32_t index) {
  return ColorOf(bitmap, &NibbleBitmap::GetBackColor, index);
}

Color EntryOf(const NibbleBitmap& bitmap, int32_t byte) {
  const platform::ColorEntry& entry = bitmap.mixColors[byte];
  return {entry.red, entry.green, entry.blue};
}

// Gives a bitmap its pixels.
void Make(NibbleBitmap* bitmap, int32_t width, int32_t height, int32_t fill = 0) {
  EXPECT_EQ(bitmap->Create(width, height), 1);
  bitmap->FillBits(fill);
}

void Randomize(NibbleBitmap* bitmap, Random& random) {
  for (int32_t i = 0; i < bitmap->imageSize; ++i) bitmap->bits[i] = random.Byte();
}

Bytes First(const NibbleBitmap& bitmap, int32_t count) {
  return Bytes(bitmap.bits, bitmap.bits + count);
}

// The pixels and the spare bytes behind them.
Bytes All(const NibbleBitmap& bitmap) {
  return First(bitmap, bitmap.imageSize + 16);
}

TEST(PlaneBitmap, FieldsStartWithTheirDefaults) {
  NibbleBitmap bitmap;
  for (const int32_t field : {bitmap.frontIsHigh, bitmap.width, bitmap.height}) EXPECT_EQ(field, 0);
  EXPECT_EQ(bitmap.brightness, 50);
  for (const int32_t field : {bitmap.redMax, bitmap.greenMax, bitmap.blueMax}) EXPECT_EQ(field, 255);
  EXPECT_EQ(bitmap.bitmapHandle, nullptr);
  for (int32_t i = 0; i < 16; ++i) {
    for (const Color& color : {BaseOf(bitmap, i), FrontOf(bitmap, i), BackOf(bitmap, i)}) EXPECT_EQ(color, Grey(0));
  }
  for (int32_t i = 0; i < 256; ++i) EXPECT_EQ(EntryOf(bitmap, i), Grey(0));
}

TEST(PlaneBitmap, CreateStoresTheSizesAndRoundsThePitchToFour) {
  NibbleBitmap bitmap;
  Make(&bitmap, 5, 3);
  EXPECT_EQ(bitmap.width, 5);
  EXPECT_EQ(bitmap.height, 3);
  EXPECT_EQ(bitmap.pitch, 8);
  EXPECT_EQ(bitmap.imageSize, 24);
  EXPECT_NE(bitmap.bitmapHandle, nullptr);
  EXPECT_NE(bitmap.savedBits, nullptr);
  EXPECT_EQ(bitmap.Create(8, 2), 1);
  EXPECT_EQ(bitmap.pitch, 8);
  EXPECT_EQ(bitmap.imageSize, 16);
}

TEST(PlaneBitmap, PixelsAndTheMemoryBehindThemStartAsZero) {
  NibbleBitmap bitmap;
  ASSERT_EQ(bitmap.Create(5, 3), 1);
  EXPECT_EQ(Bytes(bitmap.bits, bitmap.bits + bitmap.imageSize + 16), Bytes(40, 0));
}

TEST(PlaneBitmap, CreateWithAZeroSizeGivesZeroAndLeavesNoBitmap) {
  NibbleBitmap bitmap;
  EXPECT_EQ(bitmap.Create(0, 4), 0);
  EXPECT_EQ(bitmap.Create(4, 0), 0);
  ASSERT_EQ(bitmap.Create(8, 4), 1);
  EXPECT_EQ(bitmap.Create(0, 4), 0);
  EXPECT_EQ(bitmap.bitmapHandle, nullptr);
  EXPECT_EQ(bitmap.savedBits, nullptr);
  bitmap.SaveBits();
  bitmap.RestoreBits();
  ASSERT_EQ(bitmap.Create(8, 4), 1);
  bitmap.SetFront(7, 3, 5);
  EXPECT_EQ(bitmap.GetFront(7, 3), 5);
}

TEST(PlaneBitmap, CreateWithTheSameSizeKeepsPixelsColoursAndTheSavedBuffer) {
  NibbleBitmap bitmap;
  Make(&bitmap, 6, 2, 0x5A);
  bitmap.SaveBits();
  bitmap.FillBits(0x31);
  bitmap.SetBaseColor(2, 1, 2, 3);
  ASSERT_EQ(bitmap.Create(6, 2), 1);
  EXPECT_EQ(bitmap.bits[0], 0x31);
  EXPECT_EQ(BaseOf(bitmap, 2), (Color{1, 2, 3}));
  bitmap.RestoreBits();
  EXPECT_EQ(bitmap.bits[0], 0x5A);
}

TEST(PlaneBitmap, CreateMakesARampOfItsOwnInTheFirstThirteenBaseColours) {
  const int32_t ramp[] = {0, 22, 43, 64, 85, 107, 128, 149, 170, 192, 213, 234, 255};
  NibbleBitmap bitmap;
  for (int32_t i = 0; i < 16; ++i) bitmap.SetBaseColor(i, 7, 8, 9);
  ASSERT_EQ(bitmap.Create(4, 4), 1);
  for (int32_t i = 0; i < 13; ++i) EXPECT_EQ(BaseOf(bitmap, i), Grey(ramp[i])) << i;
  for (int32_t i = 13; i < 16; ++i) EXPECT_EQ(BaseOf(bitmap, i), (Color{7, 8, 9})) << i;
  bitmap.SetBaseColor(1, 1, 1, 1);
  ASSERT_EQ(bitmap.Create(4, 5), 1);
  EXPECT_EQ(BaseOf(bitmap, 1), Grey(22));
}

TEST(PlaneBitmap, FrontIsTheNibbleThatTheFieldSays) {
  NibbleBitmap bitmap;
  Make(&bitmap, 4, 2);
  bitmap.bits[bitmap.pitch + 2] = 0x3A;
  EXPECT_EQ(bitmap.GetFront(2, 1), 10);
  EXPECT_EQ(bitmap.GetBack(2, 1), 3);
  bitmap.frontIsHigh = 1;
  EXPECT_EQ(bitmap.GetFront(2, 1), 3);
  EXPECT_EQ(bitmap.GetBack(2, 1), 10);
}

TEST(PlaneBitmap, SetFrontLeavesTheBackNibble) {
  NibbleBitmap bitmap;
  Make(&bitmap, 4, 1, 0x3A);
  bitmap.SetFront(1, 0, 5);
  bitmap.frontIsHigh = 1;
  bitmap.SetFront(2, 0, 5);
  EXPECT_EQ(First(bitmap, 4), (Bytes{0x3A, 0x35, 0x5A, 0x3A}));
}

TEST(PlaneBitmap, SetFrontAboveFifteenSpillsOnlyUpwards) {
  NibbleBitmap bitmap;
  Make(&bitmap, 4, 1, 0x2A);
  bitmap.SetFront(0, 0, 0x15);
  EXPECT_EQ(bitmap.bits[0], 0x35);
  bitmap.frontIsHigh = 1;
  bitmap.SetFront(1, 0, 0x15);
  EXPECT_EQ(bitmap.bits[1], 0x5A);
}

TEST(PlaneBitmap, FillBitsOverwritesBothPlanesAndThePadding) {
  NibbleBitmap bitmap;
  Make(&bitmap, 5, 2, 0x1C7);
  EXPECT_EQ(First(bitmap, 16), Bytes(16, 0xC7));
}

TEST(PlaneBitmap, SaveAndRestoreBeforeTheFirstCreateDoNothing) {
  NibbleBitmap bitmap;
  bitmap.SaveBits();
  bitmap.RestoreBits();
  EXPECT_EQ(bitmap.savedBits, nullptr);
  EXPECT_EQ(bitmap.bits, nullptr);
}

TEST(PlaneBitmap, RestoreBringsBothPlanesBack) {
  NibbleBitmap bitmap;
  Make(&bitmap, 7, 3);
  Random random(21);
  Randomize(&bitmap, random);
  const Bytes saved = First(bitmap, bitmap.imageSize);
  bitmap.SaveBits();
  bitmap.FillBits(0);
  bitmap.frontIsHigh = 1;
  bitmap.RestoreBits();
  EXPECT_EQ(First(bitmap, bitmap.imageSize), saved);
  EXPECT_EQ(bitmap.frontIsHigh, 1);
}

TEST(PlaneBitmap, BlockReadsGiveFourNibblesOfThePlane) {
  NibbleBitmap bitmap;
  Make(&bitmap, 8, 2);
  for (int32_t i = 0; i < 16; ++i) bitmap.bits[i] = static_cast<uint8_t>(i * 16 + 15 - i);
  for (int32_t high = 0; high < 2; ++high) {
    bitmap.frontIsHigh = high;
    uint8_t front[4];
    uint8_t back[4];
    EXPECT_EQ(bitmap.GetFront4(&front, 3, 1), front);
    EXPECT_EQ(bitmap.GetBack4(&back, 3, 1), back);
    for (int32_t i = 0; i < 4; ++i) {
      EXPECT_EQ(front[i], bitmap.GetFront(3 + i, 1));
      EXPECT_EQ(back[i], bitmap.GetBack(3 + i, 1));
    }
  }
}

TEST(PlaneBitmap, BlockReadAtTheRightGoesOnInMemory) {
  NibbleBitmap bitmap;
  Make(&bitmap, 6, 2);
  for (int32_t i = 0; i < 16; ++i) bitmap.bits[i] = static_cast<uint8_t>(i);
  uint8_t block[4];
  bitmap.GetFront4(&block, 6, 0);
  EXPECT_EQ(Bytes(block, block + 4), (Bytes{6, 7, 8, 9}));
}

TEST(PlaneBitmap, BlocksReachOverTheEndOfTheLastRow) {
  NibbleBitmap bitmap;
  Make(&bitmap, 8, 2, 0xFF);
  uint8_t block[4] = {9, 9, 9, 9};
  bitmap.GetFront4(&block, 7, 1);
  EXPECT_EQ(Bytes(block, block + 4), (Bytes{15, 0, 0, 0}));
  bitmap.GetBack4(&block, 8, 1);
  EXPECT_EQ(Bytes(block, block + 4), Bytes(4, 0));
}

TEST(PlaneBitmap, BlockWriteKeepsTheBackNibbles) {
  for (int32_t high = 0; high < 2; ++high) {
    NibbleBitmap bitmap;
    Make(&bitmap, 8, 2);
    Random random(22);
    Randomize(&bitmap, random);
    bitmap.frontIsHigh = high;
    Bytes expected = All(bitmap);
    const uint8_t values[] = {1, 15, 0, 8};
    bitmap.SetFront4(2, 1, values);
    for (size_t i = 0; i < 4; ++i) {
      uint8_t& byte = expected[10 + i];
      byte = static_cast<uint8_t>(high != 0 ? (byte & 15) + values[i] * 16 : (byte & 0xF0) + values[i]);
    }
    EXPECT_EQ(All(bitmap), expected);
  }
}

TEST(PlaneBitmap, ColoursBelongToTheNibbleAndNotToFrontOrBack) {
  NibbleBitmap bitmap;
  EXPECT_EQ(bitmap.SetFrontColor(4, 1, 2, 3), 1);
  EXPECT_EQ(bitmap.SetBackColor(4, 4, 5, 6), 1);
  EXPECT_EQ(bitmap.planeColors[0][4].red, 1);
  EXPECT_EQ(bitmap.planeColors[0][4].green, 2);
  EXPECT_EQ(bitmap.planeColors[0][4].blue, 3);
  EXPECT_EQ(bitmap.planeColors[1][4].red, 4);
  bitmap.frontIsHigh = 1;
  EXPECT_EQ(FrontOf(bitmap, 4), (Color{4, 5, 6}));
  EXPECT_EQ(BackOf(bitmap, 4), (Color{1, 2, 3}));
  bitmap.SetFrontColor(5, 7, 8, 9);
  bitmap.SetBackColor(5, 10, 11, 12);
  EXPECT_EQ(bitmap.planeColors[1][5].red, 7);
  EXPECT_EQ(bitmap.planeColors[0][5].red, 10);
}

TEST(PlaneBitmap, StoredColoursKeepTheLowEightBits) {
  NibbleBitmap bitmap;
  EXPECT_EQ(bitmap.SetBaseColor(15, 0x101, 0x2FF, -1), 1);
  EXPECT_EQ(BaseOf(bitmap, 15), (Color{1, 255, 255}));
  EXPECT_EQ(bitmap.baseColors[15].reserved, 0);
}

TEST(PlaneBitmap, SetMixColorLandsOnTheByteOfThePair) {
  NibbleBitmap bitmap;
  EXPECT_EQ(bitmap.SetMixColor(10, 3, 1, 2, 3), 1);
  EXPECT_EQ(EntryOf(bitmap, 0x3A), (Color{1, 2, 3}));
  bitmap.frontIsHigh = 1;
  EXPECT_EQ(bitmap.SetMixColor(3, 10, 4, 5, 6), 1);
  EXPECT_EQ(EntryOf(bitmap, 0x3A), (Color{4, 5, 6}));
  EXPECT_EQ(EntryOf(bitmap, 0xA3), Grey(0));
}

TEST(PlaneBitmap, GetMixColorTakesTheBackNumberFirst) {
  for (int32_t high = 0; high < 2; ++high) {
    NibbleBitmap bitmap;
    bitmap.frontIsHigh = high;
    bitmap.SetMixColor(10, 3, 1, 2, 3);
    Color color{-1, -1, -1};
    EXPECT_EQ(bitmap.GetMixColor(3, 10, &color.red, &color.green, &color.blue), 1);
    EXPECT_EQ(color, (Color{1, 2, 3}));
    bitmap.GetMixColor(10, 3, &color.red, &color.green, &color.blue);
    EXPECT_EQ(color, Grey(0));
  }
}

void ExpectRamp(const std::vector<int32_t>& ramp) {
  NibbleBitmap bitmap;
  bitmap.SetLevels(static_cast<int32_t>(ramp.size()));
  for (size_t i = 0; i < ramp.size(); ++i) EXPECT_EQ(BaseOf(bitmap, static_cast<int32_t>(i)), Grey(ramp[i])) << i;
}

TEST(PlaneBitmap, LevelsSpendTheRemainderFirst) {
  ExpectRamp({0, 85, 170, 255});
  ExpectRamp({0, 22, 44, 66, 87, 108, 129, 150, 171, 192, 213, 234, 255});
}

TEST(PlaneBitmap, EntriesAboveTheRampKeepWhatTheyHeld) {
  NibbleBitmap bitmap;
  for (int32_t i = 0; i < 16; ++i) bitmap.SetBaseColor(i, 3, 4, 5);
  bitmap.SetLevels(4);
  EXPECT_EQ(BaseOf(bitmap, 3), Grey(255));
  for (int32_t i = 4; i < 16; ++i) EXPECT_EQ(BaseOf(bitmap, i), (Color{3, 4, 5})) << i;
}

TEST(PlaneBitmap, LevelCountIsClampedTo2And16) {
  for (int32_t count : {1, 0, -5}) {
    NibbleBitmap bitmap;
    bitmap.SetBaseColor(2, 9, 9, 9);
    bitmap.SetLevels(count);
    EXPECT_EQ(BaseOf(bitmap, 0), Grey(0));
    EXPECT_EQ(BaseOf(bitmap, 1), Grey(255));
    EXPECT_EQ(BaseOf(bitmap, 2), Grey(9));
  }
  for (int32_t count : {16, 17, 1000}) {
    NibbleBitmap bitmap;
    bitmap.SetLevels(count);
    for (int32_t i = 0; i < 16; ++i) EXPECT_EQ(BaseOf(bitmap, i), Grey(17 * i));
  }
}

TEST(PlaneBitmap, EachChannelHasItsOwnRamp) {
  for (int32_t count = 2; count <= 16; ++count) {
    NibbleBitmap bitmap;
    bitmap.redMax = 200;
    bitmap.greenMax = 7;
    bitmap.SetLevels(count);
    Color color{0, 0, 0};
    int32_t steps = count - 1;
    for (int32_t i = 0; i < count; ++i) {
      EXPECT_EQ(BaseOf(bitmap, i), color) << i << " of " << count;
      color.red += 200 / steps + (i < 200 % steps ? 1 : 0);
      color.green += 7 / steps + (i < 7 % steps ? 1 : 0);
      color.blue += 255 / steps + (i < 255 % steps ? 1 : 0);
    }
    EXPECT_EQ(BaseOf(bitmap, count - 1), (Color{200, 7, 255}));
  }
}

TEST(PlaneBitmap, NeutralBrightnessCopiesTheRampFullIsWhiteAndNoneIsBlack) {
  NibbleBitmap bitmap;
  bitmap.SetLevels(13);
  for (const int32_t brightness : {50, 100, 0}) {
    bitmap.SetBrightness(brightness);
    EXPECT_EQ(bitmap.brightness, brightness);
    for (int32_t i = 0; i < 16; ++i) {
      EXPECT_EQ(FrontOf(bitmap, i), brightness == 50 ? BaseOf(bitmap, i) : Grey(brightness == 100 ? 255 : 0));
    }
  }
}

TEST(PlaneBitmap, BrightnessTruncatesItsDivisions) {
  NibbleBitmap bitmap;
  bitmap.SetLevels(4);
  const int32_t cases[][3] = {{51, 0, 5}, {51, 1, 88}, {51, 3, 255}, {49, 1, 83}, {49, 3, 249}};
  for (const auto& [brightness, level, grey] : cases) {
    bitmap.SetBrightness(brightness);
    EXPECT_EQ(FrontOf(bitmap, level), Grey(grey)) << brightness;
  }
}

TEST(PlaneBitmap, BrightnessFollowsItsFormulasForEveryValue) {
  NibbleBitmap bitmap;
  bitmap.redMax = 240;
  bitmap.greenMax = 99;
  bitmap.SetLevels(16);
  const int32_t maxima[] = {240, 99, 255};
  for (int32_t value = 0; value <= 100; ++value) {
    bitmap.SetBrightness(value);
    for (int32_t i = 0; i < 16; ++i) {
      Color base = BaseOf(bitmap, i);
      const int32_t channels[] = {base.red, base.green, base.blue};
      int32_t expected[3];
      for (int32_t c = 0; c < 3; ++c) {
        int32_t d = value - 50;
        expected[c] = channels[c];
        if (d > 0) {
          int32_t lift = maxima[c] * d / 50;
          expected[c] = (maxima[c] - lift) * channels[c] / maxima[c] + lift;
        } else if (d < 0) {
          expected[c] = value * channels[c] / 50;
        }
      }
      ASSERT_EQ(FrontOf(bitmap, i), (Color{expected[0], expected[1], expected[2]})) << value << " at " << i;
    }
  }
}

TEST(PlaneBitmap, BrightnessChangesOnlyTheFrontOfTheMoment) {
  NibbleBitmap bitmap;
  bitmap.SetLevels(4);
  bitmap.SetBrightness(50);
  bitmap.frontIsHigh = 1;
  bitmap.SetBrightness(100);
  EXPECT_EQ(FrontOf(bitmap, 0), Grey(255));
  EXPECT_EQ(BackOf(bitmap, 0), Grey(0));
  EXPECT_EQ(BackOf(bitmap, 1), Grey(85));
}

TEST(PlaneBitmap, PlainMixShowsTheFrontWhateverTheBackIs) {
  for (int32_t high = 0; high < 2; ++high) {
    NibbleBitmap bitmap;
    bitmap.frontIsHigh = high;
    bitmap.SetLevels(16);
    bitmap.SetBrightness(50);
    for (int32_t i = 0; i < 16; ++i) bitmap.SetBackColor(i, 200, i, 3);
    bitmap.MixPlanes(0, 1);
    for (int32_t byte = 0; byte < 256; ++byte) {
      int32_t front = high != 0 ? byte >> 4 : byte & 15;
      EXPECT_EQ(EntryOf(bitmap, byte), Grey(17 * front)) << byte;
    }
  }
}

TEST(PlaneBitmap, MixWeighsThePlanesAndTruncates) {
  Random random(23);
  for (int32_t round = 0; round < 40; ++round) {
    NibbleBitmap bitmap;
    bitmap.frontIsHigh = round % 2;
    for (int32_t i = 0; i < 16; ++i) {
      bitmap.SetFrontColor(i, random.Byte(), random.Byte(), random.Byte());
      bitmap.SetBackColor(i, random.Byte(), random.Byte(), random.Byte());
    }
    int32_t b = random.Between(1, 30);
    int32_t a = random.Between(0, b);
    if (random.OneIn(2)) {
      a = -a;
      b = -b;
    }
    bitmap.MixPlanes(a, b);
    for (int32_t byte = 0; byte < 256; ++byte) {
      int32_t low = byte & 15;
      int32_t top = byte >> 4;
      Color front = FrontOf(bitmap, round % 2 != 0 ? top : low);
      Color back = BackOf(bitmap, round % 2 != 0 ? low : top);
      Color expected{(front.red * (b - a) + back.red * a) / b, (front.green * (b - a) + back.green * a) / b,
                     (front.blue * (b - a) + back.blue * a) / b};
      ASSERT_EQ(EntryOf(bitmap, byte), expected) << byte << " with " << a << "/" << b;
    }
  }
}

TEST(PlaneBitmap, DissolveWithNegativeWeightsMovesFromBackToFront) {
  NibbleBitmap bitmap;
  bitmap.SetFrontColor(1, 100, 0, 0);
  bitmap.SetBackColor(2, 0, 100, 0);
  for (const int32_t weight : {-4, -1, 0}) {
    bitmap.MixPlanes(weight, -5);
    EXPECT_EQ(EntryOf(bitmap, 0x21), (Color{100 + 20 * weight, -20 * weight, 0}));
  }
}

TEST(PlaneBitmap, CopyBackToFrontCopiesTheRectangle) {
  for (int32_t high = 0; high < 2; ++high) {
    Random random(24);
    for (int32_t round = 0; round < 200; ++round) {
      NibbleBitmap bitmap;
      Make(&bitmap, random.Between(1, 12), random.Between(1, 8));
      bitmap.frontIsHigh = high;
      Randomize(&bitmap, random);
      Bytes expected = All(bitmap);
      int32_t x = random.Between(-4, 12);
      int32_t y = random.Between(-4, 8);
      int32_t w = random.Between(0, 14);
      int32_t h = random.Between(0, 10);
      for (int32_t py = y; py < y + h; ++py) {
        for (int32_t px = x; px < x + w; ++px) {
          if (px < 0 || py < 0 || px >= bitmap.width || py >= bitmap.height) continue;
          uint8_t& byte = expected[static_cast<size_t>(py * bitmap.pitch + px)];
          int32_t back = high != 0 ? byte & 15 : byte >> 4;
          byte = static_cast<uint8_t>(back * 17);
        }
      }
      bitmap.CopyBackToFront(x, y, w, h);
      ASSERT_EQ(All(bitmap), expected) << x << ", " << y << ", " << w << ", " << h;
    }
  }
}

TEST(PlaneBitmap, CopyBackToFrontOfAnEmptyRectangleDoesNothing) {
  NibbleBitmap bitmap;
  Make(&bitmap, 4, 4, 0x72);
  bitmap.CopyBackToFront(0, 0, 0, 4);
  bitmap.CopyBackToFront(0, 0, 4, 0);
  EXPECT_EQ(First(bitmap, 16), Bytes(16, 0x72));
  bitmap.CopyBackToFront(0, 0, 4, 4);
  EXPECT_EQ(First(bitmap, 16), Bytes(16, 0x77));
}

}  // namespace
}  // namespace sorvel
