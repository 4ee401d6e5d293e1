#include "console/importer.h"

#include <zlib.h>

#include <algorithm>
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

// Draws the picture into the middle of a blank cell. The dither goes by the picture's own coordinates.
void DrawPicture(const Picture& picture, const ImportSettings& settings, CellImage* cell) {
  const int32_t left = (cell->width - picture.width) / 2;
  const int32_t top = (cell->height - picture.height) / 2;
  const int32_t firstX = std::max(0, -left);
  const int32_t lastX = std::min(picture.width, cell->width - left);
  const int32_t firstY = std::max(0, -top);
  const int32_t lastY = std::min(picture.height, cell->height - top);
  if (firstX >= lastX) return;
  const int32_t count = lastX - firstX;
  std::vector<uint8_t> greys(picture.channels == 1 ? 0 : static_cast<size_t>(count));
  std::vector<uint8_t> row(static_cast<size_t>(count));
  for (int32_t y = firstY; y < lastY; ++y) {
    const uint8_t* const from = picture.Row(y) + firstX * picture.channels;
    const uint8_t* color = from;
    for (uint8_t& grey : greys) {
      grey = static_cast<uint8_t>(GreyOfColor(color[0], color[1], color[2]));
      color += 3;
    }
    ConvertGreys(greys.empty() ? from : greys.data(), count, firstX, y, row.data());
    color = from;
    if (settings.hasTransparent) {
      for (uint8_t& index : row) {
        const uint8_t rgb[3] = {color[0], color[picture.channels / 2], color[picture.channels - 1]};
        if (std::memcmp(rgb, settings.transparent, 3) == 0) index = kTransparent;
        color += picture.channels;
      }
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
