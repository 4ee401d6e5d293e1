#include "shell/shell_fixture.h"

#include "cutwindow/clipboard.h"

namespace sorvel::testshell {
namespace {

class DocumentCommands : public ShellTest {
 protected:
  // A selection, in cut coordinates.
  void Select(int32_t left, int32_t top, int32_t right, int32_t bottom) {
    Point corners[2] = {{left, top}, {right, bottom}};
    Cut()->CutToWindow(corners, 2);
    Cut()->selection = {corners[0].x, corners[0].y, corners[1].x, corners[1].y};
  }
};

// Without a cut.

TEST_F(DocumentCommands, WithoutACutACommandOnACutIsHandledAndDoesNothing) {
  for (const int32_t id : {40004, 40005, 40007, 40008, 40014, 40015, 40016, 40017, 40022, 40066, 40068, 40069, 40076,
                           40077, 40080, 40093, 40094, 40101, 40104, 40105, 40106, 40112, 40126, 40127, 40133}) {
    EXPECT_EQ(frame->OnCommand(0, id, nullptr), 0) << id;
  }
  EXPECT_EQ(frame->ActiveCut(), nullptr);
}

TEST_F(DocumentCommands, CommandsThatNobodyOwnsAreNotHandled) {
  for (const int32_t id : {40058, 40131, 40135, 58000}) EXPECT_EQ(frame->OnCommand(0, id, nullptr), 1) << id;
  MakeCut();
  for (const int32_t id : {40058, 40131, 40135, 58000}) EXPECT_EQ(frame->OnCommand(0, id, nullptr), 1) << id;
}

// Cut properties, 40077, and frame size, 40112.

TEST_F(DocumentCommands, CutPropertiesChangeEverythingButTheFrameSize) {
  MakeCut();
  ClearMarks();
  Command(40077, 107, {{1002, "64"}, {1001, "48"}, {1041, "30"}, {1037, "me"}, {1056, "on"}});
  EXPECT_EQ(Cut()->width, 64);
  EXPECT_EQ(Cut()->height, 48);
  EXPECT_EQ(Cut()->frameWidth, 40);
  EXPECT_EQ(Cut()->frameHeight, 30);
  EXPECT_EQ(Cut()->fps, 30);
  EXPECT_STREQ(Cut()->credit, "me");
  EXPECT_EQ(Cut()->Antialias(), 1);
  EXPECT_EQ(Cut()->view.width, 64);
  EXPECT_EQ(Cut()->view.height, 48);
  EXPECT_EQ(Marks(), "mit");
  EXPECT_TRUE(ViewIsCurrent());
}

TEST_F(DocumentCommands, CutPropertiesShowTheCut) {
  MakeCut();
  Cut()->SetAntialias(2);
  Command(40077, 107, {});
  EXPECT_EQ(Cut()->width, 40);
  EXPECT_EQ(Cut()->height, 30);
  EXPECT_EQ(Cut()->fps, 24);
  EXPECT_EQ(Cut()->Antialias(), 2);
}

TEST_F(DocumentCommands, CancelledCutPropertiesChangeNothing) {
  MakeCut();
  ClearMarks();
  CancelledCommand(40077, 107, {{1002, "64"}});
  EXPECT_EQ(Cut()->width, 40);
  EXPECT_EQ(Marks(), "");
}

TEST_F(DocumentCommands, FrameSizeMarksTimingWithoutARepaint) {
  MakeCut();
  ClearMarks();
  SpoilView();
  Command(40112, 123, {{1002, "32"}, {1001, "24"}});
  EXPECT_EQ(Cut()->frameWidth, 32);
  EXPECT_EQ(Cut()->frameHeight, 24);
  EXPECT_EQ(Cut()->width, 40);
  EXPECT_EQ(Marks(), "mt");
  EXPECT_FALSE(WasRepainted());
  ClearMarks();
  CancelledCommand(40112, 123, {{1002, "1"}});
  EXPECT_EQ(Cut()->frameWidth, 32);
  EXPECT_EQ(Marks(), "");
}

// Frames.

TEST_F(DocumentCommands, AddFrameCommitsCopiesAndRefreshes) {
  MakeCut();
  Type(frame->frameTimeEdit, "7");
  Command(40004);
  EXPECT_EQ(Cut()->frames.Count(), 2);
  EXPECT_EQ(Cut()->currentFrame, 1);
  EXPECT_EQ(Cut()->frames.At(0)->time, 7);
  EXPECT_EQ(CurrentFrame()->time, 7);
  EXPECT_EQ(testdoc::Stacking(CurrentFrame()), "A");
  EXPECT_EQ(TextOf(frame->keyFrameCheck), "2(8f)");
  EXPECT_EQ(Marks(), "mit");
}

TEST_F(DocumentCommands, AddFrameHalvesTheTimeBehindAKeyFrame) {
  MakeCut();
  CurrentFrame()->SetKey(true);
  CurrentFrame()->time = 5;
  frame->RefreshPanels(Cut());
  Command(40004);
  EXPECT_EQ(Cut()->frames.At(0)->time, 5);
  EXPECT_EQ(CurrentFrame()->time, 2);
  EXPECT_FALSE(CurrentFrame()->IsKey());
}

TEST_F(DocumentCommands, AddFrameKeepsATimeThatCannotBeHalved) {
  MakeCut();
  CurrentFrame()->SetKey(true);
  CurrentFrame()->time = 1;
  frame->RefreshPanels(Cut());
  Command(40004);
  EXPECT_EQ(CurrentFrame()->time, 1);
  Command(40007);
  CurrentFrame()->time = -6;
  Command(40004);
  EXPECT_EQ(CurrentFrame()->time, -6);
}

TEST_F(DocumentCommands, InsertFrameCopiesTheFrameBehindIt) {
  MakeCut();
  Type(frame->frameTimeEdit, "7");
  ClearMarks();
  Command(40005);
  EXPECT_EQ(Cut()->frames.Count(), 2);
  EXPECT_EQ(Cut()->currentFrame, 0);
  EXPECT_EQ(CurrentFrame()->time, 7);
  EXPECT_EQ(testdoc::Stacking(CurrentFrame()), "A");
  EXPECT_EQ(TextOf(frame->keyFrameCheck), "1(1f)");
  // The insertion itself marks nothing; the committed time did.
  EXPECT_EQ(Marks(), "mt");
  ClearMarks();
  Command(40005);
  EXPECT_EQ(Marks(), "");
}

TEST_F(DocumentCommands, DeleteFrameDropsWhatWasTypedAndRepaints) {
  MakeCut();
  MakeFrames(3);
  Type(frame->frameTimeEdit, "9");
  SpoilView();
  Command(40006);
  EXPECT_EQ(Cut()->frames.Count(), 2);
  EXPECT_EQ(CurrentFrame()->time, 1);
  EXPECT_EQ(TextOf(frame->frameTimeEdit), "1");
  EXPECT_TRUE(WasRepainted());
}

TEST_F(DocumentCommands, DeleteFrameOfTheOnlyFrameDoesNothing) {
  MakeCut();
  Type(frame->frameTimeEdit, "9");
  SpoilView();
  Command(40006);
  EXPECT_EQ(Cut()->frames.Count(), 1);
  EXPECT_EQ(TextOf(frame->frameTimeEdit), "9");
  EXPECT_FALSE(WasRepainted());
}

TEST_F(DocumentCommands, StepsCommitMoveRepaintAndRefresh) {
  MakeCut();
  MakeFrames(3);
  Type(frame->commentEdit, "here");
  SpoilView();
  Command(40007);
  EXPECT_EQ(Cut()->currentFrame, 1);
  EXPECT_STREQ(Cut()->frames.At(2)->comment, "here");
  EXPECT_EQ(TextOf(frame->commentEdit), "");
  EXPECT_TRUE(WasRepainted());
  Command(40008);
  EXPECT_EQ(Cut()->currentFrame, 2);
  EXPECT_EQ(TextOf(frame->commentEdit), "here");
}

TEST_F(DocumentCommands, AStepThatCannotMoveStillCommitsRepaintsAndRefreshes) {
  MakeCut();
  Type(frame->frameTimeEdit, "12345");
  SpoilView();
  Command(40007);
  EXPECT_EQ(CurrentFrame()->time, 1234);
  EXPECT_EQ(TextOf(frame->frameTimeEdit), "1234");
  EXPECT_TRUE(WasRepainted());
  Type(frame->frameTimeEdit, "3x");
  SpoilView();
  Command(40008);
  EXPECT_EQ(TextOf(frame->frameTimeEdit), "3");
  EXPECT_TRUE(WasRepainted());
}

TEST_F(DocumentCommands, FirstAndLastFrame) {
  MakeCut();
  MakeFrames(3);
  SpoilView();
  Command(40041);
  EXPECT_EQ(Cut()->currentFrame, 0);
  EXPECT_TRUE(WasRepainted());
  EXPECT_EQ(TextOf(frame->keyFrameCheck), "1(1f)");
  Command(40042);
  EXPECT_EQ(Cut()->currentFrame, 2);
}

TEST_F(DocumentCommands, FirstFrameOfACutOfOneFrameCommitsOnly) {
  MakeCut();
  Type(frame->frameTimeEdit, "3x");
  SpoilView();
  Command(40041);
  EXPECT_EQ(CurrentFrame()->time, 3);
  EXPECT_EQ(TextOf(frame->frameTimeEdit), "3x");
  EXPECT_FALSE(WasRepainted());
}

TEST_F(DocumentCommands, KeyFrameStepsMoveAndRefresh) {
  MakeCut();
  MakeFrames(4);
  Cut()->frames.At(1)->SetKey(true);
  SpoilView();
  Command(40105);
  EXPECT_EQ(Cut()->currentFrame, 1);
  EXPECT_TRUE(platform::IsChecked(frame->keyFrameCheck));
  EXPECT_TRUE(WasRepainted());
  Command(40041);
  Command(40104);
  EXPECT_EQ(Cut()->currentFrame, 1);
}

TEST_F(DocumentCommands, WithoutAKeyFrameThereIsNoMoveButACommit) {
  MakeCut();
  MakeFrames(2);
  Type(frame->frameTimeEdit, "3x");
  SpoilView();
  for (const int32_t id : {40104, 40105}) Command(id);
  EXPECT_EQ(Cut()->currentFrame, 1);
  EXPECT_EQ(CurrentFrame()->time, 3);
  EXPECT_EQ(TextOf(frame->frameTimeEdit), "3x");
  EXPECT_FALSE(WasRepainted());
}

TEST_F(DocumentCommands, AddFramesRepeatsTheAddition) {
  MakeCut();
  Type(frame->frameTimeEdit, "4");
  Command(40094, 116, {{1001, "3"}});
  EXPECT_EQ(Cut()->frames.Count(), 4);
  EXPECT_EQ(Cut()->currentFrame, 3);
  EXPECT_EQ(CurrentFrame()->time, 4);
  EXPECT_EQ(TextOf(frame->keyFrameCheck), "4(13f)");
}

TEST_F(DocumentCommands, AddFramesStartsAtOne) {
  MakeCut();
  Command(40094, 116, {});
  EXPECT_EQ(Cut()->frames.Count(), 2);
  Type(frame->frameTimeEdit, "8");
  CancelledCommand(40094, 116, {{1001, "3"}});
  EXPECT_EQ(Cut()->frames.Count(), 2);
  EXPECT_EQ(CurrentFrame()->time, 8);  // the commit comes ahead of the dialog
}

TEST_F(DocumentCommands, DeleteFramesLeavesOneFrame) {
  MakeCut();
  MakeFrames(5);
  SpoilView();
  Command(40133, 116, {{1001, "2"}});
  EXPECT_EQ(Cut()->frames.Count(), 3);
  EXPECT_FALSE(WasRepainted());
  EXPECT_EQ(TextOf(frame->keyFrameCheck), "3(3f)");
  Command(40133, 116, {{1001, "20"}});
  EXPECT_EQ(Cut()->frames.Count(), 1);
  EXPECT_EQ(TextOf(frame->keyFrameCheck), "1(1f)");
  CancelledCommand(40133, 116);
  EXPECT_EQ(Cut()->frames.Count(), 1);
}

TEST_F(DocumentCommands, BrightnessRampCommitsAndEndsAtTheChosenFrame) {
  MakeCut();
  MakeFrames(5);
  Command(40041);
  Cut()->frames.At(4)->SetBrightness(100);
  Cut()->frames.At(2)->SetBrightness(70);
  Type(frame->brightnessEdit, "0");
  ClearMarks();
  Command(40093, 115, {});
  const int32_t whole[] = {0, 25, 50, 75, 100};
  for (int32_t i = 0; i < 5; ++i) EXPECT_EQ(Cut()->frames.At(i)->brightness, whole[i]) << i;
  EXPECT_EQ(Marks(), "mt");
  Cut()->frames.At(2)->SetBrightness(10);
  Command(40093, 115, {{1065, "3"}});
  EXPECT_EQ(Cut()->frames.At(1)->brightness, 5);
  EXPECT_EQ(Cut()->frames.At(2)->brightness, 10);
  EXPECT_EQ(Cut()->frames.At(3)->brightness, 75);
}

TEST_F(DocumentCommands, FramePositionRampCommitsAfterItsDialog) {
  MakeCut();
  MakeFrames(3);
  Cut()->frames.At(0)->x = Cut()->frames.At(0)->y = 0;
  Cut()->frames.At(2)->x = 20;
  Cut()->frames.At(2)->y = -10;
  Command(40041);
  Type(frame->commentEdit, "typed");
  CancelledCommand(40101, 117);
  EXPECT_STREQ(CurrentFrame()->comment, "");
  Command(40101, 117, {});
  EXPECT_STREQ(CurrentFrame()->comment, "typed");
  EXPECT_EQ(Cut()->frames.At(1)->x, 10);
  EXPECT_EQ(Cut()->frames.At(1)->y, -5);
}

TEST_F(DocumentCommands, LayerPositionRampDoesNotCommit) {
  MakeCut();
  MakeFrames(3);
  Cut()->frames.At(2)->SetRecordPosition(0, 20, 8);
  Command(40041);
  Type(frame->commentEdit, "typed");
  ClearMarks();
  SpoilView();
  Command(40069, 112, {});
  EXPECT_STREQ(CurrentFrame()->comment, "");
  EXPECT_EQ(Cut()->frames.At(1)->records.At(0)->x, 10);
  EXPECT_EQ(Cut()->frames.At(1)->records.At(0)->y, 4);
  EXPECT_EQ(Marks(), "mit");
  EXPECT_FALSE(WasRepainted());
}

TEST_F(DocumentCommands, MakeAllKeyFramesRefreshesWithoutACommit) {
  MakeCut();
  MakeFrames(2);
  Type(frame->commentEdit, "typed");
  ClearMarks();
  Command(40106);
  EXPECT_TRUE(Cut()->frames.At(0)->IsKey());
  EXPECT_TRUE(Cut()->frames.At(1)->IsKey());
  EXPECT_TRUE(platform::IsChecked(frame->keyFrameCheck));
  EXPECT_EQ(TextOf(frame->commentEdit), "");
  EXPECT_STREQ(CurrentFrame()->comment, "");
  EXPECT_EQ(Marks(), "mt");
}

TEST_F(DocumentCommands, ExportBitmapWritesTheFrame) {
  MakeCut(16, 8);
  CurrentCell()->Fill(1);
  FileCommand(40076, folder.Path("frame"));
  const std::string bytes = Contents("frame.bmp");
  EXPECT_EQ(bytes.size(), 118u + 8u * 8u);
  EXPECT_EQ(bytes.substr(0, 2), "BM");
  platform::headless::QueueFileCancel();
  Command(40076);
  FileCommand(40076, folder.Path("no/such/folder.bmp"));
}

// Layers.

TEST_F(DocumentCommands, AddLayerPutsItOverTheCurrentOneInTheMiddleOfTheCanvas) {
  MakeCut();
  AddLayer("B");
  Command(40007);
  ClearMarks();
  SpoilView();
  platform::headless::SelectLines(frame->layerList, {0});
  Command(40014, 106, {{1000, "C"}, {1002, "20"}, {1001, "10"}});
  EXPECT_EQ(testdoc::Stacking(CurrentFrame()), "ACB");
  EXPECT_EQ(CurrentFrame()->currentRecord, 1);
  EXPECT_EQ(CurrentLayer()->width, 20);
  EXPECT_EQ(CurrentLayer()->height, 10);
  EXPECT_EQ(CurrentFrame()->records.At(1)->x, 10);
  EXPECT_EQ(CurrentFrame()->records.At(1)->y, 10);
  EXPECT_EQ(LayerLines(), "A (1/1)|*C (1/1)|B (1/1)|");
  EXPECT_EQ(Marks(), "mit");
  EXPECT_TRUE(WasRepainted());
}

TEST_F(DocumentCommands, InsertLayerPutsItUnderTheCurrentOne) {
  MakeCut();
  SpoilView();
  Command(40080, 106, {{1000, "B"}});
  EXPECT_EQ(testdoc::Stacking(CurrentFrame()), "BA");
  EXPECT_EQ(CurrentFrame()->currentRecord, 0);
  EXPECT_EQ(LayerLines(), "*B (1/1)|A (1/1)|");
  EXPECT_TRUE(WasRepainted());
}

TEST_F(DocumentCommands, ANewLayerHasTheCanvassSizeAndDoesNotFollow) {
  MakeCut();
  Command(40014, 106, {{1060, "on"}});
  EXPECT_EQ(CurrentLayer()->width, 40);
  EXPECT_EQ(CurrentLayer()->height, 30);
  EXPECT_EQ(CurrentLayer()->followFrame, 0u);
  EXPECT_STREQ(CurrentLayer()->name, "LAYER 1");
}

TEST_F(DocumentCommands, ANewLayerLiesOverTheSelection) {
  MakeCut();
  Select(4, 6, 20, 16);
  const Rect selected = Cut()->SelectionInCut();
  Command(40014, 106, {});
  EXPECT_EQ(CurrentLayer()->width, selected.width);
  EXPECT_EQ(CurrentLayer()->height, selected.height);
  EXPECT_EQ(CurrentFrame()->records.At(1)->x, 4);
  EXPECT_EQ(CurrentFrame()->records.At(1)->y, 6);
}

TEST_F(DocumentCommands, ALayerThatNoFrameCanTakeIsNotAttached) {
  MakeCut();
  AddLayer("B");
  MakeFrames(2);
  Cut()->DeleteLayer(1);
  AddLayer("C");
  EXPECT_EQ(testdoc::Stacking(Cut()->frames.At(0)), "AC");
  CancelledCommand(40014, 106);
  EXPECT_EQ(Cut()->layers.Count(), 2);
}

TEST_F(DocumentCommands, DeleteLayerRepaintsAndFillsTheList) {
  MakeCut();
  AddLayer("B");
  AddLayer("C");
  platform::headless::SelectLines(frame->layerList, {1});
  Type(frame->commentEdit, "typed");
  ClearMarks();
  SpoilView();
  Command(40015);
  EXPECT_EQ(testdoc::Stacking(CurrentFrame()), "AC");
  EXPECT_EQ(LayerLines(), "A (1/1)|*C (1/1)|");
  EXPECT_STREQ(CurrentFrame()->comment, "");
  EXPECT_EQ(TextOf(frame->commentEdit), "typed");
  EXPECT_EQ(Marks(), "mit");
  EXPECT_TRUE(WasRepainted());
}

TEST_F(DocumentCommands, DeleteLayerOfAFrameWithoutRecordsDoesNothing) {
  MakeCut(40, 30, false);
  ClearMarks();
  Command(40015);
  EXPECT_EQ(Marks(), "");
}

TEST_F(DocumentCommands, LayerUpAndDownMoveTheLine) {
  MakeCut();
  AddLayer("B");
  AddLayer("C");
  platform::headless::SelectLines(frame->layerList, {0});
  Command(40016);
  EXPECT_EQ(testdoc::Stacking(CurrentFrame()), "BAC");
  EXPECT_EQ(LayerLines(), "B (1/1)|*A (1/1)|C (1/1)|");
  SpoilView();
  ClearMarks();
  Command(40016);
  EXPECT_EQ(LayerLines(), "B (1/1)|C (1/1)|*A (1/1)|");
  EXPECT_TRUE(WasRepainted());
  EXPECT_EQ(Marks(), "mit");
  SpoilView();
  Command(40016);
  EXPECT_FALSE(WasRepainted());
  Command(40017);
  EXPECT_EQ(LayerLines(), "B (1/1)|*A (1/1)|C (1/1)|");
  Command(40017);
  EXPECT_EQ(testdoc::Stacking(CurrentFrame()), "ABC");
  EXPECT_EQ(LayerLines(), "*A (1/1)|B (1/1)|C (1/1)|");
  Command(40017);
  EXPECT_EQ(testdoc::Stacking(CurrentFrame()), "ABC");
}

TEST_F(DocumentCommands, LayerPropertiesRenameItsLines) {
  MakeCut();
  AddLayer("B");
  SpoilView();
  ClearMarks();
  Command(40022, 106, {{1000, "Z"}, {1060, "on"}});
  EXPECT_STREQ(CurrentLayer()->name, "Z");
  EXPECT_EQ(CurrentLayer()->followFrame, 1u);
  EXPECT_EQ(LayerLines(), "A (1/1)|*Z (1/1)|");
  EXPECT_EQ(Marks(), "mit");
  EXPECT_TRUE(WasRepainted());
}

TEST_F(DocumentCommands, LayerPropertiesOfANamelessLayerShowUntitled) {
  MakeCut();
  CurrentLayer()->SetName(nullptr);
  Command(40022, 106, {});
  EXPECT_EQ(CurrentLayer()->name, nullptr);
  Command(40022, 106, {{1000, "A"}});
  EXPECT_STREQ(CurrentLayer()->name, "A");
}

TEST_F(DocumentCommands, LayerPropertiesResizeTheCells) {
  MakeCut();
  testdoc::NumberCells(CurrentLayer(), 2);
  ASSERT_TRUE(Cut()->SaveUndo());
  const int32_t capacity = Cut()->undoCapacity;
  Command(40022, 106, {{1002, "80"}, {1001, "60"}});
  EXPECT_EQ(CurrentLayer()->width, 80);
  EXPECT_EQ(CurrentLayer()->height, 60);
  EXPECT_EQ(CurrentLayer()->CellAt(1)->width, 80);
  EXPECT_EQ(CurrentLayer()->CellAt(1)->GetPixel(39, 29), 2);
  EXPECT_EQ(CurrentLayer()->CellAt(1)->GetPixel(40, 0), 0);
  EXPECT_GT(Cut()->undoCapacity, capacity);
  EXPECT_EQ(Cut()->undoCell, nullptr);
  Command(40030);
  EXPECT_TRUE(ViewIsCurrent());
}

TEST_F(DocumentCommands, ResizingALayerKeepsTheUndoOfAnother) {
  MakeCut();
  ASSERT_TRUE(Cut()->SaveUndo());
  AddLayer("B");
  Command(40022, 106, {{1002, "80"}});
  EXPECT_EQ(Cut()->undoCell, Cut()->layers.At(0)->CellAt(0));
}

TEST_F(DocumentCommands, LayerPropertiesByADoubleClick) {
  MakeCut();
  platform::headless::QueueDialog({106, {{1000, "clicked"}}, true});
  EXPECT_TRUE(platform::headless::DoubleClickLine(frame->layerList, 0));
  EXPECT_EQ(LayerLines(), "*clicked (1/1)|");
}

TEST_F(DocumentCommands, LayerPropertiesWithoutRecordsOrCancelledDoNothing) {
  MakeCut(40, 30, false);
  Command(40022);
  AddLayer("A");
  ClearMarks();
  CancelledCommand(40022, 106, {{1000, "B"}});
  EXPECT_STREQ(CurrentLayer()->name, "A");
  EXPECT_EQ(Marks(), "");
}

TEST_F(DocumentCommands, ASelectedLineMakesItsLayerCurrent) {
  MakeCut();
  AddLayer("B");
  ClearMarks();
  SpoilView();
  platform::headless::SelectLines(frame->layerList, {0});
  EXPECT_EQ(CurrentFrame()->currentRecord, 0);
  EXPECT_TRUE(WasRepainted());
  EXPECT_EQ(Marks(), "");
  Command(40034);
  ClearMarks();
  platform::headless::SelectLines(frame->layerList, {1});
  EXPECT_EQ(CurrentFrame()->currentRecord, 1);
  EXPECT_EQ(Marks(), "i");
}

TEST_F(DocumentCommands, ALayerGoesToAFileAndOverAnother) {
  MakeCut();
  CurrentCell()->Fill(3);
  const std::string path = folder.Path("saved.lyr");
  ClearMarks();
  FileCommand(40066, folder.Path("saved"));
  EXPECT_EQ(Contents("saved.lyr").substr(0, 15), std::string("Sorvelin Layer\0", 15));
  EXPECT_EQ(Marks(), "");
  AddLayer("B");
  ClearMarks();
  SpoilView();
  FileCommand(40068, path);
  EXPECT_STREQ(CurrentLayer()->name, "A");
  EXPECT_EQ(CurrentCell()->GetPixel(5, 5), 3);
  EXPECT_EQ(Marks(), "mit");
  EXPECT_TRUE(WasRepainted());
  EXPECT_EQ(LayerLines(), "A (1/1)|*B (1/1)|");  // the panels aren't refreshed
}

TEST_F(DocumentCommands, AFileThatIsNoLayerOverwritesNothing) {
  MakeCut();
  testdoc::WriteFile(folder.Path("bad.lyr"), "Sorvelin Cut");
  ClearMarks();
  SpoilView();
  FileCommand(40068, folder.Path("bad.lyr"));
  FileCommand(40068, folder.Path("missing.lyr"));
  platform::headless::QueueFileCancel();
  Command(40068);
  EXPECT_STREQ(CurrentLayer()->name, "A");
  EXPECT_EQ(Marks(), "");
  EXPECT_FALSE(WasRepainted());
}

// Cells.

TEST_F(DocumentCommands, CellCommandsRewriteTheLineAndRepaint) {
  MakeCut();
  AddLayer("B");
  const struct {
    int32_t id;
    const char* lines;
  } steps[] = {
      {40011, "A (1/1)|*B (2/2)|"}, {40010, "A (1/1)|*B (2/3)|"}, {40012, "A (1/1)|*B (1/3)|"},
      {40013, "A (1/1)|*B (2/3)|"}, {40044, "A (1/1)|*B (3/3)|"}, {40043, "A (1/1)|*B (1/3)|"},
      {40009, "A (1/1)|*B (1/2)|"}, {40060, "A (1/1)|*B (0/2)|"}, {40103, "A (1/1)|*B (1/2)|"},
  };
  for (const auto& step : steps) {
    ClearMarks();
    SpoilView();
    Command(step.id);
    EXPECT_EQ(LayerLines(), step.lines) << step.id;
    EXPECT_EQ(Marks(), "mit") << step.id;
    EXPECT_TRUE(WasRepainted()) << step.id;
  }
}

TEST_F(DocumentCommands, ACellCommandThatDoesNothingRepaintsNothing) {
  MakeCut();
  for (const int32_t id : {40009, 40012, 40013}) {
    ClearMarks();
    SpoilView();
    Command(id);
    EXPECT_EQ(LayerLines(), "*A (1/1)|") << id;
    EXPECT_EQ(Marks(), "") << id;
    EXPECT_FALSE(WasRepainted()) << id;
  }
}

TEST_F(DocumentCommands, MergeDownPutsTheCellIntoTheLayerBelow) {
  MakeCut();
  AddLayer("B");
  CurrentCell()->Fill(1);
  Command(40071);
  EXPECT_EQ(Cut()->layers.At(0)->CellAt(0)->GetPixel(3, 3), 1);
}

// Undo.

TEST_F(DocumentCommands, UndoAndUndoAgain) {
  MakeCut();
  CurrentCell()->Fill(1);
  Command(40092);
  EXPECT_EQ(CurrentCell()->GetPixel(0, 0), 0);
  Command(40030);
  EXPECT_EQ(CurrentCell()->GetPixel(0, 0), 1);
  EXPECT_TRUE(ViewIsCurrent());
  Command(40030);
  EXPECT_EQ(CurrentCell()->GetPixel(0, 0), 0);
}

TEST_F(DocumentCommands, UndoOnAnotherCellChangesTheOneItBelongsTo) {
  MakeCut();
  CurrentCell()->Fill(1);
  Command(40092);
  Command(40011);
  SpoilView();
  Command(40030);
  EXPECT_EQ(CurrentLayer()->CellAt(0)->GetPixel(0, 0), 1);
  EXPECT_EQ(CurrentCell()->GetPixel(0, 0), 0);
  EXPECT_TRUE(WasRepainted());
}

TEST_F(DocumentCommands, UndoWithoutAnythingToUndoDoesNothing) {
  MakeCut();
  ClearMarks();
  SpoilView();
  Command(40030);
  EXPECT_EQ(Marks(), "");
  EXPECT_FALSE(WasRepainted());
}

// The draft, erasing, copying and cutting.

constexpr int32_t kInk = 1;
constexpr int32_t kSketch = 5;

TEST_F(DocumentCommands, DraftCommandsWorkOnTheWholeCell) {
  MakeCut();
  CurrentCell()->Fill(kInk);
  Command(40024);
  EXPECT_EQ(CurrentCell()->GetPixel(0, 0), kSketch);
  EXPECT_TRUE(ViewIsCurrent());
  Command(40025);
  EXPECT_EQ(CurrentCell()->GetPixel(39, 29), 0);
  CurrentCell()->Fill(kInk);
  ClearMarks();
  SpoilView();
  Command(40092);
  EXPECT_EQ(CurrentCell()->GetPixel(0, 0), 0);
  EXPECT_EQ(Marks(), "mit");
  EXPECT_EQ(Cut()->undoRect, Rect{});
  EXPECT_TRUE(WasRepainted());
}

TEST_F(DocumentCommands, DraftCommandsTakeASelectionOfTheAreaToolOnly) {
  MakeCut();
  Command(40059);
  for (const bool isAreaTool : {true, false}) {
    if (!isAreaTool) Command(40029);
    CurrentCell()->Fill(kInk);
    Cut()->RepaintAll();
    Select(4, 6, 20, 16);
    Command(40092);
    EXPECT_EQ(CurrentCell()->GetPixel(4, 6), 0);
    EXPECT_EQ(CurrentCell()->GetPixel(3, 6), isAreaTool ? kInk : 0);
    EXPECT_EQ(Cut()->undoRect.IsEmpty(), !isAreaTool);
    EXPECT_TRUE(ViewIsCurrent());
  }
}

TEST_F(DocumentCommands, EraseDraftOfTheLayerClearsAllItsCells) {
  MakeCut();
  Command(40011);
  for (int32_t i = 0; i < 2; ++i) CurrentLayer()->CellAt(i)->Fill(kSketch);
  SpoilView();
  Command(40064);
  for (int32_t i = 0; i < 2; ++i) EXPECT_EQ(CurrentLayer()->CellAt(i)->GetPixel(7, 7), 0) << i;
  EXPECT_TRUE(WasRepainted());
}

TEST_F(DocumentCommands, CopyNeedsASelectionOverTheCell) {
  MakeCut();
  CurrentCell()->Fill(kInk);
  Command(40061);
  EXPECT_EQ(ClipboardImage()->width, 0);
  Select(4, 6, 20, 16);
  Command(40061);
  EXPECT_GT(ClipboardImage()->width, 0);
  EXPECT_EQ(ClipboardImage()->GetPixel(0, 0), kInk);
  EXPECT_EQ(CurrentCell()->GetPixel(4, 6), kInk);
}

TEST_F(DocumentCommands, CutCopiesAndErases) {
  MakeCut();
  CurrentCell()->Fill(kInk);
  ClearMarks();
  Select(4, 6, 20, 16);
  Command(40063);
  EXPECT_EQ(ClipboardImage()->GetPixel(0, 0), kInk);
  EXPECT_EQ(CurrentCell()->GetPixel(4, 6), 0);
  EXPECT_EQ(CurrentCell()->GetPixel(3, 6), kInk);
  EXPECT_EQ(Marks(), "mit");
  EXPECT_FALSE(Cut()->undoRect.IsEmpty());
  Command(40030);
  EXPECT_EQ(CurrentCell()->GetPixel(4, 6), kInk);
}

// Playing.

TEST_F(DocumentCommands, PlayCommitsAndRepaints) {
  MakeCut();
  Type(frame->commentEdit, "typed");
  SpoilView();
  Command(40026);
  EXPECT_STREQ(CurrentFrame()->comment, "typed");
  EXPECT_TRUE(WasRepainted());
  EXPECT_TRUE(platform::IsShown(frame->animationWindow.window));
  EXPECT_EQ(platform::headless::CurrentCursor(), platform::CursorShape::kArrow);
  Command(40027);
  EXPECT_FALSE(platform::IsShown(frame->animationWindow.window));
}

// Options of the tools need no cut.

TEST_F(DocumentCommands, GridOfTheTools) {
  Command(40040, 108, {{1022, "8"}, {1001, "16"}});
  EXPECT_EQ(gridWidth, 8);
  EXPECT_EQ(gridHeight, 16);
  CancelledCommand(40040, 108, {{1022, "2"}});
  EXPECT_EQ(gridWidth, 8);
}

TEST_F(DocumentCommands, MaskOfTheTools) {
  Command(40046, 109, {{1013, "on"}, {1017, "on"}});
  EXPECT_EQ(maskFlags, 257u);
  CancelledCommand(40046, 109, {{1049, "click"}});
  EXPECT_EQ(maskFlags, 257u);
}

TEST_F(DocumentCommands, FontOfTheTextTool) {
  Command(40072, 113, {{1001, "48"}, {1022, "6"}, {1042, "700"}});
  EXPECT_EQ(textToolFont.size, 48);
  EXPECT_EQ(textToolFont.spacing, 6);
  EXPECT_EQ(textToolFont.weight, 700);
  CancelledCommand(40072, 113, {{1001, "10"}});
  EXPECT_EQ(textToolFont.size, 48);
}

TEST_F(DocumentCommands, PenShape) {
  currentPen.shape = 5;
  penSign = -1;
  Command(40074);
  EXPECT_EQ(currentPen.shape, 9);
  EXPECT_EQ(penSign, 1);
}

TEST_F(DocumentCommands, TransparentColorIsChosenAndSwitchedOff) {
  EXPECT_FALSE(clipTransparent);
  platform::headless::QueueColor(0x12, 0xAB, 0xFE);
  Command(40137);
  EXPECT_TRUE(clipTransparent);
  EXPECT_EQ(clipTransparentColor, 0xFEAB12u);
  EXPECT_EQ(Setting(settings::kPasteTransparentColor), "#12ABFE");
  EXPECT_EQ(Setting(settings::kPasteTransparent), "1");
  Command(40137);  // no dialog comes up
  EXPECT_FALSE(clipTransparent);
  EXPECT_EQ(clipTransparentColor, 0xFEAB12u);
  EXPECT_EQ(Setting(settings::kPasteTransparent), "0");
  EXPECT_EQ(Setting(settings::kPasteTransparentColor), "#12ABFE");
}

TEST_F(DocumentCommands, ACancelledTransparentColorChangesNothing) {
  platform::headless::QueueColorCancel();
  Command(40137);
  EXPECT_FALSE(clipTransparent);
  EXPECT_FALSE(Exists("sorvel.ini"));
}

// Drawing.

TEST_F(DocumentCommands, RandomDotsOverTheWholeCell) {
  MakeCut();
  currentPen = PenSpec{7, 0, 0, 1};
  ClearMarks();
  Command(40126, 127, {{1001, "1"}});
  for (int32_t x = 0; x < 40; ++x) EXPECT_EQ(CurrentCell()->GetPixel(x, 29), 1) << x;
  EXPECT_EQ(Cut()->undoRect, (Rect{0, 0, 40, 30}));
  EXPECT_EQ(Marks(), "mit");
  EXPECT_TRUE(ViewIsCurrent());
  Command(40030);
  EXPECT_EQ(CurrentCell()->GetPixel(0, 0), 0);
}

TEST_F(DocumentCommands, RandomDotsWithinTheSelectionWhateverTheTool) {
  MakeCut();
  currentPen = PenSpec{7, 0, 0, 1};
  Select(4, 6, 20, 16);
  Rect area;
  ASSERT_TRUE(Cut()->ToolArea(&area));
  Command(40126, 127, {{1001, "1"}});
  EXPECT_EQ(Cut()->undoRect, area);
  EXPECT_EQ(CurrentCell()->GetPixel(3, 6), 0);
  EXPECT_EQ(CurrentCell()->GetPixel(4, 6), 1);
  EXPECT_EQ(CurrentCell()->GetPixel(4, 5), 0);
  EXPECT_TRUE(ViewIsCurrent());
}

TEST_F(DocumentCommands, GridLinesLeaveTheSnapGrid) {
  MakeCut();
  currentPen = PenSpec{7, 0, 0, 1};
  Command(40127, 108, {{1022, "10"}, {1001, "15"}});
  EXPECT_NE(CurrentCell()->GetPixel(10, 3), 0);
  EXPECT_NE(CurrentCell()->GetPixel(3, 15), 0);
  EXPECT_EQ(CurrentCell()->GetPixel(5, 3), 0);
  EXPECT_EQ(gridWidth, 1);
  EXPECT_EQ(gridHeight, 1);
  EXPECT_TRUE(ViewIsCurrent());
}

TEST_F(DocumentCommands, DrawingOnABlankRecordAsksNothing) {
  MakeCut();
  Command(40060);
  ClearMarks();
  Command(40126);
  Command(40127);
  EXPECT_EQ(Marks(), "");
}

TEST_F(DocumentCommands, CancelledDrawingChangesNothing) {
  MakeCut();
  ClearMarks();
  CancelledCommand(40126, 127);
  CancelledCommand(40127, 108);
  EXPECT_EQ(Marks(), "");
  EXPECT_EQ(Cut()->undoCell, nullptr);
}

// View switches.

TEST_F(DocumentCommands, ViewSwitchesFlipAndRepaint) {
  MakeCut();
  const struct {
    int32_t id;
    uint32_t flag;
    const char* marks;
  } switches[] = {
      {40032, kOnionPrevious, ""}, {40033, kOnionNext, ""}, {40097, kDimOthers, ""}, {40034, kCurrentCellOnly, "i"}};
  for (const auto& each : switches) {
    ClearMarks();
    SpoilView();
    Command(each.id);
    EXPECT_EQ(Cut()->viewFlags, each.flag) << each.id;
    EXPECT_EQ(Marks(), each.marks) << each.id;
    EXPECT_TRUE(WasRepainted()) << each.id;
    Command(each.id);
    EXPECT_EQ(Cut()->viewFlags, 0u) << each.id;
  }
}

TEST_F(DocumentCommands, MuraRemovalFlipsWithoutARepaint) {
  MakeCut();
  SpoilView();
  const int32_t before = muraRemoval;
  Command(40099);
  EXPECT_NE(muraRemoval, before);
  EXPECT_FALSE(WasRepainted());
  Command(40099);
  EXPECT_EQ(muraRemoval, before);
}

TEST_F(DocumentCommands, LineEmphasisBelongsToTheWindow) {
  MakeCut();
  Command(40102);
  EXPECT_EQ(Cut()->viewOptions & kLineEmphasis, static_cast<uint32_t>(kLineEmphasis));
  MakeCut();
  EXPECT_EQ(Cut()->viewOptions & kLineEmphasis, 0u);
}

// Commands in the middle of a tool's work.

class CommandsAmongStrokes : public ShellTest {
 protected:
  // Points of the canvas, which has 40 by 30 pixels in the middle of the window.
  void Mouse(uint32_t message, int32_t x, int32_t y) {
    platform::Send(Cut()->window, message, 0, platform::PackPoint({x + (640 - 40) / 2, y + (480 - 30) / 2}));
  }
  void Drag(int32_t x, int32_t y, int32_t toX, int32_t toY) {
    Mouse(platform::kMessageLeftDown, x, y);
    Mouse(platform::kMessageMouseMove, toX, toY);
    Mouse(platform::kMessageLeftUp, toX, toY);
  }
};

TEST_F(CommandsAmongStrokes, InkDrawnAfterASaveInAStrokeIsStillToBeSaved) {
  for (const int32_t tool : {40029, 40065}) {
    SCOPED_TRACE(tool);
    MakeCut();
    Command(tool);
    Mouse(platform::kMessageLeftDown, 5, 5);
    Mouse(platform::kMessageMouseMove, 10, 5);
    FileCommand(40052, folder.Path("a.cut"));
    ASSERT_FALSE(Cut()->Has(kModified));
    Mouse(platform::kMessageMouseMove, 10, 20);
    Mouse(platform::kMessageLeftUp, 10, 20);
    EXPECT_EQ(Marks(), "mit");
  }
}

TEST_F(CommandsAmongStrokes, InkMovedAfterASaveWithTheButtonDownIsStillToBeSaved) {
  MakeCut();
  CurrentCell()->FillRect(4, 4, 4, 4, kToneBlack);
  Command(40059);
  Drag(2, 2, 12, 12);
  Mouse(platform::kMessageLeftDown, 6, 6);
  FileCommand(40052, folder.Path("a.cut"));
  ASSERT_FALSE(Cut()->Has(kModified));
  Mouse(platform::kMessageMouseMove, 16, 10);
  Mouse(platform::kMessageLeftUp, 16, 10);
  ASSERT_EQ(CurrentCell()->GetPixel(15, 9), kToneBlack);
  EXPECT_EQ(Marks(), "mit");
}

TEST_F(CommandsAmongStrokes, AMovedSelectionTakesNoInkOfAnotherToolBack) {
  MakeCut();
  CurrentCell()->FillRect(4, 4, 4, 4, kToneBlack);
  Command(40059);
  Drag(2, 2, 12, 12);
  Drag(6, 6, 16, 10);
  ASSERT_EQ(CurrentCell()->GetPixel(15, 9), kToneBlack);
  Command(40029);
  Drag(30, 20, 35, 20);
  ASSERT_NE(CurrentCell()->GetPixel(30, 20), kTransparent);
  Command(40059);
  Mouse(platform::kMessageRightUp, 20, 15);
  Mouse(platform::kMessageLeftDown, 20, 15);
  EXPECT_NE(CurrentCell()->GetPixel(30, 20), kTransparent);
}

}  // namespace
}  // namespace sorvel::testshell
