#include "tools/tool_fixture.h"

namespace sorvel {
namespace {

class PenPickerTest : public testtools::ToolTest {
 protected:
  void SetUp() override {
    ToolTest::SetUp();
    window = host.penPicker.window;
    host.penPicker.Show(100, 100, &currentPen);
  }

  void Pick(int32_t column, int32_t row, uint32_t message = platform::kMessageLeftDown) {
    platform::Send(window, message, 0, platform::PackPoint({4 + 14 * column + 6, 4 + 14 * row + 6}));
  }
  void PickAt(int32_t x, int32_t y) {
    platform::Send(window, platform::kMessageLeftDown, 0, platform::PackPoint({x, y}));
  }
  platform::ColorEntry ColorAt(int32_t x, int32_t y) {
    platform::InvalidateClient(window, false);
    platform::headless::DeliverPaint(window);
    return window->pixels[static_cast<size_t>(y * window->width + x)];
  }
  static bool IsColor(platform::ColorEntry color, int32_t index) {
    const platform::ColorEntry& expected = ColorTable[static_cast<size_t>(index)];
    return color.red == expected.red && color.green == expected.green && color.blue == expected.blue;
  }

  platform::WindowHandle window = nullptr;
};

TEST_F(PenPickerTest, OpensTwoPixelsLeftOfAndAboveThePlaceWithoutTakingTheFocus) {
  EXPECT_EQ(PickerPlace(), (Point{98, 98}));
  EXPECT_EQ(window->width, 230);
  EXPECT_EQ(window->height, 62);
  EXPECT_EQ(platform::FocusedWindow(), cut->window);
}

TEST_F(PenPickerTest, NearTheScreensRightAndBottomEdgeItsEdgeIsTheScreens) {
  const Point screen = platform::ScreenSize();
  host.penPicker.Show(screen.x - 227, 100, &currentPen);
  EXPECT_EQ(PickerPlace(), (Point{screen.x - 230, 98}));
  host.penPicker.Show(screen.x - 228, 100, &currentPen);
  EXPECT_EQ(PickerPlace(), (Point{screen.x - 230, 98}));
  host.penPicker.Show(screen.x - 229, screen.y - 59, &currentPen);
  EXPECT_EQ(PickerPlace(), (Point{screen.x - 231, screen.y - 62}));
}

TEST_F(PenPickerTest, ARightPressPicksTooAndALeftReleaseHides) {
  Pick(3, 1, platform::kMessageRightDown);
  EXPECT_EQ(currentPen, (PenSpec{7, 3, 1, 2}));
  platform::Send(window, platform::kMessageRightUp, 0, 0);
  EXPECT_TRUE(IsPickerOpen());
  platform::Send(window, platform::kMessageLeftUp, 0, 0);
  EXPECT_FALSE(IsPickerOpen());
}

TEST_F(PenPickerTest, EditsThePenThatItWasShownWith) {
  PenSpec other;
  host.penPicker.Show(100, 100, &other);
  Pick(2, 3);
  EXPECT_EQ(other, (PenSpec{7, 2, 3, 4}));
  EXPECT_EQ(currentPen, PenSpec{});
}

TEST_F(PenPickerTest, PaintsColoursSizesAndTones) {
  EXPECT_TRUE(IsColor(ColorAt(10, 10), 1));
  EXPECT_TRUE(IsColor(ColorAt(10 + 14 * 3, 10), 11));
  EXPECT_TRUE(IsColor(ColorAt(10 + 14 * 5, 10), 0));
  // The tone of column 0 is plain.
  EXPECT_TRUE(IsColor(ColorAt(10, 24), 2));
  EXPECT_TRUE(IsColor(ColorAt(10, 52), 4));
  // The chosen size is black, the others light grey.
  EXPECT_TRUE(IsColor(ColorAt(122, 10), 1));
  EXPECT_TRUE(IsColor(ColorAt(122 + 14 * 7, 10), 3));
  Pick(15, 0);
  EXPECT_TRUE(IsColor(ColorAt(122, 10), 3));
  EXPECT_TRUE(IsColor(ColorAt(122 + 14 * 7, 10), 1));
}

TEST_F(PenPickerTest, TheChosenColourIsSunken) {
  const auto same = [](platform::ColorEntry a, platform::ColorEntry b) {
    return a.red == b.red && a.green == b.green && a.blue == b.blue;
  };
  // The second ring of an edge tells sunken from etched.
  const platform::ColorEntry chosen = ColorAt(3, 8);
  EXPECT_FALSE(same(chosen, ColorAt(17, 8)));
  Pick(4, 2);
  EXPECT_TRUE(same(ColorAt(3 + 14 * 4, 8 + 14 * 2), chosen));
  EXPECT_TRUE(same(ColorAt(3, 8), ColorAt(17, 8)));
}

TEST_F(PenPickerTest, TheEdgeOfTheWindowIsRaisedOnAllItsSides) {
  const auto red = [this](int32_t x, int32_t y) { return int32_t{ColorAt(x, y).red}; };
  // Two rings, light at the left and top and dark at the right and bottom.
  for (const int32_t ring : {0, 1}) {
    EXPECT_EQ(red(ring, 31), red(115, ring)) << ring;
    EXPECT_EQ(red(229 - ring, 31), red(115, 61 - ring)) << ring;
    EXPECT_GT(red(ring, 31), red(228, 31)) << ring;
    EXPECT_LT(red(229 - ring, 31), red(0, 31)) << ring;
  }
}

// The squares beside and below a square cover its right and bottom edges, but for the last one.
TEST_F(PenPickerTest, ASquareThatIsNotChosenIsEtchedOnAllItsSides) {
  const auto red = [this](int32_t x, int32_t y) { return int32_t{ColorAt(x, y).red}; };
  constexpr int32_t left = 2 + 14 * 15;
  constexpr int32_t top = 2 + 14 * 3;
  const int32_t dark = red(left, top + 8);
  const int32_t light = red(left + 1, top + 8);
  EXPECT_LT(dark, light);
  EXPECT_EQ(red(left + 8, top), dark);
  EXPECT_EQ(red(left + 8, top + 1), light);
  EXPECT_EQ(red(left + 14, top + 8), dark);
  EXPECT_EQ(red(left + 15, top + 8), light);
  EXPECT_EQ(red(left + 8, top + 14), dark);
  EXPECT_EQ(red(left + 8, top + 15), light);
}

TEST_F(PenPickerTest, PrintsItselfLikeItPaints) {
  ColorAt(0, 0);
  const std::vector<platform::ColorEntry> painted = window->pixels;
  window->pixels.assign(painted.size(), platform::ColorEntry{});
  platform::InvalidateClient(window, false);
  platform::headless::PaintInvalid(window);
  EXPECT_EQ(Differences(window->pixels, painted), 0u);
}

TEST_F(PenPickerTest, NeverBecomesActive) {
  EXPECT_EQ(platform::Send(window, platform::kMessageMouseActivate, 0, 0), 3);
}

TEST_F(PenPickerTest, WithoutAWindowItOnlyKeepsThePen) {
  PenPicker picker;
  PenSpec other;
  EXPECT_EQ(picker.pen, &currentPen);
  picker.Show(5, 5, &other);
  picker.Hide();
  EXPECT_EQ(picker.pen, &other);
}

}  // namespace
}  // namespace sorvel
