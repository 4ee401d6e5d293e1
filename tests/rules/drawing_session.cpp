#include "rules/drawing_session.h"
#include "resources/ids.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace rules {

namespace {

constexpr std::pair<int, int> maskControls[] = {
    {0, kMaskTransparentCheck}, {1, kMaskBlackCheck},     {2, kMaskDarkCheck},     {3, kMaskLightCheck},
    {4, kMaskWhiteCheck},       {8, kMaskLineBlackCheck}, {9, kMaskLineDarkCheck}, {10, kMaskLineLightCheck},
    {11, kMaskPlus2Check},      {12, kMaskPlus1Check},    {13, kMaskMinus1Check},  {14, kMaskMinus2Check}};

Area AreaOf(const nlohmann::json& numbers) {
  Area area = {-1, -1, -1, -1};
  if (!numbers.is_array() || numbers.size() != area.size()) {
    ADD_FAILURE() << numbers << " is no rectangle";
    return area;
  }
  for (size_t i = 0; i < area.size(); ++i) area[i] = numbers[i].get<int>();
  return area;
}

}  // namespace

DrawingSession::DrawingSession(const Canvas& canvas) {
  const int clientWidth = canvas.clientWidth < 0 ? canvas.width : canvas.clientWidth;
  const int clientHeight = canvas.clientHeight < 0 ? canvas.height : canvas.clientHeight;
  Line("client " + std::to_string(clientWidth) + " " + std::to_string(clientHeight));
  NewCutValues values;
  values.width = canvas.width;
  values.height = canvas.height;
  values.antialias = canvas.antialias;
  NewCut(values);
}

void DrawingSession::Pick(int column, int row) {
  const int x = 10 + 14 * column;
  const int y = 10 + 14 * row;
  Picker("ldown", x, y);
  Picker("lup", x, y);
}

void DrawingSession::PickPlain(int index) {
  constexpr int topRow[] = {1, 9, 10, 11, 12, 0, 13, 14};
  const auto* place = std::find(std::begin(topRow), std::end(topRow), index);
  if (place != std::end(topRow)) {
    Pick(static_cast<int>(place - std::begin(topRow)), 0);
  } else {
    Pick(0, index - 1);
  }
}

void DrawingSession::Mask(std::initializer_list<int> indices) {
  DialogValues values;
  for (const auto& [index, control] : maskControls) {
    const bool on = std::find(indices.begin(), indices.end(), index) != indices.end();
    values.push_back({control, on ? "on" : "off"});
  }
  Dialog(kMaskDialog, values).Command(kCommandMask);
}

void DrawingSession::Grid(int width, int height) {
  Dialog(kGridDialog, {{kGridWidthEdit, std::to_string(width)}, {kGridHeightEdit, std::to_string(height)}})
      .Command(kCommandSnapGrid);
}

void DrawingSession::FillArea(int x, int y, int width, int height, int index) {
  Mask({});
  Command(kToolRectangle);
  PickPlain(index);
  Press(x, y);
  Release(x + width, y + height, "ctrl");
  PickPlain(1);
  Command(kToolFreePen);
}

void DrawingSession::DrawInkLine(int fromX, int fromY, int toX, int toY) {
  Mask({});
  PickPlain(1);
  Command(kToolLine);
  Press(fromX, fromY);
  Release(toX, toY);
  Command(kToolFreePen);
}

void DrawingSession::AddLayer(std::string_view name, int width, int height) {
  Dialog(kLayerDialog, {{kLayerNameEdit, std::string(name)},
                        {kLayerWidthEdit, std::to_string(width)},
                        {kLayerHeightEdit, std::to_string(height)}});
  Command(kCommandAddLayer);
}

void DrawingSession::RunAfresh() {
  SetSettings(startSettings);
  Run();
}

PixelMatrix DrawingSession::NowView() {
  const int number = View();
  RunAfresh();
  return ViewAt(number);
}

PixelMatrix DrawingSession::NowScreen() {
  const int number = Screen();
  RunAfresh();
  return ScreenAt(number);
}

nlohmann::json DrawingSession::NowState() {
  const int number = State();
  RunAfresh();
  return StateAt(number);
}

nlohmann::json DrawingSession::NowCut() {
  const int number = State();
  RunAfresh();
  return Cut(number);
}

nlohmann::json DrawingSession::NowFrame() {
  const int number = State();
  RunAfresh();
  return Frame(number);
}

nlohmann::json DrawingSession::NowRecord() {
  const int number = State();
  RunAfresh();
  return CurrentRecord(number);
}

Area DrawingSession::NowUndoRect() {
  return AreaOf(NowCut()["undoRect"]);
}

Area DrawingSession::NowSelection() {
  return AreaOf(NowCut()["selection"]);
}

bool DrawingSession::HasSelection() {
  const Area selection = NowSelection();
  return selection[0] < selection[2] && selection[1] < selection[3];
}

}  // namespace rules
