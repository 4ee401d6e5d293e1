#include <gtest/gtest.h>

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
  EXPECT_EQ(scene.Export(), Hex("42 4D 7E 00 00 00 00 00 00 00 76 00 00 00"
                                "28 00 00 00 08 00 00 00 02 00 00 00 01 00 04 00 00 00 00 00 00 00 00 00"
                                "00 00 00 00 00 00 00 00 10 00 00 00 00 00 00 00"
                                "00 00 00 00 55 55 55 00 AA AA AA 00 FF FF FF 00"
                                "55 55 55 00 6B 6B 6B 00 80 80 80 00 95 95 95 00 AA AA AA 00 C0 C0 C0 00"
                                "D5 D5 D5 00 EA EA EA 00 FF FF FF 00 00 00 00 00 00 00 00 00 00 00 00 00"
                                "03 33 33 33  01 20 12 33"));
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
  EXPECT_EQ(U32At(bytes, 18), 160u);
  EXPECT_EQ(U32At(bytes, 22), 120u);
  EXPECT_EQ(bytes.size(), 118u + 80u * 120u);
  EXPECT_EQ(U32At(bytes, 2), bytes.size());
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
