#include "foundation/byte_stream.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "support/test_document.h"

namespace sorvel {
namespace {

using testdoc::ReadFile;
using testdoc::TemporaryFolder;
using testdoc::WriteFile;

using Bytes = std::vector<int32_t>;

uint8_t Sample(int32_t index) {
  return static_cast<uint8_t>(index * 7 + index / 251);
}

// All bytes from the position to the end of the data.
Bytes Rest(ByteStream& stream) {
  Bytes bytes;
  for (int32_t c = stream.GetC(); c != -1; c = stream.GetC()) bytes.push_back(c);
  return bytes;
}

BufferStream BufferOver(uint8_t* memory, int32_t capacity, int32_t size) {
  BufferStream stream;
  stream.buffer = memory;
  stream.capacity = capacity;
  stream.size = size;
  return stream;
}

// Puts bytes into an empty stream and goes to their start.
void Fill(ChunkStream& stream, const std::vector<uint8_t>& bytes) {
  EXPECT_TRUE(stream.Write(bytes.data(), static_cast<int32_t>(bytes.size())));
  stream.Seek(0, kFromStart);
}

void PutSamples(ByteStream& stream, int32_t count) {
  for (int32_t i = 0; i < count; ++i) stream.PutC(Sample(i));
}

// The samples from a position to the end of the data.
void ExpectSamples(ByteStream& stream, int32_t from, int32_t end) {
  for (int32_t i = from; i < end; ++i) ASSERT_EQ(stream.GetC(), Sample(i)) << i;
  EXPECT_EQ(stream.GetC(), -1);
}

void ExpectState(ChunkStream& stream, int32_t position, int32_t size, int32_t blocks) {
  EXPECT_EQ(stream.Tell(), position);
  EXPECT_EQ(stream.Size(), size);
  EXPECT_EQ(stream.BlockCount(), blocks);
}

void ExpectSeek(ByteStream& stream, int32_t offset, int32_t origin, int32_t position) {
  EXPECT_TRUE(stream.Seek(offset, origin));
  EXPECT_EQ(stream.Tell(), position);
}

TEST(ChunkStream, NewStreamIsOpenEmptyAndHasOneBlock) {
  ChunkStream stream;
  EXPECT_TRUE(stream.IsOpen());
  ExpectState(stream, 0, 0, 1);
  EXPECT_EQ(stream.GetC(), -1);
}

TEST(ChunkStream, AFullBlockIsLeftOnlyByTheNextByte) {
  ChunkStream stream;
  PutSamples(stream, 4096);
  ExpectState(stream, 4096, 4096, 1);
  EXPECT_EQ(stream.GetC(), -1);
  ExpectState(stream, 4096, 4096, 1);
  EXPECT_EQ(stream.PutC(1), 1);
  ExpectState(stream, 4097, 4097, 2);
}

TEST(ChunkStream, ReadingAcrossABlockBorderGivesEveryByteBack) {
  ChunkStream stream;
  PutSamples(stream, 4096 * 2 + 10);
  EXPECT_TRUE(stream.Seek(0, kFromStart));
  ExpectSamples(stream, 0, 4096 * 2 + 10);
  EXPECT_EQ(stream.Tell(), 4096 * 2 + 10);
}

TEST(ChunkStream, PutCGivesTheByteUnsigned) {
  ChunkStream stream;
  EXPECT_EQ(stream.PutC(0), 0);
  EXPECT_EQ(stream.PutC(255), 255);
  EXPECT_EQ(stream.PutC(-1), 255);
  EXPECT_EQ(stream.PutC(0x180), 0x80);
  stream.Seek(0, kFromStart);
  EXPECT_EQ(Rest(stream), Bytes({0, 255, 255, 0x80}));
}

TEST(ChunkStream, OverwritingKeepsTheSize) {
  ChunkStream stream;
  PutSamples(stream, 10);
  stream.Seek(3, kFromStart);
  stream.PutC(99);
  ExpectState(stream, 4, 10, 1);
  stream.Seek(3, kFromStart);
  EXPECT_EQ(stream.GetC(), 99);
  EXPECT_EQ(stream.GetC(), Sample(4));
}

TEST(ChunkStream, WriteStoresAllBytesAndGivesTrue) {
  ChunkStream stream;
  const uint8_t bytes[] = {1, 0, 255, 7};
  EXPECT_TRUE(stream.Write(bytes, 4));
  EXPECT_EQ(stream.Tell(), 4);
  EXPECT_TRUE(stream.Write(bytes, 0));
  EXPECT_EQ(stream.Size(), 4);
  stream.Seek(0, kFromStart);
  EXPECT_EQ(Rest(stream), Bytes({1, 0, 255, 7}));
}

TEST(ChunkStream, WriteRunsOverBlockBorders) {
  ChunkStream stream;
  std::vector<uint8_t> bytes;
  for (int32_t i = 0; i < 10000; ++i) bytes.push_back(Sample(i));
  EXPECT_TRUE(stream.Write(bytes.data(), 10000));
  ExpectState(stream, 10000, 10000, 3);
  stream.Seek(0, kFromStart);
  ExpectSamples(stream, 0, 10000);
}

// A read of `count` bytes gives `result`, stores `stored` and leaves the rest of its memory.
void ExpectRead(ByteStream& stream, int32_t count, bool result, std::vector<uint8_t> stored) {
  std::vector<uint8_t> read(6, 9);
  EXPECT_EQ(stream.Read(read.data(), count), result);
  stored.resize(6, 9);
  EXPECT_EQ(read, stored);
}

TEST(ChunkStream, ReadGivesTheBytesAndTrue) {
  ChunkStream stream;
  Fill(stream, {1, 2, 254, 0});
  ExpectRead(stream, 4, true, {1, 2, 254, 0});
  ExpectRead(stream, 0, true, {});
}

TEST(ChunkStream, ReadStopsBehindAByte255) {
  ChunkStream stream;
  Fill(stream, {1, 255, 2});
  ExpectRead(stream, 3, false, {1, 255});
  EXPECT_EQ(stream.Tell(), 2);
  EXPECT_EQ(stream.GetC(), 2);
}

TEST(ChunkStream, ReadOfALastByte255IsFalse) {
  ChunkStream stream;
  Fill(stream, {255});
  ExpectRead(stream, 1, false, {255});
  EXPECT_EQ(stream.Tell(), 1);
}

TEST(ChunkStream, ReadPastTheEndStoresOneByte255AndIsFalse) {
  ChunkStream stream;
  Fill(stream, {1, 2});
  ExpectRead(stream, 4, false, {1, 2, 255});
  EXPECT_EQ(stream.Tell(), 2);
}

TEST(ChunkStream, CloseEmptiesAndKeepsTheBlocks) {
  ChunkStream stream;
  PutSamples(stream, 9000);
  EXPECT_TRUE(stream.Close());
  EXPECT_EQ(stream.GetC(), -1);
  ExpectState(stream, 0, 0, 3);
  EXPECT_TRUE(stream.IsOpen());
}

TEST(ChunkStream, StreamIsUsedAnewAfterClose) {
  ChunkStream stream;
  PutSamples(stream, 9000);
  stream.Close();
  for (int32_t i = 0; i < 5000; ++i) stream.PutC(i & 63);
  ExpectState(stream, 5000, 5000, 3);
  stream.Seek(0, kFromStart);
  for (int32_t i = 0; i < 5000; ++i) ASSERT_EQ(stream.GetC(), i & 63) << i;
  EXPECT_EQ(stream.GetC(), -1);
}

TEST(ChunkStream, SeekCountsFromStartPositionOrEnd) {
  ChunkStream stream;
  PutSamples(stream, 100);
  ExpectSeek(stream, 40, kFromStart, 40);
  ExpectSeek(stream, -15, kFromPosition, 25);
  ExpectSeek(stream, 5, kFromPosition, 30);
  ExpectSeek(stream, -1, kFromEnd, 99);
  EXPECT_EQ(stream.GetC(), Sample(99));
}

TEST(ChunkStream, SeekFromAnyOtherOriginCountsFromTheStart) {
  ChunkStream stream;
  PutSamples(stream, 100);
  for (int32_t origin : {3, -1, 77}) ExpectSeek(stream, 60, origin, 60);
}

TEST(ChunkStream, SeekToANegativeTargetIsFalseWithoutAMove) {
  ChunkStream stream;
  PutSamples(stream, 100);
  stream.Seek(10, kFromStart);
  for (const auto& [offset, origin] : {std::pair{-1, kFromStart}, {-11, kFromPosition}, {-101, kFromEnd}}) {
    EXPECT_FALSE(stream.Seek(offset, origin));
    EXPECT_EQ(stream.Tell(), 10);
  }
  EXPECT_EQ(stream.GetC(), Sample(10));
}

TEST(ChunkStream, SeekPastTheEndMakesTheBlocksAndKeepsTheSize) {
  ChunkStream stream;
  PutSamples(stream, 10);
  EXPECT_TRUE(stream.Seek(4096 * 3 + 5, kFromStart));
  ExpectState(stream, 4096 * 3 + 5, 10, 4);
  EXPECT_EQ(stream.GetC(), -1);
  stream.PutC(77);
  EXPECT_EQ(stream.Size(), 4096 * 3 + 6);
  stream.Seek(-1, kFromPosition);
  EXPECT_EQ(stream.GetC(), 77);
}

TEST(ChunkStream, SeekToABlockBorderMakesTheBlockBehindIt) {
  ChunkStream stream;
  PutSamples(stream, 4096);
  EXPECT_TRUE(stream.Seek(4096, kFromStart));
  ExpectState(stream, 4096, 4096, 2);
  EXPECT_EQ(stream.GetC(), -1);
  stream.PutC(5);
  ExpectState(stream, 4097, 4097, 2);
}

TEST(ChunkStream, SeekBackIntoAnEarlierBlockReadsThere) {
  ChunkStream stream;
  PutSamples(stream, 4096 * 4);
  for (int32_t target : {4095, 4096, 12288, 0, 8191, 8192, 16383}) {
    EXPECT_TRUE(stream.Seek(target, kFromStart));
    EXPECT_EQ(stream.GetC(), Sample(target)) << target;
    EXPECT_EQ(stream.Tell(), target + 1);
  }
  EXPECT_EQ(stream.BlockCount(), 4);
}

TEST(ChunkStream, SmallBlocksBehaveAlike) {
  ChunkStream stream(3);
  PutSamples(stream, 3);
  EXPECT_EQ(stream.BlockCount(), 1);
  EXPECT_TRUE(stream.Seek(7, kFromStart));
  EXPECT_EQ(stream.BlockCount(), 3);
  stream.PutC(1);
  stream.Seek(0, kFromStart);
  for (int32_t i = 0; i < 3; ++i) EXPECT_EQ(stream.GetC(), Sample(i));
  EXPECT_EQ(stream.Size(), 8);
}

void ExpectClosedAndZero(BufferStream& stream) {
  EXPECT_FALSE(stream.IsOpen());
  EXPECT_EQ(stream.buffer, nullptr);
  EXPECT_EQ(stream.capacity, 0);
  EXPECT_EQ(stream.position, 0);
  EXPECT_EQ(stream.size, 0);
}

TEST(BufferStream, NewStreamIsClosedAndAllZero) {
  BufferStream stream;
  ExpectClosedAndZero(stream);
  EXPECT_EQ(stream.GetC(), -1);
  EXPECT_EQ(stream.PutC(1), -1);
}

TEST(BufferStream, WriteIsClippedToTheCapacityAndStillTrue) {
  uint8_t memory[6] = {9, 9, 9, 9, 9, 9};
  BufferStream stream = BufferOver(memory, 4, 0);
  EXPECT_TRUE(stream.IsOpen());
  const uint8_t bytes[] = {1, 2, 3, 4, 5, 6};
  EXPECT_TRUE(stream.Write(bytes, 6));
  EXPECT_EQ(stream.Tell(), 4);
  EXPECT_EQ(stream.size, 4);
  const uint8_t expected[] = {1, 2, 3, 4, 9, 9};
  EXPECT_EQ(std::memcmp(memory, expected, 6), 0);
  EXPECT_EQ(stream.PutC(7), -1);
  EXPECT_EQ(memory[4], 9);
  EXPECT_TRUE(stream.Write(bytes, 1));
  EXPECT_EQ(stream.Tell(), 4);
}

TEST(BufferStream, WriteLiftsTheSizeOnlyWhenThePositionPassesIt) {
  uint8_t memory[8] = {};
  BufferStream stream = BufferOver(memory, 8, 6);
  const uint8_t bytes[] = {1, 2, 3, 4};
  stream.Write(bytes, 4);
  EXPECT_EQ(stream.size, 6);
  stream.Write(bytes, 4);
  EXPECT_EQ(stream.size, 8);
}

TEST(BufferStream, WriteBehindTheCapacityTouchesNoMemory) {
  uint8_t memory[8] = {};
  BufferStream stream = BufferOver(memory, 4, 0);
  stream.Seek(6, kFromStart);
  const uint8_t byte = 5;
  EXPECT_TRUE(stream.Write(&byte, 1));
  EXPECT_EQ(stream.PutC(5), -1);
  for (uint8_t c : memory) EXPECT_EQ(c, 0);
}

TEST(BufferStream, ReadIsClippedToTheSizeAndStillTrue) {
  uint8_t memory[] = {1, 255, 3, 4};
  BufferStream stream = BufferOver(memory, 0, 3);
  ExpectRead(stream, 5, true, {1, 255, 3});
  EXPECT_EQ(stream.Tell(), 3);
  ExpectRead(stream, 1, true, {});
  EXPECT_EQ(stream.Tell(), 3);
}

TEST(BufferStream, ReadBehindTheSizeStoresNothing) {
  uint8_t memory[8] = {1, 2, 3, 4, 5, 6, 7, 8};
  BufferStream stream = BufferOver(memory, 0, 4);
  stream.Seek(6, kFromStart);
  ExpectRead(stream, 2, true, {});
}

TEST(BufferStream, CloseZeroesTheFieldsAndFreesNothing) {
  uint8_t memory[4] = {1, 2, 3, 4};
  BufferStream stream = BufferOver(memory, 4, 3);
  stream.position = 2;
  EXPECT_TRUE(stream.Close());
  ExpectClosedAndZero(stream);
  EXPECT_EQ(memory[3], 4);
}

TEST(BufferStream, SeekCountsFromStartPositionOrEnd) {
  uint8_t memory[8] = {};
  BufferStream stream = BufferOver(memory, 0, 8);
  ExpectSeek(stream, 5, kFromStart, 5);
  ExpectSeek(stream, -2, kFromPosition, 3);
  ExpectSeek(stream, -1, kFromEnd, 7);
  ExpectSeek(stream, 2, 9, 2);
  ExpectSeek(stream, 4, -3, 4);
}

TEST(BufferStream, SeekToANegativeTargetIsFalseWithoutAMove) {
  uint8_t memory[8] = {};
  BufferStream stream = BufferOver(memory, 0, 8);
  stream.position = 3;
  EXPECT_FALSE(stream.Seek(-1, kFromStart));
  EXPECT_FALSE(stream.Seek(-4, kFromPosition));
  EXPECT_FALSE(stream.Seek(-9, kFromEnd));
  EXPECT_EQ(stream.Tell(), 3);
}

TEST(BufferStream, SeekBeyondTheSizeSucceedsAndReadsAsTheEnd) {
  uint8_t memory[4] = {1, 2, 3, 4};
  BufferStream stream = BufferOver(memory, 0, 4);
  ExpectSeek(stream, 10, kFromStart, 10);
  EXPECT_EQ(stream.GetC(), -1);
}

TEST(BufferStream, GetCGivesTheByteUnsignedAndAdvances) {
  uint8_t memory[] = {0, 255, 128};
  BufferStream stream = BufferOver(memory, 0, 3);
  EXPECT_EQ(Rest(stream), Bytes({0, 255, 128}));
  EXPECT_EQ(stream.Tell(), 3);
}

TEST(BufferStream, PutCWritesOneByteBehindAnotherUpToTheCapacity) {
  uint8_t memory[3] = {9, 9, 9};
  BufferStream stream = BufferOver(memory, 2, 0);
  EXPECT_EQ(stream.PutC(255), 255);
  EXPECT_EQ(stream.size, 1);
  EXPECT_EQ(stream.PutC(-2), 254);
  EXPECT_EQ(stream.size, 2);
  EXPECT_EQ(stream.PutC(1), -1);
  EXPECT_EQ(memory[0], 255);
  EXPECT_EQ(memory[1], 254);
  EXPECT_EQ(memory[2], 9);
}

TEST(FileStream, IsOpenOnlyWithAFile) {
  FileStream closed(nullptr);
  EXPECT_FALSE(closed.IsOpen());
  TemporaryFolder folder;
  FILE* file = std::fopen(folder.Path("a").c_str(), "wb");
  ASSERT_NE(file, nullptr);
  FileStream open(file);
  EXPECT_TRUE(open.IsOpen());
  open.Close();
}

TEST(FileStream, WritesWhatGoesThroughIt) {
  TemporaryFolder folder;
  const std::string path = folder.Path("a");
  FileStream stream(std::fopen(path.c_str(), "wb"));
  ASSERT_TRUE(stream.IsOpen());
  EXPECT_TRUE(stream.Write("abc", 3));
  EXPECT_EQ(stream.PutC(255), 255);
  EXPECT_EQ(stream.Tell(), 4);
  stream.Seek(1, kFromStart);
  EXPECT_EQ(stream.PutC('X'), 'X');
  stream.Seek(0, kFromEnd);
  EXPECT_EQ(stream.PutC(0), 0);
  stream.Close();
  EXPECT_EQ(ReadFile(path), std::string("aXc\xff\0", 5));
}

TEST(FileStream, APositionBehindTwoGigabytesIsNone) {
  TemporaryFolder folder;
  const std::string path = folder.Path("large");
  WriteFile(path, "a");
  std::filesystem::resize_file(path, std::uintmax_t{UINT32_MAX} + 1000);
  FileStream stream(std::fopen(path.c_str(), "rb"));
  ASSERT_TRUE(stream.IsOpen());
  EXPECT_EQ(StreamLength(stream), -1);
  ExpectSeek(stream, INT32_MAX, kFromStart, INT32_MAX);
  EXPECT_EQ(stream.GetC(), 0);
  EXPECT_EQ(stream.Tell(), -1);
  Buffer<uint8_t> bytes;
  int32_t size = 0;
  EXPECT_FALSE(ReadWholeStream(stream, &bytes, &size));
  stream.Seek(INT32_MAX - 10, kFromStart);
  ChunkStream copy;
  EXPECT_FALSE(CopyStream(stream, copy, -1));
  stream.Close();
}

TEST(FileStream, ReadsAndSeeks) {
  TemporaryFolder folder;
  const std::string path = folder.Path("a");
  WriteFile(path, "abc\xff\x01z");
  FileStream stream(std::fopen(path.c_str(), "rb"));
  ASSERT_TRUE(stream.IsOpen());
  char read[5] = {};
  EXPECT_TRUE(stream.Read(read, 5));
  EXPECT_EQ(std::memcmp(read, "abc\xff\x01", 5), 0);
  EXPECT_EQ(stream.GetC(), 'z');
  EXPECT_EQ(stream.GetC(), -1);
  stream.Seek(-3, kFromEnd);
  EXPECT_EQ(stream.Tell(), 3);
  EXPECT_EQ(stream.GetC(), 255);
  stream.Seek(-2, kFromPosition);
  EXPECT_EQ(stream.GetC(), 'c');
  EXPECT_FALSE(stream.Read(read, 5));
  stream.Close();
}

TEST(ByteFields, IntegersAreLittleEndian) {
  ChunkStream stream;
  WriteField(stream, 0x12345678, 4);
  WriteField(stream, 0x12345678, 2);
  WriteField(stream, 0x12345678, 1);
  WriteField(stream, -2, 4);
  stream.Seek(0, kFromStart);
  EXPECT_EQ(Rest(stream), Bytes({0x78, 0x56, 0x34, 0x12, 0x78, 0x56, 0x78, 0xfe, 0xff, 0xff, 0xff}));
}

TEST(ByteFields, ShortFieldsArriveZeroExtended) {
  ChunkStream stream;
  Fill(stream, {0xfe, 0xff, 0xfe, 0xff, 0x78, 0x56, 0x34, 0xf2});
  EXPECT_EQ(ReadField(stream, 1), 0xfeu);
  EXPECT_EQ(ReadField(stream, 1), 0xffu);
  EXPECT_EQ(ReadField(stream, 2), 0xfffeu);
  EXPECT_EQ(ReadField(stream, 4), 0xf2345678u);
}

TEST(ByteFields, SignedFieldsAreSignExtended) {
  ChunkStream stream;
  Fill(stream, {0xfe, 0x7f, 0xff, 0xff, 0x00, 0x80, 0xfd, 0xff, 0xff, 0xff});
  EXPECT_EQ(ReadSignedField(stream, 1), -2);
  EXPECT_EQ(ReadSignedField(stream, 1), 127);
  EXPECT_EQ(ReadSignedField(stream, 2), -1);
  EXPECT_EQ(ReadSignedField(stream, 2), -32768);
  EXPECT_EQ(ReadSignedField(stream, 4), -3);
}

TEST(ByteFields, BytesPastTheEndReadAsZero) {
  ChunkStream stream;
  Fill(stream, {0x34});
  EXPECT_EQ(ReadField(stream, 4), 0x34u);
  EXPECT_EQ(ReadField(stream, 2), 0u);
  EXPECT_EQ(ReadSignedField(stream, 1), 0);
}

void ExpectText(ByteStream& stream, int32_t limit, const char* expected) {
  char text[16] = "xxxxxxxxxxx";
  ReadText(stream, text, limit);
  EXPECT_STREQ(text, expected);
}

TEST(ByteFields, TextEndsWithAZeroByte) {
  ChunkStream stream;
  WriteText(stream, "ab\xff");
  WriteText(stream, "");
  EXPECT_EQ(stream.Size(), 5);
  stream.Seek(0, kFromStart);
  EXPECT_EQ(Rest(stream), Bytes({'a', 'b', 0xff, 0, 0}));
  stream.Seek(0, kFromStart);
  ExpectText(stream, 16, "ab\xff");
  ExpectText(stream, 16, "");
}

TEST(ByteFields, TextWithoutAZeroByteEndsWithTheData) {
  ChunkStream stream;
  Fill(stream, {'a', 'b', 'c'});
  ExpectText(stream, 16, "abc");
}

TEST(ByteFields, TextAtTheLimitLosesItsLastByte) {
  ChunkStream stream;
  Fill(stream, {'a', 'b', 'c', 'd', 'e', 'f', 'g'});
  ExpectText(stream, 4, "abc");
  EXPECT_EQ(stream.Tell(), 4);
}

TEST(ByteFields, TextThatJustFitsIsWhole) {
  ChunkStream stream;
  Fill(stream, {'a', 'b', 'c', 0, 'z'});
  ExpectText(stream, 4, "abc");
  EXPECT_EQ(stream.Tell(), 4);
}

TEST(ByteFields, StreamLengthKeepsThePosition) {
  ChunkStream stream;
  PutSamples(stream, 5000);
  stream.Seek(7, kFromStart);
  EXPECT_EQ(StreamLength(stream), 5000);
  EXPECT_EQ(stream.Tell(), 7);
}

TEST(ByteFields, ReadUpToPassesBytes255AndGivesTheCount) {
  ChunkStream stream;
  Fill(stream, {1, 255, 255, 4});
  std::vector<uint8_t> read(6, 9);
  EXPECT_EQ(ReadUpTo(stream, read.data(), 3), 3);
  EXPECT_EQ(read, (std::vector<uint8_t>{1, 255, 255, 9, 9, 9}));
  EXPECT_EQ(ReadUpTo(stream, read.data(), 6), 1);
  EXPECT_EQ(read[0], 4);
  EXPECT_EQ(ReadUpTo(stream, read.data(), 6), 0);
}

TEST(ByteFields, CopyStreamCopiesACountOrAllTheRest) {
  ChunkStream from;
  PutSamples(from, 6000);
  from.Seek(2, kFromStart);
  ChunkStream to;
  EXPECT_TRUE(CopyStream(from, to, 3));
  EXPECT_EQ(from.Tell(), 5);
  EXPECT_EQ(to.Size(), 3);
  EXPECT_TRUE(CopyStream(from, to, -1));
  to.Seek(0, kFromStart);
  ExpectSamples(to, 2, 6000);
}

TEST(ByteFields, CopyStreamIsFalseWhenTheSourceEndsEarly) {
  ChunkStream from;
  PutSamples(from, 4);
  from.Seek(0, kFromStart);
  ChunkStream to;
  EXPECT_FALSE(CopyStream(from, to, 5));
}

}  // namespace
}  // namespace sorvel
