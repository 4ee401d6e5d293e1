#include "foundation/byte_stream.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace sorvel {

bool FileStream::IsOpen() {
  return file != nullptr;
}

bool FileStream::Close() {
  if (file == nullptr) return false;
  FILE* open = file;
  file = nullptr;
  return std::fclose(open) == 0;
}

bool FileStream::Write(const void* bytes, int32_t count) {
  if (count <= 0) return true;
  errno = 0;
  if (std::fwrite(bytes, static_cast<size_t>(count), 1, file) == 1) return true;
  NoteFailure();
  return false;
}

bool FileStream::Read(void* bytes, int32_t count) {
  if (count <= 0) return true;
  return std::fread(bytes, static_cast<size_t>(count), 1, file) == 1;
}

bool FileStream::Seek(int32_t offset, int32_t origin) {
  const int whence = origin == kFromPosition ? SEEK_CUR : origin == kFromEnd ? SEEK_END : SEEK_SET;
  if (std::fseek(file, offset, whence) == 0) return true;
  // A seek writes what is buffered. One to a place ahead of the start fails too, and says nothing of the contents.
  if (std::ferror(file) != 0) NoteFailure();
  return false;
}

int32_t FileStream::Tell() {
  const int64_t position = std::ftell(file);
  return position > INT32_MAX ? -1 : static_cast<int32_t>(position);
}

int32_t FileStream::GetC() {
  return std::fgetc(file);
}

int32_t FileStream::PutC(int32_t value) {
  errno = 0;
  const int byte = std::fputc(value, file);
  if (byte == EOF) NoteFailure();
  return byte;
}

void FileStream::NoteFailure() {
  if (failure != 0) return;
  if (errno == 0 || errno == EINVAL) {
    // A write on Windows that stops in the middle because the disk gets full has no reason. The next byte has one.
    std::clearerr(file);
    errno = 0;
    std::fputc(0, file);
    std::fflush(file);
  }
  failure = errno != 0 ? errno : EIO;
}

ChunkStream::ChunkStream(int32_t blockBytes)
    : block(new uint8_t[static_cast<size_t>(blockBytes)]), blockSize(blockBytes) {
  blocks.InsertAfter(block);
}

ChunkStream::~ChunkStream() {
  ReleaseElements(&blocks, [](uint8_t* each) { delete[] each; });
}

bool ChunkStream::IsOpen() {
  return block != nullptr;
}

bool ChunkStream::Close() {
  size = 0;
  blockBase = 0;
  blockOffset = 0;
  if (!blocks.SeekFirst()) return false;
  block = blocks.Current();
  return true;
}

bool ChunkStream::StepToNextBlock() {
  blocks.Seek(blockBase / blockSize);
  if (!blocks.SeekNext()) return false;
  block = blocks.Current();
  blockOffset = 0;
  blockBase += blockSize;
  return true;
}

bool ChunkStream::Write(const void* bytes, int32_t count) {
  const uint8_t* from = static_cast<const uint8_t*>(bytes);
  while (count > 0) {
    if (PutC(*from) < 0) return false;
    ++from;
    --count;
    const int32_t run = std::min(count, blockSize - blockOffset);
    std::memcpy(block + blockOffset, from, static_cast<size_t>(run));
    from += run;
    count -= run;
    blockOffset += run;
    size = std::max(size, blockBase + blockOffset);
  }
  return true;
}

bool ChunkStream::Read(void* bytes, int32_t count) {
  uint8_t* to = static_cast<uint8_t*>(bytes);
  for (int32_t i = 0; i < count; ++i) {
    to[i] = static_cast<uint8_t>(GetC());
    // Quirk 7. Data of this value ends the read too: callers rely on it.
    if (to[i] == 0xFF) return false;
  }
  return true;
}

bool ChunkStream::Seek(int32_t offset, int32_t origin) {
  const int64_t base = origin == kFromPosition ? Tell() : origin == kFromEnd ? size : 0;
  const int64_t target = base + offset;
  if (target < 0 || target > INT32_MAX) return false;
  const int32_t index = static_cast<int32_t>(target / blockSize);
  if (index >= blocks.Count()) {
    blocks.SeekLast();
    while (blocks.Count() <= index) blocks.InsertAfter(new uint8_t[static_cast<size_t>(blockSize)]);
  }
  blocks.Seek(index);
  block = blocks.Current();
  blockBase = blockSize * index;
  blockOffset = static_cast<int32_t>(target) - blockBase;
  return true;
}

int32_t ChunkStream::Tell() {
  return blockBase + blockOffset;
}

int32_t ChunkStream::GetC() {
  if (size <= blockBase + blockOffset) return -1;
  if (blockOffset >= blockSize && !StepToNextBlock()) return -1;
  return block[blockOffset++];
}

int32_t ChunkStream::PutC(int32_t value) {
  if (blockOffset >= blockSize && !StepToNextBlock()) {
    blocks.SeekLast();
    blocks.InsertAfter(new uint8_t[static_cast<size_t>(blockSize)]);
    block = blocks.Current();
    blockOffset = 0;
    blockBase += blockSize;
  }
  size = std::max(size, blockBase + blockOffset + 1);
  block[blockOffset] = static_cast<uint8_t>(value);
  return block[blockOffset++];
}

bool BufferStream::IsOpen() {
  return buffer != nullptr;
}

bool BufferStream::Close() {
  buffer = nullptr;
  capacity = 0;
  position = 0;
  size = 0;
  return true;
}

bool BufferStream::Write(const void* bytes, int32_t count) {
  count = std::min(count, capacity - position);
  if (count > 0) {
    std::memcpy(buffer + position, bytes, static_cast<size_t>(count));
    position += count;
    size = std::max(size, position);
  }
  return true;
}

bool BufferStream::Read(void* bytes, int32_t count) {
  count = std::min(count, size - position);
  if (count > 0) {
    std::memcpy(bytes, buffer + position, static_cast<size_t>(count));
    position += count;
  }
  return true;
}

bool BufferStream::Seek(int32_t offset, int32_t origin) {
  const int64_t base = origin == kFromPosition ? position : origin == kFromEnd ? size : 0;
  const int64_t target = base + offset;
  if (target < 0 || target > INT32_MAX) return false;
  position = static_cast<int32_t>(target);
  return true;
}

int32_t BufferStream::Tell() {
  return position;
}

int32_t BufferStream::GetC() {
  if (size <= position) return -1;
  return buffer[position++];
}

int32_t BufferStream::PutC(int32_t value) {
  if (capacity <= position) return -1;
  buffer[position] = static_cast<uint8_t>(value);
  const int32_t byte = buffer[position++];
  size = std::max(size, position);
  return byte;
}

void WriteField(ByteStream& stream, int32_t value, int32_t bytes) {
  const uint32_t bits = static_cast<uint32_t>(value);
  const uint8_t low[4] = {static_cast<uint8_t>(bits), static_cast<uint8_t>(bits >> 8), static_cast<uint8_t>(bits >> 16),
                          static_cast<uint8_t>(bits >> 24)};
  stream.Write(low, bytes);
}

uint32_t ReadField(ByteStream& stream, int32_t bytes) {
  uint32_t value = 0;
  for (int32_t i = 0; i < bytes; ++i) {
    const int32_t byte = stream.GetC();
    if (byte < 0) break;
    value |= static_cast<uint32_t>(byte) << (8 * i);
  }
  return value;
}

int32_t ReadSignedField(ByteStream& stream, int32_t bytes) {
  const uint32_t value = ReadField(stream, bytes);
  const uint32_t sign = 1u << (8 * bytes - 1);
  return static_cast<int32_t>((value ^ sign) - sign);
}

void WriteText(ByteStream& stream, const char* text) {
  stream.Write(text, static_cast<int32_t>(std::strlen(text)) + 1);
}

void ReadText(ByteStream& stream, char* text, int32_t limit) {
  for (int32_t i = 0; i < limit; ++i) {
    const int32_t byte = stream.GetC();
    if (byte <= 0) {
      text[i] = '\0';
      return;
    }
    text[i] = static_cast<char>(byte);
  }
  text[limit - 1] = '\0';
}

int32_t StreamLength(ByteStream& stream) {
  const int32_t position = stream.Tell();
  stream.Seek(0, kFromEnd);
  const int32_t length = stream.Tell();
  stream.Seek(position, kFromStart);
  return length;
}

int32_t ReadUpTo(ByteStream& stream, void* bytes, int32_t count) {
  uint8_t* to = static_cast<uint8_t*>(bytes);
  const int32_t start = stream.Tell();
  int32_t done = 0;
  while (done < count) {
    stream.Read(to + done, count - done);
    const int32_t now = stream.Tell() - start;
    if (now <= done) break;
    done = now;
  }
  return done;
}

bool ReadWholeStream(ByteStream& stream, Buffer<uint8_t>* bytes, int32_t* size) {
  const int32_t length = StreamLength(stream);
  if (length < 0 || !bytes->Allocate(static_cast<size_t>(length))) return false;
  stream.Seek(0, kFromStart);
  *size = ReadUpTo(stream, bytes->Data(), length);
  return *size == length;
}

bool CopyStream(ByteStream& from, ByteStream& to, int32_t count) {
  // Large, since a whole film is copied this way.
  constexpr int32_t blockBytes = 1 << 18;
  Buffer<uint8_t> block;
  if (!block.Allocate(blockBytes)) return false;
  if (count < 0) {
    // Without the length a read that fails would look like the end. It is -1 if there is more than can be counted.
    const int32_t length = StreamLength(from);
    if (length < 0) return false;
    count = std::max(length - from.Tell(), 0);
  }
  while (count > 0) {
    const int32_t wanted = std::min(count, blockBytes);
    const int32_t got = ReadUpTo(from, block.Data(), wanted);
    if ((got > 0 && !to.Write(block.Data(), got)) || got < wanted) return false;
    count -= got;
  }
  return true;
}

}  // namespace sorvel
