#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "resources/ids.h"
#include "rules/clipboard_session.h"
#include "rules/little_bytes.h"
#include "rules/rule_table.h"

namespace rules {
namespace {

// ---- Between cuts ----

struct BlockBetweenCuts : BlockScene {};

TEST_F(BlockBetweenCuts, LandsAtTheOriginOfTheCellNotOfTheCanvas) {
  CopyAndClear();
  NewCutWithSmallLayer();
  InkModel other;
  other.Fill(24, 21, 4, 4, 2);
  EXPECT_TRUE(PasteShows(other));
  EXPECT_TRUE(Holds(session, "cut/selection", Area{22, 19, 32, 29}, "cut/undoRect", Area{0, 0, 10, 10}));
}

TEST_F(BlockBetweenCuts, LargerThanTheCellKeepsItsWholeFrame) {
  Ink(0, 0, 64, 48, 2);
  Ink(0, 0, 3, 3, 3);
  Select(0, 0, 40, 30);
  session.Command(kCommandCopy);
  NewCutWithSmallLayer();
  InkModel other;
  other.Fill(22, 19, 20, 10, 2).Fill(22, 19, 3, 3, 3);
  EXPECT_TRUE(PasteShows(other));
  EXPECT_TRUE(Holds(session, "cut/selection", Area{22, 19, 62, 49}, "cut/undoRect", Area{0, 0, 40, 30}));
}

TEST_F(BlockBetweenCuts, ComesBackAtItsPlaceInTheFirstCutAfterAPasteInTheSecond) {
  CopyAndClear();
  NewCutWithSmallLayer();
  session.Command(kCommandPaste).Activate(0).Command(kCommandPaste);
  EXPECT_TRUE(ViewShows(model.Fill(12, 12, 4, 4, 2)));
  EXPECT_EQ(session.NowSelection(), (Area{10, 10, 20, 20}));
}

TEST_F(BlockBetweenCuts, BelongsToTheCutOfTheLastCopy) {
  CopyAndClear();
  NewCutOfTheSameSize();
  session.FillArea(31, 6, 2, 2, 4);
  Select(30, 5, 38, 12);
  session.Command(kCommandCopy).Activate(0).Command(kCommandPaste);
  EXPECT_TRUE(ViewShows(model.Fill(1, 1, 2, 2, 4)));
  session.Activate(1).Command(kCommandPaste);
  EXPECT_EQ(session.NowSelection(), (Area{30, 5, 38, 12}));
}

TEST_F(BlockBetweenCuts, OutlivesTheCutItCameFrom) {
  CopyAndClear();
  NewCutOfTheSameSize();
  session.Activate(0).Answer("no").Close();
  InkModel other;
  other.Fill(2, 2, 4, 4, 2);
  EXPECT_TRUE(PasteShows(other));
}

TEST_F(BlockBetweenCuts, ACutOutBlockIsTakenAlongAndItsUndoStaysBehind) {
  Ink(12, 12, 4, 4, 2);
  Select(10, 10, 20, 20);
  session.Command(kCommandCut);
  NewCutOfTheSameSize();
  InkModel other;
  other.Fill(2, 2, 4, 4, 2);
  EXPECT_TRUE(PasteShows(other));
  session.Activate(0).Command(kCommandUndo);
  EXPECT_TRUE(ViewShows(model));
  session.Activate(1).Command(kCommandUndo);
  EXPECT_TRUE(ViewShows(InkModel()));
}

TEST_F(BlockBetweenCuts, ADragInTheSecondCutMovesTheBlockThere) {
  CopyAndClear();
  NewCutOfTheSameSize();
  session.Command(kCommandPaste).LeftDrag(5, 5, 35, 25);
  InkModel other;
  other.Fill(32, 22, 4, 4, 2);
  EXPECT_TRUE(ViewShows(other));
  session.Activate(0);
  EXPECT_TRUE(ViewShows(model));
}

// ---- Between layers ----

struct BlockBetweenLayers : BlockScene {
  // 30 by 20 pixels from (10, 10) on, with a mark in the left upper corner.
  void CopyLargeBlock() {
    session.FillArea(10, 10, 30, 20, 2);
    session.FillArea(10, 10, 5, 5, 3);
    Select(10, 10, 40, 30);
    session.Command(kCommandCopy);
    Clear();
  }
};

TEST_F(BlockBetweenLayers, OnASmallerLayerIsCutToItAndKeepsItsPlace) {
  CopyLargeBlock();
  AddSmallLayer();
  model.Fill(22, 19, 18, 10, 2);
  EXPECT_TRUE(PasteShows(model));
  EXPECT_TRUE(Holds(session, "cut/selection", Area{10, 10, 40, 30}, "cut/undoRect", Area{-12, -9, 30, 20}));
}

TEST_F(BlockBetweenLayers, ADragBringsInThePartThatLayOutside) {
  CopyLargeBlock();
  AddSmallLayer();
  session.Command(kCommandPaste).LeftDrag(30, 22, 42, 31);
  EXPECT_TRUE(ViewShows(model.Fill(22, 19, 20, 10, 2).Fill(22, 19, 5, 5, 3)));
  EXPECT_TRUE(Holds(session, "cut/selection", Area{22, 19, 52, 39}, "cut/undoRect", Area{-12, -9, 42, 29}));
}

TEST_F(BlockBetweenLayers, UndoOnTheSmallerLayerTakesItAwayAndBringsItBack) {
  CopyLargeBlock();
  AddSmallLayer();
  session.Command(kCommandPaste).Command(kCommandUndo);
  EXPECT_TRUE(ViewShows(model));
  session.Command(kCommandUndo);
  EXPECT_TRUE(ViewShows(model.Fill(22, 19, 18, 10, 2)));
}

TEST_F(BlockBetweenLayers, OutOfASmallerLayerKeepsItsPlaceOnALargerOne) {
  AddSmallLayer();
  session.FillArea(24, 20, 6, 4, 3).Command(kToolAreaSelect).RightClick(30, 22).Command(kCommandCopy);
  session.Select(kLayerList, {0}).Command(kCommandPaste).Command(kCommandCurrentCellOnly);
  EXPECT_TRUE(ViewShows(model.Fill(24, 20, 6, 4, 3)));
  EXPECT_EQ(session.NowUndoRect(), (Area{22, 19, 20, 10}));
}

TEST_F(BlockBetweenLayers, WhollyBesideTheOtherLayerFloatsAndCanBeDraggedIn) {
  CopyAndClear();
  AddSmallLayer();
  EXPECT_TRUE(PasteShows(model));
  EXPECT_EQ(session.Cut()["floatingPaste"], true);
  session.LeftDrag(15, 15, 30, 25);
  EXPECT_TRUE(ViewShows(model.Fill(27, 22, 4, 4, 2)));
}

TEST_F(BlockBetweenLayers, GoesToAnotherCellOfTheLayer) {
  Ink(12, 12, 4, 4, 2);
  Select(10, 10, 20, 20);
  session.Command(kCommandCopy).Command(kCommandAddCell).Command(kCommandPaste).LeftDrag(15, 15, 25, 15);
  InkModel added;
  added.Fill(22, 12, 4, 4, 2);
  EXPECT_TRUE(ViewShows(added));
  session.Command(kCommandPreviousCell);
  EXPECT_TRUE(ViewShows(model));
}

// ---- Masks ----

struct MaskedBlock : BlockScene {};

TEST_F(MaskedBlock, TheMaskOfTheCopyLiftsAndTheMaskOfThePasteProtects) {
  Ink(12, 12, 2, 5, 2);
  Ink(14, 12, 2, 5, 3);
  Ink(16, 12, 2, 5, 4);
  CopyBlockAndClear({3});
  Ink(11, 12, 9, 2, 9);
  session.Mask({9});
  model.Fill(12, 14, 2, 3, 2).Fill(16, 14, 2, 3, 4);
  EXPECT_TRUE(PasteShows(model));
}

TEST_F(MaskedBlock, ProtectedTransparencyLetsThePasteOverInkOnly) {
  CopyAndClear();
  Ink(13, 10, 10, 4, 3);
  session.Mask({0});
  model.Fill(13, 12, 3, 2, 2);
  EXPECT_TRUE(PasteShows(model));
}

TEST_F(MaskedBlock, ProtectedTransparencyDoesNotChangeWhatIsLifted) {
  CopyAndClear({0});
  model.Fill(12, 12, 4, 4, 2);
  EXPECT_TRUE(PasteShows(model));
}

TEST_F(MaskedBlock, NothingLiftedStillFloatsInItsFrame) {
  CopyAndClear({2});
  EXPECT_TRUE(PasteShows(model));
  EXPECT_TRUE(Holds(session, "cut/floatingPaste", true, "cut/selection", Area{10, 10, 20, 20}));
}

TEST_F(MaskedBlock, ACopyReplacesAllOfAnOlderBlock) {
  Ink(10, 10, 10, 10, 2);
  Select(10, 10, 20, 20);
  session.Command(kCommandCopy);
  Ink(10, 10, 10, 10, 3);
  CopyBlockAndClear({3});
  EXPECT_TRUE(PasteShows(model)) << "the older block's ink came back";
}

TEST_F(MaskedBlock, AMaskSetWhileItFloatsCountsForTheNextDrag) {
  CopyAndClear();
  Ink(40, 10, 10, 20, 3);
  session.Command(kCommandPaste).Mask({3}).LeftDrag(15, 15, 41, 25);
  EXPECT_TRUE(ViewShows(model.Fill(38, 22, 2, 4, 2)));
}

TEST_F(MaskedBlock, AMaskClearedWhileItFloatsCountsForTheNextDrag) {
  CopyAndClear();
  Ink(10, 10, 10, 10, 3);
  Ink(40, 10, 10, 20, 3);
  session.Mask({3});
  EXPECT_TRUE(PasteShows(model));
  session.Mask({}).LeftDrag(15, 15, 41, 25);
  EXPECT_TRUE(ViewShows(model.Fill(38, 22, 4, 4, 2)));
}

TEST_F(MaskedBlock, TheUndoOfAMaskedPasteGivesTheCellBack) {
  CopyAndClear();
  Ink(13, 10, 10, 4, 3);
  session.Mask({3}).Command(kCommandPaste).Command(kCommandUndo);
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(MaskedBlock, ACutUnderAMaskStoresWhatItErasesAndUndoGivesBackBoth) {
  Ink(12, 12, 2, 4, 2);
  Ink(14, 12, 2, 4, 3);
  Select(10, 10, 20, 20);
  session.Mask({3}).Command(kCommandCut);
  InkModel erased = model;
  erased.Fill(12, 12, 2, 4, 0);
  EXPECT_TRUE(ViewShows(erased));
  EXPECT_TRUE(UndoShows(model));
  Clear();
  model.Fill(12, 12, 2, 4, 2);
  EXPECT_TRUE(PasteShows(model));
}

// ---- Roles in the block ----

struct BlockOfRoles : BlockScene {};

TEST_F(BlockOfRoles, HoldsLinesBoundariesAndUnderdrawingExactly) {
  Ink(10, 10, 2, 6, 1);
  Ink(12, 10, 2, 6, 2);
  Ink(14, 10, 2, 6, 3);
  session.Command(kCommandToSketch);
  model.Fill(10, 10, 2, 6, 5).Fill(12, 10, 2, 6, 6).Fill(14, 10, 2, 6, 7);
  Ink(16, 10, 1, 6, 9);
  Ink(17, 10, 1, 6, 10);
  session.DrawInkLine(18, 10, 18, 15);
  model.Fill(18, 10, 1, 6, 8);
  Ink(19, 10, 1, 6, 4);
  EXPECT_TRUE(ViewShows(model));
  const InkModel drawn = model;
  CopyBlockAndClear();
  EXPECT_TRUE(PasteShows(drawn));
}

// A tone mark shifts the tone that it is pasted on, and stays itself where there is none.
TEST_F(BlockOfRoles, ToneMarksChangeTheGreysBelow) {
  const int marks[] = {11, 12, 13, 14};
  const int below[] = {0, 1, 2, 3, 4, 9, 10};
  const int shown[4][7] = {
      {11, 3, 4, 4, 4, 4, 4}, {12, 2, 3, 4, 4, 3, 4}, {13, 1, 1, 2, 3, 1, 2}, {14, 1, 1, 1, 2, 1, 1}};
  for (int i = 0; i < 4; ++i) Ink(10, 10 + 2 * i, 14, 2, marks[i]);
  Select(10, 10, 24, 18);
  session.Command(kCommandCopy);
  Clear();
  for (int j = 1; j < 7; ++j) Ink(10 + 2 * j, 8, 2, 12, below[j]);
  session.Command(kCommandPaste);
  for (int i = 0; i < 4; ++i) {
    for (int j = 0; j < 7; ++j) model.Fill(10 + 2 * j, 10 + 2 * i, 2, 2, shown[i][j]);
  }
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(BlockOfRoles, AFloatingToneMarkLeavesTheGreysAsTheyWere) {
  session.FillArea(12, 12, 4, 4, 11);
  CopyBlockAndClear();
  Ink(10, 10, 10, 10, 1);
  Ink(40, 10, 10, 20, 2);
  session.Command(kCommandPaste);
  InkModel pasted = model;
  pasted.Fill(12, 12, 4, 4, 3);
  EXPECT_TRUE(ViewShows(pasted));
  session.LeftDrag(15, 15, 45, 25);
  EXPECT_TRUE(ViewShows(model.Fill(42, 22, 4, 4, 4)));
}

// ---- The floating paste ----

struct FloatingBlock : BlockScene {
  FloatingBlock() {
    CopyAndClear();
    Ink(40, 10, 10, 20, 3);
    session.Command(kCommandPaste);
  }
  // The cell with the block at this place of its left upper corner.
  InkModel With(int x, int y) const {
    InkModel with = model;
    with.Fill(x + 2, y + 2, 4, 4, 2);
    return with;
  }
};

TEST_F(FloatingBlock, UndoAndRedoBeforeADrag) {
  EXPECT_TRUE(ViewShows(With(10, 10)));
  EXPECT_TRUE(UndoShows(model));
  EXPECT_TRUE(UndoShows(With(10, 10)));
}

TEST_F(FloatingBlock, UndoAndRedoAfterADragMeanItsLastPlace) {
  session.LeftDrag(15, 15, 45, 25);
  EXPECT_TRUE(ViewShows(With(40, 20)));
  EXPECT_TRUE(UndoShows(model));
  EXPECT_TRUE(UndoShows(With(40, 20)));
  EXPECT_TRUE(UndoShows(model));
}

TEST_F(FloatingBlock, UndoAfterSeveralDragsTakesThePasteAwayAtOnce) {
  session.LeftDrag(15, 15, 45, 25).LeftDrag(42, 24, 22, 34).LeftDrag(22, 34, 20, 30);
  EXPECT_TRUE(ViewShows(With(18, 26)));
  EXPECT_TRUE(UndoShows(model));
  EXPECT_TRUE(UndoShows(With(18, 26)));
}

TEST_F(FloatingBlock, APressWithoutAMovePutsItBackWhereItWas) {
  session.Press(15, 15).Release(15, 15);
  EXPECT_TRUE(ViewShows(With(10, 10)));
  EXPECT_TRUE(Holds(session, "cut/selection", Area{10, 10, 20, 20}, "cut/floatingPaste", true));
}

TEST_F(FloatingBlock, MadeFinalIsMovedAsTheInkOfTheCell) {
  session.LeftDrag(30, 40, 34, 44);
  Select(10, 10, 20, 20);
  session.LeftDrag(15, 15, 25, 25);
  EXPECT_TRUE(ViewShows(With(20, 20)));
  EXPECT_TRUE(UndoShows(With(10, 10))) << "the paste itself was final";
}

TEST_F(FloatingBlock, ASecondPasteLeavesTheFirstWhereItWasDragged) {
  session.LeftDrag(15, 15, 45, 25).Command(kCommandPaste);
  InkModel both = With(40, 20);
  both.Fill(12, 12, 4, 4, 2);
  EXPECT_TRUE(ViewShows(both));
  session.LeftDrag(15, 15, 35, 45);
  both.Fill(12, 12, 4, 4, 0).Fill(32, 42, 4, 4, 2);
  EXPECT_TRUE(ViewShows(both));
  EXPECT_TRUE(UndoShows(With(40, 20)));
}

// The flag outlives the selection, so that the next drag of any frame is a drag of the paste: the frame's size decides
// how much of the block lands.
TEST_F(FloatingBlock, AFrameDrawnAfterAToolChangeDragsThePaste) {
  session.Command(kToolFreePen);
  Select(25, 30, 30, 35);
  session.LeftDrag(28, 33, 33, 35);
  EXPECT_TRUE(ViewShows(model.Fill(32, 34, 3, 3, 2)));
  EXPECT_EQ(session.NowSelection(), (Area{30, 32, 35, 37}));
}

TEST_F(FloatingBlock, AfterUndoAndRedoAFrameStillDragsThePaste) {
  session.LeftDrag(15, 15, 35, 25).Command(kCommandUndo).Command(kCommandUndo).LeftDrag(30, 20, 40, 30);
  session.LeftDrag(35, 25, 25, 35);
  EXPECT_TRUE(ViewShows(With(20, 30)));
}

// The press swaps with the undo copy, whatever that holds: after an undo it is the paste.
TEST_F(FloatingBlock, AfterAnUndoADragBringsThePasteBackAndPutsAnotherOne) {
  session.Command(kCommandUndo).LeftDrag(20, 30, 30, 40).LeftDrag(25, 35, 27, 37);
  InkModel both = With(22, 32);
  both.Fill(12, 12, 4, 4, 2);
  EXPECT_TRUE(ViewShows(both));
}

TEST_F(FloatingBlock, AWidenedFrameTakesTheBlockToItsCorner) {
  session.LeftDrag(10, 15, 7, 15);
  EXPECT_EQ(session.NowSelection(), (Area{7, 10, 23, 20}));
  EXPECT_TRUE(ViewShows(With(10, 10)));
  session.LeftDrag(15, 15, 15, 25);
  EXPECT_TRUE(ViewShows(With(7, 20)));
  EXPECT_TRUE(Holds(session, "cut/selection", Area{7, 20, 23, 30}, "cut/undoRect", Area{7, 10, 16, 20}));
}

const Rules<FloatingBlock, "FloatingBlock"> kFloatingBlockRules = {
    {"UndoEndsTheSelectionAndLeavesItAfloat", Do().LeftDrag(15, 15, 45, 25).Command(kCommandUndo),
     Has("cut/hasSelection", false, "cut/floatingPaste", true)},
    {"TheUndoRectGrowsOverAllItsPlaces", Has("cut/undoRect", Area{10, 10, 10, 10}), Do().LeftDrag(15, 15, 45, 25),
     Has("cut/undoRect", Area{10, 10, 40, 20}), Do().LeftDrag(42, 24, 22, 34),
     Has("cut/undoRect", Area{10, 10, 40, 30})},
    {"ANarrowedFrameCutsTheBlock", Do().LeftDrag(10, 15, 13, 15), Has("cut/selection", Area{13, 10, 17, 20}),
     Do().LeftDrag(15, 15, 25, 25), Ink().Fill(25, 22, 2, 4, 2)},
};

TEST_F(FloatingBlock, DraggedOverTheRightEdgeAndBackIsWhole) {
  session.LeftDrag(12, 15, 62, 15);
  model.Fill(40, 10, 10, 20, 3);
  EXPECT_TRUE(ViewShows(With(60, 10)));
  EXPECT_EQ(session.NowSelection(), (Area{60, 10, 70, 20}));
  session.LeftDrag(63, 15, 23, 25);
  EXPECT_TRUE(ViewShows(With(20, 20)));
  EXPECT_TRUE(UndoShows(model));
}

TEST_F(FloatingBlock, DraggedOverTheLeftUpperCornerAndBackIsWhole) {
  session.LeftDrag(17, 17, 3, 4);
  EXPECT_TRUE(ViewShows(With(-4, -3)));
  EXPECT_EQ(session.NowSelection(), (Area{-4, -3, 6, 7}));
  session.LeftDrag(3, 4, 23, 24);
  EXPECT_TRUE(ViewShows(With(16, 17)));
}

TEST_F(FloatingBlock, DraggedWhollyOutLeavesTheCellAndUndoBringsItBack) {
  session.LeftDrag(15, 15, 15, 60);
  EXPECT_TRUE(ViewShows(model));
  EXPECT_TRUE(UndoShows(model));
}

// ---- The frame in the window and on the grid ----

// At 2/1 the middle of the canvas stands in the middle of the window: a window point is twice the cut's less (32, 24).
struct ZoomedBlock : BlockScene {
  ZoomedBlock() {
    Ink(22, 18, 4, 4, 2);
    session.Command(kToolZoom);
    session.Press(32, 24);
    Select(11, 11, 30, 26);
    session.Command(kCommandCopy).Command(kCommandEraseCell).Command(kCommandPaste);
    model.Fill(21, 17, 10, 8, 0);
  }
  InkModel With(int x, int y) const {
    InkModel with = model;
    with.Fill(x + 1, y + 1, 4, 4, 2);
    return with;
  }
};

TEST_F(ZoomedBlock, ComesBackAtItsPlaceWithAFrameOfWholePixels) {
  EXPECT_TRUE(ViewShows(With(21, 17)));
  EXPECT_TRUE(Holds(session, "cut/selection", Area{10, 10, 30, 26}, "cut/undoRect", Area{21, 17, 10, 8}));
}

TEST_F(ZoomedBlock, IsDraggedByWholePixels) {
  session.LeftDrag(21, 20, 31, 28);
  EXPECT_TRUE(ViewShows(With(26, 21)));
  EXPECT_EQ(session.NowSelection(), (Area{20, 18, 40, 34}));
  EXPECT_TRUE(UndoShows(model));
}

struct BlockOnTheGrid : BlockScene {};

TEST_F(BlockOnTheGrid, ACopySnapsTheSelectionOfAnEarlierGrid) {
  Ink(0, 0, 64, 48, 2);
  Select(11, 13, 30, 27);
  session.Grid(8, 8).Command(kCommandCopy).Grid(1, 1);
  Clear();
  model.Fill(8, 16, 24, 8, 2);
  EXPECT_TRUE(PasteShows(model));
  EXPECT_EQ(session.NowSelection(), (Area{8, 16, 32, 24}));
}

TEST_F(BlockOnTheGrid, ADragGoesInStepsOfTheGrid) {
  CopyAndClear();
  session.Command(kCommandPaste).Grid(8, 8).LeftDrag(15, 15, 26, 27);
  EXPECT_TRUE(ViewShows(model.Fill(20, 20, 4, 4, 2)));
  EXPECT_EQ(session.NowSelection(), (Area{18, 18, 28, 28}));
}

// ---- Cut ----

struct CutOut : BlockScene {
  CutOut() {
    Ink(12, 12, 4, 4, 2);
    Ink(40, 10, 10, 20, 3);
    Select(10, 10, 20, 20);
  }
  InkModel Without() const {
    InkModel without = model;
    without.Fill(10, 10, 10, 10, 0);
    return without;
  }
};

TEST_F(CutOut, UndoAndRedo) {
  session.Command(kCommandCut).Command(kCommandUndo);
  EXPECT_TRUE(ViewShows(model));
  EXPECT_TRUE(UndoShows(Without()));
}

const Rules<CutOut, "CutOut"> kCutOutRules = {
    {"EndsTheSelectionWhichACopyKeeps", Do().Command(kCommandCopy), Has("cut/selection", Area{10, 10, 20, 20}),
     Do().Command(kCommandCut), Has("cut/hasSelection", false)},
    {"TheBlockOutlivesTheUndo",
     Do().Command(kCommandCut).Command(kCommandUndo).Command(kCommandPaste).LeftDrag(15, 15, 35, 35),
     Ink().Fill(32, 32, 4, 4, 2)},
};

TEST_F(CutOut, UndoAfterThePasteGivesTheStateAfterTheCut) {
  session.Command(kCommandCut).Command(kCommandPaste).LeftDrag(15, 15, 35, 35);
  InkModel moved = Without();
  moved.Fill(32, 32, 4, 4, 2);
  EXPECT_TRUE(ViewShows(moved));
  EXPECT_TRUE(UndoShows(Without()));
  EXPECT_TRUE(UndoShows(moved));
}

TEST_F(CutOut, PastTheEdgeOfASmallLayerIsLimitedToIt) {
  // A new layer would lie over the selection.
  session.Repaint();
  AddSmallLayer();
  session.FillArea(22, 19, 20, 10, 4);
  Select(10, 10, 30, 24);
  session.Command(kCommandCut);
  InkModel rest = model;
  rest.Fill(22, 19, 20, 10, 4);
  const InkModel whole = rest;
  rest.Fill(22, 19, 8, 5, 0);
  EXPECT_TRUE(ViewShows(rest));
  EXPECT_EQ(session.NowUndoRect(), (Area{0, 0, 8, 5}));
  EXPECT_TRUE(UndoShows(whole));
  session.Command(kCommandUndo).Command(kCommandPaste);
  EXPECT_TRUE(ViewShows(whole));
  EXPECT_EQ(session.NowSelection(), (Area{22, 19, 30, 24}));
}

// ---- Pictures ----

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
  PutLittle(bytes, static_cast<uint32_t>(54 + 4 * entries + rows.size()), 4);
  PutLittle(bytes, 0, 4);
  PutLittle(bytes, 54 + 4 * entries, 4);
  PutLittle(bytes, 40, 4);
  PutLittle(bytes, static_cast<uint32_t>(picture.width), 4);
  PutLittle(bytes, static_cast<uint32_t>(picture.height), 4);
  PutLittle(bytes, 1, 2);
  PutLittle(bytes, bits, 2);
  PutLittle(bytes, 0, 4);
  PutLittle(bytes, static_cast<uint32_t>(rows.size()), 4);
  PutLittle(bytes, 0, 4);
  PutLittle(bytes, 0, 4);
  PutLittle(bytes, bits == 8 ? entries : 0, 4);
  PutLittle(bytes, 0, 4);
  for (uint32_t i = 0; i < entries; ++i) PutLittle(bytes, i < colours.size() ? colours[i] : 0x445566, 4);
  return bytes + rows;
}

void PasteFile(ScriptSession& session, const std::string& file) {
  session.Write("picture.bmp", file);
  PutOnClipboard(session, "picture.bmp");
  session.Command(kCommandPasteFromClipboard);
}

void SwitchTransparencyOn(DrawingSession& session, const std::string& colour) {
  session.Line("color " + colour).Command(kCommandTransparentColor);
}

struct DepthCase {
  uint32_t bits;
  std::vector<uint32_t> colours;
};

class PictureOfADepth : public BlockScene, public testing::WithParamInterface<DepthCase> {
 protected:
  // The second colour of each list is the transparent one.
  static constexpr uint32_t transparent = 0x30C8A0;
  PictureOfADepth() : picture(MixedPicture(13, 7, GetParam().colours)) { Ink(3, 0, 4, 20, 3); }
  void Paste() { PasteFile(session, BitmapFile(picture, GetParam().bits, GetParam().colours)); }
  Picture picture;
};

TEST_P(PictureOfADepth, HasEveryPixelWithoutATransparentColour) {
  Paste();
  DrawPasted(model, picture, 0, 0);
  EXPECT_TRUE(ViewShows(model));
}

TEST_P(PictureOfADepth, ShowsWhatLiesBelowTheTransparentColour) {
  SwitchTransparencyOn(session, "30C8A0");
  Paste();
  DrawPasted(model, picture, 0, 0, transparent);
  EXPECT_TRUE(ViewShows(model));
}

TEST_P(PictureOfADepth, HasEveryPixelAfterTheSwitchWentOffAgain) {
  SwitchTransparencyOn(session, "30C8A0");
  session.Command(kCommandTransparentColor);
  Paste();
  DrawPasted(model, picture, 0, 0);
  EXPECT_TRUE(ViewShows(model));
}

TEST_P(PictureOfADepth, HasEveryPixelWhenAnotherColourIsTransparent) {
  SwitchTransparencyOn(session, "30C8A2");
  Paste();
  DrawPasted(model, picture, 0, 0);
  EXPECT_TRUE(ViewShows(model));
}

TEST_P(PictureOfADepth, KeepsItsHolesInADrag) {
  SwitchTransparencyOn(session, "30C8A0");
  Paste();
  session.LeftDrag(5, 3, 6, 10);
  DrawPasted(model, picture, 1, 7, transparent);
  EXPECT_TRUE(ViewShows(model));
}

TEST_P(PictureOfADepth, KeepsItsPixelsWhenTheSwitchGoesOnWhileItFloats) {
  Paste();
  SwitchTransparencyOn(session, "30C8A0");
  session.LeftDrag(5, 3, 6, 10);
  DrawPasted(model, picture, 1, 7);
  EXPECT_TRUE(ViewShows(model));
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

struct ClipboardPicture : BlockScene {};

TEST_F(ClipboardPicture, LargerThanTheCanvasIsCutAndADragShowsTheRest) {
  const Picture picture = MixedPicture(80, 60, {0x000000, 0xFFFFFF, 0x808080, 0x303030});
  PastePicture(session, picture);
  DrawPasted(model, picture, 0, 0);
  EXPECT_TRUE(ViewShows(model));
  EXPECT_TRUE(Holds(session, "cut/selection", Area{0, 0, 80, 60}, "cut/undoRect", Area{0, 0, 80, 60}));
  session.LeftDrag(40, 30, 25, 17);
  InkModel moved;
  DrawPasted(moved, picture, -15, -13);
  EXPECT_TRUE(ViewShows(moved)) << "the dither goes along with the picture";
  EXPECT_EQ(session.NowSelection(), (Area{-15, -13, 65, 47}));
}

TEST_F(ClipboardPicture, UndoAndRedoAfterADrag) {
  Ink(5, 5, 20, 20, 9);
  const Picture picture = MixedPicture(17, 11, {0x000000, 0xFFFFFF, 0x808080});
  PastePicture(session, picture);
  session.LeftDrag(8, 8, 18, 28);
  InkModel moved = model;
  DrawPasted(moved, picture, 10, 20);
  EXPECT_TRUE(ViewShows(moved));
  EXPECT_TRUE(UndoShows(model));
  EXPECT_TRUE(UndoShows(moved));
}

// The picture takes the layer's place as its own, but not the cut as its owner.
TEST_F(ClipboardPicture, WithoutAnOwnerLandsAtTheOriginOfEachLayer) {
  AddSmallLayer();
  PastePicture(session, PlainPicture(6, 4, 0xFFFFFF));
  EXPECT_TRUE(ViewShows(model.Fill(22, 19, 6, 4, 4)));
  session.Select(kLayerList, {0}).Command(kCommandPaste);
  EXPECT_TRUE(ViewShows(model.Fill(0, 0, 6, 4, 4)));
}

TEST_F(ClipboardPicture, AfterACopyInThisCutKeepsItsPlaceOnTheCanvas) {
  CopyAndClear();
  AddSmallLayer();
  PastePicture(session, PlainPicture(6, 4, 0xFFFFFF));
  EXPECT_TRUE(ViewShows(model.Fill(22, 19, 6, 4, 4)));
  session.Select(kLayerList, {0}).Command(kCommandPaste).Command(kCommandCurrentCellOnly);
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(ClipboardPicture, PastedInAnotherCutTakesThatCutsPlaceBackToTheOwner) {
  CopyAndClear();
  NewCutWithSmallLayer();
  PastePicture(session, PlainPicture(6, 4, 0xFFFFFF));
  EXPECT_TRUE(ViewShows(model.Fill(22, 19, 6, 4, 4)));
  session.Activate(0).Command(kCommandPaste);
  EXPECT_TRUE(ViewShows(model));
}

// ---- Pictures under a mask ----

struct MaskedPicture : BlockScene {
  // A block with ink of index 3 in its left upper corner, and an empty cell.
  void CopyCorner() {
    session.FillArea(10, 10, 8, 6, 3);
    CopyBlockAndClear();
  }
  void PasteWhite() { PastePicture(session, PlainPicture(20, 15, 0xFFFFFF)); }
};

// The mask also asks what the block held before, of which a resize keeps the left upper part.
TEST_F(MaskedPicture, ProtectedPixelsOfTheOldBlockStayInIt) {
  CopyCorner();
  session.Mask({3});
  PasteWhite();
  EXPECT_TRUE(ViewShows(model.Fill(0, 0, 20, 15, 4).Fill(0, 0, 8, 6, 3)));
}

TEST_F(MaskedPicture, WithoutAMaskNothingOfTheOldBlockStays) {
  CopyCorner();
  SwitchTransparencyOn(session, "FFFFFF");
  PasteWhite();
  EXPECT_TRUE(ViewShows(InkModel()));
  EXPECT_EQ(session.NowSelection(), (Area{0, 0, 20, 15}));
}

TEST_F(MaskedPicture, ProtectedTransparencyKeepsAFreshBlockEmpty) {
  Ink(0, 0, 30, 30, 2);
  session.Mask({0});
  PasteWhite();
  EXPECT_TRUE(ViewShows(model));
  EXPECT_EQ(session.Cut()["floatingPaste"], true);
}

TEST_F(MaskedPicture, ProtectedTransparencyLetsThePictureOverTheInkOfTheOldBlock) {
  CopyAndClear();
  Ink(0, 0, 30, 5, 9);
  session.Mask({0});
  PasteWhite();
  EXPECT_TRUE(ViewShows(model.Fill(2, 2, 4, 3, 4)));
}

// ---- Large pictures ----

struct LargeCase {
  int width;
  int height;
};

class LargePicture : public BlockScene, public testing::WithParamInterface<LargeCase> {
 protected:
  LargePicture()
      : BlockScene({.width = GetParam().width + 10, .height = GetParam().height + 10}),
        picture(MixedPicture(GetParam().width, GetParam().height,
                             {0x000000, 0x30C8A0, 0xFFFFFF, 0x808080, 0xC81E5A, 0x30C8A1, 0x4040FF})) {
    if (model.Width() > 195) Ink(195, 0, 10, GetParam().height, 3);
    if (model.Height() > 195) Ink(0, 195, GetParam().width, 10, 9);
  }
  Picture picture;
};

TEST_P(LargePicture, HasNoSeams) {
  PastePicture(session, picture);
  DrawPasted(model, picture, 0, 0);
  EXPECT_TRUE(ViewShows(model));
  EXPECT_EQ(session.NowSelection(), (Area{0, 0, picture.width, picture.height}));
}

TEST_P(LargePicture, HasHolesInEveryTile) {
  SwitchTransparencyOn(session, "30C8A0");
  PastePicture(session, picture);
  DrawPasted(model, picture, 0, 0, 0x30C8A0);
  EXPECT_TRUE(ViewShows(model));
}

TEST_P(LargePicture, LeavesProtectedPixelsInEveryTile) {
  session.Mask({3, 9});
  PastePicture(session, picture);
  const InkModel before = model;
  DrawPasted(model, picture, 0, 0);
  for (int y = 0; y < model.Height(); ++y) {
    for (int x = 0; x < model.Width(); ++x) {
      if (before.At(x, y) != 0) model.Set(x, y, before.At(x, y));
    }
  }
  EXPECT_TRUE(ViewShows(model));
}

TEST_P(LargePicture, IsDraggedAsAWholeAndUndone) {
  PastePicture(session, picture);
  session.LeftDrag(4, 3, 11, 8);
  InkModel moved = model;
  DrawPasted(moved, picture, 7, 5);
  EXPECT_TRUE(ViewShows(moved));
  EXPECT_TRUE(UndoShows(model));
  EXPECT_TRUE(UndoShows(moved));
}

INSTANTIATE_TEST_SUITE_P(Sizes, LargePicture,
                         testing::Values(LargeCase{200, 200}, LargeCase{201, 7}, LargeCase{7, 201}, LargeCase{410, 9},
                                         LargeCase{9, 403}, LargeCase{233, 219}),
                         [](const testing::TestParamInfo<LargeCase>& test) {
                           return "Of" + std::to_string(test.param.width) + "By" + std::to_string(test.param.height);
                         });

struct LargePaletteFile : BlockScene {
  LargePaletteFile() : BlockScene({.width = 250, .height = 220}) {}
};

TEST_F(LargePaletteFile, OfOneBitGoesThroughInTiles) {
  const std::vector<uint32_t> colours = {0x9F3311, 0x30C8A0};
  const Picture picture = MixedPicture(241, 213, colours);
  SwitchTransparencyOn(session, "9F3311");
  PasteFile(session, BitmapFile(picture, 1, colours));
  DrawPasted(model, picture, 0, 0, 0x9F3311);
  EXPECT_TRUE(ViewShows(model));
}

}  // namespace
}  // namespace rules
