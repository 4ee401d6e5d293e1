#include <gtest/gtest.h>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"
#include "rules/rule_table.h"

namespace rules {
namespace {

struct EdgingTool : DrawingTest {
  EdgingTool() {
    session.FillArea(10, 8, 30, 30, 4).Command(kToolEdging);
    model.Fill(10, 8, 30, 30, 4);
  }
};

// A ground of this index, and the tool.
Rule::Steps Ground(int x, int y, int width, int height, int index) {
  return {Filled{x, y, width, height, index}, Do().Command(kToolEdging)};
}

class EdgingSize : public EdgingTool, public testing::WithParamInterface<std::pair<int, bool>> {};

TEST_P(EdgingSize, IsTheThicknessLessOne) {
  const auto& [step, square] = GetParam();
  if (square) session.Command(kCommandSquarePen);
  session.PickSize(step);
  session.Press(12, 10).Release(45, 42);
  EXPECT_TRUE(ViewShows(model.Fill(40 - (step + 1), 10, step + 1, 28, 1).Fill(12, 38 - (step + 1), 28, step + 1, 1)));
}

INSTANTIATE_TEST_SUITE_P(All, EdgingSize,
                         testing::Values(std::pair(0, false), std::pair(1, false), std::pair(4, false),
                                         std::pair(7, false), std::pair(1, true), std::pair(7, true)));

TEST_F(EdgingTool, ADitheredPenEdgesInItsDither) {
  session.Pick(8, 1);
  session.Press(12, 10).Release(45, 42);
  const ModelPen pen = {.tone = 8, .colorA = 1, .colorB = 2};
  EXPECT_TRUE(ViewShows(model.FillWith(pen, 39, 10, 1, 28).FillWith(pen, 12, 37, 28, 1)));
}

const Rules<EdgingTool, "EdgingTool"> kEdgingToolRules = {
    {"AGroundIsEdgedAroundItsInk", Ground(0, 0, 64, 48, 0), Ground(20, 20, 10, 10, 2),
     Do().Press(15, 15).Release(35, 35),
     Ink().Fill(20, 19, 10, 1, 1).Fill(20, 30, 10, 1, 1).Fill(19, 20, 1, 10, 1).Fill(30, 20, 1, 10, 1)},
    {"TheBorderLiesInsideTheAreaAndInsideTheDrag", Do().Press(12, 10).Release(45, 42),
     Ink().Fill(39, 10, 1, 28, 1).Fill(12, 37, 28, 1, 1)},
    {"NeighboursBeyondTheDragCount", Do().Press(12, 8).Release(36, 20), Ink().Fill(12, 8, 24, 1, 1)},
    {"AProtectedKeyColourIsRefused", Do().Mask({4}).Press(12, 10).Release(45, 42), Ink()},
    {"TheUndoRectIsTheDrag", Do().Press(12, 10).Release(45, 42), Has("cut/undoRect", Area{12, 10, 33, 32})},
    {"EdgingIsOneUndoStep", Do().Press(12, 10).Release(45, 42).Command(kCommandUndo), Ink()},
    {"ADragToTheUpperLeftDoesNothing",
     Do().Press(38, 36).Release(12, 10).Press(38, 36).Release(45, 30).Press(38, 36).Release(38, 42), Ink()},
    {"ADragThatEndedOnTheWrongSideGoesOn", Do().Press(12, 10).Release(5, 5).Release(45, 42),
     Ink().Fill(39, 10, 1, 28, 1).Fill(12, 37, 28, 1, 1)},
    {"AFinishedDragDoesNotGoOn", Do().Press(12, 10).Release(20, 20).Release(45, 42), Ink()},
};

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
