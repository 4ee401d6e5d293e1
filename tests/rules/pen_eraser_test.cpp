#include <gtest/gtest.h>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"
#include "rules/rule_table.h"

namespace rules {
namespace {

struct Eraser : DrawingTest {
  // Black from (10, 10) to (49, 39), with the eraser selected.
  Eraser() {
    session.FillArea(10, 10, 40, 30, 1);
    session.Command(kToolEraser);
    model.Fill(10, 10, 40, 30, 1);
  }
};

TEST_F(Eraser, RightClicksDoubleTheSizeAndWrap) {
  for (const int side : {8, 16, 32, 4}) {
    session.RightClick(30, 25).LeftClick(30, 25);
    EXPECT_EQ(session.NowUndoRect(), (Area{30 - side / 2, 25 - side / 2, side + 1, side + 1}));
  }
}

TEST_F(Eraser, TheFrameStandsOnTheScreenOnly) {
  const PixelMatrix screen = session.NowScreen();
  session.Move(30, 25);
  EXPECT_FALSE(session.NowScreen() == screen);
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(Eraser, APulseTakesTheFrameAway) {
  const PixelMatrix screen = session.NowScreen();
  session.Move(30, 25).Command(kToolFill);
  EXPECT_TRUE(session.NowScreen() == screen);
}

const Rules<Eraser, "Eraser"> kEraserRules = {
    {"APressTurnsItsBlockIntoUnderdrawing", Do().Press(20, 20), Has("cut/undoRect", Area{18, 18, 5, 5}),
     Ink().Fill(18, 18, 5, 5, 5)},
    {"ADragErasesAtEveryMove", Do().Press(20, 20).Move(30, 25), Has("cut/undoRect", Area{18, 18, 15, 10}),
     Ink().Fill(18, 18, 5, 5, 5).Fill(28, 23, 5, 5, 5)},
    {"MovesWithoutAPressEraseNothing", Do().Move(20, 20).Press(20, 20).Release(20, 20).Move(40, 30),
     Ink().Fill(18, 18, 5, 5, 5)},
    {"ARightClickDuringADragKeepsTheSize", Do().Press(20, 20).RightRelease(20, 20).Release(20, 20).Press(30, 25),
     Has("cut/undoRect", Area{28, 23, 5, 5})},
    {"ASecondPassChangesNothing", Do().LeftClick(20, 20).LeftClick(20, 20), Ink().Fill(18, 18, 5, 5, 5)},
    {"AMaskKeepsItsPixels", Do().FillArea(20, 10, 1, 30, 2).Mask({1}).Command(kToolEraser).LeftClick(20, 20),
     Ink().Fill(20, 10, 1, 30, 2).Fill(20, 18, 1, 5, 6)},
    {"ADragIsOneUndoStep", Do().LeftDrag(20, 20, 30, 25).Command(kCommandUndo), Ink()},
    {"APulseLetsTheDragGoOn", Do().Press(20, 20).Repaint().Move(30, 25),
     Ink().Fill(18, 18, 5, 5, 5).Fill(28, 23, 5, 5, 5)},
    {"PositionsAreSigned", Do().FillArea(0, 0, 8, 20, 1).Command(kToolEraser).Press(-1, 5),
     Ink().Fill(0, 0, 8, 20, 1).Fill(0, 3, 2, 5, 5)},
    {"AtHalfSizeTheBlockIsTwiceAsLarge",
     Do().Command(kToolZoom).RightClick(1, 1).Line("client 32 24").Command(kToolEraser).Press(15, 12),
     Has("cut/undoRect", Area{26, 20, 9, 9}), Ink().Fill(26, 20, 9, 9, 5)},
};

// Index before and after.
class ErasedIndex : public DrawingTest, public testing::WithParamInterface<std::pair<int, int>> {};

TEST_P(ErasedIndex, BecomesItsUnderdrawing) {
  session.FillArea(10, 10, 20, 20, GetParam().first).Command(kToolEraser).Press(20, 20);
  EXPECT_TRUE(ViewShows(model.Fill(10, 10, 20, 20, GetParam().first).Fill(18, 18, 5, 5, GetParam().second)));
}

INSTANTIATE_TEST_SUITE_P(All, ErasedIndex,
                         testing::Values(std::pair(0, 0), std::pair(1, 5), std::pair(2, 6), std::pair(3, 7),
                                         std::pair(4, 0), std::pair(9, 6), std::pair(10, 7), std::pair(11, 11),
                                         std::pair(12, 12), std::pair(13, 13), std::pair(14, 14)));

TEST(EraserOnLines, LineBlackBecomesUnderdrawing) {
  DrawingSession session;
  session.DrawInkLine(10, 20, 40, 20).Command(kToolEraser).Press(20, 20);
  InkModel model;
  model.Line(10, 20, 40, 20).Fill(18, 20, 5, 1, 5);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

}  // namespace
}  // namespace rules
