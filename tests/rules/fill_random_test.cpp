#include <gtest/gtest.h>

#include <cstddef>
#include <random>
#include <vector>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"

namespace rules {
namespace {

constexpr int width = 64;
constexpr int height = 48;
constexpr Point neighbours[] = {{1, 0}, {-1, 0}, {0, 1}, {0, -1}};

bool IsSketch(int value) {
  return value >= 5 && value <= 7;
}

bool IsBoundary(int value) {
  return value == 9 || value == 10;
}

// What a fill reaches, told as sets: the area that is connected with the start, and with it the connected areas of the
// shadow boundaries that touch it.
class Reach {
 public:
  Reach(const InkModel& filledPicture, unsigned fillMask) : picture(filledPicture), mask(fillMask) {}

  void Take(const Point& seed, int value, bool soft) {
    const size_t first = points.size();
    Add(seed);
    for (size_t i = first; i < points.size(); ++i) {
      for (const Point& point : Around(points[i])) {
        const int here = picture.At(point.x, point.y);
        if (here == value || (soft && IsSketch(here))) Add(point);
      }
    }
    if (!soft) return;
    const size_t last = points.size();
    for (size_t i = first; i < last; ++i) {
      for (const Point& point : Around(points[i])) {
        const int here = picture.At(point.x, point.y);
        if (IsBoundary(here) && (mask >> here & 1) == 0) Take(point, here, false);
      }
    }
  }

  std::vector<Point> points;

 private:
  static size_t Number(const Point& point) { return static_cast<size_t>(point.y * width + point.x); }

  void Add(const Point& point) {
    if (taken[Number(point)]) return;
    taken[Number(point)] = true;
    points.push_back(point);
  }

  // The neighbours inside the picture that aren't taken.
  std::vector<Point> Around(const Point& point) const {
    std::vector<Point> found;
    for (const Point& step : neighbours) {
      const Point next = {point.x + step.x, point.y + step.y};
      const bool inside = next.x >= 0 && next.y >= 0 && next.x < width && next.y < height;
      if (inside && !taken[Number(next)]) found.push_back(next);
    }
    return found;
  }

  const InkModel& picture;
  unsigned mask;
  std::vector<bool> taken = std::vector<bool>(static_cast<size_t>(width) * height, false);
};

InkModel ModelOf(const PixelMatrix& picture) {
  InkModel model;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) model.Set(x, y, static_cast<int>(picture.At(x, y)));
  }
  return model;
}

struct RandomFill {
  Point point;
  ModelPen pen;
  unsigned mask = 0;
};

void Apply(InkModel& model, const RandomFill& fill) {
  ModelPen pen = fill.pen;
  unsigned mask = fill.mask;
  if (pen.tone == 0 && IsBoundary(pen.colorB)) {
    pen.colorA = 0;
    pen.tone = 15;
    mask |= 1U << pen.colorB;
  }
  int seed = model.At(fill.point.x, fill.point.y);
  if (IsBoundary(seed) && (fill.mask >> seed & 1) == 0) {
    seed = 0;
    model.Set(fill.point.x, fill.point.y, 0);
  }
  if (IsSketch(seed)) seed = 0;
  if ((mask >> seed & 1) != 0) return;
  Reach reach(model, mask);
  reach.Take(fill.point, seed, !IsBoundary(seed));
  for (const Point& point : reach.points) model.Set(point.x, point.y, ModelInkAt(pen, point.x, point.y));
}

class RandomPicture : public testing::TestWithParam<unsigned> {
 protected:
  RandomPicture() : numbers(GetParam()) {}
  int Random(int from, int to) { return from + static_cast<int>(numbers() % static_cast<unsigned>(to - from + 1)); }

  // Rectangles of every index, some of them turned into underdrawing.
  void Scatter() {
    constexpr int indices[] = {0, 0, 0, 1, 2, 3, 4, 4, 9, 9, 10, 11, 14};
    for (int i = 0; i < 30; ++i) {
      const int x = Random(0, 60);
      const int y = Random(0, 44);
      session.FillArea(x, y, Random(1, 12), Random(1, 12), indices[Random(0, 12)]);
      if (i == 12) session.Command(kCommandToSketch);
    }
    for (int i = 0; i < 3; ++i) session.DrawInkLine(Random(0, 63), Random(0, 47), Random(0, 63), Random(0, 47));
  }

  RandomFill Fill() {
    constexpr int plain[] = {1, 9, 10, 11, 0, 14};
    RandomFill fill;
    fill.point = {Random(0, 63), Random(0, 47)};
    if (Random(0, 1) == 0) {
      fill.pen.colorB = plain[Random(0, 5)];
      session.PickPlain(fill.pen.colorB);
    } else {
      fill.pen = {.tone = Random(0, 15), .colorA = Random(1, 3)};
      fill.pen.colorB = fill.pen.colorA + 1;
      session.Pick(fill.pen.tone, fill.pen.colorA);
    }
    if (Random(0, 2) == 0) {
      const int index = Random(0, 1) == 0 ? 9 : 4;
      session.Mask({index});
      fill.mask = 1U << index;
    } else {
      session.Mask({});
    }
    session.Command(kToolFill).LeftClick(fill.point.x, fill.point.y);
    return fill;
  }

  std::mt19937 numbers;
  DrawingSession session;
};

TEST_P(RandomPicture, IsFilledByItsRegions) {
  Scatter();
  std::vector<RandomFill> fills;
  session.View();
  for (int i = 0; i < 15; ++i) {
    fills.push_back(Fill());
    session.View();
  }
  session.Run();
  for (size_t i = 0; i < fills.size(); ++i) {
    InkModel model = ModelOf(session.ViewAt(static_cast<int>(i)));
    Apply(model, fills[i]);
    EXPECT_TRUE(Shows(session.ViewAt(static_cast<int>(i) + 1), model)) << "fill " << i;
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomPicture, testing::Range(1U, 21U));

}  // namespace
}  // namespace rules
