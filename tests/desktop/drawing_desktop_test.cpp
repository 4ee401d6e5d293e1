// The tools on the canvas, with real mouse input and the pixels of the screen.
#include "app.h"
#include "colors.h"
#include "resources/ids.h"

namespace sorvel::desktop {
namespace {

class DrawingTest : public DesktopTest {
 protected:
  void SetUp() override {
    ASSERT_TRUE(app.Start());
    ASSERT_TRUE(app.NewCut());
    ASSERT_TRUE(app.HasPixel(0, 0, kTransparent));
    ASSERT_TRUE(app.HasPixel(239, 179, kTransparent));
  }

  Picture Still() const { return app.StillPictureOf(app.Cut()); }
  Picture Now() const { return app.PictureOf(app.Cut()); }
};

TEST_F(DrawingTest, ANewCanvasIsTransparentInABlackMargin) {
  const Picture canvas = app.PictureOfCanvas();
  EXPECT_EQ(canvas.Count(kTransparent), 240 * 180);
  EXPECT_TRUE(app.HasPixels({{-1, 90, kBlack}, {240, 90, kBlack}, {100, -1, kBlack}, {100, 180, kBlack}}));
}

TEST_F(DrawingTest, AStrokeDrawsExactlyItsPixels) {
  ASSERT_TRUE(app.Stroke({20, 30}, {100, 30}));
  const Picture canvas = Still();
  const RECT client = app.ClientOnScreen(app.Cut());
  const POINT first = app.At(0, 0);
  for (int y = 0; y < 180; y++) {
    for (int x = 0; x < 240; x++) {
      const Color pixel = canvas.At(first.x - client.left + x, first.y - client.top + y);
      const bool inLine = y == 30 && x >= 20 && x <= 100;
      ASSERT_EQ(pixel, inLine ? kBlack : kTransparent) << x << ", " << y;
    }
  }
}

TEST_F(DrawingTest, UndoTakesTheStrokeAwayAndBringsItBack) {
  const Picture empty = Still();
  ASSERT_TRUE(app.Stroke({20, 30}, {100, 80}));
  const Picture drawn = Still();
  EXPECT_GT(Compare(empty, drawn).count, 60);
  Type("z");
  ASSERT_TRUE(app.HasPixel(100, 80, kTransparent));
  EXPECT_EQ(Compare(empty, Still()).count, 0);
  ASSERT_TRUE(app.ChooseAt('e', 9));
  ASSERT_TRUE(app.HasPixel(100, 80, kBlack));
  EXPECT_EQ(Compare(drawn, Still()).count, 0);
}

TEST_F(DrawingTest, ThePenMarkFollowsTheMouseAndGoes) {
  Type("ffff");
  const Picture empty = Still();
  MoveTo(app.At(60, 60));
  ASSERT_TRUE(app.HasPixel(60, 60, kBlack));
  MoveTo(app.At(150, 100));
  ASSERT_TRUE(app.HasPixels({{150, 100, kBlack}, {60, 60, kTransparent}}));
  EXPECT_LE(Compare(empty, Still()).Width(), 8);
  // Another frame takes the mark off.
  app.ParkMouse();
  Press(VK_F3);
  ASSERT_TRUE(app.HasPixel(150, 100, kTransparent));
  EXPECT_EQ(Compare(empty, Still()).count, 0);
}

TEST_F(DrawingTest, TheSizeKeysMakeThePenLargerAndSmaller) {
  Type("fff");
  ASSERT_TRUE(app.Stroke({40, 40}, {120, 40}));
  EXPECT_EQ(app.Pixel(80, 39), kBlack);
  Type("ddd");
  ASSERT_TRUE(app.Stroke({40, 100}, {120, 100}));
  EXPECT_TRUE(app.HasPixels({{80, 99, kTransparent}, {80, 101, kTransparent}}));
  EXPECT_TRUE(app.Keep("strokes"));
}

TEST_F(DrawingTest, TheEraserTurnsInkIntoUnderdrawingAndItsFrameGoes) {
  ASSERT_TRUE(app.Stroke({40, 60}, {200, 60}));
  ASSERT_TRUE(app.TypeUntilTool("2", kToolEraser));
  EXPECT_FALSE(app.IsToolDown(kToolFreePen));
  const Picture inked = Still();
  MoveTo(app.At(100, 120));
  ASSERT_TRUE(Await([&] { return Compare(inked, Now()).count > 0; })) << "no frame at the mouse";
  EXPECT_LE(Compare(inked, Still()).Width(), 6);
  Drag(app.At(100, 60), app.At(100, 61));
  ASSERT_TRUE(app.HasPixels({{99, 60, kSketch}, {60, 60, kBlack}}));
  app.ParkMouse();
  ASSERT_TRUE(app.TypeUntilTool("1", kToolFreePen));
  const Difference change = Compare(inked, Still());
  EXPECT_EQ(change.Height(), 1) << "something of the eraser's frame stays";
  EXPECT_EQ(change.count, 5);
}

TEST_F(DrawingTest, ThePickerOpensByARightClickAndPicksAColorAndASize) {
  RightClick(app.At(120, 90));
  ASSERT_TRUE(Await([this] { return app.Picker() != nullptr; }));
  const RECT picker = app.Screen(app.Picker());
  const POINT corner = app.At(118, 88);
  const RECT place = {corner.x, corner.y, corner.x + 230, corner.y + 62};
  EXPECT_TRUE(EqualRect(&picker, &place));
  EXPECT_EQ(GetForegroundWindow(), app.Frame()) << "the picker took the activation";
  ASSERT_TRUE(app.Keep("pen-picker"));
  // Cells are 12 pixels on a pitch of 14, the first at (4, 4); a right press picks and leaves it open.
  RightClick({picker.left + 4 + 14 * 11 + 6, picker.top + 4 + 6});  // the fourth size
  EXPECT_NE(app.Picker(), nullptr);
  Click({picker.left + 4 + 14 * 1 + 6, picker.top + 4 + 6});  // dark
  ASSERT_TRUE(Await([this] { return app.Picker() == nullptr; }));
  Drag(app.At(40, 40), app.At(120, 40));
  app.ParkMouse();
  EXPECT_TRUE(app.HasPixels({{80, 40, kDarkGrey}, {80, 39, kDarkGrey}}));
}

TEST_F(DrawingTest, AnyMouseMessageOfTheCanvasHidesThePicker) {
  RightClick(app.At(60, 60));
  ASSERT_TRUE(Await([this] { return app.Picker() != nullptr; }));
  EXPECT_TRUE(Await([this] {
    MoveTo(app.At(20, 20));
    MoveTo(app.At(21, 20));
    return app.Picker() == nullptr;
  }));
}

TEST_F(DrawingTest, AHeldRightButtonOpensTheToolPopup) {
  MoveTo(app.At(200, 60));
  RightDown();
  Sleep(250);
  EXPECT_EQ(app.PopupMenu(), nullptr) << "too early";
  ASSERT_TRUE(Await([this] { return app.PopupMenu() != nullptr; }, 1500));
  const RECT popup = app.Screen(app.PopupMenu());
  EXPECT_NEAR(popup.right, app.At(200, 60).x, 4);
  EXPECT_NEAR(popup.top, app.At(200, 60).y, 4);
  ASSERT_TRUE(app.Keep("tool-popup"));
  RightUp();
  if (app.PopupMenu() == nullptr) GTEST_FAIL() << "the release at its corner closes the popup";
  Type("i");
  ASSERT_TRUE(Await([this] { return app.PopupMenu() == nullptr; }));
  EXPECT_TRUE(app.HasTool(kToolFill));
}

TEST_F(DrawingTest, FillingStopsAtTheLine) {
  ASSERT_TRUE(app.ClickTool(kToolLine));  // straight lines
  ASSERT_TRUE(app.HasTool(kToolLine));
  Drag(app.At(40, 40), app.At(120, 40));
  Drag(app.At(120, 40), app.At(120, 100));
  Drag(app.At(120, 100), app.At(40, 100));
  ASSERT_TRUE(app.Stroke({40, 100}, {40, 40}));
  ASSERT_TRUE(app.ClickTool(kToolFill));
  ASSERT_TRUE(app.HasTool(kToolFill));
  Click(app.At(80, 70));
  app.ParkMouse();
  ASSERT_TRUE(app.HasPixels(
      {{80, 70, kBlack}, {41, 41, kBlack}, {119, 99, kBlack}, {200, 150, kTransparent}, {30, 70, kTransparent}}));
  EXPECT_TRUE(app.Keep("filled"));
}

TEST_F(DrawingTest, ARubberLineLeavesNothingBehind) {
  const Picture empty = Still();
  ASSERT_TRUE(app.TypeUntilTool("3", kToolLine));
  MoveTo(app.At(20, 20));
  LeftDown();
  MoveTo(app.At(200, 40));
  MoveTo(app.At(180, 150));
  ASSERT_TRUE(Await([&] { return Compare(empty, Now()).count > 50; })) << "no rubber line";
  ASSERT_TRUE(app.Keep("rubber-line"));
  MoveTo(app.At(100, 20));
  LeftUp();
  app.ParkMouse();
  ASSERT_TRUE(app.HasPixel(60, 20, kBlack));
  Type("z");
  ASSERT_TRUE(app.HasPixel(60, 20, kTransparent));
  EXPECT_EQ(Compare(empty, Still()).count, 0);
}

TEST_F(DrawingTest, TheKeysZoomAtTheMouse) {
  ASSERT_TRUE(app.Stroke({100, 90}, {110, 90}));
  MoveTo(app.At(120, 90));
  Type("s");
  app.canvas.numerator = 2;
  ASSERT_TRUE(app.HasPixels({{1, 1, kTransparent}, {105, 90, kBlack}}));
  const POINT place = app.At(105, 90);
  EXPECT_EQ(Picture(RECT{place.x, place.y, place.x + 2, place.y + 2}).Count(kBlack), 4);
  EXPECT_EQ(app.Pixel(-1, 90), kBlack);
  ASSERT_TRUE(app.Keep("zoomed"));
  Type("aa");
  app.canvas.numerator = 1;
  app.canvas.denominator = 2;
  ASSERT_TRUE(Await([this] { return app.Pixel(60, 40) == kTransparent && app.Pixel(-4, 40) == kBlack; }));
  EXPECT_EQ(app.Pixel(244, 90), kBlack);
  // A thin line is still to be seen at half the size: half of its darkness.
  const POINT left = app.At(98, 88);
  const POINT right = app.At(114, 94);
  EXPECT_GT(Picture(RECT{left.x, left.y, right.x, right.y}).Count(kHalfBlack), 2);
}

TEST_F(DrawingTest, TheViewOptionsShowInThePicture) {
  ASSERT_TRUE(app.Stroke({20, 30}, {100, 30}));
  Type("b");
  ASSERT_TRUE(app.Lists(kLayerList, {"A (2/2)"}));
  ASSERT_TRUE(app.HasPixel(60, 30, kTransparent));
  Type("D");  // the cell before shows through
  ASSERT_TRUE(Await([this] { return app.Pixel(60, 30) != kTransparent; }));
  EXPECT_NE(app.Pixel(60, 30), kBlack);
  ASSERT_TRUE(app.Stroke({20, 60}, {100, 60}));
  ASSERT_TRUE(app.Keep("onion"));
  Type("J");
  EXPECT_TRUE(app.HasPixel(60, 30, kTransparent));
}

TEST_F(DrawingTest, TheTextToolWritesJapanese) {
  const Picture empty = Still();
  ASSERT_TRUE(app.Choose('t', "t"));
  Click(app.At(20, 60));
  ASSERT_TRUE(app.HasDialog("テキスト"));
  const HWND edit = app.Item(kTextDialogEdit);
  ASSERT_TRUE(app.HasFocus(edit));
  Type("表示と");
  Press(VK_RETURN);
  Type("十字");
  ASSERT_TRUE(app.Shows(edit, "表示と\r\n十字"));
  ASSERT_TRUE(app.Keep("text-dialog"));
  app.ClickButton(IDOK);
  ASSERT_TRUE(app.DialogGoes());
  Click(app.At(20, 60));
  app.ParkMouse();
  ASSERT_TRUE(Await([&] { return app.PictureOfCanvas().Count(kBlack) > 200; })) << app.PictureOfCanvas().Count(kBlack);
  EXPECT_TRUE(app.Keep("text"));
  Type("z");
  ASSERT_TRUE(Await([&] { return Compare(empty, Now()).count == 0; }));
}

TEST_F(DrawingTest, ASelectionIsCutAndPasted) {
  ASSERT_TRUE(app.Stroke({20, 30}, {60, 30}));
  ASSERT_TRUE(app.TypeUntilTool("Q", kToolAreaSelect));
  const Picture plain = Still();
  Drag(app.At(10, 20), app.At(70, 40));
  app.ParkMouse();
  ASSERT_TRUE(Await([&] { return Compare(plain, Now()).count > 20; })) << "no frame round it";
  ASSERT_TRUE(app.Keep("selection"));
  ASSERT_TRUE(app.Choose('e', "t"));
  ASSERT_TRUE(app.HasPixel(40, 30, kTransparent));
  ASSERT_TRUE(app.ChooseAt('e', 12));
  ASSERT_TRUE(Await([this] { return app.PictureOfCanvas().Count(kBlack) >= 41; }));
}

// A canvas larger than the window.
class ScrollingTest : public DesktopTest {
 protected:
  void SetUp() override {
    ASSERT_TRUE(app.Start());
    ASSERT_TRUE(app.NewCut("A", 1600, 1200));
    const RECT client = app.ClientOnScreen(app.Cut());
    corner = {client.left, client.top};
    const int bar = GetSystemMetrics(SM_CXVSCROLL);
    up = {client.right + bar / 2, client.top + bar / 2};
    down = {client.right + bar / 2, client.bottom - bar / 2};
    right = {client.right - bar / 2, client.bottom + bar / 2};
    Drag({corner.x + 100, corner.y + 100}, {corner.x + 160, corner.y + 100});
    app.ParkMouse();
    ASSERT_TRUE(Await([this] { return IsDrawnAt(100, 100); }));
  }

  // Whether the line begins at this place of the window.
  bool IsDrawnAt(int x, int y) const {
    const Picture picture(RECT{corner.x + x - 1, corner.y + y, corner.x + x + 61, corner.y + y + 1});
    return picture.At(0, 0) == kTransparent && picture.At(1, 0) == kBlack && picture.At(61, 0) == kBlack;
  }

  Picture Still() const { return app.StillPictureOf(app.Cut()); }

  POINT corner = {};
  POINT up = {};  // arrows of the bars
  POINT down = {};
  POINT right = {};
};

TEST_F(ScrollingTest, TheBarsArrowsScrollByFour) {
  const std::pair<POINT, POINT> steps[] = {{down, {100, 96}}, {right, {96, 96}}, {up, {96, 100}}};
  for (const auto& [arrow, place] : steps) {
    Click(arrow);
    EXPECT_TRUE(Await([&] { return IsDrawnAt(place.x, place.y); })) << place.x << ", " << place.y;
  }
  EXPECT_TRUE(app.Keep("scrolled"));
}

TEST_F(ScrollingTest, TheThumbIsDragged) {
  const Picture before = Still();
  const POINT thumb = {up.x, up.y + GetSystemMetrics(SM_CXVSCROLL) / 2 + 10};
  MoveTo(thumb);
  LeftDown();
  MoveTo({thumb.x, thumb.y + 20});
  ASSERT_TRUE(Await([&] { return Compare(before, app.PictureOf(app.Cut())).count > 0; })) << "nothing moves yet";
  EXPECT_FALSE(IsDrawnAt(100, 100));
  MoveTo(thumb);
  LeftUp();
  app.ParkMouse();
  EXPECT_TRUE(Await([this] { return IsDrawnAt(100, 100); }));
  EXPECT_EQ(Compare(before, Still()).count, 0);
}

TEST_F(ScrollingTest, ShiftAndControlPan) {
  for (int i = 0; i < 5; i++) Click(down);
  ASSERT_TRUE(Await([this] { return IsDrawnAt(100, 80); }));
  const Picture before = Still();
  // Under Wine the X server may take the keys away in the middle of it.
  for (int i = 0; i < 5 && IsDrawnAt(100, 80); i++) {
    MoveTo({corner.x + 300, corner.y + 300});
    for (int j = 0; j <= 6; j++) MoveTo({corner.x + 301 - 5 * j, corner.y + 300 + 3 * j}, {VK_CONTROL, VK_SHIFT});
    MoveTo({corner.x + 302, corner.y + 300});
  }
  app.ParkMouse();
  Press(VK_F3);  // takes the pen's mark off
  const Picture after = Still();
  int x = 0;
  int y = 0;
  while (y < after.Height() && after.At(x, y) != kBlack) {
    x = (x + 1) % after.Width();
    y += x == 0;
  }
  EXPECT_LT(x, 100);
  EXPECT_GT(y, 80);
  // All of the picture moved along, and nothing else is on it.
  int wrong = 0;
  for (int row = 0; row < after.Height() - 80; row++) {
    for (int column = 0; column < after.Width() - 100; column++) {
      const Color expected = before.At(column + 100 - x, row + 80 - y);
      wrong += row + 80 - y >= 0 && after.At(column, row) != expected;
    }
  }
  EXPECT_EQ(wrong, 0);
  EXPECT_TRUE(app.Keep("panned"));
}

}  // namespace
}  // namespace sorvel::desktop
