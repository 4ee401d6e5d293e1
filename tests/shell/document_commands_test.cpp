#include "shell/shell_fixture.h"

#include "resources/ids.h"

namespace sorvel::testshell {
namespace {

// What commands leave as it is, and what they do to memory, cursors and windows. CommandRows has what each command
// commits, repaints and marks; what each does to the document is tested on the whole program.
class DocumentCommands : public ShellTest {};

TEST_F(DocumentCommands, DeleteFrameOfTheOnlyFrameDoesNothing) {
  MakeCut();
  Type(frame->frameTimeEdit, "9");
  SpoilView();
  Command(kCommandDeleteFrame);
  EXPECT_EQ(Cut()->frames.Count(), 1);
  EXPECT_EQ(TextOf(frame->frameTimeEdit), "9");
  EXPECT_FALSE(WasRepainted());
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

TEST_F(DocumentCommands, UndoWithoutAnythingToUndoDoesNothing) {
  MakeCut();
  ClearMarks();
  SpoilView();
  Command(kCommandUndo);
  EXPECT_EQ(Marks(), "");
  EXPECT_FALSE(WasRepainted());
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
