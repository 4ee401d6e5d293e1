// The time sheet: opened, clicked, typed into and dragged in the real window.
#include "app.h"
#include "resources/ids.h"

namespace sorvel::desktop {
namespace {

// How the window is laid out, in pixels.
constexpr int kHeadHeight = 24;
constexpr int kRowHeight = 18;
constexpr int kFixedWidth = 132;
constexpr int kColumnWidth = 44;

class SheetTest : public DesktopTest {
 protected:
  void SetUp() override {
    ASSERT_TRUE(app.Start());
    ASSERT_TRUE(app.NewCut("線画"));
    Type("b");
    ASSERT_TRUE(app.Lists(kLayerList, {"線画 (2/2)"}));
    ASSERT_TRUE(app.TypeUntil("t", kKeyFrameCheck, "2(2f)"));
    ASSERT_TRUE(app.TypeUntil("y", kKeyFrameCheck, "3(3f)"));
    Press('T', {VK_CONTROL});
    ASSERT_TRUE(Await([this] { return app.Sheet() != nullptr; }));
    ASSERT_TRUE(app.HasFocus(app.Sheet()));
  }

  POINT On(int x, int y) const {
    POINT place = {x, y};
    ClientToScreen(app.Sheet(), &place);
    return place;
  }
  // The middle of a square.
  POINT Square(int column, int row) const {
    return On(kFixedWidth + column * kColumnWidth + kColumnWidth / 2, kHeadHeight + row * kRowHeight + kRowHeight / 2);
  }
  POINT End(int column, int row) const {
    return On(kFixedWidth + column * kColumnWidth + kColumnWidth / 2, kHeadHeight + (row + 1) * kRowHeight);
  }
  void KeepSheet(const std::string& name) {
    ASSERT_TRUE(KeepPicture(app.StillPictureOf(app.Sheet()), name));
    ASSERT_TRUE(app.KeepScreen(name + "-screen"));
  }
};

TEST_F(SheetTest, ClicksAndKeysGoToFrames) {
  EXPECT_TRUE(app.Shows(app.Sheet(), "タイムシート - Cut (0+3)"));
  Click(Square(0, 1));
  EXPECT_TRUE(app.Shows(kKeyFrameCheck, "2(2f)"));
  Press(VK_UP);
  EXPECT_TRUE(app.Shows(kKeyFrameCheck, "1(1f)"));
  Press(VK_NEXT);
  EXPECT_TRUE(app.Shows(kKeyFrameCheck, "3(3f)"));
  Press(VK_F2);
  EXPECT_TRUE(app.Shows(kKeyFrameCheck, "2(2f)"));
  ASSERT_NO_FATAL_FAILURE(KeepSheet("sheet"));
}

TEST_F(SheetTest, NumbersAreTyped) {
  Click(Square(0, 0));
  Type("1");
  ASSERT_NO_FATAL_FAILURE(KeepSheet("sheet-typing"));
  Press(VK_RETURN);
  EXPECT_TRUE(app.Lists(kLayerList, {"線画 (1/2)"}));
  Type("2");
  Press(VK_ESCAPE);
  Press(VK_RETURN);
  EXPECT_TRUE(app.Lists(kLayerList, {"線画 (1/2)"}));
  Type("3");
  Press(VK_DOWN);
  EXPECT_TRUE(app.Shows(kKeyFrameCheck, "2(2f)"));
  Press(VK_UP);
  EXPECT_TRUE(app.Lists(kLayerList, {"線画 (3/3)"}));
  Press(VK_DELETE);
  EXPECT_TRUE(app.Lists(kLayerList, {"線画 (0/3)"}));
  EXPECT_TRUE(app.HasFocus(app.Sheet()));
}

TEST_F(SheetTest, SeveralSquaresAreExposedAtOnce) {
  Drag(Square(0, 0), Square(0, 1));
  Type("1");
  Press(VK_RETURN);
  EXPECT_TRUE(app.Lists(kLayerList, {"線画 (1/2)"}));
  Press(VK_UP);
  EXPECT_TRUE(app.Shows(kKeyFrameCheck, "1(1f)"));
  EXPECT_TRUE(app.Lists(kLayerList, {"線画 (1/2)"}));
  Press(VK_DOWN, {VK_SHIFT});
  Press(VK_DOWN, {VK_SHIFT});
  Type("0");
  Press(VK_RETURN);
  EXPECT_TRUE(app.Shows(kKeyFrameCheck, "3(3f)"));
  EXPECT_TRUE(app.Lists(kLayerList, {"線画 (0/2)"}));
}

TEST_F(SheetTest, TheEndOfAHoldIsDragged) {
  Drag(End(0, 1), End(0, 4));
  EXPECT_TRUE(app.Shows(kKeyFrameCheck, "2(2f)"));
  EXPECT_TRUE(app.Shows(kFrameTimeEdit, "4"));
  EXPECT_TRUE(app.Shows(app.Sheet(), "タイムシート - Cut (0+6)"));
  // A number in the middle divides the frame.
  Click(Square(0, 3));
  Type("1");
  Press(VK_RETURN);
  EXPECT_TRUE(app.Shows(kKeyFrameCheck, "3(4f)"));
  EXPECT_TRUE(app.Shows(kFrameTimeEdit, "2"));
  EXPECT_TRUE(app.Lists(kLayerList, {"線画 (1/2)"}));
  ASSERT_NO_FATAL_FAILURE(KeepSheet("sheet-dragged"));
}

TEST_F(SheetTest, ItStaysOpenBesideTheCanvas) {
  Click(app.At(20, 20));
  ASSERT_TRUE(app.HasFocus(app.Cut()));
  EXPECT_TRUE(IsWindowVisible(app.Sheet()));
  ASSERT_TRUE(app.TypeUntil("q", kKeyFrameCheck, "2(2f)"));
  Click(Square(0, 0));
  ASSERT_TRUE(app.HasFocus(app.Sheet()));
  EXPECT_TRUE(app.Shows(kKeyFrameCheck, "1(1f)"));
  Press('T', {VK_CONTROL});
  EXPECT_TRUE(Await([this] { return app.Sheet() == nullptr; }));
  EXPECT_TRUE(app.HasFocus(app.Cut()));
}

TEST_F(SheetTest, ItRemembersWhereItWasMovedTo) {
  EXPECT_EQ(Setting(app, "sheet", "place"), "");
  const RECT before = app.Screen(app.Sheet());
  const POINT caption = {before.left + 60, before.top + 10};
  Drag(caption, {caption.x - 150, caption.y + 40});
  ASSERT_TRUE(Await([&] { return app.Screen(app.Sheet()).left == before.left - 150; }));
  ASSERT_TRUE(Await([&] { return !Setting(app, "sheet", "place").empty(); }));
  const RECT moved = app.Screen(app.Sheet());
  Click(app.At(20, 20));
  ASSERT_TRUE(app.HasFocus(app.Cut()));
  ASSERT_TRUE(app.Leave());
  ASSERT_TRUE(app.Start());
  Press('T', {VK_CONTROL});
  ASSERT_TRUE(Await([this] { return app.Sheet() != nullptr; }));
  const RECT again = app.Screen(app.Sheet());
  EXPECT_TRUE(EqualRect(&again, &moved));
  EXPECT_EQ(app.Text(app.Sheet()), "タイムシート");
}

TEST_F(SheetTest, PicturesAreShownOnWish) {
  ASSERT_TRUE(app.Stroke({30, 30}, {200, 150}));
  RightClick(Square(0, 2));
  ASSERT_TRUE(Await([this] { return app.PopupMenu() != nullptr; }));
  Type("p");
  ASSERT_TRUE(Await([this] { return app.PopupMenu() == nullptr; }));
  // The stroke is seen in the picture, between the marks and the squares.
  EXPECT_TRUE(Await([this] {
    int dark = 0;
    const Picture picture = app.PictureOf(app.Sheet());
    for (int y = kHeadHeight; y < kHeadHeight + 72; ++y) {
      for (int x = kFixedWidth + 2; x < kFixedWidth + 60; ++x) dark += (picture.At(x, y) & 0xFF) < 160 ? 1 : 0;
    }
    return dark > 20;
  }));
  ASSERT_NO_FATAL_FAILURE(KeepSheet("sheet-pictures"));
}

}  // namespace
}  // namespace sorvel::desktop
