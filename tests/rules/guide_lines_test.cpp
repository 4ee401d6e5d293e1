#include <gtest/gtest.h>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"

namespace rules {
namespace {

constexpr unsigned paper = 0xE1FFFF;
constexpr unsigned invertedPaper = 0x1E0000;

struct GuideTool : DrawingTest {
  void Click(int x, int y, std::string_view keys = "") { session.LeftClick(x, y, keys); }
  // The model's line in underdrawing black, over transparent and underdrawing pixels alone.
  void SketchLine(int x0, int y0, int x1, int y1) { model.Line(x0, y0, x1, y1, {.colorB = 5}, 0xFFFFFF1E); }
};

struct FocusLines : GuideTool {
  FocusLines() { session.Command(kToolFocusLines); }
};

TEST_F(FocusLines, TheFirstClickIsTheCentreOnly) {
  Click(30, 20);
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(FocusLines, EveryFurtherClickDrawsFromTheCentre) {
  Click(30, 20);
  Click(50, 40);
  Click(5, 30);
  EXPECT_TRUE(ViewShows(model.Line(30, 20, 50, 40).Line(30, 20, 5, 30)));
}

TEST_F(FocusLines, UndoTakesTheLastLineBackOnly) {
  Click(30, 20);
  Click(50, 40);
  Click(5, 30);
  session.Command(kCommandUndo);
  EXPECT_TRUE(ViewShows(model.Line(30, 20, 50, 40)));
}

TEST_F(FocusLines, TheFirstClickTakesNoUndoCopy) {
  session.DrawInkLine(1, 1, 10, 1).Command(kToolFocusLines);
  Click(30, 20);
  session.Command(kCommandUndo);
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(FocusLines, TheUndoRectIsThatOfTheLastLine) {
  Click(30, 20);
  Click(50, 40);
  Click(20, 30);
  EXPECT_EQ(session.NowUndoRect(), (Area{16, 16, 19, 19}));
}

TEST_F(FocusLines, CtrlDrawsInUnderdrawingAndSparesInk) {
  session.FillArea(40, 10, 5, 30, 4).Command(kToolFocusLines);
  Click(30, 20);
  Click(60, 30, "ctrl");
  model.Fill(40, 10, 5, 30, 4);
  SketchLine(30, 20, 60, 30);
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(FocusLines, TheUnderdrawingFollowsThePensColour) {
  session.PickPlain(10);
  Click(30, 20);
  Click(30, 40, "ctrl");
  EXPECT_TRUE(ViewShows(model.Fill(30, 20, 1, 21, 7)));
  EXPECT_EQ(session.NowState()["pen"]["colorB"], 10);
}

TEST_F(FocusLines, ADitheredGuideHasBothUnderdrawingColours) {
  session.Pick(8, 2).PickSize(7);
  Click(30, 20);
  Click(50, 30, "ctrl");
  EXPECT_TRUE(ViewShows(model.Line(30, 20, 50, 30, {.shape = 14, .tone = 8, .colorA = 6, .colorB = 7}, 0xFFFFFF1E)));
}

TEST_F(FocusLines, AnInkLineKeepsToTheMask) {
  session.FillArea(40, 10, 5, 30, 4).Mask({4}).Command(kToolFocusLines);
  Click(30, 20);
  Click(60, 30);
  EXPECT_TRUE(ViewShows(model.Fill(40, 10, 5, 30, 4).Line(30, 20, 60, 30, {}, 1U << 4)));
}

TEST_F(FocusLines, ARightClickEndsTheFan) {
  Click(30, 20);
  Click(50, 40);
  session.RightClick(10, 10);
  Click(5, 5);
  Click(15, 5);
  EXPECT_TRUE(ViewShows(model.Line(30, 20, 50, 40).Line(5, 5, 15, 5)));
}

TEST_F(FocusLines, APulseEndsTheFan) {
  Click(30, 20);
  session.Repaint();
  Click(5, 5);
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(FocusLines, ThePressDoesNothing) {
  session.Press(30, 20).Press(50, 40).Release(5, 5);
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(FocusLines, PositionsAreUnsigned) {
  Click(10, 10);
  Click(-3, 10);
  EXPECT_TRUE(ViewShows(model.Line(10, 10, 63, 10)));
}

TEST_F(FocusLines, TheBandRunsFromTheCentre) {
  Click(10, 10);
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

TEST_F(ParallelLines, TheFirstDragDraws) {
  session.LeftDrag(10, 10, 20, 14).Move(50, 40).Command(kToolFill);
  EXPECT_TRUE(ViewShows(model.Line(10, 10, 20, 14)));
}

TEST_F(ParallelLines, AClickStartsTheBandToo) {
  Click(10, 10);
  EXPECT_TRUE(ViewShows(model));
  Click(20, 14);
  EXPECT_TRUE(ViewShows(model.Line(10, 10, 20, 14)));
}

TEST_F(ParallelLines, AReleaseAloneStartsTheBandToo) {
  session.Release(10, 10).Release(20, 14);
  EXPECT_TRUE(ViewShows(model.Line(10, 10, 20, 14)));
}

TEST_F(ParallelLines, EveryFurtherClickDrawsACopy) {
  session.LeftDrag(10, 10, 20, 14);
  Click(30, 20);
  Click(5, 40);
  session.Command(kToolFill);
  EXPECT_TRUE(ViewShows(model.Line(10, 10, 20, 14).Line(30, 20, 40, 24).Line(5, 40, 15, 44)));
}

TEST_F(ParallelLines, CtrlAndRightClickTurnTheCopyByAQuarter) {
  session.LeftDrag(10, 10, 20, 14).RightClick(40, 10, "ctrl");
  Click(40, 10);
  session.Command(kToolFill);
  EXPECT_TRUE(ViewShows(model.Line(10, 10, 20, 14).Line(40, 10, 36, 20)));
}

TEST_F(ParallelLines, TwoQuarterTurnsMakeAHalfTurn) {
  session.LeftDrag(10, 10, 20, 14).RightClick(40, 30, "ctrl").RightClick(40, 30, "ctrl");
  Click(40, 30);
  session.Command(kToolFill);
  EXPECT_TRUE(ViewShows(model.Line(10, 10, 20, 14).Line(40, 30, 30, 26)));
}

TEST_F(ParallelLines, ARightClickWithoutCtrlEndsTheCopies) {
  session.LeftDrag(10, 10, 20, 14).RightClick(40, 30);
  Click(40, 30);
  session.Command(kToolFill);
  EXPECT_TRUE(ViewShows(model.Line(10, 10, 20, 14)));
}

TEST_F(ParallelLines, ARightClickDropsTheFirstLine) {
  Click(10, 10);
  session.RightClick(20, 20);
  Click(40, 30);
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(ParallelLines, CtrlDrawsTheFirstLineInUnderdrawing) {
  session.FillArea(14, 5, 3, 20, 4).Command(kToolParallelLines);
  Click(10, 10);
  Click(20, 14, "ctrl");
  model.Fill(14, 5, 3, 20, 4);
  SketchLine(10, 10, 20, 14);
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(ParallelLines, CtrlDrawsACopyInUnderdrawing) {
  session.LeftDrag(10, 10, 20, 14);
  Click(30, 20, "ctrl");
  session.Command(kToolFill);
  model.Line(10, 10, 20, 14);
  SketchLine(30, 20, 40, 24);
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(ParallelLines, EveryLineIsAnUndoStep) {
  session.LeftDrag(10, 10, 20, 14);
  Click(30, 20);
  EXPECT_EQ(session.NowUndoRect(), (Area{26, 16, 19, 13}));
  session.Command(kCommandUndo);
  EXPECT_TRUE(ViewShows(model.Line(10, 10, 20, 14)));
}

TEST_F(ParallelLines, APulseEndsTheCopies) {
  session.LeftDrag(10, 10, 20, 14).Repaint();
  Click(40, 30);
  EXPECT_TRUE(ViewShows(model.Line(10, 10, 20, 14)));
}

TEST_F(ParallelLines, TheCopysBandLeavesTheMouseByTheVector) {
  session.LeftDrag(10, 10, 30, 10).Move(20, 40);
  const PixelMatrix screen = session.NowScreen();
  EXPECT_EQ(screen.At(30, 40), invertedPaper);
  EXPECT_EQ(screen.At(50, 40), paper);
}

TEST_F(ParallelLines, TheMarkFollowsTheMouseInCopyMode) {
  session.LeftDrag(10, 10, 30, 10).Move(20, 40);
  EXPECT_EQ(session.NowView().At(20, 40), 1u);
}

TEST_F(ParallelLines, TheVectorIsKeptInWindowPixels) {
  session.LeftDrag(10, 10, 30, 18).Move(32, 24).Char('s').Line("client 128 96");
  Click(60, 60);
  session.Command(kToolFill);
  EXPECT_TRUE(ViewShows(model.Line(10, 10, 30, 18).Line(30, 30, 40, 34)));
}

}  // namespace
}  // namespace rules
