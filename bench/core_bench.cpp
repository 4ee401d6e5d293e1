// Speed of what a production waits for, on drawings: SORVEL_DRAWINGS names a folder of them, by default the small
// sequence that comes with the program. Each runs on the drawings at full size, and on a canvas of 960 by 720 that is
// put out at 1/4.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "animation/stream_decoder.h"
#include "animation/stream_encoder.h"
#include "console/importer.h"
#include "document/cut.h"
#include "foundation/byte_stream.h"
#include "foundation/job_line.h"
#include "imaging/indexed_image.h"
#include "platform/memory.h"

namespace sorvel {
namespace {

std::vector<std::string> Drawings() {
  const char* named = std::getenv("SORVEL_DRAWINGS");
  std::vector<std::string> paths;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(named != nullptr ? named : SORVEL_SAMPLES, error)) {
    if (entry.path().extension() == ".png") paths.push_back(entry.path().string());
  }
  std::sort(paths.begin(), paths.end());
  if (paths.empty()) {
    std::fprintf(stderr, "no drawings\n");
    std::exit(1);
  }
  return paths;
}

console::ImportSettings SettingsOf(bool quarter) {
  console::ImportSettings settings;
  if (quarter) {
    settings.width = 960;
    settings.height = 720;
    settings.antialias = 2;
  }
  return settings;
}

// The drawings as a cut, read once for each of the two sizes.
Cut* DrawnCut(bool quarter) {
  static std::unique_ptr<console::Importer> importers[2];
  std::unique_ptr<console::Importer>& importer = importers[quarter ? 1 : 0];
  if (importer == nullptr) {
    importer = std::make_unique<console::Importer>(SettingsOf(quarter));
    if (!importer->Add(Drawings(), {})) std::exit(1);
  }
  return importer->Result();
}

// A stream in memory of its own, large enough for anything here.
class Memory {
 public:
  Memory() : bytes(size_t{1} << 28) {
    stream.buffer = bytes.data();
    stream.capacity = static_cast<int32_t>(bytes.size());
  }

  ByteStream* Empty() {
    stream.position = stream.size = 0;
    return &stream;
  }
  ByteStream* Rewound() {
    stream.position = 0;
    return &stream;
  }
  int32_t Size() const { return stream.size; }

 private:
  std::vector<uint8_t> bytes;
  BufferStream stream;
};

int64_t PixelBytes(Cut* cut) {
  int64_t bytes = 0;
  for (int32_t i = 0; i < cut->layers.Count(); ++i) {
    Layer* layer = cut->layers.At(i);
    for (int32_t c = 0; c < layer->cells.Count(); ++c) bytes += layer->CellAt(c)->ByteCount();
  }
  return bytes;
}

void Encode(Cut* cut, ByteStream* stream) {
  NibbleBitmap bitmap;
  IndexedImage composition;
  composition.Resize(cut->width, cut->height, 0);
  CompileFrames(cut, 0, cut->frames.Count() - 1, stream, &bitmap, &composition);
}

void Import(benchmark::State& state) {
  const std::vector<std::string> paths = Drawings();
  for (auto _ : state) {
    console::Importer importer(SettingsOf(state.range(0) != 0));
    importer.Add(paths, {});
    benchmark::DoNotOptimize(importer.Result());
  }
  state.counters["frames"] =
      benchmark::Counter(static_cast<double>(paths.size()), benchmark::Counter::kIsIterationInvariantRate);
}

void EncodeCut(benchmark::State& state) {
  Cut* cut = DrawnCut(state.range(0) != 0);
  Memory memory;
  for (auto _ : state) Encode(cut, memory.Empty());
  state.counters["frames"] = benchmark::Counter(cut->frames.Count(), benchmark::Counter::kIsIterationInvariantRate);
  state.counters["bytes"] = memory.Size();
}

void DecodeNextFrame(benchmark::State& state) {
  Cut* cut = DrawnCut(state.range(0) != 0);
  Memory memory;
  Encode(cut, memory.Empty());
  NibbleBitmap bitmap;
  AnimationDecoder decoder;
  decoder.bitmap = &bitmap;
  decoder.OpenStream(memory.Rewound());
  for (auto _ : state) benchmark::DoNotOptimize(decoder.DecodeNextFrame());
  state.counters["frames"] = benchmark::Counter(1, benchmark::Counter::kIsIterationInvariantRate);
}

void ComposeThreeLayers(benchmark::State& state) {
  Cut* drawn = DrawnCut(state.range(0) != 0);
  Layer* layer = drawn->layers.At(0);
  Frame frame(drawn->width, drawn->height);
  for (int32_t i = 0; i < 3; ++i) frame.AddRecord(layer, i % layer->cells.Count(), 0, 0);
  IndexedImage image;
  image.Resize(drawn->width, drawn->height, 0);
  const uint32_t flags = 0;
  for (auto _ : state) {
    image.Fill(0);
    frame.ComposeFrame(&image, 0, 0, image.width, image.height, &flags, nullptr);
    benchmark::ClobberMemory();
  }
  state.counters["frames"] = benchmark::Counter(1, benchmark::Counter::kIsIterationInvariantRate);
}

// What the others are measured by: the pixels of a frame, a byte each, from one place to another.
void CopyPicture(benchmark::State& state) {
  Cut* drawn = DrawnCut(state.range(0) != 0);
  const auto bytes = static_cast<size_t>(drawn->width) * static_cast<size_t>(drawn->height);
  const std::vector<uint8_t> from(bytes, 1);
  std::vector<uint8_t> to(bytes);
  for (auto _ : state) {
    std::copy(from.begin(), from.end(), to.begin());
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(bytes));
}

void SaveCut(benchmark::State& state) {
  Cut* cut = DrawnCut(state.range(0) != 0);
  Memory memory;
  for (auto _ : state) cut->Save(memory.Empty());
  state.SetBytesProcessed(state.iterations() * PixelBytes(cut));
  state.counters["bytes"] = memory.Size();
}

void LoadCut(benchmark::State& state) {
  Cut* cut = DrawnCut(state.range(0) != 0);
  Memory memory;
  cut->Save(memory.Empty());
  for (auto _ : state) {
    Cut loaded(0, 0, 24, "", 0);
    loaded.Load(memory.Rewound(), nullptr);
    benchmark::DoNotOptimize(loaded.frames.Count());
  }
  state.SetBytesProcessed(state.iterations() * PixelBytes(cut));
}

// The processor time is that of all threads.
#define SORVEL_BENCHMARK(name) \
  BENCHMARK(name)->ArgName("quarter")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()
SORVEL_BENCHMARK(Import);
SORVEL_BENCHMARK(EncodeCut);
SORVEL_BENCHMARK(DecodeNextFrame);
SORVEL_BENCHMARK(ComposeThreeLayers);
SORVEL_BENCHMARK(CopyPicture);
SORVEL_BENCHMARK(SaveCut);
SORVEL_BENCHMARK(LoadCut);

}  // namespace
}  // namespace sorvel

// Figures are those of one thread unless SORVEL_THREADS says how many; 0 is one for each core.
int main(int argc, char** argv) {
  sorvel::platform::KeepFreedMemory();
  const char* threads = std::getenv("SORVEL_THREADS");
  sorvel::SetThreadCount(threads != nullptr ? std::atoi(threads) : 1);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
