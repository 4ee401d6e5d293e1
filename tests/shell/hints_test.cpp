// What explains the program where the user looks, and what is said of files that don't open.
#include <string>
#include <vector>

#include "platform/hints.h"
#include "resources/ids.h"
#include "shell/shell_fixture.h"

namespace sorvel::testshell {
namespace {

using platform::headless::LastHint;

class Hints : public ShellTest {
 protected:
  void Mouse(uint32_t message, int32_t x, int32_t y, uint32_t keys = 0) {
    platform::headless::SetCursorPlace(platform::ClientToScreen(Cut()->window, {x, y}));
    platform::Send(Cut()->window, message, keys, platform::PackPoint({x, y}));
  }
  // The note over the active cut; empty if none is shown.
  std::string NoteOfCut() {
    for (const platform::WindowHandle child : Cut()->window->children) {
      if (child->kind == platform::WindowKind::kLabel && child->shown) return child->text;
    }
    return "";
  }
  bool EmptyAreaExplains() { return frame->emptyNote->shown && !frame->emptyNote->text.empty(); }
};

TEST_F(Hints, TheEmptyAreaSaysWhatToDoAsLongAsNoCutIsOpen) {
  EXPECT_TRUE(EmptyAreaExplains());
  const std::string text = frame->emptyNote->text;
  for (const char* word : {"Ctrl+N", "Ctrl+O", "ドロップ", "右クリック", "q と w", "c と v"}) {
    EXPECT_NE(text.find(ShiftJis(word)), std::string::npos) << word;
  }
  EXPECT_EQ(frame->emptyNote->place, frame->mdiClient->place);
  MakeCut();
  EXPECT_FALSE(EmptyAreaExplains());
  MakeCut();
  platform::DestroyMdiChild(frame->mdiClient, Cut()->window);
  EXPECT_FALSE(EmptyAreaExplains());
  frame->TogglePanels();
  CloseCuts();
  EXPECT_TRUE(EmptyAreaExplains());
  EXPECT_EQ(frame->emptyNote->place, frame->mdiClient->place);
  EXPECT_EQ(frame->emptyNote->place.left, 0);
}

TEST_F(Hints, ACutWithoutALayerSaysWhatMakesOne) {
  MakeCut(40, 30, false);
  EXPECT_NE(NoteOfCut().find(ShiftJis("「追加」")), std::string::npos);
  AddLayer("A");
  EXPECT_EQ(NoteOfCut(), "");
  Command(kCommandDeleteLayer);
  EXPECT_NE(NoteOfCut(), "");
  AddLayer("B");
  AddLayer("C");
  Command(kCommandDeleteLayer);
  EXPECT_EQ(NoteOfCut(), "");
}

TEST_F(Hints, APressThatDrawsNothingSaysWhy) {
  MakeCut(40, 30);
  Mouse(platform::kMessageLeftDown, 320, 240);
  Mouse(platform::kMessageLeftUp, 320, 240);
  EXPECT_EQ(LastHint().count, 0);
  Command(kCommandBlankCell);
  platform::headless::PaintInvalid(Cut()->window);
  const auto screenBytes = [this] {
    std::string bytes;
    for (const platform::ColorEntry& color : Cut()->window->pixels) {
      bytes.append({static_cast<char>(color.red), static_cast<char>(color.green), static_cast<char>(color.blue)});
    }
    return bytes;
  };
  const std::string screen = screenBytes();
  platform::SetText(frame->statusBar, "text");
  int32_t count = 0;
  for (const int32_t tool : {kToolFreePen, kToolLine, kToolFill, kToolAreaSelect}) {
    Command(tool);
    Mouse(platform::kMessageMouseMove, 321, 241);
    EXPECT_EQ(LastHint().count, count);
    Mouse(platform::kMessageLeftDown, 321, 241);
    EXPECT_EQ(LastHint().count, ++count);
    Mouse(platform::kMessageLeftUp, 321, 241);
    Mouse(platform::kMessageRightDown, 321, 241);
    Mouse(platform::kMessageRightUp, 321, 241);
    EXPECT_EQ(LastHint().count, count);
  }
  EXPECT_NE(LastHint().text.find(ShiftJis("空セル")), std::string::npos);
  EXPECT_EQ(LastHint().place, platform::ClientToScreen(Cut()->window, {321, 241}));
  EXPECT_EQ(screenBytes(), screen);
  EXPECT_EQ(TextOf(frame->statusBar), "text");
  Command(kCommandBlankCell);
  Command(kCommandDeleteLayer);
  Mouse(platform::kMessageLeftDown, 321, 241);
  EXPECT_EQ(LastHint().count, count + 1);
  EXPECT_NE(LastHint().text.find(ShiftJis("レイヤがない")), std::string::npos);
  // These move something else than ink.
  Command(kToolFramePosition);
  Mouse(platform::kMessageLeftDown, 321, 241);
  Mouse(platform::kMessageLeftUp, 321, 241);
  EXPECT_EQ(LastHint().count, count + 1);
}

TEST_F(Hints, ANewZoomIsShownForAMoment) {
  MakeCut(40, 30);
  Cut()->ZoomIn({320, 240});
  EXPECT_EQ(LastHint().text, ShiftJis("表示倍率 200%"));
  EXPECT_GT(LastHint().milliseconds, 0u);
  for (int i = 0; i < 3; ++i) Cut()->ZoomOut({320, 240});
  EXPECT_EQ(LastHint().text, ShiftJis("表示倍率 33%"));
  EXPECT_EQ(LastHint().count, 4);
  Cut()->ZoomAt({320, 240}, true);
  EXPECT_EQ(LastHint().text, ShiftJis("表示倍率 50%"));
  // A press takes it away, or its end would close the pen picker.
  for (const uint32_t press : {platform::kMessageLeftDown, platform::kMessageRightDown}) {
    Cut()->ZoomAt({320, 240}, true);
    EXPECT_TRUE(LastHint().shown);
    Mouse(press, 320, 240);
    EXPECT_FALSE(LastHint().shown);
    Mouse(press + 1, 320, 240);
  }
}

// Panels.

TEST_F(Hints, EveryPanelHasItsHelpAsATip) {
  for (const platform::WindowHandle panel :
       {frame->frameTimeEdit, frame->loopEdit, frame->brightnessEdit, frame->commentEdit, frame->keyFrameCheck,
        frame->layerList, frame->cutList}) {
    EXPECT_FALSE(panel->tip.empty()) << panel->id;
  }
  EXPECT_EQ(frame->commentEdit->tip, ShiftJis("現在のフレームについてのコメントを入力します。"));
}

TEST_F(Hints, FullWidthDigitsBecomePlainBeforeTheyAreCounted) {
  MakeCut();
  Type(frame->brightnessEdit, ShiftJis("１００"));
  EXPECT_EQ(TextOf(frame->brightnessEdit), "100");
  Type(frame->frameTimeEdit, ShiftJis("－12"));
  Type(frame->loopEdit, ShiftJis("1２３４"));
  // Only numbers change.
  Type(frame->commentEdit, ShiftJis("－１表０"));
  frame->CommitPanels(Cut());
  EXPECT_EQ(CurrentFrame()->DecodedBrightness(), 100);
  EXPECT_EQ(CurrentFrame()->time, -12);
  EXPECT_EQ(CurrentFrame()->loop, 1234);
  EXPECT_EQ(CurrentFrame()->comment, ShiftJis("－１表０"));
}

TEST_F(Hints, ANumberOutsideItsRangeSaysTheRangeInABalloon) {
  MakeCut();
  const struct {
    platform::WindowHandle edit;
    const char* wrong;
    const char* right;
    const char* range;
  } cases[] = {{frame->brightnessEdit, "101", "100", "0 から 100 までの数を入力してください。"},
               {frame->brightnessEdit, "-1", "0", "0 から 100 までの数を入力してください。"},
               {frame->frameTimeEdit, "12345", "-999", "-999 から 9999 までの数を入力してください。"},
               {frame->frameTimeEdit, "-1000", "-", "-999 から 9999 までの数を入力してください。"},
               {frame->loopEdit, "a", "9999", "0 から 9999 までの数を入力してください。"}};
  for (const auto& each : cases) {
    platform::SetFocusTo(each.edit);
    Type(each.edit, each.wrong);
    EXPECT_EQ(each.edit->balloon, ShiftJis(each.range)) << each.wrong;
    Type(each.edit, each.right);
    EXPECT_EQ(each.edit->balloon, "") << each.right;
    Type(each.edit, each.wrong);
    platform::SetFocusTo(Cut()->window);
    frame->RefreshPanels(Cut());
    EXPECT_EQ(each.edit->balloon, "") << each.wrong;
  }
}

// Questions.

TEST_F(Hints, DeletingFilesIsAskedWithNoAsTheDefault) {
  MakeFilm(1);
  platform::headless::QueueYesNo(false);
  Command(kCommandDeleteCuts);
  EXPECT_EQ(platform::headless::LastQuestion().button, platform::DefaultButton::kNo);
  platform::headless::QueueYesNo(true);
  Command(kCommandCloseAll);
  EXPECT_EQ(platform::headless::LastQuestion().button, platform::DefaultButton::kYes);
  EXPECT_EQ(platform::headless::LastQuestion().text,
            ShiftJis("全て閉じます。変更されたカットを確認せずに保存しますか？"));
}

TEST_F(Hints, ThePlayerOpensAtTheCornerOfTheCutsAndStaysWhereItIsPutThen) {
  MakeCut();
  Command(kCommandPreview);
  const platform::WindowHandle player = frame->animationWindow.window;
  const Bounds area = platform::ScreenBounds(frame->mdiClient);
  EXPECT_EQ(player->place.left, area.left);
  EXPECT_EQ(player->place.top, area.top);
  platform::MoveWindow(player, 5, 6, player->width, player->height, false);
  Command(kCommandPreview);
  EXPECT_EQ(player->place.left, 5);
  EXPECT_EQ(player->place.top, 6);
}

// Files that don't open.

class Openings : public ShellTest {
 protected:
  // The warnings since the last call, without the folder of the test, each with a bar behind it.
  std::string News() {
    std::string news;
    const std::vector<std::string>& warnings = platform::headless::Warnings();
    for (; seen < warnings.size(); ++seen) {
      std::string text = warnings[seen];
      const size_t place = text.find(folder.Path(""));
      if (place != std::string::npos) text.erase(place, folder.Path("").size());
      news += text + "|";
    }
    return news;
  }
  static std::string NotOpened(const std::string& name, const std::string& why) {
    return ShiftJis(name + " を開けませんでした。\n" + why + "|");
  }
  void Drop(const std::string& name) { platform::headless::DropFiles(frame->frameWindow, {folder.Path(name)}); }

  const std::string missing = "ファイルが見つかりません。";
  const std::string foreign = "このプログラムのファイルではないか、壊れています。";
  const std::string unreadable = "ファイルを読み込めません。";

 private:
  size_t seen = 0;
};

TEST_F(Openings, AMissingFileIsSaid) {
  for (const char* name : {"a.cut", "a.lyr", "a.flm"}) {
    Drop(name);
    EXPECT_EQ(News(), NotOpened(name, missing));
  }
  FileCommand(kCommandOpenCut, folder.Path("b.cut"));
  EXPECT_EQ(News(), NotOpened("b.cut", missing));
  FileCommand(kCommandOpenLayer, folder.Path("b.lyr"));
  EXPECT_EQ(News(), NotOpened("b.lyr", missing));
  FileCommand(kCommandOpenFilm, folder.Path("b.flm"));
  EXPECT_EQ(News(), NotOpened("b.flm", missing));
  MakeCut();
  FileCommand(kCommandOverwriteLayer, folder.Path("c.lyr"));
  EXPECT_EQ(News(), NotOpened("c.lyr", missing));
  EXPECT_EQ(platform::headless::LastMessage().title, "Sorvelin");
  EXPECT_EQ(platform::headless::LastMessage().icon, platform::BoxIcon::kWarning);
}

TEST_F(Openings, AMissingCutOfTheListIsSaid) {
  testdoc::WriteFile(folder.Path("a.flm"), "t\na\n8, 3\ngone.cut\n");
  Drop("a.flm");
  EXPECT_EQ(News(), "");
  platform::headless::DoubleClickLine(frame->cutList, 0);
  EXPECT_EQ(News(), NotOpened("gone.cut", missing));
  EXPECT_EQ(Cut(), nullptr);
}

TEST_F(Openings, AForeignFileIsSaid) {
  for (const char* name : {"a.cut", "a.lyr"}) {
    testdoc::WriteFile(folder.Path(name), "something else");
    Drop(name);
    EXPECT_EQ(News(), NotOpened(name, foreign));
  }
  MakeCut();
  FileCommand(kCommandOverwriteLayer, folder.Path("a.lyr"));
  EXPECT_EQ(News(), NotOpened("a.lyr", foreign));
  testdoc::WriteFile(folder.Path("b.flm"), "something\nelse\naltogether\n");
  Drop("b.flm");
  EXPECT_EQ(News(), ShiftJis("b.flm はフィルムのファイルではないようです。\n読み込めた行だけを開きました。|"));
}

TEST_F(Openings, AFileThatCannotBeReadIsSaid) {
  for (const char* name : {"a.cut", "a.lyr"}) {
    ASSERT_TRUE(platform::MakeFolder(folder.Path(name)));
    Drop(name);
    EXPECT_EQ(News(), NotOpened(name, unreadable));
    EXPECT_EQ(Cut(), nullptr);
  }
}

TEST_F(Openings, AFileThatOpensAndOneOfAnotherSortSayNothing) {
  MakeSavedCut("a.cut");
  FileCommand(kCommandSaveLayer, folder.Path("a.lyr"));
  for (const char* name : {"a.cut", "a.lyr", "missing.txt", "missing", "a.cut.bak"}) {
    Drop(name);
    EXPECT_EQ(News(), "") << name;
  }
  FileCommand(kCommandOverwriteLayer, folder.Path("a.lyr"));
  EXPECT_EQ(News(), "");
  EXPECT_EQ(frame->openCuts.size(), 3u);
}

TEST_F(Openings, TheCommandLineIsAnsweredAndTheRememberedFilmIsNot) {
  platform::DestroyWindow(frame->frameWindow);
  FinishProgram(frame.get());
  for (const bool isCommandLine : {true, false}) {
    platform::headless::Reset();
    frame = std::make_unique<MainFrame>();
    WriteSettingText(settings::kFilm, folder.Path("old.flm").c_str());
    const std::string line = isCommandLine ? folder.Path("new.flm") : "";
    ASSERT_TRUE(StartProgram(frame.get(), line.c_str(), 1));
    EXPECT_EQ(platform::headless::Warnings().size(), isCommandLine ? 1u : 0u);
    if (!isCommandLine) break;
    platform::DestroyWindow(frame->frameWindow);
    ReleaseProgram();
  }
}

}  // namespace
}  // namespace sorvel::testshell
