#include "shell/shell_fixture.h"

#include "cutwindow/clipboard.h"
#include "resources/ids.h"

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
  for (const int32_t id :
       {kCommandAddFrame,        kCommandInsertFrame,   kCommandPreviousFrame,  kCommandNextFrame,
        kCommandAddLayer,        kCommandDeleteLayer,   kCommandLayerUp,        kCommandLayerDown,
        kCommandLayerProperties, kCommandSaveLayer,     kCommandOverwriteLayer, kCommandLayerRamp,
        kCommandExportBitmap,    kCommandCutProperties, kCommandInsertLayer,    kCommandBrightnessRamp,
        kCommandAddFrames,       kCommandFrameRamp,     kCommandNextKeyFrame,   kCommandPreviousKeyFrame,
        kCommandAllKeyFrames,    kCommandFrameSize,     kCommandRandomDots,     kCommandDrawGrid,
        kCommandDeleteFrames}) {
    EXPECT_EQ(frame->OnCommand(0, id, nullptr), 0) << id;
  }
  EXPECT_EQ(frame->ActiveCut(), nullptr);
}

TEST_F(DocumentCommands, CommandsThatNobodyOwnsAreNotHandled) {
  for (const int32_t id : {kTextStoryboard, kTextCircle, kTextSearch, 58000})
    EXPECT_EQ(frame->OnCommand(0, id, nullptr), 1) << id;
  MakeCut();
  for (const int32_t id : {kTextStoryboard, kTextCircle, kTextSearch, 58000})
    EXPECT_EQ(frame->OnCommand(0, id, nullptr), 1) << id;
}

// Cut properties, 40077, and frame size, 40112.

TEST_F(DocumentCommands, CutPropertiesChangeEverythingButTheFrameSize) {
  MakeCut();
  ClearMarks();
  Command(kCommandCutProperties, kCutDialog,
          {{kCutWidthEdit, "64"},
           {kCutHeightEdit, "48"},
           {kCutFpsEdit, "30"},
           {kCutCreditEdit, "me"},
           {kCutHalfRadio, "on"}});
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
  Command(kCommandCutProperties, kCutDialog, {});
  EXPECT_EQ(Cut()->width, 40);
  EXPECT_EQ(Cut()->height, 30);
  EXPECT_EQ(Cut()->fps, 24);
  EXPECT_EQ(Cut()->Antialias(), 2);
}

TEST_F(DocumentCommands, CancelledCutPropertiesChangeNothing) {
  MakeCut();
  ClearMarks();
  CancelledCommand(kCommandCutProperties, kCutDialog, {{kCutWidthEdit, "64"}});
  EXPECT_EQ(Cut()->width, 40);
  EXPECT_EQ(Marks(), "");
}

TEST_F(DocumentCommands, FrameSizeMarksTimingWithoutARepaint) {
  MakeCut();
  ClearMarks();
  SpoilView();
  Command(kCommandFrameSize, kFrameSizeDialog, {{kFrameWidthEdit, "32"}, {kFrameHeightEdit, "24"}});
  EXPECT_EQ(Cut()->frameWidth, 32);
  EXPECT_EQ(Cut()->frameHeight, 24);
  EXPECT_EQ(Cut()->width, 40);
  EXPECT_EQ(Marks(), "mt");
  EXPECT_FALSE(WasRepainted());
  ClearMarks();
  CancelledCommand(kCommandFrameSize, kFrameSizeDialog, {{kFrameWidthEdit, "1"}});
  EXPECT_EQ(Cut()->frameWidth, 32);
  EXPECT_EQ(Marks(), "");
}

// Frames.

TEST_F(DocumentCommands, AddFrameCommitsCopiesAndRefreshes) {
  MakeCut();
  Type(frame->frameTimeEdit, "7");
  Command(kCommandAddFrame);
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
  Command(kCommandAddFrame);
  EXPECT_EQ(Cut()->frames.At(0)->time, 5);
  EXPECT_EQ(CurrentFrame()->time, 2);
  EXPECT_FALSE(CurrentFrame()->IsKey());
}

TEST_F(DocumentCommands, AddFrameKeepsATimeThatCannotBeHalved) {
  MakeCut();
  CurrentFrame()->SetKey(true);
  CurrentFrame()->time = 1;
  frame->RefreshPanels(Cut());
  Command(kCommandAddFrame);
  EXPECT_EQ(CurrentFrame()->time, 1);
  Command(kCommandPreviousFrame);
  CurrentFrame()->time = -6;
  Command(kCommandAddFrame);
  EXPECT_EQ(CurrentFrame()->time, -6);
}

TEST_F(DocumentCommands, InsertFrameCopiesTheFrameBehindIt) {
  MakeCut();
  Type(frame->frameTimeEdit, "7");
  ClearMarks();
  Command(kCommandInsertFrame);
  EXPECT_EQ(Cut()->frames.Count(), 2);
  EXPECT_EQ(Cut()->currentFrame, 0);
  EXPECT_EQ(CurrentFrame()->time, 7);
  EXPECT_EQ(testdoc::Stacking(CurrentFrame()), "A");
  EXPECT_EQ(TextOf(frame->keyFrameCheck), "1(1f)");
  // The insertion itself marks nothing; the committed time did.
  EXPECT_EQ(Marks(), "mt");
  ClearMarks();
  Command(kCommandInsertFrame);
  EXPECT_EQ(Marks(), "");
}

TEST_F(DocumentCommands, DeleteFrameDropsWhatWasTypedAndRepaints) {
  MakeCut();
  MakeFrames(3);
  Type(frame->frameTimeEdit, "9");
  SpoilView();
  Command(kCommandDeleteFrame);
  EXPECT_EQ(Cut()->frames.Count(), 2);
  EXPECT_EQ(CurrentFrame()->time, 1);
  EXPECT_EQ(TextOf(frame->frameTimeEdit), "1");
  EXPECT_TRUE(WasRepainted());
}

TEST_F(DocumentCommands, DeleteFrameOfTheOnlyFrameDoesNothing) {
  MakeCut();
  Type(frame->frameTimeEdit, "9");
  SpoilView();
  Command(kCommandDeleteFrame);
  EXPECT_EQ(Cut()->frames.Count(), 1);
  EXPECT_EQ(TextOf(frame->frameTimeEdit), "9");
  EXPECT_FALSE(WasRepainted());
}

TEST_F(DocumentCommands, StepsCommitMoveRepaintAndRefresh) {
  MakeCut();
  MakeFrames(3);
  Type(frame->commentEdit, "here");
  SpoilView();
  Command(kCommandPreviousFrame);
  EXPECT_EQ(Cut()->currentFrame, 1);
  EXPECT_STREQ(Cut()->frames.At(2)->comment, "here");
  EXPECT_EQ(TextOf(frame->commentEdit), "");
  EXPECT_TRUE(WasRepainted());
  Command(kCommandNextFrame);
  EXPECT_EQ(Cut()->currentFrame, 2);
  EXPECT_EQ(TextOf(frame->commentEdit), "here");
}

TEST_F(DocumentCommands, AStepThatCannotMoveStillCommitsRepaintsAndRefreshes) {
  MakeCut();
  Type(frame->frameTimeEdit, "12345");
  SpoilView();
  Command(kCommandPreviousFrame);
  EXPECT_EQ(CurrentFrame()->time, 1234);
  EXPECT_EQ(TextOf(frame->frameTimeEdit), "1234");
  EXPECT_TRUE(WasRepainted());
  Type(frame->frameTimeEdit, "3x");
  SpoilView();
  Command(kCommandNextFrame);
  EXPECT_EQ(TextOf(frame->frameTimeEdit), "3");
  EXPECT_TRUE(WasRepainted());
}

TEST_F(DocumentCommands, FirstAndLastFrame) {
  MakeCut();
  MakeFrames(3);
  SpoilView();
  Command(kCommandFirstFrame);
  EXPECT_EQ(Cut()->currentFrame, 0);
  EXPECT_TRUE(WasRepainted());
  EXPECT_EQ(TextOf(frame->keyFrameCheck), "1(1f)");
  Command(kCommandLastFrame);
  EXPECT_EQ(Cut()->currentFrame, 2);
}

TEST_F(DocumentCommands, FirstFrameOfACutOfOneFrameCommitsOnly) {
  MakeCut();
  Type(frame->frameTimeEdit, "3x");
  SpoilView();
  Command(kCommandFirstFrame);
  EXPECT_EQ(CurrentFrame()->time, 3);
  EXPECT_EQ(TextOf(frame->frameTimeEdit), "3x");
  EXPECT_FALSE(WasRepainted());
}

TEST_F(DocumentCommands, KeyFrameStepsMoveAndRefresh) {
  MakeCut();
  MakeFrames(4);
  Cut()->frames.At(1)->SetKey(true);
  SpoilView();
  Command(kCommandPreviousKeyFrame);
  EXPECT_EQ(Cut()->currentFrame, 1);
  EXPECT_TRUE(platform::IsChecked(frame->keyFrameCheck));
  EXPECT_TRUE(WasRepainted());
  Command(kCommandFirstFrame);
  Command(kCommandNextKeyFrame);
  EXPECT_EQ(Cut()->currentFrame, 1);
}

TEST_F(DocumentCommands, WithoutAKeyFrameThereIsNoMoveButACommit) {
  MakeCut();
  MakeFrames(2);
  Type(frame->frameTimeEdit, "3x");
  SpoilView();
  for (const int32_t id : {kCommandNextKeyFrame, kCommandPreviousKeyFrame}) Command(id);
  EXPECT_EQ(Cut()->currentFrame, 1);
  EXPECT_EQ(CurrentFrame()->time, 3);
  EXPECT_EQ(TextOf(frame->frameTimeEdit), "3x");
  EXPECT_FALSE(WasRepainted());
}

TEST_F(DocumentCommands, AddFramesRepeatsTheAddition) {
  MakeCut();
  Type(frame->frameTimeEdit, "4");
  Command(kCommandAddFrames, kFrameCountDialog, {{kFrameCountEdit, "3"}});
  EXPECT_EQ(Cut()->frames.Count(), 4);
  EXPECT_EQ(Cut()->currentFrame, 3);
  EXPECT_EQ(CurrentFrame()->time, 4);
  EXPECT_EQ(TextOf(frame->keyFrameCheck), "4(13f)");
}

TEST_F(DocumentCommands, AddFramesStartsAtOne) {
  MakeCut();
  Command(kCommandAddFrames, kFrameCountDialog, {});
  EXPECT_EQ(Cut()->frames.Count(), 2);
  Type(frame->frameTimeEdit, "8");
  CancelledCommand(kCommandAddFrames, kFrameCountDialog, {{kFrameCountEdit, "3"}});
  EXPECT_EQ(Cut()->frames.Count(), 2);
  EXPECT_EQ(CurrentFrame()->time, 8);  // the commit comes ahead of the dialog
}

TEST_F(DocumentCommands, DeleteFramesLeavesOneFrame) {
  MakeCut();
  MakeFrames(5);
  SpoilView();
  Command(kCommandDeleteFrames, kFrameCountDialog, {{kFrameCountEdit, "2"}});
  EXPECT_EQ(Cut()->frames.Count(), 3);
  EXPECT_FALSE(WasRepainted());
  EXPECT_EQ(TextOf(frame->keyFrameCheck), "3(3f)");
  Command(kCommandDeleteFrames, kFrameCountDialog, {{kFrameCountEdit, "20"}});
  EXPECT_EQ(Cut()->frames.Count(), 1);
  EXPECT_EQ(TextOf(frame->keyFrameCheck), "1(1f)");
  CancelledCommand(kCommandDeleteFrames, kFrameCountDialog);
  EXPECT_EQ(Cut()->frames.Count(), 1);
}

TEST_F(DocumentCommands, BrightnessRampCommitsAndEndsAtTheChosenFrame) {
  MakeCut();
  MakeFrames(5);
  Command(kCommandFirstFrame);
  Cut()->frames.At(4)->SetBrightness(100);
  Cut()->frames.At(2)->SetBrightness(70);
  Type(frame->brightnessEdit, "0");
  ClearMarks();
  Command(kCommandBrightnessRamp, kBrightnessRampDialog, {});
  const int32_t whole[] = {0, 25, 50, 75, 100};
  for (int32_t i = 0; i < 5; ++i) EXPECT_EQ(Cut()->frames.At(i)->brightness, whole[i]) << i;
  EXPECT_EQ(Marks(), "mt");
  Cut()->frames.At(2)->SetBrightness(10);
  Command(kCommandBrightnessRamp, kBrightnessRampDialog, {{kRampEndEdit, "3"}});
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
  Command(kCommandFirstFrame);
  Type(frame->commentEdit, "typed");
  CancelledCommand(kCommandFrameRamp, kFrameRampDialog);
  EXPECT_STREQ(CurrentFrame()->comment, "");
  Command(kCommandFrameRamp, kFrameRampDialog, {});
  EXPECT_STREQ(CurrentFrame()->comment, "typed");
  EXPECT_EQ(Cut()->frames.At(1)->x, 10);
  EXPECT_EQ(Cut()->frames.At(1)->y, -5);
}

TEST_F(DocumentCommands, LayerPositionRampDoesNotCommit) {
  MakeCut();
  MakeFrames(3);
  Cut()->frames.At(2)->SetRecordPosition(0, 20, 8);
  Command(kCommandFirstFrame);
  Type(frame->commentEdit, "typed");
  ClearMarks();
  SpoilView();
  Command(kCommandLayerRamp, kLayerRampDialog, {});
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
  Command(kCommandAllKeyFrames);
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
  FileCommand(kCommandExportBitmap, folder.Path("frame"));
  const std::string bytes = Contents("frame.bmp");
  EXPECT_EQ(bytes.size(), 118u + 8u * 8u);
  EXPECT_EQ(bytes.substr(0, 2), "BM");
  platform::headless::QueueFileCancel();
  Command(kCommandExportBitmap);
  FileCommand(kCommandExportBitmap, folder.Path("no/such/folder.bmp"));
}

// Layers.

TEST_F(DocumentCommands, AddLayerPutsItOverTheCurrentOneInTheMiddleOfTheCanvas) {
  MakeCut();
  AddLayer("B");
  Command(kCommandPreviousFrame);
  ClearMarks();
  SpoilView();
  platform::headless::SelectLines(frame->layerList, {0});
  Command(kCommandAddLayer, kLayerDialog, {{kLayerNameEdit, "C"}, {kLayerWidthEdit, "20"}, {kLayerHeightEdit, "10"}});
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
  Command(kCommandInsertLayer, kLayerDialog, {{kLayerNameEdit, "B"}});
  EXPECT_EQ(testdoc::Stacking(CurrentFrame()), "BA");
  EXPECT_EQ(CurrentFrame()->currentRecord, 0);
  EXPECT_EQ(LayerLines(), "*B (1/1)|A (1/1)|");
  EXPECT_TRUE(WasRepainted());
}

TEST_F(DocumentCommands, ANewLayerHasTheCanvassSizeAndDoesNotFollow) {
  MakeCut();
  Command(kCommandAddLayer, kLayerDialog, {{kLayerFollowCheck, "on"}});
  EXPECT_EQ(CurrentLayer()->width, 40);
  EXPECT_EQ(CurrentLayer()->height, 30);
  EXPECT_EQ(CurrentLayer()->followFrame, 0u);
  EXPECT_STREQ(CurrentLayer()->name, "LAYER 1");
}

TEST_F(DocumentCommands, ANewLayerLiesOverTheSelection) {
  MakeCut();
  Select(4, 6, 20, 16);
  const Rect selected = Cut()->SelectionInCut();
  Command(kCommandAddLayer, kLayerDialog, {});
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
  CancelledCommand(kCommandAddLayer, kLayerDialog);
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
  Command(kCommandDeleteLayer);
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
  Command(kCommandDeleteLayer);
  EXPECT_EQ(Marks(), "");
}

TEST_F(DocumentCommands, LayerUpAndDownMoveTheLine) {
  MakeCut();
  AddLayer("B");
  AddLayer("C");
  platform::headless::SelectLines(frame->layerList, {0});
  Command(kCommandLayerUp);
  EXPECT_EQ(testdoc::Stacking(CurrentFrame()), "BAC");
  EXPECT_EQ(LayerLines(), "B (1/1)|*A (1/1)|C (1/1)|");
  SpoilView();
  ClearMarks();
  Command(kCommandLayerUp);
  EXPECT_EQ(LayerLines(), "B (1/1)|C (1/1)|*A (1/1)|");
  EXPECT_TRUE(WasRepainted());
  EXPECT_EQ(Marks(), "mit");
  SpoilView();
  Command(kCommandLayerUp);
  EXPECT_FALSE(WasRepainted());
  Command(kCommandLayerDown);
  EXPECT_EQ(LayerLines(), "B (1/1)|*A (1/1)|C (1/1)|");
  Command(kCommandLayerDown);
  EXPECT_EQ(testdoc::Stacking(CurrentFrame()), "ABC");
  EXPECT_EQ(LayerLines(), "*A (1/1)|B (1/1)|C (1/1)|");
  Command(kCommandLayerDown);
  EXPECT_EQ(testdoc::Stacking(CurrentFrame()), "ABC");
}

TEST_F(DocumentCommands, LayerPropertiesRenameItsLines) {
  MakeCut();
  AddLayer("B");
  SpoilView();
  ClearMarks();
  Command(kCommandLayerProperties, kLayerDialog, {{kLayerNameEdit, "Z"}, {kLayerFollowCheck, "on"}});
  EXPECT_STREQ(CurrentLayer()->name, "Z");
  EXPECT_EQ(CurrentLayer()->followFrame, 1u);
  EXPECT_EQ(LayerLines(), "A (1/1)|*Z (1/1)|");
  EXPECT_EQ(Marks(), "mit");
  EXPECT_TRUE(WasRepainted());
}

TEST_F(DocumentCommands, LayerPropertiesOfANamelessLayerShowUntitled) {
  MakeCut();
  CurrentLayer()->SetName(nullptr);
  Command(kCommandLayerProperties, kLayerDialog, {});
  EXPECT_EQ(CurrentLayer()->name, nullptr);
  Command(kCommandLayerProperties, kLayerDialog, {{kLayerNameEdit, "A"}});
  EXPECT_STREQ(CurrentLayer()->name, "A");
}

TEST_F(DocumentCommands, LayerPropertiesResizeTheCells) {
  MakeCut();
  testdoc::NumberCells(CurrentLayer(), 2);
  ASSERT_TRUE(Cut()->SaveUndo());
  const int32_t capacity = Cut()->undoCapacity;
  Command(kCommandLayerProperties, kLayerDialog, {{kLayerWidthEdit, "80"}, {kLayerHeightEdit, "60"}});
  EXPECT_EQ(CurrentLayer()->width, 80);
  EXPECT_EQ(CurrentLayer()->height, 60);
  EXPECT_EQ(CurrentLayer()->CellAt(1)->width, 80);
  EXPECT_EQ(CurrentLayer()->CellAt(1)->GetPixel(39, 29), 2);
  EXPECT_EQ(CurrentLayer()->CellAt(1)->GetPixel(40, 0), 0);
  EXPECT_GT(Cut()->undoCapacity, capacity);
  EXPECT_EQ(Cut()->undoCell, nullptr);
  Command(kCommandUndo);
  EXPECT_TRUE(ViewIsCurrent());
}

TEST_F(DocumentCommands, ResizingALayerKeepsTheUndoOfAnother) {
  MakeCut();
  ASSERT_TRUE(Cut()->SaveUndo());
  AddLayer("B");
  Command(kCommandLayerProperties, kLayerDialog, {{kLayerWidthEdit, "80"}});
  EXPECT_EQ(Cut()->undoCell, Cut()->layers.At(0)->CellAt(0));
}

TEST_F(DocumentCommands, LayerPropertiesByADoubleClick) {
  MakeCut();
  platform::headless::QueueDialog({kLayerDialog, {{kLayerNameEdit, "clicked"}}, true});
  EXPECT_TRUE(platform::headless::DoubleClickLine(frame->layerList, 0));
  EXPECT_EQ(LayerLines(), "*clicked (1/1)|");
}

TEST_F(DocumentCommands, LayerPropertiesWithoutRecordsOrCancelledDoNothing) {
  MakeCut(40, 30, false);
  Command(kCommandLayerProperties);
  AddLayer("A");
  ClearMarks();
  CancelledCommand(kCommandLayerProperties, kLayerDialog, {{kLayerNameEdit, "B"}});
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
  Command(kCommandCurrentCellOnly);
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
  FileCommand(kCommandSaveLayer, folder.Path("saved"));
  EXPECT_EQ(Contents("saved.lyr").substr(0, 15), std::string("Sorvelin Layer\0", 15));
  EXPECT_EQ(Marks(), "");
  AddLayer("B");
  ClearMarks();
  SpoilView();
  FileCommand(kCommandOverwriteLayer, path);
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
  FileCommand(kCommandOverwriteLayer, folder.Path("bad.lyr"));
  FileCommand(kCommandOverwriteLayer, folder.Path("missing.lyr"));
  platform::headless::QueueFileCancel();
  Command(kCommandOverwriteLayer);
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
      {kCommandAddCell, "A (1/1)|*B (2/2)|"},      {kCommandInsertCell, "A (1/1)|*B (2/3)|"},
      {kCommandPreviousCell, "A (1/1)|*B (1/3)|"}, {kCommandNextCell, "A (1/1)|*B (2/3)|"},
      {kCommandLastCell, "A (1/1)|*B (3/3)|"},     {kCommandFirstCell, "A (1/1)|*B (1/3)|"},
      {kCommandDeleteCell, "A (1/1)|*B (1/2)|"},   {kCommandBlankCell, "A (1/1)|*B (0/2)|"},
      {kCommandBlankAll, "A (1/1)|*B (1/2)|"},
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
  for (const int32_t id : {kCommandDeleteCell, kCommandPreviousCell, kCommandNextCell}) {
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
  Command(kCommandMergeDown);
  EXPECT_EQ(Cut()->layers.At(0)->CellAt(0)->GetPixel(3, 3), 1);
}

// Undo.

TEST_F(DocumentCommands, UndoAndUndoAgain) {
  MakeCut();
  CurrentCell()->Fill(1);
  Command(kCommandEraseCell);
  EXPECT_EQ(CurrentCell()->GetPixel(0, 0), 0);
  Command(kCommandUndo);
  EXPECT_EQ(CurrentCell()->GetPixel(0, 0), 1);
  EXPECT_TRUE(ViewIsCurrent());
  Command(kCommandUndo);
  EXPECT_EQ(CurrentCell()->GetPixel(0, 0), 0);
}

TEST_F(DocumentCommands, UndoOnAnotherCellChangesTheOneItBelongsTo) {
  MakeCut();
  CurrentCell()->Fill(1);
  Command(kCommandEraseCell);
  Command(kCommandAddCell);
  SpoilView();
  Command(kCommandUndo);
  EXPECT_EQ(CurrentLayer()->CellAt(0)->GetPixel(0, 0), 1);
  EXPECT_EQ(CurrentCell()->GetPixel(0, 0), 0);
  EXPECT_TRUE(WasRepainted());
}

TEST_F(DocumentCommands, UndoWithoutAnythingToUndoDoesNothing) {
  MakeCut();
  ClearMarks();
  SpoilView();
  Command(kCommandUndo);
  EXPECT_EQ(Marks(), "");
  EXPECT_FALSE(WasRepainted());
}

// The draft, erasing, copying and cutting.

constexpr int32_t kInk = 1;
constexpr int32_t kSketch = 5;

TEST_F(DocumentCommands, DraftCommandsWorkOnTheWholeCell) {
  MakeCut();
  CurrentCell()->Fill(kInk);
  Command(kCommandToSketch);
  EXPECT_EQ(CurrentCell()->GetPixel(0, 0), kSketch);
  EXPECT_TRUE(ViewIsCurrent());
  Command(kCommandEraseSketch);
  EXPECT_EQ(CurrentCell()->GetPixel(39, 29), 0);
  CurrentCell()->Fill(kInk);
  ClearMarks();
  SpoilView();
  Command(kCommandEraseCell);
  EXPECT_EQ(CurrentCell()->GetPixel(0, 0), 0);
  EXPECT_EQ(Marks(), "mit");
  EXPECT_EQ(Cut()->undoRect, Rect{});
  EXPECT_TRUE(WasRepainted());
}

TEST_F(DocumentCommands, DraftCommandsTakeASelectionOfTheAreaToolOnly) {
  MakeCut();
  Command(kToolAreaSelect);
  for (const bool isAreaTool : {true, false}) {
    if (!isAreaTool) Command(kToolFreePen);
    CurrentCell()->Fill(kInk);
    Cut()->RepaintAll();
    Select(4, 6, 20, 16);
    Command(kCommandEraseCell);
    EXPECT_EQ(CurrentCell()->GetPixel(4, 6), 0);
    EXPECT_EQ(CurrentCell()->GetPixel(3, 6), isAreaTool ? kInk : 0);
    EXPECT_EQ(Cut()->undoRect.IsEmpty(), !isAreaTool);
    EXPECT_TRUE(ViewIsCurrent());
  }
}

TEST_F(DocumentCommands, EraseDraftOfTheLayerClearsAllItsCells) {
  MakeCut();
  Command(kCommandAddCell);
  for (int32_t i = 0; i < 2; ++i) CurrentLayer()->CellAt(i)->Fill(kSketch);
  SpoilView();
  Command(kCommandEraseLayerSketch);
  for (int32_t i = 0; i < 2; ++i) EXPECT_EQ(CurrentLayer()->CellAt(i)->GetPixel(7, 7), 0) << i;
  EXPECT_TRUE(WasRepainted());
}

TEST_F(DocumentCommands, CopyNeedsASelectionOverTheCell) {
  MakeCut();
  CurrentCell()->Fill(kInk);
  Command(kCommandCopy);
  EXPECT_EQ(ClipboardImage()->width, 0);
  Select(4, 6, 20, 16);
  Command(kCommandCopy);
  EXPECT_GT(ClipboardImage()->width, 0);
  EXPECT_EQ(ClipboardImage()->GetPixel(0, 0), kInk);
  EXPECT_EQ(CurrentCell()->GetPixel(4, 6), kInk);
}

TEST_F(DocumentCommands, CutCopiesAndErases) {
  MakeCut();
  CurrentCell()->Fill(kInk);
  ClearMarks();
  Select(4, 6, 20, 16);
  Command(kCommandCut);
  EXPECT_EQ(ClipboardImage()->GetPixel(0, 0), kInk);
  EXPECT_EQ(CurrentCell()->GetPixel(4, 6), 0);
  EXPECT_EQ(CurrentCell()->GetPixel(3, 6), kInk);
  EXPECT_EQ(Marks(), "mit");
  EXPECT_FALSE(Cut()->undoRect.IsEmpty());
  Command(kCommandUndo);
  EXPECT_EQ(CurrentCell()->GetPixel(4, 6), kInk);
}

// Playing.

TEST_F(DocumentCommands, PlayCommitsAndRepaints) {
  MakeCut();
  Type(frame->commentEdit, "typed");
  SpoilView();
  Command(kCommandPlay);
  EXPECT_STREQ(CurrentFrame()->comment, "typed");
  EXPECT_TRUE(WasRepainted());
  EXPECT_TRUE(platform::IsShown(frame->animationWindow.window));
  EXPECT_EQ(platform::headless::CurrentCursor(), platform::CursorShape::kArrow);
  Command(kCommandStop);
  EXPECT_FALSE(platform::IsShown(frame->animationWindow.window));
}

// Options of the tools need no cut.

TEST_F(DocumentCommands, GridOfTheTools) {
  Command(kCommandSnapGrid, kGridDialog, {{kGridWidthEdit, "8"}, {kGridHeightEdit, "16"}});
  EXPECT_EQ(gridWidth, 8);
  EXPECT_EQ(gridHeight, 16);
  CancelledCommand(kCommandSnapGrid, kGridDialog, {{kGridWidthEdit, "2"}});
  EXPECT_EQ(gridWidth, 8);
}

TEST_F(DocumentCommands, MaskOfTheTools) {
  Command(kCommandMask, kMaskDialog, {{kMaskTransparentCheck, "on"}, {kMaskLineBlackCheck, "on"}});
  EXPECT_EQ(maskFlags, 257u);
  CancelledCommand(kCommandMask, kMaskDialog, {{kMaskClearButton, "click"}});
  EXPECT_EQ(maskFlags, 257u);
}

TEST_F(DocumentCommands, FontOfTheTextTool) {
  Command(kCommandFont, kFontDialog, {{kFontSizeEdit, "48"}, {kFontSpacingEdit, "6"}, {kFontWeightEdit, "700"}});
  EXPECT_EQ(textToolFont.size, 48);
  EXPECT_EQ(textToolFont.spacing, 6);
  EXPECT_EQ(textToolFont.weight, 700);
  CancelledCommand(kCommandFont, kFontDialog, {{kFontSizeEdit, "10"}});
  EXPECT_EQ(textToolFont.size, 48);
}

TEST_F(DocumentCommands, PenShape) {
  currentPen.shape = 5;
  penSign = -1;
  Command(kCommandSquarePen);
  EXPECT_EQ(currentPen.shape, 9);
  EXPECT_EQ(penSign, 1);
}

TEST_F(DocumentCommands, TransparentColorIsChosenAndSwitchedOff) {
  EXPECT_FALSE(clipTransparent);
  platform::headless::QueueColor(0x12, 0xAB, 0xFE);
  Command(kCommandTransparentColor);
  EXPECT_TRUE(clipTransparent);
  EXPECT_EQ(clipTransparentColor, 0xFEAB12u);
  EXPECT_EQ(Setting(settings::kPasteTransparentColor), "#12ABFE");
  EXPECT_EQ(Setting(settings::kPasteTransparent), "1");
  Command(kCommandTransparentColor);  // no dialog comes up
  EXPECT_FALSE(clipTransparent);
  EXPECT_EQ(clipTransparentColor, 0xFEAB12u);
  EXPECT_EQ(Setting(settings::kPasteTransparent), "0");
  EXPECT_EQ(Setting(settings::kPasteTransparentColor), "#12ABFE");
}

TEST_F(DocumentCommands, ACancelledTransparentColorChangesNothing) {
  platform::headless::QueueColorCancel();
  Command(kCommandTransparentColor);
  EXPECT_FALSE(clipTransparent);
  EXPECT_FALSE(Exists("sorvel.ini"));
}

// Drawing.

TEST_F(DocumentCommands, RandomDotsOverTheWholeCell) {
  MakeCut();
  currentPen = PenSpec{7, 0, 0, 1};
  ClearMarks();
  Command(kCommandRandomDots, kRandomDotsDialog, {{kDotGapEdit, "1"}});
  for (int32_t x = 0; x < 40; ++x) EXPECT_EQ(CurrentCell()->GetPixel(x, 29), 1) << x;
  EXPECT_EQ(Cut()->undoRect, (Rect{0, 0, 40, 30}));
  EXPECT_EQ(Marks(), "mit");
  EXPECT_TRUE(ViewIsCurrent());
  Command(kCommandUndo);
  EXPECT_EQ(CurrentCell()->GetPixel(0, 0), 0);
}

TEST_F(DocumentCommands, RandomDotsWithinTheSelectionWhateverTheTool) {
  MakeCut();
  currentPen = PenSpec{7, 0, 0, 1};
  Select(4, 6, 20, 16);
  Rect area;
  ASSERT_TRUE(Cut()->ToolArea(&area));
  Command(kCommandRandomDots, kRandomDotsDialog, {{kDotGapEdit, "1"}});
  EXPECT_EQ(Cut()->undoRect, area);
  EXPECT_EQ(CurrentCell()->GetPixel(3, 6), 0);
  EXPECT_EQ(CurrentCell()->GetPixel(4, 6), 1);
  EXPECT_EQ(CurrentCell()->GetPixel(4, 5), 0);
  EXPECT_TRUE(ViewIsCurrent());
}

TEST_F(DocumentCommands, GridLinesLeaveTheSnapGrid) {
  MakeCut();
  currentPen = PenSpec{7, 0, 0, 1};
  Command(kCommandDrawGrid, kGridDialog, {{kGridWidthEdit, "10"}, {kGridHeightEdit, "15"}});
  EXPECT_NE(CurrentCell()->GetPixel(10, 3), 0);
  EXPECT_NE(CurrentCell()->GetPixel(3, 15), 0);
  EXPECT_EQ(CurrentCell()->GetPixel(5, 3), 0);
  EXPECT_EQ(gridWidth, 1);
  EXPECT_EQ(gridHeight, 1);
  EXPECT_TRUE(ViewIsCurrent());
}

TEST_F(DocumentCommands, DrawingOnABlankRecordAsksNothing) {
  MakeCut();
  Command(kCommandBlankCell);
  ClearMarks();
  Command(kCommandRandomDots);
  Command(kCommandDrawGrid);
  EXPECT_EQ(Marks(), "");
}

TEST_F(DocumentCommands, CancelledDrawingChangesNothing) {
  MakeCut();
  ClearMarks();
  CancelledCommand(kCommandRandomDots, kRandomDotsDialog);
  CancelledCommand(kCommandDrawGrid, kGridDialog);
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
  } switches[] = {{kCommandShowPrevious, kOnionPrevious, ""},
                  {kCommandShowNext, kOnionNext, ""},
                  {kCommandDimOthers, kDimOthers, ""},
                  {kCommandCurrentCellOnly, kCurrentCellOnly, "i"}};
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
  Command(kCommandMuraRemoval);
  EXPECT_NE(muraRemoval, before);
  EXPECT_FALSE(WasRepainted());
  Command(kCommandMuraRemoval);
  EXPECT_EQ(muraRemoval, before);
}

TEST_F(DocumentCommands, LineEmphasisBelongsToTheWindow) {
  MakeCut();
  Command(kCommandLineEmphasis);
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
  for (const int32_t tool : {kToolFreePen, kToolEraser}) {
    SCOPED_TRACE(tool);
    MakeCut();
    Command(tool);
    Mouse(platform::kMessageLeftDown, 5, 5);
    Mouse(platform::kMessageMouseMove, 10, 5);
    FileCommand(kCommandSaveCutAs, folder.Path("a.cut"));
    ASSERT_FALSE(Cut()->Has(kModified));
    Mouse(platform::kMessageMouseMove, 10, 20);
    Mouse(platform::kMessageLeftUp, 10, 20);
    EXPECT_EQ(Marks(), "mit");
  }
}

TEST_F(CommandsAmongStrokes, InkMovedAfterASaveWithTheButtonDownIsStillToBeSaved) {
  MakeCut();
  CurrentCell()->FillRect(4, 4, 4, 4, kToneBlack);
  Command(kToolAreaSelect);
  Drag(2, 2, 12, 12);
  Mouse(platform::kMessageLeftDown, 6, 6);
  FileCommand(kCommandSaveCutAs, folder.Path("a.cut"));
  ASSERT_FALSE(Cut()->Has(kModified));
  Mouse(platform::kMessageMouseMove, 16, 10);
  Mouse(platform::kMessageLeftUp, 16, 10);
  ASSERT_EQ(CurrentCell()->GetPixel(15, 9), kToneBlack);
  EXPECT_EQ(Marks(), "mit");
}

TEST_F(CommandsAmongStrokes, AMovedSelectionTakesNoInkOfAnotherToolBack) {
  MakeCut();
  CurrentCell()->FillRect(4, 4, 4, 4, kToneBlack);
  Command(kToolAreaSelect);
  Drag(2, 2, 12, 12);
  Drag(6, 6, 16, 10);
  ASSERT_EQ(CurrentCell()->GetPixel(15, 9), kToneBlack);
  Command(kToolFreePen);
  Drag(30, 20, 35, 20);
  ASSERT_NE(CurrentCell()->GetPixel(30, 20), kTransparent);
  Command(kToolAreaSelect);
  Mouse(platform::kMessageRightUp, 20, 15);
  Mouse(platform::kMessageLeftDown, 20, 15);
  EXPECT_NE(CurrentCell()->GetPixel(30, 20), kTransparent);
}

}  // namespace
}  // namespace sorvel::testshell
