#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "document/cut.h"
#include "document/frame.h"
#include "document/layer.h"
#include "imaging/nibble_bitmap.h"
#include "support/test_images.h"

namespace sorvel {
namespace {

using namespace testimages;

constexpr size_t kColorsAt = 54;
constexpr size_t kPixelsAt = 118;

// A cut with one layer of the canvas's size in one frame.
struct Scene {
  Scene(int32_t width, int32_t height, int32_t antialias) : cut(width, height, 24, "", antialias) {
    layer = cut.AddLayer("L", width, height, nullptr);
    frame = cut.AddFrame();
    frame->x = 0;
    frame->y = 0;
    frame->AddRecord(layer, 0, 0, 0);
    cell = layer->CellAt(0);
    composition = MakeImage(false, width, height);
  }

  Bytes Export() {
    OutputBytes output(1 << 20);
    EXPECT_TRUE(cut.ExportFrameBitmap(&output.stream, &bitmap, composition.get()));
    return output.Written();
  }

  Cut cut;
  Layer* layer;
  Frame* frame;
  CellImage* cell;
  NibbleBitmap bitmap;
  OwnedImage composition;
};

uint32_t LongAt(const Bytes& bytes, size_t at) {
  return static_cast<uint32_t>(bytes[at] | bytes[at + 1] << 8 | bytes[at + 2] << 16) |
         static_cast<uint32_t>(bytes[at + 3]) << 24;
}

// Checks that a colour of the table is grey and gives its level.
int32_t GreyAt(const Bytes& bytes, size_t index) {
  size_t at = kColorsAt + index * 4;
  EXPECT_EQ(bytes[at], bytes[at + 1]) << index;
  EXPECT_EQ(bytes[at], bytes[at + 2]) << index;
  EXPECT_EQ(bytes[at + 3], 0) << index;
  return bytes[at];
}

TEST(BitmapExport, WholeFileOfASmallFrame) {
  Scene scene(8, 2, 0);
  Draw(scene.cell, "12389a4.\n1......b\n");
  const Bytes expected = {
      'B',  'M',  0x7E, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x76, 0x00, 0x00, 0x00,  // file head
      0x28, 0x00, 0x00, 0x00, 0x08, 0x00, 0x00, 0x00, 0x02, 0x00, 0x00, 0x00,              // 8 by 2
      0x01, 0x00, 0x04, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,              // planes, depth
      0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x10, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
      0x00, 0x00, 0x00, 0x55, 0x55, 0x55, 0x00, 0xAA, 0xAA, 0xAA, 0x00, 0xFF, 0xFF, 0xFF, 0x00, 0x55, 0x55,
      0x55, 0x00, 0x6B, 0x6B, 0x6B, 0x00, 0x80, 0x80, 0x80, 0x00, 0x95, 0x95, 0x95, 0x00, 0xAA, 0xAA, 0xAA,
      0x00, 0xC0, 0xC0, 0xC0, 0x00, 0xD5, 0xD5, 0xD5, 0x00, 0xEA, 0xEA, 0xEA, 0x00, 0xFF, 0xFF, 0xFF, 0x00,
      0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x03, 0x33, 0x33, 0x33,  // bottom row
      0x01, 0x20, 0x12, 0x33};                                                                         // top row
  EXPECT_EQ(scene.Export(), expected);
}

TEST(BitmapExport, FullSizeHasFourLevels) {
  Scene scene(8, 4, 0);
  Bytes bytes = scene.Export();
  const int32_t ramp[] = {0, 85, 170, 255};
  for (size_t i = 0; i < 4; ++i) EXPECT_EQ(GreyAt(bytes, i), ramp[i]);
}

TEST(BitmapExport, SmallerSizesHaveThirteenLevels) {
  const int32_t ramp[] = {0, 22, 44, 66, 87, 108, 129, 150, 171, 192, 213, 234, 255};
  for (int32_t antialias : {1, 2}) {
    Scene scene(32, 16, antialias);
    Bytes bytes = scene.Export();
    for (size_t i = 0; i < 13; ++i) EXPECT_EQ(GreyAt(bytes, i), ramp[i]);
    for (size_t i = kPixelsAt; i < bytes.size(); ++i) EXPECT_EQ(bytes[i], 0xCC);
  }
}

TEST(BitmapExport, EntriesAboveTheRampKeepWhatTheyHeld) {
  Scene scene(8, 4, 0);
  ASSERT_EQ(scene.bitmap.Create(8, 4), 1);
  scene.bitmap.SetLevels(16);
  Bytes bytes = scene.Export();
  EXPECT_EQ(GreyAt(bytes, 3), 255);
  for (size_t i = 4; i < 16; ++i) EXPECT_EQ(GreyAt(bytes, i), static_cast<int32_t>(17 * i));
}

TEST(BitmapExport, BrightnessIsInTheColoursAndNotInThePixels) {
  Scene scene(8, 2, 0);
  Draw(scene.cell, "12344321\n88888888\n");
  Bytes neutral = scene.Export();
  scene.frame->brightness = 0;
  Bytes dark = scene.Export();
  for (size_t i = 0; i < 16; ++i) EXPECT_EQ(GreyAt(dark, i), 0);
  EXPECT_EQ(Bytes(dark.begin() + kPixelsAt, dark.end()), Bytes(neutral.begin() + kPixelsAt, neutral.end()));
  scene.frame->brightness = 100;
  Bytes bright = scene.Export();
  for (size_t i = 0; i < 16; ++i) EXPECT_EQ(GreyAt(bright, i), 255);
  scene.frame->brightness = 25;
  EXPECT_EQ(GreyAt(scene.Export(), 1), 42);
}

TEST(BitmapExport, BrightnessOfAKeyFrameIsDecoded) {
  Scene scene(8, 2, 0);
  Bytes neutral = scene.Export();
  scene.frame->brightness = -51;
  EXPECT_EQ(scene.Export(), neutral);
  scene.frame->brightness = -1;
  EXPECT_EQ(GreyAt(scene.Export(), 3), 0);
}

TEST(BitmapExport, CurrentCellOnlyShowsTheCurrentCellAlone) {
  Scene scene(8, 1, 0);
  Draw(scene.cell, "11......\n");
  Layer* upper = scene.cut.AddLayer("U", 8, 1, nullptr);
  Draw(upper->CellAt(0), "......22\n");
  scene.frame->AddRecord(upper, 0, 0, 0);
  Bytes bytes = scene.Export();
  EXPECT_EQ(Bytes(bytes.begin() + kPixelsAt, bytes.end()), (Bytes{0x00, 0x33, 0x33, 0x11}));
  scene.cut.viewFlags = kCurrentCellOnly;
  bytes = scene.Export();
  EXPECT_EQ(Bytes(bytes.begin() + kPixelsAt, bytes.end()), (Bytes{0x33, 0x33, 0x33, 0x11}));
  EXPECT_EQ(scene.cut.viewFlags, static_cast<uint32_t>(kCurrentCellOnly));
}

TEST(BitmapExport, OtherViewFlagsDoNotReachTheFile) {
  Scene scene(8, 1, 0);
  Draw(scene.cell, "11......\n");
  scene.layer->AddCell(0, 8, nullptr);
  Layer* upper = scene.cut.AddLayer("U", 8, 1, nullptr);
  upper->AddCell(0, 8, nullptr);
  Draw(upper->CellAt(0), "......22\n");
  scene.frame->AddRecord(upper, 0, 0, 0);
  Bytes plain = scene.Export();
  scene.cut.viewFlags = kOnionPrevious | kOnionNext | kDimOthers | 1u << kDrawLimitShift;
  EXPECT_EQ(scene.Export(), plain);
  EXPECT_EQ(Picture(*scene.composition), "11....22\n");
}

TEST(BitmapExport, FormerContentOfTheWorkspacesDoesNotMatter) {
  Scene scene(16, 6, 1);
  Random random(71);
  Scatter(scene.cell, random, 14, 2);
  Bytes bytes = scene.Export();
  scene.composition->Fill(8);
  scene.bitmap.FillBits(0x5A);
  scene.bitmap.frontIsHigh = 1;
  EXPECT_EQ(scene.Export(), bytes);
  EXPECT_EQ(scene.bitmap.frontIsHigh, 0);
  EXPECT_EQ(scene.bitmap.GetBack(0, 0), 0);
}

TEST(BitmapExport, HalfSizeOf320HasTheSizeThatItsFieldSays) {
  Scene scene(320, 240, 1);
  Bytes bytes = scene.Export();
  EXPECT_EQ(LongAt(bytes, 18), 160u);
  EXPECT_EQ(LongAt(bytes, 22), 120u);
  EXPECT_EQ(bytes.size(), 118u + 80u * 120u);
  EXPECT_EQ(LongAt(bytes, 2), bytes.size());
}

TEST(BitmapExport, RowsAreNotPaddedThoughTheSizeFieldCountsPaddedRows) {
  Scene scene(100, 10, 0);
  Bytes bytes = scene.Export();
  EXPECT_EQ(bytes.size(), 118u + 50u * 10u);
  EXPECT_EQ(LongAt(bytes, 2), 118u + 52u * 10u);
}

TEST(BitmapExport, FrameRectangleIsReadFromThePositionOfTheFrame) {
  Scene scene(8, 4, 0);
  Draw(scene.cell, "........\n...12...\n...34...\n........\n");
  scene.cut.frameWidth = 2;
  scene.cut.frameHeight = 2;
  scene.frame->x = 3;
  scene.frame->y = 1;
  Bytes bytes = scene.Export();
  EXPECT_EQ(LongAt(bytes, 18), 2u);
  EXPECT_EQ(LongAt(bytes, 22), 2u);
  EXPECT_EQ(Bytes(bytes.begin() + kPixelsAt, bytes.end()), (Bytes{0x23, 0x01}));
}

TEST(BitmapExport, OddWidthTakesItsLastNibbleFromTheColumnBehind) {
  Scene scene(8, 1, 0);
  Draw(scene.cell, "43212344\n");
  scene.cut.frameWidth = 3;
  scene.frame->x = 1;
  Bytes bytes = scene.Export();
  EXPECT_EQ(LongAt(bytes, 18), 3u);
  EXPECT_EQ(LongAt(bytes, 2), 118u + 4u);
  EXPECT_EQ(Bytes(bytes.begin() + kPixelsAt, bytes.end()), (Bytes{0x21, 0x01}));
}

TEST(BitmapExport, PositionsAndSizesAreDividedByTheScale) {
  Scene scene(32, 16, 2);
  scene.cut.frameWidth = 11;
  scene.cut.frameHeight = 7;
  scene.frame->x = 7;
  scene.frame->y = 9;
  for (int32_t y = 8; y < 12; ++y) {
    for (int32_t x = 4; x < 8; ++x) scene.cell->SetPixel(x, y, 8);
  }
  Bytes bytes = scene.Export();
  EXPECT_EQ(LongAt(bytes, 18), 2u);
  EXPECT_EQ(LongAt(bytes, 22), 1u);
  EXPECT_EQ(Bytes(bytes.begin() + kPixelsAt, bytes.end()), (Bytes{0x0C}));
}

TEST(BitmapExport, OtherAntialiasValuesCountAsFullSize) {
  Scene scene(8, 2, 0);
  Bytes full = scene.Export();
  scene.cut.stateFlags |= 3u << kAntialiasShift;
  EXPECT_EQ(scene.Export(), full);
}

TEST(BitmapExport, TheCurrentFrameIsExported) {
  Scene scene(4, 1, 0);
  Draw(scene.cell, "1234\n");
  Frame* second = scene.cut.AddFrame();
  second->x = 0;
  second->y = 0;
  Bytes bytes = scene.Export();
  EXPECT_EQ(Bytes(bytes.begin() + kPixelsAt, bytes.end()), (Bytes{0x33, 0x33}));
  scene.cut.currentFrame = 0;
  bytes = scene.Export();
  EXPECT_EQ(Bytes(bytes.begin() + kPixelsAt, bytes.end()), (Bytes{0x01, 0x23}));
}

TEST(BitmapExport, CutWithoutAFrameGivesFalseAndWritesNothing) {
  Cut cut(8, 8, 24, "", 0);
  NibbleBitmap bitmap;
  OwnedImage composition = MakeImage(false, 8, 8);
  OutputBytes output;
  EXPECT_FALSE(cut.ExportFrameBitmap(&output.stream, &bitmap, composition.get()));
  EXPECT_EQ(output.stream.size, 0);
}

TEST(BitmapExport, FrameRectangleThatLeavesThePictureIsSurvived) {
  const int32_t places[] = {-40000, -5, 5, 30000};
  for (int32_t antialias = 0; antialias < 3; ++antialias) {
    for (int32_t x : places) {
      for (int32_t y : places) {
        Scene scene(12, 9, antialias);
        scene.cut.frameWidth = 30;
        scene.cut.frameHeight = 20;
        scene.frame->x = x;
        scene.frame->y = y;
        Bytes bytes = scene.Export();
        uint32_t scale = 1u << antialias;
        EXPECT_EQ(bytes.size(), kPixelsAt + (30 / scale + 1) / 2 * (20 / scale));
      }
    }
  }
}

TEST(BitmapExport, AgreesWithThePixelRules) {
  Random random(72);
  for (int32_t round = 0; round < 200; ++round) {
    int32_t antialias = random.Between(0, 2);
    int32_t scale = 1 << antialias;
    Scene scene(random.Between(8, 60), random.Between(8, 40), antialias);
    Scatter(scene.cell, random, 14, random.Between(1, 4));
    // An even frame rectangle inside the picture.
    int32_t w = random.Between(1, scene.cut.width / scale / 2) * 2;
    int32_t h = random.Between(1, scene.cut.height / scale);
    int32_t x = random.Between(0, scene.cut.width / scale - w);
    int32_t y = random.Between(0, scene.cut.height / scale - h);
    scene.cut.frameWidth = w * scale + random.Between(0, scale - 1);
    scene.cut.frameHeight = h * scale + random.Between(0, scale - 1);
    scene.frame->x = x * scale + random.Between(0, scale - 1);
    scene.frame->y = y * scale + random.Between(0, scale - 1);
    Bytes bytes = scene.Export();
    ASSERT_EQ(Picture(*scene.composition), Picture(*scene.cell));
    Bytes pixels;
    for (int32_t row = h - 1; row >= 0; --row) {
      for (int32_t column = 0; column < w; column += 2) {
        int32_t left = PlainGrey(*scene.cell, x + column, y + row, scale);
        int32_t right = PlainGrey(*scene.cell, x + column + 1, y + row, scale);
        pixels.push_back(static_cast<uint8_t>(left * 16 + right));
      }
    }
    ASSERT_EQ(Bytes(bytes.begin() + kPixelsAt, bytes.end()), pixels) << round;
  }
}

}  // namespace
}  // namespace sorvel
