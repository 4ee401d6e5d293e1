// The codes of cells and streams by vectors, against a plain writer and against the plain way of reading, on pictures
// of every width in memory that ends where they end.

#include "docfiles/code_rows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "animation/stream_decoder.h"
#include "docfiles/cell_codec.h"
#include "document/layer.h"
#include "document/load_report.h"
#include "foundation/vectors.h"
#include "imaging/nibble_bitmap.h"
#include "support/test_streams.h"

namespace sorvel {
namespace {

using namespace testbytes;

struct Written {
  Bytes map;
  Bytes codes;
  Bytes literals;
  bool operator==(const Written&) const = default;
};

class CodeRows : public ::testing::Test {
 protected:
  void TearDown() override { gMayUseWideVectors = true; }

  int32_t Number(int32_t lowest, int32_t highest) {
    return std::uniform_int_distribution<int32_t>(lowest, highest)(engine);
  }
  bool Chance(int32_t percent) { return Number(1, 100) <= percent; }

  Bytes Random(int32_t count, int32_t percentOfZeros) {
    Bytes bytes(static_cast<size_t>(count));
    for (uint8_t& byte : bytes) byte = Chance(percentOfZeros) ? uint8_t{0} : static_cast<uint8_t>(Number(0, 255));
    return bytes;
  }

  // What reads as a picture: enough codes and literals for it, or not. Some codes are more frequent than others.
  Written Sections(int32_t width, int32_t height, int32_t literalBytes) {
    Written parts;
    parts.map = Random(CodeMapRowBytes(width) * height, Number(0, 90));
    const int32_t wanted = CountCodes(parts.map.data(), width, height);
    const int32_t rare = Chance(50) ? Number(0, 30) : 100;
    const auto code = [&] { return Chance(rare) ? Number(0, 15) : "\x1\x1\x4\x5\x6\x7\xF\xF"[Number(0, 7)]; };
    parts.codes.resize(static_cast<size_t>(Chance(80) ? wanted : Number(0, wanted + 9)));
    for (uint8_t& byte : parts.codes) byte = static_cast<uint8_t>(code() | code() << 4);
    const int32_t most = UnitsOf(width) * height * literalBytes;
    parts.literals = Random(Chance(70) ? most : Number(0, most), 0);
    return parts;
  }

  std::mt19937 engine{1};
};

// Writing.

constexpr uint8_t kOrder[kUnitCodes] = {1, 4, 5, 6, 15, 7, 9, 10, 2, 8, 11, 12, 13, 14, 3, 0};

// Rows of units with some units to their left, rows above, and all of it once more as the picture before.
struct UnitPicture {
  int32_t count;
  int32_t height;
  int32_t left;
  int32_t above;
  bool isFirst;
  bool withNext;
  int32_t pitch;
  ptrdiff_t toBefore;
  std::vector<uint8_t> memory;

  UnitRow Row(int32_t y) const {
    UnitRow row = {.units = memory.data() + (above + y) * pitch + 2 * left,
                   .count = count,
                   .offsets = {},
                   .unitsToTheLeft = left,
                   .withNext = withNext,
                   .memory = memory.data(),
                   .memoryEnd = memory.data() + memory.size()};
    for (int32_t code = 1; code < kUnitCodes - 1; ++code) {
      const UnitOffset& offset = kUnitOffsets[code];
      row.offsets[static_cast<size_t>(code)] = above + y + offset.dy >= 0 ? offset.dy * pitch + offset.dx / 2 : 0;
    }
    row.offsets[kUnitCodes - 1] = isFirst ? 0 : toBefore;
    return row;
  }
};

Written WritePlainly(const UnitPicture& picture, int32_t literalBytes) {
  Written out;
  std::vector<int32_t> above(static_cast<size_t>(CodeRowBytes(picture.count * 4)) * 2, 1);
  for (int32_t y = 0; y < picture.height; ++y) {
    const UnitRow row = picture.Row(y);
    std::vector<int32_t> codes(above.size(), 0);
    for (int32_t k = 0; k < picture.count; ++k) {
      const uint8_t* unit = row.units + 2 * k;
      const auto fits = [&](int32_t code) {
        const ptrdiff_t offset = row.offsets[static_cast<size_t>(code)];
        return code != 0 && offset != 0 && k + picture.left >= -kUnitOffsets[code].dx / 4 * (code < 15 ? 1 : 0) &&
               std::equal(unit, unit + (picture.withNext ? 4 : 2), unit + offset);
      };
      int32_t& code = codes[static_cast<size_t>(k)];
      code = above[static_cast<size_t>(k)];
      if (!fits(code)) code = *std::find_if(kOrder, kOrder + 15, fits);
      if (code != 0) continue;
      if (literalBytes == 2) {
        out.literals.insert(out.literals.end(), unit, unit + 2);
      } else {
        out.literals.push_back(
            static_cast<uint8_t>((unit[0] & 3) | unit[0] >> 4 << 2 | (unit[1] & 3) << 4 | unit[1] >> 4 << 6));
      }
    }
    const size_t first = out.map.size();
    out.map.resize(first + static_cast<size_t>(CodeMapRowBytes(picture.count * 4)), 0);
    for (size_t i = 0; i < codes.size() / 2; ++i) {
      if (codes[2 * i] == above[2 * i] && codes[2 * i + 1] == above[2 * i + 1]) continue;
      out.map[first + i / 8] = static_cast<uint8_t>(out.map[first + i / 8] | 1 << i % 8);
      out.codes.push_back(static_cast<uint8_t>(codes[2 * i] | codes[2 * i + 1] << 4));
    }
    above = codes;
  }
  return out;
}

Written Write(CodeRowWriter* writer, const UnitPicture& picture, int32_t literalBytes) {
  writer->Begin(picture.count * 4, picture.height, literalBytes);
  for (int32_t y = 0; y < picture.height; ++y) writer->PutRow(picture.Row(y));
  return {Bytes(writer->Map(), writer->Map() + writer->MapSize()),
          Bytes(writer->Codes(), writer->Codes() + writer->CodeSize()),
          Bytes(writer->Literals(), writer->Literals() + writer->LiteralSize())};
}

TEST_F(CodeRows, VectorsWriteWhatThePlainWayWrites) {
  for (int32_t round = 0; round < 400; ++round) {
    UnitPicture picture;
    picture.count = Chance(50) ? Number(1, 40) : Number(1, 75);
    picture.height = Number(1, 24);
    picture.left = Number(0, 4);
    picture.above = Chance(50) ? 0 : Number(0, 16);
    picture.isFirst = Chance(30);
    picture.withNext = Chance(50);
    picture.pitch = 2 * (picture.left + picture.count + Number(0, 2));
    const int32_t rows = picture.above + picture.height;
    const int32_t spare = Chance(50) ? 2 : Number(2, 70);
    picture.toBefore = picture.pitch * rows + spare;
    picture.memory.resize(static_cast<size_t>(2 * picture.toBefore), 0);
    // Two bits in each half byte, so that both kinds of literals hold them. Most units are like another one.
    const int32_t alike = Chance(70) ? Number(90, 100) : Number(0, 100);
    for (size_t at = 0; at + 2 <= picture.memory.size(); at += 2) {
      const UnitOffset& offset = kUnitOffsets[Number(1, 14)];
      ptrdiff_t from = static_cast<ptrdiff_t>(at) + offset.dy * picture.pitch + offset.dx / 2;
      if (Chance(30)) from = static_cast<ptrdiff_t>(at) - picture.toBefore;
      const bool copies = from >= 0 && Chance(alike);
      for (size_t i = 0; i < 2; ++i) {
        picture.memory[at + i] = copies ? picture.memory[static_cast<size_t>(from) + i]
                                        : static_cast<uint8_t>(Chance(50) ? 0x11 : Number(0, 255) & 0x33);
      }
    }
    const int32_t literalBytes = Number(1, 2);
    const Written expected = WritePlainly(picture, literalBytes);
    for (const bool wide : {true, false}) {
      gMayUseWideVectors = wide;
      CodeRowWriter writer{CodeSearch(kOrder)};
      ASSERT_TRUE(writer.Allocate(picture.count * 4, picture.height));
      ASSERT_EQ(Write(&writer, picture, literalBytes), expected) << "round " << round << (wide ? " wide" : " narrow");
    }
  }
}

TEST_F(CodeRows, CodesOfAMapAreCountedWithoutTheBitsBehindARow) {
  for (int32_t width = 1; width <= 300; ++width) {
    const int32_t rows = Number(0, 4);
    const Bytes map = Random(CodeMapRowBytes(width) * rows, 20);
    int32_t expected = 0;
    for (int32_t y = 0; y < rows; ++y) {
      for (int32_t i = 0; i < CodeRowBytes(width); ++i) {
        expected += map[static_cast<size_t>(y * CodeMapRowBytes(width) + i / 8)] >> i % 8 & 1;
      }
    }
    const std::unique_ptr<uint8_t[]> exact(new uint8_t[map.size()]);
    std::copy(map.begin(), map.end(), exact.get());
    for (const bool wide : {true, false}) {
      gMayUseWideVectors = wide;
      ASSERT_EQ(CountCodes(exact.get(), width, rows), expected) << width;
    }
  }
}

// Reading. Any codes make a picture, and few files that somebody has changed have enough of them.

TEST_F(CodeRows, VectorsReadTheSameCells) {
  for (int32_t round = 0; round < 400; ++round) {
    const int32_t width = Number(1, 300);
    const int32_t height = Number(1, 40);
    Bytes block = Text("A") + Le16(width) + Le16(height) + Bytes{0} + Le16(2);
    for (int32_t cell = 0; cell < 2; ++cell) {
      const Written parts = Sections(width, height, 2);
      block = block + Le32(static_cast<uint32_t>(parts.codes.size())) +
              Le32(static_cast<uint32_t>(parts.literals.size())) + parts.map + parts.codes + parts.literals;
    }
    if (Chance(10)) block.resize(static_cast<size_t>(Number(0, static_cast<int32_t>(block.size()))));
    std::vector<std::string> results;
    for (const bool wide : {true, false}) {
      gMayUseWideVectors = wide;
      Layer layer(0, 0, nullptr, nullptr, 0);
      LoadReport report;
      InputBytes input(block);
      CellReader reader;
      std::string result = reader.Read(&layer, &input.stream, &report) ? "read " : "damaged ";
      result += std::string(report.problem) + std::to_string(input.stream.Tell()) + " ";
      for (int32_t i = 0; i < layer.cells.Count(); ++i) {
        const CellImage& image = *layer.CellAt(i);
        result.append(image.bits, image.bits + image.ByteCount());
      }
      results.push_back(result);
    }
    ASSERT_EQ(results[0], results[1]) << "round " << round;
  }
}

TEST_F(CodeRows, VectorsDecodeTheSameFrames) {
  for (int32_t round = 0; round < 400; ++round) {
    const int32_t width = Number(1, 300);
    const int32_t height = Number(1, 40);
    Rect box = {Number(0, width - 1), Number(0, height - 1), 0, 0};
    if (Chance(50)) box.x = box.y = 0;
    box.width = Chance(50) ? width - box.x : Number(1, width - box.x);
    box.height = Chance(50) ? height - box.y : Number(1, height - box.y);
    const int32_t levels = Chance(50) ? 4 : 13;
    const Written parts = Sections(box.width, box.height, levels <= 4 ? 1 : 2);
    const Bytes frame = teststreams::FrameBytes({1, 1, 50, 0, 0, box}, parts.map, parts.codes, parts.literals);
    // The first frame goes into the low plane, the second into the high one.
    const bool isHigh = Chance(50);
    Bytes bytes = teststreams::Compiled({"", width, height, width, height, 24, levels},
                                        {isHigh ? teststreams::Still(1, 1) : Bytes{}, frame});
    if (Chance(10)) bytes.resize(static_cast<size_t>(Number(0, static_cast<int32_t>(bytes.size()))));
    const Bytes before = Random(width * height + 4 * height, 0);
    std::vector<std::string> results;
    for (const bool wide : {true, false}) {
      gMayUseWideVectors = wide;
      InputBytes input(bytes);
      NibbleBitmap bitmap;
      AnimationDecoder decoder;
      decoder.bitmap = &bitmap;
      if (decoder.OpenStream(&input.stream) == 0) break;
      std::copy_n(before.begin(), bitmap.imageSize, bitmap.bits);
      for (int32_t i = isHigh ? 0 : 1; i < 2; ++i) decoder.DecodeNextFrame();
      results.push_back(std::to_string(input.stream.Tell()) + " ");
      results.back().append(bitmap.bits, bitmap.bits + bitmap.imageSize);
    }
    ASSERT_TRUE(results.empty() || results[0] == results[1]) << "round " << round;
  }
}

}  // namespace
}  // namespace sorvel
