// Menus, the tool bar and the boxes that explain.
#include "app.h"
#include "resources/ids.h"

namespace sorvel::desktop {
namespace {

class MenusTest : public DesktopTest {
 protected:
  void SetUp() override { ASSERT_TRUE(app.Start()); }

  // How an open popup looks.
  Picture PictureOfMenu(char popup) {
    const HWND menu = app.OpenMenu(popup);
    EXPECT_NE(menu, nullptr) << popup;
    if (menu == nullptr) return Picture();
    const RECT area = app.Screen(menu);
    Picture last(area);
    Await([&] {
      Sleep(25);
      const Picture now(area);
      const bool still = now == last && now.Colors(3) >= 2;
      last = now;
      return still;
    });
    app.CloseMenus();
    return last;
  }

  // Over the middle of a button of the tool bar.
  void MoveOver(int tool) const {
    const RECT button = app.ToolRect(tool);
    for (const int rest : {2, 0}) MoveTo({(button.left + button.right) / 2 - rest, (button.top + button.bottom) / 2});
  }

  // Two pictures of a popup differ by check marks alone.
  static void ExpectOnlyMarksDiffer(const Picture& one, const Picture& other) {
    constexpr int markColumn = 30;
    const Difference difference = Compare(one, other);
    EXPECT_GT(difference.count, 0);
    EXPECT_LT(difference.bounds.right, markColumn);
  }
};

TEST_F(MenusTest, EveryPopupOpensByItsKey) {
  ASSERT_TRUE(app.NewCut());
  for (const char popup : {'v', 'f', 'c', 'r', 'l', 'e', 't', 'w'}) {
    ASSERT_NE(app.OpenMenu(popup), nullptr) << popup;
    EXPECT_TRUE(app.Keep(std::string("menu-") + popup));
    app.CloseMenus();
  }
}

TEST_F(MenusTest, AMarkFollowsTheTool) {
  const Picture pen = PictureOfMenu('t');
  ASSERT_TRUE(app.Choose('t', "e"));
  const Picture eraser = PictureOfMenu('t');
  ExpectOnlyMarksDiffer(pen, eraser);
  ASSERT_TRUE(app.Choose('t', "b"));
  EXPECT_EQ(Compare(pen, PictureOfMenu('t')).count, 0);
}

TEST_F(MenusTest, AMarkFollowsASwitch) {
  ASSERT_TRUE(app.NewCut());
  Picture last = PictureOfMenu('t');
  for (const char* item : {"w", "k", "p", "w"}) {
    ASSERT_TRUE(app.Choose('t', item));
    const Picture now = PictureOfMenu('t');
    ExpectOnlyMarksDiffer(last, now);
    last = now;
  }
  const Picture before = PictureOfMenu('v');
  ASSERT_TRUE(app.Choose('v', "t"));
  ExpectOnlyMarksDiffer(before, PictureOfMenu('v'));
}

TEST_F(MenusTest, TheStatusBarTellsTheHighlightedItem) {
  ASSERT_NE(app.OpenMenu('f'), nullptr);
  // The keyboard opens a popup with its first item highlighted.
  EXPECT_TRUE(app.Shows(kStatusBarId, "フィルムを新しく作成します。"));
  Press(VK_DOWN);
  EXPECT_TRUE(app.Shows(kStatusBarId, "フィルムを開きます。"));
  for (int i = 0; i < 4; i++) Press(VK_DOWN);
  EXPECT_TRUE(app.Shows(kStatusBarId, "新しいカットをフィルムに追加します。ファイル名は自動的に番号付けされます。"));
  EXPECT_TRUE(app.Keep("menu-help"));
  app.CloseMenus();
  EXPECT_TRUE(app.Shows(kStatusBarId, ""));
}

TEST_F(MenusTest, TheToolBarIsClicked) {
  ASSERT_TRUE(app.NewCut());
  constexpr int tools[] = {kToolEraser, kToolLine, kToolCurve, kToolFill, kToolAreaSelect, kToolZoom, kToolFreePen};
  for (const int tool : tools) {
    ASSERT_TRUE(app.ClickTool(tool));
    EXPECT_TRUE(app.HasTool(tool));
    for (const int other : tools) EXPECT_EQ(app.IsToolDown(other), other == tool) << other << " beside " << tool;
  }
  ASSERT_TRUE(app.ClickTool(kCommandAddFrame));
  EXPECT_TRUE(app.Shows(kKeyFrameCheck, "2(2f)"));
  ASSERT_TRUE(app.ClickTool(kCommandPreviousFrame));
  EXPECT_TRUE(app.Shows(kKeyFrameCheck, "1(1f)"));
  ASSERT_TRUE(app.ClickTool(kCommandAddCell));
  EXPECT_TRUE(app.Lists(kLayerList, {"A (2/2)"}));
}

TEST_F(MenusTest, AClickOnTheChosenToolKeepsIt) {
  ASSERT_TRUE(app.ClickTool(kToolLine));
  ASSERT_TRUE(app.ClickTool(kToolLine));
  Press(VK_F1);
  EXPECT_TRUE(app.HasDialog("直線"));
}

TEST_F(MenusTest, AToolTipNamesTheButtonAndTheStatusBarExplainsIt) {
  for (int i = 0; i < 3 && app.ToolTip() == nullptr; i++) {
    MoveOver(kToolEraser);
    Await([this] { return app.ToolTip() != nullptr; }, 1500);
  }
  ASSERT_NE(app.ToolTip(), nullptr);
  EXPECT_TRUE(app.Shows(app.ToolTip(), "消しゴム"));
  // Wine's tool bar doesn't tell its parent when a tip comes up.
  if (!IsWine()) {
    EXPECT_TRUE(app.Shows(kStatusBarId, "ドラッグした部分を下絵に転化します。"));
  }
  EXPECT_TRUE(app.Keep("tool-tip"));
  app.ParkMouse();
  EXPECT_TRUE(Await([this] { return app.ToolTip() == nullptr; }));
  EXPECT_TRUE(app.Shows(kStatusBarId, ""));
}

TEST_F(MenusTest, WithoutTheStatusBarThereAreNoToolTips) {
  ASSERT_TRUE(app.Choose('v', "s"));
  MoveOver(kToolEraser);
  EXPECT_FALSE(Await([this] { return app.ToolTip() != nullptr; }, 1200));
}

TEST_F(MenusTest, TheToolIsExplained) {
  Press(VK_F1);
  ASSERT_TRUE(app.HasDialog("自由ペン"));
  EXPECT_EQ(app.BoxText(), "ドラッグして線を描きます。");
  Press(VK_RETURN);
  ASSERT_TRUE(app.DialogGoes());
  ASSERT_TRUE(app.Choose('t', "n"));
  Press(VK_F8);
  ASSERT_TRUE(app.HasDialog("直線"));
  EXPECT_EQ(app.BoxText(),
            "ドラッグで直線を描きます。\nCtrl を押しながらクリックすると、連続直線モードとなります。\n"
            "連続直線モードで Ctrl を押しながらクリックするとスキップします。\n"
            "連続直線モードは右クリックで解除します。");
  EXPECT_TRUE(app.Keep("tool-explanation"));
  Press(VK_ESCAPE);
  EXPECT_TRUE(app.DialogGoes());
}

TEST_F(MenusTest, TheAboutBoxTellsTheVersion) {
  ASSERT_TRUE(app.Choose('v', "v"));
  ASSERT_TRUE(app.HasDialog("About Sorvelin"));
  EXPECT_EQ(app.BoxText(), "Sorvel Developer Version 1.0");
  EXPECT_TRUE(app.Keep("about"));
  Press(VK_RETURN);
  EXPECT_TRUE(app.DialogGoes());
}

TEST_F(MenusTest, TheWindowMenuListsTheCuts) {
  ASSERT_TRUE(app.NewCut("A"));
  ASSERT_TRUE(app.SaveCutAs(app.PathOf("first.cut")));
  const HWND first = app.Cut();
  ASSERT_TRUE(app.NewCut("B"));
  ASSERT_TRUE(app.SaveCutAs(app.PathOf("second.cut")));
  const HWND second = app.Cut();
  EXPECT_TRUE(app.Shows(second, "second.cut"));
  ASSERT_NE(app.OpenMenu('w'), nullptr);
  EXPECT_TRUE(app.Keep("window-list"));
  Type("1");
  ASSERT_TRUE(Await([&] { return app.Cut() == first; }));
  EXPECT_TRUE(app.Shows(app.Frame(), "Sorvel Developer - [first.cut]"));
  EXPECT_TRUE(app.Lists(kLayerList, {"A (1/1)"}));
  // The window system's own key goes round the windows.
  Press(VK_F6, {VK_CONTROL});
  EXPECT_TRUE(Await([&] { return app.Cut() == second; }));
  EXPECT_TRUE(app.Lists(kLayerList, {"B (1/1)"}));
}

TEST_F(MenusTest, CommandsWithoutACutDoNothing) {
  const Picture before = app.StillPicture();
  const std::pair<char, const char*> menus[] = {{'r', "nphtaid"}, {'c', "map"}, {'l', "adup"}, {'e', "neactsf"}};
  for (const auto& [popup, items] : menus) {
    for (const char item : std::string(items)) ASSERT_TRUE(app.Choose(popup, std::string(1, item))) << popup << item;
  }
  ASSERT_TRUE(app.ChooseAt('c', 3));  // saving
  EXPECT_TRUE(app.Runs());
  EXPECT_EQ(app.Dialog(), nullptr);
  EXPECT_EQ(Compare(before, app.StillPicture()).count, 0);
}

}  // namespace
}  // namespace sorvel::desktop
