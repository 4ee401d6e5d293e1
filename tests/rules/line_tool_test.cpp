#include <gtest/gtest.h>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"
#include "rules/rule_table.h"

namespace rules {
namespace {

constexpr unsigned paper = 0xE1FFFF;
constexpr unsigned invertedPaper = 0x1E0000;

struct LineTool : DrawingTest {
  LineTool() { session.Command(kToolLine); }
};

TEST_F(LineTool, TheBandFollowsTheMouse) {
  session.Press(10, 10).Move(30, 10).Move(10, 30);
  const PixelMatrix screen = session.NowScreen();
  EXPECT_EQ(screen.At(20, 10), paper);
  EXPECT_EQ(screen.At(10, 20), invertedPaper);
}

const Rules<LineTool, "LineTool"> kLineToolRules = {
    {"NothingIsDrawnBeforeTheRelease", Do().Press(10, 10).Move(30, 20).Repaint(), Ink()},
    {"TheLineRunsFromThePressToTheRelease", Do().LeftDrag(10, 10, 30, 20), Has("pixels/8", 21), Do().Repaint(),
     Ink().Line(10, 10, 30, 20)},
    {"ADragEndsAtItsRelease", Do().LeftDrag(10, 10, 30, 20).LeftDrag(50, 40, 50, 30).Repaint(),
     Ink().Line(10, 10, 30, 20).Line(50, 40, 50, 30)},
    {"AClickStampsOnce", Do().LeftClick(10, 10), Ink().Set(10, 10, 8)},
    {"TheUndoRectIsTheReachOfTheSegment", Do().Press(30, 10).Release(20, 15), Has("cut/undoRect", Area{16, 6, 19, 14})},
    {"APressForgetsTheUndoRectOfTheLineBefore", Do().LeftDrag(10, 10, 20, 20).Press(40, 30),
     Has("cut/undoRect", Area{0, 0, 0, 0})},
    {"ARightClickCancelsTheDrag", Do().Press(10, 10).Move(30, 20).RightRelease(30, 20).Repaint(), Ink()},
    {"ACancelledDragLeavesTheUndoCopyOfItsPress",
     Do().LeftDrag(40, 5, 50, 5).Press(10, 10).RightRelease(30, 20).Command(kCommandUndo), Ink().Line(40, 5, 50, 5)},
    {"CtrlAtTheReleaseOfADragDrawsNothing", Do().Press(10, 10).Release(30, 20, "ctrl"), Ink()},
    {"CtrlAtTheReleaseOfADragEndsIt", Do().Press(10, 10).Release(30, 20, "ctrl").LeftClick(50, 40),
     Ink().Set(50, 40, 8)},
    {"ACtrlClickBeginsAChainWithoutALine", Do().LeftClick(10, 10, "ctrl"), Ink()},
    {"EachClickOfAChainDrawsFromTheLastOne", Do().LeftClick(10, 10, "ctrl").LeftClick(30, 20).LeftClick(20, 40),
     Ink().Line(10, 10, 30, 20).Line(30, 20, 20, 40)},
    {"ACtrlClickInAChainSkips",
     Do().LeftClick(10, 10, "ctrl").LeftClick(30, 20).LeftClick(50, 20, "ctrl").LeftClick(50, 40),
     Ink().Line(10, 10, 30, 20).Line(50, 20, 50, 40)},
    {"ARightClickEndsTheChain", Do().LeftClick(10, 10, "ctrl").LeftClick(30, 20).RightClick(40, 40).LeftClick(50, 40),
     Ink().Line(10, 10, 30, 20).Set(50, 40, 8)},
    {"AChainIsOneUndoStep",
     Do().LeftDrag(40, 5, 50, 5).LeftClick(10, 10, "ctrl").LeftClick(30, 20).LeftClick(20, 40).Command(kCommandUndo),
     Ink().Line(40, 5, 50, 5)},
    {"TheUndoRectGrowsWithEverySegmentOfAChain", Do().LeftClick(10, 10, "ctrl").LeftClick(20, 10).LeftClick(20, 20),
     Has("cut/undoRect", Area{6, 6, 19, 19})},
    {"ASkipDoesNotGrowTheUndoRect", Do().LeftClick(10, 10, "ctrl").LeftClick(20, 10).LeftClick(50, 40, "ctrl"),
     Has("cut/undoRect", Area{6, 6, 19, 9})},
    {"APulseEndsTheChain", Do().LeftClick(10, 10, "ctrl").Repaint().LeftClick(50, 40), Ink().Set(50, 40, 8)},
    {"BothEndsSnapToTheGrid", Do().Grid(8, 8).Press(13, 13).Release(27, 16), Ink().Line(16, 16, 24, 16)},
    {"PositionsAreUnsigned", Do().Press(10, 10).Release(-3, 10), Ink().Line(10, 10, 63, 10)},
    {"TheBandInvertsTheScreenAndLeavesTheView", Do().Press(10, 10).Move(30, 10),
     Has("screen/20/10", invertedPaper, "pixel/20/10", 0)},
    {"ACancelledDragTakesTheBandAway", Do().Press(10, 10).Move(30, 10).RightRelease(30, 10),
     Has("screen/20/10", paper)},
    {"APulseTakesTheBandAway", Do().Press(10, 10).Move(30, 10).Command(kToolFill), Has("screen/20/10", paper)},
    {"ALayerElsewhereGetsTheLineUnderTheMouse",
     Do().Command(kToolLayerPosition).LeftDrag(10, 10, 15, 13).Command(kToolLine).Press(20, 20).Release(40, 25),
     Has("cut/undoRect", Area{11, 13, 29, 14}), Ink().Line(20, 20, 40, 25)},
    {"AtDoubleSizeTheEndsAreTakenBackToTheCell",
     Do().Command(kToolZoom).Press(32, 24).Release(32, 24).Line("client 128 96").Command(kToolLine).Press(21, 20),
     Do().Release(81, 41), Ink().Line(10, 10, 40, 20)},
};

}  // namespace
}  // namespace rules
