#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "resources/ids.h"
#include "rules/clipboard_session.h"
#include "rules/rule_table.h"

namespace rules {
namespace {

struct Block : BlockScene {
  // Draws a mark of 4 by 5 at (12, 12) and selects the block from (10, 10) to (20, 20) around it.
  void SelectMark() {
    Ink(12, 12, 4, 5, 2);
    Select(10, 10, 20, 20);
  }
  // The same, copied.
  void CopyMark() {
    SelectMark();
    session.Command(kCommandCopy);
  }
  // What a block of the mark shows where it is pasted at its old place.
  InkModel WithMark() const {
    InkModel with = model;
    with.Fill(12, 12, 4, 5, 2);
    return with;
  }
};

TEST_F(Block, AnEmptyBlockPastesNothing) {
  EXPECT_TRUE(PasteShows(model));
  EXPECT_TRUE(Holds(session, "cut/floatingPaste", false, "frame/currentTool", kToolFreePen));
}

TEST_F(Block, ComesBackAtItsPlaceInItsCut) {
  CopyMark();
  Clear();
  EXPECT_TRUE(PasteShows(WithMark()));
}

TEST_F(Block, ComesBackAtItsPlaceOnTheCanvasInAnotherLayer) {
  CopyMark();
  Clear();
  session.AddLayer("B", 64, 48).Command(kToolLayerPosition).LeftDrag(10, 10, 15, 13).Command(kCommandPaste);
  session.Command(kCommandCurrentCellOnly);
  EXPECT_TRUE(ViewShows(WithMark()));
}

TEST_F(Block, LandsAtTheOriginInAnotherCut) {
  CopyMark();
  NewCutOfTheSameSize();
  InkModel other;
  other.Fill(2, 2, 4, 5, 2);
  EXPECT_TRUE(PasteShows(other));
  EXPECT_EQ(session.NowSelection(), (Area{0, 0, 10, 10}));
}

TEST_F(Block, FloatsAsASelectionOfTheAreaTool) {
  CopyMark();
  session.Command(kToolFreePen).Command(kCommandPaste);
  EXPECT_TRUE(Holds(session, "cut/selection", Area{10, 10, 20, 20}, "cut/floatingPaste", true, "frame/currentTool",
                    kToolAreaSelect, "cut/undoRect", Area{10, 10, 10, 10}));
}

TEST_F(Block, TransparentPixelsOfItLeaveTheCell) {
  CopyMark();
  Ink(8, 8, 30, 30, 4);
  EXPECT_TRUE(PasteShows(WithMark()));
}

TEST_F(Block, TheMaskDecidesWhatIsLifted) {
  Ink(12, 12, 2, 5, 2);
  Ink(14, 12, 2, 5, 3);
  CopyBlockAndClear({3});
  model.Fill(12, 12, 2, 5, 2);
  EXPECT_TRUE(PasteShows(model));
}

TEST_F(Block, TheMaskProtectsWhatItIsPastedOn) {
  CopyMark();
  Ink(14, 10, 10, 10, 3);
  session.Mask({3});
  EXPECT_TRUE(PasteShows(model));
}

TEST_F(Block, ACopyWithoutASelectionKeepsTheOldOne) {
  CopyMark();
  Clear();
  session.Command(kCommandCopy).Command(kCommandPaste);
  EXPECT_TRUE(ViewShows(WithMark()));
}

TEST_F(Block, ACopyIsCutToTheCell) {
  AddSmallLayer();
  Select(10, 10, 40, 25);
  session.Command(kCommandCopy).Command(kCommandPaste);
  EXPECT_EQ(session.NowSelection(), (Area{22, 19, 40, 25}));
}

TEST_F(Block, ACopyBesideTheCellStoresNothing) {
  AddSmallLayer();
  Select(2, 2, 10, 10);
  session.Command(kCommandCopy).Command(kCommandPaste);
  EXPECT_EQ(session.Cut()["floatingPaste"], false);
}

TEST_F(Block, ABlankRecordTakesNoPaste) {
  CopyMark();
  session.Command(kToolFreePen).Command(kCommandBlankCell).Command(kCommandPaste);
  EXPECT_TRUE(Holds(session, "frame/currentTool", kToolFreePen, "cut/floatingPaste", false));
}

TEST_F(Block, UndoTakesThePasteAway) {
  CopyMark();
  Clear();
  session.Command(kCommandPaste).Command(kCommandUndo);
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(Block, ACutErasesAndStores) {
  Ink(5, 12, 20, 5, 2);
  Select(10, 10, 20, 20);
  session.Command(kCommandCut);
  InkModel erased = model;
  erased.Fill(10, 12, 10, 5, 0);
  EXPECT_TRUE(ViewShows(erased));
  EXPECT_EQ(session.NowUndoRect(), (Area{10, 10, 10, 10}));
  EXPECT_TRUE(PasteShows(model));
}

TEST_F(Block, ACutBesideTheCellStopsBeforeTheUndoCopy) {
  AddSmallLayer();
  Ink(25, 20, 5, 5, 2);
  Select(2, 2, 10, 10);
  session.Command(kCommandCut);
  EXPECT_TRUE(ViewShows(model));
  EXPECT_TRUE(UndoShows(InkModel()));
}

TEST_F(Block, ACutIsOneUndoStep) {
  SelectMark();
  session.Command(kCommandCut).Command(kCommandUndo);
  EXPECT_TRUE(ViewShows(model));
}

// The mirror commands.

struct Patch {
  int x;
  int y;
  int width;
  int height;
  int index;
};

struct MirrorCase {
  const char* name;
  int command;
  std::vector<Patch> ink;
  // Left, top, right and bottom; without one the whole cell is turned.
  std::optional<Area> selection;
  bool index3Protected;
  // What the command changes in the view.
  std::vector<Patch> changes;
};

class MirroredPart : public Block, public testing::WithParamInterface<MirrorCase> {};

TEST_P(MirroredPart, IsTurnedAndNothingElse) {
  const MirrorCase& test = GetParam();
  for (const Patch& patch : test.ink) Ink(patch.x, patch.y, patch.width, patch.height, patch.index);
  if (test.index3Protected) session.Mask({3});
  if (test.selection) {
    const auto& [left, top, right, bottom] = *test.selection;
    Select(left, top, right, bottom);
  }
  session.Command(test.command);
  for (const Patch& patch : test.changes) model.Fill(patch.x, patch.y, patch.width, patch.height, patch.index);
  EXPECT_TRUE(ViewShows(model));
}

INSTANTIATE_TEST_SUITE_P(Commands, MirroredPart,
                         testing::Values(MirrorCase{"TheWholeCellUpsideDown",
                                                    kCommandFlipVertical,
                                                    {{10, 5, 3, 4, 2}},
                                                    {},
                                                    false,
                                                    {{10, 5, 3, 4, 0}, {10, 39, 3, 4, 2}}},
                                         MirrorCase{"KeepsToTheSelection",
                                                    kCommandFlipHorizontal,
                                                    {{5, 12, 8, 3, 2}, {15, 11, 1, 8, 3}},
                                                    Area{10, 10, 21, 21},
                                                    false,
                                                    {{10, 12, 3, 3, 0}, {18, 12, 3, 3, 2}}},
                                         MirrorCase{"UpsideDownKeepsToTheSelection",
                                                    kCommandFlipVertical,
                                                    {{12, 5, 3, 8, 2}},
                                                    Area{10, 10, 21, 21},
                                                    false,
                                                    {{12, 10, 3, 3, 0}, {12, 18, 3, 3, 2}}},
                                         MirrorCase{"EachSideAsksTheMaskAboutWhatItCovers",
                                                    kCommandFlipHorizontal,
                                                    {{10, 12, 1, 3, 2}, {19, 12, 1, 3, 3}},
                                                    Area{10, 10, 20, 20},
                                                    true,
                                                    {{10, 12, 1, 3, 3}}},
                                         MirrorCase{"EachSideUpsideDownAsksTheMaskAboutWhatItCovers",
                                                    kCommandFlipVertical,
                                                    {{12, 10, 3, 1, 3}, {12, 19, 3, 1, 2}},
                                                    Area{10, 10, 20, 20},
                                                    true,
                                                    {{12, 19, 3, 1, 3}}}),
                         [](const testing::TestParamInfo<MirrorCase>& test) { return std::string(test.param.name); });

TEST_F(Block, AMirrorTurnsTheWholeCellLeftToRight) {
  Ink(10, 5, 3, 4, 2);
  session.Command(kCommandFlipHorizontal);
  InkModel flipped;
  flipped.Fill(51, 5, 3, 4, 2);
  EXPECT_TRUE(ViewShows(flipped));
  EXPECT_EQ(session.NowUndoRect(), (Area{0, 0, 64, 48}));
}

TEST_F(Block, AMirrorNeedsNoAreaTool) {
  Ink(10, 5, 3, 4, 2);
  Select(8, 4, 20, 12);
  session.Command(kToolFreePen).Command(kCommandFlipHorizontal);
  InkModel flipped;
  flipped.Fill(51, 5, 3, 4, 2);
  EXPECT_TRUE(ViewShows(flipped)) << "the tool change ended the selection";
}

TEST_F(Block, AMirrorOfASelectionPastTheCellTurnsThePartInside) {
  AddSmallLayer();
  Ink(22, 20, 2, 3, 2);
  Select(10, 10, 32, 40);
  session.Command(kCommandFlipHorizontal);
  InkModel flipped;
  flipped.Fill(30, 20, 2, 3, 2);
  EXPECT_TRUE(ViewShows(flipped));
}

const Rules<Block, "Block"> kBlockRules = {
    {"ACutLeavesProtectedPixels",
     Do().FillArea(12, 12, 2, 5, 2).FillArea(14, 12, 2, 5, 3).SelectArea(10, 10, 20, 20).Mask({3}),
     Do().Command(kCommandCut), Ink().Fill(12, 12, 2, 5, 2).Fill(14, 12, 2, 5, 3).Fill(12, 12, 2, 5, 0)},
    {"AMirrorIsOneUndoStep", Do().FillArea(10, 5, 3, 4, 2).Command(kCommandFlipHorizontal).Command(kCommandUndo),
     Ink().Fill(10, 5, 3, 4, 2)},
    {"ABlankRecordIsNotMirrored",
     Do().FillArea(10, 5, 3, 4, 2).Command(kCommandBlankCell).Command(kCommandFlipHorizontal),
     Do().Command(kCommandBlankCell), Ink().Fill(10, 5, 3, 4, 2)},
};

}  // namespace
}  // namespace rules
