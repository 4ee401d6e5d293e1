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

// BitmapExport has the bytes of the file, and ReduceFrom the levels of its pixels.
using ExportedBitmap = DrawingTest;

TEST_F(ExportedBitmap, ADarkFrameHasABlackColourTableAndItsLevels) {
  session.FillArea(8, 8, 8, 8, 2);
  SetBrightness(session, "0");
  const PixelMatrix picture = ExportedPicture(session);
  for (const uint32_t colour : picture.Colors()) EXPECT_EQ(colour, 0u);
  EXPECT_EQ(picture.At(10, 10), 1u);
  EXPECT_EQ(picture.At(30, 30), 3u);
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
};

}  // namespace
}  // namespace rules
