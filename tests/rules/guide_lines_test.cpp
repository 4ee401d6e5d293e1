#include <gtest/gtest.h>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"
#include "rules/rule_table.h"

namespace rules {
namespace {

constexpr unsigned paper = 0xE1FFFF;
constexpr unsigned invertedPaper = 0x1E0000;

// The model's line in underdrawing black, over transparent and underdrawing pixels alone.
constexpr ModelPen kSketchPen = {.colorB = 5};
constexpr unsigned kNoSketchMask = 0xFFFFFF1E;

using GuideTool = DrawingTest;

struct FocusLines : GuideTool {
  FocusLines() { session.Command(kToolFocusLines); }
};

const Rules<FocusLines, "FocusLines"> kFocusLinesRules = {
    {"TheFirstClickIsTheCentreOnly", Do().LeftClick(30, 20), Ink()},
    {"EveryFurtherClickDrawsFromTheCentre", Do().LeftClick(30, 20).LeftClick(50, 40).LeftClick(5, 30),
     Ink().Line(30, 20, 50, 40).Line(30, 20, 5, 30)},
    {"UndoTakesTheLastLineBackOnly", Do().LeftClick(30, 20).LeftClick(50, 40).LeftClick(5, 30).Command(kCommandUndo),
     Ink().Line(30, 20, 50, 40)},
    {"TheFirstClickTakesNoUndoCopy",
     Do().DrawInkLine(1, 1, 10, 1).Command(kToolFocusLines).LeftClick(30, 20).Command(kCommandUndo), Ink()},
    {"TheUndoRectIsThatOfTheLastLine", Do().LeftClick(30, 20).LeftClick(50, 40).LeftClick(20, 30),
     Has("cut/undoRect", Area{16, 16, 19, 19})},
    {"CtrlDrawsInUnderdrawingAndSparesInk",
     Do().FillArea(40, 10, 5, 30, 4).Command(kToolFocusLines).LeftClick(30, 20).LeftClick(60, 30, "ctrl"),
     Ink().Fill(40, 10, 5, 30, 4).Line(30, 20, 60, 30, kSketchPen, kNoSketchMask)},
    {"TheUnderdrawingFollowsThePensColour", Do().PickPlain(10).LeftClick(30, 20).LeftClick(30, 40, "ctrl"),
     Ink().Fill(30, 20, 1, 21, 7), Has("pen/colorB", 10)},
    {"ADitheredGuideHasBothUnderdrawingColours",
     Do().Pick(8, 2).PickSize(7).LeftClick(30, 20).LeftClick(50, 30, "ctrl"),
     Ink().Line(30, 20, 50, 30, {.shape = 14, .tone = 8, .colorA = 6, .colorB = 7}, 0xFFFFFF1E)},
    {"AnInkLineKeepsToTheMask",
     Do().FillArea(40, 10, 5, 30, 4).Mask({4}).Command(kToolFocusLines).LeftClick(30, 20).LeftClick(60, 30),
     Ink().Fill(40, 10, 5, 30, 4).Line(30, 20, 60, 30, {}, 1U << 4)},
    {"ARightClickEndsTheFan",
     Do().LeftClick(30, 20).LeftClick(50, 40).RightClick(10, 10).LeftClick(5, 5).LeftClick(15, 5),
     Ink().Line(30, 20, 50, 40).Line(5, 5, 15, 5)},
    {"APulseEndsTheFan", Do().LeftClick(30, 20).Repaint().LeftClick(5, 5), Ink()},
    {"ThePressDoesNothing", Do().Press(30, 20).Press(50, 40).Release(5, 5), Ink()},
    {"PositionsAreUnsigned", Do().LeftClick(10, 10).LeftClick(-3, 10), Ink().Line(10, 10, 63, 10)},
};

TEST_F(FocusLines, TheBandRunsFromTheCentre) {
  session.LeftClick(10, 10);
  session.Move(30, 10).Move(10, 30);
  const PixelMatrix screen = session.NowScreen();
  EXPECT_EQ(screen.At(20, 10), paper);
  EXPECT_EQ(screen.At(10, 20), invertedPaper);
  session.RightClick(10, 30);
  EXPECT_EQ(session.NowScreen().At(10, 20), paper);
}

struct ParallelLines : GuideTool {
  ParallelLines() { session.Command(kToolParallelLines); }
};

TEST_F(ParallelLines, TheCopysBandLeavesTheMouseByTheVector) {
  session.LeftDrag(10, 10, 30, 10).Move(20, 40);
  const PixelMatrix screen = session.NowScreen();
  EXPECT_EQ(screen.At(30, 40), invertedPaper);
  EXPECT_EQ(screen.At(50, 40), paper);
}

const Rules<ParallelLines, "ParallelLines"> kParallelLinesRules = {
    {"AClickStartsTheBandToo", Do().LeftClick(10, 10), Ink(), Do().LeftClick(20, 14), Ink().Line(10, 10, 20, 14)},
    {"EveryFurtherClickDrawsACopy", Do().LeftDrag(10, 10, 20, 14).LeftClick(30, 20).LeftClick(5, 40).Command(kToolFill),
     Ink().Line(10, 10, 20, 14).Line(30, 20, 40, 24).Line(5, 40, 15, 44)},
    {"CtrlAndRightClickTurnTheCopyByAQuarter",
     Do().LeftDrag(10, 10, 20, 14).RightClick(40, 10, "ctrl").LeftClick(40, 10).Command(kToolFill),
     Ink().Line(10, 10, 20, 14).Line(40, 10, 36, 20)},
    {"TwoQuarterTurnsMakeAHalfTurn",
     Do().LeftDrag(10, 10, 20, 14).RightClick(40, 30, "ctrl").RightClick(40, 30, "ctrl").LeftClick(40, 30),
     Do().Command(kToolFill), Ink().Line(10, 10, 20, 14).Line(40, 30, 30, 26)},
    {"ARightClickWithoutCtrlEndsTheCopies",
     Do().LeftDrag(10, 10, 20, 14).RightClick(40, 30).LeftClick(40, 30).Command(kToolFill), Ink().Line(10, 10, 20, 14)},
    {"ARightClickDropsTheFirstLine", Do().LeftClick(10, 10).RightClick(20, 20).LeftClick(40, 30), Ink()},
    {"CtrlDrawsTheFirstLineInUnderdrawing",
     Do().FillArea(14, 5, 3, 20, 4).Command(kToolParallelLines).LeftClick(10, 10).LeftClick(20, 14, "ctrl"),
     Ink().Fill(14, 5, 3, 20, 4).Line(10, 10, 20, 14, kSketchPen, kNoSketchMask)},
    {"CtrlDrawsACopyInUnderdrawing", Do().LeftDrag(10, 10, 20, 14).LeftClick(30, 20, "ctrl").Command(kToolFill),
     Ink().Line(10, 10, 20, 14).Line(30, 20, 40, 24, kSketchPen, kNoSketchMask)},
    {"EveryLineIsAnUndoStep", Do().LeftDrag(10, 10, 20, 14).LeftClick(30, 20),
     Has("cut/undoRect", Area{26, 16, 19, 13}), Do().Command(kCommandUndo), Ink().Line(10, 10, 20, 14)},
    {"APulseEndsTheCopies", Do().LeftDrag(10, 10, 20, 14).Repaint().LeftClick(40, 30), Ink().Line(10, 10, 20, 14)},
    {"TheFirstDragDraws", Do().LeftDrag(10, 10, 20, 14).Move(50, 40).Command(kToolFill), Ink().Line(10, 10, 20, 14)},
    {"AReleaseAloneStartsTheBandToo", Do().Release(10, 10).Release(20, 14), Ink().Line(10, 10, 20, 14)},
    {"TheMarkFollowsTheMouseInCopyMode", Do().LeftDrag(10, 10, 30, 10).Move(20, 40), Has("pixel/20/40", 1)},
    {"TheVectorIsKeptInWindowPixels",
     Do().LeftDrag(10, 10, 30, 18).Move(32, 24).Char('s').Line("client 128 96").LeftClick(60, 60).Command(kToolFill),
     Ink().Line(10, 10, 30, 18).Line(30, 30, 40, 34)},
};

}  // namespace
}  // namespace rules
