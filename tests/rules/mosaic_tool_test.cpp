#include <gtest/gtest.h>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"

namespace rules {
namespace {

struct MosaicTool : testing::Test {
  void Area(int x, int y, int width, int height, int index) {
    session.FillArea(x, y, width, height, index);
    model.Fill(x, y, width, height, index);
  }
  void Click(int x, int y) { session.Command(kToolMosaic).LeftClick(x, y); }
  void Tile(int level, int x, int y, int size = 4) { model.FillWith(ModelPenOfLevel(level), x, y, size, size); }
  DrawingSession session;
  InkModel model;
};

TEST_F(MosaicTool, AClickTreatsOneTileAndWritesWhite) {
  Click(10, 11);
  model.Fill(8, 8, 4, 4, 4);
  EXPECT_TRUE(Shows(session.NowView(), model));
  EXPECT_EQ(session.NowUndoRect(), (rules::Area{8, 8, 4, 4}));
}

TEST_F(MosaicTool, AHalfBlackTileIsTheMiddleGrey) {
  Area(8, 8, 2, 4, 1);
  Click(10, 10);
  Tile(24, 8, 8);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(MosaicTool, TonesAndBoundariesCountBySteps) {
  Area(8, 8, 4, 1, 1);
  Area(8, 9, 4, 1, 2);
  Area(8, 10, 4, 1, 10);
  Area(8, 11, 4, 1, 13);
  Click(10, 10);
  Tile(4 * (0 + 1 + 2 + 3), 8, 8);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(MosaicTool, LineBlackCountsAsBlack) {
  session.DrawInkLine(8, 8, 11, 8);
  Click(10, 10);
  Tile(36, 8, 8);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(MosaicTool, ADragTreatsEveryTileOnItsOwn) {
  Area(8, 8, 4, 4, 1);
  Area(12, 8, 2, 4, 1);
  session.Command(kToolMosaic);
  session.Press(9, 10);
  session.Release(17, 13);
  Tile(0, 8, 8);
  Tile(24, 12, 8);
  Tile(48, 16, 8);
  model.Fill(8, 12, 12, 4, 4);
  EXPECT_TRUE(Shows(session.NowView(), model));
  EXPECT_EQ(session.NowUndoRect(), (rules::Area{8, 8, 12, 8}));
}

TEST_F(MosaicTool, RightClicksAddFourAndWrap) {
  for (const int size : {8, 12, 16, 4}) {
    session.Command(kToolMosaic).RightClick(20, 20);
    session.LeftClick(20, 20);
    const int corner = 20 - 20 % size;
    EXPECT_EQ(session.NowUndoRect(), (rules::Area{corner, corner, size, size}));
  }
}

TEST_F(MosaicTool, ALargerTileIsOneAverage) {
  Area(8, 8, 4, 8, 1);
  session.Command(kToolMosaic).RightClick(20, 20);
  session.LeftClick(10, 10);
  Tile(24, 8, 8, 8);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(MosaicTool, ARightClickDuringADragKeepsTheSize) {
  session.Command(kToolMosaic);
  session.Press(8, 8);
  session.RightRelease(8, 8);
  session.Release(8, 8);
  EXPECT_EQ(session.NowUndoRect(), (rules::Area{8, 8, 4, 4}));
}

TEST_F(MosaicTool, AReleaseAboveOrLeftOfTheStartKeepsTheDrag) {
  session.Command(kToolMosaic);
  session.Press(20, 20);
  session.Release(8, 24);
  session.Release(24, 8);
  EXPECT_TRUE(Shows(session.NowView(), model));
  session.Release(24, 20);
  model.Fill(20, 20, 8, 4, 4);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(MosaicTool, AReleaseWithoutAPressDoesNothing) {
  session.Command(kToolMosaic);
  session.Release(20, 20);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(MosaicTool, UndoTakesTheMosaicBack) {
  Area(8, 8, 3, 3, 1);
  Click(10, 10);
  session.Command(kCommandUndo);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(MosaicTool, TheLayersBelowComeIntoTheTile) {
  Area(8, 8, 2, 4, 1);
  session.AddLayer("B", 64, 48);
  Click(10, 10);
  session.Command(kCommandCurrentCellOnly);
  InkModel upper;
  upper.FillWith(ModelPenOfLevel(24), 8, 8, 4, 4);
  EXPECT_TRUE(Shows(session.NowView(), upper));
}

TEST_F(MosaicTool, TheLayersAboveStayOut) {
  session.AddLayer("B", 64, 48);
  session.FillArea(8, 8, 4, 4, 1);
  session.Select(kLayerList, {0});
  Click(10, 10);
  session.Command(kCommandCurrentCellOnly);
  InkModel lower;
  lower.Fill(8, 8, 4, 4, 4);
  EXPECT_TRUE(Shows(session.NowView(), lower));
}

TEST_F(MosaicTool, DisplaySwitchesDoNotComeIntoTheTile) {
  Area(8, 8, 2, 4, 1);
  session.AddLayer("B", 64, 48);
  session.Command(kCommandDimOthers);
  Click(10, 10);
  session.Command(kCommandDimOthers).Command(kCommandCurrentCellOnly);
  InkModel upper;
  upper.FillWith(ModelPenOfLevel(24), 8, 8, 4, 4);
  EXPECT_TRUE(Shows(session.NowView(), upper));
}

TEST_F(MosaicTool, ALayerElsewhereGetsTheTileUnderTheMouse) {
  Area(20, 20, 8, 8, 1);
  session.Command(kToolLayerPosition);
  session.LeftDrag(10, 10, 11, 12);
  Click(21, 22);
  InkModel moved;
  moved.Fill(21, 22, 8, 8, 1);
  EXPECT_TRUE(Shows(session.NowView(), moved));
  EXPECT_EQ(session.NowUndoRect(), (rules::Area{20, 20, 4, 4}));
}

TEST(MosaicAtTheEdge, ATileOfLessThanSixteenPixelsStaysAsItIsComposed) {
  DrawingSession session({.width = 62, .height = 48});
  session.FillArea(60, 8, 1, 4, 1);
  session.Command(kToolMosaic).LeftClick(61, 10);
  InkModel model(62, 48);
  model.Fill(60, 8, 1, 4, 1);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST(MosaicAtTheEdge, TheComposedPixelsOfSuchATileAreCopiedIntoTheCell) {
  DrawingSession session({.width = 62, .height = 48});
  session.FillArea(60, 8, 1, 4, 1);
  session.AddLayer("B", 62, 48);
  session.Command(kToolMosaic).LeftClick(61, 10);
  session.Command(kCommandCurrentCellOnly);
  InkModel model(62, 48);
  model.Fill(60, 8, 1, 4, 1);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST(MosaicAtTheEdge, AnOddAreaDividesByItsSixteenthsTruncated) {
  DrawingSession session({.width = 63, .height = 48});
  session.FillArea(56, 8, 3, 8, 1);
  session.Command(kToolMosaic).RightClick(20, 20);
  session.LeftClick(60, 10);
  // 7 by 8 pixels, 4 columns of them white: 96 over 56 / 16.
  InkModel model(63, 48);
  model.FillWith(ModelPenOfLevel(32), 56, 8, 7, 8);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

}  // namespace
}  // namespace rules
