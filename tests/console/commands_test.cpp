#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "support/test_scripts.h"
#include "support/test_streams.h"

namespace sorvel {
namespace {

using namespace teststreams;
using Json = nlohmann::json;

using Words = std::vector<std::string>;

class Console : public testing::Test {
 protected:
  // Runs the program, which has nothing to say on standard error.
  std::string Run(const Words& words) const {
    const Answer run = folder.Sorvel(words);
    EXPECT_EQ(run.status, 0) << run;
    EXPECT_EQ(run.err, "");
    return run.out;
  }

  // Runs it with a failure about this name. Nothing comes or goes in the folder.
  void ExpectFailure(const Words& words, const std::string& name, int status = 1) const {
    SCOPED_TRACE(testing::PrintToString(words));
    const std::string before = folder.List();
    const Answer run = folder.Sorvel(words);
    EXPECT_EQ(run.status, status) << run;
    EXPECT_EQ(run.out, "");
    EXPECT_TRUE(run.IsOneLineAbout(name)) << run;
    EXPECT_EQ(folder.List(), before);
  }

  Json Info(const std::string& name) const { return Json::parse(Run({"info", name}), nullptr, false); }

  const Folder folder;
};

Bytes Film(const std::string& lines) {
  return Bytes(lines.begin(), lines.end());
}

const Words kCommands = {"info", "resave", "compile", "export", "frame",   "view",
                         "play", "render", "web",     "import", "history", "sheet"};

// Help and usage.

TEST_F(Console, HelpNamesEveryCommand) {
  const std::string help = Run({"--help"});
  for (const std::string& command : kCommands) EXPECT_NE(help.find("sorvel " + command), std::string::npos) << command;
}

TEST_F(Console, VersionAnswersInOneLine) {
  EXPECT_EQ(Run({"--version"}), "sorvel 1.0\n");
}

TEST_F(Console, EveryCommandHasHelp) {
  for (const std::string& command : kCommands) EXPECT_NE(Run({command, "--help"}).find(command), std::string::npos);
}

TEST_F(Console, CommandsThatShareTheirWorkTakeANumberOfThreads) {
  folder.Write("a.cut", SmallCutFile());
  folder.Write("a.ca", SmallCutCompiled());
  const std::string info = Run({"info", "a.cut"});
  for (const std::string threads : {"1", "2", "64"}) EXPECT_EQ(Run({"info", "a.cut", "--threads", threads}), info);
  for (const std::string threads : {"0", "65", "-1", "two"}) {
    const Answer run = folder.Sorvel({"info", "a.cut", "--threads", threads});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.err, "sorvel: option --threads takes a number from 1 to 64\n");
  }
  EXPECT_EQ(folder.Sorvel({"play", "a.ca", "out", "--ticks", "1", "--threads", "2"}).status, 2);
  for (const std::string& command : kCommands) {
    const bool shares = command != "play" && command != "history";
    EXPECT_EQ(Run({command, "--help"}).find("  --threads N  ") != std::string::npos, shares) << command;
  }
}

TEST_F(Console, WrongUsageIsStatusTwo) {
  folder.Write("a.cut", SmallCutFile());
  folder.Write("a.ca", SmallCutCompiled());
  const Words cases[] = {{},
                         {"nonsense"},
                         {"--nonsense"},
                         {"info"},
                         {"info", "a.cut", "a.cut"},
                         {"info", "--nonsense", "a.cut"},
                         {"resave", "a.cut"},
                         {"resave", "a.cut", "b.cut", "c.cut"},
                         {"compile", "a.cut"},
                         {"compile", "a.cut", "b.ca", "--first"},
                         {"compile", "a.cut", "b.ca", "--first", "one"},
                         {"compile", "a.cut", "b.ca", "--last", ""},
                         {"compile", "a.cut", "b.ca", "--last", "2x"},
                         {"export", "a.flm"},
                         {"frame", "a.cut", "1"},
                         {"frame", "a.cut", "one", "b.bmp"},
                         {"view", "a.cut", "1"},
                         {"view", "a.cut", "1", "b.bmp", "--record"},
                         {"view", "a.cut", "1", "b.bmp", "--record", "top"},
                         {"view", "a.cut", "1", "b.bmp", "--draw-limit", "-"},
                         {"view", "a.cut", "1", "b.bmp", "--onion"},
                         {"play", "a.ca", "out"},
                         {"play", "a.ca", "--ticks", "3"},
                         {"play", "a.ca", "out", "--ticks"},
                         {"play", "a.ca", "out", "--ticks", "many"},
                         {"play", "a.ca", "out", "--ticks", "-1"},
                         {"import", "b.cut"},
                         {"import"}};
  for (const Words& words : cases) ExpectFailure(words, "", 2);
}

// Files that aren't there, aren't files or are of another kind.

// Commands of which the first file, by its kind, can't be read.
const struct {
  const char* extension;
  Words words;  // * is the file
} kReadings[] = {
    {".cut", {"info", "*"}},
    {".lyr", {"info", "*"}},
    {".flm", {"info", "*"}},
    {".ca", {"info", "*"}},
    {".sv", {"info", "*"}},
    {".cut", {"resave", "*", "out.cut"}},
    {".lyr", {"resave", "*", "out.cut"}},
    {".flm", {"resave", "*", "out.cut"}},
    {".cut", {"compile", "*", "out.ca"}},
    {".flm", {"export", "*", "out.sv"}},
    {".cut", {"frame", "*", "1", "out.bmp"}},
    {".cut", {"view", "*", "1", "out.bmp"}},
    {".ca", {"play", "*", "out", "--ticks", "3"}},
    {".sv", {"play", "*", "out", "--ticks", "3"}},
    {".png", {"import", "out.cut", "*"}},
};

class ConsoleReading : public Console {
 protected:
  // Makes a file of each kind and expects every command that reads it to name it. Any text is a film.
  void ExpectUnreadable(const std::string& folderName, bool filmsToo, const std::function<void(const char*)>& make) {
    const std::string bare = folderName + "a";
    for (const char* extension : {".cut", ".lyr", ".flm", ".ca", ".sv", ".png"}) make((bare + extension).c_str());
    for (const auto& reading : kReadings) {
      if (!filmsToo && std::string(reading.extension) == ".flm") continue;
      Words words = reading.words;
      std::replace(words.begin(), words.end(), std::string("*"), bare + reading.extension);
      ExpectFailure(words, bare + reading.extension);
    }
  }
};

TEST_F(ConsoleReading, MissingFilesAreNamed) {
  ExpectUnreadable("", true, [](const char*) {});
  ExpectUnreadable(folder.Path(""), true, [](const char*) {});
}

TEST_F(ConsoleReading, FoldersAreNoFiles) {
  ExpectUnreadable("", true, [this](const char* name) { folder.MakeFolder(name); });
}

TEST_F(ConsoleReading, ForeignFilesAreRefused) {
  ExpectUnreadable("", false, [this](const char* name) { folder.Write(name, Text("something else")); });
}

TEST_F(ConsoleReading, EmptyFilesAreRefused) {
  ExpectUnreadable("", false, [this](const char* name) { folder.Write(name, {}); });
}

TEST_F(Console, UnknownKindsOfFilesAreRefused) {
  folder.Write("a.txt", SmallCutFile());
  ExpectFailure({"info", "a.txt"}, "a.txt");
  ExpectFailure({"resave", "a.txt", "b.cut"}, "a.txt");
}

TEST_F(Console, OutputThatCantBeWrittenIsNamed) {
  folder.Write("a.cut", SmallCutFile());
  folder.Write("a.ca", SmallCutCompiled());
  folder.Write("f.flm", Film("\n\n320, 240\na.cut\n"));
  ExpectFailure({"resave", "a.cut", "no/b.cut"}, "no/b.cut");
  ExpectFailure({"compile", "a.cut", "no/b.ca"}, "no/b.ca");
  ExpectFailure({"export", "f.flm", "no/b.sv"}, "no/b.sv");
  ExpectFailure({"frame", "a.cut", "1", "no/b.bmp"}, "no/b.bmp");
  ExpectFailure({"view", "a.cut", "1", "no/b.bmp"}, "no/b.bmp");
  ExpectFailure({"play", "a.ca", "a.cut/out", "--ticks", "1"}, "a.cut/out");
}

TEST_F(Console, OutputThatIsAFolderIsNamed) {
  folder.Write("a.cut", SmallCutFile());
  folder.MakeFolder("d");
  ExpectFailure({"resave", "a.cut", "d"}, "d");
  ExpectFailure({"compile", "a.cut", "d"}, "d");
  ExpectFailure({"frame", "a.cut", "1", "d"}, "d");
  ExpectFailure({"view", "a.cut", "1", "d"}, "d");
}

// info.

TEST_F(Console, InfoOfACut) {
  folder.Write("a.cut",
               CutFile(4, 2, "\x95\x5C",
                       {LayerBlock("\x83\x5C", {Hex("12 34 41 00"), Hex("50 00 00 06")}, 1),
                        LayerBlock("", {Hex("10 00 00 00")})},
                       {FrameRecordBytes(-3, 4, -5, 40000, -51, "\x95\x5C\x8E\xA6", {{0, -1, 7, 1}, {0, 2, 3, -2}}),
                        FrameRecordBytes(0, 0, 1, 1, 50, "", {})},
                       2, 200));
  const Json info = Info("a.cut");
  const Json frames = Json::parse(R"([
      {"time": -5, "loop": 40000, "x": -3, "y": 4, "brightness": -51, "comment": "表示",
       "records": [{"layer": 0, "cell": 1, "x": -1, "y": 7}, {"layer": 0, "cell": -2, "x": 2, "y": 3}]},
      {"time": 1, "loop": 1, "x": 0, "y": 0, "brightness": 50, "comment": "", "records": []}])");
  const Json cells = {ZipChecksum(Hex("12 34 00 00 41 00 00 00")), ZipChecksum(Hex("50 00 00 00 00 06 00 00"))};
  EXPECT_EQ(info["frames"], frames);
  ASSERT_EQ(info["layers"].size(), 2u);
  EXPECT_EQ(info["layers"][0],
            Json({{"name", "ソ"}, {"width", 4}, {"height", 2}, {"followFrame", 1}, {"cells", cells}}));
  Json head = info;
  head.erase("frames");
  head.erase("layers");
  EXPECT_EQ(head, Json::parse(R"({"kind": "cut", "width": 4, "height": 2, "frameWidth": 4, "frameHeight": 2,
                                  "fps": 200, "credit": "表", "antialias": 2})"));
}

TEST_F(Console, InfoOfALayer) {
  folder.Write("a.lyr", Join({Text("Sorvelin Layer"), LayerBlock("\x95\x5C", {Hex("12 34 41 00")}, 1)}));
  const std::string text = Info("a.lyr").dump();
  EXPECT_NE(text.find("\"表\""), std::string::npos) << text;
  EXPECT_NE(text.find(ZipChecksum(Hex("12 34 00 00 41 00 00 00"))), std::string::npos) << text;
  EXPECT_NE(text.find("\"layer\""), std::string::npos) << text;
}

TEST_F(Console, InfoOfAFilm) {
  folder.Write("f.flm", Film("\x95\x5C\n\x8D\xEC\n640, 480\ncuts/a.cut\n"));
  const Json info = Info("f.flm");
  EXPECT_EQ(info["kind"], "film");
  EXPECT_EQ(info["title"], "表");
  EXPECT_EQ(info["author"], "作");
  EXPECT_EQ(info["width"], 640);
  EXPECT_EQ(info["height"], 480);
  ASSERT_EQ(info["cuts"].size(), 1u);
  EXPECT_NE(info["cuts"][0].dump().find("/cuts/a.cut"), std::string::npos);
}

TEST_F(Console, InfoOfACompiledStream) {
  folder.Write("a.ca", Compiled({"\x95\x5C", 4, 1, 4, 1, 30, 4}, {Block(2, 3, 0x1B, 60, -1, 2), Still(-4, 0, 7)}));
  const Json info = Info("a.ca");
  EXPECT_EQ(info, Json::parse(R"({
      "kind": "stream", "size": 72, "offset": 6, "credit": "表", "width": 4, "height": 1, "frameWidth": 4,
      "frameHeight": 1, "fps": 30, "levels": 4,
      "frames": [{"time": 2, "loop": 3, "brightness": 60, "x": -1, "y": 2, "box": [0, 0, 4, 1],
                  "mapSize": 1, "codeSize": 1, "literalSize": 1},
                 {"time": -4, "loop": 0, "brightness": 7, "x": 0, "y": 0, "box": [0, 0, 0, 0],
                  "mapSize": 0, "codeSize": 0, "literalSize": 0}]})"));
}

TEST_F(Console, InfoOfAContainer) {
  folder.Write("a.sv",
               Container(320, 240, 4, 1, {CutRecord({"\x83\x5C"}, {Block(1, 1, 0)}), CutRecord({}, {Block(2, 1, 0)})},
                         "\x95\x5C", "me"));
  const Json info = Info("a.sv");
  EXPECT_EQ(info["kind"], "container");
  EXPECT_EQ(info["title"], "表");
  EXPECT_EQ(info["author"], "me");
  EXPECT_EQ(info["width"], 320);
  EXPECT_EQ(info["maxWidth"], 4);
  EXPECT_EQ(info["offsets"], Json::parse("[30,71]"));
  ASSERT_EQ(info["cuts"].size(), 2u);
  EXPECT_EQ(info["cuts"][0]["credit"], "ソ");
  EXPECT_EQ(info["cuts"][1]["offset"], 71);
}

TEST_F(Console, ExtensionsMayBeInUpperCase) {
  folder.Write("A.CUT", SmallCutFile());
  EXPECT_EQ(Info("A.CUT")["kind"], "cut");
}

TEST_F(Console, WordsBehindTwoDashesAreNames) {
  folder.Write("--a.cut", SmallCutFile());
  Run({"info", "--", "--a.cut"});
}

// resave.

TEST_F(Console, ResavedCutIsTheSame) {
  const Bytes cut = CutFile(
      4, 2, "credit",
      {LayerBlock("A", {Hex("12 34 41 00"), Hex("50 00 00 06")}, 1), LayerBlock("unused", {Hex("11 11 22 22")})},
      {FrameRecordBytes(-3, 4, -5, 40000, -51, "note", {{0, -1, 7, 1}, {0, 2, 3, -2}}),
       FrameRecordBytes(0, 0, 0, 0, 0, "", {})},
      1, 12);
  folder.Write("a.cut", cut);
  Run({"resave", "a.cut", "b.cut"});
  EXPECT_EQ(folder.Read("b.cut"), cut);
  EXPECT_EQ(folder.Read("a.cut"), cut);
  EXPECT_EQ(folder.List(), "a.cut b.cut");
}

TEST_F(Console, ResavedLayerIsTheSame) {
  const Bytes layer =
      Join({Text("Sorvelin Layer"), LayerBlock("\x95\x5C", {Hex("12 34 41 00"), Hex("50 00 00 06")}, 1)});
  folder.Write("a.lyr", layer);
  Run({"resave", "a.lyr", "b.lyr"});
  EXPECT_EQ(folder.Read("b.lyr"), layer);
}

TEST_F(Console, ResavedFilmHasItsPathsFromItsNewPlace) {
  folder.MakeFolder("new");
  folder.Write("f.flm", Film("\x95\x5C\nauthor\n320, 240\na.cut\n\ncuts/b.cut\n../c.cut"));
  Run({"resave", "f.flm", "new/g.flm"});
  EXPECT_EQ(folder.Read("new/g.flm"), Film("\x95\x5C\nauthor\n320, 240\n../a.cut\n../cuts/b.cut\n../../c.cut\n"));
}

TEST_F(Console, ResaveMayWriteOverItsOwnFile) {
  folder.Write("a.cut", SmallCutFile());
  Run({"resave", "a.cut", "a.cut"});
  EXPECT_EQ(folder.Read("a.cut"), SmallCutFile());
  folder.Write("f.flm", Film("t\na\n320, 240\na.cut\n"));
  Run({"resave", "f.flm", "f.flm"});
  EXPECT_EQ(folder.Read("f.flm"), Film("t\na\n320, 240\na.cut\n"));
  EXPECT_EQ(folder.List(), "a.cut f.flm");
}

TEST_F(Console, OutputReplacesAFile) {
  folder.Write("a.cut", SmallCutFile());
  folder.Write("b.ca", Bytes(10000, 'x'));
  Run({"compile", "a.cut", "b.ca"});
  EXPECT_EQ(folder.Read("b.ca"), SmallCutCompiled());
  EXPECT_EQ(folder.List(), "a.cut b.ca");
}

TEST_F(Console, OutputMayTakeThePlaceOfTheInput) {
  folder.Write("a.cut", SmallCutFile());
  Run({"compile", "a.cut", "a.cut"});
  EXPECT_EQ(folder.Read("a.cut"), SmallCutCompiled());
  folder.Write("f.flm", Film("\n\n8, 8\nb.cut\n"));
  folder.Write("b.ca", SmallCutCompiled());
  Run({"export", "f.flm", "f.flm"});
  EXPECT_EQ(folder.Read("f.flm"), Container(8, 8, 4, 2, {From(SmallCutCompiled(), 6)}));
  EXPECT_EQ(folder.List(), "a.cut b.ca f.flm");
}

TEST_F(Console, ExportReplacesAFile) {
  folder.Write("f.flm", Film("\n\n8, 8\na.cut\n"));
  folder.Write("a.ca", SmallCutCompiled());
  folder.Write("f.sv", Bytes(10000, 'x'));
  Run({"export", "f.flm", "f.sv"});
  EXPECT_EQ(folder.Read("f.sv"), Container(8, 8, 4, 2, {From(SmallCutCompiled(), 6)}));
}

// compile.

TEST_F(Console, CompileTakesAllFrames) {
  folder.Write("a.cut", SmallCutFile());
  Run({"compile", "a.cut", "a.ca"});
  EXPECT_EQ(folder.Read("a.ca"), SmallCutCompiled());
}

TEST_F(Console, CompileCountsFramesFromOne) {
  folder.Write("a.cut", SmallCutFile());
  Run({"compile", "a.cut", "first.ca", "--last", "1"});
  Run({"compile", "--first", "2", "a.cut", "second.ca"});
  Run({"compile", "a.cut", "both.ca", "--first", "1", "--last", "2"});
  EXPECT_EQ(folder.Read("both.ca"), SmallCutCompiled());
  EXPECT_EQ(folder.Read("first.ca"), Hex("43 41  2F 00 00 00  00  04 00  02 00  04 00  02 00  18  03"
                                         "01 00  01 00  32  00 00  00 00  00 00  00 00  04 00  02 00  01 00 00 00"
                                         "02 00 00 00  01 00  00  E4 F3"));
  EXPECT_EQ(folder.Read("second.ca"), Hex("43 41  2F 00 00 00  00  04 00  02 00  04 00  02 00  18  03"
                                          "02 00  01 00  32  00 00  00 00  00 00  00 00  04 00  02 00  01 00 00 00"
                                          "02 00 00 00  01 00  00  E4 C6"));
}

TEST_F(Console, RangesThatTheCutDoesntHaveAreRefused) {
  folder.Write("a.cut", SmallCutFile());
  ExpectFailure({"compile", "a.cut", "b.ca", "--first", "0"}, "a.cut");
  ExpectFailure({"compile", "a.cut", "b.ca", "--first", "3"}, "a.cut");
  ExpectFailure({"compile", "a.cut", "b.ca", "--last", "3"}, "a.cut");
  ExpectFailure({"compile", "a.cut", "b.ca", "--first", "2", "--last", "1"}, "a.cut");
}

TEST_F(Console, CutWithoutFramesCantBeCompiled) {
  folder.Write("a.cut", CutFile(4, 2, "", {}, {}));
  ExpectFailure({"compile", "a.cut", "b.ca"}, "a.cut");
}

// frame.

TEST_F(Console, FrameIsAFourBitBitmapWithoutPadding) {
  folder.Write("a.cut", SmallCutFile());
  Run({"frame", "a.cut", "2", "b.bmp"});
  const Bytes bitmap = folder.Read("b.bmp");
  ASSERT_EQ(bitmap.size(), 118u + 4);
  EXPECT_EQ(Part(bitmap, 0, 54), Hex("42 4D  7E 00 00 00  00 00 00 00  76 00 00 00"
                                     "28 00 00 00  04 00 00 00  02 00 00 00  01 00  04 00  00 00 00 00"
                                     "00 00 00 00  00 00 00 00  00 00 00 00  10 00 00 00  00 00 00 00"));
  EXPECT_EQ(Part(bitmap, 54, 52), Hex("00 00 00 00  55 55 55 00  AA AA AA 00  FF FF FF 00"
                                      "55 55 55 00  6B 6B 6B 00  80 80 80 00  95 95 95 00  AA AA AA 00"
                                      "C0 C0 C0 00  D5 D5 D5 00  EA EA EA 00  FF FF FF 00"));
  EXPECT_EQ(From(bitmap, 118), Hex("21 03 01 23"));
}

TEST_F(Console, FramesThatTheCutDoesntHaveAreRefused) {
  folder.Write("a.cut", SmallCutFile());
  for (const char* number : {"0", "3", "100000"}) {
    ExpectFailure({"frame", "a.cut", number, "b.bmp"}, "a.cut");
    ExpectFailure({"view", "a.cut", number, "b.bmp"}, "a.cut");
  }
}

// view.

// The cut has two layers, A with three cells and B with one on top, and one frame with A's second cell.
Bytes ViewCut() {
  return CutFile(4, 2, "",
                 {LayerBlock("A", {Hex("10 00 00 00"), Hex("02 00 30 00"), Hex("00 38 00 00")}),
                  LayerBlock("B", {Hex("00 00 00 01")})},
                 {FrameRecordBytes(0, 0, 1, 1, 50, "", {{0, 0, 0, 1}, {1, 0, 0, 0}})});
}

// The two rows of pixels, the upper one first.
Bytes ViewPixels(const Words& options) {
  const Folder folder;
  folder.Write("a.cut", ViewCut());
  Words words = {"view", "a.cut", "1", "b.bmp"};
  words.insert(words.end(), options.begin(), options.end());
  const Answer run = folder.Sorvel(words);
  EXPECT_EQ(run.status, 0) << run;
  const Bytes bitmap = folder.Read("b.bmp");
  if (bitmap.size() != 158 + 8) return {};
  return Join({Part(bitmap, 162, 4), Part(bitmap, 158, 4)});
}

TEST_F(Console, ViewIsAnEightBitBitmapWithTheColoursOfTheRoles) {
  folder.Write("a.cut", ViewCut());
  Run({"view", "a.cut", "1", "b.bmp"});
  const Bytes bitmap = folder.Read("b.bmp");
  ASSERT_EQ(bitmap.size(), 166u);
  EXPECT_EQ(Part(bitmap, 0, 2), Hex("42 4D"));
  EXPECT_EQ(U32At(bitmap, 2), 166u);
  EXPECT_EQ(U32At(bitmap, 6), 0u);
  EXPECT_EQ(U32At(bitmap, 10), 158u);
  EXPECT_EQ(Part(bitmap, 14, 20), Hex("28 00 00 00  04 00 00 00  02 00 00 00  01 00  08 00  00 00 00 00"));
  EXPECT_EQ(U32At(bitmap, 46), 26u);
  EXPECT_EQ(Part(bitmap, 54, 104),
            Hex("FF FF E1 00  00 00 00 00  55 55 55 00  AA AA AA 00  FF FF FF 00  BF 8F 8F 00  D9 AD AD 00"
                "F2 CE CE 00  00 00 00 00  55 55 55 00  AA AA AA 00  66 FF FF 00  53 D0 D0 00  2D 70 70 00"
                "1A 40 40 00  00 00 FF 00  BF BF 8F 00  D9 D9 AD 00  F2 F2 CE 00  8F BF 8F 00  AD D9 AD 00"
                "CE F2 CE 00  8F 8F BF 00  AD AD D9 00  CE CE F2 00  00 00 00 00"));
  EXPECT_EQ(From(bitmap, 158), Hex("03 00 00 01  00 02 00 00"));
}

TEST_F(Console, ViewPadsItsRows) {
  folder.Write("a.cut", CutFile(5, 2, "", {LayerBlock("A", {Hex("12 34 43 21")})},
                                {FrameRecordBytes(0, 0, 1, 1, 50, "", {{0, 1, 0, 0}})}));
  Run({"view", "a.cut", "1", "b.bmp"});
  const Bytes bitmap = folder.Read("b.bmp");
  ASSERT_EQ(bitmap.size(), 158u + 16);
  EXPECT_EQ(U32At(bitmap, 2), 174u);
  EXPECT_EQ(Part(bitmap, 158, 5), Hex("00 04 03 02 01"));
  EXPECT_EQ(Part(bitmap, 166, 5), Hex("00 01 02 03 04"));
}

TEST_F(Console, EachOptionOfTheViewShowsItsPixels) {
  const struct {
    const char* name;
    Words options;
    const char* pixels;
  } rows[] = {
      {"ViewShowsAllLayers", {}, "00 02 00 00  03 00 00 01"},
      {"ViewOfTheCellsAroundTheCurrentOne", {"--record", "0", "--onion-previous"}, "13 02 00 00  03 00 00 01"},
      {"ViewOfTheCellsAroundTheCurrentOne", {"--record", "0", "--onion-next"}, "00 02 18 16  03 00 00 01"},
      {"ViewOfTheCellsAroundTheCurrentOne",
       {"--record", "0", "--onion-next", "--onion-previous"},
       "13 02 18 16  03 00 00 01"},
      // The topmost record's layer has one cell, which is its own neighbour.
      {"ViewWithoutARecordHasTheTopmostCurrent", {"--onion-previous"}, "00 02 00 00  03 00 00 01"},
      {"ViewWithoutARecordHasTheTopmostCurrent", {"--current-cell-only"}, "00 00 00 00  00 00 00 01"},
      {"ViewOfTheCurrentCellOnly", {"--record", "0", "--current-cell-only"}, "00 02 00 00  03 00 00 00"},
      {"ViewWithOtherLayersPale", {"--record", "0", "--dim-others"}, "00 02 00 00  03 00 00 10"},
      {"ViewWithOtherLayersPale", {"--record", "1", "--dim-others"}, "00 11 00 00  12 00 00 01"},
      {"ViewOfTheLowestRecords", {"--draw-limit", "1"}, "00 02 00 00  03 00 00 00"},
      {"ViewOfTheLowestRecords", {"--draw-limit", "2"}, "00 02 00 00  03 00 00 01"},
      {"ViewOfTheLowestRecords", {"--draw-limit", "0"}, "00 02 00 00  03 00 00 01"},
      {"ViewOfTheLowestRecords", {"--draw-limit", "63"}, "00 02 00 00  03 00 00 01"},
  };
  for (const auto& row : rows) EXPECT_EQ(ViewPixels(row.options), Hex(row.pixels)) << row.name;
}

TEST_F(Console, RecordThatTheFrameDoesntHaveIsRefused) {
  folder.Write("a.cut", ViewCut());
  const Answer run = folder.Sorvel({"view", "a.cut", "1", "b.bmp", "--record", "2"});
  EXPECT_NE(run.status, 0);
  EXPECT_TRUE(run.IsOneLineAbout("")) << run;
  EXPECT_FALSE(folder.Has("b.bmp"));
}

// export.

TEST_F(Console, ExportedFilmByteByByte) {
  folder.Write("a.cut", SmallCutFile());
  folder.Write("f.flm", Film("\x95\x5C\nme\n320, 240\na.cut\na.cut\n"));
  Run({"export", "f.flm", "f.sv"});
  const Bytes record = From(SmallCutCompiled(), 6);
  // 6 + 3 + 3 + 10 + 8 = 30; a record is the stream without its first 6 bytes.
  EXPECT_EQ(folder.Read("f.sv"), Join({Hex("53 56"), Le32(static_cast<uint32_t>(30 + 2 * record.size())),
                                       Hex("95 5C 00  6D 65 00  40 01  F0 00  04 00  02 00  02 00  1E 00 00 00"),
                                       Le32(static_cast<uint32_t>(30 + record.size())), record, record}));
  EXPECT_EQ(folder.Read("a.ca"), SmallCutCompiled()) << "the cut is compiled beside its file";
  EXPECT_EQ(folder.List(), "a.ca a.cut f.flm f.sv");
}

TEST_F(Console, ExportTakesACompiledStreamAsItIs) {
  folder.Write("a.cut", SmallCutFile());
  const Bytes stale = Compiled({"old"}, {Block(9, 1, 0x1B)});
  folder.Write("a.ca", stale);
  folder.Write("f.flm", Film("\n\n8, 8\na.cut\n"));
  Run({"export", "f.flm", "f.sv"});
  EXPECT_EQ(folder.Read("f.sv"), Container(8, 8, 4, 1, {From(stale, 6)}));
  EXPECT_EQ(folder.Read("a.ca"), stale);
}

TEST_F(Console, CompiledStreamIsEnoughForAnExport) {
  folder.Write("a.ca", SmallCutCompiled());
  folder.Write("f.flm", Film("\n\n8, 8\na.cut\n"));
  Run({"export", "f.flm", "f.sv"});
  EXPECT_EQ(folder.Read("f.sv"), Container(8, 8, 4, 2, {From(SmallCutCompiled(), 6)}));
}

TEST_F(Console, CutsOfAFilmLieInOtherFoldersToo) {
  folder.MakeFolder("films");
  folder.MakeFolder("films/inner");
  folder.MakeFolder("cuts");
  folder.Write("films/inner/a.cut", SmallCutFile());
  folder.Write("cuts/b.cut", SmallCutFile());
  folder.Write("c.cut", SmallCutFile());
  folder.Write("films/f.flm", Film("\n\n8, 8\ninner/a.cut\n../cuts/b.cut\n../c.cut\n"));
  Run({"export", "films/f.flm", "f.sv"});
  const Bytes record = From(SmallCutCompiled(), 6);
  EXPECT_EQ(folder.Read("f.sv"), Container(8, 8, 4, 2, {record, record, record}));
  EXPECT_EQ(folder.List(),
            "c.ca c.cut cuts cuts/b.ca cuts/b.cut f.sv films films/f.flm films/inner films/inner/a.ca "
            "films/inner/a.cut");
}

TEST_F(Console, FilmIsFoundFromAnyFolder) {
  folder.MakeFolder("films");
  folder.Write("films/a.cut", SmallCutFile());
  folder.Write("films/f.flm", Film("\n\n8, 8\na.cut\n"));
  Run({"export", folder.Path("films/f.flm"), folder.Path("f.sv")});
  Run({"export", "./films/../films/f.flm", "g.sv"});
  EXPECT_EQ(folder.Read("f.sv"), folder.Read("g.sv"));
  EXPECT_FALSE(folder.Read("f.sv").empty());
}

TEST_F(Console, FilmWithoutCutsIsntExported) {
  folder.Write("f.flm", Film("t\na\n320, 240\n"));
  ExpectFailure({"export", "f.flm", "f.sv"}, "f.flm");
}

TEST_F(Console, FilmWithACutThatIsMissingIsntExported) {
  folder.Write("a.cut", SmallCutFile());
  folder.Write("f.flm", Film("t\na\n320, 240\na.cut\ngone.cut\n"));
  ExpectFailure({"export", "f.flm", "f.sv"}, "gone.cut");
}

TEST_F(Console, FilmWithAForeignCutIsntExported) {
  folder.Write("b.cut", Text("something else"));
  folder.Write("f.flm", Film("t\na\n320, 240\nb.cut\n"));
  ExpectFailure({"export", "f.flm", "f.sv"}, "b.cut");
}

}  // namespace
}  // namespace sorvel
