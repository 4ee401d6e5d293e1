#include <gtest/gtest.h>

#include "rules/drawing_session.h"
#include "rules/ink_model.h"

namespace rules {
namespace {

constexpr int copyBlock = 40061;
constexpr int pasteBlock = 40062;
constexpr int cutBlock = 40063;
constexpr int flipHorizontal = 40109;
constexpr int flipVertical = 40110;

struct Block : testing::Test {
  void Area(int x, int y, int width, int height, int index) {
    session.FillArea(x, y, width, height, index);
    model.Fill(x, y, width, height, index);
  }
  void Clear() { Area(0, 0, 64, 48, 0); }
  void Select(int left, int top, int right, int bottom) {
    session.Command(tool::AreaSelect).LeftDrag(left, top, right, bottom);
  }
  // A small layer in the middle of the canvas, from (22, 19) to (41, 28), which becomes current.
  void AddSmallLayer() { session.AddLayer("B", 20, 10); }
  DrawingSession session;
  InkModel model;
};

TEST_F(Block, AnEmptyBlockPastesNothing) {
  session.Command(pasteBlock);
  EXPECT_TRUE(Shows(session.NowView(), model));
  EXPECT_EQ(session.NowCut()["floatingPaste"], false);
  EXPECT_EQ(session.NowState()["frame"]["currentTool"], tool::FreePen);
}

TEST_F(Block, ComesBackAtItsPlaceInItsCut) {
  Area(12, 12, 4, 5, 2);
  Select(10, 10, 20, 20);
  session.Command(copyBlock);
  Clear();
  session.Command(pasteBlock);
  model.Fill(12, 12, 4, 5, 2);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(Block, ComesBackAtItsPlaceOnTheCanvasInAnotherLayer) {
  Area(12, 12, 4, 5, 2);
  Select(10, 10, 20, 20);
  session.Command(copyBlock);
  Clear();
  session.AddLayer("B", 64, 48);
  session.Command(tool::LayerPosition).LeftDrag(10, 10, 15, 13);
  session.Command(pasteBlock).Command(command::CurrentCellOnly);
  model.Fill(12, 12, 4, 5, 2);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(Block, LandsAtTheOriginInAnotherCut) {
  Area(12, 12, 4, 5, 2);
  Select(10, 10, 20, 20);
  session.Command(copyBlock);
  NewCutValues values;
  values.width = 64;
  values.height = 48;
  session.NewCut(values).Command(pasteBlock);
  InkModel other;
  other.Fill(2, 2, 4, 5, 2);
  EXPECT_TRUE(Shows(session.NowView(), other));
  EXPECT_EQ(session.NowSelection(), (rules::Area{0, 0, 10, 10}));
}

TEST_F(Block, FloatsAsASelectionOfTheAreaTool) {
  Area(12, 12, 4, 5, 2);
  Select(10, 10, 20, 20);
  session.Command(copyBlock).Command(tool::FreePen).Command(pasteBlock);
  EXPECT_EQ(session.NowSelection(), (rules::Area{10, 10, 20, 20}));
  EXPECT_EQ(session.NowCut()["floatingPaste"], true);
  EXPECT_EQ(session.NowState()["frame"]["currentTool"], tool::AreaSelect);
  EXPECT_EQ(session.NowUndoRect(), (rules::Area{10, 10, 10, 10}));
}

TEST_F(Block, TransparentPixelsOfItLeaveTheCell) {
  Area(12, 12, 4, 5, 2);
  Select(10, 10, 20, 20);
  session.Command(copyBlock);
  Area(8, 8, 30, 30, 4);
  session.Command(pasteBlock);
  model.Fill(12, 12, 4, 5, 2);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(Block, TheMaskDecidesWhatIsLifted) {
  Area(12, 12, 2, 5, 2);
  Area(14, 12, 2, 5, 3);
  Select(10, 10, 20, 20);
  session.Mask({3});
  session.Command(copyBlock);
  Clear();
  session.Command(pasteBlock);
  model.Fill(12, 12, 2, 5, 2);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(Block, TheMaskProtectsWhatItIsPastedOn) {
  Area(12, 12, 4, 5, 2);
  Select(10, 10, 20, 20);
  session.Command(copyBlock);
  Area(14, 10, 10, 10, 3);
  session.Mask({3});
  session.Command(pasteBlock);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(Block, ACopyWithoutASelectionKeepsTheOldOne) {
  Area(12, 12, 4, 5, 2);
  Select(10, 10, 20, 20);
  session.Command(copyBlock);
  Clear();
  session.Command(copyBlock).Command(pasteBlock);
  model.Fill(12, 12, 4, 5, 2);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(Block, ACopyIsCutToTheCell) {
  AddSmallLayer();
  Select(10, 10, 40, 25);
  session.Command(copyBlock).Command(pasteBlock);
  EXPECT_EQ(session.NowSelection(), (rules::Area{22, 19, 40, 25}));
}

TEST_F(Block, ACopyBesideTheCellStoresNothing) {
  AddSmallLayer();
  Select(2, 2, 10, 10);
  session.Command(copyBlock).Command(pasteBlock);
  EXPECT_EQ(session.NowCut()["floatingPaste"], false);
}

TEST_F(Block, ABlankRecordTakesNoPaste) {
  Area(12, 12, 4, 5, 2);
  Select(10, 10, 20, 20);
  session.Command(copyBlock).Command(tool::FreePen);
  session.Command(command::ToggleBlank).Command(pasteBlock);
  EXPECT_EQ(session.NowState()["frame"]["currentTool"], tool::FreePen);
  EXPECT_EQ(session.NowCut()["floatingPaste"], false);
}

TEST_F(Block, UndoTakesThePasteAway) {
  Area(12, 12, 4, 5, 2);
  Select(10, 10, 20, 20);
  session.Command(copyBlock);
  Clear();
  session.Command(pasteBlock).Command(command::Undo);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(Block, ACutErasesAndStores) {
  Area(5, 12, 20, 5, 2);
  Select(10, 10, 20, 20);
  session.Command(cutBlock);
  InkModel erased = model;
  erased.Fill(10, 12, 10, 5, 0);
  EXPECT_TRUE(Shows(session.NowView(), erased));
  EXPECT_EQ(session.NowUndoRect(), (rules::Area{10, 10, 10, 10}));
  session.Command(pasteBlock);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(Block, ACutLeavesProtectedPixels) {
  Area(12, 12, 2, 5, 2);
  Area(14, 12, 2, 5, 3);
  Select(10, 10, 20, 20);
  session.Mask({3});
  session.Command(cutBlock);
  model.Fill(12, 12, 2, 5, 0);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(Block, ACutBesideTheCellStopsBeforeTheUndoCopy) {
  AddSmallLayer();
  Area(25, 20, 5, 5, 2);
  Select(2, 2, 10, 10);
  session.Command(cutBlock);
  EXPECT_TRUE(Shows(session.NowView(), model));
  session.Command(command::Undo);
  EXPECT_TRUE(Shows(session.NowView(), InkModel()));
}

TEST_F(Block, ACutIsOneUndoStep) {
  Area(12, 12, 4, 5, 2);
  Select(10, 10, 20, 20);
  session.Command(cutBlock).Command(command::Undo);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

// The mirror commands.

TEST_F(Block, AMirrorTurnsTheWholeCellLeftToRight) {
  Area(10, 5, 3, 4, 2);
  session.Command(flipHorizontal);
  InkModel flipped;
  flipped.Fill(51, 5, 3, 4, 2);
  EXPECT_TRUE(Shows(session.NowView(), flipped));
  EXPECT_EQ(session.NowUndoRect(), (rules::Area{0, 0, 64, 48}));
}

TEST_F(Block, AMirrorTurnsTheWholeCellUpsideDown) {
  Area(10, 5, 3, 4, 2);
  session.Command(flipVertical);
  InkModel flipped;
  flipped.Fill(10, 39, 3, 4, 2);
  EXPECT_TRUE(Shows(session.NowView(), flipped));
}

TEST_F(Block, AMirrorKeepsToTheSelection) {
  Area(5, 12, 8, 3, 2);
  Area(15, 11, 1, 8, 3);
  Select(10, 10, 21, 21);
  session.Command(flipHorizontal);
  model.Fill(10, 12, 3, 3, 0);
  model.Fill(18, 12, 3, 3, 2);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(Block, AMirrorUpsideDownKeepsToTheSelection) {
  Area(12, 5, 3, 8, 2);
  Select(10, 10, 21, 21);
  session.Command(flipVertical);
  model.Fill(12, 10, 3, 3, 0);
  model.Fill(12, 18, 3, 3, 2);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(Block, AMirrorNeedsNoAreaTool) {
  Area(10, 5, 3, 4, 2);
  Select(8, 4, 20, 12);
  session.Command(tool::FreePen).Command(flipHorizontal);
  InkModel flipped;
  flipped.Fill(51, 5, 3, 4, 2);
  EXPECT_TRUE(Shows(session.NowView(), flipped)) << "the tool change ended the selection";
}

TEST_F(Block, EachSideOfAMirrorAsksTheMaskAboutWhatItCovers) {
  Area(10, 12, 1, 3, 2);
  Area(19, 12, 1, 3, 3);
  session.Mask({3});
  Select(10, 10, 20, 20);
  session.Command(flipHorizontal);
  model.Fill(10, 12, 1, 3, 3);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(Block, EachSideOfAMirrorUpsideDownAsksTheMaskAboutWhatItCovers) {
  Area(12, 10, 3, 1, 3);
  Area(12, 19, 3, 1, 2);
  session.Mask({3});
  Select(10, 10, 20, 20);
  session.Command(flipVertical);
  model.Fill(12, 19, 3, 1, 3);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(Block, AMirrorOfASelectionPastTheCellTurnsThePartInside) {
  AddSmallLayer();
  Area(22, 20, 2, 3, 2);
  Select(10, 10, 32, 40);
  session.Command(flipHorizontal);
  InkModel flipped;
  flipped.Fill(30, 20, 2, 3, 2);
  EXPECT_TRUE(Shows(session.NowView(), flipped));
}

TEST_F(Block, AMirrorIsOneUndoStep) {
  Area(10, 5, 3, 4, 2);
  session.Command(flipHorizontal).Command(command::Undo);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(Block, ABlankRecordIsNotMirrored) {
  Area(10, 5, 3, 4, 2);
  session.Command(command::ToggleBlank).Command(flipHorizontal).Command(command::ToggleBlank);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

}  // namespace
}  // namespace rules
