#include <gtest/gtest.h>

#include <vector>

#include "imaging/raster_fixture.h"
#include "support/ink_rules.h"

namespace sorvel {
namespace {

constexpr PenSpec kFinest = {7, 0, 0, 2};
constexpr PenSpec kWide = {0, 0, 0, 2};

// Writes down where it is stamped and with which ink; has no pixels.
class StampLog final : public CellImage {
 public:
  StampLog() : CellImage(16) { width = height = 64; }

  int32_t FindInk(int32_t, int32_t, int32_t end, int32_t) override { return end; }
  uint32_t GetRaw(int32_t, int32_t) override { return 0; }
  void SetRaw(int32_t, int32_t, uint32_t) override {}
  void Fill(int32_t) override {}
  int32_t GetPixel(int32_t, int32_t) override { return 0; }
  void SetPixel(int32_t, int32_t, int32_t) override {}
  CellImage* MakeBlank() override { return nullptr; }
  bool Resize(int32_t, int32_t, int32_t) override { return true; }
  bool Stamp(int32_t x, int32_t y, const PenSpec& pen, uint32_t, Rect*) override {
    points.push_back({x, y});
    inks.push_back(pen.colorB);
    return true;
  }

  std::vector<Point> points;
  std::vector<int32_t> inks;
};

// The points that the lines along a path stamp.
std::vector<Point> PathStamps(const std::vector<Point>& path) {
  std::vector<Point> stamps;
  const auto stamp = [&stamps](int32_t x, int32_t y) { stamps.push_back({x, y}); };
  for (size_t i = 1; i < path.size(); i++) inkrules::ForLine(path[i - 1].x, path[i - 1].y, path[i].x, path[i].y, stamp);
  return stamps;
}

// Compares without printing whole objects.
void ExpectPoints(const std::vector<Point>& actual, const std::vector<Point>& expected) {
  ASSERT_EQ(actual.size(), expected.size());
  for (size_t i = 0; i < actual.size(); i++) {
    EXPECT_EQ(actual[i].x, expected[i].x) << "point " << i;
    EXPECT_EQ(actual[i].y, expected[i].y) << "point " << i;
  }
}

TEST(GrowRect, GrowsByTheBlockOfAStampAndAMargin) {
  const struct {
    const char* rule;
    Rect before;
    Point at;
    Rect after;
  } cases[] = {
      {"FirstPointGivesTheBlockOfOneStamp", {}, {20, 30}, {16, 26, 8, 8}},
      {"SecondPointAddsAMarginOfOne", {16, 26, 8, 8}, {20, 30}, {15, 25, 10, 10}},
      {"EachSideMovesByItself", {0, 0, 100, 100}, {50, 50}, {0, 0, 100, 100}},
      {"EachSideMovesByItself", {0, 0, 100, 100}, {4, 50}, {-1, 0, 101, 100}},
      {"EachSideMovesByItself", {0, 0, 100, 100}, {50, 4}, {0, -1, 100, 101}},
      {"EachSideMovesByItself", {0, 0, 100, 100}, {96, 50}, {0, 0, 101, 100}},
      {"EachSideMovesByItself", {0, 0, 100, 100}, {50, 96}, {0, 0, 100, 101}},
      {"SideOnePixelFurtherOutStays", {0, 0, 100, 100}, {5, 5}, {0, 0, 100, 100}},
      {"SideOnePixelFurtherOutStays", {0, 0, 100, 100}, {95, 95}, {0, 0, 100, 100}},
      {"MissingWidthOrHeightStartsOver", {90, 90, 5, 0}, {20, 30}, {16, 26, 8, 8}},
      {"MissingWidthOrHeightStartsOver", {90, 90, 0, 5}, {20, 30}, {16, 26, 8, 8}},
      {"StopsAtTheEndsOfTheCoordinates", {}, {kLowest, kLowest}, {kLowest, kLowest, 8, 8}},
      {"StopsAtTheEndsOfTheCoordinates",
       {kLowest, kLowest, 8, 8},
       {kHighest, kHighest},
       {kLowest, kLowest, kHighest, kHighest}},
  };
  for (const auto& one : cases) {
    Rect rect = one.before;
    GrowRect(&rect, one.at.x, one.at.y);
    EXPECT_EQ(rect, one.after) << one.rule;
  }
}

template <typename Image>
class Raster : public OnBothImages<Image> {
 protected:
  static void Copy(CellImage* from, Image* to) { OnBothImages<Image>::Draw(to, Picture(from)); }
};
TYPED_TEST_SUITE(Raster, Images);

// InkExactness compares stamps, boxes and lines with their plain forms on random images, and the rules of the pen are
// tested on the whole program; here are edges of coordinates, results, and what the caller's pen becomes.

TYPED_TEST(Raster, StampFarOutsideSetsNothing) {
  TypeParam& image = this->New(9, 9);
  for (const int32_t x : {kLowest, -4, 13, kHighest}) {
    for (const int32_t y : {kLowest, -4, 13, kHighest}) image.Stamp(x, y, kWide, 0, nullptr);
  }
  EXPECT_EQ(CountOf(&image, 0), 81);
}

TYPED_TEST(Raster, StampGrowsTheDirtyRectangleEvenOutside) {
  TypeParam& image = this->New(8, 8);
  Rect rect;
  image.Stamp(-20, 5, kFinest, 0, &rect);
  EXPECT_EQ(rect, (Rect{-24, 1, 8, 8}));
}

TYPED_TEST(Raster, ToneIsTheNumberOfPixelsOfTheFirstColour) {
  for (int32_t tone = 0; tone < 16; tone++) {
    TypeParam& image = this->New(8, 4);
    image.FillBox(0, 0, 8, 4, {7, tone, 3, 4}, 0, nullptr);
    EXPECT_EQ(CountOf(&image, 3), 2 * tone) << tone;
    EXPECT_EQ(CountOf(&image, 4), 2 * (16 - tone)) << tone;
  }
}

TYPED_TEST(Raster, DrawLineTurnsSolidBlackIntoLineBlack) {
  TypeParam& image = this->New(10, 3);
  PenSpec pen = {7, 0, 0, 1};
  EXPECT_TRUE(image.DrawLine(1, 1, 8, 1, &pen, 0, nullptr));
  EXPECT_EQ(Picture(&image)[1], ".88888888.");
  EXPECT_EQ(pen, (PenSpec{7, 0, 0, 1}));
  image.FillBox(1, 1, 8, 1, pen, 0, nullptr);
  EXPECT_EQ(Picture(&image)[1], ".11111111.");
}

TYPED_TEST(Raster, DrawLineKeepsOtherSolidColours) {
  for (const int32_t color : {0, 2, 3, 4, 5, 9, 10, 11, 14}) {
    TypeParam& image = this->New(3, 3, 1);
    PenSpec pen = {7, 0, 1, color};
    image.DrawLine(1, 1, 1, 1, &pen, 0, nullptr);
    EXPECT_EQ(image.GetPixel(1, 1), color);
    EXPECT_EQ(pen, (PenSpec{7, 0, 1, color}));
  }
}

TYPED_TEST(Raster, DrawLineLeavesAPenOfLineBlackWithBlack) {
  TypeParam& image = this->New(3, 3);
  PenSpec solid = {7, 0, 0, 8};
  image.DrawLine(1, 1, 1, 1, &solid, 0, nullptr);
  EXPECT_EQ(image.GetPixel(1, 1), 8);
  EXPECT_EQ(solid, (PenSpec{7, 0, 0, 1}));
  PenSpec dithered = {7, 3, 2, 8};
  image.DrawLine(1, 1, 1, 1, &dithered, 0, nullptr);
  EXPECT_EQ(dithered, (PenSpec{7, 3, 2, 1}));
}

TYPED_TEST(Raster, DrawLineGrowsTheDirtyRectangleByItsEndPoints) {
  TypeParam& image = this->New(40, 40);
  PenSpec pen = kFinest;
  Rect rect;
  image.DrawLine(10, 12, 30, 16, &pen, 0, &rect);
  EXPECT_EQ(rect, (Rect{6, 8, 29, 13}));
  Rect single;
  image.DrawLine(10, 12, 10, 12, &pen, 0, &single);
  EXPECT_EQ(single, (Rect{5, 7, 10, 10}));
}

TEST(LineSteps, DrawLineStampsStepByStepInAllDirections) {
  for (int32_t x = 12; x <= 52; x++) {
    for (int32_t y = 12; y <= 52; y += x == 12 || x == 52 ? 1 : 40) {
      StampLog log;
      PenSpec pen = kFinest;
      log.DrawLine(32, 32, x, y, &pen, 0, nullptr);
      ExpectPoints(log.points, PathStamps({{32, 32}, {x, y}}));
      StampLog back;
      back.DrawLine(x, y, 32, 32, &pen, 0, nullptr);
      ExpectPoints(back.points, PathStamps({{x, y}, {32, 32}}));
    }
  }
}

TEST(LineSteps, DrawLineFromFarAwayTakesOnlyTheStepsNearTheImage) {
  StampLog log;
  PenSpec pen = kFinest;
  log.DrawLine(kLowest, kLowest, kHighest, kHighest, &pen, 0, nullptr);
  std::vector<Point> expected = {{kLowest, kLowest}};
  for (int32_t i = -3; i <= 67; i++) expected.push_back({i, i});
  ExpectPoints(log.points, expected);

  StampLog flat;
  flat.DrawLine(kHighest, 31, kLowest, 31, &pen, 0, nullptr);
  EXPECT_EQ(flat.points.size(), 72U);
  EXPECT_EQ(flat.points.back(), (Point{-3, 31}));

  StampLog away;
  away.DrawLine(kHighest, kLowest, kHighest, kHighest - 1, &pen, 0, nullptr);
  EXPECT_EQ(away.points.size(), 72U);
  StampLog beyond;
  beyond.DrawLine(kHighest, kHighest, kHighest - 9, 70, &pen, 0, nullptr);
  EXPECT_EQ(beyond.points.size(), 1U);
}

TYPED_TEST(Raster, DrawBoxRunsOnePixelBeyondItsBlock) {
  TypeParam& image = this->New(8, 8);
  PenSpec pen = kFinest;
  Rect rect;
  EXPECT_TRUE(image.DrawBox(2, 2, 3, 3, &pen, 0, &rect));
  EXPECT_EQ(Picture(&image),
            (Rows{"........", "........", "..2222..", "..2..2..", "..2..2..", "..2222..", "........", "........"}));
  EXPECT_EQ(rect, (Rect{-3, -3, 13, 13}));
}

TYPED_TEST(Raster, DrawBoxOfNegativeSizeRunsBackAndClosesWhereItIsCut) {
  TypeParam& image = this->New(10, 10);
  TypeParam& expected = this->New(10, 10);
  PenSpec pen = kFinest;
  EXPECT_TRUE(image.DrawBox(5, 6, -3, -4, &pen, 0, nullptr));
  EXPECT_TRUE(expected.DrawBox(3, 3, 3, 4, &pen, 0, nullptr));
  EXPECT_EQ(Picture(&image), Picture(&expected));
  EXPECT_EQ(Picture(&image)[3], "...2222...");
  TypeParam& cut = this->New(6, 6);
  EXPECT_TRUE(cut.DrawBox(-4, -4, 7, 7, &pen, 0, nullptr));
  EXPECT_EQ(Picture(&cut), (Rows{"2222..", "2..2..", "2..2..", "2222..", "......", "......"}));
}

TYPED_TEST(Raster, DrawBoxOutsideOrWithoutSizeDoesNothing) {
  TypeParam& image = this->New(6, 6);
  PenSpec pen = {7, 0, 0, 8};
  Rect rect;
  EXPECT_FALSE(image.DrawBox(6, 0, 3, 3, &pen, 0, &rect));
  EXPECT_FALSE(image.DrawBox(0, 0, 0, 3, &pen, 0, &rect));
  EXPECT_FALSE(image.DrawBox(-3, 0, 3, 3, &pen, 0, &rect));
  EXPECT_EQ(CountOf(&image, 0), 36);
  EXPECT_EQ(pen.colorB, 8);
  EXPECT_EQ(rect, (Rect{0, 0, 0, 0}));
}

TYPED_TEST(Raster, DrawBoxTakesHostileSizes) {
  TypeParam& image = this->New(6, 6);
  PenSpec pen = kFinest;
  EXPECT_TRUE(image.DrawBox(kHighest, kHighest, kLowest, kLowest, &pen, 0, nullptr));
  EXPECT_FALSE(image.DrawBox(kLowest, kLowest, kLowest, kLowest, &pen, 0, nullptr));
  EXPECT_EQ(Picture(&image), (Rows{"222222", "2.....", "2.....", "2.....", "2.....", "2....."}));
}

TEST(LineSteps, DrawBoxDrawsTopRightBottomLeft) {
  StampLog log;
  PenSpec pen = {7, 0, 0, 1};
  log.DrawBox(2, 3, 3, 2, &pen, 0, nullptr);
  ExpectPoints(log.points, PathStamps({{2, 3}, {5, 3}, {5, 5}, {2, 5}, {2, 3}}));
  EXPECT_EQ(log.inks, std::vector<int32_t>(log.inks.size(), 8));
}

TEST(LineSteps, DrawBoxKeepsADitheredLineBlackForItsFirstLineOnly) {
  StampLog log;
  PenSpec pen = {7, 4, 2, 8};
  log.DrawBox(2, 3, 3, 2, &pen, 0, nullptr);
  ASSERT_EQ(log.inks.size(), 14U);
  for (size_t i = 0; i < 14; i++) EXPECT_EQ(log.inks[i], i < 4 ? 8 : 1);
}

TYPED_TEST(Raster, FillBoxOfNegativeSizeFillsTheNormalisedBox) {
  TypeParam& image = this->New(7, 6);
  EXPECT_TRUE(image.FillBox(5, 4, -3, -2, kFinest, 0, nullptr));
  EXPECT_EQ(Picture(&image), (Rows{".......", ".......", ".......", "...222.", "...222.", "......."}));
}

TYPED_TEST(Raster, FillBoxGivesLeftTopRightBottom) {
  TypeParam& image = this->New(10, 12);
  Bounds box = {1, 2, 3, 4};
  EXPECT_TRUE(image.FillBox(-2, 3, 6, 5, kFinest, 0, &box));
  EXPECT_EQ(box, (Bounds{0, 3, 4, 8}));
  EXPECT_TRUE(image.FillBox(8, 10, 9, 9, kFinest, 0, &box));
  EXPECT_EQ(box, (Bounds{8, 10, 10, 12}));
  EXPECT_FALSE(image.FillBox(10, 3, 6, 5, kFinest, 0, &box));
  EXPECT_EQ(box, (Bounds{8, 10, 10, 12}));
}

TYPED_TEST(Raster, FillBoxTakesHostileSizes) {
  TypeParam& image = this->New(5, 5);
  Bounds box;
  EXPECT_TRUE(image.FillBox(2, 2, kHighest, kHighest, kFinest, 0, &box));
  EXPECT_EQ(box, (Bounds{2, 2, 5, 5}));
  EXPECT_TRUE(image.FillBox(2, 2, kLowest, kLowest, kFinest, 0, &box));
  EXPECT_EQ(box, (Bounds{0, 0, 3, 3}));
  EXPECT_FALSE(image.FillBox(kLowest, kLowest, kLowest, kHighest, kFinest, 0, &box));
  EXPECT_EQ(CountOf(&image, 2), 17);
}

TYPED_TEST(Raster, ClipRectCutsToTheImage) {
  struct Case {
    Rect in;
    Rect out;
    bool result;
  };
  const Case cases[] = {
      {{2, 3, 4, 5}, {2, 3, 4, 5}, true},
      {{-2, -3, 4, 5}, {0, 0, 2, 2}, true},
      {{8, 6, 9, 9}, {8, 6, 2, 2}, true},
      {{-5, -5, 99, 99}, {0, 0, 10, 8}, true},
      {{9, 7, 1, 1}, {9, 7, 1, 1}, true},
      {{kLowest, kLowest, kHighest, kHighest}, {}, false},
      {{-1, -1, kHighest, kHighest}, {0, 0, 10, 8}, true},
      {{5, 5, kHighest, kHighest}, {5, 5, 5, 3}, true},
      {{10, 0, 1, 1}, {}, false},
      {{0, 8, 1, 1}, {}, false},
      {{-4, 0, 4, 1}, {}, false},
      {{0, -4, 1, 4}, {}, false},
      {{3, 3, 0, 2}, {}, false},
      {{3, 3, 2, 0}, {}, false},
      {{5, 5, -2, 2}, {}, false},
      {{kHighest, kHighest, kHighest, kHighest}, {}, false},
      {{kLowest, kLowest, kLowest, kLowest}, {}, false},
  };
  TypeParam& image = this->New(10, 8);
  for (const Case& one : cases) {
    Rect rect = one.in;
    EXPECT_EQ(image.ClipRect(&rect.x, &rect.y, &rect.width, &rect.height), one.result) << one.in.x << ", " << one.in.y;
    if (one.result) {
      EXPECT_EQ(rect, one.out);
    }
  }
}

TYPED_TEST(Raster, FillRectWritesOneIndex) {
  TypeParam& image = this->New(6, 4, 8);
  EXPECT_TRUE(image.FillRect(4, -1, 9, 3, 3));
  EXPECT_EQ(Picture(&image), (Rows{"888833", "888833", "888888", "888888"}));
  EXPECT_FALSE(image.FillRect(6, 0, 2, 2, 3));
  EXPECT_EQ(CountOf(&image, 3), 4);
}

TYPED_TEST(Raster, FillRectOfTheWholeImageFillsThePaddingToo) {
  TypeParam& image = this->New(5, 2);
  ASSERT_EQ(image.pitch, image.colors == 16 ? 4 : 8);
  EXPECT_TRUE(image.FillRect(-1, -1, 7, 4, 4));
  const uint8_t full = image.colors == 16 ? 0x44 : 0x04;
  for (int32_t i = 0; i < image.ByteCount(); i++) EXPECT_EQ(image.bits[i], full) << i;
  EXPECT_TRUE(image.FillRect(0, 0, 5, 1, 0));
  EXPECT_EQ(image.bits[image.pitch - 1], full);
  EXPECT_EQ(image.bits[0], 0);
}

TYPED_TEST(Raster, StampImageTestsTheMaskAgainstTheSource) {
  TypeParam& image = this->New(4, 1, 9);
  TypeParam& source = this->New(4, 1);
  source.SetPixel(0, 0, 1);
  source.SetPixel(1, 0, 9);
  source.SetPixel(3, 0, 4);
  EXPECT_TRUE(image.StampImage(0, 0, &source, 0, 0, 4, 1, {7, 0, 0, 2}, 1U << 9));
  EXPECT_EQ(Picture(&image)[0], "2992");
}

TYPED_TEST(Raster, StampImageClipsToBothImages) {
  TypeParam image;
  PackedImage source;
  this->Make(&image, 5, 5);
  ASSERT_TRUE(source.Resize(3, 3, 8));
  EXPECT_TRUE(image.StampImage(3, -1, &source, -1, 0, 9, 9, {7, 0, 0, 2}, 0));
  EXPECT_EQ(Picture(&image), (Rows{"....2", "....2", ".....", ".....", "....."}));
  EXPECT_FALSE(image.StampImage(5, 0, &source, 0, 0, 3, 3, {7, 0, 0, 2}, 0));
  EXPECT_FALSE(image.StampImage(0, 0, &source, 3, 0, 3, 3, {7, 0, 0, 2}, 0));
}

// The points that a curve with the finest pen stamps are those of the lines along a path.
void ExpectCurve(const char* rule, const Point (&points)[4], const std::vector<Point>& path) {
  SCOPED_TRACE(rule);
  StampLog log;
  PenSpec pen = kFinest;
  EXPECT_TRUE(log.DrawCurve(points, &pen, 0, nullptr));
  ExpectPoints(log.points, PathStamps(path));
}

TEST(CurveSteps, DrawCurveFollowsTheCubicInShortLines) {
  ExpectCurve("DrawCurveOfNoLengthIsOneStamp", {{0, 0}, {9, 9}, {9, 9}, {40, 3}}, {{9, 9}, {9, 9}});
  ExpectCurve("DrawCurveOfThreePixelsIsOneLine", {{0, 40}, {9, 9}, {12, 10}, {40, 40}}, {{9, 9}, {12, 10}});
  ExpectCurve("DrawCurveFollowsTheCubicInShortLines", {{2, 20}, {6, 4}, {26, 18}, {30, 30}},
              {{6, 4}, {8, 5}, {10, 5}, {12, 7}, {14, 8}, {16, 9}, {18, 11}, {20, 13}, {22, 14}, {24, 16}, {26, 18}});
  // The middle lies at 2, -1.5.
  ExpectCurve("DrawCurveRoundsNegativeCoordinatesTowardsZero", {{0, 0}, {0, 0}, {4, -3}, {4, -3}},
              {{0, 0}, {2, -1}, {4, -3}});
  ExpectCurve("DrawCurveRoundsNegativeCoordinatesTowardsZero", {{0, 0}, {0, 0}, {4, 3}, {4, 3}},
              {{0, 0}, {2, 2}, {4, 3}});
  // With wider weights the second inner point would be 19, 0.
  ExpectCurve("DrawCurveRoundsItsWeightsTo32Bits", {{29, 20}, {24, 1}, {14, 3}, {31, 31}},
              {{24, 1}, {21, 0}, {19, -1}, {17, 0}, {15, 1}, {14, 3}});
  // Weights that are rounded only once would put the first inner point at 48, 11.
  ExpectCurve(
      "DrawCurveRoundsAfterEachOperationOnAWeight", {{46, 28}, {46, 10}, {60, 31}, {28, 21}},
      {{46, 10}, {48, 12}, {50, 13}, {51, 15}, {53, 18}, {55, 20}, {57, 22}, {58, 25}, {59, 27}, {60, 29}, {60, 31}});
  // With wider sums six sixths would stay below 1 and give a seventh line, of no length.
  ExpectCurve("DrawCurveAddsItsStepsIn32Bits", {{0, 30}, {12, 30}, {24, 30}, {36, 30}},
              {{12, 30}, {14, 30}, {16, 30}, {18, 30}, {20, 30}, {22, 30}, {24, 30}});
  // Twelve twelfths do stay below it.
  std::vector<Point> path;
  for (int32_t x = 24; x <= 48; x += 2) path.push_back({x, 30});
  path.push_back({48, 30});
  ExpectCurve("DrawCurveAddsItsStepsIn32Bits", {{0, 30}, {24, 30}, {48, 30}, {72, 30}}, path);
}

TEST(CurveSteps, DrawCurveOfAnyLengthComesToAnEnd) {
  StampLog log;
  PenSpec pen = kFinest;
  const Point points[4] = {{kHighest, kLowest}, {kLowest, kLowest}, {kHighest, kHighest}, {kHighest, kLowest}};
  EXPECT_TRUE(log.DrawCurve(points, &pen, 0, nullptr));
  EXPECT_EQ(log.points.size(), 72U);
  StampLog overshoot;
  const Point bent[4] = {{kLowest, kLowest}, {kHighest, kHighest}, {kHighest - 9, kHighest}, {kLowest, kLowest}};
  EXPECT_TRUE(overshoot.DrawCurve(bent, &pen, 0, nullptr));
  EXPECT_FALSE(overshoot.points.empty());
}

TYPED_TEST(Raster, DrawCurvePassesItsPenMaskAndDirtyRectangleToTheLines) {
  TypeParam image;
  TypeParam expected;
  this->Make(&image, 40, 40, 3);
  image.FillRect(0, 8, 40, 1, 9);
  this->Copy(&image, &expected);
  const Point points[4] = {{2, 20}, {6, 4}, {26, 18}, {30, 30}};
  const Point path[] = {{6, 4},   {8, 5},   {10, 5},  {12, 7},  {14, 8}, {16, 9},
                        {18, 11}, {20, 13}, {22, 14}, {24, 16}, {26, 18}};
  PenSpec pen = {12, 0, 0, 1};
  Rect rect;
  Rect expectedRect;
  EXPECT_TRUE(image.DrawCurve(points, &pen, 1U << 9, &rect));
  for (size_t i = 1; i < std::size(path); i++) {
    expected.DrawLine(path[i - 1].x, path[i - 1].y, path[i].x, path[i].y, &pen, 1U << 9, &expectedRect);
  }
  EXPECT_EQ(Picture(&image), Picture(&expected));
  EXPECT_EQ(rect, expectedRect);
  EXPECT_EQ(CountOf(&image, 9), 40);
  EXPECT_GT(CountOf(&image, 8), 100);
}

}  // namespace
}  // namespace sorvel
