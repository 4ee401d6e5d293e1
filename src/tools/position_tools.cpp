#include <limits>

#include "foundation/arithmetic.h"
#include "tools/tool_functions.h"

namespace sorvel {

namespace {

// Reads the box of a tool, in cut coordinates; false if there is nothing to move.
using BoxReader = bool (*)(CutWindow* window, Bounds* box);

struct PositionTool {
  bool isDragging = false;
  Point start;  // of the drag, in cut coordinates
  // The pulse before a change takes the box off, and the one after it puts it back, whether there is a box or not at
  // that moment: otherwise the pair would come out of step when a change gives the box something to show, and leave it
  // on the screen.
  bool isUp = false;
  const CutWindow* owner = nullptr;  // the window that isUp speaks of; only compared
  Bounds box;                        // as the model has it, in cut coordinates

  bool IsUpOn(const CutWindow* window) const { return isUp && owner == window; }
};
PositionTool gFrameTool;
PositionTool gLayerTool;

Bounds BoxAt(int32_t x, int32_t y, int32_t width, int32_t height) {
  return {x, y, SaturatingAdd(x, width), SaturatingAdd(y, height)};
}

bool ReadFrameBox(CutWindow* window, Bounds* box) {
  const Frame* frame = window->CurrentFrame();
  if (frame == nullptr) return false;
  *box = BoxAt(frame->x, frame->y, window->frameWidth, window->frameHeight);
  return true;
}

bool ReadLayerBox(CutWindow* window, Bounds* box) {
  Frame* frame = window->CurrentFrame();
  int32_t x = 0;
  int32_t y = 0;
  if (frame == nullptr || !frame->GetRecordPosition(frame->currentRecord, &x, &y)) return false;
  const Layer* layer = frame->LayerAt(frame->currentRecord);
  *box = BoxAt(x, y, layer->width, layer->height);
  return true;
}

void ShowMovedBox(CutWindow* window, const Bounds& box, int32_t dx, int32_t dy) {
  Point corners[2] = {{SaturatingAdd(box.left, dx), SaturatingAdd(box.top, dy)},
                      {SaturatingAdd(box.right, dx), SaturatingAdd(box.bottom, dy)}};
  window->CutToWindow(corners, 2);
  ShowFrame(window, {corners[0].x, corners[0].y, corners[1].x, corners[1].y});
}

void ShowBox(PositionTool* tool, CutWindow* window, BoxReader readBox) {
  tool->isUp = true;
  tool->owner = window;
  if (readBox(window, &tool->box)) ShowMovedBox(window, tool->box, 0, 0);
}

void ShowBoxIfHidden(PositionTool* tool, CutWindow* window, BoxReader readBox) {
  if (!IsOverlayShown(window)) ShowBox(tool, window, readBox);
}

void ToggleBox(PositionTool* tool, CutWindow* window, BoxReader readBox) {
  if (tool->IsUpOn(window)) {
    HideOverlay(window);
    tool->isUp = false;
  } else {
    ShowBox(tool, window, readBox);
  }
}

Point CutPoint(intptr_t place, CutWindow* window) {
  Point point = UnpackPlace(place, CoordinateForm::kUnsigned);
  window->WindowToCut(&point, 1);
  return point;
}

int32_t Middle(int32_t a, int32_t b) {
  return static_cast<int32_t>((int64_t{a} + b) / 2);
}

// How far `value` can go in this direction without leaving 32 bits.
int32_t StepWithin(int32_t value, int32_t step) {
  return SaturatingSubtract(SaturatingAdd(value, step), value);
}

// What both tools do alike: show the box, press, drag and cancel. False if the message is the tool's own affair.
bool RunDrag(PositionTool* tool, uint32_t message, Point point, CutWindow* window, BoxReader readBox) {
  // The pulses of a repaint must find the box on the screen.
  const bool mayRepaint = message == platform::kMessageLeftUp || message == platform::kMessageRightUp;
  if (mayRepaint && !tool->IsUpOn(window)) ShowBox(tool, window, readBox);
  switch (message) {
    case platform::kMessageLeftDown:
      ShowBoxIfHidden(tool, window, readBox);
      tool->start = point;
      tool->isDragging = true;
      return true;
    case platform::kMessageMouseMove:
      ShowBoxIfHidden(tool, window, readBox);
      if (tool->isDragging) {
        ShowMovedBox(window, tool->box, SaturatingSubtract(point.x, tool->start.x),
                     SaturatingSubtract(point.y, tool->start.y));
      }
      return true;
    case platform::kMessageRightUp:
      if (!tool->isDragging) return false;
      // The next move shows it again; until then a pair of pulses finds it as if it were on.
      HideOverlay(window);
      tool->isDragging = false;
      return true;
    default:
      return false;
  }
}

// The neighbours of the current frame in a ring.
Frame* FrameInRing(CutWindow* window, int32_t step) {
  const int32_t count = window->frames.Count();
  return window->frames.At((window->currentFrame + step + count) % count);
}

void ReleaseFrame(CutWindow* window, Frame* frame, Point point, bool isControlDown) {
  if (isControlDown) {
    frame->x = (window->width - window->frameWidth) / 2;
    frame->y = (window->height - window->frameHeight) / 2;
  } else if (gFrameTool.isDragging) {
    frame->x = Saturated(int64_t{frame->x} + point.x - gFrameTool.start.x);
    frame->y = Saturated(int64_t{frame->y} + point.y - gFrameTool.start.y);
  } else {
    return;
  }
  window->MarkTiming();
  gFrameTool.isDragging = false;
  ShowBox(&gFrameTool, window, ReadFrameBox);
}

void AlignFrame(CutWindow* window, Frame* frame, bool isControlDown) {
  const Frame* const previous = FrameInRing(window, -1);
  if (isControlDown) {
    const Frame* const next = FrameInRing(window, 1);
    frame->x = Middle(previous->x, next->x);
    frame->y = Middle(previous->y, next->y);
  } else {
    frame->x = previous->x;
    frame->y = previous->y;
  }
  window->MarkTiming();
  window->RepaintAll();
  ShowBox(&gFrameTool, window, ReadFrameBox);
}

void ReleaseLayer(CutWindow* window, Frame* frame, Point point, bool isControlDown) {
  const int32_t index = frame->currentRecord;
  if (isControlDown) {
    frame->SetRecordPosition(index, 0, 0);
  } else if (gLayerTool.isDragging) {
    const FrameRecord* record = frame->records.At(index);
    frame->OffsetRecord(index, StepWithin(record->x, SaturatingSubtract(point.x, gLayerTool.start.x)),
                        StepWithin(record->y, SaturatingSubtract(point.y, gLayerTool.start.y)));
    gLayerTool.start = point;
  } else {
    return;
  }
  gLayerTool.isDragging = false;
  window->MarkTiming();
  window->RepaintAll();
}

// A neighbour without the record counts as standing at 0, 0.
Point RecordPosition(CutWindow* window, int32_t frameIndex, int32_t record) {
  Point position;
  Frame* frame = window->frames.At(frameIndex);
  if (frame != nullptr) frame->GetRecordPosition(record, &position.x, &position.y);
  return position;
}

void AlignLayer(CutWindow* window, Frame* frame, bool isControlDown) {
  const int32_t index = frame->currentRecord;
  const int32_t current = window->currentFrame;
  if (isControlDown) {
    // There is no ring here. The first frame is its own neighbour before, and the last one has the frame before it on
    // both sides: cuts were laid out with that, and a ring would move their layers elsewhere.
    const int32_t before = current > 0 ? current - 1 : current;
    const int32_t after = current + 1 < window->frames.Count() ? current + 1 : before;
    const Point a = RecordPosition(window, before, index);
    const Point b = RecordPosition(window, after, index);
    frame->SetRecordPosition(index, Middle(a.x, b.x), Middle(a.y, b.y));
  } else {
    frame->CopyRecordPosition(index, FrameInRing(window, -1));
  }
  window->MarkTiming();
  window->RepaintAll();
}

}  // namespace

void RunFramePosition(uint32_t message, uint32_t keys, intptr_t place, CutWindow* window) {
  if (message == platform::kMessageUser) {
    ToggleBox(&gFrameTool, window, ReadFrameBox);
    return;
  }
  int32_t x = 0;
  int32_t y = 0;
  Frame* const frame = window->CurrentFrame();
  if (frame == nullptr || window->CurrentCell(&x, &y) == nullptr) return;
  const Point point = CutPoint(place, window);
  const bool isControlDown = (keys & platform::kKeyControl) != 0;
  if (RunDrag(&gFrameTool, message, point, window, ReadFrameBox)) return;
  if (message == platform::kMessageLeftUp) ReleaseFrame(window, frame, point, isControlDown);
  if (message == platform::kMessageRightUp) AlignFrame(window, frame, isControlDown);
}

void RunLayerPosition(uint32_t message, uint32_t keys, intptr_t place, CutWindow* window) {
  if (message == platform::kMessageUser) {
    ToggleBox(&gLayerTool, window, ReadLayerBox);
    return;
  }
  Frame* const frame = window->CurrentFrame();
  if (frame == nullptr || frame->LayerAt(frame->currentRecord) == nullptr) return;
  const Point point = CutPoint(place, window);
  const bool isControlDown = (keys & platform::kKeyControl) != 0;
  if (RunDrag(&gLayerTool, message, point, window, ReadLayerBox)) return;
  if (message == platform::kMessageLeftUp) ReleaseLayer(window, frame, point, isControlDown);
  if (message == platform::kMessageRightUp) AlignLayer(window, frame, isControlDown);
}

void LeavePositionTools() {
  gFrameTool.isUp = false;
  gLayerTool.isUp = false;
}

void EndPositionTools() {
  gFrameTool.isDragging = false;
  gFrameTool.isUp = false;
  gLayerTool.isDragging = false;
  gLayerTool.isUp = false;
}

void ResetPositionTools() {
  gFrameTool = PositionTool{};
  gLayerTool = PositionTool{};
}

}  // namespace sorvel
