#include "rules/ink_model.h"

#include <algorithm>
#include <cstdlib>

namespace rules {

const std::array<std::array<int, 8>, 15> gModelShapes = {{
    {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF},
    {0x00, 0x7F, 0x7F, 0x7F, 0x7F, 0x7F, 0x7F, 0x7F},
    {0x00, 0x7E, 0x7E, 0x7E, 0x7E, 0x7E, 0x7E, 0x00},
    {0x00, 0x00, 0x3E, 0x3E, 0x3E, 0x3E, 0x3E, 0x00},
    {0x00, 0x00, 0x3C, 0x3C, 0x3C, 0x3C, 0x00, 0x00},
    {0x00, 0x00, 0x00, 0x1C, 0x1C, 0x1C, 0x00, 0x00},
    {0x00, 0x00, 0x00, 0x18, 0x18, 0x00, 0x00, 0x00},
    {0x00, 0x00, 0x00, 0x00, 0x08, 0x00, 0x00, 0x00},
    {0x00, 0x00, 0x00, 0x18, 0x18, 0x00, 0x00, 0x00},
    {0x00, 0x00, 0x00, 0x08, 0x1C, 0x08, 0x00, 0x00},
    {0x00, 0x00, 0x18, 0x3C, 0x3C, 0x18, 0x00, 0x00},
    {0x00, 0x00, 0x1C, 0x3E, 0x3E, 0x3E, 0x1C, 0x00},
    {0x00, 0x18, 0x3C, 0x7E, 0x7E, 0x3C, 0x18, 0x00},
    {0x00, 0x1C, 0x3E, 0x7F, 0x7F, 0x7F, 0x3E, 0x1C},
    {0x3C, 0x7E, 0xFF, 0xFF, 0xFF, 0xFF, 0x7E, 0x3C},
}};

namespace {

// Rows 0 and 1 of the tile in the first byte, rows 2 and 3 in the second.
constexpr int tonePatterns[9][2] = {{0x00, 0x00}, {0x08, 0x00}, {0x08, 0x02}, {0x08, 0x0A}, {0x0A, 0x0A},
                                    {0x4A, 0x0A}, {0x4A, 0x1A}, {0x5A, 0x1A}, {0x5A, 0x5A}};

int Sign(int value) {
  return (value > 0) - (value < 0);
}

int Nearest(long double value) {
  const int whole = static_cast<int>(value);
  return value - static_cast<long double>(whole) >= 0.5L ? whole + 1 : whole;
}

}  // namespace

int ModelInkAt(const ModelPen& pen, int x, int y) {
  int tone = pen.tone;
  int first = pen.colorA;
  int second = pen.colorB;
  if (tone >= 9) {
    std::swap(first, second);
    tone = 16 - tone;
  }
  const int bit = x % 4 + y % 2 * 4;
  return (tonePatterns[tone][y % 4 / 2] >> bit & 1) != 0 ? first : second;
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

void InkModel::Set(int x, int y, int value) {
  if (x < 0 || y < 0 || x >= width || y >= height) return;
  pixels[static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)] = value;
}

void InkModel::Fill(int x, int y, int areaWidth, int areaHeight, int value) {
  for (int j = y; j < y + areaHeight; ++j) {
    for (int i = x; i < x + areaWidth; ++i) Set(i, j, value);
  }
}

void InkModel::FillWith(const ModelPen& pen, int x, int y, int areaWidth, int areaHeight) {
  for (int j = y; j < y + areaHeight; ++j) {
    for (int i = x; i < x + areaWidth; ++i) Set(i, j, ModelInkAt(pen, i, j));
  }
}

void InkModel::Stamp(int x, int y, const ModelPen& pen, unsigned mask) {
  for (int column = 0; column < 8; ++column) {
    for (int row = 0; row < 8; ++row) {
      if ((gModelShapes[static_cast<size_t>(pen.shape)][static_cast<size_t>(row)] & 0x80 >> column) == 0) continue;
      const int px = x - 4 + column;
      const int py = y - 4 + row;
      if (px < 0 || py < 0 || px >= width || py >= height) continue;
      if ((mask >> At(px, py) & 1) == 0) Set(px, py, ModelInkAt(pen, px, py));
    }
  }
}

void InkModel::Line(int x0, int y0, int x1, int y1, ModelPen pen, unsigned mask) {
  if (pen.tone == 0 && pen.colorB == 1) pen.colorB = 8;
  Stamp(x0, y0, pen, mask);
  const int ax = std::abs(x1 - x0);
  const int ay = std::abs(y1 - y0);
  const int sx = Sign(x1 - x0);
  const int sy = Sign(y1 - y0);
  int x = x0;
  int y = y0;
  const bool flat = ay < ax;
  const int steps = flat ? ax : ay;
  int error = -steps;
  for (int i = 0; i < steps; ++i) {
    (flat ? x : y) += flat ? sx : sy;
    error += 2 * (flat ? ay : ax);
    if (error >= 0) {
      (flat ? y : x) += flat ? sy : sx;
      error -= 2 * steps;
    }
    Stamp(x, y, pen, mask);
  }
}

void InkModel::Outline(int x, int y, int right, int bottom, int value) {
  for (int i = x; i <= right; ++i) {
    Set(i, y, value);
    Set(i, bottom, value);
  }
  for (int j = y; j <= bottom; ++j) {
    Set(x, j, value);
    Set(right, j, value);
  }
}

void InkModel::Curve(const std::array<Point, 4>& points, const ModelPen& pen, unsigned mask) {
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
