#include "docfiles/cell_codec.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <memory>
#include <vector>

#include "docfiles/cut_parts.h"
#include "docfiles/stream_check.h"
#include "docfiles/unit_vectors.h"
#include "foundation/job_line.h"
#include "imaging/packed_image.h"
#include "imaging/pixel_words.h"

namespace sorvel {

namespace {

constexpr CodeSearch kSearch({1, 4, 5, 6, 7, 9, 10, 2, 8, 11, 12, 13, 14, 3, 15, 0});

constexpr int32_t kLayerHeadBytes = 7;  // behind the name
constexpr int32_t kCellHeadBytes = 8;

// How far in memory, in bytes, the source of a group lies from the group.
int32_t ByteOffset(int32_t code, int32_t pitch) {
  return kUnitOffsets[code].dy * pitch + kUnitOffsets[code].dx / 2;
}

// The code whose source lies farthest away.
constexpr int32_t kFarthestCode = 15;

// How runs are copied in cells.
struct CellUnits {
  using Unit = uint16_t;
  template <typename Units>
  void Put(uint8_t* to, const Units& units) const {
    StoreAs(to, units);
  }
};

// The same, eight at a time.
struct EightCellUnits {
  using Unit = uint16_t;
  static constexpr int32_t kLiteralBytes = 2;

  SORVEL_WIDE_INLINE Words16x8 Merge(const Words16x8&, const Words16x8& units) const { return units; }
  SORVEL_WIDE_INLINE Words16x8 LastSource(const uint8_t* to, ptrdiff_t pitch, const Words16x8&) const {
    return LoadSource<kFarthestCode, Unit>(to, pitch);
  }
  SORVEL_WIDE_INLINE Words16x8 EightLiterals(const uint8_t* from) const { return LoadAs<Words16x8>(from); }
};

// The memory that cells may take is bounded by the length of the stream, so that a short file can't ask for gigabytes.
// In a file a cell takes at least its change map: one bit for each byte of codes, which stand for 4 bytes of pixels.
constexpr int64_t kPixelBytesPerByte = 32;
constexpr int64_t kMemoryPerCell = 128;   // of the objects that a cell consists of
constexpr int64_t kFreeMemory = 1 << 16;  // for files that end early

// How many cells to work on at a time. Each takes its pixels, and about as much again for what it is in a file.
int32_t CellsAtOnce(int32_t count, int32_t width, int32_t height) {
  return JobsAtOnce(count, (int64_t{width} + 1) * height);
}

}  // namespace

void WriteLayerHead(Layer* layer, ByteStream* stream) {
  WriteText(*stream, layer->ShownName());
  WriteField(*stream, layer->width, 2);
  WriteField(*stream, layer->height, 2);
  WriteField(*stream, static_cast<int32_t>(layer->followFrame), 1);
  WriteField(*stream, layer->cells.Count(), 2);
}

CellWriter::CellWriter() : rows(kSearch) {}

bool CellWriter::Begin(int32_t width, int32_t height) {
  return rows.Allocate(width, height);
}

bool CellWriter::Write(Layer* layer, ByteStream* stream) {
  const int32_t count = layer->cells.Count();
  std::vector<CellWriter> writers(static_cast<size_t>(CellsAtOnce(count, layer->width, layer->height)));
  // Fewer than that are enough if memory is short.
  size_t places = 0;
  while (places < writers.size() && (count == 0 || writers[places].Begin(layer->width, layer->height))) ++places;
  if (places == 0) return false;
  WriteLayerHead(layer, stream);
  std::vector<const CellImage*> images(places);
  JobLine line(static_cast<int32_t>(places), [&writers, &images](int32_t place) {
    writers[static_cast<size_t>(place)].Encode(*images[static_cast<size_t>(place)]);
  });
  const auto putOldest = [&] { writers[static_cast<size_t>(line.Take())].Put(stream); };
  for (bool isThere = layer->cells.SeekFirst(); isThere; isThere = layer->cells.SeekNext()) {
    if (line.IsFull()) putOldest();
    images[static_cast<size_t>(line.NextPlace())] = layer->cells.Current();
    line.Give();
  }
  while (!line.IsEmpty()) putOldest();
  return true;
}

void CellWriter::WriteCell(const CellImage& image, ByteStream* stream) {
  Encode(image);
  Put(stream);
}

void CellWriter::Encode(const CellImage& image) {
  // A cell of width 0 may have a height, but it has no bytes.
  const int32_t height = image.width > 0 ? image.height : 0;
  rows.Begin(image.width, height, 2);
  // Quirk 6. A group is compared together with the one behind it in memory, so a file is a little longer than it must
  // be, and always the same.
  const ptrdiff_t memoryBytes = image.bits != nullptr ? image.ByteCount() + platform::kSpareBytes : 0;
  UnitRow row = {.units = image.bits,
                 .count = UnitsOf(image.width),
                 .offsets = {},
                 .unitsToTheLeft = 0,
                 .withNext = true,
                 .memory = image.bits,
                 .memoryEnd = image.bits + memoryBytes};
  for (int32_t y = 0; y < height; ++y, row.units += image.pitch) {
    for (int32_t code = 0; code < kUnitCodes; ++code) {
      row.offsets[static_cast<size_t>(code)] = y + kUnitOffsets[code].dy >= 0 ? ByteOffset(code, image.pitch) : 0;
    }
    rows.PutRow(row);
  }
}

void CellWriter::Put(ByteStream* stream) const {
  WriteField(*stream, rows.CodeSize(), 4);
  WriteField(*stream, rows.LiteralSize(), 4);
  stream->Write(rows.Map(), rows.MapSize());
  stream->Write(rows.Codes(), rows.CodeSize());
  stream->Write(rows.Literals(), rows.LiteralSize());
}

bool CellReader::Allocate(const Layer& layer) {
  width = layer.width;
  height = layer.height;
  groups = UnitsOf(layer.width);
  rowBytes = CodeRowBytes(layer.width);
  mapRowBytes = CodeMapRowBytes(layer.width);
  const int64_t mapSize = static_cast<int64_t>(mapRowBytes) * layer.height;
  if (mapSize > INT32_MAX) return false;
  mapBytes = static_cast<int32_t>(mapSize);
  return rowMap.Allocate(static_cast<size_t>(mapBytes)) &&
         rowCodes.Allocate(static_cast<size_t>(rowBytes + kGroupCodeBytes - 1));
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
  const int64_t memory = length * kPixelBytesPerByte + kFreeMemory;
  // So many cells the file can hold.
  const int32_t most = static_cast<int32_t>(std::min<int64_t>(count, memory / cellMemory));
  const auto release = [](PixelBlock* made) { made->Release(); };
  const std::unique_ptr<PixelBlock, decltype(release)> pixels(
      PixelBlock::Make(most, static_cast<int32_t>(std::min<int64_t>(pitch * height, INT32_MAX))), release);
  std::vector<CellReader> readers(static_cast<size_t>(std::max(CellsAtOnce(most, width, height), 1)));
  for (CellReader& reader : readers) reader.block = pixels.get();
  size_t places = 0;
  while (most > 0 && places < readers.size() && readers[places].Allocate(*layer)) ++places;
  JobLine line(std::max(static_cast<int32_t>(places), 1),
               [&readers](int32_t place) { readers[static_cast<size_t>(place)].Decode(); });
  int32_t finished = 0;
  const auto finishOldest = [&] {
    const CellReader& reader = readers[static_cast<size_t>(line.Take())];
    if (reader.Finish(stream, report, finished++)) return true;
    // The cells behind it were begun too early.
    line.Stop();
    const int32_t left = reader.hasPixels ? finished : finished - 1;
    while (layer->cells.Count() > left) layer->DeleteCell(layer->cells.Count() - 1);
    return false;
  };
  const auto finishAll = [&] {
    while (!line.IsEmpty()) {
      if (!finishOldest()) return false;
    }
    return true;
  };
  for (int32_t i = 0; i < most; ++i) {
    if (line.IsFull() && !finishOldest()) return false;
    CellImage* cell = places > 0 ? layer->AddEmptyCell() : nullptr;
    if (cell == nullptr) {
      if (finishAll()) NoteProblem(report, "no memory for cell %lld of a layer", i);
      return false;
    }
    CellReader& reader = readers[static_cast<size_t>(line.NextPlace())];
    if (!reader.ReadRecord(cell, stream, length)) {
      if (!finishAll()) return false;
      if (!cell->Resize(layer->width, layer->height, 0)) layer->DeleteCell(i);
      reader.NoteRecord(report, i);
      NoteProblem(report, "no memory for the data of cell %lld of a layer", i);
      return false;
    }
    line.Give();
    // Where the next record begins after one that isn't whole, its end tells.
    if (!reader.isWhole && !finishAll()) return false;
  }
  if (!finishAll()) return false;
  if (most < count) NoteProblem(report, "cell %lld of a layer is larger than the file can hold", most);
  return most == count;
}

bool CellReader::ReadRecord(CellImage* image, ByteStream* stream, int32_t length) {
  cell = image;
  hasPixels = false;
  headStart = stream->Tell();
  isHeadShort = length - headStart < kCellHeadBytes;
  const uint32_t codeSize = ReadField(*stream, 4);
  literalSize = ReadField(*stream, 4);
  std::memset(rowMap.Data(), 0, static_cast<size_t>(mapBytes));
  const int32_t mapGot = ReadUpTo(*stream, rowMap.Data(), mapBytes);
  start = stream->Tell();
  rest = std::max(length - start, 0);
  const int64_t told = static_cast<int64_t>(codeSize) + literalSize;
  const int32_t wanted = static_cast<int32_t>(std::min<int64_t>(told, rest));
  isShort = mapGot < mapBytes || wanted < told;
  const size_t space = static_cast<size_t>(wanted) + kSpareUnitBytes;
  if (space > data.Count() && !data.Allocate(space)) return false;
  dataGot = ReadUpTo(*stream, data.Data(), wanted);
  codesGot = static_cast<int32_t>(std::min<int64_t>(codeSize, dataGot));
  isWhole = !isShort && dataGot == told;
  return true;
}

void CellReader::Decode() {
  // Here, since the system's work for new memory is half of it all.
  hasPixels = IsPacked(*cell) ? static_cast<PackedImage*>(cell)->ResizeWithin(block, width, height)
                              : cell->Resize(width, height, 0);
  if (!hasPixels) return;
  nextCode = data.Data();
  codeEnd = nextCode + codesGot;
  literal = codeEnd;
  literalEnd = nextCode + dataGot;
  literalsUsed = 0;
  lastLiteral = 0;
  for (int32_t i = 0; i < kUnitCodes; ++i) {
    offsets[i] = i == kLiteralUnit || i == static_cast<int32_t>(kLeftUnit) ? 0 : ByteOffset(i, cell->pitch);
  }
  std::memset(rowCodes.Data(), kFirstRowCodes, static_cast<size_t>(rowBytes));
  const int32_t rows = groups > 0 ? cell->height : 0;
  cell->UseRows(0, rows);
  // The system gives memory that is read first a page of zeros, and another page when it is written.
  constexpr int32_t pageBytes = 4096;
  for (int32_t at = 0; at < cell->ByteCount(); at += pageBytes) cell->bits[at] = 0;
  for (int32_t y = 0; y < rows;) {
    if (const int32_t done = ReadRowsWide(cell, y, rows); done > 0) {
      y += done;
    } else {
      ReadRow(cell, y++);
    }
  }
  hasCodesLeft = nextCode != codeEnd;
}

void CellReader::NoteRecord(LoadReport* report, int32_t number) const {
  if (isHeadShort) NoteProblem(report, "the file ends early");
  if (isShort) NoteProblem(report, "the data of cell %lld of a layer ends early", number);
}

bool CellReader::Finish(ByteStream* stream, LoadReport* report, int32_t number) const {
  if (!hasPixels) {
    NoteProblem(report, "no memory for cell %lld of a layer", number);
    stream->Seek(headStart, kFromStart);
    return false;
  }
  NoteRecord(report, number);
  // The last literal may lack its second byte.
  const int64_t consumed = std::min<int64_t>(literalsUsed, rest - codesGot);
  const bool isRight = consumed == static_cast<int64_t>(literalSize);
  const int32_t end = static_cast<int32_t>(start + codesGot + consumed);
  // Records behind this one may have been read already.
  if ((!isRight || !isWhole) && stream->Tell() != end) stream->Seek(end, kFromStart);
  if (hasCodesLeft) NoteProblem(report, "cell %lld of a layer has codes that belong to no group", number);
  if (!isRight) NoteProblem(report, "the data of cell %lld of a layer is not as long as it says", number);
  return isRight;
}

int32_t CellReader::ReadRowsWide(CellImage* image, int32_t y, int32_t rows) {
  // Sources above, and whole groups behind.
  const int32_t first = -kUnitOffsets[kFarthestCode].dy;
  const int32_t groupBytes = mapRowBytes * kGroupUnits * 2;
  const int32_t last = (image->ByteCount() - groupBytes) / std::max(image->pitch, 1);
  if (!HasWideVectors() || y != first || last < y) return 0;
  if (codeEnd - nextCode < CountCodes(rowMap.Data() + y * mapRowBytes, image->width, rows - y)) return 0;
  UnitRows from = {rowMap.Data() + y * mapRowBytes, rowCodes.Data(), nextCode, literal, literalEnd};
  const int32_t count = std::min(rows, last + 1) - y;
  CopyUnitRows(EightCellUnits(), from, groups, count, image->bits + y * image->pitch, image->pitch,
               [&](uint64_t codes, const uint8_t* to, int32_t units) {
                 TakeLiterals(from.literal);
                 ReadUnits(codes, image, static_cast<int32_t>(to - image->bits), units);
                 from.literal = literal;
               });
  nextCode = from.nextCode;
  TakeLiterals(from.literal);
  return count;
}

// Those up to `end` have been read.
void CellReader::TakeLiterals(const uint8_t* end) {
  if (end == literal) return;
  lastLiteral = LoadAs<uint16_t>(end - 2);
  literalsUsed += end - literal;
  literal = end;
}

void CellReader::ReadRow(CellImage* image, int32_t y) {
  constexpr int32_t groupBytes = kGroupUnits * 2;
  // Reading behind the end of the codes gives the byte FF.
  LoadCodeRow(rowMap.Data() + y * mapRowBytes, image->width, &nextCode, codeEnd, 0xFF, rowCodes.Data());
  int32_t place = y * image->pitch;
  for (int32_t k = 0; k < groups; k += kGroupUnits, place += groupBytes) {
    const auto codes = LoadAs<uint64_t>(rowCodes.Data() + k / 2);
    const int32_t count = std::min(groups - k, kGroupUnits);
    const bool isInside = place + ByteOffset(kFarthestCode, image->pitch) >= 0 &&
                          place + groupBytes <= image->ByteCount() &&
                          HasLiterals(codes, count, (literalEnd - literal) / 2);
    if (isInside) {
      ReadGroup(codes, image->bits + place, count);
    } else {
      ReadUnits(codes, image, place, count);
    }
  }
}

// Unit by unit, wherever the group lies and however few literals are left.
void CellReader::ReadUnits(uint64_t codes, CellImage* image, int32_t place, int32_t count) {
  for (int32_t k = 0; k < count; ++k, place += 2, codes >>= 4) {
    const int32_t code = static_cast<int32_t>(codes & 0x0F);
    const int32_t source = place + ByteOffset(code, image->pitch);
    if (code == kLiteralUnit) {
      // If the data ended early, the last literal is repeated so that the pixels are defined.
      if (literalEnd - literal >= 2) {
        lastLiteral = LoadAs<uint16_t>(literal);
        literal += 2;
      }
      StoreAs(image->bits + place, lastLiteral);
      literalsUsed += 2;
    } else if (source >= 0) {
      StoreAs(image->bits + place, LoadAs<uint16_t>(image->bits + source));
    }
  }
}

// The first `count` units of a group: those first that depend on no other. What follows them stays, but is written.
inline void CellReader::ReadGroup(uint64_t codes, uint8_t* units, int32_t count) {
  const uint64_t code = codes & 0x0F;
  if (IsRun(codes) && count == kGroupUnits && code != kLiteralUnit) {
    CopyRun(CellUnits(), code, offsets, units);
    return;
  }
  const uint64_t used = CodeBitsOf(count);
  for (uint64_t left = FindLiterals(codes) & used; left != 0; left &= left - 1) {
    lastLiteral = LoadAs<uint16_t>(literal);
    StoreAs(units + std::countr_zero(left) / 2, lastLiteral);
    literal += 2;
    literalsUsed += 2;
  }
  CopyGroup(CellUnits(), codes & used, offsets, units);
}

}  // namespace sorvel
