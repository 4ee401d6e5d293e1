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
    ASSERT_TRUE(app.Shows(kKeyFrame, "1(1f)"));
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
    Type("t");
    ASSERT_TRUE(app.Shows(kKeyFrame, "2(2f)"));
    Type("y");
    ASSERT_TRUE(app.Shows(kKeyFrame, "3(3f)"));
  }
};

TEST_F(PanelsTest, ANewCutFillsThePanels) {
  EXPECT_TRUE(app.Shows(kFrameTime, "1"));
  EXPECT_TRUE(app.Shows(kLoop, "1"));
  EXPECT_TRUE(app.Shows(kBrightness, "50"));
  EXPECT_TRUE(app.Shows(kComment, ""));
  EXPECT_TRUE(app.Lists(kLayerList, {"線画 (1/1)"}));
  EXPECT_EQ(app.Ask(app.Of(kLayerList), LB_GETCURSEL), 0);
  EXPECT_TRUE(app.Lists(kCutList, {}));
  EXPECT_EQ(app.Text(app.Cut()), "Cut");
  EXPECT_TRUE(app.Keep("new-cut"));
}

TEST_F(PanelsTest, EnterMovesTheFocusRoundTheRing) {
  const std::pair<int, const char*> ring[] = {
      {kFrameTime, "現在のフレームの時間をFPS単位で指定します。マイナス値で前のフレームと段階的につなぎます。"},
      {kKeyFrame,
       "チェックすると現在のフレームをキーフレームに指定します。左側の数はフレーム番号、右のカッコ内の数は実際のタイミ"
       "ングを示します。"},
      {kLoop, "ループさせたい先頭のフレームにループ回数を指定し、以降のフレームを0にします。"},
      {kBrightness, "出力時のフレームの明るさを指定します。50が標準で、0で画面が全て黒くなり、100で全て白くなります。"},
      {kLayerList, "現在のフレームにあるレイヤの一覧です。選択されたレイヤが編集対象となります。"},
      {kCutList,
       "現在のフィルムにあるカットの一覧です。Shift/"
       "Ctrlキーで複数選択できます。また、ダブルクリックでカットを開きます。"},
      {kComment, "現在のフレームについてのコメントを入力します。"},
  };
  for (const auto& [id, help] : ring) {
    Press(id % 2 == 0 ? VK_RETURN : VK_TAB);
    ASSERT_TRUE(app.HasFocus(app.Of(id))) << id;
    EXPECT_TRUE(app.Shows(kStatusBar, help)) << id;
  }
  ASSERT_TRUE(app.Keep("comment-focus"));
  Press(VK_TAB);
  ASSERT_TRUE(app.HasFocus(app.Cut()));
  EXPECT_TRUE(app.Shows(kStatusBar, ""));
  Press(VK_TAB, {VK_SHIFT});
  ASSERT_TRUE(app.HasFocus(app.Of(kComment)));
  Press(VK_RETURN, {VK_SHIFT});
  ASSERT_TRUE(app.HasFocus(app.Of(kCutList)));
}

TEST_F(PanelsTest, ValuesAreKeptWithTheLimitsOfTheirFields) {
  AddTwoFrames();
  Press(VK_TAB);
  Type("12345");
  ASSERT_TRUE(app.Shows(kFrameTime, "12345"));
  Press(VK_TAB);
  Press(VK_TAB);
  ASSERT_TRUE(app.HasFocus(app.Of(kLoop)));
  Type("7");
  Press(VK_TAB);
  Type("250");
  ASSERT_TRUE(app.Shows(kBrightness, "250"));
  Press(VK_F2);
  ASSERT_TRUE(app.Shows(kKeyFrame, "2(2f)"));
  EXPECT_TRUE(app.Shows(kFrameTime, "1"));
  EXPECT_TRUE(app.Shows(kBrightness, "50"));
  Press(VK_F3);
  ASSERT_TRUE(app.Shows(kKeyFrame, "3(3f)"));
  EXPECT_TRUE(app.Shows(kFrameTime, "1234"));
  EXPECT_TRUE(app.Shows(kLoop, "7"));
  EXPECT_TRUE(app.Shows(kBrightness, "100"));
}

TEST_F(PanelsTest, AnEmptyLoopIsZero) {
  Press(VK_TAB);
  Press(VK_TAB);
  Press(VK_TAB);
  ASSERT_TRUE(app.HasFocus(app.Of(kLoop)));
  Type("3");
  Press(VK_F3);
  ASSERT_TRUE(app.Shows(kLoop, "3"));
  Press(VK_HOME);
  Press(VK_END, {VK_SHIFT});
  Press(VK_DELETE);
  ASSERT_TRUE(app.Shows(kLoop, ""));
  Press(VK_F3);
  EXPECT_TRUE(app.Shows(kLoop, "0"));
}

TEST_F(PanelsTest, TheTimeOfAKeyFrameCantBeTyped) {
  Click({app.Screen(app.Of(kKeyFrame)).left + 6, app.Screen(app.Of(kKeyFrame)).top + 10});
  ASSERT_TRUE(Await([this] { return app.Ask(app.Of(kKeyFrame), BM_GETCHECK) == BST_CHECKED; }));
  Press(VK_TAB, {VK_SHIFT});
  ASSERT_TRUE(app.HasFocus(app.Of(kFrameTime)));
  Type("9");
  Press(VK_TAB);
  ASSERT_TRUE(app.HasFocus(app.Of(kKeyFrame)));
  EXPECT_EQ(app.Text(kFrameTime), "1");
  Press(VK_SPACE);
  ASSERT_TRUE(Await([this] { return app.Ask(app.Of(kKeyFrame), BM_GETCHECK) == BST_UNCHECKED; }));
  Press(VK_TAB, {VK_SHIFT});
  ASSERT_TRUE(app.HasFocus(app.Of(kFrameTime)));
  Type("9");
  EXPECT_TRUE(app.Shows(kFrameTime, "9"));
}

TEST_F(PanelsTest, AChangedTimeMovesTheCounterOfTheFramesBehind) {
  Press(VK_TAB);
  Type("10");
  Press(VK_TAB);  // leaving the field stores it
  Press(VK_F3);
  EXPECT_TRUE(app.Shows(kKeyFrame, "1(1f)"));
  Click(app.At(20, 20));
  ASSERT_TRUE(app.HasFocus(app.Cut()));
  Type("t");
  EXPECT_TRUE(app.Shows(kKeyFrame, "2(11f)"));
}

TEST_F(PanelsTest, FramesAreSteppedByFunctionKeysAndByLetters) {
  AddTwoFrames();
  Press(VK_F2);
  EXPECT_TRUE(app.Shows(kKeyFrame, "2(2f)"));
  Type("q");
  EXPECT_TRUE(app.Shows(kKeyFrame, "1(1f)"));
  Press(VK_F6);
  EXPECT_TRUE(app.Shows(kKeyFrame, "1(1f)"));
  Press(VK_F7);
  EXPECT_TRUE(app.Shows(kKeyFrame, "2(2f)"));
  Type("p");
  EXPECT_TRUE(app.Shows(kKeyFrame, "3(3f)"));
  Type("E");
  EXPECT_TRUE(app.Shows(kKeyFrame, "1(1f)"));
  Type("R");
  EXPECT_TRUE(app.Shows(kKeyFrame, "3(3f)"));
  ASSERT_TRUE(app.Choose('r', "h"));
  EXPECT_TRUE(app.Shows(kKeyFrame, "1(1f)"));
  ASSERT_TRUE(app.Choose('r', "t"));
  EXPECT_TRUE(app.Shows(kKeyFrame, "3(3f)"));
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
  HWND dialog = app.AwaitDialog("レイヤのプロパティ");
  ASSERT_NE(dialog, nullptr);
  ASSERT_TRUE(app.Enter(GetDlgItem(dialog, kLayerNameEdit), "彩色"));
  Press(VK_RETURN);
  ASSERT_TRUE(app.DialogGoes());
  EXPECT_TRUE(app.Lists(kLayerList, {"線画 (1/2)", "彩色 (1/1)"}));
  ASSERT_TRUE(app.Choose('l', "o"));  // down
  EXPECT_TRUE(app.Lists(kLayerList, {"彩色 (1/1)", "線画 (1/2)"}));
  // A line is chosen by a click, and its dialog comes by a double click.
  const RECT list = app.Screen(app.Of(kLayerList));
  const int height = static_cast<int>(app.Ask(app.Of(kLayerList), LB_GETITEMHEIGHT));
  DoubleClick({list.left + 30, list.top + 2 + height + height / 2});
  dialog = app.AwaitDialog("レイヤのプロパティ");
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(app.Text(GetDlgItem(dialog, kLayerNameEdit)), "線画");
  ASSERT_TRUE(app.Keep("layer-dialog"));
  Press(VK_ESCAPE);
  EXPECT_TRUE(app.DialogGoes());
}

TEST_F(PanelsTest, SpaceHidesEverythingAroundTheCanvas) {
  app.ParkMouse();
  const Picture before = app.StillPicture();
  Type(" ");
  // The layout comes last.
  ASSERT_TRUE(Await([this] { return app.InFrame(kMdiClient).left == 0; }));
  EXPECT_FALSE(IsWindowVisible(app.Of(kToolBar)));
  for (const int id : {kFrameTime, kLoop, kBrightness, kComment, kKeyFrame, kLayerList, kCutList, kStatusBar}) {
    EXPECT_FALSE(IsWindowVisible(app.Of(id))) << id;
  }
  RECT client = {};
  GetClientRect(app.Frame(), &client);
  const RECT area = app.InFrame(kMdiClient);
  EXPECT_EQ(area.left, 0);
  EXPECT_EQ(area.top, 0);
  EXPECT_EQ(area.right, client.right);
  EXPECT_EQ(area.bottom, client.bottom);
  EXPECT_TRUE(app.Keep("panels-hidden"));
  Type(" ");
  ASSERT_TRUE(Await([this] { return app.InFrame(kMdiClient).left > 0; }));
  const Difference difference = Compare(before, app.StillPicture());
  EXPECT_EQ(difference.count, 0) << difference.bounds.left << " " << difference.bounds.top << " "
                                 << difference.bounds.right << " " << difference.bounds.bottom;
}

TEST_F(PanelsTest, TheSplitterIsDragged) {
  const RECT area = app.Screen(app.Of(kMdiClient));
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
  EXPECT_EQ(app.Screen(app.Of(kMdiClient)).left, area.left + 60);
  EXPECT_EQ(app.InFrame(kLayerList).right, 220);
  EXPECT_EQ(app.InFrame(kComment).left, 222);
  // The way back leaves the picture as it was.
  Drag({from.x + 60, from.y}, from);
  ASSERT_TRUE(Await([&] { return app.Screen(app.Of(kMdiClient)).left == area.left; }));
  EXPECT_EQ(Compare(before, app.StillPictureOf(app.Frame())).count, 0);
}

TEST_F(PanelsTest, TheLayoutFollowsTheWindowsSize) {
  SetWindowPos(app.Frame(), nullptr, 0, 0, 760, 560, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  RECT client = {};
  ASSERT_TRUE(Await([&] {
    GetClientRect(app.Frame(), &client);
    return app.InFrame(kComment).right == client.right && app.InFrame(kStatusBar).bottom == client.bottom;
  }));
  EXPECT_EQ(app.InFrame(kMdiClient).right, client.right);
  EXPECT_EQ(app.InFrame(kMdiClient).bottom, app.InFrame(kComment).top);
  EXPECT_EQ(app.InFrame(kCutList).bottom, app.InFrame(kStatusBar).top);
  EXPECT_EQ(app.InFrame(kLayerList).bottom, app.InFrame(kCutList).top);
  EXPECT_TRUE(app.Keep("small-window"));
}

TEST_F(PanelsTest, TheBarsAreSwitchedOffByTheMenu) {
  const LONG bottom = app.InFrame(kComment).bottom;
  ASSERT_TRUE(app.Choose('v', "s"));
  EXPECT_TRUE(Await([&] { return app.InFrame(kComment).bottom > bottom; }));
  EXPECT_FALSE(IsWindowVisible(app.Of(kStatusBar)));
  ASSERT_TRUE(app.Choose('v', "t"));
  EXPECT_TRUE(Await([&] { return app.InFrame(kMdiClient).top == 0; }));
  EXPECT_FALSE(IsWindowVisible(app.Of(kToolBar)));
  ASSERT_TRUE(app.Choose('v', "s"));
  ASSERT_TRUE(app.Choose('v', "t"));
  EXPECT_TRUE(Await([&] { return app.InFrame(kComment).bottom == bottom && app.InFrame(kMdiClient).top > 0; }));
  EXPECT_TRUE(IsWindowVisible(app.Of(kToolBar)));
  EXPECT_TRUE(IsWindowVisible(app.Of(kStatusBar)));
}

TEST_F(PanelsTest, TheBarsLeaveNothingOldBehind) {
  const LONG bottom = app.InFrame(kComment).bottom;
  ASSERT_TRUE(app.Choose('v', "s"));
  ASSERT_TRUE(Await([&] { return app.InFrame(kComment).bottom > bottom; }));
  EXPECT_TRUE(IsFresh()) << "status bar off";
  ASSERT_TRUE(app.Choose('v', "s"));
  ASSERT_TRUE(Await([&] { return app.InFrame(kComment).bottom == bottom; }));
  EXPECT_TRUE(IsFresh()) << "status bar on";
  ASSERT_TRUE(app.Choose('v', "t"));
  ASSERT_TRUE(Await([&] { return app.InFrame(kMdiClient).top == 0; }));
  EXPECT_TRUE(IsFresh()) << "tool bar off";
  ASSERT_TRUE(app.Choose('v', "t"));
  ASSERT_TRUE(Await([&] { return app.InFrame(kMdiClient).top > 0; }));
  EXPECT_TRUE(IsFresh()) << "tool bar on";
}

TEST_F(PanelsTest, AnotherSizeLeavesNothingOldBehind) {
  const SIZE sizes[] = {{760, 560}, {1100, 820}, {901, 703}};
  for (const SIZE& size : sizes) {
    SetWindowPos(app.Frame(), nullptr, 0, 0, size.cx, size.cy, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    RECT client = {};
    ASSERT_TRUE(Await([&] {
      GetClientRect(app.Frame(), &client);
      return app.InFrame(kCutList).bottom == app.InFrame(kStatusBar).top &&
             app.InFrame(kStatusBar).bottom == client.bottom && app.InFrame(kComment).right == client.right;
    }));
    EXPECT_TRUE(IsFresh()) << size.cx << " by " << size.cy;
  }
}

TEST_F(PanelsTest, ABarOverHiddenPanelsIsSeen) {
  Type(" ");
  ASSERT_TRUE(Await([this] { return !IsWindowVisible(app.Of(kToolBar)); }));
  ASSERT_TRUE(app.Choose('v', "t"));
  ASSERT_TRUE(app.Choose('v', "t"));
  ASSERT_TRUE(Await([this] { return IsWindowVisible(app.Of(kToolBar)) != FALSE; }));
  EXPECT_TRUE(IsFresh());
  EXPECT_GE(Picture(app.Screen(app.Of(kToolBar))).Colors(8), 8) << "the canvas hides the bar";
  EXPECT_TRUE(app.Keep("bar-over-canvas"));
}

}  // namespace
}  // namespace sorvel::desktop
