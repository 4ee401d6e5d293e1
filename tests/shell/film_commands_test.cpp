#include <cstring>

#include "resources/ids.h"
#include "shell/shell_fixture.h"

// What the film's commands do to questions, cursors, windows and memory. What they do to the film, its list and its
// files is tested on the whole program.
namespace sorvel::testshell {
namespace {

class FilmCommands : public ShellTest {
 protected:
  // What the caret and the selection of the list of cuts are.
  void SelectCuts(const std::vector<int32_t>& lines) { platform::headless::SelectLines(frame->cutList, lines); }
};

constexpr char kProgramTitle[] = "Sorvel Developer";

// The film's file.

TEST_F(FilmCommands, ANewFilmAsksAboutTheOldOne) {
  MakeFilm(1);
  platform::headless::QueueYesNo(true);
  platform::headless::QueueFile(folder.Path("old.flm"));
  Command(kCommandNewFilm, kFilmDialog, {});
  EXPECT_EQ(platform::headless::LastQuestion().text, ShiftJis("untitled.cut を保存しますか？"));
  EXPECT_EQ(platform::headless::LastQuestion().title, "Sorvelin");
  EXPECT_EQ(Contents("old.flm"), "\n\n320, 240\nc1.cut\n");
  EXPECT_EQ(Title(), kProgramTitle);
}

TEST_F(FilmCommands, OverwriteKeepsPathAndTitle) {
  MakeFilm(1);
  FileCommand(kCommandOverwriteFilm, folder.Path("film.flm"));  // no path yet: save under a name
  EXPECT_EQ(Title(), "Sorvel Developer - film");
  MakeSavedCut("c2.cut");
  Command(kCommandAddCutToFilm);
  platform::SetText(frame->frameWindow, "mine");
  Command(kCommandOverwriteFilm);
  EXPECT_EQ(Contents("film.flm"), "\n\n320, 240\nc1.cut\nc2.cut\n");
  EXPECT_EQ(frame->film->modified, 0u);
  EXPECT_EQ(Title(), "mine");
}

TEST_F(FilmCommands, AFailedOpenLeavesTheListOverAnEmptyFilm) {
  MakeFilm(2);
  FileCommand(kCommandSaveFilmAs, folder.Path("film.flm"));
  CloseCuts();
  EXPECT_FALSE(frame->OpenFilmFile(folder.Path("missing.flm").c_str()));
  EXPECT_EQ(frame->film->cuts.Count(), 0);
  EXPECT_EQ(CutLines(), "*c1|c2|");
  EXPECT_EQ(Title(), "Sorvel Developer - film");
  // Lines without an entry: nothing happens, and no file goes.
  platform::headless::DoubleClickLine(frame->cutList, 1);
  EXPECT_EQ(Cut(), nullptr);
  Command(kCommandDeleteCuts);
  Command(kCommandRenameCut);
  Command(kCommandExportFilm);
  FileCommand(kCommandExtractCuts, folder.Path("new.flm"));
  EXPECT_EQ(Contents("new.flm"), "\n\n320, 240\n");
  Command(kCommandPlaySelection);
  EXPECT_EQ(platform::headless::AlertCount(), 1);
}

// Deleting.

TEST_F(FilmCommands, DeleteAsksAndWithYesClosesTheWindows) {
  MakeFilm(4);
  CutWindow* last = Cut();
  SelectCuts({2, 1});
  platform::headless::QueueYesNo(true);
  Command(kCommandDeleteCuts);
  EXPECT_EQ(platform::headless::LastQuestion().text, ShiftJis("ファイルを削除しますか？"));
  EXPECT_EQ(platform::headless::LastQuestion().title, "Sorvelin");
  EXPECT_EQ(platform::headless::LastQuestion().icon, platform::BoxIcon::kQuestion);
  EXPECT_EQ(frame->mdiClient->children.size(), 2u);
  EXPECT_EQ(Cut(), last);
}

TEST_F(FilmCommands, DeletingTheActiveCutOfAnOpenFilmTakesOnlyTheSelectedLines) {
  MakeFilm(3);
  // The window that comes up in place of the deleted one selects its own line; what goes is what was selected first.
  SelectCuts({2, 1});
  platform::headless::QueueYesNo(true);
  Command(kCommandDeleteCuts);
  EXPECT_EQ(FilmNames(), "c1.cut|");
  EXPECT_EQ(Lines(frame->cutList).find("c2"), std::string::npos);
  EXPECT_EQ(platform::ListCount(frame->cutList), 1);
  EXPECT_TRUE(Exists("c1.cut"));
}

// The container.

TEST_F(FilmCommands, ExportLeavesTheStaleMarksAndTheArrow) {
  MakeFilm(2);
  Cut()->stateFlags &= ~static_cast<uint32_t>(kModified);
  FileCommand(kCommandExportFilm, folder.Path("film"));
  EXPECT_EQ(Contents("film.sv").substr(0, 2), "SV");
  EXPECT_EQ(Marks(), "it");
  EXPECT_EQ(platform::headless::CurrentCursor(), platform::CursorShape::kArrow);
}

TEST_F(FilmCommands, ExportOfAnUnreadableCutBeepsAndLeavesNoFile) {
  MakeFilm(2);
  CloseCuts();
  platform::DeletePath(folder.Path("c2.cut").c_str());
  FileCommand(kCommandExportFilm, folder.Path("film.sv"));
  EXPECT_EQ(platform::headless::AlertCount(), 1);
  EXPECT_FALSE(Exists("film.sv"));
  EXPECT_EQ(platform::headless::CurrentCursor(), platform::CursorShape::kWait);
}

TEST_F(FilmCommands, ExportToAPathThatCannotBeWrittenLeavesTheCursorOnly) {
  MakeFilm(1);
  platform::headless::QueueFileCancel();
  Command(kCommandExportFilm);
  FileCommand(kCommandExportFilm, folder.Path("no/such/film.sv"));
  EXPECT_EQ(platform::headless::AlertCount(), 0);
  EXPECT_EQ(platform::headless::CurrentCursor(), platform::CursorShape::kWait);
}

TEST_F(FilmCommands, APlayThatFailsBeepsAndLeavesThePlayerStopped) {
  MakeFilm(2);
  Command(kCommandPlay);
  CloseCuts();
  platform::DeletePath(folder.Path("c1.cut").c_str());
  SelectCuts({0});
  Command(kCommandPlaySelection);
  EXPECT_EQ(platform::headless::AlertCount(), 1);
  EXPECT_FALSE(platform::IsShown(frame->animationWindow.window));
}

TEST_F(FilmCommands, AnExportUnderARunningPlayKeepsThePlayerInItsMemory) {
  MakeSavedCut("small.cut", 16, 8);
  Command(kCommandAddCutToFilm);
  MakeSavedCut("large.cut", 200, 160);
  Command(kCommandAddCutToFilm);
  MakeFrames(4);
  CurrentCell()->Fill(1);
  Command(kCommandPlay);
  SelectCuts({0, 1});
  platform::DeletePath(folder.Path("large.ca").c_str());
  FileCommand(kCommandExportFilm, folder.Path("film.sv"));
  for (int32_t i = 0; i < 20 && platform::headless::RunTimer(); ++i) {
  }
  EXPECT_TRUE(platform::IsShown(frame->animationWindow.window));
}

TEST_F(FilmCommands, AnExportUnderThePlayOfADamagedStreamStaysInItsMemory) {
  MakeSavedCut("large.cut", 200, 160);
  MakeFrames(3);
  Command(kCommandAddCell);
  for (int32_t y = 0; y < 160; ++y) {
    for (int32_t x = 0; x < 200; ++x) CurrentCell()->SetPixel(x, y, 1 + (x * 7 + y * 3) % 4);
  }
  Command(kCommandOverwriteCut);
  Command(kCommandAddCutToFilm);
  FileCommand(kCommandExportFilm, folder.Path("first.sv"));
  std::string stream = Contents("large.ca");
  ASSERT_GT(stream.size(), 100u);
  // The head says that the picture is small; the frames' boxes are as large as before.
  stream[7] = 8;
  stream[8] = 0;
  stream[9] = 8;
  stream[10] = 0;
  Buffer<uint8_t> buffer;
  ASSERT_TRUE(buffer.Allocate(stream.size()));
  std::memcpy(buffer.Data(), stream.data(), stream.size());
  frame->PlayBuffer(std::move(buffer), static_cast<int32_t>(stream.size()));
  platform::DeletePath(folder.Path("large.ca").c_str());
  FileCommand(kCommandExportFilm, folder.Path("second.sv"));
  EXPECT_EQ(frame->animationWindow.bitmap.width, 200);
  for (int32_t i = 0; i < 20 && platform::headless::RunTimer(); ++i) {
  }
}

}  // namespace
}  // namespace sorvel::testshell
