#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

#include "document/cut.h"
#include "support/test_document.h"

namespace sorvel {
namespace {

using testdoc::CellNumber;
using testdoc::NumberCells;

using Values = std::vector<int32_t>;

// A cut with one frame for each time and nothing marked; the first frame is current.
struct TimedCut {
  explicit TimedCut(std::initializer_list<int32_t> times) {
    for (int32_t time : times) cut.AddFrame()->time = time;
    cut.currentFrame = 0;
    cut.stateFlags = 0;
  }

  Frame* At(int32_t index) { return cut.frames.At(index); }
  void MakeKeys(std::initializer_list<int32_t> indices) {
    for (int32_t index : indices) At(index)->SetKey(true);
  }
  // A layer with a record in every frame, which becomes the current one.
  Layer* Attach() {
    Layer* layer = cut.AddLayer("layer", 4, 4, nullptr);
    NumberCells(layer, 4);
    cut.AttachLayer(cut.layers.Count() - 1, 0, 0);
    cut.stateFlags = 0;
    return layer;
  }
  Values Brightness() {
    Values values;
    for (int32_t i = 0; i < cut.frames.Count(); ++i) values.push_back(At(i)->brightness);
    return values;
  }
  Values RecordX(int32_t record = 0) {
    Values values;
    for (int32_t i = 0; i < cut.frames.Count(); ++i) {
      FrameRecord* found = At(i)->records.At(record);
      values.push_back(found != nullptr ? found->x : -1000);
    }
    return values;
  }
  Values RecordY(int32_t record = 0) {
    Values values;
    for (int32_t i = 0; i < cut.frames.Count(); ++i) values.push_back(At(i)->records.At(record)->y);
    return values;
  }
  Values FrameX() {
    Values values;
    for (int32_t i = 0; i < cut.frames.Count(); ++i) values.push_back(At(i)->x);
    return values;
  }
  Values FrameY() {
    Values values;
    for (int32_t i = 0; i < cut.frames.Count(); ++i) values.push_back(At(i)->y);
    return values;
  }
  Values EffectiveTimes() {
    Values values;
    for (int32_t i = 0; i < cut.frames.Count(); ++i) values.push_back(cut.EffectiveTime(i));
    return values;
  }

  Cut cut{20, 10, 24, "", 0};
};

constexpr uint32_t kTimingMarks = kModified | kTimingStale;
constexpr uint32_t kImageMarks = kModified | kImagesStale | kTimingStale;

TEST(Navigation, NextAndPreviousFrameStopAtTheEnds) {
  TimedCut test{1, 1};
  EXPECT_FALSE(test.cut.PreviousFrame());
  EXPECT_EQ(test.cut.currentFrame, 0);
  EXPECT_TRUE(test.cut.NextFrame());
  EXPECT_EQ(test.cut.currentFrame, 1);
  EXPECT_FALSE(test.cut.NextFrame());
  EXPECT_EQ(test.cut.currentFrame, 1);
  EXPECT_TRUE(test.cut.PreviousFrame());
  EXPECT_EQ(test.cut.currentFrame, 0);
  EXPECT_EQ(test.cut.stateFlags, 0u);
}

TEST(Navigation, FirstAndLastFrameAreTrueWithoutAMoveToo) {
  TimedCut test{1, 1, 1};
  EXPECT_TRUE(test.cut.FirstFrame());
  EXPECT_EQ(test.cut.currentFrame, 0);
  EXPECT_TRUE(test.cut.LastFrame());
  EXPECT_EQ(test.cut.currentFrame, 2);
  EXPECT_TRUE(test.cut.LastFrame());
  EXPECT_EQ(test.cut.currentFrame, 2);
  EXPECT_TRUE(test.cut.FirstFrame());
  EXPECT_EQ(test.cut.currentFrame, 0);
  EXPECT_EQ(test.cut.stateFlags, 0u);
}

TEST(Navigation, OnlyFrameCannotBeLeft) {
  TimedCut test{1};
  test.MakeKeys({0});
  EXPECT_FALSE(test.cut.FirstFrame());
  EXPECT_FALSE(test.cut.LastFrame());
  EXPECT_FALSE(test.cut.NextFrame());
  EXPECT_FALSE(test.cut.PreviousFrame());
  EXPECT_FALSE(test.cut.NextKeyFrame());
  EXPECT_FALSE(test.cut.PreviousKeyFrame());
  EXPECT_EQ(test.cut.currentFrame, 0);
}

TEST(Navigation, CutWithoutFramesCannotMove) {
  TimedCut test{};
  test.cut.currentFrame = -1;
  EXPECT_FALSE(test.cut.NextFrame());
  EXPECT_FALSE(test.cut.PreviousFrame());
  EXPECT_FALSE(test.cut.FirstFrame());
  EXPECT_FALSE(test.cut.LastFrame());
  EXPECT_FALSE(test.cut.NextKeyFrame());
  EXPECT_FALSE(test.cut.PreviousKeyFrame());
  EXPECT_EQ(test.cut.currentFrame, -1);
  EXPECT_EQ(test.cut.EffectiveTime(0), 0);
  EXPECT_FALSE(test.cut.BrightnessRamp(0));
  EXPECT_FALSE(test.cut.LayerPositionRamp(0));
  EXPECT_FALSE(test.cut.FramePositionRamp(0));
}

TEST(Navigation, KeyFramesAreFoundInBothDirections) {
  TimedCut test{1, 1, 1, 1, 1, 1};
  test.MakeKeys({1, 2, 4});
  EXPECT_TRUE(test.cut.NextKeyFrame());
  EXPECT_EQ(test.cut.currentFrame, 1);
  EXPECT_TRUE(test.cut.NextKeyFrame());
  EXPECT_EQ(test.cut.currentFrame, 2);
  EXPECT_TRUE(test.cut.NextKeyFrame());
  EXPECT_EQ(test.cut.currentFrame, 4);
  EXPECT_FALSE(test.cut.NextKeyFrame());
  EXPECT_EQ(test.cut.currentFrame, 4);
  test.cut.currentFrame = 5;
  EXPECT_TRUE(test.cut.PreviousKeyFrame());
  EXPECT_EQ(test.cut.currentFrame, 4);
  EXPECT_TRUE(test.cut.PreviousKeyFrame());
  EXPECT_EQ(test.cut.currentFrame, 2);
  EXPECT_TRUE(test.cut.PreviousKeyFrame());
  EXPECT_EQ(test.cut.currentFrame, 1);
  EXPECT_FALSE(test.cut.PreviousKeyFrame());
  EXPECT_EQ(test.cut.currentFrame, 1);
  EXPECT_EQ(test.cut.stateFlags, 0u);
}

TEST(Navigation, NoKeyFrameMeansNoMove) {
  TimedCut test{1, 1, 1};
  test.cut.currentFrame = 1;
  EXPECT_FALSE(test.cut.NextKeyFrame());
  EXPECT_FALSE(test.cut.PreviousKeyFrame());
  EXPECT_EQ(test.cut.currentFrame, 1);
}

TEST(Navigation, EveryMoveTakesTheRecordUnderEditAlong) {
  const struct {
    bool (Cut::*move)();
    int32_t from;
    int32_t to;
  } moves[] = {{&Cut::NextFrame, 1, 2}, {&Cut::PreviousFrame, 1, 0}, {&Cut::FirstFrame, 2, 0},
               {&Cut::LastFrame, 1, 3}, {&Cut::NextKeyFrame, 0, 3},  {&Cut::PreviousKeyFrame, 2, 0}};
  for (const auto& row : moves) {
    TimedCut test{1, 1, 1, 1};
    test.MakeKeys({0, 3});
    for (int32_t i = 0; i < 3; ++i) test.Attach();
    test.cut.currentFrame = row.from;
    test.At(row.from)->SelectRecord(0);
    EXPECT_TRUE((test.cut.*row.move)());
    EXPECT_EQ(test.cut.currentFrame, row.to);
    for (int32_t i = 0; i < 4; ++i) EXPECT_EQ(test.At(i)->currentRecord, i == row.from || i == row.to ? 0 : 2);
  }
}

TEST(Navigation, FrameWithFewerRecordsKeepsItsOwn) {
  TimedCut test{1, 1};
  Layer* first = test.Attach();
  test.Attach();
  Layer* third = test.Attach();
  test.At(1)->RemoveLayer(third);
  test.At(1)->SelectRecord(0);
  ASSERT_EQ(test.At(0)->currentRecord, 2);
  EXPECT_TRUE(test.cut.NextFrame());
  EXPECT_EQ(test.At(1)->currentRecord, 0);
  EXPECT_EQ(test.At(1)->LayerAt(0), first);
}

TEST(Navigation, FailedSearchForAKeyFrameTouchesNoFrame) {
  TimedCut test{1, 1, 1};
  test.Attach();
  test.Attach();
  test.cut.currentFrame = 1;
  test.At(1)->SelectRecord(0);
  EXPECT_FALSE(test.cut.NextKeyFrame());
  EXPECT_FALSE(test.cut.PreviousKeyFrame());
  EXPECT_EQ(test.At(0)->currentRecord, 1);
  EXPECT_EQ(test.At(1)->currentRecord, 0);
  EXPECT_EQ(test.At(2)->currentRecord, 1);
}

TEST(EffectiveTime, KeyFrameGivesTimeToTheFramesBetween) {
  TimedCut test{10, 2, 3, 7};
  test.MakeKeys({0, 3});
  EXPECT_EQ(test.EffectiveTimes(), Values({5, 2, 3, 7}));
}

TEST(EffectiveTime, KeyFrameKeepsAtLeastOne) {
  TimedCut test{4, 3, 3, 1};
  test.MakeKeys({0, 3});
  EXPECT_EQ(test.cut.EffectiveTime(0), 1);
  TimedCut exact{6, 3, 3, 1};
  exact.MakeKeys({0, 3});
  EXPECT_EQ(exact.cut.EffectiveTime(0), 1);
}

TEST(EffectiveTime, KeepsTheSignOfAKeyFrame) {
  TimedCut test{-10, 2, 1};
  test.MakeKeys({0, 2});
  EXPECT_EQ(test.cut.EffectiveTime(0), -8);
  TimedCut used{-2, 5};
  used.MakeKeys({0});
  EXPECT_EQ(used.cut.EffectiveTime(0), -1);
}

TEST(EffectiveTime, SubtractsMagnitudes) {
  TimedCut test{10, -2, -3};
  test.MakeKeys({0});
  EXPECT_EQ(test.EffectiveTimes(), Values({5, -2, -3}));
}

TEST(EffectiveTime, FrameBetweenStandsForItsOwnTime) {
  TimedCut test{3, -4, 0};
  EXPECT_EQ(test.EffectiveTimes(), Values({3, -4, 0}));
}

TEST(EffectiveTime, LastFrameAsAKeyFrameHasItsOwnTimeAtLeastOne) {
  TimedCut test{1, 6};
  test.MakeKeys({1});
  EXPECT_EQ(test.cut.EffectiveTime(1), 6);
  test.At(1)->time = 0;
  EXPECT_EQ(test.cut.EffectiveTime(1), 1);
}

TEST(EffectiveTime, SpanOfTheLastKeyFrameReachesTheEnd) {
  TimedCut test{1, 9, 2, 3};
  test.MakeKeys({1});
  EXPECT_EQ(test.cut.EffectiveTime(1), 4);
}

TEST(EffectiveTime, BadIndexIsZero) {
  TimedCut test{5};
  EXPECT_EQ(test.cut.EffectiveTime(-1), 0);
  EXPECT_EQ(test.cut.EffectiveTime(1), 0);
}

TEST(ToggleBlankAll, TurnsTheSameRecordOverInEveryFrame) {
  TimedCut test{1, 1, 1};
  for (int32_t i = 0; i < 3; ++i) test.Attach();
  test.cut.currentFrame = 1;
  test.At(1)->SelectRecord(1);
  test.At(0)->records.At(1)->cell = 3;
  test.At(2)->records.At(1)->cell = -2;
  EXPECT_TRUE(test.cut.ToggleBlankAll());
  EXPECT_EQ(test.cut.currentFrame, 1);
  EXPECT_EQ(CellNumber(test.At(0), 1), -4);
  EXPECT_EQ(CellNumber(test.At(1), 1), -1);
  EXPECT_EQ(CellNumber(test.At(2), 1), 1);
  for (int32_t i = 0; i < 3; ++i) {
    EXPECT_EQ(CellNumber(test.At(i), 0), 0);
    EXPECT_EQ(CellNumber(test.At(i), 2), 0);
    EXPECT_EQ(test.At(i)->currentRecord, 1);
  }
  EXPECT_EQ(test.cut.stateFlags, 0u);
}

TEST(ToggleBlankAll, TwiceRestoresAllNumbers) {
  TimedCut test{1, 1, 1};
  test.Attach();
  for (int32_t i = 0; i < 3; ++i) test.At(i)->records.At(0)->cell = i - 1;
  test.cut.ToggleBlankAll();
  test.cut.ToggleBlankAll();
  for (int32_t i = 0; i < 3; ++i) EXPECT_EQ(CellNumber(test.At(i), 0), i - 1);
}

TEST(ToggleBlankAll, WorksOnACutOfOneFrame) {
  TimedCut test{1};
  test.Attach();
  EXPECT_TRUE(test.cut.ToggleBlankAll());
  EXPECT_EQ(CellNumber(test.At(0), 0), -1);
  EXPECT_EQ(test.cut.currentFrame, 0);
}

TEST(ToggleBlankAll, FramesWithoutRecordsAreNoHindrance) {
  TimedCut test{1, 1};
  EXPECT_TRUE(test.cut.ToggleBlankAll());
  Layer* layer = test.Attach();
  test.At(0)->RemoveLayer(layer);
  EXPECT_TRUE(test.cut.ToggleBlankAll());
  EXPECT_EQ(CellNumber(test.At(1), 0), -1);
}

TEST(MakeAllKeyFrames, KeepsBrightnessAndMarksTiming) {
  TimedCut test{1, 1, 1};
  test.At(0)->brightness = 30;
  test.MakeKeys({1});
  test.At(2)->brightness = 0;
  EXPECT_TRUE(test.cut.MakeAllKeyFrames());
  EXPECT_EQ(test.Brightness(), Values({-31, -51, -1}));
  EXPECT_EQ(test.cut.stateFlags, kTimingMarks);
  EXPECT_EQ(test.cut.currentFrame, 0);
}

TEST(BrightnessRamp, RisesEvenly) {
  TimedCut test{1, 1, 1, 1, 1};
  test.At(0)->brightness = 0;
  test.At(4)->brightness = 100;
  EXPECT_TRUE(test.cut.BrightnessRamp(4));
  EXPECT_EQ(test.Brightness(), Values({0, 25, 50, 75, 100}));
  EXPECT_EQ(test.cut.stateFlags, kTimingMarks);
  EXPECT_EQ(test.cut.currentFrame, 0);
}

TEST(BrightnessRamp, FallsEvenly) {
  TimedCut test{1, 1, 1, 1, 1};
  test.At(0)->brightness = 100;
  test.At(4)->brightness = 0;
  EXPECT_TRUE(test.cut.BrightnessRamp(4));
  EXPECT_EQ(test.Brightness(), Values({100, 75, 50, 25, 0}));
}

TEST(BrightnessRamp, SmallFallRisesInstead) {
  TimedCut test{1, 1, 1, 1, 1};
  test.At(4)->brightness = 48;
  EXPECT_TRUE(test.cut.BrightnessRamp(4));
  EXPECT_EQ(test.Brightness(), Values({50, 51, 52, 52, 52}));
}

TEST(BrightnessRamp, RemainderGoesIntoTheFirstUnits) {
  TimedCut test{2, 3, 1};
  test.At(0)->brightness = 0;
  test.At(2)->brightness = 12;
  EXPECT_TRUE(test.cut.BrightnessRamp(2));
  EXPECT_EQ(test.Brightness(), Values({0, 6, 12}));
  TimedCut falling{2, 3, 1};
  falling.At(0)->brightness = 12;
  falling.At(2)->brightness = 0;
  EXPECT_TRUE(falling.cut.BrightnessRamp(2));
  EXPECT_EQ(falling.Brightness(), Values({12, 6, 0}));
}

TEST(BrightnessRamp, RunsFromTheEarlierFrameInEitherOrder) {
  TimedCut test{1, 1, 1, 1, 1, 1};
  test.At(1)->brightness = 0;
  test.At(5)->brightness = 100;
  test.cut.currentFrame = 5;
  EXPECT_TRUE(test.cut.BrightnessRamp(1));
  EXPECT_EQ(test.Brightness(), Values({50, 0, 25, 50, 75, 100}));
  EXPECT_EQ(test.cut.currentFrame, 5);
}

TEST(BrightnessRamp, KeepsKeyMarkers) {
  TimedCut test{1, 1, 1};
  test.At(0)->brightness = 0;
  test.At(2)->brightness = 100;
  test.MakeKeys({0, 1, 2});
  EXPECT_TRUE(test.cut.BrightnessRamp(2));
  EXPECT_EQ(test.Brightness(), Values({-1, -51, -101}));
}

TEST(BrightnessRamp, NeedsTwoDifferentFramesThatExist) {
  TimedCut test{1, 1, 1};
  test.At(0)->brightness = 0;
  for (int32_t end : {0, 3, -1}) EXPECT_FALSE(test.cut.BrightnessRamp(end));
  EXPECT_EQ(test.Brightness(), Values({0, 50, 50}));
  EXPECT_EQ(test.cut.stateFlags, 0u);
}

TEST(BrightnessRamp, SpanOfNoTimeIsRefused) {
  TimedCut test{2, -2, 1};
  test.At(2)->brightness = 90;
  EXPECT_FALSE(test.cut.BrightnessRamp(2));
  EXPECT_EQ(test.Brightness(), Values({50, 50, 90}));
  EXPECT_EQ(test.cut.stateFlags, 0u);
}

TEST(BrightnessRamp, NegativeTimesShortenTheSpan) {
  TimedCut test{-2, 3, 1};
  test.At(0)->brightness = 0;
  test.At(1)->brightness = 70;
  test.At(2)->brightness = 10;
  EXPECT_TRUE(test.cut.BrightnessRamp(2));
  EXPECT_EQ(test.Brightness(), Values({0, 20, 10}));
}

TEST(BrightnessRamp, SpanOfNegativeTimeChangesNothingButMarks) {
  TimedCut test{-3, 1, 1};
  test.At(0)->brightness = 0;
  test.At(2)->brightness = 10;
  EXPECT_TRUE(test.cut.BrightnessRamp(2));
  EXPECT_EQ(test.Brightness(), Values({0, 50, 10}));
  EXPECT_EQ(test.cut.stateFlags, kTimingMarks);
}

TEST(BrightnessRamp, RunsOnPastTheEndFrameUntilTheUnitsAreSpent) {
  TimedCut test{10, 2, 3, 5, 1, 1, 1};
  test.At(0)->brightness = 0;
  test.At(3)->brightness = 30;
  test.MakeKeys({0, 3, 6});
  EXPECT_TRUE(test.cut.BrightnessRamp(3));
  EXPECT_EQ(test.Brightness(), Values({-1, 10, 14, -21, 26, 28, -31}));
  EXPECT_EQ(test.cut.stateFlags, kTimingMarks);
}

TEST(BrightnessRamp, EndOfTheCutStopsItWithoutAMark) {
  TimedCut test{10, 2, 3, 5, 1};
  test.At(0)->brightness = 0;
  test.At(3)->brightness = 30;
  test.MakeKeys({0, 3});
  EXPECT_FALSE(test.cut.BrightnessRamp(3));
  EXPECT_EQ(test.Brightness(), Values({-1, 10, 14, -21, 28}));
  EXPECT_EQ(test.cut.stateFlags, 0u);
}

TEST(LayerPositionRamp, SpreadsBothAxesAndMarksImages) {
  TimedCut test{1, 1, 1, 1, 1};
  Layer* layer = test.Attach();
  test.At(0)->records.At(0)->y = 5;
  test.At(4)->records.At(0)->x = 10;
  test.At(4)->records.At(0)->y = -5;
  EXPECT_TRUE(test.cut.LayerPositionRamp(4));
  EXPECT_EQ(test.RecordX(), Values({0, 3, 6, 8, 10}));
  EXPECT_EQ(test.RecordY(), Values({5, 2, -1, -3, -5}));
  EXPECT_EQ(test.cut.stateFlags, kImageMarks);
  EXPECT_EQ(test.cut.currentFrame, 0);
  EXPECT_EQ(test.At(2)->LayerAt(0), layer);
}

TEST(LayerPositionRamp, SmallStepBackGoesForwardInstead) {
  TimedCut test{1, 1, 1, 1, 1};
  test.Attach();
  test.At(4)->records.At(0)->x = -2;
  EXPECT_TRUE(test.cut.LayerPositionRamp(4));
  EXPECT_EQ(test.RecordX(), Values({0, 1, 2, 2, 2}));
}

TEST(LayerPositionRamp, WeighsFramesByTheirTime) {
  TimedCut test{3, 1, 1};
  test.Attach();
  test.At(2)->records.At(0)->x = 8;
  test.At(2)->records.At(0)->y = -6;
  EXPECT_TRUE(test.cut.LayerPositionRamp(2));
  EXPECT_EQ(test.RecordX(), Values({0, 6, 8}));
  EXPECT_EQ(test.RecordY(), Values({0, -5, -6}));
}

TEST(LayerPositionRamp, RunsFromTheEarlierFrameInEitherOrder) {
  TimedCut test{1, 1, 1};
  test.Attach();
  test.At(0)->records.At(0)->x = 10;
  test.cut.currentFrame = 2;
  EXPECT_TRUE(test.cut.LayerPositionRamp(0));
  EXPECT_EQ(test.RecordX(), Values({10, 5, 0}));
}

TEST(LayerPositionRamp, WorksOnRawPositions) {
  TimedCut test{1, 1, 1};
  Layer* layer = test.Attach();
  layer->followFrame = 1;
  test.At(1)->x = 100;
  test.At(2)->x = 200;
  test.At(2)->records.At(0)->x = 4;
  EXPECT_TRUE(test.cut.LayerPositionRamp(2));
  EXPECT_EQ(test.RecordX(), Values({0, 2, 4}));
}

TEST(LayerPositionRamp, TakesTheIndexOfTheCurrentFramesRecordWhateverTheLayers) {
  TimedCut test{1, 1, 1};
  Layer* first = test.Attach();
  Layer* second = test.Attach();
  test.At(1)->MoveRecordDown(1);
  test.At(2)->SelectRecord(0);
  test.At(2)->records.At(1)->x = 8;
  ASSERT_EQ(test.At(0)->currentRecord, 1);
  EXPECT_TRUE(test.cut.LayerPositionRamp(2));
  EXPECT_EQ(test.RecordX(1), Values({0, 4, 8}));
  EXPECT_EQ(test.RecordX(0), Values({0, 0, 0}));
  EXPECT_EQ(test.At(1)->LayerAt(1), first);
  EXPECT_EQ(test.At(2)->LayerAt(1), second);
}

TEST(LayerPositionRamp, MovesBlankRecordsToo) {
  TimedCut test{1, 1, 1};
  test.Attach();
  for (int32_t i = 0; i < 3; ++i) test.At(i)->records.At(0)->cell = -1 - i;
  test.At(2)->records.At(0)->x = 2;
  EXPECT_TRUE(test.cut.LayerPositionRamp(2));
  EXPECT_EQ(test.RecordX(), Values({0, 1, 2}));
  EXPECT_EQ(CellNumber(test.At(1), 0), -2);
}

TEST(LayerPositionRamp, FrameWithoutTheRecordBreaksTheChain) {
  TimedCut test{1, 1, 1, 1, 1};
  Layer* layer = test.Attach();
  test.At(2)->RemoveLayer(layer);
  test.At(3)->records.At(0)->x = 100;
  test.At(4)->records.At(0)->x = 8;
  EXPECT_TRUE(test.cut.LayerPositionRamp(4));
  EXPECT_EQ(test.RecordX(), Values({0, 2, -1000, 102, 104}));
}

TEST(LayerPositionRamp, NeedsTheRecordInBothEndFrames) {
  TimedCut test{1, 1, 1};
  EXPECT_FALSE(test.cut.LayerPositionRamp(2));
  Layer* layer = test.Attach();
  test.At(2)->RemoveLayer(layer);
  EXPECT_FALSE(test.cut.LayerPositionRamp(2));
  test.cut.currentFrame = 2;
  EXPECT_FALSE(test.cut.LayerPositionRamp(0));
  EXPECT_EQ(test.cut.stateFlags, 0u);
}

TEST(LayerPositionRamp, NeedsTwoDifferentFramesThatExist) {
  TimedCut test{1, 1, 1};
  test.Attach();
  for (int32_t end : {0, 3, -1}) EXPECT_FALSE(test.cut.LayerPositionRamp(end));
  EXPECT_EQ(test.cut.stateFlags, 0u);
}

TEST(LayerPositionRamp, SumsRawTimes) {
  TimedCut test{2, -2, 1};
  test.Attach();
  test.At(2)->records.At(0)->x = 8;
  EXPECT_FALSE(test.cut.LayerPositionRamp(2));
  EXPECT_EQ(test.RecordX(), Values({0, 0, 8}));
  test.At(0)->time = 3;
  EXPECT_TRUE(test.cut.LayerPositionRamp(2));
  EXPECT_EQ(test.RecordX(), Values({0, 24, 8}));
}

TEST(LayerPositionRamp, EndOfTheCutStopsItWithoutAMark) {
  TimedCut test{10, 2, 3, 1};
  test.Attach();
  test.MakeKeys({0, 3});
  test.At(3)->records.At(0)->x = 30;
  EXPECT_FALSE(test.cut.LayerPositionRamp(3));
  EXPECT_EQ(test.RecordX(), Values({0, 10, 14, 20}));
  EXPECT_EQ(test.cut.stateFlags, 0u);
}

TEST(FramePositionRamp, InterpolatesBothAxesAndMarksTiming) {
  TimedCut test{1, 1, 1, 1, 1};
  test.At(4)->x = 10;
  test.At(4)->y = -10;
  EXPECT_TRUE(test.cut.FramePositionRamp(4));
  EXPECT_EQ(test.FrameX(), Values({0, 2, 5, 7, 10}));
  EXPECT_EQ(test.FrameY(), Values({0, -2, -5, -7, -10}));
  EXPECT_EQ(test.cut.stateFlags, kTimingMarks);
  EXPECT_EQ(test.cut.currentFrame, 0);
}

TEST(FramePositionRamp, SmallStepBackGoesBack) {
  TimedCut test{1, 1, 1, 1, 1};
  test.At(4)->x = -2;
  EXPECT_TRUE(test.cut.FramePositionRamp(4));
  EXPECT_EQ(test.FrameX(), Values({0, 0, -1, -1, -2}));
}

TEST(FramePositionRamp, RunsFromTheEarlierFrameInEitherOrder) {
  TimedCut test{3, 1, 1};
  test.At(0)->x = 40;
  test.cut.currentFrame = 2;
  EXPECT_TRUE(test.cut.FramePositionRamp(0));
  EXPECT_EQ(test.FrameX(), Values({40, 10, 0}));
}

TEST(FramePositionRamp, SumsMagnitudesOfTimes) {
  TimedCut test{-2, 2, 1};
  test.At(2)->x = 8;
  EXPECT_TRUE(test.cut.FramePositionRamp(2));
  EXPECT_EQ(test.FrameX(), Values({0, 4, 8}));
}

TEST(FramePositionRamp, SpanOfNoTimeIsRefused) {
  TimedCut test{0, 0, 1};
  test.At(2)->x = 8;
  EXPECT_FALSE(test.cut.FramePositionRamp(2));
  EXPECT_EQ(test.FrameX(), Values({0, 0, 8}));
  EXPECT_EQ(test.cut.stateFlags, 0u);
}

TEST(FramePositionRamp, NeedsTwoDifferentFramesThatExist) {
  TimedCut test{1, 1, 1};
  for (int32_t end : {0, 3, -1}) EXPECT_FALSE(test.cut.FramePositionRamp(end));
  EXPECT_EQ(test.cut.stateFlags, 0u);
}

TEST(FramePositionRamp, EffectiveTimesBeyondTheSumOvershoot) {
  TimedCut test{0, 2, 1};
  test.MakeKeys({0, 2});
  test.At(2)->x = 10;
  EXPECT_TRUE(test.cut.FramePositionRamp(2));
  EXPECT_EQ(test.FrameX(), Values({0, 5, 15}));
}

TEST(FramePositionRamp, EndOfTheCutStopsItWithoutAMark) {
  TimedCut test{10, 2, 3, 1};
  test.MakeKeys({0, 3});
  test.At(3)->x = 30;
  EXPECT_FALSE(test.cut.FramePositionRamp(3));
  EXPECT_EQ(test.FrameX(), Values({0, 10, 14, 20}));
  EXPECT_EQ(test.cut.stateFlags, 0u);
}

TEST(FramePositionRamp, LeavesRecordsAndBrightnessAlone) {
  TimedCut test{1, 1, 1};
  test.Attach();
  test.At(2)->x = 10;
  EXPECT_TRUE(test.cut.FramePositionRamp(2));
  EXPECT_EQ(test.RecordX(), Values({0, 0, 0}));
  EXPECT_EQ(test.Brightness(), Values({50, 50, 50}));
}

}  // namespace
}  // namespace sorvel
