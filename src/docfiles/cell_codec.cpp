#include "docfiles/cell_codec.h"

#include <algorithm>
#include <cstring>

#include "docfiles/cut_parts.h"
#include "docfiles/stream_check.h"

namespace sorvel {

namespace {

constexpr CodeSearch kSearch({1, 4, 5, 6, 7, 9, 10, 2, 8, 11, 12, 13, 14, 3, 15, 0});

constexpr int32_t kLayerHeadBytes = 7;  // behind the name
constexpr int32_t kCellHeadBytes = 8;

// How far in memory, in bytes, the source of a group lies from the group.
int32_t ByteOffset(int32_t code, int32_t pitch) {
  return kUnitOffsets[code].dy * pitch + kUnitOffsets[code].dx / 2;
}

uint16_t LoadGroup(const uint8_t* bytes) {
  uint16_t group = 0;
  std::memcpy(&group, bytes, sizeof(group));
  return group;
}

// The memory that cells may take is bounded by the length of the stream, so that a short file can't ask for gigabytes.
// In a file a cell takes at least its change map: one bit for each byte of codes, which stand for 4 bytes of pixels.
constexpr int64_t kPixelBytesPerByte = 32;
constexpr int64_t kMemoryPerCell = 128;   // of the objects that a cell consists of
constexpr int64_t kFreeMemory = 1 << 16;  // for files that end early

}  // namespace

void WriteLayerHead(Layer* layer, ByteStream* stream) {
  WriteText(*stream, layer->ShownName());
  WriteField(*stream, layer->width, 2);
  WriteField(*stream, layer->height, 2);
  WriteField(*stream, static_cast<int32_t>(layer->followFrame), 1);
  WriteField(*stream, layer->cells.Count(), 2);
}

bool CellWriter::Begin(int32_t width, int32_t height) {
  groups = UnitsOf(width);
  // The group behind a row's last takes part in its comparison.
  return literals.Allocate(static_cast<size_t>(groups) * 2 * static_cast<size_t>(std::max(height, 0))) &&
         matches.Allocate(static_cast<size_t>(groups) + 1) && rows.Allocate(width, height);
}

bool CellWriter::Write(Layer* layer, ByteStream* stream) {
  if (layer->cells.Count() > 0 && !Begin(layer->width, layer->height)) return false;
  WriteLayerHead(layer, stream);
  if (!layer->cells.SeekFirst()) return true;
  do {
    WriteCell(*layer->cells.Current(), stream);
  } while (layer->cells.SeekNext());
  return true;
}

void CellWriter::WriteCell(const CellImage& image, ByteStream* stream) {
  // A cell of width 0 may have a height, but it has no bytes.
  const int32_t height = groups > 0 ? image.height : 0;
  literalSize = 0;
  rows.Begin(image.width, height);
  for (int32_t y = 0; y < height; ++y) {
    FindMatches(image, y);
    EncodeRow(image, y);
  }
  WriteField(*stream, rows.CodeSize(), 4);
  WriteField(*stream, literalSize, 4);
  stream->Write(rows.Map(), rows.MapSize());
  stream->Write(rows.Codes(), rows.CodeSize());
  stream->Write(literals.Data(), literalSize);
}

// For each group of the row the set of codes whose source equals it. Quirk 6. A group is compared together with the
// one behind it in memory, so a file is a little longer than it must be, and always the same.
void CellWriter::FindMatches(const CellImage& image, int32_t y) {
  const uint8_t* row = image.bits + y * image.pitch;
  uint16_t* const found = matches.Data();
  std::fill(found, found + groups + 1, static_cast<uint16_t>(kLiteralFound));
  for (int32_t rank = 0; rank < kUnitCodes - 1; ++rank) {
    const int32_t code = kSearch.CodeOf(rank);
    const UnitOffset offset = kUnitOffsets[code];
    if (y + offset.dy < 0) continue;
    const uint8_t* source = row + ByteOffset(code, image.pitch);
    const uint16_t bit = static_cast<uint16_t>(1u << rank);
    for (int32_t k = -offset.dx / 4; k <= groups; ++k) {
      const uint16_t match = LoadGroup(row + 2 * k) == LoadGroup(source + 2 * k) ? bit : uint16_t{0};
      found[k] = static_cast<uint16_t>(found[k] | match);
    }
  }
}

void CellWriter::EncodeRow(const CellImage& image, int32_t y) {
  const uint8_t* row = image.bits + y * image.pitch;
  const uint16_t* const found = matches.Data();
  for (int32_t k = 0; k < groups; ++k) {
    const int32_t code = kSearch.Choose(found[k] & found[k + 1], rows.Above(k));
    if (code == kLiteralUnit) {
      std::memcpy(literals.Data() + literalSize, row + 2 * k, 2);
      literalSize += 2;
    }
    rows.Put(k, code);
  }
  rows.EndRow();
}

bool CellReader::Allocate(const Layer& layer) {
  groups = UnitsOf(layer.width);
  rowBytes = CodeRowBytes(layer.width);
  mapRowBytes = CodeMapRowBytes(layer.width);
  const int64_t mapSize = static_cast<int64_t>(mapRowBytes) * layer.height;
  if (mapSize > INT32_MAX) return false;
  mapBytes = static_cast<int32_t>(mapSize);
  return rowMap.Allocate(static_cast<size_t>(mapBytes)) && rowCodes.Allocate(static_cast<size_t>(rowBytes));
}

bool CellReader::Read(Layer* layer, ByteStream* stream, LoadReport* report) {
  layer->Clear();
  char name[256];
  ReadText(*stream, name, sizeof(name));
  layer->SetName(name);
  const int32_t length = StreamLength(*stream);
  NoteShortStream(*stream, length, kLayerHeadBytes, report);
  const int32_t width = static_cast<int32_t>(ReadField(*stream, 2));
  const int32_t height = static_cast<int32_t>(ReadField(*stream, 2));
  layer->Resize(width, height, 0);
  layer->followFrame = ReadField(*stream, 1);
  const int32_t count = static_cast<int32_t>(ReadField(*stream, 2));
  if (count == 0) return true;
  const int64_t pitch = ((width + 1) / 2 + 3) & ~3;
  const int64_t cellMemory = pitch * height + kMemoryPerCell;
  int64_t memory = length * kPixelBytesPerByte + kFreeMemory;
  for (int32_t i = 0; i < count; ++i) {
    memory -= cellMemory;
    if (memory < 0) {
      NoteProblem(report, "cell %lld of a layer is larger than the file can hold", i);
      return false;
    }
    if ((i == 0 && !Allocate(*layer)) || !layer->AddCell(i - 1, 0, nullptr)) {
      NoteProblem(report, "no memory for cell %lld of a layer", i);
      return false;
    }
    if (!ReadCell(layer->CellAt(i), stream, length, i, report)) return false;
  }
  return true;
}

bool CellReader::ReadCell(CellImage* image, ByteStream* stream, int32_t length, int32_t number, LoadReport* report) {
  NoteShortStream(*stream, length, kCellHeadBytes, report);
  const uint32_t codeSize = ReadField(*stream, 4);
  const uint32_t literalSize = ReadField(*stream, 4);
  std::memset(rowMap.Data(), 0, static_cast<size_t>(mapBytes));
  const int32_t mapGot = ReadUpTo(*stream, rowMap.Data(), mapBytes);
  const int32_t start = stream->Tell();
  const int32_t rest = std::max(length - start, 0);
  const int32_t wanted = static_cast<int32_t>(std::min<int64_t>(static_cast<int64_t>(codeSize) + literalSize, rest));
  if (mapGot < mapBytes || wanted < static_cast<int64_t>(codeSize) + literalSize) {
    NoteProblem(report, "the data of cell %lld of a layer ends early", number);
  }
  if (static_cast<size_t>(wanted) > data.Count() && !data.Allocate(static_cast<size_t>(wanted))) {
    NoteProblem(report, "no memory for the data of cell %lld of a layer", number);
    return false;
  }
  const int32_t got = ReadUpTo(*stream, data.Data(), wanted);
  const int32_t codesGot = static_cast<int32_t>(std::min<int64_t>(codeSize, got));
  const uint8_t* code = data.Data();
  const uint8_t* const codeEnd = code + codesGot;
  const uint8_t* literal = codeEnd;
  const uint8_t* const literalEnd = code + got;
  int64_t literalsUsed = 0;
  uint8_t stale[2] = {0, 0};

  int32_t offsets[kUnitCodes];
  for (int32_t i = 0; i < kUnitCodes; ++i) offsets[i] = ByteOffset(i, image->pitch);
  uint8_t* const codes = rowCodes.Data();
  std::memset(codes, kFirstRowCodes, static_cast<size_t>(rowBytes));
  const int32_t rows = groups > 0 ? image->height : 0;
  image->UseRows(0, rows);
  for (int32_t y = 0; y < rows; ++y) {
    // Reading behind the end of the codes gives the byte FF.
    LoadCodeRow(rowMap.Data() + y * mapRowBytes, image->width, &code, codeEnd, 0xFF, codes);
    uint8_t* group = image->bits + y * image->pitch;
    for (int32_t k = 0; k < groups; ++k, group += 2) {
      const int32_t n = CodeAt(codes, k);
      if (n == kLiteralUnit) {
        if (literalEnd - literal >= 2) {
          std::memcpy(group, literal, 2);
          std::memcpy(stale, literal, 2);
          literal += 2;
        } else {
          // The data ended early. The last literal is repeated so that the pixels are defined.
          std::memcpy(group, stale, 2);
        }
        literalsUsed += 2;
      } else if (group - image->bits + offsets[n] >= 0) {
        std::memcpy(group, group + offsets[n], 2);
      }
    }
  }
  // The last literal may lack its second byte.
  const int64_t consumed = std::min<int64_t>(literalsUsed, rest - codesGot);
  const int32_t end = static_cast<int32_t>(start + codesGot + consumed);
  if (stream->Tell() != end) stream->Seek(end, kFromStart);
  if (code != codeEnd) NoteProblem(report, "cell %lld of a layer has codes that belong to no group", number);
  if (consumed != static_cast<int64_t>(literalSize)) {
    NoteProblem(report, "the data of cell %lld of a layer is not as long as it says", number);
    return false;
  }
  return true;
}

}  // namespace sorvel
