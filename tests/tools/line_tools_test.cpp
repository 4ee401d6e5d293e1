#include "resources/ids.h"
#include "tools/tool_fixture.h"

namespace sorvel {
namespace {

class LineToolTest : public testtools::ToolTest {
 protected:
  void SetUp() override {
    ToolTest::SetUp();
    UseTool(kToolLine);
  }
};

TEST_F(LineToolTest, APressInAChainIsIgnored) {
  Click(10, 10, kControl);
  Press(40, 40);
  Release(20, 10);
  EXPECT_EQ(InkCount(), 11u);
}

TEST_F(LineToolTest, ThePulseEndsADragAndTakesMarkAndBandAway) {
  Press(10, 10);
  Move(30, 20);
  cut->Pulse();
  EXPECT_EQ(OverlaySize(), 0u);
  EXPECT_TRUE(ViewIsComposed());
  Move(40, 20);
  EXPECT_EQ(cut->view.GetPixel(40, 20), 1);
  cut->Pulse();
  EXPECT_TRUE(ViewIsComposed());
}

TEST_F(LineToolTest, AFrameStepEndsAChain) {
  AddFrameLikeCurrent();
  cut->RepaintAll();
  Click(10, 10, kControl);
  Move(50, 50);
  StepFrameBack();
  EXPECT_EQ(OverlaySize(), 0u);
  Drag(0, 5, 9, 5);
  EXPECT_EQ(InkCount(), 10u);
}

TEST_F(LineToolTest, IdleMovesShowTheMarkAndARightClickOpensThePicker) {
  Move(30, 30);
  EXPECT_EQ(cut->view.GetPixel(30, 30), 1);
  RightClick(30, 30);
  EXPECT_TRUE(IsPickerOpen());
}

TEST_F(LineToolTest, ABandLeavesTheScreenWhenItsCellIsBlanked) {
  platform::headless::SetClientSize(100, 100);
  cut->RepaintAll();
  platform::headless::PaintInvalid(cut->window);
  Press(5, 5);
  Move(95, 90);
  EXPECT_GT(OverlaySize(), 0u);
  Command(kCommandBlankCell);
  EXPECT_EQ(OverlaySize(), 0u);
  Release(95, 90);
  Command(kCommandBlankCell);
  cut->Pulse();
  EXPECT_EQ(OverlaySize(), 0u);
  EXPECT_EQ(InkCount(), 0u);
}

TEST_F(LineToolTest, AnotherWindowShowsNoStaleBand) {
  CutWindow* first = cut;
  CutWindow* second = OpenCut(64, 64);
  Activate(first);
  Press(5, 5);
  Move(50, 40);
  Activate(second);
  EXPECT_EQ(OverlaySize(first), 0u);
  Move(20, 20);
  RightRelease(20, 20);
  second->Pulse();
  EXPECT_EQ(OverlaySize(second), 0u);
  CloseActive();
  EXPECT_EQ(OverlaySize(first), 0u);
}

TEST_F(LineToolTest, AWindowThatClosesInADragLeavesNothingToTheNext) {
  CutWindow* second = OpenCut(64, 64);
  Press(5, 5);
  Move(50, 40);
  host.toolbox->Forget(second);
  CloseActive();
  Move(20, 20);
  Release(30, 30, kControl);
  cut->Pulse();
  EXPECT_EQ(InkCount(), 0u);
  EXPECT_EQ(OverlaySize(), 0u);
}

class CurveToolTest : public testtools::ToolTest {
 protected:
  void SetUp() override {
    ToolTest::SetUp();
    UseTool(kToolCurve);
  }

  // The same segment by hand.
  std::vector<Point> Segment(const Point (&points)[4], int32_t shape = 7) {
    PackedImage image;
    image.Resize(64, 64, 0);
    PenSpec pen;
    pen.shape = shape;
    image.DrawCurve(points, &pen, 0, nullptr);
    std::vector<Point> found;
    for (int32_t y = 0; y < 64; ++y) {
      for (int32_t x = 0; x < 64; ++x) {
        if (image.GetPixel(x, y) != 0) found.push_back({x, y});
      }
    }
    return found;
  }
};

TEST_F(CurveToolTest, ASkippedSegmentLeavesItsEmptyRectangleAsUndoRect) {
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
  // Place and height are still those of the segment that was drawn last.
  EXPECT_EQ(cut->undoRect, (Rect{15, 15, 0, 10}));
}

class BoxToolTest : public testtools::ToolTest {
 protected:
  void SetUp() override {
    ToolTest::SetUp();
    UseTool(kToolRectangle);
  }
};

TEST_F(BoxToolTest, APulseDoesNotEndTheDrag) {
  Press(10, 10);
  Move(30, 30);
  cut->RepaintAll();
  EXPECT_EQ(OverlaySize(), 0u);
  Move(32, 32);
  EXPECT_GT(OverlaySize(), 0u);
  Release(32, 32);
  EXPECT_EQ(OverlaySize(), 0u);
  EXPECT_GT(InkCount(), 0u);
}

TEST_F(BoxToolTest, AToolChangeLeavesNoFrameOnTheScreen) {
  Press(10, 10);
  Move(30, 30);
  UseTool(kToolFill);
  EXPECT_EQ(OverlaySize(), 0u);
}

TEST_F(BoxToolTest, AMoveOutsideADragShowsNoFrame) {
  Move(20, 20);
  EXPECT_EQ(OverlaySize(), 0u);
  Drag(10, 10, 20, 20);
  Move(30, 30);
  EXPECT_EQ(OverlaySize(), 0u);
}

TEST_F(BoxToolTest, ThePickerOpensOnlyWhenNoDragIsOn) {
  Press(10, 10);
  RightRelease(20, 20);
  EXPECT_FALSE(IsPickerOpen());
  Release(20, 20);
  RightRelease(20, 20);
  EXPECT_TRUE(IsPickerOpen());
}

}  // namespace
}  // namespace sorvel
