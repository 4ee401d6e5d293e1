#include "resources/ids.h"
#include "tools/tool_fixture.h"

namespace sorvel {
namespace {

class AreaSelectTest : public testtools::ToolTest {
 protected:
  void SetUp() override {
    ToolTest::SetUp();
    UseTool(kToolAreaSelect);
  }

  void Select(int32_t left, int32_t top, int32_t right, int32_t bottom) { Drag(left, top, right, bottom); }
};

TEST_F(AreaSelectTest, ADragSelectsTheRectangle) {
  Press(10, 10);
  EXPECT_EQ(platform::CapturingWindow(), cut->window);
  Move(30, 25);
  EXPECT_EQ(cut->selection, (Bounds{10, 10, 30, 25}));
  EXPECT_GT(OverlaySize(), 0u);
  Release(30, 25);
  EXPECT_EQ(platform::CapturingWindow(), nullptr);
  EXPECT_EQ(cut->selection, (Bounds{10, 10, 30, 25}));
  EXPECT_EQ(cut->undoCell, nullptr);
}

TEST_F(AreaSelectTest, ARepaintInTheMiddleOfAMoveLeavesNothing) {
  Paint(10, 10, 2, 2, 1);
  Select(8, 8, 16, 16);
  Press(12, 12);
  Move(20, 20);
  cut->RepaintAll();
  EXPECT_EQ(OverlaySize(), 0u);
  Move(30, 30);
  Release(30, 30);
  EXPECT_EQ(OverlaySize(), 0u);
  EXPECT_EQ(Pixel(10, 10), 1);
  EXPECT_EQ(InkCount(), 4u);
}

TEST_F(AreaSelectTest, ZoomedInASelectionStillMovesWholePixels) {
  Paint(10, 10, 2, 2, 1);
  cut->ZoomIn({10, 10});
  Point corners[3] = {{8, 8}, {16, 16}, {12, 12}};
  cut->CutToWindow(corners, 3);
  Select(corners[0].x, corners[0].y, corners[1].x, corners[1].y);
  Drag(corners[2].x, corners[2].y, corners[2].x + 8, corners[2].y + 9);
  EXPECT_EQ(Pixel(14, 14), 1);
  EXPECT_EQ(CountOf(1), 4u);
  EXPECT_EQ(cut->selection.left, corners[0].x + 8);
}

class MosaicTest : public testtools::ToolTest {
 protected:
  void SetUp() override {
    ToolTest::SetUp();
    UseTool(kToolMosaic);
  }
};

TEST_F(MosaicTest, TheFrameShowsTheTileAndGrowsAroundItsCentre) {
  Move(21, 22);
  EXPECT_GT(OverlaySize(), 0u);
  RightClick(21, 22);
  const Screen grown = ScreenOf(cut);
  platform::InvalidateClient(cut->window, false);
  platform::headless::PaintInvalid(cut->window);
  platform::DeviceContext* context = platform::BeginDrawing(cut->window);
  platform::InvertFrame(context, {18, 18, 26, 26});
  platform::EndDrawing(cut->window, context);
  EXPECT_EQ(Differences(ScreenOf(cut), grown), 0u);
}

TEST_F(MosaicTest, ThePulseTakesTheFrameAndTheStart) {
  Press(30, 30);
  Move(40, 40);
  cut->RepaintAll();
  EXPECT_EQ(OverlaySize(), 0u);
  Move(44, 44);
  Release(44, 44);
  EXPECT_EQ(InkCount(), 0u);
  EXPECT_EQ(OverlaySize(), 0u);
  Click(44, 44);
  EXPECT_EQ(InkCount(), 16u);
}

TEST_F(MosaicTest, NegativeTilesRoundTowardZero) {
  cut->CurrentFrame()->SetRecordPosition(0, 10, 10);
  cut->RepaintAll();
  Click(8, 8);
  EXPECT_EQ(cut->undoRect, (Rect{0, 0, 4, 4}));
  Click(5, 5);
  EXPECT_EQ(cut->undoRect, (Rect{-4, -4, 4, 4}));
}

TEST_F(MosaicTest, ABlockFarOutsideIsQuick) {
  for (int32_t i = 0; i < 200; ++i) cut->ZoomOut({32, 32});
  Press(-30000, -30000);
  Release(30000, 30000);
  EXPECT_EQ(InkCount(), 64u * 64);
}

TEST_F(MosaicTest, AReleaseLeftOfTheMosaicsStartLeavesItsFrameOnTheScreen) {
  UseTool(kToolMosaic);
  Press(20, 20);
  Move(30, 30);
  const Screen before = ScreenOf(cut);
  ASSERT_GT(OverlaySize(), 0u);
  Release(8, 24);
  EXPECT_EQ(Differences(ScreenOf(cut), before), 0u);
}

// The limit has six bits, and 0 of them stands for all records.
TEST_F(MosaicTest, AtRecord63ItTakesTheRecordsAboveToo) {
  Frame* shown = cut->CurrentFrame();
  Layer* lower = shown->LayerAt(0);
  while (shown->records.Count() < 64) shown->AddRecord(lower, 0, 0, 0);
  Layer* top = cut->AddLayer("B", 64, 64, nullptr);
  top->CellAt(0)->Fill(1);
  shown->AddRecord(top, 0, 0, 0);
  shown->SelectRecord(62);
  Click(8, 8);
  EXPECT_EQ(lower->CellAt(0)->GetPixel(8, 8), 4);
  shown->SelectRecord(63);
  Click(16, 8);
  EXPECT_EQ(lower->CellAt(0)->GetPixel(16, 8), 1);
}

}  // namespace
}  // namespace sorvel
