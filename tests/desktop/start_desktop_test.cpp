// Start and end of the program, and the settings that it keeps.
#include <algorithm>
#include <array>
#include <cstdio>

#include "app.h"
#include "colors.h"
#include "resources/ids.h"
#include "text.h"

namespace sorvel::desktop {
namespace {

class StartTest : public DesktopTest {
 protected:
  void SetUp() override { ASSERT_TRUE(app.Start()); }

  // Draws nothing, but changes the pen by a key and an item of the menu, and gives what is written at the end.
  std::string PenAfter(const char* keys, const char* item) {
    EXPECT_TRUE(app.NewCut());
    Type(keys);
    EXPECT_TRUE(app.Choose('t', item));
    EXPECT_TRUE(app.Leave());
    return Setting(app, "setup", "brush");
  }
};

// The same figure that the layout counts with: a line of the frame's default font and four pixels.
int LineOf(HWND window) {
  const HDC context = GetDC(window);
  TEXTMETRICW metrics = {};
  GetTextMetricsW(context, &metrics);
  ReleaseDC(window, context);
  return metrics.tmHeight + metrics.tmExternalLeading + 4;
}

TEST_F(StartTest, AFirstStartIsEmptyWithTheFreePen) {
  EXPECT_EQ(app.Title(), "Sorvel Developer");
  EXPECT_EQ(app.Status(), "");
  EXPECT_EQ(app.Cut(), nullptr);
  EXPECT_EQ(app.Player(), nullptr);
  EXPECT_EQ(app.Picker(), nullptr);
  for (const int edit : {kFrameTimeEdit, kLoopEdit, kBrightnessEdit, kCommentEdit})
    EXPECT_EQ(app.Text(edit), "") << edit;
  for (const int list : {kCutList, kLayerList}) EXPECT_TRUE(app.Lists(list, {})) << list;
  EXPECT_TRUE(app.IsToolDown(kToolFreePen));
  EXPECT_FALSE(app.IsToolDown(kToolEraser));
  EXPECT_TRUE(app.Keep("start"));
}

TEST_F(StartTest, TheControlsAreThere) {
  const std::pair<int, const char*> controls[] = {
      {kMdiClientId, "MDIClient"},    {kFrameTimeEdit, "Edit"},   {kCutList, "ListBox"},
      {kLayerList, "ListBox"},        {kLoopEdit, "Edit"},        {kCommentEdit, "Edit"},
      {kBrightnessEdit, "Edit"},      {kKeyFrameCheck, "Button"}, {kStatusBarId, "msctls_statusbar32"},
      {kToolBarId, "ToolbarWindow32"}};
  for (const auto& [id, name] : controls) {
    ASSERT_NE(app.Of(id), nullptr) << id;
    EXPECT_EQ(ClassOf(app.Of(id)), name) << id;
    EXPECT_TRUE(IsWindowVisible(app.Of(id))) << id;
  }
}

TEST_F(StartTest, ThePanelsStandInTheirColumn) {
  RECT client = {};
  GetClientRect(app.Frame(), &client);
  const RECT toolBar = app.InFrame(kToolBarId);
  const RECT statusBar = app.InFrame(kStatusBarId);
  EXPECT_EQ(statusBar.bottom, client.bottom);
  EXPECT_EQ(toolBar.top, 0);
  const LONG panel = 160;
  const LONG half = panel / 2;
  const LONG line = LineOf(app.Frame());
  const LONG top = toolBar.bottom;
  const LONG bottom = statusBar.top;
  const LONG lists = top + 2 * line;
  const LONG middle = lists + (bottom - lists) / 2;
  const std::pair<int, RECT> places[] = {
      {kMdiClientId, {panel + 2, top, client.right, bottom - line}},
      {kCommentEdit, {panel + 2, bottom - line, client.right, bottom}},
      {kKeyFrameCheck, {0, top, half, top + line}},
      {kFrameTimeEdit, {half, top, panel, top + line}},
      {kBrightnessEdit, {0, top + line, half, lists}},
      {kLoopEdit, {half, top + line, panel, lists}},
      {kLayerList, {0, lists, panel, middle}},
      {kCutList, {0, middle, panel, bottom}},
  };
  for (const auto& [id, place] : places) {
    const RECT found = app.InFrame(id);
    EXPECT_TRUE(EqualRect(&found, &place))
        << id << " stands at " << found.left << ", " << found.top << " to " << found.right << ", " << found.bottom;
  }
}

TEST_F(StartTest, TheWindowIsUsableAtOnce) {
  constexpr double limit = 3000;  // milliseconds
  constexpr size_t memoryLimit = size_t{128} << 20;
  std::array<double, 3> times = {};
  size_t memory = 0;
  for (double& time : times) {
    ASSERT_TRUE(app.Start());
    time = app.StartTime();
    memory = app.WorkingSet();
  }
  std::sort(times.begin(), times.end());
  std::printf("[ MEASURED ] usable window after %.0f ms (of three starts %.0f to %.0f), working set %.1f MB\n",
              times[1], times[0], times[2], static_cast<double>(memory) / (1 << 20));
  EXPECT_LT(times[1], limit);
  EXPECT_GT(memory, 0u);
  EXPECT_LT(memory, memoryLimit);
}

TEST_F(StartTest, TheExitOfAFirstRunWritesTheDefaults) {
  ASSERT_TRUE(app.Leave());
  EXPECT_EQ(Setting(app, "setup", "film"), "");
  EXPECT_EQ(Setting(app, "setup", "font"), "ＭＳ Ｐゴシック, 24, 12, 400");
  EXPECT_EQ(Setting(app, "setup", "brush"), "7, 0, 1, 0, 1, 0");
}

TEST_F(StartTest, ThePenIsWrittenBackAtTheExit) {
  // Two sizes larger, and without taking out corners.
  EXPECT_EQ(PenAfter("ff", "w"), "9, 0, 1, 0, 0, 0");
  EXPECT_EQ(Setting(app, "OnNewCut", "width"), "240");
  EXPECT_EQ(Setting(app, "OnNewCut", "fps"), "24");
}

TEST_F(StartTest, ASquarePenIsMarkedInTheSettings) {
  EXPECT_EQ(PenAfter("fff", "p"), "4, 0, 1, 0, 1, 1");
}

TEST_F(StartTest, SettingsAreReadAtTheStart) {
  ASSERT_TRUE(WriteFile(app.PathOf("sorvel.ini"),
                        "[setup]\r\nbrush=11, 0, 2, 0, 1, 0\r\n[OnNewCut]\r\nwidth=100\r\nheight=80\r\nfps=12\r\n"
                        "anti=1\r\ncredit=" +
                            ShiftJis("表") + "\r\n"));
  ASSERT_TRUE(app.Start());
  Press('N', {VK_CONTROL});
  ASSERT_TRUE(app.HasDialog("カットのプロパティ"));
  EXPECT_TRUE(
      app.HasValues({{kCutWidthEdit, "100"}, {kCutHeightEdit, "80"}, {kCutFpsEdit, "12"}, {kCutCreditEdit, "表"}}));
  EXPECT_TRUE(app.IsChecked(app.Item(kCutHalfRadio)));
  Press(VK_ESCAPE);
  ASSERT_TRUE(app.DialogGoes());
  ASSERT_TRUE(app.Leave());
  EXPECT_EQ(Setting(app, "setup", "brush"), "11, 0, 2, 0, 1, 0");
}

TEST_F(StartTest, AFileBesideTheProgramReplacesTheColors) {
  std::string file(14 + 40 + 26 * 4, '\0');
  file[0] = 'B';
  file[1] = 'M';
  file[14] = 40;       // size of the header
  file[14 + 14] = 8;   // bits a pixel
  file[14 + 32] = 26;  // colours used
  const unsigned char pink[] = {200, 120, 255};
  std::copy(pink, pink + 3, reinterpret_cast<unsigned char*>(file.data()) + 54);
  ASSERT_TRUE(WriteFile(app.PathOf("Colors.bmp"), file));
  ASSERT_TRUE(app.Start());
  ASSERT_TRUE(app.NewCut());
  EXPECT_TRUE(app.HasPixel(100, 100, 0xFF78C8));
}

TEST_F(StartTest, AnUnknownDocumentLeavesAnEmptyProgram) {
  ASSERT_TRUE(WriteFile(app.PathOf("note.txt"), "note"));
  for (const std::string& document : {app.PathOf("note.txt"), std::string("nothing")}) {
    ASSERT_TRUE(app.Start(document)) << document;
    EXPECT_EQ(app.Cut(), nullptr) << document;
    EXPECT_EQ(app.Dialog(), nullptr) << document;
  }
}

TEST_F(StartTest, AMissingDocumentIsTold) {
  ASSERT_TRUE(app.Start(app.PathOf("gone.cut"), App::Opening::kWithQuestion));
  EXPECT_EQ(app.BoxText(), app.PathOf("gone.cut") + " を開けませんでした。\nファイルが見つかりません。");
  Press(VK_RETURN);
  ASSERT_TRUE(app.DialogGoes());
  EXPECT_EQ(app.Cut(), nullptr);
}

TEST_F(StartTest, TheFrameCanBeClosedByItsButtonsKey) {
  Press(VK_F4, {VK_MENU});
  EXPECT_TRUE(app.Ends());
}

}  // namespace
}  // namespace sorvel::desktop
