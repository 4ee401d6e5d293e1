#include "imaging/color_table.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "platform/files.h"
#include "support/test_images.h"

namespace sorvel {
namespace {

using namespace testimages;

const Color kDefaults[kColorCount] = {
    {225, 255, 255}, {0, 0, 0},       {85, 85, 85},    {170, 170, 170}, {255, 255, 255}, {143, 143, 191},
    {173, 173, 217}, {206, 206, 242}, {0, 0, 0},       {85, 85, 85},    {170, 170, 170}, {255, 255, 102},
    {208, 208, 83},  {112, 112, 45},  {64, 64, 26},    {255, 0, 0},     {143, 191, 191}, {173, 217, 217},
    {206, 242, 242}, {143, 191, 143}, {173, 217, 173}, {206, 242, 206}, {191, 143, 143}, {217, 173, 173},
    {242, 206, 206}, {0, 0, 0},
};

Color ColorOf(int32_t index) {
  Color color{-1, -1, -1};
  GetColor(index, &color.red, &color.green, &color.blue);
  return color;
}

void PutDefaults() {
  for (int32_t i = 0; i < kColorCount; ++i) SetColor(i, kDefaults[i].red, kDefaults[i].green, kDefaults[i].blue);
}

void ExpectDefaults() {
  for (int32_t i = 0; i < kColorCount; ++i) EXPECT_EQ(ColorOf(i), kDefaults[i]) << "index " << i;
}

class ColorTableTest : public ::testing::Test {
 protected:
  ~ColorTableTest() override { PutDefaults(); }

  // A file with a byte changed leaves the table as it was.
  void ExpectRejected(Bytes bytes, size_t at, int32_t value) {
    bytes[at] = static_cast<uint8_t>(value);
    EXPECT_FALSE(Load(bytes)) << at << ": " << value;
    ExpectDefaults();
  }

  bool Load(const Bytes& bytes) {
    std::string path = folder_.Path("palette.bmp");
    WriteFile(path, bytes);
    return LoadColors(path.c_str());
  }

  TemporaryFolder folder_;
};

constexpr size_t kHeaderBytes = 54;
constexpr size_t kBitsPerPixelAt = 28;
constexpr size_t kCompressionAt = 30;
constexpr size_t kColorsUsedAt = 46;

Color FileColor(int32_t i) {
  return {i + 1, i + 101, 255 - i};
}

// A bitmap of 4 by 1 pixels whose colour i is FileColor(i).
Bytes BitmapFile(int32_t declared, int32_t entries) {
  Bytes bytes = {
      'B', 'M', 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,  // file head
      40,  0,   0, 0,                                // header size
      4,   0,   0, 0,                                // width
      1,   0,   0, 0,                                // height
      1,   0,                                        // planes
      8,   0,                                        // bits per pixel
      0,   0,   0, 0,                                // compression
      0,   0,   0, 0,                                // image size
      0,   0,   0, 0, 0, 0, 0, 0,                    // resolutions
      0,   0,   0, 0,                                // colours used
      0,   0,   0, 0,                                // important colours
  };
  bytes[kColorsUsedAt] = static_cast<uint8_t>(declared & 255);
  bytes[kColorsUsedAt + 1] = static_cast<uint8_t>(declared >> 8);
  for (int32_t i = 0; i < entries; ++i) {
    Color color = FileColor(i);
    bytes += {static_cast<uint8_t>(color.blue), static_cast<uint8_t>(color.green), static_cast<uint8_t>(color.red), 0};
  }
  bytes += {0, 1, 2, 3};
  return bytes;
}

void ExpectFileColors() {
  for (int32_t i = 0; i < kColorCount; ++i) EXPECT_EQ(ColorOf(i), FileColor(i)) << "index " << i;
}

TEST_F(ColorTableTest, DefaultsGiveEachRoleItsColour) {
  ExpectDefaults();
}

TEST_F(ColorTableTest, EntriesLieAsBlueGreenRedAndZero) {
  EXPECT_EQ(sizeof(ColorEntry), 4u);
  const uint8_t palest[] = {255, 255, 225, 0};
  const uint8_t marker[] = {0, 0, 255, 0};
  EXPECT_EQ(std::memcmp(&ColorTable[0], palest, 4), 0);
  EXPECT_EQ(std::memcmp(&ColorTable[15], marker, 4), 0);
}

TEST_F(ColorTableTest, SetColorWritesOneEntry) {
  SetColor(25, 1, 2, 3);
  EXPECT_EQ(ColorOf(25), (Color{1, 2, 3}));
  EXPECT_EQ(ColorTable[25].blue, 3);
  EXPECT_EQ(ColorTable[25].red, 1);
  EXPECT_EQ(ColorTable[25].reserved, 0);
  SetColor(25, 0, 0, 0);
  ExpectDefaults();
}

TEST_F(ColorTableTest, ReadingOutsideTheTableGivesBlackAndWritingChangesNothing) {
  for (const int32_t index : {26, -1, INT32_MAX, INT32_MIN}) {
    SetColor(index, 1, 2, 3);
    EXPECT_EQ(ColorOf(index), (Color{0, 0, 0}));
  }
  ExpectDefaults();
}

TEST_F(ColorTableTest, MissingFileLeavesTheDefaults) {
  EXPECT_FALSE(LoadColors(folder_.Path("nothing.bmp").c_str()));
  ExpectDefaults();
}

TEST_F(ColorTableTest, TheFirstTwentySixDeclaredColoursAreTaken) {
  for (const int32_t count : {26, 256}) {
    PutDefaults();
    EXPECT_TRUE(Load(BitmapFile(count, count)));
    ExpectFileColors();
  }
}

TEST_F(ColorTableTest, DeclaredColoursCompareUnsigned) {
  Bytes bytes = BitmapFile(0, 26);
  for (size_t i = 0; i < 4; ++i) bytes[kColorsUsedAt + i] = 0xFF;
  EXPECT_TRUE(Load(bytes));
  ExpectFileColors();
}

TEST_F(ColorTableTest, TooFewDeclaredColoursAreRejectedWhole) {
  for (int32_t declared : {0, 1, 16, 25}) ExpectRejected(BitmapFile(declared, 26), kColorsUsedAt, declared);
}

TEST_F(ColorTableTest, OtherDepthsAreRejected) {
  for (int32_t depth : {0, 1, 4, 7, 9, 16, 24, 32}) ExpectRejected(BitmapFile(256, 256), kBitsPerPixelAt, depth);
  ExpectRejected(BitmapFile(256, 256), kBitsPerPixelAt + 1, 1);
}

TEST_F(ColorTableTest, CompressedBitmapsAreRejected) {
  for (size_t i = 0; i < 4; ++i) ExpectRejected(BitmapFile(256, 256), kCompressionAt + i, 1);
}

TEST_F(ColorTableTest, FilesThatDoNotBeginWithBmAreRejected) {
  ExpectRejected(BitmapFile(256, 256), 0, 'C');
  ExpectRejected(BitmapFile(256, 256), 1, 'N');
}

TEST_F(ColorTableTest, NothingElseOfTheHeadersIsLookedAt) {
  Bytes bytes = BitmapFile(256, 256);
  for (size_t i = 2; i < kHeaderBytes; ++i) {
    bool checked = (i >= kBitsPerPixelAt && i < kCompressionAt + 4) || (i >= kColorsUsedAt && i < kColorsUsedAt + 4);
    if (!checked) bytes[i] = static_cast<uint8_t>(0xC3 ^ i);
  }
  EXPECT_TRUE(Load(bytes));
  ExpectFileColors();
}

TEST_F(ColorTableTest, PixelsAreNotNeeded) {
  Bytes bytes = BitmapFile(26, 26);
  bytes.resize(kHeaderBytes + 26 * 4);
  EXPECT_TRUE(Load(bytes));
  ExpectFileColors();
}

TEST_F(ColorTableTest, FileThatEndsInItsHeadersChangesNothing) {
  Bytes bytes = BitmapFile(26, 26);
  for (size_t length = 0; length < kHeaderBytes; ++length) {
    EXPECT_FALSE(Load(Head(bytes, length))) << length;
    ExpectDefaults();
  }
}

TEST_F(ColorTableTest, FileThatEndsInItsColoursGivesThoseThatWereThere) {
  Bytes bytes = BitmapFile(26, 26);
  for (size_t length = kHeaderBytes; length < kHeaderBytes + 26 * 4; ++length) {
    PutDefaults();
    Load(Head(bytes, length));
    size_t whole = (length - kHeaderBytes) / 4;
    for (size_t i = 0; i < whole; ++i) {
      EXPECT_EQ(ColorOf(static_cast<int32_t>(i)), FileColor(static_cast<int32_t>(i))) << length;
    }
  }
}

TEST_F(ColorTableTest, FlippedBitsInTheFileDoNoHarm) {
  Bytes bytes = BitmapFile(26, 26);
  for (size_t at = 0; at < kHeaderBytes; ++at) {
    for (uint32_t bit = 0; bit < 8; ++bit) {
      Bytes damaged = bytes;
      damaged[at] = static_cast<uint8_t>(damaged[at] ^ (1u << bit));
      PutDefaults();
      if (Load(damaged)) continue;
      ExpectDefaults();
    }
  }
}

TEST_F(ColorTableTest, TheTwoBlacksAreIndependent) {
  Bytes bytes = BitmapFile(26, 26);
  for (size_t i = 0; i < 26; ++i) {
    bytes[kHeaderBytes + i * 4] = static_cast<uint8_t>(kDefaults[i].blue);
    bytes[kHeaderBytes + i * 4 + 1] = static_cast<uint8_t>(kDefaults[i].green);
    bytes[kHeaderBytes + i * 4 + 2] = static_cast<uint8_t>(kDefaults[i].red);
  }
  bytes[kHeaderBytes + 8 * 4] = 77;
  EXPECT_TRUE(Load(bytes));
  EXPECT_EQ(ColorOf(8), (Color{0, 0, 77}));
  EXPECT_EQ(ColorOf(1), (Color{0, 0, 0}));
}

TEST_F(ColorTableTest, NullNameMeansColorsBmpBesideTheProgram) {
  char program[4096];
  ASSERT_TRUE(platform::ProgramPath(program, sizeof program));
  std::string path = program;
  path = path.substr(0, path.find_last_of("/\\") + 1) + "Colors.bmp";
  if (platform::PathExists(path.c_str())) GTEST_SKIP() << path << " is in use";
  EXPECT_FALSE(LoadColors(nullptr));
  ExpectDefaults();
  WriteFile(path, BitmapFile(26, 26));
  bool taken = LoadColors(nullptr);
  std::remove(path.c_str());
  EXPECT_TRUE(taken);
  ExpectFileColors();
}

TEST_F(ColorTableTest, PaletteHasTheTableThenBlackThenAGreyRamp) {
  SetColor(3, 9, 8, 7);
  ColorEntry entries[kDrawPaletteSize];
  for (ColorEntry& entry : entries) entry = {0xEE, 0xEE, 0xEE, 0xEE};
  BuildDrawPalette(entries);
  EXPECT_EQ(kDrawPaletteSize, 154);
  for (int32_t i = 0; i < kDrawPaletteSize; ++i) {
    const int32_t grey = i < 38 ? 0 : 255 * (i - 38) / 127;
    const Color expected = i == 3 ? Color{9, 8, 7} : i < 26 ? kDefaults[i] : Color{grey, grey, grey};
    EXPECT_EQ((Color{entries[i].red, entries[i].green, entries[i].blue}), expected) << i;
    EXPECT_EQ(entries[i].reserved, 0);
  }
  EXPECT_EQ(entries[39].red, 2);
  EXPECT_EQ(entries[153].red, 230);
}

}  // namespace
}  // namespace sorvel
