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

TEST_F(AreaSelectTest, ADragToTheUpperLeftSelectsNothing) {
  Drag(30, 30, 10, 10);
  EXPECT_FALSE(cut->HasSelection());
}

TEST_F(AreaSelectTest, ANewFrameReplacesTheOldOne) {
  Select(10, 10, 20, 20);
  Select(40, 40, 50, 50);
  EXPECT_EQ(cut->selection, (Bounds{40, 40, 50, 50}));
  cut->Pulse();
  EXPECT_EQ(OverlaySize(), 0u);
}

TEST_F(AreaSelectTest, ARightClickSelectsTheWholeCellAndASecondOneClearsIt) {
  cut->CurrentFrame()->SetRecordPosition(0, 3, -4);
  cut->RepaintAll();
  RightClick(20, 20);
  EXPECT_EQ(cut->selection, (Bounds{3, -4, 67, 60}));
  EXPECT_GT(OverlaySize(), 0u);
  RightClick(20, 20);
  EXPECT_FALSE(cut->HasSelection());
  EXPECT_EQ(OverlaySize(), 0u);
  EXPECT_FALSE(IsPickerOpen());
}

TEST_F(AreaSelectTest, TheLeftEdgeWidensOnBothSides) {
  Select(20, 20, 40, 40);
  Press(21, 30);
  Move(15, 33);
  EXPECT_EQ(cut->selection, (Bounds{14, 20, 46, 40}));
  Move(18, 30);
  EXPECT_EQ(cut->selection, (Bounds{17, 20, 43, 40}));
  Release(18, 30);
  EXPECT_EQ(InkCount(), 0u);
  EXPECT_EQ(cut->undoCell, nullptr);
}

TEST_F(AreaSelectTest, TheTopEdgeHeightensUpwardAndDownward) {
  Select(20, 20, 40, 40);
  Press(30, 19);
  Move(30, 15);
  EXPECT_EQ(cut->selection, (Bounds{20, 16, 40, 44}));
}

TEST_F(AreaSelectTest, TheLeftEdgeIsTestedBeforeTheTopAndAtAnyHeight) {
  Select(20, 20, 40, 40);
  Press(20, 60);
  Move(18, 60);
  EXPECT_EQ(cut->selection, (Bounds{18, 20, 42, 40}));
}

TEST_F(AreaSelectTest, AMoveCarriesInkOnlyAndHolesShowWhatLayBelow) {
  Paint(10, 10, 1, 1, 1);
  Paint(12, 10, 1, 1, 2);
  Paint(31, 30, 1, 1, 3);
  Select(8, 8, 16, 16);
  Drag(10, 11, 30, 31);
  EXPECT_EQ(Pixel(10, 10), 0);
  EXPECT_EQ(Pixel(30, 30), 1);
  EXPECT_EQ(Pixel(31, 30), 3);
  EXPECT_EQ(Pixel(32, 30), 2);
  EXPECT_EQ(InkCount(), 3u);
  EXPECT_EQ(cut->selection, (Bounds{28, 28, 36, 36}));
  EXPECT_GT(OverlaySize(), 0u);
  EXPECT_TRUE(ViewIsComposed());
  cut->Pulse();
  EXPECT_EQ(OverlaySize(), 0u);
}

TEST_F(AreaSelectTest, UndoRectCoversSourceAndTarget) {
  Paint(10, 10, 1, 1, 1);
  Select(8, 8, 16, 16);
  Drag(12, 12, 32, 22);
  EXPECT_EQ(cut->undoRect, (Rect{8, 8, 28, 18}));
  Command(kCommandUndo);
  EXPECT_EQ(Pixel(10, 10), 1);
  EXPECT_EQ(InkCount(), 1u);
  EXPECT_TRUE(ViewIsComposed());
}

TEST_F(AreaSelectTest, MovingTwiceInARowCountsAsOneMoveAndUndoRestoresTheFirstState) {
  Paint(10, 10, 2, 2, 1);
  Paint(30, 30, 4, 4, 3);
  Select(8, 8, 16, 16);
  Drag(12, 12, 32, 32);
  EXPECT_EQ(Pixel(30, 30), 1);
  Drag(31, 33, 51, 33);
  EXPECT_EQ(Pixel(50, 30), 1);
  // What the first move had covered is there again.
  EXPECT_EQ(Pixel(30, 30), 3);
  EXPECT_EQ(CountOf(3), 16u);
  EXPECT_EQ(CountOf(1), 4u);
  EXPECT_EQ(cut->selection, (Bounds{48, 28, 56, 36}));
  EXPECT_TRUE(ViewIsComposed());
  Drag(50, 33, 40, 53);
  EXPECT_EQ(Pixel(40, 50), 1);
  EXPECT_EQ(CountOf(1), 4u);
  EXPECT_TRUE(ViewIsComposed());
  Command(kCommandUndo);
  EXPECT_EQ(Pixel(10, 10), 1);
  EXPECT_EQ(CountOf(3), 16u);
  EXPECT_TRUE(ViewIsComposed());
}

TEST_F(AreaSelectTest, MaskedPixelsStayBehindAndMaskedTargetsStayAsTheyAre) {
  Paint(10, 10, 1, 1, 1);
  Paint(12, 10, 1, 1, 2);
  Paint(32, 30, 1, 1, 1);
  maskFlags = 1u << 1;
  Select(8, 8, 16, 16);
  Drag(10, 11, 30, 31);
  EXPECT_EQ(Pixel(10, 10), 1);
  EXPECT_EQ(Pixel(12, 10), 0);
  EXPECT_EQ(Pixel(32, 30), 1);
  EXPECT_EQ(CountOf(2), 0u);
}

TEST_F(AreaSelectTest, TheRightAndBottomEdgeLieOutside) {
  Select(20, 20, 40, 40);
  Press(40, 30);
  Move(50, 50);
  EXPECT_EQ(cut->selection, (Bounds{40, 30, 50, 50}));
}

TEST_F(AreaSelectTest, ThePulseEndsTheSelection) {
  Select(20, 20, 40, 40);
  cut->Pulse();
  EXPECT_FALSE(cut->HasSelection());
  EXPECT_EQ(OverlaySize(), 0u);
}

TEST_F(AreaSelectTest, AFloatingPasteIsMovedFromTheBlockAndFinalOutside) {
  Paint(10, 10, 2, 2, 1);
  ASSERT_TRUE(cut->StoreBlock(8, 8, 8, 8, 0));
  Paint(0, 0, 64, 64, 0);
  Paint(30, 30, 1, 1, 3);
  cut->PasteBuffer();
  EXPECT_EQ(cut->selection, (Bounds{8, 8, 16, 16}));
  EXPECT_EQ(Pixel(10, 10), 1);
  Drag(12, 12, 32, 32);
  EXPECT_EQ(Pixel(10, 10), 0);
  EXPECT_EQ(Pixel(30, 30), 1);
  EXPECT_TRUE(ViewIsComposed());
  EXPECT_NE(cut->viewOptions & kFloatingPaste, 0u);
  Drag(32, 32, 42, 32);
  EXPECT_EQ(Pixel(30, 30), 3);
  EXPECT_EQ(Pixel(40, 30), 1);
  EXPECT_EQ(CountOf(1), 4u);
  EXPECT_TRUE(ViewIsComposed());
  Click(5, 60);
  EXPECT_EQ(cut->viewOptions & kFloatingPaste, 0u);
  EXPECT_EQ(CountOf(1), 4u);
}

TEST_F(AreaSelectTest, ARightClickMakesAPasteFinal) {
  Paint(10, 10, 2, 2, 1);
  ASSERT_TRUE(cut->StoreBlock(8, 8, 8, 8, 0));
  cut->PasteBuffer();
  RightClick(30, 30);
  EXPECT_EQ(cut->viewOptions & kFloatingPaste, 0u);
  EXPECT_FALSE(cut->HasSelection());
  EXPECT_EQ(OverlaySize(), 0u);
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

TEST_F(MosaicTest, AClickTreatsOneTileOfFourByFour) {
  Paint(20, 20, 4, 2, 1);
  Paint(24, 20, 1, 1, 1);
  Click(21, 22);
  // Half black and half white is level 24.
  CellImage* cell = Cell();
  PackedImage expected;
  expected.Resize(64, 64, 0);
  expected.FillBox(20, 20, 4, 4, LevelToPen(24), 0, nullptr);
  for (int32_t y = 20; y < 24; ++y) {
    for (int32_t x = 20; x < 24; ++x) EXPECT_EQ(cell->GetPixel(x, y), expected.GetPixel(x, y));
  }
  EXPECT_EQ(InkCount(), 17u);
  EXPECT_EQ(cut->undoRect, (Rect{20, 20, 4, 4}));
  EXPECT_EQ(OverlaySize(), 0u);
  EXPECT_TRUE(ViewIsComposed());
}

TEST_F(MosaicTest, TransparentGroundCountsAsWhiteAndWritesWhite) {
  Click(21, 22);
  EXPECT_EQ(CountOf(4), 16u);
}

TEST_F(MosaicTest, ADragTreatsAllTilesBetween) {
  Drag(9, 9, 18, 13);
  EXPECT_EQ(cut->undoRect, (Rect{8, 8, 12, 8}));
  EXPECT_EQ(CountOf(4), 96u);
  EXPECT_EQ(OverlaySize(), 0u);
}

TEST_F(MosaicTest, ItTakesAllLayersUpToTheCurrentOne) {
  Paint(0, 0, 64, 64, 1);
  cut->AddLayer("B", 64, 64, nullptr);
  cut->AttachLayer(1, 0, 0);
  cut->AddLayer("C", 64, 64, nullptr);
  cut->AttachLayer(2, 0, 0);
  Cell()->Fill(4);
  cut->CurrentFrame()->SelectRecord(1);
  cut->RepaintAll();
  Click(10, 10);
  EXPECT_EQ(InkCount(), 16u);
  EXPECT_EQ(CountOf(1), 16u);
  EXPECT_TRUE(ViewIsComposed());
}

TEST_F(MosaicTest, ATileCutBelowSixteenPixelsIsCopiedAsComposed) {
  Paint(62, 20, 1, 1, 9);
  cut->AddLayer("B", 64, 64, nullptr);
  cut->AttachLayer(1, 2, 0);
  cut->RepaintAll();
  Cell()->FillRect(62, 20, 2, 4, 3);
  Click(63, 20);
  // The tile is 60 to 63 of the cell, of which the canvas shows two columns: 8 pixels are too few for an average.
  EXPECT_EQ(Pixel(60, 20), 9);
  EXPECT_EQ(CountOf(3), 8u);
  EXPECT_EQ(InkCount(), 9u);
}

TEST_F(MosaicTest, RightClicksCycleTheSizeFromSixteenBackToFour) {
  constexpr size_t tiles[] = {8 * 8, 12 * 12, 16 * 16, 4 * 4};
  for (const size_t tile : tiles) {
    RightClick(5, 5);
    EXPECT_FALSE(IsPickerOpen());
    Paint(0, 0, 64, 64, 0);
    Click(1, 1);
    EXPECT_EQ(InkCount(), tile);
  }
}

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

TEST_F(MosaicTest, AReleaseLeftOfTheStartKeepsTheDrag) {
  Press(30, 30);
  Move(10, 10);
  Release(10, 10);
  EXPECT_EQ(InkCount(), 0u);
  Release(34, 30);
  EXPECT_EQ(InkCount(), 32u);
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
