#include "console/importer.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

#include "console/arguments.h"
#include "console/console_files.h"
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
  std::vector<uint8_t> row(static_cast<size_t>(lastX - firstX));
  for (int32_t y = firstY; y < lastY; ++y) {
    const uint8_t* from = picture.Row(y) + firstX * 3;
    for (int32_t x = firstX; x < lastX; ++x, from += 3) {
      const bool isHole = settings.hasTransparent && std::memcmp(from, settings.transparent, 3) == 0;
      const size_t level = static_cast<size_t>(LevelOfColor(from[0], from[1], from[2]));
      const uint8_t tone = tile[level][static_cast<size_t>(y & 3)][static_cast<size_t>(x & 3)];
      row[static_cast<size_t>(x - firstX)] = isHole ? uint8_t{kTransparent} : tone;
    }
    cell->WriteRow(left + firstX, top + y, lastX - firstX, row.data());
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

int32_t Importer::CellLike(const PackedImage& image) {
  const size_t bytes = static_cast<size_t>(image.ByteCount());
  const uint32_t checksum = static_cast<uint32_t>(crc32(0, image.bits, static_cast<uInt>(bytes)));
  const auto [first, last] = cellsByChecksum.equal_range(checksum);
  for (auto each = first; each != last; ++each) {
    if (std::memcmp(layer->CellAt(each->second)->bits, image.bits, bytes) == 0) return each->second;
  }
  const bool isFirst = cellsByChecksum.empty();
  const int32_t number = isFirst ? 0 : layer->cells.Count();
  if (!isFirst && (number >= kMostCells || !layer->AddCell(number - 1, 0, nullptr))) return -1;
  layer->CellAt(number)->CopyBits(image);
  cellsByChecksum.emplace(checksum, number);
  return number;
}

bool Importer::Add(const std::string& path) {
  InputFile file;
  std::string problem;
  Picture picture;
  if (!file.Open(path, &problem) || !ReadPicture(file.File(), &picture, &problem)) {
    Fail(path, problem);
    return false;
  }
  if (layer == nullptr && !Start(path, picture)) return false;
  PackedImage image;
  if (!image.Resize(cut.width, cut.height, 0)) {
    Fail(path, "no memory for the picture");
    return false;
  }
  DrawPicture(picture, settings, &image);
  const int32_t cell = CellLike(image);
  if (cell < 0) {
    Fail(path, "too many different pictures for one layer");
    return false;
  }
  Frame* frame = cut.AddFrame();
  frame->time = settings.hold;
  frame->AddRecord(layer, cell, 0, 0);
  return true;
}

}  // namespace sorvel::console
