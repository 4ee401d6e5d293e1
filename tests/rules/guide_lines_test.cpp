#include <gtest/gtest.h>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"

namespace rules {
namespace {

constexpr unsigned paper = 0xE1FFFF;
constexpr unsigned invertedPaper = 0x1E0000;

struct GuideTool : testing::Test {
  void Click(int x, int y, std::string_view keys = "") { session.LeftClick(x, y, keys); }
  // The model's line in underdrawing black, over transparent and underdrawing pixels alone.
  void SketchLine(int x0, int y0, int x1, int y1) { model.Line(x0, y0, x1, y1, {.colorB = 5}, 0xFFFFFF1E); }
  DrawingSession session;
  InkModel model;
};

struct FocusLines : GuideTool {
  FocusLines() { session.Command(kToolFocusLines); }
};

TEST_F(FocusLines, TheFirstClickIsTheCentreOnly) {
  Click(30, 20);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(FocusLines, EveryFurtherClickDrawsFromTheCentre) {
  Click(30, 20);
  Click(50, 40);
  Click(5, 30);
  model.Line(30, 20, 50, 40);
  model.Line(30, 20, 5, 30);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(FocusLines, UndoTakesTheLastLineBackOnly) {
  Click(30, 20);
  Click(50, 40);
  Click(5, 30);
  session.Command(kCommandUndo);
  model.Line(30, 20, 50, 40);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(FocusLines, TheFirstClickTakesNoUndoCopy) {
  session.DrawInkLine(1, 1, 10, 1);
  session.Command(kToolFocusLines);
  Click(30, 20);
  session.Command(kCommandUndo);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(FocusLines, TheUndoRectIsThatOfTheLastLine) {
  Click(30, 20);
  Click(50, 40);
  Click(20, 30);
  EXPECT_EQ(session.NowUndoRect(), (Area{16, 16, 19, 19}));
}

TEST_F(FocusLines, CtrlDrawsInUnderdrawingAndSparesInk) {
  session.FillArea(40, 10, 5, 30, 4);
  session.Command(kToolFocusLines);
  Click(30, 20);
  Click(60, 30, "ctrl");
  model.Fill(40, 10, 5, 30, 4);
  SketchLine(30, 20, 60, 30);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(FocusLines, TheUnderdrawingFollowsThePensColour) {
  session.PickPlain(10);
  Click(30, 20);
  Click(30, 40, "ctrl");
  model.Fill(30, 20, 1, 21, 7);
  EXPECT_TRUE(Shows(session.NowView(), model));
  EXPECT_EQ(session.NowState()["pen"]["colorB"], 10);
}

TEST_F(FocusLines, ADitheredGuideHasBothUnderdrawingColours) {
  session.Pick(8, 2);
  session.PickSize(7);
  Click(30, 20);
  Click(50, 30, "ctrl");
  model.Line(30, 20, 50, 30, {.shape = 14, .tone = 8, .colorA = 6, .colorB = 7}, 0xFFFFFF1E);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(FocusLines, AnInkLineKeepsToTheMask) {
  session.FillArea(40, 10, 5, 30, 4);
  session.Mask({4});
  session.Command(kToolFocusLines);
  Click(30, 20);
  Click(60, 30);
  model.Fill(40, 10, 5, 30, 4);
  model.Line(30, 20, 60, 30, {}, 1U << 4);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(FocusLines, ARightClickEndsTheFan) {
  Click(30, 20);
  Click(50, 40);
  session.RightClick(10, 10);
  Click(5, 5);
  Click(15, 5);
  model.Line(30, 20, 50, 40);
  model.Line(5, 5, 15, 5);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(FocusLines, APulseEndsTheFan) {
  Click(30, 20);
  session.Repaint();
  Click(5, 5);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(FocusLines, ThePressDoesNothing) {
  session.Press(30, 20);
  session.Press(50, 40);
  session.Release(5, 5);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(FocusLines, PositionsAreUnsigned) {
  Click(10, 10);
  Click(-3, 10);
  model.Line(10, 10, 63, 10);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(FocusLines, TheBandRunsFromTheCentre) {
  Click(10, 10);
  session.Move(30, 10);
  session.Move(10, 30);
  const PixelMatrix screen = session.NowScreen();
  EXPECT_EQ(screen.At(20, 10), paper);
  EXPECT_EQ(screen.At(10, 20), invertedPaper);
  session.RightClick(10, 30);
  EXPECT_EQ(session.NowScreen().At(10, 20), paper);
}

struct ParallelLines : GuideTool {
  ParallelLines() { session.Command(kToolParallelLines); }
};

TEST_F(ParallelLines, TheFirstDragDraws) {
  session.LeftDrag(10, 10, 20, 14);
  session.Move(50, 40);
  session.Command(kToolFill);
  model.Line(10, 10, 20, 14);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(ParallelLines, AClickStartsTheBandToo) {
  Click(10, 10);
  EXPECT_TRUE(Shows(session.NowView(), model));
  Click(20, 14);
  model.Line(10, 10, 20, 14);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(ParallelLines, AReleaseAloneStartsTheBandToo) {
  session.Release(10, 10);
  session.Release(20, 14);
  model.Line(10, 10, 20, 14);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(ParallelLines, EveryFurtherClickDrawsACopy) {
  session.LeftDrag(10, 10, 20, 14);
  Click(30, 20);
  Click(5, 40);
  session.Command(kToolFill);
  model.Line(10, 10, 20, 14);
  model.Line(30, 20, 40, 24);
  model.Line(5, 40, 15, 44);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(ParallelLines, CtrlAndRightClickTurnTheCopyByAQuarter) {
  session.LeftDrag(10, 10, 20, 14);
  session.RightClick(40, 10, "ctrl");
  Click(40, 10);
  session.Command(kToolFill);
  model.Line(10, 10, 20, 14);
  model.Line(40, 10, 36, 20);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(ParallelLines, TwoQuarterTurnsMakeAHalfTurn) {
  session.LeftDrag(10, 10, 20, 14);
  session.RightClick(40, 30, "ctrl");
  session.RightClick(40, 30, "ctrl");
  Click(40, 30);
  session.Command(kToolFill);
  model.Line(10, 10, 20, 14);
  model.Line(40, 30, 30, 26);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(ParallelLines, ARightClickWithoutCtrlEndsTheCopies) {
  session.LeftDrag(10, 10, 20, 14);
  session.RightClick(40, 30);
  Click(40, 30);
  session.Command(kToolFill);
  model.Line(10, 10, 20, 14);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(ParallelLines, ARightClickDropsTheFirstLine) {
  Click(10, 10);
  session.RightClick(20, 20);
  Click(40, 30);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(ParallelLines, CtrlDrawsTheFirstLineInUnderdrawing) {
  session.FillArea(14, 5, 3, 20, 4);
  session.Command(kToolParallelLines);
  Click(10, 10);
  Click(20, 14, "ctrl");
  model.Fill(14, 5, 3, 20, 4);
  SketchLine(10, 10, 20, 14);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(ParallelLines, CtrlDrawsACopyInUnderdrawing) {
  session.LeftDrag(10, 10, 20, 14);
  Click(30, 20, "ctrl");
  session.Command(kToolFill);
  model.Line(10, 10, 20, 14);
  SketchLine(30, 20, 40, 24);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(ParallelLines, EveryLineIsAnUndoStep) {
  session.LeftDrag(10, 10, 20, 14);
  Click(30, 20);
  EXPECT_EQ(session.NowUndoRect(), (Area{26, 16, 19, 13}));
  session.Command(kCommandUndo);
  model.Line(10, 10, 20, 14);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(ParallelLines, APulseEndsTheCopies) {
  session.LeftDrag(10, 10, 20, 14);
  session.Repaint();
  Click(40, 30);
  model.Line(10, 10, 20, 14);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(ParallelLines, TheCopysBandLeavesTheMouseByTheVector) {
  session.LeftDrag(10, 10, 30, 10);
  session.Move(20, 40);
  const PixelMatrix screen = session.NowScreen();
  EXPECT_EQ(screen.At(30, 40), invertedPaper);
  EXPECT_EQ(screen.At(50, 40), paper);
}

TEST_F(ParallelLines, TheMarkFollowsTheMouseInCopyMode) {
  session.LeftDrag(10, 10, 30, 10);
  session.Move(20, 40);
  EXPECT_EQ(session.NowView().At(20, 40), 1u);
}

TEST_F(ParallelLines, TheVectorIsKeptInWindowPixels) {
  session.LeftDrag(10, 10, 30, 18);
  session.Move(32, 24);
  session.Char('s').Line("client 128 96");
  Click(60, 60);
  session.Command(kToolFill);
  model.Line(10, 10, 30, 18);
  model.Line(30, 30, 40, 34);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

}  // namespace
}  // namespace rules
