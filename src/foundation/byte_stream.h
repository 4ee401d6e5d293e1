#pragma once

#include <cstdint>
#include <cstdio>

#include "foundation/cursor_list.h"

namespace sorvel {

enum SeekOrigin : int32_t { kFromStart = 0, kFromPosition = 1, kFromEnd = 2 };

// What every binary document is read from and written to. Positions and counts are bytes.
class ByteStream {
 public:
  // True when the stream can be used.
  virtual bool IsOpen() = 0;
  // Ends the present use of the stream; what that means is told at each class.
  virtual bool Close() = 0;
  virtual bool Write(const void* bytes, int32_t count) = 0;
  virtual bool Read(void* bytes, int32_t count) = 0;
  virtual bool Seek(int32_t offset, int32_t origin) = 0;
  virtual int32_t Tell() = 0;
  // The next byte as 0 to 255, or -1 at the end of the data.
  virtual int32_t GetC() = 0;
  // Writes one byte and gives it as 0 to 255, or -1 if there is no room.
  virtual int32_t PutC(int32_t value) = 0;

 protected:
  ~ByteStream() = default;
};

// A stdio file in binary mode, opened by the caller. Close() closes the file; the destructor doesn't. Behind the first
// 2 GiB Tell() gives -1.
class FileStream final : public ByteStream {
 public:
  explicit FileStream(FILE* openFile) : file(openFile) {}

  bool IsOpen() override;
  bool Close() override;
  bool Write(const void* bytes, int32_t count) override;
  bool Read(void* bytes, int32_t count) override;
  bool Seek(int32_t offset, int32_t origin) override;
  int32_t Tell() override;
  int32_t GetC() override;
  int32_t PutC(int32_t value) override;

  FILE* file;
};

// Memory that grows by blocks and never moves what it holds.
// Close() empties it for reuse and keeps the blocks.
// Read() stops with false as soon as the byte it stored is 0xFF, be it the end of the data or a real byte: a caller
// that may meet that value reads one byte at a time and ignores the result.
class ChunkStream final : public ByteStream {
 public:
  static constexpr int32_t kBlockSize = 4096;

  explicit ChunkStream(int32_t blockBytes = kBlockSize);
  ChunkStream(const ChunkStream&) = delete;
  ChunkStream& operator=(const ChunkStream&) = delete;
  ~ChunkStream();

  bool IsOpen() override;
  bool Close() override;
  bool Write(const void* bytes, int32_t count) override;
  bool Read(void* bytes, int32_t count) override;
  // A seek past the end makes the blocks up to there exist and leaves the size; the gap has no defined contents.
  bool Seek(int32_t offset, int32_t origin) override;
  int32_t Tell() override;
  int32_t GetC() override;
  int32_t PutC(int32_t value) override;

  int32_t Size() const { return size; }
  int32_t BlockCount() const { return blocks.Count(); }

 private:
  bool StepToNextBlock();

  CursorList<uint8_t*> blocks;
  uint8_t* block;
  int32_t blockSize;
  int32_t blockBase = 0;
  int32_t blockOffset = 0;
  int32_t size = 0;
};

// One fixed buffer, not owned. The owner fills the fields at will; for reading `buffer`, `size` and position 0.
// Write() and Read() clip to what there is and always give true. Close() zeroes the fields and frees nothing.
class BufferStream final : public ByteStream {
 public:
  bool IsOpen() override;
  bool Close() override;
  bool Write(const void* bytes, int32_t count) override;
  bool Read(void* bytes, int32_t count) override;
  bool Seek(int32_t offset, int32_t origin) override;
  int32_t Tell() override;
  int32_t GetC() override;
  int32_t PutC(int32_t value) override;

  uint8_t* buffer = nullptr;
  int32_t capacity = 0;  // bytes that may be written
  int32_t position = 0;
  int32_t size = 0;  // bytes that may be read
};

// Integer fields of the binary documents: little-endian, 1, 2 or 4 bytes.
void WriteField(ByteStream& stream, int32_t value, int32_t bytes);
// Zero-extended; what lies past the end of the data reads as zero.
uint32_t ReadField(ByteStream& stream, int32_t bytes);
// The same, sign-extended.
int32_t ReadSignedField(ByteStream& stream, int32_t bytes);

// Text of the binary documents: its bytes and a zero byte.
void WriteText(ByteStream& stream, const char* text);
// Reads up to a zero byte or the end of the data, `limit` bytes at the most. When the limit is reached the last byte
// taken counts as the terminator, and the stream stays right behind it. `text` has room for `limit` bytes.
void ReadText(ByteStream& stream, char* text, int32_t limit);

// The length of the whole stream in bytes, -1 beyond 2 GiB; the position stays.
int32_t StreamLength(ByteStream& stream);

// Reads up to `count` bytes and gives how many there were. Unlike Read() it isn't stopped by a byte 0xFF.
int32_t ReadUpTo(ByteStream& stream, void* bytes, int32_t count);

// Reads a whole stream, from its start, into memory that the caller frees with free(); `memory` then stands at its own
// start. False if there is no memory for it or it is longer than 2 GiB.
bool ReadWholeStream(ByteStream& stream, BufferStream* memory);

// The number that lies in `count` bytes, up to 4, the lowest first.
inline uint32_t LittleEndian(const uint8_t* bytes, int32_t count) {
  uint32_t value = 0;
  for (int32_t i = count; i-- > 0;) value = value << 8 | bytes[i];
  return value;
}

// Copies `count` bytes, or all up to the end with a negative count, between the positions of two streams.
// Gives false when the source ended early or a write failed.
bool CopyStream(ByteStream& from, ByteStream& to, int32_t count);

}  // namespace sorvel
