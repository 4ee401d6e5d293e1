#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "resources/ids.h"
#include "rules/clipboard_session.h"
#include "rules/rule_table.h"
#include "rules/script_session.h"
#include "rules/session_state.h"

namespace rules {
namespace {

using nlohmann::json;

// The cell number of the first record of each frame.
std::vector<int> Numbers(ScriptSession& session, int state = kNow) {
  return OfEachFrame(session, "/records/0/cell", state);
}

json Colors(const std::vector<int>& colors) {
  json cells = json::array();
  for (const int color : colors) cells.push_back(PlainCell(color));
  return cells;
}

json Cells(ScriptSession& session, size_t layer = 0, int state = kNow) {
  json cut = session.Cut(state);
  return cut["layers"][layer]["cells"];
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

class CellCommand : public SessionTest, public testing::WithParamInterface<CellCase> {};

TEST_P(CellCommand, ChangesTheCellsAndTheNumbersOfEveryFrame) {
  const CellCase& test = GetParam();
  session.OpenCut("a.cut", CutFile::Showing(test.cells, test.shown)).Command(test.command);
  EXPECT_TRUE(Holds(session, "cut/frames/*/records/0/cell", test.numbersAfter, "cut/layers/0/cells",
                    Colors(test.cellsAfter), "panels/layers/lines/0", test.lineAfter));
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

class RefusedCellCommand : public SessionTest, public testing::WithParamInterface<RefusedCase> {};

TEST_P(RefusedCellCommand, LeavesTheCells) {
  const RefusedCase& test = GetParam();
  session.OpenCut("a.cut", CutFile::Showing(test.cells, {test.shown})).Command(test.command);
  EXPECT_TRUE(Holds(session, "cut/layers/0/cells", Colors(test.cells), "cut/modified", false));
}

INSTANTIATE_TEST_SUITE_P(Document, RefusedCellCommand,
                         testing::Values(RefusedCase{"DeleteOfTheOnlyCell", {1}, 0, kCommandDeleteCell},
                                         RefusedCase{"DeleteOnABlankRecord", {1, 2}, -1, kCommandDeleteCell},
                                         RefusedCase{"AddOnABlankRecord", {1, 2}, -1, kCommandAddCell},
                                         RefusedCase{"InsertOnABlankRecord", {1, 2}, -1, kCommandInsertCell}),
                         [](const testing::TestParamInfo<RefusedCase>& test) { return std::string(test.param.name); });

const Rules<SessionTest, "DeleteCell"> kDeleteCellRules = {
    {"LeavesTheRememberedNumberOfABlankRecordStale",
     Do().OpenCut("a.cut", CutFile::Showing({1, 2, 3}, {-3, 0})).Command(kCommandDeleteCell), Has("numbers", "-3 0")},
    {"MarksImagesRepaintsAndRewritesTheLine",
     Do().OpenCut("a.cut", CutFile::Showing({1, 2}, {0})).Commands({kCommandPlay, kCommandDeleteCell}),
     Has("cut/modified", true, "cut/imagesStale", true, "panels/layers/lines/0", "A (1/1)", "pixels/2", 24)},
    {"TakesItsUndoWithIt", Do().OpenCut("a.cut", CutFile::Showing({1, 2}, {0})),
     Do().Commands({kCommandEraseCell, kCommandDeleteCell, kCommandUndo}), Has("cells", Colors({2}))},
};

TEST(AddCell, LeavesOtherLayersAlone) {
  ScriptSession session;
  CutFile file = CutFile::Showing({1, 2, 3}, {2, 0});
  file.layers.push_back({.name = "B", .cells = {4, 5}});
  for (auto& frame : file.frames) frame.records.push_back({.layer = 1, .cell = 1});
  session.OpenCut("a.cut", file).Select(kLayerList, {0}).Command(kCommandAddCell);
  const int state = session.State();
  EXPECT_EQ(Numbers(session, state), (std::vector<int>{3, 1}));
  EXPECT_EQ(session.FrameAt(0, state)["records"][1]["cell"], 1);
  EXPECT_EQ(Cells(session, 1, state), Colors({4, 5}));
}

class StepAtItsEnd : public SessionTest, public testing::WithParamInterface<std::pair<int, int>> {};

TEST_P(StepAtItsEnd, MarksNothing) {
  session.OpenCut("a.cut", CutFile::Showing({1, 2, 3}, {GetParam().second})).Command(GetParam().first);
  EXPECT_EQ(Numbers(session), std::vector<int>{GetParam().second});
  EXPECT_EQ(session.Cut()["modified"], false);
}

INSTANTIATE_TEST_SUITE_P(Document, StepAtItsEnd,
                         testing::Values(std::pair{kCommandPreviousCell, 0}, std::pair{kCommandNextCell, 2},
                                         std::pair{kCommandPreviousCell, -2}, std::pair{kCommandNextCell, -2},
                                         std::pair{kCommandFirstCell, -2}, std::pair{kCommandLastCell, -2}));

const Rules<SessionTest, "StepCell"> kStepCellRules = {
    {"GoesBackAndForwardWithinTheLayer",
     Do().OpenCut("a.cut", CutFile::Showing({1, 2, 3}, {0, 1})).Command(kCommandPreviousCell),
     Has("numbers", "0 0", "panels/layers/lines/0", "A (1/3)"), Do().Commands({kCommandNextCell, kCommandNextCell}),
     Has("numbers", "0 2", "panels/layers/lines/0", "A (3/3)")},
    {"ToTheFirstAndTheLast", Do().OpenCut("a.cut", CutFile::Showing({1, 2, 3, 4}, {1})).Command(kCommandLastCell),
     Has("numbers", "3"), Do().Command(kCommandFirstCell), Has("numbers", "0")},
    {"RepaintsAndMarksImages",
     Do().OpenCut("a.cut", CutFile::Showing({1, 3}, {0})).Commands({kCommandPlay, kCommandNextCell}),
     Has("cut/modified", true, "cut/imagesStale", true, "pixels/3", 24)},
    {"ThatFailsLeavesTheScreenOverlayAlone", Do().NewCut().SelectArea(306, 230, 316, 236).Command(kCommandPreviousCell),
     Has("cut/selection", "306 230 316 236")},
};

const Rules<SessionTest, "ToggleBlank"> kToggleBlankRules = {
    {"KeepsTheNumberInItsComplement",
     Do().OpenCut("a.cut", CutFile::Showing({1, 2, 3}, {2, 2})).Command(kCommandBlankCell),
     Has("numbers", "2 -3", "panels/layers/lines/0", "A (0/3)", "pixels/0", 24), Do().Command(kCommandBlankCell),
     Has("numbers", "2 2", "panels/layers/lines/0", "A (3/3)")},
    {"MarksImages", Do().OpenCut("a.cut", CutFile::Showing({1}, {0})).Commands({kCommandPlay, kCommandBlankCell}),
     Has("cut/modified", true, "cut/imagesStale", true)},
};

const Rules<SessionTest, "ToggleBlankAll"> kToggleBlankAllRules = {
    {"TurnsEveryFrameAndTwiceRestores",
     Do().OpenCut("a.cut", CutFile::Showing({1, 2, 3}, {0, -2, 2})).Commands({kCommandPreviousFrame, kCommandBlankAll}),
     Has("numbers", "-1 1 -3", "cut/currentFrame", 1, "panels/layers/lines/0", "A (2/3)"),
     Do().Command(kCommandBlankAll), Has("numbers", "0 -2 2")},
    {"WorksOnACutOfOneFrame", Do().OpenCut("a.cut", CutFile::Showing({1, 2}, {1})).Command(kCommandBlankAll),
     Has("numbers", "-2")},
};

CutFile TwoLayers(int below, int above, int offset) {
  CutFile file;
  file.layers = {{.name = "A", .cells = {below}}, {.name = "B", .cells = {above}}};
  file.frames.push_back({.records = {{.layer = 0}, {.layer = 1, .x = offset}}});
  return file;
}

using MergeDown = SessionTest;

TEST_F(MergeDown, DrawsTheCellOntoTheLayerBelowAtItsOffset) {
  session.OpenCut("a.cut", TwoLayers(1, 3, 4)).Command(kCommandMergeDown);
  const int state = session.State();
  session.Run();
  const std::string row("\x11\x11\x33\x33", 4);
  EXPECT_EQ(Cells(session, 0, state), json::array({Checksum(row + row + row)}));
  EXPECT_EQ(Cells(session, 1, state), Colors({3}));
  EXPECT_EQ(session.Cut(state)["modified"], true);
}

const Rules<SessionTest, "MergeDown"> kMergeDownRules = {
    {"LeavesPixelsOfTheMaskBelow",
     Do().OpenCut("a.cut", TwoLayers(1, 3, 4)).Dialog(kMaskDialog, {{kMaskBlackCheck, "on"}}),
     Do().Commands({kCommandMask, kCommandMergeDown}), Has("cells", Colors({1}))},
    {"OfTheBottomRecordDrawsNothing",
     Do().OpenCut("a.cut", TwoLayers(1, 3, 0)).Select(kLayerList, {0}).Command(kCommandMergeDown),
     Has("cells", Colors({1}), "cut/layers/1/cells", Colors({3}))},
};

using Draft = SessionTest;

TEST_F(Draft, WholeCellTurnsIntoUnderdrawing) {
  session.OpenCut("a.cut", CutFile::Showing({1, 2, 3, 8, 10, 4}, {0, 1, 2, 3, 4, 5}));
  for (int i = 0; i < 6; ++i) session.Command(kCommandToSketch).Command(kCommandPreviousFrame);
  const int state = session.State();
  EXPECT_EQ(Cells(session, 0, state), Colors({5, 6, 7, 5, 7, 0}));
}

const Rules<SessionTest, "Draft"> kDraftRules = {
    {"OldUnderdrawingGoesBeforeTheInkTurns",
     Do().OpenCut("a.cut", CutFile::Showing({5}, {0})).Command(kCommandToSketch), Has("cells", Colors({0}))},
    {"MaskedInkStays", Do().OpenCut("a.cut", CutFile::Showing({1}, {0})).Dialog(kMaskDialog, {{kMaskBlackCheck, "on"}}),
     Do().Commands({kCommandMask, kCommandToSketch}), Has("cells", Colors({1}))},
};

const Rules<SessionTest, "EraseDraft"> kEraseDraftRules = {
    {"ClearsTheUnderdrawingAlone", Do().OpenCut("a.cut", CutFile::Showing({5, 1}, {1, 0})).Command(kCommandEraseSketch),
     Has("cells", Colors({0, 1})), Do().Commands({kCommandPreviousFrame, kCommandEraseSketch}),
     Has("cells", Colors({0, 1}))},
};

const Rules<SessionTest, "EraseCell"> kEraseCellRules = {
    {"ClearsTheWholeCellMarksImagesAndForgetsTheUndoArea",
     Do().OpenCut("a.cut", CutFile::Showing({1, 2}, {0})).Commands({kCommandPlay, kCommandEraseCell}),
     Has("cells", Colors({0, 2}), "cut/modified", true, "cut/imagesStale", true, "cut/undoRect", "0 0 0 0", "pixels/0",
         24)},
};

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
  return Checksum(bytes);
}

using AreaOperation = SessionTest;

TEST_F(AreaOperation, EndsTheSelection) {
  SelectPart(session.OpenCut("a.cut", CutFile::Showing({1}, {0}))).Command(kCommandEraseCell);
  json selection = session.Cut()["selection"];
  EXPECT_TRUE(selection[0] >= selection[2] || selection[1] >= selection[3]) << selection;
}

const Rules<SessionTest, "AreaOperation"> kAreaOperationRules = {
    {"IsMovedByThePositionOfTheLayer",
     SelectPart(Do().OpenCut("a.cut", CutFile{.layers = {{.name = "A", .cells = {1}}},
                                              .frames = {{.records = {{.cell = 0, .x = 2, .y = 1}}}}})),
     Do().Command(kCommandEraseCell),
     Has("cells", json::array({CellOf("00001111", "11111111", "11111111")}), "cut/undoRect", "0 -1 4 2")},
    {"TurnsTheSelectionIntoUnderdrawing",
     SelectPart(Do().OpenCut("a.cut", CutFile::Showing({1}, {0}))).Command(kCommandToSketch),
     Has("cells", json::array({CellOf("11555511", "11555511", "11111111")}), "cut/undoRect", "2 0 4 2")},
    {"ErasesTheUnderdrawingOfTheSelection",
     SelectPart(Do().OpenCut("a.cut", CutFile::Showing({5}, {0}))).Command(kCommandEraseSketch),
     Has("cells", json::array({CellOf("55000055", "55000055", "55555555")}))},
    {"ErasesTheSelectionWithTheAreaTool",
     Do().OpenCut("a.cut", CutFile::Showing({1}, {0})).SelectArea(318, 238, 322, 240).Command(kCommandEraseCell),
     Has("cells", json::array({CellOf("11000011", "11000011", "11111111")}), "cut/undoRect", "2 0 4 2", "pixels/0", 8)},
    {"ByAnotherToolIsOnTheWholeCell",
     Do().OpenCut("a.cut", CutFile::Showing({1}, {0})).SelectArea(318, 238, 322, 240).Command(kToolFreePen),
     Do().Command(kCommandEraseCell), Has("cells", Colors({0}))},
    {"OnABlankRecordChangesNoCell", Do().OpenCut("a.cut", CutFile::Showing({1}, {-1})),
     Do().Commands({kCommandEraseCell, kCommandToSketch, kCommandEraseSketch}), Has("cells", Colors({1}))},
};

const Rules<SessionTest, "Undo"> kUndoRules = {
    {"SwapsSoThatASecondOneRedoes",
     Do().OpenCut("a.cut", CutFile::Showing({1}, {0})).Commands({kCommandEraseCell, kCommandUndo}),
     Has("cells", Colors({1}), "pixels/1", 24), Do().Command(kCommandUndo), Has("cells", Colors({0}))},
    {"WithNothingToUndoMarksNothing", Do().OpenCut("a.cut", CutFile::Showing({1}, {0})).Command(kCommandUndo),
     Has("cells", Colors({1}), "cut/modified", false)},
    {"AfterMovingToAnotherCellChangesTheCellItBelongsTo", Do().OpenCut("a.cut", CutFile::Showing({1, 2}, {1, 0})),
     Do().Commands({kCommandEraseCell, kCommandPreviousFrame, kCommandUndo}),
     Has("cells", Colors({1, 2}), "cut/currentFrame", 0)},
    {"OfASelectionPartRepaintsIt", Do().OpenCut("a.cut", CutFile::Showing({1}, {0})).SelectArea(318, 238, 322, 240),
     Do().Commands({kCommandEraseCell, kCommandUndo}), Has("cells", Colors({1}), "pixels/1", 24)},
    {"MarksImages", Do().OpenCut("a.cut", CutFile::Showing({1}, {0})),
     Do().Commands({kCommandEraseCell, kCommandOverwriteCut, kCommandPlay, kCommandUndo}),
     Has("cut/modified", true, "cut/imagesStale", true)},
};

const Rules<SessionTest, "Copy"> kCopyRules = {
    {"WithoutASelectionStoresNothing", Do().OpenCut("a.cut", CutFile::Showing({1, 0}, {1, 0})),
     Do().Commands({kCommandCopy, kCommandPreviousFrame, kCommandPaste}),
     Has("cells", Colors({1, 0}), "cut/floatingPaste", false, "frame/currentTool", kToolFreePen)},
    {"PastesBackAtItsOldPlaceInTheSameCut",
     Do().OpenCut("a.cut", CutFile::Showing({1, 0}, {1, 0})).SelectArea(318, 238, 322, 240),
     Do().Commands({kCommandCopy, kCommandPreviousFrame, kCommandPaste}),
     Has("cells", json::array({PlainCell(1), CellOf("00111100", "00111100", "00000000")}))},
    {"LeavesTheCellUnmodified",
     Do().OpenCut("a.cut", CutFile::Showing({1}, {0})).SelectArea(318, 238, 322, 240).Command(kCommandCopy),
     Has("cells", Colors({1}), "cut/modified", false)},
};

using Cut = SessionTest;

const Rules<SessionTest, "Cut"> kCutRules = {
    {"LeavesMaskedPixels", Do().Dialog(kMaskDialog, {{kMaskBlackCheck, "on"}}).Command(kCommandMask),
     SelectPart(Do().OpenCut("a.cut", CutFile::Showing({1}, {0}))).Command(kCommandCut), Has("cells", Colors({1}))},
    {"IsLimitedToTheCell",
     Do().OpenCut("a.cut", CutFile::Showing({1}, {0})).SelectArea(314, 236, 319, 240).Command(kCommandCut),
     Has("cells", json::array({CellOf("00011111", "00011111", "11111111")}), "cut/undoRect", "0 0 3 2")},
    {"StoresErasesAndMarksImages",
     Do().OpenCut("a.cut", CutFile::Showing({1}, {0})).SelectArea(318, 238, 322, 240).Command(kCommandCut),
     Has("cells", json::array({CellOf("11000011", "11000011", "11111111")}), "cut/undoRect", "2 0 4 2", "cut/modified",
         true, "pixels/0", 8)},
    {"OutsideTheCellChangesNothing",
     Do().OpenCut("a.cut", CutFile::Showing({1}, {0})).SelectArea(330, 236, 340, 240).Command(kCommandCut),
     Has("cells", Colors({1}), "cut/modified", false)},
    {"WithoutASelectionDoesNothing", Do().OpenCut("a.cut", CutFile::Showing({1}, {0})).Command(kCommandCut),
     Has("cells", Colors({1}), "cut/modified", false)},
};

const Rules<SessionTest, "Paste"> kPasteRules = {
    {"FloatsWithTheAreaToolSelected", SelectPart(Do().OpenCut("a.cut", CutFile::Showing({1}, {0}))),
     Do().Commands({kCommandCopy, kToolFreePen, kCommandPaste}),
     Has("cut/floatingPaste", true, "frame/currentTool", kToolAreaSelect, "cut/selection", "318 238 322 240")},
};

struct ViewSwitch {
  int command;
  int flag;
};

class ViewSwitches : public SessionTest, public testing::WithParamInterface<ViewSwitch> {};

TEST_P(ViewSwitches, FlipTheirFlagAndOnlyTheCurrentCellOneNeedsANewStream) {
  session.OpenCut("a.cut", CutFile::Showing({1, 2}, {0})).Command(kCommandPlay).Command(GetParam().command);
  const int on = session.State();
  session.Command(GetParam().command);
  const int off = session.State();
  EXPECT_EQ(session.Cut(on)["viewFlags"], GetParam().flag);
  EXPECT_EQ(session.Cut(off)["viewFlags"], 0);
  EXPECT_EQ(session.Cut(on)["imagesStale"], GetParam().command == kCommandCurrentCellOnly);
  EXPECT_EQ(session.Cut(on)["timingStale"], false);
  EXPECT_EQ(session.Cut(on)["modified"], false);
}

INSTANTIATE_TEST_SUITE_P(Document, ViewSwitches,
                         testing::Values(ViewSwitch{kCommandShowPrevious, 1}, ViewSwitch{kCommandShowNext, 2},
                                         ViewSwitch{kCommandCurrentCellOnly, 4}, ViewSwitch{kCommandDimOthers, 8}));

const Rules<SessionTest, "ViewSwitch"> kViewSwitchRules = {
    {"PaleDisplayRepaints", Do().OpenCut("a.cut", TwoLayers(1, 0, 0)).Command(kCommandDimOthers), Has("pixels/16", 24)},
    {"CurrentCellOnlyRepaints", Do().OpenCut("a.cut", TwoLayers(1, 0, 0)).Command(kCommandCurrentCellOnly),
     Has("pixels/0", 24)},
};

const Rules<SessionTest, "SnapGrid"> kSnapGridRules = {
    {"IsTakenFromItsDialogWithoutACut",
     Do().Dialog(kGridDialog, {{kGridWidthEdit, "8"}, {kGridHeightEdit, "6"}}).Command(kCommandSnapGrid),
     Has("pen/gridWidth,gridHeight", "8 6")},
    {"CancelKeepsIt",
     Do().Dialog(kGridDialog, {{kGridWidthEdit, "8"}, {kGridHeightEdit, "6"}}, "cancel").Command(kCommandSnapGrid),
     Has("pen/gridWidth", 1)},
    {"DialogStartsWithIt",
     Do().Dialog(kGridDialog, {{kGridWidthEdit, "8"}, {kGridHeightEdit, "6"}}).Command(kCommandSnapGrid),
     Do().Dialog(kGridDialog, {{kGridHeightEdit, "5"}}).Command(kCommandSnapGrid),
     Has("pen/gridWidth,gridHeight", "8 5")},
};

const Rules<SessionTest, "RandomDots"> kRandomDotsRules = {
    {"HaveTheWholeCellAsTheirArea",
     Do().OpenCut("a.cut", CutFile::Showing({0}, {0})).Dialog(kRandomDotsDialog, {{kDotGapEdit, "2"}}),
     Do().Command(kCommandRandomDots), Has("cut/undoRect", "0 0 8 3")},
    {"HaveTheSelectionAsTheirAreaWhateverTheTool",
     Do().OpenCut("a.cut", CutFile::Showing({0}, {0})).SelectArea(318, 238, 322, 240).Dialog(kRandomDotsDialog, {}),
     Do().Command(kCommandRandomDots), Has("cut/undoRect", "2 0 4 2")},
    {"OnABlankRecordShowNoDialog",
     Do().OpenCut("a.cut", CutFile::Showing({0}, {-1})).Commands({kCommandRandomDots, kCommandDrawGrid}),
     Has("cut/undoRect", "0 0 0 0")},
};

const Rules<SessionTest, "DrawGrid"> kDrawGridRules = {
    {"StartsWithTheSnapGridAndLeavesIt",
     Do().Dialog(kGridDialog, {{kGridWidthEdit, "4"}, {kGridHeightEdit, "2"}}).Command(kCommandSnapGrid),
     Do().OpenCut("a.cut", CutFile::Showing({0}, {0})).Dialog(kGridDialog, {{kGridHeightEdit, "1"}}),
     Do().Command(kCommandDrawGrid), Has("pen/gridWidth,gridHeight", "4 2", "cut/undoRect", "0 0 8 3")},
    {"CancelSavesNoUndo",
     Do().OpenCut("a.cut", CutFile::Showing({0}, {0})).Dialog(kGridDialog, {}, "cancel").Command(kCommandDrawGrid),
     Has("cut/undoRect", "0 0 0 0", "cut/modified", false)},
};

bool IsOn(ScriptSession& session, int state = kNow) {
  json whole = session.StateAt(state);
  for (const json& id : whole["frame"]["checked"]) {
    if (id == kCommandTransparentColor) return true;
  }
  return false;
}

using ClipTransparency = SessionTest;

TEST_F(ClipTransparency, OffTakesAColourAndWritesIt) {
  session.Line("color 12AbF0").Command(kCommandTransparentColor);
  EXPECT_TRUE(IsOn(session));
  EXPECT_EQ(session.Setting("OnClipTrans", "RGB"), "#12ABF0");
  EXPECT_EQ(session.Setting("OnClipTrans", "Flag"), "1");
}

TEST_F(ClipTransparency, OnGoesOffWithoutADialogAndKeepsTheColour) {
  session.Line("color 12ABF0").Command(kCommandTransparentColor).Command(kCommandTransparentColor);
  EXPECT_FALSE(IsOn(session));
  EXPECT_EQ(session.Setting("OnClipTrans", "RGB"), "#12ABF0");
  EXPECT_EQ(session.Setting("OnClipTrans", "Flag"), "0");
}

TEST_F(ClipTransparency, CancelLeavesAllAsItWas) {
  session.Line("color cancel").Command(kCommandTransparentColor);
  EXPECT_FALSE(IsOn(session));
  EXPECT_FALSE(session.Exists("settings.ini"));
}

TEST_F(ClipTransparency, ColourOfTheSettingsIsLeftOutOfAPaste) {
  session.SetSettings("[OnClipTrans]\r\nFlag=1\r\nRGB=#1020FF\r\n");
  std::vector<uint32_t> pixels(24, 0xFFFFFF);
  for (size_t i = 0; i < 24; i += 2) pixels[i] = 0x1020FF;
  PutOnClipboard(session, Picture{8, 3, pixels});
  session.OpenCut("a.cut", CutFile::Showing({0}, {0})).Command(kCommandPasteFromClipboard);
  const int state = session.State();
  EXPECT_EQ(Cells(session, 0, state), json::array({CellOf("04040404", "04040404", "04040404")}));
}

const Rules<SessionTest, "PlayCommand"> kPlayCommandRules = {
    {"CommitsThePanels",
     Do().OpenCut("a.cut", CutFile::Showing({1}, {0})).Panel(kCommentEdit, "typed").Command(kCommandPlay),
     Has("cut/frame/comment", "typed")},
};

}  // namespace
}  // namespace rules
