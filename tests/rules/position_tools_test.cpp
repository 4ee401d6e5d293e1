#include <gtest/gtest.h>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"
#include "rules/rule_table.h"

namespace rules {
namespace {

// A frame behind the current one, which becomes current, at this place.
ScriptSession AddFrameAt(int x, int y) {
  return Do().Command(kCommandAddFrame).LeftClick(1, 1, "ctrl").LeftDrag(16, 12, x, y);
}

// The same with the record moved to this place.
ScriptSession AddRecordAt(int x, int y) {
  return Do().Command(kCommandAddFrame).LeftClick(1, 1, "ctrl").LeftDrag(0, 0, x, y);
}

struct FramePosition : DrawingTest {
  FramePosition() {
    session.Dialog(kFrameSizeDialog, {{kFrameWidthEdit, "32"}, {kFrameHeightEdit, "24"}}).Command(kCommandFrameSize);
    session.Command(kToolFramePosition);
  }
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

const Rules<FramePosition, "FramePosition"> kFramePositionRules = {
    {"ARightClickTakesThePreviousFramesPlace", Do().LeftDrag(0, 0, 4, 6), AddFrameAt(10, 20),
     Has("cut/frame/x,y", "10 20"), Do().RightClick(1, 1), Has("cut/frame/x,y", "4 6")},
    {"BeforeTheFirstFrameComesTheLast", Do().LeftDrag(0, 0, 4, 6), AddFrameAt(10, 20), AddFrameAt(30, 8),
     Do().Command(kCommandFirstFrame).RightClick(1, 1), Has("cut/frame/x,y", "30 8")},
    {"CtrlAndRightClickTakeTheMiddleOfTheNeighbours", Do().LeftDrag(0, 0, 4, 6), AddFrameAt(10, 20), AddFrameAt(31, 8),
     Do().Command(kCommandPreviousFrame).RightClick(1, 1, "ctrl"), Has("cut/frame/x,y", "17 7")},
    {"TheNeighboursWrapAtBothEnds", Do().LeftDrag(0, 0, 4, 6), AddFrameAt(10, 20), AddFrameAt(30, 8),
     Do().RightClick(1, 1, "ctrl"), Has("cut/frame/x,y", "7 13"),
     Do().Command(kCommandFirstFrame).RightClick(1, 1, "ctrl"), Has("cut/frame/x,y", "8 16")},
    {"ARightClickDuringADragCopiesNothing", AddFrameAt(10, 20), Do().Press(10, 10).RightRelease(20, 20),
     Has("cut/frame/x,y", "10 20")},
    {"ADragMovesTheFrame", Do().LeftDrag(10, 10, 15, 13), Has("cut/frame/x,y", "5 3")},
    {"TheReleaseGivesTheWay", Do().Press(10, 10).Move(40, 40), Has("cut/frame/x,y", "0 0"), Do().Release(4, 12),
     Has("cut/frame/x,y", "-6 2")},
    {"DragsAddUp", Do().LeftDrag(10, 10, 15, 13).LeftDrag(10, 10, 8, 11), Has("cut/frame/x,y", "3 4")},
    {"AReleaseWithoutAPressMovesNothing", Do().LeftDrag(10, 10, 15, 13).Release(30, 30), Has("cut/frame/x,y", "5 3")},
    {"CtrlCentresTheFrame", Do().LeftClick(3, 3, "ctrl"), Has("cut/frame/x,y", "16 12")},
    {"CtrlAtTheReleaseOfADragCentresTheFrame", Do().Press(10, 10).Move(20, 20).Release(20, 20, "ctrl"),
     Has("cut/frame/x,y", "16 12"), Do().Release(40, 40), Has("cut/frame/x,y", "16 12")},
    {"ARightClickOnTheOnlyFrameChangesNothing", Do().LeftDrag(10, 10, 15, 13).RightClick(1, 1),
     Has("cut/frame/x,y", "5 3"), Do().RightClick(1, 1, "ctrl"), Has("cut/frame/x,y", "5 3")},
    {"ARightClickCancelsTheDrag", Do().Press(10, 10).Move(20, 20).RightRelease(20, 20).Release(30, 30),
     Has("cut/frame/x,y", "0 0")},
    {"ADragMovesByTheGrid", Do().Grid(8, 8).LeftDrag(3, 5, 13, 20), Has("cut/frame/x,y", "16 8")},
    {"ABlankRecordStopsTheTool", Do().Command(kCommandBlankCell).LeftDrag(10, 10, 15, 13).LeftClick(3, 3, "ctrl"),
     Has("cut/frame/x,y", "0 0")},
    {"PositionsAreUnsigned", Do().LeftDrag(10, 10, -3, 12), Has("cut/frame/x", 65533 - 10, "cut/frame/y", 2)},
    {"NoPixelOfTheCellChanges", Do().LeftDrag(10, 10, 15, 13), OnEmpty()},
};

struct LayerPosition : DrawingTest {
  LayerPosition() { session.Command(kToolLayerPosition); }
};

const Rules<LayerPosition, "LayerPosition"> kLayerPositionRules = {
    {"TheCurrentRecordMovesAlone", Do().AddLayer("B", 64, 48).LeftDrag(10, 10, 15, 13),
     Has("cut/frame/records/0/x,y", "0 0", "cut/frame/records/1/x,y", "5 3")},
    {"OtherFramesKeepTheirPlace", AddRecordAt(10, 20), Do().Command(kCommandPreviousFrame),
     Has("cut/frame/record/x,y", "0 0")},
    {"ARightClickTakesThePreviousFramesPlace", Do().LeftDrag(0, 0, 4, 6), AddRecordAt(10, 20), Do().RightClick(1, 1),
     Has("cut/frame/record/x,y", "4 6")},
    {"BeforeTheFirstFrameComesTheLast", Do().LeftDrag(0, 0, 4, 6), AddRecordAt(10, 20), AddRecordAt(30, 8),
     Do().Command(kCommandFirstFrame).RightClick(1, 1), Has("cut/frame/record/x,y", "30 8")},
    {"CtrlAndRightClickTakeTheMiddleOfTheNeighbours", Do().LeftDrag(0, 0, 4, 6), AddRecordAt(10, 20),
     AddRecordAt(31, 8), Do().Command(kCommandPreviousFrame).RightClick(1, 1, "ctrl"),
     Has("cut/frame/record/x,y", "17 7")},
    {"AtTheFirstFrameItsOwnPlaceStandsForThePreviousOne", Do().LeftDrag(0, 0, 4, 6), AddRecordAt(10, 20),
     AddRecordAt(30, 8), Do().Command(kCommandFirstFrame).RightClick(1, 1, "ctrl"),
     Has("cut/frame/record/x,y", "7 13")},
    {"AtTheLastFrameThePreviousPlaceStandsForTheNextOne", Do().LeftDrag(0, 0, 4, 6), AddRecordAt(10, 20),
     AddRecordAt(30, 8), Do().RightClick(1, 1, "ctrl"), Has("cut/frame/record/x,y", "10 20")},
    {"ADragMovesTheRecord", Do().LeftDrag(10, 10, 15, 13), Has("cut/frame/record/x,y", "5 3")},
    {"TheViewFollows", Do().FillArea(10, 10, 5, 5, 2).Command(kToolLayerPosition).LeftDrag(10, 10, 30, 13),
     Ink().Fill(30, 13, 5, 5, 2)},
    {"AReleaseWithoutAPressMovesNothing", Do().LeftDrag(10, 10, 15, 13).Release(30, 30),
     Has("cut/frame/record/x,y", "5 3")},
    {"CtrlSetsTheRecordToTheOrigin", Do().LeftDrag(10, 10, 15, 13).LeftClick(3, 3, "ctrl"),
     Has("cut/frame/record/x,y", "0 0")},
    {"CtrlAtTheReleaseOfADragEndsIt", Do().Press(10, 10).Release(20, 20, "ctrl").Release(30, 30),
     Has("cut/frame/record/x,y", "0 0")},
    {"ARightClickCancelsTheDrag", Do().Press(10, 10).Move(20, 20).RightRelease(20, 20).Release(30, 30),
     Has("cut/frame/record/x,y", "0 0")},
    {"ADragMovesByTheGrid", Do().Grid(8, 8).LeftDrag(3, 5, 13, 20), Has("cut/frame/record/x,y", "16 8")},
    {"ABlankRecordMovesAllTheSame", Do().Command(kCommandBlankCell).LeftDrag(10, 10, 15, 13),
     Has("cut/frame/record/x,y", "5 3")},
};

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
};

const Rules<MissingRecord, "MissingRecord"> kMissingRecordRules = {
    {"CountsAsTheOriginForTheMiddle", Do().RightClick(1, 1, "ctrl"), Has("cut/frame/record/x,y", "15 4")},
    {"IsNotCopied", Do().RightClick(1, 1), Has("cut/frame/record/x,y", "10 20")},
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

const Rules<FollowingLayer, "FollowingLayer"> kFollowingLayerRules = {
    {"ADragMovesTheRawPosition", Do().LeftDrag(10, 10, 15, 13), Has("cut/frame/record/x,y", "5 3")},
    {"CtrlSetsTheResolvedPosition", Do().LeftClick(3, 3, "ctrl"), Has("cut/frame/record/x,y", "-16 -12")},
    {"ARightClickCopiesTheRawPosition",
     Do().LeftDrag(0, 0, 4, 6).Command(kCommandAddFrame).LeftDrag(0, 0, 10, 10).Command(kToolFramePosition),
     Do().LeftDrag(0, 0, 7, 9).Command(kToolLayerPosition).RightClick(1, 1), Has("cut/frame/record/x,y", "4 6")},
    {"TheMiddleIsTakenOfResolvedPositions",
     Do().LeftDrag(0, 0, 4, 6).Commands({kCommandAddFrame, kCommandAddFrame, kToolFramePosition}),
     Do().LeftDrag(0, 0, 10, 20).Command(kToolLayerPosition).Command(kCommandPreviousFrame).RightClick(1, 1, "ctrl"),
     // The resolved places of the neighbours are 20, 18 and 30, 38.
     Has("cut/frame/record/x,y", "9 16")},
};

// A cut that has just been compiled: all marks are gone.
struct MarksOfPositions : DrawingTest {
  MarksOfPositions() {
    session.AddLayer("B", 64, 48);
    session.Command(kToolFramePosition).SaveCutAs("marks.cut");
    session.Command(kCommandPlay).Command(kCommandStop);
  }
};

const Rules<MarksOfPositions, "MarksOfPositions"> kMarksOfPositionsRules = {
    {"AFrameDragMarksTheTiming", Do().LeftDrag(10, 10, 15, 13), Has("cut/marks", "modified timingStale")},
    {"CentringTheFrameMarksTheTiming", Do().LeftClick(10, 10, "ctrl"), Has("cut/marks", "modified timingStale")},
    {"CopyingAFramePlaceMarksTheTiming", Do().RightClick(10, 10), Has("cut/marks", "modified timingStale")},
    {"ALayerDragMarksTheTiming", Do().Command(kToolLayerPosition).LeftDrag(10, 10, 15, 13),
     Has("cut/marks", "modified timingStale")},
    {"ALayerSetToTheOriginMarksTheTiming", Do().Command(kToolLayerPosition).LeftClick(10, 10, "ctrl"),
     Has("cut/marks", "modified timingStale")},
    {"CompilingClearsThem", Has("cut/modified", false, "cut/timingStale", false, "cut/imagesStale", false)},
    {"ACancelledDragMarksNothing", Do().Press(10, 10).RightRelease(20, 20), Has("cut/modified", false)},
};

}  // namespace
}  // namespace rules
