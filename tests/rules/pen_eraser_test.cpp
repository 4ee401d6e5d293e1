#include <gtest/gtest.h>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"

namespace rules {
namespace {

struct Eraser : testing::Test {
  // Black from (10, 10) to (49, 39), with the eraser selected.
  Eraser() {
    session.FillArea(10, 10, 40, 30, 1);
    session.Command(kToolEraser);
    model.Fill(10, 10, 40, 30, 1);
  }
  DrawingSession session;
  InkModel model;
};

TEST_F(Eraser, APressTurnsItsBlockIntoUnderdrawing) {
  session.Press(20, 20);
  model.Fill(18, 18, 5, 5, 5);
  EXPECT_TRUE(Shows(session.NowView(), model));
  EXPECT_EQ(session.NowUndoRect(), (Area{18, 18, 5, 5}));
}

TEST_F(Eraser, ADragErasesAtEveryMove) {
  session.Press(20, 20);
  session.Move(30, 25);
  model.Fill(18, 18, 5, 5, 5);
  model.Fill(28, 23, 5, 5, 5);
  EXPECT_TRUE(Shows(session.NowView(), model));
  EXPECT_EQ(session.NowUndoRect(), (Area{18, 18, 15, 10}));
}

TEST_F(Eraser, MovesWithoutAPressEraseNothing) {
  session.Move(20, 20);
  session.Press(20, 20);
  session.Release(20, 20);
  session.Move(40, 30);
  model.Fill(18, 18, 5, 5, 5);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(Eraser, RightClicksDoubleTheSizeAndWrap) {
  for (const int side : {8, 16, 32, 4}) {
    session.RightClick(30, 25);
    session.Press(30, 25);
    EXPECT_EQ(session.NowUndoRect(), (Area{30 - side / 2, 25 - side / 2, side + 1, side + 1}));
    session.Release(30, 25);
  }
}

TEST_F(Eraser, ARightClickDuringADragKeepsTheSize) {
  session.Press(20, 20);
  session.RightRelease(20, 20);
  session.Release(20, 20);
  session.Press(30, 25);
  EXPECT_EQ(session.NowUndoRect(), (Area{28, 23, 5, 5}));
}

TEST_F(Eraser, ASecondPassChangesNothing) {
  session.LeftClick(20, 20);
  session.LeftClick(20, 20);
  model.Fill(18, 18, 5, 5, 5);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(Eraser, AMaskKeepsItsPixels) {
  session.FillArea(20, 10, 1, 30, 2);
  session.Mask({1});
  session.Command(kToolEraser);
  session.LeftClick(20, 20);
  model.Fill(20, 10, 1, 30, 2);
  model.Fill(20, 18, 1, 5, 6);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(Eraser, ADragIsOneUndoStep) {
  session.LeftDrag(20, 20, 30, 25);
  session.Command(kCommandUndo);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(Eraser, APulseLetsTheDragGoOn) {
  session.Press(20, 20);
  session.Repaint();
  session.Move(30, 25);
  model.Fill(18, 18, 5, 5, 5);
  model.Fill(28, 23, 5, 5, 5);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(Eraser, TheFrameStandsOnTheScreenOnly) {
  const PixelMatrix screen = session.NowScreen();
  session.Move(30, 25);
  EXPECT_FALSE(session.NowScreen() == screen);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(Eraser, APulseTakesTheFrameAway) {
  const PixelMatrix screen = session.NowScreen();
  session.Move(30, 25);
  session.Command(kToolFill);
  EXPECT_TRUE(session.NowScreen() == screen);
}

TEST_F(Eraser, PositionsAreSigned) {
  session.FillArea(0, 0, 8, 20, 1);
  session.Command(kToolEraser);
  session.Press(-1, 5);
  model.Fill(0, 0, 8, 20, 1);
  model.Fill(0, 3, 2, 5, 5);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(Eraser, AtHalfSizeTheBlockIsTwiceAsLarge) {
  session.Command(kToolZoom).RightClick(1, 1);
  session.Line("client 32 24").Command(kToolEraser);
  session.Press(15, 12);
  model.Fill(26, 20, 9, 9, 5);
  EXPECT_TRUE(Shows(session.NowView(), model));
  EXPECT_EQ(session.NowUndoRect(), (Area{26, 20, 9, 9}));
}

// Index before and after.
class ErasedIndex : public testing::TestWithParam<std::pair<int, int>> {};

TEST_P(ErasedIndex, BecomesItsUnderdrawing) {
  DrawingSession session;
  session.FillArea(10, 10, 20, 20, GetParam().first);
  session.Command(kToolEraser);
  session.Press(20, 20);
  InkModel model;
  model.Fill(10, 10, 20, 20, GetParam().first);
  model.Fill(18, 18, 5, 5, GetParam().second);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

INSTANTIATE_TEST_SUITE_P(All, ErasedIndex,
                         testing::Values(std::pair(0, 0), std::pair(1, 5), std::pair(2, 6), std::pair(3, 7),
                                         std::pair(4, 0), std::pair(9, 6), std::pair(10, 7), std::pair(11, 11),
                                         std::pair(12, 12), std::pair(13, 13), std::pair(14, 14)));

TEST(EraserOnLines, LineBlackBecomesUnderdrawing) {
  DrawingSession session;
  session.DrawInkLine(10, 20, 40, 20);
  session.Command(kToolEraser);
  session.Press(20, 20);
  InkModel model;
  model.Line(10, 20, 40, 20);
  model.Fill(18, 20, 5, 1, 5);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

}  // namespace
}  // namespace rules
