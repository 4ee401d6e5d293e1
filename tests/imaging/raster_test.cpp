#include <gtest/gtest.h>

#include <vector>

#include "imaging/raster_fixture.h"
#include "support/ink_rules.h"

namespace sorvel {
namespace {

constexpr PenSpec kFinest = {7, 0, 0, 2};
constexpr PenSpec kWide = {0, 0, 0, 2};

int32_t InkOf(const PenSpec& pen, int32_t x, int32_t y) {
  return inkrules::InkAt(pen.tone, pen.colorA, pen.colorB, x, y);
}

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

TEST(GrowRect, FirstPointGivesTheBlockOfOneStamp) {
  Rect rect;
  GrowRect(&rect, 20, 30);
  EXPECT_EQ(rect, (Rect{16, 26, 8, 8}));
}

TEST(GrowRect, SecondPointAddsAMarginOfOne) {
  Rect rect;
  GrowRect(&rect, 20, 30);
  GrowRect(&rect, 20, 30);
  EXPECT_EQ(rect, (Rect{15, 25, 10, 10}));
}

TEST(GrowRect, EachSideMovesByItself) {
  Rect rect = {0, 0, 100, 100};
  GrowRect(&rect, 50, 50);
  EXPECT_EQ(rect, (Rect{0, 0, 100, 100}));
  GrowRect(&rect, 4, 50);
  EXPECT_EQ(rect, (Rect{-1, 0, 101, 100}));
  GrowRect(&rect, 50, 4);
  EXPECT_EQ(rect, (Rect{-1, -1, 101, 101}));
  GrowRect(&rect, 96, 50);
  EXPECT_EQ(rect, (Rect{-1, -1, 102, 101}));
  GrowRect(&rect, 50, 96);
  EXPECT_EQ(rect, (Rect{-1, -1, 102, 102}));
}

TEST(GrowRect, SideOnePixelFurtherOutStays) {
  Rect rect = {0, 0, 100, 100};
  GrowRect(&rect, 5, 5);
  GrowRect(&rect, 95, 95);
  EXPECT_EQ(rect, (Rect{0, 0, 100, 100}));
}

TEST(GrowRect, MissingWidthOrHeightStartsOver) {
  Rect flat = {90, 90, 5, 0};
  GrowRect(&flat, 20, 30);
  EXPECT_EQ(flat, (Rect{16, 26, 8, 8}));
  Rect thin = {90, 90, 0, 5};
  GrowRect(&thin, 20, 30);
  EXPECT_EQ(thin, (Rect{16, 26, 8, 8}));
}

TEST(GrowRect, StopsAtTheEndsOfTheCoordinates) {
  Rect rect;
  GrowRect(&rect, kLowest, kLowest);
  EXPECT_EQ(rect, (Rect{kLowest, kLowest, 8, 8}));
  GrowRect(&rect, kHighest, kHighest);
  EXPECT_EQ(rect, (Rect{kLowest, kLowest, kHighest, kHighest}));
}

template <typename Image>
class Raster : public OnBothImages<Image> {
 protected:
  static void Copy(CellImage* from, Image* to) { OnBothImages<Image>::Draw(to, Picture(from)); }
};
TYPED_TEST_SUITE(Raster, Images);

TYPED_TEST(Raster, StampWithFinestPenSetsOnePixel) {
  TypeParam& image = this->New(21, 20);
  EXPECT_TRUE(image.Stamp(10, 10, kFinest, 0, nullptr));
  EXPECT_EQ(image.GetPixel(10, 10), 2);
  EXPECT_EQ(CountOf(&image, 0), 21 * 20 - 1);
}

TYPED_TEST(Raster, StampWithWidestSquareCoversEightByEight) {
  TypeParam& image = this->New(20, 20);
  image.Stamp(10, 10, kWide, 0, nullptr);
  for (int32_t y = 0; y < 20; y++) {
    for (int32_t x = 0; x < 20; x++) {
      const bool isInside = x >= 6 && x <= 13 && y >= 6 && y <= 13;
      EXPECT_EQ(image.GetPixel(x, y), isInside ? 2 : 0) << x << ", " << y;
    }
  }
}

TYPED_TEST(Raster, StampPrintsTheFootprintOfEachShape) {
  for (int32_t shape = 0; shape < 15; shape++) {
    TypeParam& image = this->New(12, 13);
    image.Stamp(6, 6, {shape, 0, 0, 3}, 0, nullptr);
    for (int32_t y = 0; y < 13; y++) {
      for (int32_t x = 0; x < 12; x++) {
        EXPECT_EQ(image.GetPixel(x, y), inkrules::Covers(shape, x - 6, y - 6) ? 3 : 0)
            << shape << ": " << x << ", " << y;
      }
    }
  }
}

TYPED_TEST(Raster, StampNearACornerSetsOnlyThePixelsInside) {
  TypeParam& image = this->New(9, 7);
  image.Stamp(-2, -3, kWide, 0, nullptr);
  EXPECT_EQ(Picture(&image),
            (Rows{"22.......", ".........", ".........", ".........", ".........", ".........", "........."}));
  image.Fill(0);
  image.Stamp(11, 8, kWide, 0, nullptr);
  EXPECT_EQ(Picture(&image),
            (Rows{".........", ".........", ".........", ".........", ".......22", ".......22", ".......22"}));
}

TYPED_TEST(Raster, StampFarOutsideSetsNothing) {
  TypeParam& image = this->New(9, 9);
  for (const int32_t x : {kLowest, -4, 13, kHighest}) {
    for (const int32_t y : {kLowest, -4, 13, kHighest}) image.Stamp(x, y, kWide, 0, nullptr);
  }
  EXPECT_EQ(CountOf(&image, 0), 81);
}

TYPED_TEST(Raster, StampLeavesMaskedPixels) {
  TypeParam& image = this->New(8, 8);
  image.SetPixel(3, 3, 8);
  image.SetPixel(4, 4, 1);
  image.Stamp(4, 4, kWide, 1U << 8, nullptr);
  EXPECT_EQ(image.GetPixel(3, 3), 8);
  EXPECT_EQ(CountOf(&image, 2), 63);
}

TYPED_TEST(Raster, StampUnderTheMaskOfTransparentDrawsOverInkOnly) {
  TypeParam& image = this->New(8, 8);
  image.SetPixel(3, 3, 8);
  image.Stamp(4, 4, kWide, 1, nullptr);
  EXPECT_EQ(image.GetPixel(3, 3), 2);
  EXPECT_EQ(CountOf(&image, 0), 63);
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

TYPED_TEST(Raster, ToneZeroIsPlainSecondColour) {
  TypeParam& image = this->New(8, 8);
  image.Stamp(4, 4, {0, 0, 3, 4}, 0, nullptr);
  EXPECT_EQ(CountOf(&image, 4), 64);
}

TYPED_TEST(Raster, ToneEightIsAnEvenMixture) {
  TypeParam& image = this->New(4, 4);
  image.FillBox(0, 0, 4, 4, {7, 8, 3, 4}, 0, nullptr);
  EXPECT_EQ(Picture(&image), (Rows{"4343", "3434", "4343", "3434"}));
}

TYPED_TEST(Raster, ToneNineIsToneSevenWithTheColoursSwapped) {
  TypeParam& nine = this->New(4, 4);
  TypeParam& seven = this->New(4, 4);
  nine.FillBox(0, 0, 4, 4, {7, 9, 3, 4}, 0, nullptr);
  seven.FillBox(0, 0, 4, 4, {7, 7, 4, 3}, 0, nullptr);
  EXPECT_EQ(Picture(&nine), Picture(&seven));
}

TYPED_TEST(Raster, DitherOfTwoStrokesLinesUp) {
  TypeParam& apart = this->New(20, 12);
  TypeParam& whole = this->New(20, 12);
  const PenSpec pen = {0, 5, 2, 3};
  apart.Stamp(5, 5, pen, 0, nullptr);
  apart.Stamp(10, 7, pen, 0, nullptr);
  apart.Stamp(5, 5, pen, 0, nullptr);
  whole.FillBox(0, 0, 20, 12, pen, 0, nullptr);
  for (int32_t y = 0; y < 12; y++) {
    for (int32_t x = 0; x < 20; x++) {
      if (apart.GetPixel(x, y) != 0) {
        EXPECT_EQ(apart.GetPixel(x, y), whole.GetPixel(x, y));
      }
    }
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

TYPED_TEST(Raster, DrawLineKeepsTheBlackOfADither) {
  TypeParam& image = this->New(8, 8);
  PenSpec pen = {0, 8, 3, 1};
  image.DrawLine(4, 4, 4, 4, &pen, 0, nullptr);
  EXPECT_EQ(CountOf(&image, 1), 32);
  EXPECT_EQ(CountOf(&image, 3), 32);
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

TYPED_TEST(Raster, DrawLineStampsTheStartWithLineBlackToo) {
  TypeParam& image = this->New(3, 3);
  PenSpec pen = {7, 0, 0, 1};
  image.DrawLine(1, 1, 1, 1, &pen, 0, nullptr);
  EXPECT_EQ(CountOf(&image, 8), 1);
  EXPECT_EQ(CountOf(&image, 0), 8);
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

TYPED_TEST(Raster, DrawLineHoldsTheMaskOverTheWholeWidth) {
  TypeParam& image = this->New(20, 9);
  for (int32_t y = 0; y < 9; y++) image.SetPixel(10, y, 9);
  PenSpec pen = kWide;
  image.DrawLine(0, 4, 19, 4, &pen, 1U << 9, nullptr);
  EXPECT_EQ(CountOf(&image, 9), 9);
  EXPECT_EQ(CountOf(&image, 2), 19 * 8);
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

TEST(LineSteps, DrawLineOfNoLengthIsOneStamp) {
  StampLog log;
  PenSpec pen = kFinest;
  log.DrawLine(5, 6, 5, 6, &pen, 0, nullptr);
  ExpectPoints(log.points, {{5, 6}});
}

TEST(LineSteps, DrawLineStampsBothEndPoints) {
  StampLog log;
  PenSpec pen = kFinest;
  log.DrawLine(3, 40, 17, 11, &pen, 0, nullptr);
  EXPECT_EQ(log.points.front(), (Point{3, 40}));
  EXPECT_EQ(log.points.back(), (Point{17, 11}));
  EXPECT_EQ(log.points.size(), 30U);
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

TYPED_TEST(Raster, DrawBoxOfNegativeSizeRunsBack) {
  TypeParam& image = this->New(10, 10);
  TypeParam& expected = this->New(10, 10);
  PenSpec pen = kFinest;
  EXPECT_TRUE(image.DrawBox(5, 6, -3, -4, &pen, 0, nullptr));
  EXPECT_TRUE(expected.DrawBox(3, 3, 3, 4, &pen, 0, nullptr));
  EXPECT_EQ(Picture(&image), Picture(&expected));
  EXPECT_EQ(Picture(&image)[3], "...2222...");
}

TYPED_TEST(Raster, DrawBoxClosesAlongTheEdgeWhereItIsCut) {
  TypeParam& image = this->New(6, 6);
  PenSpec pen = kFinest;
  EXPECT_TRUE(image.DrawBox(-4, -4, 7, 7, &pen, 0, nullptr));
  EXPECT_EQ(Picture(&image), (Rows{"2222..", "2..2..", "2..2..", "2222..", "......", "......"}));
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

TYPED_TEST(Raster, StampImageCountsTheRowOfTheToneFromTheColumnOfItsPlace) {
  const PenSpec pen = {7, 6, 2, 3};
  for (int32_t dx = 0; dx < 4; dx++) {
    for (int32_t dy = 0; dy < 4; dy++) {
      TypeParam& image = this->New(12, 12);
      TypeParam& source = this->New(8, 8, 1);
      EXPECT_TRUE(image.StampImage(dx, dy, &source, 0, 0, 8, 8, pen, 0));
      for (int32_t i = 0; i < 8; i++) {
        for (int32_t j = 0; j < 8; j++) EXPECT_EQ(image.GetPixel(dx + i, dy + j), InkOf(pen, dx + i, dx + j));
      }
      EXPECT_EQ(CountOf(&image, 0), 144 - 64);
    }
  }
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

TEST(CurveSteps, DrawCurveOfNoLengthIsOneStamp) {
  StampLog log;
  PenSpec pen = kFinest;
  const Point points[4] = {{0, 0}, {9, 9}, {9, 9}, {40, 3}};
  EXPECT_TRUE(log.DrawCurve(points, &pen, 0, nullptr));
  ExpectPoints(log.points, {{9, 9}});
}

TEST(CurveSteps, DrawCurveOfThreePixelsIsOneLine) {
  StampLog log;
  PenSpec pen = kFinest;
  const Point points[4] = {{0, 40}, {9, 9}, {12, 10}, {40, 40}};
  log.DrawCurve(points, &pen, 0, nullptr);
  ExpectPoints(log.points, PathStamps({{9, 9}, {12, 10}}));
}

TEST(CurveSteps, DrawCurveFollowsTheCubicInShortLines) {
  StampLog log;
  PenSpec pen = kFinest;
  const Point points[4] = {{2, 20}, {6, 4}, {26, 18}, {30, 30}};
  log.DrawCurve(points, &pen, 0, nullptr);
  ExpectPoints(
      log.points,
      PathStamps(
          {{6, 4}, {8, 5}, {10, 5}, {12, 7}, {14, 8}, {16, 9}, {18, 11}, {20, 13}, {22, 14}, {24, 16}, {26, 18}}));
}

TEST(CurveSteps, DrawCurveRoundsNegativeCoordinatesTowardsZero) {
  StampLog log;
  PenSpec pen = kFinest;
  const Point points[4] = {{0, 0}, {0, 0}, {4, -3}, {4, -3}};
  log.DrawCurve(points, &pen, 0, nullptr);
  // The middle lies at 2, -1.5.
  ExpectPoints(log.points, PathStamps({{0, 0}, {2, -1}, {4, -3}}));
  StampLog up;
  const Point mirrored[4] = {{0, 0}, {0, 0}, {4, 3}, {4, 3}};
  up.DrawCurve(mirrored, &pen, 0, nullptr);
  ExpectPoints(up.points, PathStamps({{0, 0}, {2, 2}, {4, 3}}));
}

TEST(CurveSteps, DrawCurveRoundsItsWeightsTo32Bits) {
  StampLog log;
  PenSpec pen = kFinest;
  const Point points[4] = {{29, 20}, {24, 1}, {14, 3}, {31, 31}};
  log.DrawCurve(points, &pen, 0, nullptr);
  // With wider weights the second inner point would be 19, 0.
  ExpectPoints(log.points, PathStamps({{24, 1}, {21, 0}, {19, -1}, {17, 0}, {15, 1}, {14, 3}}));
}

TEST(CurveSteps, DrawCurveRoundsAfterEachOperationOnAWeight) {
  StampLog log;
  PenSpec pen = kFinest;
  const Point points[4] = {{46, 28}, {46, 10}, {60, 31}, {28, 21}};
  log.DrawCurve(points, &pen, 0, nullptr);
  // Weights that are rounded only once would put the first inner point at 48, 11.
  ExpectPoints(log.points, PathStamps({{46, 10},
                                       {48, 12},
                                       {50, 13},
                                       {51, 15},
                                       {53, 18},
                                       {55, 20},
                                       {57, 22},
                                       {58, 25},
                                       {59, 27},
                                       {60, 29},
                                       {60, 31}}));
}

TEST(CurveSteps, DrawCurveAddsItsStepsIn32Bits) {
  StampLog log;
  PenSpec pen = kFinest;
  const Point points[4] = {{0, 30}, {12, 30}, {24, 30}, {36, 30}};
  log.DrawCurve(points, &pen, 0, nullptr);
  // With wider sums six sixths would stay below 1 and give a seventh line, of no length.
  ExpectPoints(log.points, PathStamps({{12, 30}, {14, 30}, {16, 30}, {18, 30}, {20, 30}, {22, 30}, {24, 30}}));

  // Twelve twelfths do stay below it.
  StampLog longer;
  const Point further[4] = {{0, 30}, {24, 30}, {48, 30}, {72, 30}};
  longer.DrawCurve(further, &pen, 0, nullptr);
  std::vector<Point> path;
  for (int32_t x = 24; x <= 48; x += 2) path.push_back({x, 30});
  path.push_back({48, 30});
  ExpectPoints(longer.points, PathStamps(path));
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
