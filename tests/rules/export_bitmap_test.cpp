#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"
#include "rules/little_bytes.h"
#include "rules/rule_table.h"

namespace rules {
namespace {

std::string Exported(DrawingSession& session) {
  session.File("out.bmp").Command(kCommandExportBitmap);
  session.Run();
  return session.Bytes("out.bmp");
}

// For widths whose rows need no padding.
PixelMatrix ExportedPicture(DrawingSession& session) {
  Exported(session);
  return PixelMatrix::FromBitmap(session.Path("out.bmp"));
}

void SetBrightness(DrawingSession& session, const std::string& value) {
  session.Panel(kBrightnessEdit, value);
  session.Repaint();
}

using ExportedBitmap = DrawingTest;

TEST_F(ExportedBitmap, HasItsHeader) {
  const std::string bytes = Exported(session);
  ASSERT_EQ(bytes.size(), 118u + 48 * 32);
  EXPECT_EQ(bytes.substr(0, 2), "BM");
  EXPECT_EQ(LittleAt(bytes, 2, 4), 118u + 48 * 32);
  EXPECT_EQ(LittleAt(bytes, 6, 4), 0u);
  EXPECT_EQ(LittleAt(bytes, 10, 4), 118u);
  EXPECT_EQ(LittleAt(bytes, 14, 4), 40u);
  EXPECT_EQ(LittleAt(bytes, 18, 4), 64u);
  EXPECT_EQ(LittleAt(bytes, 22, 4), 48u);
  EXPECT_EQ(LittleAt(bytes, 26, 2), 1u);
  EXPECT_EQ(LittleAt(bytes, 28, 2), 4u);
  for (size_t offset = 30; offset < 46; offset += 4) EXPECT_EQ(LittleAt(bytes, offset, 4), 0u) << offset;
  EXPECT_EQ(LittleAt(bytes, 46, 4), 16u);
  EXPECT_EQ(LittleAt(bytes, 50, 4), 0u);
}

TEST_F(ExportedBitmap, ReducesTheRolesToFourLevels) {
  const std::pair<int, uint32_t> levels[] = {{1, 0},  {2, 1},  {3, 2},  {4, 3},  {9, 1},
                                             {10, 2}, {11, 3}, {12, 3}, {13, 3}, {14, 3}};
  int x = 0;
  for (const auto& [index, level] : levels) {
    session.FillArea(x, 8, 4, 4, index);
    x += 5;
  }
  session.DrawInkLine(0, 20, 10, 20).DrawInkLine(0, 30, 10, 30).Command(kToolEraser).LeftClick(5, 30);
  const PixelMatrix picture = ExportedPicture(session);
  x = 0;
  for (const auto& [index, level] : levels) {
    EXPECT_EQ(picture.Count(level, x, 8, 4, 4), 16) << index;
    x += 5;
  }
  EXPECT_EQ(picture.At(5, 20), 0u) << "line black";
  EXPECT_EQ(picture.At(5, 30), 3u) << "underdrawing";
  EXPECT_EQ(picture.At(60, 40), 3u) << "transparent";
}

TEST_F(ExportedBitmap, HasTheGreysOfFourLevels) {
  const PixelMatrix picture = ExportedPicture(session);
  ASSERT_EQ(picture.Colors().size(), 16u);
  constexpr uint32_t greys[] = {0, 85, 170, 255};
  for (size_t i = 0; i < 4; ++i) EXPECT_EQ(picture.Colors()[i], greys[i] * 0x010101u) << i;
}

TEST_F(ExportedBitmap, EntriesAboveTheRampKeepWhatTheyHeld) {
  const PixelMatrix picture = ExportedPicture(session);
  ASSERT_EQ(picture.Colors().size(), 16u);
  constexpr uint32_t greys[] = {85, 107, 128, 149, 170, 192, 213, 234, 255};
  for (size_t i = 0; i < 9; ++i) EXPECT_EQ(picture.Colors()[4 + i], greys[i] * 0x010101u) << i;
}

TEST_F(ExportedBitmap, ADarkFrameHasABlackColourTableAndItsLevels) {
  session.FillArea(8, 8, 8, 8, 2);
  SetBrightness(session, "0");
  const PixelMatrix picture = ExportedPicture(session);
  for (const uint32_t colour : picture.Colors()) EXPECT_EQ(colour, 0u);
  EXPECT_EQ(picture.At(10, 10), 1u);
  EXPECT_EQ(picture.At(30, 30), 3u);
}

TEST_F(ExportedBitmap, AWhiteFrameHasAWhiteRamp) {
  SetBrightness(session, "100");
  const PixelMatrix picture = ExportedPicture(session);
  for (size_t i = 0; i < 4; ++i) EXPECT_EQ(picture.Colors().at(i), 0xFFFFFFu) << i;
}

TEST_F(ExportedBitmap, BrightnessLowersAndLiftsTheRamp) {
  DrawingSession dark;
  SetBrightness(dark, "25");
  const PixelMatrix low = ExportedPicture(dark);
  constexpr uint32_t lowered[] = {0, 42, 85, 127};
  for (size_t i = 0; i < 4; ++i) EXPECT_EQ(low.Colors().at(i), lowered[i] * 0x010101u) << i;
  DrawingSession light;
  SetBrightness(light, "75");
  const PixelMatrix high = ExportedPicture(light);
  constexpr uint32_t lifted[] = {127, 169, 212, 255};
  for (size_t i = 0; i < 4; ++i) EXPECT_EQ(high.Colors().at(i), lifted[i] * 0x010101u) << i;
}

TEST_F(ExportedBitmap, AKeyFramesBrightnessIsDecoded) {
  session.Panel(kBrightnessEdit, "25").Line("click 10009");
  EXPECT_EQ(session.Frame()["brightness"], -26);
  EXPECT_EQ(ExportedPicture(session).Colors().at(3), 0x7F7F7Fu);
}

TEST_F(ExportedBitmap, TypedBrightnessIsNotCommitted) {
  session.Panel(kBrightnessEdit, "0");
  EXPECT_EQ(ExportedPicture(session).Colors().at(3), 0xFFFFFFu);
}

TEST_F(ExportedBitmap, ShowsTheFramesRectangle) {
  session.FillArea(10, 5, 4, 3, 1).Dialog(kFrameSizeDialog, {{kFrameWidthEdit, "32"}, {kFrameHeightEdit, "24"}});
  session.Command(kCommandFrameSize).Command(kToolFramePosition).LeftDrag(0, 0, 8, 4);
  const PixelMatrix picture = ExportedPicture(session);
  ASSERT_EQ(picture.Width(), 32);
  ASSERT_EQ(picture.Height(), 24);
  EXPECT_EQ(picture.Count(0), 12);
  EXPECT_EQ(picture.Count(0, 2, 1, 4, 3), 12);
}

TEST_F(ExportedBitmap, RowsHaveNoPadding) {
  DrawingSession other({.width = 100, .height = 48});
  other.FillArea(0, 46, 2, 1, 1);
  const std::string bytes = Exported(other);
  ASSERT_EQ(bytes.size(), 118u + 48 * 50);
  EXPECT_EQ(LittleAt(bytes, 2, 4), 118u + 48 * 52);
  EXPECT_EQ(LittleAt(bytes, 118 + 50, 1), 0x00u);
  EXPECT_EQ(LittleAt(bytes, 118 + 51, 1), 0x33u);
}

TEST_F(ExportedBitmap, AnOddWidthEndsInTheColumnBehindTheFrame) {
  session.FillArea(31, 0, 1, 10, 1).Dialog(kFrameSizeDialog, {{kFrameWidthEdit, "31"}, {kFrameHeightEdit, "24"}});
  session.Command(kCommandFrameSize);
  const std::string bytes = Exported(session);
  ASSERT_EQ(bytes.size(), 118u + 24 * 16);
  EXPECT_EQ(LittleAt(bytes, 18, 4), 31u);
  EXPECT_EQ(LittleAt(bytes, 118 + 15, 1), 0x33u);
  EXPECT_EQ(LittleAt(bytes, 118 + 23 * 16 + 15, 1), 0x30u);
}

TEST_F(ExportedBitmap, AtHalfSizeFourPixelsAddUp) {
  DrawingSession other({.antialias = 1});
  other.FillArea(10, 10, 1, 1, 1).FillArea(12, 10, 2, 1, 2).FillArea(14, 10, 2, 2, 1);
  const PixelMatrix picture = ExportedPicture(other);
  ASSERT_EQ(picture.Width(), 32);
  ASSERT_EQ(picture.Height(), 24);
  EXPECT_EQ(picture.At(5, 5), 9u);
  EXPECT_EQ(picture.At(6, 5), 8u);
  EXPECT_EQ(picture.At(7, 5), 0u);
  EXPECT_EQ(picture.At(8, 5), 12u);
  constexpr uint32_t greys[] = {0, 22, 44, 66, 87, 108, 129, 150, 171, 192, 213, 234, 255};
  for (size_t i = 0; i < 13; ++i) EXPECT_EQ(picture.Colors().at(i), greys[i] * 0x010101u) << i;
}

TEST_F(ExportedBitmap, AtHalfSizeTheFramesPlaceIsHalved) {
  DrawingSession other({.antialias = 1});
  other.FillArea(10, 6, 4, 4, 1).Dialog(kFrameSizeDialog, {{kFrameWidthEdit, "32"}, {kFrameHeightEdit, "32"}});
  other.Command(kCommandFrameSize).Command(kToolFramePosition).LeftDrag(0, 0, 8, 4);
  const PixelMatrix picture = ExportedPicture(other);
  ASSERT_EQ(picture.Width(), 16);
  ASSERT_EQ(picture.Height(), 16);
  EXPECT_EQ(picture.Count(0), 4);
  EXPECT_EQ(picture.Count(0, 1, 1, 2, 2), 4);
}

// Black pixels of a 4 by 4 block, and the level of it at an even and an odd column of an even and an odd row.
struct QuarterLevels {
  int black;
  uint32_t levels[4];
};

class QuarterSize : public testing::TestWithParam<QuarterLevels> {};

TEST_P(QuarterSize, DithersTheRemainder) {
  DrawingSession session({.antialias = 2});
  for (int block = 0; block < 4; ++block) {
    session.FillArea(16 + block % 2 * 4, 16 + block / 2 * 4, GetParam().black, 1, 1);
  }
  const PixelMatrix picture = ExportedPicture(session);
  ASSERT_EQ(picture.Width(), 16);
  for (int block = 0; block < 4; ++block) {
    EXPECT_EQ(picture.At(4 + block % 2, 4 + block / 2), GetParam().levels[block]) << block;
  }
}

INSTANTIATE_TEST_SUITE_P(All, QuarterSize,
                         testing::Values(QuarterLevels{1, {12, 11, 11, 11}}, QuarterLevels{2, {11, 10, 10, 11}},
                                         QuarterLevels{3, {10, 10, 9, 10}}, QuarterLevels{4, {9, 9, 9, 9}}));

TEST_F(ExportedBitmap, ShowsAllLayersAndNoDisplaySwitch) {
  session.FillArea(8, 8, 8, 8, 2).AddLayer("B", 64, 48).FillArea(24, 8, 8, 8, 1).Command(kCommandDimOthers);
  const PixelMatrix picture = ExportedPicture(session);
  EXPECT_EQ(picture.Count(1, 8, 8, 8, 8), 64);
  EXPECT_EQ(picture.Count(0, 24, 8, 8, 8), 64);
}

TEST_F(ExportedBitmap, WithTheCurrentCellOnlyItShowsThatCell) {
  session.FillArea(8, 8, 8, 8, 2).AddLayer("B", 64, 48).FillArea(24, 8, 8, 8, 1).Command(kCommandCurrentCellOnly);
  const PixelMatrix picture = ExportedPicture(session);
  EXPECT_EQ(picture.Count(1), 0);
  EXPECT_EQ(picture.Count(0, 24, 8, 8, 8), 64);
}

const Rules<DrawingTest, "ExportedBitmap"> kExportedBitmapRules = {
    {"LeavesTheViewWithoutItsGhosts", Do().FillArea(8, 8, 8, 8, 2).Commands({kCommandAddCell, kCommandShowPrevious}),
     Has("pixels/20", 64), Do().File("out.bmp").Command(kCommandExportBitmap), Ink(), Do().Repaint(),
     Has("pixels/20", 64)},
    {"ANameWithoutAnExtensionGetsOne", Do().File("picture").Command(kCommandExportBitmap),
     Has("exists/picture.bmp", true)},
};

TEST_F(ExportedBitmap, ACancelWritesNothing) {
  session.File("cancel").Command(kCommandExportBitmap).Run();
  EXPECT_TRUE(session.Files().empty());
}

}  // namespace
}  // namespace rules
