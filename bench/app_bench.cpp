// Speed of what the hand feels, on a canvas of 960 by 720: one move of the free pen from the message to the screen, and
// the whole picture of five layers composed and shown.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>

#include "bench/desk.h"
#include "cutwindow/drawing_settings.h"
#include "resources/ids.h"

namespace sorvel {
namespace {

constexpr int32_t kWidth = 960;
constexpr int32_t kHeight = 720;

// The program with a cut of so many layers.
class LayersDesk : public Desk {
 public:
  explicit LayersDesk(int32_t layers) : Desk("", kWidth, kHeight) {
    platform::headless::QueueDialog({kCutDialog, {{kCutWidthEdit, "960"}, {kCutHeightEdit, "720"}}, true});
    platform::headless::QueueDialog({kLayerDialog, {}, true});
    frame.SendCommand(kCommandNewCut);
    for (int32_t i = 1; i < layers; ++i) {
      platform::headless::QueueDialog({kLayerDialog, {}, true});
      frame.SendCommand(kCommandAddLayer);
    }
    if (!platform::headless::Failure().empty() || Cut() == nullptr) {
      std::fprintf(stderr, "%s\n", platform::headless::Failure().c_str());
      std::exit(1);
    }
  }

  // A mouse message at a point of the canvas, which fills the window.
  void Mouse(uint32_t message, int32_t x, int32_t y) {
    platform::Send(frame.ActiveCut()->window, message, platform::kKeyLeftButton, platform::PackPoint({x, y}));
  }
};

// The path of a hand: long waves all over the canvas, some ten pixels at a time.
Point OnPath(int32_t step) {
  return {10 + step * 7 % (kWidth - 20), 10 + (step * 3 + step / 40 * 11) % (kHeight - 20)};
}

void PenMove(benchmark::State& state) {
  LayersDesk desk(static_cast<int32_t>(state.range(0)));
  currentPen.shape = static_cast<int32_t>(state.range(1));
  int32_t step = 0;
  desk.Mouse(platform::kMessageLeftDown, OnPath(0).x, OnPath(0).y);
  for (auto _ : state) {
    const Point place = OnPath(++step);
    desk.Mouse(platform::kMessageMouseMove, place.x, place.y);
  }
  desk.Mouse(platform::kMessageLeftUp, OnPath(step).x, OnPath(step).y);
}
BENCHMARK(PenMove)
    ->ArgNames({"layers", "pen"})
    ->Args({1, 7})
    ->Args({5, 7})
    ->Args({5, 14})
    ->Unit(benchmark::kMicrosecond);

// Draws on each layer.
void Scribble(LayersDesk* desk, int32_t layers) {
  for (int32_t layer = 0; layer < layers; ++layer) {
    desk->frame.ActiveCut()->CurrentFrame()->SelectRecord(layer);
    for (int32_t step = 0; step < 200; ++step) {
      const Point place = OnPath(step * 13 + layer);
      if (step == 0) desk->Mouse(platform::kMessageLeftDown, place.x, place.y);
      desk->Mouse(platform::kMessageMouseMove, place.x, place.y);
    }
    desk->Mouse(platform::kMessageLeftUp, 10, 10);
  }
}

void RepaintAll(benchmark::State& state) {
  LayersDesk desk(static_cast<int32_t>(state.range(0)));
  Scribble(&desk, static_cast<int32_t>(state.range(0)));
  for (auto _ : state) desk.frame.ActiveCut()->RepaintAll();
}
BENCHMARK(RepaintAll)->ArgName("layers")->Arg(1)->Arg(5)->Unit(benchmark::kMicrosecond);

// The copy to the window alone, below 1/1.
void ShowReduced(benchmark::State& state) {
  LayersDesk desk(1);
  Scribble(&desk, 1);
  CutWindow* cut = desk.frame.ActiveCut();
  while (cut->zoomDenominator < state.range(0)) cut->ZoomOut({kWidth / 2, kHeight / 2});
  for (auto _ : state) cut->RepaintAreaDirect(0, 0, cut->width, cut->height);
}
BENCHMARK(ShowReduced)->ArgName("zoom")->Arg(2)->Arg(3)->Arg(4)->Arg(8)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace sorvel
