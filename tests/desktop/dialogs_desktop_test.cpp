// The dialogs: their values, keys, up-down arrows and help.
#include <algorithm>
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

  testing::AssertionResult OpenCutDialog() const {
    Press('N', {VK_CONTROL});
    return app.HasDialog("カットのプロパティ");
  }

  // Whether so many boxes of the mask are checked in the end.
  bool AreChecked(int expected) const {
    return Await([&] {
      return std::count_if(std::begin(kMaskBoxes), std::end(kMaskBoxes),
                           [this](int box) { return app.IsChecked(app.Item(box)); }) == expected;
    });
  }

  testing::AssertionResult IsCentred() const {
    const RECT box = app.Screen(app.Dialog());
    const RECT frame = app.Screen(app.Frame());
    const LONG left = frame.left + (frame.right - frame.left) / 2 - (box.right - box.left) / 2;
    const LONG top = frame.top + (frame.bottom - frame.top) / 2 - (box.bottom - box.top) / 2;
    if (box.left == left && box.top == top) return testing::AssertionSuccess();
    return testing::AssertionFailure() << "it stands at " << box.left << ", " << box.top << " and not at " << left
                                       << ", " << top;
  }
};

TEST_F(DialogsTest, TheCutDialogShowsTheDefaults) {
  ASSERT_TRUE(OpenCutDialog());
  EXPECT_TRUE(app.HasValues({{kCutWidthEdit, "240"}, {kCutHeightEdit, "180"}, {kCutFpsEdit, "24"}}));
  EXPECT_TRUE(app.IsChecked(app.Item(kCutWholeRadio)));
  EXPECT_TRUE(IsCentred());
  EXPECT_TRUE(app.Keep("cut-dialog"));
  Press(VK_ESCAPE);
  ASSERT_TRUE(app.DialogGoes());
  EXPECT_EQ(app.Cut(), nullptr);
}

TEST_F(DialogsTest, TheArrowsCountUpAndDown) {
  ASSERT_TRUE(OpenCutDialog());
  const HWND edit = app.Item(kCutWidthEdit);
  const RECT arrows = app.Screen(app.Item(kCutWidthUpDown));
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
  ASSERT_TRUE(OpenCutDialog());
  const std::pair<int, const char*> controls[] = {
      {kCutFpsEdit, "1秒あたりに切り替えるフレームの数を指定します。映画だと24、テレビだと30だそうです。"},
      {kCutCreditEdit, "このカットを担当したスタッフの名前を記入します。"},
  };
  for (const auto& [id, help] : controls) {
    for (int i = 0; i < 8 && app.Focus() != app.Item(id); i++) {
      const HWND before = app.Focus();
      Press(VK_TAB);
      Await([&] { return app.Focus() != before; });
    }
    ASSERT_TRUE(app.HasFocus(app.Item(id)));
    EXPECT_TRUE(app.Shows(kStatusBarId, help));
  }
  EXPECT_TRUE(app.Keep("dialog-help"));
  app.ClickButton(kCutHalfRadio);
  EXPECT_TRUE(app.Shows(kStatusBarId, "1/2に縮小されたサイズで出力します。"));
  Press(VK_ESCAPE);
  ASSERT_TRUE(app.DialogGoes());
  EXPECT_TRUE(app.Shows(kStatusBarId, ""));
}

TEST_F(DialogsTest, ValuesReachTheCut) {
  ASSERT_TRUE(OpenCutDialog());
  ASSERT_TRUE(app.Enter({{kCutWidthEdit, "300"}, {kCutFpsEdit, "12"}, {kCutCreditEdit, "作画 太郎"}}));
  app.ClickButton(kCutQuarterRadio);
  app.ClickButton(IDOK);
  ASSERT_TRUE(app.HasDialog("レイヤのプロパティ"));
  EXPECT_TRUE(app.HasValues({{kLayerWidthEdit, "300"}, {kLayerHeightEdit, "180"}}));
  app.ClickButton(IDOK);
  ASSERT_TRUE(app.DialogGoes());
  // A layer without a name gets one with its number.
  EXPECT_TRUE(app.Lists(kLayerList, {"LAYER 0 (1/1)"}));
  ASSERT_TRUE(app.Choose('c', "p"));
  ASSERT_TRUE(app.HasDialog("カットのプロパティ"));
  EXPECT_TRUE(app.HasValues({{kCutWidthEdit, "300"}, {kCutFpsEdit, "12"}, {kCutCreditEdit, "作画 太郎"}}));
  EXPECT_TRUE(app.IsChecked(app.Item(kCutQuarterRadio)));
  app.ClickButton(IDCANCEL);
  EXPECT_TRUE(app.DialogGoes());
  EXPECT_EQ(Setting(app, "OnNewCut", "width"), "300");
  EXPECT_EQ(Setting(app, "OnNewCut", "anti"), "2");
  EXPECT_EQ(Setting(app, "OnNewCut", "credit"), "作画 太郎");
}

TEST_F(DialogsTest, TheMaskIsClearedAndInvertedAndProtects) {
  ASSERT_TRUE(app.NewCut());
  ASSERT_TRUE(app.ClickTool(kCommandMask));
  ASSERT_TRUE(app.HasDialog("マスク"));
  EXPECT_TRUE(AreChecked(0));
  const struct {
    int button;
    int checked;
    const char* help;
  } buttons[] = {{kMaskInvertButton, 12, "マスクを反転させます。"}, {kMaskClearButton, 0, "マスクをクリアします。"}};
  for (const auto& [button, checked, help] : buttons) {
    app.ClickButton(button);
    EXPECT_TRUE(AreChecked(checked));
    EXPECT_TRUE(app.Shows(kStatusBarId, help));
    EXPECT_TRUE(checked == 0 || app.Keep("mask-dialog"));
  }
  app.ClickButton(kMaskTransparentCheck);
  EXPECT_TRUE(AreChecked(1));
  Press(VK_RETURN);
  ASSERT_TRUE(app.DialogGoes());
  Drag(app.At(20, 30), app.At(100, 30));
  app.ParkMouse();
  app.StillPicture();
  EXPECT_EQ(app.PictureOfCanvas().Count(kTransparent), 240 * 180) << "ink on protected pixels";
  Type("g");
  ASSERT_TRUE(app.HasDialog("マスク"));
  EXPECT_TRUE(app.IsChecked(app.Item(kMaskTransparentCheck)));
  app.ClickButton(kMaskClearButton);
  Press(VK_ESCAPE);  // a cancel keeps the mask
  ASSERT_TRUE(app.DialogGoes());
  Type("h");
  ASSERT_TRUE(app.HasDialog("マスク"));
  EXPECT_TRUE(AreChecked(1));
}

TEST_F(DialogsTest, TheGridSnapsThePen) {
  ASSERT_TRUE(app.NewCut());
  Type("G");
  ASSERT_TRUE(app.Answer("グリッド", {{kGridWidthEdit, "8"}, {kGridHeightEdit, "8"}}, "grid-dialog"));
  Click(app.At(12, 13));
  app.ParkMouse();
  EXPECT_TRUE(app.HasPixels({{8, 16, kBlack}, {12, 13, kTransparent}}));
}

TEST_F(DialogsTest, TheFontDialogListsTheFontsAndKeepsTheChoice) {
  ASSERT_TRUE(app.Choose('t', "o"));
  ASSERT_TRUE(app.HasDialog("フォント指定"));
  const HWND list = app.Item(kFontNameList);
  const std::vector<std::string> fonts = app.Lines(list);
  ASSERT_GT(fonts.size(), 1u);
  EXPECT_TRUE(app.HasValues({{kFontSizeEdit, "24"}, {kFontSpacingEdit, "12"}, {kFontWeightEdit, "400"}}));
  ASSERT_TRUE(app.Enter({{kFontWeightEdit, "5000"}, {kFontSizeEdit, "32"}}));
  Click({app.Screen(list).left + 30, app.Screen(list).top + 8});
  EXPECT_TRUE(app.Shows(kStatusBarId, "@で始まるフォント名は縦書きになります。"));
  Press(VK_HOME);
  EXPECT_TRUE(app.Keep("font-dialog"));
  Press(VK_RETURN);
  ASSERT_TRUE(app.DialogGoes());
  ASSERT_TRUE(app.Leave());
  EXPECT_EQ(Setting(app, "setup", "font"), fonts[0] + ", 32, 12, 1000");
}

TEST_F(DialogsTest, EveryOtherDialogComesUp) {
  ASSERT_TRUE(app.NewCut());
  ASSERT_TRUE(app.TypeUntil("t", kKeyFrameCheck, "2(2f)"));
  ASSERT_TRUE(app.TypeUntil("q", kKeyFrameCheck, "1(1f)"));
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
    ASSERT_TRUE(app.HasDialog(entry.title));
    EXPECT_TRUE(IsCentred()) << entry.title;
    ASSERT_TRUE(app.Answer(entry.title, {}, entry.name, VK_ESCAPE));
  }
  ASSERT_TRUE(app.ChooseAt('e', 19));
  ASSERT_TRUE(app.HasDialog("ランダムに点描"));
  EXPECT_TRUE(app.Keep("dots-dialog"));
}

TEST_F(DialogsTest, TheRampEndsAtTheLastFrame) {
  ASSERT_TRUE(app.NewCut());
  ASSERT_TRUE(app.Choose('r', "m"));
  ASSERT_TRUE(app.Answer("フレームの複数指定", {{kFrameCountEdit, "4"}}));
  ASSERT_TRUE(app.Shows(kKeyFrameCheck, "5(5f)"));
  ASSERT_TRUE(app.TypeUntil("E", kKeyFrameCheck, "1(1f)"));
  // From 0 to the 50 of the last frame: steps of 12, and the remainder of 2 in the first two.
  for (int i = 0; i < 4; i++) Press(VK_TAB);
  ASSERT_TRUE(app.HasFocus(app.Of(kBrightnessEdit)));
  Type("0");
  ASSERT_TRUE(app.Choose('r', "l"));
  ASSERT_TRUE(app.HasDialog("明度の連続変化"));
  EXPECT_TRUE(app.HasValues({{kRampEndEdit, "5"}}));
  EXPECT_TRUE(app.Shows(kStatusBarId, "終点のフレーム番号を指定します。現在のフレームからここまでが対象となります。"));
  Press(VK_RETURN);
  ASSERT_TRUE(app.DialogGoes());
  Press(VK_F3);
  Press(VK_F3);
  ASSERT_TRUE(app.Shows(kKeyFrameCheck, "3(3f)"));
  EXPECT_TRUE(app.Shows(kBrightnessEdit, "26"));
}

}  // namespace
}  // namespace sorvel::desktop
