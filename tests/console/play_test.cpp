#include <gtest/gtest.h>

#include <string>

#include "support/test_program.h"
#include "support/test_streams.h"

namespace sorvel {
namespace {

using namespace teststreams;

std::string AsText(const Bytes& bytes) {
  return std::string(bytes.begin(), bytes.end());
}

// Plays a stream into the folder "out".
void Play(const Folder& folder, const std::string& name, const Bytes& stream, const std::string& ticks) {
  folder.Write(name, stream);
  const Answer run = folder.Sorvel({"play", name, "out", "--ticks", ticks});
  EXPECT_EQ(run.status, 0) << run;
  EXPECT_EQ(run.err, "");
}

Bytes Map(const std::string& head, std::string_view pixels) {
  return Join({Bytes(head.begin(), head.end()), Hex(pixels)});
}

class ConsolePlay : public testing::Test {
 protected:
  const Folder folder;
};

TEST_F(ConsolePlay, LogHasALineForEachTick) {
  Play(folder, "a.ca",
       Compiled({"", 8, 2, 4, 1, 24, 4},
                {FrameBytes({2, 1, 50, 0, 0, {0, 0, 8, 2}}, {1, 1}, {0x10, 0x14}, {0xFF}),
                 FrameBytes({-2, 1, 50, 3, -3, {0, 0, 4, 1}}, {1}, {0}, {0x00}), Still(1, 1, 50, 4, 1)}),
       "6");
  EXPECT_EQ(
      AsText(folder.Read("out/ticks.jsonl")),
      R"({"tick":0,"painted":true,"delay":41,"ticks":2,"nextTime":2,"viewLeft":0,"viewTop":0,"viewport":[0,0,4,1]})"
      "\n"
      R"({"tick":1,"painted":false,"delay":41,"ticks":1,"nextTime":-2,"viewLeft":0,"viewTop":0,"viewport":[0,0,4,1]})"
      "\n"
      R"({"tick":2,"painted":true,"delay":41,"ticks":-2,"nextTime":-2,"viewLeft":0,"viewTop":0,"viewport":[1,-1,4,1]})"
      "\n"
      R"({"tick":3,"painted":true,"delay":41,"ticks":-1,"nextTime":1,"viewLeft":0,"viewTop":0,"viewport":[2,-2,4,1]})"
      "\n"
      R"({"tick":4,"painted":true,"delay":41,"ticks":1,"nextTime":2,"viewLeft":0,"viewTop":0,"viewport":[4,1,4,1]})"
      "\n"
      R"({"tick":5,"painted":true,"delay":41,"ticks":2,"nextTime":2,"viewLeft":0,"viewTop":0,"viewport":[0,0,4,1]})"
      "\n");
  EXPECT_EQ(folder.List(),
            "a.ca out out/tick-00000.pgm out/tick-00002.pgm out/tick-00003.pgm out/tick-00004.pgm out/tick-00005.pgm "
            "out/ticks.jsonl");
}

TEST_F(ConsolePlay, PicturesAreBinaryGreyMapsOfTheClientArea) {
  Play(folder, "a.sv",
       Container(6, 3, 4, 1,
                 {CutRecord({"", 4, 1, 4, 1, 10, 4}, {Block(1, 1, 0xE4)}),
                  CutRecord({"", 4, 1, 2, 1, 20, 4}, {Block(1, 1, 0x1B, 50, 1)})}),
       "2");
  EXPECT_EQ(folder.Read("out/tick-00000.pgm"), Map("P5\n6 3\n255\n",
                                                   "00 00 00 00 00 00"
                                                   "00 00 55 AA FF 00"
                                                   "00 00 00 00 00 00"));
  EXPECT_EQ(folder.Read("out/tick-00001.pgm"), Map("P5\n6 3\n255\n",
                                                   "00 00 00 00 00 00"
                                                   "00 00 AA 55 00 00"
                                                   "00 00 00 00 00 00"));
  EXPECT_EQ(
      AsText(folder.Read("out/ticks.jsonl")),
      R"({"tick":0,"painted":true,"delay":100,"ticks":1,"nextTime":1,"viewLeft":1,"viewTop":1,"viewport":[0,0,4,1]})"
      "\n"
      R"({"tick":1,"painted":true,"delay":50,"ticks":1,"nextTime":1,"viewLeft":2,"viewTop":1,"viewport":[1,0,2,1]})"
      "\n");
}

TEST_F(ConsolePlay, PictureAreaMayHaveNoWidth) {
  folder.Write("a.ca", Compiled({"", 4, 1, 0, 1, 24, 4}, {Block(1, 1, 0xE4)}));
  const Answer run = folder.Sorvel({"play", "a.ca", "out", "--ticks", "1"});
  EXPECT_EQ(run.status, 0) << run;
  EXPECT_EQ(folder.Read("out/tick-00000.pgm"), Map("P5\n0 1\n255\n", ""));
}

TEST_F(ConsolePlay, StillHasTickZeroAlone) {
  Play(folder, "a.ca", Compiled({"", 4, 1, 4, 1, 24, 4}, {Block(7, 3, 0xE4)}), "100");
  EXPECT_EQ(
      AsText(folder.Read("out/ticks.jsonl")),
      R"({"tick":0,"painted":true,"delay":0,"ticks":0,"nextTime":7,"viewLeft":0,"viewTop":0,"viewport":[0,0,4,1]})"
      "\n");
  EXPECT_EQ(folder.Read("out/tick-00000.pgm"), Map("P5\n4 1\n255\n", "00 55 AA FF"));
  EXPECT_EQ(folder.List(), "a.ca out out/tick-00000.pgm out/ticks.jsonl");
}

TEST_F(ConsolePlay, TimeZeroEndsWithItsOwnTick) {
  Play(folder, "a.ca", Compiled({}, {Block(2, 1, 0xFF), Block(0, 1, 0x55), Block(1, 1, 0x00)}), "100");
  EXPECT_EQ(
      AsText(folder.Read("out/ticks.jsonl")),
      R"({"tick":0,"painted":true,"delay":41,"ticks":2,"nextTime":2,"viewLeft":0,"viewTop":0,"viewport":[0,0,4,1]})"
      "\n"
      R"({"tick":1,"painted":false,"delay":41,"ticks":1,"nextTime":0,"viewLeft":0,"viewTop":0,"viewport":[0,0,4,1]})"
      "\n"
      R"({"tick":2,"painted":true,"delay":0,"ticks":1,"nextTime":0,"viewLeft":0,"viewTop":0,"viewport":[0,0,4,1]})"
      "\n");
  EXPECT_EQ(folder.Read("out/tick-00002.pgm"), Map("P5\n4 1\n255\n", "55 55 55 55"));
}

TEST_F(ConsolePlay, OneTickIsTheFirstFrame) {
  Play(folder, "a.ca", Compiled({}, {Block(2, 1, 0xFF), Block(1, 1, 0x55)}), "1");
  EXPECT_EQ(folder.List(), "a.ca out out/tick-00000.pgm out/ticks.jsonl");
}

TEST_F(ConsolePlay, NoTicksLeaveAnEmptyLog) {
  Play(folder, "a.ca", Compiled({}, {Block(2, 1, 0xFF), Block(1, 1, 0x55)}), "0");
  EXPECT_EQ(folder.List(), "a.ca out out/ticks.jsonl");
  EXPECT_TRUE(folder.Read("out/ticks.jsonl").empty());
}

TEST_F(ConsolePlay, FolderMayBeThereAlready) {
  folder.MakeFolder("out");
  folder.Write("out/ticks.jsonl", Text("old"));
  folder.Write("out/mine.txt", Text("mine"));
  Play(folder, "a.ca", Compiled({"", 4, 1, 4, 1, 24, 4}, {Block(1, 1, 0)}), "1");
  EXPECT_EQ(folder.Read("out/mine.txt"), Text("mine"));
  EXPECT_EQ(AsText(folder.Read("out/ticks.jsonl")).substr(0, 10), "{\"tick\":0,");
}

TEST_F(ConsolePlay, FileInPlaceOfTheFolderIsNamed) {
  folder.Write("a.ca", Compiled({}, {Block(1, 1, 0)}));
  folder.Write("out", Text("mine"));
  const Answer run = folder.Sorvel({"play", "a.ca", "out", "--ticks", "1"});
  EXPECT_EQ(run.status, 1);
  EXPECT_TRUE(run.IsOneLineAbout("out")) << run;
  EXPECT_EQ(folder.Read("out"), Text("mine"));
}

}  // namespace
}  // namespace sorvel
