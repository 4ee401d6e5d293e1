#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "animation/stream_encoder.h"
#include "document/cut.h"
#include "foundation/byte_stream.h"
#include "imaging/indexed_image.h"
#include "imaging/nibble_bitmap.h"
#include "support/test_bytes.h"

namespace sorvel::teststreams {

using namespace testbytes;
using Input = InputBytes;

struct FrameHead {
  int32_t time = 1;
  int32_t loop = 1;
  int32_t brightness = 50;
  int32_t x = 0;
  int32_t y = 0;
  Rect box;
};

inline Bytes FrameBytes(const FrameHead& head, const Bytes& map = {}, const Bytes& codes = {},
                        const Bytes& literals = {}) {
  return Join({Le16(head.time),
               Le16(head.loop),
               {static_cast<uint8_t>(head.brightness & 255)},
               Le16(head.x),
               Le16(head.y),
               Le16(head.box.x),
               Le16(head.box.y),
               Le16(head.box.width),
               Le16(head.box.height),
               Le32(static_cast<uint32_t>(codes.size())),
               Le32(static_cast<uint32_t>(literals.size())),
               map,
               codes,
               literals});
}

// A frame of a picture of 4 by 1 pixels, all in one block of its own.
inline Bytes Block(int32_t time, int32_t loop, uint8_t literal, int32_t brightness = 50, int32_t x = 0, int32_t y = 0) {
  return FrameBytes({time, loop, brightness, x, y, {0, 0, 4, 1}}, {0x01}, {0x00}, {literal});
}

// A frame without any change of the picture.
inline Bytes Still(int32_t time, int32_t loop, int32_t brightness = 50, int32_t x = 0, int32_t y = 0) {
  return FrameBytes({time, loop, brightness, x, y, {}});
}

struct CutHead {
  std::string credit;
  int32_t width = 4;
  int32_t height = 1;
  int32_t frameWidth = 4;
  int32_t frameHeight = 1;
  int32_t fps = 24;
  int32_t levels = 4;
};

inline Bytes CutRecord(const CutHead& head, std::initializer_list<Bytes> frames) {
  return Join({Text(head.credit),
               Le16(head.width),
               Le16(head.height),
               Le16(head.frameWidth),
               Le16(head.frameHeight),
               {static_cast<uint8_t>(head.fps & 255), static_cast<uint8_t>((head.levels - 1) & 255)},
               Join(frames)});
}

inline Bytes Compiled(const Bytes& record) {
  return Join({{'C', 'A'}, Le32(static_cast<uint32_t>(record.size() + 6)), record});
}

inline Bytes Compiled(const CutHead& head, std::initializer_list<Bytes> frames) {
  return Compiled(CutRecord(head, frames));
}

inline Bytes Container(int32_t width, int32_t height, int32_t maxWidth, int32_t maxHeight,
                       const std::vector<Bytes>& records, std::string_view title = "", std::string_view author = "") {
  Bytes middle = Join({Text(title), Text(author), Le16(width), Le16(height), Le16(maxWidth), Le16(maxHeight),
                       Le16(static_cast<int32_t>(records.size()))});
  Bytes table;
  Bytes body;
  const size_t start = 6 + middle.size() + 4 * records.size();
  for (const Bytes& record : records) {
    table = Join({table, Le32(static_cast<uint32_t>(start + body.size()))});
    body = Join({body, record});
  }
  return Join({{'S', 'V'}, Le32(static_cast<uint32_t>(start + body.size())), middle, table, body});
}

// What the codes of blocks 1 to 14 copy from, in pixels.
struct CopyOffset {
  int32_t code;
  int32_t dx;
  int32_t dy;
};

inline constexpr CopyOffset kCopyOffsets[] = {{1, -4, 0},   {2, -8, 0},  {3, -16, 0},  {4, 0, -1},  {5, -4, -1},
                                              {6, 0, -2},   {7, -4, -2}, {8, -8, -2},  {9, 0, -4},  {10, -4, -4},
                                              {11, -8, -4}, {12, 0, -8}, {13, -4, -8}, {14, -8, -8}};

// A picture of 20 by 9 pixels in blocks of four, counted by rows of five. A block has its four numbers in two bits
// each.
using Blocks = std::array<uint8_t, 45>;

// All blocks differ: they can only be literals.
inline Blocks DifferentBlocks() {
  Blocks blocks;
  for (size_t n = 0; n < blocks.size(); ++n) blocks[n] = static_cast<uint8_t>(n * 5 + 7);
  return blocks;
}

// The block that the last one, at (16, 8), copies.
inline size_t SourceBlock(int32_t code) {
  for (const CopyOffset& offset : kCopyOffsets) {
    if (offset.code == code) return static_cast<size_t>((8 + offset.dy) * 5 + (16 + offset.dx) / 4);
  }
  return 44;
}

// As text, with this digit for the number 0.
inline std::string BlockPicture(const Blocks& blocks, char zero) {
  std::string picture;
  for (size_t n = 0; n < blocks.size(); ++n) {
    if (n > 0 && n % 5 == 0) picture += '/';
    for (int i = 0; i < 4; ++i) picture += static_cast<char>(zero + (blocks[n] >> 2 * i & 3));
  }
  return picture;
}

// A temporary file that becomes bytes again.
class Output {
 public:
  Output() : stream(std::tmpfile()) {}
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;
  ~Output() { stream.Close(); }

  Bytes Written() {
    std::rewind(stream.file);
    const std::string bytes = ReadRest(stream.file);
    return Bytes(bytes.begin(), bytes.end());
  }

  FileStream stream;
};

// Rows of characters with / between them: '.' for 0, digits, and letters from 'a' for 10. The rest stays.
inline void Paint(CellImage* image, std::string_view picture) {
  int32_t x = 0;
  int32_t y = 0;
  for (char c : picture) {
    if (c == '/') {
      x = 0;
      ++y;
      continue;
    }
    image->SetPixel(x++, y, c == '.' ? 0 : c <= '9' ? c - '0' : c - 'a' + 10);
  }
}

// The numbers of a plane, written in the same way.
inline std::string FrontPicture(NibbleBitmap& bitmap) {
  std::string picture;
  for (int32_t y = 0; y < bitmap.height; ++y) {
    if (y > 0) picture += '/';
    for (int32_t x = 0; x < bitmap.width; ++x) picture += "0123456789abcdef"[bitmap.GetFront(x, y) & 15];
  }
  return picture;
}

// A cut with one layer "A" of the canvas size that has a cell for each picture, and a frame for each cell.
inline std::unique_ptr<Cut> MakeCut(int32_t width, int32_t height, const std::vector<std::string>& pictures,
                                    int32_t antialias = 0, const char* credit = "") {
  std::unique_ptr<Cut> cut(new Cut(width, height, 24, credit, antialias));
  Layer* layer = cut->AddLayer("A", width, height, nullptr);
  while (layer->cells.Count() < static_cast<int32_t>(pictures.size())) {
    layer->AddCell(layer->cells.Count() - 1, 0, nullptr);
  }
  for (size_t i = 0; i < pictures.size(); ++i) {
    const int32_t cell = static_cast<int32_t>(i);
    Paint(layer->CellAt(cell), pictures[i]);
    cut->AddFrame()->AddRecord(layer, cell, 0, 0);
  }
  for (int32_t i = 0; i < cut->frames.Count(); ++i) {
    cut->frames.At(i)->x = 0;
    cut->frames.At(i)->y = 0;
  }
  return cut;
}

// Compiles into bytes; empty if the encoder refuses.
inline Bytes Compile(Cut* cut, int32_t first, int32_t last) {
  Output output;
  NibbleBitmap bitmap;
  IndexedImage composition;
  composition.Resize(cut->width, cut->height, 0);
  if (!CompileFrames(cut, first, last, &output.stream, &bitmap, &composition)) return {};
  EXPECT_EQ(output.stream.Tell(), 6);
  return output.Written();
}

inline Bytes Compile(Cut* cut) {
  return Compile(cut, 0, cut->frames.Count() - 1);
}

// Cut files. A layer has cells of 4 by 2 pixels, each of four bytes as they lie in memory, the two rows different.
inline Bytes LayerBlock(std::string_view name, const std::vector<Bytes>& cells, uint8_t follow = 0) {
  Bytes block = Join({Text(name), Le16(4), Le16(2), {follow}, Le16(static_cast<int32_t>(cells.size()))});
  for (const Bytes& cell : cells) block = Join({block, Hex("01 00 00 00  04 00 00 00  01 00  00"), cell});
  return block;
}

struct RecordFields {
  uint8_t layer;
  int32_t x;
  int32_t y;
  int32_t cell;
};

inline Bytes FrameRecordBytes(int32_t x, int32_t y, int32_t time, int32_t loop, int32_t brightness,
                              std::string_view comment, std::initializer_list<RecordFields> records) {
  Bytes bytes = Join({Le16(x),
                      Le16(y),
                      Le16(time),
                      Le16(loop),
                      {static_cast<uint8_t>(brightness & 255)},
                      Text(comment),
                      {static_cast<uint8_t>(records.size())}});
  for (const RecordFields& record : records) {
    bytes = Join({bytes, {record.layer}, Le16(record.x), Le16(record.y), Le16(record.cell)});
  }
  return bytes;
}

inline Bytes CutFile(int32_t width, int32_t height, std::string_view credit, const std::vector<Bytes>& layers,
                     const std::vector<Bytes>& frames, uint8_t antialias = 0, uint8_t fps = 24) {
  Bytes bytes = Join({Text("Sorvelin Cut"),
                      Le16(width),
                      Le16(height),
                      Le16(width),
                      Le16(height),
                      {fps},
                      Text(credit),
                      {antialias, static_cast<uint8_t>(layers.size())},
                      Le16(static_cast<int32_t>(frames.size()))});
  for (const Bytes& layer : layers) bytes = Join({bytes, layer});
  for (const Bytes& frame : frames) bytes = Join({bytes, frame});
  return bytes;
}

// Two frames of a layer "A" on 4 by 2 pixels; the second cell differs in its lower row.
inline Bytes SmallCutFile() {
  return CutFile(
      4, 2, "", {LayerBlock("A", {Hex("12 34 41 00"), Hex("12 34 32 10")})},
      {FrameRecordBytes(0, 0, 1, 1, 50, "", {{0, 0, 0, 0}}), FrameRecordBytes(0, 0, 2, 1, 50, "", {{0, 0, 0, 1}})});
}

// What compiling it gives. Levels 0 1 2 3 and, below, 3 0 3 3; then 2 1 0 3, which changes columns 0 to 2.
inline Bytes SmallCutCompiled() {
  return Hex(
      "43 41  4B 00 00 00  00  04 00  02 00  04 00  02 00  18  03"
      "01 00  01 00  32  00 00  00 00  00 00  00 00  04 00  02 00  01 00 00 00  02 00 00 00"
      "01 00  00  E4 F3"
      "02 00  01 00  32  00 00  00 00  00 00  01 00  03 00  01 00  01 00 00 00  01 00 00 00"
      "01  00  C6");
}

}  // namespace sorvel::teststreams
