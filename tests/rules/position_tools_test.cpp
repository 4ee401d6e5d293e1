#include <gtest/gtest.h>

#include <utility>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"

namespace rules {
namespace {

using Json = nlohmann::json;
using Place = std::pair<int, int>;

Place PlaceOf(const Json& item) {
  return {item["x"].get<int>(), item["y"].get<int>()};
}

struct FramePosition : testing::Test {
  FramePosition() {
    session.Dialog(kFrameSizeDialog, {{kFrameWidthEdit, "32"}, {kFrameHeightEdit, "24"}}).Command(kCommandFrameSize);
    session.Command(kToolFramePosition);
  }
  // A frame behind the current one, which becomes current, at this place.
  void AddFrameAt(int x, int y) {
    session.Command(kCommandAddFrame).LeftClick(1, 1, "ctrl");
    session.LeftDrag(16, 12, x, y);
  }
  Place Now() { return PlaceOf(session.NowFrame()); }
  DrawingSession session;
};

TEST_F(FramePosition, ADragMovesTheFrame) {
  session.LeftDrag(10, 10, 15, 13);
  EXPECT_EQ(Now(), (Place{5, 3}));
}

TEST_F(FramePosition, TheReleaseGivesTheWay) {
  session.Press(10, 10);
  session.Move(40, 40);
  EXPECT_EQ(Now(), (Place{0, 0}));
  session.Release(4, 12);
  EXPECT_EQ(Now(), (Place{-6, 2}));
}

TEST_F(FramePosition, DragsAddUp) {
  session.LeftDrag(10, 10, 15, 13);
  session.LeftDrag(10, 10, 8, 11);
  EXPECT_EQ(Now(), (Place{3, 4}));
}

TEST_F(FramePosition, AReleaseWithoutAPressMovesNothing) {
  session.LeftDrag(10, 10, 15, 13);
  session.Release(30, 30);
  EXPECT_EQ(Now(), (Place{5, 3}));
}

TEST_F(FramePosition, CtrlCentresTheFrame) {
  session.LeftClick(3, 3, "ctrl");
  EXPECT_EQ(Now(), (Place{16, 12}));
}

TEST_F(FramePosition, CtrlAtTheReleaseOfADragCentresTheFrame) {
  session.Press(10, 10);
  session.Move(20, 20);
  session.Release(20, 20, "ctrl");
  EXPECT_EQ(Now(), (Place{16, 12}));
  session.Release(40, 40);
  EXPECT_EQ(Now(), (Place{16, 12}));
}

TEST_F(FramePosition, ARightClickOnTheOnlyFrameChangesNothing) {
  session.LeftDrag(10, 10, 15, 13);
  session.RightClick(1, 1);
  EXPECT_EQ(Now(), (Place{5, 3}));
  session.RightClick(1, 1, "ctrl");
  EXPECT_EQ(Now(), (Place{5, 3}));
}

TEST_F(FramePosition, ARightClickTakesThePreviousFramesPlace) {
  session.LeftDrag(0, 0, 4, 6);
  AddFrameAt(10, 20);
  EXPECT_EQ(Now(), (Place{10, 20}));
  session.RightClick(1, 1);
  EXPECT_EQ(Now(), (Place{4, 6}));
}

TEST_F(FramePosition, BeforeTheFirstFrameComesTheLast) {
  session.LeftDrag(0, 0, 4, 6);
  AddFrameAt(10, 20);
  AddFrameAt(30, 8);
  session.Command(kCommandFirstFrame);
  session.RightClick(1, 1);
  EXPECT_EQ(Now(), (Place{30, 8}));
}

TEST_F(FramePosition, CtrlAndRightClickTakeTheMiddleOfTheNeighbours) {
  session.LeftDrag(0, 0, 4, 6);
  AddFrameAt(10, 20);
  AddFrameAt(31, 8);
  session.Command(kCommandPreviousFrame);
  session.RightClick(1, 1, "ctrl");
  EXPECT_EQ(Now(), (Place{17, 7}));
}

TEST_F(FramePosition, TheNeighboursWrapAtBothEnds) {
  session.LeftDrag(0, 0, 4, 6);
  AddFrameAt(10, 20);
  AddFrameAt(30, 8);
  session.RightClick(1, 1, "ctrl");
  EXPECT_EQ(Now(), (Place{7, 13}));
  session.Command(kCommandFirstFrame);
  session.RightClick(1, 1, "ctrl");
  EXPECT_EQ(Now(), (Place{8, 16}));
}

TEST_F(FramePosition, ARightClickCancelsTheDrag) {
  session.Press(10, 10);
  session.Move(20, 20);
  session.RightRelease(20, 20);
  session.Release(30, 30);
  EXPECT_EQ(Now(), (Place{0, 0}));
}

TEST_F(FramePosition, ARightClickDuringADragCopiesNothing) {
  AddFrameAt(10, 20);
  session.Press(10, 10);
  session.RightRelease(20, 20);
  EXPECT_EQ(Now(), (Place{10, 20}));
}

TEST_F(FramePosition, ADragMovesByTheGrid) {
  session.Grid(8, 8);
  session.LeftDrag(3, 5, 13, 20);
  EXPECT_EQ(Now(), (Place{16, 8}));
}

TEST_F(FramePosition, ABlankRecordStopsTheTool) {
  session.Command(kCommandBlankCell);
  session.LeftDrag(10, 10, 15, 13);
  session.LeftClick(3, 3, "ctrl");
  EXPECT_EQ(Now(), (Place{0, 0}));
}

TEST_F(FramePosition, PositionsAreUnsigned) {
  session.LeftDrag(10, 10, -3, 12);
  EXPECT_EQ(Now(), (Place{65533 - 10, 2}));
}

TEST_F(FramePosition, APulseShowsTheBoxOnABlankRecordToo) {
  session.Command(kCommandBlankCell).Command(kToolZoom);
  const PixelMatrix without = session.NowScreen();
  session.Command(kToolFramePosition);
  EXPECT_FALSE(session.NowScreen() == without);
}

class PositionBox : public testing::TestWithParam<int> {};

TEST_P(PositionBox, ComesAndGoesWithTheTool) {
  DrawingSession session;
  session.Dialog(kFrameSizeDialog, {{kFrameWidthEdit, "32"}, {kFrameHeightEdit, "24"}}).Command(kCommandFrameSize);
  session.AddLayer("B", 20, 10);
  const PixelMatrix without = session.NowScreen();
  session.Command(GetParam());
  session.Move(5, 5);
  const PixelMatrix with = session.NowScreen();
  EXPECT_FALSE(with == without);
  session.Move(9, 9);
  EXPECT_TRUE(session.NowScreen() == with);
  session.Command(kToolZoom);
  EXPECT_TRUE(session.NowScreen() == without);
}

TEST_P(PositionBox, FollowsTheDragAndIsTakenAwayByACancel) {
  DrawingSession session;
  session.Dialog(kFrameSizeDialog, {{kFrameWidthEdit, "32"}, {kFrameHeightEdit, "24"}}).Command(kCommandFrameSize);
  session.AddLayer("B", 20, 10);
  const PixelMatrix without = session.NowScreen();
  session.Command(GetParam());
  session.Press(5, 5);
  const PixelMatrix before = session.NowScreen();
  session.Move(15, 15);
  const PixelMatrix dragged = session.NowScreen();
  EXPECT_FALSE(dragged == before);
  EXPECT_FALSE(dragged == without);
  session.RightRelease(15, 15);
  EXPECT_TRUE(session.NowScreen() == without);
}

INSTANTIATE_TEST_SUITE_P(All, PositionBox, testing::Values(kToolFramePosition, kToolLayerPosition));

TEST_F(FramePosition, NoPixelOfTheCellChanges) {
  session.LeftDrag(10, 10, 15, 13);
  EXPECT_TRUE(Shows(session.NowView(), InkModel()));
}

struct LayerPosition : testing::Test {
  LayerPosition() { session.Command(kToolLayerPosition); }
  Place Now() { return PlaceOf(session.NowRecord()); }
  // A frame behind the current one, which becomes current, with the record moved to this place.
  void AddFrameAt(int x, int y) {
    session.Command(kCommandAddFrame).LeftClick(1, 1, "ctrl");
    session.LeftDrag(0, 0, x, y);
  }
  DrawingSession session;
};

TEST_F(LayerPosition, ADragMovesTheRecord) {
  session.LeftDrag(10, 10, 15, 13);
  EXPECT_EQ(Now(), (Place{5, 3}));
}

TEST_F(LayerPosition, TheViewFollows) {
  session.FillArea(10, 10, 5, 5, 2);
  session.Command(kToolLayerPosition);
  session.LeftDrag(10, 10, 30, 13);
  InkModel model;
  model.Fill(30, 13, 5, 5, 2);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(LayerPosition, AReleaseWithoutAPressMovesNothing) {
  session.LeftDrag(10, 10, 15, 13);
  session.Release(30, 30);
  EXPECT_EQ(Now(), (Place{5, 3}));
}

TEST_F(LayerPosition, OtherFramesKeepTheirPlace) {
  AddFrameAt(10, 20);
  session.Command(kCommandPreviousFrame);
  EXPECT_EQ(Now(), (Place{0, 0}));
}

TEST_F(LayerPosition, CtrlSetsTheRecordToTheOrigin) {
  session.LeftDrag(10, 10, 15, 13);
  session.LeftClick(3, 3, "ctrl");
  EXPECT_EQ(Now(), (Place{0, 0}));
}

TEST_F(LayerPosition, CtrlAtTheReleaseOfADragEndsIt) {
  session.Press(10, 10);
  session.Release(20, 20, "ctrl");
  session.Release(30, 30);
  EXPECT_EQ(Now(), (Place{0, 0}));
}

TEST_F(LayerPosition, ARightClickTakesThePreviousFramesPlace) {
  session.LeftDrag(0, 0, 4, 6);
  AddFrameAt(10, 20);
  session.RightClick(1, 1);
  EXPECT_EQ(Now(), (Place{4, 6}));
}

TEST_F(LayerPosition, BeforeTheFirstFrameComesTheLast) {
  session.LeftDrag(0, 0, 4, 6);
  AddFrameAt(10, 20);
  AddFrameAt(30, 8);
  session.Command(kCommandFirstFrame);
  session.RightClick(1, 1);
  EXPECT_EQ(Now(), (Place{30, 8}));
}

TEST_F(LayerPosition, CtrlAndRightClickTakeTheMiddleOfTheNeighbours) {
  session.LeftDrag(0, 0, 4, 6);
  AddFrameAt(10, 20);
  AddFrameAt(31, 8);
  session.Command(kCommandPreviousFrame);
  session.RightClick(1, 1, "ctrl");
  EXPECT_EQ(Now(), (Place{17, 7}));
}

TEST_F(LayerPosition, AtTheFirstFrameItsOwnPlaceStandsForThePreviousOne) {
  session.LeftDrag(0, 0, 4, 6);
  AddFrameAt(10, 20);
  AddFrameAt(30, 8);
  session.Command(kCommandFirstFrame);
  session.RightClick(1, 1, "ctrl");
  EXPECT_EQ(Now(), (Place{7, 13}));
}

TEST_F(LayerPosition, AtTheLastFrameThePreviousPlaceStandsForTheNextOne) {
  session.LeftDrag(0, 0, 4, 6);
  AddFrameAt(10, 20);
  AddFrameAt(30, 8);
  session.RightClick(1, 1, "ctrl");
  EXPECT_EQ(Now(), (Place{10, 20}));
}

TEST_F(LayerPosition, ARightClickCancelsTheDrag) {
  session.Press(10, 10);
  session.Move(20, 20);
  session.RightRelease(20, 20);
  session.Release(30, 30);
  EXPECT_EQ(Now(), (Place{0, 0}));
}

TEST_F(LayerPosition, ADragMovesByTheGrid) {
  session.Grid(8, 8);
  session.LeftDrag(3, 5, 13, 20);
  EXPECT_EQ(Now(), (Place{16, 8}));
}

TEST_F(LayerPosition, ABlankRecordMovesAllTheSame) {
  session.Command(kCommandBlankCell);
  session.LeftDrag(10, 10, 15, 13);
  EXPECT_EQ(Now(), (Place{5, 3}));
}

TEST_F(LayerPosition, TheCurrentRecordMovesAlone) {
  session.AddLayer("B", 64, 48);
  session.LeftDrag(10, 10, 15, 13);
  const Json records = session.NowFrame()["records"];
  EXPECT_EQ(PlaceOf(records[0]), (Place{0, 0}));
  EXPECT_EQ(PlaceOf(records[1]), (Place{5, 3}));
}

// Three frames of which the first lacks the record; the middle one is current.
struct MissingRecord : testing::Test {
  MissingRecord() {
    CutFile file;
    file.width = 64;
    file.height = 48;
    file.layers.push_back({.name = "A", .cells = {1}});
    file.frames.push_back({});
    file.frames.push_back({.records = {{.x = 10, .y = 20}}});
    file.frames.push_back({.records = {{.x = 30, .y = 8}}});
    session.Line("client 64 48").OpenCut("missing.cut", file);
    session.Command(kCommandPreviousFrame).Command(kToolLayerPosition);
  }
  Place Now() {
    const int state = session.State();
    session.Run();
    return PlaceOf(session.CurrentRecord(state));
  }
  ScriptSession session;
};

TEST_F(MissingRecord, CountsAsTheOriginForTheMiddle) {
  session.RightClick(1, 1, "ctrl");
  EXPECT_EQ(Now(), (Place{15, 4}));
}

TEST_F(MissingRecord, IsNotCopied) {
  session.RightClick(1, 1);
  EXPECT_EQ(Now(), (Place{10, 20}));
}

// The layer follows the frame, which stands at 16, 12.
struct FollowingLayer : LayerPosition {
  FollowingLayer() {
    session.Dialog(kFrameSizeDialog, {{kFrameWidthEdit, "32"}, {kFrameHeightEdit, "24"}}).Command(kCommandFrameSize);
    session.Command(kToolFramePosition).LeftClick(1, 1, "ctrl");
    session.Dialog(kLayerDialog, {{kLayerFollowCheck, "on"}}).Command(kCommandLayerProperties);
    session.Command(kToolLayerPosition);
  }
};

TEST_F(FollowingLayer, ADragMovesTheRawPosition) {
  session.LeftDrag(10, 10, 15, 13);
  EXPECT_EQ(Now(), (Place{5, 3}));
}

TEST_F(FollowingLayer, CtrlSetsTheResolvedPosition) {
  session.LeftClick(3, 3, "ctrl");
  EXPECT_EQ(Now(), (Place{-16, -12}));
}

TEST_F(FollowingLayer, ARightClickCopiesTheRawPosition) {
  session.LeftDrag(0, 0, 4, 6);
  session.Command(kCommandAddFrame);
  session.LeftDrag(0, 0, 10, 10);
  session.Command(kToolFramePosition).LeftDrag(0, 0, 7, 9).Command(kToolLayerPosition);
  session.RightClick(1, 1);
  EXPECT_EQ(Now(), (Place{4, 6}));
}

TEST_F(FollowingLayer, TheMiddleIsTakenOfResolvedPositions) {
  session.LeftDrag(0, 0, 4, 6);
  session.Command(kCommandAddFrame).Command(kCommandAddFrame);
  session.Command(kToolFramePosition).LeftDrag(0, 0, 10, 20).Command(kToolLayerPosition);
  session.Command(kCommandPreviousFrame);
  session.RightClick(1, 1, "ctrl");
  // The resolved places of the neighbours are 20, 18 and 30, 38.
  EXPECT_EQ(Now(), (Place{9, 16}));
}

// A cut that has just been compiled: all marks are gone.
struct MarksOfPositions : testing::Test {
  MarksOfPositions() {
    session.AddLayer("B", 64, 48);
    session.Command(kToolFramePosition).SaveCutAs("marks.cut");
    session.Command(kCommandPlay).Command(kCommandStop);
  }
  void ExpectTimingMark() {
    const Json cut = session.NowCut();
    EXPECT_EQ(cut["modified"], true);
    EXPECT_EQ(cut["timingStale"], true);
    EXPECT_EQ(cut["imagesStale"], false);
  }
  DrawingSession session;
};

TEST_F(MarksOfPositions, CompilingClearsThem) {
  const Json cut = session.NowCut();
  EXPECT_EQ(cut["modified"], false);
  EXPECT_EQ(cut["timingStale"], false);
  EXPECT_EQ(cut["imagesStale"], false);
}

TEST_F(MarksOfPositions, AFrameDragMarksTheTiming) {
  session.LeftDrag(10, 10, 15, 13);
  ExpectTimingMark();
}

TEST_F(MarksOfPositions, CentringTheFrameMarksTheTiming) {
  session.LeftClick(10, 10, "ctrl");
  ExpectTimingMark();
}

TEST_F(MarksOfPositions, CopyingAFramePlaceMarksTheTiming) {
  session.RightClick(10, 10);
  ExpectTimingMark();
}

TEST_F(MarksOfPositions, ALayerDragMarksTheTiming) {
  session.Command(kToolLayerPosition).LeftDrag(10, 10, 15, 13);
  ExpectTimingMark();
}

TEST_F(MarksOfPositions, ALayerSetToTheOriginMarksTheTiming) {
  session.Command(kToolLayerPosition).LeftClick(10, 10, "ctrl");
  ExpectTimingMark();
}

TEST_F(MarksOfPositions, ACancelledDragMarksNothing) {
  session.Press(10, 10);
  session.RightRelease(20, 20);
  EXPECT_EQ(session.NowCut()["modified"], false);
}

}  // namespace
}  // namespace rules
