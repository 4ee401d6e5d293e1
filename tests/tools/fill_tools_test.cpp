#include "resources/ids.h"
#include "tools/tool_fixture.h"

namespace sorvel {
namespace {

class FillToolTest : public testtools::ToolTest {
 protected:
  void SetUp() override {
    ToolTest::SetUp();
    UseTool(kToolFill);
  }

  // A closed outline of line black; its inside is 10 to 19 each way.
  void OutlineBox() {
    Paint(9, 9, 12, 12, 8);
    Paint(10, 10, 10, 10, 0);
  }
};

TEST_F(FillToolTest, FillsTheClosedAreaAtTheRelease) {
  OutlineBox();
  Press(15, 15);
  EXPECT_EQ(CountOf(1), 0u);
  Release(15, 15);
  EXPECT_EQ(CountOf(1), 100u);
  EXPECT_TRUE(ViewIsComposed());
  Command(kCommandUndo);
  EXPECT_EQ(CountOf(1), 0u);
}

TEST_F(FillToolTest, AReleaseBeforeTheFirstPressDoesNothingAndOneAfterItFills) {
  OutlineBox();
  Release(15, 15);
  EXPECT_EQ(CountOf(1), 0u);
  Click(15, 15);
  EXPECT_EQ(CountOf(1), 100u);
  currentPen.colorB = 3;
  Release(15, 15);
  EXPECT_EQ(CountOf(3), 100u);
}

TEST_F(FillToolTest, AClickOutsideTheCellDoesNothingButTheUndoCopy) {
  cut->CurrentFrame()->SetRecordPosition(0, 30, 30);
  cut->RepaintAll();
  cut->undoCell = nullptr;
  cut->undoRect = {1, 2, 3, 4};
  Click(5, 5);
  EXPECT_EQ(InkCount(), 0u);
  EXPECT_EQ(cut->undoCell, Cell());
  EXPECT_EQ(cut->undoRect, (Rect{}));
}

TEST_F(FillToolTest, APlainBoundaryPenScattersItsColourOverTransparentGround) {
  Paint(8, 8, 16, 16, 4);
  currentPen = {7, 0, 0, 9};
  Click(10, 10);
  EXPECT_EQ(CountOf(4), 0u);
  EXPECT_EQ(CountOf(9), 16u);
  EXPECT_EQ(InkCount(), 16u);
  EXPECT_EQ(currentPen, (PenSpec{7, 0, 0, 9}));
}

TEST_F(FillToolTest, AScatterStopsAtPixelsOfItsColour) {
  currentPen = {7, 0, 0, 10};
  Paint(0, 20, 64, 1, 10);
  Click(10, 10);
  EXPECT_EQ(Pixel(30, 20), 10);
  for (int32_t y = 21; y < 64; ++y) {
    for (int32_t x = 0; x < 64; ++x) ASSERT_EQ(Pixel(x, y), 0);
  }
}

TEST_F(FillToolTest, ADitheredBoundaryPenFillsAsItIs) {
  OutlineBox();
  currentPen = {7, 8, 4, 9};
  Click(15, 15);
  EXPECT_EQ(CountOf(9), 50u);
  EXPECT_EQ(CountOf(4), 50u);
}

TEST_F(FillToolTest, AClickOnABoundaryTakesThatPixelOutAndFillsFromTransparent) {
  OutlineBox();
  Paint(15, 10, 1, 10, 9);
  currentPen.colorB = 2;
  Click(15, 15);
  // The boundary is consumed with the area on both sides of it.
  EXPECT_EQ(CountOf(2), 100u);
}

TEST_F(FillToolTest, AClickOnAMaskedBoundaryChangesNothing) {
  Paint(15, 15, 1, 1, 9);
  maskFlags = 1u << 9;
  Click(15, 15);
  EXPECT_EQ(Pixel(15, 15), 9);
  EXPECT_EQ(InkCount(), 1u);
}

TEST_F(FillToolTest, TheGridDoesNotMoveAClickAndIsRestored) {
  gridWidth = 32;
  gridHeight = 32;
  OutlineBox();
  Click(15, 15);
  EXPECT_EQ(CountOf(1), 100u);
  EXPECT_EQ(gridWidth, 32);
  EXPECT_EQ(gridHeight, 32);
}

TEST_F(FillToolTest, ARightClickReadsTheToneOfATileAndOpensThePickerAtThePixel) {
  const PenSpec tone = {0, 5, 2, 3};
  Cell()->FillBox(8, 8, 16, 16, tone, 0, nullptr);
  currentPen.shape = 12;
  RightClick(14, 14);
  EXPECT_EQ(currentPen, (PenSpec{12, 5, 2, 3}));
  EXPECT_TRUE(IsPickerOpen());
  const Point onScreen = platform::ClientToScreen(cut->window, {14, 14});
  EXPECT_EQ(PickerPlace(), (Point{onScreen.x - 2, onScreen.y - 2}));
}

TEST_F(FillToolTest, ThePickerOpensAtThePixelWhateverTheZoomMakesOfTheMouse) {
  cut->ZoomIn({32, 32});
  Point corner = {30, 40};
  cut->CutToWindow(&corner, 1);
  RightClick(corner.x + 1, corner.y + 1);
  const Point onScreen = platform::ClientToScreen(cut->window, corner);
  EXPECT_EQ(PickerPlace(), (Point{onScreen.x - 2, onScreen.y - 2}));
}

TEST_F(FillToolTest, ASpotOfThreeColoursKeepsThePenAndStillOpensThePicker) {
  Paint(20, 20, 1, 1, 3);
  Paint(21, 20, 1, 1, 2);
  currentPen = {7, 4, 1, 2};
  RightClick(20, 20);
  EXPECT_EQ(currentPen, (PenSpec{7, 4, 1, 2}));
  EXPECT_TRUE(IsPickerOpen());
}

TEST_F(FillToolTest, MovesAndPulsesShowNothing) {
  Move(20, 20);
  cut->Pulse();
  EXPECT_EQ(OverlaySize(), 0u);
  EXPECT_TRUE(ViewIsComposed());
}

class GradientToolTest : public testtools::ToolTest {
 protected:
  void SetUp() override {
    ToolTest::SetUp();
    UseTool(kToolGradient);
  }
};

TEST_F(GradientToolTest, TheSecondClickFillsFromTheFirstPenToThePresentOne) {
  currentPen = {7, 0, 0, 1};
  Click(0, 10);
  EXPECT_EQ(InkCount(), 0u);
  EXPECT_EQ(cut->undoCell, nullptr);
  currentPen = {7, 0, 3, 4};
  Click(63, 10);
  EXPECT_EQ(Pixel(0, 10), 1);
  EXPECT_EQ(Pixel(63, 30), 4);
  EXPECT_EQ(InkCount(), 64u * 64);
  EXPECT_TRUE(ViewIsComposed());
  Command(kCommandUndo);
  EXPECT_EQ(InkCount(), 0u);
}

TEST_F(GradientToolTest, APenOfWhiteFromTheFirstRowHasLevelZero) {
  currentPen = {7, 0, 0, 4};
  Click(0, 10);
  currentPen = {7, 0, 0, 3};
  Click(63, 10);
  EXPECT_EQ(CountOf(1), 64u * 64);
}

TEST_F(GradientToolTest, TwoClicksOnTheSamePointKeepTheFirstLevel) {
  currentPen = {7, 0, 1, 2};
  Click(10, 10);
  currentPen = {7, 0, 3, 4};
  Click(10, 10);
  EXPECT_EQ(CountOf(2), 64u * 64);
}

TEST_F(GradientToolTest, ARightClickBetweenTheTwoKeepsTheFirstOne) {
  currentPen = {7, 0, 1, 2};
  Click(10, 10);
  Paint(40, 40, 8, 8, 4);
  RightClick(44, 44);
  EXPECT_TRUE(IsPickerOpen());
  EXPECT_EQ(currentPen.colorB, 4);
  Click(10, 63);
  EXPECT_EQ(Pixel(0, 0), 2);
  EXPECT_EQ(Pixel(5, 63), 4);
}

TEST_F(GradientToolTest, APressDoesNothing) {
  Press(10, 10);
  Press(20, 20);
  EXPECT_EQ(InkCount(), 0u);
  EXPECT_EQ(cut->undoCell, nullptr);
}

TEST_F(GradientToolTest, AThirdClickIsAFirstOneAgain) {
  Click(10, 10);
  Click(20, 20);
  Cell()->Fill(0);
  Click(10, 10);
  EXPECT_EQ(InkCount(), 0u);
}

TEST_F(GradientToolTest, TheGridDoesNotMoveItsClicks) {
  gridWidth = 32;
  gridHeight = 32;
  Paint(0, 0, 64, 64, 8);
  Paint(10, 10, 5, 5, 4);
  currentPen = {7, 0, 0, 1};
  Click(12, 12);
  Click(13, 13);
  EXPECT_EQ(CountOf(1), 25u);
  EXPECT_EQ(gridWidth, 32);
}

class EdgingToolTest : public testtools::ToolTest {
 protected:
  void SetUp() override {
    ToolTest::SetUp();
    UseTool(kToolEdging);
    Paint(10, 10, 20, 20, 4);
  }
};

TEST_F(EdgingToolTest, ADragDrawsABorderInsideTheColourOfItsCorner) {
  Drag(10, 10, 40, 40);
  EXPECT_EQ(CountOf(1), 4u * 19);
  EXPECT_EQ(Pixel(10, 10), 1);
  EXPECT_EQ(Pixel(11, 11), 4);
  EXPECT_EQ(cut->undoRect, (Rect{10, 10, 30, 30}));
  EXPECT_EQ(OverlaySize(), 0u);
  EXPECT_TRUE(ViewIsComposed());
}

TEST_F(EdgingToolTest, TheBorderIsAsThickAsThePenPlusOne) {
  currentPen.shape = 9;
  Drag(10, 10, 40, 40);
  EXPECT_EQ(Pixel(12, 20), 1);
  EXPECT_EQ(Pixel(13, 20), 4);
}

TEST_F(EdgingToolTest, ADragToTheUpperLeftStaysActiveUntilALaterRelease) {
  Press(12, 12);
  Move(5, 5);
  Release(5, 5);
  EXPECT_EQ(CountOf(1), 0u);
  RightRelease(5, 5);
  EXPECT_FALSE(IsPickerOpen());
  Move(40, 40);
  EXPECT_GT(OverlaySize(), 0u);
  Release(40, 40);
  EXPECT_GT(CountOf(1), 0u);
  EXPECT_EQ(OverlaySize(), 0u);
  RightRelease(5, 5);
  EXPECT_TRUE(IsPickerOpen());
}

TEST_F(EdgingToolTest, APointOnlyToTheRightIsNoDrag) {
  Drag(12, 12, 30, 12);
  EXPECT_EQ(CountOf(1), 0u);
  Release(30, 13);
  EXPECT_EQ(cut->undoRect, (Rect{12, 12, 18, 1}));
}

TEST_F(EdgingToolTest, ARepaintInTheDragLeavesNoFrame) {
  Press(10, 10);
  Move(40, 40);
  cut->RepaintAll();
  EXPECT_EQ(OverlaySize(), 0u);
  UseTool(kToolText);
  EXPECT_EQ(OverlaySize(), 0u);
}

}  // namespace
}  // namespace sorvel
