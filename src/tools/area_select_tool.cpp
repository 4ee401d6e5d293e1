#include <cstdlib>

#include "cutwindow/clipboard.h"
#include "foundation/arithmetic.h"
#include "platform/drawing.h"
#include "tools/tool.h"

namespace sorvel {

namespace {

// Invert the frame of the selection, which is the window's own and not an overlay.
void InvertSelection(CutWindow* window) {
  if (!window->HasSelection()) return;
  platform::DeviceContext* context = platform::BeginDrawing(window->window);
  platform::InvertFrame(context, window->selection);
  platform::EndDrawing(window->window, context);
}

void ReplaceSelection(CutWindow* window, const Bounds& frame) {
  InvertSelection(window);
  window->selection = frame;
  InvertSelection(window);
}

Bounds Moved(const Bounds& frame, int64_t dx, int64_t dy) {
  return {Saturated(frame.left + dx), Saturated(frame.top + dy), Saturated(frame.right + dx),
          Saturated(frame.bottom + dy)};
}

Bounds Inflated(const Bounds& frame, int64_t dx, int64_t dy) {
  return {Saturated(frame.left - dx), Saturated(frame.top - dy), Saturated(frame.right + dx),
          Saturated(frame.bottom + dy)};
}

bool IsNear(int32_t a, int32_t b) {
  return std::abs(int64_t{a} - b) <= 1;
}

bool Contains(const Bounds& frame, Point place) {
  return place.x >= frame.left && place.x < frame.right && place.y >= frame.top && place.y < frame.bottom;
}

bool IsPasteFloating(const CutWindow* window) {
  return (window->viewOptions & kFloatingPaste) != 0;
}

void MakePasteFinal(CutWindow* window) {
  window->viewOptions &= ~static_cast<uint32_t>(kFloatingPaste);
}

class AreaSelectTool final : public Tool {
 public:
  AreaSelectTool() : Tool(PointForm::kSigned) {}

  void End() override { state = State::kIdle; }

 protected:
  void Press(const ToolInput& input) override {
    CutWindow* const window = input.window;
    const Point oldOrigin = origin;
    const Point place = input.ToWindow(input.point);
    const Bounds frame = window->selection;
    origin = input.point;
    platform::CaptureMouse(window->window);
    if (window->HasSelection()) {
      if (IsNear(place.x, frame.left)) {
        state = State::kWiden;
        anchor.x = place.x;
      } else if (IsNear(place.y, frame.top)) {
        state = State::kHeighten;
        anchor.y = place.y;
      } else if (Contains(frame, place)) {
        BeginMove(input, place, oldOrigin);
      } else {
        MakePasteFinal(window);
      }
    }
    if (IsIdle()) state = State::kNewFrame;
  }

  void Move(const ToolInput& input) override {
    CutWindow* const window = input.window;
    const Point place = input.ToWindow(input.point);
    switch (state) {
      case State::kNewFrame:
        if (IsRightAndBelow(input.point, origin)) ReplaceSelection(window, input.ToWindow(origin, input.point));
        break;
      case State::kMove:
        ReplaceSelection(window, Moved(window->selection, place.x - anchor.x, place.y - anchor.y));
        anchor = place;
        break;
      case State::kWiden:
        ReplaceSelection(window, Inflated(window->selection, anchor.x - place.x, 0));
        anchor.x = place.x;
        break;
      case State::kHeighten:
        ReplaceSelection(window, Inflated(window->selection, 0, anchor.y - place.y));
        anchor.y = place.y;
        break;
      case State::kIdle:
      case State::kAfterMove:
        break;
    }
  }

  void Release(const ToolInput& input) override {
    platform::ReleaseMouse();
    if (state == State::kMove) {
      EndMove(input);
    } else {
      state = State::kIdle;
    }
  }

  void RightRelease(const ToolInput& input) override {
    if (!IsIdle()) return;
    const Bounds wholeCell = input.ToWindow({0, 0}, {input.cell->width, input.cell->height});
    ReplaceSelection(input.window, input.window->HasSelection() ? Bounds{} : wholeCell);
    MakePasteFinal(input.window);
  }

  void Pulse(const ToolInput& input) override {
    ReplaceSelection(input.window, Bounds{});
    // Without its frame a move can't go on, and its next step would undo the change of another tool.
    if (state == State::kAfterMove) state = State::kIdle;
  }

 private:
  enum class State {
    kIdle,
    kAfterMove,  // the next drag of the frame goes on with the move
    kNewFrame,
    kMove,
    kWiden,    // by the left edge
    kHeighten  // by the top edge
  };

  bool IsIdle() const { return state == State::kIdle || state == State::kAfterMove; }

  void BeginMove(const ToolInput& input, Point place, Point oldOrigin) {
    CutWindow* const window = input.window;
    if (state == State::kAfterMove) {
      // All drags of a move count as one from the first place, so that the ink is moved only once. The sum is clamped
      // like any point of the layer.
      window->Undo();
      const Point from = input.ToLayer(anchor);
      origin = Limited({oldOrigin.x + input.point.x - from.x, oldOrigin.y + input.point.y - from.y});
    } else if (IsPasteFloating(window)) {
      window->Undo();
    } else {
      window->AddUndoRect(nullptr);
    }
    window->SaveUndo();
    anchor = place;
    state = State::kMove;
  }

  void EndMove(const ToolInput& input) {
    CutWindow* const window = input.window;
    const Bounds frame = window->selection;
    const Point corner = input.ToLayerOffGrid({frame.left, frame.top});
    const Point farCorner = input.ToLayerOffGrid({frame.right, frame.bottom});
    const Rect target = {corner.x, corner.y, farCorner.x - corner.x, farCorner.y - corner.y};
    const Rect source = {target.x - input.point.x + origin.x, target.y - input.point.y + origin.y, target.width,
                         target.height};
    if (IsPasteFloating(window)) {
      input.cell->Composite({target.x, target.y}, ClipboardImage(), {0, 0, target.width, target.height},
                            {.flags = kKeyed, .destMask = maskFlags});
    } else {
      input.cell->MoveBlock(source.x, source.y, source.width, source.height, target.x, target.y, kTransparent,
                            maskFlags);
    }
    window->AddUndoRect(&source);
    window->AddUndoRect(&target);
    // The mark of the press is gone if the cut was saved or played with the button down.
    window->MarkImages();
    input.Repaint(window->undoRect);
    // The repaint removed the frame.
    if (!window->HasSelection()) ReplaceSelection(window, frame);
    anchor = input.ToWindow(input.point);
    state = State::kAfterMove;
  }

  State state = State::kIdle;
  Point origin;  // of the drag, in layer coordinates
  Point anchor;  // the last mouse position that was handled, in window coordinates
};

}  // namespace

std::unique_ptr<Tool> MakeAreaSelectTool() {
  return std::make_unique<AreaSelectTool>();
}

}  // namespace sorvel
