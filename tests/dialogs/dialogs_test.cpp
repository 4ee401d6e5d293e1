#include "dialogs/dialogs.h"

#include "dialogs/dialog_fixture.h"
#include "platform/fonts.h"
#include "resources/ids.h"

namespace sorvel::testdialogs {
namespace {

class Dialogs : public DialogTest {
 protected:
  // Runs the dialog with up-down controls that stand at 0, below what they allow; then OK.
  void LookAtZero(Dialog* dialog, const std::vector<int32_t>& upDowns) {
    Look(dialog, [&upDowns](platform::WindowHandle window) {
      for (const int32_t id : upDowns) {
        platform::SetUpDownRange(Control(window, id), 0, 9);
        platform::SetUpDownPosition(Control(window, id), 0);
      }
    });
  }
};

// What the control reports for a text that isn't a number of its range: the last valid position with a high half.
constexpr int32_t kBadEntry = 0x10000;

// Layer.

TEST_F(Dialogs, LayerDialogShowsItsValues) {
  LayerDialog dialog(bar, "line", 240, 180, 1);
  Look(&dialog, [](platform::WindowHandle window) {
    EXPECT_EQ(TextOf(window, kLayerNameEdit), "line");
    EXPECT_EQ(Entry(window, kLayerWidthEdit, kLayerWidthUpDown), "1 to 32767: 240");
    EXPECT_EQ(Entry(window, kLayerHeightEdit, kLayerHeightUpDown), "1 to 32767: 180");
    EXPECT_TRUE(platform::IsChecked(Control(window, kLayerFollowCheck)));
  });
  EXPECT_STREQ(dialog.name, "line");
  EXPECT_EQ(dialog.width, 240);
  EXPECT_EQ(dialog.height, 180);
  EXPECT_EQ(dialog.followFrame, 1u);
}

TEST_F(Dialogs, LayerDialogRaisesSizesBelowOne) {
  LayerDialog dialog(bar, "", 5, 5, 0);
  LookAtZero(&dialog, {kLayerWidthUpDown, kLayerHeightUpDown});
  EXPECT_EQ(dialog.width, 1);
  EXPECT_EQ(dialog.height, 1);
}

TEST_F(Dialogs, NamesAreCutTo255Bytes) {
  const std::string typed(300, 'x');
  LayerDialog dialog(bar, typed.c_str(), 1, 1, 0);
  EXPECT_EQ(std::string(dialog.name), std::string(255, 'x'));
  Run(&dialog, {{kLayerNameEdit, std::string(300, 'y')}});
  EXPECT_EQ(std::string(dialog.name), std::string(255, 'y'));
}

// Cut.

TEST_F(Dialogs, CutDialogShowsItsValues) {
  CutDialog dialog(bar, 240, 180, 24, "staff", 1);
  Look(&dialog, [](platform::WindowHandle window) {
    EXPECT_EQ(Entry(window, kCutWidthEdit, kCutWidthUpDown), "1 to 32767: 240");
    EXPECT_EQ(Entry(window, kCutHeightEdit, kCutHeightUpDown), "1 to 32767: 180");
    EXPECT_EQ(Entry(window, kCutFpsEdit, kCutFpsUpDown), "1 to 32767: 24");
    EXPECT_EQ(TextOf(window, kCutCreditEdit), "staff");
    EXPECT_FALSE(platform::IsChecked(Control(window, kCutWholeRadio)));
    EXPECT_TRUE(platform::IsChecked(Control(window, kCutHalfRadio)));
    EXPECT_FALSE(platform::IsChecked(Control(window, kCutQuarterRadio)));
  });
  EXPECT_EQ(dialog.antialias, 1);
}

TEST_F(Dialogs, CutDialogTakesTheFirstOutputSizeThatIsOn) {
  CutDialog dialog(bar, 1, 1, 1, "", 2);
  Look(&dialog, [](platform::WindowHandle window) {
    for (const int32_t id : {kCutWholeRadio, kCutHalfRadio, kCutQuarterRadio})
      platform::SetChecked(Control(window, id), id != kCutWholeRadio);
  });
  EXPECT_EQ(dialog.antialias, 1);
}

TEST_F(Dialogs, CutDialogKeepsAnOutputSizeThatHasNoButton) {
  CutDialog dialog(bar, 1, 1, 1, "", 3);
  Look(&dialog, [](platform::WindowHandle window) {
    for (const int32_t id : {kCutWholeRadio, kCutHalfRadio, kCutQuarterRadio})
      EXPECT_FALSE(platform::IsChecked(Control(window, id)));
  });
  EXPECT_EQ(dialog.antialias, 3);
}

TEST_F(Dialogs, AWidthTypedAsZeroIsWhatTheControlReports) {
  CutDialog dialog(bar, 240, 180, 24, "", 0);
  Run(&dialog, {{kCutWidthEdit, "0"}});
  EXPECT_EQ(dialog.width, kBadEntry + 240);
  EXPECT_EQ(dialog.height, 180);
}

TEST_F(Dialogs, CutDialogRaisesNumbersBelowOne) {
  CutDialog dialog(bar, 5, 5, 5, "", 0);
  LookAtZero(&dialog, {kCutWidthUpDown, kCutHeightUpDown, kCutFpsUpDown});
  EXPECT_EQ(dialog.width, 1);
  EXPECT_EQ(dialog.height, 1);
  EXPECT_EQ(dialog.fps, 1);
}

TEST_F(Dialogs, CutDialogRemembersWhatTheClampsLeft) {
  CutDialog dialog(bar, 5, 5, 5, "", 0);
  LookAtZero(&dialog, {kCutFpsUpDown});
  EXPECT_EQ(CutDialogDefaults.fps, 1);
}

// Grid.

TEST_F(Dialogs, GridDialogShowsAndReadsItsSteps) {
  GridDialog dialog(bar, 8, 16);
  Look(&dialog, [](platform::WindowHandle window) {
    EXPECT_EQ(Entry(window, kGridWidthEdit, kGridWidthUpDown), "1 to 32767: 8");
    EXPECT_EQ(Entry(window, kGridHeightEdit, kGridHeightUpDown), "1 to 32767: 16");
  });
  EXPECT_TRUE(Run(&dialog, {{kGridWidthEdit, "4"}, {kGridHeightEdit, "5"}}));
  EXPECT_EQ(dialog.width, 4);
  EXPECT_EQ(dialog.height, 5);
}

TEST_F(Dialogs, GridDialogKeepsAZeroThatTheControlReports) {
  GridDialog dialog(bar, 8, 16);
  LookAtZero(&dialog, {kGridWidthUpDown, kGridHeightUpDown});
  EXPECT_EQ(dialog.width, 0);
  EXPECT_EQ(dialog.height, 0);
}

TEST_F(Dialogs, GridDialogKeepsTheHighHalfOfABadEntry) {
  GridDialog dialog(bar, 8, 16);
  Run(&dialog, {{kGridWidthEdit, "0"}});
  EXPECT_EQ(dialog.width, kBadEntry + 8);
}

// Mask.

TEST_F(Dialogs, MaskBitsWithoutABoxFallAwayOnOk) {
  MaskDialog dialog(bar, 0xFFFF80E0u | 2);
  EXPECT_TRUE(Run(&dialog));
  EXPECT_EQ(dialog.mask, 2u);
}

TEST_F(Dialogs, MaskButtonsAreHandled) {
  MaskDialog dialog(bar, 0);
  Look(&dialog, [&dialog](platform::WindowHandle window) {
    EXPECT_EQ(dialog.OnControl(window, platform::kButtonClicked, kMaskInvertButton, nullptr), 1);
    EXPECT_EQ(dialog.mask, ~0u);
    EXPECT_EQ(dialog.OnControl(window, platform::kButtonClicked, kMaskClearButton, nullptr), 1);
    EXPECT_EQ(dialog.mask, 0u);
    EXPECT_EQ(dialog.OnControl(window, platform::kButtonClicked, kMaskBlackCheck, nullptr), 0);
  });
}

// Film.

TEST_F(Dialogs, FilmDialogShowsAndReadsItsValues) {
  FilmDialog dialog(bar, 320, 240, "film", "me");
  Look(&dialog, [](platform::WindowHandle window) {
    EXPECT_EQ(Entry(window, kFilmWidthEdit, kFilmWidthUpDown), "1 to 32767: 320");
    EXPECT_EQ(Entry(window, kFilmHeightEdit, kFilmHeightUpDown), "1 to 32767: 240");
    EXPECT_EQ(TextOf(window, kFilmTitleEdit), "film");
    EXPECT_EQ(TextOf(window, kFilmAuthorEdit), "me");
  });
  EXPECT_TRUE(
      Run(&dialog,
          {{kFilmWidthEdit, "640"}, {kFilmHeightEdit, "480"}, {kFilmTitleEdit, "other"}, {kFilmAuthorEdit, "you"}}));
  EXPECT_EQ(dialog.width, 640);
  EXPECT_EQ(dialog.height, 480);
  EXPECT_STREQ(dialog.title, "other");
  EXPECT_STREQ(dialog.author, "you");
}

TEST_F(Dialogs, FilmDialogRaisesSizesBelowOne) {
  FilmDialog dialog(bar, 5, 5, "", "");
  LookAtZero(&dialog, {kFilmWidthUpDown, kFilmHeightUpDown});
  EXPECT_EQ(dialog.width, 1);
  EXPECT_EQ(dialog.height, 1);
}

// End frames.

TEST_F(Dialogs, TheThreeEndFrameDialogsHaveTheirTemplates) {
  EXPECT_EQ(LayerRampDialog(bar, 1).templateId, 112);
  EXPECT_EQ(BrightnessRampDialog(bar, 1).templateId, 115);
  EXPECT_EQ(FrameRampDialog(bar, 1).templateId, 117);
}

TEST_F(Dialogs, EndFrameDialogsStartAtTheLastFrame) {
  BrightnessRampDialog dialog(bar, 12);
  Look(&dialog,
       [](platform::WindowHandle window) { EXPECT_EQ(Entry(window, kRampEndEdit, kRampEndUpDown), "1 to 12: 12"); });
  EXPECT_EQ(dialog.frame, 12);
  EXPECT_TRUE(Run(&dialog, {{kRampEndEdit, "5"}}));
  EXPECT_EQ(dialog.frame, 5);
}

TEST_F(Dialogs, EndFrameDialogsOnACutOfOneFrameOfferOnlyOne) {
  FrameRampDialog dialog(bar, 1);
  Look(&dialog,
       [](platform::WindowHandle window) { EXPECT_EQ(Entry(window, kRampEndEdit, kRampEndUpDown), "1 to 1: 1"); });
  EXPECT_EQ(dialog.frame, 1);
}

TEST_F(Dialogs, AnEndFrameAbove32767Wraps) {
  LayerRampDialog dialog(bar, 40000);
  Look(&dialog, [](platform::WindowHandle window) {
    EXPECT_EQ(Control(window, kRampEndUpDown)->low, 1);
    EXPECT_EQ(Control(window, kRampEndUpDown)->high, 40000 - 65536);
  });
  EXPECT_EQ(dialog.frame, 40000 - 65536);
}

// Font.

std::vector<std::string> FontNames() {
  std::vector<std::string> names;
  platform::ListFonts(
      [](const char* name, void* user) { static_cast<std::vector<std::string>*>(user)->push_back(name); }, &names);
  return names;
}

TEST_F(Dialogs, FontDialogListsTheFontsAndItsNumbers) {
  FontDialog dialog(bar, "no such font", 24, 12, 400);
  Look(&dialog, [](platform::WindowHandle window) {
    EXPECT_EQ(platform::ListCount(Control(window, kFontNameList)), static_cast<int32_t>(FontNames().size()));
    EXPECT_EQ(Entry(window, kFontSizeEdit, kFontSizeUpDown), "1 to 32767: 24");
    EXPECT_EQ(Entry(window, kFontSpacingEdit, kFontSpacingUpDown), "0 to 32767: 12");
    EXPECT_EQ(Entry(window, kFontWeightEdit, kFontWeightUpDown), "0 to 1000: 400");
  });
  EXPECT_EQ(dialog.size, 24);
  EXPECT_EQ(dialog.lineSpacing, 12);
  EXPECT_EQ(dialog.weight, 400);
}

TEST_F(Dialogs, FontDialogKeepsAFontOfTheList) {
  const std::vector<std::string> names = FontNames();
  ASSERT_FALSE(names.empty());
  for (const std::string& name : names) {
    FontDialog dialog(bar, name.c_str(), 1, 1, 1);
    std::string selected;
    Look(&dialog, [&selected](platform::WindowHandle window) {
      const platform::WindowHandle list = Control(window, kFontNameList);
      char text[256];
      platform::ReadListLine(list, platform::SelectedListLine(list), text, sizeof(text));
      selected = text;
    });
    // A longer name that begins so may stand nearer to the search's start.
    EXPECT_EQ(selected.substr(0, name.size()), name);
    EXPECT_EQ(dialog.faceName, selected);
  }
}

TEST_F(Dialogs, FontDialogTriesLineZeroLast) {
  FontDialog dialog(bar, "", 1, 1, 1);
  const bool hasSeveral = FontNames().size() > 1;
  // Every line begins with the empty name.
  Look(&dialog, [hasSeveral](platform::WindowHandle window) {
    EXPECT_EQ(platform::SelectedListLine(Control(window, kFontNameList)), hasSeveral ? 1 : 0);
  });
}

TEST_F(Dialogs, AFontThatIsNotThereBecomesTheFirstUprightOne) {
  std::vector<std::string> names = FontNames();
  std::erase_if(names, [](const std::string& name) { return name[0] == '@'; });
  ASSERT_FALSE(names.empty());
  FontDialog dialog(bar, "no such font", 1, 1, 1);
  Look(&dialog, [](platform::WindowHandle window) {
    const std::vector<platform::ListLine>& lines = Control(window, kFontNameList)->lines;
    const int32_t chosen = platform::SelectedListLine(Control(window, kFontNameList));
    for (int32_t i = 0; i <= chosen; ++i) EXPECT_EQ(lines[static_cast<size_t>(i)].text[0] == '@', i < chosen);
  });
  EXPECT_NE(dialog.faceName[0], '@');
}

TEST_F(Dialogs, FontDialogReadsTheChosenFontAndNumbers) {
  const std::string name = FontNames().back();
  FontDialog dialog(bar, "", 1, 1, 1);
  EXPECT_TRUE(
      Run(&dialog, {{kFontNameList, name}, {kFontSizeEdit, "48"}, {kFontSpacingEdit, "0"}, {kFontWeightEdit, "700"}}));
  EXPECT_EQ(dialog.faceName, name);
  EXPECT_EQ(dialog.size, 48);
  EXPECT_EQ(dialog.lineSpacing, 0);
  EXPECT_EQ(dialog.weight, 700);
}

TEST_F(Dialogs, FontWeightIsClampedTo1000) {
  FontDialog dialog(bar, "", 24, 12, 400);
  Run(&dialog, {{kFontWeightEdit, "1001"}, {kFontSizeEdit, "0"}, {kFontSpacingEdit, "x"}});
  // Bad entries come with a high half, which the weight's limit cuts and the others keep.
  EXPECT_EQ(dialog.weight, 1000);
  EXPECT_EQ(dialog.size, kBadEntry + 24);
  EXPECT_EQ(dialog.lineSpacing, kBadEntry + 12);
}

TEST_F(Dialogs, FontDialogWithAnEmptyListKeepsTheName) {
  FontDialog dialog(bar, "kept", 1, 1, 1);
  Look(&dialog, [](platform::WindowHandle window) { platform::ClearList(Control(window, kFontNameList)); });
  EXPECT_STREQ(dialog.faceName, "kept");
}

// Text.

TEST_F(Dialogs, TextDialogHoldsATextOfAnyLength) {
  TextDialog dialog(bar);
  EXPECT_EQ(dialog.text, EmptyString);
  const std::string longText(5000, 't');
  EXPECT_TRUE(Run(&dialog, {{kTextDialogEdit, longText}}));
  EXPECT_EQ(dialog.text, longText);
}

TEST_F(Dialogs, TextDialogKeepsItsTextForTheNextUse) {
  TextDialog dialog(bar);
  Run(&dialog, {{kTextDialogEdit, "first"}});
  Look(&dialog, [](platform::WindowHandle window) { EXPECT_EQ(TextOf(window, kTextDialogEdit), "first"); });
  EXPECT_STREQ(dialog.text, "first");
}

TEST_F(Dialogs, AnEmptyTextIsTheSharedEmptyString) {
  TextDialog dialog(bar);
  Run(&dialog, {{kTextDialogEdit, "first"}});
  Run(&dialog, {{kTextDialogEdit, ""}});
  EXPECT_EQ(dialog.text, EmptyString);
}

// Count of frames, size of frames, name, dots.

TEST_F(Dialogs, FrameCountDialogShowsAndReadsItsCount) {
  FrameCountDialog dialog(bar, 1);
  EXPECT_EQ(dialog.templateId, 116);
  Look(&dialog, [](platform::WindowHandle window) {
    EXPECT_EQ(Entry(window, kFrameCountEdit, kFrameCountUpDown), "1 to 32767: 1");
  });
  EXPECT_TRUE(Run(&dialog, {{kFrameCountEdit, "12"}}));
  EXPECT_EQ(dialog.count, 12);
}

TEST_F(Dialogs, SomeDialogsDropTheHighHalfOfABadEntry) {
  FrameCountDialog count(bar, 3);
  Run(&count, {{kFrameCountEdit, "40000"}});
  EXPECT_EQ(count.count, 3);
  RandomDotsDialog dots(bar, 100);
  Run(&dots, {{kDotGapEdit, ""}});
  EXPECT_EQ(dots.gap, 100);
  LayerRampDialog ramp(bar, 12);
  EXPECT_TRUE(Run(&ramp, {{kRampEndEdit, "99"}}));
  EXPECT_EQ(ramp.frame, 12);
}

TEST_F(Dialogs, FrameSizeDialogShowsAndReadsItsSize) {
  FrameSizeDialog dialog(bar, 320, 240);
  Look(&dialog, [](platform::WindowHandle window) {
    EXPECT_EQ(Entry(window, kFrameWidthEdit, kFrameWidthUpDown), "1 to 32767: 320");
    EXPECT_EQ(Entry(window, kFrameHeightEdit, kFrameHeightUpDown), "1 to 32767: 240");
  });
  EXPECT_TRUE(Run(&dialog, {{kFrameWidthEdit, "64"}, {kFrameHeightEdit, "48"}}));
  EXPECT_EQ(dialog.width, 64);
  EXPECT_EQ(dialog.height, 48);
}

TEST_F(Dialogs, FrameSizeDialogRaisesSizesBelowOne) {
  FrameSizeDialog dialog(bar, 5, 5);
  LookAtZero(&dialog, {kFrameWidthUpDown, kFrameHeightUpDown});
  EXPECT_EQ(dialog.width, 1);
  EXPECT_EQ(dialog.height, 1);
}

TEST_F(Dialogs, RenameDialogShowsAndReadsTheName) {
  RenameDialog dialog(bar, "cut1");
  EXPECT_EQ(dialog.templateId, 126);
  Look(&dialog, [](platform::WindowHandle window) { EXPECT_EQ(TextOf(window, kRenameEdit), "cut1"); });
  EXPECT_TRUE(Run(&dialog, {{kRenameEdit, "cut2"}}));
  EXPECT_STREQ(dialog.name, "cut2");
}

TEST_F(Dialogs, RandomDotsDialogShowsAndReadsTheGap) {
  RandomDotsDialog dialog(bar, 100);
  EXPECT_EQ(dialog.templateId, 127);
  Look(&dialog,
       [](platform::WindowHandle window) { EXPECT_EQ(Entry(window, kDotGapEdit, kDotGapUpDown), "1 to 32767: 100"); });
  EXPECT_TRUE(Run(&dialog, {{kDotGapEdit, "3"}}));
  EXPECT_EQ(dialog.gap, 3);
}

// Every text of the help that the table has.
TEST_F(Dialogs, EveryHelpTextIsShown) {
  const struct {
    int32_t id;
    const char* text;
  } helps[] = {
      {kCutWidthUpDown, "横幅を指定します。"},
      {kCutHeightUpDown, "縦幅を指定します。"},
      {kMaskBlackCheck, "黒とは、塗り潰しや矩形で描画した時の黒色のことです。"},
      {kMaskDarkCheck, "濃とは、濃い灰色の事です。"},
      {kMaskLightCheck, "淡とは、薄い灰色の事です。"},
      {kMaskTransparentCheck, "透とは、下のレイヤを透過する、パレット上部の水色の事です。"},
      {kMaskLineBlackCheck, "線とは、自由ペンや連続直線/曲線で描画した時の黒色のことです。"},
      {kMaskLineDarkCheck, "暗とは、影の境界に使う、パレット上部の濃い灰色の事です。"},
      {kMaskLineLightCheck, "明とは、影の境界に使う、パレット上部の薄い灰色の事です。"},
      {kCutCreditEdit, "このカットを担当したスタッフの名前を記入します。"},
      {kCutFpsEdit, "1秒あたりに切り替えるフレームの数を指定します。映画だと24、テレビだと30だそうです。"},
      {kMaskPlus1Check, "+1とは、1段階明るくして透過する色です。"},
      {kMaskPlus2Check, "+2とは、2段階明るくして透過する色です。"},
      {kMaskMinus1Check, "-1とは、1段階暗くして透過する色です。"},
      {kMaskMinus2Check, "-2とは、2段階暗くして透過する色です。"},
      {kCutWholeRadio, "そのままのサイズで出力します。"},
      {kCutHalfRadio, "1/2に縮小されたサイズで出力します。"},
      {kCutQuarterRadio, "1/4に縮小されたサイズで出力します。"},
      {kLayerFollowCheck, "レイヤの位置をフレームに対する相対位置にします。"},
      {kRampEndEdit, "終点のフレーム番号を指定します。現在のフレームからここまでが対象となります。"},
      {kRenameEdit, "カット名はそのままファイル名となりますが、拡張子はいりません。"},
      {kFontNameList, "@で始まるフォント名は縦書きになります。"},
      {kFontWeightEdit,
       "値の範囲は0から1000で、大きくなるほど太くなります。400で標準、700でボールドです。また0でデフォルトになります"
       "。"},
      {kMaskClearButton, "マスクをクリアします。"},
      {kMaskInvertButton, "マスクを反転させます。"},
  };
  CutDialog dialog(bar);
  for (const auto& help : helps) {
    EXPECT_EQ(HelpOf(&dialog, help.id, platform::kEditSetFocus), ShiftJis(help.text)) << help.id;
  }
}

}  // namespace
}  // namespace sorvel::testdialogs
