#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <random>

#include "platform_fixture.h"

namespace sorvel::platform {
namespace {

class HeadlessDrawing : public HeadlessTest {
 protected:
  HeadlessDrawing() { Make(12, 8); }
  ~HeadlessDrawing() override { DeleteBitmap(bitmap); }

  void Make(int32_t width, int32_t height) {
    window = MakePopupWindow("Class", nullptr, width, height, &object);
    context = BeginDrawing(window);
  }
  // The client area's rows: "." black, "#" white, "f" the face, "x" anything else.
  std::string Picture() {
    std::string rows;
    for (int32_t y = 0; y < window->height; ++y) {
      for (int32_t x = 0; x < window->width; ++x) rows += SignOf(PixelAt(x, y));
      rows += "\n";
    }
    return rows;
  }
  static char SignOf(ColorEntry color) {
    if (color.red == 0 && color.green == 0 && color.blue == 0) return '.';
    if (color.red == 255 && color.green == 255 && color.blue == 255) return '#';
    return color.red == 192 && color.green == 192 && color.blue == 192 ? 'f' : 'x';
  }
  ColorEntry PixelAt(int32_t x, int32_t y) { return window->pixels.at(static_cast<size_t>(y * window->width + x)); }
  int32_t CountLit() {
    int32_t count = 0;
    for (const ColorEntry& color : window->pixels) count += SignOf(color) != '.' ? 1 : 0;
    return count;
  }
  // A bitmap whose pixels are numbered colours: red is 16 times the number.
  void MakeBitmap(int32_t width, int32_t height, const std::vector<uint8_t>& pixels) {
    ColorEntry colors[256] = {};
    for (int i = 0; i < 256; ++i) colors[i].red = static_cast<uint8_t>(i * 16);
    uint8_t* bits = nullptr;
    bitmap = CreateBitmap(width, height, colors, 256, 256, &bits);
    const int32_t pitch = (width + 3) & ~3;
    for (int32_t y = 0; y < height; ++y) std::memcpy(bits + y * pitch, pixels.data() + y * width, size_t(width));
  }
  std::vector<int> Reds(int32_t y) {
    std::vector<int> reds;
    for (int32_t x = 0; x < window->width; ++x) reds.push_back(PixelAt(x, y).red / 16);
    return reds;
  }

  Log log;
  Recorder object{"w", &log};
  WindowHandle window = nullptr;
  DeviceContext* context = nullptr;
  BitmapHandle bitmap = nullptr;
};

constexpr int32_t kExtremes[] = {INT_MIN, INT_MIN + 1, -7, -1, 0, 1, 5, 100, INT_MAX - 1, INT_MAX};

TEST_F(HeadlessDrawing, FillsAreClippedAndEmptyOnesDrawNothing) {
  Make(4, 3);
  const BrushHandle brush = MakeBrush(255, 255, 255);
  FillArea(context, {2, 1, 99, 99}, brush);
  EXPECT_EQ(Picture(), "....\n..##\n..##\n");
  FillFace(context, {-5, -5, 1, 1});
  EXPECT_EQ(Picture(), "f...\n..##\n..##\n");
  FillArea(context, {3, 0, 1, 3}, brush);
  FillArea(context, {0, 0, 4, 3}, nullptr);
  FillBlack(context, 3, 2, INT_MAX, INT_MAX);
  EXPECT_EQ(Picture(), "f...\n..##\n..#.\n");
  DeleteBrush(brush);
}

TEST_F(HeadlessDrawing, ALineLeavesOutItsLastPoint) {
  Make(5, 3);
  InvertLine(context, {0, 1}, {4, 1});
  EXPECT_EQ(Picture(), ".....\n####.\n.....\n");
  InvertLine(context, {0, 1}, {4, 1});
  InvertLine(context, {3, 2}, {1, 0});
  EXPECT_EQ(Picture(), ".....\n..#..\n...#.\n");
  InvertLine(context, {2, 2}, {2, 2});
  EXPECT_EQ(CountLit(), 2);
}

TEST_F(HeadlessDrawing, ALineDrawnBackwardsCoversTheSamePixels) {
  Make(40, 40);
  for (int32_t x = 0; x < 40; ++x) {
    for (int32_t y = 0; y < 40; y += 3) {
      const Point from = {20, 20};
      const Point to = {x, y};
      InvertLine(context, from, to);
      InvertLine(context, to, from);
      // Only the two ends differ.
      EXPECT_EQ(CountLit(), from == to ? 0 : 2) << x << " " << y;
      window->pixels.assign(window->pixels.size(), ColorEntry{});
    }
  }
}

TEST_F(HeadlessDrawing, ALineIsAsLongAsItsLongerSideAndTouches) {
  Make(30, 30);
  InvertLine(context, {3, 4}, {25, 13});
  EXPECT_EQ(CountLit(), 22);
  for (int32_t x = 3; x < 25; ++x) {
    int32_t found = 0;
    for (int32_t y = 0; y < 30; ++y) {
      if (PixelAt(x, y).red == 0) continue;
      ++found;
      EXPECT_LE(std::abs((y - 4) * 22 - (x - 3) * 9), 11);
    }
    EXPECT_EQ(found, 1) << x;
  }
}

TEST_F(HeadlessDrawing, AClippedLineHasThePixelsOfTheWholeOne) {
  Make(30, 20);
  InvertLine(context, {-50, -20}, {70, 43});
  const std::vector<ColorEntry> small = window->pixels;
  const WindowHandle large = MakePopupWindow("Class", nullptr, 200, 100, nullptr);
  InvertLine(BeginDrawing(large), {0, 30}, {120, 93});
  for (int32_t y = 0; y < 20; ++y) {
    for (int32_t x = 0; x < 30; ++x) {
      const ColorEntry& there = large->pixels[static_cast<size_t>((y + 50) * 200 + x + 50)];
      ASSERT_EQ(small[static_cast<size_t>(y * 30 + x)].red, there.red) << x << " " << y;
    }
  }
}

TEST_F(HeadlessDrawing, NothingBreaksAtTheEndsOfTheRange) {
  const BrushHandle brush = MakeBrush(255, 255, 255);
  MakeBitmap(3, 2, {1, 2, 3, 4, 5, 6});
  ColorEntry colors[256] = {};
  for (const int32_t a : kExtremes) {
    for (const int32_t b : kExtremes) {
      for (const int32_t c : kExtremes) {
        for (const int32_t d : kExtremes) {
          InvertLine(context, {a, b}, {c, d});
          InvertLine(context, {a, b}, {c, d});
          InvertFrame(context, {a, b, c, d});
          InvertFrame(context, {a, b, c, d});
          FillArea(context, {a, b, c, d}, brush);
          FillBlack(context, a, b, c, d);
          FillFace(context, {a, b, c, d});
          DrawRectEdge(context, {a, b, c, d}, EdgeStyle::kEtched);
          DrawBitmap(context, a, b, c, d, bitmap, b, a, colors);
          DrawBitmap(context, 0, 1, a, b, bitmap, c, d, colors);
          StretchBitmap(context, {a, b, c, d}, bitmap, {0, 0, 3, 2});
          StretchBitmap(context, {0, 0, 12, 8}, bitmap, {a, b, c, d});
          StretchBitmap(context, {a, b, c, d}, bitmap, {b, a, d, c});
        }
      }
    }
  }
  DeleteBrush(brush);
}

TEST_F(HeadlessDrawing, AFrameIsDottedOnOneGridAndComesOff) {
  Make(7, 5);
  InvertFrame(context, {1, 1, 6, 5});
  EXPECT_EQ(Picture(), ".......\n.#.#.#.\n.......\n.#...#.\n..#.#..\n");
  InvertFrame(context, {1, 1, 6, 5});
  EXPECT_EQ(CountLit(), 0);
}

TEST_F(HeadlessDrawing, EachPixelOfAThinFrameIsInvertedOnce) {
  const std::pair<Bounds, int32_t> frames[] = {{{0, 0, 5, 1}, 3}, {{2, 0, 3, 5}, 3}, {{2, 2, 3, 3}, 1}};
  for (const auto& [place, lit] : frames) {
    InvertFrame(context, place);
    EXPECT_EQ(CountLit(), lit);
    InvertFrame(context, place);
  }
}

TEST_F(HeadlessDrawing, EmptyAndNegativeFramesDrawNothing) {
  for (const Bounds& place : {Bounds{2, 2, 2, 6}, Bounds{6, 6, 2, 2}, Bounds{2, 6, 6, 2}}) InvertFrame(context, place);
  EXPECT_EQ(CountLit(), 0);
}

TEST_F(HeadlessDrawing, ABitmapIsDrawnThroughTheGivenColours) {
  Make(4, 2);
  MakeBitmap(3, 2, {1, 2, 3, 4, 5, 6});
  ColorEntry colors[256] = {};
  for (int i = 0; i < 256; ++i) colors[i].red = static_cast<uint8_t>(16 * (i + 1));
  DrawBitmap(context, 1, 0, 9, 9, bitmap, 1, 0, colors);
  EXPECT_EQ(Reds(0), std::vector<int>({0, 3, 4, 0}));
  EXPECT_EQ(Reds(1), std::vector<int>({0, 6, 7, 0}));
  DrawBitmap(context, 0, 0, 3, 2, bitmap, -2, -1, colors);
  EXPECT_EQ(Reds(1), std::vector<int>({0, 6, 2, 0}));
}

TEST_F(HeadlessDrawing, StretchingAtTheSameSizeCopiesThroughTheBitmapsColours) {
  Make(4, 2);
  MakeBitmap(3, 2, {1, 2, 3, 4, 5, 6});
  StretchBitmap(context, {0, 0, 3, 2}, bitmap, {0, 0, 3, 2});
  EXPECT_EQ(Reds(0), std::vector<int>({1, 2, 3, 0}));
  EXPECT_EQ(Reds(1), std::vector<int>({4, 5, 6, 0}));
  const ColorEntry other = {0, 0, 128, 0};
  SetBitmapColors(bitmap, 5, 1, &other);
  StretchBitmap(context, {0, 0, 3, 2}, bitmap, {0, 0, 3, 2});
  EXPECT_EQ(Reds(1), std::vector<int>({4, 8, 6, 0}));
}

TEST_F(HeadlessDrawing, EnlargingRepeatsPixels) {
  Make(6, 2);
  MakeBitmap(3, 1, {1, 2, 3});
  StretchBitmap(context, {0, 0, 6, 2}, bitmap, {0, 0, 3, 1});
  EXPECT_EQ(Reds(1), std::vector<int>({1, 1, 2, 2, 3, 3}));
}

TEST_F(HeadlessDrawing, PixelsAreShownWhereTheyLieInTheWindow) {
  Make(3, 2);
  const ColorEntry pixels[] = {{0, 0, 16, 0}, {0, 0, 32, 0}, {0, 0, 48, 0}, {0, 0, 64, 0}};
  DrawPixels(context, {1, 1, 3, 2}, pixels);
  EXPECT_EQ(Reds(0), std::vector<int>({0, 0, 0}));
  EXPECT_EQ(Reds(1), std::vector<int>({0, 1, 2}));
  DrawPixels(context, {2, -1, 4, 1}, pixels);
  EXPECT_EQ(Reds(0), std::vector<int>({0, 0, 3}));
  DrawPixels(context, {1, 1, 1, 2}, pixels);
  EXPECT_EQ(Reds(1), std::vector<int>({0, 1, 2}));
}

TEST_F(HeadlessDrawing, WhereThereIsNoBitmapTheTargetStays) {
  Make(6, 1);
  FillFace(context, {0, 0, 6, 1});
  MakeBitmap(2, 1, {1, 2});
  StretchBitmap(context, {0, 0, 6, 1}, bitmap, {-2, 0, 4, 1});
  EXPECT_EQ(Reds(0), std::vector<int>({12, 12, 1, 2, 12, 12}));
  StretchBitmap(context, {0, 0, 6, 1}, nullptr, {0, 0, 2, 1});
  StretchBitmap(context, {5, 0, 0, 1}, bitmap, {0, 0, 2, 1});
  StretchBitmap(context, {0, 0, 6, 1}, bitmap, {2, 0, 0, 1});
  EXPECT_EQ(Reds(0), std::vector<int>({12, 12, 1, 2, 12, 12}));
}

TEST_F(HeadlessDrawing, EdgesAreLightAndDarkLinesWithinTheirArea) {
  Make(6, 6);
  FillFace(context, {0, 0, 6, 6});
  // How much lighter than the face a pixel of the diagonal is.
  const auto light = [&](int32_t i) { return PixelAt(i, i).red - 192; };
  DrawRectEdge(context, {1, 1, 5, 5}, EdgeStyle::kRaised);
  EXPECT_EQ(light(0), 0);
  EXPECT_EQ(light(5), 0);
  EXPECT_GT(light(2), 0);
  EXPECT_LT(light(4), 0);
  DrawRectEdge(context, {1, 1, 5, 5}, EdgeStyle::kSunken);
  EXPECT_LT(light(1), 0);
  EXPECT_GT(light(4), 0);
}

// Painting.

TEST_F(HeadlessDrawing, DrawingIsCounted) {
  EXPECT_EQ(window->paints, 1);
  EndDrawing(window, BeginDrawing(window));
  EXPECT_EQ(window->paints, 2);
}

TEST_F(HeadlessDrawing, NothingIsPaintedUntilAsked) {
  log.clear();
  ValidateClient(window);
  EXPECT_FALSE(headless::PaintInvalid(window));
  EXPECT_FALSE(headless::DeliverPaint(window));
  InvalidateClient(window, true);
  UpdateClient(window);
  EXPECT_TRUE(log.empty());
  EXPECT_EQ(window->invalid, (Bounds{0, 0, 12, 8}));
  EXPECT_TRUE(headless::PaintInvalid(window));
  EXPECT_EQ(log, Log({"w 792"}));
  EXPECT_TRUE(window->invalid.IsEmpty());
}

TEST_F(HeadlessDrawing, UpdatingPaintsAtOnceWhilePaintingIsLive) {
  Show(window);
  log.clear();
  headless::SetLivePainting(true);
  ValidateClient(window);
  UpdateClient(window);
  EXPECT_TRUE(log.empty());
  InvalidateClient(window, false);
  UpdateClient(window);
  EXPECT_EQ(log, Log({"w 15"}));
}

struct Painter final : WindowObject {
  intptr_t WindowProc(uint32_t message, uintptr_t first, intptr_t second) override {
    if (message == kMessagePaint || message == kMessagePrintClient) {
      const bool paints = message == kMessagePaint;
      DeviceContext* target = paints ? BeginPainting(window, &update) : ContextOf(first);
      InvertLine(target, {0, 0}, {6, 0});
      if (paints) EndPainting(window, target);
      return 0;
    }
    return DefaultHandling(window, message, first, second);
  }
  Bounds update = {9, 9, 9, 9};
};

TEST_F(HeadlessDrawing, PaintingIsClippedToWhatWasInvalidErasedFirstAndValidAfterwards) {
  Painter painter;
  const BrushHandle brush = MakeBrush(192, 192, 192);
  RegisterWindowClass("Grey", 0, CursorShape::kArrow, brush);
  DeleteBrush(brush);
  window = MakePopupWindow("Grey", nullptr, 6, 2, &painter);
  ValidateClient(window);
  ScrollClient(window, 2, 0);
  EXPECT_TRUE(headless::DeliverPaint(window));
  EXPECT_EQ(painter.update, (Bounds{0, 0, 2, 2}));
  EXPECT_EQ(Picture(), "xx....\nff....\n");
  EXPECT_FALSE(headless::DeliverPaint(window));
  InvalidateClient(window, false);
  headless::PaintInvalid(window);
  EXPECT_EQ(Picture().substr(0, 6), "ff####");
  Send(window, kMessagePaint, 0, 0);
  EXPECT_TRUE(painter.update.IsEmpty());
  EXPECT_EQ(Picture().substr(0, 6), "ff####");
}

TEST_F(HeadlessDrawing, ScrollingMovesThePixelsAndWhatComesFreeIsInvalid) {
  Make(4, 3);
  FillFace(context, {1, 1, 2, 2});
  const struct {
    Point by;
    const char* picture;
    Bounds invalid;
  } scrolls[] = {{{1, -1}, "..f.\n....\n....\n", {0, 0, 4, 3}},
                 {{0, 2}, "..f.\n....\n..f.\n", {0, 0, 4, 2}},
                 {{-2, 0}, "f.f.\n....\nf.f.\n", {2, 0, 4, 3}}};
  for (const auto& [by, picture, invalid] : scrolls) {
    ValidateClient(window);
    ScrollClient(window, by.x, by.y);
    EXPECT_EQ(Picture(), picture);
    EXPECT_EQ(window->invalid, invalid);
  }
}

TEST_F(HeadlessDrawing, WhatWaitsToBePaintedMovesWhenTheClientAreaScrolls) {
  Make(10, 10);
  ValidateClient(window);
  ScrollClient(window, 2, 0);
  ScrollClient(window, 3, 0);
  EXPECT_EQ(window->invalid, (Bounds{0, 0, 5, 10}));
}

TEST_F(HeadlessDrawing, ScrollingOnlyInvalidatesNothing) {
  Make(4, 1);
  ValidateClient(window);
  InvertLine(context, {0, 0}, {1, 0});
  ScrollClientOnly(window, 2, 0);
  EXPECT_EQ(Picture(), "#.#.\n");
  EXPECT_TRUE(window->invalid.IsEmpty());
}

TEST_F(HeadlessDrawing, ScrollingByTheWholeAreaOrFarMoreIsHarmless) {
  for (const int32_t dx : kExtremes) {
    for (const int32_t dy : kExtremes) {
      ScrollClient(window, dx, dy);
      ScrollClientOnly(window, dx, dy);
    }
  }
  ValidateClient(window);
  ScrollClient(window, INT_MIN, 0);
  EXPECT_EQ(window->invalid, (Bounds{0, 0, 12, 8}));
}

TEST_F(HeadlessDrawing, ScrollingMovesEveryPixelInEveryDirection) {
  std::mt19937 random(1);
  for (int round = 0; round < 200; ++round) {
    for (ColorEntry& color : window->pixels) color.red = static_cast<uint8_t>(random());
    const std::vector<ColorEntry> before = window->pixels;
    const int32_t dx = static_cast<int32_t>(random() % 23) - 11;
    const int32_t dy = static_cast<int32_t>(random() % 15) - 7;
    ScrollClientOnly(window, dx, dy);
    for (int32_t y = 0; y < 8; ++y) {
      for (int32_t x = 0; x < 12; ++x) {
        const bool moved = x - dx >= 0 && x - dx < 12 && y - dy >= 0 && y - dy < 8;
        const int32_t from = moved ? (y - dy) * 12 + x - dx : y * 12 + x;
        ASSERT_EQ(PixelAt(x, y).red, before[static_cast<size_t>(from)].red) << dx << " " << dy;
      }
    }
  }
}

}  // namespace
}  // namespace sorvel::platform
