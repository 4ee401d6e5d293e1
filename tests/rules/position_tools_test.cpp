#include <gtest/gtest.h>

#include <utility>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"
#include "rules/rule_table.h"

namespace rules {
namespace {

using Json = nlohmann::json;
using Place = std::pair<int, int>;

Place PlaceOf(const Json& item) {
  return {item["x"].get<int>(), item["y"].get<int>()};
}

struct FramePosition : DrawingTest {
  FramePosition() {
    session.Dialog(kFrameSizeDialog, {{kFrameWidthEdit, "32"}, {kFrameHeightEdit, "24"}}).Command(kCommandFrameSize);
    session.Command(kToolFramePosition);
  }
  // A frame behind the current one, which becomes current, at this place.
  void AddFrameAt(int x, int y) {
    session.Command(kCommandAddFrame).LeftClick(1, 1, "ctrl");
    session.LeftDrag(16, 12, x, y);
  }
  Place Now() { return PlaceOf(session.Frame()); }
};

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
  session.Command(kCommandFirstFrame).RightClick(1, 1);
  EXPECT_EQ(Now(), (Place{30, 8}));
}

TEST_F(FramePosition, CtrlAndRightClickTakeTheMiddleOfTheNeighbours) {
  session.LeftDrag(0, 0, 4, 6);
  AddFrameAt(10, 20);
  AddFrameAt(31, 8);
  session.Command(kCommandPreviousFrame).RightClick(1, 1, "ctrl");
  EXPECT_EQ(Now(), (Place{17, 7}));
}

TEST_F(FramePosition, TheNeighboursWrapAtBothEnds) {
  session.LeftDrag(0, 0, 4, 6);
  AddFrameAt(10, 20);
  AddFrameAt(30, 8);
  session.RightClick(1, 1, "ctrl");
  EXPECT_EQ(Now(), (Place{7, 13}));
  session.Command(kCommandFirstFrame).RightClick(1, 1, "ctrl");
  EXPECT_EQ(Now(), (Place{8, 16}));
}

TEST_F(FramePosition, ARightClickDuringADragCopiesNothing) {
  AddFrameAt(10, 20);
  session.Press(10, 10).RightRelease(20, 20);
  EXPECT_EQ(Now(), (Place{10, 20}));
}

const Rules<FramePosition, "FramePosition"> kFramePositionRules = {
    {"ADragMovesTheFrame", Do().LeftDrag(10, 10, 15, 13), Has("cut/frame/x", 5, "cut/frame/y", 3)},
    {"TheReleaseGivesTheWay", Do().Press(10, 10).Move(40, 40), Has("cut/frame/x", 0, "cut/frame/y", 0),
     Do().Release(4, 12), Has("cut/frame/x", -6, "cut/frame/y", 2)},
    {"DragsAddUp", Do().LeftDrag(10, 10, 15, 13).LeftDrag(10, 10, 8, 11), Has("cut/frame/x", 3, "cut/frame/y", 4)},
    {"AReleaseWithoutAPressMovesNothing", Do().LeftDrag(10, 10, 15, 13).Release(30, 30),
     Has("cut/frame/x", 5, "cut/frame/y", 3)},
    {"CtrlCentresTheFrame", Do().LeftClick(3, 3, "ctrl"), Has("cut/frame/x", 16, "cut/frame/y", 12)},
    {"CtrlAtTheReleaseOfADragCentresTheFrame", Do().Press(10, 10).Move(20, 20).Release(20, 20, "ctrl"),
     Has("cut/frame/x", 16, "cut/frame/y", 12), Do().Release(40, 40), Has("cut/frame/x", 16, "cut/frame/y", 12)},
    {"ARightClickOnTheOnlyFrameChangesNothing", Do().LeftDrag(10, 10, 15, 13).RightClick(1, 1),
     Has("cut/frame/x", 5, "cut/frame/y", 3), Do().RightClick(1, 1, "ctrl"), Has("cut/frame/x", 5, "cut/frame/y", 3)},
    {"ARightClickCancelsTheDrag", Do().Press(10, 10).Move(20, 20).RightRelease(20, 20).Release(30, 30),
     Has("cut/frame/x", 0, "cut/frame/y", 0)},
    {"ADragMovesByTheGrid", Do().Grid(8, 8).LeftDrag(3, 5, 13, 20), Has("cut/frame/x", 16, "cut/frame/y", 8)},
    {"ABlankRecordStopsTheTool", Do().Command(kCommandBlankCell).LeftDrag(10, 10, 15, 13).LeftClick(3, 3, "ctrl"),
     Has("cut/frame/x", 0, "cut/frame/y", 0)},
    {"PositionsAreUnsigned", Do().LeftDrag(10, 10, -3, 12), Has("cut/frame/x", 65533 - 10, "cut/frame/y", 2)},
};

TEST_F(FramePosition, APulseShowsTheBoxOnABlankRecordToo) {
  session.Command(kCommandBlankCell).Command(kToolZoom);
  const PixelMatrix without = session.NowScreen();
  session.Command(kToolFramePosition);
  EXPECT_FALSE(session.NowScreen() == without);
}

class PositionBox : public DrawingTest, public testing::WithParamInterface<int> {};

TEST_P(PositionBox, ComesAndGoesWithTheTool) {
  session.Dialog(kFrameSizeDialog, {{kFrameWidthEdit, "32"}, {kFrameHeightEdit, "24"}}).Command(kCommandFrameSize);
  session.AddLayer("B", 20, 10);
  const PixelMatrix without = session.NowScreen();
  session.Command(GetParam()).Move(5, 5);
  const PixelMatrix with = session.NowScreen();
  EXPECT_FALSE(with == without);
  session.Move(9, 9);
  EXPECT_TRUE(session.NowScreen() == with);
  session.Command(kToolZoom);
  EXPECT_TRUE(session.NowScreen() == without);
}

TEST_P(PositionBox, FollowsTheDragAndIsTakenAwayByACancel) {
  session.Dialog(kFrameSizeDialog, {{kFrameWidthEdit, "32"}, {kFrameHeightEdit, "24"}}).Command(kCommandFrameSize);
  session.AddLayer("B", 20, 10);
  const PixelMatrix without = session.NowScreen();
  session.Command(GetParam()).Press(5, 5);
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
  EXPECT_TRUE(ViewShows(InkModel()));
}

struct LayerPosition : DrawingTest {
  LayerPosition() { session.Command(kToolLayerPosition); }
  Place Now() { return PlaceOf(session.CurrentRecord()); }
  // A frame behind the current one, which becomes current, with the record moved to this place.
  void AddFrameAt(int x, int y) {
    session.Command(kCommandAddFrame).LeftClick(1, 1, "ctrl");
    session.LeftDrag(0, 0, x, y);
  }
};

TEST_F(LayerPosition, OtherFramesKeepTheirPlace) {
  AddFrameAt(10, 20);
  session.Command(kCommandPreviousFrame);
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
  session.Command(kCommandFirstFrame).RightClick(1, 1);
  EXPECT_EQ(Now(), (Place{30, 8}));
}

TEST_F(LayerPosition, CtrlAndRightClickTakeTheMiddleOfTheNeighbours) {
  session.LeftDrag(0, 0, 4, 6);
  AddFrameAt(10, 20);
  AddFrameAt(31, 8);
  session.Command(kCommandPreviousFrame).RightClick(1, 1, "ctrl");
  EXPECT_EQ(Now(), (Place{17, 7}));
}

TEST_F(LayerPosition, AtTheFirstFrameItsOwnPlaceStandsForThePreviousOne) {
  session.LeftDrag(0, 0, 4, 6);
  AddFrameAt(10, 20);
  AddFrameAt(30, 8);
  session.Command(kCommandFirstFrame).RightClick(1, 1, "ctrl");
  EXPECT_EQ(Now(), (Place{7, 13}));
}

TEST_F(LayerPosition, AtTheLastFrameThePreviousPlaceStandsForTheNextOne) {
  session.LeftDrag(0, 0, 4, 6);
  AddFrameAt(10, 20);
  AddFrameAt(30, 8);
  session.RightClick(1, 1, "ctrl");
  EXPECT_EQ(Now(), (Place{10, 20}));
}

const Rules<LayerPosition, "LayerPosition"> kLayerPositionRules = {
    {"ADragMovesTheRecord", Do().LeftDrag(10, 10, 15, 13), Has("cut/frame/record/x", 5, "cut/frame/record/y", 3)},
    {"TheViewFollows", Do().FillArea(10, 10, 5, 5, 2).Command(kToolLayerPosition).LeftDrag(10, 10, 30, 13),
     Ink().Fill(30, 13, 5, 5, 2)},
    {"AReleaseWithoutAPressMovesNothing", Do().LeftDrag(10, 10, 15, 13).Release(30, 30),
     Has("cut/frame/record/x", 5, "cut/frame/record/y", 3)},
    {"CtrlSetsTheRecordToTheOrigin", Do().LeftDrag(10, 10, 15, 13).LeftClick(3, 3, "ctrl"),
     Has("cut/frame/record/x", 0, "cut/frame/record/y", 0)},
    {"CtrlAtTheReleaseOfADragEndsIt", Do().Press(10, 10).Release(20, 20, "ctrl").Release(30, 30),
     Has("cut/frame/record/x", 0, "cut/frame/record/y", 0)},
    {"ARightClickCancelsTheDrag", Do().Press(10, 10).Move(20, 20).RightRelease(20, 20).Release(30, 30),
     Has("cut/frame/record/x", 0, "cut/frame/record/y", 0)},
    {"ADragMovesByTheGrid", Do().Grid(8, 8).LeftDrag(3, 5, 13, 20),
     Has("cut/frame/record/x", 16, "cut/frame/record/y", 8)},
    {"ABlankRecordMovesAllTheSame", Do().Command(kCommandBlankCell).LeftDrag(10, 10, 15, 13),
     Has("cut/frame/record/x", 5, "cut/frame/record/y", 3)},
};

TEST_F(LayerPosition, TheCurrentRecordMovesAlone) {
  session.AddLayer("B", 64, 48).LeftDrag(10, 10, 15, 13);
  const Json records = session.Frame()["records"];
  EXPECT_EQ(PlaceOf(records[0]), (Place{0, 0}));
  EXPECT_EQ(PlaceOf(records[1]), (Place{5, 3}));
}

// Three frames of which the first lacks the record; the middle one is current.
struct MissingRecord : SessionTest {
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
};

const Rules<MissingRecord, "MissingRecord"> kMissingRecordRules = {
    {"CountsAsTheOriginForTheMiddle", Do().RightClick(1, 1, "ctrl"),
     Has("cut/frame/record/x", 15, "cut/frame/record/y", 4)},
    {"IsNotCopied", Do().RightClick(1, 1), Has("cut/frame/record/x", 10, "cut/frame/record/y", 20)},
};

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
  session.LeftDrag(0, 0, 4, 6).Command(kCommandAddFrame).LeftDrag(0, 0, 10, 10).Command(kToolFramePosition);
  session.LeftDrag(0, 0, 7, 9).Command(kToolLayerPosition).RightClick(1, 1);
  EXPECT_EQ(Now(), (Place{4, 6}));
}

TEST_F(FollowingLayer, TheMiddleIsTakenOfResolvedPositions) {
  session.LeftDrag(0, 0, 4, 6).Command(kCommandAddFrame).Command(kCommandAddFrame).Command(kToolFramePosition);
  session.LeftDrag(0, 0, 10, 20).Command(kToolLayerPosition).Command(kCommandPreviousFrame).RightClick(1, 1, "ctrl");
  // The resolved places of the neighbours are 20, 18 and 30, 38.
  EXPECT_EQ(Now(), (Place{9, 16}));
}

// A cut that has just been compiled: all marks are gone.
struct MarksOfPositions : DrawingTest {
  MarksOfPositions() {
    session.AddLayer("B", 64, 48);
    session.Command(kToolFramePosition).SaveCutAs("marks.cut");
    session.Command(kCommandPlay).Command(kCommandStop);
  }
  void ExpectTimingMark() {
    const Json cut = session.Cut();
    EXPECT_EQ(cut["modified"], true);
    EXPECT_EQ(cut["timingStale"], true);
    EXPECT_EQ(cut["imagesStale"], false);
  }
};

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

const Rules<MarksOfPositions, "MarksOfPositions"> kMarksOfPositionsRules = {
    {"CompilingClearsThem", Has("cut/modified", false, "cut/timingStale", false, "cut/imagesStale", false)},
    {"ACancelledDragMarksNothing", Do().Press(10, 10).RightRelease(20, 20), Has("cut/modified", false)},
};

}  // namespace
}  // namespace rules
