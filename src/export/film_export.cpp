#include "export/film_export.h"

#include <algorithm>
#include <cstring>
#include <numeric>

#include "foundation/arithmetic.h"

namespace sorvel {

namespace {

// Rates and times stay within what the formats' fields and products of two of them can hold.
constexpr int64_t kHighestRate = INT32_MAX;
constexpr int64_t kLongestSeconds = int64_t{1} << 30;
constexpr int32_t kLargestSide = 65535;

}  // namespace

bool FilmExport::Open(ByteStream* compiled, const ShownFilm& shownFilm, const ExportOptions& exportOptions,
                      std::string* problem) {
  input = compiled;
  options = exportOptions;
  if (!FindParts(shownFilm, problem) || !FindRate(problem)) return false;
  if (!film.Open(input)) {
    *problem = "the picture area is empty, or there is no memory for it";
    return false;
  }
  const int64_t width = int64_t{film.Width()} * options.scale;
  const int64_t height = int64_t{film.Height()} * options.scale;
  if (width > kLargestSide || height > kLargestSide) {
    *problem = "pictures of " + std::to_string(width) + " by " + std::to_string(height) + " pixels are too large";
    return false;
  }
  form.width = static_cast<int32_t>(width);
  form.height = static_cast<int32_t>(height);
  form.plays = options.plays;
  const bool hasMemory =
      shown.AllocateZeroed(static_cast<uint64_t>(film.Width()) * static_cast<uint64_t>(film.Height())) &&
      (options.scale == 1 || scaled.Allocate(static_cast<uint64_t>(width * height)));
  if (!hasMemory) *problem = "not enough memory for the pictures";
  return hasMemory;
}

bool FilmExport::FindParts(const ShownFilm& shownFilm, std::string* problem) {
  int64_t ticks = 0;
  const int64_t end = options.lastTick < 0 ? INT64_MAX : int64_t{options.lastTick} + 1;
  for (const ShownFilm::ShownCut& cut : shownFilm.cuts) {
    const int64_t first = std::max<int64_t>(ticks, options.firstTick);
    ticks += cut.times.Ticks();
    if (std::min(ticks, end) > first) parts.push_back({cut.times.fps, std::min(ticks, end) - first});
  }
  if (options.lastTick < 0) options.lastTick = Saturated(ticks - 1);
  if (options.firstTick <= options.lastTick && options.lastTick < ticks) return true;
  *problem = "the film has the ticks 0 to " + std::to_string(ticks - 1);
  return false;
}

bool FilmExport::FindRate(std::string* problem) {
  exactRate = 1;
  for (const Part& part : parts) {
    exactRate = std::lcm(exactRate, int64_t{part.fps});
    form.fastest = std::max(form.fastest, part.fps);
    if (exactRate <= kHighestRate) continue;
    *problem = "the rates of its cuts have no common multiple below 2147483648";
    return false;
  }
  int64_t ticks = 0;
  for (const Part& part : parts) {
    ticks += part.ticks;
    exactDuration += part.ticks * (exactRate / part.fps);
  }
  ticks *= options.runs;
  if (ticks > INT32_MAX || exactDuration / exactRate > kLongestSeconds / options.runs) {
    *problem = "the film is too long";
    return false;
  }
  writtenTicks = static_cast<int32_t>(ticks);
  form.rate = options.fps > 0 ? options.fps : exactRate;
  if (options.fps > 0) form.fastest = options.fps;
  form.duration = TimeOf(exactDuration) * options.runs;
  return true;
}

// The time of the first picture that doesn't begin before the exact time.
int64_t FilmExport::TimeOf(int64_t exact) const {
  if (options.fps == 0) return exact;
  const int64_t seconds = exact / exactRate;
  return seconds * options.fps + (exact % exactRate * options.fps + exactRate - 1) / exactRate;
}

bool FilmExport::Run(FilmWriter* writer, const ProgressFunction& progress) {
  if (!writer->Begin(form)) return false;
  waiting = {};
  int32_t done = 0;
  for (int32_t i = 0; i < options.runs; ++i) {
    runStart = form.duration / options.runs * i;
    if (!film.Open(input) || !WriteOnce(writer, progress, &done)) return false;
  }
  return Flush(writer) && writer->Finish();
}

bool FilmExport::WriteOnce(FilmWriter* writer, const ProgressFunction& progress, int32_t* done) {
  // What stays of earlier ticks may show, so they are drawn as well.
  Rect changed;
  for (int32_t tick = 0; tick < options.firstTick; ++tick) {
    if (!film.Next()) return false;
    UnionRect(&changed, film.Changed());
  }
  int64_t exact = 0;
  for (const Part& part : parts) {
    for (int64_t i = 0; i < part.ticks; ++i) {
      if (!film.Next()) return false;
      UnionRect(&changed, film.Changed());
      const int64_t start = TimeOf(exact);
      exact += exactRate / part.fps;
      if (TimeOf(exact) > start && !TakePicture(writer, &changed, start, TimeOf(exact))) return false;
      if (progress && !progress(++*done, writtenTicks)) return false;
    }
  }
  return true;
}

// Takes the film's picture at this time of the run. `changed` holds what differs from the picture before, and is used
// up.
bool FilmExport::TakePicture(FilmWriter* writer, Rect* changed, int64_t start, int64_t end) {
  const Rect whole = {0, 0, film.Width(), film.Height()};
  const Rect different = waiting.pixels == nullptr ? whole : DifferentPart(*changed);
  *changed = {};
  if (!different.IsEmpty()) {
    if (!Flush(writer)) return false;
    TakePart(different);
    waiting.start = runStart + start;
    waiting.duration = 0;
  }
  waiting.duration += end - start;
  return true;
}

// The smallest rectangle in the part that holds all pixels in which the film and the waiting picture differ.
Rect FilmExport::DifferentPart(const Rect& part) const {
  Rect different;
  for (int32_t y = part.y; y < part.y + part.height; ++y) {
    const size_t place = static_cast<size_t>(y) * static_cast<size_t>(film.Width()) + static_cast<size_t>(part.x);
    const uint8_t* now = film.Pixels() + place;
    const uint8_t* before = shown.Data() + place;
    if (std::memcmp(now, before, static_cast<size_t>(part.width)) == 0) continue;
    const auto first = static_cast<int32_t>(std::mismatch(now, now + part.width, before).first - now);
    int32_t end = part.width;
    while (now[end - 1] == before[end - 1]) --end;
    UnionRect(&different, {part.x + first, y, end - first, 1});
  }
  return different;
}

// Makes this part of the waiting picture the film's.
void FilmExport::TakePart(const Rect& part) {
  const int32_t scale = options.scale;
  for (int32_t y = part.y; y < part.y + part.height; ++y) {
    const size_t place = static_cast<size_t>(y) * static_cast<size_t>(film.Width()) + static_cast<size_t>(part.x);
    const uint8_t* from = film.Pixels() + place;
    std::copy_n(from, part.width, shown.Data() + place);
    if (scale == 1) continue;
    uint8_t* to = scaled.Data() +
                  static_cast<size_t>(y) * static_cast<size_t>(scale) * static_cast<size_t>(form.width) +
                  static_cast<size_t>(part.x) * static_cast<size_t>(scale);
    for (int32_t x = 0; x < part.width; ++x) std::fill_n(to + int64_t{x} * scale, scale, from[x]);
    for (int32_t line = 1; line < scale; ++line) {
      std::copy_n(to, int64_t{part.width} * scale, to + int64_t{line} * form.width);
    }
  }
  waiting.pixels = scale == 1 ? shown.Data() : scaled.Data();
  waiting.changed = {part.x * scale, part.y * scale, part.width * scale, part.height * scale};
}

bool FilmExport::Flush(FilmWriter* writer) {
  return waiting.pixels == nullptr || writer->Add(waiting);
}

}  // namespace sorvel
