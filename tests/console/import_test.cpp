#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "support/test_scripts.h"
#include "support/test_streams.h"

namespace sorvel {
namespace {

using namespace teststreams;

using Words = std::vector<std::string>;

// What the frames of an imported cut show, each as rows with / between them.
struct Imported {
  std::unique_ptr<Cut> cut;

  std::string Shown(int32_t index) const {
    Frame* frame = cut->frames.At(index);
    IndexedImage image;
    image.Resize(cut->width, cut->height, 0);
    const uint32_t flags = 0;
    frame->ComposeFrame(&image, 0, 0, cut->width, cut->height, &flags, nullptr);
    std::string picture;
    for (int32_t y = 0; y < image.height; ++y) {
      if (y > 0) picture += '/';
      for (int32_t x = 0; x < image.width; ++x) picture += ".123456789abcdef"[image.GetPixel(x, y) & 15];
    }
    return picture;
  }
};

Imported Load(const Folder& folder, const std::string& name) {
  Imported imported;
  imported.cut = std::make_unique<Cut>(0, 0, 24, "", 0);
  FileStream stream(std::fopen(folder.Path(name).c_str(), "rb"));
  if (stream.file == nullptr) return imported;
  LoadReport report;
  EXPECT_TRUE(imported.cut->Load(&stream, nullptr, &report));
  EXPECT_FALSE(report.IsDamaged()) << report.problem;
  stream.Close();
  return imported;
}

Imported Import(const Folder& folder, Words words) {
  words.insert(words.begin(), {"import", "out.cut"});
  const Answer run = folder.Sorvel(words);
  EXPECT_EQ(run.status, 0) << run;
  EXPECT_EQ(run.err, "");
  return Load(folder, "out.cut");
}

// The picture that one file becomes.
std::string Shown(const std::string& name, const Bytes& bytes, const Words& options = {}) {
  const Folder folder;
  folder.Write(name, bytes);
  Words words = options;
  words.push_back(name);
  const Imported imported = Import(folder, words);
  return imported.cut->frames.Count() == 1 ? imported.Shown(0) : "(no frame)";
}

Bytes AsBytes(std::string_view text) {
  return Bytes(text.begin(), text.end());
}

// A picture of 4 by 4 pixels of one colour.
Bytes Plain(uint8_t red, uint8_t green, uint8_t blue) {
  Bytes bytes = AsBytes("P6\n4 4\n255\n");
  for (int i = 0; i < 16; ++i) bytes = Join({bytes, {red, green, blue}});
  return bytes;
}

// Black, dark, light and white without any dither.
constexpr char kBlack[] = "00 00 00", kDark[] = "54 54 54", kLight[] = "A8 A8 A8", kWhite[] = "FF FF FF";

Bytes Be32(uint32_t value) {
  return {static_cast<uint8_t>(value >> 24), static_cast<uint8_t>(value >> 16 & 255),
          static_cast<uint8_t>(value >> 8 & 255), static_cast<uint8_t>(value & 255)};
}

Bytes Chunk(std::string_view type, const Bytes& data) {
  const Bytes body = Join({AsBytes(type), data});
  return Join({Be32(static_cast<uint32_t>(data.size())), body, Be32(Crc32(body))});
}

// The rows, each with its filter byte, go in without compression.
Bytes Png(uint32_t width, uint32_t height, uint8_t depth, uint8_t colorType, const Bytes& rows,
          const Bytes& extraChunks = {}, uint8_t interlace = 0) {
  uint32_t a = 1;
  uint32_t b = 0;
  for (uint8_t byte : rows) {
    a = (a + byte) % 65521;
    b = (b + a) % 65521;
  }
  const int32_t length = static_cast<int32_t>(rows.size());
  return Join({Hex("89 50 4E 47 0D 0A 1A 0A"),
               Chunk("IHDR", Join({Be32(width), Be32(height), {depth, colorType, 0, 0, interlace}})), extraChunks,
               Chunk("IDAT", Join({Hex("78 01 01"), Le16(length), Le16(~length), rows, Be32(b << 16 | a)})),
               Chunk("IEND", {})});
}

// Greys.

class ConsoleImport : public testing::Test {
 protected:
  const Folder folder;
};

TEST_F(ConsoleImport, FourGreysAreSolid) {
  EXPECT_EQ(Shown("a.pgm", AsBytes("P2\n4 1\n255\n0 84 168 255\n")), "1234");
}

TEST_F(ConsoleImport, GreysBetweenAreDithers) {
  // 128 is level 24: eight of sixteen pixels of dark.
  EXPECT_EQ(Shown("a.ppm", Plain(128, 128, 128)), "3232/2323/3232/2323");
}

TEST_F(ConsoleImport, FirstAndLastLevels) {
  EXPECT_EQ(Shown("a.ppm", Plain(5, 5, 5)), "1111/1111/1111/1111");
  EXPECT_EQ(Shown("a.ppm", Plain(6, 6, 6)), "1112/1111/1111/1111");
  EXPECT_EQ(Shown("a.ppm", Plain(83, 83, 83)), "2221/2222/2222/2222");
  EXPECT_EQ(Shown("a.ppm", Plain(84, 84, 84)), "2222/2222/2222/2222");
  EXPECT_EQ(Shown("a.ppm", Plain(89, 89, 89)), "2223/2222/2222/2222");
  EXPECT_EQ(Shown("a.ppm", Plain(250, 250, 250)), "4443/4444/4444/4444");
  EXPECT_EQ(Shown("a.ppm", Plain(251, 251, 251)), "4444/4444/4444/4444");
}

TEST_F(ConsoleImport, RedGreenAndBlueHaveTheirWeights) {
  EXPECT_EQ(Shown("a.ppm", Plain(255, 0, 0)), "2221/2222/2121/2222");
  EXPECT_EQ(Shown("a.ppm", Plain(0, 255, 0)), "3232/3323/3232/3333");
  EXPECT_EQ(Shown("a.ppm", Plain(0, 0, 255)), "1212/1121/1212/2111");
  EXPECT_EQ(Shown("a.ppm", Plain(255, 255, 0)), "4343/3434/4343/3444");
}

TEST_F(ConsoleImport, DitherLiesAtThePlaceInThePicture) {
  std::string text = "P2\n6 5\n255\n";
  for (int i = 0; i < 30; ++i) text += "128 ";
  EXPECT_EQ(Shown("a.pgm", AsBytes(text)), "323232/232323/323232/232323/323232");
}

TEST_F(ConsoleImport, TransparentColour) {
  const Bytes picture = AsBytes("P3\n4 1\n255\n0 255 0  0 254 0  255 255 255  0 255 0\n");
  EXPECT_EQ(Shown("a.ppm", picture, {"--transparent", "00ff00"}), ".24.");
  EXPECT_EQ(Shown("a.ppm", picture, {"--transparent", "00FF00"}), ".24.");
  EXPECT_EQ(Shown("a.ppm", picture, {"--transparent", "FFFFFF"}), "32.2");
}

// Bitmap files.

TEST_F(ConsoleImport, BitmapOfOneBit) {
  const Bytes palette = Hex("54 54 54 00  FF FF FF 00");
  EXPECT_EQ(Shown("a.bmp", Bmp(10, 2, 1, palette, Hex("FF 80 00 00  A0 40 00 00"))), "4242222224/4444444442");
}

TEST_F(ConsoleImport, BitmapOfFourBits) {
  const Bytes palette = Hex("00 00 00 00  54 54 54 00  A8 A8 A8 00  FF FF FF 00");
  EXPECT_EQ(Shown("a.bmp", Bmp(5, 2, 4, palette, Hex("01 23 00 00  32 10 30 00"), 4)), "43214/12341");
}

TEST_F(ConsoleImport, BitmapOfEightBits) {
  Bytes palette = Hex("00 00 00 00  54 54 54 00  A8 A8 A8 00  FF FF FF 00");
  palette.resize(1024);
  EXPECT_EQ(Shown("a.bmp", Bmp(5, 2, 8, palette, Hex("00 01 02 03 00 00 00 00  03 02 01 00 03 00 00 00"))),
            "43214/12341");
}

TEST_F(ConsoleImport, BitmapOf24Bits) {
  EXPECT_EQ(Shown("a.bmp", Bmp(2, 2, 24, {}, Hex(std::string(kBlack) + kDark + "00 00" + kLight + kWhite + "00 00"))),
            "34/12");
  // Blue comes first.
  Bytes rows;
  for (int i = 0; i < 16; ++i) rows = Join({rows, Hex("00 00 FF")});
  EXPECT_EQ(Shown("a.bmp", Bmp(4, 4, 24, {}, rows)), "2221/2222/2121/2222");
}

TEST_F(ConsoleImport, BitmapOf32Bits) {
  EXPECT_EQ(Shown("a.bmp", Bmp(2, 2, 32, {}, Hex("00 00 00 00  54 54 54 00  A8 A8 A8 00  FF FF FF 00"))), "34/12");
}

TEST_F(ConsoleImport, BitmapFromTopToBottom) {
  EXPECT_EQ(Shown("a.bmp", Bmp(2, -2, 24, {}, Hex(std::string(kBlack) + kDark + "00 00" + kLight + kWhite + "00 00"))),
            "12/34");
  const Bytes palette = Hex("54 54 54 00  FF FF FF 00");
  EXPECT_EQ(Shown("a.bmp", Bmp(3, -2, 1, palette, Hex("80 00 00 00  60 00 00 00"))), "422/244");
}

// PNG.

TEST_F(ConsoleImport, GreyPng) {
  EXPECT_EQ(Shown("a.png", Png(4, 2, 8, 0, Hex("00 00 54 A8 FF  00 FF A8 54 00"))), "1234/4321");
}

TEST_F(ConsoleImport, GreyPngOfFewBits) {
  EXPECT_EQ(Shown("a.png", Png(4, 1, 1, 0, Hex("00 A0"))), "4141");
  EXPECT_EQ(Shown("a.png", Png(4, 1, 4, 0, Hex("00 0F F0"))), "1441");
}

TEST_F(ConsoleImport, ColourPng) {
  EXPECT_EQ(Shown("a.png", Png(2, 2, 8, 2, Hex(std::string("00") + kBlack + kDark + "00" + kLight + kWhite))), "12/34");
  Bytes rows;
  for (int y = 0; y < 4; ++y) rows = Join({rows, Hex("00 FF0000 FF0000 FF0000 FF0000")});
  EXPECT_EQ(Shown("a.png", Png(4, 4, 8, 2, rows)), "2221/2222/2121/2222");
}

TEST_F(ConsoleImport, PngWithAPalette) {
  EXPECT_EQ(Shown("a.png", Png(4, 1, 8, 3, Hex("00 03 02 01 00"), Chunk("PLTE", Hex("000000 545454 A8A8A8 FFFFFF")))),
            "4321");
  EXPECT_EQ(Shown("a.png", Png(4, 1, 2, 3, Hex("00 1B"), Chunk("PLTE", Hex("000000 545454 A8A8A8 FFFFFF")))), "1234");
}

TEST_F(ConsoleImport, PngOfSixteenBits) {
  EXPECT_EQ(Shown("a.png", Png(4, 1, 16, 0, Hex("00 0000 5454 A8A8 FFFF"))), "1234");
  EXPECT_EQ(Shown("a.png", Png(2, 1, 16, 2, Hex("00 545454545454 A8A8A8A8A8A8"))), "23");
}

TEST_F(ConsoleImport, InterlacedPng) {
  // Of 3 by 3 pixels: (0, 0), then nothing in the second and third pass, (2, 0) in the fourth, row 2 in the fifth
  // at even columns, the odd columns of even rows in the sixth, and row 1 in the seventh.
  EXPECT_EQ(Shown("a.png", Png(3, 3, 8, 0, Hex("00 00  00 54  00 A8 FF  00 FF  00 54  00 00 54 A8"), {}, 1)),
            "142/123/324");
}

TEST_F(ConsoleImport, TransparentPngShowsWhitePaper) {
  EXPECT_EQ(Shown("a.png", Png(2, 1, 8, 6, Hex("00 000000FF 00000000"))), "14");
  EXPECT_EQ(Shown("a.png", Png(2, 1, 8, 4, Hex("00 54FF 0000"))), "24");
}

// Portable maps.

TEST_F(ConsoleImport, PlainMaps) {
  EXPECT_EQ(Shown("a.pgm", AsBytes("P2 # a comment\n2 2 255\n0 84\n168 255")), "12/34");
  EXPECT_EQ(Shown("a.ppm", AsBytes("P3\n2 1\n255\n84 84 84 255 255 255\n")), "24");
}

TEST_F(ConsoleImport, BinaryMaps) {
  EXPECT_EQ(Shown("a.pgm", Join({AsBytes("P5\n# a comment\n2 2\n255\n"), Hex("00 54 A8 FF")})), "12/34");
  EXPECT_EQ(Shown("a.ppm", Join({AsBytes("P6\n2 1\n255\n"), Hex("545454 A8A8A8")})), "23");
}

TEST_F(ConsoleImport, MapsOfOtherDepths) {
  EXPECT_EQ(Shown("a.pgm", AsBytes("P2\n4 1\n3\n0 1 2 3\n")).substr(0, 1), "1");
  EXPECT_EQ(Shown("a.pgm", AsBytes("P2\n4 1\n15\n0 5 10 15\n")).substr(3, 1), "4");
  EXPECT_EQ(Shown("a.pgm", Join({AsBytes("P5\n3 1\n65535\n"), Hex("0000 5454 FFFF")})), "124");
}

TEST_F(ConsoleImport, KindIsToldByTheFirstBytes) {
  EXPECT_EQ(Shown("a.bmp", AsBytes("P2\n4 1\n255\n0 84 168 255\n")), "1234");
  EXPECT_EQ(Shown("a.pgm", Png(4, 1, 8, 0, Hex("00 00 54 A8 FF"))), "1234");
}

// The cut.

TEST_F(ConsoleImport, DefaultsOfTheCut) {
  folder.Write("a.pgm", AsBytes("P2\n3 2\n255\n0 0 0 0 0 0\n"));
  const Imported imported = Import(folder, {"a.pgm"});
  EXPECT_EQ(imported.cut->width, 3);
  EXPECT_EQ(imported.cut->height, 2);
  EXPECT_EQ(imported.cut->frameWidth, 3);
  EXPECT_EQ(imported.cut->frameHeight, 2);
  EXPECT_EQ(imported.cut->fps, 24);
  EXPECT_EQ(imported.cut->Antialias(), 0);
  ASSERT_EQ(imported.cut->frames.Count(), 1);
  EXPECT_EQ(imported.cut->frames.At(0)->time, 1);
  EXPECT_EQ(imported.cut->frames.At(0)->x, 0);
  EXPECT_EQ(imported.cut->frames.At(0)->y, 0);
  EXPECT_EQ(imported.cut->frames.At(0)->brightness, 50);
  EXPECT_EQ(imported.cut->layers.Count(), 1);
  EXPECT_EQ(folder.List(), "a.pgm out.cut");
}

TEST_F(ConsoleImport, OptionsOfTheCut) {
  folder.Write("a.pgm", AsBytes("P2\n4 2\n255\n0 0 0 0 0 0 0 0\n"));
  const Imported imported =
      Import(folder, {"--fps", "12", "--width", "20", "--height", "10", "--antialias", "2", "--hold", "3", "a.pgm"});
  EXPECT_EQ(imported.cut->width, 20);
  EXPECT_EQ(imported.cut->height, 10);
  EXPECT_EQ(imported.cut->frameWidth, 20);
  EXPECT_EQ(imported.cut->frameHeight, 10);
  EXPECT_EQ(imported.cut->fps, 12);
  EXPECT_EQ(imported.cut->Antialias(), 2);
  EXPECT_EQ(imported.cut->frames.At(0)->time, 3);
}

TEST_F(ConsoleImport, OneFrameForEachPictureInTheirOrder) {
  folder.Write("a.pgm", AsBytes("P2\n2 1\n255\n0 84\n"));
  folder.Write("b.pgm", AsBytes("P2\n2 1\n255\n168 255\n"));
  const Imported imported = Import(folder, {"b.pgm", "a.pgm"});
  ASSERT_EQ(imported.cut->frames.Count(), 2);
  EXPECT_EQ(imported.Shown(0), "34");
  EXPECT_EQ(imported.Shown(1), "12");
}

TEST_F(ConsoleImport, EqualPicturesShareACell) {
  folder.Write("a.pgm", AsBytes("P2\n2 1\n255\n0 84\n"));
  folder.Write("b.pgm", AsBytes("P2\n2 1\n255\n168 255\n"));
  folder.Write("c.ppm", AsBytes("P3\n2 1\n255\n0 0 0 84 84 84\n"));
  const Imported imported = Import(folder, {"a.pgm", "b.pgm", "a.pgm", "c.ppm", "b.pgm"});
  ASSERT_EQ(imported.cut->frames.Count(), 5);
  EXPECT_EQ(imported.cut->layers.At(0)->cells.Count(), 2);
  const int32_t cells[] = {0, 1, 0, 0, 1};
  for (int32_t i = 0; i < 5; ++i) EXPECT_EQ(imported.cut->frames.At(i)->records.At(0)->cell, cells[i]) << i;
}

TEST_F(ConsoleImport, SmallerPicturesStandInTheMiddle) {
  const std::string shown = Shown("a.pgm", AsBytes("P2\n2 2\n255\n0 84 168 0\n"), {"--width", "6", "--height", "4"});
  EXPECT_EQ(shown.substr(7, 6), "..12..");
  EXPECT_EQ(shown.substr(14, 6), "..31..");
}

TEST_F(ConsoleImport, DitherOfASmallerPictureIsThatOfThePicture) {
  std::string text = "P2\n4 4\n255\n";
  for (int i = 0; i < 16; ++i) text += "128 ";
  const std::string shown = Shown("a.pgm", AsBytes(text), {"--width", "6", "--height", "6"});
  EXPECT_EQ(shown.substr(8, 4), "3232");
  EXPECT_EQ(shown.substr(15, 4), "2323");
}

TEST_F(ConsoleImport, LargerPicturesAreCutAroundTheirMiddle) {
  EXPECT_EQ(Shown("a.pgm", AsBytes("P2\n4 4\n255\n0 0 0 0  0 84 168 0  0 255 84 0  0 0 0 0\n"),
                  {"--width", "2", "--height", "2"}),
            "23/42");
}

TEST_F(ConsoleImport, LaterPicturesOfOtherSizesKeepTheFirstsCanvas) {
  folder.Write("a.pgm", AsBytes("P2\n4 1\n255\n0 0 0 0\n"));
  folder.Write("b.pgm", AsBytes("P2\n2 1\n255\n84 168\n"));
  folder.Write("c.pgm", AsBytes("P2\n6 1\n255\n0 84 84 168 168 0\n"));
  const Imported imported = Import(folder, {"a.pgm", "b.pgm", "c.pgm"});
  EXPECT_EQ(imported.cut->width, 4);
  EXPECT_EQ(imported.Shown(1), ".23.");
  EXPECT_EQ(imported.Shown(2), "2233");
}

TEST_F(ConsoleImport, OutputReplacesAFile) {
  folder.Write("a.pgm", AsBytes("P2\n1 1\n255\n0\n"));
  folder.Write("out.cut", Bytes(5000, 'x'));
  EXPECT_EQ(Import(folder, {"a.pgm"}).Shown(0), "1");
  EXPECT_EQ(folder.List(), "a.pgm out.cut");
}

TEST_F(ConsoleImport, BadOptionsAreWrongUsage) {
  folder.Write("a.pgm", AsBytes("P2\n1 1\n255\n0\n"));
  const Words cases[] = {{"--fps", "0"},
                         {"--fps", "256"},
                         {"--fps", "x"},
                         {"--antialias", "3"},
                         {"--antialias", "-1"},
                         {"--hold", "x"},
                         {"--width", "0", "--height", "4"},
                         {"--width", "4", "--height", "-4"},
                         {"--transparent", "00ff0"},
                         {"--transparent", "00ff0g"},
                         {"--transparent", "0000ff00"},
                         {"--colour", "1"}};
  for (const Words& options : cases) {
    SCOPED_TRACE(options[0] + " " + options[1]);
    Words words = {"import", "out.cut"};
    words.insert(words.end(), options.begin(), options.end());
    words.push_back("a.pgm");
    const Answer run = folder.Sorvel(words);
    EXPECT_EQ(run.status, 2) << run;
    EXPECT_TRUE(run.IsOneLineAbout("")) << run;
    EXPECT_EQ(folder.List(), "a.pgm");
  }
}

TEST_F(ConsoleImport, MorePicturesThanACutHasFramesAreWrongUsage) {
  Words words = {"import", "out.cut"};
  words.resize(65536 + 2, "a");
  const Answer run = folder.Sorvel(words);
  EXPECT_EQ(run.status, 2) << run;
  EXPECT_TRUE(run.IsOneLineAbout("65535 frames")) << run;
}

// Pictures that can't be read.

void ExpectRefused(const std::string& name, const Bytes& bytes) {
  const Folder folder;
  folder.Write(name, bytes);
  const auto start = std::chrono::steady_clock::now();
  const Answer run = folder.Sorvel({"import", "out.cut", name});
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
  EXPECT_EQ(run.status, 1) << run;
  EXPECT_EQ(run.out, "");
  EXPECT_TRUE(run.IsOneLineAbout(name)) << run;
  EXPECT_EQ(folder.List(), name);
}

TEST_F(ConsoleImport, TruncatedPicturesAreNamed) {
  const Bytes bitmap = Bmp(4, 2, 24, {}, Hex("000000 545454 A8A8A8 FFFFFF  000000 545454 A8A8A8 FFFFFF"));
  const Bytes png = Png(4, 2, 8, 0, Hex("00 00 54 A8 FF  00 FF A8 54 00"));
  const Bytes map = Join({AsBytes("P5\n4 2\n255\n"), Hex("00 54 A8 FF 00 54 A8 FF")});
  for (size_t length = 0; length < bitmap.size(); length += 3) {
    SCOPED_TRACE(length);
    ExpectRefused("a.bmp", Part(bitmap, 0, length));
  }
  // The last chunk of a PNG, of 12 bytes, has no picture in it.
  for (size_t length = 0; length < png.size() - 12; length += 3) {
    SCOPED_TRACE(length);
    ExpectRefused("a.png", Part(png, 0, length));
  }
  for (size_t length = 0; length < map.size(); ++length) {
    SCOPED_TRACE(length);
    ExpectRefused("a.pgm", Part(map, 0, length));
  }
  ExpectRefused("a.pgm", AsBytes("P2\n4 1\n255\n0 1 2\n"));
  ExpectRefused("a.ppm", AsBytes("P3\n2 1\n255\n0 1 2 3 4\n"));
  ExpectRefused("a.bmp", Part(bitmap, 0, bitmap.size() - 1));
}

TEST_F(ConsoleImport, HugeSizesInTheHeadFailQuickly) {
  for (int32_t width : {30000, 32767, 0x7FFFFFFF}) {
    for (int32_t height : {30000, 32767, -32767, 0x7FFFFFFF, INT32_MIN}) {
      SCOPED_TRACE(std::to_string(width) + " " + std::to_string(height));
      ExpectRefused("a.bmp", Bmp(width, height, 24, {}, Hex("000000 00")));
    }
    ExpectRefused("b.bmp", Bmp(width, 30000, 1, Hex("000000 00 FFFFFF 00"), Hex("00 00 00 00")));
    ExpectRefused("a.png", Png(static_cast<uint32_t>(width), 32767, 8, 2, Hex("00 000000")));
    ExpectRefused("a.pgm", AsBytes("P5\n" + std::to_string(width) + " 32767\n255\nabc"));
    ExpectRefused("a.ppm", AsBytes("P3\n" + std::to_string(width) + " 32767\n255\n1 2 3"));
  }
}

TEST_F(ConsoleImport, HostileHeadsAreRefused) {
  ExpectRefused("a.bmp", Bmp(0, 2, 24, {}, Hex("00 00 00 00")));
  ExpectRefused("a.bmp", Bmp(2, 0, 24, {}, Hex("00 00 00 00")));
  ExpectRefused("a.bmp", Bmp(-2, 2, 24, {}, Bytes(16, 0)));
  for (int32_t bits : {0, 2, 3, 7, 64, -1}) ExpectRefused("a.bmp", Bmp(2, 2, bits, {}, Bytes(64, 0)));
  for (const char* head :
       {"P5\n0 1\n255\n", "P5\n1 0\n255\n", "P5\n-1 1\n255\n", "P5\n1 1\n0\n", "P5\n1 1\n65536\n",
        "P5\n1 1\n99999999999999999999\n", "P5\n99999999999999999999 1\n255\n", "P9\n1 1\n255\n", "P5\nx 1\n255\n"}) {
    SCOPED_TRACE(head);
    ExpectRefused("a.pgm", AsBytes(std::string(head) + "abcd"));
  }
  Bytes png = Png(4, 1, 8, 0, Hex("00 00 54 A8 FF"));
  png[29] = static_cast<uint8_t>(png[29] ^ 1);
  ExpectRefused("a.png", png);
  ExpectRefused("a.png", Png(0, 1, 8, 0, Hex("00")));
}

TEST_F(ConsoleImport, PngIsCheckedByItsChunks) {
  Bytes png = Png(4, 1, 8, 0, Hex("00 00 54 A8 FF"));
  const size_t end = png.size() - 12;  // of the pixels' chunk: its last 8 bytes are their own checksum and the chunk's
  const size_t type = 8 + 25 + 4;
  png[end - 5] ^= 1;
  ExpectRefused("a.png", png);
  const Bytes right = Be32(Crc32(Part(png, type, end - 4 - type)));
  std::copy(right.begin(), right.end(), png.begin() + static_cast<ptrdiff_t>(end) - 4);
  EXPECT_EQ(Shown("a.png", png), "1234");
}

TEST_F(ConsoleImport, BitmapColourOutsideItsPaletteDoesNoHarm) {
  folder.Write("a.bmp", Bmp(4, 1, 8, Hex("00 00 00 00"), Hex("00 01 7F FF"), 1));
  const Answer run = folder.Sorvel({"import", "out.cut", "a.bmp"});
  EXPECT_TRUE(run.status == 0 || (run.status == 1 && run.IsOneLineAbout("a.bmp"))) << run;
}

TEST_F(ConsoleImport, PictureThatFailsAmongOthersIsNamedAndNothingIsLeft) {
  folder.Write("a.pgm", AsBytes("P2\n1 1\n255\n0\n"));
  folder.Write("b.pgm", AsBytes("P2\n1 1\n255\n"));
  const Answer run = folder.Sorvel({"import", "out.cut", "a.pgm", "b.pgm", "a.pgm"});
  EXPECT_EQ(run.status, 1) << run;
  EXPECT_TRUE(run.IsOneLineAbout("b.pgm")) << run;
  EXPECT_EQ(folder.List(), "a.pgm b.pgm");
}

TEST_F(ConsoleImport, FlippedBitsDoNoHarm) {
  const std::pair<std::string, Bytes> files[] = {
      {"a.bmp", Bmp(3, 2, 4, Hex("00 00 00 00  FF FF FF 00"), Hex("01 00 00 00  10 10 00 00"), 2)},
      {"a.pgm", AsBytes("P2\n3 2\n255\n0 1 2 3 4 5\n")},
      {"a.png", Png(4, 1, 2, 3, Hex("00 1B"), Chunk("PLTE", Hex("000000 545454 A8A8A8 FFFFFF")))}};
  for (const auto& [name, whole] : files) {
    for (size_t bit = 0; bit < whole.size() * 8; bit += 5) {
      SCOPED_TRACE(name + " " + std::to_string(bit));
      Bytes bytes = whole;
      bytes[bit / 8] = static_cast<uint8_t>(bytes[bit / 8] ^ 1 << bit % 8);
      folder.Write(name, bytes);
      const Answer run = folder.Sorvel({"import", "out.cut", name});
      EXPECT_TRUE(run.status == 0 || (run.status == 1 && run.IsOneLineAbout(name))) << run;
    }
  }
}

// Threads.

// The cut file that an import writes, or the line of its failure.
std::string ImportBy(int32_t threads, const Folder& folder, Words words) {
  words.insert(words.begin(), {"import", "out.cut", "--threads", std::to_string(threads)});
  const Answer run = folder.Sorvel(words);
  if (run.status != 0) return run.err;
  const Bytes bytes = folder.Read("out.cut");
  return std::string(bytes.begin(), bytes.end());
}

TEST(Import, AnyNumberOfThreadsMakesTheSameCut) {
  const Folder folder;
  Words names;
  for (int i = 0; i < 20; ++i) {
    // Large enough to be shared, some of them equal, and one that isn't as large.
    const int width = i == 7 ? 90 : 150;
    Bytes bytes = AsBytes("P5\n" + std::to_string(width) + " 130\n255\n");
    for (int at = 0; at < width * 130; ++at) bytes.push_back(static_cast<uint8_t>(at * (i % 6 + 1) / 97));
    names.push_back("p" + std::to_string(i) + ".pgm");
    folder.Write(names.back(), bytes);
  }
  const std::string alone = ImportBy(1, folder, names);
  ASSERT_GT(alone.size(), 1000u);
  for (const int threads : {2, 5}) EXPECT_EQ(ImportBy(threads, folder, names), alone);

  folder.Write("p11.pgm", AsBytes("P5\n150 130\n255\nshort"));
  folder.Write("p12.pgm", AsBytes("nothing"));
  const std::string refused = ImportBy(1, folder, names);
  EXPECT_EQ(refused, "sorvel: p11.pgm: the file ends in its pixels\n");
  for (const int threads : {2, 5}) EXPECT_EQ(ImportBy(threads, folder, names), refused);
}

}  // namespace
}  // namespace sorvel
