#pragma once

#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "rules/script_session.h"

namespace rules {

struct ModelPen {
  int shape = 7;
  int tone = 0;
  int colorA = 0;
  int colorB = 1;
};

struct Point {
  int x = 0;
  int y = 0;
};

// The ink of a pen at a pixel.
int ModelInkAt(const ModelPen& pen, int x, int y);
// The plain or dithered pen of a grey level, 0 to 48.
ModelPen ModelPenOfLevel(int level);

// What a picture should hold, built from the rules of the ink by the plainest code.
class InkModel {
 public:
  explicit InkModel(int modelWidth = 64, int modelHeight = 48, int value = 0);

  int At(int x, int y) const;
  // Points outside are left out.
  InkModel& Set(int x, int y, int value);
  InkModel& Fill(int x, int y, int areaWidth, int areaHeight, int value);
  InkModel& FillWith(const ModelPen& pen, int x, int y, int areaWidth, int areaHeight);
  // A mask has bit n set where index n is protected.
  InkModel& Stamp(int x, int y, const ModelPen& pen, unsigned mask = 0);
  InkModel& Line(int x0, int y0, int x1, int y1, ModelPen pen = {}, unsigned mask = 0);
  // The outline that runs from (x, y) to (right, bottom), both included.
  InkModel& Outline(int x, int y, int right, int bottom, int value);
  InkModel& Curve(const std::array<Point, 4>& points, const ModelPen& pen = {}, unsigned mask = 0);

  int Width() const { return width; }
  int Height() const { return height; }

 private:
  int width;
  int height;
  std::vector<int> pixels;
};

// Success when the picture is the model's; a failure names the first pixels that differ.
testing::AssertionResult Shows(const PixelMatrix& picture, const InkModel& model);

}  // namespace rules
