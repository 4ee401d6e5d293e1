// Speed of the ink on a cell and a canvas of 960 by 720: fills, strokes and the mosaic, and the composition that shows
// them. Operations that change their picture get it back by a copy of its bytes, which is counted.

#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

#include "document/frame.h"
#include "imaging/indexed_image.h"
#include "imaging/packed_image.h"
#include "ink_pictures.h"

namespace sorvel {
namespace {

using inkbench::Dice;
using inkbench::kHeight;
using inkbench::kWidth;
using inkbench::Picture;
using inkbench::Pixels;

constexpr PenSpec kPlain = {7, 0, 0, 2};
constexpr PenSpec kHalfTone = {14, 8, 1, 2};
constexpr PenSpec kWidest = {14, 0, 0, 2};

void Load(CellImage* image, const Pixels& pixels) {
  image->Resize(kWidth, kHeight, 0);
  for (int32_t y = 0; y < kHeight; ++y) image->WriteRow(0, y, kWidth, pixels.data() + y * kWidth);
}

class Original {
 public:
  explicit Original(const CellImage& image) : bytes(image.bits, image.bits + image.ByteCount()) {}
  void PutBack(CellImage* image) const { std::memcpy(image->bits, bytes.data(), bytes.size()); }

 private:
  std::vector<uint8_t> bytes;
};

// Lines and areas as a drawing has them: outlines with tones and underdrawing between, most of it transparent.
Pixels DrawingPixels(uint32_t seed) {
  PackedImage image;
  image.Resize(kWidth, kHeight, 0);
  Dice dice;
  for (uint32_t i = 0; i < 97 * seed; ++i) dice.Below(2);
  const auto place = [&dice] {
    return Point{static_cast<int32_t>(dice.Below(kWidth)), static_cast<int32_t>(dice.Below(kHeight))};
  };
  for (int32_t i = 0; i < 40; ++i) {
    const Point at = place();
    image.FillBox(at.x, at.y, 60, 40, {7, i % 16, 1 + i % 3, 2 + i % 3}, 0, nullptr);
  }
  for (int32_t i = 0; i < 60; ++i) {
    PenSpec pen = {8 + i % 3, 0, 0, 8 + i % 3};
    const Point from = place();
    const Point to = place();
    image.DrawLine(from.x, from.y, to.x, to.y, &pen, 0, nullptr);
  }
  Pixels pixels(kWidth * kHeight);
  for (int32_t y = 0; y < kHeight; ++y) image.ReadRow(0, y, kWidth, pixels.data() + y * kWidth);
  return pixels;
}

template <typename Image>
void FloodFill(benchmark::State& state) {
  Image image;
  Load(&image, inkbench::PixelsOf(static_cast<Picture>(state.range(0))));
  state.SetLabel(inkbench::kPictureNames[state.range(0)]);
  const Original original(image);
  for (auto _ : state) {
    original.PutBack(&image);
    Rect rect;
    benchmark::DoNotOptimize(image.FloodFill(0, 0, kHalfTone, 0, &rect));
  }
}
BENCHMARK(FloodFill<PackedImage>)->DenseRange(0, 4)->Unit(benchmark::kMicrosecond);
BENCHMARK(FloodFill<IndexedImage>)->DenseRange(0, 4)->Unit(benchmark::kMicrosecond);

// A fill that flows over a dither of underdrawing and takes the shadow boundaries of a drawing with it.
void FloodFillOverSketch(benchmark::State& state) {
  PackedImage image;
  Load(&image, inkbench::PixelsOf(Picture::kDither));
  for (int32_t y = 0; y < kHeight; ++y) {
    for (int32_t x = 0; x < kWidth; ++x) {
      if (image.GetPixel(x, y) == 8) image.SetPixel(x, y, x % 160 < 4 ? 9 : 6);
    }
  }
  const Original original(image);
  for (auto _ : state) {
    original.PutBack(&image);
    Rect rect;
    benchmark::DoNotOptimize(image.FloodFill(100, 0, kHalfTone, 0, &rect));
  }
}
BENCHMARK(FloodFillOverSketch)->Unit(benchmark::kMicrosecond);

void GradientFill(benchmark::State& state) {
  PackedImage image;
  Load(&image, inkbench::PixelsOf(static_cast<Picture>(state.range(0))));
  const Original original(image);
  const bool isHorizontal = state.range(1) != 0;
  for (auto _ : state) {
    original.PutBack(&image);
    Rect rect;
    benchmark::DoNotOptimize(image.GradientFill(0, 0, {7, 15, 1, 2}, isHorizontal ? kWidth : 0,
                                                isHorizontal ? 0 : kHeight, {7, 1, 3, 4}, 0, &rect));
  }
}
BENCHMARK(GradientFill)->ArgNames({"maze", "across"})->ArgsProduct({{0, 1}, {0, 1}})->Unit(benchmark::kMicrosecond);

// Of the whole cell: its border, around all lines of a drawing, and in a dither, where all is border.
void EdgeFill(benchmark::State& state) {
  PackedImage image;
  switch (state.range(0)) {
    case 0:
      Load(&image, inkbench::PixelsOf(Picture::kBlank));
      image.SetPixel(500, 300, 8);
      break;
    case 1:
      Load(&image, DrawingPixels(1));
      break;
    default:
      Load(&image, inkbench::PixelsOf(Picture::kDither));
  }
  const Original original(image);
  const int32_t shape = state.range(1) != 0 ? kWidest.shape : 7;
  for (auto _ : state) {
    original.PutBack(&image);
    benchmark::DoNotOptimize(image.EdgeFill(0, 0, kWidth, kHeight, {shape, 0, 0, 2}, 0));
  }
}
BENCHMARK(EdgeFill)->ArgNames({"picture", "widest"})->ArgsProduct({{0, 1, 2}, {0, 1}})->Unit(benchmark::kMicrosecond);

// The path of a hand: long waves all over the canvas, about ten pixels at a time.
Point OnPath(int32_t step) {
  return {10 + step * 7 % (kWidth - 20), 10 + (step * 6 + step / 40 * 11) % (kHeight - 20)};
}

void Stroke(benchmark::State& state) {
  PackedImage image;
  image.Resize(kWidth, kHeight, 0);
  PenSpec pen = kWidest;
  pen.tone = static_cast<int32_t>(state.range(0));
  const auto mask = static_cast<uint32_t>(state.range(1));
  for (auto _ : state) {
    Rect rect;
    for (int32_t step = 0; step < 1000; ++step) {
      const Point from = OnPath(step);
      Point to = OnPath(step + 1);
      if (std::abs(to.x - from.x) > 20 || std::abs(to.y - from.y) > 20) to = {from.x + 7, from.y + 6};
      image.DrawLine(from.x, from.y, to.x, to.y, &pen, mask, &rect);
    }
    benchmark::DoNotOptimize(rect);
  }
}
BENCHMARK(Stroke)->ArgNames({"tone", "mask"})->ArgsProduct({{0, 8}, {0, 0x700}})->Unit(benchmark::kMicrosecond);

void DrawLine(benchmark::State& state) {
  PackedImage image;
  image.Resize(kWidth, kHeight, 0);
  PenSpec pen = {static_cast<int32_t>(state.range(0)), 0, 0, 2};
  for (auto _ : state) {
    benchmark::DoNotOptimize(image.DrawLine(0, 0, kWidth - 1, kHeight - 1, &pen, 0, nullptr));
  }
}
BENCHMARK(DrawLine)->ArgName("pen")->Arg(7)->Arg(14)->Unit(benchmark::kMicrosecond);

void FillBox(benchmark::State& state) {
  PackedImage image;
  image.Resize(kWidth, kHeight, 0);
  const auto mask = static_cast<uint32_t>(state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(image.FillBox(0, 0, kWidth, kHeight, kHalfTone, mask, nullptr));
}
BENCHMARK(FillBox)->ArgName("mask")->Arg(0)->Arg(0x700)->Unit(benchmark::kMicrosecond);

// A cut of five drawings, one upon the other.
class Stack {
 public:
  Stack() : layer(kWidth, kHeight, nullptr, nullptr, 0), frame(kWidth, kHeight) {
    view.Resize(kWidth, kHeight, 0);
    for (int32_t i = 0; i < 5; ++i) {
      layer.AddCell(i - 1, 0, nullptr);
      Load(layer.CellAt(i), DrawingPixels(static_cast<uint32_t>(i)));
      frame.AddRecord(&layer, i, 0, 0);
    }
  }

  void Compose(uint32_t flags) {
    view.FillRect(0, 0, kWidth, kHeight, 0);
    frame.ComposeFrame(&view, 0, 0, kWidth, kHeight, &flags, nullptr);
  }

  Layer layer;
  Frame frame;
  IndexedImage view;
};

// As the tool does it, over the whole canvas.
void Mosaic(benchmark::State& state) {
  Stack stack;
  const auto size = static_cast<int32_t>(state.range(0));
  PackedImage target;
  target.Resize(kWidth, kHeight, 0);
  for (auto _ : state) {
    stack.Compose(5U << 4);
    for (int32_t y = 0; y < kHeight; y += size) {
      for (int32_t x = 0; x < kWidth; x += size) stack.view.Mosaic(x, y, size, size);
    }
    target.Composite(0, 0, &stack.view, 0, 0, kWidth, kHeight, 0, 0, 0, nullptr);
    benchmark::ClobberMemory();
  }
}
BENCHMARK(Mosaic)->ArgName("tile")->Arg(4)->Arg(16)->Unit(benchmark::kMicrosecond);

// Flags as a cut's view has them: as it is, with both ghosts, the other layers pale.
void ComposeFrame(benchmark::State& state) {
  Stack stack;
  for (auto _ : state) {
    stack.Compose(static_cast<uint32_t>(state.range(0)));
    benchmark::ClobberMemory();
  }
}
BENCHMARK(ComposeFrame)->ArgName("flags")->Arg(0)->Arg(3)->Arg(8)->Unit(benchmark::kMicrosecond);

// One drawing on a canvas: copied plainly, keyed, pale, keyed under a mask; full of tone marks; and as a ghost.
void Composite(benchmark::State& state) {
  PackedImage cell;
  Load(&cell, DrawingPixels(1));
  IndexedImage view;
  view.Resize(kWidth, kHeight, 0);
  const auto flags = static_cast<int32_t>(state.range(0));
  const auto mask = static_cast<uint32_t>(state.range(1));
  if (state.range(2) != 0) cell.FillBox(0, 0, kWidth, kHeight, {7, 8, 11, 13}, 0, nullptr);
  for (auto _ : state) {
    benchmark::DoNotOptimize(view.Composite(0, 0, &cell, 0, 0, kWidth, kHeight, flags, mask, 0, nullptr));
    benchmark::ClobberMemory();
  }
}
BENCHMARK(Composite)
    ->ArgNames({"flags", "mask", "marks"})
    ->Args({0, 0, 0})
    ->Args({1, 0, 0})
    ->Args({3, 0, 0})
    ->Args({1, 0x700, 0})
    ->Args({1, 0, 1})
    ->Unit(benchmark::kMicrosecond);

void Overlay(benchmark::State& state) {
  PackedImage cell;
  Load(&cell, DrawingPixels(1));
  IndexedImage view;
  view.Resize(kWidth, kHeight, 0);
  for (auto _ : state) {
    benchmark::DoNotOptimize(view.Overlay(0, 0, &cell, 0, 0, kWidth, kHeight, 0));
    benchmark::ClobberMemory();
  }
}
BENCHMARK(Overlay)->Unit(benchmark::kMicrosecond);

// The other operations on blocks, over the whole cell.
void Blocks(benchmark::State& state) {
  constexpr const char* names[] = {"ToSketch",  "ClearSketch",  "Exchange",
                                   "MoveBlock", "FlipVertical", "FlipHorizontal"};
  PackedImage image;
  PackedImage other;
  Load(&image, DrawingPixels(1));
  Load(&other, DrawingPixels(2));
  const Original original(image);
  state.SetLabel(names[state.range(0)]);
  for (auto _ : state) {
    original.PutBack(&image);
    switch (state.range(0)) {
      case 0:
        image.ToSketch(0, 0, kWidth, kHeight, 0, 0);
        break;
      case 1:
        image.ClearSketch(0, 0, kWidth, kHeight, 0);
        break;
      case 2:
        image.Exchange(0, 0, &other, 0, 0, kWidth, kHeight);
        break;
      case 3:
        image.MoveBlock(0, 0, kWidth, kHeight, 7, 5, 0, 0);
        break;
      case 4:
        image.FlipVertical(0, 0, kWidth, kHeight, 0);
        break;
      default:
        image.FlipHorizontal(0, 0, kWidth, kHeight, 0);
    }
    benchmark::ClobberMemory();
  }
}
BENCHMARK(Blocks)->DenseRange(0, 5)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace sorvel
