#include "resources/ids.h"
#include "tools/tool_fixture.h"

namespace sorvel {
namespace {

class ToolStateTest : public testtools::ToolTest {};

TEST_F(ToolStateTest, SetBrushSettingsStoresAllFiveInTheOrderOfTheSettings) {
  SetBrushSettings(9, 2, 3, 6, 0, 0);
  EXPECT_EQ(currentPen, (PenSpec{9, 6, 2, 3}));
  EXPECT_EQ(muraRemoval, 0);
  EXPECT_EQ(penSign, 1);
}

TEST_F(ToolStateTest, ARoundPenMakesTheRoundTripUnchanged) {
  currentPen = {12, 7, 1, 2};
  muraRemoval = 0;
  int32_t values[6] = {};
  GetBrushSettings(&values[0], &values[1], &values[2], &values[3], &values[4], &values[5]);
  ResetDrawingSettings();
  SetBrushSettings(values[0], values[1], values[2], values[3], values[4], values[5]);
  EXPECT_EQ(currentPen, (PenSpec{12, 7, 1, 2}));
  EXPECT_EQ(muraRemoval, 0);
}

TEST_F(ToolStateTest, BrushSettingsOutOfRangeAreBroughtIntoRange) {
  SetBrushSettings(kLayerNameEdit, -7, 99, 77, 1, 1);
  EXPECT_EQ(currentPen.shape, 0);
  EXPECT_EQ(currentPen.tone, 15);
  EXPECT_EQ(currentPen.colorA, 0);
  EXPECT_EQ(currentPen.colorB, 15);
  SetBrushSettings(-5, 0, 1, -1, 1, 0);
  EXPECT_EQ(currentPen.shape, 0);
  EXPECT_EQ(currentPen.tone, 0);
}

TEST_F(ToolStateTest, APenPickedFromTransparentGroundSurvivesTheSettings) {
  SetBrushSettings(7, -1, 0, 0, 1, 0);
  EXPECT_EQ(currentPen, (PenSpec{7, 0, -1, 0}));
}

TEST_F(ToolStateTest, AFontNeedsANameAndASize) {
  SetTextToolFont("Sans", 24, 12, 400);
  EXPECT_STREQ(textToolFont.faceName, "Sans");
  EXPECT_FALSE(textToolFont.IsVertical());
  SetTextToolFont("@Sans", 24, 0, 400);
  EXPECT_NE(textToolFont.handle, nullptr);
  EXPECT_TRUE(textToolFont.IsVertical());
  SetTextToolFont("Sans", 24, 12, 0);
  EXPECT_NE(textToolFont.handle, nullptr);
  SetTextToolFont("Sans", 0, 12, 400);
  EXPECT_EQ(textToolFont.handle, nullptr);
  SetTextToolFont("", 24, 12, 400);
  EXPECT_EQ(textToolFont.handle, nullptr);
  EXPECT_EQ(textToolFont.size, 24);
}

TEST_F(ToolStateTest, ExactlySixteenNumbersAreTools) {
  constexpr int32_t tools[] = {kToolFramePosition, kToolLayerPosition, kToolZoom,       kToolFreePen,
                               kToolFill,          kToolLine,          kToolCurve,      kToolRectangle,
                               kToolAreaSelect,    kToolEraser,        kToolGradient,   kToolText,
                               kToolEdging,        kToolMosaic,        kToolFocusLines, kToolParallelLines};
  size_t found = 0;
  for (int32_t id = 40000; id < 40200; ++id) found += host.toolbox->Has(id) ? 1u : 0u;
  EXPECT_EQ(found, std::size(tools));
  for (int32_t id : tools) EXPECT_TRUE(host.toolbox->Has(id)) << id;
}

}  // namespace
}  // namespace sorvel
