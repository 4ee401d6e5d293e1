#pragma once

#include <cstdint>
#include <cstdio>

#include "foundation/buffer.h"
#include "foundation/cursor_list.h"

namespace sorvel {

enum SeekOrigin : int32_t { kFromStart = 0, kFromPosition = 1, kFromEnd = 2 };

// What every binary document is read from and written to. Positions and counts are bytes.
class ByteStream {
 public:
  // True when the stream can be used.
  virtual bool IsOpen() = 0;
  // Ends the use of the stream; each class says what that means.
  virtual bool Close() = 0;
  virtual bool Write(const void* bytes, int32_t count) = 0;
  virtual bool Read(void* bytes, int32_t count) = 0;
  virtual bool Seek(int32_t offset, int32_t origin) = 0;
  virtual int32_t Tell() = 0;
  // Reads one byte: 0 to 255, or -1 at the end of the data.
  virtual int32_t GetC() = 0;
  // Writes one byte: gives it as 0 to 255, or -1 if there is no room.
  virtual int32_t PutC(int32_t value) = 0;

 protected:
  ~ByteStream() = default;
};

// A stdio file in binary mode, opened by the caller. Close() closes the file; the destructor doesn't. Tell() gives -1
// at positions from 2 GiB on.
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
  // The value of errno of the first write, or seek behind a write, that failed; 0 while none did. What is written is
  // checked once, at the end: see ReplacementFile.
  int failure = 0;

 private:
  void NoteFailure();
};

// Memory that grows block by block; bytes that were written never move. Close() empties the stream and keeps its
// blocks.
//
// Read() stops and gives false after a byte of value 0xFF, whether it is data or stands for the end of the data.
// ReadUpTo() reads data that may hold this value.
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
  // A seek past the end allocates the blocks up to there and leaves the size; the bytes between have no defined value.
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

// One fixed buffer, not owned. The caller sets the fields: `buffer` and `size` to read, `buffer` and `capacity` to
// write. Write() and Read() process as many bytes as there are and always give true. Close() zeroes the fields.
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

// Integer fields of binary files: little-endian, 1, 2 or 4 bytes.
void WriteField(ByteStream& stream, int32_t value, int32_t bytes);
// Unsigned; bytes behind the end of the data read as 0.
uint32_t ReadField(ByteStream& stream, int32_t bytes);
// The same, signed.
int32_t ReadSignedField(ByteStream& stream, int32_t bytes);

// Text of binary files: its bytes and a zero byte.
void WriteText(ByteStream& stream, const char* text);
// Reads up to a zero byte or the end of the data, but at most `limit` bytes, the room in `text`. Without a zero byte
// among them the last byte is replaced by the terminator. The stream then stands behind the last byte read.
void ReadText(ByteStream& stream, char* text, int32_t limit);

// The length of the whole stream in bytes, -1 beyond 2 GiB; the position stays.
int32_t StreamLength(ByteStream& stream);

// Reads up to `count` bytes, of any value, and gives how many there were.
int32_t ReadUpTo(ByteStream& stream, void* bytes, int32_t count);

// Reads a whole stream, from its start; `size` is the number of bytes read. False if there is no memory for it, if it
// is longer than 2 GiB, or if a read fails.
bool ReadWholeStream(ByteStream& stream, Buffer<uint8_t>* bytes, int32_t* size);

// Copies `count` bytes, or all up to the end with a negative count, between the positions of two streams.
// Gives false when the source ended early, a read or a write failed, or the source is longer than 2 GiB.
bool CopyStream(ByteStream& from, ByteStream& to, int32_t count);

}  // namespace sorvel
