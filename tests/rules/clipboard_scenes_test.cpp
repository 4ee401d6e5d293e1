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

const Rules<BlockScene, "BlockBetweenCuts"> kBlockBetweenCutsRules = {
    {"LandsAtTheOriginOfTheCellNotOfTheCanvas", CopyAndClear(), Do().NewCut(kCutWithSmallLayer).Command(kCommandPaste),
     OnEmpty().Fill(24, 21, 4, 4, 2), Has("cut/selection", Area{22, 19, 32, 29}, "cut/undoRect", Area{0, 0, 10, 10})},
    {"LargerThanTheCellKeepsItsWholeFrame", Filled{0, 0, 64, 48, 2}, Filled{0, 0, 3, 3, 3},
     Do().SelectArea(0, 0, 40, 30).Command(kCommandCopy).NewCut(kCutWithSmallLayer).Command(kCommandPaste),
     OnEmpty().Fill(22, 19, 20, 10, 2).Fill(22, 19, 3, 3, 3),
     Has("cut/selection", Area{22, 19, 62, 49}, "cut/undoRect", Area{0, 0, 40, 30})},
    {"ComesBackAtItsPlaceInTheFirstCutAfterAPasteInTheSecond", CopyAndClear(),
     Do().NewCut(kCutWithSmallLayer).Command(kCommandPaste).Activate(0).Command(kCommandPaste),
     Ink().Fill(12, 12, 4, 4, 2), Has("cut/selection", Area{10, 10, 20, 20})},
    {"BelongsToTheCutOfTheLastCopy", CopyAndClear(),
     Do().NewCut(kCutOfTheSameSize).FillArea(31, 6, 2, 2, 4).SelectArea(30, 5, 38, 12).Command(kCommandCopy),
     Do().Activate(0).Command(kCommandPaste), Ink().Fill(1, 1, 2, 2, 4), Do().Activate(1).Command(kCommandPaste),
     Has("cut/selection", Area{30, 5, 38, 12})},
    {"OutlivesTheCutItCameFrom", CopyAndClear(),
     Do().NewCut(kCutOfTheSameSize).Activate(0).Answer("no").Close().Command(kCommandPaste),
     OnEmpty().Fill(2, 2, 4, 4, 2)},
    {"ACutOutBlockIsTakenAlongAndItsUndoStaysBehind", Filled{12, 12, 4, 4, 2},
     Do().SelectArea(10, 10, 20, 20).Command(kCommandCut).NewCut(kCutOfTheSameSize).Command(kCommandPaste),
     OnEmpty().Fill(2, 2, 4, 4, 2), Do().Activate(0).Command(kCommandUndo), Ink(),
     Do().Activate(1).Command(kCommandUndo), OnEmpty()},
    {"ADragInTheSecondCutMovesTheBlockThere", CopyAndClear(),
     Do().NewCut(kCutOfTheSameSize).Command(kCommandPaste).LeftDrag(5, 5, 35, 25), OnEmpty().Fill(32, 22, 4, 4, 2),
     Do().Activate(0), Ink()},
};

// ---- Between layers ----

// 30 by 20 pixels from (10, 10) on, with a mark in the left upper corner.
Rule::Steps CopyLargeBlock() {
  ScriptSession copy;
  copy.FillArea(10, 10, 30, 20, 2).FillArea(10, 10, 5, 5, 3).SelectArea(10, 10, 40, 30).Command(kCommandCopy);
  return {copy, Filled{}};
}

const Rules<BlockScene, "BlockBetweenLayers"> kBlockBetweenLayersRules = {
    {"OnASmallerLayerIsCutToItAndKeepsItsPlace", CopyLargeBlock(), Do().AddLayer("B", 20, 10).Command(kCommandPaste),
     Ink().Fill(22, 19, 18, 10, 2), Has("cut/selection", Area{10, 10, 40, 30}, "cut/undoRect", Area{-12, -9, 30, 20})},
    {"ADragBringsInThePartThatLayOutside", CopyLargeBlock(),
     Do().AddLayer("B", 20, 10).Command(kCommandPaste).LeftDrag(30, 22, 42, 31),
     Ink().Fill(22, 19, 20, 10, 2).Fill(22, 19, 5, 5, 3),
     Has("cut/selection", Area{22, 19, 52, 39}, "cut/undoRect", Area{-12, -9, 42, 29})},
    {"UndoOnTheSmallerLayerTakesItAwayAndBringsItBack", CopyLargeBlock(),
     Do().AddLayer("B", 20, 10).Commands({kCommandPaste, kCommandUndo}), Ink(), Do().Command(kCommandUndo),
     Ink().Fill(22, 19, 18, 10, 2)},
    {"OutOfASmallerLayerKeepsItsPlaceOnALargerOne",
     Do().AddLayer("B", 20, 10).FillArea(24, 20, 6, 4, 3).Command(kToolAreaSelect).RightClick(30, 22),
     Do().Command(kCommandCopy).Select(kLayerList, {0}).Commands({kCommandPaste, kCommandCurrentCellOnly}),
     Ink().Fill(24, 20, 6, 4, 3), Has("cut/undoRect", Area{22, 19, 20, 10})},
    {"WhollyBesideTheOtherLayerFloatsAndCanBeDraggedIn", CopyAndClear(),
     Do().AddLayer("B", 20, 10).Command(kCommandPaste), Ink(), Has("cut/floatingPaste", true),
     Do().LeftDrag(15, 15, 30, 25), Ink().Fill(27, 22, 4, 4, 2)},
    {"GoesToAnotherCellOfTheLayer", Filled{12, 12, 4, 4, 2},
     Do().SelectArea(10, 10, 20, 20).Commands({kCommandCopy, kCommandAddCell, kCommandPaste}).LeftDrag(15, 15, 25, 15),
     OnEmpty().Fill(22, 12, 4, 4, 2), Do().Command(kCommandPreviousCell), Ink()},
};

// ---- Masks ----

const Rules<BlockScene, "MaskedBlock"> kMaskedBlockRules = {
    {"ACopyReplacesAllOfAnOlderBlock", Filled{10, 10, 10, 10, 2}, Do().SelectArea(10, 10, 20, 20).Command(kCommandCopy),
     Filled{10, 10, 10, 10, 3}, CopyBlockAndClear({3}), Do().Command(kCommandPaste), Ink()},
    {"TheMaskOfTheCopyLiftsAndTheMaskOfThePasteProtects", Filled{12, 12, 2, 5, 2}, Filled{14, 12, 2, 5, 3},
     Filled{16, 12, 2, 5, 4}, CopyBlockAndClear({3}), Filled{11, 12, 9, 2, 9}, Do().Mask({9}).Command(kCommandPaste),
     Ink().Fill(12, 14, 2, 3, 2).Fill(16, 14, 2, 3, 4)},
    {"ProtectedTransparencyLetsThePasteOverInkOnly", CopyAndClear(), Filled{13, 10, 10, 4, 3},
     Do().Mask({0}).Command(kCommandPaste), Ink().Fill(13, 12, 3, 2, 2)},
    {"ProtectedTransparencyDoesNotChangeWhatIsLifted", CopyAndClear({0}), Do().Command(kCommandPaste),
     Ink().Fill(12, 12, 4, 4, 2)},
    {"NothingLiftedStillFloatsInItsFrame", CopyAndClear({2}), Do().Command(kCommandPaste), Ink(),
     Has("cut/floatingPaste", true, "cut/selection", Area{10, 10, 20, 20})},
    {"AMaskSetWhileItFloatsCountsForTheNextDrag", CopyAndClear(), Filled{40, 10, 10, 20, 3},
     Do().Command(kCommandPaste).Mask({3}).LeftDrag(15, 15, 41, 25), Ink().Fill(38, 22, 2, 4, 2)},
    {"AMaskClearedWhileItFloatsCountsForTheNextDrag", CopyAndClear(), Filled{10, 10, 10, 10, 3},
     Filled{40, 10, 10, 20, 3}, Do().Mask({3}).Command(kCommandPaste), Ink(), Do().Mask({}).LeftDrag(15, 15, 41, 25),
     Ink().Fill(38, 22, 4, 4, 2)},
    {"TheUndoOfAMaskedPasteGivesTheCellBack", CopyAndClear(), Filled{13, 10, 10, 4, 3},
     Do().Mask({3}).Commands({kCommandPaste, kCommandUndo}), Ink()},
    {"ACutUnderAMaskStoresWhatItErasesAndUndoGivesBackBoth", Filled{12, 12, 2, 4, 2}, Filled{14, 12, 2, 4, 3},
     Do().SelectArea(10, 10, 20, 20).Mask({3}).Command(kCommandCut), Once().Fill(12, 12, 2, 4, 0),
     Do().Command(kCommandUndo), Ink(), Filled{}, Do().Command(kCommandPaste), Ink().Fill(12, 12, 2, 4, 2)},
};

// ---- Roles in the block ----

// What the block of every role shows.
Ink EveryRole() {
  const int roles[] = {5, 5, 6, 6, 7, 7, 9, 10, 8, 4};
  Ink ink = OnEmpty();
  for (int i = 0; i < 10; ++i) ink.Fill(10 + i, 10, 1, 6, roles[i]);
  return ink;
}

// A tone mark shifts the tone that it is pasted on, and stays itself where there is none.
Rule::Steps PasteToneMarks() {
  const int marks[] = {11, 12, 13, 14};
  const int below[] = {0, 1, 2, 3, 4, 9, 10};
  const int shown[4][7] = {
      {11, 3, 4, 4, 4, 4, 4}, {12, 2, 3, 4, 4, 3, 4}, {13, 1, 1, 2, 3, 1, 2}, {14, 1, 1, 1, 2, 1, 1}};
  Rule::Steps steps;
  Ink pasted;
  for (int i = 0; i < 4; ++i) {
    steps.emplace_back(Filled{10, 10 + 2 * i, 14, 2, marks[i]});
    for (int j = 0; j < 7; ++j) pasted.Fill(10 + 2 * j, 10 + 2 * i, 2, 2, shown[i][j]);
  }
  steps.emplace_back(Do().SelectArea(10, 10, 24, 18).Command(kCommandCopy));
  steps.emplace_back(Filled{});
  for (int j = 1; j < 7; ++j) steps.emplace_back(Filled{10 + 2 * j, 8, 2, 12, below[j]});
  steps.emplace_back(Do().Command(kCommandPaste));
  steps.emplace_back(pasted);
  return steps;
}

const Rules<BlockScene, "BlockOfRoles"> kBlockOfRolesRules = {
    {"HoldsLinesBoundariesAndUnderdrawingExactly", Filled{10, 10, 2, 6, 1}, Filled{12, 10, 2, 6, 2},
     Filled{14, 10, 2, 6, 3}, Do().Command(kCommandToSketch),
     Ink().Fill(10, 10, 2, 6, 5).Fill(12, 10, 2, 6, 6).Fill(14, 10, 2, 6, 7), Filled{16, 10, 1, 6, 9},
     Filled{17, 10, 1, 6, 10}, Do().DrawInkLine(18, 10, 18, 15), Ink().Fill(18, 10, 1, 6, 8), Filled{19, 10, 1, 6, 4},
     Ink(), CopyBlockAndClear(), Do().Command(kCommandPaste), EveryRole()},
    {"ToneMarksChangeTheGreysBelow", PasteToneMarks()},
    {"AFloatingToneMarkLeavesTheGreysAsTheyWere", Do().FillArea(12, 12, 4, 4, 11), CopyBlockAndClear(),
     Filled{10, 10, 10, 10, 1}, Filled{40, 10, 10, 20, 2}, Do().Command(kCommandPaste), Once().Fill(12, 12, 4, 4, 3),
     Do().LeftDrag(15, 15, 45, 25), Ink().Fill(42, 22, 4, 4, 4)},
};

// ---- The floating paste ----

struct FloatingBlock : BlockScene {
  FloatingBlock() {
    session.FillArea(12, 12, 4, 4, 2).SelectArea(10, 10, 20, 20).Command(kCommandCopy).FillArea(0, 0, 64, 48, 0);
    Ink(40, 10, 10, 20, 3);
    session.Command(kCommandPaste);
  }
};

// The cell with the block at this place of its left upper corner.
Ink With(int x, int y) {
  return Once().Fill(x + 2, y + 2, 4, 4, 2);
}

const Rules<FloatingBlock, "FloatingBlock"> kFloatingBlockRules = {
    {"MadeFinalIsMovedAsTheInkOfTheCell",
     Do().LeftDrag(30, 40, 34, 44).SelectArea(10, 10, 20, 20).LeftDrag(15, 15, 25, 25), With(20, 20),
     Do().Command(kCommandUndo), With(10, 10)},
    {"DraggedOverTheRightEdgeAndBackIsWhole", Do().LeftDrag(12, 15, 62, 15), With(60, 10),
     Has("cut/selection", Area{60, 10, 70, 20}), Do().LeftDrag(63, 15, 23, 25), With(20, 20),
     Do().Command(kCommandUndo), Ink()},
    {"UndoAndRedoBeforeADrag", With(10, 10), Do().Command(kCommandUndo), Ink(), Do().Command(kCommandUndo),
     With(10, 10)},
    {"UndoAndRedoAfterADragMeanItsLastPlace", Do().LeftDrag(15, 15, 45, 25), With(40, 20), Do().Command(kCommandUndo),
     Ink(), Do().Command(kCommandUndo), With(40, 20), Do().Command(kCommandUndo), Ink()},
    {"UndoAfterSeveralDragsTakesThePasteAwayAtOnce",
     Do().LeftDrag(15, 15, 45, 25).LeftDrag(42, 24, 22, 34).LeftDrag(22, 34, 20, 30), With(18, 26),
     Do().Command(kCommandUndo), Ink(), Do().Command(kCommandUndo), With(18, 26)},
    {"APressWithoutAMovePutsItBackWhereItWas", Do().Press(15, 15).Release(15, 15), With(10, 10),
     Has("cut/selection", Area{10, 10, 20, 20}, "cut/floatingPaste", true)},
    {"ASecondPasteLeavesTheFirstWhereItWasDragged", Do().LeftDrag(15, 15, 45, 25).Command(kCommandPaste),
     With(40, 20).Fill(12, 12, 4, 4, 2), Do().LeftDrag(15, 15, 35, 45),
     With(40, 20).Fill(12, 12, 4, 4, 2).Fill(12, 12, 4, 4, 0).Fill(32, 42, 4, 4, 2), Do().Command(kCommandUndo),
     With(40, 20)},
    // The flag outlives the selection, so that the next drag of any frame is a drag of the paste: the frame's size
    // decides how much of the block lands.
    {"AFrameDrawnAfterAToolChangeDragsThePaste",
     Do().Command(kToolFreePen).SelectArea(25, 30, 30, 35).LeftDrag(28, 33, 33, 35), Ink().Fill(32, 34, 3, 3, 2),
     Has("cut/selection", Area{30, 32, 35, 37})},
    {"AfterUndoAndRedoAFrameStillDragsThePaste",
     Do().LeftDrag(15, 15, 35, 25).Commands({kCommandUndo, kCommandUndo}).LeftDrag(30, 20, 40, 30),
     Do().LeftDrag(35, 25, 25, 35), With(20, 30)},
    // The press swaps with the undo copy, whatever that holds: after an undo it is the paste.
    {"AfterAnUndoADragBringsThePasteBackAndPutsAnotherOne",
     Do().Command(kCommandUndo).LeftDrag(20, 30, 30, 40).LeftDrag(25, 35, 27, 37), With(22, 32).Fill(12, 12, 4, 4, 2)},
    {"AWidenedFrameTakesTheBlockToItsCorner", Do().LeftDrag(10, 15, 7, 15), Has("cut/selection", Area{7, 10, 23, 20}),
     With(10, 10), Do().LeftDrag(15, 15, 15, 25), With(7, 20),
     Has("cut/selection", Area{7, 20, 23, 30}, "cut/undoRect", Area{7, 10, 16, 20})},
    {"UndoEndsTheSelectionAndLeavesItAfloat", Do().LeftDrag(15, 15, 45, 25).Command(kCommandUndo),
     Has("cut/hasSelection", false, "cut/floatingPaste", true)},
    {"TheUndoRectGrowsOverAllItsPlaces", Has("cut/undoRect", Area{10, 10, 10, 10}), Do().LeftDrag(15, 15, 45, 25),
     Has("cut/undoRect", Area{10, 10, 40, 20}), Do().LeftDrag(42, 24, 22, 34),
     Has("cut/undoRect", Area{10, 10, 40, 30})},
    {"ANarrowedFrameCutsTheBlock", Do().LeftDrag(10, 15, 13, 15), Has("cut/selection", Area{13, 10, 17, 20}),
     Do().LeftDrag(15, 15, 25, 25), Ink().Fill(25, 22, 2, 4, 2)},
    {"DraggedOverTheLeftUpperCornerAndBackIsWhole", Do().LeftDrag(17, 17, 3, 4), With(-4, -3),
     Has("cut/selection", Area{-4, -3, 6, 7}), Do().LeftDrag(3, 4, 23, 24), With(16, 17)},
    {"DraggedWhollyOutLeavesTheCellAndUndoBringsItBack", Do().LeftDrag(15, 15, 15, 60), Ink(),
     Do().Command(kCommandUndo), Ink()},
};

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
};

const Rules<ZoomedBlock, "ZoomedBlock"> kZoomedBlockRules = {
    {"ComesBackAtItsPlaceWithAFrameOfWholePixels", With(20, 16),
     Has("cut/selection", Area{10, 10, 30, 26}, "cut/undoRect", Area{21, 17, 10, 8})},
    {"IsDraggedByWholePixels", Do().LeftDrag(21, 20, 31, 28), With(25, 20), Has("cut/selection", Area{20, 18, 40, 34}),
     Do().Command(kCommandUndo), Ink()},
};

const Rules<BlockScene, "BlockOnTheGrid"> kBlockOnTheGridRules = {
    {"ACopySnapsTheSelectionOfAnEarlierGrid", Filled{0, 0, 64, 48, 2},
     Do().SelectArea(11, 13, 30, 27).Grid(8, 8).Command(kCommandCopy).Grid(1, 1), Filled{}, Do().Command(kCommandPaste),
     Ink().Fill(8, 16, 24, 8, 2), Has("cut/selection", Area{8, 16, 32, 24})},
    {"ADragGoesInStepsOfTheGrid", CopyAndClear(), Do().Command(kCommandPaste).Grid(8, 8).LeftDrag(15, 15, 26, 27),
     Ink().Fill(20, 20, 4, 4, 2), Has("cut/selection", Area{18, 18, 28, 28})},
};

// ---- Cut ----

struct CutOut : BlockScene {
  CutOut() {
    Ink(12, 12, 4, 4, 2);
    Ink(40, 10, 10, 20, 3);
    Select(10, 10, 20, 20);
  }
};

Ink Without() {
  return Once().Fill(10, 10, 10, 10, 0);
}

const Rules<CutOut, "CutOut"> kCutOutRules = {
    // The repaint ends the selection, over which a new layer would lie.
    {"PastTheEdgeOfASmallLayerIsLimitedToIt", Do().Repaint().AddLayer("B", 20, 10), Filled{22, 19, 20, 10, 4},
     Do().SelectArea(10, 10, 30, 24).Command(kCommandCut), Once().Fill(22, 19, 8, 5, 0),
     Has("cut/undoRect", Area{0, 0, 8, 5}), Do().Command(kCommandUndo), Ink(),
     Do().Commands({kCommandUndo, kCommandPaste}), Ink(), Has("cut/selection", Area{22, 19, 30, 24})},
    {"UndoAndRedo", Do().Commands({kCommandCut, kCommandUndo}), Ink(), Do().Command(kCommandUndo), Without()},
    {"EndsTheSelectionWhichACopyKeeps", Do().Command(kCommandCopy), Has("cut/selection", Area{10, 10, 20, 20}),
     Do().Command(kCommandCut), Has("cut/hasSelection", false)},
    {"TheBlockOutlivesTheUndo", Do().Commands({kCommandCut, kCommandUndo, kCommandPaste}).LeftDrag(15, 15, 35, 35),
     Ink().Fill(32, 32, 4, 4, 2)},
    {"UndoAfterThePasteGivesTheStateAfterTheCut", Do().Commands({kCommandCut, kCommandPaste}).LeftDrag(15, 15, 35, 35),
     Without().Fill(32, 32, 4, 4, 2), Do().Command(kCommandUndo), Without(), Do().Command(kCommandUndo),
     Without().Fill(32, 32, 4, 4, 2)},
};

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

const Rules<ClipboardPicture, "ClipboardPicture"> kClipboardPictureRules = {
    // The picture takes the layer's place as its own, but not the cut as its owner.
    {"WithoutAnOwnerLandsAtTheOriginOfEachLayer", Do().AddLayer("B", 20, 10),
     PastePicture(Do(), PlainPicture(6, 4, 0xFFFFFF)), Ink().Fill(22, 19, 6, 4, 4),
     Do().Select(kLayerList, {0}).Command(kCommandPaste), Ink().Fill(0, 0, 6, 4, 4)},
    {"AfterACopyInThisCutKeepsItsPlaceOnTheCanvas", CopyAndClear(), Do().AddLayer("B", 20, 10),
     PastePicture(Do(), PlainPicture(6, 4, 0xFFFFFF)), Ink().Fill(22, 19, 6, 4, 4),
     Do().Select(kLayerList, {0}).Commands({kCommandPaste, kCommandCurrentCellOnly}), Ink()},
    {"PastedInAnotherCutTakesThatCutsPlaceBackToTheOwner", CopyAndClear(), Do().NewCut(kCutWithSmallLayer),
     PastePicture(Do(), PlainPicture(6, 4, 0xFFFFFF)), Ink().Fill(22, 19, 6, 4, 4),
     Do().Activate(0).Command(kCommandPaste), Ink()},
};

// ---- Pictures under a mask ----

// Copies a block with ink of index 3 in its left upper corner, and empties the cell.
Rule::Steps CopyCorner() {
  return {Do().FillArea(10, 10, 8, 6, 3).SelectArea(10, 10, 20, 20).Command(kCommandCopy), Filled{}};
}

const Rules<BlockScene, "MaskedPicture"> kMaskedPictureRules = {
    // The mask also asks what the block held before, of which a resize keeps the left upper part.
    {"ProtectedPixelsOfTheOldBlockStayInIt", CopyCorner(), Do().Mask({3}),
     PastePicture(Do(), PlainPicture(20, 15, 0xFFFFFF)), Ink().Fill(0, 0, 20, 15, 4).Fill(0, 0, 8, 6, 3)},
    {"WithoutAMaskNothingOfTheOldBlockStays", CopyCorner(), Do().Line("color FFFFFF").Command(kCommandTransparentColor),
     PastePicture(Do(), PlainPicture(20, 15, 0xFFFFFF)), OnEmpty(), Has("cut/selection", Area{0, 0, 20, 15})},
    {"ProtectedTransparencyKeepsAFreshBlockEmpty", Filled{0, 0, 30, 30, 2}, Do().Mask({0}),
     PastePicture(Do(), PlainPicture(20, 15, 0xFFFFFF)), Ink(), Has("cut/floatingPaste", true)},
    {"ProtectedTransparencyLetsThePictureOverTheInkOfTheOldBlock", CopyAndClear(), Filled{0, 0, 30, 5, 9},
     Do().Mask({0}), PastePicture(Do(), PlainPicture(20, 15, 0xFFFFFF)), Ink().Fill(2, 2, 4, 3, 4)},
};

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
