#include "animation/film_container.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "animation/stream_decoder.h"
#include "document/film.h"
#include "support/test_program.h"
#include "support/test_streams.h"

namespace sorvel {
namespace {

using namespace teststreams;

// A film in a folder of its own.
class FilmContainer : public testing::Test {
 protected:
  // An entry for a cut file of this folder, whether it is there or not.
  void Add(const std::string& name) {
    Cut cut(4, 2, 24, "", 0);
    AssignString(&cut.path, folder.Path(name).c_str());
    ASSERT_TRUE(film.AddCut(&cut, -1));
    film.CutClosed(&cut);
    AssignString(&cut.path, "");
  }

  bool Write(const std::vector<int32_t>& indices) {
    return WriteFilmContainer(&film, indices.data(), static_cast<int32_t>(indices.size()), &output.stream, &bitmap,
                              &report);
  }

  void SetTexts(const char* title, const char* author, int32_t width, int32_t height) {
    AssignString(&film.title, title);
    AssignString(&film.author, author);
    film.width = width;
    film.height = height;
  }

  Folder folder;
  Film film;
  Output output;
  NibbleBitmap bitmap;
  ContainerReport report;
};

// A cut file of one layer whose pictures, of 8 by 2 pixels, are white but for the frame's number of black pixels.
std::unique_ptr<Cut> SavedCut(const Folder& folder, const std::string& name, int32_t antialias,
                              const std::vector<std::string>& pictures) {
  std::unique_ptr<Cut> cut = MakeCut(8, 4, pictures, antialias);
  AssignString(&cut->path, folder.Path(name).c_str());
  EXPECT_TRUE(cut->SaveToPath());
  return cut;
}

TEST_F(FilmContainer, ByteByByte) {
  folder.Write("a.ca", Compiled({"ab", 4, 1, 8, 6, 24, 4}, {Block(1, 1, 0x1B)}));
  folder.Write("b.ca", Compiled({"", 4, 1, 2, 3, 12, 4}, {Block(2, 1, 0xE4)}));
  Add("a.cut");
  Add("b.cut");
  SetTexts("\x95\x5C", "me", 320, 240);
  ASSERT_TRUE(Write({0, 1}));
  // The table stands at 22, the first record at 30; it has 41 bytes.
  EXPECT_EQ(output.Written(),
            Hex("53 56  6E 00 00 00  95 5C 00  6D 65 00  40 01  F0 00  04 00  01 00  02 00"
                "1E 00 00 00  47 00 00 00"
                "61 62 00  04 00 01 00 08 00 06 00 18 03"
                "01 00  01 00  32  00 00  00 00  00 00  00 00  04 00  01 00  01 00 00 00  01 00 00 00  01 00 1B"
                "00        04 00 01 00 02 00 03 00 0C 03"
                "02 00  01 00  32  00 00  00 00  00 00  00 00  04 00  01 00  01 00 00 00  01 00 00 00  01 00 E4"));
}

TEST_F(FilmContainer, OffsetsAreAbsolute) {
  folder.Write("a.ca", SmallCutCompiled());
  Add("a.cut");
  SetTexts("title", "author", 320, 240);
  ASSERT_TRUE(Write({0, 0, 0}));
  const Bytes bytes = output.Written();
  const uint32_t table = 8 + 5 + 6 + 10;
  const uint32_t record = static_cast<uint32_t>(SmallCutCompiled().size() - 6);
  EXPECT_EQ(U32At(bytes, table), table + 12);
  EXPECT_EQ(U32At(bytes, table + 4), table + 12 + record);
  EXPECT_EQ(U32At(bytes, table + 8), table + 12 + 2 * record);
}

TEST_F(FilmContainer, SizeFieldIsTheLengthOfTheFile) {
  folder.Write("a.ca", SmallCutCompiled());
  Add("a.cut");
  ASSERT_TRUE(Write({0, 0}));
  EXPECT_EQ(U32At(output.Written(), 2), output.Written().size());
}

TEST_F(FilmContainer, CutListedTwiceIsStoredTwice) {
  folder.Write("a.ca", SmallCutCompiled());
  Add("a.cut");
  Add("a.cut");
  SetTexts("", "", 8, 8);
  ASSERT_TRUE(Write({0, 1}));
  const Bytes record = From(SmallCutCompiled(), 6);
  EXPECT_EQ(output.Written(), Container(8, 8, 4, 2, {record, record}));
}

TEST_F(FilmContainer, EntriesComeInTheOrderGiven) {
  folder.Write("a.ca", Compiled({"a"}, {Block(1, 1, 0)}));
  folder.Write("b.ca", Compiled({"b"}, {Block(2, 1, 0)}));
  folder.Write("c.ca", Compiled({"c"}, {Block(3, 1, 0)}));
  for (const char* name : {"a.cut", "b.cut", "c.cut"}) Add(name);
  SetTexts("", "", 8, 8);
  ASSERT_TRUE(Write({2, 0}));
  EXPECT_EQ(output.Written(),
            Container(8, 8, 4, 1, {CutRecord({"c"}, {Block(3, 1, 0)}), CutRecord({"a"}, {Block(1, 1, 0)})}));
}

TEST_F(FilmContainer, LargestSizesAreThoseOfAllCuts) {
  folder.Write("a.ca", Compile(MakeCut(3, 2, {""}).get()));
  folder.Write("b.ca", Compile(MakeCut(2, 7, {""}).get()));
  for (const char* name : {"a.cut", "b.cut"}) Add(name);
  ASSERT_TRUE(Write({0, 1}));
  EXPECT_EQ(Part(output.Written(), 12, 4), Hex("03 00 07 00"));
}

TEST_F(FilmContainer, FilmSizesAreCutToSixteenBits) {
  folder.Write("a.ca", SmallCutCompiled());
  Add("a.cut");
  SetTexts("", "", 65536 + 5, -2);
  ASSERT_TRUE(Write({0}));
  EXPECT_EQ(Part(output.Written(), 8, 4), Hex("05 00 FE FF"));
}

TEST_F(FilmContainer, WholeCacheIsTakenAsItIsEvenIfTheOpenCutIsStale) {
  std::unique_ptr<Cut> cut = SavedCut(folder, "a.cut", 0, {"/.1"});
  ASSERT_TRUE(film.AddCut(cut.get(), -1));
  cut->MarkImages();
  folder.Write("a.ca", Compiled({"old"}, {Block(1, 1, 0x1B)}));
  SetTexts("", "", 8, 8);
  ASSERT_TRUE(Write({0}));
  EXPECT_EQ(output.Written(), Container(8, 8, 4, 1, {CutRecord({"old"}, {Block(1, 1, 0x1B)})}));
  EXPECT_TRUE(cut->Has(kImagesStale));
  film.CutClosed(cut.get());
}

// Of another cut, and behind its last frame comes a byte that its size counts.
Bytes CacheThatGoesOn() {
  Bytes record = CutRecord({"old"}, {Block(1, 1, 0x1B)});
  record.push_back(0);
  return Compiled(record);
}

TEST_F(FilmContainer, CacheThatIsNotWholeIsMadeAgain) {
  folder.Write("a.cut", SmallCutFile());
  folder.Write("a.ca", CacheThatGoesOn());
  Add("a.cut");
  SetTexts("", "", 8, 8);
  ASSERT_TRUE(Write({0}));
  EXPECT_EQ(output.Written(), Container(8, 8, 4, 2, {From(SmallCutCompiled(), 6)}));
  EXPECT_EQ(folder.Read("a.ca"), SmallCutCompiled());
}

TEST_F(FilmContainer, CacheThatIsNotWholeDoesNotReplaceAMissingCut) {
  folder.Write("a.ca", CacheThatGoesOn());
  Add("a.cut");
  EXPECT_FALSE(Write({0}));
  EXPECT_EQ(folder.Read("a.ca"), CacheThatGoesOn());
}

TEST_F(FilmContainer, MissingCacheIsMadeAndStays) {
  folder.Write("a.cut", SmallCutFile());
  Add("a.cut");
  SetTexts("", "", 8, 8);
  ASSERT_TRUE(Write({0}));
  EXPECT_EQ(output.Written(), Container(8, 8, 4, 2, {From(SmallCutCompiled(), 6)}));
  EXPECT_EQ(folder.Read("a.ca"), SmallCutCompiled());
  EXPECT_EQ(folder.List(), "a.ca a.cut");
  EXPECT_EQ(film.cuts.At(0).cut, nullptr);
}

TEST_F(FilmContainer, OpenCutIsCompiledAsItStands) {
  std::unique_ptr<Cut> cut = SavedCut(folder, "a.cut", 0, {""});
  ASSERT_TRUE(film.AddCut(cut.get(), -1));
  Paint(cut->layers.At(0)->CellAt(0), "/.1");
  cut->MarkImages();
  SetTexts("", "", 8, 8);
  ASSERT_TRUE(Write({0}));
  const Bytes expected = Compile(cut.get());
  EXPECT_EQ(folder.Read("a.ca"), expected);
  EXPECT_EQ(output.Written(), Container(8, 8, 8, 4, {From(expected, 6)}));
  EXPECT_TRUE(cut->Has(kImagesStale));
  EXPECT_TRUE(cut->Has(kTimingStale));
  EXPECT_TRUE(cut->Has(kModified));
  film.CutClosed(cut.get());
}

TEST_F(FilmContainer, OpenCutNeedsNoFile) {
  std::unique_ptr<Cut> cut = SavedCut(folder, "a.cut", 0, {""});
  ASSERT_TRUE(film.AddCut(cut.get(), -1));
  std::filesystem::remove(folder.Path("a.cut"));
  EXPECT_TRUE(Write({0}));
  EXPECT_EQ(folder.List(), "a.ca");
  film.CutClosed(cut.get());
}

TEST_F(FilmContainer, CutAtAQuarterBesideOneAtFullSize) {
  SavedCut(folder, "a.cut", 2, {""});
  SavedCut(folder, "b.cut", 0, {""});
  Add("a.cut");
  Add("b.cut");
  SetTexts("", "", 8, 8);
  ASSERT_TRUE(Write({0, 1}));
  const Bytes bytes = output.Written();
  EXPECT_EQ(Part(bytes, 12, 4), Hex("08 00 04 00"));
  // The first record stands behind two entries, its levels 10 bytes into it.
  EXPECT_EQ(U32At(bytes, 18), 26u);
  EXPECT_EQ(Part(bytes, 26, 11), Hex("00 02 00 01 00 02 00 01 00 18 0C"));
  EXPECT_EQ(Part(bytes, U32At(bytes, 22), 11), Hex("00 08 00 04 00 08 00 04 00 18 03"));

  Input input(bytes);
  NibbleBitmap shown;
  AnimationDecoder decoder;
  decoder.bitmap = &shown;
  ASSERT_EQ(decoder.OpenStream(&input.stream), 1);
  EXPECT_EQ(shown.width, 8);
  EXPECT_EQ(shown.height, 4);
  decoder.DecodeNextFrame();
  EXPECT_EQ(decoder.levels, 13);
  EXPECT_EQ(shown.GetFront(1, 0), 12);
  decoder.DecodeNextFrame();
  EXPECT_EQ(decoder.levels, 4);
  EXPECT_EQ(shown.GetFront(7, 3), 3);
}

TEST_F(FilmContainer, OneFrameOfOneCutIsAValidContainer) {
  SavedCut(folder, "a.cut", 0, {"/.1"});
  Add("a.cut");
  ASSERT_TRUE(Write({0}));
  Input input(output.Written());
  NibbleBitmap shown;
  AnimationDecoder decoder;
  decoder.bitmap = &shown;
  ASSERT_EQ(decoder.OpenStream(&input.stream), 1);
  EXPECT_EQ(decoder.DecodeNextFrame(), 1);
  EXPECT_EQ(decoder.cutCount, 1);
  EXPECT_EQ(input.stream.Tell(), decoder.streamEnd);
  EXPECT_EQ(FrontPicture(shown), "33333333/30333333/33333333/33333333");
}

TEST_F(FilmContainer, MissingCutFails) {
  folder.Write("a.ca", SmallCutCompiled());
  Add("a.cut");
  Add("gone.cut");
  EXPECT_FALSE(Write({0, 1}));
  EXPECT_EQ(report.listIndex, 1);
  EXPECT_TRUE(report.report.IsDamaged());
  EXPECT_EQ(folder.List(), "a.ca");
}

TEST_F(FilmContainer, ForeignCutFails) {
  folder.Write("a.cut", Text("something else"));
  Add("a.cut");
  EXPECT_FALSE(Write({0}));
  EXPECT_EQ(report.listIndex, 0);
  EXPECT_EQ(folder.List(), "a.cut");
}

// Two records of 69 bytes behind a head of 26, at a distance from the start of a file that has no contents there.
TEST_F(FilmContainer, EndsAtTwoGibibytes) {
  folder.Write("a.ca", SmallCutCompiled());
  Add("a.cut");
  constexpr int32_t last = INT32_MAX - 26 - 2 * 69;
  output.stream.Seek(last, kFromStart);
  EXPECT_TRUE(Write({0, 0}));
  output.stream.Seek(last + 1, kFromStart);
  EXPECT_FALSE(Write({0, 0}));
  EXPECT_EQ(report.listIndex, 0);
  EXPECT_STREQ(report.report.problem, "the film grows beyond 2 GiB");
}

TEST_F(FilmContainer, NoReportIsNeeded) {
  Add("gone.cut");
  const int32_t index = 0;
  EXPECT_FALSE(WriteFilmContainer(&film, &index, 1, &output.stream, &bitmap, nullptr));
}

TEST_F(FilmContainer, CacheOfANameWithATrailByteLikeABackslash) {
  folder.Write("\x95\x5C.ca", Compiled({"hyo"}, {Block(1, 1, 0)}));
  Add("\x95\x5C.cut");
  SetTexts("", "", 8, 8);
  // Names on the disk are UTF-8.
  std::filesystem::rename(folder.Path("\x95\x5C.ca"), folder.Path("表.ca"));
  ASSERT_TRUE(Write({0}));
  EXPECT_EQ(output.Written(), Container(8, 8, 4, 1, {CutRecord({"hyo"}, {Block(1, 1, 0)})}));
}

TEST_F(FilmContainer, LongestCreditIsCopied) {
  const CutHead head = {std::string(kStreamTextLimit - 1, 'c')};
  folder.Write("a.ca", Compiled(head, {Block(1, 1, 0)}));
  Add("a.cut");
  SetTexts("", "", 8, 8);
  ASSERT_TRUE(Write({0}));
  EXPECT_EQ(output.Written(), Container(8, 8, 4, 1, {CutRecord(head, {Block(1, 1, 0)})}));
}

TEST_F(FilmContainer, FilmWithoutEntriesHasAnEmptyTable) {
  SetTexts("a", "b", 3, 4);
  ASSERT_TRUE(Write({}));
  EXPECT_EQ(output.Written(), Hex("53 56 14 00 00 00 61 00 62 00 03 00 04 00 00 00 00 00 00 00"));
}

}  // namespace
}  // namespace sorvel
