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
// Whether the free pen leaves out points at which its path only turns a corner; 0 or 1.
extern int32_t muraRemoval;
// 1 for a round pen, -1 for a square one.
extern int32_t penSign;
// The steps of the grid that points of the canvas snap to, in canvas pixels; 1 and below for every pixel.
extern int32_t gridWidth;
extern int32_t gridHeight;

// The font of the text tool.
struct TextToolFont {
  char* faceName = EmptyString;  // Shift JIS; owned
  int32_t size = 0;              // height in pixels
  int32_t spacing = 0;           // pixels between lines
  int32_t weight = 0;
  platform::FontHandle handle = nullptr;  // null while any of the four is empty or 0

  // Whether the font is one for vertical writing: text runs from top to bottom, and lines from right to left.
  bool IsVertical() const { return faceName[0] == '@'; }
};
extern TextToolFont textToolFont;

// Set the pen from the values of the settings, and get the values to be stored. Values out of range are brought into
// it. A `square` other than 0 marks a square pen and mirrors the shape; the shape to be stored isn't mirrored, so that
// a stored square pen comes back as a round one marked square.
void SetBrushSettings(int32_t shape, int32_t colorA, int32_t colorB, int32_t tone, int32_t removal, int32_t square);
void GetBrushSettings(int32_t* shape, int32_t* colorA, int32_t* colorB, int32_t* tone, int32_t* removal,
                      int32_t* square);
// Changes between a round and a square pen of the same size.
void TogglePenShape();
// Stores the four values, and makes the font unless the name is empty or the size 0. The name, Shift JIS, is copied;
// size and spacing are pixels, weight is 1 to 1000 with 400 for normal and 0 for the font's own.
void SetTextToolFont(const char* faceName, int32_t size, int32_t spacing, int32_t weight);

// Sets pen, mask, grid and font to what they are at the start of the program.
void ResetDrawingSettings();

}  // namespace sorvel
