// A newcomer's first day: from the empty window to a film that plays, by what the screen itself tells. A picture of
// each step is kept.
#include <string>
#include <vector>

#include "app.h"
#include "colors.h"
#include "resources/ids.h"
#include "text.h"

namespace sorvel::desktop {
namespace {

constexpr int kWidth = 240;
constexpr int kHeight = 180;

bool Has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

class FirstDayTest : public DesktopTest {
 protected:
  void SetUp() override { ASSERT_TRUE(app.Start()); }

  testing::AssertionResult Keep(const std::string& step) const {
    return app.Keep("first-day-" + std::to_string(10 + steps++) + "-" + step);
  }

  // Rests the mouse on a window until its tip comes.
  testing::AssertionResult TipComes(HWND window, const std::string& part) const {
    const RECT rect = app.Screen(window);
    for (int i = 0; i < 3; i++) {
      app.ParkMouse();
      Sleep(100);
      MoveTo({rect.left + 12, rect.top + 7});
      MoveTo({rect.left + 14, rect.top + 8});
      if (Await([&] { return app.ToolTip() != nullptr && Has(app.Text(app.ToolTip()), part); }, 2000)) {
        return testing::AssertionSuccess();
      }
    }
    return testing::AssertionFailure() << "the tip is \""
                                       << (app.ToolTip() != nullptr ? app.Text(app.ToolTip()) : "none") << "\"";
  }
  testing::AssertionResult TipGoes() const {
    app.ParkMouse();
    if (Await([this] { return app.ToolTip() == nullptr; }, 6000)) return testing::AssertionSuccess();
    return testing::AssertionFailure() << "the tip \"" << app.Text(app.ToolTip()) << "\" stays";
  }
  testing::AssertionResult HintComes(const std::string& part) const {
    if (Await([&] { return app.ToolTip() != nullptr && Has(app.Text(app.ToolTip()), part); })) {
      return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << "the hint is \""
                                       << (app.ToolTip() != nullptr ? app.Text(app.ToolTip()) : "none") << "\"";
  }

  POINT LineOf(int index) const {
    const RECT list = app.Screen(app.Of(kCutList));
    const int height = static_cast<int>(app.Ask(app.Of(kCutList), LB_GETITEMHEIGHT));
    return {list.left + 30, list.top + 2 + height * index + height / 2};
  }

  void Draw(POINT from, POINT to) { ASSERT_TRUE(app.Stroke(from, to)); }

  // The window says how to begin; the dialogs and panels say what they are for.
  void MakeTheFirstCut() {
    const std::string note = app.Note(app.Frame());
    for (const char* word : {"Ctrl+N", "Ctrl+O", "ドロップ", "右クリック", "q と w", "c と v"}) {
      EXPECT_TRUE(Has(note, word)) << note;
    }
    EXPECT_TRUE(Keep("empty-window"));
    ASSERT_TRUE(TipComes(app.Of(kFrameTimeEdit), "現在のフレームの時間"));
    EXPECT_TRUE(Keep("tip-of-a-panel"));
    EXPECT_TRUE(app.Shows(kStatusBarId, ""));
    ASSERT_TRUE(TipGoes());

    Press('N', {VK_CONTROL});
    ASSERT_TRUE(app.HasDialog("カットのプロパティ"));
    ASSERT_TRUE(TipComes(app.Item(kCutWidthEdit), "横幅を指定します。"));
    EXPECT_TRUE(Keep("tip-of-a-field"));
    ASSERT_TRUE(TipGoes());
    Click({app.Screen(app.Item(kCutWidthEdit)).left + 8, app.Screen(app.Item(kCutWidthEdit)).top + 8});
    Press(VK_HOME);
    Press(VK_END, {VK_SHIFT});
    Type("０");
    ASSERT_TRUE(app.Shows(app.Item(kCutWidthEdit), "0"));
    ASSERT_TRUE(HintComes("1 から 32767"));
    EXPECT_TRUE(Keep("number-out-of-range"));
    Press(VK_BACK);
    Type("２４０");
    ASSERT_TRUE(app.Shows(app.Item(kCutWidthEdit), "240"));
    ASSERT_TRUE(TipGoes());
    EXPECT_TRUE(app.HasValues({{kCutHeightEdit, "180"}}));
    Press(VK_RETURN);
    // A newcomer doesn't know yet what a layer is.
    ASSERT_TRUE(app.Answer("レイヤのプロパティ", {}, "", VK_ESCAPE));
    ASSERT_TRUE(Await([this] { return app.Cut() != nullptr; }));
    app.canvas = {kWidth, kHeight, 1, 1};
    EXPECT_EQ(app.Note(app.Frame()), "");
    ASSERT_TRUE(Await([this] { return Has(app.Note(app.Cut()), "「追加」"); }));
    EXPECT_TRUE(Keep("cut-without-a-layer"));
    Click(app.At(20, 20));
    ASSERT_TRUE(HintComes("レイヤがない"));
    EXPECT_TRUE(Keep("press-without-a-layer"));
    app.ParkMouse();
    ASSERT_TRUE(app.Choose('l', "a"));
    ASSERT_TRUE(app.Answer("レイヤのプロパティ", {{kLayerNameEdit, "A"}}));
    ASSERT_TRUE(app.Lists(kLayerList, {"A (1/1)"}));
    EXPECT_EQ(app.Note(app.Cut()), "");
    EXPECT_TRUE(Keep("first-layer"));
  }

  // Two drawings, one after the other.
  void Animate() {
    ASSERT_TRUE(TipGoes());
    RightClick(app.At(200, 20));
    ASSERT_TRUE(Await([this] { return app.Picker() != nullptr; }));
    EXPECT_TRUE(Keep("pen-picker"));
    ASSERT_NO_FATAL_FAILURE(Draw({30, 90}, {120, 30}));
    EXPECT_TRUE(Keep("first-drawing"));
    Click(app.At(5, 5));  // the canvas has the focus
    ASSERT_TRUE(app.TypeUntil("t", kKeyFrameCheck, "2(2f)"));
    Type("b");
    ASSERT_TRUE(app.Lists(kLayerList, {"A (2/2)"}));
    app.ParkMouse();
    ASSERT_TRUE(app.HasPixel(120, 30, kTransparent));
    ASSERT_NO_FATAL_FAILURE(Draw({30, 30}, {120, 90}));
    EXPECT_TRUE(Keep("second-frame-and-cell"));

    // Numbers as the input method types them.
    const RECT time = app.Screen(app.Of(kFrameTimeEdit));
    Click({time.left + 10, time.top + 8});
    ASSERT_TRUE(app.TypeUntil("３", kFrameTimeEdit, "3"));
    const RECT brightness = app.Screen(app.Of(kBrightnessEdit));
    Click({brightness.left + 10, brightness.top + 8});
    ASSERT_TRUE(app.TypeUntil("２５０", kBrightnessEdit, "250"));
    ASSERT_TRUE(HintComes("0 から 100"));
    EXPECT_TRUE(Keep("brightness-out-of-range"));
    for (int i = 0; i < 3; i++) Press(VK_BACK);
    ASSERT_TRUE(app.TypeUntil("５０", kBrightnessEdit, "50"));
    ASSERT_TRUE(TipGoes());
    Click(app.At(5, 170));
    ASSERT_TRUE(app.HasFocus(app.Cut()));

    // A blank can't be drawn on.
    ASSERT_TRUE(app.Choose('e', "e"));
    ASSERT_TRUE(app.Lists(kLayerList, {"A (0/2)"}));
    Click(app.At(60, 60));
    ASSERT_TRUE(HintComes("空セル"));
    EXPECT_TRUE(Keep("press-on-a-blank"));
    app.ParkMouse();
    ASSERT_TRUE(app.Choose('e', "e"));
    ASSERT_TRUE(app.Lists(kLayerList, {"A (2/2)"}));
    ASSERT_TRUE(TipGoes());
    ASSERT_TRUE(app.HasPixel(120, 90, kBlack));
  }

  // A slip of the pen and one on the time sheet are taken back.
  void TakeBack() {
    // Where text is typed the key takes back the typing alone.
    const RECT comment = app.Screen(app.Of(kCommentEdit));
    Click({comment.left + 10, comment.top + 8});
    ASSERT_TRUE(app.TypeUntil("ab", kCommentEdit, "ab"));
    Press('Z', {VK_CONTROL});
    ASSERT_TRUE(app.Shows(kCommentEdit, ""));
    ASSERT_TRUE(app.HasPixel(120, 90, kBlack));
    Click(app.At(5, 170));
    ASSERT_TRUE(app.HasFocus(app.Cut()));

    ASSERT_NO_FATAL_FAILURE(Draw({160, 130}, {220, 40}));
    Press('Z', {VK_CONTROL});
    ASSERT_TRUE(app.HasPixel(220, 40, kTransparent));
    EXPECT_TRUE(Keep("line-taken-back"));
    Press('Y', {VK_CONTROL});
    ASSERT_TRUE(app.HasPixel(220, 40, kBlack));
    Press('Z', {VK_CONTROL});
    ASSERT_TRUE(app.HasPixel(220, 40, kTransparent));

    Press('T', {VK_CONTROL});
    ASSERT_TRUE(Await([this] { return app.Sheet() != nullptr; }));
    ASSERT_TRUE(app.HasFocus(app.Sheet()));
    Type("1");
    Press(VK_RETURN);
    ASSERT_TRUE(app.Lists(kLayerList, {"A (1/2)"}));
    EXPECT_TRUE(app.KeepScreen("first-day-" + std::to_string(10 + steps++) + "-time-sheet"));
    Press('Z', {VK_CONTROL});
    ASSERT_TRUE(app.Lists(kLayerList, {"A (2/2)"}));
    Press('T', {VK_CONTROL});
    ASSERT_TRUE(Await([this] { return app.Sheet() == nullptr; }));
    ASSERT_TRUE(app.HasFocus(app.Cut()));
  }

  // The canvas under the wheel and the middle button.
  void LookCloser() {
    const POINT mouse = app.At(120, 90);
    MoveTo(mouse);
    for (const char* zoom : {"200%", "300%", "400%", "500%"}) {
      TurnWheel(WHEEL_DELTA, {VK_CONTROL});
      ASSERT_TRUE(HintComes(std::string("表示倍率 ") + zoom));
    }
    EXPECT_TRUE(Keep("zoomed-in"));
    const RECT client = app.ClientOnScreen(app.Cut());
    const POINT middle = {(client.left + client.right) / 2, (client.top + client.bottom) / 2};
    const Picture before = app.StillPictureOf(app.Cut());
    MoveTo(middle);
    TurnWheel(-WHEEL_DELTA);
    const Picture scrolled = app.StillPictureOf(app.Cut());
    EXPECT_GT(Compare(before, scrolled).count, 100);
    MoveTo(middle);
    MiddleDown();
    MoveTo({middle.x + 10, middle.y + 20});
    MoveTo({middle.x + 20, middle.y + 60});
    MiddleUp();
    EXPECT_GT(Compare(scrolled, app.StillPictureOf(app.Cut())).count, 100);
    EXPECT_TRUE(Keep("scrolled-and-dragged"));
    MoveTo(mouse);
    for (int i = 0; i < 5; i++) TurnWheel(-WHEEL_DELTA, {VK_CONTROL});
    ASSERT_TRUE(HintComes("表示倍率 50%"));
    EXPECT_TRUE(Keep("zoomed-out"));
    TurnWheel(WHEEL_DELTA, {VK_CONTROL});
    ASSERT_TRUE(HintComes("表示倍率 100%"));
    ASSERT_TRUE(TipGoes());
    ASSERT_TRUE(app.HasPixel(120, 90, kBlack));
  }

  // One more cut of the film, by the button of the tool bar.
  void NextCut(const std::vector<std::string>& names, POINT from, POINT to) {
    const HWND before = app.Cut();
    ASSERT_TRUE(app.ClickTool(kCommandAddNumberedCut));
    ASSERT_TRUE(app.Answer("カットのプロパティ"));
    ASSERT_TRUE(app.Answer("レイヤのプロパティ", {{kLayerNameEdit, "A"}}));
    ASSERT_TRUE(Await([&] { return app.Cut() != nullptr && app.Cut() != before; }));
    ASSERT_TRUE(app.Lists(kCutList, names));
    ASSERT_NO_FATAL_FAILURE(Draw(from, to));
    // The frame names the cut that is shown.
    ASSERT_TRUE(app.Shows(app.Frame(), "Sorvel Developer - [" + names.back() + ".cut]"));
    EXPECT_TRUE(Keep("cut-" + names.back()));
    ASSERT_TRUE(app.ChooseAt('c', 3));  // over its own file
    ASSERT_TRUE(Await([&] { return FileExists(app.PathOf(names.back() + ".cut")); }));
  }

  mutable int steps = 0;
};

TEST_F(FirstDayTest, LeadsFromTheEmptyWindowToAFilmThatPlays) {
  ASSERT_NO_FATAL_FAILURE(MakeTheFirstCut());
  ASSERT_NO_FATAL_FAILURE(Animate());
  ASSERT_NO_FATAL_FAILURE(TakeBack());
  ASSERT_NO_FATAL_FAILURE(LookCloser());

  ASSERT_TRUE(app.SaveCutAs(app.PathOf("c1.cut")));
  EXPECT_EQ(ReadFile(app.PathOf("c1.cut")).substr(0, 12), "Sorvelin Cut");
  ASSERT_TRUE(app.Choose('c', "a"));
  ASSERT_TRUE(app.Lists(kCutList, {"c1"}));
  EXPECT_TRUE(Keep("first-cut-in-the-film"));
  ASSERT_NO_FATAL_FAILURE(NextCut({"c1", "c002"}, {40, 20}, {40, 150}));
  ASSERT_NO_FATAL_FAILURE(NextCut({"c1", "c002", "c003"}, {20, 160}, {220, 160}));
  ASSERT_TRUE(app.Choose('f', "s"));
  ASSERT_TRUE(app.AnswerFileDialog(app.PathOf("film.flm")));
  ASSERT_TRUE(app.DialogGoes());
  ASSERT_TRUE(Await([this] { return !ReadFile(app.PathOf("film.flm")).empty(); }));
  EXPECT_EQ(ReadFile(app.PathOf("film.flm")), "\r\n\r\n320, 240\r\nc1.cut\r\nc002.cut\r\nc003.cut\r\n");

  // All three play, at the corner of the cuts.
  Drag(LineOf(0), LineOf(2));
  app.ParkMouse();
  ASSERT_TRUE(Await([this] { return app.Ask(app.Of(kCutList), LB_GETSELCOUNT) == 3; }));
  EXPECT_TRUE(Keep("list-of-cuts"));
  const RECT area = app.ClientOnScreen(app.Of(kMdiClientId));
  ASSERT_TRUE(app.Choose('f', "a"));
  ASSERT_TRUE(app.HasPlayer());
  const RECT player = app.Screen(app.Player());
  EXPECT_EQ(player.left, area.left);
  EXPECT_EQ(player.top, area.top);
  // Each of the four drawings comes up: a line where no other one has ink.
  const std::vector<POINT> ink = {{100, 43}, {100, 77}, {40, 120}, {200, 160}};
  for (const POINT& place : ink) {
    EXPECT_TRUE(Await([&] {
      const RECT client = app.ClientOnScreen(app.Player());
      // The cuts are smaller than the film and stand in its middle.
      const POINT found = {(client.left + client.right - kWidth) / 2 + place.x,
                           (client.top + client.bottom - kHeight) / 2 + place.y};
      const Picture shown(RECT{found.x - 2, found.y - 2, found.x + 3, found.y + 3});
      return shown.Count(kBlack) > 0 && shown.Count(kWhite) > 0;
    })) << place.x;
  }
  EXPECT_TRUE(app.KeepScreen("first-day-90-film-plays"));
  Press(VK_ESCAPE);
  ASSERT_TRUE(app.HasPlayer(false));
  EXPECT_TRUE(Keep("film-stopped"));

  // A slip: a file that isn't there, and Enter at the question about files.
  ASSERT_TRUE(app.Drop(app.PathOf("gone.cut")));
  ASSERT_TRUE(app.HasDialog("Sorvelin"));
  EXPECT_EQ(app.BoxText(), app.PathOf("gone.cut") + " を開けませんでした。\nファイルが見つかりません。");
  EXPECT_TRUE(Keep("missing-file"));
  Press(VK_RETURN);
  ASSERT_TRUE(app.DialogGoes());
  ASSERT_TRUE(app.ClickTool(kCommandDeleteCuts));
  ASSERT_TRUE(app.HasDialog("Sorvelin"));
  EXPECT_EQ(app.Focus(), app.Item(IDNO));
  EXPECT_TRUE(Keep("question-about-files"));
  Press(VK_RETURN);
  ASSERT_TRUE(app.DialogGoes());
  for (const char* name : {"c1.cut", "c002.cut", "c003.cut"}) EXPECT_TRUE(FileExists(app.PathOf(name))) << name;
  EXPECT_TRUE(app.Leave());
}

// Frames and captions as the window system draws them.
TEST_F(FirstDayTest, MaximisingAndMinimisingLeaveNothingBehind) {
  ASSERT_TRUE(app.NewCut());
  EXPECT_TRUE(Keep("windows-as-opened"));
  ShowWindow(app.Frame(), SW_MAXIMIZE);
  ASSERT_TRUE(Await([this] { return IsZoomed(app.Frame()) != FALSE; }));
  app.StillPicture();
  EXPECT_TRUE(app.KeepScreen("first-day-91-maximised"));
  ShowWindow(app.Frame(), SW_RESTORE);
  ASSERT_TRUE(Await([this] { return IsZoomed(app.Frame()) == FALSE; }));
  EXPECT_TRUE(Keep("restored"));
  app.Ask(app.Of(kMdiClientId), WM_MDIRESTORE, reinterpret_cast<WPARAM>(app.Cut()));
  EXPECT_TRUE(Keep("child-restored"));
  ShowWindow(app.Cut(), SW_MINIMIZE);
  EXPECT_TRUE(Keep("child-minimised"));
  ShowWindow(app.Cut(), SW_MAXIMIZE);
  ASSERT_TRUE(app.HasPixels({{0, 0, kTransparent}, {239, 179, kTransparent}}));
  EXPECT_TRUE(Keep("child-maximised"));
}

}  // namespace
}  // namespace sorvel::desktop
