#include "animation/stream_decoder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

#include "support/test_streams.h"

namespace sorvel {
namespace {

using namespace teststreams;

// A decoder with its bitmap and the bytes that it reads.
struct Player {
  explicit Player(const Bytes& bytes) : input(bytes) {
    decoder.bitmap = &bitmap;
    opened = decoder.OpenStream(&input.stream);
  }

  // Times and pictures of the next frames.
  std::string Frames(int32_t count) {
    std::string text;
    for (int32_t i = 0; i < count; ++i) {
      const int32_t time = decoder.DecodeNextFrame();
      text += (i == 0 ? "" : " ") + std::to_string(time) + ":" + FrontPicture(bitmap);
    }
    return text;
  }

  Input input;
  NibbleBitmap bitmap;
  AnimationDecoder decoder;
  int32_t opened;
};

// A frame of one tick with this box.
Bytes Boxed(const Rect& box, const Bytes& map, const Bytes& codes, const Bytes& literals) {
  return FrameBytes({1, 1, 50, 0, 0, box}, map, codes, literals);
}

// Opening.

TEST(StreamDecoder, UnknownMagicIsRefused) {
  for (const char* magic : {"43 42", "53 41", "00 00", "63 61", "43"}) {
    SCOPED_TRACE(magic);
    Bytes bytes = Compiled({}, {Block(1, 1, 0x55)});
    const Bytes start = Hex(magic);
    for (size_t i = 0; i < start.size(); ++i) bytes[i] = start[i];
    if (start.size() == 1) bytes.resize(1);
    Player player(bytes);
    EXPECT_EQ(player.opened, 0);
    EXPECT_EQ(player.decoder.DecodeNextFrame(), 0);
  }
}

TEST(StreamDecoder, EmptyStreamIsRefused) {
  Player player({});
  EXPECT_EQ(player.opened, 0);
  EXPECT_EQ(player.decoder.DecodeNextFrame(), 0);
}

TEST(StreamDecoder, WithoutAStreamTheTimeIsZero) {
  NibbleBitmap bitmap;
  AnimationDecoder decoder;
  decoder.bitmap = &bitmap;
  EXPECT_EQ(decoder.DecodeNextFrame(), 0);
}

TEST(StreamDecoder, OpeningACompiledCut) {
  const Bytes bytes = Compiled({"abc", 12, 7, 10, 5, 30, 4}, {Still(1, 1)});
  Player player(bytes);
  EXPECT_EQ(player.opened, 1);
  EXPECT_EQ(player.bitmap.width, 12);
  EXPECT_EQ(player.bitmap.height, 7);
  EXPECT_EQ(player.decoder.outputWidth, 10);
  EXPECT_EQ(player.decoder.outputHeight, 5);
  EXPECT_EQ(player.decoder.cutCount, 1);
  EXPECT_EQ(player.decoder.cutIndex, 0);
  EXPECT_EQ(player.decoder.firstCutOffset, 6);
  EXPECT_EQ(player.decoder.cutOffsets[0], 6);
  EXPECT_EQ(player.decoder.streamEnd, static_cast<int32_t>(bytes.size()));
  EXPECT_EQ(player.decoder.loopCount, 1);
  EXPECT_EQ(player.input.stream.Tell(), player.decoder.streamEnd);
}

TEST(StreamDecoder, OpeningAContainer) {
  const Bytes first = CutRecord({"a", 8, 2, 8, 2, 12, 4}, {Still(1, 1)});
  const Bytes second = CutRecord({"bc", 4, 3, 4, 3, 24, 13}, {Still(1, 1)});
  Player player(Container(320, 240, 8, 3, {first, second}, "ti", "aut"));
  EXPECT_EQ(player.opened, 1);
  EXPECT_EQ(player.bitmap.width, 8);
  EXPECT_EQ(player.bitmap.height, 3);
  EXPECT_EQ(player.decoder.outputWidth, 320);
  EXPECT_EQ(player.decoder.outputHeight, 240);
  EXPECT_EQ(player.decoder.cutCount, 2);
  // 6 of magic and size, 3 and 4 of the texts, 10, and the table of two.
  EXPECT_EQ(player.decoder.firstCutOffset, 31);
  EXPECT_EQ(player.decoder.cutOffsets[0], 31);
  EXPECT_EQ(player.decoder.cutOffsets[1], 31 + static_cast<int32_t>(first.size()));
  EXPECT_EQ(player.input.stream.Tell(), player.decoder.streamEnd);
}

TEST(StreamDecoder, TextsOf255BytesAreWhole) {
  const std::string text(255, 't');
  Player player(Container(4, 1, 4, 1, {CutRecord({text}, {Block(1, 1, 0xE4)})}, text, text));
  ASSERT_EQ(player.opened, 1);
  EXPECT_EQ(player.decoder.cutCount, 1);
  EXPECT_EQ(player.Frames(1), "1:0123");
  EXPECT_EQ(player.decoder.cutName, text);
}

TEST(StreamDecoder, LongerTextIsCutAndItsRestIsntSkipped) {
  // The credit ends behind 256 bytes, whatever they are: the picture's size follows there.
  const std::string text(256, 't');
  Bytes bytes = Compiled({text}, {Block(1, 1, 0xE4)});
  bytes.erase(bytes.begin() + 6 + 256);
  Player player(bytes);
  ASSERT_EQ(player.opened, 1);
  EXPECT_EQ(player.bitmap.width, 4);
  EXPECT_EQ(player.Frames(1), "1:0123");
  EXPECT_EQ(player.decoder.cutName, std::string(255, 't'));
}

TEST(StreamDecoder, FirstFrameSetsTheCutsValues) {
  Player player(Compiled({"abc", 8, 1, 6, 5, 30, 13}, {Still(-7, 1, 50, -3, 9)}));
  EXPECT_EQ(player.decoder.DecodeNextFrame(), 7);
  EXPECT_STREQ(player.decoder.cutName, "abc");
  EXPECT_EQ(player.decoder.width, 8);
  EXPECT_EQ(player.decoder.height, 1);
  EXPECT_EQ(player.decoder.frameWidth, 6);
  EXPECT_EQ(player.decoder.frameHeight, 5);
  EXPECT_EQ(player.decoder.fps, 30);
  EXPECT_EQ(player.decoder.levels, 13);
  EXPECT_EQ(player.decoder.cutIndex, 1);
  EXPECT_EQ(player.decoder.frameCounter, 1);
  EXPECT_EQ(player.decoder.frameX, -3);
  EXPECT_EQ(player.decoder.frameY, 9);
  EXPECT_EQ(player.decoder.previousBox, (Rect{0, 0, 8, 1}));
  EXPECT_EQ(player.decoder.currentBox, (Rect{0, 0, 0, 0}));
}

TEST(StreamDecoder, FpsIsReadAsASignedByte) {
  Player player(Compiled({"", 4, 1, 4, 1, 200, 4}, {Still(1, 1)}));
  player.decoder.DecodeNextFrame();
  EXPECT_EQ(player.decoder.fps, -56);
}

TEST(StreamDecoder, LevelsMakeTheRamp) {
  Player four(Compiled({}, {Block(1, 1, 0xE4)}));
  four.decoder.DecodeNextFrame();
  int32_t red = 0, green = 0, blue = 0;
  four.bitmap.GetFrontColor(2, &red, &green, &blue);
  EXPECT_EQ(red, 170);
  Player thirteen(Compiled({"", 4, 1, 4, 1, 24, 13}, {Still(1, 1)}));
  thirteen.decoder.DecodeNextFrame();
  thirteen.bitmap.GetFrontColor(3, &red, &green, &blue);
  EXPECT_EQ(red, 66);
  thirteen.bitmap.GetFrontColor(12, &red, &green, &blue);
  EXPECT_EQ(red, 255);
}

// Frames.

TEST(StreamDecoder, FourLevelsTakeOneByteForABlock) {
  Player player(Compiled({}, {Block(1, 1, 0x1B)}));
  EXPECT_EQ(player.Frames(1), "1:3210");
}

TEST(StreamDecoder, ThirteenLevelsTakeTwoBytesForABlock) {
  Player player(Compiled({"", 4, 1, 4, 1, 24, 13}, {Boxed({0, 0, 4, 1}, {1}, {0}, {0xC1, 0x3A})}));
  EXPECT_EQ(player.Frames(1), "1:1ca3");
}

TEST(StreamDecoder, UpToFourLevelsTheBytesAreThoseOfFour) {
  Player two(Compiled({"", 4, 1, 4, 1, 24, 2}, {Block(1, 1, 0x1B)}));
  EXPECT_EQ(two.Frames(1), "1:3210");
  Player five(Compiled({"", 4, 1, 4, 1, 24, 5}, {Boxed({0, 0, 4, 1}, {1}, {0}, {0x21, 0x43})}));
  EXPECT_EQ(five.Frames(1), "1:1234");
}

TEST(StreamDecoder, EachCodeCopiesFromItsOffset) {
  for (const CopyOffset& offset : kCopyOffsets) {
    SCOPED_TRACE(offset.code);
    auto blocks = DifferentBlocks();
    Bytes literals(blocks.begin(), blocks.end() - 1);
    Player player(Compiled({"", 20, 9, 20, 9, 24, 4}, {Boxed({0, 0, 20, 9}, Hex("07 00 00 00 00 00 00 00 04"),
                                                             {0, 0, 0, static_cast<uint8_t>(offset.code)}, literals)}));
    blocks[44] = blocks[SourceBlock(offset.code)];
    EXPECT_EQ(player.Frames(1), "1:" + BlockPicture(blocks, '0'));
  }
}

// Two rows of one block. The code section says that it is a byte shorter than the map asks for, so that the second code
// is the byte behind it, which is the first literal as well: 0F, the frame before.
TEST(StreamDecoder, CodesGoOnBehindTheirSection) {
  const Bytes frame = Boxed({0, 0, 4, 2}, {0x01, 0x01}, {0x00}, {0x0F});
  Player player(Compiled({"", 4, 2, 4, 2, 24, 4}, {frame, Still(2, 0)}));
  EXPECT_EQ(player.Frames(2), "1:3300/0000 2:3300/0000");
}

TEST(StreamDecoder, NextFrameLiesBehindTheLastLiteralThatWasRead) {
  Bytes longer = Boxed({0, 0, 4, 1}, {0x01}, {0x00}, {0xE4, 0xFF});
  longer.pop_back();
  Bytes shorter = FrameBytes({2, 0, 50, 0, 0, {0, 0, 4, 1}}, {0x01}, {0x00}, {});
  shorter.push_back(0x1B);
  Player player(Compiled({}, {longer, shorter, Still(3, 0)}));
  EXPECT_EQ(player.Frames(3), "1:0123 2:3210 3:3210");
}

TEST(StreamDecoder, CodesStartAsOneInEachFrame) {
  // An empty map: each block is that to its left.
  Player player(Compiled({"", 8, 2, 8, 2, 24, 4},
                         {Boxed({0, 0, 8, 2}, {1, 1}, {0x10, 0x14}, {0x1B}), Boxed({4, 0, 4, 2}, {0, 0}, {}, {}),
                          Boxed({4, 1, 4, 1}, {1}, {0x00}, {0xFF}), Boxed({4, 0, 4, 2}, {0, 0}, {}, {})}));
  EXPECT_EQ(player.Frames(4), "1:32103210/32103210 1:32103210/32103210 1:32103210/32103333 1:32103210/32103210");
}

TEST(StreamDecoder, LowNibbleIsTheLeftBlock) {
  Player player(Compiled({"", 12, 1, 12, 1, 24, 4}, {Boxed({0, 0, 12, 1}, {3}, {0x00, 0x02}, {0x1B, 0xE4})}));
  EXPECT_EQ(player.Frames(1), "1:321001233210");
}

TEST(StreamDecoder, WideRowsHaveSeveralMapBytes) {
  // 72 pixels: nine bytes of codes. The last block of all comes from the literals.
  Player player(Compiled({"", 72, 1, 72, 1, 24, 4}, {Boxed({0, 0, 72, 1}, {0x01, 0x01}, {0x10, 0x01}, {0xFF, 0x1B})}));
  EXPECT_EQ(player.Frames(1), "1:" + std::string(68, '3') + "3210");
}

TEST(StreamDecoder, CodeFifteenTakesTheFrameBefore) {
  Player player(Compiled({"", 8, 1, 8, 1, 24, 4},
                         {Boxed({0, 0, 8, 1}, {1}, {0x00}, {0xFF, 0x1B}), Boxed({0, 0, 8, 1}, {1}, {0xF0}, {0xE4})}));
  EXPECT_EQ(player.Frames(2), "1:33333210 1:01233210");
}

TEST(StreamDecoder, BoxNeedNotStartAtABlockOfThePicture) {
  Player player(Compiled({"", 8, 3, 8, 3, 24, 4}, {Boxed({0, 0, 8, 3}, {1, 1, 0}, {0x10, 0x14}, {0xFF}),
                                                   Boxed({2, 1, 6, 1}, {1}, {0x00}, {0xE4, 0x00})}));
  EXPECT_EQ(player.Frames(2), "1:33333333/33333333/33333333 1:33333333/33012300/00333333");
}

TEST(StreamDecoder, OtherPartsOfThePictureStay) {
  // Each frame changes another block; three frames share two planes.
  Player player(Compiled(
      {"", 12, 3, 12, 3, 24, 4},
      {Boxed({0, 0, 12, 3}, {3, 1, 0}, {0x10, 0x01, 0x14}, {0xFF}), Boxed({0, 0, 4, 1}, {1}, {0x00}, {0x00}),
       Boxed({8, 2, 4, 1}, {1}, {0x00}, {0x55}), Boxed({4, 1, 4, 1}, {1}, {0x00}, {0xAA}), Still(1, 1), Still(1, 1)}));
  const std::string white = "333333333333";
  const std::string one = "000033333333/" + white + "/" + white;
  const std::string two = "000033333333/" + white + "/333333331111";
  const std::string three = "000033333333/333322223333/333333331111";
  EXPECT_EQ(player.Frames(6), "1:" + white + "/" + white + "/" + white + " 1:" + one + " 1:" + two + " 1:" + three +
                                  " 1:" + three + " 1:" + three);
}

TEST(StreamDecoder, EmptyBoxBringsBothPlanesTogether) {
  Player player(Compiled({"", 4, 2, 4, 2, 24, 4}, {Boxed({0, 0, 4, 2}, {1, 1}, {0x00, 0x04}, {0xE4}),
                                                   Boxed({0, 1, 4, 1}, {1}, {0x00}, {0x00}), Still(1, 1)}));
  EXPECT_EQ(player.Frames(3), "1:0123/0123 1:0123/0000 1:0123/0000");
  for (int32_t y = 0; y < 2; ++y) {
    for (int32_t x = 0; x < 4; ++x) EXPECT_EQ(player.bitmap.GetFront(x, y), player.bitmap.GetBack(x, y));
  }
}

TEST(StreamDecoder, FrontPlaneFollowsTheFrameCounter) {
  Player player(Compiled({}, {Block(1, 1, 0), Still(1, 1), Still(1, 1)}));
  for (int32_t expected : {0, 1, 0, 0, 1}) {
    player.decoder.DecodeNextFrame();
    EXPECT_EQ(player.bitmap.frontIsHigh, expected);
  }
}

TEST(StreamDecoder, TimesComeWithTheirSign) {
  Player player(Compiled({}, {Block(-3, 1, 0), Block(-4, 1, 0xFF), Still(0, 1), Still(32767, 1), Still(-32768, 1)}));
  EXPECT_EQ(player.decoder.DecodeNextFrame(), 3);
  EXPECT_EQ(player.decoder.DecodeNextFrame(), -4);
  EXPECT_EQ(player.decoder.DecodeNextFrame(), 0);
  EXPECT_EQ(player.decoder.DecodeNextFrame(), 32767);
  EXPECT_EQ(player.decoder.DecodeNextFrame(), -32768);
}

TEST(StreamDecoder, FrameBehindATimeOfZeroCanBeRead) {
  Player player(Compiled({}, {Block(0, 1, 0), Block(2, 1, 0xFF)}));
  EXPECT_EQ(player.Frames(3), "0:0000 2:3333 0:0000");
}

TEST(StreamDecoder, LastFrameIsFollowedByTheFirst) {
  Player player(Compiled({}, {Block(1, 1, 0x00), Block(-2, 1, 0x55)}));
  EXPECT_EQ(player.Frames(5), "1:0000 -2:1111 1:0000 -2:1111 1:0000");
}

TEST(StreamDecoder, BrightnessReachesTheFrontColours) {
  Player player(Compiled({}, {Block(1, 1, 0, 100), Block(1, 1, 0, 0)}));
  int32_t red = 0, green = 0, blue = 0;
  player.decoder.DecodeNextFrame();
  EXPECT_EQ(player.bitmap.brightness, 100);
  player.bitmap.GetFrontColor(0, &red, &green, &blue);
  EXPECT_EQ(red, 255);
  player.decoder.DecodeNextFrame();
  player.bitmap.GetFrontColor(3, &red, &green, &blue);
  EXPECT_EQ(red, 0);
  player.bitmap.GetBackColor(0, &red, &green, &blue);
  EXPECT_EQ(red, 255);
}

TEST(StreamDecoder, BrightnessIsASignedByte) {
  Player player(Compiled({}, {Block(1, 1, 0, 0xCD)}));
  player.decoder.DecodeNextFrame();
  EXPECT_EQ(player.bitmap.brightness, -51);
}

// Cuts of a container.

TEST(StreamDecoder, EachCutBringsItsOwnValues) {
  Player player(
      Container(8, 1, 8, 1,
                {CutRecord({"one", 4, 1, 4, 1, 24, 4}, {Block(1, 1, 0x1B), Block(-2, 1, 0xE4)}),
                 CutRecord({"two", 8, 1, 6, 1, 12, 13},
                           {FrameBytes({-3, 1, 50, 1, 0, {0, 0, 8, 1}}, {1}, {0x10}, {0x21, 0xC3}), Still(-1, 1)})}));
  EXPECT_EQ(player.decoder.DecodeNextFrame(), 1);
  EXPECT_EQ(player.decoder.DecodeNextFrame(), -2);
  EXPECT_STREQ(player.decoder.cutName, "one");
  EXPECT_EQ(player.bitmap.frontIsHigh, 1);
  EXPECT_EQ(player.decoder.DecodeNextFrame(), 3) << "no dissolve between cuts";
  EXPECT_EQ(player.bitmap.frontIsHigh, 0);
  EXPECT_STREQ(player.decoder.cutName, "two");
  EXPECT_EQ(player.decoder.fps, 12);
  EXPECT_EQ(player.decoder.levels, 13);
  EXPECT_EQ(player.decoder.frameWidth, 6);
  EXPECT_EQ(player.decoder.previousBox, (Rect{0, 0, 8, 1}));
  EXPECT_EQ(FrontPicture(player.bitmap), "123c123c");
  EXPECT_EQ(player.decoder.DecodeNextFrame(), -1);
  EXPECT_EQ(player.decoder.DecodeNextFrame(), 1);
  EXPECT_STREQ(player.decoder.cutName, "one");
  EXPECT_EQ(player.decoder.levels, 4);
  EXPECT_EQ(FrontPicture(player.bitmap).substr(0, 4), "3210");
}

TEST(StreamDecoder, CutLargerThanTheBitmapIsReadOver) {
  Player player(Container(
      4, 1, 4, 1,
      {CutRecord({}, {Block(1, 1, 0x1B, 60)}),
       CutRecord({"", 8, 1, 8, 1, 24, 4}, {FrameBytes({5, 1, 90, 2, 1, {0, 0, 8, 1}}, {1}, {0x00}, {0xFF, 0xFF})}),
       CutRecord({}, {Block(2, 1, 0xE4, 70)})}));
  player.decoder.DecodeNextFrame();
  const Bytes before(player.bitmap.bits, player.bitmap.bits + player.bitmap.imageSize);
  EXPECT_EQ(player.decoder.DecodeNextFrame(), 5);
  EXPECT_EQ(Bytes(player.bitmap.bits, player.bitmap.bits + player.bitmap.imageSize), before);
  EXPECT_EQ(player.bitmap.brightness, 60);
  EXPECT_EQ(player.decoder.frameX, 2);
  EXPECT_EQ(player.decoder.frameWidth, 8);
  EXPECT_EQ(player.decoder.DecodeNextFrame(), 2);
  EXPECT_EQ(FrontPicture(player.bitmap), "0123");
}

TEST(StreamDecoder, CutHigherThanTheBitmapIsReadOver) {
  Player player(Container(
      4, 1, 4, 1,
      {CutRecord({"", 4, 2, 4, 2, 24, 4}, {FrameBytes({5, 1, 90, 0, 0, {0, 0, 4, 2}}, {1, 1}, {0, 4}, {0xFF})}),
       CutRecord({}, {Block(2, 1, 0xE4, 70)})}));
  EXPECT_EQ(player.decoder.DecodeNextFrame(), 5);
  EXPECT_EQ(player.bitmap.brightness, 50);
  EXPECT_EQ(player.Frames(1), "2:0123");
}

// Loops. Frames are told apart by their times.

std::string Times(Player* player, int32_t count) {
  std::string text;
  for (int32_t i = 0; i < count; ++i) text += (i == 0 ? "" : " ") + std::to_string(player->decoder.DecodeNextFrame());
  return text;
}

TEST(StreamDecoder, LoopsRunTheirBodiesAgain) {
  const struct {
    const char* name;
    std::initializer_list<Bytes> frames;
    const char* times;
  } rows[] = {
      {"BodyRunsAsOftenAsTheFieldSays",
       {Block(1, 1, 0), Still(2, 3), Still(3, 0), Still(4, 0), Still(5, 1)},
       "1 2 3 4 2 3 4 2 3 4 5 1"},
      {"LoopOfOneFrame", {Block(1, 1, 0), Still(2, 4), Still(3, 1)}, "1 2 2 2 2 3 1"},
      {"FrameBehindTheBodyMayOpenTheNextLoop",
       {Block(1, 2, 0), Still(2, 0), Still(3, 2), Still(4, 0), Still(5, 1)},
       "1 2 1 2 3 4 3 4 5 1"},
      {"BodyEndsAtNegativeFields",
       {Block(1, 2, 0), Still(2, 0), Still(3, -1), Still(4, -5), Still(5, 0)},
       "1 2 1 2 3 4 5 1"},
      {"NegativeFieldsNeverStartALoop", {Block(1, -2, 0), Still(2, 0), Still(3, 1)}, "1 2 3 1 2"},
      {"ZeroWithoutALoopIsNothing", {Block(1, 0, 0), Still(2, 0), Still(3, 0)}, "1 2 3 1 2 3 1"},
      {"LoopAtTheCutsFirstFrameTakesItsTimePositiveAgain", {Block(-2, 2, 0), Still(-3, 0), Still(4, 1)}, "2 -3 2 -3 4"},
  };
  for (const auto& row : rows) {
    const std::string times = row.times;
    Player player(Compiled({}, row.frames));
    EXPECT_EQ(Times(&player, static_cast<int32_t>(std::count(times.begin(), times.end(), ' ')) + 1), times) << row.name;
  }
}

TEST(StreamDecoder, LoopCountGoesDownAtEachRun) {
  Player player(Compiled({}, {Block(1, 1, 0), Still(2, 3), Still(3, 0), Still(4, 1)}));
  for (int32_t expected : {1, 3, 3, 2, 2, 1, 1, 1}) {
    player.decoder.DecodeNextFrame();
    EXPECT_EQ(player.decoder.loopCount, expected);
  }
}

TEST(StreamDecoder, LoopFromFrameZeroToTheEndOfTheStreamJumpsFromItsOwnFirstFrame) {
  Player player(Compiled({"x"}, {Block(1, 3, 0x00), Block(2, 0, 0x55)}));
  std::vector<int32_t> counts;
  for (int32_t i = 0; i < 8; ++i) {
    EXPECT_EQ(player.decoder.DecodeNextFrame(), i % 2 + 1);
    EXPECT_EQ(FrontPicture(player.bitmap), i % 2 == 0 ? "0000" : "1111");
    EXPECT_EQ(player.bitmap.frontIsHigh, i % 2);
    counts.push_back(player.decoder.loopCount);
  }
  EXPECT_EQ(counts, (std::vector<int32_t>{3, 3, 2, 2, 1, 1, 3, 3}));
}

TEST(StreamDecoder, LoopOverTheEndOfACutReadsTheNextCutsRecordOver) {
  Player player(Container(4, 1, 4, 1,
                          {CutRecord({"one", 4, 1, 4, 1, 24, 4}, {Block(1, 3, 0x1B), Block(2, 0, 0xE4)}),
                           CutRecord({"two", 4, 1, 3, 1, 12, 13},
                                     {FrameBytes({3, 1, 50, 0, 0, {0, 0, 4, 1}}, {1}, {0x00}, {0x21, 0xC3})})}));
  EXPECT_EQ(Times(&player, 6), "1 2 1 2 1 2");
  EXPECT_STREQ(player.decoder.cutName, "one");
  EXPECT_EQ(player.decoder.levels, 4);
  EXPECT_EQ(player.decoder.fps, 24);
  EXPECT_EQ(player.decoder.frameWidth, 4);
  EXPECT_EQ(player.decoder.cutIndex, 1);
  EXPECT_EQ(FrontPicture(player.bitmap), "0123");
  EXPECT_EQ(Times(&player, 1), "3");
  EXPECT_STREQ(player.decoder.cutName, "two");
  EXPECT_EQ(player.decoder.fps, 12);
  EXPECT_EQ(FrontPicture(player.bitmap), "123c");
  EXPECT_EQ(Times(&player, 3), "1 2 1");
}

TEST(StreamDecoder, LoopOverTheEndOfTheLastCutWrapsToTheFirst) {
  Player player(Container(4, 1, 4, 1,
                          {CutRecord({"one"}, {Block(1, 1, 0x1B), Block(2, 1, 0x00)}),
                           CutRecord({"two"}, {Block(3, 2, 0xE4), Block(4, 0, 0x55)})}));
  EXPECT_EQ(Times(&player, 10), "1 2 3 4 3 4 1 2 3 4");
  EXPECT_STREQ(player.decoder.cutName, "two");
}

TEST(StreamDecoder, SecondRunIsTheSameAsTheFirst) {
  // The body stands on the frame ahead of it: code 15, and frames that dissolve.
  Player player(Compiled({"", 8, 2, 8, 2, 24, 4},
                         {Boxed({0, 0, 8, 2}, {1, 1}, {0x10, 0x14}, {0x1B}),
                          FrameBytes({-2, 2, 40, 0, 0, {0, 0, 8, 1}}, {1}, {0xF0}, {0xFF}),
                          FrameBytes({-3, 0, 60, 0, 0, {0, 1, 8, 1}}, {1}, {0x0F}, {0x00}),
                          FrameBytes({-1, 0, 50, 0, 0, {0, 0, 8, 2}}, {1, 1}, {0xFF, 0x0F}, {0x55}), Still(9, 1)}));
  player.decoder.DecodeNextFrame();
  std::vector<std::string> runs[2];
  for (auto& run : runs) {
    for (int32_t i = 0; i < 3; ++i) {
      run.push_back(std::to_string(player.decoder.DecodeNextFrame()));
      run.push_back(FrontPicture(player.bitmap));
      run.push_back(std::string(player.bitmap.bits, player.bitmap.bits + player.bitmap.imageSize));
      run.push_back(std::to_string(player.bitmap.frontIsHigh) + " " + std::to_string(player.bitmap.brightness));
    }
  }
  EXPECT_EQ(runs[0], runs[1]);
  EXPECT_EQ(runs[0][1], "33333210/32103210");
  EXPECT_EQ(runs[0][5], "33333210/32100000");
  EXPECT_EQ(runs[0][9], "33333210/32101111");
  EXPECT_EQ(player.decoder.DecodeNextFrame(), 9);
}

// Reopening.

TEST(StreamDecoder, AnotherStreamStartsOver) {
  Player player(Compiled({}, {Block(1, 5, 0x55), Block(2, 0, 0x00)}));
  Times(&player, 2);
  Input other(Compiled({"", 8, 1, 8, 1, 12, 4}, {FrameBytes({7, 1, 50, 0, 0, {0, 0, 8, 1}}, {1}, {0x10}, {0x1B})}));
  ASSERT_EQ(player.decoder.OpenStream(&other.stream), 1);
  EXPECT_EQ(player.decoder.loopCount, 1);
  EXPECT_EQ(player.Frames(2), "7:32103210 7:32103210");
}

TEST(StreamDecoder, EncodedCutComesBackFrameByFrame) {
  auto cut = MakeCut(10, 4, {"1231231231/.2/.3/11", "1231231231/.2..11/.3/11", "/.2..11..../.3.....11/11111", "", ""});
  Player player(Compile(cut.get()));
  EXPECT_EQ(player.Frames(4),
            "1:0120120120/3133333333/3233333333/0033333333 "
            "1:0120120120/3133003333/3233333333/0033333333 "
            "1:3333333333/3133003333/3233333003/0000033333 "
            "1:3333333333/3333333333/3333333333/3333333333");
}

}  // namespace
}  // namespace sorvel
