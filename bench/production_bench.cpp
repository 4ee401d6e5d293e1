// Speed of long work: a cut of 1,000 frames and 10 layers of 200 cells at 960 by 720 is opened, saved, stepped through
// and added to; a film of such cuts is exported from the streams beside them, and the streams are copied for
// comparison.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <numeric>
#include <string>
#include <vector>

#include "animation/film_container.h"
#include "animation/stream_encoder.h"
#include "bench/desk.h"
#include "document/cut.h"
#include "document/film.h"
#include "foundation/byte_stream.h"
#include "imaging/nibble_bitmap.h"
#include "imaging/packed_image.h"
#include "imaging/pen.h"
#include "resources/ids.h"

namespace sorvel {
namespace {

constexpr int32_t kWidth = 960;
constexpr int32_t kHeight = 720;
constexpr int32_t kLayers = 10;
constexpr int32_t kCells = 200;
constexpr int32_t kFrames = 1000;

std::string Temporary(const char* name) {
  return (std::filesystem::temp_directory_path() / name).string();
}

// A drawing of some long lines and a dithered area, another one for each number.
void Draw(CellImage* cell, int32_t number) {
  PenSpec pen = {9, 0, 0, 1};
  for (int32_t i = 0; i < 12; ++i) {
    const int32_t seed = number * 37 + i * 101;
    const Point points[4] = {{seed % kWidth, seed * 7 % kHeight},
                             {seed * 3 % kWidth, seed * 5 % kHeight},
                             {seed * 11 % kWidth, seed * 13 % kHeight},
                             {seed * 17 % kWidth, seed * 19 % kHeight}};
    cell->DrawCurve(points, &pen, 0, nullptr);
  }
  const PenSpec tone = {7, number % 16, 2, 3};
  cell->FillBox(number * 13 % 700, number * 29 % 500, 200, 160, tone, 0, nullptr);
}

// Writes the cut's file once.
const std::string& LargeFile() {
  static const std::string path = [] {
    const std::string file = Temporary("sorvel-bench-large.cut");
    Cut cut(kWidth, kHeight, 24, "", 2);
    cut.AddFrame();
    for (int32_t i = 0; i < kLayers; ++i) {
      Layer* layer = cut.AddLayer(nullptr, kWidth, kHeight, nullptr);
      for (int32_t cell = 1; cell < kCells; ++cell) layer->AddCell(cell - 1, 0, nullptr);
      for (int32_t cell = 0; cell < kCells; ++cell) Draw(layer->CellAt(cell), i * kCells + cell);
      cut.AttachLayer(i, 0, 0);
    }
    for (int32_t frame = 1; frame < kFrames; ++frame) {
      Frame* before = cut.CurrentFrame();
      Frame* added = cut.AddFrame();
      added->CopyFrom(before);
      for (int32_t i = 0; i < kLayers; ++i) added->records.At(i)->cell = (frame + i * 7) % kCells;
    }
    AssignString(&cut.path, file.c_str());
    if (!cut.SaveToPath()) std::exit(1);
    return file;
  }();
  return path;
}

// The program with the large cut open.
struct LargeDesk : Desk {
  LargeDesk() : Desk(LargeFile(), kWidth, kHeight) {}
};

void OpenLargeCut(benchmark::State& state) {
  LargeFile();
  for (auto _ : state) {
    const auto desk = std::make_unique<LargeDesk>();
    benchmark::DoNotOptimize(desk->frame.ActiveCut());
  }
}
BENCHMARK(OpenLargeCut)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->Iterations(2);

void SaveLargeCut(benchmark::State& state) {
  LargeDesk desk;
  for (auto _ : state) desk.frame.SendCommand(kCommandOverwriteCut);
}
BENCHMARK(SaveLargeCut)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->Iterations(2);

void StepThroughLargeCut(benchmark::State& state) {
  LargeDesk desk;
  for (auto _ : state) desk.frame.SendCommand(kCommandPreviousFrame);
}
BENCHMARK(StepThroughLargeCut)->Unit(benchmark::kMillisecond)->Iterations(900);

void AddCellToLargeCut(benchmark::State& state) {
  LargeDesk desk;
  for (auto _ : state) desk.frame.SendCommand(kCommandAddCell);
}
BENCHMARK(AddCellToLargeCut)->Unit(benchmark::kMillisecond)->Iterations(50);

// What a stroke costs beyond its drawing: the copy of the cell before the first pixel, and the step.
void RecordStrokeOnLargeCut(benchmark::State& state) {
  LargeDesk desk;
  CutWindow* cut = desk.frame.ActiveCut();
  PenSpec pen = {9, 0, 0, 1};
  int32_t number = 0;
  for (auto _ : state) {
    state.PauseTiming();
    cut->SaveUndo();
    const int32_t x = ++number * 37 % kWidth;
    state.ResumeTiming();
    cut->CurrentCell()->UseRows(0, 1);
    state.PauseTiming();
    cut->CurrentCell()->DrawLine(x, 0, number * 101 % kWidth, kHeight - 1, &pen, 0, nullptr);
    state.ResumeTiming();
    cut->RecordStep(UndoHistory::Origin::kGesture);
  }
  state.counters["bytes"] = static_cast<double>(cut->undoHistory.ByteCount()) / number;
}
BENCHMARK(RecordStrokeOnLargeCut)->Unit(benchmark::kMillisecond)->Iterations(500);

void StepBackInLargeCut(benchmark::State& state) {
  LargeDesk desk;
  CutWindow* cut = desk.frame.ActiveCut();
  PenSpec pen = {9, 0, 0, 1};
  for (int32_t number = 0; number < 200; ++number) {
    cut->SaveUndo();
    cut->CurrentCell()->DrawLine(number * 37 % kWidth, 0, number * 101 % kWidth, kHeight - 1, &pen, 0, nullptr);
    cut->RecordStep(UndoHistory::Origin::kGesture);
  }
  for (auto _ : state) desk.frame.SendCommand(kCommandStepBack);
}
BENCHMARK(StepBackInLargeCut)->Unit(benchmark::kMillisecond)->Iterations(199);

void AddLayerToLargeCut(benchmark::State& state) {
  LargeDesk desk;
  for (auto _ : state) {
    platform::headless::QueueDialog({106, {}, true});
    desk.frame.SendCommand(kCommandAddLayer);
  }
}
BENCHMARK(AddLayerToLargeCut)->Unit(benchmark::kMillisecond)->Iterations(20);

// A film file with 20 cuts and the streams of half of the large cut's frames beside them; written once.
const std::filesystem::path& FilmFolder() {
  static const std::filesystem::path path = [] {
    std::filesystem::path folder = Temporary("sorvel-bench-film");
    std::filesystem::create_directories(folder);
    constexpr int32_t cuts = 20;
    FILE* film = std::fopen((folder / "film.flm").string().c_str(), "w");
    if (film == nullptr) std::exit(1);
    std::fprintf(film, "\n\n%d, %d\n", kWidth / 4, kHeight / 4);
    for (int32_t i = 0; i < cuts; ++i) std::fprintf(film, "c%d.cut\n", i);
    std::fclose(film);
    const std::string first = (folder / "c0.ca").string();
    FileStream stream(std::fopen(first.c_str(), "wb"));
    FileStream file(std::fopen(LargeFile().c_str(), "rb"));
    Cut cut(0, 0, 24, "", 0);
    NibbleBitmap bitmap;
    PackedImage composition;
    if (!stream.IsOpen() || !file.IsOpen() || !cut.Load(&file, nullptr) || !composition.Resize(kWidth, kHeight, 0) ||
        !CompileFrames(&cut, 0, kFrames / 2 - 1, &stream, &bitmap, &composition)) {
      std::exit(1);
    }
    file.Close();
    if (!stream.Close()) std::exit(1);
    for (int32_t i = 1; i < cuts; ++i) {
      std::string name = std::to_string(i);
      name.append(".ca").insert(name.begin(), 'c');
      std::filesystem::copy_file(first, folder / name, std::filesystem::copy_options::overwrite_existing);
    }
    return folder;
  }();
  return path;
}

void CountBytes(benchmark::State& state) {
  int64_t bytes = 0;
  for (const auto& entry : std::filesystem::directory_iterator(FilmFolder())) {
    if (entry.path().extension() == ".ca") bytes += static_cast<int64_t>(entry.file_size());
  }
  state.SetBytesProcessed(bytes * static_cast<int64_t>(state.iterations()));
}

void ExportFilm(benchmark::State& state) {
  const std::string target = Temporary("sorvel-bench-film.sv");
  Film film;
  if (!film.Load((FilmFolder() / "film.flm").string().c_str(), '/')) std::exit(1);
  std::vector<int32_t> order(static_cast<size_t>(film.cuts.Count()));
  std::iota(order.begin(), order.end(), 0);
  NibbleBitmap bitmap;
  for (auto _ : state) {
    FileStream container(std::fopen(target.c_str(), "wb"));
    if (!container.IsOpen() ||
        !WriteFilmContainer(&film, order.data(), film.cuts.Count(), &container, &bitmap, nullptr) ||
        !container.Close()) {
      std::exit(1);
    }
    state.PauseTiming();
    std::filesystem::remove(target);
    state.ResumeTiming();
  }
  CountBytes(state);
}
BENCHMARK(ExportFilm)->Unit(benchmark::kMillisecond)->Iterations(3)->UseRealTime();

// The same streams as files of their own.
void CopyFilm(benchmark::State& state) {
  const std::string target = Temporary("sorvel-bench-copy");
  for (auto _ : state) {
    std::filesystem::create_directories(target);
    for (const auto& entry : std::filesystem::directory_iterator(FilmFolder())) {
      std::filesystem::copy_file(entry.path(), target / entry.path().filename(),
                                 std::filesystem::copy_options::overwrite_existing);
    }
    state.PauseTiming();
    std::filesystem::remove_all(target);
    state.ResumeTiming();
  }
  CountBytes(state);
}
BENCHMARK(CopyFilm)->Unit(benchmark::kMillisecond)->Iterations(3)->UseRealTime();

}  // namespace
}  // namespace sorvel
