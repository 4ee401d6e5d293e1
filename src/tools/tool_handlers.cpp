#include "tools/tool_handlers.h"

#include "tools/tool_functions.h"
#include "tools/tool_state.h"

namespace sorvel {

namespace {

struct RunningTool {
  int32_t tool = 0;
  const CutWindow* window = nullptr;  // of the last message; only compared
};
RunningTool gRunning;

// A pulse that toggles its overlay can come just before another tool takes over, and leave it on the screen.
void EnterTool(int32_t tool, CutWindow* window) {
  gRunning.window = window;
  // Keys run the zoom beside the current tool.
  if (tool == gRunning.tool || tool != window->host->currentTool) return;
  gRunning.tool = tool;
  HideOverlay(window);
  LeavePositionTools();
}

// Points of the mouse are true pixels while this lives, not those of the grid.
class GridOff {
 public:
  GridOff() : old{gridWidth, gridHeight} {
    gridWidth = 1;
    gridHeight = 1;
  }
  GridOff(const GridOff&) = delete;
  GridOff& operator=(const GridOff&) = delete;
  ~GridOff() {
    gridWidth = old.x;
    gridHeight = old.y;
  }

 private:
  Point old;
};

using DrawingTool = void (*)(uint32_t message, const ToolInput& input);

template <int32_t tool, DrawingTool run, CoordinateForm form>
void Draw(uint32_t message, uint32_t keys, intptr_t place, CutWindow* window) {
  EnterTool(tool, window);
  ToolInput input;
  if (ReadInput(keys, place, window, form, &input)) {
    run(message, input);
  } else {
    // A blank record can't be drawn on. What the tool had on the screen must still go when the picture changes.
    HideOverlay(window);
  }
}

template <int32_t tool, DrawingTool run>
void DrawOffGrid(uint32_t message, uint32_t keys, intptr_t place, CutWindow* window) {
  const GridOff gridOff;
  Draw<tool, run, CoordinateForm::kUnsigned>(message, keys, place, window);
}

template <int32_t tool, ToolHandler run>
void Move(uint32_t message, uint32_t keys, intptr_t place, CutWindow* window) {
  EnterTool(tool, window);
  run(message, keys, place, window);
}

void Zoom(uint32_t message, uint32_t keys, intptr_t place, CutWindow* window) {
  (void)keys;
  const Point mouse = UnpackPlace(place, CoordinateForm::kUnsigned);
  if (message == platform::kMessageLeftDown) window->ZoomIn(mouse);
  if (message == platform::kMessageRightDown) window->ZoomOut(mouse);
}

struct ToolEntry {
  int32_t tool;
  ToolHandler handler;
};

constexpr CoordinateForm kSigned = CoordinateForm::kSigned;
constexpr CoordinateForm kUnsigned = CoordinateForm::kUnsigned;

constexpr ToolEntry kTools[] = {
    {kToolFramePosition, Move<kToolFramePosition, RunFramePosition>},
    {kToolLayerPosition, Move<kToolLayerPosition, RunLayerPosition>},
    {kToolZoom, Move<kToolZoom, Zoom>},
    {kToolFreePen, Draw<kToolFreePen, RunFreePen, kSigned>},
    {kToolFill, DrawOffGrid<kToolFill, RunFill>},
    {kToolLine, Draw<kToolLine, RunLine, kUnsigned>},
    {kToolCurve, Draw<kToolCurve, RunCurve, kUnsigned>},
    {kToolRectangle, Draw<kToolRectangle, RunBox, kUnsigned>},
    {kToolAreaSelect, Draw<kToolAreaSelect, RunAreaSelect, kSigned>},
    {kToolEraser, Draw<kToolEraser, RunEraser, kSigned>},
    {kToolGradient, DrawOffGrid<kToolGradient, RunGradient>},
    {kToolText, Draw<kToolText, RunText, kUnsigned>},
    {kToolEdging, Draw<kToolEdging, RunEdging, kUnsigned>},
    {kToolMosaic, Draw<kToolMosaic, RunMosaic, kSigned>},
    {kToolFocusLines, Draw<kToolFocusLines, RunFocusLines, kUnsigned>},
    {kToolParallelLines, Draw<kToolParallelLines, RunParallelLines, kUnsigned>},
};

}  // namespace

ToolHandler HandlerOfTool(int32_t tool) {
  for (const ToolEntry& entry : kTools) {
    if (entry.tool == tool) return entry.handler;
  }
  return nullptr;
}

void ForgetToolsOn(const CutWindow* window) {
  ForgetOverlay(window);
  if (gRunning.window != window) return;
  gRunning.window = nullptr;
  EndPenTools();
  EndLineTools();
  EndBoxTool();
  EndFillTools();
  EndGuideTools();
  EndTextTool();
  EndAreaTools();
  EndPositionTools();
}

void ResetToolHandlers() {
  gRunning = RunningTool{};
}

}  // namespace sorvel
