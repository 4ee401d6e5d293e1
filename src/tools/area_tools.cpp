#include <algorithm>
#include <cstdlib>

#include "cutwindow/clipboard.h"
#include "foundation/arithmetic.h"
#include "platform/drawing.h"
#include "tools/tool_functions.h"
#include "tools/tool_state.h"

namespace sorvel {

namespace {

struct AreaSelect {
  enum class State {
    kIdle,
    kAfterMove,  // the next drag of the frame goes on with the move
    kNewFrame,
    kMove,
    kWiden,    // by the left edge
    kHeighten  // by the top edge
  };

  State state = State::kIdle;
  Point origin;  // of the drag, in layer coordinates
  Point anchor;  // the last mouse position that was handled, in window coordinates

  bool IsIdle() const { return state == State::kIdle || state == State::kAfterMove; }
};
AreaSelect gSelect;

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

void BeginMove(const ToolInput& input, Point place, Point oldOrigin) {
  CutWindow* const window = input.window;
  if (gSelect.state == AreaSelect::State::kAfterMove) {
    // The whole way from the first place counts as one move, so that the ink is carried only once.
    window->Undo();
    const Point anchor = ToLayer(window, gSelect.anchor);
    gSelect.origin = Limited({oldOrigin.x + input.point.x - anchor.x, oldOrigin.y + input.point.y - anchor.y});
  } else if ((window->viewOptions & kFloatingPaste) != 0) {
    window->Undo();
  } else {
    window->AddUndoRect(nullptr);
  }
  window->SaveUndo();
  gSelect.anchor = place;
  gSelect.state = AreaSelect::State::kMove;
}

void PressSelection(const ToolInput& input) {
  CutWindow* const window = input.window;
  const Point oldOrigin = gSelect.origin;
  const Point place = ToWindow(window, input.point);
  const Bounds frame = window->selection;
  gSelect.origin = input.point;
  platform::CaptureMouse(window->window);
  if (window->HasSelection()) {
    if (IsNear(place.x, frame.left)) {
      gSelect.state = AreaSelect::State::kWiden;
      gSelect.anchor.x = place.x;
    } else if (IsNear(place.y, frame.top)) {
      gSelect.state = AreaSelect::State::kHeighten;
      gSelect.anchor.y = place.y;
    } else if (Contains(frame, place)) {
      BeginMove(input, place, oldOrigin);
    } else {
      // The paste is final.
      window->viewOptions &= ~static_cast<uint32_t>(kFloatingPaste);
    }
  }
  if (gSelect.IsIdle()) gSelect.state = AreaSelect::State::kNewFrame;
}

void DragSelection(const ToolInput& input) {
  CutWindow* const window = input.window;
  const Point place = ToWindow(window, input.point);
  const Point anchor = gSelect.anchor;
  switch (gSelect.state) {
    case AreaSelect::State::kNewFrame:
      if (IsRightAndBelow(input.point, gSelect.origin)) {
        ReplaceSelection(window, ToWindowBounds(window, gSelect.origin, input.point));
      }
      break;
    case AreaSelect::State::kMove:
      ReplaceSelection(window, Moved(window->selection, place.x - anchor.x, place.y - anchor.y));
      gSelect.anchor = place;
      break;
    case AreaSelect::State::kWiden:
      ReplaceSelection(window, Inflated(window->selection, anchor.x - place.x, 0));
      gSelect.anchor.x = place.x;
      break;
    case AreaSelect::State::kHeighten:
      ReplaceSelection(window, Inflated(window->selection, 0, anchor.y - place.y));
      gSelect.anchor.y = place.y;
      break;
    case AreaSelect::State::kIdle:
    case AreaSelect::State::kAfterMove:
      break;
  }
}

void ReleaseSelection(const ToolInput& input) {
  CutWindow* const window = input.window;
  platform::ReleaseMouse();
  if (gSelect.state != AreaSelect::State::kMove) {
    gSelect.state = AreaSelect::State::kIdle;
    return;
  }
  const Bounds frame = window->selection;
  const Point corner = ToLayerOffGrid(window, {frame.left, frame.top});
  const Point farCorner = ToLayerOffGrid(window, {frame.right, frame.bottom});
  const Rect target = {corner.x, corner.y, farCorner.x - corner.x, farCorner.y - corner.y};
  const Rect source = {target.x - input.point.x + gSelect.origin.x, target.y - input.point.y + gSelect.origin.y,
                       target.width, target.height};
  if ((window->viewOptions & kFloatingPaste) != 0) {
    input.cell->Composite({target.x, target.y}, ClipboardImage(), {0, 0, target.width, target.height},
                          {.flags = kKeyed, .destMask = maskFlags});
  } else {
    input.cell->MoveBlock(source.x, source.y, source.width, source.height, target.x, target.y, kTransparent, maskFlags);
  }
  window->AddUndoRect(&source);
  window->AddUndoRect(&target);
  // The mark of the press is gone if the cut was saved or played with the button down.
  window->MarkImages();
  RepaintLayerArea(window, window->undoRect);
  // What was repainted took the frame away.
  if (!window->HasSelection()) ReplaceSelection(window, frame);
  gSelect.anchor = ToWindow(window, input.point);
  gSelect.state = AreaSelect::State::kAfterMove;
}

void RightClickSelection(const ToolInput& input) {
  CutWindow* const window = input.window;
  if (!gSelect.IsIdle()) return;
  const bool isSelected = window->HasSelection();
  ReplaceSelection(window,
                   isSelected ? Bounds{} : ToWindowBounds(window, {0, 0}, {input.cell->width, input.cell->height}));
  window->viewOptions &= ~static_cast<uint32_t>(kFloatingPaste);
}

}  // namespace

void RunAreaSelect(uint32_t message, const ToolInput& input) {
  switch (message) {
    case platform::kMessageLeftDown:
      PressSelection(input);
      break;
    case platform::kMessageMouseMove:
      DragSelection(input);
      break;
    case platform::kMessageLeftUp:
      ReleaseSelection(input);
      break;
    case platform::kMessageRightUp:
      RightClickSelection(input);
      break;
    case platform::kMessageUser:
      ReplaceSelection(input.window, Bounds{});
      // Without its frame a move can't go on; another tool's change must not be taken back in its stead.
      if (gSelect.state == AreaSelect::State::kAfterMove) gSelect.state = AreaSelect::State::kIdle;
      break;
    default:
      break;
  }
}

namespace {

constexpr int32_t kMosaicStep = 4;
constexpr int32_t kLargestMosaic = 16;
constexpr Point kNoStart = {-1, -1};

struct MosaicTool {
  bool isActive = false;
  int32_t size = kMosaicStep;  // of a tile, in pixels of the drawing
  Point start = kNoStart;      // in layer coordinates

  bool HasStart() const { return !(start == kNoStart); }
};
MosaicTool gMosaic;

// The tile that the point lies in. Remainders have the sign of the coordinate.
Point TileCorner(Point point) {
  return {point.x - point.x % gMosaic.size, point.y - point.y % gMosaic.size};
}

void ShowMosaicFrame(const ToolInput& input) {
  const Point tile = TileCorner(input.point);
  const Point corner = gMosaic.isActive && gMosaic.HasStart() ? gMosaic.start : tile;
  ShowFrame(input.window, ToWindowBounds(input.window, corner, {tile.x + gMosaic.size, tile.y + gMosaic.size}));
}

// The first step of a walk in tiles that may touch the picture.
int32_t FirstTile(int32_t start) {
  return start >= 0 ? 0 : Saturated(-int64_t{start} / gMosaic.size * gMosaic.size);
}

// Makes the block of the view a mosaic of everything up to the current layer.
void ComposeMosaic(CutWindow* window, const Rect& block) {
  IndexedImage& view = window->view;
  Frame* frame = window->CurrentFrame();
  if (frame == nullptr) return;
  view.FillRect(block.x, block.y, block.width, block.height, kTransparent);
  const uint32_t flags = (static_cast<uint32_t>(frame->currentRecord + 1) & kDrawLimitMask) << kDrawLimitShift;
  frame->ComposeFrame(&view, block.x, block.y, block.width, block.height, &flags, nullptr);
  const int32_t lastX = std::min(block.width, SaturatingSubtract(view.width, block.x));
  const int32_t lastY = std::min(block.height, SaturatingSubtract(view.height, block.y));
  for (int32_t j = FirstTile(block.y); j < lastY; j += gMosaic.size) {
    for (int32_t i = FirstTile(block.x); i < lastX; i += gMosaic.size) {
      view.Mosaic(block.x + i, block.y + j, gMosaic.size, gMosaic.size);
    }
  }
}

void DrawMosaic(const ToolInput& input) {
  CutWindow* const window = input.window;
  const Point tile = TileCorner(input.point);
  const Point start = gMosaic.start;
  // What repainted in the middle of the drag took its start.
  if (!gMosaic.HasStart()) {
    HideOverlay(window);
    gMosaic.isActive = false;
    return;
  }
  // The drag goes on, and its frame stands.
  if (tile.x < start.x || tile.y < start.y) return;
  HideOverlay(window);
  const Rect area = {start.x, start.y, tile.x - start.x + gMosaic.size, tile.y - start.y + gMosaic.size};
  window->SaveUndo();
  window->undoRect = area;
  Point corner = start;
  window->LayerToCut(&corner, 1);
  ComposeMosaic(window, {corner.x, corner.y, area.width, area.height});
  input.cell->Composite(start, &window->view, {corner.x, corner.y, area.width, area.height});
  RepaintLayerArea(window, area);
  gMosaic.isActive = false;
}

}  // namespace

void RunMosaic(uint32_t message, const ToolInput& input) {
  CutWindow* const window = input.window;
  switch (message) {
    case platform::kMessageLeftDown:
      gMosaic.start = TileCorner(input.point);
      gMosaic.isActive = true;
      break;
    case platform::kMessageMouseMove:
      ShowMosaicFrame(input);
      break;
    case platform::kMessageLeftUp:
      if (gMosaic.isActive) DrawMosaic(input);
      break;
    case platform::kMessageRightUp:
      if (gMosaic.isActive) break;
      gMosaic.size = gMosaic.size >= kLargestMosaic ? kMosaicStep : gMosaic.size + kMosaicStep;
      ResizeShownFrame(window, Saturated(int64_t{gMosaic.size} * window->zoomNumerator / window->zoomDenominator));
      break;
    case platform::kMessageUser:
      gMosaic.start = kNoStart;
      HideOverlay(window);
      break;
    default:
      break;
  }
}

void EndAreaTools() {
  gSelect.state = AreaSelect::State::kIdle;
  gMosaic.isActive = false;
}

void ResetAreaTools() {
  gSelect = AreaSelect{};
  gMosaic = MosaicTool{};
}

}  // namespace sorvel
