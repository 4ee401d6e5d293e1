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

TEST_F(FramePositionTest, TheBoxShowsTheNewPlaceAfterARightClick) {
  SetPlaces({{1, 2}, {10, 20}});
  cut->currentFrame = 1;
  RightClick(10, 10);
  cut->Pulse();
  EXPECT_EQ(OverlaySize(), 0u);
  cut->Pulse();
  EXPECT_GT(OverlaySize(), 0u);
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

TEST_F(FramePositionTest, TheBoxComesBackWithTheToolAfterASinglePulse) {
  cut->Pulse();
  UseTool(kToolFill);
  ASSERT_EQ(OverlaySize(), 0u);
  UseTool(kToolFramePosition);
  EXPECT_GT(OverlaySize(), 0u);
}

// A new window may lie where one that is gone lay in memory.
TEST_F(FramePositionTest, TheFirstPulseOfAWindowShowsTheBoxWhereverTheLastWindowLay) {
  ASSERT_GT(OverlaySize(), 0u);
  host.toolbox->Forget(cut);
  cut->RepaintArea(0, 0, kSide, kSide, true);
  ASSERT_EQ(OverlaySize(), 0u);
  cut->Pulse();
  EXPECT_GT(OverlaySize(), 0u);
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

}  // namespace
}  // namespace sorvel
