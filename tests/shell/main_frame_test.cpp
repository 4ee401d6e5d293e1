#include <cstdint>
#include <string>

#include "resources/ids.h"
#include "shell/shell_fixture.h"

namespace sorvel::testshell {
namespace {

class FrameWindow : public ShellTest {
 protected:
  std::string Status() { return TextOf(frame->statusBar); }
  void Highlight(int32_t id) {
    platform::Send(frame->frameWindow, platform::kMessageMenuSelect, platform::JoinHalves(id, 0), 0);
  }
  void Tip(platform::ToolTipMoment moment, platform::ToolTip* tip) {
    platform::Send(frame->frameWindow, platform::kMessageToolTip, static_cast<uintptr_t>(moment),
                   reinterpret_cast<intptr_t>(tip));
  }
  void Mouse(uint32_t message, int32_t x, int32_t y) {
    platform::Send(frame->frameWindow, message, 0, platform::PackPoint({x, y}));
  }
  std::string PlaceOf(platform::WindowHandle control) {
    const Bounds& place = control->place;
    return std::to_string(place.left) + "," + std::to_string(place.top) + "," + std::to_string(place.Width()) + "," +
           std::to_string(place.Height());
  }
};

TEST_F(FrameWindow, AHighlightedItemShowsTheSecondLineOfItsTextOrTheWhole) {
  Highlight(kCommandExit);
  EXPECT_EQ(Status(), ShiftJis("ソルヴェリンを終了します。"));
  Highlight(kCommandAddFrame);
  EXPECT_EQ(Status(), ShiftJis("現在のフレームの次の位置に新しいフレームを追加します。"));
  Highlight(kToolLine);
  EXPECT_EQ(Status(), ShiftJis("ドラッグで直線を描きます。"));
  Highlight(3);
  EXPECT_EQ(Status(), "");
}

TEST_F(FrameWindow, ToolTipsAreTheFirstLineAndNeedTheStatusBar) {
  platform::ToolTip tip = {kToolLine, ""};
  Tip(platform::ToolTipMoment::kNeedText, &tip);
  EXPECT_EQ(std::string(tip.text), ShiftJis("直線"));
  Tip(platform::ToolTipMoment::kShow, &tip);
  EXPECT_EQ(Status(), ShiftJis("ドラッグで直線を描きます。"));
  Tip(platform::ToolTipMoment::kPop, &tip);
  EXPECT_EQ(Status(), "");
  Command(kCommandStatusBar);
  platform::ToolTip none = {kToolLine, ""};
  Tip(platform::ToolTipMoment::kNeedText, &none);
  EXPECT_STREQ(none.text, "");
}

TEST_F(FrameWindow, TheExplanationHasTheFirstLineAsItsTitle) {
  Command(kToolEraser);
  Command(kCommandExplainTool);
  EXPECT_EQ(platform::headless::LastMessage().title, ShiftJis("消しゴム"));
  EXPECT_EQ(platform::headless::LastMessage().text,
            ShiftJis("ドラッグした部分を下絵に転化します。\n右クリックで枠の大きさを変えます。"));
  EXPECT_EQ(platform::headless::LastMessage().icon, platform::BoxIcon::kInformation);
  Command(kToolParallelLines);
  Command(kCommandExplainTool);
  EXPECT_EQ(platform::headless::LastMessage().title,
            ShiftJis("最初にドラッグして線を描画し、以降のクリックでその線をコピーします。"));
  Command(kCommandAbout);
  EXPECT_EQ(platform::headless::LastMessage().title, "About Sorvelin");
  EXPECT_EQ(platform::headless::LastMessage().text, "Sorvel Developer Version 1.0");
}

TEST_F(FrameWindow, ADropOfTwoFilesOpensTheFirstOneOnly) {
  MakeSavedCut("a.cut");
  MakeSavedCut("b.cut");
  CloseCuts();
  platform::headless::DropFiles(frame->frameWindow, {folder.Path("b.cut"), folder.Path("a.cut")});
  ASSERT_NE(Cut(), nullptr);
  EXPECT_EQ(Cut()->path, folder.Path("b.cut"));
  EXPECT_EQ(frame->mdiClient->children.size(), 1u);
}

TEST_F(FrameWindow, ThePanelsStandByTheWidthOfTheColumn) {
  frame->panelWidth = 161;
  frame->LayoutPanels(601, 403);
  const int32_t top = platform::ScreenBounds(frame->toolBar).Height();
  const int32_t h = 403 - platform::ScreenBounds(frame->statusBar).Height() - top;
  const int32_t line = platform::LineHeight(frame->frameWindow) + 4;
  const int32_t a = h - 2 * line;
  const auto place = [](int32_t x, int32_t y, int32_t width, int32_t height) {
    return std::to_string(x) + "," + std::to_string(y) + "," + std::to_string(width) + "," + std::to_string(height);
  };
  EXPECT_EQ(PlaceOf(frame->mdiClient), place(163, top, 438, h - line));
  EXPECT_EQ(PlaceOf(frame->commentEdit), place(163, top + h - line, 438, line));
  EXPECT_EQ(PlaceOf(frame->keyFrameCheck), place(0, top, 80, line));
  EXPECT_EQ(PlaceOf(frame->frameTimeEdit), place(80, top, 81, line));
  EXPECT_EQ(PlaceOf(frame->brightnessEdit), place(0, top + line, 80, line));
  EXPECT_EQ(PlaceOf(frame->loopEdit), place(80, top + line, 81, line));
  EXPECT_EQ(PlaceOf(frame->layerList), place(0, top + 2 * line, 161, a / 2));
  EXPECT_EQ(PlaceOf(frame->cutList), place(0, top + 2 * line + a / 2, 161, a - a / 2));
  frame->TogglePanels();
  frame->LayoutPanels(601, 403);
  EXPECT_EQ(PlaceOf(frame->mdiClient), place(0, 0, 601, 403));
}

TEST_F(FrameWindow, TheSplitterTakesTheColumnAlongWithoutALimit) {
  Mouse(platform::kMessageMouseMove, 500, 100);
  EXPECT_EQ(frame->panelWidth, 160);
  Mouse(platform::kMessageLeftDown, 161, 100);
  Mouse(platform::kMessageMouseMove, 171, 100);
  EXPECT_EQ(frame->panelWidth, 170);
  Mouse(platform::kMessageMouseMove, -29, 100);
  EXPECT_EQ(frame->panelWidth, -30);
  Mouse(platform::kMessageLeftUp, 101, 90);
  EXPECT_EQ(frame->panelWidth, 100);
  EXPECT_EQ(frame->mdiClient->place.left, 102);
  EXPECT_EQ(platform::CapturingWindow(), nullptr);
  Mouse(platform::kMessageMouseMove, 500, 100);
  Mouse(platform::kMessageLeftUp, 500, 100);
  EXPECT_EQ(frame->panelWidth, 100);
}

TEST_F(FrameWindow, ABarThatIsChosenWhileThePanelsAreHiddenIsShownUntilTheNextToggle) {
  Command(kCommandStatusBar);
  frame->TogglePanels();
  EXPECT_FALSE(frame->statusBar->shown);
  Command(kCommandStatusBar);
  EXPECT_TRUE(frame->statusBar->shown);
  EXPECT_FALSE(frame->commentEdit->shown);
  EXPECT_EQ(frame->mdiClient->place.top, 0);
  frame->TogglePanels();
  frame->TogglePanels();
  EXPECT_FALSE(frame->statusBar->shown);
  EXPECT_FALSE(frame->toolBar->shown);
  for (const platform::WindowHandle panel :
       {frame->commentEdit, frame->keyFrameCheck, frame->frameTimeEdit, frame->brightnessEdit, frame->loopEdit,
        frame->layerList, frame->cutList}) {
    EXPECT_FALSE(panel->shown);
  }
}

TEST_F(FrameWindow, TheCommentHasAnInputMethodStateOfItsOwn) {
  platform::OpenInputMethod(frame->frameWindow, true);
  platform::SetFocusTo(frame->commentEdit);
  EXPECT_FALSE(platform::headless::IsInputMethodOn());
  platform::SetFocusTo(frame->loopEdit);
  EXPECT_TRUE(platform::headless::IsInputMethodOn());
  platform::OpenInputMethod(frame->frameWindow, false);
  platform::SetFocusTo(frame->commentEdit);
  platform::OpenInputMethod(frame->frameWindow, true);
  platform::SetFocusTo(frame->loopEdit);
  EXPECT_FALSE(platform::headless::IsInputMethodOn());
  platform::SetFocusTo(frame->commentEdit);
  EXPECT_TRUE(platform::headless::IsInputMethodOn());
}

TEST_F(FrameWindow, EditsThatGetTheFocusSelectAllTheirTextButTheComment) {
  for (const platform::WindowHandle edit : {frame->frameTimeEdit, frame->loopEdit, frame->brightnessEdit}) {
    edit->allSelected = false;
    platform::SetFocusTo(edit);
    EXPECT_TRUE(edit->allSelected) << edit->id;
  }
  frame->commentEdit->allSelected = false;
  platform::SetFocusTo(frame->commentEdit);
  EXPECT_FALSE(frame->commentEdit->allSelected);
}

TEST_F(FrameWindow, ARefreshSelectsTheTextOfTheTimeAndTheLoopOnly) {
  MakeCut();
  for (const platform::WindowHandle edit : {frame->frameTimeEdit, frame->loopEdit, frame->brightnessEdit}) {
    platform::SetFocusTo(edit);
    edit->allSelected = false;
    frame->RefreshPanels(Cut());
    EXPECT_EQ(edit->allSelected, edit != frame->brightnessEdit) << edit->id;
  }
}

TEST_F(FrameWindow, AnActivationSendsOnePulse) {
  MakeCut();
  Command(kToolAreaSelect);
  for (const uintptr_t state : {uintptr_t{0}, uintptr_t{1}}) {
    Cut()->selection = {300, 220, 320, 240};
    platform::Send(frame->frameWindow, platform::kMessageActivate, state, 0);
    EXPECT_FALSE(Cut()->HasSelection()) << state;
  }
}

}  // namespace
}  // namespace sorvel::testshell
