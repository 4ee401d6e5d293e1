#include "rules/drawing_session.h"

#include <algorithm>
#include <utility>

#include "resources/ids.h"

namespace rules {

namespace {

constexpr std::pair<int, int> maskControls[] = {
    {0, kMaskTransparentCheck}, {1, kMaskBlackCheck},     {2, kMaskDarkCheck},     {3, kMaskLightCheck},
    {4, kMaskWhiteCheck},       {8, kMaskLineBlackCheck}, {9, kMaskLineDarkCheck}, {10, kMaskLineLightCheck},
    {11, kMaskPlus2Check},      {12, kMaskPlus1Check},    {13, kMaskMinus1Check},  {14, kMaskMinus2Check}};

}  // namespace

DrawingSession::DrawingSession(const Canvas& canvas) {
  const int clientWidth = canvas.clientWidth < 0 ? canvas.width : canvas.clientWidth;
  const int clientHeight = canvas.clientHeight < 0 ? canvas.height : canvas.clientHeight;
  Line("client " + std::to_string(clientWidth) + " " + std::to_string(clientHeight));
  NewCut({.width = canvas.width, .height = canvas.height, .antialias = canvas.antialias});
}

ScriptSession& ScriptSession::Pick(int column, int row) {
  const int x = 10 + 14 * column;
  const int y = 10 + 14 * row;
  return Picker("ldown", x, y).Picker("lup", x, y);
}

ScriptSession& ScriptSession::PickPlain(int index) {
  constexpr int topRow[] = {1, 9, 10, 11, 12, 0, 13, 14};
  const auto* place = std::find(std::begin(topRow), std::end(topRow), index);
  if (place == std::end(topRow)) return Pick(0, index - 1);
  return Pick(static_cast<int>(place - std::begin(topRow)), 0);
}

ScriptSession& ScriptSession::Mask(std::initializer_list<int> indices) {
  DialogValues values;
  for (const auto& [index, control] : maskControls) {
    const bool on = std::find(indices.begin(), indices.end(), index) != indices.end();
    values.push_back({control, on ? "on" : "off"});
  }
  return Dialog(kMaskDialog, values).Command(kCommandMask);
}

ScriptSession& ScriptSession::Grid(int width, int height) {
  Dialog(kGridDialog, {{kGridWidthEdit, std::to_string(width)}, {kGridHeightEdit, std::to_string(height)}});
  return Command(kCommandSnapGrid);
}

ScriptSession& ScriptSession::Repaint() {
  return Command(kCommandPreviousFrame);
}

ScriptSession& ScriptSession::SelectArea(int left, int top, int right, int bottom) {
  return Command(kToolAreaSelect).LeftDrag(left, top, right, bottom);
}

ScriptSession& ScriptSession::FillArea(int x, int y, int width, int height, int index) {
  Mask({}).Command(kToolRectangle).PickPlain(index).Press(x, y).Release(x + width, y + height, "ctrl");
  return PickPlain(1).Command(kToolFreePen);
}

ScriptSession& ScriptSession::DrawInkLine(int fromX, int fromY, int toX, int toY) {
  Mask({}).PickPlain(1).Command(kToolLine).Press(fromX, fromY).Release(toX, toY);
  return Command(kToolFreePen);
}

ScriptSession& ScriptSession::AddLayer(std::string_view name, int width, int height) {
  Dialog(kLayerDialog, {{kLayerNameEdit, std::string(name)},
                        {kLayerWidthEdit, std::to_string(width)},
                        {kLayerHeightEdit, std::to_string(height)}});
  return Command(kCommandAddLayer);
}

}  // namespace rules
