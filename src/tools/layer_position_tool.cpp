#include "foundation/arithmetic.h"
#include "tools/position_tool.h"

namespace sorvel {

namespace {

// `step`, limited so that `value` plus it fits in 32 bits.
int32_t StepWithin(int32_t value, int32_t step) {
  return SaturatingSubtract(SaturatingAdd(value, step), value);
}

// A neighbour without the record counts as standing at 0, 0.
Point RecordPosition(CutWindow* window, int32_t frameIndex, int32_t record) {
  Point position;
  Frame* frame = window->frames.At(frameIndex);
  if (frame != nullptr) frame->GetRecordPosition(record, &position.x, &position.y);
  return position;
}

// Moves the current layer within the frame.
class LayerPositionTool final : public PositionTool {
 protected:
  bool ReadBox(CutWindow* window, Bounds* result) const override {
    Frame* frame = window->CurrentFrame();
    int32_t x = 0;
    int32_t y = 0;
    if (frame == nullptr || !frame->GetRecordPosition(frame->currentRecord, &x, &y)) return false;
    const Layer* layer = frame->LayerAt(frame->currentRecord);
    *result = BoxAt(x, y, layer->width, layer->height);
    return true;
  }

  bool CanMove(CutWindow* window) const override {
    Frame* const frame = window->CurrentFrame();
    return frame != nullptr && frame->LayerAt(frame->currentRecord) != nullptr;
  }

  void Place(const ToolInput& input) override {
    Frame* const frame = input.window->CurrentFrame();
    const int32_t index = frame->currentRecord;
    if (input.isControlDown) {
      frame->SetRecordPosition(index, 0, 0);
    } else if (isDragging) {
      const FrameRecord* record = frame->records.At(index);
      frame->OffsetRecord(index, StepWithin(record->x, SaturatingSubtract(input.point.x, start.x)),
                          StepWithin(record->y, SaturatingSubtract(input.point.y, start.y)));
      start = input.point;
    } else {
      return;
    }
    isDragging = false;
    input.window->MarkTiming();
    input.window->RepaintAll();
  }

  void Align(const ToolInput& input) override {
    CutWindow* const window = input.window;
    Frame* const frame = window->CurrentFrame();
    const int32_t index = frame->currentRecord;
    const int32_t current = window->currentFrame;
    if (input.isControlDown) {
      // There is no ring here. The first frame is its own neighbour before, and the last one has the frame before it on
      // both sides: cuts were laid out with that, and a ring would move their layers elsewhere.
      const int32_t before = current > 0 ? current - 1 : current;
      const int32_t after = current + 1 < window->frames.Count() ? current + 1 : before;
      const Point a = RecordPosition(window, before, index);
      const Point b = RecordPosition(window, after, index);
      frame->SetRecordPosition(index, MiddleOf(a.x, b.x), MiddleOf(a.y, b.y));
    } else {
      frame->CopyRecordPosition(index, FrameInRing(window, -1));
    }
    window->MarkTiming();
    window->RepaintAll();
  }
};

}  // namespace

std::unique_ptr<Tool> MakeLayerPositionTool() {
  return std::make_unique<LayerPositionTool>();
}

}  // namespace sorvel
