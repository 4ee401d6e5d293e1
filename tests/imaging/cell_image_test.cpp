#include "imaging/cell_image.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "imaging/indexed_image.h"
#include "imaging/packed_image.h"
#include "support/test_images.h"

namespace sorvel {
namespace {

using namespace testimages;

constexpr Rect kUntouched{-91, -92, -93, -94};

// Runs a check for both ways to store a pixel.
class EachClass : public ::testing::TestWithParam<bool> {
 protected:
  bool Packed() const { return GetParam(); }
};

INSTANTIATE_TEST_SUITE_P(CellImage, EachClass, ::testing::Values(true, false),
                         [](const ::testing::TestParamInfo<bool>& way) { return way.param ? "Packed" : "Indexed"; });

// Pixel storage.

TEST(PackedImage, EvenPixelsLieInTheHighNibble) {
  OwnedImage image = ImageOf(true, "12..3\n...f.\n");
  const uint8_t expected[] = {0x12, 0x00, 0x30, 0x00, 0x00, 0x0F, 0x00, 0x00};
  EXPECT_EQ(image->pitch, 4);
  EXPECT_EQ(std::memcmp(image->bits, expected, sizeof expected), 0);
  EXPECT_EQ(Picture(*image), "12..3\n...f.\n");
}

TEST(PackedImage, RowsCountTheHalfByteAndRoundUpToFour) {
  const int32_t pitches[] = {0, 4, 4, 4, 4, 4, 4, 4, 4, 8, 8, 8, 8, 8, 8, 8, 8, 12};
  for (int32_t width = 0; width < 18; ++width) {
    PackedImage image;
    EXPECT_TRUE(image.Resize(width, 3, 0));
    EXPECT_EQ(image.pitch, pitches[width]) << width;
    EXPECT_EQ(image.ByteCount(), pitches[width] * 3) << width;
  }
}

TEST(PackedImage, SixteenZeroBytesLieBehindTheLastRow) {
  PackedImage image;
  image.Resize(6, 3, 9);
  image.Fill(13);
  for (int32_t i = 0; i < 16; ++i) EXPECT_EQ(image.bits[image.ByteCount() + i], 0) << i;
}

TEST(PackedImage, PixelsOfABlockAreLikeItsOwn) {
  constexpr int32_t width = 2001;
  constexpr int32_t height = 3000;
  constexpr int32_t pitch = 1004;
  EXPECT_EQ(PixelBlock::Make(3, 1000), nullptr) << "a small block";
  EXPECT_EQ(PixelBlock::Make(1000, INT32_MAX), nullptr) << "a large block";
  PixelBlock* block = PixelBlock::Make(2, pitch * height);
  ASSERT_NE(block, nullptr);
  auto first = std::make_unique<PackedImage>();
  PackedImage second;
  PackedImage third;
  for (PackedImage* image : {first.get(), &second, &third}) {
    ASSERT_TRUE(image->ResizeWithin(block, width, height));
    EXPECT_EQ(image->pitch, pitch);
    EXPECT_EQ(std::count(image->bits, image->bits + pitch * height + platform::kSpareBytes, 0),
              pitch * height + platform::kSpareBytes);
  }
  EXPECT_EQ(second.bits - first->bits, (pitch * height + platform::kSpareBytes + 63) / 64 * 64);
  block->Release();
  first->Fill(9);
  second.SetPixel(2000, 2999, 7);
  first.reset();
  EXPECT_EQ(second.GetPixel(2000, 2999), 7);
  EXPECT_EQ(second.GetPixel(1999, 2999), 0);
  ASSERT_TRUE(second.Resize(2004, 3001, 5));
  EXPECT_EQ(second.GetPixel(2000, 2999), 7);
  EXPECT_EQ(second.GetPixel(2001, 2999), 5);
  ASSERT_TRUE(third.ResizeWithin(nullptr, 4, 4));
}

TEST(PackedImage, FillWritesBothNibblesAndThePadding) {
  PackedImage image;
  image.Resize(3, 2, 0);
  image.Fill(7);
  for (int32_t i = 0; i < 8; ++i) EXPECT_EQ(image.bits[i], 0x77) << i;
}

TEST(PackedImage, RawReadsEightPixelsInMemoryOrder) {
  PackedImage image;
  image.Resize(16, 2, 0);
  for (int32_t x = 0; x < 16; ++x) image.SetPixel(x, 1, x);
  EXPECT_EQ(image.GetRaw(0, 1), 0x67452301u);
  EXPECT_EQ(image.GetRaw(4, 1), 0xAB896745u);
  EXPECT_EQ(image.GetRaw(6, 1), 0xCDAB8967u);
  EXPECT_EQ(image.GetRaw(12, 0), 0x23010000u);
}

TEST(PackedImage, RawReadBehindTheLastRowGivesZeroes) {
  PackedImage image;
  image.Resize(8, 1, 15);
  EXPECT_EQ(image.GetRaw(4, 0), 0x0000FFFFu);
}

TEST(PackedImage, RawWritesFourPixels) {
  PackedImage image;
  image.Resize(16, 1, 0);
  image.SetRaw(4, 0, 0xDEAD4321u);
  EXPECT_EQ(Picture(image), "....2143........\n");
}

TEST(IndexedImage, PixelsAreBytesAndRowsRoundUpToFour) {
  IndexedImage image;
  image.Resize(5, 2, 0);
  EXPECT_EQ(image.pitch, 8);
  EXPECT_EQ(image.ByteCount(), 16);
  image.SetPixel(4, 0, 24);
  image.SetPixel(0, 1, 3);
  EXPECT_EQ(image.bits[4], 24);
  EXPECT_EQ(image.bits[8], 3);
  EXPECT_EQ(image.GetPixel(4, 0), 24);
  EXPECT_EQ(image.GetPixel(0, 1), 3);
  EXPECT_NE(image.bitmapHandle, nullptr);
}

TEST(IndexedImage, FillWritesThePadding) {
  IndexedImage image;
  image.Resize(3, 2, 0);
  image.Fill(21);
  for (int32_t i = 0; i < 8; ++i) EXPECT_EQ(image.bits[i], 21) << i;
}

TEST(IndexedImage, RawReadsTwoPixelsAndWritesTwo) {
  IndexedImage image;
  image.Resize(8, 1, 0);
  for (int32_t x = 0; x < 8; ++x) image.SetPixel(x, 0, x + 1);
  EXPECT_EQ(image.GetRaw(3, 0), 0x0504u);
  image.SetRaw(1, 0, 0x99881817u);
  EXPECT_EQ(Picture(image), "1no45678\n");
}

TEST(CellImage, ColourCountTellsTheClass) {
  EXPECT_EQ(PackedImage().colors, 16);
  EXPECT_EQ(IndexedImage().colors, 256);
}

TEST_P(EachClass, SetPixelLeavesTheNeighbours) {
  OwnedImage image = MakeImage(Packed(), 7, 3);
  image->Fill(5);
  image->SetPixel(2, 1, 9);
  image->SetPixel(5, 1, 15);
  image->SetPixel(6, 2, 0);
  EXPECT_EQ(Picture(*image), "5555555\n55955f5\n555555.\n");
}

TEST_P(EachClass, FindInkGivesTheFirstInkTowardsTheEnd) {
  OwnedImage image = ImageOf(Packed(), "...3..4...\n..........\n");
  const int32_t cases[][5] = {{0, 0, 10, 1, 3},
                              {3, 0, 10, 1, 3},
                              {4, 0, 10, 1, 6},
                              {9, 0, -1, 0, 6},
                              {5, 0, -1, 0, 3},
                              // Without ink there is the end, which isn't looked at.
                              {0, 0, 3, 1, 3},
                              {4, 0, 6, 1, 6},
                              {2, 0, -1, 0, -1},
                              {5, 0, 3, 0, 3},
                              {0, 1, 10, 1, 10},
                              {9, 1, -1, 0, -1},
                              {4, 0, 4, 1, 4},
                              {4, 0, 4, 0, 4}};
  for (const auto& [x, y, end, forward, found] : cases) {
    EXPECT_EQ(image->FindInk(x, y, end, forward), found) << x << ", " << y << " to " << end;
  }
}

TEST_P(EachClass, FindInkIsNotFooledByThePadding) {
  OwnedImage image = MakeImage(Packed(), 5, 1);
  image->Fill(3);
  for (int32_t x = 0; x < 5; ++x) image->SetPixel(x, 0, 0);
  EXPECT_EQ(image->FindInk(0, 0, 5, 1), 5);
  EXPECT_EQ(image->FindInk(4, 0, -1, 0), -1);
}

TEST_P(EachClass, MakeBlankGivesAnEmptyImageOfTheSameClassAndSize) {
  OwnedImage image = ImageOf(Packed(), "123\n456\n");
  OwnedImage blank(image->MakeBlank());
  EXPECT_EQ(blank->colors, image->colors);
  EXPECT_EQ(Picture(*blank), "...\n...\n");
  EXPECT_EQ(Picture(*image), "123\n456\n");
}

TEST_P(EachClass, PixelReadOutsideIsMinusOne) {
  OwnedImage image = ImageOf(Packed(), "12\n34\n");
  EXPECT_EQ(image->PixelOrOutside(1, 1), 4);
  for (const Point& at : {Point{-1, 0}, Point{0, -1}, Point{2, 0}, Point{0, 2}}) {
    EXPECT_EQ(image->PixelOrOutside(at.x, at.y), -1);
  }
}

// Resizing.

TEST(PackedImage, ResizeKeepsRowsWithPixelsInUse) {
  PackedImage image;
  image.Resize(8, 4, 0);
  image.SetPixel(1, 2, 5);
  image.Resize(12, 6, 0);
  EXPECT_TRUE(image.IsUsedRow(2));
  PackedImage copy;
  copy.Resize(12, 6, 0);
  copy.CopyBits(image);
  EXPECT_EQ(copy.GetPixel(1, 2), 5);
}

TEST(PackedImage, ResizeToNothingAndBackLeavesOnlyTheFill) {
  OwnedImage image = ImageOf(true, "123\n456\n");
  EXPECT_TRUE(image->Resize(0, 0, 0));
  EXPECT_EQ(image->ByteCount(), 0);
  EXPECT_TRUE(image->Resize(2, 2, 3));
  EXPECT_EQ(Picture(*image), "33\n33\n");
}

TEST(PackedImage, ResizeKeepsTheBytesThatHoldPixelsAndFillsTheOthers) {
  Random random(14);
  for (int32_t round = 0; round < 400; ++round) {
    PackedImage image;
    int32_t oldWidth = random.Between(1, 24);
    int32_t oldHeight = random.Between(1, 5);
    image.Resize(oldWidth, oldHeight, 0);
    for (int32_t i = 0; i < image.ByteCount(); ++i) image.bits[i] = random.Byte();
    std::vector<uint8_t> old(image.bits, image.bits + image.ByteCount());
    int32_t oldPitch = image.pitch;
    int32_t newWidth = random.Between(1, 24);
    int32_t newHeight = random.Between(1, 5);
    int32_t fill = random.Between(0, 15);
    ASSERT_TRUE(image.Resize(newWidth, newHeight, fill));
    int32_t kept = (std::min(oldWidth, newWidth) + 1) / 2;
    for (int32_t y = 0; y < newHeight; ++y) {
      for (int32_t i = 0; i < image.pitch; ++i) {
        uint8_t expected = static_cast<uint8_t>(fill * 17);
        if (y < oldHeight && i < kept) {
          expected = old[static_cast<size_t>(y * oldPitch + i)];
          bool spare = oldWidth % 2 != 0 && i == oldWidth / 2;
          if (spare && newWidth > oldWidth) expected = static_cast<uint8_t>((expected & 0xF0) | fill);
          if (spare && newWidth == oldWidth) {
            ASSERT_EQ(image.bits[y * image.pitch + i] >> 4, expected >> 4);
            continue;
          }
        }
        ASSERT_EQ(image.bits[y * image.pitch + i], expected)
            << oldWidth << "x" << oldHeight << " to " << newWidth << "x" << newHeight << " at " << i << ", " << y;
      }
    }
    for (int32_t i = 0; i < 16; ++i) ASSERT_EQ(image.bits[image.ByteCount() + i], 0);
  }
}

TEST(IndexedImage, ResizeLosesThePicture) {
  OwnedImage image = ImageOf(false, "123\n456\n");
  EXPECT_TRUE(image->Resize(5, 3, 7));
  EXPECT_EQ(Picture(*image), "77777\n77777\n77777\n");
  EXPECT_EQ(image->pitch, 8);
  EXPECT_EQ(image->bits[7], 7);
  EXPECT_TRUE(image->Resize(2, 1, 0));
  EXPECT_EQ(Picture(*image), "..\n");
}

// Tones.

TEST(AdjustTone, MovesTheToneOfEachFamilyAndClamps) {
  for (int32_t delta = -2; delta <= 2; ++delta) {
    for (int32_t value = -1; value <= 25; ++value) {
      EXPECT_EQ(AdjustTone(value, delta), inkrules::AdjustTone(value, delta)) << value << " by " << delta;
    }
  }
}

TEST(AdjustTone, ResultIsAlwaysAPlainToneOrZeroForPixelsWithoutOne) {
  const int32_t cases[][3] = {{1, 0, 1}, {4, 2, 4}, {8, -2, 1}, {10, 1, 4}, {16, 1, 2}, {18, -1, 2}};
  for (const auto& [value, delta, tone] : cases) EXPECT_EQ(AdjustTone(value, delta), tone) << value;
  for (int32_t value : {-1, 0, 5, 6, 7, 11, 12, 13, 14, 15, 19, 20, 21, 22, 23, 24, 25}) {
    EXPECT_EQ(AdjustTone(value, 1), 0) << value;
  }
}

// Composite.

// What a copy of the whole source makes of the destination.
std::string Composed(const OwnedImage& source, const OwnedImage& destination, int32_t flags, uint32_t destMask,
                     uint32_t sourceMask) {
  EXPECT_TRUE(destination->Composite({0, 0}, source.get(), {0, 0, source->width, source->height},
                                     {.flags = flags, .destMask = destMask, .sourceMask = sourceMask}));
  return Picture(*destination);
}

// All 16 indices of a cell over one destination value each.
std::string KeyedRow(int32_t destinationValue, int32_t flags) {
  OwnedImage source = ImageOf(true, ".123456789abcdef\n");
  OwnedImage destination = MakeImage(false, 16, 1);
  destination->Fill(destinationValue);
  EXPECT_TRUE(destination->Composite(0, 0, source.get(), 0, 0, 16, 1, flags, 0, 0, nullptr));
  return Picture(*destination);
}

TEST_P(EachClass, PlainCopyWritesEveryPixelAsItIs) {
  EXPECT_EQ(Composed(ImageOf(true, ".1be\nc.84\n"), ImageOf(Packed(), "2222\n2222\n"), 0, 0, 0), ".1be\nc.84\n");
}

TEST_P(EachClass, PaleFlagAloneIsStillAPlainCopy) {
  EXPECT_EQ(Composed(ImageOf(true, ".1be\n"), ImageOf(Packed(), "2222\n"), kPale, 0, 0), ".1be\n");
}

TEST_P(EachClass, PlainCopyWithMasksProtectsByDestinationAndBySource) {
  EXPECT_EQ(
      Composed(ImageOf(Packed(), ".1234\n.1234\n"), ImageOf(Packed(), "55555\n66666\n"), 0, 1u << 6, 1u << 3 | 1u),
      "51254\n66666\n");
}

TEST_P(EachClass, PlainCopyWithMaskStillWritesIndexZero) {
  EXPECT_EQ(Composed(ImageOf(Packed(), "...\n"), ImageOf(Packed(), "123\n"), 0, 1u << 2, 0), ".2.\n");
}

TEST_P(EachClass, KeyedCopyLeavesTheDestinationUnderIndexZero) {
  EXPECT_EQ(Composed(ImageOf(true, ".1.5.\n.....\n4...4\n"), ImageOf(Packed(), "99999\n99999\n99999\n"), kKeyed, 0, 0),
            "91959\n99999\n49994\n");
}

TEST(Composite, ToneMarksShiftWhatLiesBelow) {
  const struct {
    const char* rule;
    int32_t below;
    int32_t flags;
    const char* row;
  } cases[] = {
      {"ToneMarksOverTransparentShowTheirMarkerColours", 0, kKeyed, ".123456789abcdef\n"},
      {"ToneMarksOverSketchShowTheirMarkerColours", 6, kKeyed, "6123456789abcdef\n"},
      {"ToneMarksShiftThePlainTones", 1, kKeyed, "1123456789a3211f\n"},
      {"ToneMarksShiftThePlainTones", 2, kKeyed, "2123456789a4311f\n"},
      {"ToneMarksShiftThePlainTones", 3, kKeyed, "3123456789a4421f\n"},
      {"ToneMarksShiftThePlainTones", 4, kKeyed, "4123456789a4432f\n"},
      {"ToneMarksTurnLinesIntoPlainTones", 8, kKeyed, "8123456789a3211f\n"},
      {"ToneMarksTurnLinesIntoPlainTones", 9, kKeyed, "9123456789a4311f\n"},
      {"ToneMarksTurnLinesIntoPlainTones", 10, kKeyed, "a123456789a4421f\n"},
      {"ToneMarksTurnPaleFormsIntoPlainTones", 16, kKeyed, "g123456789a3211f\n"},
      {"ToneMarksTurnPaleFormsIntoPlainTones", 17, kKeyed, "h123456789a4311f\n"},
      {"ToneMarksTurnPaleFormsIntoPlainTones", 18, kKeyed, "i123456789a4421f\n"},
      {"PaleDrawsOnlyLinesAndDarks", 0, kKeyed | kPale, ".ghi....ghi.....\n"},
      {"PaleDrawsOnlyLinesAndDarks", 3, kKeyed | kPale, "3ghi3333ghi33333\n"},
  };
  for (const auto& one : cases) EXPECT_EQ(KeyedRow(one.below, one.flags), one.row) << one.rule;
}

TEST(Composite, KeyedCopyOfIndexedSourceKeepsTheHigherIndices) {
  OwnedImage source = ImageOf(false, "fghijklmno.\n");
  OwnedImage destination = MakeImage(false, 11, 1);
  EXPECT_TRUE(destination->Composite(0, 0, source.get(), 0, 0, 11, 1, kKeyed, 0, 0, nullptr));
  EXPECT_EQ(Picture(*destination), "fghijklmno.\n");
}

TEST_P(EachClass, KeyedCopyWithMasksProtectsByDestinationAndBySource) {
  EXPECT_EQ(
      Composed(ImageOf(Packed(), ".12b4\n.12b4\n"), ImageOf(Packed(), "11111\n66666\n"), kKeyed, 1u << 6, 1u << 2),
      "11134\n66666\n");
}

TEST(Composite, MaskBitIsTheIndexModulo32) {
  OwnedImage source = MakeImage(false, 2, 1);
  source->SetPixel(0, 0, 33);
  source->SetPixel(1, 0, 34);
  OwnedImage destination = MakeImage(false, 2, 1);
  EXPECT_TRUE(destination->Composite(0, 0, source.get(), 0, 0, 2, 1, 0, 0, 1u << 1, nullptr));
  EXPECT_EQ(destination->GetPixel(0, 0), 0);
  EXPECT_EQ(destination->GetPixel(1, 0), 34);
}

// The box of the ink that a keyed copy of the whole source reports.
Rect InkBox(const OwnedImage& source, const OwnedImage& destination, Point to) {
  Rect box = kUntouched;
  EXPECT_TRUE(destination->Composite(to, source.get(), {0, 0, source->width, source->height},
                                     {.flags = kKeyed, .inkBox = &box}));
  return box;
}

TEST_P(EachClass, OutRectIsTheBoxOfTheInkInTheSource) {
  EXPECT_EQ(InkBox(ImageOf(Packed(), "........\n...1....\n........\n.....2..\n..3.....\n........\n"),
                   MakeImage(Packed(), 20, 20), {7, 9}),
            (Rect{2, 1, 4, 4}));
}

TEST_P(EachClass, OutRectReachesTheEndOfABlockThatEndsInInk) {
  EXPECT_EQ(InkBox(ImageOf(Packed(), ".....\n..1..\n.....\n1...1\n"), MakeImage(Packed(), 5, 4), {0, 0}),
            (Rect{0, 1, 5, 3}));
}

TEST_P(EachClass, OutRectCountsInkThatMasksAndPaleHoldBack) {
  OwnedImage source = ImageOf(Packed(), "4...\n...5\n");
  OwnedImage destination = MakeImage(Packed(), 4, 2);
  Rect box = kUntouched;
  EXPECT_TRUE(destination->Composite(0, 0, source.get(), 0, 0, 4, 2, kKeyed | kPale, ~0u, ~0u, &box));
  EXPECT_EQ(box, (Rect{0, 0, 4, 2}));
  EXPECT_EQ(Picture(*destination), "....\n....\n");
}

TEST_P(EachClass, OutRectCountsOnlyTheClippedBlock) {
  OwnedImage source = ImageOf(Packed(), "1....1\n.1..1.\n1....1\n");
  OwnedImage destination = MakeImage(Packed(), 3, 2);
  Rect box = kUntouched;
  EXPECT_TRUE(destination->Composite(-1, -1, source.get(), 0, 0, 6, 3, kKeyed, 0, 0, &box));
  EXPECT_EQ(box, (Rect{1, 1, 1, 1}));
  EXPECT_EQ(Picture(*destination), "1..\n...\n");
}

TEST_P(EachClass, OutRectIsZeroAfterAPlainCopy) {
  OwnedImage source = ImageOf(Packed(), "11\n11\n");
  OwnedImage destination = MakeImage(Packed(), 2, 2);
  for (uint32_t mask : {0u, 1u << 5}) {
    Rect box = kUntouched;
    EXPECT_TRUE(destination->Composite(0, 0, source.get(), 0, 0, 2, 2, 0, mask, mask, &box));
    EXPECT_EQ(box, Rect{});
  }
}

TEST_P(EachClass, KeyedCopyWithoutInkGivesTrueAndAZeroOutRect) {
  EXPECT_EQ(InkBox(ImageOf(Packed(), "...\n...\n"), MakeImage(Packed(), 3, 2), {0, 0}), (Rect{}));
}

TEST_P(EachClass, SourceRectangleOutsideGivesFalseAndLeavesOutRect) {
  OwnedImage source = ImageOf(Packed(), "11\n11\n");
  OwnedImage destination = MakeImage(Packed(), 2, 2);
  const Rect offsets[] = {{2, 0, 2, 2}, {0, 2, 2, 2}, {-2, 0, 2, 2}, {0, -2, 2, 2},
                          {0, 0, 0, 2}, {0, 0, 2, 0}, {0, 0, -1, 2}};
  for (const Rect& offset : offsets) {
    for (int32_t flags : {0, 1, 3}) {
      Rect box = kUntouched;
      EXPECT_FALSE(destination->Composite(0, 0, source.get(), offset.x, offset.y, offset.width, offset.height, flags, 0,
                                          0, &box));
      EXPECT_EQ(box, kUntouched);
    }
  }
  EXPECT_EQ(Picture(*destination), "..\n..\n");
}

TEST_P(EachClass, DestinationOutsideGivesFalse) {
  OwnedImage source = ImageOf(Packed(), "11\n11\n");
  OwnedImage destination = MakeImage(Packed(), 2, 2);
  for (const Point& at : {Point{2, 0}, Point{0, 2}, Point{-2, 0}, Point{0, -2}, Point{100, 100}}) {
    EXPECT_FALSE(destination->Composite(at.x, at.y, source.get(), 0, 0, 2, 2, kKeyed, 0, 0, nullptr));
  }
  EXPECT_EQ(Picture(*destination), "..\n..\n");
}

TEST_P(EachClass, NegativeSourceOffsetMovesTheDestination) {
  OwnedImage source = ImageOf(Packed(), "12\n34\n");
  OwnedImage destination = MakeImage(Packed(), 4, 3);
  EXPECT_TRUE(destination->Composite(0, 0, source.get(), -2, -1, 4, 3, kKeyed, 0, 0, nullptr));
  EXPECT_EQ(Picture(*destination), "....\n..12\n..34\n");
}

TEST_P(EachClass, NegativeDestinationCutsTheSource) {
  OwnedImage source = ImageOf(Packed(), "123\n456\n789\n");
  OwnedImage destination = MakeImage(Packed(), 3, 3);
  EXPECT_TRUE(destination->Composite(-1, -2, source.get(), 0, 0, 3, 3, 0, 0, 0, nullptr));
  EXPECT_EQ(Picture(*destination), "89.\n...\n...\n");
}

TEST_P(EachClass, PlainCopyIntoItselfRunsThroughTheRowsPixelByPixel) {
  Random random(20);
  for (int32_t round = 0; round < 300; ++round) {
    OwnedImage image = MakeImage(Packed(), random.Between(1, 20), random.Between(1, 8));
    Scatter(image.get(), random, 15, 1);
    OwnedImage expected = ImageOf(Packed(), Picture(*image));
    int32_t dx = random.Between(-4, 6);
    int32_t dy = random.Between(-2, 2);
    uint32_t mask = random.OneIn(2) ? 0 : random.Word();
    bool result = image->Composite(dx, dy, image.get(), 0, 0, 20, 8, 0, mask, 0, nullptr);
    ASSERT_EQ(result, PlainComposite(expected.get(), dx, dy, expected.get(), 0, 0, 20, 8, 0, mask, 0, nullptr));
    ASSERT_EQ(Picture(*image), Picture(*expected)) << round;
  }
}

TEST(Composite, LeavesThePaddingOfTheDestination) {
  PackedImage source;
  source.Resize(5, 2, 3);
  PackedImage destination;
  destination.Resize(5, 2, 9);
  EXPECT_TRUE(destination.Composite(0, 0, &source, 0, 0, 5, 2, 0, 0, 0, nullptr));
  EXPECT_EQ(Picture(destination), "33333\n33333\n");
  EXPECT_EQ(destination.bits[2], 0x39);
  EXPECT_EQ(destination.bits[3], 0x99);
}

// Overlay.

std::string OverlaidRow(int32_t variant) {
  OwnedImage source = ImageOf(true, ".123456789abcdef\n");
  OwnedImage destination = MakeImage(false, 16, 1);
  destination->Fill(4);
  EXPECT_TRUE(destination->Overlay(0, 0, source.get(), 0, 0, 16, 1, variant));
  return Picture(*destination);
}

TEST(Overlay, CellBeforeIsGreenAndCellAfterIsRed) {
  EXPECT_EQ(OverlaidRow(0), "4jkl4444jkl44444\n");
  EXPECT_EQ(OverlaidRow(1), "4mno4444mno44444\n");
}

TEST(Overlay, PackedImageRefusesAndStaysAsItIs) {
  OwnedImage source = ImageOf(true, "111\n888\n");
  OwnedImage destination = ImageOf(true, "23.\n.45\n");
  EXPECT_FALSE(destination->Overlay(0, 0, source.get(), 0, 0, 3, 2, 0));
  EXPECT_FALSE(destination->Overlay(0, 0, source.get(), 0, 0, 3, 2, 1));
  EXPECT_EQ(Picture(*destination), "23.\n.45\n");
}

TEST(Overlay, EmptyBlockGivesFalse) {
  OwnedImage source = ImageOf(true, "11\n11\n");
  OwnedImage destination = MakeImage(false, 2, 2);
  EXPECT_FALSE(destination->Overlay(2, 0, source.get(), 0, 0, 2, 2, 0));
  EXPECT_FALSE(destination->Overlay(0, 0, source.get(), 0, -2, 2, 2, 0));
  EXPECT_EQ(Picture(*destination), "..\n..\n");
}

TEST(Overlay, BlockWithoutInkGivesTrue) {
  OwnedImage source = MakeImage(true, 2, 2);
  OwnedImage destination = ImageOf(false, "12\n34\n");
  EXPECT_TRUE(destination->Overlay(0, 0, source.get(), 0, 0, 2, 2, 1));
  EXPECT_EQ(Picture(*destination), "12\n34\n");
}

TEST(ClipBlock, FollowsItsStepsInOrder) {
  Random random(17);
  for (int32_t round = 0; round < 3000; ++round) {
    OwnedImage destination = MakeImage(true, random.Between(1, 20), random.Between(1, 20));
    OwnedImage source = MakeImage(false, random.Between(1, 20), random.Between(1, 20));
    int32_t a[6];
    for (int32_t& value : a) value = random.Between(-12, 25);
    int32_t b[6];
    std::copy(a, a + 6, b);
    bool result = ClipBlock(&a[0], &a[1], &a[2], &a[3], &a[4], &a[5], *destination, *source);
    bool expected = PlainClip(&b[0], &b[1], &b[2], &b[3], &b[4], &b[5], *destination, *source);
    ASSERT_EQ(result, expected);
    if (!result) continue;
    for (int32_t i = 0; i < 6; ++i) ASSERT_EQ(a[i], b[i]) << i;
  }
}

// Undo bytes.

TEST_P(EachClass, SwapBitsUndoesAndRedoes) {
  OwnedImage image = MakeImage(Packed(), 7, 3);
  Random random(18);
  for (int32_t i = 0; i < image->ByteCount(); ++i) image->bits[i] = random.Byte();
  size_t size = static_cast<size_t>(image->ByteCount());
  std::vector<uint8_t> first(image->bits, image->bits + size);
  std::vector<uint8_t> buffer(size);
  for (uint8_t& byte : buffer) byte = random.Byte();
  std::vector<uint8_t> second = buffer;
  image->SwapBits(buffer.data());
  EXPECT_EQ(buffer, first);
  EXPECT_EQ(std::vector<uint8_t>(image->bits, image->bits + size), second);
  image->SwapBits(buffer.data());
  EXPECT_EQ(buffer, second);
  EXPECT_EQ(std::vector<uint8_t>(image->bits, image->bits + size), first);
}

TEST_P(EachClass, SwapBitsWithoutABufferOrWithoutPixelsDoesNothing) {
  OwnedImage image = ImageOf(Packed(), "123\n");
  image->SwapBits(nullptr);
  EXPECT_EQ(Picture(*image), "123\n");
  PackedImage empty;
  uint8_t byte = 9;
  empty.SwapBits(&byte);
  EXPECT_EQ(byte, 9);
}

TEST(CellImage, DestroyingNothingIsAllowed) {
  DestroyImage(nullptr);
  OwnedImage image = MakeImage(true, 3, 3);
  EXPECT_NE(image, nullptr);
}

}  // namespace
}  // namespace sorvel
