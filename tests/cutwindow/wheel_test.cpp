#include <cstdint>
#include <utility>

#include "resources/ids.h"
#include "shell/shell_fixture.h"

namespace sorvel {
namespace {

using testshell::ShellTest;
using Place = std::pair<int32_t, int32_t>;

class Wheel : public ShellTest {
 protected:
  // A window that shows a sixth of the canvas.
  void SetUp() override {
    ShellTest::SetUp();
    platform::headless::SetClientSize(100, 80);
    MakeCut(600, 480);
    platform::headless::PaintInvalid(Cut()->window);
  }
  void Mouse(uint32_t message, int32_t x, int32_t y, uint32_t keys = 0) {
    platform::headless::SetCursorPlace(platform::ClientToScreen(Cut()->window, {x, y}));
    platform::Send(Cut()->window, message, keys, platform::PackPoint({x, y}));
  }
  void Turn(int32_t turn, uint32_t keys = 0, uint32_t message = platform::kMessageWheel, Point place = {50, 40}) {
    platform::Send(Cut()->window, message, platform::JoinHalves(static_cast<int32_t>(keys), turn),
                   platform::PackPoint(platform::ClientToScreen(Cut()->window, place)));
    platform::headless::PaintInvalid(Cut()->window);
  }
  Place Scroll() { return {Cut()->scrollX, Cut()->scrollY}; }
  Point Canvas(Point place) {
    Cut()->WindowToCutRaw(&place, 1);
    return place;
  }
  // Whether the window shows the view as a repaint of everything does.
  bool ShowsView() {
    const auto shown = Cut()->window->pixels;
    platform::InvalidateClient(Cut()->window, true);
    platform::headless::PaintInvalid(Cut()->window);
    return std::equal(shown.begin(), shown.end(), Cut()->window->pixels.begin(), [](const auto& a, const auto& b) {
      return a.red == b.red && a.green == b.green && a.blue == b.blue;
    });
  }

  static constexpr int32_t kNotch = platform::kWheelNotch;
};

TEST_F(Wheel, ANotchScrollsThreeLineStepsWithinTheLimitsOfADrag) {
  Turn(-kNotch);
  EXPECT_EQ(Scroll(), Place(0, 12));
  Turn(-2 * kNotch, platform::kKeyShift);
  EXPECT_EQ(Scroll(), Place(24, 12));
  Turn(kNotch, platform::kKeyShift);
  EXPECT_EQ(Scroll(), Place(12, 12));
  EXPECT_EQ(platform::ReadScrollBar(Cut()->window, platform::ScrollBar::kHorizontal).position, 12);
  Turn(100 * kNotch);
  EXPECT_EQ(Scroll(), Place(12, 0));
  Turn(-100 * kNotch);
  Turn(-100 * kNotch, platform::kKeyShift);
  EXPECT_EQ(Scroll(), Place(600 - 100 - 1, 480 - 80 - 1));
  EXPECT_TRUE(ShowsView());
}

TEST_F(Wheel, ASecondWheelScrollsSideways) {
  Turn(kNotch, 0, platform::kMessageSidewaysWheel);
  EXPECT_EQ(Scroll(), Place(12, 0));
  Turn(-kNotch, 0, platform::kMessageSidewaysWheel);
  EXPECT_EQ(Scroll(), Place(0, 0));
}

TEST_F(Wheel, APictureThatFitsStaysWhereItIs) {
  platform::headless::SetClientSize(700, 500);
  const Place before = Scroll();
  Turn(-kNotch);
  Turn(-kNotch, platform::kKeyShift);
  EXPECT_EQ(Scroll(), before);
}

TEST_F(Wheel, SmallTurnsAddUp) {
  for (int i = 0; i < 7; ++i) Turn(-5);
  EXPECT_EQ(Scroll(), Place(0, 0));
  Turn(-5);
  EXPECT_EQ(Scroll(), Place(0, 4));
  for (int i = 0; i < 16; ++i) Turn(-5);
  EXPECT_EQ(Scroll(), Place(0, 12));
  // A turn the other way, or to another end, begins anew.
  Turn(-39);
  Turn(1);
  Turn(-39);
  Turn(-39, platform::kKeyShift);
  Turn(-39);
  EXPECT_EQ(Scroll(), Place(0, 12));
  for (int i = 0; i < 3; ++i) Turn(39, platform::kKeyControl);
  EXPECT_EQ(Cut()->zoomNumerator, 1);
  Turn(3, platform::kKeyControl);
  EXPECT_EQ(Cut()->zoomNumerator, 2);
}

TEST_F(Wheel, WithCtrlItZoomsAndThePlaceUnderTheMouseStays) {
  Turn(-10 * kNotch);
  Turn(-10 * kNotch, platform::kKeyShift);
  for (const Point mouse : {Point{20, 70}, Point{90, 5}}) {
    const Point place = Canvas(mouse);
    Turn(kNotch, platform::kKeyControl, platform::kMessageWheel, mouse);
    EXPECT_EQ(Cut()->zoomNumerator, 2);
    EXPECT_EQ(Canvas(mouse), place);
    Turn(2 * kNotch, platform::kKeyControl, platform::kMessageWheel, mouse);
    EXPECT_EQ(Cut()->zoomNumerator, 4);
    EXPECT_EQ(Canvas(mouse), place);
    EXPECT_TRUE(ShowsView());
    Turn(-4 * kNotch, platform::kKeyControl, platform::kMessageWheel, mouse);
    EXPECT_EQ(Cut()->zoomNumerator, 1);
    EXPECT_EQ(Cut()->zoomDenominator, 2);
    // Two canvas pixels are one of the window.
    EXPECT_EQ(Canvas(mouse).x / 2, place.x / 2);
    EXPECT_EQ(Canvas(mouse).y / 2, place.y / 2);
    Turn(kNotch, platform::kKeyControl, platform::kMessageWheel, mouse);
    EXPECT_EQ(Cut()->zoomDenominator, 1);
  }
}

TEST_F(Wheel, ItComesThroughThePanels) {
  platform::Send(frame->frameWindow, platform::kMessageWheel, platform::JoinHalves(0, -kNotch), 0);
  EXPECT_EQ(Scroll(), Place(0, 12));
  CloseCuts();
  platform::Send(frame->frameWindow, platform::kMessageWheel, platform::JoinHalves(0, -kNotch), 0);
}

TEST_F(Wheel, AStrokeGoesOnAfterATurn) {
  Mouse(platform::kMessageLeftDown, 10, 10, platform::kKeyLeftButton);
  Turn(-kNotch);
  Mouse(platform::kMessageMouseMove, 20, 10, platform::kKeyLeftButton);
  Mouse(platform::kMessageLeftUp, 20, 10);
  EXPECT_EQ(CurrentCell()->GetPixel(10, 10), kLineBlack);
  EXPECT_EQ(CurrentCell()->GetPixel(20, 22), kLineBlack);
}

TEST_F(Wheel, TheMiddleButtonDragsTheCanvasAsShiftAndCtrlDo) {
  constexpr uint32_t held = platform::kKeyMiddleButton;
  constexpr uint32_t keys = platform::kKeyShift | platform::kKeyControl;
  Mouse(platform::kMessageMouseMove, 90, 70, keys);
  for (const Point place : {Point{70, 60}, Point{10, 50}, Point{-200, 20}}) {
    Mouse(platform::kMessageMouseMove, place.x, place.y, keys);
  }
  Mouse(platform::kMessageMouseMove, 0, 0);
  const Place dragged = Scroll();
  EXPECT_EQ(dragged, Place(290, 50));
  Turn(100 * kNotch);
  Turn(100 * kNotch, platform::kKeyShift);

  ClearMarks();
  platform::SetFocusTo(frame->commentEdit);
  Mouse(platform::kMessageMiddleDown, 90, 70, held);
  EXPECT_EQ(platform::FocusedWindow(), Cut()->window);
  EXPECT_EQ(platform::CapturingWindow(), Cut()->window);
  EXPECT_TRUE(pulseSuppressed);
  for (const Point place : {Point{70, 60}, Point{10, 50}, Point{-200, 20}}) {
    Mouse(platform::kMessageMouseMove, place.x, place.y, held);
  }
  EXPECT_EQ(Scroll(), dragged);
  Mouse(platform::kMessageMiddleUp, -200, 20);
  EXPECT_EQ(platform::CapturingWindow(), nullptr);
  EXPECT_FALSE(pulseSuppressed);
  Mouse(platform::kMessageMouseMove, 0, 0);
  EXPECT_EQ(Scroll(), dragged);
  // Nothing was drawn.
  EXPECT_FALSE(Cut()->Has(kModified));
}

TEST_F(Wheel, AnotherButtonEndsTheDrag) {
  constexpr uint32_t held = platform::kKeyMiddleButton;
  Mouse(platform::kMessageMiddleDown, 90, 70, held);
  Mouse(platform::kMessageMouseMove, 80, 70, held);
  EXPECT_EQ(Scroll(), Place(10, 0));
  Mouse(platform::kMessageRightDown, 80, 70, held | platform::kKeyRightButton);
  EXPECT_EQ(platform::CapturingWindow(), nullptr);
  Mouse(platform::kMessageMouseMove, 40, 70, held);
  EXPECT_EQ(Scroll(), Place(10, 0));
  Mouse(platform::kMessageRightUp, 40, 70, held);
  Mouse(platform::kMessageMiddleUp, 40, 70);
}

TEST_F(Wheel, AButtonReleasedElsewhereEndsTheDragWithTheNextMove) {
  Mouse(platform::kMessageMiddleDown, 90, 70, platform::kKeyMiddleButton);
  Mouse(platform::kMessageMouseMove, 80, 70);
  EXPECT_EQ(Scroll(), Place(0, 0));
  EXPECT_FALSE(pulseSuppressed);
}

}  // namespace
}  // namespace sorvel
