#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <vector>

#include "document/cut.h"
#include "support/test_document.h"

namespace sorvel {
namespace {

using testdoc::NumberCells;

using Values = std::vector<int32_t>;

constexpr int32_t kNoRecord = -1000;

// A cut with one frame for each time and nothing marked; the first frame is current.
struct TimedCut {
  explicit TimedCut(const Values& times, const Values& keys = {}) {
    for (int32_t time : times) cut.AddFrame()->time = time;
    for (int32_t index : keys) At(index)->SetKey(true);
    cut.currentFrame = 0;
    cut.stateFlags = 0;
  }

  Frame* At(int32_t index) { return cut.frames.At(index); }
  // A layer with a record in every frame, which becomes the current one.
  Layer* Attach() {
    Layer* layer = cut.AddLayer("layer", 4, 4, nullptr);
    NumberCells(layer, 4);
    cut.AttachLayer(cut.layers.Count() - 1, 0, 0);
    cut.stateFlags = 0;
    return layer;
  }
  // One value of every frame, or of one record of every frame; -1000 where the record is missing.
  Values Of(int32_t Frame::*field) {
    Values values;
    for (int32_t i = 0; i < cut.frames.Count(); ++i) values.push_back(At(i)->*field);
    return values;
  }
  Values Of(int32_t FrameRecord::*field, int32_t record = 0) {
    Values values;
    for (int32_t i = 0; i < cut.frames.Count(); ++i) {
      const FrameRecord* found = At(i)->records.At(record);
      values.push_back(found != nullptr ? found->*field : kNoRecord);
    }
    return values;
  }
  void Set(int32_t Frame::*field, const Values& values) {
    for (size_t i = 0; i < values.size(); ++i) At(static_cast<int32_t>(i))->*field = values[i];
  }
  void Set(int32_t FrameRecord::*field, const Values& values) {
    for (size_t i = 0; i < values.size(); ++i) At(static_cast<int32_t>(i))->records.At(0)->*field = values[i];
  }

  Cut cut{20, 10, 24, "", 0};
};

constexpr uint32_t kTimingMarks = kModified | kTimingStale;
constexpr uint32_t kImageMarks = kModified | kImagesStale | kTimingStale;

struct Move {
  bool (Cut::*run)();
  bool moves;
  int32_t to;
};

// Moves one after the other; none marks anything.
void ExpectMoves(TimedCut* test, std::initializer_list<Move> moves) {
  for (const Move& move : moves) {
    EXPECT_EQ((test->cut.*move.run)(), move.moves);
    EXPECT_EQ(test->cut.currentFrame, move.to);
  }
  EXPECT_EQ(test->cut.stateFlags, 0u);
}

void ExpectNoMove(TimedCut* test) {
  for (bool (Cut::*run)() : {&Cut::FirstFrame, &Cut::LastFrame, &Cut::NextFrame, &Cut::PreviousFrame,
                             &Cut::NextKeyFrame, &Cut::PreviousKeyFrame}) {
    ExpectMoves(test, {{run, false, test->cut.currentFrame}});
  }
}

TEST(Navigation, NextAndPreviousFrameStopAtTheEnds) {
  TimedCut test({1, 1});
  ExpectMoves(&test, {{&Cut::PreviousFrame, false, 0},
                      {&Cut::NextFrame, true, 1},
                      {&Cut::NextFrame, false, 1},
                      {&Cut::PreviousFrame, true, 0}});
}

TEST(Navigation, FirstAndLastFrameAreTrueWithoutAMoveToo) {
  TimedCut test({1, 1, 1});
  ExpectMoves(&test, {{&Cut::FirstFrame, true, 0},
                      {&Cut::LastFrame, true, 2},
                      {&Cut::LastFrame, true, 2},
                      {&Cut::FirstFrame, true, 0}});
}

TEST(Navigation, OnlyFrameCannotBeLeft) {
  TimedCut test({1}, {0});
  ExpectNoMove(&test);
}

TEST(Navigation, CutWithoutFramesCannotMove) {
  TimedCut test({});
  test.cut.currentFrame = -1;
  ExpectNoMove(&test);
  EXPECT_EQ(test.cut.EffectiveTime(0), 0);
  EXPECT_FALSE(test.cut.BrightnessRamp(0));
  EXPECT_FALSE(test.cut.LayerPositionRamp(0));
  EXPECT_FALSE(test.cut.FramePositionRamp(0));
}

TEST(Navigation, KeyFramesAreFoundInBothDirections) {
  TimedCut test({1, 1, 1, 1, 1, 1}, {1, 2, 4});
  constexpr auto next = &Cut::NextKeyFrame;
  constexpr auto previous = &Cut::PreviousKeyFrame;
  ExpectMoves(&test, {{next, true, 1}, {next, true, 2}, {next, true, 4}, {next, false, 4}});
  test.cut.currentFrame = 5;
  ExpectMoves(&test, {{previous, true, 4}, {previous, true, 2}, {previous, true, 1}, {previous, false, 1}});
}

TEST(Navigation, NoKeyFrameMeansNoMove) {
  TimedCut test({1, 1, 1});
  test.cut.currentFrame = 1;
  ExpectMoves(&test, {{&Cut::NextKeyFrame, false, 1}, {&Cut::PreviousKeyFrame, false, 1}});
}

TEST(Navigation, EveryMoveTakesTheRecordUnderEditAlong) {
  const struct {
    bool (Cut::*move)();
    int32_t from;
    int32_t to;
  } moves[] = {{&Cut::NextFrame, 1, 2}, {&Cut::PreviousFrame, 1, 0}, {&Cut::FirstFrame, 2, 0},
               {&Cut::LastFrame, 1, 3}, {&Cut::NextKeyFrame, 0, 3},  {&Cut::PreviousKeyFrame, 2, 0}};
  for (const auto& row : moves) {
    TimedCut test({1, 1, 1, 1}, {0, 3});
    for (int32_t i = 0; i < 3; ++i) test.Attach();
    test.cut.currentFrame = row.from;
    test.At(row.from)->SelectRecord(0);
    EXPECT_TRUE((test.cut.*row.move)());
    EXPECT_EQ(test.cut.currentFrame, row.to);
    for (int32_t i = 0; i < 4; ++i) EXPECT_EQ(test.At(i)->currentRecord, i == row.from || i == row.to ? 0 : 2);
  }
}

TEST(Navigation, FrameWithFewerRecordsKeepsItsOwn) {
  TimedCut test({1, 1});
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
  TimedCut test({1, 1, 1});
  test.Attach();
  test.Attach();
  test.cut.currentFrame = 1;
  test.At(1)->SelectRecord(0);
  EXPECT_FALSE(test.cut.NextKeyFrame());
  EXPECT_FALSE(test.cut.PreviousKeyFrame());
  EXPECT_EQ(test.Of(&Frame::currentRecord), Values({1, 0, 1}));
}

TEST(EffectiveTime, FollowsTheKeyFrames) {
  const struct {
    const char* name;
    Values times;
    Values keys;
    Values effective;
  } rows[] = {
      {"KeyFrameGivesTimeToTheFramesBetween", {10, 2, 3, 7}, {0, 3}, {5, 2, 3, 7}},
      {"KeyFrameKeepsAtLeastOne", {4, 3, 3, 1}, {0, 3}, {1, 3, 3, 1}},
      {"KeyFrameKeepsAtLeastOneOfASpanThatIsJustUsed", {6, 3, 3, 1}, {0, 3}, {1, 3, 3, 1}},
      {"KeepsTheSignOfAKeyFrame", {-10, 2, 1}, {0, 2}, {-8, 2, 1}},
      {"KeepsTheSignOfAKeyFrameWhoseSpanIsUsed", {-2, 5}, {0}, {-1, 5}},
      {"SubtractsMagnitudes", {10, -2, -3}, {0}, {5, -2, -3}},
      {"FrameBetweenStandsForItsOwnTime", {3, -4, 0}, {}, {3, -4, 0}},
      {"LastFrameAsAKeyFrameHasItsOwnTime", {1, 6}, {1}, {1, 6}},
      {"LastFrameAsAKeyFrameHasAtLeastOne", {1, 0}, {1}, {1, 1}},
      {"SpanOfTheLastKeyFrameReachesTheEnd", {1, 9, 2, 3}, {1}, {1, 4, 2, 3}},
  };
  for (const auto& row : rows) {
    TimedCut test(row.times, row.keys);
    Values effective;
    for (size_t i = 0; i < row.times.size(); ++i) effective.push_back(test.cut.EffectiveTime(static_cast<int32_t>(i)));
    EXPECT_EQ(effective, row.effective) << row.name;
  }
}

TEST(EffectiveTime, BadIndexIsZero) {
  TimedCut test({5});
  EXPECT_EQ(test.cut.EffectiveTime(-1), 0);
  EXPECT_EQ(test.cut.EffectiveTime(1), 0);
}

TEST(ToggleBlankAll, TurnsTheSameRecordOverInEveryFrame) {
  TimedCut test({1, 1, 1});
  for (int32_t i = 0; i < 3; ++i) test.Attach();
  test.cut.currentFrame = 1;
  test.At(1)->SelectRecord(1);
  test.At(0)->records.At(1)->cell = 3;
  test.At(2)->records.At(1)->cell = -2;
  EXPECT_TRUE(test.cut.ToggleBlankAll());
  EXPECT_EQ(test.cut.currentFrame, 1);
  EXPECT_EQ(test.Of(&FrameRecord::cell, 0), Values({0, 0, 0}));
  EXPECT_EQ(test.Of(&FrameRecord::cell, 1), Values({-4, -1, 1}));
  EXPECT_EQ(test.Of(&FrameRecord::cell, 2), Values({0, 0, 0}));
  EXPECT_EQ(test.Of(&Frame::currentRecord), Values({1, 1, 1}));
  EXPECT_EQ(test.cut.stateFlags, 0u);
}

TEST(ToggleBlankAll, TwiceRestoresAllNumbers) {
  TimedCut test({1, 1, 1});
  test.Attach();
  test.Set(&FrameRecord::cell, {-1, 0, 1});
  test.cut.ToggleBlankAll();
  test.cut.ToggleBlankAll();
  EXPECT_EQ(test.Of(&FrameRecord::cell), Values({-1, 0, 1}));
}

TEST(ToggleBlankAll, WorksOnACutOfOneFrame) {
  TimedCut test({1});
  test.Attach();
  EXPECT_TRUE(test.cut.ToggleBlankAll());
  EXPECT_EQ(test.Of(&FrameRecord::cell), Values({-1}));
  EXPECT_EQ(test.cut.currentFrame, 0);
}

TEST(ToggleBlankAll, FramesWithoutRecordsAreNoHindrance) {
  TimedCut test({1, 1});
  EXPECT_TRUE(test.cut.ToggleBlankAll());
  Layer* layer = test.Attach();
  test.At(0)->RemoveLayer(layer);
  EXPECT_TRUE(test.cut.ToggleBlankAll());
  EXPECT_EQ(test.Of(&FrameRecord::cell), Values({kNoRecord, -1}));
}

TEST(MakeAllKeyFrames, KeepsBrightnessAndMarksTiming) {
  TimedCut test({1, 1, 1});
  test.Set(&Frame::brightness, {30, -51, 0});
  EXPECT_TRUE(test.cut.MakeAllKeyFrames());
  EXPECT_EQ(test.Of(&Frame::brightness), Values({-31, -51, -1}));
  EXPECT_EQ(test.cut.stateFlags, kTimingMarks);
  EXPECT_EQ(test.cut.currentFrame, 0);
}

// A change that is spread from one frame to another: the values of all frames before and after.
struct Ramp {
  const char* name;
  Values times;
  Values before;
  Values after;
  Values keys = {};
  int32_t from = 0;
  int32_t to = -1;  // the last frame
  bool result = true;
};

// Runs the ramps over one field of the frames, or of their only record. One that gives true sets the marks.
template <typename Field>
void ExpectRamps(bool (Cut::*ramp)(int32_t), Field field, uint32_t marks, std::initializer_list<Ramp> rows) {
  for (const Ramp& row : rows) {
    SCOPED_TRACE(row.name);
    TimedCut test(row.times);
    test.Attach();
    test.Set(field, row.before);
    for (int32_t index : row.keys) test.At(index)->SetKey(true);
    test.cut.currentFrame = row.from;
    const int32_t last = static_cast<int32_t>(row.times.size()) - 1;
    EXPECT_EQ((test.cut.*ramp)(row.to < 0 ? last : row.to), row.result);
    EXPECT_EQ(test.Of(field), row.after);
    EXPECT_EQ(test.cut.stateFlags, row.result ? marks : 0u);
    EXPECT_EQ(test.cut.currentFrame, row.from);
  }
}

// A ramp from a frame to itself or to one that the cut doesn't have.
void ExpectNoRamp(bool (Cut::*ramp)(int32_t)) {
  TimedCut test({1, 1, 1});
  test.Attach();
  test.At(0)->brightness = 0;
  for (int32_t end : {0, 3, -1}) EXPECT_FALSE((test.cut.*ramp)(end));
  EXPECT_EQ(test.Of(&Frame::brightness), Values({0, 50, 50}));
  EXPECT_EQ(test.cut.stateFlags, 0u);
}

TEST(BrightnessRamp, SpreadsTheDifferenceInWholeSteps) {
  ExpectRamps(&Cut::BrightnessRamp, &Frame::brightness, kTimingMarks,
              {
                  {"RisesEvenly", {1, 1, 1, 1, 1}, {0, 50, 50, 50, 100}, {0, 25, 50, 75, 100}},
                  {"FallsEvenly", {1, 1, 1, 1, 1}, {100, 50, 50, 50, 0}, {100, 75, 50, 25, 0}},
                  {"SmallFallRisesInstead", {1, 1, 1, 1, 1}, {50, 50, 50, 50, 48}, {50, 51, 52, 52, 52}},
                  {"RemainderGoesIntoTheFirstUnits", {2, 3, 1}, {0, 50, 12}, {0, 6, 12}},
                  {"RemainderGoesIntoTheFirstUnitsOfAFall", {2, 3, 1}, {12, 50, 0}, {12, 6, 0}},
                  {.name = "RunsFromTheEarlierFrameInEitherOrder",
                   .times = {1, 1, 1, 1, 1, 1},
                   .before = {50, 0, 50, 50, 50, 100},
                   .after = {50, 0, 25, 50, 75, 100},
                   .from = 5,
                   .to = 1},
                  {"KeepsKeyMarkers", {1, 1, 1}, {0, 50, 100}, {-1, -51, -101}, {0, 1, 2}},
                  {.name = "SpanOfNoTimeIsRefused",
                   .times = {2, -2, 1},
                   .before = {50, 50, 90},
                   .after = {50, 50, 90},
                   .result = false},
                  {"NegativeTimesShortenTheSpan", {-2, 3, 1}, {0, 70, 10}, {0, 20, 10}},
                  {"SpanOfNegativeTimeChangesNothingButMarks", {-3, 1, 1}, {0, 50, 10}, {0, 50, 10}},
                  {.name = "RunsOnPastTheEndFrameUntilTheUnitsAreSpent",
                   .times = {10, 2, 3, 5, 1, 1, 1},
                   .before = {0, 50, 50, 30},
                   .after = {-1, 10, 14, -21, 26, 28, -31},
                   .keys = {0, 3, 6},
                   .to = 3},
                  {.name = "EndOfTheCutStopsItWithoutAMark",
                   .times = {10, 2, 3, 5, 1},
                   .before = {0, 50, 50, 30},
                   .after = {-1, 10, 14, -21, 28},
                   .keys = {0, 3},
                   .to = 3,
                   .result = false},
              });
}

TEST(BrightnessRamp, NeedsTwoDifferentFramesThatExist) {
  ExpectNoRamp(&Cut::BrightnessRamp);
}

TEST(LayerPositionRamp, SpreadsTheDifferenceInWholeSteps) {
  ExpectRamps(
      &Cut::LayerPositionRamp, &FrameRecord::x, kImageMarks,
      {
          {"SpreadsBothAxesAndMarksImages", {1, 1, 1, 1, 1}, {0, 0, 0, 0, 10}, {0, 3, 6, 8, 10}},
          {"SmallStepBackGoesForwardInstead", {1, 1, 1, 1, 1}, {0, 0, 0, 0, -2}, {0, 1, 2, 2, 2}},
          {"WeighsFramesByTheirTime", {3, 1, 1}, {0, 0, 8}, {0, 6, 8}},
          {.name = "RunsFromTheEarlierFrameInEitherOrder",
           .times = {1, 1, 1},
           .before = {10, 0, 0},
           .after = {10, 5, 0},
           .from = 2,
           .to = 0},
          {.name = "SumsRawTimes", .times = {2, -2, 1}, .before = {0, 0, 8}, .after = {0, 0, 8}, .result = false},
          {"SumsRawTimesOfATransition", {3, -2, 1}, {0, 0, 8}, {0, 24, 8}},
          {.name = "EndOfTheCutStopsItWithoutAMark",
           .times = {10, 2, 3, 1},
           .before = {0, 0, 0, 30},
           .after = {0, 10, 14, 20},
           .keys = {0, 3},
           .result = false},
      });
  ExpectRamps(&Cut::LayerPositionRamp, &FrameRecord::y, kImageMarks,
              {
                  {"SpreadsBothAxesAndMarksImages", {1, 1, 1, 1, 1}, {5, 0, 0, 0, -5}, {5, 2, -1, -3, -5}},
                  {"WeighsFramesByTheirTime", {3, 1, 1}, {0, 0, -6}, {0, -5, -6}},
              });
}

TEST(LayerPositionRamp, WorksOnRawPositions) {
  TimedCut test({1, 1, 1});
  test.Attach()->followFrame = 1;
  test.Set(&Frame::x, {0, 100, 200});
  test.Set(&FrameRecord::x, {0, 0, 4});
  EXPECT_TRUE(test.cut.LayerPositionRamp(2));
  EXPECT_EQ(test.Of(&FrameRecord::x), Values({0, 2, 4}));
}

TEST(LayerPositionRamp, TakesTheIndexOfTheCurrentFramesRecordWhateverTheLayers) {
  TimedCut test({1, 1, 1});
  Layer* first = test.Attach();
  Layer* second = test.Attach();
  test.At(1)->MoveRecordDown(1);
  test.At(2)->SelectRecord(0);
  test.At(2)->records.At(1)->x = 8;
  ASSERT_EQ(test.At(0)->currentRecord, 1);
  EXPECT_TRUE(test.cut.LayerPositionRamp(2));
  EXPECT_EQ(test.Of(&FrameRecord::x, 1), Values({0, 4, 8}));
  EXPECT_EQ(test.Of(&FrameRecord::x), Values({0, 0, 0}));
  EXPECT_EQ(test.At(1)->LayerAt(1), first);
  EXPECT_EQ(test.At(2)->LayerAt(1), second);
}

TEST(LayerPositionRamp, MovesBlankRecordsToo) {
  TimedCut test({1, 1, 1});
  test.Attach();
  test.Set(&FrameRecord::cell, {-1, -2, -3});
  test.Set(&FrameRecord::x, {0, 0, 2});
  EXPECT_TRUE(test.cut.LayerPositionRamp(2));
  EXPECT_EQ(test.Of(&FrameRecord::x), Values({0, 1, 2}));
  EXPECT_EQ(test.Of(&FrameRecord::cell), Values({-1, -2, -3}));
}

TEST(LayerPositionRamp, FrameWithoutTheRecordBreaksTheChain) {
  TimedCut test({1, 1, 1, 1, 1});
  Layer* layer = test.Attach();
  test.At(2)->RemoveLayer(layer);
  test.At(3)->records.At(0)->x = 100;
  test.At(4)->records.At(0)->x = 8;
  EXPECT_TRUE(test.cut.LayerPositionRamp(4));
  EXPECT_EQ(test.Of(&FrameRecord::x), Values({0, 2, kNoRecord, 102, 104}));
}

TEST(LayerPositionRamp, NeedsTheRecordInBothEndFrames) {
  TimedCut test({1, 1, 1});
  EXPECT_FALSE(test.cut.LayerPositionRamp(2));
  Layer* layer = test.Attach();
  test.At(2)->RemoveLayer(layer);
  EXPECT_FALSE(test.cut.LayerPositionRamp(2));
  test.cut.currentFrame = 2;
  EXPECT_FALSE(test.cut.LayerPositionRamp(0));
  EXPECT_EQ(test.cut.stateFlags, 0u);
}

TEST(LayerPositionRamp, NeedsTwoDifferentFramesThatExist) {
  ExpectNoRamp(&Cut::LayerPositionRamp);
}

TEST(FramePositionRamp, InterpolatesByTheTimeThatHasPassed) {
  ExpectRamps(&Cut::FramePositionRamp, &Frame::x, kTimingMarks,
              {
                  {"InterpolatesBothAxesAndMarksTiming", {1, 1, 1, 1, 1}, {0, 0, 0, 0, 10}, {0, 2, 5, 7, 10}},
                  {"SmallStepBackGoesBack", {1, 1, 1, 1, 1}, {0, 0, 0, 0, -2}, {0, 0, -1, -1, -2}},
                  {.name = "RunsFromTheEarlierFrameInEitherOrder",
                   .times = {3, 1, 1},
                   .before = {40, 0, 0},
                   .after = {40, 10, 0},
                   .from = 2,
                   .to = 0},
                  {"SumsMagnitudesOfTimes", {-2, 2, 1}, {0, 0, 8}, {0, 4, 8}},
                  {.name = "SpanOfNoTimeIsRefused",
                   .times = {0, 0, 1},
                   .before = {0, 0, 8},
                   .after = {0, 0, 8},
                   .result = false},
                  {"EffectiveTimesBeyondTheSumOvershoot", {0, 2, 1}, {0, 0, 10}, {0, 5, 15}, {0, 2}},
                  {.name = "EndOfTheCutStopsItWithoutAMark",
                   .times = {10, 2, 3, 1},
                   .before = {0, 0, 0, 30},
                   .after = {0, 10, 14, 20},
                   .keys = {0, 3},
                   .result = false},
              });
  ExpectRamps(&Cut::FramePositionRamp, &Frame::y, kTimingMarks,
              {{"InterpolatesBothAxesAndMarksTiming", {1, 1, 1, 1, 1}, {0, 0, 0, 0, -10}, {0, -2, -5, -7, -10}}});
}

TEST(FramePositionRamp, NeedsTwoDifferentFramesThatExist) {
  ExpectNoRamp(&Cut::FramePositionRamp);
}

TEST(FramePositionRamp, LeavesRecordsAndBrightnessAlone) {
  TimedCut test({1, 1, 1});
  test.Attach();
  test.At(2)->x = 10;
  EXPECT_TRUE(test.cut.FramePositionRamp(2));
  EXPECT_EQ(test.Of(&FrameRecord::x), Values({0, 0, 0}));
  EXPECT_EQ(test.Of(&Frame::brightness), Values({50, 50, 50}));
}

}  // namespace
}  // namespace sorvel
