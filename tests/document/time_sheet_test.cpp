#include "document/time_sheet.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "support/test_document.h"

namespace sorvel {
namespace {

using testdoc::NumberCells;
using testdoc::Stack;

// A cut whose layers A, B and so on have nine cells each and a record in every frame, with nothing marked and the first
// frame current. Each frame is given by its time and a letter for each record: the number of its cell, x for a blank
// and - for a frame that lacks the layer.
class TimeSheetTest : public testing::Test {
 protected:
  void Make(const std::vector<std::pair<int32_t, std::string>>& frames) {
    for (size_t i = 0; i < frames[0].second.size(); ++i) {
      const char name[] = {static_cast<char>('A' + i), '\0'};
      NumberCells(cut.AddLayer(name, 4, 4, nullptr), 9);
    }
    for (const auto& [time, cells] : frames) {
      Frame* frame = cut.AddFrame();
      frame->time = time;
      for (size_t i = 0; i < cells.size(); ++i) {
        const int32_t cell = cells[i] == 'x' ? -1 : cells[i] - '1';
        if (cells[i] != '-') frame->AddRecord(cut.layers.At(static_cast<int32_t>(i)), cell, 10, 20);
      }
    }
    cut.currentFrame = 0;
    cut.stateFlags = 0;
  }

  // What a column shows, a letter a row: | and : are holds of a cell and of a blank.
  std::string Column(TimeSheet* sheet, int32_t column) {
    std::string squares;
    for (int64_t row = 0; row < sheet->Rows(); ++row) {
      const SheetSquare square = sheet->SquareAt(column, row);
      switch (square.mark) {
        case SheetMark::kNone:
          squares += '-';
          break;
        case SheetMark::kCell:
          squares += std::to_string(square.cell + 1);
          break;
        case SheetMark::kHold:
          squares += '|';
          break;
        case SheetMark::kBlank:
          squares += 'x';
          break;
        case SheetMark::kBlankHold:
          squares += ':';
          break;
      }
    }
    return squares;
  }

  std::string Times() {
    std::string times;
    for (int32_t i = 0; i < cut.frames.Count(); ++i) times += std::to_string(cut.frames.At(i)->time) + " ";
    return times;
  }

  std::string Effective() {
    std::string times;
    for (int32_t i = 0; i < cut.frames.Count(); ++i) times += std::to_string(cut.EffectiveTime(i)) + " ";
    return times;
  }

  Cut cut{20, 10, 24, "", 0};
};

// Reading.

TEST_F(TimeSheetTest, AFrameTakesItsTimeInRows) {
  Make({{3, "1x"}, {1, "1x"}, {2, "22"}});
  TimeSheet sheet(&cut);
  EXPECT_EQ(sheet.Rows(), 6);
  EXPECT_EQ(sheet.Ticks(), 6);
  EXPECT_EQ(Column(&sheet, 0), "1|||2|");
  EXPECT_EQ(Column(&sheet, 1), "x:::2|");
  EXPECT_EQ(sheet.FrameOfRow(0), 0);
  EXPECT_EQ(sheet.FrameOfRow(2), 0);
  EXPECT_EQ(sheet.FrameOfRow(3), 1);
  EXPECT_EQ(sheet.FrameOfRow(5), 2);
}

TEST_F(TimeSheetTest, AFrameWithoutTimeHasARowButNoTick) {
  Make({{2, "1"}, {0, "2"}, {1, "3"}});
  TimeSheet sheet(&cut);
  EXPECT_EQ(sheet.Rows(), 4);
  EXPECT_EQ(sheet.Ticks(), 3);
  EXPECT_EQ(Column(&sheet, 0), "1|23");
  EXPECT_EQ(sheet.FrameAt(2).firstRow, 3);
  EXPECT_EQ(sheet.FrameAt(2).firstTick, 2);
}

TEST_F(TimeSheetTest, TheFramesOfAKeyTakeTheirTimesOutOfIt) {
  Make({{6, "1"}, {2, "2"}, {1, "3"}});
  cut.frames.At(0)->SetKey(true);
  TimeSheet sheet(&cut);
  EXPECT_EQ(Column(&sheet, 0), "1||2|3");
}

TEST_F(TimeSheetTest, ATransitionTakesItsMagnitude) {
  Make({{1, "1"}, {-3, "2"}});
  TimeSheet sheet(&cut);
  EXPECT_EQ(Column(&sheet, 0), "12||");
  EXPECT_FALSE(sheet.FrameAt(0).isTransition);
  EXPECT_TRUE(sheet.FrameAt(1).isTransition);
}

TEST_F(TimeSheetTest, AStretchOfALoopEndsAtTheNextCount) {
  Make({{1, "1"}, {1, "1"}, {1, "1"}, {1, "1"}, {1, "1"}});
  const int32_t loops[] = {0, 3, 0, 1, 2};
  for (int32_t i = 0; i < 5; ++i) cut.frames.At(i)->loop = loops[i];
  const TimeSheet sheet(&cut);
  std::string found;
  for (int32_t i = 0; i < 5; ++i) {
    found += std::to_string(sheet.FrameAt(i).loop) + (sheet.FrameAt(i).isLoopStart ? "! " : " ");
  }
  EXPECT_EQ(found, "1 3! 3 1 2! ");
}

TEST_F(TimeSheetTest, ColumnsFollowTheCurrentFrameAndLackingLayersComeLast) {
  Make({{1, "12-"}, {1, "-21"}});
  cut.frames.At(1)->MoveRecordUp(0);
  cut.currentFrame = 1;
  TimeSheet sheet(&cut);
  std::string names;
  for (const SheetColumn& column : sheet.Columns()) names += column.layer->name + std::to_string(column.record) + " ";
  EXPECT_EQ(names, "C0 B1 A-1 ");
  EXPECT_EQ(Column(&sheet, 0), "-1");
  EXPECT_EQ(Column(&sheet, 2), "1-");
}

TEST_F(TimeSheetTest, ALayerThatAFrameHasTwiceHasTwoColumns) {
  Make({{1, "1"}, {1, "3"}});
  cut.frames.At(0)->AddRecord(cut.layers.At(0), 4, 0, 0);
  TimeSheet sheet(&cut);
  ASSERT_EQ(sheet.Columns().size(), 2u);
  EXPECT_EQ(Column(&sheet, 0), "13");
  EXPECT_EQ(Column(&sheet, 1), "5-");
}

TEST_F(TimeSheetTest, ReadingMovesNoCursor) {
  Make({{1, "12"}, {1, "21"}, {1, "33"}});
  cut.frames.Seek(1);
  cut.layers.Seek(1);
  for (int32_t i = 0; i < 3; ++i) cut.frames.At(i)->records.Seek(i % 2);
  cut.frames.Seek(1);
  TimeSheet sheet(&cut);
  Column(&sheet, 0);
  Column(&sheet, 1);
  EXPECT_EQ(cut.frames.CursorIndex(), 1);
  EXPECT_EQ(cut.layers.CursorIndex(), 1);
  for (int32_t i = 0; i < 3; ++i) EXPECT_EQ(cut.frames.At(i)->records.CursorIndex(), i % 2);
}

// Exposing.

TEST_F(TimeSheetTest, AWholeFrameOnlyGetsAnotherCell) {
  Make({{2, "12"}, {2, "34"}});
  TimeSheet sheet(&cut);
  EXPECT_TRUE(sheet.Expose(1, 2, 3, 6));
  EXPECT_EQ(Times(), "2 2 ");
  EXPECT_EQ(Column(&sheet, 0), "1|3|");
  EXPECT_EQ(Column(&sheet, 1), "2|7|");
  EXPECT_EQ(cut.stateFlags & 14u, kModified | kImagesStale | kTimingStale);
}

TEST_F(TimeSheetTest, AnExposureInsideAFrameDividesIt) {
  Make({{1, "1"}, {6, "2"}});
  Frame* frame = cut.frames.At(1);
  frame->x = 5;
  frame->comment = EmptyString;
  AssignString(&frame->comment, "note");
  frame->SetBrightness(30);
  TimeSheet sheet(&cut);
  EXPECT_TRUE(sheet.Expose(0, 3, 4, 6));
  EXPECT_EQ(Times(), "1 2 2 2 ");
  EXPECT_EQ(Column(&sheet, 0), "12|7|2|");
  for (int32_t i = 1; i < 4; ++i) {
    EXPECT_EQ(cut.frames.At(i)->x, 5);
    EXPECT_EQ(cut.frames.At(i)->DecodedBrightness(), 30);
    EXPECT_STREQ(cut.frames.At(i)->comment, i == 1 ? "note" : "");
  }
}

TEST_F(TimeSheetTest, AnExposureOverSeveralFramesDividesTheOuterOnes) {
  Make({{3, "1"}, {2, "2"}, {3, "3"}});
  TimeSheet sheet(&cut);
  EXPECT_TRUE(sheet.Expose(0, 2, 5, 8));
  EXPECT_EQ(Times(), "2 1 2 1 2 ");
  EXPECT_EQ(Column(&sheet, 0), "1|9|||3|");
}

TEST_F(TimeSheetTest, FramesThatAlreadyShowTheCellStayWhole) {
  Make({{3, "1"}, {2, "2"}, {3, "1"}});
  TimeSheet sheet(&cut);
  EXPECT_TRUE(sheet.Expose(0, 1, 6, 0));
  EXPECT_EQ(Times(), "3 2 3 ");
  EXPECT_EQ(Column(&sheet, 0), "1|||||||");
}

TEST_F(TimeSheetTest, WhatIsSoAlreadyChangesAndMarksNothing) {
  Make({{3, "1-"}, {2, "x-"}});
  TimeSheet sheet(&cut);
  EXPECT_FALSE(sheet.Expose(0, 1, 1, 0));
  EXPECT_FALSE(sheet.Expose(0, 3, 4, kBlankSquare));
  EXPECT_FALSE(sheet.Expose(1, 0, 4, kBlankSquare));
  EXPECT_FALSE(sheet.SetRows(0, 3));
  EXPECT_EQ(cut.stateFlags, 0u);
  EXPECT_EQ(Times(), "3 2 ");
}

TEST_F(TimeSheetTest, ABlankKeepsTheNumberThatItHides) {
  Make({{1, "5"}});
  TimeSheet sheet(&cut);
  EXPECT_TRUE(sheet.Expose(0, 0, 0, kBlankSquare));
  EXPECT_EQ(cut.frames.At(0)->records.At(0)->cell, -5);
  EXPECT_TRUE(sheet.Expose(0, 0, 0, 2));
  EXPECT_EQ(cut.frames.At(0)->records.At(0)->cell, 2);
}

TEST_F(TimeSheetTest, TheNumberBehindTheLastCellAddsOne) {
  Make({{1, "1"}, {1, "9"}});
  TimeSheet sheet(&cut);
  EXPECT_FALSE(sheet.Expose(0, 0, 0, 10));
  EXPECT_EQ(cut.layers.At(0)->cells.Count(), 9);
  EXPECT_TRUE(sheet.Expose(0, 0, 1, 9));
  EXPECT_EQ(cut.layers.At(0)->cells.Count(), 10);
  EXPECT_EQ(cut.frames.At(0)->records.At(0)->cell, 9);
  EXPECT_EQ(cut.frames.At(1)->records.At(0)->cell, 9);
}

TEST_F(TimeSheetTest, AFrameThatLacksTheLayerGetsItAtItsPlace) {
  Make({{1, "123"}, {1, "1-3"}, {1, "-12"}, {1, "---"}});
  for (int32_t i = 0; i < 3; ++i) cut.frames.At(i)->SelectRecord(1);
  TimeSheet sheet(&cut);
  EXPECT_TRUE(sheet.Expose(1, 1, 1, 6));
  EXPECT_EQ(Stack(cut.frames.At(1)), "AB[C]");
  EXPECT_EQ(cut.frames.At(1)->records.At(1)->x, 10);
  EXPECT_EQ(cut.frames.At(1)->records.At(1)->y, 20);
  EXPECT_TRUE(sheet.Expose(0, 2, 2, 6));
  EXPECT_EQ(Stack(cut.frames.At(2)), "AB[C]");
  EXPECT_TRUE(sheet.Expose(2, 3, 3, 6));
  EXPECT_EQ(Stack(cut.frames.At(3)), "[C]");
}

TEST_F(TimeSheetTest, EditsKeepTheCurrentFrameAndItsRecord) {
  Make({{4, "12"}, {4, "34"}});
  cut.currentFrame = 1;
  Frame* current = cut.CurrentFrame();
  current->SelectRecord(0);
  TimeSheet sheet(&cut);
  EXPECT_TRUE(sheet.Expose(1, 1, 5, 6));
  EXPECT_EQ(cut.CurrentFrame(), current);
  EXPECT_EQ(current->currentRecord, 0);
  EXPECT_EQ(cut.currentFrame, 2);
  EXPECT_TRUE(sheet.SetRows(0, 5));
  EXPECT_EQ(cut.CurrentFrame(), current);
}

TEST_F(TimeSheetTest, DividingAKeyFrameKeepsItsSpan) {
  Make({{8, "1"}, {2, "2"}, {3, "3"}});
  cut.frames.At(0)->SetKey(true);
  cut.frames.At(2)->SetKey(true);
  TimeSheet sheet(&cut);
  EXPECT_EQ(Column(&sheet, 0), "1|||||2|3||");
  EXPECT_TRUE(sheet.Expose(0, 2, 3, 4));
  EXPECT_EQ(Times(), "8 2 2 2 3 ");
  EXPECT_EQ(Effective(), "2 2 2 2 3 ");
  EXPECT_TRUE(cut.frames.At(0)->IsKey());
  EXPECT_FALSE(cut.frames.At(1)->IsKey());
}

TEST_F(TimeSheetTest, ATransitionStaysWithTheFirstPart) {
  Make({{1, "1"}, {-6, "2"}});
  TimeSheet sheet(&cut);
  EXPECT_TRUE(sheet.Expose(0, 3, 6, 4));
  EXPECT_EQ(Times(), "1 -2 4 ");
}

TEST_F(TimeSheetTest, TheSecondPartDoesntRepeatTheLoopAgain) {
  Make({{4, "1"}, {2, "2"}, {4, "3"}});
  cut.frames.At(0)->loop = 3;
  cut.frames.At(1)->loop = 0;
  TimeSheet sheet(&cut);
  EXPECT_TRUE(sheet.Expose(0, 2, 2, 4));
  EXPECT_TRUE(sheet.Expose(0, 8, 8, 4));
  std::string loops;
  for (int32_t i = 0; i < cut.frames.Count(); ++i) loops += std::to_string(cut.frames.At(i)->loop);
  EXPECT_EQ(loops, "3000111");
}

// Times.

TEST_F(TimeSheetTest, MoreRowsMoveTheFramesBehind) {
  Make({{2, "1"}, {2, "2"}, {-2, "3"}, {0, "4"}});
  TimeSheet sheet(&cut);
  EXPECT_TRUE(sheet.SetRows(0, 4));
  EXPECT_TRUE(sheet.SetRows(1, 0));
  EXPECT_TRUE(sheet.SetRows(2, 3));
  EXPECT_FALSE(sheet.SetRows(3, 1));
  EXPECT_EQ(Times(), "4 1 -3 0 ");
  EXPECT_TRUE(sheet.SetRows(3, 2));
  EXPECT_EQ(Times(), "4 1 -3 2 ");
  EXPECT_EQ(cut.stateFlags, static_cast<uint32_t>(kModified | kTimingStale));
}

TEST_F(TimeSheetTest, InTheSpanOfAKeyFrameTheOthersKeepTheirTimes) {
  Make({{3, "1"}, {9, "2"}, {2, "3"}, {3, "4"}, {1, "5"}});
  cut.frames.At(1)->SetKey(true);
  cut.frames.At(4)->SetKey(true);
  TimeSheet sheet(&cut);
  EXPECT_EQ(Effective(), "3 4 2 3 1 ");
  EXPECT_TRUE(sheet.SetRows(2, 5));
  EXPECT_EQ(Effective(), "3 4 5 3 1 ");
  EXPECT_TRUE(sheet.SetRows(1, 2));
  EXPECT_EQ(Effective(), "3 2 5 3 1 ");
  EXPECT_TRUE(sheet.SetRows(0, 1));
  EXPECT_TRUE(sheet.SetRows(4, 6));
  EXPECT_EQ(Effective(), "1 2 5 3 6 ");
}

TEST_F(TimeSheetTest, AKeyFrameWithoutTimeOfItsOwnStaysOneTick) {
  Make({{1, "1"}, {4, "2"}});
  cut.frames.At(0)->SetKey(true);
  TimeSheet sheet(&cut);
  EXPECT_TRUE(sheet.SetRows(1, 6));
  EXPECT_EQ(Effective(), "1 6 ");
  EXPECT_EQ(Times(), "1 6 ");
  EXPECT_TRUE(sheet.SetRows(0, 2));
  EXPECT_EQ(Times(), "8 6 ");
}

TEST_F(TimeSheetTest, NoTimeIsLongerThanAFileCanHold) {
  Make({{2, "1"}, {2, "2"}});
  TimeSheet sheet(&cut);
  EXPECT_FALSE(sheet.SetRows(1, 32768));
  EXPECT_TRUE(sheet.SetRows(1, 32767));
  cut.frames.At(0)->SetKey(true);
  sheet.Read();
  EXPECT_FALSE(sheet.SetRows(0, 2));
  EXPECT_EQ(Times(), "2 32767 ");
}

// Taking over.

TEST_F(TimeSheetTest, TakingOverWhatIsThereChangesNothing) {
  Make({{3, "12"}, {1, "12"}, {-2, "x2"}, {0, "32"}, {5, "4x"}});
  cut.frames.At(1)->x = 7;
  cut.frames.At(1)->SetKey(true);
  TimeSheet sheet(&cut);
  const std::string before = Times();
  std::vector<SheetTrack> tracks;
  for (int32_t column = 0; column < 2; ++column) {
    SheetTrack track = {column, {}};
    for (int32_t i = 0; i < sheet.FrameCount(); ++i) {
      const SheetFrame& frame = sheet.FrameAt(i);
      if (frame.ticks > 0) track.changes.push_back({frame.firstTick, sheet.CellOf(i, column)});
    }
    tracks.push_back(track);
  }
  EXPECT_TRUE(sheet.TakeOver(sheet.Ticks(), tracks));
  EXPECT_EQ(Times(), before);
  EXPECT_EQ(cut.stateFlags, 0u);
}

TEST_F(TimeSheetTest, TakingOverDividesAndJoinsFrames) {
  Make({{4, "1"}, {4, "2"}});
  TimeSheet sheet(&cut);
  EXPECT_TRUE(sheet.TakeOver(10, {{0, {{0, 0}, {6, 1}, {8, kBlankSquare}}}}));
  EXPECT_EQ(Times(), "6 2 2 ");
  EXPECT_EQ(Column(&sheet, 0), "1|||||2|x:");
}

TEST_F(TimeSheetTest, WhatTheFormatCantSayStaysAtItsTick) {
  Make({{4, "1"}, {4, "2"}, {4, "2"}, {4, "3"}});
  AssignString(&cut.frames.At(1)->comment, "here");
  cut.frames.At(2)->SetBrightness(20);
  cut.frames.At(3)->SetKey(true);
  TimeSheet sheet(&cut);
  EXPECT_TRUE(sheet.TakeOver(16, {{0, {{0, 5}}}}));
  EXPECT_EQ(Effective(), "4 4 4 4 ");
  EXPECT_EQ(Column(&sheet, 0), "6|||||||||||||||");
  EXPECT_STREQ(cut.frames.At(1)->comment, "here");
}

TEST_F(TimeSheetTest, AShorterSheetDropsTheEnd) {
  Make({{4, "1"}, {9, "2"}, {2, "3"}, {2, "4"}});
  cut.frames.At(1)->SetKey(true);
  TimeSheet sheet(&cut);
  EXPECT_EQ(Effective(), "4 5 2 2 ");
  EXPECT_TRUE(sheet.TakeOver(10, {{0, {{0, 0}, {4, 1}, {9, 2}}}}));
  EXPECT_EQ(Effective(), "4 5 1 ");
  EXPECT_TRUE(sheet.TakeOver(1, {{0, {{0, 0}}}}));
  EXPECT_EQ(Effective(), "1 ");
}

TEST_F(TimeSheetTest, ALongSheetTakesAsManyFramesAsItNeeds) {
  Make({{4, "1"}});
  TimeSheet sheet(&cut);
  EXPECT_TRUE(sheet.TakeOver(70000, {{0, {{0, 1}}}}));
  EXPECT_EQ(sheet.Ticks(), 70000);
  EXPECT_EQ(Times(), "32767 32767 4466 ");
  cut.frames.At(0)->SetKey(true);
  sheet.Read();
  EXPECT_FALSE(sheet.TakeOver(3'000'000'000, {{0, {{0, 1}}}}));
}

TEST_F(TimeSheetTest, ATrackOfALayerThatFramesLackPutsItIn) {
  Make({{2, "1-"}, {2, "1-"}});
  TimeSheet sheet(&cut);
  EXPECT_TRUE(sheet.TakeOver(4, {{1, {{0, kBlankSquare}, {3, 6}}}}));
  EXPECT_EQ(Times(), "2 1 1 ");
  EXPECT_EQ(Column(&sheet, 0), "1|||");
  EXPECT_EQ(Column(&sheet, 1), "---7");
}

TEST_F(TimeSheetTest, RandomExposuresEqualAPlainModel) {
  std::mt19937 engine(7);
  const auto number = [&engine](int32_t lowest, int32_t highest) {
    return std::uniform_int_distribution<int32_t>(lowest, highest)(engine);
  };
  for (int32_t round = 0; round < 200; ++round) {
    Cut fresh(20, 10, 24, "", 0);
    for (const char* name : {"A", "B"}) NumberCells(fresh.AddLayer(name, 4, 4, nullptr), 5);
    const int32_t count = number(1, 8);
    for (int32_t i = 0; i < count; ++i) {
      Frame* frame = fresh.AddFrame();
      frame->time = number(0, 9) == 0 ? -number(1, 5) : number(1, 5);
      frame->SetKey(number(0, 3) == 0);
      for (int32_t layer = 0; layer < 2; ++layer) {
        if (number(0, 9) != 0) frame->AddRecord(fresh.layers.At(layer), number(-3, 4), 0, 0);
      }
    }
    TimeSheet sheet(&fresh);
    // The model: what each layer shows at each tick. The order of the columns can change.
    std::vector<std::vector<int32_t>> model(2);
    const auto columnOf = [&](size_t layer) {
      const bool isFirst = sheet.Columns()[0].layer == fresh.layers.At(static_cast<int32_t>(layer));
      return isFirst ? 0 : 1;
    };
    const auto shown = [&](size_t layer, int64_t row) { return sheet.CellOf(sheet.FrameOfRow(row), columnOf(layer)); };
    for (size_t layer = 0; layer < 2; ++layer) {
      for (int64_t row = 0; row < sheet.Rows(); ++row) model[layer].push_back(shown(layer, row));
    }
    for (int32_t step = 0; step < 12; ++step) {
      const int64_t rows = sheet.Rows();
      const int64_t first = number(0, static_cast<int32_t>(rows) - 1);
      if (number(0, 4) == 0) {
        // The frame gets another length: its last row is repeated or removed.
        const int32_t frame = sheet.FrameOfRow(first);
        const int64_t length = number(1, 7);
        const int64_t end = sheet.LastRowOf(frame) + 1;
        const int64_t grown = length - sheet.FrameAt(frame).Rows();
        ASSERT_EQ(sheet.SetRows(frame, length), grown != 0);
        for (std::vector<int32_t>& cells : model) {
          const auto behind = cells.begin() + end;
          const int32_t last = cells[static_cast<size_t>(end) - 1];
          if (grown > 0) cells.insert(behind, static_cast<size_t>(grown), last);
          if (grown < 0) cells.erase(behind + grown, behind);
        }
      } else {
        const int64_t last = number(static_cast<int32_t>(first), static_cast<int32_t>(rows) - 1);
        const size_t layer = static_cast<size_t>(number(0, 1));
        const int32_t cell = number(-1, 4);
        sheet.Expose(columnOf(layer), first, last, cell);
        for (int64_t row = first; row <= last; ++row) {
          int32_t& square = model[layer][static_cast<size_t>(row)];
          if (cell >= 0 || square != kNoSquare) square = cell;
        }
      }
      const TimeSheet again(&fresh);
      ASSERT_EQ(again.Rows(), sheet.Rows());
      ASSERT_EQ(again.Columns(), sheet.Columns());
      for (size_t layer = 0; layer < 2; ++layer) {
        ASSERT_EQ(sheet.Rows(), static_cast<int64_t>(model[layer].size()));
        for (int64_t row = 0; row < sheet.Rows(); ++row) {
          ASSERT_EQ(shown(layer, row), model[layer][static_cast<size_t>(row)]) << round << " " << layer << " " << row;
        }
      }
    }
  }
}

}  // namespace
}  // namespace sorvel
