// The panels at the left, the focus ring and the frame's own parts.
#include <utility>

#include "app.h"
#include "resources/ids.h"

namespace sorvel::desktop {
namespace {

class PanelsTest : public DesktopTest {
 protected:
  void SetUp() override {
    ASSERT_TRUE(app.Start());
    ASSERT_TRUE(app.NewCut("線画"));
    ASSERT_TRUE(app.Shows(kKeyFrameCheck, "1(1f)"));
    bottom = app.InFrame(kCommentEdit).bottom;
  }

  // Whether the window looks as it does when all of it is painted anew. The status bar of Wine keeps a line at its old
  // right end.
  testing::AssertionResult IsFresh() {
    constexpr int wineLine = 40;
    const Picture before = app.StillPicture();
    RedrawWindow(app.Frame(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
    const Difference difference = Compare(before, app.StillPicture());
    if (difference.count <= (IsWine() ? wineLine : 0)) return testing::AssertionSuccess();
    return testing::AssertionFailure() << difference.count << " old pixels from " << difference.bounds.left << ", "
                                       << difference.bounds.top << " to " << difference.bounds.right << ", "
                                       << difference.bounds.bottom;
  }

  // Two frames more; the third is shown.
  void AddTwoFrames() {
    ASSERT_TRUE(app.TypeUntil("t", kKeyFrameCheck, "2(2f)"));
    ASSERT_TRUE(app.TypeUntil("y", kKeyFrameCheck, "3(3f)"));
  }

  // From the canvas so many fields forward.
  void Tab(int count, int control) {
    for (int i = 0; i < count; i++) Press(VK_TAB);
    ASSERT_TRUE(app.HasFocus(app.Of(control)));
  }

  // Switches a bar by the menu, and waits for the layout that goes with it.
  void Switch(const char* bar, bool on) {
    ASSERT_TRUE(app.Choose('v', bar));
    const bool status = *bar == 's';
    const HWND window = app.Of(status ? kStatusBarId : kToolBarId);
    ASSERT_TRUE(Await([&] {
      const RECT area = app.InFrame(status ? kCommentEdit : kMdiClientId);
      return (IsWindowVisible(window) != FALSE) == on && on == (status ? area.bottom == bottom : area.top > 0);
    })) << bar
        << on;
  }

  // Gives the frame another size, and waits for the layout.
  void Resize(int width, int height) {
    SetWindowPos(app.Frame(), nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    RECT client = {};
    ASSERT_TRUE(Await([&] {
      GetClientRect(app.Frame(), &client);
      return app.InFrame(kCommentEdit).right == client.right && app.InFrame(kStatusBarId).bottom == client.bottom &&
             app.InFrame(kCutList).bottom == app.InFrame(kStatusBarId).top;
    })) << width
        << " by " << height;
    EXPECT_EQ(app.InFrame(kMdiClientId).right, client.right);
    EXPECT_EQ(app.InFrame(kMdiClientId).bottom, app.InFrame(kCommentEdit).top);
    EXPECT_EQ(app.InFrame(kLayerList).bottom, app.InFrame(kCutList).top);
  }

  LONG bottom = 0;  // of the comment while there is a status bar
};

TEST_F(PanelsTest, ANewCutFillsThePanels) {
  const std::pair<int, const char*> texts[] = {
      {kFrameTimeEdit, "1"}, {kLoopEdit, "1"}, {kBrightnessEdit, "50"}, {kCommentEdit, ""}};
  for (const auto& [id, text] : texts) EXPECT_TRUE(app.Shows(id, text)) << id;
  EXPECT_TRUE(app.Lists(kLayerList, {"線画 (1/1)"}));
  EXPECT_EQ(app.Ask(app.Of(kLayerList), LB_GETCURSEL), 0);
  EXPECT_TRUE(app.Lists(kCutList, {}));
  EXPECT_EQ(app.Text(app.Cut()), "Cut");
  EXPECT_TRUE(app.Keep("new-cut"));
}

TEST_F(PanelsTest, EnterMovesTheFocusRoundTheRing) {
  const std::pair<int, const char*> ring[] = {
      {kFrameTimeEdit, "現在のフレームの時間をFPS単位で指定します。マイナス値で前のフレームと段階的につなぎます。"},
      {kKeyFrameCheck,
       "チェックすると現在のフレームをキーフレームに指定します。左側の数はフレーム番号、右のカッコ内の数は実際のタイミ"
       "ングを示します。"},
      {kLoopEdit, "ループさせたい先頭のフレームにループ回数を指定し、以降のフレームを0にします。"},
      {kBrightnessEdit,
       "出力時のフレームの明るさを指定します。50が標準で、0で画面が全て黒くなり、100で全て白くなります。"},
      {kLayerList, "現在のフレームにあるレイヤの一覧です。選択されたレイヤが編集対象となります。"},
      {kCutList,
       "現在のフィルムにあるカットの一覧です。Shift/"
       "Ctrlキーで複数選択できます。また、ダブルクリックでカットを開きます。"},
      {kCommentEdit, "現在のフレームについてのコメントを入力します。"},
  };
  for (const auto& [id, help] : ring) {
    Press(id % 2 == 0 ? VK_RETURN : VK_TAB);
    ASSERT_TRUE(app.HasFocus(app.Of(id))) << id;
    EXPECT_TRUE(app.Shows(kStatusBarId, help)) << id;
  }
  ASSERT_TRUE(app.Keep("comment-focus"));
  Press(VK_TAB);
  ASSERT_TRUE(app.HasFocus(app.Cut()));
  EXPECT_TRUE(app.Shows(kStatusBarId, ""));
  Press(VK_TAB, {VK_SHIFT});
  ASSERT_TRUE(app.HasFocus(app.Of(kCommentEdit)));
  Press(VK_RETURN, {VK_SHIFT});
  ASSERT_TRUE(app.HasFocus(app.Of(kCutList)));
}

TEST_F(PanelsTest, ValuesAreKeptWithTheLimitsOfTheirFields) {
  ASSERT_NO_FATAL_FAILURE(AddTwoFrames());
  ASSERT_NO_FATAL_FAILURE(Tab(1, kFrameTimeEdit));
  ASSERT_TRUE(app.TypeUntil("12345", kFrameTimeEdit, "12345"));
  ASSERT_NO_FATAL_FAILURE(Tab(2, kLoopEdit));
  Type("7");
  ASSERT_NO_FATAL_FAILURE(Tab(1, kBrightnessEdit));
  ASSERT_TRUE(app.TypeUntil("250", kBrightnessEdit, "250"));
  Press(VK_F2);
  ASSERT_TRUE(app.Shows(kKeyFrameCheck, "2(2f)"));
  EXPECT_TRUE(app.Shows(kFrameTimeEdit, "1"));
  EXPECT_TRUE(app.Shows(kBrightnessEdit, "50"));
  Press(VK_F3);
  ASSERT_TRUE(app.Shows(kKeyFrameCheck, "3(3f)"));
  EXPECT_TRUE(app.Shows(kFrameTimeEdit, "1234"));
  EXPECT_TRUE(app.Shows(kLoopEdit, "7"));
  EXPECT_TRUE(app.Shows(kBrightnessEdit, "100"));
}

TEST_F(PanelsTest, AnEmptyLoopIsZero) {
  ASSERT_NO_FATAL_FAILURE(Tab(3, kLoopEdit));
  Type("3");
  Press(VK_F3);
  ASSERT_TRUE(app.Shows(kLoopEdit, "3"));
  Press(VK_HOME);
  Press(VK_END, {VK_SHIFT});
  Press(VK_DELETE);
  ASSERT_TRUE(app.Shows(kLoopEdit, ""));
  Press(VK_F3);
  EXPECT_TRUE(app.Shows(kLoopEdit, "0"));
}

TEST_F(PanelsTest, TheTimeOfAKeyFrameCantBeTyped) {
  const RECT box = app.Screen(app.Of(kKeyFrameCheck));
  Click({box.left + 6, box.top + 10});
  for (const bool isKey : {true, false}) {
    ASSERT_TRUE(Await([&] { return app.IsChecked(app.Of(kKeyFrameCheck)) == isKey; }));
    Press(VK_TAB, {VK_SHIFT});
    ASSERT_TRUE(app.HasFocus(app.Of(kFrameTimeEdit)));
    Type("9");
    ASSERT_NO_FATAL_FAILURE(Tab(1, kKeyFrameCheck));
    EXPECT_EQ(app.Text(kFrameTimeEdit), isKey ? "1" : "9");
    Press(VK_SPACE);
  }
}

TEST_F(PanelsTest, AChangedTimeMovesTheCounterOfTheFramesBehind) {
  Press(VK_TAB);
  Type("10");
  Press(VK_TAB);  // leaving the field stores it
  Press(VK_F3);
  EXPECT_TRUE(app.Shows(kKeyFrameCheck, "1(1f)"));
  Click(app.At(20, 20));
  ASSERT_TRUE(app.HasFocus(app.Cut()));
  EXPECT_TRUE(app.TypeUntil("t", kKeyFrameCheck, "2(11f)"));
}

TEST_F(PanelsTest, FramesAreSteppedByFunctionKeysAndByLetters) {
  ASSERT_NO_FATAL_FAILURE(AddTwoFrames());
  const struct {
    int key;  // 0 for a letter or an item of the menu
    const char* letter;
    const char* item;
    const char* counter;
  } steps[] = {{VK_F2, "", "", "2(2f)"}, {0, "q", "", "1(1f)"}, {VK_F6, "", "", "1(1f)"},
               {VK_F7, "", "", "2(2f)"}, {0, "p", "", "3(3f)"}, {0, "E", "", "1(1f)"},
               {0, "R", "", "3(3f)"},    {0, "", "h", "1(1f)"}, {0, "", "t", "3(3f)"}};
  for (const auto& step : steps) {
    if (step.key != 0) Press(step.key);
    Type(step.letter);
    ASSERT_TRUE(*step.item == 0 || app.Choose('r', step.item));
    EXPECT_TRUE(app.Shows(kKeyFrameCheck, step.counter)) << step.key << step.letter << step.item;
  }
}

TEST_F(PanelsTest, CellsAndLayersShowInTheLayerList) {
  Type("b");
  EXPECT_TRUE(app.Lists(kLayerList, {"線画 (2/2)"}));
  Type("c");
  EXPECT_TRUE(app.Lists(kLayerList, {"線画 (1/2)"}));
  ASSERT_TRUE(app.Choose('e', "e"));
  EXPECT_TRUE(app.Lists(kLayerList, {"線画 (0/2)"}));
  ASSERT_TRUE(app.Choose('e', "e"));
  ASSERT_TRUE(app.Choose('l', "a"));
  ASSERT_TRUE(app.Answer("レイヤのプロパティ", {{kLayerNameEdit, "彩色"}}));
  EXPECT_TRUE(app.Lists(kLayerList, {"線画 (1/2)", "彩色 (1/1)"}));
  ASSERT_TRUE(app.Choose('l', "o"));  // down
  EXPECT_TRUE(app.Lists(kLayerList, {"彩色 (1/1)", "線画 (1/2)"}));
  // A line is chosen by a click, and its dialog comes by a double click.
  const RECT list = app.Screen(app.Of(kLayerList));
  const int height = static_cast<int>(app.Ask(app.Of(kLayerList), LB_GETITEMHEIGHT));
  DoubleClick({list.left + 30, list.top + 2 + height + height / 2});
  ASSERT_TRUE(app.HasDialog("レイヤのプロパティ"));
  EXPECT_TRUE(app.HasValues({{kLayerNameEdit, "線画"}}));
  ASSERT_TRUE(app.Keep("layer-dialog"));
  Press(VK_ESCAPE);
  EXPECT_TRUE(app.DialogGoes());
}

TEST_F(PanelsTest, SpaceHidesEverythingAroundTheCanvas) {
  app.ParkMouse();
  const Picture before = app.StillPicture();
  Type(" ");
  // The layout comes last.
  ASSERT_TRUE(Await([this] { return app.InFrame(kMdiClientId).left == 0; }));
  EXPECT_FALSE(IsWindowVisible(app.Of(kToolBarId)));
  for (const int id :
       {kFrameTimeEdit, kLoopEdit, kBrightnessEdit, kCommentEdit, kKeyFrameCheck, kLayerList, kCutList, kStatusBarId}) {
    EXPECT_FALSE(IsWindowVisible(app.Of(id))) << id;
  }
  const RECT client = app.ClientOnScreen(app.Frame());
  const RECT area = app.Screen(app.Of(kMdiClientId));
  EXPECT_TRUE(EqualRect(&area, &client));
  EXPECT_TRUE(app.Keep("panels-hidden"));
  Type(" ");
  ASSERT_TRUE(Await([this] { return app.InFrame(kMdiClientId).left > 0; }));
  const Difference difference = Compare(before, app.StillPicture());
  EXPECT_EQ(difference.count, 0) << difference.bounds.left << " " << difference.bounds.top << " "
                                 << difference.bounds.right << " " << difference.bounds.bottom;
}

TEST_F(PanelsTest, TheSplitterIsDragged) {
  const RECT area = app.Screen(app.Of(kMdiClientId));
  const POINT from = {area.left - 1, area.top + 100};
  MoveTo(from);
  const Picture before = app.StillPictureOf(app.Frame());
  LeftDown();
  for (int i = 1; i <= 6; i++) MoveTo({from.x + 10 * i, from.y});
  const Picture during = app.StillPictureOf(app.Frame());
  const Difference band = Compare(before, during);
  EXPECT_GT(band.count, 0) << "no frame shows where the strip would be";
  EXPECT_LE(band.Width(), 8);
  ASSERT_TRUE(app.Keep("splitter"));
  LeftUp();
  // The cut list is the last one to be moved.
  ASSERT_TRUE(Await([&] { return app.InFrame(kCutList).right == 220; })) << app.InFrame(kCutList).right;
  EXPECT_EQ(app.Screen(app.Of(kMdiClientId)).left, area.left + 60);
  EXPECT_EQ(app.InFrame(kLayerList).right, 220);
  EXPECT_EQ(app.InFrame(kCommentEdit).left, 222);
  // The way back leaves the picture as it was.
  Drag({from.x + 60, from.y}, from);
  ASSERT_TRUE(Await([&] { return app.Screen(app.Of(kMdiClientId)).left == area.left; }));
  EXPECT_EQ(Compare(before, app.StillPictureOf(app.Frame())).count, 0);
}

TEST_F(PanelsTest, TheLayoutFollowsTheWindowsSize) {
  ASSERT_NO_FATAL_FAILURE(Resize(760, 560));
  EXPECT_TRUE(app.Keep("small-window"));
}

TEST_F(PanelsTest, TheBarsAreSwitchedOffByTheMenu) {
  for (const bool on : {false, true}) {
    for (const char* bar : {"s", "t"}) ASSERT_NO_FATAL_FAILURE(Switch(bar, on));
  }
}

TEST_F(PanelsTest, TheBarsLeaveNothingOldBehind) {
  for (const char* bar : {"s", "t"}) {
    for (const bool on : {false, true}) {
      ASSERT_NO_FATAL_FAILURE(Switch(bar, on));
      EXPECT_TRUE(IsFresh()) << bar << on;
    }
  }
}

TEST_F(PanelsTest, AnotherSizeLeavesNothingOldBehind) {
  const SIZE sizes[] = {{760, 560}, {1100, 820}, {901, 703}};
  for (const SIZE& size : sizes) {
    ASSERT_NO_FATAL_FAILURE(Resize(size.cx, size.cy));
    EXPECT_TRUE(IsFresh()) << size.cx << " by " << size.cy;
  }
}

TEST_F(PanelsTest, ABarOverHiddenPanelsIsSeen) {
  Type(" ");
  ASSERT_TRUE(Await([this] { return !IsWindowVisible(app.Of(kToolBarId)); }));
  ASSERT_TRUE(app.Choose('v', "t"));
  ASSERT_TRUE(app.Choose('v', "t"));
  ASSERT_TRUE(Await([this] { return IsWindowVisible(app.Of(kToolBarId)) != FALSE; }));
  EXPECT_TRUE(IsFresh());
  EXPECT_GE(Picture(app.Screen(app.Of(kToolBarId))).Colors(8), 8) << "the canvas hides the bar";
  EXPECT_TRUE(app.Keep("bar-over-canvas"));
}

}  // namespace
}  // namespace sorvel::desktop
