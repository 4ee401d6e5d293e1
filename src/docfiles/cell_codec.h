#pragma once

#include <cstdint>

#include "docfiles/code_rows.h"
#include "docfiles/unit_copy.h"
#include "document/layer.h"
#include "document/load_report.h"
#include "foundation/buffer.h"
#include "foundation/byte_stream.h"

namespace sorvel {

// The layer block of cut and layer files: a small head, then the cells, each cut into groups of four pixels that copy
// an earlier group or are stored. Each object serves one layer block.

class CellWriter {
 public:
  CellWriter();

  // Writes the block at the stream's position. False if there is no memory for its buffers.
  bool Write(Layer* layer, ByteStream* stream);

  // The cells one by one: makes room for cells of this size, false without memory, and writes one at the stream's
  // position.
  bool Begin(int32_t width, int32_t height);
  void WriteCell(const CellImage& image, ByteStream* stream);

 private:
  CodeRowWriter rows;
};

class CellReader {
 public:
  // Clears the layer and fills it from the block at the stream's position. False when a cell's data isn't as long as
  // it says, or asks for more memory than a stream of this length can account for; the cells read so far stay.
  bool Read(Layer* layer, ByteStream* stream, LoadReport* report = nullptr);

 private:
  bool Allocate(const Layer& layer);
  bool ReadCell(CellImage* image, ByteStream* stream, int32_t length, int32_t number, LoadReport* report);
  void ReadRow(CellImage* image, int32_t y);
  void ReadUnits(uint64_t codes, CellImage* image, int32_t place, int32_t count);
  void ReadGroup(uint64_t codes, uint8_t* units, int32_t count);

  int32_t groups = 0;
  int32_t rowBytes = 0;
  int32_t mapRowBytes = 0;
  int32_t mapBytes = 0;
  Buffer<uint8_t> rowMap;
  Buffer<uint8_t> rowCodes;
  // The cell in hand.
  Buffer<uint8_t> data;  // its codes and literals
  const uint8_t* literal = nullptr;
  const uint8_t* literalEnd = nullptr;
  int64_t literalsUsed = 0;
  uint16_t lastLiteral = 0;
  SourceOffsets offsets = {};
};

}  // namespace sorvel
