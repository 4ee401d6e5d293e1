// How the cost of work grows with the size of the canvas, the number of frames, of cells and of layers, and the share
// of the picture that changes from frame to frame. scripts/growth makes tables of it.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "animation/stream_decoder.h"
#include "animation/stream_encoder.h"
#include "bench/desk.h"
#include "document/cut.h"
#include "foundation/byte_stream.h"
#include "imaging/indexed_image.h"
#include "imaging/pen.h"
#include "resources/ids.h"

namespace sorvel {
namespace {

struct Shape {
  int32_t width = 240;
  int32_t height = 180;
  int32_t frames = 10;
  int32_t cells = 10;
  int32_t layers = 1;
  int32_t share = 50;  // percent of the rows that differ from one cell to the next

  bool operator==(const Shape&) const = default;
};

// Long lines that all cells have, and above them short ones and a dithered area of its own for each cell.
void Draw(CellImage* cell, int32_t number, int32_t share) {
  PenSpec pen = {9, 0, 0, 1};
  const int32_t width = cell->width;
  const int32_t changing = cell->height * share / 100;
  for (int32_t i = 0; i < 12; ++i) {
    cell->DrawLine(i * 37 % width, cell->height - 1, i * 101 % width, changing, &pen, 0, nullptr);
  }
  if (changing == 0) return;
  for (int32_t i = 0; i < 12; ++i) {
    const int32_t place = number * 41 + i * 67;
    cell->DrawLine(place % width, 0, place * 3 % width, changing - 1, &pen, 0, nullptr);
  }
  const PenSpec tone = {7, number % 16, 2, 3};
  cell->FillBox(number * 13 % width / 2, 0, width / 4, changing, tone, 0, nullptr);
}

// The program with a cut of a shape open, in a window of at most 960 by 720 pixels.
class ShapeDesk : public Desk {
 public:
  explicit ShapeDesk(const Shape& cutShape)
      : Desk(Write(cutShape), std::min(cutShape.width, 960), std::min(cutShape.height, 720)), shape(cutShape) {
    saved.buffer = savedBytes.get();
    encoded.buffer = encodedBytes.get();
    saved.capacity = encoded.capacity = kMemory;
    Encode();
  }

  void Command(int32_t number) { frame.SendCommand(number); }
  void Mouse(uint32_t message) {
    const int32_t x = 10 + step * 7 % (Cut()->width - 20);
    const int32_t y = 10 + step * 3 % (Cut()->height - 20);
    ++step;
    uintptr_t keys = 0;
    if (message != platform::kMessageLeftUp) keys = platform::kKeyLeftButton;
    platform::Send(Cut()->window, message, keys, platform::PackPoint({x, y}));
  }

  void Save() {
    saved.position = saved.size = 0;
    if (!Cut()->Save(&saved)) std::exit(1);
  }
  void Load() {
    saved.position = 0;
    sorvel::Cut loaded(0, 0, 24, "", 0);
    if (!loaded.Load(&saved, nullptr)) std::exit(1);
  }
  void Encode() {
    encoded.position = encoded.size = 0;
    NibbleBitmap planes;
    IndexedImage composition;
    if (!composition.Resize(Cut()->width, Cut()->height, 0) ||
        !CompileFrames(Cut(), 0, Cut()->frames.Count() - 1, &encoded, &planes, &composition)) {
      std::exit(1);
    }
    encoded.position = 0;
    decoder.bitmap = &bitmap;
    if (decoder.OpenStream(&encoded) == 0) std::exit(1);
  }
  void Decode() { benchmark::DoNotOptimize(decoder.DecodeNextFrame()); }

  const Shape shape;

 private:
  // Gives the path of its file.
  static std::string Write(const Shape& shape) {
    const std::string file = (std::filesystem::temp_directory_path() / "sorvel-bench-growth.cut").string();
    sorvel::Cut cut(shape.width, shape.height, 24, "", 0);
    cut.AddFrame();
    for (int32_t i = 0; i < shape.layers; ++i) {
      Layer* layer = cut.AddLayer(nullptr, shape.width, shape.height, nullptr);
      for (int32_t cell = 1; cell < shape.cells; ++cell) layer->AddCell(cell - 1, 0, nullptr);
      for (int32_t cell = 0; cell < shape.cells; ++cell) Draw(layer->CellAt(cell), i * 7 + cell, shape.share);
      cut.AttachLayer(i, 0, 0);
    }
    for (int32_t number = 1; number < shape.frames; ++number) {
      sorvel::Frame* before = cut.CurrentFrame();
      sorvel::Frame* added = cut.AddFrame();
      added->CopyFrom(before);
      for (int32_t i = 0; i < shape.layers; ++i) added->records.At(i)->cell = (number + i) % shape.cells;
    }
    AssignString(&cut.path, file.c_str());
    if (!cut.SaveToPath()) std::exit(1);
    return file;
  }

  // Streams in memory, large enough for anything here.
  static constexpr int32_t kMemory = 1 << 30;
  const std::unique_ptr<uint8_t[]> savedBytes{new uint8_t[kMemory]};
  const std::unique_ptr<uint8_t[]> encodedBytes{new uint8_t[kMemory]};
  BufferStream saved;
  BufferStream encoded;

  int32_t step = 0;
  NibbleBitmap bitmap;
  AnimationDecoder decoder;
};

struct Work {
  const char* name;
  void (*run)(ShapeDesk* desk);
  bool isForAllFrames = false;  // counted is the time for one
};

constexpr Work kPenMove = {"pen move", [](ShapeDesk* desk) { desk->Mouse(platform::kMessageMouseMove); }};
constexpr Work kStroke = {"stroke", [](ShapeDesk* desk) {
                            desk->Mouse(platform::kMessageLeftDown);
                            desk->Mouse(platform::kMessageMouseMove);
                            desk->Mouse(platform::kMessageLeftUp);
                          }};
constexpr Work kUndoStroke = {"undo and redo", [](ShapeDesk* desk) {
                                desk->Command(kCommandStepBack);
                                desk->Command(kCommandStepForward);
                              }};
constexpr Work kFrameStep = {"frame step", [](ShapeDesk* desk) {
                               desk->Command(kCommandNextFrame);
                               desk->Command(kCommandPreviousFrame);
                             }};
constexpr Work kCellStep = {"cell step", [](ShapeDesk* desk) {
                              desk->Command(kCommandNextCell);
                              desk->Command(kCommandPreviousCell);
                            }};
constexpr Work kRepaint = {"repaint all", [](ShapeDesk* desk) { desk->Cut()->RepaintAll(); }};
constexpr Work kAddFrame = {"add and delete a frame", [](ShapeDesk* desk) {
                              desk->Command(kCommandAddFrame);
                              desk->Command(kCommandDeleteFrame);
                            }};
constexpr Work kAddCell = {"add and delete a cell", [](ShapeDesk* desk) {
                             desk->Command(kCommandAddCell);
                             desk->Command(kCommandDeleteCell);
                           }};
constexpr Work kAddLayer = {"add and delete a layer", [](ShapeDesk* desk) {
                              platform::headless::QueueDialog({kLayerDialog, {}, true});
                              desk->Command(kCommandAddLayer);
                              desk->Command(kCommandDeleteLayer);
                            }};
constexpr Work kLoad = {"load", [](ShapeDesk* desk) { desk->Load(); }};
constexpr Work kSave = {"save", [](ShapeDesk* desk) { desk->Save(); }};
constexpr Work kEncode = {"encode a frame", [](ShapeDesk* desk) { desk->Encode(); }, true};
constexpr Work kDecode = {"decode a frame", [](ShapeDesk* desk) { desk->Decode(); }};

void RunWork(benchmark::State& state, const Shape& shape, const Work& work) {
  // All work on one shape runs in a row. The last desk stays: the platform's own state ends before it would.
  static std::unique_ptr<ShapeDesk>& desk = *new std::unique_ptr<ShapeDesk>;
  if (desk == nullptr || !(desk->shape == shape)) {
    desk.reset();
    desk = std::make_unique<ShapeDesk>(shape);
  }
  if (work.run == kUndoStroke.run) kStroke.run(desk.get());
  if (work.run == kLoad.run) desk->Save();
  if (work.run == kPenMove.run) desk->Mouse(platform::kMessageLeftDown);
  for (auto _ : state) work.run(desk.get());
  if (work.run == kPenMove.run) desk->Mouse(platform::kMessageLeftUp);
  if (!platform::headless::Failure().empty()) state.SkipWithError(platform::headless::Failure().c_str());
  const int32_t done = work.isForAllFrames ? desk->Cut()->frames.Count() : 1;
  state.counters["seconds"] =
      benchmark::Counter(done, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void Register(const char* over, int64_t value, const Shape& shape, const std::vector<Work>& works) {
  for (const Work& work : works) {
    const std::string name = std::string("Growth/") + over + "/" + work.name + "/" + std::to_string(value);
    benchmark::RegisterBenchmark(name.c_str(), RunWork, shape, work)->MinTime(0.1);
  }
}

const bool kIsRegistered = [] {
  constexpr int32_t sizes[][2] = {{240, 180}, {480, 360}, {960, 720}, {1920, 1080}, {3840, 2160}};
  for (const auto& [width, height] : sizes) {
    Register(
        "pixels", int64_t{width} * height, {.width = width, .height = height, .layers = 3},
        {kPenMove, kStroke, kUndoStroke, kFrameStep, kCellStep, kRepaint, kAddCell, kLoad, kSave, kEncode, kDecode});
  }
  for (const int32_t frames : {10, 100, 1000, 10000}) {
    Register("frames", frames, {.frames = frames, .layers = 2},
             {kPenMove, kStroke, kUndoStroke, kFrameStep, kCellStep, kAddFrame, kAddCell, kAddLayer, kLoad, kSave,
              kEncode, kDecode});
  }
  for (const int32_t cells : {10, 100, 1000, 10000}) {
    Register("cells", cells, {.cells = cells},
             {kPenMove, kStroke, kUndoStroke, kFrameStep, kCellStep, kAddFrame, kAddCell, kAddLayer, kLoad, kSave});
  }
  for (const int32_t layers : {1, 2, 5, 10, 20, 50}) {
    Register("layers", layers, {.width = 960, .height = 720, .layers = layers},
             {kPenMove, kStroke, kUndoStroke, kFrameStep, kCellStep, kRepaint, kAddFrame, kAddCell, kAddLayer, kLoad,
              kSave, kEncode});
  }
  for (const int32_t share : {0, 10, 25, 50, 75, 100}) {
    Register("percent", share, {.width = 960, .height = 720, .share = share}, {kFrameStep, kEncode, kDecode});
  }
  return true;
}();

}  // namespace
}  // namespace sorvel
