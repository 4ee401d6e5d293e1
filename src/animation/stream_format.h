#pragma once

#include <cstdint>
#include <cstring>

#include "docfiles/code_rows.h"
#include "document/cut.h"
#include "foundation/byte_stream.h"
#include "imaging/rect.h"

namespace sorvel {

// The layout of compiled streams and film containers. Both begin with two letters and the size of the whole stream.
//
// A compiled stream goes on with one cut record and its frames. A film container goes on with its title, its author,
// a ContainerHead and the offsets of its cut records, 4 bytes each; then come the cut records, each with its frames.
//
// A cut record is the credit and a StreamCutHead. A frame is a StreamFrameHead, the change map, the codes and the
// literals.

enum class StreamKind : uint8_t { kUnknown, kCompiledCut, kFilmContainer };

// The part of a compiled stream from here on goes into a film container as it stands.
constexpr int32_t kCutRecordOffset = 6;

// Texts are cut to this many bytes with their terminator on reading.
constexpr int32_t kStreamTextLimit = 256;

// Sizes in bytes of the fixed parts.
constexpr int32_t kStreamSizeBytes = 4;
constexpr int32_t kCutHeadBytes = 10;
constexpr int32_t kContainerHeadBytes = 10;
constexpr int32_t kOffsetBytes = 4;
constexpr int32_t kFrameHeadBytes = 25;

// The code of a block of four pixels that is the same as in the frame before. The other codes are those of cells.
constexpr int32_t kPreviousFrameBlock = 15;

// Four pixels of the bitmap's planes as they lie in memory, and the bits of the low plane in them.
constexpr uint32_t kPlaneBits = 0x0F0F0F0F;

inline uint32_t LoadBlock(const uint8_t* bytes) {
  uint32_t block = 0;
  std::memcpy(&block, bytes, sizeof(block));
  return block;
}

// Writes the two letters and room for the size, and at the end the size, behind which it leaves the stream.
void WriteStreamStart(ByteStream& stream, StreamKind kind);
void WriteStreamSize(ByteStream& stream);
// Reads the two letters at the stream's position. The size comes next.
StreamKind ReadStreamKind(ByteStream& stream);

// A cut record behind its credit. All sizes are output pixels.
struct StreamCutHead {
  int32_t width = 0;  // of the picture
  int32_t height = 0;
  int32_t frameWidth = 0;  // of the part that is shown
  int32_t frameHeight = 0;
  int32_t fps = 0;
  int32_t levels = 0;  // of grey; the stream holds one less

  bool operator==(const StreamCutHead&) const = default;
};

// What a stream says of a cut that is compiled at its output size.
StreamCutHead OutputHead(const Cut& cut);
void WriteCutHead(ByteStream& stream, const StreamCutHead& head);
StreamCutHead ReadCutHead(ByteStream& stream);

// A film container behind its two texts.
struct ContainerHead {
  int32_t width = 0;  // picture area of the film
  int32_t height = 0;
  int32_t maxWidth = 0;  // of the pictures of all cuts
  int32_t maxHeight = 0;
  int32_t cutCount = 0;

  bool operator==(const ContainerHead&) const = default;
};

void WriteContainerHead(ByteStream& stream, const ContainerHead& head);
ContainerHead ReadContainerHead(ByteStream& stream);

// The part of a frame's head that doesn't depend on its picture.
struct StreamFrameTiming {
  int32_t time = 0;  // in ticks; negative for a dissolve
  int32_t loop = 0;
  int32_t brightness = 0;
  int32_t x = 0;  // of the part that is shown
  int32_t y = 0;

  bool operator==(const StreamFrameTiming&) const = default;
};

void WriteFrameTiming(ByteStream& stream, const StreamFrameTiming& timing);

struct StreamFrameHead : StreamFrameTiming {
  Rect box;  // of the pixels that the frame changes
  uint32_t codeSize = 0;
  uint32_t literalSize = 0;

  // The size of the change map follows from the box; 0 for an empty one.
  int64_t MapSize() const { return box.IsEmpty() ? 0 : int64_t{CodeMapRowBytes(box.width)} * box.height; }
  bool operator==(const StreamFrameHead&) const = default;
};

void WriteFrameHead(ByteStream& stream, const StreamFrameHead& head);
StreamFrameHead ReadFrameHead(ByteStream& stream);
// Reads the rest of a head whose timing has been read.
void ReadFrameSections(ByteStream& stream, StreamFrameHead* head);

}  // namespace sorvel
