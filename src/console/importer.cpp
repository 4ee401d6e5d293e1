#include "console/importer.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <vector>

#include "console/arguments.h"
#include "console/console_files.h"
#include "foundation/job_line.h"
#include "imaging/tone_conversion.h"

namespace sorvel::console {

namespace {

constexpr int32_t kMostCells = 32768;  // a record holds a cell number of 15 bits

// The index of each level at each place of the dither's tile.
using ToneTile = std::array<std::array<std::array<uint8_t, 4>, 4>, 49>;

ToneTile MakeToneTile() {
  ToneTile tile;
  for (int32_t level = 0; level < 49; ++level) {
    for (int32_t y = 0; y < 4; ++y) {
      for (int32_t x = 0; x < 4; ++x) {
        tile[static_cast<size_t>(level)][static_cast<size_t>(y)][static_cast<size_t>(x)] =
            static_cast<uint8_t>(ToneAt(level, x, y));
      }
    }
  }
  return tile;
}

// The indices of a row of colours.
void ConvertColors(const uint8_t* colors, int32_t count, int32_t x, int32_t y, const ToneTile& tile,
                   const ImportSettings& settings, uint8_t* row) {
  for (int32_t i = 0; i < count; ++i, colors += 3) {
    const bool isHole = settings.hasTransparent && std::memcmp(colors, settings.transparent, 3) == 0;
    const size_t level = static_cast<size_t>(LevelOfColor(colors[0], colors[1], colors[2]));
    const uint8_t tone = tile[level][static_cast<size_t>(y & 3)][static_cast<size_t>((x + i) & 3)];
    row[i] = isHole ? uint8_t{kTransparent} : tone;
  }
}

// The index of each grey at each column of the dither's tile in a row.
using GreyTones = std::array<std::array<uint8_t, 256>, 4>;

GreyTones MakeGreyTones(int32_t y, const ToneTile& tile, const ImportSettings& settings) {
  GreyTones tones;
  for (int32_t grey = 0; grey < 256; ++grey) {
    const auto byte = static_cast<uint8_t>(grey);
    const uint8_t color[3] = {byte, byte, byte};
    uint8_t row[4];
    for (int32_t x = 0; x < 4; ++x) {
      ConvertColors(color, 1, x, y, tile, settings, row + x);
      tones[static_cast<size_t>(x)][byte] = row[x];
    }
  }
  return tones;
}

void ConvertGreys(const uint8_t* greys, int32_t count, int32_t x, const GreyTones& tones, uint8_t* row) {
  const uint8_t* of[4];
  for (int32_t i = 0; i < 4; ++i) of[i] = tones[static_cast<size_t>((x + i) & 3)].data();
  int32_t i = 0;
  for (; i + 4 <= count; i += 4) {
    for (int32_t k = 0; k < 4; ++k) row[i + k] = of[k][greys[i + k]];
  }
  for (; i < count; ++i) row[i] = of[i & 3][greys[i]];
}

// Draws the picture into the middle of a blank cell. The dither goes by the picture's own coordinates.
void DrawPicture(const Picture& picture, const ImportSettings& settings, CellImage* cell) {
  static const ToneTile tile = MakeToneTile();
  const int32_t left = (cell->width - picture.width) / 2;
  const int32_t top = (cell->height - picture.height) / 2;
  const int32_t firstX = std::max(0, -left);
  const int32_t lastX = std::min(picture.width, cell->width - left);
  const int32_t firstY = std::max(0, -top);
  const int32_t lastY = std::min(picture.height, cell->height - top);
  if (firstX >= lastX) return;
  GreyTones greyTones[4];
  if (picture.channels == 1) {
    for (int32_t y = 0; y < 4; ++y) greyTones[y] = MakeGreyTones(y, tile, settings);
  }
  std::vector<uint8_t> row(static_cast<size_t>(lastX - firstX));
  const int32_t count = lastX - firstX;
  for (int32_t y = firstY; y < lastY; ++y) {
    const uint8_t* const from = picture.Row(y) + firstX * picture.channels;
    if (picture.channels == 1) {
      ConvertGreys(from, count, firstX, greyTones[y & 3], row.data());
    } else {
      ConvertColors(from, count, firstX, y, tile, settings, row.data());
    }
    cell->WriteRow(left + firstX, top + y, count, row.data());
  }
}

}  // namespace

bool Importer::Start(const std::string& path, const Picture& picture) {
  cut.width = cut.frameWidth = settings.width != 0 ? settings.width : picture.width;
  cut.height = cut.frameHeight = settings.height != 0 ? settings.height : picture.height;
  cut.fps = settings.fps;
  cut.SetAntialias(settings.antialias);
  if (!CheckCanvas(path, cut)) return false;
  layer = cut.AddLayer(nullptr, cut.width, cut.height, nullptr);
  return true;
}

bool Importer::Draw(const Picture& picture, Drawing* drawing) const {
  if (drawing->image.bits == nullptr && !drawing->image.Resize(cut.width, cut.height, 0)) return false;
  drawing->image.Fill(0);
  DrawPicture(picture, settings, &drawing->image);
  drawing->checksum =
      static_cast<uint32_t>(crc32(0, drawing->image.bits, static_cast<uInt>(drawing->image.ByteCount())));
  return true;
}

int32_t Importer::CellLike(const Drawing& drawing) {
  const auto [first, last] = cellsByChecksum.equal_range(drawing.checksum);
  for (auto each = first; each != last; ++each) {
    const CellImage* cell = layer->CellAt(each->second);
    if (std::memcmp(cell->bits, drawing.image.bits, static_cast<size_t>(cell->ByteCount())) == 0) return each->second;
  }
  const bool isFirst = cellsByChecksum.empty();
  const int32_t number = isFirst ? 0 : layer->cells.Count();
  if (!isFirst && (number >= kMostCells || !layer->AddCell(number - 1, 0, nullptr))) return -1;
  layer->CellAt(number)->CopyBits(drawing.image);
  cellsByChecksum.emplace(drawing.checksum, number);
  return number;
}

bool Importer::AddDrawing(const Drawing& drawing) {
  const int32_t cell = CellLike(drawing);
  if (cell < 0) {
    Fail(drawing.path, "too many different pictures for one layer");
    return false;
  }
  Frame* frame = cut.AddFrame();
  frame->time = settings.hold;
  frame->AddRecord(layer, cell, 0, 0);
  return true;
}

bool Importer::AddAlone(const std::string& path) {
  InputFile file;
  std::string problem;
  Picture picture;
  if (!file.Open(path, &problem) || !ReadPicture(file.File(), &picture, &problem)) {
    Fail(path, problem);
    return false;
  }
  if (layer == nullptr && !Start(path, picture)) return false;
  Drawing drawing;
  drawing.path = path;
  if (Draw(picture, &drawing)) return AddDrawing(drawing);
  Fail(path, "no memory for the picture");
  return false;
}

bool Importer::Add(const std::vector<std::string>& paths, const ProgressFunction& progress) {
  const auto count = static_cast<int32_t>(paths.size());
  int32_t added = 0;
  const auto tell = [&] { return !progress || progress(++added, count); };
  // The size of the first picture is that of the cut.
  if (layer == nullptr && count > 0 && !(tell() && AddAlone(paths[0]))) return false;
  constexpr int64_t bytesOfPixel = 4;
  std::vector<Drawing> drawings(
      static_cast<size_t>(JobsAtOnce(count - added, int64_t{cut.width} * cut.height * bytesOfPixel)));
  const auto read = [this, &drawings](int32_t place) {
    Drawing* drawing = &drawings[static_cast<size_t>(place)];
    InputFile file;
    std::string problem;
    Picture picture;
    std::error_code ignored;
    // To open a pipe may take forever.
    drawing->isReady = std::filesystem::is_regular_file(drawing->path, ignored) && file.Open(drawing->path, &problem) &&
                       ReadPicture(file.File(), &picture, &problem) && Draw(picture, drawing);
  };
  JobLine line(static_cast<int32_t>(drawings.size()), read);
  const auto addOldest = [&] {
    const Drawing& drawing = drawings[static_cast<size_t>(line.Take())];
    if (!tell()) return false;
    // What is wrong with it shows when it is read again. If it was the memory, others may have gone meanwhile.
    return drawing.isReady ? AddDrawing(drawing) : AddAlone(drawing.path);
  };
  for (int32_t i = added; i < count; ++i) {
    if (line.IsFull() && !addOldest()) return false;
    drawings[static_cast<size_t>(line.NextPlace())].path = paths[static_cast<size_t>(i)];
    line.Give();
  }
  while (!line.IsEmpty()) {
    if (!addOldest()) return false;
  }
  return true;
}

}  // namespace sorvel::console
