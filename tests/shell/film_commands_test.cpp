#include <cstdlib>
#include <cstring>

#include "resources/ids.h"
#include "shell/shell_fixture.h"

namespace sorvel::testshell {
namespace {

class FilmCommands : public ShellTest {
 protected:
  // What the caret and the selection of the list of cuts are.
  void SelectCuts(const std::vector<int32_t>& lines) { platform::headless::SelectLines(frame->cutList, lines); }
};

constexpr char kProgramTitle[] = "Sorvel Developer";

// The film's file.

TEST_F(FilmCommands, ANewFilmStartsFromTheDefaultsOfTheSettings) {
  Command(kCommandNewFilm, kFilmDialog, {});
  EXPECT_EQ(frame->film->width, 320);
  EXPECT_EQ(frame->film->height, 240);
  EXPECT_STREQ(frame->film->title, "");
  EXPECT_STREQ(frame->film->author, "");
  EXPECT_EQ(frame->film->modified, 0u);
  EXPECT_EQ(Title(), kProgramTitle);
}

TEST_F(FilmCommands, ANewFilmIsRememberedInTheSettings) {
  Command(kCommandNewFilm, kFilmDialog,
          {{kFilmWidthEdit, "640"}, {kFilmHeightEdit, "480"}, {kFilmTitleEdit, "film"}, {kFilmAuthorEdit, "me"}});
  EXPECT_EQ(Contents("sorvel.ini"), "[OnNewFilm]\r\nwidth=640\r\nheight=480\r\ntitle=film\r\nauthor=me\r\n");
  EXPECT_EQ(frame->film->width, 640);
  EXPECT_STREQ(frame->film->title, "film");
  Command(kCommandNewFilm, kFilmDialog, {});
  EXPECT_EQ(frame->film->height, 480);
  EXPECT_STREQ(frame->film->author, "me");
}

TEST_F(FilmCommands, ANewFilmLeavesTheCutWindowsOpen) {
  MakeFilm(2);
  platform::headless::QueueYesNo(false);
  Command(kCommandNewFilm, kFilmDialog, {});
  EXPECT_EQ(frame->film->cuts.Count(), 0);
  EXPECT_EQ(CutLines(), "");
  ASSERT_NE(Cut(), nullptr);
  EXPECT_EQ(frame->film->FindCut(Cut()), -1);
}

TEST_F(FilmCommands, ACancelledNewFilmKeepsTheFilm) {
  MakeFilm(1);
  platform::headless::QueueYesNo(false);
  CancelledCommand(kCommandNewFilm, kFilmDialog, {{kFilmWidthEdit, "5"}});
  EXPECT_EQ(FilmNames(), "c1.cut|");
  EXPECT_EQ(CutLines(), "*c1|");
  EXPECT_NE(frame->film->modified, 0u);
}

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

TEST_F(FilmCommands, SaveWritesTheFilmAndSetsTheTitle) {
  MakeFilm(2);
  FileCommand(kCommandSaveFilmAs, folder.Path("film"));
  EXPECT_EQ(Contents("film.flm"), "\n\n320, 240\nc1.cut\nc2.cut\n");
  EXPECT_EQ(frame->film->path, folder.Path("film.flm"));
  EXPECT_EQ(frame->film->modified, 0u);
  EXPECT_EQ(Title(), "Sorvel Developer - film");
}

TEST_F(FilmCommands, AFailedSaveChangesTheTitleAllTheSame) {
  MakeFilm(1);
  FileCommand(kCommandSaveFilmAs, folder.Path("no/such/film.flm"));
  EXPECT_STREQ(frame->film->path, "");
  EXPECT_NE(frame->film->modified, 0u);
  EXPECT_EQ(Title(), "Sorvel Developer - film");
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

TEST_F(FilmCommands, OpenListsTheCutsWithoutOpeningThem) {
  MakeFilm(3);
  FileCommand(kCommandSaveFilmAs, folder.Path("film.flm"));
  CloseCuts();
  Command(kCommandNewFilm, kFilmDialog, {});
  FileCommand(kCommandOpenFilm, folder.Path("film.flm"));
  EXPECT_EQ(FilmNames(), "c1.cut|c2.cut|c3.cut|");
  EXPECT_EQ(CutLines(), "*c1|c2|c3|");
  EXPECT_EQ(platform::ListCaret(frame->cutList), 0);
  EXPECT_EQ(Title(), "Sorvel Developer - film");
  EXPECT_EQ(Cut(), nullptr);
}

TEST_F(FilmCommands, AFilmWithoutCutsOpensWithAnEmptyList) {
  FileCommand(kCommandSaveFilmAs, folder.Path("film.flm"));
  EXPECT_EQ(Contents("film.flm"), "\n\n320, 240\n");
  FileCommand(kCommandOpenFilm, folder.Path("film.flm"));
  EXPECT_EQ(CutLines(), "");
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

TEST_F(FilmCommands, OpenAsksAboutTheFilmFirst) {
  MakeFilm(1);
  platform::headless::QueueYesNo(false);
  platform::headless::QueueFileCancel();
  Command(kCommandOpenFilm);
  EXPECT_EQ(FilmNames(), "c1.cut|");
}

TEST_F(FilmCommands, PropertiesModifyTheFilm) {
  FileCommand(kCommandSaveFilmAs, folder.Path("film.flm"));
  Command(kCommandFilmProperties, kFilmDialog,
          {{kFilmWidthEdit, "64"}, {kFilmHeightEdit, "48"}, {kFilmTitleEdit, "t"}, {kFilmAuthorEdit, "a"}});
  EXPECT_EQ(frame->film->width, 64);
  EXPECT_EQ(frame->film->height, 48);
  EXPECT_STREQ(frame->film->title, "t");
  EXPECT_STREQ(frame->film->author, "a");
  EXPECT_NE(frame->film->modified, 0u);
  frame->film->modified = 0;
  CancelledCommand(kCommandFilmProperties, kFilmDialog, {{kFilmWidthEdit, "1"}});
  EXPECT_EQ(frame->film->width, 64);
  EXPECT_EQ(frame->film->modified, 0u);
  Command(kCommandFilmProperties, kFilmDialog, {});  // the same values count as a change
  EXPECT_NE(frame->film->modified, 0u);
}

// Cuts of the film.

TEST_F(FilmCommands, AddPutsTheCutBehindTheCaretAndSelectsIt) {
  MakeFilm(2);
  EXPECT_EQ(CutLines(), "c1|*c2|");
  EXPECT_EQ(platform::ListCaret(frame->cutList), 1);
  MakeSavedCut("c3.cut");
  SelectCuts({0});
  Command(kCommandAddCutToFilm);
  EXPECT_EQ(FilmNames(), "c1.cut|c3.cut|c2.cut|");
  EXPECT_EQ(CutLines(), "c1|*c3|c2|");
  EXPECT_EQ(platform::ListCaret(frame->cutList), 1);
  EXPECT_EQ(frame->film->cuts.At(1).cut, Cut());
}

TEST_F(FilmCommands, InsertPutsTheCutAtTheCaretAndLeavesTheSelection) {
  MakeFilm(2);
  MakeSavedCut("c3.cut");
  SelectCuts({1});
  Command(kCommandInsertCutIntoFilm);
  EXPECT_EQ(FilmNames(), "c1.cut|c3.cut|c2.cut|");
  EXPECT_EQ(CutLines(), "c1|c3|*c2|");
  EXPECT_EQ(platform::ListCaret(frame->cutList), 1);
}

TEST_F(FilmCommands, InsertIntoAnEmptyListAddsTheLine) {
  MakeSavedCut("c1.cut");
  Command(kCommandInsertCutIntoFilm);
  EXPECT_EQ(FilmNames(), "c1.cut|");
  EXPECT_EQ(Lines(frame->cutList), "c1|");
}

TEST_F(FilmCommands, AddSavesACutWithoutAName) {
  MakeCut();
  FileCommand(kCommandAddCutToFilm, folder.Path("new.cut"));
  EXPECT_EQ(FilmNames(), "new.cut|");
  EXPECT_TRUE(Exists("new.cut"));
}

TEST_F(FilmCommands, AddOfACutWhoseSaveIsCancelledOrFailsAddsNothing) {
  MakeCut();
  platform::headless::QueueFileCancel();
  Command(kCommandAddCutToFilm);
  FileCommand(kCommandInsertCutIntoFilm, folder.Path("no/such/folder.cut"));
  EXPECT_EQ(FilmNames(), "");
  EXPECT_EQ(CutLines(), "");
}

TEST_F(FilmCommands, WithoutACutThereIsNothingToAddOrRemove) {
  Command(kCommandAddCutToFilm);
  Command(kCommandInsertCutIntoFilm);
  Command(kCommandRemoveCutFromFilm);
  EXPECT_EQ(frame->film->modified, 0u);
}

TEST_F(FilmCommands, RemoveLeavesTheWindowAndTheFile) {
  MakeFilm(2);
  CutWindow* cut = Cut();
  Command(kCommandRemoveCutFromFilm);
  EXPECT_EQ(FilmNames(), "c1.cut|");
  EXPECT_EQ(CutLines(), "c1|");
  EXPECT_EQ(Cut(), cut);
  EXPECT_TRUE(Exists("c2.cut"));
  Command(kCommandRemoveCutFromFilm);  // it is in the film no more
  EXPECT_EQ(FilmNames(), "c1.cut|");
  Command(kCommandAddCutToFilm);
  EXPECT_EQ(frame->film->FindCut(cut), platform::ListCaret(frame->cutList));
}

TEST_F(FilmCommands, ADoubleClickOpensTheCutAndThenActivatesIt) {
  MakeFilm(2);
  CloseCuts();
  EXPECT_TRUE(platform::headless::DoubleClickLine(frame->cutList, 0));
  ASSERT_NE(Cut(), nullptr);
  CutWindow* first = Cut();
  EXPECT_EQ(first->path, folder.Path("c1.cut"));
  EXPECT_EQ(frame->film->cuts.At(0).cut, first);
  platform::headless::DoubleClickLine(frame->cutList, 1);
  EXPECT_EQ(Cut()->path, folder.Path("c2.cut"));
  platform::headless::DoubleClickLine(frame->cutList, 0);
  EXPECT_EQ(Cut(), first);
}

TEST_F(FilmCommands, ADoubleClickOnACutThatCannotBeReadDoesNothing) {
  MakeFilm(2);
  CloseCuts();
  platform::DeletePath(folder.Path("c1.cut").c_str());
  testdoc::WriteFile(folder.Path("c2.cut"), "nothing");
  platform::headless::DoubleClickLine(frame->cutList, 0);
  platform::headless::DoubleClickLine(frame->cutList, 1);
  EXPECT_EQ(Cut(), nullptr);
}

// Numbered cuts.

TEST_F(FilmCommands, ANumberedCutInAnEmptyFilmIsANewCutThatIsAdded) {
  for (const int32_t id : {kCommandAddNumberedCut, kCommandInsertNumberedCut}) {
    platform::headless::QueueDialog({kCutDialog, {}, true});
    platform::headless::QueueDialog({kLayerDialog, {}, true});
    FileCommand(id, folder.Path("first.cut"));
    EXPECT_EQ(Cut()->width, 240);
    EXPECT_EQ(FilmNames(), "first.cut|");
    EXPECT_EQ(CutLines(), "*first|");
    Command(kCommandRemoveCutFromFilm);
  }
}

TEST_F(FilmCommands, ACancelledNumberedCutInAnEmptyFilmAddsTheActiveOne) {
  MakeSavedCut("a.cut");
  CancelledCommand(kCommandAddNumberedCut, kCutDialog);
  EXPECT_EQ(FilmNames(), "a.cut|");
}

TEST_F(FilmCommands, ANumberedCutGetsTheNextFreeNameBehindTheCaret) {
  MakeFilm(2);
  testdoc::WriteFile(folder.Path("c003.cut"), "taken");
  SelectCuts({0});
  CutDialogDefaults = CutDialogValues{};
  platform::headless::QueueDialog({kCutDialog, {}, true});
  platform::headless::QueueDialog({kLayerDialog, {{kLayerNameEdit, "A"}}, true});
  Command(kCommandAddNumberedCut);
  EXPECT_EQ(FilmNames(), "c1.cut|c002.cut|c2.cut|");
  EXPECT_EQ(CutLines(), "c1|*c002|c2|");
  // The memory of the dialog, and not the settings.
  EXPECT_EQ(Cut()->width, 960);
  EXPECT_EQ(Cut()->height, 720);
  EXPECT_EQ(Cut()->Antialias(), 2);
  EXPECT_EQ(Cut()->path, folder.Path("c002.cut"));
  EXPECT_EQ(TextOf(Cut()->window), "c002.cut");
  EXPECT_EQ(testdoc::Stacking(CurrentFrame()), "A");
  EXPECT_TRUE(Exists("c002.cut"));
}

TEST_F(FilmCommands, AnInsertedNumberedCutComesAtTheCaret) {
  MakeFilm(2);
  SelectCuts({1});
  platform::headless::QueueDialog({kCutDialog, {}, true});
  platform::headless::QueueDialog({kLayerDialog, {}, false});
  Command(kCommandInsertNumberedCut);
  EXPECT_EQ(FilmNames(), "c1.cut|c003.cut|c2.cut|");
  EXPECT_EQ(Cut()->width, 40);  // as the dialog was ended last
  // The cut goes on without a layer, and its file was written before.
  EXPECT_EQ(Cut()->layers.Count(), 0);
  EXPECT_EQ(Marks(), "i");
  EXPECT_TRUE(Exists("c003.cut"));
}

TEST_F(FilmCommands, ACancelledNumberedCutLeavesNothing) {
  MakeFilm(1);
  CancelledCommand(kCommandAddNumberedCut, kCutDialog);
  EXPECT_EQ(FilmNames(), "c1.cut|");
  EXPECT_FALSE(Exists("c002.cut"));
}

TEST_F(FilmCommands, BehindNumber999TheNewCutTakesTheEntrysFile) {
  MakeSavedCut("cut999.cut");
  Command(kCommandAddCutToFilm);
  const std::string before = Contents("cut999.cut");
  platform::headless::QueueDialog({kCutDialog, {{kCutWidthEdit, "8"}}, true});
  platform::headless::QueueDialog({kLayerDialog, {}, false});
  Command(kCommandAddNumberedCut);
  EXPECT_EQ(FilmNames(), "cut999.cut|cut999.cut|");
  EXPECT_EQ(Cut()->path, folder.Path("cut999.cut"));
  EXPECT_NE(Contents("cut999.cut"), before);
}

// Deleting.

TEST_F(FilmCommands, DeleteWithYesDeletesFilesCachesAndWindows) {
  MakeFilm(4);
  for (const char* name : {"c1.ca", "c2.ca", "c3.ca", "c4.ca"}) testdoc::WriteFile(folder.Path(name), "stream");
  CutWindow* last = Cut();
  SelectCuts({2, 1});
  platform::headless::QueueYesNo(true);
  Command(kCommandDeleteCuts);
  EXPECT_EQ(platform::headless::LastQuestion().text, ShiftJis("ファイルを削除しますか？"));
  EXPECT_EQ(platform::headless::LastQuestion().title, "Sorvelin");
  EXPECT_EQ(platform::headless::LastQuestion().icon, platform::BoxIcon::kQuestion);
  EXPECT_EQ(FilmNames(), "c1.cut|c4.cut|");
  EXPECT_EQ(CutLines(), "c1|*c4|");
  EXPECT_EQ(platform::ListCaret(frame->cutList), 1);
  for (const char* name : {"c2.cut", "c3.cut", "c2.ca", "c3.ca"}) EXPECT_FALSE(Exists(name)) << name;
  for (const char* name : {"c1.cut", "c4.cut", "c1.ca", "c4.ca"}) EXPECT_TRUE(Exists(name)) << name;
  EXPECT_EQ(frame->mdiClient->children.size(), 2u);
  EXPECT_EQ(Cut(), last);
}

TEST_F(FilmCommands, DeleteWithNoKeepsFilesAndWindows) {
  MakeFilm(3);
  Cut()->MarkImages();
  SelectCuts({2, 0});
  platform::headless::QueueYesNo(false);
  Command(kCommandDeleteCuts);
  EXPECT_EQ(FilmNames(), "c2.cut|");
  EXPECT_EQ(CutLines(), "*c2|");
  EXPECT_EQ(platform::ListCaret(frame->cutList), 0);
  for (const char* name : {"c1.cut", "c2.cut", "c3.cut"}) EXPECT_TRUE(Exists(name)) << name;
  EXPECT_EQ(frame->mdiClient->children.size(), 3u);
}

TEST_F(FilmCommands, LinesBehindDeletedOnesComeOutSelected) {
  MakeFilm(5);
  CloseCuts();
  SelectCuts({3, 1});
  platform::headless::QueueYesNo(false);
  Command(kCommandDeleteCuts);
  EXPECT_EQ(CutLines(), "c1|*c3|*c5|");
  EXPECT_EQ(platform::ListCaret(frame->cutList), 1);
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

TEST_F(FilmCommands, ADeletedModifiedCutAsksNothing) {
  MakeFilm(1);
  Cut()->MarkImages();
  platform::headless::QueueYesNo(true);
  Command(kCommandDeleteCuts);
  EXPECT_EQ(platform::headless::LastQuestion().count, 1);
  EXPECT_EQ(Cut(), nullptr);
  EXPECT_FALSE(Exists("c1.cut"));
}

TEST_F(FilmCommands, ACutThatStandsTwiceIsDeletedWithOneWindow) {
  MakeFilm(1);
  Command(kCommandAddCutToFilm);
  EXPECT_EQ(FilmNames(), "c1.cut|c1.cut|");
  SelectCuts({0, 1});
  platform::headless::QueueYesNo(true);
  Command(kCommandDeleteCuts);
  EXPECT_EQ(FilmNames(), "");
  EXPECT_EQ(CutLines(), "");
  EXPECT_EQ(Cut(), nullptr);
}

TEST_F(FilmCommands, AnEmptyFilmAsksNothing) {
  for (const int32_t id : {kCommandDeleteCuts, kCommandRenameCut, kCommandExportFilm, kCommandPlaySelection})
    Command(id);
  EXPECT_EQ(platform::headless::LastQuestion().count, 0);
}

// Renaming.

TEST_F(FilmCommands, RenameChangesFileEntriesLinesAndWindow) {
  MakeFilm(2);
  Command(kCommandAddCutToFilm);  // c2 a second time
  SelectCuts({1});
  Command(kCommandRenameCut, kRenameDialog, {{kRenameEdit, "renamed"}});
  EXPECT_EQ(FilmNames(), "c1.cut|renamed.cut|renamed.cut|");
  EXPECT_EQ(platform::ListCaret(frame->cutList), 1);
  EXPECT_EQ(LineOf(frame->cutList, 0), "c1");
  EXPECT_EQ(LineOf(frame->cutList, 1), "renamed");
  EXPECT_EQ(LineOf(frame->cutList, 2), "renamed");
  EXPECT_FALSE(Exists("c2.cut"));
  EXPECT_TRUE(Exists("renamed.cut"));
  EXPECT_EQ(Cut()->path, folder.Path("renamed.cut"));
  EXPECT_EQ(TextOf(Cut()->window), "renamed.cut");
  EXPECT_NE(frame->film->modified, 0u);
}

TEST_F(FilmCommands, RenameToTheSameNameOrCancelledDoesNothing) {
  MakeFilm(1);
  frame->film->modified = 0;
  Command(kCommandRenameCut, kRenameDialog, {});
  CancelledCommand(kCommandRenameCut, kRenameDialog, {{kRenameEdit, "x"}});
  EXPECT_EQ(FilmNames(), "c1.cut|");
  EXPECT_TRUE(Exists("c1.cut"));
  EXPECT_EQ(frame->film->modified, 0u);
}

TEST_F(FilmCommands, RenameOfAClosedCutRenamesItsFile) {
  MakeFilm(1);
  CloseCuts();
  Command(kCommandRenameCut, kRenameDialog, {{kRenameEdit, "closed"}});
  EXPECT_TRUE(Exists("closed.cut"));
  EXPECT_EQ(FilmNames(), "closed.cut|");
}

// Extracting.

TEST_F(FilmCommands, ExtractCopiesTheSelectedCutsBesideANewFilm) {
  MakeFilm(3);
  frame->film->modified = 0;
  Command(kCommandFilmProperties, kFilmDialog,
          {{kFilmTitleEdit, "t"}, {kFilmAuthorEdit, "a"}, {kFilmWidthEdit, "64"}, {kFilmHeightEdit, "48"}});
  std::filesystem::create_directory(folder.Path("sub"));
  SelectCuts({2, 0});
  FileCommand(kCommandExtractCuts, folder.Path("sub/new"));
  EXPECT_EQ(Contents("sub/new.flm"), "t\na\n64, 48\nc1.cut\nc3.cut\n");
  EXPECT_EQ(Contents("sub/c1.cut"), Contents("c1.cut"));
  EXPECT_EQ(Contents("sub/c3.cut"), Contents("c3.cut"));
  EXPECT_FALSE(Exists("sub/c2.cut"));
  EXPECT_EQ(Title(), kProgramTitle);
  EXPECT_STREQ(frame->film->path, "");
}

TEST_F(FilmCommands, ExtractKeepsTheLineOfACutThatIsGone) {
  MakeFilm(1);
  CloseCuts();
  platform::DeletePath(folder.Path("c1.cut").c_str());
  std::filesystem::create_directory(folder.Path("sub"));
  FileCommand(kCommandExtractCuts, folder.Path("sub/new.flm"));
  EXPECT_EQ(Contents("sub/new.flm"), "\n\n320, 240\nc1.cut\n");
}

TEST_F(FilmCommands, ExtractIntoTheCutsOwnFolderDestroysThem) {
  MakeFilm(1);
  CloseCuts();
  FileCommand(kCommandExtractCuts, folder.Path("new.flm"));
  EXPECT_EQ(Contents("c1.cut"), "");
}

TEST_F(FilmCommands, ACancelledExtractWritesNothing) {
  MakeFilm(1);
  platform::headless::QueueFileCancel();
  Command(kCommandExtractCuts);
  FileCommand(kCommandExtractCuts, folder.Path("no/such/new.flm"));
  EXPECT_FALSE(Exists("new.flm"));
}

// The container.

TEST_F(FilmCommands, ExportWritesAllCuts) {
  MakeFilm(2);
  Cut()->stateFlags &= ~static_cast<uint32_t>(kModified);
  FileCommand(kCommandExportFilm, folder.Path("film"));
  const std::string bytes = Contents("film.sv");
  ASSERT_GT(bytes.size(), 26u);
  EXPECT_EQ(bytes.substr(0, 2), "SV");
  const auto number = [&bytes](size_t at, size_t count) {
    uint32_t value = 0;
    for (size_t i = count; i-- > 0;) value = value << 8 | static_cast<uint8_t>(bytes[at + i]);
    return value;
  };
  EXPECT_EQ(number(2, 4), bytes.size());
  EXPECT_EQ(number(8, 2), 320u);
  EXPECT_EQ(number(12, 2), 40u);  // the largest picture
  EXPECT_EQ(number(14, 2), 30u);
  EXPECT_EQ(number(16, 2), 2u);
  EXPECT_EQ(number(18, 4), 18u + 4u * 2u);
  EXPECT_TRUE(Exists("c1.ca"));
  EXPECT_TRUE(Exists("c2.ca"));
  EXPECT_EQ(Marks(), "it");  // the stale marks stay
  EXPECT_EQ(platform::headless::CurrentCursor(), platform::CursorShape::kArrow);
}

TEST_F(FilmCommands, ExportOfAnUnreadableCutBeepsAndLeavesTheFileAndTheCursor) {
  MakeFilm(2);
  CloseCuts();
  platform::DeletePath(folder.Path("c2.cut").c_str());
  FileCommand(kCommandExportFilm, folder.Path("film.sv"));
  EXPECT_EQ(platform::headless::AlertCount(), 1);
  EXPECT_TRUE(Exists("film.sv"));
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

TEST_F(FilmCommands, SelectedCutsPlayInTheOrderOfTheList) {
  MakeFilm(3);
  CloseCuts();
  SelectCuts({2, 0});
  Command(kCommandPlaySelection);
  ASSERT_NE(frame->streamBuffer.buffer, nullptr);
  EXPECT_EQ(std::string(reinterpret_cast<char*>(frame->streamBuffer.buffer), 2), "SV");
  EXPECT_EQ(TextOf(frame->animationWindow.window), std::to_string(frame->streamBuffer.size) + " byte");
  EXPECT_TRUE(platform::IsShown(frame->animationWindow.window));
  EXPECT_TRUE(Exists("c1.ca"));
  EXPECT_FALSE(Exists("c2.ca"));
  EXPECT_TRUE(Exists("c3.ca"));
}

TEST_F(FilmCommands, WithoutASelectedLineNothingPlaysAndNothingStops) {
  MakeFilm(1);
  Command(kCommandPlay);
  EXPECT_TRUE(platform::IsShown(frame->animationWindow.window));
  platform::SetListLineSelected(frame->cutList, -1, false);
  Command(kCommandPlaySelection);
  EXPECT_TRUE(platform::IsShown(frame->animationWindow.window));
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
  uint8_t* buffer = static_cast<uint8_t*>(std::malloc(stream.size()));
  std::memcpy(buffer, stream.data(), stream.size());
  frame->PlayBuffer(buffer, static_cast<int32_t>(stream.size()));
  platform::DeletePath(folder.Path("large.ca").c_str());
  FileCommand(kCommandExportFilm, folder.Path("second.sv"));
  EXPECT_EQ(frame->animationWindow.bitmap.width, 200);
  for (int32_t i = 0; i < 20 && platform::headless::RunTimer(); ++i) {
  }
}

}  // namespace
}  // namespace sorvel::testshell
