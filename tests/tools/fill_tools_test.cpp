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

TEST_F(FillToolTest, ADitheredBoundaryPenFillsAsItIs) {
  OutlineBox();
  currentPen = {7, 8, 4, 9};
  Click(15, 15);
  EXPECT_EQ(CountOf(9), 50u);
  EXPECT_EQ(CountOf(4), 50u);
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

TEST_F(GradientToolTest, APressDoesNothing) {
  Press(10, 10);
  Press(20, 20);
  EXPECT_EQ(InkCount(), 0u);
  EXPECT_EQ(cut->undoCell, nullptr);
}

class EdgingToolTest : public testtools::ToolTest {
 protected:
  void SetUp() override {
    ToolTest::SetUp();
    UseTool(kToolEdging);
    Paint(10, 10, 20, 20, 4);
  }
};

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
  Release(12, 30);
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
