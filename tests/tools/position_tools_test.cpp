#include "tools/tool_fixture.h"

namespace sorvel {
namespace {

class FramePositionTest : public testtools::ToolTest {
 protected:
  void SetUp() override {
    ToolTest::SetUp();
    cut->frameWidth = 40;
    cut->frameHeight = 30;
    UseTool(kToolFramePosition);
  }

  Point Place() { return {cut->CurrentFrame()->x, cut->CurrentFrame()->y}; }
  void SetPlaces(const std::vector<Point>& places) {
    while (cut->frames.Count() < static_cast<int32_t>(places.size())) AddFrameLikeCurrent();
    for (size_t i = 0; i < places.size(); ++i) {
      cut->frames.At(static_cast<int32_t>(i))->x = places[i].x;
      cut->frames.At(static_cast<int32_t>(i))->y = places[i].y;
    }
    cut->RepaintAll();
  }
};

TEST_F(FramePositionTest, TheBoxIsShownFromTheSelectionOfTheTool) {
  EXPECT_GT(OverlaySize(), 0u);
  UseTool(kToolFill);
  EXPECT_EQ(OverlaySize(), 0u);
}

TEST_F(FramePositionTest, ADragMovesTheFrameAndMarksTheTimingOnly) {
  cut->stateFlags = 0;
  Press(20, 20);
  Move(25, 28);
  EXPECT_EQ(Place(), (Point{0, 0}));
  Release(25, 28);
  EXPECT_EQ(Place(), (Point{5, 8}));
  EXPECT_EQ(cut->stateFlags, 10u);
  EXPECT_EQ(cut->undoCell, nullptr);
}

TEST_F(FramePositionTest, CtrlAndReleaseCentresTheFrameWhateverTheDragBefore) {
  Press(20, 20);
  Move(50, 50);
  Release(50, 50, kControl);
  EXPECT_EQ(Place(), (Point{12, 17}));
  Move(10, 10);
  cut->Pulse();
  EXPECT_EQ(OverlaySize(), 0u);
}

TEST_F(FramePositionTest, AReleaseWithoutADragChangesNothing) {
  cut->stateFlags = 0;
  Release(30, 30);
  EXPECT_EQ(Place(), (Point{0, 0}));
  EXPECT_EQ(cut->stateFlags, 0u);
}

TEST_F(FramePositionTest, ARightClickInADragCancelsIt) {
  cut->stateFlags = 0;
  Press(20, 20);
  Move(30, 30);
  RightClick(30, 30);
  EXPECT_EQ(OverlaySize(), 0u);
  Release(40, 40);
  EXPECT_EQ(Place(), (Point{0, 0}));
  EXPECT_EQ(cut->stateFlags, 0u);
  Move(40, 40);
  EXPECT_GT(OverlaySize(), 0u);
}

TEST_F(FramePositionTest, AfterACancelARepaintOrToolChangeLeavesNoBox) {
  Press(20, 20);
  Move(30, 30);
  RightClick(30, 30);
  cut->RepaintAll();
  cut->Pulse();
  EXPECT_EQ(OverlaySize(), 0u);
  cut->Pulse();
  Press(20, 20);
  RightClick(30, 30);
  UseTool(kToolFill);
  EXPECT_EQ(OverlaySize(), 0u);
}

TEST_F(FramePositionTest, APressOfTheRightButtonDoesNotShowTheBox) {
  cut->Pulse();
  ASSERT_EQ(OverlaySize(), 0u);
  Mouse(platform::kMessageRightDown, 5, 5);
  EXPECT_EQ(OverlaySize(), 0u);
  Move(5, 5);
  EXPECT_GT(OverlaySize(), 0u);
}

TEST_F(FramePositionTest, WithOneFrameARightClickCopiesItOnToItself) {
  SetPlaces({{7, 9}});
  RightClick(10, 10);
  EXPECT_EQ(Place(), (Point{7, 9}));
  EXPECT_FALSE(IsPickerOpen());
}

TEST_F(FramePositionTest, ARightClickTakesThePlaceOfTheFrameBeforeWithWrapping) {
  SetPlaces({{1, 2}, {10, 20}, {30, 40}});
  cut->currentFrame = 1;
  RightClick(10, 10);
  EXPECT_EQ(Place(), (Point{1, 2}));
  cut->currentFrame = 0;
  RightClick(10, 10);
  EXPECT_EQ(Place(), (Point{30, 40}));
}

TEST_F(FramePositionTest, CtrlAndRightClickTakesTheMiddleOfBothNeighboursWithWrapping) {
  SetPlaces({{1, 2}, {0, 0}, {30, 41}});
  cut->currentFrame = 1;
  RightClick(10, 10, kControl);
  EXPECT_EQ(Place(), (Point{15, 21}));
  cut->currentFrame = 2;
  RightClick(10, 10, kControl);
  EXPECT_EQ(Place(), (Point{8, 11}));
}

TEST_F(FramePositionTest, TheBoxShowsTheNewPlaceAfterARightClick) {
  SetPlaces({{1, 2}, {10, 20}});
  cut->currentFrame = 1;
  RightClick(10, 10);
  cut->Pulse();
  EXPECT_EQ(OverlaySize(), 0u);
  cut->Pulse();
  EXPECT_GT(OverlaySize(), 0u);
}

TEST_F(FramePositionTest, WithASnapGridADragMovesInItsSteps) {
  gridWidth = 8;
  gridHeight = 8;
  Drag(3, 3, 23, 14);
  EXPECT_EQ(Place(), (Point{24, 16}));
}

TEST_F(FramePositionTest, NeedsAVisibleCellButForThePulse) {
  cut->CurrentFrame()->ToggleBlank();
  Drag(10, 10, 20, 20);
  EXPECT_EQ(Place(), (Point{0, 0}));
  const size_t size = OverlaySize();
  cut->Pulse();
  EXPECT_NE(OverlaySize(), size);
}

TEST_F(FramePositionTest, APasteFromHereLeavesNoBoxBehind) {
  ASSERT_TRUE(cut->StoreBlock(0, 0, 4, 4, 0));
  cut->PasteBuffer();
  EXPECT_EQ(host.currentTool, kToolAreaSelect);
  cut->Pulse();
  EXPECT_EQ(OverlaySize(), 0u);
}

TEST_F(FramePositionTest, ABoxOfAnotherWindowIsNotDrawnHere) {
  CutWindow* first = cut;
  CutWindow* second = OpenCut(64, 64);
  EXPECT_EQ(OverlaySize(first), 0u);
  Activate(first);
  EXPECT_GT(OverlaySize(first), 0u);
  EXPECT_EQ(OverlaySize(second), 0u);
  host.toolbox->Forget(first);
  CloseActive();
  cut = second;
  second->RepaintAll();
  second->Pulse();
  EXPECT_EQ(OverlaySize(second), 0u);
}

TEST_F(FramePositionTest, APlaceNearTheEndOfTheRangeDoesNotOverflow) {
  SetPlaces({{INT32_MAX - 2, INT32_MIN + 2}});
  Drag(10, 60, 60, 10);
  EXPECT_EQ(Place(), (Point{INT32_MAX, INT32_MIN}));
}

class LayerPositionTest : public testtools::ToolTest {
 protected:
  void SetUp() override {
    ToolTest::SetUp();
    UseTool(kToolLayerPosition);
  }

  Point Place() {
    Point place;
    cut->CurrentFrame()->GetRecordPosition(cut->CurrentFrame()->currentRecord, &place.x, &place.y);
    return place;
  }
  void SetPlaces(const std::vector<Point>& places) {
    while (cut->frames.Count() < static_cast<int32_t>(places.size())) AddFrameLikeCurrent();
    for (size_t i = 0; i < places.size(); ++i) {
      cut->frames.At(static_cast<int32_t>(i))->SetRecordPosition(0, places[i].x, places[i].y);
    }
    cut->RepaintAll();
  }
};

TEST_F(LayerPositionTest, ADragMovesTheRecord) {
  cut->stateFlags = 0;
  Drag(20, 20, 25, 13);
  EXPECT_EQ(Place(), (Point{5, -7}));
  EXPECT_EQ(cut->stateFlags, 10u);
  Drag(20, 20, 21, 21);
  EXPECT_EQ(Place(), (Point{6, -6}));
  EXPECT_TRUE(ViewIsComposed());
  cut->Pulse();
  EXPECT_EQ(OverlaySize(), 0u);
}

TEST_F(LayerPositionTest, CtrlAndReleasePutsTheRecordAtTheOrigin) {
  SetPlaces({{30, 20}});
  Press(10, 10);
  Move(40, 40);
  Release(40, 40, kControl);
  EXPECT_EQ(Place(), (Point{0, 0}));
}

TEST_F(LayerPositionTest, ALayerThatFollowsTheFrameStaysRelativeToIt) {
  cut->layers.At(0)->followFrame = 1;
  cut->CurrentFrame()->x = 100;
  cut->CurrentFrame()->y = 50;
  Drag(20, 20, 25, 28);
  EXPECT_EQ(cut->CurrentFrame()->records.At(0)->x, 5);
  EXPECT_EQ(cut->CurrentFrame()->records.At(0)->y, 8);
  EXPECT_EQ(Place(), (Point{105, 58}));
  Release(0, 0, kControl);
  EXPECT_EQ(Place(), (Point{0, 0}));
}

TEST_F(LayerPositionTest, WorksOnABlankRecord) {
  cut->CurrentFrame()->ToggleBlank();
  Drag(20, 20, 25, 13);
  EXPECT_EQ(Place(), (Point{5, -7}));
}

TEST_F(LayerPositionTest, ARightClickTakesThePlaceInTheFrameBeforeWithWrapping) {
  SetPlaces({{1, 2}, {10, 20}, {30, 40}});
  cut->currentFrame = 1;
  RightClick(10, 10);
  EXPECT_EQ(Place(), (Point{1, 2}));
  cut->currentFrame = 0;
  RightClick(10, 10);
  EXPECT_EQ(Place(), (Point{30, 40}));
}

TEST_F(LayerPositionTest, CtrlAndRightClickTakesTheMiddleOfTheNeighbours) {
  SetPlaces({{1, 2}, {10, 20}, {30, 41}});
  cut->currentFrame = 1;
  RightClick(10, 10, kControl);
  EXPECT_EQ(Place(), (Point{15, 21}));
}

TEST_F(LayerPositionTest, AtTheFirstFrameTheMiddleIsOfItsOwnAndTheNextPlace) {
  SetPlaces({{4, 6}, {10, 20}, {30, 40}});
  cut->currentFrame = 0;
  RightClick(10, 10, kControl);
  EXPECT_EQ(Place(), (Point{7, 13}));
}

TEST_F(LayerPositionTest, AtTheLastFrameBothNeighboursAreTheFrameBefore) {
  SetPlaces({{4, 6}, {10, 20}, {30, 40}});
  cut->currentFrame = 2;
  RightClick(10, 10, kControl);
  EXPECT_EQ(Place(), (Point{10, 20}));
}

TEST_F(LayerPositionTest, ANeighbourWithoutTheRecordCountsAsTheOrigin) {
  SetPlaces({{4, 6}, {10, 20}});
  cut->AddFrame();
  cut->currentFrame = 1;
  RightClick(10, 10, kControl);
  EXPECT_EQ(Place(), (Point{2, 3}));
}

TEST_F(LayerPositionTest, ARightClickInADragChangesNothing) {
  cut->stateFlags = 0;
  Press(20, 20);
  Move(30, 30);
  RightClick(30, 30);
  EXPECT_EQ(Place(), (Point{0, 0}));
  EXPECT_EQ(cut->stateFlags, 0u);
  EXPECT_EQ(OverlaySize(), 0u);
}

TEST_F(LayerPositionTest, AFrameWithoutRecordsIsLeftAlone) {
  cut->AddFrame();
  cut->RepaintAll();
  Drag(10, 10, 20, 20);
  RightClick(10, 10);
  RightClick(10, 10, kControl);
  EXPECT_EQ(OverlaySize(), 0u);
}

TEST_F(LayerPositionTest, ALayerThatComesAndGoesLeavesNoBoxBehind) {
  cut->DeleteLayer(0);
  cut->RepaintAll();
  EXPECT_EQ(OverlaySize(), 0u);
  cut->AddLayer("B", 32, 32, nullptr);
  cut->AttachLayer(0, 8, 8);
  cut->RepaintAll();
  EXPECT_GT(OverlaySize(), 0u);
  cut->Pulse();
  EXPECT_EQ(OverlaySize(), 0u);
}

TEST_F(LayerPositionTest, AFrameStepInADragShowsTheBoxOfTheNewFrame) {
  SetPlaces({{4, 6}, {10, 20}});
  Press(20, 20);
  Move(30, 30);
  StepFrameBack();
  Move(31, 31);
  Release(31, 31);
  EXPECT_EQ(Place(), (Point{15, 17}));
  cut->Pulse();
  EXPECT_EQ(OverlaySize(), 0u);
}

TEST_F(LayerPositionTest, WithASnapGridADragMovesInItsSteps) {
  gridWidth = 8;
  gridHeight = 8;
  Drag(3, 3, 23, 14);
  EXPECT_EQ(Place(), (Point{24, 16}));
}

class ZoomToolTest : public testtools::ToolTest {};

TEST_F(ZoomToolTest, PressesOfTheTwoButtonsZoomInAndOutAndNothingElseDoes) {
  UseTool(kToolZoom);
  Press(10, 10);
  EXPECT_EQ(cut->zoomNumerator, 2);
  Release(10, 10);
  Move(20, 20);
  RightRelease(20, 20);
  cut->Pulse();
  EXPECT_EQ(cut->zoomNumerator, 2);
  Mouse(platform::kMessageRightDown, 10, 10);
  Mouse(platform::kMessageRightDown, 10, 10);
  EXPECT_EQ(cut->zoomNumerator, 1);
  EXPECT_EQ(cut->zoomDenominator, 2);
}

TEST_F(ZoomToolTest, WorksOnABlankRecord) {
  UseTool(kToolZoom);
  cut->CurrentFrame()->ToggleBlank();
  Press(10, 10);
  EXPECT_EQ(cut->zoomNumerator, 2);
}

}  // namespace
}  // namespace sorvel
