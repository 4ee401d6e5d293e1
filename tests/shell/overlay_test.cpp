// Whatever a tool shows over the picture, a pen mark, a rubber band or a selection: after the pulses of any command or
// key nothing of it is left on the screen.

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "resources/ids.h"
#include "shell/shell_fixture.h"

namespace sorvel::testshell {
namespace {

// Together with the canvas such that pictures below 1/1 are painted and repainted in the same groups of pixels.
constexpr int32_t kClientWidth = 96;
constexpr int32_t kClientHeight = 72;

struct MouseStep {
  uint32_t message;
  int32_t x;
  int32_t y;
  uint32_t keys = 0;
};

struct Gesture {
  const char* name;
  int32_t tool;
  std::vector<MouseStep> steps;
};

constexpr uint32_t kMove = platform::kMessageMouseMove;
constexpr uint32_t kDown = platform::kMessageLeftDown;
constexpr uint32_t kUp = platform::kMessageLeftUp;
constexpr uint32_t kRightUp = platform::kMessageRightUp;

// What leaves something on the screen that isn't part of the picture.
const std::vector<Gesture>& Gestures() {
  static const std::vector<Gesture> gestures = {
      {"pen mark", kToolFreePen, {{kMove, 40, 30}}},
      {"pen stroke", kToolFreePen, {{kDown, 30, 30}, {kMove, 50, 33}, {kMove, 52, 40}}},
      {"eraser frame", kToolEraser, {{kMove, 40, 30}, {kMove, 44, 31}}},
      {"eraser drag", kToolEraser, {{kMove, 30, 30}, {kDown, 30, 30}, {kMove, 45, 35}}},
      {"line mark", kToolLine, {{kMove, 40, 30}}},
      {"line band", kToolLine, {{kDown, 20, 20}, {kMove, 50, 40}, {kMove, 60, 30}}},
      {"line chain",
       kToolLine,
       {{kDown, 20, 20, platform::kKeyControl},
        {kUp, 20, 20, platform::kKeyControl},
        {kMove, 50, 40},
        {kMove, 60, 30}}},
      {"curve", kToolCurve, {{kUp, 20, 20}, {kMove, 30, 40}, {kUp, 40, 30}, {kMove, 60, 40}}},
      {"rectangle", kToolRectangle, {{kDown, 20, 20}, {kMove, 60, 50}, {kMove, 55, 40}}},
      {"edging", kToolEdging, {{kDown, 20, 20}, {kMove, 60, 50}, {kMove, 55, 40}}},
      {"fill", kToolFill, {{kDown, 40, 30}, {kUp, 40, 30}}},
      {"gradient", kToolGradient, {{kDown, 40, 30}, {kUp, 40, 30}, {kMove, 50, 40}}},
      {"selection", kToolAreaSelect, {{kDown, 20, 20}, {kMove, 60, 50}, {kUp, 60, 50}}},
      {"selection drag", kToolAreaSelect, {{kDown, 20, 20}, {kMove, 60, 50}}},
      {"whole selection", kToolAreaSelect, {{kRightUp, 40, 30}}},
      {"selection move",
       kToolAreaSelect,
       {{kDown, 20, 20}, {kMove, 60, 50}, {kUp, 60, 50}, {kDown, 40, 30}, {kMove, 45, 36}}},
      {"moved selection",
       kToolAreaSelect,
       {{kDown, 20, 20}, {kMove, 60, 50}, {kUp, 60, 50}, {kDown, 40, 30}, {kMove, 45, 36}, {kUp, 45, 36}}},
      {"mosaic tile", kToolMosaic, {{kMove, 40, 30}, {kMove, 45, 30}}},
      {"mosaic drag", kToolMosaic, {{kMove, 30, 30}, {kDown, 30, 30}, {kMove, 50, 44}}},
      {"text frame", kToolText, {{kDown, 30, 30}, {kUp, 30, 30}, {kMove, 35, 33}}},
      {"focus lines", kToolFocusLines, {{kUp, 40, 30}, {kMove, 60, 50}, {kUp, 60, 50}, {kMove, 20, 20}}},
      {"parallel band", kToolParallelLines, {{kDown, 20, 20}, {kMove, 50, 40}}},
      {"parallel copy", kToolParallelLines, {{kDown, 20, 20}, {kMove, 50, 40}, {kUp, 50, 40}, {kMove, 30, 40}}},
      {"frame box", kToolFramePosition, {{kMove, 40, 30}}},
      {"frame drag", kToolFramePosition, {{kMove, 40, 30}, {kDown, 40, 30}, {kMove, 47, 36}}},
      {"layer box", kToolLayerPosition, {{kMove, 40, 30}}},
      {"layer drag", kToolLayerPosition, {{kMove, 40, 30}, {kDown, 40, 30}, {kMove, 47, 36}}},
  };
  return gestures;
}

bool IsPositionTool(int32_t tool) {
  return tool == kToolFramePosition || tool == kToolLayerPosition;
}

// The dialog that a command asks with; 0 for none.
int32_t DialogOf(int32_t command) {
  switch (command) {
    case kCommandCutProperties:
    case kCommandNewCut:
    case kCommandAddNumberedCut:
    case kCommandInsertNumberedCut:
      return 107;
    case kCommandAddLayer:
    case kCommandInsertLayer:
    case kCommandLayerProperties:
      return 106;
    case kCommandFrameSize:
      return 123;
    case kCommandAddFrames:
    case kCommandDeleteFrames:
      return 116;
    case kCommandBrightnessRamp:
      return 115;
    case kCommandFrameRamp:
      return 117;
    case kCommandLayerRamp:
      return 112;
    case kCommandSnapGrid:
    case kCommandDrawGrid:
      return 108;
    case kCommandMask:
      return 109;
    case kCommandFont:
      return 113;
    case kCommandRandomDots:
      return 127;
    case kCommandNewFilm:
    case kCommandFilmProperties:
      return 110;
    default:
      return 0;
  }
}

class Overlays : public ShellTest {
 protected:
  void SetUp() override {
    ShellTest::SetUp();
    platform::headless::SetClientSize(kClientWidth, kClientHeight);
    platform::headless::SetLivePainting(true);
  }

  // A cut with two layers, two frames and some ink, wide enough to scroll at 2/1.
  void MakeDrawing() {
    MakeCut(72, 48);
    AddLayer("B");
    MakeFrames(2);
    CurrentCell()->FillRect(5, 5, 30, 20, kToneBlack);
    CurrentCell()->FillRect(20, 15, 30, 20, kToneWhite);
    Cut()->RepaintAll();
    PaintAll();
  }
  void DropDrawing() {
    CloseCuts();
    platform::headless::ClearFailure();
    frame->film->modified = 0;
    frame->StopAnimation();
    ResetProgram();
    frame->currentTool = kToolFreePen;
  }

  void PaintAll() {
    for (int32_t round = 0; round < 4; ++round) {
      bool painted = false;
      for (const platform::WindowHandle window : frame->mdiClient->children) {
        painted = platform::headless::DeliverPaint(window) || painted;
      }
      if (!painted) return;
    }
  }

  void Mouse(const MouseStep& step) {
    if (Cut() == nullptr) return;
    platform::Send(Cut()->window, step.message, step.keys, platform::PackPoint({step.x, step.y}));
    PaintAll();
  }

  void Show(const Gesture& gesture) {
    Command(gesture.tool);
    if (gesture.tool == kToolText) platform::headless::QueueDialog({kTextDialog, {{kTextDialogEdit, "AB"}}, true});
    for (const MouseStep& step : gesture.steps) Mouse(step);
  }

  static bool AreSame(const std::vector<platform::ColorEntry>& a, const std::vector<platform::ColorEntry>& b) {
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(a[0])) == 0;
  }
  static bool IsSameColor(const platform::ColorEntry& a, const platform::ColorEntry& b) {
    return a.red == b.red && a.green == b.green && a.blue == b.blue;
  }

  // Whether the screen is what painting all of the window anew gives.
  bool IsScreenClean() {
    CutWindow* cut = Cut();
    if (cut == nullptr) return true;
    platform::WindowHandle window = cut->window;
    const std::vector<platform::ColorEntry> shown = window->pixels;
    platform::InvalidateClient(window, true);
    platform::headless::PaintInvalid(window);
    if (AreSame(shown, window->pixels)) return true;
    const std::vector<platform::ColorEntry> painted = window->pixels;
    // Below 1/1 a repaint of an area joins other pixels to one than painting does.
    cut->RepaintAreaDirect(0, 0, cut->width, cut->height);
    const std::vector<platform::ColorEntry> repainted = window->pixels;
    window->pixels = shown;
    if (shown.size() != painted.size()) return false;
    for (size_t i = 0; i < shown.size(); ++i) {
      if (!IsSameColor(shown[i], painted[i]) && !IsSameColor(shown[i], repainted[i])) return false;
    }
    return true;
  }

  // The position tools show their box at every other pulse; nothing else may be there after one.
  bool IsCleanAfterPulses() {
    PaintAll();
    const bool wasBoxTool = IsPositionTool(frame->currentTool);
    if (Cut() == nullptr) return true;
    Cut()->Pulse();
    if (!ViewIsCurrent()) return false;
    if (IsScreenClean()) return true;
    if (!wasBoxTool) return false;
    Cut()->Pulse();
    return IsScreenClean();
  }

  void ZoomTo(int32_t steps) {
    for (; steps > 0; --steps) Cut()->ZoomIn({kClientWidth / 2, kClientHeight / 2});
    for (; steps < 0; ++steps) Cut()->ZoomOut({kClientWidth / 2, kClientHeight / 2});
    PaintAll();
  }

  // Runs `act` under each gesture's overlay at each zoom.
  template <typename Act>
  void ExpectNothingLeft(const std::string& what, Act act) {
    for (const int32_t zoom : {0, 1, -1}) {
      for (const Gesture& gesture : Gestures()) ExpectNothingLeft(gesture, zoom, what, act);
    }
  }

  // The same, each gesture at one zoom: which one depends on `turn`.
  template <typename Act>
  void ExpectNothingLeftInTurn(int32_t turn, const std::string& what, Act act) {
    for (const Gesture& gesture : Gestures()) ExpectNothingLeft(gesture, turn++ % 3 - 1, what, act);
  }

 private:
  template <typename Act>
  void ExpectNothingLeft(const Gesture& gesture, int32_t zoom, const std::string& what, const Act& act) {
    MakeDrawing();
    ZoomTo(zoom);
    Show(gesture);
    act();
    EXPECT_TRUE(IsCleanAfterPulses()) << gesture.name << ", " << what << ", zoom step " << zoom;
    // The tool goes on from where the pulse left it.
    Mouse({kMove, 33, 28});
    Mouse({kMove, 36, 31});
    Mouse({kUp, 36, 31});
    Mouse({kRightUp, 36, 31});
    EXPECT_TRUE(IsCleanAfterPulses()) << gesture.name << ", after " << what << ", zoom step " << zoom;
    DropDrawing();
  }
};

TEST_F(Overlays, AreThereBeforeThePulse) {
  int32_t seen = 0;
  for (const Gesture& gesture : Gestures()) {
    MakeDrawing();
    Show(gesture);
    if (!IsScreenClean()) ++seen;
    DropDrawing();
  }
  // All but the strokes of the pen, the fill and the gradient, which show nothing but ink, and the text, which needs a
  // font of the system.
  EXPECT_GE(seen, static_cast<int32_t>(Gestures().size()) - 6);
}

TEST_F(Overlays, GoWithAPulse) {
  ExpectNothingLeft("nothing", [] {});
}

TEST_F(Overlays, GoWithEveryCommand) {
  for (int32_t command = kCommandAddFrame; command <= kCommandAbout; ++command) {
    // Closing all windows asks, and is tested on its own.
    if (command == kCommandCloseAll) continue;
    const int32_t dialog = DialogOf(command);
    ExpectNothingLeftInTurn(command, "command " + std::to_string(command), [this, command, dialog] {
      if (dialog != 0) platform::headless::QueueDialog({dialog, {}, true});
      if (dialog == kCutDialog) platform::headless::QueueDialog({kLayerDialog, {}, true});
      platform::headless::QueueFileCancel();
      platform::headless::QueueColorCancel();
      Command(command);
      // The last lines of the grid lie beside the area that is shown, until the next repaint.
      if (command == kCommandDrawGrid) Cut()->RepaintAll();
      // What the command didn't ask for must not answer the next one.
      platform::headless::ClearAnswers();
    });
  }
}

TEST_F(Overlays, GoWithEveryKey) {
  for (int32_t character = 32; character < 126; ++character) {
    ExpectNothingLeftInTurn(character, "key " + std::string(1, static_cast<char>(character)), [this, character] {
      platform::headless::QueueDialog({character == 'g' || character == 'h' ? 109 : 108, {}, true});
      platform::Send(Cut()->window, platform::kMessageChar, static_cast<uintptr_t>(character), 0);
      platform::headless::ClearAnswers();
    });
  }
}

TEST_F(Overlays, GoWithScrollingAndResizing) {
  for (const int32_t code : {0, 1, 2, 3, 4, 5}) {
    for (const uint32_t message : {platform::kMessageHorizontalScroll, platform::kMessageVerticalScroll}) {
      ExpectNothingLeft("scroll " + std::to_string(code), [this, code, message] {
        platform::Send(Cut()->window, message, platform::JoinHalves(code, 7), 0);
        PaintAll();
        // A thumb is let go of in the end.
        if (code == platform::kScrollThumbTrack) {
          platform::Send(Cut()->window, message, platform::JoinHalves(platform::kScrollThumbPosition, 7), 0);
        }
        // What an arrow moved beyond the end of the picture comes back with the next update of the bars.
        platform::headless::SetClientSize(kClientWidth - 8, kClientHeight);
        PaintAll();
        platform::headless::SetClientSize(kClientWidth, kClientHeight);
      });
    }
  }
}

TEST_F(Overlays, GoWithPanning) {
  ExpectNothingLeft("pan", [this] {
    constexpr uint32_t keys = platform::kKeyShift | platform::kKeyControl;
    Mouse({kMove, 40, 30, keys});
    Mouse({kMove, 33, 25, keys});
    Mouse({kMove, 37, 31, keys});
    Mouse({kMove, 38, 31});
  });
}

TEST_F(Overlays, GoWithAnotherWindow) {
  ExpectNothingLeft("another window", [this] {
    CutWindow* first = Cut();
    MakeCut(30, 20);
    PaintAll();
    Mouse({kMove, 20, 20});
    platform::ActivateMdiChild(frame->mdiClient, first->window);
    PaintAll();
  });
}

}  // namespace
}  // namespace sorvel::testshell
