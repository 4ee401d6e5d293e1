#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "resources/ids.h"
#include "rules/little_bytes.h"
#include "rules/rule_table.h"
#include "rules/script_session.h"
#include "rules/session_state.h"

namespace rules {
namespace {

CutFile TwoPictures() {
  return CutFile::Showing({1, 2}, {0, 1});
}

using PlayCut = SessionTest;

TEST_F(PlayCut, LeavesTheStreamBesideTheCut) {
  session.OpenCut("a.cut", TwoPictures()).Command(kCommandPlay);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Files(), (Names{"a.ca", "a.cut"}));
  EXPECT_EQ(PlayerOf(session, state)["title"], SizeTitle(session.Bytes("a.ca").size()));
}

TEST_F(PlayCut, StreamTellsItsOwnLengthAndTheCut) {
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

// A 0 typed over an 8 is stored as a number beyond 16 bits whose low half is 8.
TEST_F(PlayCut, AFrameSizeBeyondAStreamsGoesInWithItsLowHalf) {
  session.OpenCut("a.cut", TwoPictures()).Dialog(kFrameSizeDialog, {{kFrameWidthEdit, "0"}}).Command(kCommandFrameSize);
  const int state = session.State();
  session.Command(kCommandPlay).Run();
  const int width = session.StateAt(state)["cuts"][0]["frameWidth"];
  EXPECT_GT(width, 32767);
  EXPECT_EQ(LittleAt(session.Bytes("a.ca"), 11, 2), static_cast<unsigned>(width) & 0xFFFFU);
}

TEST_F(PlayCut, WithoutAPathCompilesEachTime) {
  session.NewCut().Command(kCommandPlay);
  const int first = session.State();
  session.Command(kCommandPlay);
  const int second = session.State();
  EXPECT_EQ(PlayerOf(session, second), PlayerOf(session, first));
  EXPECT_NE(PlayerOf(session, second)["title"], "0 byte");
}

TEST_F(PlayCut, CommitsThePanelsSoThatTheyCount) {
  session.OpenCut("a.cut", CutFile::Showing({1}, {0})).Panel(kFrameTimeEdit, "258").Command(kCommandPlay).Run();
  // The time of the first frame stands behind the head of 17 bytes.
  EXPECT_EQ(LittleAt(session.Bytes("a.ca"), 17, 2), 258U);
}

// What a play leaves beside the cut.
std::string StreamOf(const CutFile& file) {
  ScriptSession session;
  session.OpenCut("a.cut", file).Command(kCommandPlay).Run();
  return session.Bytes("a.ca");
}

// The stream of another cut stands for what another program may leave there: its size shows that the play took it.
TEST_F(PlayCut, WithNothingChangedReadsAWholeFileAsItIs) {
  const std::string other = StreamOf(CutFile::Showing({1, 2, 3}, {0, 1, 2}));
  session.OpenCut("a.cut", TwoPictures()).Command(kCommandPlay).SaveCutAs("b.cut");
  session.Write("b.ca", other).Command(kCommandPlay);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Bytes("b.ca"), other);
  EXPECT_EQ(PlayerOf(session, state)["title"], SizeTitle(other.size()));
}

TEST_F(PlayCut, WithNothingChangedMakesAFileAgainThatIsNotWhole) {
  const std::string stream = StreamOf(TwoPictures());
  session.OpenCut("a.cut", TwoPictures()).Command(kCommandPlay).SaveCutAs("b.cut");
  session.Write("b.ca", stream.substr(0, stream.size() - 1)).Command(kCommandPlay);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Bytes("b.ca"), stream);
  EXPECT_EQ(PlayerOf(session, state)["title"], SizeTitle(stream.size()));
}

TEST_F(PlayCut, WithNothingChangedMakesAFileThatIsMissing) {
  session.OpenCut("a.cut", TwoPictures()).Command(kCommandPlay).SaveCutAs("b.cut").Command(kCommandPlay);
  EXPECT_TRUE(Holds(session, "player/timer", true, "bytes/b.ca", StreamOf(TwoPictures())));
}

class ChangeBeforeAPlay : public SessionTest, public testing::WithParamInterface<int> {};

TEST_P(ChangeBeforeAPlay, RebuildsTheFile) {
  session.OpenCut("a.cut", TwoPictures()).Command(kCommandPlay).Line("view " + Quoted(session.Path("a.ca")));
  session.Command(GetParam()).Command(kCommandPlay);
  const int state = session.State();
  session.Run();
  const std::string bytes = session.Bytes("a.ca");
  EXPECT_EQ(bytes.substr(0, 2), "CA");
  EXPECT_EQ(LittleAt(bytes, 2, 4), bytes.size());
  EXPECT_EQ(PlayerOf(session, state)["title"], SizeTitle(bytes.size()));
}

INSTANTIATE_TEST_SUITE_P(Cache, ChangeBeforeAPlay,
                         testing::Values(kCommandBlankCell, kCommandAddFrame, kCommandAllKeyFrames,
                                         kCommandCurrentCellOnly));

TEST_F(PlayCut, RebuildEmptiesALongerFile) {
  session.OpenCut("a.cut", TwoPictures());
  session.Write("a.ca", std::string(10000, 'x'));
  session.Command(kCommandPlay).Run();
  EXPECT_EQ(LittleAt(session.Bytes("a.ca"), 2, 4), session.Bytes("a.ca").size());
  EXPECT_LT(session.Bytes("a.ca").size(), 1000U);
}

TEST_F(PlayCut, ChangedFrameTimeRebuildsInsteadOfPatching) {
  session.OpenCut("a.cut", TwoPictures()).Command(kCommandPlay).Panel(kFrameTimeEdit, "9").Command(kCommandPlay).Run();
  const std::string bytes = session.Bytes("a.ca");
  EXPECT_EQ(LittleAt(bytes, 2, 4), bytes.size());
  EXPECT_EQ(LittleAt(bytes, 15, 1), 24U);
  EXPECT_EQ(LittleAt(bytes, 16, 1), 3U);
}

TEST_F(PlayCut, FirstPlayAfterOpeningCompilesInSpiteOfAnOldStream) {
  session.Write("a.ca", std::string("CA\x11\0\0\0\0", 7));
  session.OpenCut("a.cut", TwoPictures()).Command(kCommandPlay).Run();
  EXPECT_EQ(LittleAt(session.Bytes("a.ca"), 2, 4), session.Bytes("a.ca").size());
  EXPECT_GT(session.Bytes("a.ca").size(), 7U);
}

TEST_F(PlayCut, AfterASaveUnderANewNameUsesTheStreamOfThatName) {
  session.OpenCut("a.cut", TwoPictures()).Command(kCommandPlay).Command(kCommandBlankCell).SaveCutAs("b.cut");
  session.Command(kCommandPlay).Run();
  EXPECT_EQ(session.Files(), (Names{"a.ca", "a.cut", "b.ca", "b.cut"}));
  EXPECT_EQ(LittleAt(session.Bytes("b.ca"), 2, 4), session.Bytes("b.ca").size());
  EXPECT_EQ(LittleAt(session.Bytes("a.ca"), 2, 4), session.Bytes("a.ca").size());
}

// With an empty credit and a size field that begins with zero the frame data could be patched.
TEST_F(PlayCut, DoesNotPatchAFileThatIsNotWhole) {
  session.OpenCut("a.cut", CutFile::Showing({1}, {0})).Command(kCommandPlay).Panel(kFrameTimeEdit, "7").Focus("cut");
  session.SaveCutAs("b.cut").Write("b.ca", std::string("CA\0", 3) + std::string(61, '\0'));
  session.Command(kCommandPlay).Run();
  EXPECT_EQ(LittleAt(session.Bytes("b.ca"), 2, 4), session.Bytes("b.ca").size());
}

TEST_F(PlayCut, PatchIsNotTriedWithStalePictures) {
  session.OpenCut("a.cut", TwoPictures());
  session.Write("a.ca", std::string("CA\0", 3) + std::string(61, '\0'));
  session.Command(kCommandPlay).Run();
  EXPECT_EQ(LittleAt(session.Bytes("a.ca"), 2, 4), session.Bytes("a.ca").size());
}

TEST_F(PlayCut, FileWithAnotherMagicIsRebuilt) {
  session.OpenCut("a.cut", TwoPictures()).Command(kCommandPlay).Panel(kFrameTimeEdit, "7").Focus("cut");
  session.SaveCutAs("b.cut");
  session.Write("b.ca", std::string("CB\0", 3) + std::string(61, '\0'));
  session.Command(kCommandPlay).Run();
  EXPECT_EQ(session.Bytes("b.ca").substr(0, 2), "CA");
  EXPECT_EQ(LittleAt(session.Bytes("b.ca"), 2, 4), session.Bytes("b.ca").size());
}

struct CacheThatCanNotBeWritten : SessionTest {
  // Plays the cut, as which there is a stream already; its own can't be written.
  void ExpectPlaysFromMemory() {
    session.OpenCut("b.cut", TwoPictures()).Command(kCommandPlay);
    const int state = session.State();
    session.Run();
    EXPECT_EQ(PlayerOf(session, state)["title"], SizeTitle(StreamOf(TwoPictures()).size()));
    EXPECT_EQ(PlayerOf(session, state)["timer"], true);
    // The next play compiles again.
    EXPECT_EQ(session.Cut(state)["imagesStale"], true);
  }
};

TEST_F(CacheThatCanNotBeWritten, AsAFolderHasItsNamePlaysFromMemory) {
  std::filesystem::create_directory(session.Path("b.ca"));
  ExpectPlaysFromMemory();
  EXPECT_TRUE(std::filesystem::is_directory(session.Path("b.ca")));
}

TEST_F(CacheThatCanNotBeWritten, AsTheDiskIsFullPlaysFromMemory) {
  std::filesystem::create_symlink("/dev/full", session.Path("b.ca"));
  ExpectPlaysFromMemory();
  EXPECT_EQ(session.Files(), (Names{"b.ca", "b.cut"}));
}

TEST_F(PlayCut, BringsTheViewBack) {
  CutFile file = TwoPictures();
  file.layers.push_back({.name = "B", .cells = {0}});
  for (auto& frame : file.frames) frame.records.push_back({.layer = 1});
  session.OpenCut("a.cut", file).Command(kCommandDimOthers).Command(kCommandFirstFrame);
  const int before = session.View();
  session.Command(kCommandPlay);
  const int after = session.View();
  EXPECT_EQ(session.ViewAt(before).Count(16), 24);
  EXPECT_TRUE(session.ViewAt(after) == session.ViewAt(before));
}

TEST_F(PlayCut, PictureOfAStillIsItsGreys) {
  session.OpenCut("a.cut", CutFile::Showing({2}, {0})).Command(kCommandPlay);
  const int player = session.Player();
  EXPECT_EQ(session.PlayerAt(player).Width(), 8);
  EXPECT_EQ(session.PlayerAt(player).Height(), 3);
  EXPECT_EQ(session.PlayerAt(player).Count(85), 24);
}

TEST_F(PlayCut, StreamOfASharedPictureTakesTwentyFiveBytesMore) {
  session.OpenCut("a.cut", CutFile::Showing({1}, {0})).Command(kCommandPlay);
  session.OpenCut("b.cut", CutFile::Showing({1}, {0, 0})).Command(kCommandPlay).Run();
  EXPECT_EQ(session.Bytes("b.ca").size(), session.Bytes("a.ca").size() + 25);
}

const Rules<SessionTest, "PlayCut"> kPlayCutRules = {
    {"StartsTheTimerForSeveralFramesAndNoneForOne", Do().OpenCut("a.cut", TwoPictures()).Command(kCommandPlay),
     Has("player/visible", true, "player/timer", true),
     Do().OpenCut("b.cut", CutFile::Showing({1}, {0})).Command(kCommandPlay),
     Has("player/visible", true, "player/timer", false)},
    {"ClearsBothStaleBitsAndNotModified",
     Do().OpenCut("a.cut", TwoPictures()).Commands({kCommandBlankCell, kCommandPlay}), Has("cut/marks", "modified")},
    {"WithoutAPathLeavesNoFile", Do().NewCut().Command(kCommandPlay),
     Has("files", "", "player/visible", true, "cut/imagesStale", false, "cut/timingStale", false)},
    {"ExtensionOfThePathIsReplaced", Do().OpenCut("a.b.CUT", TwoPictures()).Command(kCommandPlay),
     Has("files", "a.b.CUT a.b.ca")},
    {"CacheStaysAfterTheCutIsClosed", Do().OpenCut("a.cut", TwoPictures()).Command(kCommandPlay).Close(),
     Has("exists/a.ca", true, "player/timer", true)},
};

using PreviewFrame = SessionTest;

TEST_F(PreviewFrame, PlaysOneFullFrameAsAStill) {
  session.OpenCut("a.cut", CutFile::Showing({1, 2, 3}, {0, 1, 2})).Command(kCommandPreviousFrame);
  session.Command(kCommandPreview);
  const int player = session.Player();
  EXPECT_TRUE(Holds(session, "player/visible", true, "player/timer", false));
  EXPECT_EQ(session.PlayerAt(player).Count(85), 24);
}

TEST_F(PreviewFrame, AppliesTheBrightness) {
  CutFile file = CutFile::Showing({4, 4}, {0, 1});
  file.frames[1].brightness = 0;
  session.OpenCut("a.cut", file).Command(kCommandPreview);
  const int player = session.Player();
  EXPECT_EQ(session.PlayerAt(player).Count(0), 24);
}

TEST_F(PreviewFrame, IsAsLargeAsTheStreamOfThatFrameAlone) {
  session.OpenCut("a.cut", TwoPictures()).Command(kCommandPreview);
  const int preview = session.State();
  session.OpenCut("b.cut", CutFile::Showing({2}, {0})).Command(kCommandPlay);
  const int play = session.State();
  EXPECT_EQ(PlayerOf(session, preview)["title"], PlayerOf(session, play)["title"]);
}

TEST_F(PreviewFrame, CommitsThePanels) {
  session.OpenCut("a.cut", TwoPictures()).Panel(kBrightnessEdit, "0").Command(kCommandPreview);
  const int player = session.Player();
  EXPECT_EQ(session.Frame()["brightness"], 0);
  EXPECT_EQ(session.PlayerAt(player).Count(0), 24);
}

const Rules<SessionTest, "PreviewFrame"> kPreviewFrameRules = {
    {"LeavesNoFileAndTheStaleBits", Do().OpenCut("a.cut", TwoPictures()).Command(kCommandPreview),
     Has("cut/imagesStale", true), Do().Commands({kCommandPlay, kCommandPreview}),
     Has("cut/imagesStale", false, "cut/timingStale", false, "files", "a.ca a.cut")},
    {"StopsARunningPlay", Do().OpenCut("a.cut", TwoPictures()).Command(kCommandPlay), Has("player/timer", true),
     Do().Command(kCommandPreview), Has("player/timer", false)},
};

TEST_F(PreviewFrame, LeavesTheOutputPictureInTheViewUntilTheNextRepaint) {
  CutFile file = CutFile::Showing({1}, {0});
  file.layers.push_back({.name = "B", .cells = {0}});
  file.frames[0].records.push_back({.layer = 1});
  session.OpenCut("a.cut", file).Command(kCommandDimOthers);
  const int before = session.View();
  session.Command(kCommandPreview);
  const int after = session.View();
  session.Command(kCommandPreviousFrame);
  const int repainted = session.View();
  EXPECT_EQ(session.ViewAt(before).Count(16), 24);
  EXPECT_EQ(session.ViewAt(after).Count(1), 24);
  EXPECT_EQ(session.ViewAt(repainted).Count(16), 24);
}

TEST_F(PreviewFrame, FirstPlayAfterItCompilesAsBefore) {
  session.OpenCut("a.cut", TwoPictures()).Command(kCommandPreview).Command(kCommandPlay).Run();
  EXPECT_EQ(LittleAt(session.Bytes("a.ca"), 2, 4), session.Bytes("a.ca").size());
}

using Player = SessionTest;

TEST_F(Player, WindowTakesTheFrameSizeOfTheCut) {
  CutFile file = CutFile::Showing({1}, {0});
  file.frameWidth = 20;
  file.frameHeight = 9;
  session.OpenCut("a.cut", file).Command(kCommandPlay);
  const int player = session.Player();
  EXPECT_EQ(session.PlayerAt(player).Width(), 20);
  EXPECT_EQ(session.PlayerAt(player).Height(), 9);
}

TEST_F(Player, TicksChangeThePicture) {
  session.OpenCut("a.cut", TwoPictures()).Command(kCommandPlay);
  const int first = session.Player();
  session.Line("tick 1");
  const int second = session.Player();
  session.Line("tick 1");
  const int third = session.Player();
  EXPECT_EQ(session.PlayerAt(first).Count(0), 24);
  EXPECT_EQ(session.PlayerAt(second).Count(85), 24);
  EXPECT_EQ(session.PlayerAt(third).Count(0), 24);
}

}  // namespace
}  // namespace rules
