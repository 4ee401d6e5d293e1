#include "tools/tool_rules.h"

#include <algorithm>
#include <cstdlib>

#include "platform/drawing.h"
#include "tools/tool_state.h"

namespace sorvel {

namespace {

constexpr int32_t kFarthest = 1 << 22;

struct Overlay {
  enum class Kind { kNone, kBand, kFrame };

  Kind kind = Kind::kNone;
  const CutWindow* owner = nullptr;  // only compared while it may be gone
  Point from;
  Point to;
  Bounds frame;
};
Overlay gOverlay;

// Puts the overlay on, or takes it off.
void InvertOverlay() {
  const platform::WindowHandle window = gOverlay.owner->window;
  if (window == nullptr) return;
  platform::DeviceContext* context = platform::BeginDrawing(window);
  if (gOverlay.kind == Overlay::Kind::kBand) {
    platform::InvertLine(context, gOverlay.from, gOverlay.to);
  } else {
    platform::InvertFrame(context, gOverlay.frame);
  }
  platform::EndDrawing(window, context);
}

}  // namespace

Point UnpackPlace(intptr_t place, CoordinateForm form) {
  if (form == CoordinateForm::kSigned) return platform::PointOf(place);
  const auto packed = static_cast<uintptr_t>(place);
  return {static_cast<int32_t>(platform::LowHalf(packed)), static_cast<int32_t>(platform::HighHalf(packed))};
}

bool ReadInput(uint32_t keys, intptr_t place, CutWindow* window, CoordinateForm form, ToolInput* input) {
  int32_t x = 0;
  int32_t y = 0;
  input->cell = window->CurrentCell(&x, &y);
  if (input->cell == nullptr) return false;
  input->window = window;
  input->mouse = UnpackPlace(place, form);
  input->point = ToLayer(window, input->mouse);
  input->isControlDown = (keys & platform::kKeyControl) != 0;
  return true;
}

Point Limited(Point point) {
  return {std::clamp(point.x, -kFarthest, kFarthest), std::clamp(point.y, -kFarthest, kFarthest)};
}

Point ToLayer(CutWindow* window, Point place) {
  window->WindowToCut(&place, 1);
  window->CutToLayer(&place, 1);
  return Limited(place);
}

Point ToLayerOffGrid(CutWindow* window, Point place) {
  window->WindowToCutRaw(&place, 1);
  window->CutToLayer(&place, 1);
  return Limited(place);
}

Point ToWindow(CutWindow* window, Point point) {
  window->LayerToCut(&point, 1);
  window->CutToWindow(&point, 1);
  return Limited(point);
}

Bounds ToWindowBounds(CutWindow* window, Point corner, Point farCorner) {
  const Point first = ToWindow(window, corner);
  const Point last = ToWindow(window, farCorner);
  return {first.x, first.y, last.x, last.y};
}

bool IsRightAndBelow(Point point, Point origin) {
  return point.x > origin.x && point.y > origin.y;
}

Rect SegmentArea(Point a, Point b) {
  return {std::min(a.x, b.x) - kPenReach, std::min(a.y, b.y) - kPenReach, std::abs(a.x - b.x) + kPenSize + 1,
          std::abs(a.y - b.y) + kPenSize + 1};
}

void RepaintLayerArea(CutWindow* window, const Rect& area) {
  Point corner = {area.x, area.y};
  window->LayerToCut(&corner, 1);
  window->RepaintArea(corner.x, corner.y, area.width, area.height, true);
}

void ReportChange(CutWindow* window, const Rect& area) {
  window->AddUndoRect(&area);
  // The mark of the press is gone if the cut was saved or played in the middle of the stroke.
  window->MarkImages();
  RepaintLayerArea(window, area);
}

void DrawInkLine(const ToolInput& input, Point from, Point to) {
  input.cell->DrawLine(from.x, from.y, to.x, to.y, &currentPen, maskFlags, nullptr);
  ReportChange(input.window, SegmentArea(from, to));
}

void DrawGuideLine(const ToolInput& input, Point from, Point to) {
  if (input.isControlDown) {
    input.cell->DrawSketchLine(from.x, from.y, to.x, to.y, currentPen, nullptr);
  } else {
    input.cell->DrawLine(from.x, from.y, to.x, to.y, &currentPen, maskFlags, nullptr);
  }
  input.window->AddUndoRect(nullptr);
  ReportChange(input.window, SegmentArea(from, to));
}

void ShowBand(CutWindow* window, Point from, Point to) {
  HideOverlay(window);
  if (from == to) return;
  gOverlay = {Overlay::Kind::kBand, window, from, to, {}};
  InvertOverlay();
}

void ShowFrame(CutWindow* window, const Bounds& frame) {
  HideOverlay(window);
  if (frame.IsEmpty()) return;
  gOverlay = {Overlay::Kind::kFrame, window, {}, {}, frame};
  InvertOverlay();
}

void HideOverlay(const CutWindow* window) {
  if (IsOverlayShown(window)) InvertOverlay();
  ResetOverlay();
}

bool IsOverlayShown(const CutWindow* window) {
  return gOverlay.kind != Overlay::Kind::kNone && gOverlay.owner == window;
}

Bounds ShownFrame(const CutWindow* window) {
  return IsOverlayShown(window) ? gOverlay.frame : Bounds{};
}

void ForgetOverlay(const CutWindow* window) {
  if (gOverlay.owner == window) ResetOverlay();
}

void ResetOverlay() {
  gOverlay = Overlay{};
}

void ResizeShownFrame(CutWindow* window, int32_t side) {
  const Bounds old = ShownFrame(window);
  if (old.IsEmpty()) return;
  const Point corner = {(old.left + old.right) / 2 - side / 2, (old.top + old.bottom) / 2 - side / 2};
  ShowFrame(window, {corner.x, corner.y, corner.x + side, corner.y + side});
}

void StretchBand(const ToolInput& input, Point from) {
  HideOverlay(input.window);
  input.window->ShowPenMark(&input.point);
  ShowBand(input.window, from, ToWindow(input.window, input.point));
}

void StretchFrame(const ToolInput& input, Point start) {
  if (IsRightAndBelow(input.point, start)) {
    ShowFrame(input.window, ToWindowBounds(input.window, start, input.point));
  }
}

void OpenPenPicker(CutWindow* window, Point place) {
  const Point onScreen = platform::ClientToScreen(window->window, place);
  window->host->penPicker.Show(onScreen.x, onScreen.y, &currentPen);
}

}  // namespace sorvel
