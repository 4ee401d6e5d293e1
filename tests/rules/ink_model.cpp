#include "rules/ink_model.h"

#include <algorithm>
#include <cstdlib>

#include "support/ink_rules.h"

namespace rules {

namespace {

int Nearest(long double value) {
  const int whole = static_cast<int>(value);
  return value - static_cast<long double>(whole) >= 0.5L ? whole + 1 : whole;
}

}  // namespace

int ModelInkAt(const ModelPen& pen, int x, int y) {
  return inkrules::InkAt(pen.tone, pen.colorA, pen.colorB, x, y);
}

ModelPen ModelPenOfLevel(int level) {
  ModelPen pen;
  pen.shape = 0;
  pen.colorA = level == 0 ? 0 : (level - 1) / 16 + 1;
  pen.colorB = pen.colorA + 1;
  pen.tone = (16 - level % 16) % 16;
  return pen;
}

InkModel::InkModel(int modelWidth, int modelHeight, int value)
    : width(modelWidth),
      height(modelHeight),
      pixels(static_cast<size_t>(modelWidth) * static_cast<size_t>(modelHeight), value) {}

int InkModel::At(int x, int y) const {
  return pixels[static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)];
}

InkModel& InkModel::Set(int x, int y, int value) {
  if (x >= 0 && y >= 0 && x < width && y < height) {
    pixels[static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)] = value;
  }
  return *this;
}

InkModel& InkModel::Fill(int x, int y, int areaWidth, int areaHeight, int value) {
  for (int j = y; j < y + areaHeight; ++j) {
    for (int i = x; i < x + areaWidth; ++i) Set(i, j, value);
  }
  return *this;
}

InkModel& InkModel::FillWith(const ModelPen& pen, int x, int y, int areaWidth, int areaHeight) {
  for (int j = y; j < y + areaHeight; ++j) {
    for (int i = x; i < x + areaWidth; ++i) Set(i, j, ModelInkAt(pen, i, j));
  }
  return *this;
}

InkModel& InkModel::Stamp(int x, int y, const ModelPen& pen, unsigned mask) {
  for (int px = std::max(x - 4, 0); px < std::min(x + 4, width); ++px) {
    for (int py = std::max(y - 4, 0); py < std::min(y + 4, height); ++py) {
      if (!inkrules::Covers(pen.shape, px - x, py - y)) continue;
      if ((mask >> At(px, py) & 1) == 0) Set(px, py, ModelInkAt(pen, px, py));
    }
  }
  return *this;
}

InkModel& InkModel::Line(int x0, int y0, int x1, int y1, ModelPen pen, unsigned mask) {
  if (pen.tone == 0 && pen.colorB == 1) pen.colorB = 8;
  inkrules::ForLine(x0, y0, x1, y1, [&](int x, int y) { Stamp(x, y, pen, mask); });
  return *this;
}

InkModel& InkModel::Outline(int x, int y, int right, int bottom, int value) {
  for (int i = x; i <= right; ++i) {
    Set(i, y, value);
    Set(i, bottom, value);
  }
  for (int j = y; j <= bottom; ++j) {
    Set(x, j, value);
    Set(right, j, value);
  }
  return *this;
}

InkModel& InkModel::Curve(const std::array<Point, 4>& points, const ModelPen& pen, unsigned mask) {
  const int distance = std::max(std::abs(points[1].x - points[2].x), std::abs(points[1].y - points[2].y));
  const int count = distance / 2;
  const float step = count == 0 ? 1.0F : 1.0F / static_cast<float>(count);
  Point last = points[1];
  for (float t = step; t < 1.0F; t += step) {
    const float weights[4] = {t * (t - 1) * (t - 2) * (-1.0F / 6), (t + 1) * (t - 1) * (t - 2) * (1.0F / 2),
                              (t + 1) * t * (t - 2) * (-1.0F / 2), (t + 1) * t * (t - 1) * (1.0F / 6)};
    long double x = 0;
    long double y = 0;
    for (size_t i = 0; i < 4; ++i) {
      x += static_cast<long double>(weights[i]) * points[i].x;
      y += static_cast<long double>(weights[i]) * points[i].y;
    }
    const Point next = {Nearest(x), Nearest(y)};
    Line(last.x, last.y, next.x, next.y, pen, mask);
    last = next;
  }
  Line(last.x, last.y, points[2].x, points[2].y, pen, mask);
  return *this;
}

testing::AssertionResult Shows(const PixelMatrix& picture, const InkModel& model) {
  if (picture.Width() != model.Width() || picture.Height() != model.Height()) {
    return testing::AssertionFailure() << "the picture is " << picture.Width() << " by " << picture.Height();
  }
  int count = 0;
  testing::AssertionResult result = testing::AssertionFailure();
  for (int y = 0; y < model.Height(); ++y) {
    for (int x = 0; x < model.Width(); ++x) {
      const int value = static_cast<int>(picture.At(x, y));
      if (value == model.At(x, y)) continue;
      ++count;
      if (count <= 8) result << "(" << x << ", " << y << ") is " << value << " instead of " << model.At(x, y) << "; ";
    }
  }
  if (count == 0) return testing::AssertionSuccess();
  return result << count << " pixels differ";
}

}  // namespace rules
