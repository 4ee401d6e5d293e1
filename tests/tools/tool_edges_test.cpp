#include "tools/tool_fixture.h"

namespace sorvel {
namespace {

using ToolEdgesTest = testtools::ToolTest;

TEST_F(ToolEdgesTest, ASkippedSegmentLeavesItsEmptyRectangleAsUndoRect) {
  UseTool(kToolCurve);
  Click(20, 20);
  Click(20, 20);
  RightClick(20, 20);
  // One stamp, reported by both its ends.
  ASSERT_EQ(cut->undoRect, (Rect{15, 15, 10, 10}));
  Click(40, 40);
  EXPECT_EQ(cut->undoRect, (Rect{0, 0, 0, 0}));
  Click(44, 40, kControl);
  Click(48, 40);
  EXPECT_EQ(cut->undoRect, (Rect{15, 15, 0, 10}));
}

TEST_F(ToolEdgesTest, AReleaseLeftOfTheMosaicsStartLeavesItsFrameOnTheScreen) {
  UseTool(kToolMosaic);
  Press(20, 20);
  Move(30, 30);
  const Screen before = ScreenOf(cut);
  ASSERT_GT(OverlaySize(), 0u);
  Release(8, 24);
  EXPECT_EQ(Differences(ScreenOf(cut), before), 0u);
}

TEST_F(ToolEdgesTest, ATextIsPlacedAtItsFrameAndNotAtTheClick) {
  UseTool(kToolText);
  SetTextToolFont("Sans", 16, 4, 400);
  host.answeredText = "A";
  Click(10, 12);
  // No move brings the frame along.
  Click(30, 30);
  EXPECT_EQ((Point{cut->undoRect.x, cut->undoRect.y}), (Point{10, 12}));
}

}  // namespace
}  // namespace sorvel
