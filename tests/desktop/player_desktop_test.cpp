// Playing: the animation window, and what goes on beside it.
#include "app.h"
#include "colors.h"
#include "resources/ids.h"

namespace sorvel::desktop {
namespace {

class PlayerTest : public DesktopTest {
 protected:
  // A cut of two frames of four ticks each: one white, one black.
  void SetUp() override {
    ASSERT_TRUE(app.Start());
    ASSERT_TRUE(app.NewCut());
    Press(VK_TAB);
    ASSERT_TRUE(app.HasFocus(app.Of(kFrameTimeEdit)));
    Type("4");
    Press(VK_TAB);
    Click(app.At(5, 5));
    ASSERT_TRUE(app.HasFocus(app.Cut()));
    Type("z");  // without the dot of the click
    ASSERT_TRUE(app.TypeUntil("t", kKeyFrameCheck, "2(5f)"));
    Type("b");
    ASSERT_TRUE(app.Lists(kLayerList, {"A (2/2)"}));
    ASSERT_TRUE(app.TypeUntilTool("W", kToolFill));
    Click(app.At(100, 100));
    ASSERT_TRUE(app.HasPixel(200, 20, kBlack));
    app.ParkMouse();
  }

  Color Middle() const {
    const RECT client = app.ClientOnScreen(app.Player());
    const POINT middle = {(client.left + client.right) / 2, (client.top + client.bottom) / 2};
    return Picture(RECT{middle.x, middle.y, middle.x + 1, middle.y + 1}).At(0, 0);
  }

  testing::AssertionResult Plays() const {
    if (const testing::AssertionResult there = app.HasPlayer(); !there) return there;
    for (const Color color : {kBlack, kWhite, kBlack}) {
      if (!Await([&] { return Middle() == color; })) {
        return testing::AssertionFailure() << "the picture stays at " << std::hex << Middle();
      }
    }
    return testing::AssertionSuccess();
  }
};

TEST_F(PlayerTest, APlayShowsBothFramesInAWindowOfTheirSize) {
  Press(VK_F4);
  ASSERT_TRUE(Plays());
  const RECT client = app.ClientOnScreen(app.Player());
  EXPECT_EQ(client.right - client.left, 240);
  EXPECT_EQ(client.bottom - client.top, 180);
  EXPECT_EQ(GetForegroundWindow(), app.Frame()) << "the animation window took the activation";
  EXPECT_NE(app.Text(app.Player()).find(" byte"), std::string::npos) << app.Text(app.Player());
  EXPECT_TRUE(app.KeepScreen("playing"));
  Press(VK_ESCAPE);
  EXPECT_TRUE(app.HasPlayer(false));
  ASSERT_TRUE(app.ClickTool(kCommandPlay));
  EXPECT_TRUE(Plays());
  ASSERT_TRUE(app.ClickTool(kCommandStop));
  EXPECT_TRUE(app.HasPlayer(false));
}

TEST_F(PlayerTest, AFrameStandsForItsTicks) {
  Press(VK_F5);
  ASSERT_TRUE(Plays());
  // Eight ticks of 41 milliseconds are a round.
  constexpr int rounds = 6;
  const ULONGLONG begin = GetTickCount64();
  for (int i = 0; i < rounds; i++) {
    ASSERT_TRUE(Await([this] { return Middle() == kWhite; }));
    ASSERT_TRUE(Await([this] { return Middle() == kBlack; }));
  }
  const double time = static_cast<double>(GetTickCount64() - begin) / rounds;
  EXPECT_NEAR(time, 8 * 41, 60);
}

TEST_F(PlayerTest, APlayGoesOnWhileAMenuIsOpen) {
  Press(VK_F4);
  ASSERT_TRUE(Plays());
  ASSERT_NE(app.OpenMenu('w'), nullptr);
  EXPECT_TRUE(Plays());
  EXPECT_NE(app.PopupMenu(), nullptr);
  EXPECT_TRUE(app.KeepScreen("playing-under-a-menu"));
  app.CloseMenus();
  EXPECT_TRUE(Plays());
}

TEST_F(PlayerTest, APlayGoesOnWhileADialogIsOpen) {
  Press(VK_F4);
  ASSERT_TRUE(Plays());
  ASSERT_TRUE(app.Choose('c', "p"));
  ASSERT_TRUE(app.HasDialog("カットのプロパティ"));
  EXPECT_TRUE(Plays());
}

TEST_F(PlayerTest, APlayGoesOnWhileTheFrameIsDragged) {
  Press(VK_F4);
  ASSERT_TRUE(Plays());
  const RECT before = app.Screen(app.Frame());
  const POINT caption = {before.left + 300, before.top + GetSystemMetrics(SM_CYCAPTION) / 2 + 4};
  MoveTo(caption);
  LeftDown();
  for (int i = 1; i <= 5; i++) MoveTo({caption.x + 4 * i, caption.y + 2 * i});
  EXPECT_TRUE(Plays());
  LeftUp();
  ASSERT_TRUE(Await([&] { return app.Screen(app.Frame()).left == before.left + 20; }))
      << app.Screen(app.Frame()).left - before.left;
  EXPECT_EQ(app.Screen(app.Frame()).top, before.top + 10);
  EXPECT_TRUE(Plays());
}

TEST_F(PlayerTest, APlayGoesOnWhileAStrokeIsDrawn) {
  Press(VK_F4);
  ASSERT_TRUE(Plays());
  ASSERT_TRUE(app.TypeUntil("1q", kKeyFrameCheck, "1(1f)"));
  MoveTo(app.At(20, 150));
  LeftDown();
  for (int i = 1; i <= 8; i++) MoveTo(app.At(20 + 5 * i, 150));
  EXPECT_TRUE(Plays());
  LeftUp();
  app.ParkMouse();
  EXPECT_TRUE(app.HasPixel(55, 150, kBlack));
}

TEST_F(PlayerTest, APreviewStands) {
  ASSERT_TRUE(app.Choose('r', "v"));
  ASSERT_TRUE(Await([this] { return app.Player() != nullptr && Middle() == kBlack; }));
  EXPECT_FALSE(Await([this] { return Middle() != kBlack; }, 600));
  ASSERT_TRUE(app.TypeUntil("q", kKeyFrameCheck, "1(1f)"));
  ASSERT_TRUE(app.Choose('r', "v"));
  EXPECT_TRUE(Await([this] { return Middle() == kWhite; }));
  Press(VK_F9);
  EXPECT_TRUE(app.HasPlayer(false));
}

TEST_F(PlayerTest, ASavedCutKeepsItsCompiledFile) {
  ASSERT_TRUE(app.SaveCutAs(app.PathOf("表.cut")));
  EXPECT_FALSE(FileExists(app.PathOf("表.ca")));
  Press(VK_F4);
  ASSERT_TRUE(Plays());
  const std::string compiled = ReadFile(app.PathOf("表.ca"));
  ASSERT_GT(compiled.size(), 2u);
  EXPECT_EQ(compiled.substr(0, 2), "CA");
  EXPECT_TRUE(app.Shows(app.Player(), std::to_string(compiled.size()) + " byte"));
}

}  // namespace
}  // namespace sorvel::desktop
