#include "shell/sheet_window.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "foundation/byte_stream.h"
#include "shell/commands.h"
#include "shell/shell_fixture.h"

namespace sorvel::testshell {
namespace {

namespace headless = platform::headless;

class SheetWindowTest : public ShellTest {
 protected:
  SheetWindow& Sheet() { return frame->sheetWindow; }
  platform::WindowHandle Window() { return Sheet().window; }

  // A cut of layers A and B with five cells each and these frames, the first of them current, and its sheet.
  void Open(const std::vector<int32_t>& times) {
    MakeCut();
    AddLayer("B");
    for (int32_t layer = 0; layer < 2; ++layer) testdoc::NumberCells(Cut()->layers.At(layer), 5);
    MakeFrames(static_cast<int32_t>(times.size()));
    for (size_t i = 0; i < times.size(); ++i) Cut()->frames.At(static_cast<int32_t>(i))->time = times[i];
    frame->RefreshPanels(Cut());
    Command(kCommandFirstFrame);
    Command(kCommandSheet);
    ClearMarks();
  }

  Point Middle(int32_t column, int64_t row) {
    const Bounds square = Sheet().RevealSquare(column, row);
    return {(square.left + square.right) / 2, (square.top + square.bottom) / 2};
  }
  void Mouse(uint32_t message, Point place, uintptr_t keys = 0) {
    platform::Send(Window(), message, keys, platform::PackPoint(place));
  }
  void Click(int32_t column, int64_t row, uintptr_t keys = 0) {
    Mouse(platform::kMessageLeftDown, Middle(column, row), keys);
    Mouse(platform::kMessageLeftUp, Middle(column, row), keys);
  }
  void Select(int32_t column, int64_t first, int64_t last) {
    Mouse(platform::kMessageLeftDown, Middle(column, first));
    Mouse(platform::kMessageMouseMove, Middle(column, last));
    Mouse(platform::kMessageLeftUp, Middle(column, last));
  }
  // Drags the end of the frame whose last row this is.
  void Drag(int32_t column, int64_t row, int32_t rows) {
    const Bounds square = Sheet().RevealSquare(column, row);
    const Point from = {(square.left + square.right) / 2, square.bottom - 1};
    const Point to = {from.x, square.bottom + rows * square.Height()};
    Mouse(platform::kMessageLeftDown, from);
    Mouse(platform::kMessageMouseMove, to);
    Mouse(platform::kMessageLeftUp, to);
  }
  void TypeText(const std::string& text) {
    for (const char byte : text) {
      platform::Send(Window(), platform::kMessageChar, static_cast<unsigned char>(byte), 0);
    }
  }
  void Enter() { Command(kCommandFocusForward); }
  void Press(int32_t key, bool shift = false) {
    headless::HoldKeys(shift ? platform::kKeyShift : 0u);
    platform::Send(Window(), platform::kMessageKeyDown, static_cast<uintptr_t>(key), 0);
    headless::HoldKeys(0);
  }

  // What the columns show, a letter a row.
  std::string Rows() {
    std::string rows;
    for (int32_t column = 0; column < static_cast<int32_t>(Sheet().Sheet()->Columns().size()); ++column) {
      for (int64_t row = 0; row < Sheet().Sheet()->Rows(); ++row) {
        const SheetSquare square = Sheet().Sheet()->SquareAt(column, row);
        rows += square.mark == SheetMark::kCell    ? std::to_string(square.cell + 1)
                : square.mark == SheetMark::kBlank ? "x"
                : square.mark == SheetMark::kNone  ? "-"
                                                   : "|";
      }
      rows += " ";
    }
    return rows;
  }
  // Frame, record and row of the cursor.
  std::string Place() {
    return std::to_string(Cut()->currentFrame) + "/" + std::to_string(CurrentFrame()->currentRecord) + " " +
           std::to_string(Sheet().FirstSelected()) + "-" + std::to_string(Sheet().LastSelected());
  }
  std::string Bytes() {
    ChunkStream stream(1 << 16);
    const uint32_t marks = Cut()->stateFlags;
    EXPECT_TRUE(Cut()->Save(&stream));
    Cut()->stateFlags = marks;
    Buffer<uint8_t> bytes;
    int32_t size = 0;
    EXPECT_TRUE(ReadWholeStream(stream, &bytes, &size));
    return std::string(reinterpret_cast<const char*>(bytes.Data()), static_cast<size_t>(size));
  }
};

// The window.

TEST_F(SheetWindowTest, TheCommandOpensAndClosesIt) {
  EXPECT_FALSE(Sheet().IsOpen());
  EXPECT_EQ(headless::FindAccelerator('T', false, true), kCommandSheet);
  Command(kCommandSheet);
  EXPECT_TRUE(Sheet().IsOpen());
  EXPECT_EQ(platform::FocusedWindow(), Window());
  EXPECT_EQ(TextOf(Window()), ShiftJis("タイムシート"));
  MakeCut();
  EXPECT_EQ(TextOf(Window()), ShiftJis("タイムシート - Cut (0+1)"));
  Command(kCommandSheet);
  EXPECT_FALSE(Sheet().IsOpen());
  EXPECT_EQ(platform::FocusedWindow(), Cut()->window);
}

TEST_F(SheetWindowTest, ItFollowsTheActiveCut) {
  Open({2, 1});
  EXPECT_EQ(Rows(), "1|| 1|| ");
  CutWindow* first = Cut();
  MakeCut();
  EXPECT_EQ(Rows(), "1 ");
  platform::ActivateMdiChild(frame->mdiClient, first->window);
  EXPECT_EQ(Rows(), "1|| 1|| ");
  CloseCuts();
  EXPECT_EQ(Sheet().Sheet(), nullptr);
  Command(kCommandSheet);
  EXPECT_FALSE(Sheet().IsOpen());
}

TEST_F(SheetWindowTest, CommandsShowAtOnce) {
  Open({2, 1});
  Command(kCommandNextCell);
  EXPECT_EQ(Rows(), "1|| 2|1 ");
  Command(kCommandBlankCell);
  EXPECT_EQ(Rows(), "1|| x|1 ");
  Command(kCommandNextFrame);
  EXPECT_EQ(Place(), "1/1 2-2");
  Command(kCommandAddFrame);
  EXPECT_EQ(Rows(), "1||| x|1| ");
  Command(kCommandLayerDown);
  EXPECT_EQ(Rows(), "x|1| 1||| ");
}

TEST_F(SheetWindowTest, ThePlaceIsWrittenOnlyAfterAMove) {
  Command(kCommandSheet);
  Command(kCommandSheet);
  Command(kCommandSheet);
  EXPECT_EQ(Setting(settings::kSheetPlace), "");
  platform::MoveWindow(Window(), 30, 40, 300, 500, true);
  platform::Send(Window(), platform::kMessageMoved, 0, 0);
  EXPECT_EQ(Setting(settings::kSheetPlace), "30, 40, 300, 500");
  EXPECT_NE(Contents("sorvel.ini").find("[sheet]"), std::string::npos);
}

TEST_F(SheetWindowTest, ThePlaceIsReadAndKeptOnTheScreen) {
  WriteSettingText(settings::kSheetPlace, "50, 60, 321, 432");
  Command(kCommandSheet);
  EXPECT_EQ(platform::ScreenBounds(Window()), (Bounds{50, 60, 371, 492}));
  platform::DestroyWindow(Window());
  WriteSettingText(settings::kSheetPlace, "9000, -70, 1, 99999");
  Command(kCommandSheet);
  const Bounds place = platform::ScreenBounds(Window());
  EXPECT_LT(place.left, platform::ScreenSize().x);
  EXPECT_GE(place.top, 0);
  EXPECT_GE(place.Width(), 100);
  EXPECT_LE(place.Height(), platform::ScreenSize().y);
}

// Going.

TEST_F(SheetWindowTest, AClickGoesToTheFrameAndItsRecord) {
  Open({2, 3, 1});
  Click(0, 3);
  EXPECT_EQ(Place(), "1/0 3-3");
  EXPECT_EQ(TextOf(frame->keyFrameCheck), "2(3f)");
  EXPECT_EQ(platform::SelectedListLine(frame->layerList), 0);
  Click(1, 5);
  EXPECT_EQ(Place(), "2/1 5-5");
  EXPECT_EQ(Marks(), "");
}

TEST_F(SheetWindowTest, KeysMove) {
  Open({2, 3, 1});
  EXPECT_EQ(Place(), "0/1 0-0");
  Press(platform::kKeyDown);
  EXPECT_EQ(Place(), "0/1 1-1");
  Press(platform::kKeyDown);
  EXPECT_EQ(Place(), "1/1 2-2");
  Press(platform::kKeyLeft);
  EXPECT_EQ(Place(), "1/0 2-2");
  Press(platform::kKeyLeft);
  EXPECT_EQ(Place(), "1/0 2-2");
  Press(platform::kKeyEnd);
  EXPECT_EQ(Place(), "2/0 5-5");
  Press(platform::kKeyDown);
  EXPECT_EQ(Place(), "2/0 5-5");
  Press(platform::kKeyPageUp);
  EXPECT_EQ(Place(), "0/0 0-0");
  Press(platform::kKeyDown, true);
  Press(platform::kKeyDown, true);
  EXPECT_EQ(Place(), "1/0 0-2");
  Press(platform::kKeyDown);
  EXPECT_EQ(Place(), "1/0 3-3");
  Press(platform::kKeyHome);
  EXPECT_EQ(Place(), "0/0 0-0");
  EXPECT_EQ(Marks(), "");
}

TEST_F(SheetWindowTest, WhatIsTypedInAPanelIsStoredBeforeAFrameIsLeft) {
  Open({2, 3});
  platform::SetFocusTo(frame->brightnessEdit);
  Type(frame->brightnessEdit, "30");
  Click(0, 2);
  EXPECT_EQ(Cut()->frames.At(0)->DecodedBrightness(), 30);
  EXPECT_EQ(Cut()->frames.At(1)->DecodedBrightness(), 50);
}

// Typing.

TEST_F(SheetWindowTest, EnterCommitsANumber) {
  Open({2, 2});
  Click(0, 2);
  TypeText("3");
  EXPECT_EQ(Rows(), "1||| 1||| ");
  EXPECT_EQ(Sheet().Typed(), "3");
  Enter();
  EXPECT_EQ(Rows(), "1|3| 1||| ");
  EXPECT_EQ(Marks(), "mit");
  EXPECT_EQ(LayerLines(), "*A (3/5)|B (1/5)|");
  EXPECT_TRUE(WasRepainted());
  EXPECT_EQ(Place(), "1/0 2-2");
}

TEST_F(SheetWindowTest, MovingAwayCommits) {
  Open({1, 1, 1, 1});
  Click(0, 0);
  TypeText("2");
  Press(platform::kKeyDown);
  TypeText("3");
  Click(1, 3);
  TypeText("4");
  platform::SetFocusTo(Cut()->window);
  EXPECT_EQ(Rows(), "231| 1||4 ");
  platform::SetFocusTo(Window());
  TypeText("5");
  Command(kCommandFirstFrame);
  EXPECT_EQ(Rows(), "231| 1||5 ");
  EXPECT_EQ(Place(), "0/1 0-0");
}

TEST_F(SheetWindowTest, EscapeCancelsAndBackspaceTakesADigitBack) {
  Open({2, 2});
  TypeText("3");
  Command(kCommandStop);
  EXPECT_EQ(Sheet().Typed(), "");
  TypeText("34\b");
  EXPECT_EQ(Sheet().Typed(), "3");
  Command(kCommandStop);
  Enter();
  EXPECT_EQ(Rows(), "1||| 1||| ");
  EXPECT_EQ(Marks(), "");
}

TEST_F(SheetWindowTest, DigitsOfFullWidthCount) {
  Open({2});
  TypeText(ShiftJis("あ４x"));
  EXPECT_EQ(Sheet().Typed(), "4");
  Enter();
  EXPECT_EQ(Rows(), "1| 4| ");
}

TEST_F(SheetWindowTest, ANumberInsideAFrameBeginsThere) {
  Open({4, 1});
  Click(0, 2);
  TypeText("2");
  Enter();
  EXPECT_EQ(Rows(), "1|2|1 1|||| ");
  EXPECT_EQ(Cut()->frames.Count(), 3);
  EXPECT_EQ(Place(), "1/0 2-2");
}

TEST_F(SheetWindowTest, SeveralSquaresAreExposedAtOnce) {
  Open({8});
  for (int32_t i = 0; i < 4; ++i) {
    Select(0, 2 * i, 2 * i + 1);
    TypeText(std::to_string(i + 1));
    Enter();
  }
  EXPECT_EQ(Rows(), "1|2|3|4| 1||||||| ");
  Click(1, 3);
  Press(platform::kKeyDown, true);
  Press(platform::kKeyDown, true);
  TypeText("0");
  Enter();
  EXPECT_EQ(Rows(), "1|2|3|4| 1||x||1| ");
}

TEST_F(SheetWindowTest, DeleteBlanks) {
  Open({2, 2});
  Click(1, 2);
  Press(platform::kKeyDelete);
  EXPECT_EQ(Rows(), "1||| 1|x| ");
  EXPECT_EQ(Marks(), "mit");
}

TEST_F(SheetWindowTest, ANumberBeyondTheNextCellIsRefused) {
  Open({2});
  TypeText("7");
  Enter();
  EXPECT_EQ(Rows(), "1| 1| ");
  EXPECT_EQ(Marks(), "");
  EXPECT_EQ(headless::AlertCount(), 1);
  TypeText("6");
  Enter();
  EXPECT_EQ(Rows(), "1| 6| ");
  EXPECT_EQ(CurrentLayer()->cells.Count(), 6);
}

TEST_F(SheetWindowTest, NothingIsTypedWithoutALayer) {
  MakeCut(40, 30, false);
  Command(kCommandSheet);
  TypeText("1");
  Enter();
  Press(platform::kKeyDelete);
  Press(platform::kKeyRight);
  Press(platform::kKeyDown);
  EXPECT_EQ(Rows(), "");
  EXPECT_EQ(Cut()->frames.Count(), 1);
}

// Dragging.

TEST_F(SheetWindowTest, DraggingTheEndOfAHoldChangesTheTime) {
  Open({2, 3});
  Drag(0, 1, 2);
  EXPECT_EQ(Cut()->frames.At(0)->time, 4);
  EXPECT_EQ(Marks(), "mt");
  EXPECT_EQ(TextOf(frame->frameTimeEdit), "4");
  Drag(1, 6, -9);
  EXPECT_EQ(Cut()->frames.At(1)->time, 1);
  EXPECT_EQ(Place(), "1/1 4-4");
}

TEST_F(SheetWindowTest, EachEditIsAStepThatIsTakenBack) {
  Open({2, 2, 2});
  Cut()->RecordStep();
  const size_t steps = Cut()->undoHistory.StepsBack();
  const std::string before = Bytes();
  const std::string rows = Rows();
  Click(0, 2);
  TypeText("3");
  Enter();
  Drag(0, 1, 1);
  const std::string after = Bytes();
  EXPECT_EQ(Cut()->undoHistory.StepsBack(), steps + 2);
  Command(kCommandStepBack);
  Command(kCommandStepBack);
  EXPECT_EQ(Bytes(), before);
  EXPECT_EQ(Rows(), rows);
  Command(kCommandStepForward);
  Command(kCommandStepForward);
  EXPECT_EQ(Bytes(), after);
  // A number that is still being typed is a step before another one is taken back.
  platform::SetFocusTo(Window());
  Click(0, 0);
  TypeText("4");
  Command(kCommandStepBack);
  EXPECT_EQ(Bytes(), after);
}

TEST_F(SheetWindowTest, AClickOnTheEndOfAHoldOnlyGoesThere) {
  Open({2, 3});
  Drag(0, 4, 0);
  EXPECT_EQ(Place(), "1/0 4-4");
  EXPECT_EQ(Marks(), "");
}

TEST_F(SheetWindowTest, EscapeEndsADrag) {
  Open({2, 3});
  const Bounds square = Sheet().RevealSquare(0, 1);
  Mouse(platform::kMessageLeftDown, {square.left + 5, square.bottom});
  Mouse(platform::kMessageMouseMove, {square.left + 5, square.bottom + 60});
  Command(kCommandStop);
  Mouse(platform::kMessageLeftUp, {square.left + 5, square.bottom + 60});
  EXPECT_EQ(Cut()->frames.At(0)->time, 2);
  EXPECT_EQ(Marks(), "");
}

TEST_F(SheetWindowTest, TheMouseShowsWhatCanBeDragged) {
  Open({2, 3});
  const Bounds square = Sheet().RevealSquare(0, 1);
  const auto shapeAt = [&](Point place) {
    headless::SetCursorPlace(platform::ClientToScreen(Window(), place));
    platform::Send(Window(), platform::kMessageSetCursor, 0, 1);
    return headless::CurrentCursor();
  };
  EXPECT_EQ(shapeAt({square.left + 5, square.bottom}), platform::CursorShape::kSizeNorthSouth);
  EXPECT_EQ(shapeAt({square.left + 5, square.top}), platform::CursorShape::kArrow);
}

TEST_F(SheetWindowTest, ASquareThatIsTypedIntoGoesBackAlone) {
  Open({2, 2});
  Click(0, 2);
  TypeText("2");
  Enter();
  TypeText("3");
  Command(kCommandStepBack);
  EXPECT_EQ(Sheet().Typed(), "");
  EXPECT_EQ(Rows(), "1|2| 1||| ");
  Command(kCommandStepBack);
  EXPECT_EQ(Rows(), "1||| 1||| ");
}

// Pictures.

TEST_F(SheetWindowTest, PicturesAreMadeOneByOneWhenTheyAreWanted) {
  Open({2, 2, 2});
  platform::Send(Window(), platform::kMessageRightUp, 0, 0);
  EXPECT_EQ(headless::OpenedPopup().count, 1);
  EXPECT_EQ(headless::OpenedPopup().owner, frame->frameWindow);
  const auto darkest = [this] {
    headless::PaintInvalid(Window());
    int32_t found = 255;
    // The first picture stands at the right of the marks.
    for (int32_t y = 27; y < 60; ++y) {
      for (int32_t x = 136; x < 178; ++x) {
        const platform::ColorEntry& pixel = Window()->pixels[static_cast<size_t>(y * Window()->width + x)];
        found = std::min<int32_t>(found, pixel.red);
      }
    }
    return found;
  };
  Command(kCommandSheetPictures);
  EXPECT_TRUE(Sheet().HasPictures());
  Cut()->layers.At(0)->CellAt(0)->Fill(kToneBlack);
  Cut()->layers.At(1)->CellAt(0)->Fill(kTransparent);
  EXPECT_GT(darkest(), 100);
  EXPECT_TRUE(headless::RunWindowTimers());
  EXPECT_LT(darkest(), 20);
  EXPECT_TRUE(headless::RunWindowTimers());
  EXPECT_FALSE(headless::RunWindowTimers());
}

// The edits of the sheet and those of the commands leave the same cut: its bytes and its marks.
TEST_F(SheetWindowTest, RandomEditsEqualTheCommands) {
  for (uint32_t round = 0; round < 60; ++round) {
    std::mt19937 engine(round);
    const auto number = [&engine](int32_t lowest, int32_t highest) {
      return std::uniform_int_distribution<int32_t>(lowest, highest)(engine);
    };
    std::vector<int32_t> times;
    const int32_t count = number(1, 6);
    for (int32_t i = 0; i < count; ++i) times.push_back(number(1, 4));
    const bool hasKeys = number(0, 2) == 0;
    const auto make = [&] {
      MakeCut();
      AddLayer("B");
      for (int32_t layer = 0; layer < 2; ++layer) testdoc::NumberCells(Cut()->layers.At(layer), 5);
      MakeFrames(count);
      for (int32_t i = 0; i < count; ++i) Cut()->frames.At(i)->time = times[static_cast<size_t>(i)];
      if (hasKeys) Command(kCommandAllKeyFrames);
      Command(kCommandFirstFrame);
      frame->RefreshPanels(Cut());
      ClearMarks();
    };
    make();
    CutWindow* bySheet = Cut();
    make();
    CutWindow* byCommands = Cut();
    if (!Sheet().IsOpen()) Command(kCommandSheet);
    // By commands: goes to a frame and a record as the keys and the list of layers do.
    const auto go = [&](int32_t index, int32_t record) {
      Command(kCommandFirstFrame);
      for (int32_t i = 0; i < index; ++i) Command(kCommandNextFrame);
      headless::SelectLines(frame->layerList, {record});
    };
    const auto setTime = [&](int32_t time) {
      platform::SetFocusTo(frame->frameTimeEdit);
      Type(frame->frameTimeEdit, std::to_string(time));
      platform::SetFocusTo(Cut()->window);
    };
    const auto divide = [&](int32_t index, int32_t firstPart) {
      go(index, 0);
      const int32_t whole = Cut()->EffectiveTime(index);
      Command(kCommandAddFrame);
      setTime(whole - firstPart);
      if (Cut()->frames.At(index)->IsKey()) return;
      Command(kCommandPreviousFrame);
      setTime(firstPart);
    };
    for (int32_t step = 0; step < 8; ++step) {
      platform::ActivateMdiChild(frame->mdiClient, bySheet->window);
      TimeSheet* sheet = Sheet().Sheet();
      const int64_t row = number(0, static_cast<int32_t>(sheet->Rows()) - 1);
      const int32_t index = sheet->FrameOfRow(row);
      const int32_t offset = static_cast<int32_t>(row - sheet->FrameAt(index).firstRow);
      const int32_t length = sheet->FrameAt(index).Rows();
      const int32_t column = number(0, 1);
      ClearMarks();
      if (number(0, 3) == 0 && !hasKeys) {
        const int32_t rows = number(1, 5);
        Drag(column, sheet->LastRowOf(index), rows - length);
        platform::ActivateMdiChild(frame->mdiClient, byCommands->window);
        ClearMarks();
        go(index, column);
        setTime(rows);
      } else {
        const int32_t cell = number(0, 5);
        const int32_t shown = sheet->CellOf(index, column);
        Click(column, row);
        TypeText(std::to_string(cell));
        Enter();
        platform::ActivateMdiChild(frame->mdiClient, byCommands->window);
        ClearMarks();
        if (shown != cell - 1) {
          if (offset > 0) divide(index, offset);
          go(offset > 0 ? index + 1 : index, column);
          const bool isBlank = IsCurrentCellBlank(Cut());
          if (isBlank != (cell == 0)) Command(kCommandBlankCell);
          if (cell > 0) {
            Command(kCommandFirstCell);
            for (int32_t i = 1; i < cell; ++i) Command(kCommandNextCell);
          }
        }
      }
      const std::string commandMarks = Marks();
      const std::string commandBytes = Bytes();
      platform::ActivateMdiChild(frame->mdiClient, bySheet->window);
      ASSERT_EQ(Marks(), commandMarks) << round << " " << step;
      ASSERT_EQ(Bytes(), commandBytes) << round << " " << step;
    }
    CloseCuts();
  }
}

}  // namespace
}  // namespace sorvel::testshell
