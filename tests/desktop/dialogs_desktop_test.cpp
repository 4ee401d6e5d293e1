// The dialogs: their values, keys, up-down arrows and help.
#include <utility>

#include "app.h"
#include "colors.h"
#include "resources/ids.h"

namespace sorvel::desktop {
namespace {

constexpr int kMaskBoxes[] = {kMaskTransparentCheck, kMaskBlackCheck,     kMaskDarkCheck,     kMaskLightCheck,
                              kMaskWhiteCheck,       kMaskLineBlackCheck, kMaskLineDarkCheck, kMaskLineLightCheck,
                              kMaskPlus2Check,       kMaskPlus1Check,     kMaskMinus1Check,   kMaskMinus2Check};

class DialogsTest : public DesktopTest {
 protected:
  void SetUp() override { ASSERT_TRUE(app.Start()); }

  HWND CutDialog() {
    Press('N', {VK_CONTROL});
    return app.AwaitDialog("カットのプロパティ");
  }

  int Checked(HWND dialog) const {
    int count = 0;
    for (const int box : kMaskBoxes) count += app.Ask(GetDlgItem(dialog, box), BM_GETCHECK) == BST_CHECKED;
    return count;
  }

  testing::AssertionResult IsCentred(HWND dialog) const {
    const RECT box = app.Screen(dialog);
    const RECT frame = app.Screen(app.Frame());
    const LONG left = frame.left + (frame.right - frame.left) / 2 - (box.right - box.left) / 2;
    const LONG top = frame.top + (frame.bottom - frame.top) / 2 - (box.bottom - box.top) / 2;
    if (box.left == left && box.top == top) return testing::AssertionSuccess();
    return testing::AssertionFailure() << "it stands at " << box.left << ", " << box.top << " and not at " << left
                                       << ", " << top;
  }
};

TEST_F(DialogsTest, TheCutDialogShowsTheDefaults) {
  const HWND dialog = CutDialog();
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(app.Text(GetDlgItem(dialog, kCutWidthEdit)), "240");
  EXPECT_EQ(app.Text(GetDlgItem(dialog, kCutHeightEdit)), "180");
  EXPECT_EQ(app.Text(GetDlgItem(dialog, kCutFpsEdit)), "24");
  EXPECT_EQ(app.Ask(GetDlgItem(dialog, kCutWholeRadio), BM_GETCHECK), BST_CHECKED);
  EXPECT_TRUE(IsCentred(dialog));
  EXPECT_TRUE(app.Keep("cut-dialog"));
  Press(VK_ESCAPE);
  ASSERT_TRUE(app.DialogGoes());
  EXPECT_EQ(app.Cut(), nullptr);
}

TEST_F(DialogsTest, TheArrowsCountUpAndDown) {
  const HWND dialog = CutDialog();
  ASSERT_NE(dialog, nullptr);
  const HWND edit = GetDlgItem(dialog, kCutWidthEdit);
  const RECT arrows = app.Screen(GetDlgItem(dialog, kCutWidthUpDown));
  const LONG x = (arrows.left + arrows.right) / 2;
  Click({x, arrows.top + (arrows.bottom - arrows.top) / 4});
  EXPECT_TRUE(app.Shows(edit, "241"));
  Click({x, arrows.bottom - (arrows.bottom - arrows.top) / 4});
  EXPECT_TRUE(app.Shows(edit, "240"));
  Click({app.Screen(edit).left + 8, app.Screen(edit).top + 8});
  ASSERT_TRUE(app.HasFocus(edit));
  Press(VK_DOWN);
  EXPECT_TRUE(app.Shows(edit, "239"));
  Press(VK_UP);
  Press(VK_UP);
  EXPECT_TRUE(app.Shows(edit, "241"));
  // Nothing goes below one.
  ASSERT_TRUE(app.Enter(edit, "1"));
  Press(VK_DOWN);
  EXPECT_TRUE(app.Shows(edit, "1"));
}

TEST_F(DialogsTest, HelpFollowsTheFocus) {
  const HWND dialog = CutDialog();
  ASSERT_NE(dialog, nullptr);
  const std::pair<int, const char*> controls[] = {
      {kCutFpsEdit, "1秒あたりに切り替えるフレームの数を指定します。映画だと24、テレビだと30だそうです。"},
      {kCutCreditEdit, "このカットを担当したスタッフの名前を記入します。"},
  };
  for (const auto& [id, help] : controls) {
    for (int i = 0; i < 8 && app.Focus() != GetDlgItem(dialog, id); i++) {
      const HWND before = app.Focus();
      Press(VK_TAB);
      Await([&] { return app.Focus() != before; });
    }
    ASSERT_TRUE(app.HasFocus(GetDlgItem(dialog, id)));
    EXPECT_TRUE(app.Shows(kStatusBar, help));
  }
  EXPECT_TRUE(app.Keep("dialog-help"));
  app.ClickButton(dialog, kCutHalfRadio);
  EXPECT_TRUE(app.Shows(kStatusBar, "1/2に縮小されたサイズで出力します。"));
  Press(VK_ESCAPE);
  ASSERT_TRUE(app.DialogGoes());
  EXPECT_TRUE(app.Shows(kStatusBar, ""));
}

TEST_F(DialogsTest, ValuesReachTheCut) {
  HWND dialog = CutDialog();
  ASSERT_NE(dialog, nullptr);
  ASSERT_TRUE(app.Enter(GetDlgItem(dialog, kCutWidthEdit), "300"));
  ASSERT_TRUE(app.Enter(GetDlgItem(dialog, kCutFpsEdit), "12"));
  ASSERT_TRUE(app.Enter(GetDlgItem(dialog, kCutCreditEdit), "作画 太郎"));
  app.ClickButton(dialog, kCutQuarterRadio);
  app.ClickButton(dialog, IDOK);
  dialog = app.AwaitDialog("レイヤのプロパティ");
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(app.Text(GetDlgItem(dialog, kLayerWidthEdit)), "300");
  EXPECT_EQ(app.Text(GetDlgItem(dialog, kLayerHeightEdit)), "180");
  app.ClickButton(dialog, IDOK);
  ASSERT_TRUE(app.DialogGoes());
  // A layer without a name gets one with its number.
  EXPECT_TRUE(app.Lists(kLayerList, {"LAYER 0 (1/1)"}));
  ASSERT_TRUE(app.Choose('c', "p"));
  dialog = app.AwaitDialog("カットのプロパティ");
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(app.Text(GetDlgItem(dialog, kCutWidthEdit)), "300");
  EXPECT_EQ(app.Text(GetDlgItem(dialog, kCutFpsEdit)), "12");
  EXPECT_EQ(app.Text(GetDlgItem(dialog, kCutCreditEdit)), "作画 太郎");
  EXPECT_EQ(app.Ask(GetDlgItem(dialog, kCutQuarterRadio), BM_GETCHECK), BST_CHECKED);
  app.ClickButton(dialog, IDCANCEL);
  EXPECT_TRUE(app.DialogGoes());
  EXPECT_EQ(Setting(app, "OnNewCut", "width"), "300");
  EXPECT_EQ(Setting(app, "OnNewCut", "anti"), "2");
  EXPECT_EQ(Setting(app, "OnNewCut", "credit"), "作画 太郎");
}

TEST_F(DialogsTest, TheMaskIsClearedAndInvertedAndProtects) {
  ASSERT_TRUE(app.NewCut());
  ASSERT_TRUE(app.ClickTool(kCommandMask));
  HWND dialog = app.AwaitDialog("マスク");
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(Checked(dialog), 0);
  app.ClickButton(dialog, kMaskInvertButton);
  EXPECT_TRUE(Await([&] { return Checked(dialog) == 12; }));
  EXPECT_TRUE(app.Shows(kStatusBar, "マスクを反転させます。"));
  EXPECT_TRUE(app.Keep("mask-dialog"));
  app.ClickButton(dialog, kMaskClearButton);
  EXPECT_TRUE(Await([&] { return Checked(dialog) == 0; }));
  EXPECT_TRUE(app.Shows(kStatusBar, "マスクをクリアします。"));
  app.ClickButton(dialog, kMaskTransparentCheck);
  EXPECT_TRUE(Await([&] { return Checked(dialog) == 1; }));
  Press(VK_RETURN);
  ASSERT_TRUE(app.DialogGoes());
  Drag(app.At(20, 30), app.At(100, 30));
  app.ParkMouse();
  app.StillPicture();
  EXPECT_EQ(app.PictureOfCanvas().Count(kTransparent), 240 * 180) << "ink on protected pixels";
  Type("g");
  dialog = app.AwaitDialog("マスク");
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(app.Ask(GetDlgItem(dialog, kMaskTransparentCheck), BM_GETCHECK), BST_CHECKED);
  app.ClickButton(dialog, kMaskClearButton);
  Press(VK_ESCAPE);  // a cancel keeps the mask
  ASSERT_TRUE(app.DialogGoes());
  Type("h");
  dialog = app.AwaitDialog("マスク");
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(Checked(dialog), 1);
}

TEST_F(DialogsTest, TheGridSnapsThePen) {
  ASSERT_TRUE(app.NewCut());
  Type("G");
  const HWND dialog = app.AwaitDialog("グリッド");
  ASSERT_NE(dialog, nullptr);
  ASSERT_TRUE(app.Enter(GetDlgItem(dialog, kGridWidthEdit), "8"));
  ASSERT_TRUE(app.Enter(GetDlgItem(dialog, kGridHeightEdit), "8"));
  EXPECT_TRUE(app.Keep("grid-dialog"));
  Press(VK_RETURN);
  ASSERT_TRUE(app.DialogGoes());
  Click(app.At(12, 13));
  app.ParkMouse();
  EXPECT_TRUE(app.HasPixel(8, 16, kBlack));
  EXPECT_EQ(app.Pixel(12, 13), kTransparent);
}

TEST_F(DialogsTest, TheFontDialogListsTheFontsAndKeepsTheChoice) {
  ASSERT_TRUE(app.Choose('t', "o"));
  HWND dialog = app.AwaitDialog("フォント指定");
  ASSERT_NE(dialog, nullptr);
  const HWND list = GetDlgItem(dialog, kFontNameList);
  const std::vector<std::string> fonts = app.Lines(list);
  ASSERT_GT(fonts.size(), 1u);
  EXPECT_EQ(app.Text(GetDlgItem(dialog, kFontSizeEdit)), "24");
  EXPECT_EQ(app.Text(GetDlgItem(dialog, kFontSpacingEdit)), "12");
  EXPECT_EQ(app.Text(GetDlgItem(dialog, kFontWeightEdit)), "400");
  ASSERT_TRUE(app.Enter(GetDlgItem(dialog, kFontWeightEdit), "5000"));
  ASSERT_TRUE(app.Enter(GetDlgItem(dialog, kFontSizeEdit), "32"));
  Click({app.Screen(list).left + 30, app.Screen(list).top + 8});
  EXPECT_TRUE(app.Shows(kStatusBar, "@で始まるフォント名は縦書きになります。"));
  Press(VK_HOME);
  EXPECT_TRUE(app.Keep("font-dialog"));
  Press(VK_RETURN);
  ASSERT_TRUE(app.DialogGoes());
  ASSERT_TRUE(app.Leave());
  EXPECT_EQ(Setting(app, "setup", "font"), fonts[0] + ", 32, 12, 1000");
}

TEST_F(DialogsTest, EveryOtherDialogComesUp) {
  ASSERT_TRUE(app.NewCut());
  Type("t");
  ASSERT_TRUE(app.Shows(kKeyFrame, "2(2f)"));
  Type("q");
  ASSERT_TRUE(app.Shows(kKeyFrame, "1(1f)"));
  const struct {
    char popup;
    const char* item;
    const char* title;
    const char* name;
  } dialogs[] = {
      {'f', "n", "フィルムのプロパティー", "film-dialog"}, {'r', "m", "フレームの複数指定", "count-dialog"},
      {'r', "l", "明度の連続変化", "brightness-dialog"},   {'r', "o", "フレームの連続移動", "frame-ramp-dialog"},
      {'r', "s", "フレームのプロパティ", "frame-dialog"},  {'l', "m", "レイヤの連続移動", "layer-ramp-dialog"},
      {'e', "g", "グリッド", "draw-grid-dialog"},
  };
  for (const auto& entry : dialogs) {
    ASSERT_TRUE(app.Choose(entry.popup, entry.item)) << entry.title;
    const HWND dialog = app.AwaitDialog(entry.title);
    ASSERT_NE(dialog, nullptr) << entry.title;
    EXPECT_TRUE(IsCentred(dialog)) << entry.title;
    EXPECT_TRUE(app.Keep(entry.name));
    Press(VK_ESCAPE);
    ASSERT_TRUE(app.DialogGoes()) << entry.title;
  }
  ASSERT_TRUE(app.ChooseAt('e', 19));
  ASSERT_NE(app.AwaitDialog("ランダムに点描"), nullptr);
  EXPECT_TRUE(app.Keep("dots-dialog"));
}

TEST_F(DialogsTest, TheRampEndsAtTheLastFrame) {
  ASSERT_TRUE(app.NewCut());
  ASSERT_TRUE(app.Choose('r', "m"));
  HWND dialog = app.AwaitDialog("フレームの複数指定");
  ASSERT_NE(dialog, nullptr);
  ASSERT_TRUE(app.Enter(GetDlgItem(dialog, kFrameCountEdit), "4"));
  Press(VK_RETURN);
  ASSERT_TRUE(app.DialogGoes());
  ASSERT_TRUE(app.Shows(kKeyFrame, "5(5f)"));
  Type("E");
  ASSERT_TRUE(app.Shows(kKeyFrame, "1(1f)"));
  // From 0 to the 50 of the last frame: steps of 12, and the remainder of 2 in the first two.
  for (int i = 0; i < 4; i++) Press(VK_TAB);
  ASSERT_TRUE(app.HasFocus(app.Of(kBrightness)));
  Type("0");
  ASSERT_TRUE(app.Choose('r', "l"));
  dialog = app.AwaitDialog("明度の連続変化");
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(app.Text(GetDlgItem(dialog, kRampEndEdit)), "5");
  EXPECT_TRUE(app.Shows(kStatusBar, "終点のフレーム番号を指定します。現在のフレームからここまでが対象となります。"));
  Press(VK_RETURN);
  ASSERT_TRUE(app.DialogGoes());
  Press(VK_F3);
  Press(VK_F3);
  ASSERT_TRUE(app.Shows(kKeyFrame, "3(3f)"));
  EXPECT_TRUE(app.Shows(kBrightness, "26"));
}

}  // namespace
}  // namespace sorvel::desktop
