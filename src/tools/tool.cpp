#include "tools/tool.h"

#include <algorithm>
#include <cstdlib>

#include "platform/hints.h"
#include "platform/window.h"

namespace sorvel {

namespace {

constexpr int32_t kFarthest = 1 << 22;

constexpr size_t kHintSize = 256;
constexpr uint32_t kHintTime = 4000;  // milliseconds

// Tells why a press draws nothing.
void ShowWhyNot(CutWindow* window) {
  Frame* frame = window->CurrentFrame();
  Layer* layer = nullptr;
  int32_t x = 0;
  int32_t y = 0;
  int32_t cell = 0;
  const bool hasRecord = frame != nullptr && frame->GetRecord(frame->currentRecord, &layer, &x, &y, &cell);
  const int32_t reason = !hasRecord ? kTextNoRecordHint : IsBlankCell(cell) ? kTextBlankHint : kTextNoCellHint;
  char text[kHintSize];
  platform::ReadResourceText(reason, text, sizeof(text));
  platform::ShowHint(window->window, text, kHintTime);
}

// The area that a line of the largest pen may touch.
Rect SegmentArea(Point a, Point b) {
  return {std::min(a.x, b.x) - kPenReach, std::min(a.y, b.y) - kPenReach, std::abs(a.x - b.x) + kPenSize + 1,
          std::abs(a.y - b.y) + kPenSize + 1};
}

}  // namespace

Point ToolInput::ToLayer(Point place) const {
  window->WindowToCut(&place, 1);
  window->CutToLayer(&place, 1);
  return Limited(place);
}

Point ToolInput::ToLayerOffGrid(Point place) const {
  window->WindowToCutRaw(&place, 1);
  window->CutToLayer(&place, 1);
  return Limited(place);
}

Point ToolInput::ToWindow(Point layerPoint) const {
  window->LayerToCut(&layerPoint, 1);
  window->CutToWindow(&layerPoint, 1);
  return Limited(layerPoint);
}

Bounds ToolInput::ToWindow(Point corner, Point farCorner) const {
  const Point first = ToWindow(corner);
  const Point last = ToWindow(farCorner);
  return {first.x, first.y, last.x, last.y};
}

void ToolInput::ReportChange(const Rect& area) const {
  window->AddUndoRect(&area);
  // The mark of SaveUndo is gone if the cut was saved or played in the middle of the stroke.
  window->MarkImages();
  Repaint(area);
}

void ToolInput::ReportStep(const Rect& area) const {
  window->AddUndoRect(nullptr);
  ReportChange(area);
}

void ToolInput::Repaint(const Rect& area) const {
  Point corner = {area.x, area.y};
  window->LayerToCut(&corner, 1);
  window->RepaintArea(corner.x, corner.y, area.width, area.height, true);
}

void ToolInput::DrawInkLine(Point from, Point to) const {
  cell->DrawLine(from.x, from.y, to.x, to.y, &currentPen, maskFlags, nullptr);
  ReportChange(SegmentArea(from, to));
}

void ToolInput::DrawGuideLine(Point from, Point to) const {
  if (isControlDown) {
    cell->DrawSketchLine(from.x, from.y, to.x, to.y, currentPen, nullptr);
  } else {
    cell->DrawLine(from.x, from.y, to.x, to.y, &currentPen, maskFlags, nullptr);
  }
  ReportStep(SegmentArea(from, to));
}

void ToolInput::ResizeShownFrame(int32_t side) const {
  const Bounds old = overlay->ShownFrame(window);
  if (old.IsEmpty()) return;
  const Point corner = {(old.left + old.right) / 2 - side / 2, (old.top + old.bottom) / 2 - side / 2};
  ShowFrame({corner.x, corner.y, corner.x + side, corner.y + side});
}

void ToolInput::StretchBand(Point from) const {
  HideOverlay();
  window->ShowPenMark(&point);
  ShowBand(from, ToWindow(point));
}

void ToolInput::StretchFrame(Point start) const {
  if (IsRightAndBelow(point, start)) ShowFrame(ToWindow(start, point));
}

void ToolInput::OpenPenPicker(Point place) const {
  const Point onScreen = platform::ClientToScreen(window->window, place);
  window->host->penPicker.Show(onScreen.x, onScreen.y, &currentPen);
}

// The picker opens at the pixel, not at the mouse: they differ when a pixel of the window shows several of the cell.
void ToolInput::PickPen() const {
  cell->PickPen(point.x, point.y, &currentPen);
  OpenPenPicker(ToWindow(point));
}

Point Limited(Point point) {
  return {std::clamp(point.x, -kFarthest, kFarthest), std::clamp(point.y, -kFarthest, kFarthest)};
}

bool IsRightAndBelow(Point point, Point origin) {
  return point.x > origin.x && point.y > origin.y;
}

Point UnpackPlace(intptr_t place, bool isSigned) {
  if (isSigned) return platform::PointOf(place);
  const auto packed = static_cast<uintptr_t>(place);
  return {static_cast<int32_t>(platform::LowHalf(packed)), static_cast<int32_t>(platform::HighHalf(packed))};
}

bool Tool::Prepare(intptr_t place, ToolInput* input) {
  input->cell = input->window->CurrentCell();
  if (input->cell == nullptr) {
    // The overlay must leave the screen even if there is no drawing any more.
    input->HideOverlay();
    if (input->message == platform::kMessageLeftDown) ShowWhyNot(input->window);
    return false;
  }
  input->mouse = UnpackPlace(place, form == PointForm::kSigned);
  input->point = form == PointForm::kOffGrid ? input->ToLayerOffGrid(input->mouse) : input->ToLayer(input->mouse);
  return true;
}

void Tool::Run(ToolInput input, intptr_t place) {
  if (!Prepare(place, &input)) return;
  switch (input.message) {
    case platform::kMessageLeftDown:
      Press(input);
      break;
    case platform::kMessageMouseMove:
      Move(input);
      break;
    case platform::kMessageLeftUp:
      Release(input);
      break;
    case platform::kMessageRightDown:
      RightPress(input);
      break;
    case platform::kMessageRightUp:
      RightRelease(input);
      break;
    case platform::kMessageUser:
      Pulse(input);
      break;
    default:
      break;
  }
}

}  // namespace sorvel
