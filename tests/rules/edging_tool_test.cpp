#include <gtest/gtest.h>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"

namespace rules {
namespace {

struct EdgingTool : DrawingTest {
  EdgingTool() { Area(10, 8, 30, 30, 4); }
  void Area(int x, int y, int width, int height, int index) {
    session.FillArea(x, y, width, height, index);
    session.Command(kToolEdging);
    model.Fill(x, y, width, height, index);
  }
  void Drag(int fromX, int fromY, int toX, int toY) {
    session.Press(fromX, fromY);
    session.Release(toX, toY);
  }
};

TEST_F(EdgingTool, TheBorderLiesInsideTheAreaAndInsideTheDrag) {
  Drag(12, 10, 45, 42);
  EXPECT_TRUE(ViewShows(model.Fill(39, 10, 1, 28, 1).Fill(12, 37, 28, 1, 1)));
}

class EdgingSize : public EdgingTool, public testing::WithParamInterface<std::pair<int, bool>> {};

TEST_P(EdgingSize, IsTheThicknessLessOne) {
  const auto& [step, square] = GetParam();
  if (square) session.Command(kCommandSquarePen);
  session.PickSize(step);
  Drag(12, 10, 45, 42);
  EXPECT_TRUE(ViewShows(model.Fill(40 - (step + 1), 10, step + 1, 28, 1).Fill(12, 38 - (step + 1), 28, step + 1, 1)));
}

INSTANTIATE_TEST_SUITE_P(All, EdgingSize,
                         testing::Values(std::pair(0, false), std::pair(1, false), std::pair(4, false),
                                         std::pair(7, false), std::pair(1, true), std::pair(7, true)));

TEST_F(EdgingTool, AGroundIsEdgedAroundItsInk) {
  Area(0, 0, 64, 48, 0);
  Area(20, 20, 10, 10, 2);
  Drag(15, 15, 35, 35);
  model.Fill(20, 19, 10, 1, 1).Fill(20, 30, 10, 1, 1).Fill(19, 20, 1, 10, 1).Fill(30, 20, 1, 10, 1);
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(EdgingTool, NeighboursBeyondTheDragCount) {
  Drag(12, 8, 36, 20);
  EXPECT_TRUE(ViewShows(model.Fill(12, 8, 24, 1, 1)));
}

TEST_F(EdgingTool, ADitheredPenEdgesInItsDither) {
  session.Pick(8, 1);
  Drag(12, 10, 45, 42);
  const ModelPen pen = {.tone = 8, .colorA = 1, .colorB = 2};
  EXPECT_TRUE(ViewShows(model.FillWith(pen, 39, 10, 1, 28).FillWith(pen, 12, 37, 28, 1)));
}

TEST_F(EdgingTool, AProtectedKeyColourIsRefused) {
  session.Mask({4});
  Drag(12, 10, 45, 42);
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(EdgingTool, TheUndoRectIsTheDrag) {
  Drag(12, 10, 45, 42);
  EXPECT_EQ(session.NowUndoRect(), (rules::Area{12, 10, 33, 32}));
}

TEST_F(EdgingTool, EdgingIsOneUndoStep) {
  Drag(12, 10, 45, 42);
  session.Command(kCommandUndo);
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(EdgingTool, ADragToTheUpperLeftDoesNothing) {
  Drag(38, 36, 12, 10);
  Drag(38, 36, 45, 30);
  Drag(38, 36, 38, 42);
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(EdgingTool, ADragThatEndedOnTheWrongSideGoesOn) {
  Drag(12, 10, 5, 5);
  session.Release(45, 42);
  EXPECT_TRUE(ViewShows(model.Fill(39, 10, 1, 28, 1).Fill(12, 37, 28, 1, 1)));
}

TEST_F(EdgingTool, AFinishedDragDoesNotGoOn) {
  Drag(12, 10, 20, 20);
  session.Release(45, 42);
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(EdgingTool, TheFrameFollowsToTheLowerRightOnly) {
  const PixelMatrix screen = session.NowScreen();
  session.Press(20, 20).Move(15, 30);
  EXPECT_TRUE(session.NowScreen() == screen);
  session.Move(35, 30);
  EXPECT_FALSE(session.NowScreen() == screen);
}

TEST(EdgingAtTheEdge, TheImagesEdgeGetsNoBorder) {
  DrawingSession session({.clientWidth = 84, .clientHeight = 68});
  session.FillArea(50, 0, 34, 68, 4).Command(kToolEdging).Press(48, 30).Release(80, 66).Press(52, 4).Release(80, 66);
  InkModel model;
  model.Fill(40, 0, 24, 48, 4).Fill(39, 20, 1, 28, 1);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

}  // namespace
}  // namespace rules
