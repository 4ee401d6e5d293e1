#pragma once

#include <cstdint>

#include "foundation/shared_string.h"
#include "imaging/pen.h"
#include "platform/fonts.h"

// What all tools of all cuts draw with.
namespace sorvel {

extern PenSpec currentPen;
// Bit n protects pixels of colour index n: no tool that takes the mask draws on them. Not kept between two runs.
extern uint32_t maskFlags;
// The free pen leaves out points at which its path only turns a corner; 0 or 1.
extern int32_t muraRemoval;
// 1 for a round pen, -1 for a square one.
extern int32_t penSign;
// The grid that points on the canvas snap to; 1 for every pixel.
extern int32_t gridWidth;
extern int32_t gridHeight;

// The font of the text tool.
struct TextToolFont {
  char* faceName = EmptyString;
  int32_t size = 0;     // height in pixels
  int32_t spacing = 0;  // pixels between lines
  int32_t weight = 0;
  platform::FontHandle handle = nullptr;  // null while any of the four is empty or 0

  // A vertical writing font: text runs from top to bottom, and lines from right to left.
  bool IsVertical() const { return faceName[0] == '@'; }
};
extern TextToolFont textToolFont;

// Hand the pen to and from the settings. `square` other than 0 marks a square pen and mirrors the shape; as the shape
// is handed out as it stands, a square pen that was stored comes back as a round one marked square, and settings files
// rely on it.
void SetBrushSettings(int32_t shape, int32_t colorA, int32_t colorB, int32_t tone, int32_t removal, int32_t square);
void GetBrushSettings(int32_t* shape, int32_t* colorA, int32_t* colorB, int32_t* tone, int32_t* removal,
                      int32_t* square);
// Between round and square; the size stays.
void TogglePenShape();
// Keeps the four values and makes the font, unless one of them is empty or 0. The name is copied.
void SetTextToolFont(const char* faceName, int32_t size, int32_t spacing, int32_t weight);

// Pen, mask, grid and font as a start of the program finds them.
void ResetDrawingSettings();

}  // namespace sorvel
