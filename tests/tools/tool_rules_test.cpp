#include <random>
#include <vector>

#include "resources/ids.h"
#include "tools/tool_fixture.h"

namespace sorvel {
namespace {

class ToolRulesTest : public testtools::ToolTest {};

constexpr int32_t kTools[] = {kToolFramePosition, kToolLayerPosition, kToolZoom,       kToolFreePen,
                              kToolFill,          kToolLine,          kToolCurve,      kToolRectangle,
                              kToolAreaSelect,    kToolEraser,        kToolGradient,   kToolText,
                              kToolEdging,        kToolMosaic,        kToolFocusLines, kToolParallelLines};
constexpr uint32_t kMessages[] = {
    platform::kMessageMouseMove,   platform::kMessageLeftDown,  platform::kMessageLeftUp,
    platform::kMessageLeftDouble,  platform::kMessageRightDown, platform::kMessageRightUp,
    platform::kMessageRightDouble, platform::kMessageUser,
};

TEST_F(ToolRulesTest, NoDrawingToolWorksOnABlankRecord) {
  cut->CurrentFrame()->ToggleBlank();
  for (int32_t tool : kTools) {
    if (tool == kToolFramePosition || tool == kToolLayerPosition || tool == kToolZoom) continue;
    UseTool(tool);
    cut->stateFlags = 0;
    for (uint32_t message : kMessages) Mouse(message, 20, 20);
    EXPECT_EQ(cut->stateFlags, 0u) << tool;
    EXPECT_FALSE(IsPickerOpen()) << tool;
  }
  EXPECT_EQ(cut->undoCell, nullptr);
}

TEST_F(ToolRulesTest, AnIdleRightReleaseOpensThePickerForAllToolsWithInk) {
  for (int32_t tool : kTools) {
    UseTool(tool);
    RightRelease(20, 20);
    const bool hasInk = tool != kToolFramePosition && tool != kToolLayerPosition && tool != kToolZoom &&
                        tool != kToolEraser && tool != kToolAreaSelect && tool != kToolMosaic;
    EXPECT_EQ(IsPickerOpen(), hasInk) << tool;
    Move(20, 20);
    EXPECT_FALSE(IsPickerOpen()) << tool;
  }
}

TEST_F(ToolRulesTest, NoToolLeavesAnythingOnTheScreenWhenAnotherIsChosen) {
  host.answeredText = "A";
  SetTextToolFont("Sans", 16, 4, 400);
  for (int32_t tool : kTools) {
    UseTool(tool);
    if (tool == kToolZoom) continue;
    Move(15, 15);
    Press(15, 15);
    Move(40, 35);
    UseTool(kToolZoom);
    EXPECT_EQ(OverlaySize(), 0u) << tool;
    EXPECT_TRUE(ViewIsComposed()) << tool;
    UseTool(tool);
    Release(40, 35);
    Move(45, 45);
    UseTool(kToolZoom);
    EXPECT_EQ(OverlaySize(), 0u) << tool;
    EXPECT_TRUE(ViewIsComposed()) << tool;
  }
}

TEST_F(ToolRulesTest, AGestureEndsWithItsWindow) {
  host.answeredText = "A";
  SetTextToolFont("Sans", 16, 4, 400);
  CutWindow* const first = cut;
  for (int32_t tool : kTools) {
    // A press outside a gesture is remembered by the fill tools, and zooming is no gesture.
    if (tool == kToolZoom || tool == kToolFill || tool == kToolGradient) continue;
    UseTool(tool);
    Paint(0, 0, kSide, kSide, 0);
    Paint(0, 0, kSide, kSide / 2, 8);
    const auto pixels = [this] {
      std::vector<int32_t> values;
      for (int32_t i = 0; i < kSide * kSide; ++i) values.push_back(Pixel(i % kSide, i / kSide));
      return values;
    };
    const std::vector<int32_t> before = pixels();
    host.textDialogs = 0;
    cut = OpenCut(kSide, kSide);
    const bool needsClick = tool == kToolCurve || tool == kToolFocusLines || tool == kToolText;
    Press(10, 10);
    Move(20, 20);
    if (needsClick) Release(20, 20);
    host.toolbox->Forget(cut);
    CloseActive();
    cut = first;
    Move(40, 20);
    Move(40, 40);
    Release(50, 50);
    EXPECT_EQ(pixels(), before) << tool;
    EXPECT_EQ((Point{cut->CurrentFrame()->x, cut->CurrentFrame()->y}), Point{}) << tool;
    EXPECT_EQ((Point{cut->CurrentFrame()->records.At(0)->x, cut->CurrentFrame()->records.At(0)->y}), Point{}) << tool;
    EXPECT_FALSE(cut->HasSelection()) << tool;
    EXPECT_LE(host.textDialogs, 1) << tool;
    RightRelease(60, 60);
    EXPECT_EQ(pixels(), before) << tool;
  }
}

TEST_F(ToolRulesTest, AResetPutsBackWhatOutlivesAStroke) {
  UseTool(kToolEraser);
  RightClick(30, 30);
  ResetTools();
  Paint(0, 0, kSide, kSide, 8);
  Click(30, 30);
  EXPECT_EQ(CountOf(5), 25u);
}

TEST_F(ToolRulesTest, HugeCoordinatesAtExtremeZoomsAreHarmless) {
  for (const bool zoomsIn : {false, true}) {
    for (int32_t i = 0; i < 300; ++i) zoomsIn ? cut->ZoomIn({32767, -32768}) : cut->ZoomOut({-32768, 32767});
    for (int32_t tool : kTools) {
      if (tool == kToolZoom || tool == kToolCurve) continue;
      UseTool(tool);
      Press(-32768, -32768);
      Move(32767, 32767);
      Release(32767, -32768, kControl);
      Release(32767, 32767);
      RightRelease(-32768, 32767, kControl);
      RightRelease(0, 0);
      RightRelease(0, 0);
      cut->Pulse();
    }
  }
}

// A long run of any messages, commands and activations. The window is painted as soon as it has to be, as a window
// system does it, so that now and then the screen can be compared with the picture.
TEST_F(ToolRulesTest, AnUnluckyHandBreaksNothingAndLeavesNothingOnTheScreen) {
  platform::headless::SetClientSize(90, 70);
  cut->AddLayer("B", 40, 30, nullptr);
  cut->AttachLayer(1, 9, 7);
  AddFrameLikeCurrent();
  CutWindow* second = OpenCut(50, 50);
  SetTextToolFont("Sans", 12, 3, 400);
  host.answeredText = "A\r\nB";
  ASSERT_TRUE(cut->StoreBlock(0, 0, 10, 10, 0));
  std::mt19937 random(20240607);
  const auto below = [&random](size_t count) { return random() % count; };
  constexpr int32_t commands[] = {kCommandDeleteFrame,  kCommandDeleteCell, kCommandInsertCell, kCommandAddCell,
                                  kCommandPreviousCell, kCommandNextCell,   kCommandUndo,       kCommandShowPrevious,
                                  kCommandBlankCell,    kCommandPaste,      kCommandToSketch,   kCommandFlipHorizontal,
                                  kCommandMuraRemoval,  kCommandDimOthers,  kCommandBlankAll};
  size_t compared = 0;
  for (int32_t step = 0; step < 8000; ++step) {
    CutWindow* active = host.ActiveCut();
    const int32_t x = static_cast<int32_t>(below(130)) - 20;
    const int32_t y = static_cast<int32_t>(below(110)) - 20;
    switch (below(24)) {
      case 0: {
        const int32_t tool = kTools[below(std::size(kTools))];
        if (tool != kToolZoom) UseTool(tool);
        break;
      }
      case 1:
        Command(commands[below(std::size(commands))]);
        break;
      case 2:
        Activate(active == cut ? second : cut);
        break;
      case 3:
        platform::InvalidateClient(active->window, false);
        break;
      case 4:
        if (active->frames.Count() < 6) active->AddFrame()->CopyFrom(active->frames.At(0));
        active->PreviousFrame();
        active->RepaintAll();
        break;
      case 5:
        gridWidth = gridWidth == 1 ? 7 : 1;
        break;
      case 6:
        active->OnChar(static_cast<uintptr_t>("dfkj"[below(4)]));
        break;
      case 7:
        if (below(8) == 0) {
          const bool zoomsIn = active->zoomNumerator < 3;
          for (int32_t i = 0; i < (zoomsIn ? 1 : 2); ++i) {
            host.toolbox->Run(kToolZoom, zoomsIn ? platform::kMessageLeftDown : platform::kMessageRightDown, 0,
                              platform::PackPoint({30, 30}), active);
          }
        } else if (below(20) == 0) {
          host.toolbox->Forget(active);
          CloseActive();
          (active == cut ? cut : second) = OpenCut(40 + static_cast<int32_t>(below(40)), 48);
        }
        break;
      case 8: {
        const int32_t tool = host.currentTool;
        UseTool(kToolZoom);
        platform::headless::DeliverPaint(active->window);
        // A blank record keeps its selection until something repaints.
        if (!active->HasSelection()) {
          ++compared;
          ASSERT_EQ(OverlaySize(active), 0u) << "tool " << tool << " step " << step;
        }
        UseTool(tool);
        break;
      }
      default: {
        const uint32_t message = kMessages[below(std::size(kMessages))];
        const uint32_t keys = below(4) == 0 ? kControl : 0;
        Mouse(message, x, y, keys);
        // Pulses come in pairs, but for those that an activation brings.
        if (message == platform::kMessageUser) active->Pulse();
        break;
      }
    }
    platform::headless::DeliverPaint(host.ActiveCut()->window);
    ASSERT_GE(currentPen.shape, 0);
    ASSERT_LE(currentPen.shape, 14);
  }
  EXPECT_GT(compared, 100u);
}

}  // namespace
}  // namespace sorvel
