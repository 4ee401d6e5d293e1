#pragma once

#include <cstdint>

#include "docfiles/code_rows.h"
#include "docfiles/unit_copy.h"
#include "document/layer.h"
#include "document/load_report.h"
#include "foundation/buffer.h"
#include "foundation/byte_stream.h"
#include "imaging/pixel_block.h"

namespace sorvel {

// The layer block of cut and layer files: a small head, then the cells, each cut into groups of four pixels that copy
// an earlier group or are stored.

class CellWriter {
 public:
  // Writes the block at the stream's position, with other threads if it is large. False if there is no memory for its
  // buffers.
  static bool Write(Layer* layer, ByteStream* stream);

  // The cells one by one, with a writer for all of them: makes room for cells of this size, false without memory, and
  // writes one at the stream's position.
  CellWriter();
  bool Begin(int32_t width, int32_t height);
  void WriteCell(const CellImage& image, ByteStream* stream);

 private:
  void Encode(const CellImage& image);
  void Put(ByteStream* stream) const;

  CodeRowWriter rows;  // of the cell in hand
};

class CellReader {
 public:
  // Clears the layer and fills it from the block at the stream's position, with other threads if it is large. False
  // when a cell's data isn't as long as it says, or asks for more memory than a stream of this length can account for;
  // the cells read so far stay.
  static bool Read(Layer* layer, ByteStream* stream, LoadReport* report = nullptr);

 private:
  bool Allocate(const Layer& layer);
  // The steps of a cell. False without memory.
  bool ReadRecord(CellImage* image, ByteStream* stream, int32_t length);
  // Makes the pixels. Needs nothing but the reader and the image, and may run on any thread.
  void Decode();
  // Adds what is wrong with the record, or with the cell, to the report, which may be null.
  void NoteRecord(LoadReport* report, int32_t number) const;
  // Leaves the stream behind the cell. False when its data isn't as long as it says, or if it got no pixels.
  bool Finish(ByteStream* stream, LoadReport* report, int32_t number) const;
  void ReadRow(CellImage* image, int32_t y);
  // The same by wide vectors, of rows from y on; gives how many it has read.
  int32_t ReadRowsWide(CellImage* image, int32_t y, int32_t rows);
  void TakeLiterals(const uint8_t* end);
  void ReadUnits(uint64_t codes, CellImage* image, int32_t place, int32_t count);
  void ReadGroup(uint64_t codes, uint8_t* units, int32_t count);

  int32_t width = 0;  // of each cell
  int32_t height = 0;
  int32_t groups = 0;
  int32_t rowBytes = 0;
  int32_t mapRowBytes = 0;
  int32_t mapBytes = 0;
  Buffer<uint8_t> rowMap;
  Buffer<uint8_t> rowCodes;
  // The cell in hand, and its record in the stream.
  CellImage* cell = nullptr;
  PixelBlock* block = nullptr;  // for its pixels, if there is one
  bool isHeadShort = false;
  bool isShort = false;
  bool isWhole = true;
  int32_t headStart = 0;
  int32_t start = 0;  // of the codes
  int32_t rest = 0;   // bytes of the stream from there on
  int32_t dataGot = 0;
  int32_t codesGot = 0;
  uint32_t literalSize = 0;
  Buffer<uint8_t> data;  // its codes and literals
  bool hasPixels = false;
  bool hasCodesLeft = false;
  const uint8_t* nextCode = nullptr;
  const uint8_t* codeEnd = nullptr;
  const uint8_t* literal = nullptr;
  const uint8_t* literalEnd = nullptr;
  int64_t literalsUsed = 0;
  uint16_t lastLiteral = 0;
  SourceOffsets offsets = {};
};

}  // namespace sorvel
