#include "resources/ids.h"
#include "tools/tool_fixture.h"

namespace sorvel {
namespace {

class FocusLinesTest : public testtools::ToolTest {
 protected:
  void SetUp() override {
    ToolTest::SetUp();
    UseTool(kToolFocusLines);
  }
};

TEST_F(FocusLinesTest, TheFirstClickSetsTheCentreAndEachLaterOneDrawsALine) {
  Click(30, 30);
  EXPECT_EQ(InkCount(), 0u);
  EXPECT_EQ(cut->undoCell, nullptr);
  Move(40, 30);
  EXPECT_GT(OverlaySize(), 0u);
  Click(40, 30);
  EXPECT_EQ(InkCount(), 11u);
  Click(30, 40);
  EXPECT_EQ(InkCount(), 21u);
  EXPECT_EQ(CountOf(8), 21u);
}

TEST_F(FocusLinesTest, EachLineIsAnUndoStepOfItsOwn) {
  Click(30, 30);
  Move(40, 30);
  Click(40, 30);
  Click(30, 40);
  EXPECT_EQ(cut->undoRect, (Rect{26, 26, 9, 19}));
  Command(kCommandUndo);
  EXPECT_EQ(InkCount(), 11u);
  EXPECT_EQ(Pixel(40, 30), 8);
}

TEST_F(FocusLinesTest, CtrlDrawsInSketchColourOverTransparentAndSketchOnly) {
  Paint(34, 30, 1, 1, 4);
  Paint(36, 30, 1, 1, 7);
  Click(30, 30);
  Click(40, 30, kControl);
  EXPECT_EQ(Pixel(30, 30), 5);
  EXPECT_EQ(Pixel(34, 30), 4);
  EXPECT_EQ(Pixel(36, 30), 5);
  EXPECT_EQ(CountOf(5), 10u);
  EXPECT_EQ(currentPen, (PenSpec{7, 0, 0, 1}));
}

TEST_F(FocusLinesTest, ARightClickEndsItAndTheNextOneOpensThePicker) {
  Click(30, 30);
  Move(50, 50);
  RightClick(50, 50);
  EXPECT_FALSE(IsPickerOpen());
  cut->Pulse();
  EXPECT_EQ(OverlaySize(), 0u);
  RightClick(50, 50);
  EXPECT_TRUE(IsPickerOpen());
}

TEST_F(FocusLinesTest, ThePulseEndsItAndTakesTheMarkAway) {
  Click(30, 30);
  Move(50, 50);
  cut->Pulse();
  EXPECT_EQ(OverlaySize(), 0u);
  EXPECT_TRUE(ViewIsComposed());
  Click(10, 10);
  EXPECT_EQ(InkCount(), 0u);
}

TEST_F(FocusLinesTest, IdleMovesShowTheMark) {
  Move(20, 20);
  EXPECT_EQ(cut->view.GetPixel(20, 20), 1);
}

class ParallelLinesTest : public testtools::ToolTest {
 protected:
  void SetUp() override {
    ToolTest::SetUp();
    UseTool(kToolParallelLines);
  }
};

TEST_F(ParallelLinesTest, TheFirstDragDrawsAndEachClickDrawsACopy) {
  Drag(10, 10, 20, 10);
  EXPECT_EQ(InkCount(), 11u);
  Click(30, 20);
  EXPECT_EQ(InkCount(), 22u);
  EXPECT_EQ(Pixel(30, 20), 8);
  EXPECT_EQ(Pixel(40, 20), 8);
  Command(kCommandUndo);
  EXPECT_EQ(InkCount(), 11u);
}

TEST_F(ParallelLinesTest, TwoClicksDrawTheFirstLineToo) {
  Click(10, 10);
  EXPECT_EQ(InkCount(), 0u);
  Move(20, 10);
  EXPECT_GT(OverlaySize(), 0u);
  Click(20, 10);
  EXPECT_EQ(InkCount(), 11u);
  Click(30, 20);
  EXPECT_EQ(InkCount(), 22u);
}

TEST_F(ParallelLinesTest, AReleaseWithoutAPressStartsTheLine) {
  Release(10, 10);
  Release(20, 10);
  EXPECT_EQ(InkCount(), 11u);
}

TEST_F(ParallelLinesTest, CtrlAndRightClickTurnTheCopyByAQuarter) {
  Drag(10, 10, 20, 10);
  RightClick(30, 30, kControl);
  EXPECT_FALSE(IsPickerOpen());
  Click(30, 30);
  EXPECT_EQ(Pixel(30, 40), 8);
  EXPECT_EQ(Pixel(40, 30), 0);
  RightClick(30, 30, kControl);
  Click(50, 30);
  EXPECT_EQ(Pixel(40, 30), 8);
  EXPECT_EQ(Pixel(60, 30), 0);
}

TEST_F(ParallelLinesTest, TheTurnedBandIsShownAtTheMouse) {
  Drag(10, 10, 20, 10);
  Move(30, 30);
  EXPECT_EQ(OverlaySize(), 10u);
  RightClick(30, 30, kControl);
  EXPECT_EQ(OverlaySize(), 10u);
  RightClick(30, 30);
  EXPECT_EQ(OverlaySize(), 0u);
}

TEST_F(ParallelLinesTest, CtrlAtAClickDrawsInSketchColourOverTransparentAndSketchOnly) {
  Paint(34, 20, 1, 1, 1);
  Press(10, 10);
  Move(20, 10);
  Release(20, 10, kControl);
  EXPECT_EQ(CountOf(5), 11u);
  Click(30, 20, kControl);
  EXPECT_EQ(CountOf(5), 21u);
  EXPECT_EQ(Pixel(34, 20), 1);
}

TEST_F(ParallelLinesTest, ACopysLengthDependsOnTheZoom) {
  Drag(10, 10, 20, 10);
  cut->ZoomIn({32, 32});
  Point place = {30, 30};
  cut->CutToWindow(&place, 1);
  Click(place.x, place.y);
  EXPECT_EQ(Pixel(35, 30), 8);
  EXPECT_EQ(Pixel(36, 30), 0);
}

TEST_F(ParallelLinesTest, RightClicksEndAllStatesAndIdleOpensThePicker) {
  Click(10, 10);
  Move(20, 20);
  RightClick(20, 20);
  EXPECT_FALSE(IsPickerOpen());
  Drag(10, 10, 20, 10);
  Move(30, 30);
  RightClick(30, 30);
  EXPECT_FALSE(IsPickerOpen());
  cut->Pulse();
  EXPECT_EQ(OverlaySize(), 0u);
  RightClick(30, 30);
  EXPECT_TRUE(IsPickerOpen());
}

TEST_F(ParallelLinesTest, ThePulseEndsAllStatesAndTheMarkFollowsTheMouse) {
  Drag(10, 10, 20, 10);
  Move(30, 30);
  EXPECT_EQ(cut->view.GetPixel(30, 30), 1);
  cut->Pulse();
  EXPECT_EQ(OverlaySize(), 0u);
  EXPECT_TRUE(ViewIsComposed());
  const size_t drawn = InkCount();
  Click(40, 40);
  EXPECT_EQ(InkCount(), drawn);
}

}  // namespace
}  // namespace sorvel
