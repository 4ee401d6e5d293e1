#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

#include "resources/ids.h"
#include "shell/shell_fixture.h"

namespace sorvel {
namespace {

using testshell::ShellTest;

class CutWindowMouse : public ShellTest {
 protected:
  // Client coordinates of the active cut.
  void Mouse(uint32_t message, int32_t x, int32_t y, uint32_t keys = 0) {
    platform::Send(Cut()->window, message, keys, platform::PackPoint({x, y}));
  }

  // The cursor that the cut window chooses there. `code` is what the mouse is over, 1 for the client area.
  platform::CursorShape CursorAt(int32_t x, int32_t y, intptr_t code = 1) {
    platform::SetCursorShape(platform::CursorShape::kWait);
    platform::headless::SetCursorPlace(platform::ClientToScreen(Cut()->window, {x, y}));
    platform::Send(Cut()->window, platform::kMessageSetCursor, 0, code);
    return platform::headless::CurrentCursor();
  }

  static constexpr uint32_t kPanKeys = platform::kKeyShift | platform::kKeyControl;
};

using enum platform::CursorShape;

TEST_F(CutWindowMouse, CursorIsTheCrossOnTheCanvasAndTheArrowBesideIt) {
  platform::headless::SetClientSize(60, 50);
  MakeCut(40, 30);
  EXPECT_EQ(CursorAt(10, 10), kCross);
  EXPECT_EQ(CursorAt(49, 39), kCross);
  EXPECT_EQ(CursorAt(9, 10), kArrow);
  EXPECT_EQ(CursorAt(10, 9), kArrow);
  EXPECT_EQ(CursorAt(50, 39), kArrow);
  EXPECT_EQ(CursorAt(49, 40), kArrow);
}

TEST_F(CutWindowMouse, CursorGoesByTheGrid) {
  platform::headless::SetClientSize(60, 50);
  MakeCut(40, 30);
  gridWidth = 8;
  // Column 36 snaps to 32, and column 37 to 40, which lies beside the canvas; column -1 snaps to 0.
  EXPECT_EQ(CursorAt(46, 20), kCross);
  EXPECT_EQ(CursorAt(47, 20), kArrow);
  EXPECT_EQ(CursorAt(9, 20), kCross);
}

TEST_F(CutWindowMouse, CursorIsLeftAloneOverOtherPartsOfTheWindow) {
  MakeCut(40, 30);
  EXPECT_EQ(CursorAt(320, 240, 2), kWait);
  EXPECT_EQ(CursorAt(320, 240, 6), kWait);
}

TEST_F(CutWindowMouse, HeldRightButtonOpensTheToolsAtTheCursor) {
  MakeCut(40, 30);
  const int32_t before = platform::headless::OpenedPopup().count;
  Mouse(platform::kMessageRightDown, 300, 200);
  ASSERT_EQ(Cut()->window->timers.size(), 1u);
  EXPECT_EQ(Cut()->window->timers[0].id, 1u);
  EXPECT_EQ(Cut()->window->timers[0].milliseconds, 500u);
  Mouse(platform::kMessageMouseMove, 310, 210);
  const Point place = platform::ClientToScreen(Cut()->window, {310, 210});
  platform::headless::SetCursorPlace(place);
  EXPECT_TRUE(platform::headless::RunWindowTimers());
  const platform::headless::PopupRecord& popup = platform::headless::OpenedPopup();
  EXPECT_EQ(popup.count, before + 1);
  EXPECT_EQ(popup.menu, platform::Submenu(frame->toolPopupMenu, 0));
  EXPECT_EQ(popup.place, place);
  EXPECT_EQ(popup.owner, frame->frameWindow);
  EXPECT_FALSE(platform::headless::RunWindowTimers());
  Mouse(platform::kMessageRightUp, 310, 210);
}

TEST_F(CutWindowMouse, ShorterRightClickOpensNoTools) {
  MakeCut(40, 30);
  Mouse(platform::kMessageRightDown, 300, 200);
  Mouse(platform::kMessageRightUp, 300, 200);
  EXPECT_FALSE(platform::headless::RunWindowTimers());
}

TEST_F(CutWindowMouse, ZoomToolZoomsOutOnThePressWhetherOrNotTheToolsOpen) {
  MakeCut(40, 30);
  Command(kToolZoom);
  Mouse(platform::kMessageRightDown, 300, 200);
  EXPECT_EQ(Cut()->zoomDenominator, 2);
  EXPECT_TRUE(platform::headless::RunWindowTimers());
  EXPECT_EQ(Cut()->zoomDenominator, 2);
  Mouse(platform::kMessageRightUp, 300, 200);
  EXPECT_EQ(Cut()->zoomDenominator, 2);
}

TEST_F(CutWindowMouse, HeldRightButtonInAnInactiveCutStartsTheTimer) {
  CutWindow* first = MakeCut(40, 30);
  MakeCut(40, 30);
  platform::Send(first->window, platform::kMessageRightDown, 0, platform::PackPoint({300, 200}));
  EXPECT_EQ(first->window->timers.size(), 1u);
  EXPECT_EQ(Cut(), first);
}

TEST_F(CutWindowMouse, PanGoesOnInAWindowThatIsActivatedMeanwhile) {
  platform::headless::SetClientSize(40, 30);
  CutWindow* first = MakeCut(100, 80);
  MakeCut(100, 80);
  Mouse(platform::kMessageMouseMove, 10, 10, kPanKeys);
  platform::ActivateMdiChild(frame->mdiClient, first->window);
  Mouse(platform::kMessageMouseMove, 5, 4, kPanKeys);
  EXPECT_EQ(first->scrollX, 5);
  EXPECT_EQ(first->scrollY, 6);
  Mouse(platform::kMessageMouseMove, 5, 4);
}

TEST_F(CutWindowMouse, PanGoesOnInTheNextWindowWhenItsOwnIsClosed) {
  platform::headless::SetClientSize(40, 30);
  CutWindow* first = MakeCut(100, 80);
  CutWindow* second = MakeCut(100, 80);
  Mouse(platform::kMessageMouseMove, 10, 10, kPanKeys);
  second->stateFlags &= ~static_cast<uint32_t>(kModified);
  platform::DestroyMdiChild(frame->mdiClient, second->window);
  ASSERT_EQ(Cut(), first);
  Mouse(platform::kMessageMouseMove, 5, 4, kPanKeys);
  EXPECT_EQ(first->scrollX, 5);
  EXPECT_EQ(first->scrollY, 6);
  Mouse(platform::kMessageMouseMove, 5, 4);
}

TEST_F(CutWindowMouse, AShortPanLeavesNoStalePixels) {
  struct {
    int32_t zoom;
    int32_t width;
    int32_t height;
  } const windows[] = {{1, 40, 30}, {3, 40, 30}, {3, 39, 31}};  // the last two show a part of a column or row
  for (const auto& shape : windows) {
    platform::headless::SetClientSize(shape.width, shape.height);
    CutWindow* cut = MakeCut(100, 80);
    cut->CurrentCell()->FillBox(0, 0, 100, 80, {0, 5, 2, 3}, 0, nullptr);
    cut->zoomNumerator = shape.zoom;
    cut->UpdateScrollBars(shape.width, shape.height);
    cut->RepaintAll();
    platform::headless::PaintInvalid(cut->window);
    const std::vector<platform::ColorEntry>& screen = cut->window->pixels;
    for (const int32_t step : {-shape.zoom, -shape.zoom, shape.zoom}) {
      Mouse(platform::kMessageMouseMove, 20, 20, kPanKeys);
      Mouse(platform::kMessageMouseMove, 20 + step, 20 + step, kPanKeys);
      const std::vector<platform::ColorEntry> shown = screen;
      platform::InvalidateClient(cut->window, false);
      platform::headless::PaintInvalid(cut->window);
      EXPECT_EQ(std::memcmp(shown.data(), screen.data(), screen.size() * sizeof(screen[0])), 0)
          << shape.zoom << " " << step;
      Mouse(platform::kMessageMouseMove, 20, 20);
    }
    EXPECT_EQ(cut->scrollX, shape.zoom);
  }
}

TEST_F(CutWindowMouse, APanThatDoesNotScrollLeavesAWaitingPaint) {
  platform::headless::SetClientSize(60, 50);
  const CutWindow* cut = MakeCut(40, 30);
  Mouse(platform::kMessageMouseMove, 10, 10, kPanKeys);
  platform::InvalidateClient(cut->window, false);
  Mouse(platform::kMessageMouseMove, 5, 4, kPanKeys);
  EXPECT_FALSE(cut->window->invalid.IsEmpty());
  Mouse(platform::kMessageMouseMove, 5, 4);
}

TEST_F(CutWindowMouse, AStartOfTheProgramEndsAPan) {
  platform::headless::SetClientSize(40, 30);
  MakeCut(100, 80);
  Mouse(platform::kMessageMouseMove, 10, 10, kPanKeys);
  TearDown();
  SetUp();
  platform::headless::SetClientSize(40, 30);
  CutWindow* cut = MakeCut(100, 80);
  Mouse(platform::kMessageMouseMove, 5, 4, kPanKeys);
  EXPECT_EQ(cut->scrollX, 0);
  EXPECT_EQ(cut->scrollY, 0);
  Mouse(platform::kMessageMouseMove, 5, 4);
}

}  // namespace
}  // namespace sorvel
