#include <gtest/gtest.h>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"
#include "rules/rule_table.h"

namespace rules {
namespace {

struct MosaicTool : DrawingTest {};

ScriptSession Click(int x, int y) {
  return Do().Command(kToolMosaic).LeftClick(x, y);
}

TEST_F(MosaicTool, RightClicksAddFourAndWrap) {
  for (const int size : {8, 12, 16, 4}) {
    session.Command(kToolMosaic).RightClick(20, 20).LeftClick(20, 20);
    const int corner = 20 - 20 % size;
    EXPECT_EQ(session.NowUndoRect(), (rules::Area{corner, corner, size, size}));
  }
}

const Rules<MosaicTool, "MosaicTool"> kMosaicToolRules = {
    {"TonesAndBoundariesCountBySteps", Filled{8, 8, 4, 1, 1}, Filled{8, 9, 4, 1, 2}, Filled{8, 10, 4, 1, 10},
     Filled{8, 11, 4, 1, 13}, Click(10, 10), Ink().FillWith(ModelPenOfLevel(4 * (0 + 1 + 2 + 3)), 8, 8, 4, 4)},
    {"AClickTreatsOneTileAndWritesWhite", Click(10, 11), Ink().Fill(8, 8, 4, 4, 4),
     Has("cut/undoRect", Area{8, 8, 4, 4})},
    {"AHalfBlackTileIsTheMiddleGrey", Filled{8, 8, 2, 4, 1}, Click(10, 10),
     Ink().FillWith(ModelPenOfLevel(24), 8, 8, 4, 4)},
    {"LineBlackCountsAsBlack", Do().DrawInkLine(8, 8, 11, 8), Click(10, 10),
     Ink().FillWith(ModelPenOfLevel(36), 8, 8, 4, 4)},
    {"ADragTreatsEveryTileOnItsOwn", Filled{8, 8, 4, 4, 1}, Filled{12, 8, 2, 4, 1},
     Do().Command(kToolMosaic).Press(9, 10).Release(17, 13),
     Ink()
         .FillWith(ModelPenOfLevel(0), 8, 8, 4, 4)
         .FillWith(ModelPenOfLevel(24), 12, 8, 4, 4)
         .FillWith(ModelPenOfLevel(48), 16, 8, 4, 4)
         .Fill(8, 12, 12, 4, 4),
     Has("cut/undoRect", Area{8, 8, 12, 8})},
    {"ALargerTileIsOneAverage", Filled{8, 8, 4, 8, 1}, Do().Command(kToolMosaic).RightClick(20, 20).LeftClick(10, 10),
     Ink().FillWith(ModelPenOfLevel(24), 8, 8, 8, 8)},
    {"ARightClickDuringADragKeepsTheSize", Do().Command(kToolMosaic).Press(8, 8).RightRelease(8, 8).Release(8, 8),
     Has("cut/undoRect", Area{8, 8, 4, 4})},
    {"AReleaseAboveOrLeftOfTheStartKeepsTheDrag", Do().Command(kToolMosaic).Press(20, 20).Release(8, 24).Release(24, 8),
     Ink(), Do().Release(24, 20), Ink().Fill(20, 20, 8, 4, 4)},
    {"AReleaseWithoutAPressDoesNothing", Do().Command(kToolMosaic).Release(20, 20), Ink()},
    {"UndoTakesTheMosaicBack", Filled{8, 8, 3, 3, 1}, Click(10, 10), Do().Command(kCommandUndo), Ink()},
    {"TheLayersBelowComeIntoTheTile", Filled{8, 8, 2, 4, 1}, Do().AddLayer("B", 64, 48), Click(10, 10),
     Do().Command(kCommandCurrentCellOnly), OnEmpty().FillWith(ModelPenOfLevel(24), 8, 8, 4, 4)},
    {"TheLayersAboveStayOut", Do().AddLayer("B", 64, 48).FillArea(8, 8, 4, 4, 1).Select(kLayerList, {0}), Click(10, 10),
     Do().Command(kCommandCurrentCellOnly), OnEmpty().Fill(8, 8, 4, 4, 4)},
    {"DisplaySwitchesDoNotComeIntoTheTile", Filled{8, 8, 2, 4, 1},
     Do().AddLayer("B", 64, 48).Command(kCommandDimOthers), Click(10, 10),
     Do().Commands({kCommandDimOthers, kCommandCurrentCellOnly}), OnEmpty().FillWith(ModelPenOfLevel(24), 8, 8, 4, 4)},
    {"ALayerElsewhereGetsTheTileUnderTheMouse", Filled{20, 20, 8, 8, 1},
     Do().Command(kToolLayerPosition).LeftDrag(10, 10, 11, 12), Click(21, 22), OnEmpty().Fill(21, 22, 8, 8, 1),
     Has("cut/undoRect", Area{20, 20, 4, 4})},
};

TEST(MosaicAtTheEdge, ATileOfLessThanSixteenPixelsStaysAsItIsComposed) {
  DrawingSession session({.width = 62, .height = 48});
  session.FillArea(60, 8, 1, 4, 1).Command(kToolMosaic).LeftClick(61, 10);
  InkModel model(62, 48);
  model.Fill(60, 8, 1, 4, 1);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST(MosaicAtTheEdge, TheComposedPixelsOfSuchATileAreCopiedIntoTheCell) {
  DrawingSession session({.width = 62, .height = 48});
  session.FillArea(60, 8, 1, 4, 1).AddLayer("B", 62, 48).Command(kToolMosaic).LeftClick(61, 10);
  session.Command(kCommandCurrentCellOnly);
  InkModel model(62, 48);
  model.Fill(60, 8, 1, 4, 1);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST(MosaicAtTheEdge, AnOddAreaDividesByItsSixteenthsTruncated) {
  DrawingSession session({.width = 63, .height = 48});
  session.FillArea(56, 8, 3, 8, 1).Command(kToolMosaic).RightClick(20, 20).LeftClick(60, 10);
  // 7 by 8 pixels, 4 columns of them white: 96 over 56 / 16.
  InkModel model(63, 48);
  model.FillWith(ModelPenOfLevel(32), 56, 8, 7, 8);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

}  // namespace
}  // namespace rules
