// Windows as such: activation, repainting, sizes, and ends in the middle of something.
#include "app.h"
#include "colors.h"

namespace sorvel::desktop {
namespace {

class WindowsTest : public DesktopTest {
 protected:
  void SetUp() override { ASSERT_TRUE(app.Start()); }

  void NewDrawing() {
    ASSERT_TRUE(app.NewCut());
    ASSERT_TRUE(app.Stroke({20, 30}, {200, 37}));
    ASSERT_TRUE(app.Stroke({30, 150}, {187, 20}));
    Press(VK_F3);  // takes the pen's mark off
  }

  // Whether any part of the cut's window that is painted anew comes out as it was, but for so many pixels.
  void ExpectSteadyPaint(int tolerance) {
    const Picture before = app.StillPictureOf(app.Cut());
    RECT client = {};
    GetClientRect(app.Cut(), &client);
    const LONG x = client.right / 2;
    const LONG y = client.bottom / 2;
    const RECT parts[] = {{x - 61, y - 40, x + 3, y + 22},
                          {x - 20, y - 33, x - 19, y + 60},
                          {x, y, x + 101, y + 1},
                          {0, 0, x, y},
                          {x - 7, 0, x + 50, client.bottom}};
    for (const RECT& part : parts) {
      InvalidateRect(app.Cut(), &part, TRUE);
      const Difference difference = Compare(before, app.StillPictureOf(app.Cut()));
      EXPECT_LE(difference.count, tolerance)
          << "after painting " << part.left << ", " << part.top << " to " << part.right << ", " << part.bottom << ", "
          << difference.bounds.left << ", " << difference.bounds.top << " to " << difference.bounds.right << ", "
          << difference.bounds.bottom << " differs";
    }
  }

  testing::AssertionResult StartsPlaying() {
    Press(VK_TAB);
    Type("5");
    Press(VK_TAB);
    Click(app.At(5, 5));
    Type("tb");
    if (const testing::AssertionResult frame = app.Shows(kKeyFrameCheck, "2(6f)"); !frame) return frame;
    app.ParkMouse();
    Press(VK_F4);
    return app.HasPlayer();
  }

  // Another program's window in front; null if it doesn't get there.
  static HWND OtherInFront() {
    const HWND other = CreateWindowExW(WS_EX_TOPMOST, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 1100, 60, 100, 60, nullptr,
                                       nullptr, nullptr, nullptr);
    SetForegroundWindow(other);
    return Await([&] { return GetForegroundWindow() == other; }) ? other : nullptr;
  }

  // The picture at this scale.
  void Zoom(const char* keys, int numerator, int denominator) {
    MoveTo(app.At(120, 90));
    Type(keys);
    app.ParkMouse();
    app.canvas.numerator = numerator;
    app.canvas.denominator = denominator;
  }
};

TEST_F(WindowsTest, APartIsPaintedAsTheWholeWasAtFullSize) {
  NewDrawing();
  ExpectSteadyPaint(0);
}

TEST_F(WindowsTest, APartIsPaintedAsTheWholeWasEnlarged) {
  NewDrawing();
  Zoom("ss", 3, 1);
  ASSERT_TRUE(app.HasPixel(20, 30, kBlack));
  Press(VK_F3);
  ExpectSteadyPaint(0);
}

TEST_F(WindowsTest, APartIsPaintedNearlyAsTheWholeWasReduced) {
  NewDrawing();
  Zoom("aa", 1, 3);
  ASSERT_TRUE(Await([this] { return app.Pixel(243, 90) == kBlack && app.Pixel(-3, 60) == kBlack; }));
  Press(VK_F3);
  // A painted part needn't begin with a whole group of pixels, so that a line may move by one.
  constexpr int linePixels = 150;
  ExpectSteadyPaint(linePixels);
  EXPECT_TRUE(app.Keep("reduced"));
}

TEST_F(WindowsTest, TheFocusComesBackWithTheWindow) {
  NewDrawing();
  const HWND other = OtherInFront();
  ASSERT_NE(other, nullptr);
  const RECT frame = app.Screen(app.Frame());
  Click({frame.left + 400, frame.top + 12});
  ASSERT_TRUE(Await([this] { return GetForegroundWindow() == app.Frame(); }));
  DestroyWindow(other);
  EXPECT_TRUE(app.HasFocus(app.Cut()));
  EXPECT_TRUE(app.TypeUntil("t", kKeyFrameCheck, "2(2f)"));
}

TEST_F(WindowsTest, ACommentInWorkSurvivesAnotherWindow) {
  NewDrawing();
  Press(VK_TAB, {VK_SHIFT});
  ASSERT_TRUE(app.HasFocus(app.Of(kCommentEdit)));
  Type("abc");
  const HWND other = OtherInFront();
  ASSERT_NE(other, nullptr);
  DestroyWindow(other);
  SetForegroundWindow(app.Frame());
  ASSERT_TRUE(Await([this] { return GetForegroundWindow() == app.Frame(); }));
  EXPECT_EQ(app.Text(kCommentEdit), "abc");
  Press(VK_F3);
  EXPECT_TRUE(app.Shows(kCommentEdit, "abc"));
}

TEST_F(WindowsTest, AMinimisedWindowComesBackAsItWas) {
  NewDrawing();
  const Picture before = app.StillPicture();
  ShowWindow(app.Frame(), SW_MINIMIZE);
  ASSERT_TRUE(Await([this] { return IsIconic(app.Frame()) != FALSE; }));
  ShowWindow(app.Frame(), SW_RESTORE);
  ASSERT_TRUE(Await([this] { return !IsIconic(app.Frame()); }));
  SetForegroundWindow(app.Frame());
  EXPECT_TRUE(Await([&] { return Compare(before, app.PictureOf(app.Frame())).count == 0; }))
      << Compare(before, app.PictureOf(app.Frame())).count;
}

TEST_F(WindowsTest, TheFrameIsMaximised) {
  NewDrawing();
  ShowWindow(app.Frame(), SW_MAXIMIZE);
  ASSERT_TRUE(Await([this] { return IsZoomed(app.Frame()) != FALSE; }));
  EXPECT_TRUE(app.HasPixels({{200, 37, kBlack}, {0, 0, kTransparent}}));
  EXPECT_TRUE(app.Keep("maximised"));
}

TEST_F(WindowsTest, ACutWindowOfItsOwnSizeIsDrawnAndClosed) {
  NewDrawing();
  const HWND first = app.Cut();
  ASSERT_TRUE(app.NewCut("B"));
  const HWND second = app.Cut();
  PostMessageW(app.Of(kMdiClientId), WM_MDIRESTORE, reinterpret_cast<WPARAM>(second), 0);
  ASSERT_TRUE(Await([&] { return !IsZoomed(second); }));
  PostMessageW(app.Of(kMdiClientId), WM_MDITILE, MDITILE_VERTICAL, 0);
  ASSERT_TRUE(Await([&] {
    return app.Screen(first).right <= app.Screen(second).left || app.Screen(second).right <= app.Screen(first).left;
  }));
  EXPECT_TRUE(app.HasPixel(120, 90, kTransparent));
  EXPECT_TRUE(app.Keep("two-cuts"));
  // A click into the other window makes it the active one, with its own frame in the panels.
  const RECT other = app.ClientOnScreen(first);
  Click({other.left + 10, other.top + 10});
  app.ParkMouse();
  ASSERT_TRUE(Await([&] { return app.Cut() == first; }));
  EXPECT_TRUE(app.Lists(kLayerList, {"A (1/1)"}));
  EXPECT_TRUE(app.HasPixel(200, 37, kBlack));
  PostMessageW(first, WM_CLOSE, 0, 0);
  ASSERT_TRUE(app.AnswerQuestion("", IDNO));
  ASSERT_TRUE(Await([&] { return app.Cut() == second; }));
  EXPECT_TRUE(app.Lists(kLayerList, {"B (1/1)"}));
}

TEST_F(WindowsTest, TheProgramEndsDuringAPlay) {
  ASSERT_TRUE(app.NewCut());
  ASSERT_TRUE(StartsPlaying());
  EXPECT_TRUE(app.Leave());
}

TEST_F(WindowsTest, ACutIsClosedDuringItsPlay) {
  ASSERT_TRUE(app.NewCut());
  ASSERT_TRUE(StartsPlaying());
  Press(VK_F4, {VK_CONTROL});
  ASSERT_TRUE(app.AnswerQuestion("", IDNO));
  ASSERT_TRUE(app.HasNoCut());
  app.ParkMouse();
  Press(VK_F9);
  EXPECT_TRUE(app.HasPlayer(false));
  EXPECT_TRUE(app.Leave());
}

TEST_F(WindowsTest, AStrokeThatLeavesTheWindowEndsWithTheButton) {
  ASSERT_TRUE(app.NewCut());
  Drag(app.At(100, 100), {app.Screen(app.Frame()).right + 60, app.At(100, 100).y});
  app.ParkMouse();
  EXPECT_TRUE(app.HasPixel(239, 100, kBlack));
  MoveTo(app.At(50, 50));
  MoveTo(app.At(60, 70));
  app.ParkMouse();
  Press(VK_F3);
  EXPECT_TRUE(app.HasPixels({{60, 70, kTransparent}, {55, 60, kTransparent}}));
}

}  // namespace
}  // namespace sorvel::desktop
