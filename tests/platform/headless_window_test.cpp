#include <gtest/gtest.h>

#include <climits>

#include "platform/controls.h"
#include "platform_fixture.h"

namespace sorvel::platform {
namespace {

class HeadlessWindow : public HeadlessTest {
 protected:
  // A window whose object writes to the log, in which only what follows then stands.
  WindowHandle Make(const char* title = "") {
    const WindowHandle window = MakeCaptionWindow("Class", title, nullptr, &object);
    log.clear();
    return window;
  }

  Log log;
  Recorder object{"a", &log};
  Frame frame;
};

// A frame with a first child window.
class HeadlessMdi : public HeadlessTest {
 protected:
  Frame frame;
  Child a{&frame, "a"};
  Log first = frame.TakeLog();
};

class HeadlessFocus : public HeadlessTest {
 protected:
  Frame frame;
  WindowHandle edit = MakeEdit(frame.window, 1, false);
  WindowHandle second = MakeEdit(frame.window, 2, false);
};

TEST_F(HeadlessWindow, ObjectKnowsItsWindowWhenItIsCreated) {
  WindowHandle seen = nullptr;
  object.onMessage = [&](uint32_t) { seen = object.window; };
  const WindowHandle window = MakeCaptionWindow("Class", "Title", nullptr, &object);
  EXPECT_EQ(log, Log({"a create"}));
  EXPECT_EQ(seen, window);
  EXPECT_EQ(ObjectOf(window), &object);
  EXPECT_FALSE(IsShown(window));
  EXPECT_EQ(window->text, "Title");
}

TEST_F(HeadlessWindow, ObjectCanRefuseItsWindow) {
  object.createAnswer = -1;
  EXPECT_EQ(MakeMdiChild(frame.client, "Class", "Title", &object), nullptr);
  EXPECT_EQ(log, Log({"a create"}));
  EXPECT_TRUE(frame.client->children.empty());
}

TEST_F(HeadlessWindow, ReadingTextCutsToTheBufferAndGivesTheLength) {
  const WindowHandle window = MakeCaptionWindow("Class", "abcdef", nullptr, nullptr);
  char text[4] = "zzz";
  EXPECT_EQ(ReadText(window, text, sizeof(text)), 3u);
  EXPECT_STREQ(text, "abc");
  EXPECT_EQ(TextLength(window), 6u);
  SetText(window, "");
  EXPECT_EQ(ReadText(window, text, sizeof(text)), 0u);
  EXPECT_STREQ(text, "");
}

TEST_F(HeadlessWindow, OperationsOnAWindowThatIsGoneDoNothing) {
  const WindowHandle window = MakeCaptionWindow("Class", "Title", nullptr, nullptr);
  DestroyWindow(window);
  for (const WindowHandle gone : {window, static_cast<WindowHandle>(nullptr)}) {
    char text[8] = "x";
    SetText(gone, "text");
    EXPECT_EQ(ReadText(gone, text, sizeof(text)), 0u);
    EXPECT_EQ(ObjectOf(gone), nullptr);
    EXPECT_EQ(Send(gone, kMessageUser, 0, 0), 0);
    EXPECT_TRUE(ClientBounds(gone).IsEmpty());
    EXPECT_EQ(BeginDrawing(gone), nullptr);
    FillBlack(BeginDrawing(gone), 0, 0, 4, 4);
    SetFocusTo(gone);
    Show(gone);
    DestroyWindow(gone);
    EXPECT_FALSE(IsShown(gone));
  }
  EXPECT_EQ(FocusedWindow(), nullptr);
}

TEST_F(HeadlessWindow, ClientPointsGoToTheScreenAndBack) {
  Child child(&frame, "a");
  MoveWindow(frame.window, 10, 20, 800, 600, true);
  MoveWindow(frame.client, 160, 30, 640, 500, true);
  EXPECT_EQ(ClientToScreen(child.window, {3, 4}), (Point{173, 54}));
  EXPECT_EQ(ScreenToClient(child.window, {173, 54}), (Point{3, 4}));
  const WindowHandle popup = MakePopupWindow("Popup", frame.window, 230, 62, nullptr);
  MoveWindow(popup, 100, 200, 230, 62, true);
  EXPECT_EQ(ScreenBounds(popup), (Bounds{100, 200, 330, 262}));
  EXPECT_EQ(ClientToScreen(popup, {1, 1}), (Point{101, 201}));
  EXPECT_EQ(ScreenSize(), (Point{1280, 1024}));
}

TEST_F(HeadlessWindow, PlacesAtTheEndOfTheRangeWrapWithoutHarm) {
  const WindowHandle popup = MakePopupWindow("Popup", nullptr, 10, 10, nullptr);
  MoveWindow(popup, INT_MAX, INT_MIN, 10, 10, true);
  EXPECT_EQ(ClientToScreen(popup, {1, -1}), (Point{INT_MIN, INT_MAX}));
}

TEST_F(HeadlessWindow, ANewSizeIsToldOnceAndTheClientAreaIsBlack) {
  const WindowHandle window = Make();
  SetClientSize(window, 3, 2);
  SetClientSize(window, 3, 2);
  MoveWindow(window, 5, 5, 3, 2, true);
  EXPECT_EQ(log, Log({"a size 3 2"}));
  ASSERT_EQ(window->pixels.size(), 6u);
  EXPECT_EQ(window->pixels[5].green, 0);
  SetClientSize(window, -1, 7);
  EXPECT_EQ(window->width, 0);
  SetClientSize(window, INT_MAX, INT_MAX);
  EXPECT_LE(window->pixels.size(), size_t{1} << 24);
}

TEST_F(HeadlessWindow, ClosingDestroysByDefault) {
  const WindowHandle window = Make();
  Send(window, kMessageClose, 0, 0);
  EXPECT_EQ(log.back(), "a destroy");
  EXPECT_EQ(ObjectOf(window), nullptr);
}

TEST_F(HeadlessWindow, ClosingTheFrameEndsOwnedWindowsThenTheFrameThenItsChildren) {
  Child first(&frame, "a");
  Child second(&frame, "b");
  Recorder popupObject("popup", &frame.log);
  MakePopupWindow("Popup", frame.window, 10, 10, &popupObject);
  frame.log.clear();
  Send(frame.window, kMessageClose, 0, 0);
  EXPECT_EQ(frame.TakeLog(), Log({"frame 16", "popup destroy", "frame destroy", "a destroy", "b destroy"}));
  EXPECT_TRUE(headless::AllWindows().empty());
}

TEST_F(HeadlessWindow, QuittingIsRemembered) {
  EXPECT_FALSE(headless::HasQuit());
  EXPECT_EQ(RunLoop(nullptr, nullptr, 105), 0);
  QuitLoop(3);
  EXPECT_TRUE(headless::HasQuit());
  EXPECT_EQ(headless::QuitCode(), 3);
  EXPECT_EQ(RunLoop(nullptr, nullptr, 105), 3);
}

TEST_F(HeadlessWindow, ShowingTheFrameMakesItActiveAndTellsItsSize) {
  ShowAs(frame.window, 0);
  EXPECT_TRUE(frame.TakeLog().empty());
  ShowAs(frame.window, 5);
  EXPECT_TRUE(IsShown(frame.window));
  EXPECT_EQ(FocusedWindow(), frame.window);
  EXPECT_EQ(frame.TakeLog(), Log({"frame 6", "frame focus", "frame size 1024 768"}));
  ActivateWindow(frame.window);
  EXPECT_TRUE(frame.TakeLog().empty());
}

TEST_F(HeadlessWindow, AControlOfAHiddenWindowIsntShown) {
  const WindowHandle edit = MakeEdit(frame.window, 1, false);
  EXPECT_FALSE(IsShown(edit));
  Show(frame.window);
  EXPECT_TRUE(IsShown(edit));
  Hide(edit);
  EXPECT_FALSE(IsShown(edit));
}

TEST_F(HeadlessWindow, WindowTimersComeDueWhenAsked) {
  const WindowHandle window = Make();
  EXPECT_FALSE(headless::RunWindowTimers());
  SetWindowTimer(window, 1, 500);
  SetWindowTimer(window, 1, 250);
  ASSERT_EQ(window->timers.size(), 1u);
  EXPECT_EQ(window->timers[0].milliseconds, 250u);
  object.onMessage = [&](uint32_t) { KillWindowTimer(window, 1); };
  EXPECT_TRUE(headless::RunWindowTimers());
  EXPECT_EQ(log, Log({"a 275"}));
  EXPECT_FALSE(headless::RunWindowTimers());
}

TEST_F(HeadlessWindow, MouseMovesOfOneWindowLeaveTheQueueTogether) {
  const WindowHandle first = MakeCaptionWindow("Class", "", nullptr, nullptr);
  const WindowHandle second = MakeCaptionWindow("Class", "", nullptr, nullptr);
  Point place = {9, 9};
  EXPECT_FALSE(TakeMouseMoves(first, &place));
  EXPECT_EQ(place, (Point{9, 9}));
  headless::QueueMouseMove(first, {1, 2});
  headless::QueueMouseMove(second, {5, 6});
  headless::QueueMouseMove(first, {3, 4});
  EXPECT_TRUE(TakeMouseMoves(first, &place));
  EXPECT_EQ(place, (Point{3, 4}));
  EXPECT_FALSE(TakeMouseMoves(first, &place));
  EXPECT_TRUE(TakeMouseMoves(second, &place));
  EXPECT_EQ(place, (Point{5, 6}));
}

TEST_F(HeadlessWindow, TheCaptureEndsWithItsWindow) {
  const WindowHandle window = MakeCaptionWindow("Class", "", nullptr, nullptr);
  CaptureMouse(window);
  EXPECT_EQ(CapturingWindow(), window);
  ReleaseMouse();
  EXPECT_EQ(CapturingWindow(), nullptr);
  CaptureMouse(window);
  DestroyWindow(window);
  EXPECT_EQ(CapturingWindow(), nullptr);
}

TEST_F(HeadlessWindow, TheCursorKeepsItsPlaceAndShape) {
  headless::SetCursorPlace({7, 8});
  EXPECT_EQ(CursorPlace(), (Point{7, 8}));
  EXPECT_EQ(SetCursorShape(CursorShape::kWait), CursorShape::kArrow);
  EXPECT_EQ(headless::CurrentCursor(), CursorShape::kWait);
  RegisterWindowClass("Wide", 0, CursorShape::kSizeWestEast, nullptr);
  const WindowHandle window = MakeCaptionWindow("Wide", "", nullptr, nullptr);
  Send(window, kMessageSetCursor, 0, 1);
  EXPECT_EQ(headless::CurrentCursor(), CursorShape::kSizeWestEast);
}

struct DropTaker final : WindowObject {
  intptr_t WindowProc(uint32_t message, uintptr_t first, intptr_t second) override {
    if (message != kMessageDropFiles) return DefaultHandling(window, message, first, second);
    taken = TakeDroppedFile(first, path, capacity);
    takenAgain = TakeDroppedFile(first, path, capacity);
    return 0;
  }
  char path[16] = "";
  size_t capacity = sizeof(path);
  bool taken = false;
  bool takenAgain = false;
};

TEST_F(HeadlessWindow, OfADropOnlyTheFirstFileIsTaken) {
  DropTaker taker;
  const WindowHandle window = MakeCaptionWindow("Class", "", nullptr, &taker);
  headless::DropFiles(window, {"/a.cut", "/b.cut"});
  EXPECT_TRUE(taker.taken);
  EXPECT_FALSE(taker.takenAgain);
  EXPECT_STREQ(taker.path, "/a.cut");
  taker.capacity = 4;
  headless::DropFiles(window, {"/a.cut"});
  EXPECT_FALSE(taker.taken);
}

TEST_F(HeadlessWindow, AScrollBarStopsItsThumbOnePageBeforeTheEnd) {
  const WindowHandle window = MakeCaptionWindow("Class", "", nullptr, nullptr);
  SetScrollBar(window, ScrollBar::kVertical, {100, 40, 90});
  EXPECT_EQ(ReadScrollBar(window, ScrollBar::kVertical).position, 61);
  SetScrollPosition(window, ScrollBar::kVertical, -5);
  EXPECT_EQ(ReadScrollBar(window, ScrollBar::kVertical).position, 0);
  EXPECT_EQ(ReadScrollBar(window, ScrollBar::kVertical).maximum, 100);
  EXPECT_EQ(ReadScrollBar(window, ScrollBar::kHorizontal).maximum, 0);
}

TEST_F(HeadlessWindow, ResetForgetsEverything) {
  Child child(&frame, "a");
  headless::SetClientSize(100, 50);
  headless::QueueYesNo(true);
  QuitLoop(1);
  OpenInputMethod(frame.window, true);
  EXPECT_TRUE(headless::IsInputMethodOn());
  headless::Reset();
  EXPECT_TRUE(headless::AllWindows().empty());
  EXPECT_EQ(headless::QueuedAnswers(), 0u);
  EXPECT_FALSE(headless::HasQuit());
  EXPECT_FALSE(headless::IsInputMethodOn());
  EXPECT_EQ(FocusedWindow(), nullptr);
  Frame other;
  Child fresh(&other, "b");
  EXPECT_EQ(fresh.window->width, 640);
  EXPECT_EQ(fresh.window->height, 480);
}

// Child windows.

TEST_F(HeadlessMdi, TheFirstChildIsCreatedSizedActivatedAndGetsTheFocus) {
  EXPECT_EQ(first, Log({"a create", "a size 640 480", "a activate none a", "a focus"}));
  EXPECT_EQ(ActiveMdiChild(frame.client), a.window);
  EXPECT_EQ(FocusedWindow(), a.window);
  EXPECT_EQ(frame.client->children, std::vector<WindowHandle>({a.window}));
}

TEST_F(HeadlessMdi, TheOldChildLosesBeforeTheNewOneGainsAndTheFocusComesLast) {
  const WindowHandle edit = MakeEdit(frame.window, 5, false);
  SetFocusTo(edit);
  frame.log.clear();
  Child b(&frame, "b");
  EXPECT_EQ(frame.TakeLog(),
            Log({"b create", "b size 640 480", "a activate a b", "b activate a b", "frame command 5 512", "b focus"}));
}

TEST_F(HeadlessMdi, TheLoserIsTheActiveOneUntilItHasAnswered) {
  std::vector<WindowHandle> active;
  a.object.onMessage = [&](uint32_t message) {
    if (message == kMessageMdiActivate) active.push_back(ActiveMdiChild(frame.client));
  };
  Child b(&frame, "b");
  ActivateMdiChild(frame.client, a.window);
  EXPECT_EQ(active, std::vector<WindowHandle>({a.window, a.window}));
}

TEST_F(HeadlessMdi, ActivatingTheActiveChildTellsNothing) {
  ActivateMdiChild(frame.client, a.window);
  EXPECT_TRUE(frame.log.empty());
}

TEST_F(HeadlessMdi, AClosedChildLosesThenEndsAndTheOneBeforeItGains) {
  Child b(&frame, "b");
  Child c(&frame, "c");
  ActivateMdiChild(frame.client, a.window);
  frame.log.clear();
  Send(a.window, kMessageClose, 0, 0);
  EXPECT_EQ(frame.TakeLog(), Log({"a 16", "a activate a c", "a destroy", "c activate none c", "c focus"}));
  EXPECT_EQ(ActiveMdiChild(frame.client), c.window);
  EXPECT_EQ(FocusedWindow(), c.window);
  DestroyMdiChild(frame.client, c.window);
  EXPECT_EQ(ActiveMdiChild(frame.client), b.window);
}

TEST_F(HeadlessMdi, ClosingTheLastChildTellsItsLossOnlyAndTheFrameGetsTheFocus) {
  DestroyMdiChild(frame.client, a.window);
  EXPECT_EQ(frame.TakeLog(), Log({"a activate a none", "a destroy", "frame focus"}));
  EXPECT_EQ(ActiveMdiChild(frame.client), nullptr);
  EXPECT_EQ(FocusedWindow(), frame.window);
}

TEST_F(HeadlessMdi, ClosingAChildThatIsntActiveTellsItsEndOnly) {
  Child b(&frame, "b");
  frame.log.clear();
  DestroyMdiChild(frame.client, a.window);
  EXPECT_EQ(frame.TakeLog(), Log({"a destroy"}));
  EXPECT_EQ(ActiveMdiChild(frame.client), b.window);
  EXPECT_EQ(FocusedWindow(), b.window);
}

// An object that ends with its window.
struct SelfEnding final : WindowObject {
  explicit SelfEnding(bool* isGone) : gone(isGone) {}
  ~SelfEnding() { *gone = true; }
  intptr_t WindowProc(uint32_t message, uintptr_t first, intptr_t second) override {
    const WindowHandle own = window;
    if (message == kMessageMdiActivate) {
      EXPECT_EQ(ObjectOf(own), this);
      EXPECT_EQ(ActiveMdiChild(own->parent), own);
    }
    if (message == kMessageDestroy) {
      EXPECT_EQ(ActiveMdiChild(own->parent), nullptr);
      ForgetObject(own);
      delete this;
      EXPECT_EQ(ObjectOf(own), nullptr);
    }
    return DefaultHandling(own, message, first, second);
  }
  bool* gone;
};

TEST_F(HeadlessMdi, AnObjectCanEndWithItsWindow) {
  bool gone = false;
  const WindowHandle child = MakeMdiChild(frame.client, "Child", "", new SelfEnding(&gone));
  Send(child, kMessageClose, 0, 0);
  EXPECT_TRUE(gone);
  EXPECT_EQ(frame.client->children, std::vector<WindowHandle>({a.window}));
  gone = false;
  MakeMdiChild(frame.client, "Child", "", new SelfEnding(&gone));
  DestroyWindow(frame.window);
  EXPECT_TRUE(gone);
}

TEST_F(HeadlessMdi, EachChildWhoseClientSizeChangesIsToldOnce) {
  Child b(&frame, "b");
  SetClientSize(b.window, 200, 100);
  frame.log.clear();
  headless::SetClientSize(200, 100);
  EXPECT_EQ(frame.TakeLog(), Log({"a size 200 100"}));
  Child c(&frame, "c");
  EXPECT_EQ(c.window->width, 200);
  EXPECT_EQ(c.window->pixels.size(), 20000u);
}

TEST_F(HeadlessMdi, NumbersOfTheWindowListActivateTheirWindow) {
  Child b(&frame, "b");
  Send(frame.window, kMessageCommand, 58000, 0);
  EXPECT_EQ(ActiveMdiChild(frame.client), a.window);
  Send(frame.window, kMessageCommand, 58002, 0);
  EXPECT_EQ(ActiveMdiChild(frame.client), a.window);
}

// Focus.

TEST_F(HeadlessFocus, TheOldControlIsToldBeforeTheNewOne) {
  const WindowHandle list = MakeListBox(frame.window, 3, false);
  const WindowHandle check = MakeCheckBox(frame.window, 4);
  SetFocusTo(edit);
  SetFocusTo(list);
  SetFocusTo(check);
  SetFocusTo(check);
  SetFocusTo(edit);
  EXPECT_EQ(frame.TakeLog(),
            Log({"frame command 1 256", "frame command 1 512", "frame command 3 4", "frame command 3 5",
                 "frame command 4 6", "frame command 4 7", "frame command 1 256"}));
}

TEST_F(HeadlessFocus, TheNewControlHasTheFocusWhenTheOldOneIsTold) {
  SetFocusTo(edit);
  WindowHandle seen = nullptr;
  frame.object.onMessage = [&](uint32_t) {
    if (seen == nullptr) seen = FocusedWindow();
  };
  SetFocusTo(second);
  EXPECT_EQ(seen, second);
}

TEST_F(HeadlessFocus, AControlThatLosesItWhileTheOldOneIsToldGetsNoNotification) {
  const WindowHandle third = MakeListBox(frame.window, 3, false);
  SetFocusTo(edit);
  frame.log.clear();
  bool once = true;
  frame.object.onMessage = [&](uint32_t) {
    if (once) {
      once = false;
      SetFocusTo(third);
    }
  };
  SetFocusTo(second);
  EXPECT_EQ(FocusedWindow(), third);
  EXPECT_EQ(frame.TakeLog(), Log({"frame command 1 512", "frame command 2 512", "frame command 3 4"}));
}

TEST_F(HeadlessFocus, TheFrameHandsTheFocusToTheActiveChild) {
  Child a(&frame, "a");
  for (const WindowHandle given : {frame.window, frame.client}) {
    SetFocusTo(edit);
    SetFocusTo(given);
    EXPECT_EQ(FocusedWindow(), a.window);
  }
}

TEST_F(HeadlessFocus, FocusingAChildActivatesIt) {
  Child a(&frame, "a");
  Child b(&frame, "b");
  SetFocusTo(a.window);
  EXPECT_EQ(ActiveMdiChild(frame.client), a.window);
}

TEST_F(HeadlessFocus, HidingTheFocusedControlGivesTheFocusBack) {
  Child a(&frame, "a");
  SetFocusTo(edit);
  Hide(edit);
  EXPECT_EQ(FocusedWindow(), a.window);
}

}  // namespace
}  // namespace sorvel::platform
