// Cuts and films on the disk, and Japanese in names and texts.
#include "app.h"
#include "colors.h"
#include "resources/ids.h"
#include "text.h"

namespace sorvel::desktop {
namespace {

class FilesTest : public DesktopTest {
 protected:
  void SetUp() override { ASSERT_TRUE(app.Start()); }

  testing::AssertionResult Restart(const std::string& commandLine = "") {
    const testing::AssertionResult left = app.Leave();
    return left ? app.Start(commandLine) : left;
  }

  // A cut of two frames with a line each, saved under this name. It stays open.
  void MakeCut(const std::string& name) {
    ASSERT_TRUE(app.NewCut("原画"));
    ASSERT_TRUE(app.Stroke({20, 30}, {100, 30}));
    ASSERT_TRUE(app.TypeUntil("t", kKeyFrameCheck, "2(2f)"));
    Type("b");
    ASSERT_TRUE(app.HasPixel(60, 30, kTransparent));
    ASSERT_TRUE(app.Stroke({20, 60}, {100, 60}));
    ASSERT_TRUE(app.SaveCutAs(app.PathOf(name)));
  }

  // The cut of MakeCut as it was saved: a loaded cut stands on its last frame.
  void ExpectTheCut() {
    ASSERT_TRUE(Await([this] { return app.Cut() != nullptr; })) << "no cut is open";
    EXPECT_TRUE(app.Shows(kKeyFrameCheck, "2(2f)"));
    EXPECT_TRUE(app.Lists(kLayerList, {"原画 (2/2)"}));
    EXPECT_TRUE(app.HasPixel(60, 60, kBlack));
    EXPECT_TRUE(app.HasPixel(60, 30, kTransparent));
    ASSERT_TRUE(app.HasFocus(app.Cut()));
    EXPECT_TRUE(app.TypeUntil("q", kKeyFrameCheck, "1(1f)"));
    EXPECT_TRUE(app.HasPixel(60, 30, kBlack));
  }
};

TEST_F(FilesTest, ASavedCutComesBackByTheCommandLine) {
  ASSERT_NO_FATAL_FAILURE(MakeCut("c1.cut"));
  EXPECT_EQ(ReadFile(app.PathOf("c1.cut")).rfind("Sorvelin Cut", 0), 0u);
  EXPECT_TRUE(app.Shows(app.Frame(), "Sorvel Developer - [c1.cut]"));
  ASSERT_TRUE(Restart(app.PathOf("c1.cut")));
  ExpectTheCut();
  EXPECT_TRUE(app.Keep("reopened"));
}

TEST_F(FilesTest, TheExtensionMayBeInCapitalsAndQuotesOpenNothing) {
  ASSERT_NO_FATAL_FAILURE(MakeCut("c1.cut"));
  ASSERT_TRUE(app.Leave());
  ASSERT_TRUE(WriteFile(app.PathOf("c2.CuT"), ReadFile(app.PathOf("c1.cut"))));
  ASSERT_TRUE(app.Start(app.PathOf("c2.CuT")));
  ExpectTheCut();
  ASSERT_TRUE(app.Start('"' + app.PathOf("c1.cut") + '"'));
  EXPECT_EQ(app.Cut(), nullptr);
}

TEST_F(FilesTest, AJapaneseNameHolds) {
  // The second byte of each of these letters is a backslash in Shift JIS.
  const std::string name = "表ソ十 能.cut";
  ASSERT_NO_FATAL_FAILURE(MakeCut(name));
  EXPECT_TRUE(app.Shows(app.Frame(), "Sorvel Developer - [" + name + "]"));
  EXPECT_TRUE(app.Keep("japanese-name"));
  ASSERT_TRUE(Restart(app.PathOf(name)));
  ExpectTheCut();
  EXPECT_EQ(app.Text(app.Cut()), name);
}

TEST_F(FilesTest, JapaneseTextsAreKept) {
  ASSERT_NO_FATAL_FAILURE(MakeCut("c1.cut"));
  for (int i = 0; i < 7; i++) Press(VK_TAB);
  ASSERT_TRUE(app.HasFocus(app.Of(kCommentEdit)));
  ASSERT_TRUE(app.TypeUntil("表情をソフトに、十秒", kCommentEdit, "表情をソフトに、十秒"));
  Press(VK_TAB);
  ASSERT_TRUE(app.HasFocus(app.Cut()));
  ASSERT_TRUE(app.Choose('c', "p"));
  ASSERT_TRUE(app.Answer("カットのプロパティ", {{kCutCreditEdit, "表現 花子"}}));
  ASSERT_TRUE(app.SaveCutAs(app.PathOf("c2.cut")));
  const std::string file = ReadFile(app.PathOf("c2.cut"));
  EXPECT_NE(file.find(ShiftJis("表情をソフトに、十秒")), std::string::npos);
  EXPECT_NE(file.find(ShiftJis("表現 花子")), std::string::npos);
  ASSERT_TRUE(Restart(app.PathOf("c2.cut")));
  EXPECT_TRUE(app.Shows(kCommentEdit, "表情をソフトに、十秒"));
  EXPECT_TRUE(app.Keep("japanese-comment"));
  ASSERT_TRUE(app.Choose('c', "p"));
  ASSERT_TRUE(app.HasDialog("カットのプロパティ"));
  EXPECT_TRUE(app.HasValues({{kCutCreditEdit, "表現 花子"}}));
}

TEST_F(FilesTest, TheSystemReadsAnExportedFrame) {
  ASSERT_NO_FATAL_FAILURE(MakeCut("c1.cut"));
  const std::string path = app.PathOf("表.bmp");
  ASSERT_TRUE(app.Choose('r', "b"));
  ASSERT_TRUE(app.AnswerFileDialog(path));
  ASSERT_TRUE(Await([&] { return ReadFile(path).size() == 118 + 180 * 120; })) << ReadFile(path).size();
  const HANDLE image = LoadImageW(nullptr, Wide(path).c_str(), IMAGE_BITMAP, 0, 0, LR_LOADFROMFILE);
  ASSERT_NE(image, nullptr) << GetLastError();
  BITMAP size = {};
  GetObjectW(image, sizeof(size), &size);
  EXPECT_EQ(size.bmWidth, 240);
  EXPECT_EQ(size.bmHeight, 180);
  const HDC dc = CreateCompatibleDC(nullptr);
  const HGDIOBJ before = SelectObject(dc, image);
  // The second frame shows the line of its own cell, and no ink of the other one.
  const Spot spots[] = {{60, 60, kBlack}, {60, 30, kWhite}, {0, 0, kWhite}, {239, 179, kWhite}};
  for (const auto& [x, y, color] : spots) EXPECT_EQ(GetPixel(dc, x, y), color) << x << ", " << y;
  SelectObject(dc, before);
  DeleteDC(dc);
  DeleteObject(image);
}

TEST_F(FilesTest, AChangedCutAsksBeforeItCloses) {
  ASSERT_NO_FATAL_FAILURE(MakeCut("表.cut"));
  const std::string saved = ReadFile(app.PathOf("表.cut"));
  ASSERT_TRUE(app.Stroke({20, 90}, {100, 90}));
  Press(VK_F4, {VK_CONTROL});
  ASSERT_TRUE(app.AnswerQuestion("表.cut を保存しますか？", IDYES, "close-question"));
  ASSERT_TRUE(app.HasNoCut());
  EXPECT_NE(ReadFile(app.PathOf("表.cut")), saved);
  EXPECT_TRUE(app.Shows(app.Frame(), "Sorvel Developer"));
  ASSERT_TRUE(app.Keep("after-close"));
  ASSERT_TRUE(app.Leave());
}

TEST_F(FilesTest, NoLeavesTheFileAndClosesTheWindow) {
  ASSERT_NO_FATAL_FAILURE(MakeCut("c1.cut"));
  const std::string saved = ReadFile(app.PathOf("c1.cut"));
  ASSERT_TRUE(app.Stroke({20, 90}, {100, 90}));
  Press(VK_F4, {VK_CONTROL});
  ASSERT_TRUE(app.AnswerQuestion("", IDNO));
  ASSERT_TRUE(app.HasNoCut());
  EXPECT_EQ(ReadFile(app.PathOf("c1.cut")), saved);
}

TEST_F(FilesTest, AnUntouchedCutClosesWithoutAQuestion) {
  ASSERT_NO_FATAL_FAILURE(MakeCut("c1.cut"));
  Press(VK_F4, {VK_CONTROL});
  ASSERT_TRUE(app.HasNoCut());
  EXPECT_EQ(app.Dialog(), nullptr);
}

TEST_F(FilesTest, ANewCutThatNobodySavedAsksByAnUntitledName) {
  ASSERT_TRUE(app.NewCut());
  ASSERT_TRUE(app.Choose('v', "x"));
  ASSERT_TRUE(app.AnswerQuestion("untitled.cut を保存しますか？", IDYES));
  ASSERT_TRUE(app.AnswerFileDialog(app.PathOf("kept.cut")));
  EXPECT_TRUE(app.Ends());
  EXPECT_TRUE(FileExists(app.PathOf("kept.cut")));
}

TEST_F(FilesTest, ADroppedFileOpens) {
  ASSERT_NO_FATAL_FAILURE(MakeCut("表.cut"));
  ASSERT_TRUE(Restart());
  ASSERT_TRUE(app.Drop(app.PathOf("表.cut")));
  ExpectTheCut();
  EXPECT_EQ(app.Text(app.Cut()), "表.cut");
}

TEST_F(FilesTest, AFileIsChosenInTheOpenDialog) {
  ASSERT_NO_FATAL_FAILURE(MakeCut("c1.cut"));
  ASSERT_TRUE(Restart());
  Press('O', {VK_CONTROL});
  ASSERT_TRUE(Await([this] { return app.Dialog() != nullptr; }));
  app.StillPicture();
  EXPECT_TRUE(app.KeepScreen("open-dialog"));
  ASSERT_TRUE(app.AnswerFileDialog(app.PathOf("c1.cut")));
  ExpectTheCut();
}

TEST_F(FilesTest, TheFilmComesBackAtTheNextStart) {
  ASSERT_NO_FATAL_FAILURE(MakeCut("表1.cut"));
  ASSERT_TRUE(app.Choose('c', "a"));
  ASSERT_TRUE(app.Lists(kCutList, {"表1"}));
  // The next cut of the film is numbered by itself, and starts from the dialog's memory.
  Press(VK_F10);
  ASSERT_TRUE(app.HasDialog("カットのプロパティ"));
  EXPECT_TRUE(app.HasValues({{kCutWidthEdit, "240"}}));
  Press(VK_RETURN);
  ASSERT_TRUE(app.Answer("レイヤのプロパティ"));
  ASSERT_TRUE(app.Lists(kCutList, {"表1", "表002"}));
  EXPECT_TRUE(FileExists(app.PathOf("表002.cut")));
  ASSERT_TRUE(app.Choose('f', "s"));
  ASSERT_TRUE(app.AnswerFileDialog(app.PathOf("作品.flm")));
  ASSERT_TRUE(Await([this] { return app.Title().find("作品") != std::string::npos; })) << app.Title();
  EXPECT_TRUE(app.Keep("film"));
  ASSERT_TRUE(app.Leave());
  EXPECT_EQ(Setting(app, "setup", "film"), app.PathOf("作品.flm"));
  ASSERT_TRUE(app.Start());
  EXPECT_TRUE(app.Shows(app.Frame(), "Sorvel Developer - 作品"));
  EXPECT_TRUE(app.Lists(kCutList, {"表1", "表002"}));
  EXPECT_EQ(app.Cut(), nullptr);
  const RECT list = app.Screen(app.Of(kCutList));
  DoubleClick({list.left + 20, list.top + 8});
  ExpectTheCut();
  // All of the film one after the other.
  ASSERT_TRUE(app.Choose('f', "a"));
  EXPECT_TRUE(app.HasPlayer());
}

TEST_F(FilesTest, AChangedFilmAsksAtTheExit) {
  ASSERT_TRUE(app.Choose('f', "p"));
  ASSERT_TRUE(app.Answer("フィルムのプロパティー", {{kFilmTitleEdit, "十二夜"}, {kFilmAuthorEdit, "表 太郎"}},
                         "film-properties"));
  ASSERT_TRUE(app.Choose('v', "x"));
  ASSERT_TRUE(app.AnswerQuestion("untitled.cut を保存しますか？", IDYES));
  ASSERT_TRUE(app.AnswerFileDialog(app.PathOf("ソ.flm")));
  ASSERT_TRUE(app.Ends());
  const std::string film = FromShiftJis(ReadFile(app.PathOf("ソ.flm")));
  EXPECT_NE(film.find("十二夜"), std::string::npos) << film;
  EXPECT_NE(film.find("表 太郎"), std::string::npos) << film;
}

TEST_F(FilesTest, AllWindowsAreClosedAtOnce) {
  ASSERT_NO_FATAL_FAILURE(MakeCut("c1.cut"));
  ASSERT_NO_FATAL_FAILURE(MakeCut("c2.cut"));
  ASSERT_TRUE(app.Choose('w', "c"));
  ASSERT_TRUE(app.AnswerQuestion("", IDNO, "close-all"));
  ASSERT_TRUE(app.HasNoCut());
  EXPECT_TRUE(app.DialogGoes());
  EXPECT_TRUE(app.Runs());
}

}  // namespace
}  // namespace sorvel::desktop
