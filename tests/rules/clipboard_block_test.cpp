#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "resources/ids.h"
#include "rules/clipboard_session.h"
#include "rules/rule_table.h"

namespace rules {
namespace {

struct Block : BlockScene {};

// Draws a mark of 4 by 5 at (12, 12) and selects the block from (10, 10) to (20, 20) around it.
Rule::Steps SelectMark() {
  return {Filled{12, 12, 4, 5, 2}, Do().SelectArea(10, 10, 20, 20)};
}

// The same, copied.
Rule::Steps CopyMark() {
  return {Filled{12, 12, 4, 5, 2}, Do().SelectArea(10, 10, 20, 20).Command(kCommandCopy)};
}

// What a block of the mark shows where it is pasted at its old place.
Ink WithMark() {
  return Once().Fill(12, 12, 4, 5, 2);
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

TEST_F(Block, AMirrorNeedsNoAreaTool) {
  Ink(10, 5, 3, 4, 2);
  Select(8, 4, 20, 12);
  session.Command(kToolFreePen).Command(kCommandFlipHorizontal);
  InkModel flipped;
  flipped.Fill(51, 5, 3, 4, 2);
  EXPECT_TRUE(ViewShows(flipped)) << "the tool change ended the selection";
}

const Rules<Block, "Block"> kBlockRules = {
    {"ComesBackAtItsPlaceInItsCut", CopyMark(), Filled{}, Do().Command(kCommandPaste), WithMark()},
    {"ComesBackAtItsPlaceOnTheCanvasInAnotherLayer", CopyMark(), Filled{},
     Do().AddLayer("B", 64, 48).Command(kToolLayerPosition).LeftDrag(10, 10, 15, 13),
     Do().Commands({kCommandPaste, kCommandCurrentCellOnly}), WithMark()},
    {"LandsAtTheOriginInAnotherCut", CopyMark(), Do().NewCut(kCutOfTheSameSize).Command(kCommandPaste),
     OnEmpty().Fill(2, 2, 4, 5, 2), Has("cut/selection", Area{0, 0, 10, 10})},
    {"FloatsAsASelectionOfTheAreaTool", CopyMark(), Do().Command(kToolFreePen).Command(kCommandPaste),
     Has("cut/selection", Area{10, 10, 20, 20}, "cut/floatingPaste", true, "frame/currentTool", kToolAreaSelect,
         "cut/undoRect", Area{10, 10, 10, 10})},
    {"TransparentPixelsOfItLeaveTheCell", CopyMark(), Filled{8, 8, 30, 30, 4}, Do().Command(kCommandPaste), WithMark()},
    {"TheMaskProtectsWhatItIsPastedOn", CopyMark(), Filled{14, 10, 10, 10, 3}, Do().Mask({3}).Command(kCommandPaste),
     Ink()},
    {"ACopyWithoutASelectionKeepsTheOldOne", CopyMark(), Filled{}, Do().Commands({kCommandCopy, kCommandPaste}),
     WithMark()},
    {"ABlankRecordTakesNoPaste", CopyMark(), Do().Command(kToolFreePen).Commands({kCommandBlankCell, kCommandPaste}),
     Has("frame/currentTool", kToolFreePen, "cut/floatingPaste", false)},
    {"UndoTakesThePasteAway", CopyMark(), Filled{}, Do().Commands({kCommandPaste, kCommandUndo}), Ink()},
    {"ACutIsOneUndoStep", SelectMark(), Do().Commands({kCommandCut, kCommandUndo}), Ink()},
    {"AnEmptyBlockPastesNothing", Do().Command(kCommandPaste), Ink(),
     Has("cut/floatingPaste", false, "frame/currentTool", kToolFreePen)},
    {"TheMaskDecidesWhatIsLifted", Filled{12, 12, 2, 5, 2}, Filled{14, 12, 2, 5, 3}, CopyBlockAndClear({3}),
     Do().Command(kCommandPaste), Ink().Fill(12, 12, 2, 5, 2)},
    {"ACopyIsCutToTheCell",
     Do().AddLayer("B", 20, 10).SelectArea(10, 10, 40, 25).Commands({kCommandCopy, kCommandPaste}),
     Has("cut/selection", Area{22, 19, 40, 25})},
    {"ACopyBesideTheCellStoresNothing",
     Do().AddLayer("B", 20, 10).SelectArea(2, 2, 10, 10).Commands({kCommandCopy, kCommandPaste}),
     Has("cut/floatingPaste", false)},
    {"ACutErasesAndStores", Filled{5, 12, 20, 5, 2}, Do().SelectArea(10, 10, 20, 20).Command(kCommandCut),
     Once().Fill(10, 12, 10, 5, 0), Has("cut/undoRect", Area{10, 10, 10, 10}), Do().Command(kCommandPaste), Ink()},
    {"ACutBesideTheCellStopsBeforeTheUndoCopy", Do().AddLayer("B", 20, 10), Filled{25, 20, 5, 5, 2},
     Do().SelectArea(2, 2, 10, 10).Command(kCommandCut), Ink(), Do().Command(kCommandUndo), OnEmpty()},
    {"AMirrorTurnsTheWholeCellLeftToRight", Filled{10, 5, 3, 4, 2}, Do().Command(kCommandFlipHorizontal),
     OnEmpty().Fill(51, 5, 3, 4, 2), Has("cut/undoRect", Area{0, 0, 64, 48})},
    {"AMirrorOfASelectionPastTheCellTurnsThePartInside", Do().AddLayer("B", 20, 10), Filled{22, 20, 2, 3, 2},
     Do().SelectArea(10, 10, 32, 40).Command(kCommandFlipHorizontal), OnEmpty().Fill(30, 20, 2, 3, 2)},
    {"ACutLeavesProtectedPixels",
     Do().FillArea(12, 12, 2, 5, 2).FillArea(14, 12, 2, 5, 3).SelectArea(10, 10, 20, 20).Mask({3}).Command(kCommandCut),
     Ink().Fill(12, 12, 2, 5, 2).Fill(14, 12, 2, 5, 3).Fill(12, 12, 2, 5, 0)},
    {"AMirrorIsOneUndoStep", Do().FillArea(10, 5, 3, 4, 2).Commands({kCommandFlipHorizontal, kCommandUndo}),
     Ink().Fill(10, 5, 3, 4, 2)},
    {"ABlankRecordIsNotMirrored",
     Do().FillArea(10, 5, 3, 4, 2).Commands({kCommandBlankCell, kCommandFlipHorizontal, kCommandBlankCell}),
     Ink().Fill(10, 5, 3, 4, 2)},
};

}  // namespace
}  // namespace rules
