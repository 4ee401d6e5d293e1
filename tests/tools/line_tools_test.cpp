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

TEST_F(LineToolTest, ADragDrawsOneLineOfLineBlack) {
  Press(10, 10);
  Move(20, 10);
  EXPECT_EQ(InkCount(), 0u);
  EXPECT_GT(OverlaySize(), 0u);
  Release(20, 10);
  EXPECT_EQ(InkCount(), 11u);
  EXPECT_EQ(CountOf(8), 11u);
  EXPECT_EQ(cut->undoRect, (Rect{6, 6, 19, 9}));
  cut->Pulse();
  EXPECT_EQ(OverlaySize(), 0u);
  EXPECT_TRUE(ViewIsComposed());
}

TEST_F(LineToolTest, ADragOfZeroLengthStampsOnceAtTheRelease) {
  Press(10, 10);
  EXPECT_EQ(InkCount(), 0u);
  Release(10, 10);
  EXPECT_EQ(InkCount(), 1u);
  EXPECT_EQ(Pixel(10, 10), 8);
}

TEST_F(LineToolTest, ARightClickCancelsADragAndTheUndoCopyStays) {
  cut->undoCell = nullptr;
  Press(10, 10);
  Move(30, 30);
  RightClick(30, 30);
  EXPECT_EQ(InkCount(), 0u);
  EXPECT_EQ(cut->undoCell, Cell());
  EXPECT_FALSE(IsPickerOpen());
  cut->Pulse();
  EXPECT_EQ(OverlaySize(), 0u);
}

TEST_F(LineToolTest, ACtrlClickStartsAChainThatARightClickEnds) {
  Click(10, 10, kControl);
  EXPECT_EQ(InkCount(), 0u);
  Click(20, 10);
  EXPECT_EQ(InkCount(), 11u);
  Click(20, 20);
  EXPECT_EQ(InkCount(), 21u);
  // Skipped: the start moves and nothing is drawn.
  Click(30, 30, kControl);
  EXPECT_EQ(InkCount(), 21u);
  Click(40, 30);
  EXPECT_EQ(InkCount(), 32u);
  RightClick(40, 30);
  EXPECT_FALSE(IsPickerOpen());
  // A drag again.
  Drag(0, 50, 9, 50);
  EXPECT_EQ(InkCount(), 42u);
  EXPECT_EQ(cut->undoRect, (Rect{-4, 46, 18, 9}));
}

TEST_F(LineToolTest, AChainIsOneStepOfUndoAndUndoRectGrows) {
  Click(10, 10, kControl);
  EXPECT_EQ(cut->undoRect, (Rect{}));
  Click(20, 10);
  EXPECT_EQ(cut->undoRect, (Rect{6, 6, 19, 9}));
  Click(20, 20);
  EXPECT_EQ(cut->undoRect, (Rect{6, 6, 19, 19}));
  RightClick(20, 20);
  Command(kCommandUndo);
  EXPECT_EQ(InkCount(), 0u);
}

TEST_F(LineToolTest, APressInAChainIsIgnored) {
  Click(10, 10, kControl);
  Press(40, 40);
  Release(20, 10);
  EXPECT_EQ(InkCount(), 11u);
}

TEST_F(LineToolTest, CtrlAtTheReleaseOfADragDrawsNothing) {
  Press(10, 10);
  Release(20, 10, kControl);
  EXPECT_EQ(InkCount(), 0u);
  Drag(30, 30, 33, 30);
  EXPECT_EQ(InkCount(), 4u);
}

TEST_F(LineToolTest, TheLineStartsOnTheGrid) {
  gridWidth = 8;
  gridHeight = 8;
  Press(11, 11);
  Release(21, 13);
  EXPECT_EQ(Pixel(8, 8), 8);
  EXPECT_EQ(Pixel(24, 16), 8);
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

TEST_F(LineToolTest, CoordinatesAreUnsigned) {
  Press(10, 10);
  Release(-1, 10);
  EXPECT_EQ(Pixel(63, 10), 8);
  EXPECT_EQ(Pixel(9, 10), 0);
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

TEST_F(CurveToolTest, TwoClicksAndARightClickDrawOneSegmentWithDoubledEnds) {
  Click(10, 10);
  Click(40, 30);
  EXPECT_EQ(InkCount(), 0u);
  RightClick(50, 50);
  EXPECT_EQ(Inked(), Segment({{10, 10}, {10, 10}, {40, 30}, {40, 30}}));
  EXPECT_FALSE(IsPickerOpen());
  EXPECT_TRUE(ViewIsComposed());
}

TEST_F(CurveToolTest, OneClickAndARightClickDrawNothing) {
  Click(10, 10);
  RightClick(20, 20);
  EXPECT_EQ(InkCount(), 0u);
  EXPECT_FALSE(IsPickerOpen());
  RightClick(20, 20);
  EXPECT_TRUE(IsPickerOpen());
}

TEST_F(CurveToolTest, ASegmentAppearsOneClickLateAndTheLastOneAtTheRightClick) {
  Click(10, 10);
  Click(30, 10);
  EXPECT_EQ(InkCount(), 0u);
  Click(50, 40);
  EXPECT_EQ(Inked(), Segment({{10, 10}, {10, 10}, {30, 10}, {50, 40}}));
  RightClick(0, 0);
  EXPECT_NE(Pixel(50, 40), 0);
  const std::vector<Point> last = Segment({{10, 10}, {30, 10}, {50, 40}, {50, 40}});
  for (const Point& point : last) EXPECT_NE(Pixel(point.x, point.y), 0);
}

TEST_F(CurveToolTest, AFourthClickDrawsTheMiddleSegmentThroughAllFourPoints) {
  Click(10, 10);
  Click(30, 10);
  Click(50, 40);
  Cell()->Fill(0);
  Click(20, 60);
  EXPECT_EQ(Inked(), Segment({{10, 10}, {30, 10}, {50, 40}, {20, 60}}));
}

TEST_F(CurveToolTest, CtrlLeavesOutTheSegmentThatIsDrawnAtTheNextClick) {
  Click(10, 10);
  Click(30, 10, kControl);
  Click(50, 40);
  EXPECT_EQ(InkCount(), 0u);
  Click(20, 60);
  EXPECT_EQ(Inked(), Segment({{10, 10}, {30, 10}, {50, 40}, {20, 60}}));
}

TEST_F(CurveToolTest, TheFinalSegmentIsDrawnWhateverCtrlSays) {
  Click(10, 10);
  Click(40, 30, kControl);
  RightClick(0, 0, kControl);
  EXPECT_EQ(Inked(), Segment({{10, 10}, {10, 10}, {40, 30}, {40, 30}}));
}

TEST_F(CurveToolTest, APenSizeChangedBetweenClicksAppliesFromTheNextSegment) {
  Click(10, 10);
  Click(30, 10);
  currentPen.shape = 14;
  Click(50, 40);
  EXPECT_EQ(Inked(), Segment({{10, 10}, {10, 10}, {30, 10}, {50, 40}}));
  EXPECT_EQ(currentPen.shape, 14);
  Cell()->Fill(0);
  currentPen.shape = 7;
  Click(20, 60);
  EXPECT_EQ(Inked(), Segment({{10, 10}, {30, 10}, {50, 40}, {20, 60}}, 14));
  EXPECT_EQ(currentPen.shape, 7);
}

TEST_F(CurveToolTest, ACurveIsOneStepOfUndo) {
  Click(10, 10);
  Click(30, 10);
  Click(50, 40);
  RightClick(0, 0);
  EXPECT_GT(cut->undoRect.width, 40);
  Command(kCommandUndo);
  EXPECT_EQ(InkCount(), 0u);
  EXPECT_TRUE(ViewIsComposed());
}

TEST_F(CurveToolTest, MovesWhileIdleShowNoMark) {
  Move(30, 30);
  EXPECT_EQ(cut->view.GetPixel(30, 30), 0);
}

TEST_F(CurveToolTest, TheBandRunsFromTheLastPointAndThePulseEndsTheCurve) {
  Click(10, 10);
  Move(30, 30);
  EXPECT_GT(OverlaySize(), 0u);
  Click(40, 10);
  Click(50, 10);
  const size_t drawn = InkCount();
  Move(60, 60);
  cut->Pulse();
  EXPECT_EQ(OverlaySize(), 0u);
  EXPECT_TRUE(ViewIsComposed());
  // The segment that was pending is lost.
  RightClick(0, 0);
  EXPECT_TRUE(IsPickerOpen());
  EXPECT_EQ(InkCount(), drawn);
}

TEST_F(CurveToolTest, APressDoesNothing) {
  Press(10, 10);
  Move(20, 20);
  EXPECT_EQ(OverlaySize(), 0u);
  EXPECT_EQ(cut->undoCell, nullptr);
}

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

TEST_F(BoxToolTest, ADragDrawsAnOutlineOfLineBlack) {
  Drag(10, 10, 20, 15);
  EXPECT_EQ(InkCount(), 2u * 11 + 2u * 4);
  EXPECT_EQ(CountOf(8), InkCount());
  EXPECT_NE(Pixel(20, 15), 0);
  EXPECT_EQ(Pixel(11, 11), 0);
  EXPECT_TRUE(ViewIsComposed());
  EXPECT_EQ(OverlaySize(), 0u);
}

TEST_F(BoxToolTest, CtrlAtTheReleaseFillsWithPlainBlackWhateverThePressSaid) {
  Press(10, 10);
  Move(20, 15);
  Release(20, 15, kControl);
  EXPECT_EQ(CountOf(1), 50u);
  EXPECT_EQ(InkCount(), 50u);
  Cell()->Fill(0);
  Press(10, 10, kControl);
  Move(20, 15, kControl);
  Release(20, 15);
  EXPECT_EQ(Pixel(15, 12), 0);
}

TEST_F(BoxToolTest, UndoRectOfAFillHoldsTheEdgesAndOfAnOutlineTheGrownRectangle) {
  Drag(10, 12, 20, 15);
  EXPECT_EQ(cut->undoRect, (Rect{5, 7, 20, 13}));
  Press(10, 12);
  Release(20, 15, kControl);
  EXPECT_EQ(cut->undoRect, (Rect{10, 12, 20, 15}));
}

TEST_F(BoxToolTest, AFillBackwardsFillsTheNormalisedBox) {
  Press(20, 15);
  Release(10, 10, kControl);
  EXPECT_EQ(InkCount(), 50u);
  EXPECT_NE(Pixel(11, 11), 0);
  EXPECT_NE(Pixel(20, 15), 0);
  EXPECT_EQ(Pixel(10, 11), 0);
}

TEST_F(BoxToolTest, ADragToTheUpperLeftShowsNoFrameAndStillDraws) {
  Press(30, 30);
  Move(10, 10);
  EXPECT_EQ(OverlaySize(), 0u);
  Release(10, 10);
  EXPECT_GT(InkCount(), 0u);
}

TEST_F(BoxToolTest, TheFrameStaysAtItsLastSizeWhileThePointIsElsewhere) {
  Press(10, 10);
  Move(30, 30);
  const size_t size = OverlaySize();
  Move(5, 40);
  EXPECT_EQ(OverlaySize(), size);
  Release(5, 40);
  EXPECT_EQ(OverlaySize(), 0u);
}

TEST_F(BoxToolTest, ADragWithoutExtentDrawsNothing) {
  Click(10, 10);
  EXPECT_EQ(InkCount(), 0u);
}

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
