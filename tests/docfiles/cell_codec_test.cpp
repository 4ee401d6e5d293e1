#include "docfiles/cell_codec.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "document/layer.h"
#include "document/load_report.h"
#include "foundation/byte_stream.h"
#include "imaging/packed_image.h"
#include "support/reference_data.h"
#include "support/test_images.h"
#include "support/test_threads.h"

namespace sorvel {
namespace {

using namespace testimages;

Bytes Encode(Layer* layer) {
  OutputBytes output;
  EXPECT_TRUE(CellWriter::Write(layer, &output.stream));
  EXPECT_EQ(output.stream.Tell(), output.stream.size);
  return output.Written();
}

bool Decode(Layer* layer, const Bytes& bytes, LoadReport* report = nullptr, int32_t* end = nullptr) {
  InputBytes input(bytes);
  bool result = CellReader::Read(layer, &input.stream, report);
  if (end != nullptr) *end = input.stream.Tell();
  return result;
}

CellImage* NewCell(Layer* layer) {
  EXPECT_TRUE(layer->AddCell(layer->cells.Count() - 1, 0, nullptr));
  return layer->CellAt(layer->cells.Count() - 1);
}

// Name "A", not following the frame.
Bytes BlockHead(int32_t width, int32_t height, int32_t cells) {
  return Text("A") + Le16(width) + Le16(height) + Bytes{0} + Le16(cells);
}

Bytes CellOf(const Bytes& map, const Bytes& codes, const Bytes& literals) {
  return Le32(static_cast<uint32_t>(codes.size())) + Le32(static_cast<uint32_t>(literals.size())) + map + codes +
         literals;
}

// A cell of 4 by 1 pixels: 1234.
const Bytes kCell1234 = CellOf({0x01}, {0x00}, {0x12, 0x34});

// A layer with one cell of this picture.
struct OneCell {
  explicit OneCell(const std::string& picture)
      : layer(static_cast<int32_t>(picture.find('\n')),
              static_cast<int32_t>(std::count(picture.begin(), picture.end(), '\n')), "A", nullptr, 0),
        cell(NewCell(&layer)) {
    Draw(cell, picture);
  }
  Layer layer;
  CellImage* cell;
};

// The block of such a layer without its head.
Bytes Written(const std::string& picture) {
  OneCell one(picture);
  const Bytes block = Encode(&one.layer);
  const Bytes head = BlockHead(one.layer.width, one.layer.height, 1);
  EXPECT_EQ(Head(block, head.size()), head);
  return From(block, head.size());
}

// The picture of a cell that has to be read.
std::string ReadPicture(int32_t width, int32_t height, const Bytes& cell) {
  Layer layer(0, 0, nullptr, nullptr, 0);
  EXPECT_TRUE(Decode(&layer, BlockHead(width, height, 1) + cell));
  return Picture(*layer.CellAt(0));
}

// A block that has to end the reading.
void ExpectDamaged(const Bytes& block) {
  Layer layer(0, 0, nullptr, nullptr, 0);
  LoadReport report;
  EXPECT_FALSE(Decode(&layer, block, &report));
  EXPECT_TRUE(report.IsDamaged());
}

// The same block by the plain writer.
Bytes PlainBlock(Layer& layer) {
  return reference::WriteLayerBlock(DataOf(layer));
}

// Writing.

TEST(CellWriter, BlankCellOf8By3Takes15Bytes) {
  Layer layer(8, 3, "A", nullptr, 0);
  NewCell(&layer);
  EXPECT_EQ(Encode(&layer), Hex("41 00 08 00 03 00 00 01 00  02 00 00 00 02 00 00 00 01 01 00 10 14 00 00"));
}

TEST(CellWriter, GroupThatDiffersFromTheRowAboveIsALiteral) {
  EXPECT_EQ(Written("1234....\n........\n"), Hex("02 00 00 00 06 00 00 00 01 01 00 10 12 34 00 00 00 00"));
}

TEST(CellWriter, MatchDemandsTheFollowingGroupAsWell) {
  EXPECT_EQ(Written("1111222211113333\n"), Hex("02 00 00 00 08 00 00 00 03 00 00 11 11 22 22 11 11 33 33"));
}

TEST(CellWriter, LastGroupOfARowIsComparedWithTheStartOfTheNextRow) {
  // The right groups are equal in all rows; what follows them isn't.
  EXPECT_EQ(Written("11115555\n22225555\n33335555\n"),
            CellOf(Hex("01 00 00"), {0x00}, Hex("11 11 55 55 22 22 55 55 33 33 55 55")));
}

TEST(CellWriter, BytesBehindTheLastRowCountAsZero) {
  // In row 1 the right group is followed by the end of the pixels, in row 0 by the zeroes that row 1 begins with.
  EXPECT_EQ(Written("11115555\n....5555\n"), CellOf({0x01, 0x01}, {0x00, 0x40}, Hex("11 11 55 55 00 00")));
}

TEST(CellWriter, FirstGroupOfACellIsAlwaysALiteral) {
  Layer layer(4, 1, "A", nullptr, 0);
  NewCell(&layer);
  NewCell(&layer);
  const Bytes cell = CellOf({0x01}, {0x00}, {0x00, 0x00});
  EXPECT_EQ(Encode(&layer), BlockHead(4, 1, 2) + cell + cell);
}

TEST(CellWriter, CodeOfTheRowAboveIsTriedFirst) {
  // The last row equals both the one two above and the one four above, which the row above it was copied from.
  EXPECT_EQ(Written("1111\n2222\n3333\n2222\n1111\n2222\n"),
            CellOf(Hex("01 00 00 01 01 00"), Hex("00 06 09"), Hex("11 11 22 22 33 33")));
}

TEST(CellWriter, WidthOf1LeavesTheHighNibblesZero) {
  EXPECT_EQ(Written(".\n.\n"), Hex("02 00 00 00 02 00 00 00 01 01 00 04 00 00"));
}

TEST(CellWriter, WidthOf65Has9CodeBytesAnd2MapBytesARow) {
  // Row 1 keeps code 1 at the right, so only its first byte is stored.
  const std::string row = std::string(65, '.') + "\n";
  EXPECT_EQ(Written(row + row), Hex("03 00 00 00 02 00 00 00 01 01 01 00 10 01 14 00 00"));
}

TEST(CellWriter, PaddingWithinTheLastGroupIsStored) {
  OneCell one("12345\n");
  one.cell->bits[2] = 0x5A;
  one.cell->bits[3] = 0xBC;
  EXPECT_EQ(Encode(&one.layer), BlockHead(5, 1, 1) + CellOf({0x01}, {0x00}, {0x12, 0x34, 0x5A, 0xBC}));
}

TEST(CellWriter, PaddingBehindTheLastGroupIsNotStoredButCompared) {
  OneCell one("1234\n1234\n");
  one.cell->bits[6] = 0xFF;
  const Bytes written = BlockHead(4, 2, 1) + CellOf({0x01, 0x00}, {0x00}, {0x12, 0x34, 0x12, 0x34});
  EXPECT_EQ(Encode(&one.layer), written);
  Layer loaded(0, 0, nullptr, nullptr, 0);
  ASSERT_TRUE(Decode(&loaded, written));
  EXPECT_EQ(Encode(&loaded), BlockHead(4, 2, 1) + CellOf({0x01, 0x01}, {0x00, 0x04}, {0x12, 0x34}));
}

TEST(CellWriter, HeadHoldsNameSizesFollowFlagAndCount) {
  Layer layer(0x1234, 0x0102, "\x83\x8C.x", nullptr, 1);
  EXPECT_EQ(Encode(&layer), Text("\x83\x8C.x") + Hex("34 12 02 01 01 00 00"));
}

TEST(CellWriter, OnlyTheLowBytesOfTheFieldsAreWritten) {
  Layer wide(0x10008, 3, "A", nullptr, 0x1FE);
  EXPECT_EQ(Encode(&wide), Hex("41 00 08 00 03 00 FE 00 00"));
  Layer high(8, 0x20003, "A", nullptr, 0);
  EXPECT_EQ(Encode(&high), Hex("41 00 08 00 03 00 00 00 00"));
}

TEST(CellWriter, NullNameIsWrittenAsUntitledAndAnEmptyOneAsItIs) {
  Layer layer(0, 0, nullptr, nullptr, 0);
  EXPECT_EQ(Encode(&layer), Text("UNTITLED") + Bytes(7, 0));
  layer.SetName("");
  EXPECT_EQ(Encode(&layer), Bytes(8, 0));
}

TEST(CellWriter, CellsWithoutPixelsTakeEightZeroBytesEach) {
  Layer layer(0, 0, "A", nullptr, 0);
  NewCell(&layer);
  NewCell(&layer);
  EXPECT_EQ(Encode(&layer), BlockHead(0, 0, 2) + Bytes(16, 0));
}

TEST(CellWriter, BlockBeginsAtThePositionOfTheStream) {
  OneCell one("12345678\n12345678\n87654321\n");
  Bytes block = Encode(&one.layer);
  OutputBytes output;
  output.stream.PutC(0x77);
  EXPECT_TRUE(CellWriter::Write(&one.layer, &output.stream));
  EXPECT_TRUE(CellWriter::Write(&one.layer, &output.stream));
  EXPECT_EQ(output.Written(), Bytes{0x77} + block + block);
}

TEST(CellWriter, AllStreamsReceiveTheSameBytes) {
  Layer layer(37, 21, "A", nullptr, 0);
  Random random(41);
  for (int32_t i = 0; i < 3; ++i) Scatter(NewCell(&layer), random, 15, 3);
  Bytes block = Encode(&layer);
  ChunkStream chunks(64);
  EXPECT_TRUE(CellWriter::Write(&layer, &chunks));
  EXPECT_EQ(chunks.Size(), static_cast<int32_t>(block.size()));
  chunks.Seek(0, kFromStart);
  for (uint8_t byte : block) ASSERT_EQ(chunks.GetC(), byte);
  TemporaryFolder folder;
  FileStream file(std::fopen(folder.Path("block").c_str(), "wb"));
  ASSERT_TRUE(file.IsOpen());
  EXPECT_TRUE(CellWriter::Write(&layer, &file));
  file.Close();
  EXPECT_EQ(ReadBytes(folder.Path("block")), block);
}

TEST(CellWriter, AgreesWithThePlainWriter) {
  Random random(42);
  for (int32_t round = 0; round < 1500; ++round) {
    Layer layer(random.Between(1, 80), random.Between(1, 30), random.OneIn(2) ? "name" : nullptr, nullptr,
                random.Word() & 1);
    int32_t cells = random.Between(0, 3);
    for (int32_t i = 0; i < cells; ++i) {
      CellImage* cell = NewCell(&layer);
      int32_t top = random.Between(0, 3);
      switch (random.Between(0, 3)) {
        case 0:  // flat, with padding of its own
          cell->Fill(top);
          break;
        case 1: {  // every byte, padding included
          int32_t sparsity = random.Between(1, 12);
          for (int32_t at = 0; at < cell->ByteCount(); ++at) {
            if (random.OneIn(sparsity)) cell->bits[at] = static_cast<uint8_t>(random.Between(0, top) * 17);
          }
          break;
        }
        case 2:
          Scatter(cell, random, top, random.Between(1, 60));
          break;
        default: {  // repeated pieces, so that far codes find something
          for (int32_t at = 0; at < cell->ByteCount(); ++at) {
            int32_t from = at - random.Between(1, 20) * 2;
            cell->bits[at] = from < 0 || random.OneIn(8) ? random.Byte() : cell->bits[from];
            if (at >= cell->pitch * 4 && !random.OneIn(6)) cell->bits[at] = cell->bits[at - cell->pitch * 4];
          }
        }
      }
    }
    Bytes expected = PlainBlock(layer);
    Bytes written = Encode(&layer);
    ASSERT_EQ(written, expected) << round << ": " << layer.width << "x" << layer.height;
    Layer loaded(3, 3, "old", nullptr, 0);
    int32_t end = 0;
    LoadReport report;
    ASSERT_TRUE(Decode(&loaded, written + Bytes{1, 2, 3}, &report, &end)) << report.problem;
    EXPECT_FALSE(report.IsDamaged()) << report.problem;
    ASSERT_EQ(end, static_cast<int32_t>(written.size()));
    ASSERT_EQ(loaded.cells.Count(), cells);
    for (int32_t i = 0; i < cells; ++i) {
      CellImage* cell = layer.CellAt(i);
      CellImage* copy = loaded.CellAt(i);
      ASSERT_EQ(Picture(*copy), Picture(*cell)) << round;
      for (int32_t y = 0; y < layer.height; ++y) {
        for (int32_t x = 0; x < layer.width; x += 4) {
          ASSERT_EQ(copy->GetRaw(x, y) & 0xFFFF, cell->GetRaw(x, y) & 0xFFFF) << x << ", " << y;
        }
        for (int32_t at = (layer.width + 3) / 4 * 2; at < copy->pitch; ++at) {
          ASSERT_EQ(copy->bits[y * copy->pitch + at], 0);
        }
      }
    }
    // What was loaded is written from its own memory.
    ASSERT_EQ(Encode(&loaded), PlainBlock(loaded)) << round;
  }
}

TEST(CellWriter, AgreesWithThePlainWriterOnLargeCells) {
  Random random(43);
  for (int32_t round = 0; round < 6; ++round) {
    Layer layer(random.Between(200, 700), random.Between(100, 200), "big", nullptr, 0);
    CellImage* cell = NewCell(&layer);
    Scatter(cell, random, 15, random.OneIn(2) ? 1 : 200);
    Bytes written = Encode(&layer);
    ASSERT_EQ(written, PlainBlock(layer));
    Layer loaded(0, 0, nullptr, nullptr, 0);
    ASSERT_TRUE(Decode(&loaded, written));
    ASSERT_EQ(Picture(*loaded.CellAt(0)), Picture(*cell));
  }
}

TEST(CellReader, CellsOfALargeLayerLiveOnWithoutTheOthers) {
  Layer layer(601, 500, "A", nullptr, 0);
  for (int32_t i = 0; i < 30; ++i) NewCell(&layer)->FillRect(i * 20, i * 16, 15, 30, 1 + i % 8);
  const Bytes block = Encode(&layer);
  Layer read(0, 0, nullptr, nullptr, 0);
  ASSERT_TRUE(Decode(&read, block));
  EXPECT_EQ(Encode(&read), block);
  for (int32_t i = 0; i < 29; ++i) ASSERT_TRUE(read.DeleteCell(i % 2 == 0 ? 0 : read.cells.Count() - 1));
  // The fifteenth is left.
  ASSERT_EQ(read.cells.Count(), 1);
  CellImage* left = read.CellAt(0);
  EXPECT_TRUE(std::equal(left->bits, left->bits + left->ByteCount(), layer.CellAt(15)->bits));
  EXPECT_TRUE(read.Resize(700, 10, 0));
}

// Reading.

TEST(CellReader, ReplacesEverythingOfTheLayer) {
  Layer layer(9, 9, "old", nullptr, 0);
  NewCell(&layer);
  NewCell(&layer);
  Bytes bytes = BlockHead(4, 1, 1) + kCell1234;
  bytes[6] = 1;
  EXPECT_TRUE(Decode(&layer, bytes));
  EXPECT_STREQ(layer.name, "A");
  EXPECT_EQ(layer.width, 4);
  EXPECT_EQ(layer.height, 1);
  EXPECT_EQ(layer.followFrame, 1u);
  ASSERT_EQ(layer.cells.Count(), 1);
  EXPECT_EQ(Picture(*layer.CellAt(0)), "1234\n");
}

TEST(CellReader, SizesAreUnsigned) {
  Layer layer(0, 0, nullptr, nullptr, 0);
  EXPECT_TRUE(Decode(&layer, {'A', 0, 0xFF, 0xFF, 0x00, 0x80, 0xFF, 0x00, 0x00}));
  EXPECT_EQ(layer.width, 65535);
  EXPECT_EQ(layer.height, 32768);
  EXPECT_EQ(layer.followFrame, 255u);
  EXPECT_EQ(layer.cells.Count(), 0);
}

TEST(CellReader, NullNameComesBackAsUntitled) {
  Layer layer(4, 2, nullptr, nullptr, 0);
  NewCell(&layer);
  Layer loaded(0, 0, "x", nullptr, 0);
  EXPECT_TRUE(Decode(&loaded, Encode(&layer)));
  EXPECT_STREQ(loaded.name, "UNTITLED");
}

TEST(CellReader, EmptyNameStaysAnEmptyText) {
  Layer loaded(0, 0, "x", nullptr, 0);
  EXPECT_TRUE(Decode(&loaded, {0, 4, 0, 1, 0, 0, 0, 0}));
  ASSERT_NE(loaded.name, nullptr);
  EXPECT_STREQ(loaded.name, "");
}

TEST(CellReader, NameOf255BytesIsReadWhole) {
  Layer loaded(0, 0, nullptr, nullptr, 0);
  std::string name(255, 'n');
  EXPECT_TRUE(Decode(&loaded, Text(name) + Bytes{4, 0, 1, 0, 0, 0, 0}));
  EXPECT_EQ(loaded.name, name);
  EXPECT_EQ(loaded.width, 4);
}

TEST(CellReader, NameWithoutAnEndIsCutAndReadingGoesOnBehindIts256thByte) {
  Layer loaded(0, 0, nullptr, nullptr, 0);
  Bytes bytes(256, 'n');
  EXPECT_TRUE(Decode(&loaded, bytes + Bytes{0x04, 0x01, 0x06, 0x02, 0, 0, 0}));
  EXPECT_EQ(loaded.name, std::string(255, 'n'));
  EXPECT_EQ(loaded.width, 0x104);
  EXPECT_EQ(loaded.height, 0x206);
}

TEST(CellReader, CellsTakeTheClassOfThePrototypeAndNoneMeansPacked) {
  Layer plain(0, 0, nullptr, nullptr, 0);
  Bytes bytes = BlockHead(4, 1, 1) + kCell1234;
  EXPECT_TRUE(Decode(&plain, bytes));
  EXPECT_EQ(plain.CellAt(0)->colors, 16);
  PackedImage prototype;
  prototype.Resize(99, 99, 5);
  Layer layer(0, 0, nullptr, &prototype, 0);
  EXPECT_TRUE(Decode(&layer, bytes));
  EXPECT_EQ(layer.CellAt(0)->colors, 16);
  EXPECT_EQ(Picture(*layer.CellAt(0)), "1234\n");
  EXPECT_EQ(layer.prototype, &prototype);
}

TEST(CellReader, EachCodeCopiesFromItsPlace) {
  const int32_t codeX[16] = {0, -4, -8, -16, 0, -4, 0, -4, -8, 0, -4, -8, 0, -4, -8, 0};
  const int32_t codeY[16] = {0, 0, 0, 0, -1, -1, -2, -2, -2, -4, -4, -4, -8, -8, -8, -16};
  // All groups but the last of the last row are literals, no two of them equal.
  for (int32_t code = 1; code < 16; ++code) {
    Bytes map(17, 0x00);
    map[0] = 0x07;
    map[16] = 0x04;
    Bytes literals;
    for (int32_t i = 0; i < 17 * 5 - 1; ++i) literals += {static_cast<uint8_t>(i), static_cast<uint8_t>(0xA0 + i % 7)};
    Layer layer(0, 0, nullptr, nullptr, 0);
    ASSERT_TRUE(Decode(&layer, BlockHead(20, 17, 1) + CellOf(map, {0, 0, 0, static_cast<uint8_t>(code)}, literals)));
    const auto source = static_cast<size_t>((16 + codeY[code]) * 5 + (16 + codeX[code]) / 4) * 2;
    CellImage* cell = layer.CellAt(0);
    const uint8_t* copied = cell->bits + 16 * cell->pitch + 8;
    EXPECT_EQ(Bytes(copied, copied + 2), Part(literals, source, 2)) << code;
    EXPECT_EQ(Bytes(cell->bits, cell->bits + 3), Hex("00 A0 01"));
  }
}

TEST(CellReader, EvenGroupsHaveTheLowNibbleOfTheirCodeByte) {
  // Left group: a literal; right group: a copy of it.
  EXPECT_EQ(ReadPicture(8, 1, CellOf({0x01}, {0x10}, {0x12, 0x34})), "12341234\n");
}

TEST(CellReader, CodesThatAreNotStoredAreThoseOfTheRowAbove) {
  // Row 1 has no codes of its own: again a literal and its copy.
  EXPECT_EQ(ReadPicture(8, 2, CellOf({0x01, 0x00}, {0x10}, {0x12, 0x34, 0x56, 0x78})), "12341234\n56785678\n");
}

TEST(CellReader, CodesAreAllOnesAheadOfTheFirstRowOfEachCell) {
  Layer layer(0, 0, nullptr, nullptr, 0);
  // 24 wide: three code bytes, of which only the first is stored.
  Bytes cell = CellOf({0x01}, {0x10}, {0x12, 0x34});
  ASSERT_TRUE(Decode(&layer, BlockHead(24, 1, 2) + cell + cell));
  EXPECT_EQ(Picture(*layer.CellAt(0)), "123412341234123412341234\n");
  EXPECT_EQ(Picture(*layer.CellAt(1)), "123412341234123412341234\n");
}

TEST(CellReader, AnyValidCodeDecodes) {
  // The writer would choose codes 1 and 4 here.
  EXPECT_EQ(ReadPicture(12, 2, CellOf({0x03, 0x03}, Hex("10 02 54 00"), Hex("77 77 77 77"))),
            "777777777777\n777777777777\n");
}

TEST(CellReader, HighNibbleBehindAnOddLastGroupIsIgnored) {
  EXPECT_EQ(ReadPicture(4, 2, CellOf({0x01, 0x01}, {0xF0, 0xE4}, {0x12, 0x34})), "1234\n1234\n");
}

TEST(CellReader, LiteralsMayHoldEveryByte) {
  EXPECT_EQ(ReadPicture(8, 1, CellOf({0x01}, {0x00}, Hex("FF FF FF 12"))), "ffffff12\n");
}

TEST(CellReader, BlocksFollowEachOtherWithoutAGap) {
  Bytes first = BlockHead(4, 1, 1) + kCell1234;
  Bytes second = BlockHead(4, 1, 1) + CellOf({0x01}, {0x00}, {0x56, 0x78});
  InputBytes input(first + second + Bytes{0x99});
  Layer a(0, 0, nullptr, nullptr, 0);
  Layer b(0, 0, nullptr, nullptr, 0);
  EXPECT_TRUE(CellReader::Read(&a, &input.stream));
  EXPECT_TRUE(CellReader::Read(&b, &input.stream));
  EXPECT_EQ(Picture(*a.CellAt(0)), "1234\n");
  EXPECT_EQ(Picture(*b.CellAt(0)), "5678\n");
  EXPECT_EQ(input.stream.GetC(), 0x99);
}

// Damage.

TEST(CellReader, LiteralLengthThatIsTooSmallOrTooBigEndsTheReadAtThatCell) {
  for (int32_t length : {0, 1, 3, 4, 6}) {
    Bytes good = CellOf({0x01}, {0x00}, {0x12, 0x34});
    Bytes bad = good;
    bad[4] = static_cast<uint8_t>(length);
    Layer layer(0, 0, nullptr, nullptr, 0);
    LoadReport report;
    EXPECT_FALSE(Decode(&layer, BlockHead(4, 1, 3) + good + bad + good, &report)) << length;
    EXPECT_TRUE(report.IsDamaged());
    ASSERT_EQ(layer.cells.Count(), 2);
    EXPECT_EQ(Picture(*layer.CellAt(0)), "1234\n");
    EXPECT_EQ(layer.width, 4);
    EXPECT_STREQ(layer.name, "A");
  }
}

TEST(CellReader, CodeLengthThatReachesIntoTheLiteralsOfTheLastCellGivesFalse) {
  Bytes bytes = BlockHead(4, 1, 1) + kCell1234;
  bytes[9] = 2;
  ExpectDamaged(bytes);
}

TEST(CellReader, ReportIsOptionalAndQuietForAGoodBlock) {
  Bytes bytes = BlockHead(4, 1, 1) + kCell1234;
  Layer layer(0, 0, nullptr, nullptr, 0);
  LoadReport report;
  EXPECT_TRUE(Decode(&layer, bytes, &report));
  EXPECT_FALSE(report.IsDamaged());
  bytes[13] = 9;
  EXPECT_FALSE(Decode(&layer, bytes));
}

TEST(CellReader, CellThatTheStreamCanNotHoldEndsTheRead) {
  ExpectDamaged(BlockHead(65535, 65535, 1) + Bytes(40, 0));
  ExpectDamaged(BlockHead(2000, 2000, 65535) + Bytes(40, 0));
}

TEST(CellReader, LargeBlankCellIsNotMistakenForDamage) {
  Layer layer(4000, 3000, "wide", nullptr, 0);
  NewCell(&layer);
  Bytes bytes = Encode(&layer);
  EXPECT_LT(bytes.size(), 1u << 18);
  Layer loaded(0, 0, nullptr, nullptr, 0);
  LoadReport report;
  EXPECT_TRUE(Decode(&loaded, bytes, &report));
  EXPECT_FALSE(report.IsDamaged()) << report.problem;
  EXPECT_EQ(loaded.cells.Count(), 1);
}

Bytes SampleBlock() {
  Layer layer(21, 6, "sample", nullptr, 1);
  Random random(44);
  for (int32_t i = 0; i < 3; ++i) Scatter(NewCell(&layer), random, 3, 2 + i * 4);
  return Encode(&layer);
}

TEST(CellReader, EveryTruncationIsReported) {
  Bytes bytes = SampleBlock();
  for (size_t length = 0; length < bytes.size(); ++length) {
    Layer layer(0, 0, nullptr, nullptr, 0);
    LoadReport report;
    Decode(&layer, Head(bytes, length), &report);
    EXPECT_TRUE(report.IsDamaged()) << length;
    EXPECT_LE(layer.cells.Count(), 3) << length;
  }
}

TEST(CellReader, EveryFlippedBitIsSurvived) {
  int32_t refused = 0;
  ForEachFlippedBit(SampleBlock(), [&refused](const Bytes& damaged, size_t at) {
    Layer layer(0, 0, nullptr, nullptr, 0);
    LoadReport report;
    if (!Decode(&layer, damaged, &report)) {
      EXPECT_TRUE(report.IsDamaged()) << at;
      ++refused;
    }
    for (int32_t i = 0; i < layer.cells.Count(); ++i) {
      EXPECT_EQ(layer.CellAt(i)->width, layer.width);
      EXPECT_EQ(layer.CellAt(i)->height, layer.height);
    }
  });
  EXPECT_GT(refused, 0);
}

TEST(CellReader, LargestNumbersAnywhereAreSurvived) {
  ForEachLargestNumber(SampleBlock(), 0, [](const Bytes& damaged, size_t at) {
    Layer layer(0, 0, nullptr, nullptr, 0);
    LoadReport report;
    EXPECT_TRUE(Decode(&layer, damaged, &report) || report.IsDamaged()) << at;
  });
}

TEST(CellReader, LengthsOfFourBytesOfFFEndTheRead) {
  for (size_t field : {9u, 13u}) {
    Bytes bytes = BlockHead(4, 1, 1) + kCell1234;
    for (size_t i = 0; i < 4; ++i) bytes[field + i] = 0xFF;
    ExpectDamaged(bytes);
  }
}

TEST(CellReader, RandomBytesAreSurvived) {
  Random random(45);
  for (int32_t round = 0; round < 3000; ++round) {
    Bytes bytes = BlockHead(random.Between(0, 70), random.Between(0, 20), random.Between(0, 4));
    int32_t length = random.Between(0, 300);
    for (int32_t i = 0; i < length; ++i) bytes.push_back(random.OneIn(2) ? 0 : random.Byte());
    Layer layer(0, 0, nullptr, nullptr, 0);
    LoadReport report;
    if (!Decode(&layer, bytes, &report)) {
      EXPECT_TRUE(report.IsDamaged());
    }
    EXPECT_LE(layer.cells.Count(), 4);
  }
}

// One cell of 4 by 18 pixels: rows 0 to 2 are literals, and rows 3 to 16 copies of the row above. The map asks for a
// code byte in row 17 as well, and the code bytes end before it.
Bytes BlockWithoutItsLastCode() {
  Bytes map(18, 0);
  map[0] = map[3] = map[17] = 1;
  return BlockHead(4, 18, 1) + CellOf(map, {0x00, 0x04}, Hex("12 34 56 78 9A BC"));
}

// A read behind the end of a memory stream stores the byte FF, so the code is 15: the group 16 rows above.
TEST(CellReader, CodeBehindTheEndOfTheCodeBytesIs15) {
  InputBytes input(BlockWithoutItsLastCode());
  Layer layer(0, 0, nullptr, nullptr, 0);
  EXPECT_TRUE(CellReader::Read(&layer, &input.stream));
  ASSERT_EQ(layer.cells.Count(), 1);
  std::string expected = "1234\n5678\n";
  for (int32_t y = 2; y < 17; ++y) expected += "9abc\n";
  expected += "5678\n";
  EXPECT_EQ(Picture(*layer.CellAt(0)), expected);
  EXPECT_EQ(input.stream.GetC(), -1);
}

// Threads.

// What comes of a block, with all that its reader tells.
std::string Outcome(const Bytes& block, int32_t threadCount) {
  const testing_support::Threads threads(threadCount);
  Layer layer(0, 0, nullptr, nullptr, 0);
  LoadReport report;
  int32_t end = 0;
  std::string outcome = Decode(&layer, block, &report, &end) ? "whole" : "refused";
  outcome += std::string(" ") + report.problem + " at " + std::to_string(end);
  outcome += " cursor " + std::to_string(layer.cells.CursorIndex()) + "\n";
  for (int32_t i = 0; i < layer.cells.Count(); ++i) outcome += Picture(*layer.CellAt(i)) + "\n";
  return outcome;
}

void ExpectSameOutcome(const Bytes& block) {
  const std::string alone = Outcome(block, 1);
  for (const int32_t threads : {2, 5}) EXPECT_EQ(Outcome(block, threads), alone);
}

Bytes BlockOfCells(Random& random, int32_t cells) {
  Layer layer(random.Between(1, 40), random.Between(1, 20), "A", nullptr, 0);
  for (int32_t i = 0; i < cells; ++i) Scatter(NewCell(&layer), random, 3, random.Between(1, 12));
  Bytes alone;
  for (const int32_t count : testing_support::kThreadCounts) {
    const testing_support::Threads threads(count);
    if (count == 1) alone = Encode(&layer);
    EXPECT_EQ(Encode(&layer), alone);
  }
  return alone;
}

TEST(CellThreads, AnyNumberOfThemGivesTheSameBytesAndCells) {
  Random random(46);
  for (int32_t round = 0; round < 40; ++round) ExpectSameOutcome(BlockOfCells(random, random.Between(0, 30)));
}

TEST(CellThreads, AnyNumberOfThemGivesTheSameOfDamagedBlocks) {
  Random random(47);
  for (int32_t round = 0; round < 300; ++round) {
    Bytes block = BlockOfCells(random, random.Between(2, 12));
    const auto anywhere = [&] {
      return static_cast<size_t>(random.Between(0, static_cast<int32_t>(block.size()) - 1));
    };
    if (random.OneIn(3)) block.resize(anywhere());
    for (int32_t i = random.Between(0, 2); i > 0 && !block.empty(); --i) {
      block[anywhere()] = random.OneIn(3) ? uint8_t{0xFF} : random.Byte();
    }
    ExpectSameOutcome(block);
  }
}

}  // namespace
}  // namespace sorvel
