#include "resources/ids.h"
#include "tools/tool_fixture.h"

namespace sorvel {
namespace {

using Points = std::vector<Point>;

class FreePenTest : public testtools::ToolTest {};

TEST_F(FreePenTest, TheStrokeCapturesTheMouseUntilTheRelease) {
  Press(10, 10);
  EXPECT_EQ(platform::CapturingWindow(), cut->window);
  Release(10, 10);
  EXPECT_EQ(platform::CapturingWindow(), nullptr);
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

TEST_F(EraserTest, AResizedFrameKeepsItsCentre) {
  Move(30, 30);
  RightClick(30, 30);
  const testtools::ToolTest::Screen resized = ScreenOf(cut);
  Move(30, 30);
  EXPECT_EQ(Differences(ScreenOf(cut), resized), 0u);
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
