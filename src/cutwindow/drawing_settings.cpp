#include "cutwindow/drawing_settings.h"

#include <algorithm>

#include "imaging/color_table.h"

namespace sorvel {

PenSpec currentPen;
uint32_t maskFlags = 0;
int32_t muraRemoval = 1;
int32_t penSign = 1;
int32_t gridWidth = 1;
int32_t gridHeight = 1;
TextToolFont textToolFont;

namespace {

constexpr int32_t kLastShape = 14;
constexpr int32_t kLastTone = 15;

}  // namespace

void SetBrushSettings(int32_t shape, int32_t colorA, int32_t colorB, int32_t tone, int32_t removal, int32_t square) {
  // The numbers come from a file, and tables are read at them. A pen that was picked from transparent ground has a
  // colorA of -1, which is never drawn with.
  currentPen.shape = std::clamp(shape, 0, kLastShape);
  currentPen.tone = std::clamp(tone, 0, kLastTone);
  currentPen.colorA = std::clamp<int32_t>(colorA, currentPen.tone == 0 ? -1 : 0, kWorkMarker);
  currentPen.colorB = std::clamp<int32_t>(colorB, 0, kWorkMarker);
  muraRemoval = removal;
  if (square != 0) TogglePenShape();
}

void GetBrushSettings(int32_t* shape, int32_t* colorA, int32_t* colorB, int32_t* tone, int32_t* removal,
                      int32_t* square) {
  // Quirk 12. The shape goes out as it stands, and SetBrushSettings mirrors it: undoing one of the two would turn the
  // pens of existing settings files.
  *shape = currentPen.shape;
  *colorA = currentPen.colorA;
  *colorB = currentPen.colorB;
  *tone = currentPen.tone;
  *removal = muraRemoval;
  *square = penSign < 0 ? 1 : 0;
}

void TogglePenShape() {
  penSign = -penSign;
  currentPen.shape = kLastShape - currentPen.shape;
}

void SetTextToolFont(const char* faceName, int32_t size, int32_t spacing, int32_t weight) {
  AssignString(&textToolFont.faceName, faceName);
  textToolFont.size = size;
  textToolFont.spacing = spacing;
  textToolFont.weight = weight;
  if (textToolFont.handle != nullptr) platform::DeleteFont(textToolFont.handle);
  textToolFont.handle = nullptr;
  if (faceName[0] == '\0' || size == 0) return;
  textToolFont.handle = platform::MakeFont(faceName, size, weight);
}

void ResetDrawingSettings() {
  currentPen = PenSpec{};
  maskFlags = 0;
  muraRemoval = 1;
  penSign = 1;
  gridWidth = 1;
  gridHeight = 1;
  SetTextToolFont("", 0, 0, 0);
}

}  // namespace sorvel
