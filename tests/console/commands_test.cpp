#include <gtest/gtest.h>

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "support/test_streams.h"

namespace sorvel {
namespace {

using namespace teststreams;
using Json = nlohmann::json;

using Words = std::vector<std::string>;

std::string Checksum(const Bytes& bytes) {
  uint32_t crc = 0xFFFFFFFF;
  for (uint8_t byte : bytes) {
    crc ^= byte;
    for (int i = 0; i < 8; ++i) crc = (crc & 1) != 0 ? crc >> 1 ^ 0xEDB88320 : crc >> 1;
  }
  char text[9];
  std::snprintf(text, sizeof text, "%08x", ~crc);
  return text;
}

Json Info(const Folder& folder, const std::string& name) {
  const Answer run = folder.Sorvel({"info", name});
  EXPECT_EQ(run.status, 0) << run;
  EXPECT_EQ(run.err, "");
  return Json::parse(run.out, nullptr, false);
}

Bytes Film(const std::string& lines) {
  return Bytes(lines.begin(), lines.end());
}

// Help and usage.

TEST(Console, HelpNamesEveryCommand) {
  const Folder folder;
  const Answer run = folder.Sorvel({"--help"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "");
  for (const char* command : {"info", "resave", "compile", "export", "frame", "view", "play", "import"}) {
    EXPECT_NE(run.out.find(std::string("sorvel ") + command), std::string::npos) << command;
  }
}

TEST(Console, VersionAnswersInOneLine) {
  const Folder folder;
  const Answer run = folder.Sorvel({"--version"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out, "sorvel 1.0\n");
}

TEST(Console, EveryCommandHasHelp) {
  const Folder folder;
  for (const char* command : {"info", "resave", "compile", "export", "frame", "view", "play", "import"}) {
    const Answer run = folder.Sorvel({command, "--help"});
    EXPECT_EQ(run.status, 0) << command;
    EXPECT_NE(run.out.find(command), std::string::npos);
    EXPECT_EQ(run.err, "");
  }
}

TEST(Console, WrongUsageIsStatusTwo) {
  const Folder folder;
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
  for (const Words& words : cases) {
    std::string line;
    for (const std::string& word : words) line += word + " ";
    SCOPED_TRACE(line);
    const Answer run = folder.Sorvel(words);
    EXPECT_EQ(run.status, 2) << run;
    EXPECT_EQ(run.out, "");
    EXPECT_TRUE(run.IsOneLineAbout("")) << run;
  }
  EXPECT_EQ(folder.List(), "a.ca a.cut");
}

// Files that aren't there, aren't files or are of another kind.

void ExpectFailure(const Folder& folder, const Words& words, const std::string& name) {
  std::string line;
  for (const std::string& word : words) line += word + " ";
  SCOPED_TRACE(line);
  const std::string before = folder.List();
  const Answer run = folder.Sorvel(words);
  EXPECT_EQ(run.status, 1) << run;
  EXPECT_EQ(run.out, "");
  EXPECT_TRUE(run.IsOneLineAbout(name)) << run;
  EXPECT_EQ(folder.List(), before);
}

TEST(Console, MissingFilesAreNamed) {
  const Folder folder;
  for (const char* name : {"no.cut", "no.lyr", "no.flm", "no.ca", "no.sv"}) {
    ExpectFailure(folder, {"info", name}, name);
    ExpectFailure(folder, {"info", folder.Path(name)}, name);
  }
  for (const char* name : {"no.cut", "no.lyr", "no.flm"}) ExpectFailure(folder, {"resave", name, "out.cut"}, name);
  ExpectFailure(folder, {"compile", "no.cut", "out.ca"}, "no.cut");
  ExpectFailure(folder, {"export", "no.flm", "out.sv"}, "no.flm");
  ExpectFailure(folder, {"frame", "no.cut", "1", "out.bmp"}, "no.cut");
  ExpectFailure(folder, {"view", "no.cut", "1", "out.bmp"}, "no.cut");
  ExpectFailure(folder, {"play", "no.ca", "out", "--ticks", "3"}, "no.ca");
  ExpectFailure(folder, {"play", "no.sv", "out", "--ticks", "3"}, "no.sv");
  ExpectFailure(folder, {"import", "out.cut", "no.png"}, "no.png");
}

TEST(Console, FoldersAreNoFiles) {
  const Folder folder;
  for (const char* name : {"d.cut", "d.lyr", "d.flm", "d.ca", "d.sv", "d.png"}) folder.MakeFolder(name);
  for (const char* name : {"d.cut", "d.lyr", "d.flm", "d.ca", "d.sv"}) ExpectFailure(folder, {"info", name}, name);
  for (const char* name : {"d.cut", "d.lyr", "d.flm"}) ExpectFailure(folder, {"resave", name, "out.cut"}, name);
  ExpectFailure(folder, {"compile", "d.cut", "out.ca"}, "d.cut");
  ExpectFailure(folder, {"export", "d.flm", "out.sv"}, "d.flm");
  ExpectFailure(folder, {"frame", "d.cut", "1", "out.bmp"}, "d.cut");
  ExpectFailure(folder, {"view", "d.cut", "1", "out.bmp"}, "d.cut");
  ExpectFailure(folder, {"play", "d.ca", "out", "--ticks", "3"}, "d.ca");
  ExpectFailure(folder, {"import", "out.cut", "d.png"}, "d.png");
}

TEST(Console, ForeignFilesAreRefused) {
  const Folder folder;
  for (const char* name : {"f.cut", "f.lyr", "f.ca", "f.sv", "f.png"}) folder.Write(name, Text("something else"));
  for (const char* name : {"f.cut", "f.lyr", "f.ca", "f.sv"}) ExpectFailure(folder, {"info", name}, name);
  for (const char* name : {"f.cut", "f.lyr"}) ExpectFailure(folder, {"resave", name, "out.cut"}, name);
  ExpectFailure(folder, {"compile", "f.cut", "out.ca"}, "f.cut");
  ExpectFailure(folder, {"frame", "f.cut", "1", "out.bmp"}, "f.cut");
  ExpectFailure(folder, {"view", "f.cut", "1", "out.bmp"}, "f.cut");
  ExpectFailure(folder, {"play", "f.ca", "out", "--ticks", "3"}, "f.ca");
  ExpectFailure(folder, {"import", "out.cut", "f.png"}, "f.png");
}

TEST(Console, EmptyFilesAreRefused) {
  const Folder folder;
  for (const char* name : {"e.cut", "e.lyr", "e.ca", "e.sv", "e.png"}) folder.Write(name, {});
  for (const char* name : {"e.cut", "e.lyr", "e.ca", "e.sv"}) ExpectFailure(folder, {"info", name}, name);
  ExpectFailure(folder, {"play", "e.ca", "out", "--ticks", "3"}, "e.ca");
  ExpectFailure(folder, {"import", "out.cut", "e.png"}, "e.png");
}

TEST(Console, UnknownKindsOfFilesAreRefused) {
  const Folder folder;
  folder.Write("a.txt", SmallCutFile());
  ExpectFailure(folder, {"info", "a.txt"}, "a.txt");
  ExpectFailure(folder, {"resave", "a.txt", "b.cut"}, "a.txt");
}

TEST(Console, OutputThatCantBeWrittenIsNamed) {
  const Folder folder;
  folder.Write("a.cut", SmallCutFile());
  folder.Write("a.ca", SmallCutCompiled());
  folder.Write("f.flm", Film("\n\n320, 240\na.cut\n"));
  ExpectFailure(folder, {"resave", "a.cut", "no/b.cut"}, "no/b.cut");
  ExpectFailure(folder, {"compile", "a.cut", "no/b.ca"}, "no/b.ca");
  ExpectFailure(folder, {"export", "f.flm", "no/b.sv"}, "no/b.sv");
  ExpectFailure(folder, {"frame", "a.cut", "1", "no/b.bmp"}, "no/b.bmp");
  ExpectFailure(folder, {"view", "a.cut", "1", "no/b.bmp"}, "no/b.bmp");
  ExpectFailure(folder, {"play", "a.ca", "a.cut/out", "--ticks", "1"}, "a.cut/out");
}

TEST(Console, OutputThatIsAFolderIsNamed) {
  const Folder folder;
  folder.Write("a.cut", SmallCutFile());
  folder.MakeFolder("d");
  ExpectFailure(folder, {"resave", "a.cut", "d"}, "d");
  ExpectFailure(folder, {"compile", "a.cut", "d"}, "d");
  ExpectFailure(folder, {"frame", "a.cut", "1", "d"}, "d");
  ExpectFailure(folder, {"view", "a.cut", "1", "d"}, "d");
}

// info.

TEST(Console, InfoOfACut) {
  const Folder folder;
  folder.Write("a.cut",
               CutFile(4, 2, "\x95\x5C",
                       {LayerBlock("\x83\x5C", {Hex("12 34 41 00"), Hex("50 00 00 06")}, 1),
                        LayerBlock("", {Hex("10 00 00 00")})},
                       {FrameRecordBytes(-3, 4, -5, 40000, -51, "\x95\x5C\x8E\xA6", {{0, -1, 7, 1}, {0, 2, 3, -2}}),
                        FrameRecordBytes(0, 0, 1, 1, 50, "", {})},
                       2, 200));
  const Json info = Info(folder, "a.cut");
  ASSERT_TRUE(info.is_object());
  EXPECT_EQ(info["kind"], "cut");
  EXPECT_EQ(info["width"], 4);
  EXPECT_EQ(info["height"], 2);
  EXPECT_EQ(info["frameWidth"], 4);
  EXPECT_EQ(info["frameHeight"], 2);
  EXPECT_EQ(info["fps"], 200);
  EXPECT_EQ(info["credit"], "表");
  EXPECT_EQ(info["antialias"], 2);
  ASSERT_EQ(info["frames"].size(), 2u);
  const Json& frame = info["frames"][0];
  EXPECT_EQ(frame["x"], -3);
  EXPECT_EQ(frame["y"], 4);
  EXPECT_EQ(frame["time"], -5);
  EXPECT_EQ(frame["loop"], 40000);
  EXPECT_EQ(frame["brightness"], -51);
  EXPECT_EQ(frame["comment"], "表示");
  ASSERT_EQ(frame["records"].size(), 2u);
  EXPECT_EQ(frame["records"][0], Json::parse(R"({"layer":0,"cell":1,"x":-1,"y":7})"));
  EXPECT_EQ(frame["records"][1], Json::parse(R"({"layer":0,"cell":-2,"x":2,"y":3})"));
  EXPECT_EQ(info["frames"][1]["records"].size(), 0u);
  ASSERT_EQ(info["layers"].size(), 2u);
  const Json& layer = info["layers"][0];
  EXPECT_EQ(layer["name"], "ソ");
  EXPECT_EQ(layer["width"], 4);
  EXPECT_EQ(layer["height"], 2);
  EXPECT_EQ(layer["followFrame"], 1);
  ASSERT_EQ(layer["cells"].size(), 2u);
  EXPECT_EQ(layer["cells"][0], Checksum(Hex("12 34 00 00 41 00 00 00")));
  EXPECT_EQ(layer["cells"][1], Checksum(Hex("50 00 00 00 00 06 00 00")));
}

TEST(Console, InfoOfALayer) {
  const Folder folder;
  folder.Write("a.lyr", Join({Text("Sorvelin Layer"), LayerBlock("\x95\x5C", {Hex("12 34 41 00")}, 1)}));
  const std::string text = Info(folder, "a.lyr").dump();
  EXPECT_NE(text.find("\"表\""), std::string::npos) << text;
  EXPECT_NE(text.find(Checksum(Hex("12 34 00 00 41 00 00 00"))), std::string::npos) << text;
  EXPECT_NE(text.find("\"layer\""), std::string::npos) << text;
}

TEST(Console, InfoOfAFilm) {
  const Folder folder;
  folder.Write("f.flm", Film("\x95\x5C\n\x8D\xEC\n640, 480\ncuts/a.cut\n"));
  const Json info = Info(folder, "f.flm");
  EXPECT_EQ(info["kind"], "film");
  EXPECT_EQ(info["title"], "表");
  EXPECT_EQ(info["author"], "作");
  EXPECT_EQ(info["width"], 640);
  EXPECT_EQ(info["height"], 480);
  ASSERT_EQ(info["cuts"].size(), 1u);
  EXPECT_NE(info["cuts"][0].dump().find("/cuts/a.cut"), std::string::npos);
}

TEST(Console, InfoOfACompiledStream) {
  const Folder folder;
  folder.Write("a.ca", Compiled({"\x95\x5C", 4, 1, 4, 1, 30, 4}, {Block(2, 3, 0x1B, 60, -1, 2), Still(-4, 0, 7)}));
  const Json info = Info(folder, "a.ca");
  EXPECT_EQ(info["kind"], "stream");
  EXPECT_EQ(info["credit"], "表");
  EXPECT_EQ(info["width"], 4);
  EXPECT_EQ(info["height"], 1);
  EXPECT_EQ(info["fps"], 30);
  EXPECT_EQ(info["levels"], 4);
  ASSERT_EQ(info["frames"].size(), 2u);
  EXPECT_EQ(info["frames"][0]["time"], 2);
  EXPECT_EQ(info["frames"][0]["loop"], 3);
  EXPECT_EQ(info["frames"][0]["brightness"], 60);
  EXPECT_EQ(info["frames"][0]["x"], -1);
  EXPECT_EQ(info["frames"][0]["y"], 2);
  EXPECT_EQ(info["frames"][0]["box"], Json::parse("[0,0,4,1]"));
  EXPECT_EQ(info["frames"][0]["codeSize"], 1);
  EXPECT_EQ(info["frames"][0]["literalSize"], 1);
  EXPECT_EQ(info["frames"][1]["time"], -4);
  EXPECT_EQ(info["frames"][1]["box"], Json::parse("[0,0,0,0]"));
}

TEST(Console, InfoOfAContainer) {
  const Folder folder;
  folder.Write("a.sv",
               Container(320, 240, 4, 1, {CutRecord({"\x83\x5C"}, {Block(1, 1, 0)}), CutRecord({}, {Block(2, 1, 0)})},
                         "\x95\x5C", "me"));
  const Json info = Info(folder, "a.sv");
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

TEST(Console, ExtensionsMayBeInUpperCase) {
  const Folder folder;
  folder.Write("A.CUT", SmallCutFile());
  EXPECT_EQ(Info(folder, "A.CUT")["kind"], "cut");
}

TEST(Console, WordsBehindTwoDashesAreNames) {
  const Folder folder;
  folder.Write("--a.cut", SmallCutFile());
  EXPECT_EQ(folder.Sorvel({"info", "--", "--a.cut"}).status, 0);
}

// resave.

TEST(Console, ResavedCutIsTheSame) {
  const Folder folder;
  const Bytes cut = CutFile(
      4, 2, "credit",
      {LayerBlock("A", {Hex("12 34 41 00"), Hex("50 00 00 06")}, 1), LayerBlock("unused", {Hex("11 11 22 22")})},
      {FrameRecordBytes(-3, 4, -5, 40000, -51, "note", {{0, -1, 7, 1}, {0, 2, 3, -2}}),
       FrameRecordBytes(0, 0, 0, 0, 0, "", {})},
      1, 12);
  folder.Write("a.cut", cut);
  const Answer run = folder.Sorvel({"resave", "a.cut", "b.cut"});
  EXPECT_EQ(run.status, 0) << run;
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(folder.Read("b.cut"), cut);
  EXPECT_EQ(folder.Read("a.cut"), cut);
  EXPECT_EQ(folder.List(), "a.cut b.cut");
}

TEST(Console, ResavedLayerIsTheSame) {
  const Folder folder;
  const Bytes layer =
      Join({Text("Sorvelin Layer"), LayerBlock("\x95\x5C", {Hex("12 34 41 00"), Hex("50 00 00 06")}, 1)});
  folder.Write("a.lyr", layer);
  EXPECT_EQ(folder.Sorvel({"resave", "a.lyr", "b.lyr"}).status, 0);
  EXPECT_EQ(folder.Read("b.lyr"), layer);
}

TEST(Console, ResavedFilmHasItsPathsFromItsNewPlace) {
  const Folder folder;
  folder.MakeFolder("new");
  folder.Write("f.flm", Film("\x95\x5C\nauthor\n320, 240\na.cut\n\ncuts/b.cut\n../c.cut"));
  EXPECT_EQ(folder.Sorvel({"resave", "f.flm", "new/g.flm"}).status, 0);
  EXPECT_EQ(folder.Read("new/g.flm"), Film("\x95\x5C\nauthor\n320, 240\n../a.cut\n../cuts/b.cut\n../../c.cut\n"));
}

TEST(Console, ResaveMayWriteOverItsOwnFile) {
  const Folder folder;
  folder.Write("a.cut", SmallCutFile());
  EXPECT_EQ(folder.Sorvel({"resave", "a.cut", "a.cut"}).status, 0);
  EXPECT_EQ(folder.Read("a.cut"), SmallCutFile());
  folder.Write("f.flm", Film("t\na\n320, 240\na.cut\n"));
  EXPECT_EQ(folder.Sorvel({"resave", "f.flm", "f.flm"}).status, 0);
  EXPECT_EQ(folder.Read("f.flm"), Film("t\na\n320, 240\na.cut\n"));
  EXPECT_EQ(folder.List(), "a.cut f.flm");
}

TEST(Console, OutputReplacesAFile) {
  const Folder folder;
  folder.Write("a.cut", SmallCutFile());
  folder.Write("b.ca", Bytes(10000, 'x'));
  EXPECT_EQ(folder.Sorvel({"compile", "a.cut", "b.ca"}).status, 0);
  EXPECT_EQ(folder.Read("b.ca"), SmallCutCompiled());
  EXPECT_EQ(folder.List(), "a.cut b.ca");
}

TEST(Console, OutputMayTakeThePlaceOfTheInput) {
  const Folder folder;
  folder.Write("a.cut", SmallCutFile());
  EXPECT_EQ(folder.Sorvel({"compile", "a.cut", "a.cut"}).status, 0);
  EXPECT_EQ(folder.Read("a.cut"), SmallCutCompiled());
  folder.Write("f.flm", Film("\n\n8, 8\nb.cut\n"));
  folder.Write("b.ca", SmallCutCompiled());
  EXPECT_EQ(folder.Sorvel({"export", "f.flm", "f.flm"}).status, 0);
  EXPECT_EQ(folder.Read("f.flm"), Container(8, 8, 4, 2, {From(SmallCutCompiled(), 6)}));
  EXPECT_EQ(folder.List(), "a.cut b.ca f.flm");
}

TEST(Console, ExportReplacesAFile) {
  const Folder folder;
  folder.Write("f.flm", Film("\n\n8, 8\na.cut\n"));
  folder.Write("a.ca", SmallCutCompiled());
  folder.Write("f.sv", Bytes(10000, 'x'));
  EXPECT_EQ(folder.Sorvel({"export", "f.flm", "f.sv"}).status, 0);
  EXPECT_EQ(folder.Read("f.sv"), Container(8, 8, 4, 2, {From(SmallCutCompiled(), 6)}));
}

// compile.

TEST(Console, CompileTakesAllFrames) {
  const Folder folder;
  folder.Write("a.cut", SmallCutFile());
  const Answer run = folder.Sorvel({"compile", "a.cut", "a.ca"});
  EXPECT_EQ(run.status, 0) << run;
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(folder.Read("a.ca"), SmallCutCompiled());
}

TEST(Console, CompileCountsFramesFromOne) {
  const Folder folder;
  folder.Write("a.cut", SmallCutFile());
  EXPECT_EQ(folder.Sorvel({"compile", "a.cut", "first.ca", "--last", "1"}).status, 0);
  EXPECT_EQ(folder.Sorvel({"compile", "--first", "2", "a.cut", "second.ca"}).status, 0);
  EXPECT_EQ(folder.Sorvel({"compile", "a.cut", "both.ca", "--first", "1", "--last", "2"}).status, 0);
  EXPECT_EQ(folder.Read("both.ca"), SmallCutCompiled());
  EXPECT_EQ(folder.Read("first.ca"), Hex("43 41  2F 00 00 00  00  04 00  02 00  04 00  02 00  18  03"
                                         "01 00  01 00  32  00 00  00 00  00 00  00 00  04 00  02 00  01 00 00 00"
                                         "02 00 00 00  01 00  00  E4 F3"));
  EXPECT_EQ(folder.Read("second.ca"), Hex("43 41  2F 00 00 00  00  04 00  02 00  04 00  02 00  18  03"
                                          "02 00  01 00  32  00 00  00 00  00 00  00 00  04 00  02 00  01 00 00 00"
                                          "02 00 00 00  01 00  00  E4 C6"));
}

TEST(Console, RangesThatTheCutDoesntHaveAreRefused) {
  const Folder folder;
  folder.Write("a.cut", SmallCutFile());
  ExpectFailure(folder, {"compile", "a.cut", "b.ca", "--first", "0"}, "a.cut");
  ExpectFailure(folder, {"compile", "a.cut", "b.ca", "--first", "3"}, "a.cut");
  ExpectFailure(folder, {"compile", "a.cut", "b.ca", "--last", "3"}, "a.cut");
  ExpectFailure(folder, {"compile", "a.cut", "b.ca", "--first", "2", "--last", "1"}, "a.cut");
}

TEST(Console, CutWithoutFramesCantBeCompiled) {
  const Folder folder;
  folder.Write("a.cut", CutFile(4, 2, "", {}, {}));
  ExpectFailure(folder, {"compile", "a.cut", "b.ca"}, "a.cut");
}

// frame.

TEST(Console, FrameIsAFourBitBitmapWithoutPadding) {
  const Folder folder;
  folder.Write("a.cut", SmallCutFile());
  EXPECT_EQ(folder.Sorvel({"frame", "a.cut", "2", "b.bmp"}).status, 0);
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

TEST(Console, FrameHasItsBrightnessAndItsPosition) {
  const Folder folder;
  folder.Write("a.cut", CutFile(4, 2, "", {LayerBlock("A", {Hex("12 34 43 21")})},
                                {FrameRecordBytes(0, 0, 1, 1, -1, "", {{0, 0, 0, 0}})}));
  EXPECT_EQ(folder.Sorvel({"frame", "a.cut", "1", "b.bmp"}).status, 0);
  const Bytes bitmap = folder.Read("b.bmp");
  EXPECT_EQ(Part(bitmap, 54, 64), Bytes(64, 0));
  EXPECT_EQ(From(bitmap, 118), Hex("32 10 01 23"));
}

TEST(Console, FrameAtHalfSize) {
  const Folder folder;
  folder.Write("a.cut", CutFile(4, 2, "", {LayerBlock("A", {Hex("12 34 12 44")})},
                                {FrameRecordBytes(0, 0, 1, 1, 50, "", {{0, 0, 0, 0}})}, 1));
  EXPECT_EQ(folder.Sorvel({"frame", "a.cut", "1", "b.bmp"}).status, 0);
  const Bytes bitmap = folder.Read("b.bmp");
  EXPECT_EQ(U32At(bitmap, 18), 2u);
  EXPECT_EQ(U32At(bitmap, 22), 1u);
  EXPECT_EQ(From(bitmap, 118), Hex("2B"));
}

TEST(Console, FramesThatTheCutDoesntHaveAreRefused) {
  const Folder folder;
  folder.Write("a.cut", SmallCutFile());
  for (const char* number : {"0", "3", "100000"}) {
    ExpectFailure(folder, {"frame", "a.cut", number, "b.bmp"}, "a.cut");
    ExpectFailure(folder, {"view", "a.cut", number, "b.bmp"}, "a.cut");
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

TEST(Console, ViewIsAnEightBitBitmapWithTheColoursOfTheRoles) {
  const Folder folder;
  folder.Write("a.cut", ViewCut());
  EXPECT_EQ(folder.Sorvel({"view", "a.cut", "1", "b.bmp"}).status, 0);
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

TEST(Console, ViewPadsItsRows) {
  const Folder folder;
  folder.Write("a.cut", CutFile(5, 2, "", {LayerBlock("A", {Hex("12 34 43 21")})},
                                {FrameRecordBytes(0, 0, 1, 1, 50, "", {{0, 1, 0, 0}})}));
  EXPECT_EQ(folder.Sorvel({"view", "a.cut", "1", "b.bmp"}).status, 0);
  const Bytes bitmap = folder.Read("b.bmp");
  ASSERT_EQ(bitmap.size(), 158u + 16);
  EXPECT_EQ(U32At(bitmap, 2), 174u);
  EXPECT_EQ(Part(bitmap, 158, 5), Hex("00 04 03 02 01"));
  EXPECT_EQ(Part(bitmap, 166, 5), Hex("00 01 02 03 04"));
}

TEST(Console, ViewShowsAllLayers) {
  EXPECT_EQ(ViewPixels({}), Hex("00 02 00 00  03 00 00 01"));
}

TEST(Console, ViewOfTheCellsAroundTheCurrentOne) {
  EXPECT_EQ(ViewPixels({"--record", "0", "--onion-previous"}), Hex("13 02 00 00  03 00 00 01"));
  EXPECT_EQ(ViewPixels({"--record", "0", "--onion-next"}), Hex("00 02 18 16  03 00 00 01"));
  EXPECT_EQ(ViewPixels({"--record", "0", "--onion-next", "--onion-previous"}), Hex("13 02 18 16  03 00 00 01"));
}

TEST(Console, ViewWithoutARecordHasTheTopmostCurrent) {
  // Its layer has one cell, which is its own neighbour.
  EXPECT_EQ(ViewPixels({"--onion-previous"}), Hex("00 02 00 00  03 00 00 01"));
  EXPECT_EQ(ViewPixels({"--current-cell-only"}), Hex("00 00 00 00  00 00 00 01"));
}

TEST(Console, ViewOfTheCurrentCellOnly) {
  EXPECT_EQ(ViewPixels({"--record", "0", "--current-cell-only"}), Hex("00 02 00 00  03 00 00 00"));
}

TEST(Console, ViewWithOtherLayersPale) {
  EXPECT_EQ(ViewPixels({"--record", "0", "--dim-others"}), Hex("00 02 00 00  03 00 00 10"));
  EXPECT_EQ(ViewPixels({"--record", "1", "--dim-others"}), Hex("00 11 00 00  12 00 00 01"));
}

TEST(Console, ViewOfTheLowestRecords) {
  EXPECT_EQ(ViewPixels({"--draw-limit", "1"}), Hex("00 02 00 00  03 00 00 00"));
  EXPECT_EQ(ViewPixels({"--draw-limit", "2"}), Hex("00 02 00 00  03 00 00 01"));
  EXPECT_EQ(ViewPixels({"--draw-limit", "0"}), Hex("00 02 00 00  03 00 00 01"));
  EXPECT_EQ(ViewPixels({"--draw-limit", "63"}), Hex("00 02 00 00  03 00 00 01"));
}

TEST(Console, RecordThatTheFrameDoesntHaveIsRefused) {
  const Folder folder;
  folder.Write("a.cut", ViewCut());
  const Answer run = folder.Sorvel({"view", "a.cut", "1", "b.bmp", "--record", "2"});
  EXPECT_NE(run.status, 0);
  EXPECT_TRUE(run.IsOneLineAbout("")) << run;
  EXPECT_FALSE(folder.Has("b.bmp"));
}

// export.

TEST(Console, ExportedFilmByteByByte) {
  const Folder folder;
  folder.Write("a.cut", SmallCutFile());
  folder.Write("f.flm", Film("\x95\x5C\nme\n320, 240\na.cut\na.cut\n"));
  const Answer run = folder.Sorvel({"export", "f.flm", "f.sv"});
  EXPECT_EQ(run.status, 0) << run;
  EXPECT_EQ(run.err, "");
  const Bytes record = From(SmallCutCompiled(), 6);
  // 6 + 3 + 3 + 10 + 8 = 30; a record is the stream without its first 6 bytes.
  EXPECT_EQ(folder.Read("f.sv"), Join({Hex("53 56"), Le32(static_cast<uint32_t>(30 + 2 * record.size())),
                                       Hex("95 5C 00  6D 65 00  40 01  F0 00  04 00  02 00  02 00  1E 00 00 00"),
                                       Le32(static_cast<uint32_t>(30 + record.size())), record, record}));
  EXPECT_EQ(folder.Read("a.ca"), SmallCutCompiled()) << "the cut is compiled beside its file";
  EXPECT_EQ(folder.List(), "a.ca a.cut f.flm f.sv");
}

TEST(Console, ExportTakesACompiledStreamAsItIs) {
  const Folder folder;
  folder.Write("a.cut", SmallCutFile());
  const Bytes stale = Compiled({"old"}, {Block(9, 1, 0x1B)});
  folder.Write("a.ca", stale);
  folder.Write("f.flm", Film("\n\n8, 8\na.cut\n"));
  EXPECT_EQ(folder.Sorvel({"export", "f.flm", "f.sv"}).status, 0);
  EXPECT_EQ(folder.Read("f.sv"), Container(8, 8, 4, 1, {From(stale, 6)}));
  EXPECT_EQ(folder.Read("a.ca"), stale);
}

TEST(Console, CompiledStreamIsEnoughForAnExport) {
  const Folder folder;
  folder.Write("a.ca", SmallCutCompiled());
  folder.Write("f.flm", Film("\n\n8, 8\na.cut\n"));
  EXPECT_EQ(folder.Sorvel({"export", "f.flm", "f.sv"}).status, 0);
  EXPECT_EQ(folder.Read("f.sv"), Container(8, 8, 4, 2, {From(SmallCutCompiled(), 6)}));
}

TEST(Console, CutsOfAFilmLieInOtherFoldersToo) {
  const Folder folder;
  folder.MakeFolder("films");
  folder.MakeFolder("films/inner");
  folder.MakeFolder("cuts");
  folder.Write("films/inner/a.cut", SmallCutFile());
  folder.Write("cuts/b.cut", SmallCutFile());
  folder.Write("c.cut", SmallCutFile());
  folder.Write("films/f.flm", Film("\n\n8, 8\ninner/a.cut\n../cuts/b.cut\n../c.cut\n"));
  const Answer run = folder.Sorvel({"export", "films/f.flm", "f.sv"});
  EXPECT_EQ(run.status, 0) << run;
  const Bytes record = From(SmallCutCompiled(), 6);
  EXPECT_EQ(folder.Read("f.sv"), Container(8, 8, 4, 2, {record, record, record}));
  EXPECT_EQ(folder.List(),
            "c.ca c.cut cuts cuts/b.ca cuts/b.cut f.sv films films/f.flm films/inner films/inner/a.ca "
            "films/inner/a.cut");
}

TEST(Console, FilmIsFoundFromAnyFolder) {
  const Folder folder;
  folder.MakeFolder("films");
  folder.Write("films/a.cut", SmallCutFile());
  folder.Write("films/f.flm", Film("\n\n8, 8\na.cut\n"));
  EXPECT_EQ(folder.Sorvel({"export", folder.Path("films/f.flm"), folder.Path("f.sv")}).status, 0);
  EXPECT_EQ(folder.Sorvel({"export", "./films/../films/f.flm", "g.sv"}).status, 0);
  EXPECT_EQ(folder.Read("f.sv"), folder.Read("g.sv"));
  EXPECT_FALSE(folder.Read("f.sv").empty());
}

TEST(Console, FilmWithoutCutsIsntExported) {
  const Folder folder;
  folder.Write("f.flm", Film("t\na\n320, 240\n"));
  ExpectFailure(folder, {"export", "f.flm", "f.sv"}, "f.flm");
}

TEST(Console, FilmWithACutThatIsMissingIsntExported) {
  const Folder folder;
  folder.Write("a.cut", SmallCutFile());
  folder.Write("f.flm", Film("t\na\n320, 240\na.cut\ngone.cut\n"));
  const Answer run = folder.Sorvel({"export", "f.flm", "f.sv"});
  EXPECT_EQ(run.status, 1) << run;
  EXPECT_TRUE(run.IsOneLineAbout("gone.cut")) << run;
  EXPECT_EQ(folder.List(), "a.cut f.flm");
}

TEST(Console, FilmWithAForeignCutIsntExported) {
  const Folder folder;
  folder.Write("b.cut", Text("something else"));
  folder.Write("f.flm", Film("t\na\n320, 240\nb.cut\n"));
  const Answer run = folder.Sorvel({"export", "f.flm", "f.sv"});
  EXPECT_EQ(run.status, 1) << run;
  EXPECT_TRUE(run.IsOneLineAbout("b.cut")) << run;
  EXPECT_EQ(folder.List(), "b.cut f.flm");
}

}  // namespace
}  // namespace sorvel
