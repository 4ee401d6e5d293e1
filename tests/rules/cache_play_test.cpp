#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "resources/ids.h"
#include "rules/little_bytes.h"
#include "rules/script_session.h"
#include "rules/session_state.h"

namespace {

using rules::CutFile;
using rules::LittleAt;
using rules::MarksOf;
using rules::Names;
using rules::Player;
using rules::ScriptSession;
using rules::SizeTitle;

CutFile TwoPictures() {
  return CutFile::Showing({1, 2}, {0, 1});
}

TEST(PlayCut, LeavesTheStreamBesideTheCut) {
  ScriptSession session;
  session.OpenCut("a.cut", TwoPictures()).Command(kCommandPlay);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Files(), (Names{"a.ca", "a.cut"}));
  EXPECT_EQ(Player(session, state)["title"], SizeTitle(session.Bytes("a.ca").size()));
}

TEST(PlayCut, StreamTellsItsOwnLengthAndTheCut) {
  ScriptSession session;
  CutFile file = TwoPictures();
  file.credit = "Me";
  file.fps = 12;
  session.OpenCut("a.cut", file).Command(kCommandPlay).Run();
  const std::string bytes = session.Bytes("a.ca");
  EXPECT_EQ(bytes.substr(0, 2), "CA");
  EXPECT_EQ(LittleAt(bytes, 2, 4), bytes.size());
  EXPECT_EQ(bytes.substr(6, 3), std::string("Me\0", 3));
  EXPECT_EQ(LittleAt(bytes, 9, 2), 8U);
  EXPECT_EQ(LittleAt(bytes, 11, 2), 3U);
  EXPECT_EQ(LittleAt(bytes, 17, 1), 12U);
  EXPECT_EQ(LittleAt(bytes, 18, 1), 3U);
}

TEST(PlayCut, StartsTheTimerForSeveralFramesAndNoneForOne) {
  ScriptSession session;
  session.OpenCut("a.cut", TwoPictures()).Command(kCommandPlay);
  const int several = session.State();
  session.OpenCut("b.cut", CutFile::Showing({1}, {0})).Command(kCommandPlay);
  const int one = session.State();
  session.Run();
  EXPECT_EQ(Player(session, several)["visible"], true);
  EXPECT_EQ(Player(session, several)["timer"], true);
  EXPECT_EQ(Player(session, one)["visible"], true);
  EXPECT_EQ(Player(session, one)["timer"], false);
}

TEST(PlayCut, ClearsBothStaleBitsAndNotModified) {
  ScriptSession session;
  session.OpenCut("a.cut", TwoPictures()).Command(kCommandBlankCell).Command(kCommandPlay);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(MarksOf(session, state), "modified");
}

// A 0 typed over an 8 is stored as a number beyond 16 bits whose low half is 8.
TEST(PlayCut, AFrameSizeBeyondAStreamsGoesInWithItsLowHalf) {
  ScriptSession session;
  session.OpenCut("a.cut", TwoPictures()).Dialog(kFrameSizeDialog, {{kFrameWidthEdit, "0"}}).Command(kCommandFrameSize);
  const int state = session.State();
  session.Command(kCommandPlay).Run();
  const int width = session.StateAt(state)["cuts"][0]["frameWidth"];
  EXPECT_GT(width, 32767);
  EXPECT_EQ(LittleAt(session.Bytes("a.ca"), 11, 2), static_cast<unsigned>(width) & 0xFFFFU);
}

TEST(PlayCut, WithoutAPathLeavesNoFile) {
  ScriptSession session;
  session.NewCut().Command(kCommandPlay);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Files(), Names{});
  EXPECT_EQ(Player(session, state)["visible"], true);
  EXPECT_EQ(session.Cut(state)["imagesStale"], false);
  EXPECT_EQ(session.Cut(state)["timingStale"], false);
}

TEST(PlayCut, WithoutAPathCompilesEachTime) {
  ScriptSession session;
  session.NewCut().Command(kCommandPlay);
  const int first = session.State();
  session.Command(kCommandPlay);
  const int second = session.State();
  session.Run();
  EXPECT_EQ(Player(session, second), Player(session, first));
  EXPECT_NE(Player(session, second)["title"], "0 byte");
}

TEST(PlayCut, CommitsThePanelsSoThatTheyCount) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1}, {0})).Panel(kFrameTimeEdit, "258").Command(kCommandPlay).Run();
  // The time of the first frame stands behind the head of 17 bytes.
  EXPECT_EQ(LittleAt(session.Bytes("a.ca"), 17, 2), 258U);
}

TEST(PlayCut, ExtensionOfThePathIsReplaced) {
  ScriptSession session;
  session.OpenCut("a.b.CUT", TwoPictures()).Command(kCommandPlay).Run();
  EXPECT_EQ(session.Files(), (Names{"a.b.CUT", "a.b.ca"}));
}

// A view written over the stream between two plays stands for what another program may leave there: its size shows
// whether the play took it as it was.
TEST(PlayCut, SecondPlayWithNothingChangedReadsTheFileAsItIs) {
  ScriptSession session;
  session.OpenCut("a.cut", TwoPictures()).Command(kCommandPlay).Line("view " + rules::Quoted(session.Path("a.ca")));
  session.Command(kCommandPlay);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Bytes("a.ca").substr(0, 2), "BM");
  EXPECT_EQ(Player(session, state)["title"], SizeTitle(session.Bytes("a.ca").size()));
}

class ChangeBeforeAPlay : public testing::TestWithParam<int> {};

TEST_P(ChangeBeforeAPlay, RebuildsTheFile) {
  ScriptSession session;
  session.OpenCut("a.cut", TwoPictures()).Command(kCommandPlay).Line("view " + rules::Quoted(session.Path("a.ca")));
  session.Command(GetParam()).Command(kCommandPlay);
  const int state = session.State();
  session.Run();
  const std::string bytes = session.Bytes("a.ca");
  EXPECT_EQ(bytes.substr(0, 2), "CA");
  EXPECT_EQ(LittleAt(bytes, 2, 4), bytes.size());
  EXPECT_EQ(Player(session, state)["title"], SizeTitle(bytes.size()));
}

INSTANTIATE_TEST_SUITE_P(Cache, ChangeBeforeAPlay,
                         testing::Values(kCommandBlankCell, kCommandAddFrame, kCommandAllKeyFrames,
                                         kCommandCurrentCellOnly));

TEST(PlayCut, RebuildEmptiesALongerFile) {
  ScriptSession session;
  session.OpenCut("a.cut", TwoPictures());
  session.Write("a.ca", std::string(10000, 'x'));
  session.Command(kCommandPlay).Run();
  EXPECT_EQ(LittleAt(session.Bytes("a.ca"), 2, 4), session.Bytes("a.ca").size());
  EXPECT_LT(session.Bytes("a.ca").size(), 1000U);
}

TEST(PlayCut, ChangedFrameTimeRebuildsInsteadOfPatching) {
  ScriptSession session;
  session.OpenCut("a.cut", TwoPictures()).Command(kCommandPlay).Panel(kFrameTimeEdit, "9").Command(kCommandPlay).Run();
  const std::string bytes = session.Bytes("a.ca");
  EXPECT_EQ(LittleAt(bytes, 2, 4), bytes.size());
  EXPECT_EQ(LittleAt(bytes, 15, 1), 24U);
  EXPECT_EQ(LittleAt(bytes, 16, 1), 3U);
}

TEST(PlayCut, FirstPlayAfterOpeningCompilesInSpiteOfAnOldStream) {
  ScriptSession session;
  session.Write("a.ca", std::string("CA\x11\0\0\0\0", 7));
  session.OpenCut("a.cut", TwoPictures()).Command(kCommandPlay).Run();
  EXPECT_EQ(LittleAt(session.Bytes("a.ca"), 2, 4), session.Bytes("a.ca").size());
  EXPECT_GT(session.Bytes("a.ca").size(), 7U);
}

TEST(PlayCut, AfterASaveUnderANewNameUsesTheStreamOfThatName) {
  ScriptSession session;
  session.OpenCut("a.cut", TwoPictures())
      .Command(kCommandPlay)
      .Command(kCommandBlankCell)
      .SaveCutAs("b.cut")
      .Command(kCommandPlay)
      .Run();
  EXPECT_EQ(session.Files(), (Names{"a.ca", "a.cut", "b.ca", "b.cut"}));
  EXPECT_EQ(LittleAt(session.Bytes("b.ca"), 2, 4), session.Bytes("b.ca").size());
  EXPECT_EQ(LittleAt(session.Bytes("a.ca"), 2, 4), session.Bytes("a.ca").size());
}

TEST(PlayCut, FreshFileWithBothBitsClearStaysEmptyAndPlaysNothing) {
  ScriptSession session;
  session.OpenCut("a.cut", TwoPictures()).Command(kCommandPlay).SaveCutAs("b.cut").Command(kCommandPlay);
  const int state = session.State();
  session.Run();
  EXPECT_TRUE(session.Exists("b.ca"));
  EXPECT_EQ(session.Bytes("b.ca"), "");
  EXPECT_EQ(Player(session, state)["title"], "0 byte");
  EXPECT_EQ(Player(session, state)["timer"], false);
  EXPECT_EQ(Player(session, state)["visible"], false);
}

TEST(PlayCut, NextChangeRepairsAnEmptyFile) {
  ScriptSession session;
  session.OpenCut("a.cut", TwoPictures())
      .Command(kCommandPlay)
      .SaveCutAs("b.cut")
      .Command(kCommandPlay)
      .Command(kCommandBlankCell);
  session.Command(kCommandPlay);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(LittleAt(session.Bytes("b.ca"), 2, 4), session.Bytes("b.ca").size());
  EXPECT_EQ(Player(session, state)["visible"], true);
}

// With an empty credit and a file whose size field begins with zero, the comparison holds and the frame data are
// written, beginning in the size field.
TEST(PlayCut, PatchesAStreamWhoseSizeFieldReadsAsTheCredit) {
  ScriptSession session;
  CutFile file = CutFile::Showing({1}, {0});
  file.width = 32;
  file.height = 16;
  file.frameWidth = 24;
  file.frameHeight = 12;
  file.fps = 30;
  file.frames[0].x = 5;
  file.frames[0].y = -2;
  session.OpenCut("a.cut", file).Command(kCommandPlay).Panel(kFrameTimeEdit, "7").Focus("cut").SaveCutAs("b.cut");
  session.Write("b.ca", std::string("CA\0", 3) + std::string(61, '\0'));
  session.Command(kCommandPlay);
  const int state = session.State();
  session.Run();
  const std::string head("CA\0\x20\0\x10\0\x18\0\x0C\0\x1E\x04\x07\0\x01\0\x32\x05\0\xFE\xFF", 22);
  EXPECT_EQ(session.Bytes("b.ca"), head + std::string(42, '\0'));
  EXPECT_EQ(Player(session, state)["title"], "64 byte");
  EXPECT_EQ(session.Cut(state)["timingStale"], false);
  EXPECT_EQ(session.Cut(state)["imagesStale"], false);
}

TEST(PlayCut, PatchIsNotTriedWithStalePictures) {
  ScriptSession session;
  session.OpenCut("a.cut", TwoPictures());
  session.Write("a.ca", std::string("CA\0", 3) + std::string(61, '\0'));
  session.Command(kCommandPlay).Run();
  EXPECT_EQ(LittleAt(session.Bytes("a.ca"), 2, 4), session.Bytes("a.ca").size());
}

TEST(PlayCut, FileWithAnotherMagicIsRebuilt) {
  ScriptSession session;
  session.OpenCut("a.cut", TwoPictures())
      .Command(kCommandPlay)
      .Panel(kFrameTimeEdit, "7")
      .Focus("cut")
      .SaveCutAs("b.cut");
  session.Write("b.ca", std::string("CB\0", 3) + std::string(61, '\0'));
  session.Command(kCommandPlay).Run();
  EXPECT_EQ(session.Bytes("b.ca").substr(0, 2), "CA");
  EXPECT_EQ(LittleAt(session.Bytes("b.ca"), 2, 4), session.Bytes("b.ca").size());
}

TEST(PlayCut, StreamThatCanNotBeOpenedStartsNothingAndTheOldPlayGoesOn) {
  ScriptSession session;
  session.OpenCut("a.cut", TwoPictures()).Command(kCommandPlay);
  const int before = session.State();
  std::filesystem::create_directory(session.Path("b.ca"));
  session.OpenCut("b.cut", CutFile::Showing({1}, {0})).Command(kCommandPlay);
  const int after = session.State();
  session.Run();
  EXPECT_EQ(Player(session, before)["timer"], true);
  EXPECT_EQ(Player(session, after), Player(session, before));
  EXPECT_EQ(session.Cut(after)["imagesStale"], true);
}

TEST(PlayCut, BringsTheViewBack) {
  ScriptSession session;
  CutFile file = TwoPictures();
  file.layers.push_back({.name = "B", .cells = {0}});
  for (auto& frame : file.frames) frame.records.push_back({.layer = 1});
  session.OpenCut("a.cut", file).Command(kCommandDimOthers).Command(kCommandFirstFrame);
  const int before = session.View();
  session.Command(kCommandPlay);
  const int after = session.View();
  session.Run();
  EXPECT_EQ(session.ViewAt(before).Count(16), 24);
  EXPECT_TRUE(session.ViewAt(after) == session.ViewAt(before));
}

TEST(PlayCut, PictureOfAStillIsItsGreys) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({2}, {0})).Command(kCommandPlay);
  const int player = session.Player();
  session.Run();
  EXPECT_EQ(session.PlayerAt(player).Width(), 8);
  EXPECT_EQ(session.PlayerAt(player).Height(), 3);
  EXPECT_EQ(session.PlayerAt(player).Count(85), 24);
}

TEST(PlayCut, StreamOfASharedPictureTakesTwentyFiveBytesMore) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1}, {0})).Command(kCommandPlay);
  session.OpenCut("b.cut", CutFile::Showing({1}, {0, 0})).Command(kCommandPlay).Run();
  EXPECT_EQ(session.Bytes("b.ca").size(), session.Bytes("a.ca").size() + 25);
}

TEST(PlayCut, CacheStaysAfterTheCutIsClosed) {
  ScriptSession session;
  session.OpenCut("a.cut", TwoPictures()).Command(kCommandPlay).Close();
  const int state = session.State();
  session.Run();
  EXPECT_TRUE(session.Exists("a.ca"));
  EXPECT_EQ(Player(session, state)["timer"], true);
}

TEST(PreviewFrame, PlaysOneFullFrameAsAStill) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1, 2, 3}, {0, 1, 2}))
      .Command(kCommandPreviousFrame)
      .Command(kCommandPreview);
  const int state = session.State();
  const int player = session.Player();
  session.Run();
  EXPECT_EQ(Player(session, state)["visible"], true);
  EXPECT_EQ(Player(session, state)["timer"], false);
  EXPECT_EQ(session.PlayerAt(player).Count(85), 24);
}

TEST(PreviewFrame, AppliesTheBrightness) {
  ScriptSession session;
  CutFile file = CutFile::Showing({4, 4}, {0, 1});
  file.frames[1].brightness = 0;
  session.OpenCut("a.cut", file).Command(kCommandPreview);
  const int player = session.Player();
  session.Run();
  EXPECT_EQ(session.PlayerAt(player).Count(0), 24);
}

TEST(PreviewFrame, IsAsLargeAsTheStreamOfThatFrameAlone) {
  ScriptSession session;
  session.OpenCut("a.cut", TwoPictures()).Command(kCommandPreview);
  const int preview = session.State();
  session.OpenCut("b.cut", CutFile::Showing({2}, {0})).Command(kCommandPlay);
  const int play = session.State();
  session.Run();
  EXPECT_EQ(Player(session, preview)["title"], Player(session, play)["title"]);
}

TEST(PreviewFrame, LeavesNoFileAndTheStaleBits) {
  ScriptSession session;
  session.OpenCut("a.cut", TwoPictures()).Command(kCommandPreview);
  const int stale = session.State();
  session.Command(kCommandPlay).Command(kCommandPreview);
  const int clear = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(stale)["imagesStale"], true);
  EXPECT_EQ(session.Cut(clear)["imagesStale"], false);
  EXPECT_EQ(session.Cut(clear)["timingStale"], false);
  EXPECT_EQ(session.Files(), (Names{"a.ca", "a.cut"}));
}

TEST(PreviewFrame, CommitsThePanels) {
  ScriptSession session;
  session.OpenCut("a.cut", TwoPictures()).Panel(kBrightnessEdit, "0").Command(kCommandPreview);
  const int state = session.State();
  const int player = session.Player();
  session.Run();
  EXPECT_EQ(session.Frame(state)["brightness"], 0);
  EXPECT_EQ(session.PlayerAt(player).Count(0), 24);
}

TEST(PreviewFrame, StopsARunningPlay) {
  ScriptSession session;
  session.OpenCut("a.cut", TwoPictures()).Command(kCommandPlay);
  const int play = session.State();
  session.Command(kCommandPreview);
  const int preview = session.State();
  session.Run();
  EXPECT_EQ(Player(session, play)["timer"], true);
  EXPECT_EQ(Player(session, preview)["timer"], false);
}

TEST(PreviewFrame, LeavesTheOutputPictureInTheViewUntilTheNextRepaint) {
  ScriptSession session;
  CutFile file = CutFile::Showing({1}, {0});
  file.layers.push_back({.name = "B", .cells = {0}});
  file.frames[0].records.push_back({.layer = 1});
  session.OpenCut("a.cut", file).Command(kCommandDimOthers);
  const int before = session.View();
  session.Command(kCommandPreview);
  const int after = session.View();
  session.Command(kCommandPreviousFrame);
  const int repainted = session.View();
  session.Run();
  EXPECT_EQ(session.ViewAt(before).Count(16), 24);
  EXPECT_EQ(session.ViewAt(after).Count(1), 24);
  EXPECT_EQ(session.ViewAt(repainted).Count(16), 24);
}

TEST(PreviewFrame, FirstPlayAfterItCompilesAsBefore) {
  ScriptSession session;
  session.OpenCut("a.cut", TwoPictures()).Command(kCommandPreview).Command(kCommandPlay).Run();
  EXPECT_EQ(LittleAt(session.Bytes("a.ca"), 2, 4), session.Bytes("a.ca").size());
}

TEST(Player, WindowTakesTheFrameSizeOfTheCut) {
  ScriptSession session;
  CutFile file = CutFile::Showing({1}, {0});
  file.frameWidth = 20;
  file.frameHeight = 9;
  session.OpenCut("a.cut", file).Command(kCommandPlay);
  const int player = session.Player();
  session.Run();
  EXPECT_EQ(session.PlayerAt(player).Width(), 20);
  EXPECT_EQ(session.PlayerAt(player).Height(), 9);
}

TEST(Player, TicksChangeThePicture) {
  ScriptSession session;
  session.OpenCut("a.cut", TwoPictures()).Command(kCommandPlay);
  const int first = session.Player();
  session.Line("tick 1");
  const int second = session.Player();
  session.Line("tick 1");
  const int third = session.Player();
  session.Run();
  EXPECT_EQ(session.PlayerAt(first).Count(0), 24);
  EXPECT_EQ(session.PlayerAt(second).Count(85), 24);
  EXPECT_EQ(session.PlayerAt(third).Count(0), 24);
}

}  // namespace
