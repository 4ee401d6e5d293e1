#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "support/test_program.h"
#include "support/test_streams.h"

namespace sorvel {
namespace {

using namespace teststreams;

using Words = std::vector<std::string>;

Bytes Cut() {
  return CutFile(4, 2, "cr", {LayerBlock("A", {Hex("12 34 41 00"), Hex("12 34 32 10")}, 1)},
                 {FrameRecordBytes(1, 2, 1, 1, 50, "co", {{0, 0, 0, 0}}),
                  FrameRecordBytes(0, 0, 2, 1, -51, "", {{0, 0, 0, 1}, {0, 1, 1, -1}})});
}

Bytes LayerFile() {
  return Join({Text("Sorvelin Layer"), LayerBlock("A", {Hex("12 34 41 00"), Hex("12 34 32 10")})});
}

Bytes Stream() {
  return Compiled({"c", 4, 1, 4, 1, 24, 4}, {Block(2, 1, 0x1B), Block(-2, 2, 0xE4), Still(1, 0)});
}

Bytes FilmStream() {
  return Container(8, 4, 4, 1, {CutRecord({"c"}, {Block(1, 1, 0x1B)}), CutRecord({}, {Block(1, 1, 0xE4)})}, "t", "a");
}

void ExpectDamage(const Folder& folder, const Words& words, const std::string& name) {
  const std::string before = folder.List();
  const Answer run = folder.Sorvel(words);
  EXPECT_EQ(run.status, 1) << run;
  EXPECT_EQ(run.out, "");
  EXPECT_TRUE(run.IsOneLineAbout(name)) << run;
  EXPECT_EQ(folder.List(), before);
}

// The commands that read this file; each writes to "out".
std::vector<Words> Readers(const std::string& name) {
  std::vector<Words> readers = {{"info", name}};
  const std::string kind = name.substr(name.rfind('.'));
  if (kind == ".cut") {
    readers.push_back({"resave", name, "out.cut"});
    readers.push_back({"compile", name, "out.ca"});
    readers.push_back({"frame", name, "1", "out.bmp"});
    readers.push_back({"view", name, "1", "out.bmp"});
  } else if (kind == ".lyr") {
    readers.push_back({"resave", name, "out.lyr"});
  } else {
    readers.push_back({"play", name, "out", "--ticks", "50"});
  }
  return readers;
}

void TruncateEverywhere(const std::string& name, const Bytes& whole) {
  const Folder folder;
  for (size_t length = 0; length < whole.size(); ++length) {
    SCOPED_TRACE(length);
    folder.Write(name, Part(whole, 0, length));
    ExpectDamage(folder, {"info", name}, name);
    if (length % 5 != 0) continue;
    for (const Words& words : Readers(name)) ExpectDamage(folder, words, name);
  }
}

class ConsoleDamage : public testing::Test {
 protected:
  const Folder folder;
};

TEST_F(ConsoleDamage, TruncatedCutIsNamed) {
  TruncateEverywhere("a.cut", Cut());
}

TEST_F(ConsoleDamage, TruncatedLayerIsNamed) {
  TruncateEverywhere("a.lyr", LayerFile());
}

TEST_F(ConsoleDamage, TruncatedStreamIsNamed) {
  TruncateEverywhere("a.ca", Stream());
}

TEST_F(ConsoleDamage, TruncatedContainerIsNamed) {
  TruncateEverywhere("a.sv", FilmStream());
}

TEST_F(ConsoleDamage, WholeFilesAreRead) {
  folder.Write("a.cut", Cut());
  folder.Write("a.lyr", LayerFile());
  folder.Write("a.ca", Stream());
  folder.Write("a.sv", FilmStream());
  for (const char* name : {"a.cut", "a.lyr", "a.ca", "a.sv"}) {
    for (const Words& words : Readers(name)) {
      const Answer run = folder.Sorvel(words);
      EXPECT_EQ(run.status, 0) << words[0] << " " << run;
      EXPECT_EQ(run.err, "");
    }
  }
}

// Either the file is still one that could be, or the one line says that it isn't.
void FlipEverywhere(const std::string& name, const Bytes& whole, int step) {
  const Folder folder;
  const std::vector<Words> readers = Readers(name);
  for (size_t bit = 0; bit < whole.size() * 8; bit += static_cast<size_t>(step)) {
    SCOPED_TRACE(bit);
    Bytes bytes = whole;
    bytes[bit / 8] = static_cast<uint8_t>(bytes[bit / 8] ^ 1 << bit % 8);
    folder.Write(name, bytes);
    const Answer run = folder.Sorvel(readers[bit % readers.size()]);
    EXPECT_TRUE(run.status == 0 || run.status == 1) << run;
    if (run.status == 0) {
      EXPECT_EQ(run.err, "");
    } else {
      EXPECT_TRUE(run.IsOneLineAbout(name)) << run;
    }
    std::error_code error;
    for (const char* left : {"out", "out.cut", "out.lyr", "out.ca", "out.bmp"}) {
      std::filesystem::remove_all(folder.Path(left), error);
    }
    EXPECT_EQ(folder.List(), name);
  }
}

TEST_F(ConsoleDamage, CutWithAFlippedBit) {
  FlipEverywhere("a.cut", Cut(), 3);
}

TEST_F(ConsoleDamage, LayerWithAFlippedBit) {
  FlipEverywhere("a.lyr", LayerFile(), 3);
}

TEST_F(ConsoleDamage, StreamWithAFlippedBit) {
  FlipEverywhere("a.ca", Stream(), 3);
}

TEST_F(ConsoleDamage, ContainerWithAFlippedBit) {
  FlipEverywhere("a.sv", FilmStream(), 3);
}

TEST_F(ConsoleDamage, BytesBehindTheEndAreNoticed) {
  const std::pair<std::string, Bytes> files[] = {
      {"a.cut", Cut()}, {"a.lyr", LayerFile()}, {"a.ca", Stream()}, {"a.sv", FilmStream()}};
  for (const auto& [name, bytes] : files) {
    folder.Write(name, Join({bytes, {0}}));
    ExpectDamage(folder, {"info", name}, name);
  }
}

TEST_F(ConsoleDamage, RecordOfALayerThatIsntThere) {
  folder.Write("a.cut", CutFile(4, 2, "", {LayerBlock("A", {Hex("12 34 41 00")})},
                                {FrameRecordBytes(0, 0, 1, 1, 50, "", {{1, 0, 0, 0}})}));
  for (const Words& words : Readers("a.cut")) ExpectDamage(folder, words, "a.cut");
}

TEST_F(ConsoleDamage, HugeSizesFailQuickly) {
  Bytes cut = Cut();
  for (size_t i = 13; i < 21; ++i) cut[i] = 0xFF;
  folder.Write("a.cut", cut);
  ExpectDamage(folder, {"compile", "a.cut", "out.ca"}, "a.cut");
  ExpectDamage(folder, {"view", "a.cut", "1", "out.bmp"}, "a.cut");
  Bytes layer = LayerFile();
  for (size_t i = 17; i < 21; ++i) layer[i] = 0xFF;
  folder.Write("a.lyr", layer);
  ExpectDamage(folder, {"info", "a.lyr"}, "a.lyr");
  Bytes stream = Stream();
  for (size_t i = 8; i < 16; i += 2) {
    stream[i] = 0xFF;
    stream[i + 1] = 0x7F;
  }
  folder.Write("a.ca", stream);
  ExpectDamage(folder, {"play", "a.ca", "out", "--ticks", "3"}, "a.ca");
}

TEST_F(ConsoleDamage, DamagedCutStopsAnExport) {
  folder.Write("b.cut", Part(Cut(), 0, 60));
  folder.Write("f.flm", Text("\n\n8, 8\nb.cut"));
  Bytes film = folder.Read("f.flm");
  film.back() = '\n';
  folder.Write("f.flm", film);
  ExpectDamage(folder, {"export", "f.flm", "out.sv"}, "b.cut");
}

TEST_F(ConsoleDamage, DamagedInputLeavesTheOutputAsItWas) {
  folder.Write("a.cut", Part(Cut(), 0, 60));
  folder.Write("out.ca", Text("mine"));
  folder.Write("out.bmp", Text("mine"));
  ExpectDamage(folder, {"compile", "a.cut", "out.ca"}, "a.cut");
  ExpectDamage(folder, {"frame", "a.cut", "1", "out.bmp"}, "a.cut");
  ExpectDamage(folder, {"resave", "a.cut", "a.cut"}, "a.cut");
  EXPECT_EQ(folder.Read("out.ca"), Text("mine"));
  EXPECT_EQ(folder.Read("out.bmp"), Text("mine"));
  EXPECT_EQ(folder.Read("a.cut"), Part(Cut(), 0, 60));
}

}  // namespace
}  // namespace sorvel
