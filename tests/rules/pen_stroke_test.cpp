#include <gtest/gtest.h>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"
#include "rules/rule_table.h"

namespace rules {
namespace {

using PenStroke = DrawingTest;

TEST_F(PenStroke, HoveringKeepsTheUndoRect) {
  session.LeftClick(10, 10);
  const Area before = session.NowUndoRect();
  session.Move(40, 40);
  EXPECT_EQ(session.NowUndoRect(), before);
}

const Rules<DrawingTest, "PenStroke"> kPenStrokeRules = {
    {"AStepRoundACornerDrawsADiagonal", Do().Press(10, 10).Move(10, 11).Move(11, 11).Release(11, 11),
     Ink().Set(10, 10, 8).Set(11, 11, 8)},
    {"WithoutMuraRemovalTheCornerIsDrawn",
     Do().Command(kCommandMuraRemoval).Press(10, 10).Move(10, 11).Move(11, 11).Release(11, 11),
     Ink().Set(10, 10, 8).Set(10, 11, 8).Set(11, 11, 8)},
    {"ACornerFromTheSideIsTakenOutToo", Do().Press(20, 20).Move(19, 20).Move(19, 19).Release(19, 19),
     Ink().Set(20, 20, 8).Set(19, 19, 8)},
    {"ACornerStepsBackByOnePixelAlone", Do().Press(20, 20).Move(15, 20).Move(15, 15).Release(15, 15),
     Ink().Line(20, 20, 16, 20).Line(16, 20, 15, 15)},
    {"ACornerUnderneathStepsBackUpwards", Do().Press(20, 20).Move(20, 26).Move(26, 26).Release(26, 26),
     Ink().Line(20, 20, 20, 25).Line(20, 25, 26, 26)},
    {"ACornerAboveStepsBackDownwards", Do().Press(20, 20).Move(20, 14).Move(26, 14).Release(26, 14),
     Ink().Line(20, 20, 20, 15).Line(20, 15, 26, 14)},
    {"ACornerAtTheRightStepsBackToTheLeft", Do().Press(20, 20).Move(26, 20).Move(26, 26).Release(26, 26),
     Ink().Line(20, 20, 25, 20).Line(25, 20, 26, 26)},
    {"ASlantedStepIsNoCorner", Do().Press(20, 20).Move(20, 26).Move(26, 27).Release(26, 27),
     Ink().Line(20, 20, 20, 26).Line(20, 26, 26, 27)},
    {"TheLastStretchWaitsForTheRelease", Do().Press(10, 10).Move(20, 12), Ink().Set(10, 10, 8), Do().Release(20, 12),
     Ink().Line(10, 10, 20, 12)},
    {"APressStampsWithoutTurningIntoLineBlack", Do().Press(10, 10), Has("pixel/10/10", 1)},
    {"AClickIsStampedAgainAsALineAtTheRelease", Do().LeftClick(10, 10), Has("pixel/10/10", 8)},
    {"AClickWithoutMuraRemovalStampsOnce", Do().Command(kCommandMuraRemoval).LeftClick(10, 10), Has("pixel/10/10", 1)},
    {"APressSetsTheUndoRectToThePenBlock", Do().Press(10, 12), Has("cut/undoRect", Area{6, 8, 8, 8})},
    {"EachSegmentGrowsTheUndoRect", Do().Command(kCommandMuraRemoval).Press(10, 10).Move(20, 15),
     Has("cut/undoRect", Area{6, 6, 19, 14}), Do().Move(18, 30), Has("cut/undoRect", Area{6, 6, 19, 29})},
    {"TheDelayedTailGrowsTheUndoRectAtTheRelease", Do().Press(10, 10).Move(20, 15),
     Has("cut/undoRect", Area{6, 6, 9, 9}), Do().Release(20, 15), Has("cut/undoRect", Area{6, 6, 19, 14})},
    {"AStrokeIsOneUndoStep",
     Do().DrawInkLine(40, 5, 50, 5).Command(kToolFreePen).LeftDrag(10, 10, 20, 30).Command(kCommandUndo),
     Ink().Line(40, 5, 50, 5), Do().Command(kCommandUndo), Ink().Line(10, 10, 20, 30)},
    {"APulseLetsTheStrokeGoOn", Do().Command(kCommandMuraRemoval).Press(10, 10).Repaint().Move(20, 10),
     Ink().Line(10, 10, 20, 10)},
    {"MovesAfterTheReleaseDrawNothing", Do().LeftClick(10, 10).Move(30, 30).Repaint(), Ink().Set(10, 10, 8)},
    {"PositionsAreSigned", Do().Command(kCommandMuraRemoval).Press(5, 10).Move(-4, 10), Ink().Line(0, 10, 5, 10)},
    {"ADoubleClickMessageIsNoPress", Do().Mouse("ldblclk", 10, 10).Mouse("lup", 10, 10).Command(kToolFill), Ink()},
    {"LayerPositionMovesThePointIntoTheLayer",
     Do().Command(kToolLayerPosition).LeftDrag(10, 10, 15, 13).Command(kToolFreePen).Press(20, 20),
     Has("pixel/20/20", 1, "cut/undoRect", Area{11, 13, 8, 8})},
    {"ABlankRecordTakesNoInk", Do().Command(kCommandBlankCell).LeftDrag(10, 10, 20, 20).Command(kCommandBlankCell),
     Ink()},
    {"AToneIsDrawnAsADither", Do().Pick(6, 1).PickSize(7).Command(kCommandMuraRemoval).LeftDrag(10, 10, 40, 22),
     Ink().Line(10, 10, 40, 22, {.shape = 14, .tone = 6, .colorA = 1, .colorB = 2})},
};

// Half size: one window pixel is two cut pixels, and the client is as large as the shrunken picture.
struct HalfSize : DrawingTest {
  HalfSize() {
    session.Command(kToolZoom).RightClick(1, 1);
    session.Line("client 32 24").Command(kToolFreePen);
  }
};

const Rules<HalfSize, "HalfSize"> kHalfSizeRules = {
    {"CornersAreJudgedInWindowPixels", Do().Press(10, 10).Move(10, 11).Move(11, 11).Release(11, 11),
     Ink().Line(20, 20, 20, 20).Line(20, 20, 22, 22)},
    {"ACornerStepsBackByAWindowPixel", Do().Press(10, 10).Move(10, 15).Move(15, 15).Release(15, 15),
     Ink().Line(20, 20, 20, 28).Line(20, 28, 30, 30)},
};

}  // namespace
}  // namespace rules
