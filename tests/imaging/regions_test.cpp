#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>

#include "imaging/raster_fixture.h"

namespace sorvel {
namespace {

constexpr PenSpec Plain(int32_t color) {
  return {7, 0, 0, color};
}

constexpr uint32_t Bit(int32_t index) {
  return 1U << index;
}

template <typename Image>
class Regions : public OnBothImages<Image> {};
TYPED_TEST_SUITE(Regions, Images);

// FloodFill.

// InkExactness compares every operation with its plain form on random images; here are the cases that say most.

TYPED_TEST(Regions, FloodFillTakesBoundariesThatItTouches) {
  const struct {
    const char* rule;
    Rows before;
    Rows after;
    Point seed;
    int32_t color;
    uint32_t mask;
  } cases[] = {
      {"along the whole run",
       {"..9....", "..999..", "8888988", "....9..", "99.a9.."},
       {"333....", "33333..", "8888388", "....3..", "99.a3.."},
       {0, 0},
       3,
       0},
      {"on every side", {"8998", "a..9", "a..9", "8aa8"}, {"8228", "2222", "2222", "8228"}, {1, 1}, 2, 0},
      {"but does not flow on behind one", {".9.", ".9.", ".9."}, {"22.", "22.", "22."}, {0, 1}, 2, 0},
      {"and does not pass from one to another", {".9a", ".88"}, {"22a", "288"}, {0, 0}, 2, 0},
      {"unless they are masked", {"8998", "a..9", "a..9", "8aa8"}, {"8998", "2229", "2229", "8228"}, {1, 1}, 2, Bit(9)},
      {"overwrites sketch whatever the mask", {".5.7."}, {"22222"}, {0, 0}, 2, Bit(5) | Bit(6) | Bit(7)},
      {"a boundary at the starting point is filled alone",
       {"..9..", "5.9a.", "..99."},
       {"..4..", "5.4a.", "..44."},
       {2, 1},
       4,
       0},
      {"a sketch pixel obeys the mask of transparent only", {".6."}, {"333"}, {1, 0}, 3, Bit(6)},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(one.rule);
    this->ExpectChange(one.before, one.after, [&one](TypeParam& image) {
      return image.FloodFill(one.seed.x, one.seed.y, Plain(one.color), one.mask, nullptr);
    });
  }
}

TYPED_TEST(Regions, FloodFillStopsAtLinesAndAnyOtherColour) {
  for (const char border : {'1', '2', '3', '4', '8', 'b', 'c', 'd', 'e'}) {
    TypeParam image;
    const std::string wall = std::string("..") + border + "..";
    this->Draw(&image, {wall, wall});
    EXPECT_TRUE(image.FloodFill(0, 0, Plain(9), 0, nullptr));
    const std::string filled = std::string("99") + border + "..";
    EXPECT_EQ(Picture(&image), (Rows{filled, filled}));
  }
}

TYPED_TEST(Regions, FloodFillOfAMaskedSeedOrOutsideChangesNothing) {
  TypeParam& image = this->Drawn({"..8..", ".226.", "....."});
  Rect rect = {1, 2, 3, 4};
  EXPECT_FALSE(image.FloodFill(0, 0, Plain(3), Bit(0), &rect));
  EXPECT_FALSE(image.FloodFill(1, 1, Plain(3), Bit(2), &rect));
  EXPECT_FALSE(image.FloodFill(3, 1, Plain(3), Bit(0), &rect));
  for (const int32_t outside : {kLowest, -1, 5, kHighest}) {
    EXPECT_FALSE(image.FloodFill(outside, 1, Plain(3), 0, &rect));
    EXPECT_FALSE(image.FloodFill(1, outside, Plain(3), 0, &rect));
  }
  EXPECT_EQ(Picture(&image), (Rows{"..8..", ".226.", "....."}));
  EXPECT_EQ(rect, (Rect{1, 2, 3, 4}));
}

TYPED_TEST(Regions, FloodFillGrowsTheDirtyRectangleByItsRuns) {
  TypeParam& image = this->New(20, 20, 8);
  image.FillRect(8, 9, 3, 1, 0);
  Rect rect;
  EXPECT_TRUE(image.FloodFill(9, 9, Plain(2), 0, &rect));
  EXPECT_EQ(rect, (Rect{4, 4, 11, 10}));
}

TYPED_TEST(Regions, FloodFillEntersBoundariesBeforeItsOwnRun) {
  TypeParam& image = this->Drawn({"9.9"});
  Rect rect;
  EXPECT_TRUE(image.FloodFill(1, 0, Plain(2), 0, &rect));
  // The left boundary comes first, and grows the rectangle twice.
  EXPECT_EQ(rect, (Rect{-5, -5, 12, 10}));
}

TYPED_TEST(Regions, FloodFillWithTheWorkMarkerComesToAnEnd) {
  TypeParam& image = this->Drawn({"..ff", "..ff"});
  EXPECT_FALSE(image.FloodFill(2, 0, Plain(2), 0, nullptr));
  EXPECT_FALSE(image.FloodFill(0, 0, Plain(15), 0, nullptr));
  EXPECT_FALSE(image.FloodFill(0, 0, {7, 3, 15, 2}, 0, nullptr));
  EXPECT_FALSE(image.GradientFill(2, 0, Plain(1), 3, 0, Plain(4), 0, nullptr));
  EXPECT_EQ(Picture(&image), (Rows{"..ff", "..ff"}));
  EXPECT_TRUE(image.FloodFill(0, 0, {7, 0, 15, 2}, 0, nullptr));
  EXPECT_EQ(CountOf(&image, 2), 8);
}

TYPED_TEST(Regions, FloodFillFollowsASpiral) {
  constexpr int32_t kSize = 401;
  TypeParam& image = this->New(kSize, kSize, 8);
  // Carved from the outside in; each arm is two shorter than the one before the last.
  int32_t x = 0;
  int32_t y = 0;
  int32_t stepX = 1;
  int32_t stepY = 0;
  int32_t carved = 1;
  image.SetPixel(0, 0, 0);
  int32_t arm = kSize - 1;
  for (int32_t turn = 0; arm > 0; turn++) {
    for (int32_t i = 0; i < arm; i++) {
      x += stepX;
      y += stepY;
      image.SetPixel(x, y, 0);
      carved++;
    }
    const int32_t turned = stepX;
    stepX = -stepY;
    stepY = turned;
    if (turn >= 2 && turn % 2 == 0) arm -= 2;
  }
  ASSERT_EQ(CountOf(&image, 0), carved);
  EXPECT_TRUE(image.FloodFill(0, 0, Plain(2), 0, nullptr));
  EXPECT_EQ(CountOf(&image, 2), carved);
  EXPECT_EQ(CountOf(&image, 0), 0);
}

// GradientFill.

TYPED_TEST(Regions, GradientFillRunsFromBlackToWhite) {
  TypeParam& image = this->New(60, 4);
  EXPECT_TRUE(image.GradientFill(6, 1, {7, 0, 0, 1}, 54, 1, {7, 0, 3, 4}, 0, nullptr));
  for (int32_t x = 0; x < 60; x++) {
    const PenSpec pen = LevelToPen(std::clamp(x - 6, 0, 48));
    for (int32_t y = 0; y < 4; y++) EXPECT_EQ(image.GetPixel(x, y), PenColorAt(pen, x, y)) << x << ", " << y;
  }
  EXPECT_EQ(Picture(&image)[0].substr(22, 1), "2");
  EXPECT_EQ(Picture(&image)[0].substr(38, 1), "3");
}

TYPED_TEST(Regions, GradientFillTakesAPlainPenAsBlack) {
  TypeParam& image = this->New(9, 9);
  EXPECT_TRUE(image.GradientFill(1, 4, {7, 0, 0, 4}, 8, 4, {7, 0, 0, 3}, 0, nullptr));
  EXPECT_EQ(CountOf(&image, 1), 81);
}

TYPED_TEST(Regions, GradientFillOutsideOrMaskedDoesNothing) {
  TypeParam& image = this->New(3, 3);
  Rect rect;
  EXPECT_FALSE(image.GradientFill(3, 0, Plain(1), 0, 0, Plain(2), 0, &rect));
  EXPECT_FALSE(image.GradientFill(0, -1, Plain(1), 0, 0, Plain(2), 0, &rect));
  EXPECT_FALSE(image.GradientFill(0, 0, Plain(1), 2, 0, Plain(2), Bit(0), &rect));
  EXPECT_EQ(CountOf(&image, 0), 9);
  EXPECT_EQ(rect, Rect{});
}

TYPED_TEST(Regions, GradientFillTakesHostileEndPoints) {
  TypeParam& image = this->New(5, 5);
  EXPECT_TRUE(image.GradientFill(4, 4, {7, 0, 1, 2}, kLowest, kHighest, {7, 0, 3, 4}, 0, nullptr));
  EXPECT_EQ(CountOf(&image, 2), 25);
}

TYPED_TEST(Regions, EdgeFillTakesItsColourFromTheClippedCorner) {
  this->ExpectChange({"244", "444", "222"}, {"944", "444", "999"},
                     [](TypeParam& image) { return image.EdgeFill(-5, -5, 20, 20, Plain(9), 0); });
}

TYPED_TEST(Regions, EdgeFillOfAMaskedColourOrOutsideDoesNothing) {
  TypeParam& image = this->Drawn({"..8", "..8"});
  EXPECT_FALSE(image.EdgeFill(0, 0, 3, 2, Plain(3), Bit(0)));
  EXPECT_FALSE(image.EdgeFill(3, 0, 3, 2, Plain(3), 0));
  EXPECT_EQ(Picture(&image), (Rows{"..8", "..8"}));
  EXPECT_TRUE(image.EdgeFill(0, 0, 3, 2, Plain(3), Bit(3)));
  EXPECT_EQ(Picture(&image), (Rows{".38", ".38"}));
}

// Underdrawing.

TYPED_TEST(Regions, ToSketchFadesLinesAndDarksAndReplacesWhite) {
  TypeParam& image = this->Drawn({"0123456789abcdef"});
  EXPECT_TRUE(image.ToSketch(0, 0, 16, 1, 0, 0));
  EXPECT_EQ(Picture(&image), (Rows{".567.567567bcdef"}));
  this->Draw(&image, {"0123456789abcdef"});
  EXPECT_TRUE(image.ToSketch(0, 0, 16, 1, 12, 0));
  EXPECT_EQ(Picture(&image), (Rows{".567c567567bcdef"}));
}

TYPED_TEST(Regions, ToSketchLeavesMaskedPixels) {
  for (int32_t index = 0; index < 15; index++) {
    TypeParam& image = this->Drawn({"0123456789abcde"});
    TypeParam& all = this->Drawn({"0123456789abcde"});
    image.ToSketch(0, 0, 15, 1, 6, Bit(index));
    all.ToSketch(0, 0, 15, 1, 6, 0);
    for (int32_t x = 0; x < 15; x++) EXPECT_EQ(image.GetPixel(x, 0), x == index ? x : all.GetPixel(x, 0));
  }
}

TEST(PaleSketch, ToSketchLeavesThePaleAndGhostColours) {
  IndexedImage image;
  ASSERT_TRUE(image.Resize(9, 1, 0));
  for (int32_t x = 0; x < 9; x++) image.SetPixel(x, 0, 16 + x);
  EXPECT_TRUE(image.ToSketch(0, 0, 9, 1, 0, 0));
  for (int32_t x = 0; x < 9; x++) EXPECT_EQ(image.GetPixel(x, 0), 16 + x);
}

TYPED_TEST(Regions, ClearSketchReplacesSketchPixelsOnly) {
  TypeParam& image = this->Drawn({"0123456789abcdef", "5555555555555555"});
  EXPECT_TRUE(image.ClearSketch(-1, -1, 99, 2, 0));
  EXPECT_EQ(Picture(&image), (Rows{".1234...89abcdef", "5555555555555555"}));
  EXPECT_TRUE(image.ClearSketch(14, 1, 99, 99, 3));
  EXPECT_EQ(Picture(&image)[1], "5555555555555533");
  EXPECT_FALSE(image.ClearSketch(0, 2, 4, 4, 3));
}

// Blocks.

TYPED_TEST(Regions, ExchangeSwapsTwoBlocks) {
  TypeParam image;
  PackedImage other;
  this->Draw(&image, {"1234", "1234", "1234"});
  ASSERT_TRUE(other.Resize(3, 2, 8));
  other.SetPixel(1, 0, 0);
  EXPECT_TRUE(image.Exchange(1, 1, &other, 0, 0, 2, 2));
  EXPECT_EQ(Picture(&image), (Rows{"1234", "18.4", "1884"}));
  EXPECT_EQ(Picture(&other), (Rows{"238", "238"}));
  EXPECT_TRUE(image.Exchange(1, 1, &other, 0, 0, 2, 2));
  EXPECT_EQ(Picture(&image), (Rows{"1234", "1234", "1234"}));
}

TYPED_TEST(Regions, ExchangeClipsToBothImages) {
  TypeParam& image = this->New(3, 3, 1);
  TypeParam& other = this->New(3, 3, 2);
  EXPECT_FALSE(image.Exchange(-1, 2, &other, 0, -1, 9, 9));
  EXPECT_FALSE(image.Exchange(3, 0, &other, 0, 0, 9, 9));
  EXPECT_FALSE(image.Exchange(0, 0, &other, 0, 3, 9, 9));
  EXPECT_TRUE(image.Exchange(-1, 1, &other, 0, -1, 9, 9));
  EXPECT_EQ(Picture(&image), (Rows{"111", "111", "221"}));
  EXPECT_EQ(Picture(&other), (Rows{"211", "222", "222"}));
}

TYPED_TEST(Regions, MoveBlockLeavesTheFillValueWhereItIs) {
  TypeParam& image = this->Drawn({"484..."});
  image.MoveBlock(0, 0, 3, 1, 3, 0, 4, 0);
  EXPECT_EQ(Picture(&image), (Rows{"444.8."}));
}

TYPED_TEST(Regions, MoveBlockObeysTheMaskAtBothEnds) {
  TypeParam& image = this->Drawn({"123...", "...999"});
  image.MoveBlock(0, 0, 3, 1, 3, 0, 0, Bit(2));
  EXPECT_EQ(Picture(&image)[0], ".2.1.3");
  image.MoveBlock(3, 0, 3, 1, 3, 1, 0, Bit(9));
  EXPECT_EQ(Picture(&image), (Rows{".2....", "...999"}));
}

TYPED_TEST(Regions, MoveBlockToItsOwnPlaceUnderTheMaskOfTheFillValueErases) {
  TypeParam& image = this->Drawn({".88."});
  image.MoveBlock(0, 0, 4, 1, 0, 0, 0, Bit(0));
  EXPECT_EQ(Picture(&image), (Rows{"...."}));
  this->Draw(&image, {".88."});
  image.MoveBlock(0, 0, 4, 1, 0, 0, 0, 0);
  EXPECT_EQ(Picture(&image), (Rows{".88."}));
}

TYPED_TEST(Regions, MoveBlockTakesHostileNumbers) {
  TypeParam& image = this->Drawn({"12", "34"});
  image.MoveBlock(0, 0, kLowest, kHighest, 1, 1, 0, 0);
  EXPECT_EQ(Picture(&image), (Rows{"12", "34"}));
  image.MoveBlock(kLowest, 0, kHighest, 2, kHighest, 0, 0, 0);
  EXPECT_EQ(Picture(&image), (Rows{"12", "34"}));
  image.MoveBlock(-1, -1, kHighest, kHighest, 0, -1, 0, 0);
  EXPECT_EQ(Picture(&image), (Rows{".1", ".3"}));
  image.MoveBlock(-1, -1, kHighest, kHighest, kLowest, kHighest, 0, 0);
  EXPECT_EQ(CountOf(&image, 0), 4);
}

TYPED_TEST(Regions, MosaicNeedsSixteenPixels) {
  TypeParam& image = this->New(6, 6, 8);
  EXPECT_FALSE(image.Mosaic(0, 0, 3, 5));
  EXPECT_FALSE(image.Mosaic(3, 3, 4, 4));
  EXPECT_FALSE(image.Mosaic(6, 0, 4, 4));
  EXPECT_FALSE(image.Mosaic(5, 5, -5, -5));
  EXPECT_EQ(CountOf(&image, 8), 36);
  EXPECT_TRUE(image.Mosaic(0, 0, 4, 4));
  EXPECT_EQ(CountOf(&image, 1), 16);
}

TYPED_TEST(Regions, MosaicCountsEachRoleByItsGrey) {
  constexpr int32_t kTones[] = {3, 0, 1, 2, 3, 3, 3, 3, 0, 1, 2, 3, 3, 3, 3};
  for (int32_t index = 0; index < 15; index++) {
    TypeParam& image = this->New(4, 4, index);
    EXPECT_TRUE(image.Mosaic(0, 0, 4, 4));
    EXPECT_EQ(CountOf(&image, kTones[index] + 1), 16) << index;
  }
}

TYPED_TEST(Regions, FlipsMirrorTheBlockAndKeepTheMiddle) {
  TypeParam& image = this->Drawn({"12348", "23481", "34812"});
  EXPECT_TRUE(image.FlipVertical(0, 0, 2, 3, 0));
  EXPECT_EQ(Picture(&image), (Rows{"34348", "23481", "12812"}));
  EXPECT_TRUE(image.FlipHorizontal(0, 1, 5, 9, 0));
  EXPECT_EQ(Picture(&image), (Rows{"34348", "18432", "21821"}));
  EXPECT_TRUE(image.FlipHorizontal(0, 0, 4, 1, 0));
  EXPECT_EQ(Picture(&image)[0], "43438");
}

TYPED_TEST(Regions, FlipsOfNothingAreTrueAndChangeNothing) {
  TypeParam& image = this->Drawn({"12", "34"});
  EXPECT_TRUE(image.FlipVertical(2, 0, 2, 2, 0));
  EXPECT_TRUE(image.FlipHorizontal(0, -2, 2, 2, 0));
  EXPECT_EQ(Picture(&image), (Rows{"12", "34"}));
}

TYPED_TEST(Regions, FlipTestsTheOldValueWhereEachPixelLands) {
  this->ExpectChange({"1.82"}, {"1881"},
                     [](TypeParam& image) { return image.FlipHorizontal(0, 0, 4, 1, Bit(8) | Bit(1)); });
}

// Dots, grids and guide lines.

TYPED_TEST(Regions, RandomDotsTakesOneNumberPerPixelColumnByColumn) {
  TypeParam& image = this->New(30, 20);
  TypeParam& expected = this->New(30, 20);
  const PenSpec pen = {10, 4, 2, 3};
  std::srand(77);
  EXPECT_TRUE(image.RandomDots(-3, 2, 20, 99, 3, pen, Bit(1)));
  const int32_t next = std::rand();
  std::srand(77);
  for (int32_t x = 0; x < 17; x++) {
    for (int32_t y = 2; y < 20; y++) {
      if (std::rand() % 9 == 0) expected.Stamp(x, y, pen, Bit(1), nullptr);
    }
  }
  EXPECT_EQ(std::rand(), next);
  EXPECT_EQ(Picture(&image), Picture(&expected));
  EXPECT_LT(CountOf(&image, 0), 590);
}

TYPED_TEST(Regions, RandomDotsWithIntervalOneStampsEveryPixel) {
  TypeParam& image = this->New(6, 6);
  image.SetPixel(3, 3, 8);
  EXPECT_TRUE(image.RandomDots(2, 2, 3, 3, 1, Plain(2), Bit(8)));
  EXPECT_EQ(Picture(&image), (Rows{"......", "......", "..222.", "..282.", "..222.", "......"}));
  EXPECT_FALSE(image.RandomDots(6, 2, 3, 3, 1, Plain(2), 0));
}

TYPED_TEST(Regions, RandomDotsTakesAHostileInterval) {
  TypeParam& image = this->New(2, 2);
  EXPECT_TRUE(image.RandomDots(0, 0, 2, 2, kHighest, Plain(2), 0));
  EXPECT_TRUE(image.RandomDots(0, 0, 2, 2, 1 << 16, Plain(2), 0));
}

TYPED_TEST(Regions, DrawGridRunsToTheFarEdges) {
  TypeParam& image = this->New(10, 9);
  EXPECT_TRUE(image.DrawGrid(1, 1, 7, 6, 3, 4, Plain(1), 0));
  EXPECT_EQ(Picture(&image), (Rows{"..........", ".55555555.", ".5..5..5..", ".5..5..5..", ".5..5..5..", ".55555555.",
                                   ".5..5..5..", ".5..5..5..", ".........."}));
}

TYPED_TEST(Regions, DrawGridWritesOnlyOverTransparentAndSketch) {
  this->ExpectChange({"0123456789abcde"}, {"7123477789abcde"},
                     [](TypeParam& image) { return image.DrawGrid(0, 0, 15, 1, 15, 1, Plain(10), 0); });
  this->ExpectChange({".5.6."}, {"75767"},
                     [](TypeParam& image) { return image.DrawGrid(0, 0, 5, 1, 5, 1, Plain(3), Bit(5) | Bit(6)); });
}

TYPED_TEST(Regions, DrawGridTurnsThePenIntoSketchColours) {
  constexpr int32_t kSketch[] = {0, 5, 6, 7, 0, 0, 0, 0, 5, 6, 7, 0, 0, 0, 0};
  for (int32_t index = 0; index < 15; index++) {
    TypeParam& image = this->New(4, 4, 6);
    EXPECT_TRUE(image.DrawGrid(0, 0, 4, 4, 1, 1, Plain(index), 0));
    EXPECT_EQ(CountOf(&image, kSketch[index]), 16) << index;
    TypeParam& dithered = this->New(4, 4, 7);
    EXPECT_TRUE(dithered.DrawGrid(0, 0, 4, 4, 1, 1, {7, 4, index, 8}, 0));
    EXPECT_EQ(CountOf(&dithered, 5), kSketch[index] == 5 ? 16 : 12) << index;
    EXPECT_GE(CountOf(&dithered, kSketch[index]), 4) << index;
  }
}

TYPED_TEST(Regions, DrawGridTakesStepsThatGoNowhereOrTooFar) {
  for (const int32_t step : {0, -2, kLowest, kHighest}) {
    TypeParam& image = this->New(5, 4);
    EXPECT_FALSE(image.DrawGrid(5, 0, 3, 3, 1, 1, Plain(1), 0));
    EXPECT_TRUE(image.DrawGrid(1, 1, 3, 2, step, step, Plain(1), 0));
    EXPECT_EQ(Picture(&image), (Rows{".....", ".5555", ".5...", ".5..."})) << step;
  }
}

TYPED_TEST(Regions, DrawSketchLineIsALineInSketchColours) {
  TypeParam& image = this->Drawn({"0123456789abcde"});
  Rect rect;
  EXPECT_TRUE(image.DrawSketchLine(0, 0, 14, 0, Plain(1), &rect));
  EXPECT_EQ(Picture(&image), (Rows{"5123455589abcde"}));
  EXPECT_EQ(rect, (Rect{-4, -5, 23, 10}));
}

// PickPen.

TYPED_TEST(Regions, PickPenOfPlainInk) {
  constexpr int32_t kColorA[] = {-1, 0, 1, 2, 3, 4, 5, 6, 0, 1, 2, 3, 4, 5, 6};
  for (int32_t index = 0; index < 15; index++) {
    TypeParam& image = this->New(8, 8, index);
    PenSpec pen = {3, 9, 13, 14};
    EXPECT_TRUE(image.PickPen(4, 4, &pen));
    EXPECT_EQ(pen, (PenSpec{3, 0, kColorA[index], index})) << index;
  }
}

TYPED_TEST(Regions, PickPenInvertsEveryDither) {
  for (int32_t tone = 1; tone < 16; tone++) {
    TypeParam& image = this->New(12, 12);
    image.FillBox(0, 0, 12, 12, {7, tone, 2, 3}, 0, nullptr);
    for (int32_t x = 2; x < 10; x++) {
      for (int32_t y = 2; y < 10; y++) {
        PenSpec pen;
        EXPECT_TRUE(image.PickPen(x, y, &pen));
        EXPECT_EQ(pen, (PenSpec{7, tone, 2, 3})) << tone;
      }
    }
  }
}

TYPED_TEST(Regions, PickPenOrdersTheColoursByIndex) {
  TypeParam& image = this->New(8, 8);
  image.FillBox(0, 0, 8, 8, {7, 5, 4, 1}, 0, nullptr);
  PenSpec pen;
  EXPECT_TRUE(image.PickPen(4, 4, &pen));
  EXPECT_EQ(pen, (PenSpec{7, 11, 1, 4}));
}

TYPED_TEST(Regions, PickPenLeavesOutPointsOutsideTheImage) {
  TypeParam& image = this->New(8, 8, 2);
  image.SetPixel(0, 0, 9);
  PenSpec pen;
  EXPECT_TRUE(image.PickPen(0, 0, &pen));
  EXPECT_EQ(pen, (PenSpec{7, 3, 2, 9}));
  EXPECT_TRUE(image.PickPen(9, 9, &pen));
  EXPECT_EQ(pen, (PenSpec{7, 0, 1, 2}));
  const PenSpec kept = {3, 9, 13, 14};
  for (const int32_t outside : {kLowest, -2, 10, kHighest}) {
    pen = kept;
    EXPECT_FALSE(image.PickPen(outside, 4, &pen));
    EXPECT_FALSE(image.PickPen(4, outside, &pen));
    EXPECT_EQ(pen, kept);
  }
}

}  // namespace
}  // namespace sorvel
