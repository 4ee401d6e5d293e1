// The steps of undo as the user takes them: what is one step, and what the window shows afterwards.

#include <gtest/gtest.h>

#include "cutwindow/edit_scope.h"
#include "shell/shell_fixture.h"

namespace sorvel::testshell {
namespace {

class UndoCommands : public ShellTest {
 protected:
  void SetUp() override {
    ShellTest::SetUp();
    platform::headless::SetClientSize(40, 30);
    MakeCut();
    Command(kToolFreePen);
  }
  void TearDown() override {
    CloseCuts();
    ShellTest::TearDown();
  }

  void Mouse(uint32_t message, int32_t x, int32_t y, uintptr_t keys = 0) {
    platform::Send(Cut()->window, message, keys, platform::PackPoint({x, y}));
  }
  void Press(int32_t x, int32_t y, uintptr_t keys = 0) {
    Mouse(platform::kMessageLeftDown, x, y, keys | platform::kKeyLeftButton);
  }
  void Move(int32_t x, int32_t y) { Mouse(platform::kMessageMouseMove, x, y, platform::kKeyLeftButton); }
  void Release(int32_t x, int32_t y, uintptr_t keys = 0) { Mouse(platform::kMessageLeftUp, x, y, keys); }
  void Click(int32_t x, int32_t y, uintptr_t keys = 0) {
    Press(x, y, keys);
    Release(x, y, keys);
  }
  void Drag(int32_t x, int32_t y, int32_t toX, int32_t toY) {
    Press(x, y);
    Move((x + toX) / 2, (y + toY) / 2);
    Move(toX, toY);
    Release(toX, toY);
  }
  void RightClick(int32_t x, int32_t y) {
    Mouse(platform::kMessageRightDown, x, y, platform::kKeyRightButton);
    Mouse(platform::kMessageRightUp, x, y);
  }
  void Key(int32_t key, bool shift = false) {
    const int32_t id = platform::headless::FindAccelerator(key, shift, true);
    if (id != 0) Command(id);
  }
  void Back() { Command(kCommandStepBack); }
  void Forward() { Command(kCommandStepForward); }
  size_t Steps() { return Cut()->undoHistory.StepsBack(); }
  std::string Drawing() { return testdoc::Picture(CurrentCell()); }
  bool IsBlank() {
    for (int32_t y = 0; y < CurrentCell()->height; ++y) {
      if (CurrentCell()->FindInk(0, y, CurrentCell()->width, 1) < CurrentCell()->width) return false;
    }
    return true;
  }
};

TEST_F(UndoCommands, ANewCutHasNoSteps) {
  EXPECT_EQ(Steps(), 0u);
  Back();
  EXPECT_EQ(Cut()->layers.Count(), 1);
}

TEST_F(UndoCommands, KeysTakeStrokesBackAndForward) {
  Drag(2, 2, 12, 12);
  const auto first = Drawing();
  Drag(20, 2, 30, 12);
  const auto second = Drawing();
  EXPECT_EQ(Steps(), 2u);
  Key('Z');
  EXPECT_EQ(Drawing(), first);
  EXPECT_TRUE(ViewIsCurrent());
  Key('Z');
  EXPECT_TRUE(IsBlank());
  EXPECT_TRUE(ViewIsCurrent());
  Key('Y');
  EXPECT_EQ(Drawing(), first);
  Key('Z', true);
  EXPECT_EQ(Drawing(), second);
  EXPECT_TRUE(ViewIsCurrent());
}

TEST_F(UndoCommands, AFocusedEditKeepsTheKeys) {
  Drag(2, 2, 12, 12);
  platform::SetFocusTo(frame->commentEdit);
  for (const bool shift : {false, true}) EXPECT_EQ(platform::headless::FindAccelerator('Z', shift, true), 0);
  EXPECT_EQ(platform::headless::FindAccelerator('Y', false, true), 0);
  EXPECT_EQ(platform::headless::FindAccelerator('N', false, true), kCommandNewCut);
  platform::SetFocusTo(frame->layerList);
  EXPECT_EQ(platform::headless::FindAccelerator('Z', false, true), kCommandStepBack);
}

TEST_F(UndoCommands, TwoHundredStrokesAndMoreComeBack) {
  for (int32_t i = 0; i < 300; ++i) {
    currentPen = {7, 0, 0, 2 + i % 2};
    Drag(1 + i % 37, 1 + i % 23, 1 + i * 7 % 37, 1 + i * 5 % 27);
  }
  const size_t steps = Steps();
  EXPECT_GE(steps, 290u);
  const auto last = Drawing();
  while (Steps() > 0) Back();
  EXPECT_TRUE(IsBlank());
  for (size_t i = 0; i < steps; ++i) Forward();
  EXPECT_EQ(Drawing(), last);
}

TEST_F(UndoCommands, ACurveIsOneStep) {
  Command(kToolCurve);
  for (const int32_t x : {2, 10, 18, 26, 34}) Click(x, x % 16 + 4);
  RightClick(36, 10);
  EXPECT_FALSE(IsBlank());
  EXPECT_EQ(Steps(), 1u);
  Back();
  EXPECT_TRUE(IsBlank());
}

TEST_F(UndoCommands, ACurveThatGoesOnEndsAndIsTakenBackWhole) {
  Command(kToolCurve);
  for (const int32_t x : {2, 10, 18, 26, 34}) Click(x, x % 16 + 4);
  Back();
  EXPECT_TRUE(IsBlank());
  // The next click begins another one.
  Click(5, 5);
  Click(20, 20);
  RightClick(20, 20);
  EXPECT_FALSE(IsBlank());
  EXPECT_EQ(Steps(), 1u);
}

TEST_F(UndoCommands, AChainOfLinesIsOneStep) {
  Command(kToolLine);
  Click(2, 2, platform::kKeyControl);
  for (const int32_t x : {10, 20, 30}) Click(x, 20 - x % 7);
  RightClick(30, 20);
  EXPECT_EQ(Steps(), 1u);
  Back();
  EXPECT_TRUE(IsBlank());
}

TEST_F(UndoCommands, ATextIsOneStep) {
  SetTextToolFont("Sans", 16, 4, 400);
  Command(kToolText);
  platform::headless::QueueDialog({kTextDialog, {{kTextDialogEdit, "A"}}, true});
  Click(5, 5);
  EXPECT_EQ(Steps(), 0u);
  Click(5, 5);
  EXPECT_FALSE(IsBlank());
  EXPECT_EQ(Steps(), 1u);
  Back();
  EXPECT_TRUE(IsBlank());
}

TEST_F(UndoCommands, APasteAndEachMoveOfItAreSteps) {
  Drag(2, 2, 12, 12);
  Command(kToolAreaSelect);
  Drag(1, 1, 14, 14);
  Command(kCommandCopy);
  Command(kCommandEraseCell);
  const auto empty = Drawing();
  Command(kCommandPaste);
  const auto pasted = Drawing();
  Drag(6, 6, 20, 10);
  const auto moved = Drawing();
  EXPECT_NE(moved, pasted);
  Back();
  EXPECT_EQ(Drawing(), pasted);
  EXPECT_EQ(Cut()->viewOptions & kFloatingPaste, 0u);
  Back();
  EXPECT_EQ(Drawing(), empty);
  Forward();
  Forward();
  EXPECT_EQ(Drawing(), moved);
}

TEST_F(UndoCommands, TheSingleUndoIsAStepAndComesBackWithTheOthers) {
  Drag(2, 2, 12, 12);
  const auto stroke = Drawing();
  Command(kCommandUndo);
  EXPECT_TRUE(IsBlank());
  EXPECT_EQ(Steps(), 2u);
  Back();
  EXPECT_EQ(Drawing(), stroke);
  Command(kCommandUndo);
  EXPECT_TRUE(IsBlank());
}

TEST_F(UndoCommands, AStepInTheMiddleOfADragEndsTheDragFirst) {
  Drag(2, 2, 12, 12);
  const auto stroke = Drawing();
  Press(20, 5);
  Move(30, 5);
  Back();
  EXPECT_EQ(Drawing(), stroke);
  EXPECT_TRUE(ViewIsCurrent());
  // What is left of the drag draws nothing, whatever the tool.
  Move(30, 20);
  Release(30, 20);
  EXPECT_EQ(Drawing(), stroke);
  EXPECT_EQ(Steps(), 1u);
  Drag(20, 5, 30, 5);
  EXPECT_EQ(Steps(), 2u);
}

TEST_F(UndoCommands, TheRestOfAnEndedDragBeginsNoLine) {
  Drag(2, 2, 12, 12);
  Command(kToolLine);
  Press(20, 5);
  Move(30, 5);
  Back();
  const uint32_t saves = Cut()->undoSaves;
  Release(30, 20);
  EXPECT_EQ(Cut()->undoSaves, saves);
  Mouse(platform::kMessageMouseMove, 5, 20);
  Mouse(platform::kMessageLeftUp, 5, 20, platform::kKeyControl);
  EXPECT_EQ(Cut()->undoSaves, saves + 1) << "a click begins one again";
}

TEST_F(UndoCommands, AStrokeThatACommandInterruptsIsOneStep) {
  Press(2, 2);
  Move(8, 2);
  Command(kCommandPreview);
  Move(8, 12);
  Move(20, 12);
  Release(20, 12);
  EXPECT_EQ(Steps(), 1u);
  Back();
  EXPECT_TRUE(IsBlank());
}

TEST_F(UndoCommands, WhatIsTypedIsAStepOfItsOwn) {
  Drag(2, 2, 12, 12);
  Type(frame->commentEdit, "typed");
  Command(kCommandAddFrame);
  EXPECT_EQ(Steps(), 3u);
  Back();
  EXPECT_EQ(Cut()->frames.Count(), 1);
  EXPECT_STREQ(CurrentFrame()->comment, "typed");
  Back();
  EXPECT_STREQ(CurrentFrame()->comment, "");
  EXPECT_EQ(TextOf(frame->commentEdit), "");
  EXPECT_FALSE(IsBlank());
  // What is only typed yet is taken back before anything else, and can be taken forward.
  Type(frame->commentEdit, "more");
  Back();
  EXPECT_FALSE(IsBlank());
  EXPECT_EQ(TextOf(frame->commentEdit), "");
  Forward();
  EXPECT_EQ(TextOf(frame->commentEdit), "more");
}

TEST_F(UndoCommands, ATypedTimeAndTheStrokeAfterItAreTwoSteps) {
  platform::SetFocusTo(frame->frameTimeEdit);
  Type(frame->frameTimeEdit, "7");
  Drag(2, 2, 12, 12);
  EXPECT_EQ(CurrentFrame()->time, 7);
  EXPECT_EQ(Steps(), 2u);
  Back();
  EXPECT_EQ(CurrentFrame()->time, 7);
  Back();
  EXPECT_EQ(CurrentFrame()->time, 1);
  EXPECT_EQ(TextOf(frame->frameTimeEdit), "1");
}

TEST_F(UndoCommands, StepsPassAFrameWhoseValuesDoNotFitInThePanels) {
  Drag(2, 2, 12, 12);
  CurrentFrame()->brightness = 120;
  Cut()->RecordStep();
  frame->RefreshPanels(Cut());
  Drag(20, 2, 30, 12);
  for (int32_t i = 0; i < 3; ++i) Back();
  EXPECT_EQ(Steps(), 0u);
  EXPECT_TRUE(IsBlank());
}

TEST_F(UndoCommands, EachCutHasItsOwnSteps) {
  CutWindow* first = Cut();
  Drag(2, 2, 12, 12);
  CutWindow* second = MakeCut();
  Drag(2, 2, 12, 12);
  Drag(20, 2, 30, 12);
  EXPECT_EQ(Steps(), 2u);
  platform::ActivateMdiChild(frame->mdiClient, first->window);
  EXPECT_EQ(Steps(), 1u);
  Back();
  EXPECT_TRUE(IsBlank());
  platform::ActivateMdiChild(frame->mdiClient, second->window);
  EXPECT_FALSE(IsBlank());
  EXPECT_EQ(Steps(), 2u);
}

TEST_F(UndoCommands, TheViewGetsTheSizeOfTheCanvas) {
  Drag(2, 2, 12, 12);
  Command(kCommandCutProperties, kCutDialog, {{kCutWidthEdit, "60"}, {kCutHeightEdit, "20"}});
  EXPECT_EQ(Cut()->view.width, 60);
  Back();
  EXPECT_EQ(Cut()->width, 40);
  EXPECT_EQ(Cut()->view.width, 40);
  EXPECT_EQ(Cut()->view.height, 30);
  EXPECT_TRUE(ViewIsCurrent());
  Forward();
  EXPECT_EQ(Cut()->view.width, 60);
  EXPECT_TRUE(ViewIsCurrent());
}

TEST_F(UndoCommands, ThePanelsShowTheLayersAgain) {
  AddLayer("B");
  const std::string two = LayerLines();
  Command(kCommandDeleteLayer);
  EXPECT_NE(LayerLines(), two);
  Back();
  EXPECT_EQ(LayerLines(), two);
  Back();
  EXPECT_EQ(LayerLines(), "*A (1/1)|");
}

TEST_F(UndoCommands, StepsSurviveASave) {
  Drag(2, 2, 12, 12);
  FileCommand(kCommandSaveCutAs, folder.Path("a.cut"));
  EXPECT_FALSE(Cut()->Has(kModified));
  Back();
  EXPECT_TRUE(IsBlank());
  EXPECT_TRUE(Cut()->Has(kModified));
  EXPECT_TRUE(Cut()->Has(kImagesStale));
}

TEST_F(UndoCommands, LookingAroundIsNoStep) {
  MakeFrames(3);
  AddLayer("B");
  const size_t steps = Steps();
  for (const int32_t id : {kCommandFirstFrame, kCommandNextFrame, kCommandShowPrevious, kCommandCurrentCellOnly,
                           kToolEraser, kCommandCopy, kCommandPreview, kCommandStop}) {
    Command(id);
  }
  platform::headless::SelectLines(frame->layerList, {0});
  EXPECT_EQ(Steps(), steps);
}

TEST_F(UndoCommands, AnotherWindowMakesStepsByAScope) {
  {
    const EditScope edit(frame.get(), Cut());
    CurrentFrame()->time = 5;
    const EditScope inner(frame.get(), Cut());
    Cut()->AddFrame();
  }
  EXPECT_EQ(Steps(), 1u);
  Back();
  EXPECT_EQ(Cut()->frames.Count(), 1);
  EXPECT_EQ(CurrentFrame()->time, 1);
}

TEST_F(UndoCommands, ABoxOfAToolStandsWhereTheStepLeads) {
  Command(kToolLayerPosition);
  Drag(10, 10, 15, 14);
  EXPECT_EQ(CurrentFrame()->records.At(0)->x, 5);
  Back();
  EXPECT_EQ(CurrentFrame()->records.At(0)->x, 0);
  Drag(10, 10, 12, 10);
  EXPECT_EQ(CurrentFrame()->records.At(0)->x, 2);
}

}  // namespace
}  // namespace sorvel::testshell
