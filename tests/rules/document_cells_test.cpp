#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "resources/ids.h"
#include "rules/clipboard_session.h"
#include "rules/script_session.h"
#include "rules/session_state.h"

namespace {

using nlohmann::json;
using rules::CutFile;
using rules::PlainCell;
using rules::ScriptSession;

// The cell number of the first record of each frame.
std::vector<int> Numbers(const ScriptSession& session, int state) {
  return rules::OfEachFrame(session, state, "/records/0/cell");
}

json Colors(const std::vector<int>& colors) {
  json cells = json::array();
  for (const int color : colors) cells.push_back(PlainCell(color));
  return cells;
}

json Cells(const ScriptSession& session, int state, size_t layer = 0) {
  json cut = session.Cut(state);
  return cut["layers"][layer]["cells"];
}

json Line(const ScriptSession& session, int state) {
  return rules::PanelOf(session, state, "10004")["lines"][0];
}

// A layer of cells of these colours, shown by these frames, the last of which is current.
struct CellCase {
  const char* name;
  std::vector<int> cells;
  std::vector<int> shown;
  int command;
  std::vector<int> numbersAfter;
  std::vector<int> cellsAfter;
  const char* lineAfter;
};

class CellCommand : public testing::TestWithParam<CellCase> {};

TEST_P(CellCommand, ChangesTheCellsAndTheNumbersOfEveryFrame) {
  const CellCase& test = GetParam();
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing(test.cells, test.shown)).Command(test.command);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Numbers(session, state), test.numbersAfter);
  EXPECT_EQ(Cells(session, state), Colors(test.cellsAfter));
  EXPECT_EQ(Line(session, state), test.lineAfter);
}

INSTANTIATE_TEST_SUITE_P(
    Document, CellCommand,
    testing::Values(
        CellCase{"DeleteLeavesFramesThatShowedItOnItsNumber",
                 {1, 2, 3, 4},
                 {2, 2, 3, 1, 0, 2},
                 kCommandDeleteCell,
                 {2, 2, 2, 1, 0, 2},
                 {1, 2, 4},
                 "A (3/3)"},
        CellCase{"DeleteOfTheLastCellLeavesEveryFrameOfItOnTheNewLast",
                 {1, 2, 3, 4},
                 {3, 1, 3},
                 kCommandDeleteCell,
                 {2, 1, 2},
                 {1, 2, 3},
                 "A (3/3)"},
        CellCase{"AddLiftsTheNumbersBehindIt",
                 {1, 2, 3},
                 {0, 1, 2, 1},
                 kCommandAddCell,
                 {0, 1, 3, 2},
                 {1, 2, 0, 3},
                 "A (3/4)"},
        CellCase{"AddBehindTheLastCellShowsTheNewCell", {1, 2}, {1, 1}, kCommandAddCell, {1, 2}, {1, 2, 0}, "A (3/3)"},
        CellCase{"InsertLiftsItsOwnNumberAndThoseBehindInOtherFrames",
                 {1, 2, 3},
                 {0, 1, 2, 1},
                 kCommandInsertCell,
                 {0, 2, 3, 1},
                 {1, 0, 2, 3},
                 "A (2/4)"}),
    [](const testing::TestParamInfo<CellCase>& test) { return std::string(test.param.name); });

struct RefusedCase {
  const char* name;
  std::vector<int> cells;
  int shown;
  int command;
};

class RefusedCellCommand : public testing::TestWithParam<RefusedCase> {};

TEST_P(RefusedCellCommand, LeavesTheCells) {
  const RefusedCase& test = GetParam();
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing(test.cells, {test.shown})).Command(test.command);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Cells(session, state), Colors(test.cells));
  EXPECT_EQ(session.Cut(state)["modified"], false);
}

INSTANTIATE_TEST_SUITE_P(Document, RefusedCellCommand,
                         testing::Values(RefusedCase{"DeleteOfTheOnlyCell", {1}, 0, kCommandDeleteCell},
                                         RefusedCase{"DeleteOnABlankRecord", {1, 2}, -1, kCommandDeleteCell},
                                         RefusedCase{"AddOnABlankRecord", {1, 2}, -1, kCommandAddCell},
                                         RefusedCase{"InsertOnABlankRecord", {1, 2}, -1, kCommandInsertCell}),
                         [](const testing::TestParamInfo<RefusedCase>& test) { return std::string(test.param.name); });

TEST(DeleteCell, LeavesTheRememberedNumberOfABlankRecordStale) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1, 2, 3}, {-3, 0})).Command(kCommandDeleteCell);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Numbers(session, state), (std::vector<int>{-3, 0}));
}

TEST(DeleteCell, MarksImagesRepaintsAndRewritesTheLine) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1, 2}, {0})).Command(kCommandPlay).Command(kCommandDeleteCell);
  const int state = session.State();
  const int view = session.View();
  session.Run();
  EXPECT_EQ(session.Cut(state)["modified"], true);
  EXPECT_EQ(session.Cut(state)["imagesStale"], true);
  EXPECT_EQ(Line(session, state), "A (1/1)");
  EXPECT_EQ(session.ViewAt(view).Count(2), 24);
}

TEST(DeleteCell, TakesItsUndoWithIt) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1, 2}, {0}))
      .Command(kCommandEraseCell)
      .Command(kCommandDeleteCell)
      .Command(kCommandUndo);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Cells(session, state), Colors({2}));
}

TEST(AddCell, LeavesOtherLayersAlone) {
  ScriptSession session;
  CutFile file = CutFile::Showing({1, 2, 3}, {2, 0});
  file.layers.push_back({.name = "B", .cells = {4, 5}});
  for (auto& frame : file.frames) frame.records.push_back({.layer = 1, .cell = 1});
  session.OpenCut("a.cut", file).Select(kLayerList, {0}).Command(kCommandAddCell);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Numbers(session, state), (std::vector<int>{3, 1}));
  EXPECT_EQ(session.Frame(state, 0)["records"][1]["cell"], 1);
  EXPECT_EQ(Cells(session, state, 1), Colors({4, 5}));
}

TEST(StepCell, GoesBackAndForwardWithinTheLayer) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1, 2, 3}, {0, 1})).Command(kCommandPreviousCell);
  const int back = session.State();
  session.Command(kCommandNextCell).Command(kCommandNextCell);
  const int forward = session.State();
  session.Run();
  EXPECT_EQ(Numbers(session, back), (std::vector<int>{0, 0}));
  EXPECT_EQ(Line(session, back), "A (1/3)");
  EXPECT_EQ(Numbers(session, forward), (std::vector<int>{0, 2}));
  EXPECT_EQ(Line(session, forward), "A (3/3)");
}

TEST(StepCell, ToTheFirstAndTheLast) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1, 2, 3, 4}, {1})).Command(kCommandLastCell);
  const int last = session.State();
  session.Command(kCommandFirstCell);
  const int first = session.State();
  session.Run();
  EXPECT_EQ(Numbers(session, last), std::vector<int>{3});
  EXPECT_EQ(Numbers(session, first), std::vector<int>{0});
}

TEST(StepCell, RepaintsAndMarksImages) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1, 3}, {0})).Command(kCommandPlay).Command(kCommandNextCell);
  const int state = session.State();
  const int view = session.View();
  session.Run();
  EXPECT_EQ(session.Cut(state)["modified"], true);
  EXPECT_EQ(session.Cut(state)["imagesStale"], true);
  EXPECT_EQ(session.ViewAt(view).Count(3), 24);
}

class StepAtItsEnd : public testing::TestWithParam<std::pair<int, int>> {};

TEST_P(StepAtItsEnd, MarksNothing) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1, 2, 3}, {GetParam().second})).Command(GetParam().first);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Numbers(session, state), std::vector<int>{GetParam().second});
  EXPECT_EQ(session.Cut(state)["modified"], false);
}

INSTANTIATE_TEST_SUITE_P(Document, StepAtItsEnd,
                         testing::Values(std::pair{kCommandPreviousCell, 0}, std::pair{kCommandNextCell, 2},
                                         std::pair{kCommandPreviousCell, -2}, std::pair{kCommandNextCell, -2},
                                         std::pair{kCommandFirstCell, -2}, std::pair{kCommandLastCell, -2}));

TEST(StepCell, ThatFailsLeavesTheScreenOverlayAlone) {
  ScriptSession session;
  session.NewCut().Command(kToolAreaSelect).LeftDrag(306, 230, 316, 236).Command(kCommandPreviousCell);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["selection"], json::array({306, 230, 316, 236}));
}

TEST(ToggleBlank, KeepsTheNumberInItsComplement) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1, 2, 3}, {2, 2})).Command(kCommandBlankCell);
  const int blank = session.State();
  const int view = session.View();
  session.Command(kCommandBlankCell);
  const int shown = session.State();
  session.Run();
  EXPECT_EQ(Numbers(session, blank), (std::vector<int>{2, -3}));
  EXPECT_EQ(Line(session, blank), "A (0/3)");
  EXPECT_EQ(session.ViewAt(view).Count(0), 24);
  EXPECT_EQ(Numbers(session, shown), (std::vector<int>{2, 2}));
  EXPECT_EQ(Line(session, shown), "A (3/3)");
}

TEST(ToggleBlank, MarksImages) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1}, {0})).Command(kCommandPlay).Command(kCommandBlankCell);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["modified"], true);
  EXPECT_EQ(session.Cut(state)["imagesStale"], true);
}

TEST(ToggleBlankAll, TurnsEveryFrameAndTwiceRestores) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1, 2, 3}, {0, -2, 2}))
      .Command(kCommandPreviousFrame)
      .Command(kCommandBlankAll);
  const int once = session.State();
  session.Command(kCommandBlankAll);
  const int twice = session.State();
  session.Run();
  EXPECT_EQ(Numbers(session, once), (std::vector<int>{-1, 1, -3}));
  EXPECT_EQ(session.Cut(once)["currentFrame"], 1);
  EXPECT_EQ(Line(session, once), "A (2/3)");
  EXPECT_EQ(Numbers(session, twice), (std::vector<int>{0, -2, 2}));
}

TEST(ToggleBlankAll, WorksOnACutOfOneFrame) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1, 2}, {1})).Command(kCommandBlankAll);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Numbers(session, state), std::vector<int>{-2});
}

CutFile TwoLayers(int below, int above, int offset) {
  CutFile file;
  file.layers = {{.name = "A", .cells = {below}}, {.name = "B", .cells = {above}}};
  file.frames.push_back({.records = {{.layer = 0}, {.layer = 1, .x = offset}}});
  return file;
}

TEST(MergeDown, DrawsTheCellOntoTheLayerBelowAtItsOffset) {
  ScriptSession session;
  session.OpenCut("a.cut", TwoLayers(1, 3, 4)).Command(kCommandMergeDown);
  const int state = session.State();
  session.Run();
  const std::string row("\x11\x11\x33\x33", 4);
  EXPECT_EQ(Cells(session, state, 0), json::array({rules::Checksum(row + row + row)}));
  EXPECT_EQ(Cells(session, state, 1), Colors({3}));
  EXPECT_EQ(session.Cut(state)["modified"], true);
}

TEST(MergeDown, LeavesPixelsOfTheMaskBelow) {
  ScriptSession session;
  session.OpenCut("a.cut", TwoLayers(1, 3, 4))
      .Dialog(kMaskDialog, {{kMaskBlackCheck, "on"}})
      .Command(kCommandMask)
      .Command(kCommandMergeDown);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Cells(session, state, 0), Colors({1}));
}

TEST(MergeDown, OfTheBottomRecordDrawsNothing) {
  ScriptSession session;
  session.OpenCut("a.cut", TwoLayers(1, 3, 0)).Select(kLayerList, {0}).Command(kCommandMergeDown);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Cells(session, state, 0), Colors({1}));
  EXPECT_EQ(Cells(session, state, 1), Colors({3}));
}

TEST(Draft, WholeCellTurnsIntoUnderdrawing) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1, 2, 3, 8, 10, 4}, {0, 1, 2, 3, 4, 5}));
  for (int i = 0; i < 6; ++i) session.Command(kCommandToSketch).Command(kCommandPreviousFrame);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Cells(session, state), Colors({5, 6, 7, 5, 7, 0}));
}

TEST(Draft, OldUnderdrawingGoesBeforeTheInkTurns) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({5}, {0})).Command(kCommandToSketch);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Cells(session, state), Colors({0}));
}

TEST(Draft, MaskedInkStays) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1}, {0}))
      .Dialog(kMaskDialog, {{kMaskBlackCheck, "on"}})
      .Command(kCommandMask)
      .Command(kCommandToSketch);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Cells(session, state), Colors({1}));
}

TEST(EraseDraft, ClearsTheUnderdrawingAlone) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({5, 1}, {1, 0})).Command(kCommandEraseSketch);
  const int sketch = session.State();
  session.Command(kCommandPreviousFrame).Command(kCommandEraseSketch);
  const int ink = session.State();
  session.Run();
  EXPECT_EQ(Cells(session, sketch), Colors({0, 1}));
  EXPECT_EQ(Cells(session, ink), Colors({0, 1}));
}

TEST(EraseCell, ClearsTheWholeCellMarksImagesAndForgetsTheUndoArea) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1, 2}, {0})).Command(kCommandPlay).Command(kCommandEraseCell);
  const int state = session.State();
  const int view = session.View();
  session.Run();
  EXPECT_EQ(Cells(session, state), Colors({0, 2}));
  EXPECT_EQ(session.Cut(state)["modified"], true);
  EXPECT_EQ(session.Cut(state)["imagesStale"], true);
  EXPECT_EQ(session.Cut(state)["undoRect"], json::array({0, 0, 0, 0}));
  EXPECT_EQ(session.ViewAt(view).Count(0), 24);
}

// The 8 by 3 cell lies at (316, 238) in the window. The frame drawn here covers x 2 to 5 of the upper two rows.
ScriptSession& SelectPart(ScriptSession& session) {
  return session.Command(kToolAreaSelect).LeftDrag(318, 238, 322, 240);
}

std::string CellOf(const std::string& first, const std::string& second, const std::string& third) {
  std::string bytes;
  const std::string digits = first + second + third;
  for (size_t i = 0; i < digits.size(); i += 2) {
    bytes.push_back(static_cast<char>((digits[i] - '0') * 16 + (digits[i + 1] - '0')));
  }
  return rules::Checksum(bytes);
}

TEST(AreaOperation, ErasesTheSelectionWithTheAreaTool) {
  ScriptSession session;
  SelectPart(session.OpenCut("a.cut", CutFile::Showing({1}, {0}))).Command(kCommandEraseCell);
  const int state = session.State();
  const int view = session.View();
  session.Run();
  EXPECT_EQ(Cells(session, state), json::array({CellOf("11000011", "11000011", "11111111")}));
  EXPECT_EQ(session.Cut(state)["undoRect"], json::array({2, 0, 4, 2}));
  EXPECT_EQ(session.ViewAt(view).Count(0), 8);
}

TEST(AreaOperation, TurnsTheSelectionIntoUnderdrawing) {
  ScriptSession session;
  SelectPart(session.OpenCut("a.cut", CutFile::Showing({1}, {0}))).Command(kCommandToSketch);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Cells(session, state), json::array({CellOf("11555511", "11555511", "11111111")}));
  EXPECT_EQ(session.Cut(state)["undoRect"], json::array({2, 0, 4, 2}));
}

TEST(AreaOperation, ErasesTheUnderdrawingOfTheSelection) {
  ScriptSession session;
  SelectPart(session.OpenCut("a.cut", CutFile::Showing({5}, {0}))).Command(kCommandEraseSketch);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Cells(session, state), json::array({CellOf("55000055", "55000055", "55555555")}));
}

TEST(AreaOperation, IsMovedByThePositionOfTheLayer) {
  ScriptSession session;
  CutFile file = CutFile::Showing({1}, {0});
  file.frames[0].records[0].x = 2;
  file.frames[0].records[0].y = 1;
  SelectPart(session.OpenCut("a.cut", file)).Command(kCommandEraseCell);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Cells(session, state), json::array({CellOf("00001111", "11111111", "11111111")}));
  EXPECT_EQ(session.Cut(state)["undoRect"], json::array({0, -1, 4, 2}));
}

TEST(AreaOperation, ByAnotherToolIsOnTheWholeCell) {
  ScriptSession session;
  SelectPart(session.OpenCut("a.cut", CutFile::Showing({1}, {0}))).Command(kToolFreePen).Command(kCommandEraseCell);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Cells(session, state), Colors({0}));
}

TEST(AreaOperation, EndsTheSelection) {
  ScriptSession session;
  SelectPart(session.OpenCut("a.cut", CutFile::Showing({1}, {0}))).Command(kCommandEraseCell);
  const int state = session.State();
  session.Run();
  json selection = session.Cut(state)["selection"];
  EXPECT_TRUE(selection[0] >= selection[2] || selection[1] >= selection[3]) << selection;
}

TEST(AreaOperation, OnABlankRecordChangesNoCell) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1}, {-1}))
      .Command(kCommandEraseCell)
      .Command(kCommandToSketch)
      .Command(kCommandEraseSketch);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Cells(session, state), Colors({1}));
}

TEST(Undo, SwapsSoThatASecondOneRedoes) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1}, {0})).Command(kCommandEraseCell).Command(kCommandUndo);
  const int undone = session.State();
  const int view = session.View();
  session.Command(kCommandUndo);
  const int redone = session.State();
  session.Run();
  EXPECT_EQ(Cells(session, undone), Colors({1}));
  EXPECT_EQ(session.ViewAt(view).Count(1), 24);
  EXPECT_EQ(Cells(session, redone), Colors({0}));
}

TEST(Undo, WithNothingToUndoMarksNothing) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1}, {0})).Command(kCommandUndo);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Cells(session, state), Colors({1}));
  EXPECT_EQ(session.Cut(state)["modified"], false);
}

TEST(Undo, AfterMovingToAnotherCellChangesTheCellItBelongsTo) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1, 2}, {1, 0}))
      .Command(kCommandEraseCell)
      .Command(kCommandPreviousFrame)
      .Command(kCommandUndo);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Cells(session, state), Colors({1, 2}));
  EXPECT_EQ(session.Cut(state)["currentFrame"], 0);
}

TEST(Undo, OfASelectionPartRepaintsIt) {
  ScriptSession session;
  SelectPart(session.OpenCut("a.cut", CutFile::Showing({1}, {0}))).Command(kCommandEraseCell).Command(kCommandUndo);
  const int state = session.State();
  const int view = session.View();
  session.Run();
  EXPECT_EQ(Cells(session, state), Colors({1}));
  EXPECT_EQ(session.ViewAt(view).Count(1), 24);
}

TEST(Undo, MarksImages) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1}, {0}))
      .Command(kCommandEraseCell)
      .Command(kCommandOverwriteCut)
      .Command(kCommandPlay)
      .Command(kCommandUndo);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["modified"], true);
  EXPECT_EQ(session.Cut(state)["imagesStale"], true);
}

TEST(Copy, WithoutASelectionStoresNothing) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1, 0}, {1, 0}))
      .Command(kCommandCopy)
      .Command(kCommandPreviousFrame)
      .Command(kCommandPaste);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Cells(session, state), Colors({1, 0}));
  EXPECT_EQ(session.Cut(state)["floatingPaste"], false);
  EXPECT_EQ(session.StateAt(state)["frame"]["currentTool"], kToolFreePen);
}

TEST(Copy, PastesBackAtItsOldPlaceInTheSameCut) {
  ScriptSession session;
  SelectPart(session.OpenCut("a.cut", CutFile::Showing({1, 0}, {1, 0})))
      .Command(kCommandCopy)
      .Command(kCommandPreviousFrame)
      .Command(kCommandPaste);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Cells(session, state), json::array({PlainCell(1), CellOf("00111100", "00111100", "00000000")}));
}

TEST(Copy, LeavesTheCellUnmodified) {
  ScriptSession session;
  SelectPart(session.OpenCut("a.cut", CutFile::Showing({1}, {0}))).Command(kCommandCopy);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Cells(session, state), Colors({1}));
  EXPECT_EQ(session.Cut(state)["modified"], false);
}

TEST(Cut, StoresErasesAndMarksImages) {
  ScriptSession session;
  SelectPart(session.OpenCut("a.cut", CutFile::Showing({1}, {0}))).Command(kCommandCut);
  const int state = session.State();
  const int view = session.View();
  session.Run();
  EXPECT_EQ(Cells(session, state), json::array({CellOf("11000011", "11000011", "11111111")}));
  EXPECT_EQ(session.Cut(state)["undoRect"], json::array({2, 0, 4, 2}));
  EXPECT_EQ(session.Cut(state)["modified"], true);
  EXPECT_EQ(session.ViewAt(view).Count(0), 8);
}

TEST(Cut, LeavesMaskedPixels) {
  ScriptSession session;
  session.Dialog(kMaskDialog, {{kMaskBlackCheck, "on"}}).Command(kCommandMask);
  SelectPart(session.OpenCut("a.cut", CutFile::Showing({1}, {0}))).Command(kCommandCut);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Cells(session, state), Colors({1}));
}

TEST(Cut, IsLimitedToTheCell) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1}, {0}))
      .Command(kToolAreaSelect)
      .LeftDrag(314, 236, 319, 240)
      .Command(kCommandCut);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Cells(session, state), json::array({CellOf("00011111", "00011111", "11111111")}));
  EXPECT_EQ(session.Cut(state)["undoRect"], json::array({0, 0, 3, 2}));
}

TEST(Cut, OutsideTheCellChangesNothing) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1}, {0}))
      .Command(kToolAreaSelect)
      .LeftDrag(330, 236, 340, 240)
      .Command(kCommandCut);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Cells(session, state), Colors({1}));
  EXPECT_EQ(session.Cut(state)["modified"], false);
}

TEST(Cut, WithoutASelectionDoesNothing) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1}, {0})).Command(kCommandCut);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Cells(session, state), Colors({1}));
  EXPECT_EQ(session.Cut(state)["modified"], false);
}

TEST(Paste, FloatsWithTheAreaToolSelected) {
  ScriptSession session;
  SelectPart(session.OpenCut("a.cut", CutFile::Showing({1}, {0})))
      .Command(kCommandCopy)
      .Command(kToolFreePen)
      .Command(kCommandPaste);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["floatingPaste"], true);
  EXPECT_EQ(session.StateAt(state)["frame"]["currentTool"], kToolAreaSelect);
  EXPECT_EQ(session.Cut(state)["selection"], json::array({318, 238, 322, 240}));
}

struct ViewSwitch {
  int command;
  int flag;
};

class ViewSwitches : public testing::TestWithParam<ViewSwitch> {};

TEST_P(ViewSwitches, FlipTheirFlagAndOnlyTheCurrentCellOneNeedsANewStream) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1, 2}, {0})).Command(kCommandPlay).Command(GetParam().command);
  const int on = session.State();
  session.Command(GetParam().command);
  const int off = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(on)["viewFlags"], GetParam().flag);
  EXPECT_EQ(session.Cut(off)["viewFlags"], 0);
  EXPECT_EQ(session.Cut(on)["imagesStale"], GetParam().command == kCommandCurrentCellOnly);
  EXPECT_EQ(session.Cut(on)["timingStale"], false);
  EXPECT_EQ(session.Cut(on)["modified"], false);
}

INSTANTIATE_TEST_SUITE_P(Document, ViewSwitches,
                         testing::Values(ViewSwitch{kCommandShowPrevious, 1}, ViewSwitch{kCommandShowNext, 2},
                                         ViewSwitch{kCommandCurrentCellOnly, 4}, ViewSwitch{kCommandDimOthers, 8}));

TEST(ViewSwitch, PaleDisplayRepaints) {
  ScriptSession session;
  CutFile file = TwoLayers(1, 0, 0);
  session.OpenCut("a.cut", file).Command(kCommandDimOthers);
  const int view = session.View();
  session.Run();
  EXPECT_EQ(session.ViewAt(view).Count(16), 24);
}

TEST(ViewSwitch, CurrentCellOnlyRepaints) {
  ScriptSession session;
  session.OpenCut("a.cut", TwoLayers(1, 0, 0)).Command(kCommandCurrentCellOnly);
  const int view = session.View();
  session.Run();
  EXPECT_EQ(session.ViewAt(view).Count(0), 24);
}

TEST(LineEmphasis, LeavesThePixelsOfTheView) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({8}, {0}));
  const int before = session.State();
  session.Command(kCommandLineEmphasis);
  const int on = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(on)["lineEmphasis"], true);
  EXPECT_EQ(session.Cut(on)["view"], session.Cut(before)["view"]);
}

TEST(LineEmphasis, ShowsTheLineColoursPure) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({8, 9, 10}, {2, 1, 0})).Command(kCommandLineEmphasis);
  const int line = session.Screen();
  session.Command(kCommandPreviousFrame);
  const int dark = session.Screen();
  session.Command(kCommandPreviousFrame);
  const int light = session.Screen();
  session.Command(kCommandLineEmphasis);
  const int normal = session.Screen();
  session.Run();
  EXPECT_EQ(session.ScreenAt(line).At(320, 239), 0x0000FFU);
  EXPECT_EQ(session.ScreenAt(dark).At(320, 239), 0xFF0000U);
  EXPECT_EQ(session.ScreenAt(light).At(320, 239), 0x00FF00U);
  EXPECT_EQ(session.ScreenAt(normal).At(320, 239), 0xAAAAAAU);
}

TEST(SquarePen, MirrorsTheShape) {
  ScriptSession session;
  session.SetSettings("[setup]\r\nbrush=9, 0, 1, 0, 1, 0\r\n");
  session.Command(kCommandSquarePen);
  const int square = session.State();
  session.Command(kCommandSquarePen);
  const int round = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(square)["pen"]["shape"], 5);
  EXPECT_EQ(session.StateAt(square)["pen"]["penSign"], -1);
  EXPECT_EQ(session.StateAt(round)["pen"]["shape"], 9);
  EXPECT_EQ(session.StateAt(round)["pen"]["penSign"], 1);
}

TEST(SquarePen, KeepsTheSmallestShape) {
  ScriptSession session;
  session.Command(kCommandSquarePen);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["pen"]["shape"], 7);
  EXPECT_EQ(session.StateAt(state)["pen"]["penSign"], -1);
}

TEST(SnapGrid, IsTakenFromItsDialogWithoutACut) {
  ScriptSession session;
  session.Dialog(kGridDialog, {{kGridWidthEdit, "8"}, {kGridHeightEdit, "6"}}).Command(kCommandSnapGrid);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["pen"]["gridWidth"], 8);
  EXPECT_EQ(session.StateAt(state)["pen"]["gridHeight"], 6);
}

TEST(SnapGrid, CancelKeepsIt) {
  ScriptSession session;
  session.Dialog(kGridDialog, {{kGridWidthEdit, "8"}, {kGridHeightEdit, "6"}}, "cancel").Command(kCommandSnapGrid);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["pen"]["gridWidth"], 1);
}

TEST(SnapGrid, DialogStartsWithIt) {
  ScriptSession session;
  session.Dialog(kGridDialog, {{kGridWidthEdit, "8"}, {kGridHeightEdit, "6"}})
      .Command(kCommandSnapGrid)
      .Dialog(kGridDialog, {{kGridHeightEdit, "5"}})
      .Command(kCommandSnapGrid);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["pen"]["gridWidth"], 8);
  EXPECT_EQ(session.StateAt(state)["pen"]["gridHeight"], 5);
}

TEST(RandomDots, HaveTheWholeCellAsTheirArea) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({0}, {0}))
      .Dialog(kRandomDotsDialog, {{kDotGapEdit, "2"}})
      .Command(kCommandRandomDots);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["undoRect"], json::array({0, 0, 8, 3}));
}

TEST(RandomDots, HaveTheSelectionAsTheirAreaWhateverTheTool) {
  ScriptSession session;
  SelectPart(session.OpenCut("a.cut", CutFile::Showing({0}, {0})))
      .Dialog(kRandomDotsDialog, {})
      .Command(kCommandRandomDots);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["undoRect"], json::array({2, 0, 4, 2}));
}

TEST(RandomDots, OnABlankRecordShowNoDialog) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({0}, {-1})).Command(kCommandRandomDots).Command(kCommandDrawGrid);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["undoRect"], json::array({0, 0, 0, 0}));
}

TEST(DrawGrid, StartsWithTheSnapGridAndLeavesIt) {
  ScriptSession session;
  session.Dialog(kGridDialog, {{kGridWidthEdit, "4"}, {kGridHeightEdit, "2"}}).Command(kCommandSnapGrid);
  session.OpenCut("a.cut", CutFile::Showing({0}, {0}))
      .Dialog(kGridDialog, {{kGridHeightEdit, "1"}})
      .Command(kCommandDrawGrid);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["pen"]["gridWidth"], 4);
  EXPECT_EQ(session.StateAt(state)["pen"]["gridHeight"], 2);
  EXPECT_EQ(session.Cut(state)["undoRect"], json::array({0, 0, 8, 3}));
}

TEST(DrawGrid, CancelSavesNoUndo) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({0}, {0})).Dialog(kGridDialog, {}, "cancel").Command(kCommandDrawGrid);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["undoRect"], json::array({0, 0, 0, 0}));
  EXPECT_EQ(session.Cut(state)["modified"], false);
}

bool IsOn(const ScriptSession& session, int state) {
  json whole = session.StateAt(state);
  for (const json& id : whole["frame"]["checked"]) {
    if (id == kCommandTransparentColor) return true;
  }
  return false;
}

TEST(ClipTransparency, OffTakesAColourAndWritesIt) {
  ScriptSession session;
  session.Line("color 12AbF0").Command(kCommandTransparentColor);
  const int state = session.State();
  session.Run();
  EXPECT_TRUE(IsOn(session, state));
  EXPECT_EQ(session.Setting("OnClipTrans", "RGB"), "#12ABF0");
  EXPECT_EQ(session.Setting("OnClipTrans", "Flag"), "1");
}

TEST(ClipTransparency, OnGoesOffWithoutADialogAndKeepsTheColour) {
  ScriptSession session;
  session.Line("color 12ABF0").Command(kCommandTransparentColor).Command(kCommandTransparentColor);
  const int state = session.State();
  session.Run();
  EXPECT_FALSE(IsOn(session, state));
  EXPECT_EQ(session.Setting("OnClipTrans", "RGB"), "#12ABF0");
  EXPECT_EQ(session.Setting("OnClipTrans", "Flag"), "0");
}

TEST(ClipTransparency, CancelLeavesAllAsItWas) {
  ScriptSession session;
  session.Line("color cancel").Command(kCommandTransparentColor);
  const int state = session.State();
  session.Run();
  EXPECT_FALSE(IsOn(session, state));
  EXPECT_FALSE(session.Exists("settings.ini"));
}

TEST(ClipTransparency, ColourOfTheSettingsIsLeftOutOfAPaste) {
  ScriptSession session;
  session.SetSettings("[OnClipTrans]\r\nFlag=1\r\nRGB=#1020FF\r\n");
  std::vector<uint32_t> pixels(24, 0xFFFFFF);
  for (size_t i = 0; i < 24; i += 2) pixels[i] = 0x1020FF;
  rules::PutOnClipboard(session, rules::Picture{8, 3, pixels});
  session.OpenCut("a.cut", CutFile::Showing({0}, {0})).Command(kCommandPasteFromClipboard);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Cells(session, state), json::array({CellOf("04040404", "04040404", "04040404")}));
}

TEST(PlayCommand, CommitsThePanels) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1}, {0})).Panel(kCommentEdit, "typed").Command(kCommandPlay);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Frame(state)["comment"], "typed");
}

}  // namespace
