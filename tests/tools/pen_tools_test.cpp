#include "resources/ids.h"
#include "tools/tool_fixture.h"

namespace sorvel {
namespace {

using Points = std::vector<Point>;

class FreePenTest : public testtools::ToolTest {};

TEST_F(FreePenTest, MuraRemovalDrawsNoPixelAtACorner) {
  Press(10, 10);
  Move(10, 11);
  Move(11, 11);
  EXPECT_EQ(Inked(), (Points{{10, 10}}));
  Release(11, 11);
  EXPECT_EQ(Inked(), (Points{{10, 10}, {11, 11}}));
}

TEST_F(FreePenTest, MuraRemovalTakesOutCornersInAllFourDirections) {
  struct Path {
    Point first, corner, last;
  };
  constexpr Path paths[] = {
      {{20, 20}, {20, 19}, {21, 19}}, {{20, 20}, {21, 20}, {21, 21}}, {{20, 20}, {19, 20}, {19, 19}},
      {{20, 20}, {20, 21}, {19, 21}}, {{20, 20}, {20, 17}, {23, 17}}, {{20, 20}, {17, 20}, {17, 23}},
  };
  for (const Path& path : paths) {
    Cell()->Fill(0);
    Press(path.first.x, path.first.y);
    Move(path.corner.x, path.corner.y);
    Move(path.last.x, path.last.y);
    Release(path.last.x, path.last.y);
    EXPECT_EQ(Pixel(path.corner.x, path.corner.y), 0) << path.corner.x << ", " << path.corner.y;
    EXPECT_NE(Pixel(path.last.x, path.last.y), 0);
  }
}

TEST_F(FreePenTest, WithoutMuraRemovalTheSamePathDrawsAllPixels) {
  muraRemoval = 0;
  Press(10, 10);
  Move(10, 11);
  Move(11, 11);
  Release(11, 11);
  EXPECT_EQ(Inked(), (Points{{10, 10}, {10, 11}, {11, 11}}));
}

TEST_F(FreePenTest, AClickStampsAtThePressAndOnceMoreAtTheRelease) {
  Press(10, 10);
  EXPECT_EQ(Pixel(10, 10), 1);
  Release(10, 10);
  // The stamp of the release is a line, which turns black into line black.
  EXPECT_EQ(Pixel(10, 10), 8);
  EXPECT_EQ(InkCount(), 1u);
}

TEST_F(FreePenTest, AClickWithoutMuraRemovalStampsOnce) {
  muraRemoval = 0;
  Click(10, 10);
  EXPECT_EQ(Pixel(10, 10), 1);
}

TEST_F(FreePenTest, MovingWithoutAButtonShowsOnlyTheMark) {
  cut->undoRect = {1, 2, 3, 4};
  Move(30, 30);
  EXPECT_EQ(cut->view.GetPixel(30, 30), 1);
  Move(40, 40);
  EXPECT_EQ(cut->view.GetPixel(30, 30), 0);
  EXPECT_EQ(cut->view.GetPixel(40, 40), 1);
  EXPECT_EQ(InkCount(), 0u);
  EXPECT_EQ(cut->undoRect, (Rect{1, 2, 3, 4}));
  cut->Pulse();
  EXPECT_TRUE(ViewIsComposed());
  EXPECT_EQ(OverlaySize(), 0u);
}

TEST_F(FreePenTest, UndoRectGrowsFromTheBlockOfThePenOverAllSegments) {
  Press(10, 10);
  EXPECT_EQ(cut->undoRect, (Rect{6, 6, 8, 8}));
  Move(20, 10);
  EXPECT_EQ(cut->undoRect, (Rect{6, 6, 9, 9}));
  Move(20, 20);
  Release(20, 20);
  EXPECT_EQ(cut->undoRect, (Rect{6, 6, 19, 19}));
  EXPECT_TRUE(ViewIsComposed());
}

TEST_F(FreePenTest, AStrokeIsOneStepOfUndo) {
  Press(10, 10);
  Move(20, 10);
  Move(30, 12);
  Release(30, 12);
  EXPECT_GT(InkCount(), 10u);
  Command(kCommandUndo);
  EXPECT_EQ(InkCount(), 0u);
  EXPECT_TRUE(ViewIsComposed());
  Command(kCommandUndo);
  EXPECT_GT(InkCount(), 10u);
}

TEST_F(FreePenTest, TheStrokeCapturesTheMouseUntilTheRelease) {
  Press(10, 10);
  EXPECT_EQ(platform::CapturingWindow(), cut->window);
  Release(10, 10);
  EXPECT_EQ(platform::CapturingWindow(), nullptr);
}

TEST_F(FreePenTest, CoordinatesOutsideTheWindowAreSigned) {
  Press(0, 10);
  Move(-6, 10);
  Move(-6, 4);
  Move(0, 4);
  Release(0, 4);
  EXPECT_EQ(Inked(), (Points{{0, 4}, {0, 10}}));
}

TEST_F(FreePenTest, ThePulseReleasesTheMouseAndTheStrokeGoesOn) {
  muraRemoval = 0;
  Press(10, 10);
  cut->Pulse();
  EXPECT_EQ(platform::CapturingWindow(), nullptr);
  Move(14, 10);
  EXPECT_EQ(InkCount(), 5u);
  Release(14, 10);
}

TEST_F(FreePenTest, ARightReleaseOpensThePickerAtTheMouseButNotInAStroke) {
  Press(10, 10);
  RightRelease(10, 10);
  EXPECT_FALSE(IsPickerOpen());
  Release(10, 10);
  RightRelease(12, 14);
  EXPECT_TRUE(IsPickerOpen());
  const Point onScreen = platform::ClientToScreen(cut->window, {12, 14});
  EXPECT_EQ(PickerPlace(), (Point{onScreen.x - 2, onScreen.y - 2}));
  Move(12, 14);
  EXPECT_FALSE(IsPickerOpen());
}

TEST_F(FreePenTest, ZoomedOutCornersAreJudgedInPixelsOfTheWindow) {
  cut->ZoomOut({32, 32});
  ASSERT_EQ(cut->zoomDenominator, 2);
  // The picture is centred: pixel 16 of the window is pixel 0 of the cell.
  Press(20, 20);
  Move(20, 21);
  Move(21, 21);
  Release(21, 21);
  EXPECT_EQ(Pixel(8, 8), 8);
  EXPECT_EQ(Pixel(8, 10), 0);
  EXPECT_EQ(Pixel(9, 9), 8);
  EXPECT_EQ(Pixel(10, 10), 8);
  EXPECT_EQ(InkCount(), 3u);
}

TEST_F(FreePenTest, PointsLandOnTheSnapGrid) {
  gridWidth = 8;
  gridHeight = 8;
  Click(12, 13);
  EXPECT_EQ(Inked(), (Points{{8, 16}}));
}

TEST_F(FreePenTest, PointsAreThoseOfTheCurrentLayer) {
  cut->CurrentFrame()->SetRecordPosition(0, 5, 3);
  cut->RepaintAll();
  Click(15, 13);
  EXPECT_EQ(Inked(), (Points{{10, 10}}));
  EXPECT_EQ(cut->undoRect, (Rect{6, 6, 9, 9}));
  EXPECT_TRUE(ViewIsComposed());
}

TEST_F(FreePenTest, ABlankRecordTakesNothing) {
  cut->CurrentFrame()->ToggleBlank();
  cut->stateFlags = 0;
  Drag(10, 10, 20, 20);
  RightRelease(10, 10);
  EXPECT_EQ(cut->stateFlags, 0u);
  EXPECT_FALSE(IsPickerOpen());
  EXPECT_EQ(cut->undoCell, nullptr);
}

TEST_F(FreePenTest, AStrokeMarksImages) {
  cut->stateFlags = 0;
  Click(10, 10);
  EXPECT_EQ(cut->stateFlags, uint32_t{kModified | kImagesStale | kTimingStale});
}

TEST_F(FreePenTest, AStrokeSurvivesTheChangeOfItsCellAndFrame) {
  Press(10, 10);
  Command(kCommandAddCell);
  Move(12, 10);
  Command(kCommandDeleteCell);
  Move(20, 20);
  AddFrameLikeCurrent();
  StepFrameBack();
  Move(30, 20);
  cut->CurrentFrame()->ToggleBlank();
  Move(40, 20);
  Release(40, 20);
  cut->CurrentFrame()->ToggleBlank();
  Release(40, 20);
  cut->RepaintAll();
  EXPECT_EQ(OverlaySize(), 0u);
  EXPECT_TRUE(ViewIsComposed());
}

TEST_F(FreePenTest, AStrokeEndsWithItsWindow) {
  CutWindow* other = cut;
  cut = OpenCut(64, 64);
  Press(10, 10);
  host.toolbox->Forget(cut);
  CloseActive();
  cut = other;
  Move(20, 20);
  Move(30, 20);
  EXPECT_EQ(InkCount(), 0u);
}

class EraserTest : public testtools::ToolTest {
 protected:
  void SetUp() override {
    ToolTest::SetUp();
    UseTool(kToolEraser);
  }
};

TEST_F(EraserTest, TurnsInkIntoUnderdrawingAndWhiteIntoTransparent) {
  Paint(18, 20, 1, 1, 1);
  Paint(19, 20, 1, 1, 4);
  Paint(20, 20, 1, 1, 9);
  Paint(21, 20, 1, 1, 12);
  Paint(22, 20, 1, 1, 6);
  Click(20, 20);
  EXPECT_EQ(Pixel(18, 20), 5);
  EXPECT_EQ(Pixel(19, 20), 0);
  EXPECT_EQ(Pixel(20, 20), 6);
  EXPECT_EQ(Pixel(21, 20), 12);
  EXPECT_EQ(Pixel(22, 20), 6);
}

TEST_F(EraserTest, TakesABlockOfItsSizePlusOneFromHalfItsSideBeforeThePoint) {
  Paint(0, 0, 64, 64, 8);
  Click(20, 30);
  EXPECT_EQ(CountOf(5), 25u);
  EXPECT_EQ(Pixel(18, 28), 5);
  EXPECT_EQ(Pixel(22, 32), 5);
  EXPECT_EQ(Pixel(17, 28), 8);
  EXPECT_EQ(Pixel(23, 32), 8);
  EXPECT_EQ(cut->undoRect, (Rect{18, 28, 5, 5}));
  EXPECT_TRUE(ViewIsComposed());
}

TEST_F(EraserTest, ASecondPassDoesNothing) {
  Paint(20, 20, 1, 1, 8);
  Click(20, 20);
  Click(20, 20);
  EXPECT_EQ(Pixel(20, 20), 5);
}

TEST_F(EraserTest, ADragErasesUnderEachPointAndGrowsUndoRect) {
  Paint(0, 0, 64, 64, 8);
  Press(20, 20);
  Move(30, 20);
  Release(30, 20);
  EXPECT_EQ(CountOf(5), 50u);
  EXPECT_EQ(cut->undoRect, (Rect{18, 18, 15, 5}));
  Move(40, 20);
  EXPECT_EQ(CountOf(5), 50u);
}

TEST_F(EraserTest, KeepsMaskedPixels) {
  Paint(20, 20, 1, 1, 8);
  Paint(21, 20, 1, 1, 9);
  maskFlags = 1u << 8;
  Click(20, 20);
  EXPECT_EQ(Pixel(20, 20), 8);
  EXPECT_EQ(Pixel(21, 20), 6);
}

TEST_F(EraserTest, TheFrameFollowsTheMouseAndThePulseTakesItOff) {
  EXPECT_EQ(OverlaySize(), 0u);
  Move(20, 20);
  const size_t size = OverlaySize();
  EXPECT_GT(size, 0u);
  Move(40, 30);
  EXPECT_EQ(OverlaySize(), size);
  cut->Pulse();
  EXPECT_EQ(OverlaySize(), 0u);
  cut->Pulse();
  EXPECT_EQ(OverlaySize(), 0u);
}

TEST_F(EraserTest, RightClicksCycleTheSizeFromThirtyTwoBackToFour) {
  Paint(0, 0, 64, 64, 8);
  constexpr size_t blocks[] = {9 * 9, 17 * 17, 33 * 33, 5 * 5};
  for (const size_t block : blocks) {
    RightClick(30, 30);
    Click(30, 30);
    EXPECT_EQ(CountOf(5), block);
    Paint(0, 0, 64, 64, 8);
  }
  EXPECT_FALSE(IsPickerOpen());
}

TEST_F(EraserTest, AResizedFrameKeepsItsCentre) {
  Move(30, 30);
  RightClick(30, 30);
  const testtools::ToolTest::Screen resized = ScreenOf(cut);
  Move(30, 30);
  EXPECT_EQ(Differences(ScreenOf(cut), resized), 0u);
}

TEST_F(EraserTest, TheSizeStaysWhileAButtonIsDown) {
  Press(30, 30);
  RightRelease(30, 30);
  Release(30, 30);
  Paint(0, 0, 64, 64, 8);
  Click(30, 30);
  EXPECT_EQ(CountOf(5), 25u);
}

TEST_F(EraserTest, AtOneHalfTheBlockIsTwiceAsLarge) {
  Paint(0, 0, 64, 64, 8);
  cut->ZoomOut({32, 32});
  Click(32, 32);
  EXPECT_EQ(CountOf(5), 81u);
  EXPECT_EQ(cut->undoRect, (Rect{28, 28, 9, 9}));
}

TEST_F(EraserTest, ItsFrameLeavesTheScreenWhenTheRecordBecomesBlank) {
  platform::headless::SetClientSize(100, 100);
  cut->RepaintAll();
  platform::headless::PaintInvalid(cut->window);
  Move(18, 18);
  EXPECT_GT(OverlaySize(), 0u);
  Command(kCommandBlankCell);
  EXPECT_EQ(OverlaySize(), 0u);
  Command(kCommandBlankCell);
  EXPECT_EQ(OverlaySize(), 0u);
  Move(18, 18);
  cut->Pulse();
  EXPECT_EQ(OverlaySize(), 0u);
}

TEST_F(EraserTest, ToolChangeInTheMiddleOfADragLeavesNothing) {
  Paint(0, 0, 64, 64, 8);
  Press(20, 20);
  Move(25, 25);
  UseTool(kToolFill);
  EXPECT_EQ(OverlaySize(), 0u);
  Release(25, 25);
  EXPECT_EQ(OverlaySize(), 0u);
}

}  // namespace
}  // namespace sorvel
