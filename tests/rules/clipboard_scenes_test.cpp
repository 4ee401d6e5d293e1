#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "rules/drawing_session.h"
#include "rules/ink_model.h"

namespace rules {
namespace {

constexpr int copyBlock = 40061;
constexpr int pasteBlock = 40062;
constexpr int cutBlock = 40063;
constexpr int pastePicture = 40091;
constexpr int makeUnderdrawing = 40024;
constexpr int transparentColour = 40137;
constexpr int layerList = 10004;

struct Scene : testing::Test {
  void Area(int x, int y, int width, int height, int index) {
    session.FillArea(x, y, width, height, index);
    model.Fill(x, y, width, height, index);
  }
  void Clear() { Area(0, 0, 64, 48, 0); }
  void Select(int left, int top, int right, int bottom) {
    session.Command(tool::AreaSelect).LeftDrag(left, top, right, bottom);
  }
  // Ink of index 2 at (12, 12), 4 by 4, in a block from (10, 10) to (20, 20), and then an empty cell.
  void CopyAndClear() {
    session.FillArea(12, 12, 4, 4, 2);
    Select(10, 10, 20, 20);
    session.Command(copyBlock);
    Clear();
  }
  // A layer of 20 by 10 whose left upper corner lies at (22, 19) of the canvas, which becomes current.
  void AddSmallLayer() { session.AddLayer("B", 20, 10); }
  // A second cut of the same canvas; its only layer is the small one.
  void NewCutWithSmallLayer() {
    NewCutValues values;
    values.width = 64;
    values.height = 48;
    values.layerWidth = 20;
    values.layerHeight = 10;
    session.NewCut(values);
  }
  void NewCutOfTheSameSize() {
    NewCutValues values;
    values.width = 64;
    values.height = 48;
    session.NewCut(values);
  }
  DrawingSession session;
  InkModel model;
};

// ---- Between cuts ----

struct BlockBetweenCuts : Scene {};

TEST_F(BlockBetweenCuts, LandsAtTheOriginOfTheCellNotOfTheCanvas) {
  CopyAndClear();
  NewCutWithSmallLayer();
  session.Command(pasteBlock);
  InkModel other;
  other.Fill(24, 21, 4, 4, 2);
  EXPECT_TRUE(Shows(session.NowView(), other));
  EXPECT_EQ(session.NowSelection(), (rules::Area{22, 19, 32, 29}));
  EXPECT_EQ(session.NowUndoRect(), (rules::Area{0, 0, 10, 10}));
}

TEST_F(BlockBetweenCuts, LargerThanTheCellKeepsItsWholeFrame) {
  Area(0, 0, 64, 48, 2);
  Area(0, 0, 3, 3, 3);
  Select(0, 0, 40, 30);
  session.Command(copyBlock);
  NewCutWithSmallLayer();
  session.Command(pasteBlock);
  InkModel other;
  other.Fill(22, 19, 20, 10, 2);
  other.Fill(22, 19, 3, 3, 3);
  EXPECT_TRUE(Shows(session.NowView(), other));
  EXPECT_EQ(session.NowSelection(), (rules::Area{22, 19, 62, 49}));
  EXPECT_EQ(session.NowUndoRect(), (rules::Area{0, 0, 40, 30}));
}

TEST_F(BlockBetweenCuts, ComesBackAtItsPlaceInTheFirstCutAfterAPasteInTheSecond) {
  CopyAndClear();
  NewCutWithSmallLayer();
  session.Command(pasteBlock).Activate(0).Command(pasteBlock);
  model.Fill(12, 12, 4, 4, 2);
  EXPECT_TRUE(Shows(session.NowView(), model));
  EXPECT_EQ(session.NowSelection(), (rules::Area{10, 10, 20, 20}));
}

TEST_F(BlockBetweenCuts, BelongsToTheCutOfTheLastCopy) {
  CopyAndClear();
  NewCutOfTheSameSize();
  session.FillArea(31, 6, 2, 2, 4);
  Select(30, 5, 38, 12);
  session.Command(copyBlock).Activate(0).Command(pasteBlock);
  model.Fill(1, 1, 2, 2, 4);
  EXPECT_TRUE(Shows(session.NowView(), model));
  session.Activate(1).Command(pasteBlock);
  EXPECT_EQ(session.NowSelection(), (rules::Area{30, 5, 38, 12}));
}

TEST_F(BlockBetweenCuts, OutlivesTheCutItCameFrom) {
  CopyAndClear();
  NewCutOfTheSameSize();
  session.Activate(0).Answer("no").Close();
  session.Command(pasteBlock);
  InkModel other;
  other.Fill(2, 2, 4, 4, 2);
  EXPECT_TRUE(Shows(session.NowView(), other));
}

TEST_F(BlockBetweenCuts, ACutOutBlockIsTakenAlongAndItsUndoStaysBehind) {
  Area(12, 12, 4, 4, 2);
  Select(10, 10, 20, 20);
  session.Command(cutBlock);
  NewCutOfTheSameSize();
  session.Command(pasteBlock);
  InkModel other;
  other.Fill(2, 2, 4, 4, 2);
  EXPECT_TRUE(Shows(session.NowView(), other));
  session.Activate(0).Command(command::Undo);
  EXPECT_TRUE(Shows(session.NowView(), model));
  session.Activate(1).Command(command::Undo);
  EXPECT_TRUE(Shows(session.NowView(), InkModel()));
}

TEST_F(BlockBetweenCuts, ADragInTheSecondCutMovesTheBlockThere) {
  CopyAndClear();
  NewCutOfTheSameSize();
  session.Command(pasteBlock).LeftDrag(5, 5, 35, 25);
  InkModel other;
  other.Fill(32, 22, 4, 4, 2);
  EXPECT_TRUE(Shows(session.NowView(), other));
  session.Activate(0);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

// ---- Between layers ----

struct BlockBetweenLayers : Scene {
  // 30 by 20 pixels from (10, 10) on, with a mark in the left upper corner.
  void CopyLargeBlock() {
    session.FillArea(10, 10, 30, 20, 2);
    session.FillArea(10, 10, 5, 5, 3);
    Select(10, 10, 40, 30);
    session.Command(copyBlock);
    Clear();
  }
};

TEST_F(BlockBetweenLayers, OnASmallerLayerIsCutToItAndKeepsItsPlace) {
  CopyLargeBlock();
  AddSmallLayer();
  session.Command(pasteBlock);
  model.Fill(22, 19, 18, 10, 2);
  EXPECT_TRUE(Shows(session.NowView(), model));
  EXPECT_EQ(session.NowSelection(), (rules::Area{10, 10, 40, 30}));
  EXPECT_EQ(session.NowUndoRect(), (rules::Area{-12, -9, 30, 20}));
}

TEST_F(BlockBetweenLayers, ADragBringsInThePartThatLayOutside) {
  CopyLargeBlock();
  AddSmallLayer();
  session.Command(pasteBlock).LeftDrag(30, 22, 42, 31);
  model.Fill(22, 19, 20, 10, 2);
  model.Fill(22, 19, 5, 5, 3);
  EXPECT_TRUE(Shows(session.NowView(), model));
  EXPECT_EQ(session.NowSelection(), (rules::Area{22, 19, 52, 39}));
  EXPECT_EQ(session.NowUndoRect(), (rules::Area{-12, -9, 42, 29}));
}

TEST_F(BlockBetweenLayers, UndoOnTheSmallerLayerTakesItAwayAndBringsItBack) {
  CopyLargeBlock();
  AddSmallLayer();
  session.Command(pasteBlock).Command(command::Undo);
  EXPECT_TRUE(Shows(session.NowView(), model));
  session.Command(command::Undo);
  model.Fill(22, 19, 18, 10, 2);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(BlockBetweenLayers, OutOfASmallerLayerKeepsItsPlaceOnALargerOne) {
  AddSmallLayer();
  session.FillArea(24, 20, 6, 4, 3);
  session.Command(tool::AreaSelect).RightClick(30, 22).Command(copyBlock);
  session.Select(layerList, {0}).Command(pasteBlock).Command(command::CurrentCellOnly);
  model.Fill(24, 20, 6, 4, 3);
  EXPECT_TRUE(Shows(session.NowView(), model));
  EXPECT_EQ(session.NowUndoRect(), (rules::Area{22, 19, 20, 10}));
}

TEST_F(BlockBetweenLayers, WhollyBesideTheOtherLayerFloatsAndCanBeDraggedIn) {
  CopyAndClear();
  AddSmallLayer();
  session.Command(pasteBlock);
  EXPECT_TRUE(Shows(session.NowView(), model));
  EXPECT_EQ(session.NowCut()["floatingPaste"], true);
  session.LeftDrag(15, 15, 30, 25);
  model.Fill(27, 22, 4, 4, 2);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(BlockBetweenLayers, GoesToAnotherCellOfTheLayer) {
  Area(12, 12, 4, 4, 2);
  Select(10, 10, 20, 20);
  session.Command(copyBlock).Command(command::AddCell).Command(pasteBlock).LeftDrag(15, 15, 25, 15);
  InkModel added;
  added.Fill(22, 12, 4, 4, 2);
  EXPECT_TRUE(Shows(session.NowView(), added));
  session.Command(command::PreviousCell);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

// ---- Masks ----

struct MaskedBlock : Scene {};

TEST_F(MaskedBlock, TheMaskOfTheCopyLiftsAndTheMaskOfThePasteProtects) {
  Area(12, 12, 2, 5, 2);
  Area(14, 12, 2, 5, 3);
  Area(16, 12, 2, 5, 4);
  Select(10, 10, 20, 20);
  session.Mask({3});
  session.Command(copyBlock);
  Clear();
  Area(11, 12, 9, 2, 9);
  session.Mask({9});
  session.Command(pasteBlock);
  model.Fill(12, 14, 2, 3, 2);
  model.Fill(16, 14, 2, 3, 4);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(MaskedBlock, ProtectedTransparencyLetsThePasteOverInkOnly) {
  CopyAndClear();
  Area(13, 10, 10, 4, 3);
  session.Mask({0});
  session.Command(pasteBlock);
  model.Fill(13, 12, 3, 2, 2);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(MaskedBlock, ProtectedTransparencyDoesNotChangeWhatIsLifted) {
  Area(12, 12, 4, 4, 2);
  Select(10, 10, 20, 20);
  session.Mask({0});
  session.Command(copyBlock);
  Clear();
  session.Command(pasteBlock);
  model.Fill(12, 12, 4, 4, 2);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(MaskedBlock, NothingLiftedStillFloatsInItsFrame) {
  Area(12, 12, 4, 4, 2);
  Select(10, 10, 20, 20);
  session.Mask({2});
  session.Command(copyBlock);
  Clear();
  session.Command(pasteBlock);
  EXPECT_TRUE(Shows(session.NowView(), model));
  EXPECT_EQ(session.NowCut()["floatingPaste"], true);
  EXPECT_EQ(session.NowSelection(), (rules::Area{10, 10, 20, 20}));
}

TEST_F(MaskedBlock, ACopyReplacesAllOfAnOlderBlock) {
  Area(10, 10, 10, 10, 2);
  Select(10, 10, 20, 20);
  session.Command(copyBlock);
  Area(10, 10, 10, 10, 3);
  Select(10, 10, 20, 20);
  session.Mask({3});
  session.Command(copyBlock);
  Clear();
  session.Command(pasteBlock);
  EXPECT_TRUE(Shows(session.NowView(), model)) << "the older block's ink came back";
}

TEST_F(MaskedBlock, AMaskSetWhileItFloatsCountsForTheNextDrag) {
  CopyAndClear();
  Area(40, 10, 10, 20, 3);
  session.Command(pasteBlock);
  session.Mask({3});
  session.LeftDrag(15, 15, 41, 25);
  model.Fill(38, 22, 2, 4, 2);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(MaskedBlock, AMaskClearedWhileItFloatsCountsForTheNextDrag) {
  CopyAndClear();
  Area(10, 10, 10, 10, 3);
  Area(40, 10, 10, 20, 3);
  session.Mask({3});
  session.Command(pasteBlock);
  EXPECT_TRUE(Shows(session.NowView(), model));
  session.Mask({});
  session.LeftDrag(15, 15, 41, 25);
  model.Fill(38, 22, 4, 4, 2);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(MaskedBlock, TheUndoOfAMaskedPasteGivesTheCellBack) {
  CopyAndClear();
  Area(13, 10, 10, 4, 3);
  session.Mask({3});
  session.Command(pasteBlock).Command(command::Undo);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(MaskedBlock, ACutUnderAMaskStoresWhatItErasesAndUndoGivesBackBoth) {
  Area(12, 12, 2, 4, 2);
  Area(14, 12, 2, 4, 3);
  Select(10, 10, 20, 20);
  session.Mask({3});
  session.Command(cutBlock);
  InkModel erased = model;
  erased.Fill(12, 12, 2, 4, 0);
  EXPECT_TRUE(Shows(session.NowView(), erased));
  session.Command(command::Undo);
  EXPECT_TRUE(Shows(session.NowView(), model));
  Clear();
  session.Command(pasteBlock);
  model.Fill(12, 12, 2, 4, 2);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

// ---- Roles in the block ----

struct BlockOfRoles : Scene {};

TEST_F(BlockOfRoles, HoldsLinesBoundariesAndUnderdrawingExactly) {
  Area(10, 10, 2, 6, 1);
  Area(12, 10, 2, 6, 2);
  Area(14, 10, 2, 6, 3);
  session.Command(makeUnderdrawing);
  model.Fill(10, 10, 2, 6, 5);
  model.Fill(12, 10, 2, 6, 6);
  model.Fill(14, 10, 2, 6, 7);
  Area(16, 10, 1, 6, 9);
  Area(17, 10, 1, 6, 10);
  session.DrawInkLine(18, 10, 18, 15);
  model.Fill(18, 10, 1, 6, 8);
  Area(19, 10, 1, 6, 4);
  EXPECT_TRUE(Shows(session.NowView(), model));
  const InkModel drawn = model;
  Select(10, 10, 20, 20);
  session.Command(copyBlock);
  Clear();
  session.Command(pasteBlock);
  EXPECT_TRUE(Shows(session.NowView(), drawn));
}

// A tone mark shifts the tone that it is pasted on, and stays itself where there is none.
TEST_F(BlockOfRoles, ToneMarksChangeTheGreysBelow) {
  const int marks[] = {11, 12, 13, 14};
  const int below[] = {0, 1, 2, 3, 4, 9, 10};
  const int shown[4][7] = {
      {11, 3, 4, 4, 4, 4, 4}, {12, 2, 3, 4, 4, 3, 4}, {13, 1, 1, 2, 3, 1, 2}, {14, 1, 1, 1, 2, 1, 1}};
  for (int i = 0; i < 4; ++i) Area(10, 10 + 2 * i, 14, 2, marks[i]);
  Select(10, 10, 24, 18);
  session.Command(copyBlock);
  Clear();
  for (int j = 1; j < 7; ++j) Area(10 + 2 * j, 8, 2, 12, below[j]);
  session.Command(pasteBlock);
  for (int i = 0; i < 4; ++i) {
    for (int j = 0; j < 7; ++j) model.Fill(10 + 2 * j, 10 + 2 * i, 2, 2, shown[i][j]);
  }
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(BlockOfRoles, AFloatingToneMarkLeavesTheGreysAsTheyWere) {
  session.FillArea(12, 12, 4, 4, 11);
  Select(10, 10, 20, 20);
  session.Command(copyBlock);
  Clear();
  Area(10, 10, 10, 10, 1);
  Area(40, 10, 10, 20, 2);
  session.Command(pasteBlock);
  InkModel pasted = model;
  pasted.Fill(12, 12, 4, 4, 3);
  EXPECT_TRUE(Shows(session.NowView(), pasted));
  session.LeftDrag(15, 15, 45, 25);
  model.Fill(42, 22, 4, 4, 4);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

// ---- The floating paste ----

struct FloatingBlock : Scene {
  FloatingBlock() {
    CopyAndClear();
    Area(40, 10, 10, 20, 3);
    session.Command(pasteBlock);
  }
  // The cell with the block at this place of its left upper corner.
  InkModel With(int x, int y) const {
    InkModel with = model;
    with.Fill(x + 2, y + 2, 4, 4, 2);
    return with;
  }
};

TEST_F(FloatingBlock, UndoAndRedoBeforeADrag) {
  EXPECT_TRUE(Shows(session.NowView(), With(10, 10)));
  session.Command(command::Undo);
  EXPECT_TRUE(Shows(session.NowView(), model));
  session.Command(command::Undo);
  EXPECT_TRUE(Shows(session.NowView(), With(10, 10)));
}

TEST_F(FloatingBlock, UndoAndRedoAfterADragMeanItsLastPlace) {
  session.LeftDrag(15, 15, 45, 25);
  EXPECT_TRUE(Shows(session.NowView(), With(40, 20)));
  session.Command(command::Undo);
  EXPECT_TRUE(Shows(session.NowView(), model));
  session.Command(command::Undo);
  EXPECT_TRUE(Shows(session.NowView(), With(40, 20)));
  session.Command(command::Undo);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(FloatingBlock, UndoAfterSeveralDragsTakesThePasteAwayAtOnce) {
  session.LeftDrag(15, 15, 45, 25);
  session.LeftDrag(42, 24, 22, 34);
  session.LeftDrag(22, 34, 20, 30);
  EXPECT_TRUE(Shows(session.NowView(), With(18, 26)));
  session.Command(command::Undo);
  EXPECT_TRUE(Shows(session.NowView(), model));
  session.Command(command::Undo);
  EXPECT_TRUE(Shows(session.NowView(), With(18, 26)));
}

TEST_F(FloatingBlock, UndoEndsTheSelectionAndLeavesItAfloat) {
  session.LeftDrag(15, 15, 45, 25);
  session.Command(command::Undo);
  EXPECT_FALSE(session.HasSelection());
  EXPECT_EQ(session.NowCut()["floatingPaste"], true);
}

TEST_F(FloatingBlock, APressWithoutAMovePutsItBackWhereItWas) {
  session.Press(15, 15);
  session.Release(15, 15);
  EXPECT_TRUE(Shows(session.NowView(), With(10, 10)));
  EXPECT_EQ(session.NowSelection(), (rules::Area{10, 10, 20, 20}));
  EXPECT_EQ(session.NowCut()["floatingPaste"], true);
}

TEST_F(FloatingBlock, TheUndoRectGrowsOverAllItsPlaces) {
  EXPECT_EQ(session.NowUndoRect(), (rules::Area{10, 10, 10, 10}));
  session.LeftDrag(15, 15, 45, 25);
  EXPECT_EQ(session.NowUndoRect(), (rules::Area{10, 10, 40, 20}));
  session.LeftDrag(42, 24, 22, 34);
  EXPECT_EQ(session.NowUndoRect(), (rules::Area{10, 10, 40, 30}));
}

TEST_F(FloatingBlock, MadeFinalIsMovedAsTheInkOfTheCell) {
  session.LeftDrag(30, 40, 34, 44);
  Select(10, 10, 20, 20);
  session.LeftDrag(15, 15, 25, 25);
  EXPECT_TRUE(Shows(session.NowView(), With(20, 20)));
  session.Command(command::Undo);
  EXPECT_TRUE(Shows(session.NowView(), With(10, 10))) << "the paste itself was final";
}

TEST_F(FloatingBlock, ASecondPasteLeavesTheFirstWhereItWasDragged) {
  session.LeftDrag(15, 15, 45, 25).Command(pasteBlock);
  InkModel both = With(40, 20);
  both.Fill(12, 12, 4, 4, 2);
  EXPECT_TRUE(Shows(session.NowView(), both));
  session.LeftDrag(15, 15, 35, 45);
  both.Fill(12, 12, 4, 4, 0);
  both.Fill(32, 42, 4, 4, 2);
  EXPECT_TRUE(Shows(session.NowView(), both));
  session.Command(command::Undo);
  EXPECT_TRUE(Shows(session.NowView(), With(40, 20)));
}

// The flag outlives the selection, so that the next drag of any frame is a drag of the paste: the frame's size decides
// how much of the block lands.
TEST_F(FloatingBlock, AFrameDrawnAfterAToolChangeDragsThePaste) {
  session.Command(tool::FreePen);
  Select(25, 30, 30, 35);
  session.LeftDrag(28, 33, 33, 35);
  model.Fill(32, 34, 3, 3, 2);
  EXPECT_TRUE(Shows(session.NowView(), model));
  EXPECT_EQ(session.NowSelection(), (rules::Area{30, 32, 35, 37}));
}

TEST_F(FloatingBlock, AfterUndoAndRedoAFrameStillDragsThePaste) {
  session.LeftDrag(15, 15, 35, 25);
  session.Command(command::Undo).Command(command::Undo);
  session.LeftDrag(30, 20, 40, 30).LeftDrag(35, 25, 25, 35);
  EXPECT_TRUE(Shows(session.NowView(), With(20, 30)));
}

// The press swaps with the undo copy, whatever that holds: after an undo it is the paste.
TEST_F(FloatingBlock, AfterAnUndoADragBringsThePasteBackAndPutsAnotherOne) {
  session.Command(command::Undo);
  session.LeftDrag(20, 30, 30, 40).LeftDrag(25, 35, 27, 37);
  InkModel both = With(22, 32);
  both.Fill(12, 12, 4, 4, 2);
  EXPECT_TRUE(Shows(session.NowView(), both));
}

TEST_F(FloatingBlock, AWidenedFrameTakesTheBlockToItsCorner) {
  session.LeftDrag(10, 15, 7, 15);
  EXPECT_EQ(session.NowSelection(), (rules::Area{7, 10, 23, 20}));
  EXPECT_TRUE(Shows(session.NowView(), With(10, 10)));
  session.LeftDrag(15, 15, 15, 25);
  EXPECT_TRUE(Shows(session.NowView(), With(7, 20)));
  EXPECT_EQ(session.NowSelection(), (rules::Area{7, 20, 23, 30}));
  EXPECT_EQ(session.NowUndoRect(), (rules::Area{7, 10, 16, 20}));
}

TEST_F(FloatingBlock, ANarrowedFrameCutsTheBlock) {
  session.LeftDrag(10, 15, 13, 15);
  EXPECT_EQ(session.NowSelection(), (rules::Area{13, 10, 17, 20}));
  session.LeftDrag(15, 15, 25, 25);
  model.Fill(25, 22, 2, 4, 2);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(FloatingBlock, DraggedOverTheRightEdgeAndBackIsWhole) {
  session.LeftDrag(12, 15, 62, 15);
  model.Fill(40, 10, 10, 20, 3);
  EXPECT_TRUE(Shows(session.NowView(), With(60, 10)));
  EXPECT_EQ(session.NowSelection(), (rules::Area{60, 10, 70, 20}));
  session.LeftDrag(63, 15, 23, 25);
  EXPECT_TRUE(Shows(session.NowView(), With(20, 20)));
  session.Command(command::Undo);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(FloatingBlock, DraggedOverTheLeftUpperCornerAndBackIsWhole) {
  session.LeftDrag(17, 17, 3, 4);
  EXPECT_TRUE(Shows(session.NowView(), With(-4, -3)));
  EXPECT_EQ(session.NowSelection(), (rules::Area{-4, -3, 6, 7}));
  session.LeftDrag(3, 4, 23, 24);
  EXPECT_TRUE(Shows(session.NowView(), With(16, 17)));
}

TEST_F(FloatingBlock, DraggedWhollyOutLeavesTheCellAndUndoBringsItBack) {
  session.LeftDrag(15, 15, 15, 60);
  EXPECT_TRUE(Shows(session.NowView(), model));
  session.Command(command::Undo);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

// ---- The frame in the window and on the grid ----

// At 2/1 the middle of the canvas stands in the middle of the window: a window point is twice the cut's less (32, 24).
struct ZoomedBlock : Scene {
  ZoomedBlock() {
    Area(22, 18, 4, 4, 2);
    session.Command(tool::Zoom);
    session.Press(32, 24);
    Select(11, 11, 30, 26);
    session.Command(copyBlock).Command(40092).Command(pasteBlock);
    model.Fill(21, 17, 10, 8, 0);
  }
  InkModel With(int x, int y) const {
    InkModel with = model;
    with.Fill(x + 1, y + 1, 4, 4, 2);
    return with;
  }
};

TEST_F(ZoomedBlock, ComesBackAtItsPlaceWithAFrameOfWholePixels) {
  EXPECT_TRUE(Shows(session.NowView(), With(21, 17)));
  EXPECT_EQ(session.NowSelection(), (rules::Area{10, 10, 30, 26}));
  EXPECT_EQ(session.NowUndoRect(), (rules::Area{21, 17, 10, 8}));
}

TEST_F(ZoomedBlock, IsDraggedByWholePixels) {
  session.LeftDrag(21, 20, 31, 28);
  EXPECT_TRUE(Shows(session.NowView(), With(26, 21)));
  EXPECT_EQ(session.NowSelection(), (rules::Area{20, 18, 40, 34}));
  session.Command(command::Undo);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

struct BlockOnTheGrid : Scene {};

TEST_F(BlockOnTheGrid, ACopySnapsTheSelectionOfAnEarlierGrid) {
  Area(0, 0, 64, 48, 2);
  Select(11, 13, 30, 27);
  session.Grid(8, 8);
  session.Command(copyBlock);
  session.Grid(1, 1);
  Clear();
  session.Command(pasteBlock);
  model.Fill(8, 16, 24, 8, 2);
  EXPECT_TRUE(Shows(session.NowView(), model));
  EXPECT_EQ(session.NowSelection(), (rules::Area{8, 16, 32, 24}));
}

TEST_F(BlockOnTheGrid, ADragGoesInStepsOfTheGrid) {
  CopyAndClear();
  session.Command(pasteBlock);
  session.Grid(8, 8);
  session.LeftDrag(15, 15, 26, 27);
  model.Fill(20, 20, 4, 4, 2);
  EXPECT_TRUE(Shows(session.NowView(), model));
  EXPECT_EQ(session.NowSelection(), (rules::Area{18, 18, 28, 28}));
}

// ---- Cut ----

struct CutOut : Scene {
  CutOut() {
    Area(12, 12, 4, 4, 2);
    Area(40, 10, 10, 20, 3);
    Select(10, 10, 20, 20);
  }
  InkModel Without() const {
    InkModel without = model;
    without.Fill(10, 10, 10, 10, 0);
    return without;
  }
};

TEST_F(CutOut, UndoAndRedo) {
  session.Command(cutBlock).Command(command::Undo);
  EXPECT_TRUE(Shows(session.NowView(), model));
  session.Command(command::Undo);
  EXPECT_TRUE(Shows(session.NowView(), Without()));
}

TEST_F(CutOut, EndsTheSelectionWhichACopyKeeps) {
  session.Command(copyBlock);
  EXPECT_EQ(session.NowSelection(), (rules::Area{10, 10, 20, 20}));
  session.Command(cutBlock);
  EXPECT_FALSE(session.HasSelection());
}

TEST_F(CutOut, TheBlockOutlivesTheUndo) {
  session.Command(cutBlock).Command(command::Undo).Command(pasteBlock).LeftDrag(15, 15, 35, 35);
  model.Fill(32, 32, 4, 4, 2);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(CutOut, UndoAfterThePasteGivesTheStateAfterTheCut) {
  session.Command(cutBlock).Command(pasteBlock).LeftDrag(15, 15, 35, 35);
  InkModel moved = Without();
  moved.Fill(32, 32, 4, 4, 2);
  EXPECT_TRUE(Shows(session.NowView(), moved));
  session.Command(command::Undo);
  EXPECT_TRUE(Shows(session.NowView(), Without()));
  session.Command(command::Undo);
  EXPECT_TRUE(Shows(session.NowView(), moved));
}

TEST_F(CutOut, PastTheEdgeOfASmallLayerIsLimitedToIt) {
  // A new layer would lie over the selection.
  session.Repaint();
  AddSmallLayer();
  session.FillArea(22, 19, 20, 10, 4);
  Select(10, 10, 30, 24);
  session.Command(cutBlock);
  InkModel rest = model;
  rest.Fill(22, 19, 20, 10, 4);
  const InkModel whole = rest;
  rest.Fill(22, 19, 8, 5, 0);
  EXPECT_TRUE(Shows(session.NowView(), rest));
  EXPECT_EQ(session.NowUndoRect(), (rules::Area{0, 0, 8, 5}));
  session.Command(command::Undo);
  EXPECT_TRUE(Shows(session.NowView(), whole));
  session.Command(command::Undo).Command(pasteBlock);
  EXPECT_TRUE(Shows(session.NowView(), whole));
  EXPECT_EQ(session.NowSelection(), (rules::Area{22, 19, 30, 24}));
}

// ---- Pictures ----

uint32_t Red(uint32_t colour) {
  return colour >> 16 & 255;
}

int LevelOf(uint32_t colour) {
  const uint32_t green = colour >> 8 & 255;
  const uint32_t grey = ((colour & 255) + (Red(colour) + 2 * green) * 2) / 7;
  return static_cast<int>(grey * 49 / 256);
}

// The ink of a picture's pixel, whose place in the picture decides the dither.
int InkOf(uint32_t colour, int x, int y) {
  return ModelInkAt(ModelPenOfLevel(LevelOf(colour)), x, y);
}

struct Picture {
  int width = 0;
  int height = 0;
  std::vector<uint32_t> pixels = {};
  uint32_t At(int x, int y) const {
    return pixels[static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)];
  }
};

Picture PlainPicture(int width, int height, uint32_t colour) {
  return {width, height, std::vector<uint32_t>(static_cast<size_t>(width) * static_cast<size_t>(height), colour)};
}

// Colours that differ from pixel to pixel, out of this list.
Picture MixedPicture(int width, int height, const std::vector<uint32_t>& colours) {
  Picture picture{width, height};
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      picture.pixels.push_back(colours[static_cast<size_t>(x * x + 3 * y + x * y / 5) % colours.size()]);
    }
  }
  return picture;
}

void Put(std::string& bytes, uint32_t value, size_t count) {
  for (size_t i = 0; i < count; ++i) bytes.push_back(static_cast<char>(value >> (8 * i) & 0xFF));
}

// A bitmap file of 1, 4, 8, 24 or 32 bits. With 8 bits and less the colour table holds the colours of the list, which
// the picture's pixels are taken from, and no more for 8 bits. The fourth byte of a 32-bit pixel is not zero.
std::string BitmapFile(const Picture& picture, uint32_t bits, const std::vector<uint32_t>& colours) {
  const uint32_t entries = bits > 8 ? 0 : bits == 8 ? static_cast<uint32_t>(colours.size()) : 1U << bits;
  const size_t pitch = (static_cast<size_t>(picture.width) * bits + 31) / 32 * 4;
  std::string rows;
  for (int y = picture.height - 1; y >= 0; --y) {
    std::string row(pitch, '\0');
    for (int x = 0; x < picture.width; ++x) {
      const uint32_t colour = picture.At(x, y);
      const size_t column = static_cast<size_t>(x);
      if (bits > 8) {
        const uint32_t value = colour | 0xA5000000;
        for (size_t i = 0; i < bits / 8; ++i) row[column * bits / 8 + i] = static_cast<char>(value >> (8 * i) & 0xFF);
        continue;
      }
      uint32_t index = 0;
      while (index < colours.size() && colours[index] != colour) ++index;
      const uint32_t shift = 8 - bits - static_cast<uint32_t>(x) * bits % 8;
      char& byte = row[column * bits / 8];
      byte = static_cast<char>(static_cast<unsigned char>(byte) | index << shift);
    }
    rows.append(row);
  }
  std::string bytes = "BM";
  Put(bytes, static_cast<uint32_t>(54 + 4 * entries + rows.size()), 4);
  Put(bytes, 0, 4);
  Put(bytes, 54 + 4 * entries, 4);
  Put(bytes, 40, 4);
  Put(bytes, static_cast<uint32_t>(picture.width), 4);
  Put(bytes, static_cast<uint32_t>(picture.height), 4);
  Put(bytes, 1, 2);
  Put(bytes, bits, 2);
  Put(bytes, 0, 4);
  Put(bytes, static_cast<uint32_t>(rows.size()), 4);
  Put(bytes, 0, 4);
  Put(bytes, 0, 4);
  Put(bytes, bits == 8 ? entries : 0, 4);
  Put(bytes, 0, 4);
  for (uint32_t i = 0; i < entries; ++i) Put(bytes, i < colours.size() ? colours[i] : 0x445566, 4);
  return bytes + rows;
}

void PutOnClipboard(DrawingSession& session, const std::string& file) {
  session.Write("picture.bmp", file);
  session.Line("clipboard " + Quoted(session.Path("picture.bmp")));
}

void PastePicture(DrawingSession& session, const Picture& picture) {
  PutOnClipboard(session, BitmapFile(picture, 24, {}));
  session.Command(pastePicture);
}

void SwitchTransparencyOn(DrawingSession& session, const std::string& colour) {
  session.Line("color " + colour).Command(transparentColour);
}

// Draws the picture into the model with its left upper corner at (x, y); pixels of the transparent colour are left out.
void Draw(InkModel& model, const Picture& picture, int x, int y, int64_t transparent = -1) {
  for (int j = 0; j < picture.height; ++j) {
    for (int i = 0; i < picture.width; ++i) {
      const uint32_t colour = picture.At(i, j);
      if (int64_t{colour} != transparent) model.Set(x + i, y + j, InkOf(colour, i, j));
    }
  }
}

struct DepthCase {
  uint32_t bits;
  std::vector<uint32_t> colours;
};

class PictureOfADepth : public testing::TestWithParam<DepthCase> {
 protected:
  // The second colour of each list is the transparent one.
  static constexpr uint32_t transparent = 0x30C8A0;
  PictureOfADepth() : picture(MixedPicture(13, 7, GetParam().colours)) {
    session.FillArea(3, 0, 4, 20, 3);
    model.Fill(3, 0, 4, 20, 3);
  }
  void Paste() {
    PutOnClipboard(session, BitmapFile(picture, GetParam().bits, GetParam().colours));
    session.Command(pastePicture);
  }
  Picture picture;
  DrawingSession session;
  InkModel model;
};

TEST_P(PictureOfADepth, HasEveryPixelWithoutATransparentColour) {
  Paste();
  Draw(model, picture, 0, 0);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_P(PictureOfADepth, ShowsWhatLiesBelowTheTransparentColour) {
  SwitchTransparencyOn(session, "30C8A0");
  Paste();
  Draw(model, picture, 0, 0, transparent);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_P(PictureOfADepth, HasEveryPixelAfterTheSwitchWentOffAgain) {
  SwitchTransparencyOn(session, "30C8A0");
  session.Command(transparentColour);
  Paste();
  Draw(model, picture, 0, 0);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_P(PictureOfADepth, HasEveryPixelWhenAnotherColourIsTransparent) {
  SwitchTransparencyOn(session, "30C8A2");
  Paste();
  Draw(model, picture, 0, 0);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_P(PictureOfADepth, KeepsItsHolesInADrag) {
  SwitchTransparencyOn(session, "30C8A0");
  Paste();
  session.LeftDrag(5, 3, 6, 10);
  Draw(model, picture, 1, 7, transparent);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_P(PictureOfADepth, KeepsItsPixelsWhenTheSwitchGoesOnWhileItFloats) {
  Paste();
  SwitchTransparencyOn(session, "30C8A0");
  session.LeftDrag(5, 3, 6, 10);
  Draw(model, picture, 1, 7);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

INSTANTIATE_TEST_SUITE_P(Bits, PictureOfADepth,
                         testing::Values(DepthCase{1, {0x000000, 0x30C8A0}},
                                         DepthCase{4, {0xFFFFFF, 0x30C8A0, 0x808080, 0x30C8A1}},
                                         DepthCase{8, {0x102030, 0x30C8A0, 0x30C8A1, 0xFFFFFF, 0x31C8A0}},
                                         DepthCase{24, {0xFFFFFF, 0x30C8A0, 0x30C9A0, 0xA0C830, 0x7F7F7F}},
                                         DepthCase{32, {0xFFFFFF, 0x30C8A0, 0x30C9A0, 0xA0C830, 0x7F7F7F}}),
                         [](const testing::TestParamInfo<DepthCase>& test) {
                           return "Of" + std::to_string(test.param.bits);
                         });

TEST(ClipboardPicture, LargerThanTheCanvasIsCutAndADragShowsTheRest) {
  DrawingSession session;
  const Picture picture = MixedPicture(80, 60, {0x000000, 0xFFFFFF, 0x808080, 0x303030});
  PastePicture(session, picture);
  InkModel model;
  Draw(model, picture, 0, 0);
  EXPECT_TRUE(Shows(session.NowView(), model));
  EXPECT_EQ(session.NowSelection(), (Area{0, 0, 80, 60}));
  EXPECT_EQ(session.NowUndoRect(), (Area{0, 0, 80, 60}));
  session.LeftDrag(40, 30, 25, 17);
  InkModel moved;
  Draw(moved, picture, -15, -13);
  EXPECT_TRUE(Shows(session.NowView(), moved)) << "the dither goes along with the picture";
  EXPECT_EQ(session.NowSelection(), (Area{-15, -13, 65, 47}));
}

TEST(ClipboardPicture, UndoAndRedoAfterADrag) {
  DrawingSession session;
  session.FillArea(5, 5, 20, 20, 9);
  InkModel model;
  model.Fill(5, 5, 20, 20, 9);
  const Picture picture = MixedPicture(17, 11, {0x000000, 0xFFFFFF, 0x808080});
  PastePicture(session, picture);
  session.LeftDrag(8, 8, 18, 28);
  InkModel moved = model;
  Draw(moved, picture, 10, 20);
  EXPECT_TRUE(Shows(session.NowView(), moved));
  session.Command(command::Undo);
  EXPECT_TRUE(Shows(session.NowView(), model));
  session.Command(command::Undo);
  EXPECT_TRUE(Shows(session.NowView(), moved));
}

// The picture takes the layer's place as its own, but not the cut as its owner.
TEST(ClipboardPicture, WithoutAnOwnerLandsAtTheOriginOfEachLayer) {
  DrawingSession session;
  session.AddLayer("B", 20, 10);
  PastePicture(session, PlainPicture(6, 4, 0xFFFFFF));
  InkModel model;
  model.Fill(22, 19, 6, 4, 4);
  EXPECT_TRUE(Shows(session.NowView(), model));
  session.Select(layerList, {0}).Command(pasteBlock);
  model.Fill(0, 0, 6, 4, 4);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST(ClipboardPicture, AfterACopyInThisCutKeepsItsPlaceOnTheCanvas) {
  DrawingSession session;
  session.FillArea(12, 12, 4, 4, 2);
  session.Command(tool::AreaSelect).LeftDrag(10, 10, 20, 20).Command(copyBlock);
  session.FillArea(0, 0, 64, 48, 0);
  session.AddLayer("B", 20, 10);
  PastePicture(session, PlainPicture(6, 4, 0xFFFFFF));
  InkModel model;
  model.Fill(22, 19, 6, 4, 4);
  EXPECT_TRUE(Shows(session.NowView(), model));
  session.Select(layerList, {0}).Command(pasteBlock).Command(command::CurrentCellOnly);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST(ClipboardPicture, PastedInAnotherCutTakesThatCutsPlaceBackToTheOwner) {
  DrawingSession session;
  session.FillArea(12, 12, 4, 4, 2);
  session.Command(tool::AreaSelect).LeftDrag(10, 10, 20, 20).Command(copyBlock);
  session.FillArea(0, 0, 64, 48, 0);
  NewCutValues values;
  values.width = 64;
  values.height = 48;
  values.layerWidth = 20;
  values.layerHeight = 10;
  session.NewCut(values);
  PastePicture(session, PlainPicture(6, 4, 0xFFFFFF));
  InkModel model;
  model.Fill(22, 19, 6, 4, 4);
  EXPECT_TRUE(Shows(session.NowView(), model));
  session.Activate(0).Command(pasteBlock);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

// ---- Pictures under a mask ----

// The mask also asks what the block held before, of which a resize keeps the left upper part.
TEST(MaskedPicture, ProtectedPixelsOfTheOldBlockStayInIt) {
  DrawingSession session;
  session.FillArea(10, 10, 8, 6, 3);
  session.Command(tool::AreaSelect).LeftDrag(10, 10, 20, 20).Command(copyBlock);
  session.FillArea(0, 0, 64, 48, 0);
  session.Mask({3});
  PastePicture(session, PlainPicture(20, 15, 0xFFFFFF));
  InkModel model;
  model.Fill(0, 0, 20, 15, 4);
  model.Fill(0, 0, 8, 6, 3);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST(MaskedPicture, WithoutAMaskNothingOfTheOldBlockStays) {
  DrawingSession session;
  session.FillArea(10, 10, 8, 6, 3);
  session.Command(tool::AreaSelect).LeftDrag(10, 10, 20, 20).Command(copyBlock);
  session.FillArea(0, 0, 64, 48, 0);
  SwitchTransparencyOn(session, "FFFFFF");
  PastePicture(session, PlainPicture(20, 15, 0xFFFFFF));
  EXPECT_TRUE(Shows(session.NowView(), InkModel()));
  EXPECT_EQ(session.NowSelection(), (Area{0, 0, 20, 15}));
}

TEST(MaskedPicture, ProtectedTransparencyKeepsAFreshBlockEmpty) {
  DrawingSession session;
  session.FillArea(0, 0, 30, 30, 2);
  session.Mask({0});
  PastePicture(session, PlainPicture(20, 15, 0xFFFFFF));
  InkModel model;
  model.Fill(0, 0, 30, 30, 2);
  EXPECT_TRUE(Shows(session.NowView(), model));
  EXPECT_EQ(session.NowCut()["floatingPaste"], true);
}

TEST(MaskedPicture, ProtectedTransparencyLetsThePictureOverTheInkOfTheOldBlock) {
  DrawingSession session;
  session.FillArea(12, 12, 4, 4, 2);
  session.Command(tool::AreaSelect).LeftDrag(10, 10, 20, 20).Command(copyBlock);
  session.FillArea(0, 0, 64, 48, 0);
  session.FillArea(0, 0, 30, 5, 9);
  session.Mask({0});
  PastePicture(session, PlainPicture(20, 15, 0xFFFFFF));
  InkModel model;
  model.Fill(0, 0, 30, 5, 9);
  model.Fill(2, 2, 4, 3, 4);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

// ---- Large pictures ----

struct LargeCase {
  int width;
  int height;
};

class LargePicture : public testing::TestWithParam<LargeCase> {
 protected:
  LargePicture()
      : picture(MixedPicture(GetParam().width, GetParam().height,
                             {0x000000, 0x30C8A0, 0xFFFFFF, 0x808080, 0xC81E5A, 0x30C8A1, 0x4040FF})),
        session({.width = GetParam().width + 10, .height = GetParam().height + 10}),
        model(GetParam().width + 10, GetParam().height + 10) {
    Fill(195, 0, 10, GetParam().height, 3);
    Fill(0, 195, GetParam().width, 10, 9);
  }
  void Fill(int x, int y, int width, int height, int index) {
    if (x >= model.Width() || y >= model.Height()) return;
    session.FillArea(x, y, width, height, index);
    model.Fill(x, y, width, height, index);
  }
  Picture picture;
  DrawingSession session;
  InkModel model;
};

TEST_P(LargePicture, HasNoSeams) {
  PastePicture(session, picture);
  Draw(model, picture, 0, 0);
  EXPECT_TRUE(Shows(session.NowView(), model));
  EXPECT_EQ(session.NowSelection(), (Area{0, 0, picture.width, picture.height}));
}

TEST_P(LargePicture, HasHolesInEveryTile) {
  SwitchTransparencyOn(session, "30C8A0");
  PastePicture(session, picture);
  Draw(model, picture, 0, 0, 0x30C8A0);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_P(LargePicture, LeavesProtectedPixelsInEveryTile) {
  session.Mask({3, 9});
  PastePicture(session, picture);
  const InkModel before = model;
  Draw(model, picture, 0, 0);
  for (int y = 0; y < model.Height(); ++y) {
    for (int x = 0; x < model.Width(); ++x) {
      if (before.At(x, y) != 0) model.Set(x, y, before.At(x, y));
    }
  }
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_P(LargePicture, IsDraggedAsAWholeAndUndone) {
  PastePicture(session, picture);
  session.LeftDrag(4, 3, 11, 8);
  InkModel moved = model;
  Draw(moved, picture, 7, 5);
  EXPECT_TRUE(Shows(session.NowView(), moved));
  session.Command(command::Undo);
  EXPECT_TRUE(Shows(session.NowView(), model));
  session.Command(command::Undo);
  EXPECT_TRUE(Shows(session.NowView(), moved));
}

INSTANTIATE_TEST_SUITE_P(Sizes, LargePicture,
                         testing::Values(LargeCase{200, 200}, LargeCase{201, 7}, LargeCase{7, 201}, LargeCase{410, 9},
                                         LargeCase{9, 403}, LargeCase{233, 219}),
                         [](const testing::TestParamInfo<LargeCase>& test) {
                           return "Of" + std::to_string(test.param.width) + "By" + std::to_string(test.param.height);
                         });

TEST(LargePaletteFile, OfOneBitGoesThroughInTiles) {
  DrawingSession session({.width = 250, .height = 220});
  const std::vector<uint32_t> colours = {0x9F3311, 0x30C8A0};
  const Picture picture = MixedPicture(241, 213, colours);
  SwitchTransparencyOn(session, "9F3311");
  PutOnClipboard(session, BitmapFile(picture, 1, colours));
  session.Command(pastePicture);
  InkModel model(250, 220);
  Draw(model, picture, 0, 0, 0x9F3311);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

}  // namespace
}  // namespace rules
